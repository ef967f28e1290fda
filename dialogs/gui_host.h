// GuiHost: what the dialogs and the recursion commands need from the main
// window. The dialogs only collect input, call the model or a list generator
// and show results or codes; the host decides how a computation runs (its
// polls watching the event queue for Q, other commands refused meanwhile),
// where Batch's output and the lists go and which help window shows a text.
// The main window implements it; tests give a host of their own.
#pragma once

#include <QString>

#include <functional>

#include "lists/list_frame.h"
#include "resources/result.h"

class CalcContext;
class QWidget;

using ListGenerator = std::function<Result(CalcContext*, ListOutput*)>;

class GuiHost {
public:
    virtual ~GuiHost();

    // The main window: messages about refused input and the caption
    // "press Q to quit" go there, and it gets the focus while a computation
    // runs. Never null.
    virtual QWidget* MainWindow() = 0;
    // Runs work on the UI thread and answers its code. The main window runs
    // it with its polls watching the event queue, so that Q reaches the
    // calculation context and no second command starts meanwhile; a host
    // already running something refuses with kStopped without calling work.
    virtual Result RunWatched(const std::function<Result()>& work) = 0;
    // As RunWatched, with the main window captioned "press Q to quit" while
    // work runs; its own caption comes back afterwards.
    Result RunCaptioned(const std::function<Result()>& work);

    // Calculate: whether label 1..26 holds a value; compiles and evaluates
    // formula into label (the result code); shows the label's window.
    virtual bool LabelInUse(int label) = 0;
    virtual Result RunCalculate(int label, const QString& formula) = 0;
    virtual void ShowLabel(int label) = 0;

    // Batch's output: the batch text window gets text (rows ending in "\r\n")
    // and title, and is shown and made active.
    virtual void ShowBatchOutput(const QString& title, const QString& text) = 0;

    // Runs generator into the list window. While it runs, the progress texts
    // it announces ("press Q to quit") are the caption of `progress`, which
    // gets its own caption back afterwards. A list that was made, complete
    // or stopped, is shown in the list window with its summary caption, also
    // written to *summary; any other code is reported by the main window and
    // leaves the list window as it was. Answers the generator's code, or
    // kStopped without running it when another computation is going on.
    virtual Result RunList(const ListGenerator& generator, QWidget* progress, QString* summary) = 0;

    // The help text `name` in the help window of `owner` (made on first use,
    // one per owner), captioned `caption` unless that is empty.
    virtual void ShowHelp(QWidget* owner, const char* name, const QString& caption) = 0;
};
