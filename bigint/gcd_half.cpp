// Greatest common divisor by the half-gcd, in O(M(n) log n).
//
// Hgcd(a, b, n) takes a, b below B^n (B = 10000) and, with s = n/2 + 1,
// takes Euclid's steps while both numbers stay at least B^s. The steps come
// back as a matrix M of non-negative entries and determinant ±1 with
// (a; b) = M·(a'; b') for the reduced pair (a', b'). Since a >= u00·a' +
// u01·b' (and b likewise), every entry is below B^n / B^s: M and the pair
// have about n/2 limbs each.
//
// Möller's recursion: the top n − p limbs (p = n/2) are reduced by a call
// of half the size, which gives M1 and reduced tops α, β >= B^s1 with
// entries below B^(n1 − s1) <= B^(s1 − 1) (n1 = n − p, s1 = n1/2 + 1). The
// full pair follows with four products by the low p limbs,
//   a' = α·B^p + det·(u11·a_lo − u01·b_lo),  b' = β·B^p + det·(u00·b_lo − u10·a_lo),
// where the correction is below B^(s1 − 1 + p) in magnitude against
// α·B^p >= B^(s1 + p) >= B^(s + 1): the pair stays positive and at least
// B^s while shrinking to about 3n/4 limbs. A second call of half the size on
// its top limbs, split so that its floor lands one limb above s, brings it
// to about s limbs, and Lehmer steps under the floor B^s finish. Nothing
// needs M to be Euclid's exact quotient sequence of the full numbers: any
// non-negative M of determinant ±1 keeps the gcd, and the bounds above
// keep the sizes. Leaves (n below gcdHalfLeaf) take Lehmer steps on work
// arrays, with a division where the leading limbs decide nothing. Above
// them a level costs, with k = n/4, four products of k by 2k limbs, four
// of k by k, and the product M1·M2. From gcdMatrixNtt limbs these run on
// the transform in pieces (ntt_plan.h): each factor is transformed once and
// each result is one inverse transform of a sum (or difference) of two
// pointwise products, so M1·M2 costs 8 forward and 4 inverse transforms
// (Strassen's seven products, 21) and the pair's update 6 and 2; the
// updates keep M1's and M2's transforms for M1·M2 when the lengths agree
// (no Lehmer step came between the halves), leaving 4 inverse transforms.
// A sum of two products per coefficient doubles the coefficient bound,
// still far below what the two primes determine (NttPlanFits). Where the
// vector products are present, sums from gcdMatrixNtt64 limbs take the
// 64-bit transform (ntt64_plan.h) instead: four limbs a point on three
// primes, a quarter of the points, coefficients below 2·n·10^32 against the
// primes' 2^149, the corrections' signed sums joined with their sign. Below
// gcdMatrixNtt the products go by MulRec, M1·M2 in Strassen's form past
// Karatsuba's size.
//
// The gcd calls Hgcd on the top n limbs of its pair, n the longest of the
// form 2^k − 2^(k−6) that the pair holds (at least half of it), and applies
// the matrix to the whole pair, each round removing about n/2 limbs; when
// Hgcd cannot move (a huge quotient) one division step is taken. Below
// gcdHalf limbs Lehmer's method takes over.
//
// Allocation: matrix entries and work arrays from alloc.h; a refused one answers
// code 3.
#include <algorithm>
#include <cassert>
#include <climits>
#include <cstdlib>
#include <utility>

#include "bigint/fast_paths.h"
#include "bigint/gcd_half.h"
#include "bigint/gcd_lehmer.h"
#include "bigint/mul_kernels.h"
#include "bigint/thresholds.h"

namespace {

int32_t Len(const BigInt& v) { return v.top + 1; }

// v >= B^s, for a canonical v.
bool AtLeastPower(const BigInt& v, int32_t s) { return v.top >= s; }

// (a; b) = M·(a'; b') for the pair a reduction started from and the pair it reached.
using Matrix = HgcdMatrix;
using Run = HgcdRun;

Result SetIdentity(Matrix* m) {
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j) {
            BigFree(&m->u[i][j].v);
            if (BigFromInt(&m->u[i][j].v, i == j ? 1 : 0) != 0) return Result::kNoMemory;
        }
    m->det = 1;
    return Result::kOk;
}

void Exchange(Matrix* x, Matrix* y) {
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j) std::swap(x->u[i][j].v, y->u[i][j].v);
    std::swap(x->det, y->det);
}

// The pair exchanged: M's columns follow.
void SwapPair(BigTemp& a, BigTemp& b, Matrix* m) {
    std::swap(a.v, b.v);
    std::swap(m->u[0][0].v, m->u[0][1].v);
    std::swap(m->u[1][0].v, m->u[1][1].v);
    m->det = -m->det;
}

