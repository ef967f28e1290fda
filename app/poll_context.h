// QtPollContext: the calculation context of the desktop program. Computations
// run on the UI thread; while one runs (between begin() and end()) an
// application-wide event filter watches Qt's events and the polls answer
// from what it saw:
//   - every key press is held back from the widgets; Q or q, and any key that
//     is the shortcut of one of the program's commands, reads as Q (so the
//     command does not run); other keys are read once and ignored;
//   - a right click, a click on a window frame where the platform reports one,
//     a move or resize, a close request and a window-state change count as
//     interrupting actions; moves and resizes still happen, a close is refused;
//   - other mouse input is held back, so no second command can start;
//     painting goes on.
// Events are fetched with processEvents at most every kPollIntervalMs, so a
// poll in a tight loop costs a clock read.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>

#include <deque>
#include <functional>
#include <utility>

#include "bigint/context.h"

class QKeyEvent;
class QWidget;

class QtPollContext : public QObject, public CalcContext {
    Q_OBJECT
public:
    static constexpr int kPollIntervalMs = 5;

    QtPollContext();
    ~QtPollContext() override;

    // Starts watching; `window` (the main frame) is where shortcuts are looked
    // up. Nested calls are counted; only the outermost end() stops watching.
    void begin(QWidget* window);
    void end();
    bool running() const { return depth_ > 0; }

    int PollQuitKey() override;
    bool PollInterrupt() override;

    // Called after each fetch of events while a run lasts (so at most every
    // kPollIntervalMs), for a display of the run's progress; it must not
    // start a computation.
    void setFetchHook(std::function<void()> hook) { fetchHook_ = std::move(hook); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fetchEvents();
    bool isCommandKey(const QKeyEvent* key) const;

    int depth_ = 0;
    QPointer<QWidget> window_;
    QElapsedTimer sinceFetch_;
    std::deque<int> keys_;
    bool interrupt_ = false;
    std::function<void()> fetchHook_;
};

// Runs a computation under the context: begin() ... end(), exception-free.
class PollScope {
public:
    PollScope(QtPollContext* ctx, QWidget* window) : ctx_(ctx) { ctx_->begin(window); }
    ~PollScope() { ctx_->end(); }
    PollScope(const PollScope&) = delete;
    PollScope& operator=(const PollScope&) = delete;

private:
    QtPollContext* ctx_;
};
