// Division by a Newton reciprocal.
//
// For a divisor d of m limbs and a quotient of L <= m limbs, k = min(m, L + 2)
// leading limbs D of d suffice. R ≈ B^2k / D (B = 10000) is found by Newton's
// iteration at doubling precision, each step a product of k by k/2 limbs and
// one of k/2 by k/2; then q ≈ floor(x / B^(m−2)) · R / B^(k+2) is within a
// few units of the true quotient, and the remainder x − q·d tells how many
// units to correct. Longer quotients are formed k − 2 limbs at a time, the
// reciprocal computed once.
//
// Products per division of 2m by m limbs, counted by their lengths (la + lb,
// the transform's size): a divisor seen once gets the reciprocal of its
// leading half (steps of 0.75m + 0.5m, 0.375m + 0.25m, ...) and two blocks of
// m/2 quotient limbs, each a product of length m and one of 1.5m. A divisor
// seen again completes its reciprocal by one step (1.5m + m), after which a
// division is two products of length 2m.
//
// Two products are wanted only in part and come from cyclic transforms
// (ntt_plan.h) of about half the linear product's points: the remainder
// X − q·d, below B^(m+2) in magnitude since q is within a few units, is read
// from q·d modulo B^n − 1 with n the power of two from m + 3, and the Newton step's error E = B^(k+h) − D·Rh, below
// 2·B^(k+1), from D·Rh modulo B^n − 1 with n from k + 3, Rh's transform
// serving the correction's product too. Only where the two-prime transform
// would make the linear product (its lengths below gFastThresholds.ntt64Length)
// and n is shorter than that product's transform. The transforms of d (at
// those n points) and of R (for the estimates' products) are kept in the
// NewtonDivisor, so that a divisor used again, as base conversion and the
// dispatcher's cache use theirs, is not transformed again (at most the
// transforms for 2^20 − 1 coefficients, 8 MB for R and 4 MB for d, held with
// the divisor; one used once keeps none past its division and takes R's
// product linearly); a short first block takes linear products instead.
//
// Allocation: records and work arrays from alloc.h (BigTemp, LimbBuffer),
// transforms from ntt_plan's nothrow vectors; a refused array answers code 3.
#include <algorithm>
#include <cassert>

#include "bigint/dispatch.h"
#include "bigint/fast_paths.h"
#include "bigint/ntt_plan.h"
#include "bigint/poll_clock.h"
#include "bigint/thresholds.h"