bool IsIdentity(const Matrix& m) {
    return BigIsOne(&m.u[0][0].v) && BigIsZero(&m.u[0][1].v) && BigIsZero(&m.u[1][0].v) &&
           BigIsOne(&m.u[1][1].v);
}

// m := m·n by Strassen's seven products in Winograd's form, which pays once
// the products are past schoolbook size. Its sums may be negative; the
// entries it gives are not.
Result MatMulStrassen(Run& run, Matrix* m, const Matrix& n) {
    const BigInt *a11 = &m->u[0][0].v, *a12 = &m->u[0][1].v;
    const BigInt *a21 = &m->u[1][0].v, *a22 = &m->u[1][1].v;
    const BigInt *b11 = &n.u[0][0].v, *b12 = &n.u[0][1].v;
    const BigInt *b21 = &n.u[1][0].v, *b22 = &n.u[1][1].v;
    BigTemp s1, s2, s3, s4, t1, t2, t3, t4, p[7], w, v, x;
    Matrix r;
    Result code = FastAdd(&s1.v, a21, a22);
    if (Ok(code)) code = FastSub(&s2.v, &s1.v, a11);
    if (Ok(code)) code = FastSub(&s3.v, a11, a21);
    if (Ok(code)) code = FastSub(&s4.v, a12, &s2.v);
    if (Ok(code)) code = FastSub(&t1.v, b12, b11);
    if (Ok(code)) code = FastSub(&t2.v, b22, &t1.v);
    if (Ok(code)) code = FastSub(&t3.v, b22, b12);
    if (Ok(code)) code = FastSub(&t4.v, &t2.v, b21);
    const BigInt* factors[7][2] = {{a11, b11},     {a12, b21},     {&s4.v, b22},  {a22, &t4.v},
                                   {&s1.v, &t1.v}, {&s2.v, &t2.v}, {&s3.v, &t3.v}};
    for (int i = 0; i < 7 && Ok(code); ++i) code = run.Mul(&p[i].v, factors[i][0], factors[i][1]);
    // c11 = p1 + p2, w = p1 + p6, v = w + p7, c12 = w + p5 + p3,
    // c21 = v − p4, c22 = v + p5.
    if (Ok(code)) code = FastAdd(&r.u[0][0].v, &p[0].v, &p[1].v);
    if (Ok(code)) code = FastAdd(&w.v, &p[0].v, &p[5].v);
    if (Ok(code)) code = FastAdd(&v.v, &w.v, &p[6].v);
    if (Ok(code)) code = FastAdd(&x.v, &w.v, &p[4].v);
    if (Ok(code)) code = FastAdd(&r.u[0][1].v, &x.v, &p[2].v);
    if (Ok(code)) code = FastSub(&r.u[1][0].v, &v.v, &p[3].v);
    if (Ok(code)) code = FastAdd(&r.u[1][1].v, &v.v, &p[4].v);
    if (!Ok(code)) return code;
    for (auto& row : r.u)
        for (auto& e : row) e.v.negative = 0;
    r.det = m->det * n.det;
    Exchange(m, &r);
    return Result::kOk;
}

// The longest entry of m.
int32_t LongestEntry(const Matrix& m) {
    int32_t l = 1;
    for (const auto& row : m.u)
        for (const auto& e : row) l = std::max(l, Len(e.v));
    return l;
}

// r := the non-negative sum in acc, below B^count, as a new record.
Result TakeSum(Run& run, NttVector* acc, int32_t count, BigInt* r) {
    LimbBuffer p(int64_t(count) + 1);
    if (!p.ok()) return Result::kNoMemory;
    const Result code = NttToLimbs(run.clk, acc, count, p.get());
    if (!Ok(code)) return code;
    r->top = LimbsTrimTop(p.get(), count);
    r->negative = 0;
    r->limbs = p.Release();
    return Result::kOk;
}

