// A RunHost for the dialog tests: a plain main window, runs counted with the
// captions they saw, Batch output recorded instead of shown.
#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>

#include "dialogs/run_host.h"

class StubHost : public RunHost {
public:
    StubHost() { main.setWindowTitle(QStringLiteral("Ordix")); }

    QWidget* MainWindow() override { return &main; }
    int RunWatched(const std::function<int()>& work) override {
        captionsDuringRuns << main.windowTitle();
        if (onRun) onRun();
        return work();
    }
    void ShowBatchOutput(const QString& title, const QString& text) override {
        batchTitles << title;
        batchText = text;
    }

    // Called in each run before its work, to look at the dialogs meanwhile.
    std::function<void()> onRun;

    QWidget main;
    QStringList captionsDuringRuns;
    QStringList batchTitles;
    QString batchText;
};