namespace {

// More corrections than this would mean a wrong estimate: the rest is left
// to long division, which is right whatever the estimate was.
constexpr int kMaxCorrections = 16;

// a[0 … n) += b[0 … lb), lb <= n; the carry out.
int AddInto(Limb* a, int32_t n, const Limb* b, int32_t lb) {
    int carry = 0;
    for (int32_t i = 0; i < n && (i < lb || carry != 0); ++i) {
        const int v = a[i] + (i < lb ? b[i] : 0) + carry;
        carry = v >= kLimbBase ? 1 : 0;
        a[i] = static_cast<Limb>(v - carry * kLimbBase);
    }
    return carry;
}

// a[0 … n) −= b[0 … n); the borrow out.
int SubFrom(Limb* a, int32_t n, const Limb* b) {
    int borrow = 0;
    for (int32_t i = 0; i < n; ++i) {
        const int v = a[i] - b[i] - borrow;
        borrow = v < 0 ? 1 : 0;
        a[i] = static_cast<Limb>(v + borrow * kLimbBase);
    }
    return borrow;
}

// The points n of a cyclic product that yields X − a·b, for a difference
// known to be below B^bound in magnitude, from residues modulo B^n − 1; 0
// when the linear product is no longer, the two primes cannot carry it, or
// it is long enough for the three-prime transform.
int32_t WrapPoints(int32_t la, int32_t lb, int32_t bound) {
    const int32_t shorter = std::min(la, lb);
    if (shorter < gFastThresholds.mulNtt) return 0;
    const int32_t n = NttPoints(std::max({bound + 1, la, lb}));
    if (n >= NttPoints(la + lb - 1) || n >= gFastThresholds.ntt64Length ||
        n > (1 << ntt::kMaxLog) || !NttPlanFits(n, shorter, 1))
        return 0;
    return n;
}

// out := X − a·b (X, a, b non-negative, a and b at most n limbs) from
// residues modulo B^n − 1, for a difference below B^(n−1) in magnitude: a
// residue with a top limb of 5000 or more stands for a negative difference.
// bHat is b's transform at n points, or null.
Result SubWrapped(CalcContext* ctx, const BigInt* X, const BigInt* a, const BigInt* b,
                  const NttVector* bHat, int32_t n, BigInt* out) {
    PollClock clk(ctx);
    NttVector aHat, own;
    Result code = NttForward(clk, a->limbs, a->top + 1, n, &aHat);
    if (Ok(code) && bHat == nullptr) {
        code = NttForward(clk, b->limbs, b->top + 1, n, &own);
        bHat = &own;
    }
    if (!Ok(code)) return code;
    NttMulAccumulate(&aHat, aHat, *bHat, NttAccumulate::kSet);
    LimbBuffer prod(n), r(n, true);
    if (!prod.ok() || !r.ok()) return Result::kNoMemory;
    code = NttToLimbsCyclic(clk, &aHat, prod.get());
    if (!Ok(code)) return code;
    // X modulo B^n − 1: its limbs fold onto the bottom n at a time, a carry
    // out of the top coming back in as 1.
    const Limb one = 1;
    for (int32_t from = 0; from <= X->top; from += n)
        if (AddInto(r.get(), n, X->limbs + from, std::min(n, X->top + 1 - from)) != 0)
            AddInto(r.get(), n, &one, 1);
    // A borrow took B^n, one more than the modulus: take the 1 back.
    if (SubFrom(r.get(), n, prod.get()) != 0)
        for (int32_t i = 0; i < n; ++i) {
            const bool was = r.get()[i] == 0;
            r.get()[i] = static_cast<Limb>(was ? kLimbBase - 1 : r.get()[i] - 1);
            if (!was) break;
        }
    const bool negative = r.get()[n - 1] >= kLimbBase / 2;
    if (negative)
        for (int32_t i = 0; i < n; ++i) r.get()[i] = static_cast<Limb>(kLimbBase - 1 - r.get()[i]);
    const int32_t top = LimbsTrimTop(r.get(), n - 1);
    const bool zero = top == 0 && r.get()[0] == 0;
    return BigFromLimbs(out, r.get(), top, negative && !zero ? 1 : 0);
}

// out := a·b, b given by its transform at n points, n at least the
// product's a->top + b->top + 1 coefficients.
Result MulTransformed(CalcContext* ctx, const BigInt* a, const BigInt* b, const NttVector& bHat,
                      int32_t n, BigInt* out) {
    PollClock clk(ctx);
    NttVector aHat;
    Result code = NttForward(clk, a->limbs, a->top + 1, n, &aHat);
    if (!Ok(code)) return code;
    NttMulAccumulate(&aHat, aHat, bHat, NttAccumulate::kSet);
    const int32_t count = a->top + b->top + 1;
    LimbBuffer p(int64_t(count) + 1);
    if (!p.ok()) return Result::kNoMemory;
    code = NttToLimbs(clk, &aHat, count, p.get());
    return !Ok(code) ? code : BigFromLimbs(out, p.get(), LimbsTrimTop(p.get(), count), 0);
}

Result ReciprocalBase(CalcContext* ctx, const BigInt* D, int32_t k, BigInt* result) {
    BigTemp power, rem;
    Result code = FastPowerOfBase(&power.v, 2 * k);
    if (Ok(code)) code = DivModSchool(ctx, &power.v, D, result, &rem.v);
    if (Ok(code)) result->negative = 0;
    return code;
}

// The divisor's transform for the blocks' remainders, when they are worth a
// cyclic product (n points; 0 for none).
struct WrapDivisor {
    const NttVector* hat = nullptr;
    int32_t n = 0;
    const NttVector* rHat = nullptr;
    int32_t rn = 0;
};

// The points of a transform of b kept for products by factors of la limbs,
// or 0 when such a product is not the two primes' to make.
int32_t KeptPoints(int32_t la, int32_t lb) {
    const int32_t shorter = std::min(la, lb);
    if (shorter < gFastThresholds.mulNtt || la + lb >= gFastThresholds.ntt64Length ||
        la + lb - 1 > (1 << ntt::kMaxLog))
        return 0;
    const int32_t n = NttPoints(la + lb - 1);
    return NttPlanFits(n, shorter, 1) ? n : 0;
}

// The copies, shifts and additions between the products have no polls of
// their own: each is charged after it is made (FastCharge), so that a block
// of 10^7 limbs still polls every few ms; the differences as long as the
// divisor poll within (FastSubPolled), and leading parts are views.
Result Charge(CalcContext* ctx, Result code, const BigInt* v) { return FastCharge(ctx, code, v); }

// The quotient of a block: X < d·B^L with L limbs of quotient (L <= m); R is
// the reciprocal of d's leading k limbs. q and r written as new.
Result DivideBlock(CalcContext* ctx, const BigInt* X, const BigInt* d, const BigInt* R, int32_t k,
                   const WrapDivisor& wrap, BigInt* q, BigInt* r) {
    const int32_t m = d->top + 1;
    BigTemp none, prod, qd;
    Result code = m - 2 > X->top ? BigFromInt(&none.v, 0) : Result::kOk;
    const BigInt xt = m - 2 > X->top ? none.v : FastViewDown(X, m - 2);
    if (Ok(code) && wrap.rn > 0 && KeptPoints(xt.top + 1, R->top + 1) == wrap.rn) {
        code = MulTransformed(ctx, &xt, R, *wrap.rHat, wrap.rn, &prod.v);
    } else if (Ok(code)) {
        code = Charge(ctx, FastMul(ctx, &prod.v, &xt, R), &prod.v);
    }
    if (Ok(code) && k + 2 > prod.v.top) {
        code = BigFromInt(q, 0);
    } else if (Ok(code)) {
        const BigInt high = FastViewDown(&prod.v, k + 2);
        code = FastCopyPolled(ctx, q, &high);
    }
    // q is within a few units of the quotient, so |X − q·d| < B^(m+2); a short
    // q (the first block) takes the linear product.
    if (Ok(code) && wrap.n > 0 && WrapPoints(q->top + 1, m, m + 2) == wrap.n) {
        code = SubWrapped(ctx, X, q, d, wrap.hat, wrap.n, r);
        if (Ok(code)) code = Charge(ctx, code, X);
    } else {
        if (Ok(code)) code = Charge(ctx, FastMul(ctx, &qd.v, q, d), &qd.v);
        if (Ok(code)) code = FastSubPolled(ctx, r, X, &qd.v);
    }
    for (int i = 0; Ok(code); ++i) {
        const bool low = FastIsNegative(r);
        if (!low && BigCompareMag(r, d) > 0) break;  // 0 <= r < d
        if (i == kMaxCorrections || (ctx->ShouldStop() && (code = Result::kStopped))) break;
        BigTemp nr;
        BigInt one = {};
        code = BigFromInt(&one, 1);
        if (Ok(code)) code = FastStepOne(q, !low);
        // r + d for r < 0 is d − |r|.
        const BigInt rm = BigMagnitudeView(r);
        if (Ok(code))
            code = low ? FastSubPolled(ctx, &nr.v, d, &rm) : FastSubPolled(ctx, &nr.v, r, d);
        BigFree(&one);
        if (Ok(code)) BigReplace(r, &nr.v);
    }
    if (!Ok(code) || (!FastIsNegative(r) && BigCompareMag(r, d) > 0)) return code;
    // Too far off: long division of the block, right whatever the estimate.
    BigFree(q);
    BigFree(r);
    const int order = BigCompareMag(X, d);
    if (order > 0) {
        const Result zero = BigFromInt(q, 0);
        return zero != 0 ? zero : BigFromLimbs(r, X->limbs, X->top, 0);
    }
    if (order == 0) {
        const Result zero = BigFromInt(r, 0);
        return zero != 0 ? zero : BigFromInt(q, 1);
    }
    return DivModSchool(ctx, X, d, q, r);
}

// Precision of the reciprocal that one Newton step takes to k limbs.
int32_t HalfPrecision(int32_t k) { return (k + 1) / 2 + 2; }

int32_t ReciprocalBaseLimit() {
    return gFastThresholds.divNewton > 6 ? gFastThresholds.divNewton : 6;
}

// One Newton step from Rh ≈ B^2h / Dh, Dh the leading h = HalfPrecision(k)
// limbs of D:
//   R = Rh·B^(k−h) + Rh·E / B^2h,  E = B^(k+h) − D·Rh,
// squares its relative error, about B^(1−h), to below B^(−k−2).
Result NewtonStep(CalcContext* ctx, const BigInt* D, int32_t k, const BigInt* rh, BigInt* result) {
    const int32_t h = HalfPrecision(k);
    BigTemp t, power, e, et, corr, corrShift, r0;
    Result code = FastPowerOfBase(&power.v, k + h);
    // Rh within a few units of B^2h / Dh puts |E| below 2·B^(k+1).
    // Rh's transform then serves the correction's product too, whose
    // k − h + 5 by h + 2 limbs mostly fit the same n points.
    const int32_t n = WrapPoints(k, rh->top + 1, k + 2);
    NttVector rhHat;
    if (Ok(code) && n > 0) {
        PollClock clk(ctx);
        code = NttForward(clk, rh->limbs, rh->top + 1, n, &rhHat);
        if (Ok(code)) code = SubWrapped(ctx, &power.v, D, rh, &rhHat, n, &e.v);
    } else {
        if (Ok(code)) code = Charge(ctx, FastMul(ctx, &t.v, D, rh), &power.v);
        if (Ok(code)) code = FastSubPolled(ctx, &e.v, &power.v, &t.v);
    }
    // E's low h − 3 limbs move the correction by less than 1/B^2 of a unit.
    const int32_t drop = h - 3;
    if (Ok(code)) code = Charge(ctx, FastShiftDown(&et.v, &e.v, drop), &et.v);
    if (Ok(code) && n > 0 && et.v.top + rh->top + 1 <= n) {
        code = MulTransformed(ctx, &et.v, rh, rhHat, n, &corr.v);
    } else if (Ok(code)) {
        code = FastMul(ctx, &corr.v, rh, &et.v);
    }
    if (Ok(code))
        code = Charge(ctx, FastShiftDown(&corrShift.v, &corr.v, 2 * h - drop), &corrShift.v);
    if (Ok(code)) code = FastJoinPolled(ctx, &r0.v, rh, nullptr, k - h);
    if (Ok(code)) {
        code = FastIsNegative(&e.v) ? FastSubPolled(ctx, result, &r0.v, &corrShift.v)
                                    : FastAddPolled(ctx, result, &r0.v, &corrShift.v);
    }
    return code;
}

}  // namespace

