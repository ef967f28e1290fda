// The remainder behind [mod] and the modular sum, difference, product,
// inverse and power of the modulus mode.
#include "bigint/dispatch.h"
#include "bigint/fast_paths.h"
#include "bigint/internal.h"
#include "bigint/mul_dispatch.h"
#include "bigint/ntt64_plan.h"
#include "bigint/thresholds.h"

// x reduced by m. For x >= 0 the truncated remainder as it stands (7 mod -3
// = 1), and x mod 0 = 0 without complaint. For x < 0 the answer is
// |m| - |r|, so a negative multiple gives |m| itself: (-6) mod 3 = 3, not 0.
// A negative x mod 0 answers 104. Memory and stops are passed on.
Result BigMod(CalcContext* ctx, const BigInt* x, const BigInt* m, BigInt* result) {
    BigTemp q, r;
    const Result code = BigDivMod(ctx, x, m, &q.v, &r.v);
    if (!Ok(code) && (code != Result::kDivisionByZero || BigIsNegative(x))) {
        (void)BigFromInt(result, 0);  // the failure reported is the division's
        return code;
    }
    if (!BigIsNegative(x)) {
        BigMove(result, &r.v);
        return Result::kOk;
    }
    const BigInt mm = BigMagnitudeView(m);
    const BigInt rm = BigMagnitudeView(&r.v);
    const Result sub = BigSub(result, &mm, &rm);
    if (sub != 0) {
        BigFree(result);
        (void)BigFromInt(result, 0);  // the failure reported is the subtraction's
    }
    return sub;
}

namespace {

enum class ModOp { Add, Sub, Mul };

// The exact result reduced by m; on any failure the result is 1.
Result ModCombine(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y,
                  const BigInt* m, ModOp op) {
    BigTemp exact, reduced;
    Result code = op == ModOp::Add   ? BigAdd(&exact.v, x, y)
                  : op == ModOp::Sub ? BigSub(&exact.v, x, y)
                                     : BigMul(ctx, &exact.v, x, y);
    if (Ok(code)) code = BigMod(ctx, &exact.v, m, &reduced.v);
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    BigMove(result, &reduced.v);
    return Result::kOk;
}

// A quotient of the Euclid chain, most recent first.
struct QuotientLink {
    Limb* limbs;
    int32_t top;
    QuotientLink* next;
};

void FreeChain(QuotientLink* link) {
    while (link) {
        QuotientLink* next = link->next;
        FreeLimbs(link->limbs);
        delete link;
        link = next;
    }
}

struct Chain {
    QuotientLink* head = nullptr;
    ~Chain() { FreeChain(head); }
    bool Push(const Limb* q, int32_t top) {
        QuotientLink* link = new (std::nothrow) QuotientLink{AllocLimbs(top + 1), top, head};
        if (!link) return false;
        if (!link->limbs) {
            delete link;
            return false;
        }
        CopyLimbs(link->limbs, q, top + 1);
        head = link;
        return true;
    }
};

// Back-substitution through the stored quotients: X := 1, Y := 0, and for
// each quotient X, Y := X q + Y, X, flipping the sign each time. The values
// stay below m, so arrays of m's size plus slack hold them.
Result BackSubstitute(CalcContext* ctx, const Chain& chain, int32_t size, BigInt* v) {
    LimbBuffer x(size), y(size), product(size), sum(size);
    if (!x.ok() || !y.ok() || !product.ok() || !sum.ok()) return Result::kNoMemory;
    x[0] = 1;
    y[0] = 0;
    int32_t tx = 0, ty = 0;
    uint8_t negative = 0;
    for (const QuotientLink* q = chain.head; q; q = q->next) {
        int32_t tp = MulLimbs(ctx, x.get(), tx, q->limbs, q->top, product.get());
        if (tp == kMulNoMemory) return Result::kNoMemory;
        if (tp < 0) return Result::kStopped;
        tp = LimbsAdd(product.get(), y.get(), sum.get(), tp, ty);
        tp = LimbsNormalizeTop(sum.get(), tp);
        y.Swap(x);
        ty = tx;
        x.Swap(sum);
        tx = tp;
        negative ^= 1;
    }
    return BigFromLimbs(v, x.get(), tx, negative);
}

}  // namespace

Result ModAdd(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m) {
    return ModCombine(ctx, result, x, y, m, ModOp::Add);
}

Result ModSub(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m) {
    return ModCombine(ctx, result, x, y, m, ModOp::Sub);
}

Result ModMul(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m) {
    return ModCombine(ctx, result, x, y, m, ModOp::Mul);
}

