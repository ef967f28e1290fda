// The half-gcd's round, shared by the gcd and the extended gcd (gcd_half.cpp).
//
// A round reduces x >= y > 0 by the half-gcd of x's limbs above the low p
// (x / B^p, B = 10000, and y's likewise) and carries the steps to the whole
// pair. It answers them as a matrix M of non-negative entries and
// determinant ±1 with (x; y) = M·(x'; y') for the reduced pair, x' >= y' >= 1
// again. Entries are at most x / y', about half the top's limbs, and the
// pair loses about as many: a quarter of its limbs for p = len/2, half for
// p = 0.
#pragma once

#include <algorithm>

#include "bigint/fast_ops.h"
#include "bigint/gcd_lehmer.h"
#include "bigint/mul_kernels.h"
#include "bigint/ntt64_plan.h"
#include "bigint/ntt_plan.h"

struct HgcdMatrix {
    BigTemp u[2][2];
    int det = 1;
};

// The context and the poll clock of one gcd. Products run the kernels
// behind MulLimbs on this clock, which meters them by work: the many short
// products near the leaves then poll no more often than the long ones.
struct HgcdRun {
    CalcContext* ctx;
    PollClock clk;
    explicit HgcdRun(CalcContext* c) : ctx(c), clk(c) {}

    // Work vectors of the 64-bit sums of products, kept for transforms up to
    // 2^kKeptLog points (at most 12 MB in all): the many short sums near the
    // leaves then do not take fresh pages at every call. Longer ones use
    // own, freed by the caller.
    static constexpr int kKeptLog = 16;
    Ntt64Vector kept[kKeptLog + 1][4];
    Ntt64Vector* Work(int32_t n, Ntt64Vector* own) {
        for (int k = 6; k <= kKeptLog; ++k)
            if (n == int32_t(1) << k) return kept[k];
        return own;
    }

    // r := x·y, written as new.
    Result Mul(BigInt* r, const BigInt* x, const BigInt* y) {
        if (x->top < y->top) std::swap(x, y);
        if (BigIsZero(y)) return BigFromInt(r, 0);
        const int32_t la = x->top + 1, lb = y->top + 1;
        LimbBuffer p(int64_t(la) + lb);
        if (!p.ok()) return Result::kNoMemory;
        const Result rc = MulRec(clk, x->limbs, la, y->limbs, lb, p.get());
        if (!Ok(rc)) return rc == kStopped ? Result::kStopped : Result::kNoMemory;
        r->top = LimbsTrimTop(p.get(), la + lb - 1);
        r->negative = x->negative != y->negative;
        r->limbs = p.Release();
        return Result::kOk;
    }
};

// The transforms of a matrix's entries at one length, kept so that a
// matrix used twice (the pair's update, then the product of matrices) is
// transformed once.
// Where the 64-bit transform is present (HgcdWide) the entries are kept in w.
struct HgcdMatrixHat {
    NttVector u[2][2];
    Ntt64Vector w[2][2];
    int32_t n = 0;  // points kept, negative for w's; 0: none kept
};

// Whether summed products of `count` limbs go by the 64-bit transform (four
// limbs a point on the vector primes) rather than the two-prime one.
bool HgcdWide(int32_t count);

// Whether products with factors of these lengths go by summed transforms:
// both at least gcdMatrixNtt limbs, and within the transform's length.
bool HgcdUseTransforms(int32_t shorter, int32_t longer);

// r := a·b (rows 2), or r's top row := a's top row · b (rows 1), for
// non-negative entries, each entry of r one inverse transform of a sum of
// two pointwise products. bHat holds b's transforms and is reused when it
// has the length this product needs, refreshed otherwise; aHat (or null)
// may hold a's, which are used when they have that length. r's entries are
// written as new. kOk, kNoMemory, kStopped.
Result HgcdMatMulNtt(HgcdRun& run, int rows, const BigInt* const a[2][2],
                     const BigInt* const b[2][2], BigInt* const r[2][2], HgcdMatrixHat* bHat,
                     const HgcdMatrixHat* aHat = nullptr);

// (r0, r1) := (|D|·r0 + |C|·r1, |B|·r0 + |A|·r1) for the cofactors of some
// Lehmer steps: a row of cofactors times the steps' quotient matrices
// multiplied out, the inverse of the cofactors' matrix without its signs.
// t0 and t1 are scratch of the rows' room; the steps flip the determinant
// when their count is odd.
inline void ApplyQuotients(const LehmerCofactors& c, WordSlot& r0, WordSlot& r1, WordSlot& t0,
                           WordSlot& t1) {
    LehmerCofactors q;
    q.A = c.D < 0 ? -c.D : c.D;
    q.B = c.C < 0 ? -c.C : c.C;
    q.C = c.B < 0 ? -c.B : c.B;
    q.D = c.A < 0 ? -c.A : c.A;
    LehmerCombineWords(q, r0.get(), r0.len, r1.get(), r1.len, t0.get(), &t0.len, t1.get(), &t1.len);
    r0.Swap(t0);
    r1.Swap(t1);
}

// One round on canonical x >= y > 0, 0 <= p < x's limbs; m receives the
// steps. *moved false: the tops decide no step (a huge quotient, or y too
// short); the pair is left as it was and m is the identity. kOk, kNoMemory, kStopped.
Result HgcdRound(HgcdRun& run, BigTemp& x, BigTemp& y, int32_t p, HgcdMatrix* m, bool* moved);
