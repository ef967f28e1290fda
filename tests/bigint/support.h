// Shared helpers of the big integer tests: owned values, text, stop contexts.
#pragma once

#include <string>
#include <vector>

#include "bigint/bigint.h"

// A value owned by the test, released when it goes out of scope.
struct Num {
    BigInt v = {};
    Num() = default;
    explicit Num(const std::string& text);
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

// The whole number as decimal text; "(released)" for a released record.
std::string Text(const BigInt* v);
inline std::string Text(const Num& n) { return Text(&n.v); }

// Answers Q after the given number of polls; counts every poll.
class StopAfter : public CalcContext {
public:
    explicit StopAfter(long polls) : left_(polls) {}
    int PollQuitKey() override {
        ++polls_;
        return left_-- > 0 ? 0 : kQuitKey;
    }
    long polls() const { return polls_; }

private:
    long left_;
    long polls_ = 0;
};

// The path of a file next to the test sources.
std::string TestDataPath(const char* name);
