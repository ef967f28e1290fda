// Modular inverse by the extended gcd on the fast kernels.
//
// The pair (x, y) starts at (m, a) with 0 < a < m and goes down by steps of
// the gcd, gathered in a matrix M of non-negative entries and determinant
// ±1 with (m; a) = M·(x; y). Only M's top row (u00, u01) is kept: M := M·N
// takes it to (u00·n00 + u01·n10, u00·n01 + u01·n11). Since M⁻¹ =
// det·[u11 −u01; −u10 u00], x = det·(u11·m − u01·a) ≡ −det·u01·a (mod m):
// when the pair reaches (1, 0) the inverse is −det·u01 mod m, and any other
// gcd means there is none. From m = u00·x + u01·y the row stays at most m
// while y > 0, and the last step only moves the old u00 into u01, so arrays
// of m's length plus the combination pass's slack hold it throughout.
//
// While y has modInverseHalf limbs or more a round is the half-gcd of the
// whole pair (gcd_half.h), which halves it, its matrix of about half the
// pair's limbs joined to the row by four products (from gcdMatrixNtt limbs
// six forward transforms and two inverse ones of sums): O(M(n) log n).
// (Rounds on the top half only, as the gcd takes them, remove a quarter
// each and so multiply the long row twice as often.) A round that decides
// nothing (a huge quotient) is one division. Below, Lehmer's steps
// (gcd_lehmer.h) apply the magnitudes of their cofactors to the row in the
// same one-pass combination as to the pair, with a division where the
// leading limbs decide nothing. Each such step costs the row's length, up
// to m's, against the pair's few limbs: hence the low threshold, pairs
// below gcdHalfLeaf going by leaf rounds that gather their steps in a small
// matrix first. Lehmer's steps keep the remainder non-zero (floor
// 10000^0), so the step to y = 0 is always a division.
//
// Allocation: work arrays and records from alloc.h; a refused one answers code 3.
#include <algorithm>
#include <cstdlib>
#include <utility>

#include "bigint/fast_paths.h"
#include "bigint/gcd_half.h"
#include "bigint/gcd_lehmer.h"
#include "bigint/thresholds.h"

