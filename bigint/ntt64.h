// Products by the transform over three 64-bit primes (ntt64.cpp, with the
// products of limbs in ntt64_decimal.cpp and of binary words in
// ntt64_bits.cpp), for the lengths the 32-bit transform cannot reach or is
// slower at. Same contract as the kernels of mul_kernels.h, with no limit on
// la + lb beyond memory.
#pragma once

#include "bigint/mul_kernels.h"

Result MulNtt64(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p);
Result SqrNtt64(PollClock& clk, const Limb* a, int32_t la, Limb* p);

// Limbs packed into one coefficient for a transform of n points: 6 up to
// gFastThresholds.ntt64SixLimbs points (at most 2^26, the bound in
// ntt64_decimal.cpp), 4 beyond.
int Ntt64LimbsPerPoint(int64_t n);

// p[0..la + lb) = a·b on binary 32-bit words (la, lb >= 1; b null: the
// square), 50 bits a point on the vector primes, 64 on the others; p must not
// overlap the operands. kOk, kNoMemory, kStopped.
Result Ntt64ConvolveBits(PollClock& clk, const uint32_t* a, int32_t la, const uint32_t* b,
                         int32_t lb, uint32_t* p);
// The transform of one factor kept for products by several others of up to
// maxLa words: each then costs two thirds of a product. Not copyable.
class Ntt64Factor {
public:
    Ntt64Factor() = default;
    ~Ntt64Factor();
    Ntt64Factor(const Ntt64Factor&) = delete;
    Ntt64Factor& operator=(const Ntt64Factor&) = delete;
    // b[0..lb) (lb >= 1) transformed; kOk, kNoMemory, kStopped.
    Result Prepare(PollClock& clk, const uint32_t* b, int32_t lb, int32_t maxLa);
    // p[0..la + lb) = a·b for 1 <= la <= maxLa; kOk, kNoMemory, kStopped.
    Result Mul(PollClock& clk, const uint32_t* a, int32_t la, uint32_t* p) const;
    // p[0..2·lb) = b·b from the kept transform (three inverse transforms),
    // for a factor prepared with maxLa >= lb; kOk, kNoMemory, kStopped.
    Result Square(PollClock& clk, uint32_t* p) const;

private:
    uint64_t* points_ = nullptr;  // three primes' n points each, times 1/n
    int32_t lb_ = 0;
    int32_t maxLa_ = 0;
};

// True when the products above take the vector butterflies (from 256 points).
bool Ntt64VectorButterflies();

// The plain 64-bit butterflies even where the vector ones could run (they
// take other primes and four limbs a point). For tests.
void UsePortableNtt64(bool portable);
