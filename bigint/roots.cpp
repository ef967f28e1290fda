// Integer square and cube roots, digit by digit in base 10000 with a binary
// search for each root limb: no division, at most 14 probes per limb.
#include "bigint/dispatch.h"
#include "bigint/internal.h"

namespace {

// The running remainder R (normalised, top rt) and the part of it from
// index pos on that the current trial is compared with and subtracted from.
struct Remainder {
    Limb* r;
    int32_t rt;

    // Sign of trial - part, as LimbsCompare orients it.
    int CompareWith(int32_t pos, const Limb* trial, int32_t tt) const {
        static const Limb zero[1] = {0};
        if (rt < pos) return LimbsCompare(zero, trial, 0, tt);
        return LimbsCompare(r + pos, trial, rt - pos, tt);
    }
    void Subtract(int32_t pos, const Limb* trial, int32_t tt) {
        if (tt == 0 && trial[0] == 0) return;
        const int32_t t = LimbsSub(r + pos, trial, rt - pos, tt);
        rt = LimbsTrimTop(r, pos + t);
    }
    bool IsZero() const { return rt == 0 && r[0] == 0; }
};

// The largest d in 0..9999 whose trial (built into trial by make, which
// answers its top) does not exceed the remainder's part at pos. Leaves the
// trial of that d built.
template <typename Make>
int32_t SearchLimb(const Remainder& rem, int32_t pos, Limb* trial, int32_t* tt, Make make) {
    int32_t lo = 0, hi = kLimbBase - 1;
    bool built = false;
    while (lo < hi) {
        const int32_t mid = (lo + hi + 1) / 2;
        *tt = make(mid);
        const int order = rem.CompareWith(pos, trial, *tt);
        built = order <= 0;
        if (order <= 0) lo = mid;
        if (order > 0) hi = mid - 1;
        if (order == 0) hi = mid;
    }
    if (!built) *tt = make(lo);
    return lo;
}

// The root's limbs i..top, shifted up one limb and multiplied by f, into t.
int32_t ShiftedTimes(const Limb* root, int32_t i, int32_t top, int32_t f, Limb* t) {
    t[0] = 0;
    CopyLimbs(t + 1, root + i, top - i + 1);
    return LimbsMulSmall(t, f, top - i + 1);
}

}  // namespace

// With p the root found so far and B = 10000, the next limb d is the largest
// with (2pB + d) d <= the remainder at its position; T holds 2pB.
Result SqrtSchool(CalcContext*, const BigInt* x, BigInt* result) {
    const int32_t rootTop = (x->top + 1) / 2;  // room for a normalised copy of x
    LimbBuffer root(static_cast<int64_t>(rootTop) + 1), r(static_cast<int64_t>(x->top) + 2),
        t(static_cast<int64_t>(rootTop) + 4), u(static_cast<int64_t>(rootTop) + 4);
    if (!root.ok() || !r.ok() || !t.ok() || !u.ok()) return Result::kNoMemory;
    CopyLimbs(r.get(), x->limbs, x->top + 1);
    Remainder rem{r.get(), LimbsNormalizeTop(r.get(), x->top)};
    const int32_t top = rem.rt / 2;
    int32_t pos = 2 * top;
    int32_t i = top;
    int32_t tt = 0;
    t[0] = 0;
    for (;;) {
        int32_t tu = 0;
        const int32_t d = SearchLimb(rem, pos, u.get(), &tu, [&](int32_t mid) {
            CopyLimbs(u.get(), t.get(), tt + 1);
            u[0] = static_cast<Limb>(mid);
            return LimbsMulSmall(u.get(), mid, tt);
        });
        root[i] = static_cast<Limb>(d);
        rem.Subtract(pos, u.get(), tu);
        pos -= 2;
        if (pos < 0) break;
        tt = ShiftedTimes(root.get(), i, top, 2, t.get());
        root[--i] = 0;
    }
    const Result code = BigFromLimbs(result, root.get(), top, 0);
    if (!Ok(code)) return code;
    return rem.IsZero() ? Result::kOk : kRootInexact;
}

// The same scheme three limbs at a time: the trial for limb d is
// (P + (T + d) d) d = (pB + d)^3 - (pB)^3 with T = 3pB and P = 3p^2 B^2.
Result CbrtSchool(CalcContext* ctx, const BigInt* x, BigInt* result) {
    const int32_t rootTop = (x->top + 1) / 3;
    const int64_t wide = static_cast<int64_t>(x->top) + 6;
    LimbBuffer root(static_cast<int64_t>(rootTop) + 1), r(static_cast<int64_t>(x->top) + 2),
        p(wide), w(wide), t(static_cast<int64_t>(rootTop) + 4),
        u(static_cast<int64_t>(rootTop) + 4);
    if (!root.ok() || !r.ok() || !p.ok() || !w.ok() || !t.ok() || !u.ok()) return Result::kNoMemory;
    CopyLimbs(r.get(), x->limbs, x->top + 1);
    Remainder rem{r.get(), LimbsNormalizeTop(r.get(), x->top)};
    const int32_t top = rem.rt / 3;
    int32_t pos = 3 * top;
    int32_t i = top;
    int32_t tt = 0, tp = 0;
    t[0] = 0;
    p[0] = 0;
    for (;;) {
        int32_t tw = 0;
        const int32_t d = SearchLimb(rem, pos, w.get(), &tw, [&](int32_t mid) {
            CopyLimbs(u.get(), t.get(), tt + 1);
            int32_t tu = LimbsAddSmall(u.get(), mid, tt);
            tu = LimbsMulSmall(u.get(), mid, tu);
            int32_t ts = LimbsAdd(p.get(), u.get(), w.get(), tp, tu);
            ts = LimbsNormalizeTop(w.get(), ts);
            return LimbsMulSmall(w.get(), mid, ts);
        });
        root[i] = static_cast<Limb>(d);
        rem.Subtract(pos, w.get(), tw);
        pos -= 3;
        if (pos < 0) break;
        tt = ShiftedTimes(root.get(), i, top, 3, t.get());
        // P := root × T, shifted up one limb.
        ZeroLimbs(p.get(), tt + (top - i) + 3);
        tp = LimbsMul(ctx, root.get() + i, t.get(), p.get() + 1, top - i, tt);
        if (tp < 0) return Result::kStopped;
        ++tp;
        root[--i] = 0;
    }
    const Result code = BigFromLimbs(result, root.get(), top, BigIsNegative(x) ? 1 : 0);
    if (!Ok(code)) return code;
    return rem.IsZero() ? Result::kOk : kRootInexact;
}

// Integer part of the square root of |x|; the sign of x is not examined.
Result BigSqrt(CalcContext* ctx, const BigInt* x, BigInt* result) {
    BigTemp root;
    const Result code = SqrtDispatch(ctx, x, &root.v);
    if (!Ok(code) && code != 1) {
        BigSetFailed(result);
        return code;
    }
    root.v.negative = 0;
    BigMove(result, &root.v);
    return code;
}

// Integer part of the cube root with x's sign: the root of -30 is -3.
Result BigCbrt(CalcContext* ctx, const BigInt* x, BigInt* result) {
    BigTemp root;
    const Result code = CbrtDispatch(ctx, x, &root.v);
    if (!Ok(code) && code != 1) {
        BigSetFailed(result);
        return code;
    }
    root.v.negative = BigIsNegative(x) ? 1 : 0;
    BigMove(result, &root.v);
    return code;
}
