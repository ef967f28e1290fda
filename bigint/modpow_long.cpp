// Modular powers for moduli too long for the word kernel, by Barrett's
// remainder on transforms that are reused across the whole power.
//
// For a modulus m of k limbs (B = 10000) R ≈ B^2k / m is computed once,
// and with it the transforms of R and of m. A square X = x^2 (x < m) then
// costs one forward and one inverse transform; the quotient estimate
// q = floor(floor(X / B^(k−2))·R / B^(k+2)), within a few units of
// floor(X / m) (div_newton.cpp), one forward and one inverse by R's kept
// transform; and q·m is needed only modulo B^N − 1 for N >= k + 3 points:
// X − q·m lies in (−B^(k+1), B^(k+1)), so its residue modulo B^N − 1, half
// a product's length, gives it with its sign. When k + 3 is just past a
// power of two, N is half that and the low k + 2 − N limbs of q·m come from
// a short product instead (B^N − 1 and B^(k+2−N) are coprime): for 5000 limbs
// 4096 + 2048 points rather than 8192. A few additions or subtractions of m
// finish.
//
// A base below 10^8 multiplies linearly: after each square a one bit of the
// exponent multiplies by the base (at most two limbs) and a quotient from the
// leading limbs reduces the product. Other bases run a sliding window whose
// odd powers are kept transformed, so a window's product also costs one
// forward and one inverse. Moduli of fewer than kFastLimbs limbs take
// products and divisions by the dispatcher.
//
// Where the 64-bit transform has its vector butterflies (ntt64_plan.h) the
// same steps run on it, four limbs a point on three primes rather than one
// on two: a quarter of the points, eight to a vector. The square and the quotient's product split as above
// (in points), and so does q·m's: 2048 + 1024 points for each product and
// 1024 + 512 for q·m at 5000 limbs.
//
// Allocation: work arrays and transforms from nothrow new (code 3 when
// refused); the short moduli's residues live in std::vector, under
// CatchNoMemory.
#include <algorithm>
#include <cmath>
#include <vector>

#include "bigint/fast_paths.h"
#include "bigint/modpow_window.h"
#include "bigint/ntt64_plan.h"
#include "bigint/ntt_plan.h"

namespace {

constexpr int32_t kFastLimbs = 8;
// Barrett's estimate is off by a few units; more corrections than this mean
// something else went wrong, and an exact division settles the step.
constexpr int kMaxCorrections = 8;

// a[0 … n) −= b[0 … lb), lb <= n; the borrow out.
int SubLimbs(Limb* a, int32_t n, const Limb* b, int32_t lb) {
    int borrow = 0;
    for (int32_t i = 0; i < n && (i < lb || borrow != 0); ++i) {
        int v = a[i] - (i < lb ? b[i] : 0) - borrow;
        borrow = v < 0 ? 1 : 0;
        a[i] = static_cast<Limb>(v + borrow * kLimbBase);
    }
    return borrow;
}

// a[0 … n) += b[0 … lb), lb <= n; the carry out.
int AddLimbs(Limb* a, int32_t n, const Limb* b, int32_t lb) {
    int carry = 0;
    for (int32_t i = 0; i < n && (i < lb || carry != 0); ++i) {
        int v = a[i] + (i < lb ? b[i] : 0) + carry;
        carry = v >= kLimbBase ? 1 : 0;
        a[i] = static_cast<Limb>(v - carry * kLimbBase);
    }
    return carry;
}

// a[0 … n) against b[0 … lb), lb <= n.
bool AtLeast(const Limb* a, int32_t n, const Limb* b, int32_t lb) {
    for (int32_t i = n - 1; i >= lb; --i)
        if (a[i] != 0) return true;
    for (int32_t i = lb - 1; i >= 0; --i)
        if (a[i] != b[i]) return a[i] > b[i];
    return true;
}

// A linear product of `count` coefficients just past a power of two, as
// the cyclic product at nW = half the transform it would take plus the
// product of the operands' low w = count − nW limbs at nL >= 2w − 1
// points: c[j] for j < w comes from the low product, c[j + nW] is the
// cyclic coefficient less it. Worth it while nL <= nW / 2; otherwise nW is
// the whole transform and nL 0.
struct SplitShape {
    int32_t count = 0, nW = 0, w = 0, nL = 0;