// m := m·n; nHat (or null) may hold n's transforms for the summed products,
// mHat (or null) m's.
Result MatMul(Run& run, Matrix* m, const Matrix& n, HgcdMatrixHat* nHat = nullptr,
              const HgcdMatrixHat* mHat = nullptr) {
    Matrix r;
    if (IsIdentity(*m)) {
        Result code = Result::kOk;
        for (int i = 0; i < 4 && Ok(code); ++i)
            code = BigCopy(&r.u[i / 2][i % 2].v, &n.u[i / 2][i % 2].v);
        if (!Ok(code)) return code;
        r.det = n.det;
        Exchange(m, &r);
        return Result::kOk;
    }
    const int32_t lm = LongestEntry(*m), ln = LongestEntry(n);
    if (HgcdUseTransforms(std::min(lm, ln), std::max(lm, ln))) {
        HgcdMatrixHat own;
        const BigInt* const a[2][2] = {{&m->u[0][0].v, &m->u[0][1].v},
                                       {&m->u[1][0].v, &m->u[1][1].v}};
        const BigInt* const b[2][2] = {{&n.u[0][0].v, &n.u[0][1].v}, {&n.u[1][0].v, &n.u[1][1].v}};
        BigInt* const c[2][2] = {{&r.u[0][0].v, &r.u[0][1].v}, {&r.u[1][0].v, &r.u[1][1].v}};
        const Result code = HgcdMatMulNtt(run, 2, a, b, c, nHat != nullptr ? nHat : &own, mHat);
        if (!Ok(code)) return code;
        r.det = m->det * n.det;
        Exchange(m, &r);
        return Result::kOk;
    }
    int32_t shortest = INT32_MAX;
    for (int i = 0; i < 4; ++i)
        shortest = std::min({shortest, Len(m->u[i / 2][i % 2].v), Len(n.u[i / 2][i % 2].v)});
    if (shortest >= gFastThresholds.mulKaratsuba) return MatMulStrassen(run, m, n);
    for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 2; ++j) {
            BigTemp x, y;
            Result code = run.Mul(&x.v, &m->u[i][0].v, &n.u[0][j].v);
            if (Ok(code)) code = run.Mul(&y.v, &m->u[i][1].v, &n.u[1][j].v);
            if (Ok(code)) code = FastAdd(&r.u[i][j].v, &x.v, &y.v);
            if (!Ok(code)) return code;
        }
    r.det = m->det * n.det;
    Exchange(m, &r);
    return Result::kOk;
}

// The low p >= 1 limbs of v, as a view of v's limbs.
BigInt LowView(const BigInt& v, int32_t p) {
    BigInt r = BigMagnitudeView(&v);
    if (p <= v.top) r.top = LimbsTrimTop(v.limbs, p - 1);
    return r;
}

// Limbs from..from + len of v (within its length), as a view; zero past it.
BigInt Slice(const BigInt& v, int32_t from, int32_t len) {
    static Limb zero = 0;
    BigInt r = {};
    if (from >= Len(v)) {
        r.limbs = &zero;
        return r;
    }
    r.limbs = v.limbs + from;
    r.top = LimbsTrimTop(r.limbs, std::min(len, Len(v) - from) - 1);
    return r;
}

// Points of the transform that takes a sum of `count` limbs, in units of
// the two-prime transform's points (limbs) for comparing costs: a 64-bit
// point costs about as much as four of those.
int32_t PlanPoints(int32_t count) {
    return HgcdWide(count) ? 4 * Ntt64PlanPoints((int64_t(count) + 3) / 4) : NttPoints(count);
}

// e := det·(u11·al − u01·bl) and det·(u00·bl − u10·al) at n points, each
// below B^count in magnitude, one inverse transform of a difference of
// pointwise products each; mHat keeps M's transforms at n.
Result CorrectionsAtWide(Run& run, const BigInt& al, const BigInt& bl, const Matrix& m,
                         HgcdMatrixHat* mHat, int32_t n, int32_t count, BigTemp* e) {
    Result code = Result::kOk;
    if (mHat->n != -n) {
        mHat->n = 0;
        for (int i = 0; i < 4 && Ok(code); ++i) {
            const BigInt& u = m.u[i / 2][i % 2].v;
            code = Ntt64PlanForward(run.clk, u.limbs, Len(u), n, &mHat->w[i / 2][i % 2]);
        }
        if (!Ok(code)) return code;
        mHat->n = -n;
    }
    Ntt64Vector own[4];
    Ntt64Vector* work = run.Work(n, own);
    Ntt64Vector &alHat = work[0], &blHat = work[1], &acc = work[2], &scratch = work[3];
    code = Ntt64PlanForward(run.clk, al.limbs, Len(al), n, &alHat);
    if (Ok(code)) code = Ntt64PlanForward(run.clk, bl.limbs, Len(bl), n, &blHat);
    const Ntt64Vector* terms[2][4] = {{&mHat->w[1][1], &alHat, &mHat->w[0][1], &blHat},
                                      {&mHat->w[0][0], &blHat, &mHat->w[1][0], &alHat}};
    for (int k = 0; k < 2 && Ok(code); ++k) {
        code = Ntt64PlanMulAccumulate(run.clk, &acc, *terms[k][0], *terms[k][1],
                                      Ntt64Accumulate::kSet, &scratch);
        if (Ok(code))
            code = Ntt64PlanMulAccumulate(run.clk, &acc, *terms[k][2], *terms[k][3],
                                          Ntt64Accumulate::kSub, &scratch);
        if (!Ok(code)) return code;
        // One limb above the bound tells the sign.
        LimbBuffer limbs(int64_t(count) + 1);
        bool negative = false;
        if (!limbs.ok()) return Result::kNoMemory;
        code = Ntt64PlanToLimbsSigned(run.clk, &acc, count + 1, limbs.get(), &negative);
        if (!Ok(code)) return code;
        BigInt& v = e[k].v;
        BigFree(&v);
        v.top = LimbsTrimTop(limbs.get(), count - 1);
        v.limbs = limbs.Release();
        v.negative = !BigIsZero(&v) && negative != (m.det < 0) ? 1 : 0;
    }
    return code;
}

