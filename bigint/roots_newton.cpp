// Square and cube roots by recursion on the leading part, with remainder.
//
// Square root: split a = a3·β³ + a2·β² + a1·β + a0 (β = B^l, l = (n − 1)/4
// limbs, so a3 has more than l limbs and a3 >= β/4 holds without scaling).
// The root s' and remainder r' of a3·β + a2 give q, u = divmod(r'·β + a1, 2s'),
// then s = s'·β + q and r = u·β + a0 − q², corrected once when negative.
// Cost: one division of half size and one square of quarter size per level.
//
// Cube root with remainder, the same scheme one degree up: split
// a = a_h·β³ + a1·β² + a0 (β = B^l, l about a sixth of a's limbs less one, so
// the root s' of a_h has two limbs more than β). With s', r' of a_h,
// q, u = divmod(r'·β + a1, 3s'²) never falls below the low part of the root
// and exceeds it by one at most; s = s'·β + q and
// r = u·β² + a0 − q²·(3s'·β + q), corrected when negative. Cost per level:
// a square of s', a division of a half-size quotient by 3s'², a square of q
// and one product of the root's size; the remainder tells exactness, so the
// root is never cubed. The top level, wanting only the remainder's sign,
// first divides by the leading l + 8 limbs of 3s'² for six limbs past q,
// which bound u from below; the full division runs only when that bound and
// q's leading limbs cannot show r > 0 (exact cubes, about 1 in 10^8 others).
//
// Polls: the products and divisions poll; every copy, shift and sum between
// them is charged to the clock after it is made (FastCharge), the long
// differences poll within (FastSubPolled), and the parts of a that are only
// read are views of its limbs, so that a root of 10^8 digits still polls
// every few ms.
//
// Allocation: none of its own; its records come from the operations it
// calls, which answer code 3 for a refused array.
#include <initializer_list>

#include "bigint/dispatch.h"
#include "bigint/fast_ops.h"
#include "bigint/fast_paths.h"
#include "bigint/thresholds.h"

