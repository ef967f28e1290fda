#include "bigint/fast_ops.h"

int FastCanonical(BigInt* v) {
    int32_t top = LimbsTrimTop(v->limbs, v->top);
    if (v->limbs[top] < kLimbBase) {
        v->top = top;
        return 0;
    }
    LimbBuffer work(int64_t(top) + 2);
    if (!work.ok()) return 3;
    CopyLimbs(work.get(), v->limbs, top + 1);
    top = LimbsNormalizeTop(work.get(), top);
    const uint8_t negative = v->negative;
    BigFree(v);
    return BigFromLimbs(v, work.get(), top, negative);
}

int FastAdd(BigInt* r, const BigInt* x, const BigInt* y) {
    const int code = BigAdd(r, x, y);
    return code != 0 ? code : FastCanonical(r);
}

int FastSub(BigInt* r, const BigInt* x, const BigInt* y) {
    const int code = BigSub(r, x, y);
    return code != 0 ? code : FastCanonical(r);
}

int FastMul(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y) {
    const int code = BigMul(ctx, r, x, y);
    return code != 0 ? code : FastCanonical(r);
}

int FastShiftDown(BigInt* r, const BigInt* v, int32_t k) {
    if (k > v->top) return BigFromInt(r, 0);
    const int32_t top = LimbsTrimTop(v->limbs + k, v->top - k);
    return BigFromLimbs(r, v->limbs + k, top, 0);
}

int FastShiftUp(BigInt* r, const BigInt* v, int32_t k) {
    if (BigIsZero(v) || k == 0) return BigFromLimbs(r, v->limbs, v->top, 0);
    LimbBuffer work(int64_t(v->top) + k + 1, true);
    if (!work.ok()) return 3;
    CopyLimbs(work.get() + k, v->limbs, v->top + 1);
    return BigFromLimbs(r, work.get(), v->top + k, 0);
}

int FastLowPart(BigInt* r, const BigInt* v, int32_t k) {
    if (k < 1) return BigFromInt(r, 0);
    const int32_t top = k > v->top ? v->top : k - 1;
    return BigFromLimbs(r, v->limbs, LimbsTrimTop(v->limbs, top), 0);
}

int FastPowerOfBase(BigInt* r, int32_t k) {
    LimbBuffer work(int64_t(k) + 1, true);
    if (!work.ok()) return 3;
    work[k] = 1;
    return BigFromLimbs(r, work.get(), k, 0);
}
