// Two pieces of work on two threads, for the transforms: the calling thread
// runs the first and polls, a helper thread runs the second with a clock that
// never polls and stops when the calling thread cancels it. When told to
// stop, the calling thread cancels the helper and waits for it (one stage of
// its work at most). No thread to be had, for want of memory or of a thread:
// both run here, the first then the second.
#pragma once

#include <atomic>
#include <chrono>
#include <new>
#include <system_error>
#include <thread>

#include "bigint/poll_clock.h"
#include "resources/result.h"

// first(clk) and second(clock) each answer a Result; the first failure is
// the answer. parallel false runs both here.
template <typename First, typename Second>
Result OnTwoThreads(PollClock& clk, bool parallel, First&& first, Second&& second) {
    if (!parallel) {
        const Result rc = first(clk);
        return Ok(rc) ? second(clk) : rc;
    }
    std::atomic<bool> cancel{false}, done{false};
    Result helperRc = Result::kOk;
    std::thread helper;
    try {
        helper = std::thread([&] {
            PollClock helperClock(nullptr, &cancel);
            helperRc = second(helperClock);
            done.store(true, std::memory_order_release);
        });
    } catch (const std::system_error&) {
        // No thread to be had: both run here.
    } catch (const std::bad_alloc&) {
        // No memory for the thread's state: the same.
    }
    Result rc = first(clk);
    if (!helper.joinable()) return Ok(rc) ? second(clk) : rc;
    // The helper is usually a moment behind: wait by yielding, not by
    // sleeping, and poll every millisecond in case it lags far (the other
    // core busy).
    auto lastPoll = std::chrono::steady_clock::now();
    while (Ok(rc) && !done.load(std::memory_order_acquire)) {
        std::this_thread::yield();
        const auto now = std::chrono::steady_clock::now();
        if (now - lastPoll < std::chrono::milliseconds(1)) continue;
        lastPoll = now;
        if (clk.Tick(gFastThresholds.pollWork)) rc = Result::kStopped;
    }
    if (!Ok(rc)) cancel = true;
    helper.join();
    return Ok(rc) ? helperRc : rc;
}