Result CorrectionsAt(Run& run, const BigInt& al, const BigInt& bl, const Matrix& m,
                     HgcdMatrixHat* mHat, int32_t n, int32_t count, BigTemp* e) {
    if (HgcdWide(count))
        return CorrectionsAtWide(run, al, bl, m, mHat, Ntt64PlanPoints((int64_t(count) + 3) / 4),
                                 count, e);
    Result code = Result::kOk;
    if (mHat->n != n) {
        mHat->n = 0;
        for (int i = 0; i < 4 && Ok(code); ++i) {
            const BigInt& u = m.u[i / 2][i % 2].v;
            code = NttForward(run.clk, u.limbs, Len(u), n, &mHat->u[i / 2][i % 2]);
        }
        if (!Ok(code)) return code;
        mHat->n = n;
    }
    NttVector alHat, blHat, acc;
    code = NttForward(run.clk, al.limbs, Len(al), n, &alHat);
    if (Ok(code)) code = NttForward(run.clk, bl.limbs, Len(bl), n, &blHat);
    if (Ok(code) && !acc.Reset(n)) code = Result::kNoMemory;
    const NttVector* terms[2][4] = {{&mHat->u[1][1], &alHat, &mHat->u[0][1], &blHat},
                                    {&mHat->u[0][0], &blHat, &mHat->u[1][0], &alHat}};
    for (int k = 0; k < 2 && Ok(code); ++k) {
        NttMulAccumulate(&acc, *terms[k][0], *terms[k][1], NttAccumulate::kSet);
        NttMulAccumulate(&acc, *terms[k][2], *terms[k][3], NttAccumulate::kSub);
        LimbBuffer limbs(count);
        bool negative = false;
        if (!limbs.ok()) return Result::kNoMemory;
        code = NttToLimbsSigned(run.clk, &acc, count, limbs.get(), &negative);
        if (!Ok(code)) return code;
        BigInt& v = e[k].v;
        BigFree(&v);
        v.top = LimbsTrimTop(limbs.get(), count - 1);
        v.limbs = limbs.Release();
        v.negative = !BigIsZero(&v) && negative != (m.det < 0) ? 1 : 0;
    }
    return code;
}

// The corrections of Adjust. Low parts about twice as long as M's entries
// (the gcd's rounds, the first call of each level) go in two halves when
// that is cheaper: 8 forward and 4 inverse transforms of lu + h points
// against 6 and 2 of lu + 2h, which the powers of two often round up to
// twice as many.
Result Corrections(Run& run, const BigInt& al, const BigInt& bl, const Matrix& m,
                   HgcdMatrixHat* mHat, BigTemp* e) {
    // |u11·al − u01·bl| < max(u11·al, u01·bl) < B^count, and likewise.
    const int32_t lu = LongestEntry(m), low = std::max(Len(al), Len(bl));
    const int32_t count = lu + low, h = (low + 1) / 2;
    const int32_t n = PlanPoints(count), nHalf = PlanPoints(lu + h);
    if (low < 2 || 12 * int64_t(nHalf) >= 8 * int64_t(n))
        return CorrectionsAt(run, al, bl, m, mHat, n, count, e);
    Result code = Result::kOk;
    BigTemp high[2];
    for (int j = 1; j >= 0 && Ok(code); --j) {
        const BigInt aj = Slice(al, j * h, h), bj = Slice(bl, j * h, h);
        code = CorrectionsAt(run, aj, bj, m, mHat, nHalf, lu + h, j == 1 ? high : e);
    }
    // e := e + high·B^h.
    for (int k = 0; k < 2 && Ok(code); ++k) {
        BigTemp shifted, sum;
        code = FastShiftUp(&shifted.v, &high[k].v, h);
        shifted.v.negative = high[k].v.negative;
        if (Ok(code)) code = FastAdd(&sum.v, &e[k].v, &shifted.v);
        if (Ok(code)) BigReplace(&e[k].v, &sum.v);
    }
    return code;
}

