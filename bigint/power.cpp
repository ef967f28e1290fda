// Powers of integers and of fractions.
#include "bigint/internal.h"

// Right-to-left binary powering; the base is squared only while exponent bits
// remain. x^0 = 1, including 0^0. A negative exponent answers 14.
Result BigPowInt(CalcContext* ctx, const BigInt* base, int32_t e, BigInt* result) {
    BigTemp r, b;
    Result code = BigFromInt(&r.v, 1);
    if (Ok(code) && e < 0) code = Result::kPositiveValue;
    if (Ok(code)) code = BigCopy(&b.v, base);
    while (Ok(code) && e > 0) {
        if (e % 2 != 0) {
            BigTemp product;
            code = BigMul(ctx, &product.v, &r.v, &b.v);
            if (Ok(code)) BigReplace(&r.v, &product.v);
        }
        e /= 2;
        if (Ok(code) && e > 0) {
            BigTemp square;
            code = BigMul(ctx, &square.v, &b.v, &b.v);
            if (Ok(code)) BigReplace(&b.v, &square.v);
        }
    }
    if (!Ok(code)) {
        BigSetFailed(result);
        return code;
    }
    BigMove(result, &r.v);
    return Result::kOk;
}

// The exponent must convert to a machine integer (magnitude below 10^8),
// otherwise 17.
Result BigPow(CalcContext* ctx, BigInt* result, const BigInt* base, const BigInt* exponent) {
    int32_t e = 0;
    if (!BigToInt(exponent, &e)) {
        BigSetFailed(result);
        return Result::kOutOfBounds;
    }
    return BigPowInt(ctx, base, e, result);
}

// (p/q)^e. A whole base in modulus mode takes the modular power, which accepts
// any exponent; otherwise a negative exponent turns the fraction over first,
// so (2/3)^-2 = 9/4 and 2^-3 = 1/8. Zero to a negative power answers 104.
Result FracPow(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* bn, const BigInt* bd,
               const BigInt* exponent) {
    const bool negativeE = BigIsNegative(exponent);
    if (negativeE && BigIsZero(bn)) {
        BigSetFailed(rn);
        BigSetFailed(rd);
        return Result::kDivisionByZero;
    }
    BigTemp n, d, one;
    Result code = Result::kOk;
    const BigInt* p = bn;
    const BigInt* q = bd;
    if (BigIsOne(bd) && ctx->modulusMode) {
        code = ModPow(ctx, bn, exponent, &n.v, &ctx->modulus);
        if (Ok(code)) code = BigFromInt(&d.v, 1);
    } else if (BigIsOne(bd) && !negativeE) {
        code = BigPow(ctx, &n.v, bn, exponent);
        if (Ok(code)) code = BigFromInt(&d.v, 1);
    } else {
        if (BigIsOne(bd)) {
            // A whole base with a negative exponent becomes 1/p.
            code = BigFromInt(&one.v, 1);
            p = &one.v;
            q = bn;
        } else if (negativeE) {
            const BigInt* t = p;
            p = q;
            q = t;
        }
        const BigInt magnitude = BigMagnitudeView(exponent);
        if (Ok(code)) code = BigPow(ctx, &n.v, p, &magnitude);
        if (Ok(code)) code = BigPow(ctx, &d.v, q, &magnitude);
    }
    if (!Ok(code)) {
        BigSetFailed(rn);
        BigSetFailed(rd);
        return code;
    }
    BigMove(rn, &n.v);
    BigMove(rd, &d.v);
    return Result::kOk;
}
