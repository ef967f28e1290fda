// The 64-bit transform in pieces (ntt64_plan.cpp), for the long modular
// power: an operand is transformed once, multiplied point by point by kept
// transforms, and taken back through the inverse transform, Garner's join
// and one carry pass, into a linear product or one modulo B^L − 1.
//
// Only on the vector primes (AVX-512 IFMA, three primes below 2^50, four
// limbs a point): where they are missing or switched off (UsePortableNtt64)
// Ntt64PlanAvailable() is false and callers keep the two-prime transform of
// ntt_plan.h. A coefficient of a product of limbs below 20000 is below
// n·4·10^32 for n points, well below the primes' product 2^149.99 for any
// length memory allows.
#pragma once

#include <cstdint>

#include "bigint/mul_kernels.h"

// Limbs packed into one point.
constexpr int32_t kNtt64PlanLimbs = 4;

bool Ntt64PlanAvailable();

// The points of a transform for `coefficients` coefficients (points of the
// operands, kNtt64PlanLimbs limbs each): the least power of two not below
// it, at least 64.
int32_t Ntt64PlanPoints(int64_t coefficients);

// Residues of one operand or product at n points modulo the three primes
// (3n words), in the transform's order.
class Ntt64Vector {
public:
    Ntt64Vector() = default;
    ~Ntt64Vector() { delete[] r_; }
    Ntt64Vector(const Ntt64Vector&) = delete;
    Ntt64Vector& operator=(const Ntt64Vector&) = delete;

    // Room for n points; false when refused.
    bool Reset(int32_t n);
    int32_t points() const { return n_; }
    uint64_t* prime(int i) const { return r_ + int64_t(i) * n_; }

private:
    uint64_t* r_ = nullptr;
    int32_t n_ = 0;
};

// out := the transform of a[0 … la) at n points (la <= 4n), allocated when
// it has not n points. kOk, kNoMemory, kStopped.
Result Ntt64PlanForward(PollClock& clk, const Limb* a, int32_t la, int32_t n, Ntt64Vector* out);

// acc := acc·b point by point (b may be acc), with the inverse's 1/n.
void Ntt64PlanMul(PollClock& clk, Ntt64Vector* acc, const Ntt64Vector& b);

// The inverse transform of acc (destroyed), joined and carried: p[0 … len)
// := the product modulo B^len; first as for the split product below. kOk or
// kStopped.
Result Ntt64PlanToLimbs(PollClock& clk, Ntt64Vector* acc, int32_t len, Limb* p, int32_t first = 0);

// A product of count coefficients just past a power of two, in two parts:
// wrap, the product modulo x^nW − 1 (nW points), and low, the product of the
// operands' low w points at >= 2w − 1 points (both multiplied), count <= nW
// + w. Their coefficients are joined into `joined` (reset here to at least
// count points) and carried: p[0 … len) := the product modulo B^len. wrap and
// low are destroyed. With first > 0 the coefficients below it are left out
// (for callers that need only the product's top: the sum left out is below
// B^(4·first + 6) for coefficients below 10^40), and the limbs below
// 4·first are zeros. kOk, kNoMemory, kStopped.
Result Ntt64PlanToLimbsSplit(PollClock& clk, Ntt64Vector* wrap, Ntt64Vector* low, int32_t w,
                             Ntt64Vector* joined, int32_t len, Limb* p, int32_t first = 0);

// The cyclic variant: for operands of at most 4n limbs, p[0 … 4n) := the
// product modulo B^4n − 1, as a value in [0, B^4n − 1]. kOk or kStopped.
Result Ntt64PlanToLimbsCyclic(PollClock& clk, Ntt64Vector* acc, Limb* p);

// For sums of products (the half-gcd's matrices and pair updates): acc :=
// a·b, acc += a·b or acc −= a·b point by point, with the inverse's 1/n;
// scratch holds a·b for the last two. acc, a and b have the same points.
enum class Ntt64Accumulate { kSet, kAdd, kSub };
Result Ntt64PlanMulAccumulate(PollClock& clk, Ntt64Vector* acc, const Ntt64Vector& a,
                              const Ntt64Vector& b, Ntt64Accumulate how, Ntt64Vector* scratch);

// The inverse transform of a sum of products of either sign whose
// coefficients may be negative (each below 2^148 in magnitude), joined and
// carried: p[0 … len) := |sum| mod B^len, *negative its sign; exact when
// |sum| < B^(len − 1), which leaves the top limb to tell the sign. acc is
// destroyed. kOk or kStopped.
Result Ntt64PlanToLimbsSigned(PollClock& clk, Ntt64Vector* acc, int32_t len, Limb* p,
                              bool* negative);