Result Reciprocal(CalcContext* ctx, const BigInt* D, int32_t k, BigInt* result) {
    assert(D->top + 1 == k && k >= 2);
    if (k <= ReciprocalBaseLimit()) return ReciprocalBase(ctx, D, k, result);
    BigTemp rh;
    const int32_t h = HalfPrecision(k);
    const BigInt dh = FastViewDown(D, k - h);
    const Result code = Reciprocal(ctx, &dh, h, &rh.v);
    return !Ok(code) ? code : NewtonStep(ctx, D, k, &rh.v, result);
}

// A divisor used once needs no more than the reciprocal of its leading
// half: the quotient then comes in blocks of half the divisor's length, each
// a product of the half's length and one of 1.5 times it, where the full
// reciprocal would cost one more Newton step and blocks of two products of
// twice the length. A second division by it completes the reciprocal with
// that step, so that a divisor used often pays the full one once.
Result NewtonDivisorStart(CalcContext* ctx, const BigInt* d, NewtonDivisor* divisor) {
    const int32_t m = d->top + 1;
    divisor->ForgetTransforms();
    divisor->reused = false;
    divisor->d = d;
    divisor->k = m;
    if (m <= ReciprocalBaseLimit()) return Reciprocal(ctx, d, m, &divisor->R);
    divisor->k = HalfPrecision(m);
    const BigInt dh = FastViewDown(d, m - divisor->k);
    return Reciprocal(ctx, &dh, divisor->k, &divisor->R);
}