namespace {

Result AddSmall(BigInt* r, const BigInt* x, int32_t n) {
    BigTemp t;
    const Result code = BigFromInt(&t.v, n);
    return !Ok(code) ? code : FastAdd(r, x, &t.v);
}

Result Times3(CalcContext* ctx, BigInt* r, const BigInt* x) {
    BigTemp twice;
    const Result code = FastAddPolled(ctx, &twice.v, x, x);
    return !Ok(code) ? code : FastAddPolled(ctx, r, &twice.v, x);
}

// hi·B^l + lo for non-negative canonical hi and lo: one polled pass when lo
// is below B^l, else the shift and a polled sum.
Result ShiftAdd(CalcContext* ctx, BigInt* r, const BigInt* hi, const BigInt* lo, int32_t l) {
    if (lo->top < l) return FastJoinPolled(ctx, r, hi, lo, l);
    BigTemp shifted;
    const Result code = FastJoinPolled(ctx, &shifted.v, hi, nullptr, l);
    return !Ok(code) ? code : FastAddPolled(ctx, r, &shifted.v, lo);
}

// Whether a > b·B^shift, for canonical magnitudes, without forming the product.
bool AboveShifted(const BigInt* a, const BigInt* b, int32_t shift) {
    if (BigIsZero(b)) return !BigIsZero(a);
    const int32_t top = b->top + shift;
    if (a->top != top) return a->top > top;
    for (int32_t i = b->top; i >= 0; --i)
        if (a->limbs[i + shift] != b->limbs[i]) return a->limbs[i + shift] > b->limbs[i];
    return LimbsTrimTop(a->limbs, shift - 1) > 0 || (shift > 0 && a->limbs[0] != 0);
}

// Leading limbs kept of each factor when a remainder's sign is bounded.
constexpr int32_t kLead = 8;

// Whether a > f1·f2·…: shown from the factors' leading kLead limbs each,
// rounded up, so that their product bounds the true one from above. A
// remainder of the top level, wanted only for its sign and whether it is
// zero, is thus told positive without the product of its full length; the
// rare cases the bound cannot decide (among them every exact root) are left
// to the full product.
Result ShownAbove(CalcContext* ctx, const BigInt* a, std::initializer_list<const BigInt*> factors,
                  bool* shown) {
    BigTemp bound, one;
    int32_t shift = 0;
    Result code = BigFromInt(&bound.v, 1);
    if (Ok(code)) code = BigFromInt(&one.v, 1);
    for (const BigInt* f : factors) {
        const int32_t drop = f->top + 1 > kLead ? f->top + 1 - kLead : 0;
        BigTemp lead, up, next;
        if (Ok(code)) code = FastShiftDown(&lead.v, f, drop);
        if (Ok(code)) code = drop > 0 ? FastAdd(&up.v, &lead.v, &one.v) : BigCopy(&up.v, &lead.v);
        if (Ok(code)) code = FastMul(ctx, &next.v, &bound.v, &up.v);
        if (Ok(code)) BigReplace(&bound.v, &next.v);
        shift += drop;
    }
    if (Ok(code)) *shown = AboveShifted(a, &bound.v, shift);
    return code;
}

// s, r with s² <= a < (s + 1)², r = a − s², for a >= 0. Unless exact, r
// may come back as 1 in place of a remainder shown positive.
Result SqrtRem(CalcContext* ctx, const BigInt* a, BigInt* s, BigInt* r, bool exact) {
    const int32_t n = a->top + 1;
    const int32_t l = (n - 1) / 4;
    if (l == 0 || n < gFastThresholds.sqrtRecursive) {
        BigTemp sq;
        Result code = SqrtSchool(ctx, a, s);
        if (Ok(code) || code == 1) code = FastMul(ctx, &sq.v, s, s);
        return !Ok(code) ? code : FastSubPolled(ctx, r, a, &sq.v);
    }
    BigTemp s1, r1, num, two, q, u, qq, t1, rr, ss;
    const BigInt top = FastViewDown(a, 2 * l);
    Result code = SqrtRem(ctx, &top, &s1.v, &r1.v, true);
    // num = r'·β + a1, divided by 2s'
    const BigInt mid = FastViewDown(a, l);
    const BigInt a1 = FastViewLow(&mid, l);
    if (Ok(code)) code = FastJoinPolled(ctx, &num.v, &r1.v, &a1, l);
    BigFree(&r1.v);
    if (Ok(code)) code = FastAddPolled(ctx, &two.v, &s1.v, &s1.v);
    if (Ok(code)) code = FastDivMod(ctx, &num.v, &two.v, &q.v, &u.v);
    BigFree(&num.v);
    BigFree(&two.v);
    // s = s'·β + q;  r = u·β + a0 − q²
    if (Ok(code)) code = ShiftAdd(ctx, &ss.v, &s1.v, &q.v, l);
    const BigInt a0 = FastViewLow(a, l);
    if (Ok(code)) code = FastJoinPolled(ctx, &t1.v, &u.v, &a0, l);
    bool shown = false;
    if (Ok(code) && !exact) code = ShownAbove(ctx, &t1.v, {&q.v, &q.v}, &shown);
    if (Ok(code) && shown) {
        code = BigFromInt(r, 1);
        if (Ok(code)) BigMove(s, &ss.v);
        return code;
    }
    if (Ok(code)) code = FastMul(ctx, &qq.v, &q.v, &q.v);
    if (Ok(code)) code = FastSubPolled(ctx, &rr.v, &t1.v, &qq.v);
    // One correction suffices in theory; the loop also guards a remainder
    // that came out too large.
    while (Ok(code) && FastIsNegative(&rr.v)) {
        BigTemp s2, r2, r3;
        code = FastCharge(ctx, FastAdd(&s2.v, &ss.v, &ss.v), &s2.v);                // 2s
        if (Ok(code)) code = FastCharge(ctx, FastAdd(&r2.v, &rr.v, &s2.v), &r2.v);  // r + 2s
        if (Ok(code)) code = FastCharge(ctx, AddSmall(&r3.v, &r2.v, -1), &r3.v);    // r + 2s − 1
        BigFree(&s2.v);
        if (Ok(code)) code = FastCharge(ctx, AddSmall(&s2.v, &ss.v, -1), &s2.v);
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

// Guard limbs of the top level's quotient (its estimate may be off by three
// units).
constexpr int32_t kGuard = 6;

// The top level wants the remainder u of num / d only to tell r > 0, and
// r = u·β² + a0 − q²·(3s'·β + q) is positive unless u lies in the lowest
// 1/B² or so of its range. So T = floor(num·B^6 / d) is estimated from d's
// leading l + 8 limbs (a quotient as long as q, a remainder of half d's
// length): its low limbs bound u/d from below, its high ones are q unless
// they sit within three units of a boundary. shown tells s was set and r is
// positive; otherwise the caller divides in full (exact cubes among them).
Result TopQuotientShown(CalcContext* ctx, const BigInt* num, const BigInt* d, const BigInt* s1,
                        int32_t l, BigInt* s, bool* shown) {
    const int32_t m = d->top + 1 - (l + 8);
    const int32_t shift = m - kGuard;
    if (m < 2 || shift + 2 * l < 0) return Result::kOk;
    BigTemp up, est, rem, q, frac, t, w, ss, lead, low, s3;
    const bool view = shift >= 0 && shift <= num->top;
    Result code = view        ? Result::kOk
                  : shift < 0 ? FastJoinPolled(ctx, &up.v, num, nullptr, -shift)
                              : BigFromInt(&up.v, 0);
    const BigInt xt = view ? FastViewDown(num, shift) : up.v;
    const BigInt dt = FastViewDown(d, m);
    if (Ok(code)) code = FastDivMod(ctx, &xt, &dt, &est.v, &rem.v);
    if (Ok(code)) code = FastCharge(ctx, FastShiftDown(&q.v, &est.v, kGuard), &q.v);
    if (Ok(code)) code = FastLowPart(&frac.v, &est.v, kGuard);
    if (!Ok(code)) return code;
    // The fraction's two leading limbs f2: with T within three units of est,
    // q is exact when 1 <= f2 <= B² − 2, and u/d >= (f2 − 1)/B².
    const auto limbAt = [&](int32_t i) { return i <= frac.v.top ? int32_t{frac.v.limbs[i]} : 0; };
    const int32_t f2 = limbAt(kGuard - 1) * kLimbBase + limbAt(kGuard - 2);
    if (f2 < 1 || f2 > kLimbBase * kLimbBase - 2) return Result::kOk;
    // u >= (f2 − 1)·dt·B^(m − 2).
    BigTemp fl;
    code = BigFromInt(&fl.v, f2 - 1);
    if (Ok(code)) code = FastMul(ctx, &lead.v, &fl.v, &dt);
    if (Ok(code)) code = FastJoinPolled(ctx, &low.v, &lead.v, nullptr, m - 2 + 2 * l);
    if (Ok(code)) code = FastJoinPolled(ctx, &t.v, s1, nullptr, l);
    if (Ok(code)) code = Times3(ctx, &s3.v, &t.v);
    if (Ok(code)) code = FastAddPolled(ctx, &w.v, &s3.v, &q.v);
    if (Ok(code)) code = ShownAbove(ctx, &low.v, {&q.v, &q.v, &w.v}, shown);
    if (Ok(code) && *shown) {
        code = FastAddPolled(ctx, &ss.v, &t.v, &q.v);
        if (Ok(code)) BigMove(s, &ss.v);
        if (!Ok(code)) *shown = false;
    }
    return code;
}

// s, r with s³ <= a < (s + 1)³, r = a − s³, for a >= 0. Unless exact, r
// may come back as 1 in place of a remainder shown positive.
Result CbrtRem(CalcContext* ctx, const BigInt* a, BigInt* s, BigInt* r, bool exact) {
    const int32_t n = a->top + 1;
    const int32_t l = ((n + 2) / 3 - 2) / 2;
    if (l < 1 || n < gFastThresholds.cbrtNewton) {
        BigTemp sq, cube;
        Result code = CbrtSchool(ctx, a, s);
        if (Ok(code) || code == kRootInexact) {
            s->negative = 0;
            code = FastMul(ctx, &sq.v, s, s);
        }
        if (Ok(code)) code = FastMul(ctx, &cube.v, &sq.v, s);
        return !Ok(code) ? code : FastSubPolled(ctx, r, a, &cube.v);
    }
    BigTemp s1, r1, t, num, sq, d, q, u, ss, q2, s3, w, c, sum, rr;
    const BigInt top = FastViewDown(a, 3 * l);
    Result code = CbrtRem(ctx, &top, &s1.v, &r1.v, true);
    // q, u = divmod(r'·β + a1, 3s'²), a1 the limbs [2l, 3l) of a.
    const BigInt mid = FastViewDown(a, 2 * l);
    const BigInt a1 = FastViewLow(&mid, l);
    if (Ok(code)) code = FastJoinPolled(ctx, &num.v, &r1.v, &a1, l);
    BigFree(&r1.v);
    if (Ok(code)) code = FastMul(ctx, &sq.v, &s1.v, &s1.v);
    if (Ok(code)) code = Times3(ctx, &d.v, &sq.v);
    if (Ok(code) && !exact) {
        bool shown = false;
        code = TopQuotientShown(ctx, &num.v, &d.v, &s1.v, l, s, &shown);
        if (Ok(code) && shown) return BigFromInt(r, 1);
    }
    if (Ok(code)) code = FastDivMod(ctx, &num.v, &d.v, &q.v, &u.v);
    BigFree(&num.v);
    // s = s'·β + q;  r = u·β² + a0 − q²·(3s'·β + q)
    if (Ok(code)) code = FastJoinPolled(ctx, &t.v, &s1.v, nullptr, l);
    if (Ok(code)) code = FastAddPolled(ctx, &ss.v, &t.v, &q.v);
    if (Ok(code)) code = Times3(ctx, &s3.v, &t.v);
    if (Ok(code)) code = FastAddPolled(ctx, &w.v, &s3.v, &q.v);
    const BigInt a0 = FastViewLow(a, 2 * l);
    if (Ok(code)) code = FastJoinPolled(ctx, &sum.v, &u.v, &a0, 2 * l);
    bool shown = false;
    if (Ok(code) && !exact) code = ShownAbove(ctx, &sum.v, {&q.v, &q.v, &w.v}, &shown);
    if (Ok(code) && shown) {
        code = BigFromInt(r, 1);
        if (Ok(code)) BigMove(s, &ss.v);
        return code;
    }
    if (Ok(code)) code = FastMul(ctx, &q2.v, &q.v, &q.v);
    if (Ok(code)) code = FastMul(ctx, &c.v, &q2.v, &w.v);
    if (Ok(code)) code = FastSubPolled(ctx, &rr.v, &sum.v, &c.v);
    // q = floor(num / 3s'²) never falls below the root's low part, and s'
    // has two limbs more than β, so it exceeds it by one at most, and rarely:
    // (s − 1)³ = s³ − (3s² − 3s + 1) then needs s² once.
    while (Ok(code) && FastIsNegative(&rr.v)) {
        BigTemp one, s0, sq0, t3, t3s, d1, d2, r2;
        code = BigFromInt(&one.v, 1);
        if (Ok(code)) code = FastCharge(ctx, FastSub(&s0.v, &ss.v, &one.v), &s0.v);
        if (Ok(code)) code = FastMul(ctx, &sq0.v, &s0.v, &s0.v);
        if (Ok(code)) code = Times3(ctx, &t3.v, &sq0.v);  // 3s0²
        if (Ok(code)) code = Times3(ctx, &t3s.v, &s0.v);  // 3s0
        if (Ok(code)) code = FastCharge(ctx, FastAdd(&d1.v, &t3.v, &t3s.v), &d1.v);
        if (Ok(code))
            code = FastCharge(ctx, FastAdd(&d2.v, &d1.v, &one.v), &d2.v);  // (s0 + 1)³ − s0³
        if (Ok(code)) code = FastCharge(ctx, FastAdd(&r2.v, &rr.v, &d2.v), &r2.v);
        if (Ok(code)) {
            BigReplace(&ss.v, &s0.v);
            BigReplace(&rr.v, &r2.v);
        }
    }
    if (Ok(code)) {
        BigMove(s, &ss.v);
        BigMove(r, &rr.v);
    }
    return code;
}

}  // namespace

Result SqrtRecursive(CalcContext* ctx, const BigInt* x, BigInt* result) {
    BigTemp r;
    const BigInt xm = BigMagnitudeView(x);
    const Result code = SqrtRem(ctx, &xm, result, &r.v, false);
    if (!Ok(code)) return code;
    result->negative = 0;
    return BigIsZero(&r.v) ? Result::kOk : kRootInexact;
}

Result CbrtNewton(CalcContext* ctx, const BigInt* x, BigInt* result) {
    const BigInt xm = BigMagnitudeView(x);
    BigTemp r;
    const Result code = CbrtRem(ctx, &xm, result, &r.v, false);
    if (!Ok(code)) return code;
    result->negative = x->negative;
    return BigIsZero(&r.v) ? Result::kOk : kRootInexact;
}