// (a; b) := M^−1·(a; b), where the tops a / B^p and b / B^p have been
// reduced by M to A and B.
Result Adjust(Run& run, BigTemp& a, BigTemp& b, const BigTemp& A, const BigTemp& B, const Matrix& m,
              int32_t p, HgcdMatrixHat* mHat) {
    BigTemp na, nb;
    const int32_t lowLen = std::min(p, Len(a.v));
    const int32_t lu = LongestEntry(m);
    if (p > 0 && HgcdUseTransforms(std::min(lu, lowLen), std::max(lu, lowLen))) {
        const BigInt al = LowView(a.v, p), bl = LowView(b.v, p);
        const BigTemp* tops[2] = {&A, &B};
        BigInt* outs[2] = {&na.v, &nb.v};
        BigTemp e[2];
        Result code = Corrections(run, al, bl, m, mHat, e);
        for (int k = 0; k < 2 && Ok(code); ++k) {
            BigTemp high;
            code = FastShiftUp(&high.v, &tops[k]->v, p);
            if (Ok(code)) code = FastAdd(outs[k], &high.v, &e[k].v);
            assert(!Ok(code) || (!FastIsNegative(outs[k]) && !BigIsZero(outs[k])));
        }
        if (!Ok(code)) return code;
    } else if (p == 0) {
        Result code = BigCopy(&na.v, &A.v);
        if (Ok(code)) code = BigCopy(&nb.v, &B.v);
        if (!Ok(code)) return code;
    } else {
        const BigInt al = LowView(a.v, p), bl = LowView(b.v, p);
        // a' = A·B^p + det·(u11·al − u01·bl), b' = B·B^p + det·(u00·bl − u10·al).
        const BigInt* terms[2][4] = {{&m.u[1][1].v, &al, &m.u[0][1].v, &bl},
                                     {&m.u[0][0].v, &bl, &m.u[1][0].v, &al}};
        const BigInt* tops[2] = {&A.v, &B.v};
        BigInt* outs[2] = {&na.v, &nb.v};
        for (int k = 0; k < 2; ++k) {
            BigTemp plus, minus, e, high;
            Result code = run.Mul(&plus.v, terms[k][0], terms[k][1]);
            if (Ok(code)) code = run.Mul(&minus.v, terms[k][2], terms[k][3]);
            if (Ok(code) && m.det < 0) std::swap(plus.v, minus.v);
            if (Ok(code)) code = FastSub(&e.v, &plus.v, &minus.v);
            if (Ok(code)) code = FastShiftUp(&high.v, tops[k], p);
            if (Ok(code)) code = FastAdd(outs[k], &high.v, &e.v);
            if (!Ok(code)) return code;
            assert(!FastIsNegative(outs[k]) && !BigIsZero(outs[k]));
        }
    }
    BigReplace(&a.v, &na.v);
    BigReplace(&b.v, &nb.v);
    return Result::kOk;
}

