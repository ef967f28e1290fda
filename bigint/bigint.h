// Ordix big integers: the value record and every operation on it.
//
// A BigInt is a sign and a magnitude in base 10000, one signed 16-bit limb per
// four decimal digits, least significant limb first. The record is plain data;
// all operations are free functions taking records by pointer and answering
// small integer codes:
//    0 success, 3 memory exhausted, 104 division by zero, -1 stopped by the
//    user (the context's poll answered Q or an interrupting action),
// plus the operation-specific codes documented beside each declaration.
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


#include "bigint/record.h"
#include "bigint/context.h"

// ---- Value, tests, addition (value.cpp, add_sub.cpp, limbs.cpp) ----------

int BigFromInt(BigInt* v, int32_t n);         // 0, or 3 when out of memory
int BigFromUnsigned(BigInt* v, uint32_t n);   // 0, or 3
void BigFree(BigInt* v);
bool BigIsZero(const BigInt* v);
bool BigIsOne(const BigInt* v);               // ignores the sign: -1 answers true
bool BigIsEven(const BigInt* v);
int32_t BigLength(const BigInt* v);           // top + 1
int32_t BigTextLength(const BigInt* v);       // characters of the decimal text
void BigCountDigits(BigInt* v);
bool BigToInt(const BigInt* v, int32_t* out);          // false when top > 1
bool BigToUnsigned(const BigInt* v, uint32_t* out);    // wraps; true for any value
int BigCopy(BigInt* dst, const BigInt* src);  // 3: dst becomes 1
int BigCompareMag(const BigInt* a, const BigInt* b);   // sign of |b| - |a|
int BigIncrement(BigInt* v);                  // in place; 0 or 3
int BigDecrement(BigInt* v);                  // in place; 0
bool BigHalve(BigInt* v);                     // in place; true when it was even
int BigAdd(BigInt* result, const BigInt* x, const BigInt* y);
int BigSub(BigInt* result, const BigInt* x, const BigInt* y);

// Limb-array primitives on work buffers (callers guarantee the room).
int LimbsCompare(const Limb* a, const Limb* b, int32_t ta, int32_t tb);  // sign of |b| - |a|
int32_t LimbsAdd(const Limb* a, const Limb* b, Limb* d, int32_t ta, int32_t tb);
int32_t LimbsSub(Limb* a, const Limb* b, int32_t ta, int32_t tb);       // a >= b
int32_t LimbsMulSmall(Limb* a, int32_t f, int32_t t);                   // f 0..9999
int32_t LimbsAddSmall(Limb* a, int32_t v, int32_t t);                   // v 0..9999

// ---- Decimal text (text.cpp) ---------------------------------------------

// Reads decimal text, which is modified in place. 0, 2 (no digits), 3.
int BigFromText(char* text, BigInt* v);
// Renders limbs firstLimb (-1: top) down to lastLimb into buf; buf holds
// width characters plus two per line break plus the terminator.
void BigToText(const BigInt* v, char* buf, int32_t width, int32_t lineLength,
               int32_t firstLimb, int32_t lastLimb, int32_t indent);

// ---- Multiplication, division, fractions (mul.cpp, divide.cpp, fraction.cpp)

// Schoolbook product += a * b, one poll per row of b; top of the product or -1.
int32_t LimbsMul(CalcContext* ctx, const Limb* a, const Limb* b, Limb* p,
                 int32_t ta, int32_t tb);
int BigMul(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y);
int QuotientDigitEstimate(const Limb* w, const Limb* d, int32_t tw, int32_t td);
// Long division: n (dividend, ends as remainder), d, scratch s, quotient q.
// *tn: in dividend top, out remainder top; *td: in divisor top, out quotient top.
// 0, 1 (impossible estimate), -1 interrupted.
int LimbsDivide(CalcContext* ctx, Limb* n, const Limb* d, Limb* s, Limb* q,
                int32_t* tn, int32_t* td);
int BigDivMod(CalcContext* ctx, const BigInt* x, const BigInt* d,
              BigInt* quotient, BigInt* remainder);
// -9 when gcd(x, y) = 1 (numerator and denominator are then copies).
int FracReduce(CalcContext* ctx, const BigInt* x, const BigInt* y,
               BigInt* numerator, BigInt* denominator);
int FracAdd(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
            const BigInt* bn, const BigInt* bd);
int FracSub(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
            const BigInt* bn, const BigInt* bd);
int FracMul(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
            const BigInt* bn, const BigInt* bd);
int FracDiv(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* an, const BigInt* ad,
            const BigInt* bn, const BigInt* bd);

// ---- Powers, roots, integer functions (power.cpp, perm.cpp, gcd.cpp, roots.cpp)

int BigPowInt(CalcContext* ctx, const BigInt* base, int32_t e, BigInt* result);  // 14: e < 0
int BigPow(CalcContext* ctx, BigInt* result, const BigInt* base, const BigInt* exponent);  // 17
int FracPow(CalcContext* ctx, BigInt* rn, BigInt* rd, const BigInt* bn, const BigInt* bd,
            const BigInt* exponent);
int BigPerm(CalcContext* ctx, BigInt* result, const BigInt* n, const BigInt* r);  // 17
int BigFact(CalcContext* ctx, BigInt* result, const BigInt* n);                   // BigPerm(n, n)
int BigBinomial(CalcContext* ctx, BigInt* result, const BigInt* n, const BigInt* k);
int BigGcd(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* result);   // 6: both zero
uint32_t GcdU32(uint32_t a, uint32_t b);
uint32_t GcdU32Many(uint32_t a, uint32_t b, uint32_t c, uint32_t d, uint32_t e, uint32_t f);
int BigLcm(CalcContext* ctx, const BigInt* x, const BigInt* y, BigInt* result);   // 104
int BigHail(CalcContext* ctx, BigInt* x);   // in place; the odd branch answers -1 on success
int BigSqrt(CalcContext* ctx, const BigInt* x, BigInt* result);   // 0 exact, 1 inexact, 3
int BigCbrt(CalcContext* ctx, const BigInt* x, BigInt* result);   // 0 exact, 1 inexact, 3

// ---- Modular arithmetic (modular.cpp) -------------------------------------

int BigMod(CalcContext* ctx, const BigInt* x, const BigInt* m, BigInt* result);
int ModAdd(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m);
int ModSub(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m);
int ModMul(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y, const BigInt* m);
int ModInverse(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result);
int ModPow(CalcContext* ctx, const BigInt* base, const BigInt* exponent, BigInt* result,
           const BigInt* m);

// ---- Base conversion (radix.cpp) ------------------------------------------

// Rewrites text (digits of fromBase, 2..16) as digits of toBase. 0, or 1 for
// an invalid digit (text then left half-decoded).
int ConvertBase(CalcContext* ctx, int fromBase, int toBase, std::string* text);
int BigMulSmallInt(CalcContext* ctx, BigInt* result, const BigInt* x, int32_t n);
