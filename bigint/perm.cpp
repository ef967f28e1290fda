// Permutations, factorials and binomial coefficients.
#include <cassert>
#include <cmath>

#include "bigint/dispatch.h"
#include "bigint/internal.h"

// (c + 1) × … × n. Both buffers are sized once from the sum of natural
// logarithms, about 2.3 times the room the product needs, so the growing
// product is never reallocated. Each factor multiplies the product row by
// row over the product's limbs, one poll per row.
Result RangeProductSchool(CalcContext* ctx, int32_t c, int32_t n, BigInt* result) {
    assert(0 <= c && c < n);
    long double logSum = 0.0L;
    for (int32_t i = c + 1; i <= n; ++i) logSum += std::log(static_cast<long double>(i));
    const int64_t size = (std::llround(logSum) + 20) / 4;
    LimbBuffer product(size), next(size);
    if (!product.ok() || !next.ok()) return Result::kNoMemory;
    product[0] = 1;
    int32_t top = 0;
    while (c < n) {
        ++c;
        const Limb factor[2] = {static_cast<Limb>(c % kLimbBase), static_cast<Limb>(c / kLimbBase)};
        const int32_t tf = c < kLimbBase ? 0 : 1;
        ZeroLimbs(next.get(), top + tf + 2);
        top = LimbsMul(ctx, factor, product.get(), next.get(), tf, top);
        if (top < 0) return Result::kStopped;
        product.Swap(next);
    }
    return BigFromLimbs(result, product.get(), top, 0);
}

// n (n - 1) … (n - r + 1) for 1 <= r <= n < 100000000, else 17.
Result BigPerm(CalcContext* ctx, BigInt* result, const BigInt* n, const BigInt* r) {
    int32_t nn = 0, rr = 0;
    if (!BigToInt(n, &nn) || !BigToInt(r, &rr) || rr < 1 || nn < rr) {
        BigSetFailed(result);
        return Result::kOutOfBounds;
    }
    BigTemp p;
    const Result code = RangeProductDispatch(ctx, nn - rr, nn, &p.v);
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    p.v.negative = 0;
    BigMove(result, &p.v);
    return Result::kOk;
}

// n! for n of 1 … 99999999; 0! answers 17 like any other empty product.
Result BigFact(CalcContext* ctx, BigInt* result, const BigInt* n) {
    return BigPerm(ctx, result, n, n);
}

// C(n, k), negative n by C(n, k) = (-1)^k C(|n| + k - 1, k). The work is
// C(n, j), j the smaller of k and n - k; when that is 0 (n = -1), or n is
// 100000000 or more, the answer is 17 as for a permutation. n = |k| with n >= 0 answers
// 1 even for k = -n.
Result BigBinomial(CalcContext* ctx, BigInt* result, const BigInt* n, const BigInt* k) {
    const bool negativeN = BigIsNegative(n);
    if (BigIsZero(k) || (!negativeN && BigCompareMag(n, k) == 0)) return BigFromInt(result, 1);
    if (BigIsNegative(k) || (!negativeN && BigCompareMag(n, k) > 0)) {
        return BigFromInt(result, 0);
    }
    BigTemp N, m, j, q;
    uint8_t sign = 0;
    Result code = Result::kOk;
    if (negativeN) {
        sign = BigIsEven(k) ? 0 : 1;
        BigTemp one;
        const BigInt magnitude = BigMagnitudeView(n);
        code = BigFromInt(&one.v, 1);
        if (Ok(code)) code = BigSub(&m.v, &magnitude, &one.v);
        if (Ok(code)) code = BigAdd(&N.v, &m.v, k);
    } else {
        code = BigCopy(&N.v, n);
        if (Ok(code)) code = BigCopy(&m.v, k);
    }
    if (Ok(code)) code = BigSub(&j.v, &N.v, &m.v);
    if (Ok(code) && BigCompareMag(&j.v, &m.v) < 0) {
        BigFree(&j.v);
        code = BigCopy(&j.v, &m.v);
    }
    int32_t nn = 0, jj = 0;
    if (Ok(code)) {
        const bool fits = BigToInt(&N.v, &nn) && BigToInt(&j.v, &jj) && jj >= 1 && nn >= jj;
        code = fits ? BinomialDispatch(ctx, nn, jj, &q.v) : Result::kOutOfBounds;
    }
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    q.v.negative = sign;
    BigMove(result, &q.v);
    return Result::kOk;
}
