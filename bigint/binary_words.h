// Binary magnitudes on 32-bit words, least significant first, for the base
// conversions that leave the decimal limbs.
//
// Products: schoolbook on pairs of words as 64-bit words below
// gFastThresholds.binaryNtt words of the shorter operand; above it the words
// are cut into 16-bit halves for NttConvolve16, whose exact coefficients
// (below 2^56) are carried back into words, unbalanced products in pieces
// that fill their transforms; or by the transform over three 64-bit primes
// (ntt64.h) where it costs less. Arrays come from nothrow new; a
// failed allocation is answered with kNoMemory, never an exception.
#pragma once

#include <cstdint>

#include "bigint/mul_kernels.h"
#include "bigint/ntt64.h"

// An owned array of words; size() counts the words in use.
class Words {
public:
    Words() = default;
    ~Words() { Release(); }
    Words(const Words&) = delete;
    Words& operator=(const Words&) = delete;

    // n words (at least 1), contents undefined; false when memory ran out.
    bool Allocate(int32_t n);
    void Release();
    void Swap(Words& other);
    uint32_t* data() const { return p_; }
    int32_t size() const { return n_; }
    // Lowers the size past zero words on top, keeping at least one word.
    void Trim();

private:
    uint32_t* p_ = nullptr;
    int32_t n_ = 0;
};

// Length of a[0..n) without zero words on top, at least 1.
int32_t WordsTrim(const uint32_t* a, int32_t n);

// p[0..la + lb) = a·b for la, lb >= 1 (b null or b == a with lb == la: the
// square); p must not overlap the operands. kOk, kNoMemory, kStopped.
Result WordsMul(PollClock& clk, const uint32_t* a, int32_t la, const uint32_t* b, int32_t lb,
                uint32_t* p);

// Products whose shorter factor has fewer words than this run on the
// schoolbook rows alone (no transform, no state shared between threads).
int32_t WordsRowsBelow();

// Limbs a leaf of the decimal-to-binary tree (radix_binary.cpp) holds.
int32_t BinaryLeafLimbs();

// Products of up to `uses` operands of at most maxLa words each by one factor
// b (kept by the caller while this lives): the factor's transform over the
// 64-bit primes is made once where that costs less than separate products.
class WordsByFactor {
public:
    // kOk, kNoMemory, kStopped.
    Result Prepare(PollClock& clk, const uint32_t* b, int32_t lb, int32_t maxLa, int64_t uses);
    // p[0..la + lb) = a·b for la >= 1 (through the kept transform where
    // la <= maxLa and that costs less); same codes.
    Result Mul(PollClock& clk, const uint32_t* a, int32_t la, uint32_t* p) const;
    // p[0..2·lb) = b·b, from the kept transform where that costs less than
    // a square of its own; same codes.
    Result Square(PollClock& clk, uint32_t* p) const;

private:
    Ntt64Factor factor_;
    const uint32_t* b_ = nullptr;
    int32_t lb_ = 0;
    int32_t maxLa_ = 0;
    bool kept_ = false;
};

// a[0..n) += b[0..m)·2^shift, for a sum below 2^(32n).
void WordsAddShifted(uint32_t* a, int32_t n, const uint32_t* b, int32_t m, int64_t shift);
