// Greatest common divisor and least common multiple.
//
// A divisor of at most three limbs (below 10^12) reduces the long operand
// by one pass of remainders on machine words, each a multiplication by the
// divisor's reciprocal, and the rest is Euclid on words: the gcd of a
// 756-million-digit number and 7 then costs one pass, not a long division.
#include <cassert>

#include "bigint/dispatch.h"
#include "bigint/internal.h"
#include "bigint/poll_clock.h"

namespace {

// Divisors below this take the word path.
constexpr int32_t kShortLimbs = 3;

// |a| mod d for 0 < d < 10^12 in one pass from the top, a step taking in
// two limbs when d < 10^8 and one otherwise, so that rest·step + digits
// stays below 10^16 < 2^54. The quotient of such a v by d is
// mulhi(v, ⌊(2^64 − 1)/d⌋) short by at most two, which the exact remainder
// corrects. kOk or kStopped.
Result ShortRemainder(CalcContext* ctx, const BigInt* a, uint64_t d, uint64_t* rest) {
    auto limb = [](Limb v) { return uint64_t(uint16_t(v)); };
    const uint64_t inverse = ~uint64_t(0) / d;
    auto reduce = [d, inverse](uint64_t v) {
        const uint64_t q = uint64_t((unsigned __int128)v * inverse >> 64);
        uint64_t r = v - q * d;
        while (r >= d) r -= d;
        return r;
    };
    PollClock clk(ctx);
    const int32_t n = a->top + 1;
    uint64_t r = 0;
    int32_t i = n - 1;
    if (d < uint64_t(kLimbBase) * kLimbBase) {
        constexpr uint64_t kPair = uint64_t(kLimbBase) * kLimbBase;
        if (n % 2 != 0) r = limb(a->limbs[i--]) % d;
        for (; i > 0; i -= 2) {
            r = reduce(r * kPair + limb(a->limbs[i - 1]) + limb(a->limbs[i]) * kLimbBase);
            if ((i & 0xFFFF) == 1 && clk.Tick(4 * 0x10000)) return Result::kStopped;
        }
    } else {
        for (; i >= 0; --i) {
            r = reduce(r * kLimbBase + limb(a->limbs[i]));
            if ((i & 0xFFFF) == 0 && clk.Tick(4 * 0x10000)) return Result::kStopped;
        }
    }
    *rest = r;
    return Result::kOk;
}

// gcd(|a|, |b|) for |b| of at most kShortLimbs limbs, |a| > |b| > 0.
Result GcdShort(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    uint64_t x = 0;
    for (int32_t i = b->top; i >= 0; --i) x = x * kLimbBase + uint64_t(uint16_t(b->limbs[i]));
    uint64_t y = 0;
    const Result code = ShortRemainder(ctx, a, x, &y);
    if (!Ok(code)) return code;
    while (y != 0) {
        const uint64_t r = x % y;
        x = y;
        y = r;
    }
    Limb limbs[kShortLimbs] = {};
    int32_t top = 0;
    for (int32_t i = 0; i < kShortLimbs; ++i, x /= kLimbBase) {
        limbs[i] = static_cast<Limb>(x % kLimbBase);
        if (limbs[i] != 0) top = i;
    }
    return BigFromLimbs(result, limbs, top, 0);
}

}  // namespace

// Euclid by long division on arrays of |a|'s size. |a| > |b| > 0; the
// answer is non-negative.
Result GcdSchool(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    assert(BigCompareMag(a, b) < 0 && !BigIsZero(b));
    if (b->top < kShortLimbs) return GcdShort(ctx, a, b, result);
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