    // points(k): the transform's points for k coefficients.
    template <typename Points>
    void Make(int32_t coefficients, Points points) {
        count = coefficients;
        const int32_t n = points(count);
        w = count - n / 2;
        nL = w > 0 ? points(2 * w - 1) : n;
        nW = n / 2;
        if (nL > nW / 2) {
            nW = n;
            nL = 0;
            w = 0;
        }
    }
};

struct SplitPlan : SplitShape {
    NttVector wrap, low;  // the left factor's transforms, or the square's

    void Make(int32_t coefficients) {
        SplitShape::Make(coefficients, [](int32_t k) { return NttPoints(k); });
    }
};

// The same on the 64-bit transform, in its points; `joined` takes the two
// parts' coefficients.
struct SplitPlan64 : SplitShape {
    Ntt64Vector wrap, low, joined;

    void Make(int64_t coefficients) {
        SplitShape::Make(static_cast<int32_t>(coefficients),
                         [](int32_t k) { return Ntt64PlanPoints(k); });
    }
};

// A residue's transform kept for products by it, on the transform in use.
struct KeptTransform {
    NttVector v;
    Ntt64Vector w;
};

// Points of the 64-bit transform holding `limbs` limbs.
int32_t Points64(int32_t limbs) { return (limbs + kNtt64PlanLimbs - 1) / kNtt64PlanLimbs; }

// Residues modulo m as arrays of exactly k limbs.
class LongModulus {
public:
    LongModulus(CalcContext* ctx, const BigInt& m) : ctx_(ctx), clk_(ctx), m_(m), k_(m.top + 1) {}

    Result Prepare() {
        const int32_t k = k_;
        BigTemp r;
        Result code = Reciprocal(ctx_, &m_, k, &r.v);
        if (!Ok(code)) return code;
        lr_ = r.v.top + 1;
        if (wide64_) return Prepare64(r.v);
        nSq_ = NttPoints(2 * k - 1);
        nC_ = NttPoints(k + 3);
        square_.Make(2 * k - 1);
        quotient_.Make((k + 2) + lr_ - 1);
        coefficients_.resize(size_t(std::max(square_.count, quotient_.count)));
        lowCoefficients_.resize(size_t(std::max(square_.nL, quotient_.nL)) + 1);
        // q·m modulo B^nC − 1 for nC the half transform and exactly modulo
        // B^j, j = k + 2 − nC, by the product of the low j limbs: the two
        // moduli are coprime and their product (B^nC − 1)·B^j > 2·B^(k+1).
        // Worth it while that product takes at most a quarter of nC's points.
        const int32_t j = k + 2 - nC_ / 2;
        if (j > 0 && NttPoints(2 * j - 1) <= nC_ / 4) {
            nC_ /= 2;
            lowQ_ = j;
            nLowQ_ = NttPoints(2 * j - 1);
        }
        if (!(wide_.Reset(2 * int64_t(k) + 8) && product_.Reset(int64_t(quotient_.count) + 1) &&
              cyclic_.Reset(nC_) && folded_.Reset(std::max(nC_, k + 2)) &&
              lowProduct_.Reset(2 * int64_t(lowQ_) + 1) && qFolded_.Reset(nC_)))
            return Result::kNoMemory;
        code = NttForward(clk_, r.v.limbs, lr_, quotient_.nW, &rWrap_);
        if (Ok(code) && quotient_.nL > 0)
            code = NttForward(clk_, r.v.limbs, std::min(lr_, quotient_.w), quotient_.nL, &rLow_);
        if (Ok(code) && lowQ_ > 0) code = NttForward(clk_, m_.limbs, lowQ_, nLowQ_, &mLow_);
        if (!Ok(code)) return code;
        FoldCyclic(m_.limbs, k, nC_, qFolded_.get());
        return NttForward(clk_, qFolded_.get(), nC_, nC_, &mHat_);
    }
    int32_t limbs() const { return k_; }

