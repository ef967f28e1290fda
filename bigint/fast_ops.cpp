#include "bigint/fast_ops.h"

#include "bigint/dispatch.h"

Result FastCanonical(BigInt* v) {
    int32_t top = LimbsTrimTop(v->limbs, v->top);
    if (v->limbs[top] < kLimbBase) {
        v->top = top;
        return Result::kOk;
    }
    LimbBuffer work(int64_t(top) + 2);
    if (!work.ok()) return Result::kNoMemory;
    CopyLimbs(work.get(), v->limbs, top + 1);
    top = LimbsNormalizeTop(work.get(), top);
    const uint8_t negative = v->negative;
    BigFree(v);
    return BigFromLimbs(v, work.get(), top, negative);
}

Result FastAdd(BigInt* r, const BigInt* x, const BigInt* y) {
    const Result code = BigAdd(r, x, y);
    return !Ok(code) ? code : FastCanonical(r);
}

Result FastSub(BigInt* r, const BigInt* x, const BigInt* y) {
    const Result code = BigSub(r, x, y);
    return !Ok(code) ? code : FastCanonical(r);
}

Result FastMul(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y) {
    const Result code = BigMul(ctx, r, x, y);
    return !Ok(code) ? code : FastCanonical(r);
}

Result FastShiftDown(BigInt* r, const BigInt* v, int32_t k) {
    if (k > v->top) return BigFromInt(r, 0);
    const int32_t top = LimbsTrimTop(v->limbs + k, v->top - k);
    return BigFromLimbs(r, v->limbs + k, top, 0);
}

Result FastShiftUp(BigInt* r, const BigInt* v, int32_t k) {
    if (BigIsZero(v) || k == 0) return BigFromLimbs(r, v->limbs, v->top, 0);
    LimbBuffer work(int64_t(v->top) + k + 1, true);
    if (!work.ok()) return Result::kNoMemory;
    CopyLimbs(work.get() + k, v->limbs, v->top + 1);
    return BigFromLimbs(r, work.get(), v->top + k, 0);
}

Result FastLowPart(BigInt* r, const BigInt* v, int32_t k) {
    if (k < 1) return BigFromInt(r, 0);
    const int32_t top = k > v->top ? v->top : k - 1;
    return BigFromLimbs(r, v->limbs, LimbsTrimTop(v->limbs, top), 0);
}

Result FastPowerOfBase(BigInt* r, int32_t k) {
    LimbBuffer work(int64_t(k) + 1, true);
    if (!work.ok()) return Result::kNoMemory;
    work[k] = 1;
    return BigFromLimbs(r, work.get(), k, 0);
}

Result FastDivMod(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* q, BigInt* r) {
    const int order = BigCompareMag(x, d);
    if (order > 0 || BigIsZero(x)) {
        const Result code = BigFromInt(q, 0);
        return !Ok(code) ? code : BigFromLimbs(r, x->limbs, x->top, 0);
    }
    if (order == 0) {
        const Result code = BigFromInt(q, 1);
        return !Ok(code) ? code : BigFromInt(r, 0);
    }
    if (BigIsOne(d)) {
        const Result code = BigFromLimbs(q, x->limbs, x->top, 0);
        return !Ok(code) ? code : BigFromInt(r, 0);
    }
    const BigInt xm = BigMagnitudeView(x), dm = BigMagnitudeView(d);
    const Result code = DivModDispatch(ctx, &xm, &dm, q, r);
    if (Ok(code)) {
        q->negative = 0;
        r->negative = 0;
    }
    return code;
}