// Steps under the floor B^s on a >= b >= B^s while a has more than
// stopLen limbs: Lehmer's step, or one division where the leading limbs
// decide nothing. With `onto` false m receives the steps; with it true m is
// multiplied by them, each step carried to m's rows at once, which costs
// less than a product by the steps' short matrix afterwards. *blocked tells
// that the next remainder falls below B^s, so no step is left. Every array
// is allocated once, in words of 10^8: the pair only shrinks, and the steps'
// entries stay below a / B^s, so m's grow by fewer limbs than a has above s.
Result Leaf(Run& run, BigTemp& a, BigTemp& b, int32_t s, int32_t stopLen, Matrix* m, bool* moved,
            bool* blocked, bool onto = false) {
    *moved = false;
    *blocked = false;
    const int32_t grown = onto ? LongestEntry(*m) + std::max(Len(a.v) - s, 0) + 2 : 0;
    const int32_t room = (std::max(Len(a.v), grown) + 1) / 2 + 4;
    WordSlot x, y, sx, sy, u[2][2], t0, t1;
    Result code = Result::kOk;
    for (WordSlot* w : {&x, &y, &sx, &sy, &u[0][0], &u[0][1], &u[1][0], &u[1][1], &t0, &t1})
        if (Ok(code) && !w->Reset(room)) code = Result::kNoMemory;
    if (!Ok(code)) return code;
    x.FromLimbs(a.v.limbs, Len(a.v));
    y.FromLimbs(b.v.limbs, Len(b.v));
    for (int i = 0; i < 4; ++i) {
        WordSlot& e = u[i / 2][i % 2];
        if (onto)
            e.FromLimbs(m->u[i / 2][i % 2].v.limbs, Len(m->u[i / 2][i % 2].v));
        else
            e.get()[0] = i == 0 || i == 3 ? 1 : 0;
    }
    int det = onto ? m->det : 1;
    while (Ok(code) && x.Limbs() > stopLen) {
        if (run.clk.Tick(8 * int64_t(x.Limbs()))) return Result::kStopped;
        // Every step keeps y at least B^s; the test keeps a pair that broke
        // the rule from being divided down to zero.
        if (y.Limbs() <= s) {
            *blocked = true;
            break;
        }
        const LehmerCofactors c = LehmerLeadingWords(x.get(), x.len, y.get(), y.len, s);
        if (c.steps > 0) {
            LehmerCombineWords(c, x.get(), x.len, y.get(), y.len, sx.get(), &sx.len, sy.get(),
                               &sy.len);
            x.Swap(sx);
            y.Swap(sy);
            // M := M·Q, Q the steps' quotient matrices multiplied out.
            for (auto& row : u) ApplyQuotients(c, row[0], row[1], t0, t1);
            if (c.steps % 2 != 0) det = -det;
            *moved = true;
            continue;
        }
        // (x, y) := (y, x mod y), M := M·[q 1; 1 0], on records.
        BigTemp xv, yv, q, r;
        code = x.Store(&xv.v);
        if (Ok(code)) code = y.Store(&yv.v);
        if (Ok(code)) code = FastDivMod(run.ctx, &xv.v, &yv.v, &q.v, &r.v);
        if (!Ok(code)) break;
        if (!AtLeastPower(r.v, s)) {
            *blocked = true;
            break;
        }
        x.Swap(y);
        y.FromLimbs(r.v.limbs, Len(r.v));
        for (auto& row : u) {
            BigTemp u0, u1, product, sum;
            code = row[0].Store(&u0.v);
            if (Ok(code)) code = row[1].Store(&u1.v);
            if (Ok(code)) code = run.Mul(&product.v, &q.v, &u0.v);
            if (Ok(code)) code = FastAdd(&sum.v, &product.v, &u1.v);
            if (!Ok(code)) break;
            t0.FromLimbs(sum.v.limbs, Len(sum.v));
            row[1].Swap(row[0]);
            row[0].Swap(t0);
        }
        det = -det;
        *moved = true;
    }
    if (Ok(code)) code = x.Store(&a.v);
    if (Ok(code)) code = y.Store(&b.v);
    if (onto && !*moved) return code;
    // A refusal here leaves m part old, part new: the callers then drop it.
    for (int i = 0; i < 4 && Ok(code); ++i) code = u[i / 2][i % 2].Store(&m->u[i / 2][i % 2].v);
    m->det = det;
    return code;
}

Result Hgcd(Run& run, BigTemp& a, BigTemp& b, int32_t n, Matrix* m, bool* moved);

// The tops a / B^p >= b / B^p (below B^n) reduced by Hgcd and carried to
// the whole pair, a >= b again afterwards; m takes the call's matrix on.
// mHat (or null) holds m's transforms where it has some (n = 0: none) and
// keeps m's afterwards when m was the identity (m is then the call's
// matrix, transformed for the pair's update), none otherwise.
Result ReduceTops(Run& run, BigTemp& a, BigTemp& b, int32_t p, int32_t n, Matrix* m, bool* moved,
                  HgcdMatrixHat* mHat = nullptr) {
    BigTemp A, B;
    Matrix top;
    bool topMoved = false;
    Result code = FastShiftDown(&A.v, &a.v, p);
    if (Ok(code)) code = FastShiftDown(&B.v, &b.v, p);
    if (Ok(code)) code = SetIdentity(&top);
    if (Ok(code)) code = Hgcd(run, A, B, n, &top, &topMoved);
    if (!Ok(code) || !topMoved) return code;
    HgcdMatrixHat own;
    const bool first = mHat != nullptr && IsIdentity(*m);
    HgcdMatrixHat* topHat = first ? mHat : &own;
    if (first) mHat->n = 0;
    code = Adjust(run, a, b, A, B, top, p, topHat);
    if (Ok(code)) code = MatMul(run, m, top, topHat, first ? nullptr : mHat);
    if (!first && mHat != nullptr) mHat->n = 0;
    // The exchange swaps m's columns: its kept transforms no longer match.
    if (Ok(code) && BigCompareMag(&a.v, &b.v) > 0) {
        SwapPair(a, b, m);
        if (mHat != nullptr) mHat->n = 0;
    }
    *moved = true;
    return code;
}