    // x := x^2·f mod m, f < 10^8.
    Result SquareTimes(Limb* x, uint32_t f) {
        Result code;
        if (wide64_) {
            code = Product64(&square64_, x, k_, nullptr, nullptr, 2 * k_, wide_.get());
        } else {
            code = Product(&square_, x, k_, nullptr, nullptr, wide_.get());
        }
        if (Ok(code)) code = Reduce(wide_.get(), 2 * k_, x);
        if (Ok(code) && f != 1) TimesSmall(x, f);
        return code;
    }

    // out := the transform of a residue, for MulTransformed.
    Result Transform(const Limb* y, KeptTransform* out) {
        if (wide64_) return Ntt64PlanForward(clk_, y, k_, nSq64_, &out->w);
        return NttForward(clk_, y, k_, nSq_, &out->v);
    }

    // x := x·y mod m, yHat from Transform.
    Result MulTransformed(Limb* x, const KeptTransform& yHat) {
        Result code;
        if (wide64_) {
            code = Ntt64PlanForward(clk_, x, k_, nSq64_, &work64_);
            if (!Ok(code)) return code;
            Ntt64PlanMul(clk_, &work64_, yHat.w);
            code = Ntt64PlanToLimbs(clk_, &work64_, 2 * k_, wide_.get());
        } else {
            code = NttForward(clk_, x, k_, nSq_, &work_);
            if (!Ok(code)) return code;
            NttMulAccumulate(&work_, work_, yHat.v, NttAccumulate::kSet);
            code = NttToLimbs(clk_, &work_, 2 * k_ - 1, wide_.get());
        }
        return Ok(code) ? Reduce(wide_.get(), 2 * k_, x) : code;
    }

private:
    // The same on the 64-bit transform, four limbs a point: the split plans
    // counted in points, q·m modulo B^nC − 1 for nC = 4·points >= k + 3 or
    // half that with the low product.
    Result Prepare64(const BigInt& r) {
        const int32_t k = k_;
        nSq64_ = Ntt64PlanPoints(2 * int64_t(Points64(k)) - 1);
        square64_.Make(2 * int64_t(Points64(k)) - 1);
        quotient64_.Make(int64_t(Points64(k + 2)) + Points64(lr_) - 1);
        nC64_ = Ntt64PlanPoints(Points64(k + 3));
        // Half the cyclic length and the low product, as in Prepare.
        const int32_t j = k + 2 - kNtt64PlanLimbs * (nC64_ / 2);
        if (j > 0 && Ntt64PlanPoints(2 * int64_t(Points64(j)) - 1) <= nC64_ / 4) {
            nC64_ /= 2;
            lowQ_ = j;
            nLowQ_ = Ntt64PlanPoints(2 * int64_t(Points64(j)) - 1);
        }
        nC_ = kNtt64PlanLimbs * nC64_;
        if (!(wide_.Reset(2 * int64_t(k) + 8) && product_.Reset(int64_t(k) + 2 + lr_) &&
              cyclic_.Reset(nC_) && folded_.Reset(std::max(nC_, k + 2)) && qFolded_.Reset(nC_) &&
              lowProduct_.Reset(int64_t(lowQ_) + 1)))
            return Result::kNoMemory;
        Result code = Ntt64PlanForward(clk_, r.limbs, lr_, quotient64_.nW, &r64_);
        if (Ok(code) && lowQ_ > 0) code = Ntt64PlanForward(clk_, m_.limbs, lowQ_, nLowQ_, &mLow64_);
        if (Ok(code) && quotient64_.nL > 0)
            code = Ntt64PlanForward(clk_, r.limbs, std::min(lr_, kNtt64PlanLimbs * quotient64_.w),
                                    quotient64_.nL, &rLow64_);
        if (!Ok(code)) return code;
        FoldCyclic(m_.limbs, k, nC_, qFolded_.get());
        return Ntt64PlanForward(clk_, qFolded_.get(), nC_, nC64_, &m64_);
    }

