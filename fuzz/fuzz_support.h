// What the harnesses share: a context whose quit poll answers Q once a time
// budget is spent, so that a slow input ends as a stopped run rather than a
// hang, and small helpers for values and their text.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bigint/bigint.h"

class BudgetContext : public CalcContext {
public:
    explicit BudgetContext(double seconds = 0.25)
        : budget_(
              std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds))) {
        Restart();
    }
    void Restart() { deadline_ = Clock::now() + budget_; }
    int PollQuitKey() override { return Clock::now() >= deadline_ ? kQuitKey : 0; }

private:
    using Clock = std::chrono::steady_clock;
    Clock::duration budget_;
    Clock::time_point deadline_;
};

// A value owned by the harness, released at the end of its scope.
struct FuzzValue {
    BigInt v = {};
    FuzzValue() = default;
    ~FuzzValue() { BigFree(&v); }
    FuzzValue(const FuzzValue&) = delete;
    FuzzValue& operator=(const FuzzValue&) = delete;
};

// The whole decimal text of v, sign included.
inline std::string DecimalText(const BigInt* v) {
    const int32_t width = 4 * v->top + 16;
    std::vector<char> buf(static_cast<std::size_t>(width) + 8);
    BigToText(v, buf.data(), width, 0, -1, 0, 0);
    return buf.data();
}

inline bool SameValue(const BigInt* a, const BigInt* b) {
    if (BigIsZero(a) || BigIsZero(b)) return BigIsZero(a) && BigIsZero(b);
    return BigCompareMag(a, b) == 0 && (a->negative != 0) == (b->negative != 0);
}

// A broken round trip is a finding: report it and stop as a crash would.
#define FUZZ_CHECK(condition)                                                                  \
    do {                                                                                       \
        if (!(condition)) {                                                                    \
            std::fprintf(stderr, "%s:%d: check failed: %s\n", __FILE__, __LINE__, #condition); \
            std::abort();                                                                      \
        }                                                                                      \
    } while (0)
