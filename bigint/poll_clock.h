// Work-metered polling for the fast kernels.
//
// The schoolbook kernels poll once per row; the fast ones do uneven amounts
// of work per step, so they count work units (about one limb product or one
// transform butterfly each) and poll the context once per budget of
// gFastThresholds.pollWork units, a millisecond or two of work. The count
// lives in the context, so that a run of many short products, none of which
// reaches the budget alone, still polls. Polls happen
// on the calling thread only. Once a poll has asked to stop, every later
// Tick answers true so that nested kernels unwind at once. A clock without a
// context belongs to a helper thread: it never polls, and stops when the
// calling thread raises its cancel flag.
#pragma once

#include <atomic>
#include <cstdint>

#include "bigint/context.h"
#include "bigint/thresholds.h"

class PollClock {
public:
    explicit PollClock(CalcContext* ctx, const std::atomic<bool>* cancel = nullptr)
        : ctx_(ctx), cancel_(cancel) {}

    // Charges units of work; true when the computation must stop.
    bool Tick(int64_t units) {
        if (stopped_) return true;
        if (cancel_ != nullptr && cancel_->load(std::memory_order_relaxed)) return stopped_ = true;
        int64_t& spent = ctx_ != nullptr ? ctx_->unpolledWork : spent_;
        spent += units;
        if (spent < gFastThresholds.pollWork) return false;
        spent = 0;
        stopped_ = ctx_ != nullptr && ctx_->ShouldStop();
        return stopped_;
    }
    CalcContext* Context() const { return ctx_; }

private:
    CalcContext* ctx_;
    const std::atomic<bool>* cancel_;
    int64_t spent_ = 0;
    bool stopped_ = false;
};
