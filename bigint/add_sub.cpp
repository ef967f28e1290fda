// Signed addition and subtraction through the magnitude sum and difference.
#include "bigint/internal.h"

namespace {

// Hands a work array of at least top + 1 limbs to v at exact size: taken
// over when it has exactly that size, copied otherwise. 0 or 3.
Result TakeLimbs(BigInt* v, LimbBuffer* work, int64_t size, int32_t top, uint8_t negative) {
    if (size != static_cast<int64_t>(top) + 1) return BigFromLimbs(v, work->get(), top, negative);
    v->limbs = work->Release();
    v->top = top;
    v->negative = negative;
    return Result::kOk;
}

// |x| + |y| with x first (so x's top limb may end as 10000), sign clear.
// The sum gains a limb only when y reaches at least as high as x and its top
// limbs can carry out, so the exact size is nearly always known beforehand.
Result MagnitudeSum(BigInt* result, const BigInt* x, const BigInt* y) {
    const int32_t m = x->top > y->top ? x->top : y->top;
    int32_t topSum = y->limbs[y->top] + 1;
    if (x->top == y->top) topSum += x->limbs[x->top];
    const bool mayGrow = y->top >= x->top && topSum >= kLimbBase;
    const int64_t size = static_cast<int64_t>(m) + (mayGrow ? 2 : 1);
    LimbBuffer work(size);
    if (!work.ok()) return Result::kNoMemory;
    Limb* d = work.get();
    const int carry = LimbsAddCarry(x->limbs, y->limbs, d, x->top, y->top);
    if (mayGrow) d[m + 1] = static_cast<Limb>(carry);
    return TakeLimbs(result, &work, size, carry ? m + 1 : m, 0);
}

// |x| - |y| as a signed value: 0 when equal, negative when |y| is larger.
Result MagnitudeDifference(BigInt* result, const BigInt* x, const BigInt* y) {
    const int order = BigCompareMag(x, y);
    if (order == 0) return BigFromInt(result, 0);
    const BigInt* big = order < 0 ? x : y;
    const BigInt* small = order < 0 ? y : x;
    LimbBuffer work(static_cast<int64_t>(big->top) + 1);
    if (!work.ok()) return Result::kNoMemory;
    CopyLimbs(work.get(), big->limbs, big->top + 1);
    const int32_t top = LimbsSub(work.get(), small->limbs, big->top, small->top);
    return TakeLimbs(result, &work, big->top + 1, top, order < 0 ? 0 : 1);
}

// sameSignsAdd: whether equal flags call for the magnitude sum (addition)
// or the difference (subtraction). The flag is then inverted for negative x,
// so (-5) + 5 yields a zero with the flag set.
Result SignedCombine(BigInt* result, const BigInt* x, const BigInt* y, bool sameSignsAdd) {
    BigInt r = {};
    const bool sameFlags = x->negative == y->negative;
    const Result code =
        (sameFlags == sameSignsAdd) ? MagnitudeSum(&r, x, y) : MagnitudeDifference(&r, x, y);
    if (!Ok(code)) {
        BigFree(&r);
        BigSetFailed(result);
        return code;
    }
    if (x->negative) r.negative = r.negative ? 0 : 1;
    BigMove(result, &r);
    return Result::kOk;
}

}  // namespace

Result BigAdd(BigInt* result, const BigInt* x, const BigInt* y) {
    return SignedCombine(result, x, y, true);
}

Result BigSub(BigInt* result, const BigInt* x, const BigInt* y) {
    return SignedCombine(result, x, y, false);
}