    // out[0 … lt + lr) := t·R.
    Result QuotientProduct(const Limb* t, int32_t lt, Limb* out) {
        if (!wide64_) return Product(&quotient_, t, lt, &rWrap_, &rLow_, out);
        // Only limbs k + 2 on are read: the coefficients below limb k − 4
        // are left out, which can take one unit off q.
        return Product64(&quotient64_, t, lt, &r64_, &rLow64_, lt + lr_, out, (k_ - 4) / 4);
    }

    // out[0 … len) := a·b (the product's limbs) by the plan, b given by its
    // transforms at the plan's lengths (null: a squared); its coefficients
    // from `first` on (ntt64_plan.h).
    Result Product64(SplitPlan64* s, const Limb* a, int32_t la, const Ntt64Vector* bWrap,
                     const Ntt64Vector* bLow, int32_t len, Limb* out, int32_t first = 0) {
        Result code = Ntt64PlanForward(clk_, a, la, s->nW, &s->wrap);
        if (!Ok(code)) return code;
        Ntt64PlanMul(clk_, &s->wrap, bWrap != nullptr ? *bWrap : s->wrap);
        if (s->nL == 0) return Ntt64PlanToLimbs(clk_, &s->wrap, len, out, first);
        code = Ntt64PlanForward(clk_, a, std::min(la, kNtt64PlanLimbs * s->w), s->nL, &s->low);
        if (!Ok(code)) return code;
        Ntt64PlanMul(clk_, &s->low, bLow != nullptr ? *bLow : s->low);
        return Ntt64PlanToLimbsSplit(clk_, &s->wrap, &s->low, s->w, &s->joined, len, out, first);
    }

    // out[0 … nC) := q·m modulo B^nC − 1 for q of lq <= nC limbs.
    Result CyclicByM(const Limb* q, int32_t lq, Limb* out) {
        if (wide64_) {
            Result code = Ntt64PlanForward(clk_, q, lq, nC64_, &workC64_);
            if (!Ok(code)) return code;
            Ntt64PlanMul(clk_, &workC64_, m64_);
            return Ntt64PlanToLimbsCyclic(clk_, &workC64_, out);
        }
        Result code = NttForward(clk_, q, lq, nC_, &workC_);
        if (!Ok(code)) return code;
        NttMulAccumulate(&workC_, workC_, mHat_, NttAccumulate::kSet);
        return NttToLimbsCyclic(clk_, &workC_, out);
    }

