// Square roots by the recursive square root with remainder, cube roots by
// Newton's iteration from above.
//
// Square root: split a = a3·β³ + a2·β² + a1·β + a0 (β = B^l, l = (n − 1)/4
// limbs, so a3 has more than l limbs and a3 >= β/4 holds without scaling).
// The root s' and remainder r' of a3·β + a2 give q, u = divmod(r'·β + a1, 2s'),
// then s = s'·β + q and r = u·β + a0 − q², corrected once when negative.
// Cost: one division of half size and one square of quarter size per level.
//
// Cube root: the root y' of x's leading limbs (x without its low 3t limbs)
// gives the upper bound (y' + 1)·B^t; one Newton step y ← (2y + x / y²) / 3
// brings it within a few units above the root, and steps of one with the
// cube kept by differences end on the floor of the root.
//
// Allocation: none of its own; its records come from the operations it
// calls, which answer code 3 for a refused array.
#include "bigint/dispatch.h"
#include "bigint/fast_paths.h"
#include "bigint/thresholds.h"

namespace {

Result AddSmall(BigInt* r, const BigInt* x, int32_t n) {
    BigTemp t;
    const Result code = BigFromInt(&t.v, n);
    return !Ok(code) ? code : FastAdd(r, x, &t.v);
}

// s, r with s² <= a < (s + 1)², r = a − s², for a >= 0.
Result SqrtRem(CalcContext* ctx, const BigInt* a, BigInt* s, BigInt* r) {
    const int32_t n = a->top + 1;
    const int32_t l = (n - 1) / 4;
    if (l == 0 || n < gFastThresholds.sqrtRecursive) {
        BigTemp sq;
        Result code = SqrtSchool(ctx, a, s);
        if (Ok(code) || code == 1) code = FastMul(ctx, &sq.v, s, s);
        return !Ok(code) ? code : FastSub(r, a, &sq.v);
    }
    BigTemp top, s1, r1, a1, num, num1, two, q, u, qq, t, t1, a0, rr, ss;
    Result code = FastShiftDown(&top.v, a, 2 * l);
    if (Ok(code)) code = SqrtRem(ctx, &top.v, &s1.v, &r1.v);
    // num = r'·β + a1, divided by 2s'
    if (Ok(code)) code = FastShiftDown(&t.v, a, l);
    if (Ok(code)) code = FastLowPart(&a1.v, &t.v, l);
    if (Ok(code)) code = FastShiftUp(&num1.v, &r1.v, l);
    if (Ok(code)) code = FastAdd(&num.v, &num1.v, &a1.v);
    if (Ok(code)) code = FastAdd(&two.v, &s1.v, &s1.v);
    if (Ok(code)) code = FastDivMod(ctx, &num.v, &two.v, &q.v, &u.v);
    // s = s'·β + q;  r = u·β + a0 − q²
    if (Ok(code)) code = FastShiftUp(&t1.v, &s1.v, l);
    if (Ok(code)) code = FastAdd(&ss.v, &t1.v, &q.v);
    if (Ok(code)) code = FastMul(ctx, &qq.v, &q.v, &q.v);
    if (Ok(code)) code = FastLowPart(&a0.v, a, l);
    BigFree(&t.v);
    if (Ok(code)) code = FastShiftUp(&t.v, &u.v, l);
    BigFree(&t1.v);
    if (Ok(code)) code = FastAdd(&t1.v, &t.v, &a0.v);
    if (Ok(code)) code = FastSub(&rr.v, &t1.v, &qq.v);
    // One correction suffices in theory; the loop also guards a remainder
    // that came out too large.
    while (Ok(code) && FastIsNegative(&rr.v)) {
        BigTemp s2, r2, r3;
        code = FastAdd(&s2.v, &ss.v, &ss.v);                // 2s
        if (Ok(code)) code = FastAdd(&r2.v, &rr.v, &s2.v);  // r + 2s
        if (Ok(code)) code = AddSmall(&r3.v, &r2.v, -1);    // r + 2s − 1
        BigFree(&s2.v);
        if (Ok(code)) code = AddSmall(&s2.v, &ss.v, -1);
        if (Ok(code)) {
            BigReplace(&rr.v, &r3.v);
            BigReplace(&ss.v, &s2.v);
        }
    }
    if (Ok(code)) {
        BigMove(s, &ss.v);
        BigMove(r, &rr.v);
    }
    return code;
}

// next := floor((2y + floor(x / y²)) / 3), Newton's step for the cube root;
// never below the floor of the root, and below y while y is above it.
Result NewtonStep(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* next) {
    BigTemp sq, quo, rem, twice, sum, three, r3;
    Result code = FastMul(ctx, &sq.v, y, y);
    if (Ok(code)) code = FastDivMod(ctx, x, &sq.v, &quo.v, &rem.v);
    if (Ok(code)) code = FastAdd(&twice.v, y, y);
    if (Ok(code)) code = FastAdd(&sum.v, &twice.v, &quo.v);
    if (Ok(code)) code = BigFromInt(&three.v, 3);
    if (Ok(code)) code = FastDivMod(ctx, &sum.v, &three.v, next, &r3.v);
    return code;
}

// Lowers y >= floor(cbrt(x)) to it by steps of one, keeping y² and y³ by
// differences: (y − 1)² = y² − 2y + 1, (y − 1)³ = y³ − 3y² + 3y − 1. Gives
// up (*done false) after a few steps, leaving y where it got to.
Result StepDownToFloor(CalcContext* ctx, const BigInt* x, BigInt* y, bool* done) {
    constexpr int kMaxSteps = 8;
    BigTemp sq, cube;
    Result code = FastMul(ctx, &sq.v, y, y);
    if (Ok(code)) code = FastMul(ctx, &cube.v, &sq.v, y);
    *done = false;
    for (int i = 0; Ok(code) && i <= kMaxSteps; ++i) {
        if (BigCompareMag(&cube.v, x) >= 0) {  // y³ <= x
            *done = true;
            break;
        }
        if (i == kMaxSteps) break;
        BigTemp y2, y3, sq2, sq3, d, c1, c2, s1, s2, y1;
        code = FastAdd(&y2.v, y, y);
        if (Ok(code)) code = FastAdd(&y3.v, &y2.v, y);
        if (Ok(code)) code = FastAdd(&sq2.v, &sq.v, &sq.v);
        if (Ok(code)) code = FastAdd(&sq3.v, &sq2.v, &sq.v);
        if (Ok(code)) code = FastSub(&d.v, &sq3.v, &y3.v);  // 3y² − 3y
        if (Ok(code)) code = FastSub(&c1.v, &cube.v, &d.v);
        if (Ok(code)) code = AddSmall(&c2.v, &c1.v, -1);
        if (Ok(code)) code = FastSub(&s1.v, &sq.v, &y2.v);
        if (Ok(code)) code = AddSmall(&s2.v, &s1.v, 1);
        if (Ok(code)) code = AddSmall(&y1.v, y, -1);
        if (Ok(code)) {
            BigReplace(&cube.v, &c2.v);
            BigReplace(&sq.v, &s2.v);
            BigReplace(y, &y1.v);
        }
    }
    return code;
}

// floor(cbrt(x)) for x >= 0.
Result CbrtFloor(CalcContext* ctx, const BigInt* x, BigInt* y) {
    const int32_t n = x->top + 1;
    if (n < gFastThresholds.cbrtNewton || n < 7) {
        const Result code = CbrtSchool(ctx, x, y);
        if (code == Result::kOk || code == kRootInexact) y->negative = 0;
        return code == kRootInexact ? Result::kOk : code;
    }
    const int32_t t = n / 6;  // the leading part keeps about half the root's limbs
    BigTemp lead, root, up;
    Result code = FastShiftDown(&lead.v, x, 3 * t);
    if (Ok(code)) code = CbrtFloor(ctx, &lead.v, &root.v);
    if (Ok(code)) code = AddSmall(&up.v, &root.v, 1);
    BigInt cur = {};
    if (Ok(code)) code = FastShiftUp(&cur, &up.v, t);
    // One step from the bound squares its relative error (below 1/y'), which
    // leaves it a few units above the root: steps of one finish. Should more
    // be needed, Newton's steps go on until one does not decrease.
    bool done = false;
    if (Ok(code)) {
        BigTemp next;
        code = NewtonStep(ctx, x, &cur, &next.v);
        if (Ok(code)) {
            BigReplace(&cur, &next.v);
            code = StepDownToFloor(ctx, x, &cur, &done);
        }
    }
    while (Ok(code) && !done) {
        BigTemp next;
        code = NewtonStep(ctx, x, &cur, &next.v);
        if (!Ok(code) || BigCompareMag(&next.v, &cur) <= 0) break;
        BigReplace(&cur, &next.v);
    }
    if (Ok(code))
        BigMove(y, &cur);
    else
        BigFree(&cur);
    return code;
}

}  // namespace

Result SqrtRecursive(CalcContext* ctx, const BigInt* x, BigInt* result) {
    BigTemp r;
    const BigInt xm = BigMagnitudeView(x);
    const Result code = SqrtRem(ctx, &xm, result, &r.v);
    if (!Ok(code)) return code;
    result->negative = 0;
    return BigIsZero(&r.v) ? Result::kOk : kRootInexact;
}

Result CbrtNewton(CalcContext* ctx, const BigInt* x, BigInt* result) {
    const BigInt xm = BigMagnitudeView(x);
    BigTemp cube, sq;
    Result code = CbrtFloor(ctx, &xm, result);
    if (Ok(code)) code = FastMul(ctx, &sq.v, result, result);
    if (Ok(code)) code = FastMul(ctx, &cube.v, &sq.v, result);
    if (!Ok(code)) return code;
    result->negative = x->negative;
    return BigCompareMag(&cube.v, &xm) == 0 ? Result::kOk : kRootInexact;
}
