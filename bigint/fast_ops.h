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
// Charges the linear passes that made v (copies, shifts, sums), a few units
// a limb, to ctx's poll clock: kStopped when told to stop; any other code
// than kOk passes through.
Result FastCharge(CalcContext* ctx, Result code, const BigInt* v);
// Views sharing v's limbs, never released: floor(|v| / 10000^k) for
// 0 <= k <= v->top, and |v| mod 10000^k for k >= 1.
BigInt FastViewDown(const BigInt* v, int32_t k);
BigInt FastViewLow(const BigInt* v, int32_t k);
// FastSub for non-negative canonical x and y, in slices of 2^18 limbs with a
// tick of ctx's clock after each, so that a difference of 10^8 limbs polls
// every millisecond or so; its array may hold a few limbs beyond its top. The
// scan for the highest differing limb sizes it, so a difference much shorter
// than its operands (a remainder) costs its own length and a read of theirs.
Result FastSubPolled(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y);
// |x| + |y| for canonical x and y, in slices with ticks as FastSubPolled.
Result FastAddPolled(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y);
// |hi|·10000^k + |lo| for canonical hi and lo, lo < 10000^k (a null lo
// for none), written in one pass in slices with ticks.
Result FastJoinPolled(CalcContext* ctx, BigInt* r, const BigInt* hi, const BigInt* lo, int32_t k);
// |v| + 1 (up) or |v| − 1 (|v| >= 1) in place, sign clear: a pass over the
// limbs that carry, a new array only when |v| + 1 gains a limb.
Result FastStepOne(BigInt* v, bool up);
// A copy of |v|, made in slices with ticks as FastSubPolled; and count limbs
// copied so (kOk or kStopped).
Result FastCopyPolled(CalcContext* ctx, BigInt* r, const BigInt* v);
Result FastCopyLimbsPolled(CalcContext* ctx, Limb* dst, const Limb* src, int32_t count);
// *equal := whether a[0..count) and b[0..count) are the same limbs, compared
// in slices with ticks as FastSubPolled (kOk or kStopped).
Result FastEqualLimbsPolled(CalcContext* ctx, const Limb* a, const Limb* b, int32_t count,
                            bool* equal);
// Whether v is negative in value.
inline bool FastIsNegative(const BigInt* v) { return BigIsNegative(v); }
