// Exact fractions as numerator and denominator, not kept in lowest terms.
// A fraction is whole when BigIsOne holds for its denominator, which ignores
// the sign. Only the division of whole by whole reduces its result.
#include "bigint/internal.h"

namespace {

enum class FracOp { Add, Sub };

bool BothWhole(const BigInt* ad, const BigInt* bd) { return BigIsOne(ad) && BigIsOne(bd); }

// Moves the pair into the results, or sets both to 1 on failure.
Result Finish(Result code, BigInt* rn, BigInt* rd, BigInt* n, BigInt* d) {
    if (code > 0 || code == -1) {
        BigFree(n);
        BigFree(d);
        BigSetFailed(rn);
        BigSetFailed(rd);
        return code;
    }
    BigMove(rn, n);
    BigMove(rd, d);
    return code;
}

// p/q ± r/s. Whole operands add their numerators (modularly in modulus mode);
// otherwise (p*s ± q*r) / (q*s) with no reduction.
Result FracAddSub(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* p, const BigInt* q,
                  const BigInt* r, const BigInt* s, FracOp op) {
    BigTemp n, d;
    Result code;
    if (BothWhole(q, s)) {
        code = BigFromInt(&d.v, 1);
        if (Ok(code)) {
            if (ctx->modulusMode) {
                code = op == FracOp::Add ? ModAdd(ctx, &n.v, p, r, &ctx->modulus)
                                         : ModSub(ctx, &n.v, p, r, &ctx->modulus);
            } else {
                code = op == FracOp::Add ? BigAdd(&n.v, p, r) : BigSub(&n.v, p, r);
            }
        }
    } else {
        BigTemp ps, qr;
        code = BigMul(ctx, &d.v, q, s);
        if (Ok(code)) code = BigMul(ctx, &ps.v, p, s);
        if (Ok(code)) code = BigMul(ctx, &qr.v, q, r);
        if (Ok(code))
            code = op == FracOp::Add ? BigAdd(&n.v, &ps.v, &qr.v) : BigSub(&n.v, &ps.v, &qr.v);
    }
    return Finish(code, rn, rd, &n.v, &d.v);
}

}  // namespace

// Divides both by their gcd; -9 (not an error) when the gcd is 1, the results
// then being copies.
Result FracReduce(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* numerator,
                  BigInt* denominator) {
    BigTemp g, n, d, rest;
    Result code = BigGcd(ctx, x, y, &g.v);
    if (Ok(code) && BigIsOne(&g.v)) {
        code = BigCopy(&n.v, x);
        if (Ok(code)) code = BigCopy(&d.v, y);
        if (Ok(code)) code = kFracCoprime;
    } else if (Ok(code)) {
        code = BigDivMod(ctx, x, &g.v, &n.v, &rest.v);
        BigFree(&rest.v);
        if (Ok(code)) code = BigDivMod(ctx, y, &g.v, &d.v, &rest.v);
    }
    return Finish(code, numerator, denominator, &n.v, &d.v);
}

Result FracAdd(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd) {
    return FracAddSub(ctx, rn, rd, an, ad, bn, bd, FracOp::Add);
}

Result FracSub(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd) {
    return FracAddSub(ctx, rn, rd, an, ad, bn, bd, FracOp::Sub);
}

Result FracMul(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd) {
    BigTemp n, d;
    Result code;
    if (BothWhole(ad, bd)) {
        code = BigFromInt(&d.v, 1);
        if (Ok(code))
            code = ctx->modulusMode ? ModMul(ctx, &n.v, an, bn, &ctx->modulus)
                                    : BigMul(ctx, &n.v, an, bn);
    } else {
        code = BigMul(ctx, &n.v, an, bn);
        if (Ok(code)) code = BigMul(ctx, &d.v, ad, bd);
    }
    return Finish(code, rn, rd, &n.v, &d.v);
}

// Whole by whole: modulus mode multiplies by the inverse; otherwise an exact
// quotient stays whole and an inexact one becomes the reduced fraction
// (6 / 4 = 3/2, 3 / -2 = 3/-2). Anything else is (p*s) / (q*r), unreduced.
Result FracDiv(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd) {
    BigTemp n, d;
    if (BigIsZero(bn)) {
        // The failure reported is the division's; a record left released
        // reads as zero.
        (void)BigFromInt(rn, 0);
        (void)BigFromInt(rd, 1);
        return Result::kDivisionByZero;
    }
    Result code;
    if (BothWhole(ad, bd) && ctx->modulusMode) {
        BigTemp inverse;
        code = ModInverse(ctx, bn, &ctx->modulus, &inverse.v);
        if (Ok(code)) code = ModMul(ctx, &n.v, an, &inverse.v, &ctx->modulus);
        if (Ok(code)) code = BigFromInt(&d.v, 1);
    } else if (BothWhole(ad, bd)) {
        BigTemp rest;
        code = BigDivMod(ctx, an, bn, &n.v, &rest.v);
        if (Ok(code) && BigIsZero(&rest.v)) {
            code = BigFromInt(&d.v, 1);
        } else if (Ok(code)) {
            BigFree(&n.v);
            code = FracReduce(ctx, an, bn, &n.v, &d.v);
            if (code == -9) code = Result::kOk;
        }
    } else {
        code = BigMul(ctx, &n.v, an, bd);
        if (Ok(code)) code = BigMul(ctx, &d.v, ad, bn);
    }
    return Finish(code, rn, rd, &n.v, &d.v);
}
