// RunHost: what the recursion commands and the batch, hailstone and
// conversion dialogs need from the main window. The dialogs only collect
// input, call the model and show results or codes; the host decides how a
// computation runs (its polls watching the event queue for Q, other commands
// refused) and where Batch's output goes. Tests give a host of their own.
#pragma once

#include <QString>

#include <functional>

class QWidget;

class RunHost {
public:
    virtual ~RunHost();

    // The main window: the recursion's caption "press Q to quit" goes there,
    // and it gets the focus while a computation runs. Never null.
    virtual QWidget* MainWindow() = 0;
    // Runs work on the UI thread and answers its code. The main window runs
    // it with its polls watching the event queue, so that Q reaches the
    // calculation context and no second command starts meanwhile; a host
    // already running something may refuse with -1 without calling work.
    virtual int RunWatched(const std::function<int()>& work) { return work(); }
    // Batch's output: the batch text window gets text (rows ending in "\r\n")
    // and title, and is shown and made active.
    virtual void ShowBatchOutput(const QString& title, const QString& text) = 0;
};