// Leaf steps on a >= b, taken on by m; *blocked as for Leaf.
Result LeafSteps(Run& run, BigTemp& a, BigTemp& b, int32_t s, int32_t stopLen, Matrix* m,
                 bool* moved, bool* blocked) {
    bool stepped = false;
    const Result code = Leaf(run, a, b, s, stopLen, m, &stepped, blocked, true);
    if (stepped) *moved = true;
    return code;
}

// B^n > a >= b, m the identity: reduces the pair while both stay at least
// B^s, s = n/2 + 1, and answers the steps in m, a >= b again. *moved
// false: no step possible, the pair unchanged.
Result Hgcd(Run& run, BigTemp& a, BigTemp& b, int32_t n, Matrix* m, bool* moved) {
    assert(BigCompareMag(&a.v, &b.v) <= 0);
    *moved = false;
    const int32_t s = n / 2 + 1;
    if (!AtLeastPower(b.v, s)) return Result::kOk;
    bool blocked = false;
    if (n < gFastThresholds.gcdHalfLeaf) return Leaf(run, a, b, s, 0, m, moved, &blocked);
    HgcdMatrixHat mHat;
    Result code = ReduceTops(run, a, b, n / 2, n - n / 2, m, moved, &mHat);
    // About 3n/4 limbs are left, sometimes after one division more. A few
    // limbs more go to the second call, which then can take the first
    // matrix's transforms for the product of the two.
    const int32_t n2 = 3 * n / 4 + 4;
    if (Ok(code) && Len(a.v) > n2) {
        code = LeafSteps(run, a, b, s, n2, m, moved, &blocked);
        mHat.n = 0;
    }
    if (!Ok(code) || blocked) return code;
    // Split so that the call's floor lands at B^(s + 1): its top has
    // n' = 2·len − 2s − 1 limbs, odd, so n'/2 + 1 + p = s + 1.
    const int32_t len = Len(a.v);
    if (len > s + 2)
        code = ReduceTops(run, a, b, 2 * s - len + 1, 2 * len - 2 * s - 1, m, moved, &mHat);
    if (Ok(code)) code = LeafSteps(run, a, b, s, 0, m, moved, &blocked);
    return code;
}

// The top's length for a round of the gcd on a pair of len limbs: the
// longest n <= len of the form 2^k − 2^(k−6), or len − len/2 when that is
// longer. A level of Hgcd on n limbs multiplies factors of about n/4 limbs
// into products of n/2 plus a few, and its calls get about n/2 + 1 limbs:
// from such an n, every level's products nearly fill their power-of-two
// transforms (a few limbs of slack at each, 2^(k−7) at the top), where
// len/2 often leaves a quarter of them empty.
int32_t FittingTop(int32_t len) {
    int32_t best = len - len / 2;
    for (int k = 7; k < 31; ++k) {
        const int64_t g = (int64_t(1) << k) - (int64_t(1) << (k - 6));
        if (g <= len && g > best) best = int32_t(g);
    }
    return best;
}

// HgcdMatMulNtt on the 64-bit transform: each entry below 2·B^count.
Result MatMulWide(HgcdRun& run, int rows, const BigInt* const a[2][2], const BigInt* const b[2][2],
                  BigInt* const r[2][2], HgcdMatrixHat* bHat, const HgcdMatrixHat* aHat,
                  int32_t count) {
    const int32_t n = Ntt64PlanPoints((int64_t(count) + 3) / 4);
    Result code = Result::kOk;
    if (bHat->n != -n) {
        bHat->n = 0;
        for (int i = 0; i < 4 && Ok(code); ++i) {
            const BigInt& u = *b[i / 2][i % 2];
            code = Ntt64PlanForward(run.clk, u.limbs, Len(u), n, &bHat->w[i / 2][i % 2]);
        }
        if (!Ok(code)) return code;
        bHat->n = -n;
    }
    Ntt64Vector own[4];
    Ntt64Vector* work = run.Work(n, own);
    Ntt64Vector *row = work, &acc = work[2], &scratch = work[3];
    const bool kept = aHat != nullptr && aHat->n == -n;
    for (int i = 0; i < rows && Ok(code); ++i) {
        const Ntt64Vector* hat[2] = {&row[0], &row[1]};
        for (int t = 0; t < 2 && Ok(code); ++t) {
            if (kept)
                hat[t] = &aHat->w[i][t];
            else
                code = Ntt64PlanForward(run.clk, a[i][t]->limbs, Len(*a[i][t]), n, &row[t]);
        }
        for (int j = 0; j < 2 && Ok(code); ++j) {
            code = Ntt64PlanMulAccumulate(run.clk, &acc, *hat[0], bHat->w[0][j],
                                          Ntt64Accumulate::kSet, &scratch);
            if (Ok(code))
                code = Ntt64PlanMulAccumulate(run.clk, &acc, *hat[1], bHat->w[1][j],
                                              Ntt64Accumulate::kAdd, &scratch);
            // The top limb takes the sum's carry.
            LimbBuffer p(int64_t(count) + 1);
            if (Ok(code) && !p.ok()) code = Result::kNoMemory;
            if (Ok(code)) code = Ntt64PlanToLimbs(run.clk, &acc, count + 1, p.get());
            if (!Ok(code)) break;
            BigInt* e = r[i][j];
            e->top = LimbsTrimTop(p.get(), count);
            e->negative = 0;
            e->limbs = p.Release();
        }
    }
    return code;
}

}  // namespace

