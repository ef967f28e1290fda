// The multiplication kernels behind MulLimbs, for the fast paths of this
// folder.
//
// Common contract of every kernel here: a has la limbs, b has lb limbs,
// la >= lb >= 1; limbs are 0..9999 except that the top limb of an operand may
// be larger (LimbsAdd leaves 10000, Karatsuba's half sums leave up to 2;
// at most 20000). The kernel writes exactly la + lb limbs to p, which must not
// overlap a or b: every limb is normalised except the top one, which holds
// what is left and stays below 32768 for operands whose value is below
// 10000^la and 10000^lb (or equals them). Squaring kernels take a alone.
// Answers Result::kOk, Result::kStopped when the poll clock asked to stop, or
// Result::kNoMemory.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>

#include "bigint/poll_clock.h"
#include "bigint/record.h"
#include "resources/result.h"

// An owned scratch array of n plain elements (left undefined) from nothrow
// new, as every allocation of the folder (alloc.h); null when it failed.
template <typename T>
class Scratch {
public:
    explicit Scratch(int64_t n) : p_(new (std::nothrow) T[size_t(n > 0 ? n : 1)]) {}
    ~Scratch() { delete[] p_; }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    T* get() const { return p_; }
    explicit operator bool() const { return p_ != nullptr; }
    T& operator[](int64_t i) const { return p_[i]; }

private:
    T* p_;
};

// The chooser: schoolbook, Karatsuba, transform or cutting into balanced
// pieces, by the sizes and gFastThresholds.
Result MulRec(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p);
Result SqrRec(PollClock& clk, const Limb* a, int32_t la, Limb* p);

// p := a·b (la + lb limbs) piece by piece of a: pieces of `piece` limbs
// (the last may be shorter), each product added into place.
Result MulPieces(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb,
                 int32_t piece, Limb* p);

Result MulBasecase(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p);
Result SqrBasecase(PollClock& clk, const Limb* a, int32_t la, Limb* p);
// Requires lb > la / 2.
Result MulKaratsuba(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p);
Result SqrKaratsuba(PollClock& clk, const Limb* a, int32_t la, Limb* p);
// Requires la + lb <= NttMaxLength().
Result MulNtt(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p);
Result SqrNtt(PollClock& clk, const Limb* a, int32_t la, Limb* p);
// la + lb of the longest transform product: gFastThresholds.nttMaxLength,
// never more than the primes allow (2^25 + 1).
int32_t NttMaxLength();
// The linear convolution c[k] = Σ a[i]·b[k − i], k = 0 … la + lb − 2, of
// 16-bit words (b null: a with itself, lb = la), exact: a coefficient is
// below min(la, lb)·2^32 <= 2^56, under the primes' product. For products in
// other bases than the limbs'. Requires la + lb <= NttMaxLength().
Result NttConvolve16(PollClock& clk, const uint16_t* a, int32_t la, const uint16_t* b, int32_t lb,
                     uint64_t* c);

// The least k with 2^k >= n (0 for n <= 1): transform lengths.
inline int CeilLog2(int64_t n) {
    int k = 0;
    while ((int64_t(1) << k) < n) ++k;
    return k;
}

// p[0..lp) += t[0..lt), lt <= lp, carries propagated; the top limb of p takes
// the final carry unreduced.
void LimbsAddInto(Limb* p, int32_t lp, const Limb* t, int32_t lt);
// t[0..lt) -= s[0..ls), ls <= lt, for t >= s in value; borrows propagated.
void LimbsSubFrom(Limb* t, int32_t lt, const Limb* s, int32_t ls);
// Length without leading zero limbs, at least 1.
int32_t LimbsTrim(const Limb* a, int32_t la);