namespace {

int32_t Len(const BigInt& v) { return v.top + 1; }

// The gcd's state: the pair and the top row of M, with M's determinant.
struct State {
    BigTemp x, y, u0, u1;
    int det = 1;
};

// (u0, u1) := (u0, u1)·[n00 n01; n10 n11].
Result RowTimes(HgcdRun& run, State* s, const BigInt* n00, const BigInt* n01, const BigInt* n10,
                const BigInt* n11) {
    BigTemp p0, p1, q0, q1, r0, r1;
    const int32_t lu = std::max(Len(s->u0.v), Len(s->u1.v));
    const int32_t ln = std::max({Len(*n00), Len(*n01), Len(*n10), Len(*n11)});
    if (HgcdUseTransforms(std::min(lu, ln), std::max(lu, ln))) {
        const BigInt* const a[2][2] = {{&s->u0.v, &s->u1.v}, {&s->u0.v, &s->u1.v}};
        const BigInt* const b[2][2] = {{n00, n01}, {n10, n11}};
        BigInt* const r[2][2] = {{&r0.v, &r1.v}, {nullptr, nullptr}};
        HgcdMatrixHat nHat;
        const Result code = HgcdMatMulNtt(run, 1, a, b, r, &nHat);
        if (!Ok(code)) return code;
        BigReplace(&s->u0.v, &r0.v);
        BigReplace(&s->u1.v, &r1.v);
        return Result::kOk;
    }
    Result code = run.Mul(&p0.v, &s->u0.v, n00);
    if (Ok(code)) code = run.Mul(&p1.v, &s->u1.v, n10);
    if (Ok(code)) code = FastAdd(&r0.v, &p0.v, &p1.v);
    if (Ok(code)) code = run.Mul(&q0.v, &s->u0.v, n01);
    if (Ok(code)) code = run.Mul(&q1.v, &s->u1.v, n11);
    if (Ok(code)) code = FastAdd(&r1.v, &q0.v, &q1.v);
    if (!Ok(code)) return code;
    BigReplace(&s->u0.v, &r0.v);
    BigReplace(&s->u1.v, &r1.v);
    return Result::kOk;
}

// (x, y) := (y, x mod y), M := M·[q 1; 1 0].
Result DivisionStep(HgcdRun& run, State* s) {
    BigTemp q, r, one, zero;
    Result code = FastDivMod(run.ctx, &s->x.v, &s->y.v, &q.v, &r.v);
    if (Ok(code)) code = BigFromInt(&one.v, 1);
    if (Ok(code)) code = BigFromInt(&zero.v, 0);
    if (Ok(code)) code = RowTimes(run, s, &q.v, &one.v, &one.v, &zero.v);
    if (!Ok(code)) return code;
    BigReplace(&s->x.v, &s->y.v);
    BigMove(&s->y.v, &r.v);
    s->det = -s->det;
    return Result::kOk;
}

// Half-gcd rounds while y has at least modInverseHalf limbs.
Result HalfRounds(HgcdRun& run, State* s) {
    Result code = Result::kOk;
    while (Ok(code) && !BigIsZero(&s->y.v) && Len(s->y.v) >= gFastThresholds.modInverseHalf) {
        HgcdMatrix n;
        bool moved = false;
        code = HgcdRound(run, s->x, s->y, 0, &n, &moved);
        if (!Ok(code)) break;
        if (!moved) {
            code = DivisionStep(run, s);
            continue;
        }
        code = RowTimes(run, s, &n.u[0][0].v, &n.u[0][1].v, &n.u[1][0].v, &n.u[1][1].v);
        s->det *= n.det;
    }
    return code;
}

// Lehmer's steps down to y = 0, the row carried along; every array has the
// room of m's limbs plus the combination's slack, since nothing outgrows m.
Result LehmerSteps(HgcdRun& run, State* s, int32_t room) {
    WordSlot x, y, u0, u1, t0, t1;
    WordSlot* work[4] = {&x, &y, &u0, &u1};
    BigInt* kept[4] = {&s->x.v, &s->y.v, &s->u0.v, &s->u1.v};
    auto load = [&]() -> Result {
        for (int i = 0; i < 4; ++i)
            if (work[i]->Load(*kept[i], room) != 0) return Result::kNoMemory;
        return Result::kOk;
    };
    auto store = [&]() -> Result {
        for (int i = 0; i < 4; ++i)
            if (work[i]->Store(kept[i]) != 0) return Result::kNoMemory;
        return Result::kOk;
    };
    Result code = load();
    if (Ok(code) && !(t0.Reset((room + 1) / 2 + 4) && t1.Reset((room + 1) / 2 + 4)))
        code = Result::kNoMemory;
    while (Ok(code) && !y.IsZero()) {
        if (run.clk.Tick(8 * (int64_t(x.len) + u0.len))) return Result::kStopped;
        const LehmerCofactors c = LehmerLeadingWords(x.get(), x.len, y.get(), y.len, 0);
        if (c.steps == 0) {
            code = store();
            if (Ok(code)) code = DivisionStep(run, s);
            if (Ok(code)) code = load();
            continue;
        }
        LehmerCombineWords(c, x.get(), x.len, y.get(), y.len, t0.get(), &t0.len, t1.get(), &t1.len);
        x.Swap(t0);
        y.Swap(t1);
        ApplyQuotients(c, u0, u1, t0, t1);
        if (c.steps % 2 != 0) s->det = -s->det;
    }
    return !Ok(code) ? code : store();
}

}  // namespace

Result ModInverseExtended(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result) {
    HgcdRun run(ctx);
    State s;
    Result code = BigFromLimbs(&s.x.v, m->limbs, m->top, 0);
    if (Ok(code)) code = BigFromLimbs(&s.y.v, a->limbs, a->top, 0);
    if (Ok(code)) code = BigFromInt(&s.u0.v, 1);
    if (Ok(code)) code = BigFromInt(&s.u1.v, 0);
    if (Ok(code)) code = HalfRounds(run, &s);
    if (Ok(code)) code = LehmerSteps(run, &s, Len(*m) + 5);
    if (!Ok(code)) return code;
    if (!BigIsOne(&s.x.v)) return BigFromInt(result, 0);
    // −det·u01 reduced into 0 … m − 1.
    BigTemp q, r;
    code = FastDivMod(ctx, &s.u1.v, m, &q.v, &r.v);
    if (!Ok(code)) return code;
    if (s.det < 0 || BigIsZero(&r.v)) {
        BigMove(result, &r.v);
        return Result::kOk;
    }
    return FastSub(result, m, &r.v);
}
