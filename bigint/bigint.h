// Ordix big integers: the value record and every operation on it.
//
// A BigInt is a sign and a magnitude in base 10000, one signed 16-bit limb per
// four decimal digits, least significant limb first. The record is plain data;
// all operations are free functions taking records by pointer and answering
// a Result: kOk, kNoMemory, kDivisionByZero, kStopped (the context's poll
// answered Q or an interrupting action), plus the operation-specific codes
// documented beside each declaration. Numbers in the comments below are
// those codes' values (3 is kNoMemory, -1 kStopped).
//
// Ownership: an operation that produces a value writes its result record as
// new (fresh limb array; limbs, top and negative overwritten) without
// releasing what the record held. A caller reusing a record calls BigFree
// first. A zero-initialised record is the released state. Unless stated
// otherwise a result record must not be one of the operands; two operands
// may be the same record.
#pragma once

#include <cstdint>
#include <string>

#include "bigint/context.h"
#include "bigint/record.h"
#include "resources/result.h"

// Outcomes with values of their own that are not errors, kept at the values
// the calculator has always answered; callers take only positive codes as
// errors, except where a name below says otherwise.
//
// The hailstone step on an odd x answers -1 on success (kStopped's value;
// only the even step answers kOk).
constexpr Result kHailOddStep = Result(-1);
// A square or cube root that is not exact (the root is rounded toward zero).
// Positive, so a caller must test for it before IsError.
constexpr Result kRootInexact = Result(1);
// FracReduce: gcd(x, y) = 1, the numerator and denominator are copies.
constexpr Result kFracCoprime = Result(-9);
// LimbsDivide: a quotient digit estimate above 9999, which only a zero
// divisor of two limbs or more gives (the modular inverse lets one through).
constexpr Result kImpossibleEstimate = Result(1);

// ---- Value, tests, addition (value.cpp, add_sub.cpp, limbs.cpp) ----------

Result BigFromInt(BigInt* v, int32_t n);        // kOk, or kNoMemory
Result BigFromUnsigned(BigInt* v, uint32_t n);  // kOk or kNoMemory
void BigFree(BigInt* v);
bool BigIsZero(const BigInt* v);
bool BigIsOne(const BigInt* v);  // ignores the sign: -1 answers true
bool BigIsEven(const BigInt* v);
int32_t BigLength(const BigInt* v);      // top + 1
int32_t BigTextLength(const BigInt* v);  // characters of the decimal text
void BigCountDigits(BigInt* v);
bool BigToInt(const BigInt* v, int32_t* out);         // false when top > 1
bool BigToUnsigned(const BigInt* v, uint32_t* out);   // wraps; true for any value
Result BigCopy(BigInt* dst, const BigInt* src);       // kNoMemory: dst becomes 1
int BigCompareMag(const BigInt* a, const BigInt* b);  // sign of |b| - |a|
Result BigIncrement(BigInt* v);                       // in place; kOk or kNoMemory
Result BigDecrement(BigInt* v);                       // in place; always kOk
bool BigHalve(BigInt* v);                             // in place; true when it was even
Result BigAdd(BigInt* result, const BigInt* x, const BigInt* y);
Result BigSub(BigInt* result, const BigInt* x, const BigInt* y);

// Limb-array primitives on work buffers (callers guarantee the room).
int LimbsCompare(const Limb* a, const Limb* b, int32_t ta, int32_t tb);  // sign of |b| - |a|
int32_t LimbsAdd(const Limb* a, const Limb* b, Limb* d, int32_t ta, int32_t tb);
int32_t LimbsSub(Limb* a, const Limb* b, int32_t ta, int32_t tb);  // a >= b
int32_t LimbsMulSmall(Limb* a, int32_t f, int32_t t);              // f 0..9999
int32_t LimbsAddSmall(Limb* a, int32_t v, int32_t t);              // v 0..9999

// ---- Decimal text (text.cpp) ---------------------------------------------

