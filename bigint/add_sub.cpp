// Signed addition and subtraction through the magnitude sum and difference.
#include "bigint/internal.h"

namespace {

// |x| + |y| with x first (so x's top limb may end as 10000), sign clear.
int MagnitudeSum(BigInt* result, const BigInt* x, const BigInt* y) {
    const int32_t m = x->top > y->top ? x->top : y->top;
    LimbBuffer work(static_cast<int64_t>(m) + 10);
    if (!work.ok()) return 3;
    const int32_t top = LimbsAdd(x->limbs, y->limbs, work.get(), x->top, y->top);
    return BigFromLimbs(result, work.get(), top, 0);
}

// |x| - |y| as a signed value: 0 when equal, negative when |y| is larger.
int MagnitudeDifference(BigInt* result, const BigInt* x, const BigInt* y) {
    const int order = BigCompareMag(x, y);
    if (order == 0) return BigFromInt(result, 0);
    const BigInt* big = order < 0 ? x : y;
    const BigInt* small = order < 0 ? y : x;
    LimbBuffer work(static_cast<int64_t>(big->top) + 10);
    if (!work.ok()) return 3;
    CopyLimbs(work.get(), big->limbs, big->top + 1);
    const int32_t top = LimbsSub(work.get(), small->limbs, big->top, small->top);
    return BigFromLimbs(result, work.get(), top, order < 0 ? 0 : 1);
}

// sameSignsAdd: whether equal flags call for the magnitude sum (addition)
// or the difference (subtraction). The flag is then inverted for negative x,
// so (-5) + 5 yields a zero with the flag set.
int SignedCombine(BigInt* result, const BigInt* x, const BigInt* y, bool sameSignsAdd) {
    BigInt r = {};
    const bool sameFlags = x->negative == y->negative;
    const int code = (sameFlags == sameSignsAdd) ? MagnitudeSum(&r, x, y)
                                                 : MagnitudeDifference(&r, x, y);
    if (code != 0) {
        BigFree(&r);
        BigSetFailed(result);
        return code;
    }
    if (x->negative) r.negative = r.negative ? 0 : 1;
    BigMove(result, &r);
    return 0;
}

}  // namespace

int BigAdd(BigInt* result, const BigInt* x, const BigInt* y) {
    return SignedCombine(result, x, y, true);
}

int BigSub(BigInt* result, const BigInt* x, const BigInt* y) {
    return SignedCombine(result, x, y, false);
}