    // x := X mod m for X = wide[0 … lx) < m^2 (lx <= 2k).
    Result Reduce(const Limb* X, int32_t lx, Limb* x) {
        const int32_t k = k_, nC = nC_;
        const int32_t lt = lx - (k - 2);  // floor(X / B^(k−2)), k + 2 limbs
        Result code = QuotientProduct(X + (k - 2), lt, product_.get());
        if (!Ok(code)) return code;
        const Limb* q = product_.get() + (k + 2);
        int32_t lq = lt + lr_ - (k + 2);
        while (lq > 1 && q[lq - 1] == 0) --lq;
        if (lq > 2 * nC || lq > k + 1) return ReduceExactly(X, lx, x);
        const Limb* qc = q;
        if (lq > nC) {
            FoldCyclic(q, lq, nC, qFolded_.get());
            qc = qFolded_.get();
        }
        code = CyclicByM(qc, std::min(lq, nC), cyclic_.get());
        if (!Ok(code)) return code;
        // r := X − q·m modulo B^nC − 1, in [0, B^nC − 1]: a borrow takes
        // B^nC − 1 back on.
        Limb* r = folded_.get();
        FoldCyclic(X, lx, nC, r);
        if (SubLimbs(r, nC, cyclic_.get(), nC) != 0) {
            const Limb one = 1;
            SubLimbs(r, nC, &one, 1);
        }
        int32_t rl = nC;
        bool negative = false;
        if (lowQ_ == 0) {
            // |X − q·m| < B^(k+1): a negative difference shows as a top of nines.
            negative = r[nC - 1] >= kLimbBase / 2;
            if (negative)
                for (int32_t i = 0; i < nC; ++i) r[i] = static_cast<Limb>(kLimbBase - 1 - r[i]);
        } else {
            code = JoinLow(X, q, lq, r, &negative);
            if (!Ok(code)) return code;
            rl = k + 2;
        }
        // Now r = |X − q·m|: subtract m while it is at least m.
        int corrections = 0;
        while (AtLeast(r, rl, m_.limbs, k)) {
            if (++corrections > kMaxCorrections) return ReduceExactly(X, lx, x);
            SubLimbs(r, rl, m_.limbs, k);
        }
        // x = r, or m − r for a negative difference (0 when r is).
        std::copy(r, r + k, x);
        if (negative && std::any_of(r, r + k, [](Limb v) { return v != 0; })) {
            std::copy(m_.limbs, m_.limbs + k, x);
            SubLimbs(x, k, r, k);
        }
        return Result::kOk;
    }

    // r[0 … k + 2) := |D| for D = X − q·m, from a = D modulo B^nC − 1 in
    // r[0 … nC) and D modulo B^j by the low product, j = k + 2 − nC: V = a +
    // (B^nC − 1)·t with t = (a − D) mod B^j (B^nC − 1 = −1 modulo B^j) is D
    // modulo M = (B^nC − 1)·B^j, in [0, M). |D| < B^(k+1) <= M / 2, so a
    // non-zero limb k + 1 (V > M − B^(k+1)) means D = V − M: *negative.
    Result JoinLow(const Limb* X, const Limb* q, int32_t lq, Limb* r, bool* negative) {
        const int32_t j = lowQ_, nC = nC_;
        const int32_t lql = std::min(lq, j);
        Limb* t = lowProduct_.get();
        Result code;
        if (wide64_) {
            code = Ntt64PlanForward(clk_, q, lql, nLowQ_, &workLow64_);
            if (!Ok(code)) return code;
            Ntt64PlanMul(clk_, &workLow64_, mLow64_);
            code = Ntt64PlanToLimbs(clk_, &workLow64_, j, t);  // modulo B^j is enough
        } else {
            code = NttForward(clk_, q, lql, nLowQ_, &workLow_);
            if (!Ok(code)) return code;
            NttMulAccumulate(&workLow_, workLow_, mLow_, NttAccumulate::kSet);
            code = NttToLimbs(clk_, &workLow_, lql + j - 1, t);
        }
        if (!Ok(code)) return code;
        // t := a − (X − q·m) = a − X + q·m modulo B^j.
        (void)AddLimbs(t, j, r, j);
        (void)SubLimbs(t, j, X, j);
        std::copy(t, t + j, r + nC);
        (void)SubLimbs(r, nC + j, t, j);  // V >= 0: no borrow out
        *negative = r[k_ + 1] != 0;
        if (*negative) {
            // M − V = (B^(k+2) − 1 − V) + 1 − B^j.
            for (int32_t i = 0; i < k_ + 2; ++i) r[i] = static_cast<Limb>(kLimbBase - 1 - r[i]);
            const Limb one = 1;
            (void)AddLimbs(r, k_ + 2, &one, 1);
            (void)SubLimbs(r + j, k_ + 2 - j, &one, 1);
        }
        return Result::kOk;
    }

    // out[0 … n) := a[0 … la) modulo B^n − 1 (la <= 3n), in [0, B^n − 1].
    static void FoldCyclic(const Limb* a, int32_t la, int32_t n, Limb* out) {
        const int32_t low = std::min(la, n);
        std::copy(a, a + low, out);
        std::fill(out + low, out + n, Limb(0));
        for (int32_t from = n; from < la; from += n)
            if (AddLimbs(out, n, a + from, std::min(la - from, n)) != 0) AddOne(out, n);
    }

