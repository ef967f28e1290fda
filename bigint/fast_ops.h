// Magnitude helpers for the fast paths (division, roots, gcd, radix).
//
// All results are written as new (the caller releases reused records first,
// as everywhere in the arithmetic) and are canonical: sign clear unless
// stated, no leading zero limbs, and no top limb of 10000 (the sums of
// BigAdd may leave one; these helpers carry it on, so comparisons by
// BigCompareMag are comparisons of values). Codes kOk, kNoMemory, and kStopped from products.
#pragma once

#include "bigint/internal.h"

// v made canonical in place (a top limb of 10000 carried into a new limb).
Result FastCanonical(BigInt* v);
// Signed sum and difference, canonical.
Result FastAdd(BigInt* r, const BigInt* x, const BigInt* y);
Result FastSub(BigInt* r, const BigInt* x, const BigInt* y);
// Product with the sign rule of BigMul: kOk, kNoMemory, or kStopped.
Result FastMul(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y);
// q, r = |x| divmod |d| for d != 0 and any x: the dispatcher's division
// without its |x| > |d| > 1 precondition. Both non-negative.
Result FastDivMod(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* q, BigInt* r);
// floor(|v| / 10000^k); zero when k passes the top.
Result FastShiftDown(BigInt* r, const BigInt* v, int32_t k);
// |v| · 10000^k.
Result FastShiftUp(BigInt* r, const BigInt* v, int32_t k);
// |v| mod 10000^k.
Result FastLowPart(BigInt* r, const BigInt* v, int32_t k);
// 10000^k.
Result FastPowerOfBase(BigInt* r, int32_t k);
// Whether v is negative in value.
inline bool FastIsNegative(const BigInt* v) { return BigIsNegative(v); }
