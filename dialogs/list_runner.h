// ListRunner: what the modeless list dialogs (Heronian triangles, medians,
// quadruples) need from the main window. A dialog checks its own bounds and
// reports a refusal through the main window; the runner owns the list window
// and decides how a run goes (its polls watching for Q, other commands
// refused meanwhile).
#pragma once

#include <QString>

#include <functional>

#include "lists/list_frame.h"

class CalcContext;
class QWidget;

using ListGenerator = std::function<int(CalcContext*, ListOutput*)>;

class ListRunner {
public:
    virtual ~ListRunner();

    // Where messages about refused input go. Never null.
    virtual QWidget* MainWindow() = 0;
    // Runs generator into the list window. While it runs, the progress texts
    // it announces ("press Q to quit") are the caption of `progress`, which
    // gets its own caption back afterwards. A list that was made, complete
    // or stopped, is shown in the list window with its summary caption, also
    // written to *summary; any other code is reported by the main window and
    // leaves the list window as it was. Answers the generator's code, or -1
    // without running it when another computation is going on.
    virtual int RunList(const ListGenerator& generator, QWidget* progress, QString* summary) = 0;
};