Result NewtonDivisorComplete(CalcContext* ctx, NewtonDivisor* divisor) {
    const int32_t m = divisor->d->top + 1;
    divisor->reused = true;
    if (divisor->k == m) return Result::kOk;
    BigTemp full;
    const Result code = NewtonStep(ctx, divisor->d, m, &divisor->R, &full.v);
    if (!Ok(code)) return code;
    BigReplace(&divisor->R, &full.v);
    divisor->rPoints = 0;
    divisor->k = m;
    return Result::kOk;
}

Result NewtonDivisorPrepare(CalcContext* ctx, const BigInt* d, NewtonDivisor* divisor) {
    const Result code = NewtonDivisorStart(ctx, d, divisor);
    return !Ok(code) ? code : NewtonDivisorComplete(ctx, divisor);
}

Result DivModNewton(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                    BigInt* remainder) {
    const int32_t n = x->top + 1, m = d->top + 1;
    const int32_t total = n - m + 1;  // quotient limbs at most
    const int32_t block = total < m ? total : m;
    NewtonDivisor divisor;
    divisor.d = d;
    divisor.k = block + 2 < m ? block + 2 : m;
    const BigInt dk = FastViewDown(d, m - divisor.k);
    const Result code = Reciprocal(ctx, &dk, divisor.k, &divisor.R);
    return !Ok(code) ? code : DivModWithDivisor(ctx, x, &divisor, quotient, remainder);
}