bool HgcdWide(int32_t count) {
    return count >= gFastThresholds.gcdMatrixNtt64 && Ntt64PlanAvailable();
}

bool HgcdUseTransforms(int32_t shorter, int32_t longer) {
    return shorter >= gFastThresholds.gcdMatrixNtt &&
           NttPlanFits(NttPoints(shorter + longer), shorter, 2);
}

Result HgcdMatMulNtt(HgcdRun& run, int rows, const BigInt* const a[2][2],
                     const BigInt* const b[2][2], BigInt* const r[2][2], HgcdMatrixHat* bHat,
                     const HgcdMatrixHat* aHat) {
    int32_t la = 1, lb = 1;
    for (int i = 0; i < 2; ++i)
        for (int t = 0; t < 2; ++t) {
            if (i < rows) la = std::max(la, Len(*a[i][t]));
            lb = std::max(lb, Len(*b[i][t]));
        }
    // A sum of two products is below 2·B^(la + lb): count limbs and a carry.
    const int32_t count = la + lb;
    if (HgcdWide(count)) return MatMulWide(run, rows, a, b, r, bHat, aHat, count);
    const int32_t n = NttPoints(count);
    Result code = Result::kOk;
    if (bHat->n != n) {
        bHat->n = 0;
        for (int i = 0; i < 4 && Ok(code); ++i) {
            const BigInt& u = *b[i / 2][i % 2];
            code = NttForward(run.clk, u.limbs, Len(u), n, &bHat->u[i / 2][i % 2]);
        }
        if (!Ok(code)) return code;
        bHat->n = n;
    }
    NttVector row[2], acc;
    if (!acc.Reset(n)) return Result::kNoMemory;
    const bool kept = aHat != nullptr && aHat->n == n;
    for (int i = 0; i < rows && Ok(code); ++i) {
        const NttVector* hat[2] = {&row[0], &row[1]};
        for (int t = 0; t < 2 && Ok(code); ++t) {
            if (kept)
                hat[t] = &aHat->u[i][t];
            else
                code = NttForward(run.clk, a[i][t]->limbs, Len(*a[i][t]), n, &row[t]);
        }
        for (int j = 0; j < 2 && Ok(code); ++j) {
            NttMulAccumulate(&acc, *hat[0], bHat->u[0][j], NttAccumulate::kSet);
            NttMulAccumulate(&acc, *hat[1], bHat->u[1][j], NttAccumulate::kAdd);
            code = TakeSum(run, &acc, count, r[i][j]);
        }
    }
    return code;
}

Result HgcdRound(HgcdRun& run, BigTemp& x, BigTemp& y, int32_t p, HgcdMatrix* m, bool* moved) {
    *moved = false;
    const Result code = SetIdentity(m);
    return !Ok(code) ? code : ReduceTops(run, x, y, p, Len(x.v) - p, m, moved);
}

Result GcdHalf(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    Run run(ctx);
    BigTemp x, y;
    Result code = BigFromLimbs(&x.v, a->limbs, a->top, 0);
    if (Ok(code)) code = BigFromLimbs(&y.v, b->limbs, b->top, 0);
    while (Ok(code) && !BigIsZero(&y.v) && Len(y.v) >= gFastThresholds.gcdHalf) {
        // x >= y here. The top half goes through Hgcd; a pair it cannot
        // move takes one division.
        Matrix m;
        bool moved = false;
        code = HgcdRound(run, x, y, Len(x.v) - FittingTop(Len(x.v)), &m, &moved);
        if (Ok(code) && !moved) {
            BigTemp q, r;
            code = FastDivMod(ctx, &x.v, &y.v, &q.v, &r.v);
            if (Ok(code)) {
                BigReplace(&x.v, &y.v);
                BigMove(&y.v, &r.v);
            }
        }
    }
    if (!Ok(code)) return code;
    if (BigIsZero(&y.v) || BigCompareMag(&x.v, &y.v) == 0)
        return BigFromLimbs(result, x.v.limbs, x.v.top, 0);
    return GcdLehmer(ctx, &x.v, &y.v, result);
}