    // out[0 … count] := a·b by the plan, b given by its transforms at the
    // plan's lengths (null: a squared).
    Result Product(SplitPlan* s, const Limb* a, int32_t la, const NttVector* bWrap,
                   const NttVector* bLow, Limb* out) {
        Result code = NttForward(clk_, a, la, s->nW, &s->wrap);
        if (!Ok(code)) return code;
        NttMulAccumulate(&s->wrap, s->wrap, bWrap != nullptr ? *bWrap : s->wrap,
                         NttAccumulate::kSet);
        if (s->nL == 0) return NttToLimbs(clk_, &s->wrap, s->count, out);
        uint64_t* c = coefficients_.data();
        uint64_t* low = lowCoefficients_.data();
        code = NttToCoefficients(clk_, &s->wrap, s->nW, c);
        if (Ok(code)) code = NttForward(clk_, a, std::min(la, s->w), s->nL, &s->low);
        if (!Ok(code)) return code;
        NttMulAccumulate(&s->low, s->low, bLow != nullptr ? *bLow : s->low, NttAccumulate::kSet);
        code = NttToCoefficients(clk_, &s->low, s->w, low);
        if (!Ok(code)) return code;
        for (int32_t j = 0; j < s->w; ++j) {
            c[s->nW + j] = c[j] - low[j];
            c[j] = low[j];
        }
        return CarryCoefficients(clk_, c, s->count, out);
    }

    static void AddOne(Limb* r, int32_t n) {
        // Only reached with r < B^n − 1 after a carry out: it cannot carry again.
        const Limb one = 1;
        AddLimbs(r, n, &one, 1);
    }

    // x := X mod m by the dispatcher's division, for an estimate gone wrong.
    Result ReduceExactly(const Limb* X, int32_t lx, Limb* x) {
        BigTemp wide, q, rem;
        Result code = BigFromLimbs(&wide.v, X, LimbsTrimTop(X, lx - 1), 0);
        if (Ok(code)) code = FastDivMod(ctx_, &wide.v, &m_, &q.v, &rem.v);
        if (!Ok(code)) return code;
        std::fill(x, x + k_, Limb(0));
        std::copy(rem.v.limbs, rem.v.limbs + rem.v.top + 1, x);
        return Result::kOk;
    }

    // x := x·f mod m for f < 10^8: the product has at most k + 2 limbs, and
    // a quotient from its leading limbs, at most two units short, leaves a
    // few subtractions.
    void TimesSmall(Limb* x, uint32_t f) {
        const int32_t k = k_;
        Limb* y = wide_.get();
        uint64_t carry = 0;
        for (int32_t i = 0; i < k; ++i) {
            const uint64_t v = uint64_t(uint16_t(x[i])) * f + carry;
            carry = v / kLimbBase;
            y[i] = static_cast<Limb>(v - carry * kLimbBase);
        }
        y[k] = static_cast<Limb>(carry % kLimbBase);
        y[k + 1] = static_cast<Limb>(carry / kLimbBase);
        // y / B^(k−3) and m / B^(k−3) + 1, leading limbs as doubles: the
        // ratio errs by less than 10^−8 of itself, below one unit, and never up.
        double top = 0, mTop = 0;
        for (int32_t i = k + 1; i >= k - 3; --i) top = top * kLimbBase + y[i];
        for (int32_t i = k - 1; i >= k - 3; --i) mTop = mTop * kLimbBase + m_.limbs[i];
        const double estimate = std::floor(top / (mTop + 1) * (1 - 1e-12));
        const uint64_t qs = estimate > 0 ? static_cast<uint64_t>(estimate) : 0;
        // y −= qs·m, qs < 10^8.
        int64_t borrow = 0;
        for (int32_t i = 0; i < k + 2; ++i) {
            const int64_t v =
                int64_t(y[i]) - (i < k ? int64_t(qs * uint64_t(m_.limbs[i])) : 0) - borrow;
            const int64_t under = v < 0 ? (-v + kLimbBase - 1) / kLimbBase : 0;
            y[i] = static_cast<Limb>(v + under * kLimbBase);
            borrow = under;
        }
        while (AtLeast(y, k + 2, m_.limbs, k)) SubLimbs(y, k + 2, m_.limbs, k);
        std::copy(y, y + k, x);
    }

