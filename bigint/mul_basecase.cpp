// Schoolbook product and square for the leaves of the fast kernels.
//
// Column sums are gathered in 64-bit accumulators and reduced once at the
// end, so the inner loop is a plain multiply-add the compiler can vectorise
// (LimbsMul reduces every step because its rows must fit 32 bits). Limbs up
// to 20000 give products below 4e8: no accumulator can overflow.
//
// Allocation: column sums in nothrow scratch (Scratch); a refused one answers code 3,
// on which MulLimbs may fall back to the row-by-row product (mul_dispatch.cpp).
#include <cassert>

#include "bigint/mul_kernels.h"

namespace {

void Normalise(const uint64_t* acc, int32_t n, Limb* p) {
    uint64_t carry = 0;
    for (int32_t k = 0; k < n - 1; ++k) {
        uint64_t v = acc[k] + carry;
        carry = v / kLimbBase;
        p[k] = static_cast<Limb>(v - carry * kLimbBase);
    }
    uint64_t top = acc[n - 1] + carry;
    assert(top < 32768);
    p[n - 1] = static_cast<Limb>(top);
}

}  // namespace

Result MulBasecase(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    assert(la >= lb && lb >= 1);
    const int32_t n = la + lb;
    Scratch<uint64_t> acc(n);
    if (!acc) return Result::kNoMemory;
    uint64_t* c = acc.get();
    for (int32_t k = 0; k < n; ++k) c[k] = 0;
    for (int32_t i = 0; i < lb; ++i) {
        const uint32_t bi = static_cast<uint16_t>(b[i]);
        if (bi == 0) continue;
        uint64_t* row = c + i;
        // 32 × 32 → 64-bit products: the form the vector units multiply.
        for (int32_t j = 0; j < la; ++j) row[j] += uint64_t(bi) * uint32_t(uint16_t(a[j]));
    }
    Normalise(c, n, p);
    return clk.Tick(int64_t(la) * lb) ? Result::kStopped : Result::kOk;
}

Result SqrBasecase(PollClock& clk, const Limb* a, int32_t la, Limb* p) {
    const int32_t n = 2 * la;
    Scratch<uint64_t> acc(n);
    if (!acc) return Result::kNoMemory;
    uint64_t* c = acc.get();
    for (int32_t k = 0; k < n; ++k) c[k] = 0;
    // Off-diagonal products once, doubled afterwards, then the squares.
    for (int32_t i = 0; i < la; ++i) {
        const uint32_t ai = static_cast<uint16_t>(a[i]);
        uint64_t* row = c + 2 * i + 1;
        const Limb* rest = a + i + 1;
        for (int32_t j = 0; j < la - i - 1; ++j)
            row[j] += uint64_t(ai) * uint32_t(uint16_t(rest[j]));
    }
    for (int32_t k = 0; k < n; ++k) c[k] *= 2;
    for (int32_t i = 0; i < la; ++i) {
        const uint64_t ai = static_cast<uint16_t>(a[i]);
        c[2 * i] += ai * ai;
    }
    Normalise(c, n, p);
    return clk.Tick(int64_t(la) * la / 2 + la) ? Result::kStopped : Result::kOk;
}