Result DivModWithDivisor(CalcContext* ctx, const BigInt* x, const NewtonDivisor* divisor,
                         BigInt* quotient, BigInt* remainder) {
    const BigInt* d = divisor->d;
    const int32_t n = x->top + 1, m = d->top + 1;
    if (BigCompareMag(x, d) >= 0) return FastDivMod(ctx, x, d, quotient, remainder);
    const int32_t total = n - m + 1;
    const int32_t k = divisor->k;
    // A reciprocal of k < m leading limbs gives quotient blocks of k − 2.
    const int32_t cap = k < m ? k - 2 : m;
    const int32_t block = total < cap ? total : cap;
    const BigInt* R = &divisor->R;
    Result code = Result::kOk;
    // d's and R's transforms, kept in the divisor for the next division by it.
    WrapDivisor wrap;
    wrap.n = WrapPoints(block, m, m + 2);
    // R's own transform pays for a divisor used again; one used once takes
    // the linear product, which needs less memory, and lets d's transform go
    // at the end.
    const bool again = divisor->reused;
    wrap.rn = again ? KeptPoints(block + 2, R->top + 1) : 0;
    PollClock clk(ctx);
    if (wrap.n > 0 && divisor->dPoints != wrap.n) {
        divisor->dPoints = 0;
        code = NttForward(clk, d->limbs, m, wrap.n, &divisor->dHat);
        if (!Ok(code)) return code;
        divisor->dPoints = wrap.n;
    }
    if (wrap.rn > 0 && divisor->rPoints != wrap.rn) {
        divisor->rPoints = 0;
        code = NttForward(clk, R->limbs, R->top + 1, wrap.rn, &divisor->rHat);
        if (!Ok(code)) return code;
        divisor->rPoints = wrap.rn;
    }
    wrap.hat = &divisor->dHat;
    wrap.rHat = &divisor->rHat;

    // rem starts as x's leading m − 1 limbs (below d); each block appends the
    // next c limbs of x and yields c limbs of quotient (those above the
    // block's quotient zeroed as it lands).
    LimbBuffer q(int64_t(total) + 1);
    if (!q.ok()) return Result::kNoMemory;
    BigInt rem = {};
    int32_t done = 0;
    while (Ok(code) && done < total) {
        const int32_t c = done == 0 && total % block != 0 ? total % block : block;
        const int32_t low = total - done - c;  // limbs of x below this block
        BigTemp piece, qb, rb;
        // piece = rem·B^c + x's limbs [low, low + c), put together from the
        // c limbs and rem's, so that a block costs no more than its own size
        // however long x is. The first is x's leading part itself.
        const BigInt lead = FastViewDown(x, low);
        LimbBuffer joined(done == 0 ? 0 : int64_t(c) + rem.top + 1);
        if (done > 0 && !joined.ok()) code = Result::kNoMemory;
        if (Ok(code) && done > 0) code = FastCopyLimbsPolled(ctx, joined.get(), x->limbs + low, c);
        if (Ok(code) && done > 0)
            code = FastCopyLimbsPolled(ctx, joined.get() + c, rem.limbs, rem.top + 1);
        if (Ok(code) && done > 0) {
            // The joined array becomes the piece's: one pass fewer.
            piece.v.top = LimbsTrimTop(joined.get(), c + rem.top);
            piece.v.negative = 0;
            piece.v.limbs = joined.Release();
        }
        if (Ok(code))
            code = DivideBlock(ctx, done == 0 ? &lead : &piece.v, d, R, k, wrap, &qb.v, &rb.v);
        // The block's temporaries were released on the way out.
        if (Ok(code)) code = Charge(ctx, code, &rb.v);
        assert(!Ok(code) || qb.v.top < c || BigIsZero(&qb.v));
        if (Ok(code)) code = FastCopyLimbsPolled(ctx, q.get() + low, qb.v.limbs, qb.v.top + 1);
        if (Ok(code)) {
            ZeroLimbs(q.get() + low + qb.v.top + 1, c - qb.v.top - 1);
            BigReplace(&rem, &rb.v);
            done += c;
        }
    }
    if (!again) divisor->ForgetTransforms();
    if (Ok(code)) {
        // The quotient takes the block's array over: a spare limb or two, no copy.
        quotient->top = LimbsTrimTop(q.get(), total - 1);
        quotient->negative = 0;
        quotient->limbs = q.Release();
        BigMove(remainder, &rem);
        remainder->negative = 0;
    } else {
        BigFree(&rem);
    }
    return code;
}
