// Long division in base 10000 with a quotient-limb estimate that never
// overshoots: each estimate is subtracted and the limb asked again until the
// estimate is 0.
#include <cassert>

#include "bigint/dispatch.h"
#include "bigint/fast_ops.h"
#include "bigint/internal.h"

// A lower bound of the next quotient limb of span w (top tw) by d (top td):
// dividing by d's top limb plus one can only undershoot. 10000 signals a span
// too long for one limb, which a correct division never produces.
int QuotientDigitEstimate(const Limb* w, const Limb* d, int32_t tw, int32_t td) {
    if (LimbsCompare(w, d, tw, td) > 0) return 0;
    if (tw > td + 1) return kLimbBase;
    if (tw == td) {
        const int e = w[tw] / (d[td] + 1);
        return e > 0 ? e : 1;
    }
    return (w[tw] * kLimbBase + w[td]) / (d[td] + 1);
}

// n (top *tn, holding |n| > |d|) is divided by d (top *td); the remainder is
// left in n with its top in *tn, the quotient in q with its top in *td.
// n and q hold *tn + 1 limbs, s holds the divisor's top + 2. One poll per
// step. Answers 0, 1 for an impossible estimate, -1 when stopped.
//
// d must not be zero; the one caller that lets a zero through (the modular
// inverse) relies on this loop subtracting zero until the poll stops it.
Result LimbsDivide(CalcContext* ctx, Limb* n, const Limb* d, Limb* s, Limb* q, int32_t* tn,
                   int32_t* td) {
    const int32_t topN = *tn;
    const int32_t topD = *td;
    assert(topD >= 0 && topN >= topD && n != q);
    int32_t r = topN;           // top of the working span
    int32_t pos = topN - topD;  // index of the quotient limb being formed
    int32_t w = topN + 1;       // next quotient write index, counting down
    int64_t digit = 0;          // wide: the zero-divisor loop keeps adding
    while (pos >= 0) {
        if (r > pos && n[r] == 0) {
            --r;
            continue;
        }
        int e = 0;
        if (r >= topD + pos) {
            e = QuotientDigitEstimate(n + pos, d, r - pos, topD);
            if (e > kLimbBase - 1) return kImpossibleEstimate;
            if (e > 0) {
                CopyLimbs(s, d, topD + 1);
                const int32_t ts = LimbsMulSmall(s, e, topD);
                LimbsSub(n + pos, s, r - pos, ts);
                digit += e;
            }
        }
        if (e == 0) {
            q[--w] = static_cast<Limb>(digit);
            --pos;
            digit = 0;
        }
        if (ctx->ShouldStop()) return Result::kStopped;
    }
    int32_t qt = topN;
    while (qt > w && q[qt] == 0) --qt;
    qt -= w;
    CopyLimbs(q, q + w, qt + 1);
    *tn = r;
    *td = qt;
    return Result::kOk;
}

// |x| > |d| > 1 on normalised copies, so a top limb of 10000 left by an
// addition divides by its value.
Result DivModSchool(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                    BigInt* remainder) {
    assert(BigCompareMag(x, d) < 0 && !BigIsOne(d));
    const int64_t size = static_cast<int64_t>(x->top) + 2;
    LimbBuffer rem(size), quo(size), dn(static_cast<int64_t>(d->top) + 2),
        scratch(static_cast<int64_t>(d->top) + 3);
    if (!rem.ok() || !quo.ok() || !dn.ok() || !scratch.ok()) return Result::kNoMemory;
    CopyLimbs(rem.get(), x->limbs, x->top + 1);
    CopyLimbs(dn.get(), d->limbs, d->top + 1);
    int32_t tn = LimbsNormalizeTop(rem.get(), x->top);
    int32_t td = LimbsNormalizeTop(dn.get(), d->top);
    const Result code = LimbsDivide(ctx, rem.get(), dn.get(), scratch.get(), quo.get(), &tn, &td);
    if (code < 0) return code;
    if (BigFromLimbs(quotient, quo.get(), td, x->negative != d->negative) != 0)
        return Result::kNoMemory;
    if (BigFromLimbs(remainder, rem.get(), tn, x->negative) != 0) {
        BigFree(quotient);
        return Result::kNoMemory;
    }
    return Result::kOk;
}

// Truncating division: the quotient rounds toward zero and the remainder
// takes the dividend's sign (7 / -2 = -3 rest 1; -7 / 2 = -3 rest -1).
// Division by zero answers 104 with both results 0; a zero read with more
// than one limb counts as zero here, where it would otherwise stall the
// long division. The copies of x (a divisor of 1, a dividend below the
// divisor) are made in polled slices: x may have 10^8 digits.
Result BigDivMod(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                 BigInt* remainder) {
    BigInt q = {}, r = {};
    Result code = Result::kOk;
    if (BigIsZeroMagnitude(d)) {
        code = Result::kDivisionByZero;
    } else if (BigIsZero(x)) {
        code = Result::kOk;
    } else if (BigIsOne(d)) {
        code = FastCopyPolled(ctx, &q, x);
        q.negative = d->negative != x->negative;
    } else {
        const int order = BigCompareMag(x, d);
        if (order == 0) {
            code = BigFromInt(&q, 1);
            q.negative = d->negative != x->negative;
        } else if (order > 0) {
            code = FastCopyPolled(ctx, &r, x);
            r.negative = x->negative;
        } else {
            code = DivModDispatch(ctx, x, d, &q, &r);
        }
    }
    if (!Ok(code)) {
        BigFree(&q);
        BigFree(&r);
    }
    // Zeros for the parts not made (a failure, or nothing to divide). Should
    // one limb not be had, the part stays released and a success becomes
    // code 3: a caller would go on reading the released part's limbs.
    if (!q.limbs && BigFromInt(&q, 0) != 0 && Ok(code)) code = Result::kNoMemory;
    if (!r.limbs && BigFromInt(&r, 0) != 0 && Ok(code)) code = Result::kNoMemory;
    BigMove(quotient, &q);
    BigMove(remainder, &r);
    return code;
}
