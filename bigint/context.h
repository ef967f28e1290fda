// The calculation context every long operation runs in.
//
// Computation runs on the caller's thread. Long loops ask the context, once
// per step, whether the user wants to stop: first PollQuitKey (the pending key,
// letters folded to upper case, 81 for Q, 0 for none), then PollInterrupt
// (a window-management action is pending). A front end answers the polls from
// its own event source: the desktop program from its event queue, the command
// line from SIGINT, tests from a script. The context also carries the modulus
// mode and the modulus M that the fraction arithmetic consults.
#pragma once

#include <cstdint>

#include "bigint/record.h"

constexpr int kQuitKey = 81;  // 'Q'

class CalcContext {
public:
    CalcContext() = default;
    virtual ~CalcContext();
    CalcContext(const CalcContext&) = delete;
    CalcContext& operator=(const CalcContext&) = delete;

    virtual int PollQuitKey() { return 0; }
    virtual bool PollInterrupt() { return false; }

    // Both polls in order; true when the running operation must end with -1.
    bool ShouldStop() { return PollQuitKey() == kQuitKey || PollInterrupt(); }

    // Work the fast kernels have done since their last poll (poll_clock.h).
    int64_t unpolledWork = 0;

    bool modulusMode = false;
    // The modulus M, owned by the context (a released record until set).
    BigInt modulus = {};
};