    CalcContext* ctx_;
    PollClock clk_;
    const BigInt& m_;
    const int32_t k_;
    // The 64-bit transform where it has its vector butterflies.
    const bool wide64_ = Ntt64PlanAvailable();
    int32_t nSq_ = 0, nC_ = 0, lr_ = 0;
    int32_t nSq64_ = 0, nC64_ = 0;  // its points
    SplitPlan64 square64_, quotient64_;
    int32_t lowQ_ = 0, nLowQ_ = 0;  // j and its product's points, or 0: no low product
    SplitPlan square_, quotient_;
    std::vector<uint64_t> coefficients_, lowCoefficients_;
    NttVector rWrap_, rLow_, mHat_, mLow_, work_, workC_, workLow_;
    Ntt64Vector r64_, rLow64_, m64_, mLow64_, work64_, workC64_, workLow64_;
    LimbBuffer wide_, product_, cyclic_, folded_, lowProduct_, qFolded_;
};

// The exponent's bits from the top: squares, and a linear product by the
// base f < 10^8 at each one.
Result PowerSmallBase(LongModulus& mod, uint32_t f, const std::vector<bool>& bits, Limb* x) {
    std::fill(x, x + mod.limbs(), Limb(0));
    x[0] = static_cast<Limb>(f % kLimbBase);
    x[1] = static_cast<Limb>(f / kLimbBase);
    for (size_t i = bits.size() - 1; i-- > 0;) {
        const Result code = mod.SquareTimes(x, bits[i] ? f : 1);
        if (!Ok(code)) return code;
    }
    return Result::kOk;
}

// A sliding window whose odd powers b, b^3 … are kept transformed.
Result PowerWindow(LongModulus& mod, const Limb* b, const std::vector<bool>& bits, Limb* x) {
    const int32_t k = mod.limbs();
    const int w = WindowBits(bits.size());
    std::vector<KeptTransform> odd(size_t(1) << (w - 1));
    LimbBuffer square(k), power(k);
    if (!square.ok() || !power.ok()) return Result::kNoMemory;
    std::copy(b, b + k, square.get());
    std::copy(b, b + k, power.get());
    Result code = mod.SquareTimes(square.get(), 1);
    KeptTransform squareHat;
    if (Ok(code) && odd.size() > 1) code = mod.Transform(square.get(), &squareHat);
    for (size_t j = 0; j < odd.size() && Ok(code); ++j) {
        if (j > 0) code = mod.MulTransformed(power.get(), squareHat);
        if (Ok(code)) code = mod.Transform(power.get(), &odd[j]);
    }
    bool started = false;
    for (int64_t i = static_cast<int64_t>(bits.size()) - 1; i >= 0 && Ok(code);) {
        if (!bits[size_t(i)]) {
            code = mod.SquareTimes(x, 1);
            --i;
            continue;
        }
        int64_t j = std::max<int64_t>(i - w + 1, 0);
        while (!bits[size_t(j)]) ++j;
        size_t value = 0;
        for (int64_t t = i; t >= j; --t) value = (value << 1) | (bits[size_t(t)] ? 1 : 0);
        if (started) {
            for (int64_t t = i; t >= j && Ok(code); --t) code = mod.SquareTimes(x, 1);
            if (Ok(code)) code = mod.MulTransformed(x, odd[value / 2]);
        } else {
            std::fill(x, x + k, Limb(0));
            x[0] = 1;
            code = mod.MulTransformed(x, odd[value / 2]);
            started = true;
        }
        i = j - 1;
    }
    return code;
}

// Residues modulo |m| as exact limb vectors (canonical, at least one limb).
class LongRing {
public:
    using Value = std::vector<Limb>;
    LongRing(CalcContext* ctx, const BigInt* m) : ctx_(ctx), m_(m) {}
    Value Zero() const { return Value(1, 0); }
    bool Copy(const Value& a, Value* r) const {
        *r = a;
        return true;
    }
    bool Mul(const Value& a, const Value& b, Value* r) {
        const BigInt x = View(a), y = View(b);
        BigTemp product, q, rem;
        code_ = FastMul(ctx_, &product.v, &x, &y);
        if (code_ == 0) code_ = FastDivMod(ctx_, &product.v, m_, &q.v, &rem.v);
        if (code_ != 0) return false;
        r->assign(rem.v.limbs, rem.v.limbs + rem.v.top + 1);
        return true;
    }
    bool Sqr(const Value& a, Value* r) { return Mul(a, a, r); }
    // The failing code after a false answer.
    Result code() const { return code_; }

private:
    static BigInt View(const Value& a) {
        BigInt v = {};
        v.limbs = const_cast<Limb*>(a.data());
        v.top = static_cast<int32_t>(a.size()) - 1;
        return v;
    }
    CalcContext* ctx_;
    const BigInt* m_;
    Result code_ = Result::kOk;
};

Result ModPowLongBody(CalcContext* ctx, const BigInt* base, const BigInt* exponent, const BigInt* m,
                      BigInt* result) {
    const BigInt mm = BigMagnitudeView(m);
    BigTemp reduced, canonical;
    std::vector<bool> bits;
    Result code = BigMod(ctx, base, &mm, &reduced.v);
    if (Ok(code)) code = ExponentBits(ctx, exponent, &bits);
    // A modulus with a top limb of 10000 (left by a sum) is carried first:
    // the products compare with it limb by limb.
    if (Ok(code)) code = BigFromLimbs(&canonical.v, mm.limbs, mm.top, 0);
    if (Ok(code)) code = FastCanonical(&canonical.v);
    if (!Ok(code)) return code;
    const BigInt& b = reduced.v;
    const int32_t k = canonical.v.top + 1;
    if (k >= kFastLimbs) {
        LongModulus mod(ctx, canonical.v);
        LimbBuffer x(k), bk(k, true);
        if (!x.ok() || !bk.ok()) return Result::kNoMemory;
        code = mod.Prepare();
        if (Ok(code) && b.top <= 1 &&
            b.limbs[0] + int64_t(kLimbBase) * (b.top > 0 ? b.limbs[1] : 0) > 0) {
            const uint32_t f =
                static_cast<uint32_t>(b.limbs[0] + (b.top > 0 ? kLimbBase * b.limbs[1] : 0));
            code = PowerSmallBase(mod, f, bits, x.get());
        } else if (Ok(code)) {
            std::copy(b.limbs, b.limbs + b.top + 1, bk.get());
            code = PowerWindow(mod, bk.get(), bits, x.get());
        }
        if (!Ok(code)) return code;
        return BigFromLimbs(result, x.get(), LimbsTrimTop(x.get(), k - 1), 0);
    }
    LongRing ring(ctx, &canonical.v);
    std::vector<Limb> x, bv(b.limbs, b.limbs + b.top + 1);
    if (!SlidingWindowPower(ring, bv, bits, &x)) return ring.code();
    return BigFromLimbs(result, x.data(), LimbsTrimTop(x.data(), int32_t(x.size()) - 1), 0);
}

}  // namespace

Result ModPowLong(CalcContext* ctx, const BigInt* base, const BigInt* exponent, const BigInt* m,
                  BigInt* result) {
    return CatchNoMemory([&] { return ModPowLongBody(ctx, base, exponent, m, result); });
}
