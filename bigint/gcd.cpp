// Greatest common divisor and least common multiple.
#include <cassert>

#include "bigint/dispatch.h"
#include "bigint/internal.h"

// Euclid by long division on arrays of |a|'s size. |a| > |b| > 0; the
// answer is non-negative.
Result GcdSchool(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    assert(BigCompareMag(a, b) < 0 && !BigIsZero(b));
    EuclidByDivision e;
    Result code = e.Load(a, b, static_cast<int64_t>(a->top) + 3);
    if (Ok(code)) code = e.Run(ctx, [](const Limb*, int32_t) { return true; });
    return !Ok(code) ? code : BigFromLimbs(result, e.y.get(), e.ty, 0);
}

// gcd(x, y) with the signs the calculator has always shown: when x is zero or
// |x| = |y| the answer is y as it stands, when y is zero it is x, so
// gcd(0, -5) = gcd(5, -5) = -5 while gcd(-5, 5) = 5. Otherwise the answer is
// positive. Two zeros answer 6.
Result BigGcd(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* result) {
    const bool xZero = BigIsZero(x);
    const bool yZero = BigIsZero(y);
    if (xZero && yZero) {
        BigSetFailed(result);
        return Result::kInconsistent;
    }
    const int order = BigCompareMag(x, y);
    if (xZero || order == 0) return BigCopy(result, y);
    if (yZero) return BigCopy(result, x);
    BigTemp g;
    const Result code = order < 0 ? GcdDispatch(ctx, x, y, &g.v) : GcdDispatch(ctx, y, x, &g.v);
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    g.v.negative = 0;
    BigMove(result, &g.v);
    return Result::kOk;
}

// |x y| / gcd(x, y): the sign follows the gcd's, so lcm(5, -5) = -5.
// A zero argument answers 104.
Result BigLcm(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* result) {
    if (BigIsZero(x) || BigIsZero(y)) {
        BigSetFailed(result);
        return Result::kDivisionByZero;
    }
    BigTemp product, g, q, rest;
    Result code = BigMul(ctx, &product.v, x, y);
    product.v.negative = 0;
    if (Ok(code)) code = BigGcd(ctx, x, y, &g.v);
    if (Ok(code)) code = BigDivMod(ctx, &product.v, &g.v, &q.v, &rest.v);
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    BigMove(result, &q.v);
    return Result::kOk;
}
