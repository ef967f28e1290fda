// A GuiHost for the dialog tests: a plain main window, runs counted with the
// captions they saw, Batch output and help requests recorded instead of shown.
#pragma once

#include <QStringList>
#include <QWidget>

#include <functional>

#include "dialogs/gui_host.h"

class StubHost : public GuiHost {
public:
    StubHost() { main.setWindowTitle(QStringLiteral("Ordix")); }

    QWidget* MainWindow() override { return &main; }
    Result RunWatched(const std::function<Result()>& work) override {
        captionsDuringRuns << main.windowTitle();
        if (onRun) onRun();
        return work();
    }
    bool LabelInUse(int) override { return false; }
    Result RunCalculate(int, const QString&) override { return Result::kOk; }
    void ShowLabel(int) override {}
    void ShowBatchOutput(const QString& title, const QString& text) override {
        batchTitles << title;
        batchText = text;
    }
    Result RunList(const ListGenerator&, QWidget*, QString*) override { return Result::kOk; }
    void ShowHelp(QWidget*, const char* name, const QString& caption) override {
        helps << QString::fromLatin1(name) + " " + caption;
    }

    // Called in each run before its work, to look at the dialogs meanwhile.
    std::function<void()> onRun;

    QWidget main;
    QStringList captionsDuringRuns;
    QStringList batchTitles;
    QString batchText;
    QStringList helps;  // "name caption" per request
};
