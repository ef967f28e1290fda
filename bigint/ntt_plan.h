// The two-prime transform in pieces, for work that multiplies one operand
// by several others or adds products before carrying (the half-gcd's
// matrices, the long modular power): an operand is transformed once, its
// residues multiplied point by point into accumulators, and each
// accumulator taken back through one inverse transform, the Chinese
// remainder and one carry pass (ntt_plan.cpp).
//
// Bounds: a coefficient is a signed sum of at most `terms` products, each a
// convolution coefficient below min(la, lb)·20000^2 (limbs up to 20000);
// the join recovers it while its magnitude stays below p1·p2 / 2 ≈ 3.9·10^16,
// which NttPlanFits checks.
#pragma once

#include <cstdint>

#include "bigint/mul_kernels.h"
#include "bigint/ntt_kernels.h"

// The points of a transform for `coefficients` coefficients: the least
// power of two not below it, at least 8.
int32_t NttPoints(int32_t coefficients);

// Whether a sum of `terms` products with factors of at most `shorter` limbs
// (the shorter factor of each product) has coefficients the two primes
// determine, at n points (n a power of two up to 2^25).
bool NttPlanFits(int32_t n, int32_t shorter, int terms);

// Residues of one operand or of a sum of products at n points, modulo both
// primes (2n values in [0, 2p)), in the transform's bit-reversed order.
class NttVector {
public:
    NttVector() = default;
    ~NttVector();
    NttVector(const NttVector&) = delete;
    NttVector& operator=(const NttVector&) = delete;

    // Room for n points; false when refused.
    bool Reset(int32_t n);
    int32_t points() const { return n_; }
    uint32_t* prime(int i) const { return r_ + int64_t(i) * n_; }

private:
    uint32_t* r_ = nullptr;
    int32_t n_ = 0;
};

// out := the transform of a[0 … la) at n points (la <= n; the cyclic
// variant folds nothing: longer operands are the caller's to fold). out is
// allocated here when it has not n points. kOk, kNoMemory, kStopped.
Result NttForward(PollClock& clk, const Limb* a, int32_t la, int32_t n, NttVector* out);

// acc := a·b, acc += a·b or acc −= a·b, point by point (any of the three
// may be the same vector). acc must have a's points.
enum class NttAccumulate { kSet, kAdd, kSub };
void NttMulAccumulate(NttVector* acc, const NttVector& a, const NttVector& b, NttAccumulate how);

// The inverse transform of acc (destroyed), joined and carried: the
// coefficients 0 … count − 1 (count <= n) into limbs p[0 … count], the top
// limb taking the carry. The sum must be non-negative and its coefficients
// too. kOk or kStopped.
Result NttToLimbs(PollClock& clk, NttVector* acc, int32_t count, Limb* p);

// The same for a sum of either sign whose coefficients may be negative:
// p[0 … count) receives |sum| mod B^count, *negative its sign, and the
// answer is kOk while |sum| < B^count. kStopped when told to stop.
Result NttToLimbsSigned(PollClock& clk, NttVector* acc, int32_t count, Limb* p, bool* negative);

// The inverse transform of acc (destroyed) joined into the exact
// coefficients c[0 … count), count <= n, for callers that combine
// coefficients of several transforms before carrying. kOk or kStopped.
Result NttToCoefficients(PollClock& clk, NttVector* acc, int32_t count, uint64_t* c);
// Non-negative coefficients c[0 … count) (each below 2^63) carried into
// limbs p[0 … count], the top limb taking the carry. kOk or kStopped.
Result CarryCoefficients(PollClock& clk, const uint64_t* c, int32_t count, Limb* p);

// The cyclic variant: the n coefficients of a product modulo x^n − 1 (the
// operands at most n limbs), carried around the circle into p[0 … n):
// the product modulo B^n − 1, as a value in [0, B^n − 1] (B^n − 1 itself
// standing for 0 only when the product is a non-zero multiple). kOk or kStopped.
Result NttToLimbsCyclic(PollClock& clk, NttVector* acc, Limb* p);

// The transform's internals, shared with the products of mul_ntt.cpp.
namespace ntt {

struct Prime {
    uint32_t p;
    uint32_t generator;
    int maxLog;  // 2^maxLog divides p − 1
};

constexpr Prime kP1 = {469762049u, 3, 26};  // 7·2^26 + 1
constexpr Prime kP2 = {167772161u, 3, 25};  // 5·2^25 + 1
constexpr Prime kPrimes[2] = {kP1, kP2};
constexpr int kMaxLog = 25;

uint32_t PowMod(uint64_t b, uint64_t e, uint32_t m);

// The root table of one prime for one transform length. Tables up to 2^20
// points are kept between calls and grown on the calling thread only (the
// program's arithmetic runs on one thread); a helper thread reads a table
// made before it starts.
class RootTable {
public:
    RootTable() = default;
    ~RootTable() { delete[] owned_; }
    RootTable(const RootTable&) = delete;
    RootTable& operator=(const RootTable&) = delete;

    // kOk, kNoMemory or kStopped (the kept table then stays as it was).
    Result Make(PollClock& clk, int index, int32_t n);
    const uint32_t* get() const { return roots_; }

private:
    const uint32_t* roots_ = nullptr;
    uint32_t* owned_ = nullptr;
};

// In place, n a power of two; false when told to stop. Forward leaves the
// points in bit-reversed order, Inverse takes them so and answers n times
// the natural-order values.
bool Forward(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n);
bool Inverse(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n);

// R^2 / n in Montgomery form: the factor that undoes the product's R^−1 and
// the inverse transform's n.
uint32_t PointScale(const Mont& mt, int32_t n);

// The coefficients of a convolution, joined from its residues modulo the
// two primes a block at a time; each is below p1·p2 < 2^57.
class Coefficients {
public:
    Coefficients(const uint32_t* r1, const uint32_t* r2);
    void Block(int32_t from, int32_t count, uint64_t* out) const {
        ActiveNttKernels().crt(pair_, r1_ + from, r2_ + from, out, count);
    }

private:
    const uint32_t* r1_;
    const uint32_t* r2_;
    CrtPair pair_;
};

// Coefficients per block of the passes over them, and between their polls (a
// coefficient costs about as much as sixteen butterflies).
constexpr int32_t kBlock = 256;
constexpr int32_t kBlocksPerTick = 64;
constexpr int64_t kBlockWork = 16 * kBlock;

// Carries the coefficients 0 … count − 1 into limbs p[0 … count), each first
// mapped to (v >= p1·p2 / 2 ? v − p1·p2 : v) + bias when bias is non-zero;
// *top receives the carry out of the last limb. kOk or kStopped.
Result CarryIntoLimbs(const Coefficients& c, int32_t count, Limb* p, PollClock& clk, uint64_t bias,
                      uint64_t* top);

}  // namespace ntt
