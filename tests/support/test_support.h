// What every test folder shares: a value the test owns, its decimal text, and
// a context that stops a computation at a chosen poll.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bigint/bigint.h"

// A value owned by the test, released at the end of its scope.
struct Num {
    BigInt v = {};
    Num() = default;
    explicit Num(std::string text) {
        text.push_back('\0');
        (void)BigFromText(text.data(), &v);  // a test's own literal: only memory can fail
    }
    ~Num() { BigFree(&v); }
    Num(const Num&) = delete;
    Num& operator=(const Num&) = delete;
    BigInt* operator->() { return &v; }
    // Releases the value so the record can take a new result.
    BigInt* Out() {
        BigFree(&v);
        return &v;
    }
    std::vector<int> Limbs() const { return std::vector<int>(v.limbs, v.limbs + v.top + 1); }
};

// The whole number as decimal text, sign included; "(released)" for a
// released record.
inline std::string Text(const BigInt* v) {
    if (!v->limbs) return "(released)";
    const int32_t width = 4 * v->top + 16;
    std::vector<char> buf(static_cast<size_t>(width) + 8);
    BigToText(v, buf.data(), width, 0, -1, 0, 0);
    return buf.data();
}
inline std::string Text(const Num& n) { return Text(&n.v); }

// Answers Q from poll number `at` on (counting from 1; 0 never) and counts
// every poll, so a test can stop a computation at a known point.
class QuitAtPoll : public CalcContext {
public:
    explicit QuitAtPoll(long at = 0) : at_(at) {}
    int PollQuitKey() override { return ++polls_ >= at_ && at_ > 0 ? kQuitKey : 0; }
    long polls() const { return polls_; }

private:
    long at_;
    long polls_ = 0;
};