// The chain of quotients by long division, then the back-substitution. A
// zero divisor in the chain (a a multiple of m, or zero) is divided anyway,
// as the calculator always has: with a modulus of two limbs or more the
// estimate is out of range (kImpossibleEstimate); with one limb the division
// subtracts zero until the poll stops it (kStopped).
Result ModInverseSchool(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* v) {
    const int64_t size = static_cast<int64_t>(m->top) + 3;
    EuclidByDivision e;
    Chain chain;
    Result code = e.Load(m, a, size);
    if (!Ok(code)) return code;
    if (e.ty == 0 && e.y[0] == 0 && e.tx > 0) return kImpossibleEstimate;
    code = e.Run(ctx, [&](const Limb* q, int32_t tq) { return chain.Push(q, tq); });
    if (!Ok(code)) return code;
    if (e.ty != 0 || e.y[0] != 1) return BigFromInt(v, 0);
    code = BackSubstitute(ctx, chain, static_cast<int32_t>(size) + 2, v);
    if (Ok(code) && v->negative) {
        BigTemp sum;
        code = BigAdd(&sum.v, m, v);
        if (Ok(code)) BigReplace(v, &sum.v);
    }
    return code;
}

// The v in 0 … m - 1 with a v ≡ 1 (mod m), by the extended Euclidean
// algorithm. Answers 6 for a negative operand, and 0 with the result 0 when
// a is not invertible.
Result ModInverse(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result) {
    if (BigIsNegative(a) || BigIsNegative(m)) {
        BigSetFailed(result);
        return Result::kInconsistent;
    }
    BigTemp reduced, v;
    Result code = Result::kOk;
    if (BigCompareMag(a, m) < 0) {
        code = BigMod(ctx, a, m, &reduced.v);
        a = &reduced.v;
    }
    if (Ok(code)) code = ModInverseDispatch(ctx, a, m, &v.v);
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    BigMove(result, &v.v);
    return Result::kOk;
}

namespace {

// r := r b^e mod m bit by bit, e (non-negative) consumed. kOk, kNoMemory, kStopped.
Result SquareAndMultiply(CalcContext* ctx, BigInt* r, BigInt* b, BigInt* e, const BigInt* m) {
    Result code = Result::kOk;
    while (Ok(code) && !BigIsZero(e)) {
        if (!BigIsEven(e)) {
            BigTemp product;
            code = ModMul(ctx, &product.v, r, b, m);
            if (Ok(code)) BigReplace(r, &product.v);
            (void)BigDecrement(e);  // an odd e: the low limb only drops by one
        }
        BigHalve(e);
        if (Ok(code) && !BigIsZero(e)) {
            BigTemp square;
            code = ModMul(ctx, &square.v, b, b, m);
            if (Ok(code)) BigReplace(b, &square.v);
        }
    }
    return code;
}

}  // namespace

// base^e mod m for an exponent of any size; a negative exponent powers the
// inverse. An exponent of 0 gives 1 without reduction. From |e| = 2 on the
// answer is the residue in 0 … |m| - 1 whatever the signs (a negative base
// takes part in the first product only), so non-zero moduli go by a
// sliding window there (Montgomery words up to a size, transform products
// and the modulus's reciprocal beyond); the bit-by-bit loop keeps every
// other case.
Result ModPow(CalcContext* ctx, const BigInt* base, const BigInt* exponent, BigInt* result,
              const BigInt* m) {
    BigTemp r, e, b;
    Result code = BigFromInt(&r.v, 1);
    if (Ok(code)) code = BigCopy(&e.v, exponent);
    if (Ok(code) && BigIsNegative(&e.v)) {
        code = ModInverse(ctx, base, m, &b.v);
        e.v.negative = 0;
    } else if (Ok(code)) {
        code = BigCopy(&b.v, base);
    }
    e.v.negative = 0;
    // (e is released when its copy was refused)
    const bool twoOrMore = Ok(code) && (e.v.top > 0 || e.v.limbs[0] >= 2);
    if (Ok(code) && twoOrMore && !BigIsZeroMagnitude(m)) {
        BigTemp fast;
        const FastThresholds& t = gFastThresholds;
        const bool words =
            m->top < t.powMontgomery && (m->top < t.powPlan || !Ntt64PlanAvailable());
        code = words ? ModPowMontgomery(ctx, &b.v, &e.v, m, &fast.v)
                     : ModPowLong(ctx, &b.v, &e.v, m, &fast.v);
        if (Ok(code)) BigReplace(&r.v, &fast.v);
    } else if (Ok(code)) {
        code = SquareAndMultiply(ctx, &r.v, &b.v, &e.v, m);
    }
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    BigMove(result, &r.v);
    return Result::kOk;
}