// Reads decimal text, which is modified in place. kOk, kCouldNotFind (no
// digits), kNoMemory.
Result BigFromText(char* text, BigInt* v);
// Renders limbs firstLimb (-1: top) down to lastLimb into buf; buf holds
// width characters plus two per line break plus the terminator.
void BigToText(const BigInt* v, char* buf, int32_t width, int32_t lineLength, int32_t firstLimb,
               int32_t lastLimb, int32_t indent);

// ---- Multiplication, division, fractions (mul.cpp, divide.cpp, fraction.cpp)

// Schoolbook product += a * b, one poll per row of b; top of the product or -1.
int32_t LimbsMul(CalcContext* ctx, const Limb* a, const Limb* b, Limb* p, int32_t ta, int32_t tb);
Result BigMul(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y);
int QuotientDigitEstimate(const Limb* w, const Limb* d, int32_t tw, int32_t td);
// Long division: n (dividend, ends as remainder), d, scratch s, quotient q.
// *tn: in dividend top, out remainder top; *td: in divisor top, out quotient top.
// kOk, kImpossibleEstimate, kStopped.
Result LimbsDivide(CalcContext* ctx, Limb* n, const Limb* d, Limb* s, Limb* q, int32_t* tn,
                   int32_t* td);
Result BigDivMod(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                 BigInt* remainder);
// kFracCoprime when gcd(x, y) = 1.
Result FracReduce(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* numerator,
                  BigInt* denominator);
Result FracAdd(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd);
Result FracSub(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd);
Result FracMul(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd);
Result FracDiv(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
               const BigInt* bn, const BigInt* bd);

// ---- Powers, roots, integer functions (power.cpp, perm.cpp, gcd.cpp, roots.cpp)

// kPositiveValue for e < 0.
Result BigPowInt(CalcContext* ctx, const BigInt* base, int32_t e, BigInt* result);
// kOutOfBounds for an exponent too large.
Result BigPow(CalcContext* ctx, BigInt* result, const BigInt* base, const BigInt* exponent);
Result FracPow(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* bn, const BigInt* bd,
               const BigInt* exponent);
// kOutOfBounds for arguments out of range.
Result BigPerm(CalcContext* ctx, BigInt* result, const BigInt* n, const BigInt* r);
Result BigFact(CalcContext* ctx, BigInt* result, const BigInt* n);  // BigPerm(n, n)
Result BigBinomial(CalcContext* ctx, BigInt* result, const BigInt* n, const BigInt* k);
// kInconsistent when both are zero.
Result BigGcd(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* result);
// kDivisionByZero when either is zero.
Result BigLcm(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* result);
// In place: kOk (even x), kHailOddStep (odd x), kNoMemory.
Result BigHail(CalcContext* ctx, BigInt* x);
// kOk (exact), kRootInexact, kNoMemory.
Result BigSqrt(CalcContext* ctx, const BigInt* x, BigInt* result);
Result BigCbrt(CalcContext* ctx, const BigInt* x, BigInt* result);

// ---- Modular arithmetic (modular.cpp) -------------------------------------

Result BigMod(CalcContext* ctx, const BigInt* x, const BigInt* m, BigInt* result);
Result ModAdd(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m);
Result ModSub(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m);
Result ModMul(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m);
Result ModInverse(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result);
Result ModPow(CalcContext* ctx, const BigInt* base, const BigInt* exponent, BigInt* result,
              const BigInt* m);

// ---- Base conversion (radix.cpp) ------------------------------------------

// Rewrites text (digits of fromBase, 2..16) as digits of toBase. kOk, or
// kCannotUnderstand for an invalid digit (text then left half-decoded).
Result ConvertBase(CalcContext* ctx, int fromBase, int toBase, std::string* text);
// The digits of |value| in base 2..16 as ConvertBase writes them (none for
// zero), for values of any length. kOk, kNoMemory, kStopped.
Result BigToRadix(CalcContext* ctx, const BigInt* value, int base, std::string* text);
Result BigMulSmallInt(CalcContext* ctx, BigInt* result, const BigInt* x, int32_t n);
