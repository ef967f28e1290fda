// The basic kernels behind the public operations: long division, the
// digit-by-digit roots, the running factorial product, Euclid by long
// division, and the digit-at-a-time base conversions. They are exact to the
// program's documented behaviour (codes, polls, signs) and serve as the
// reference that every faster path is tested against.
#pragma once

#include <string>

#include "bigint/bigint.h"

// |x| > |d| > 1: quotient truncated toward zero with sign (x ≠ d), remainder
// with x's sign, both written as new. kOk, kNoMemory, kStopped.
Result DivModSchool(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                    BigInt* remainder);
// Integer roots of |x| (the cube root takes x's sign). kOk exact, kRootInexact, kNoMemory.
Result SqrtSchool(CalcContext* ctx, const BigInt* x, BigInt* result);
Result CbrtSchool(CalcContext* ctx, const BigInt* x, BigInt* result);
// (c + 1) × (c + 2) × … × n for 0 ≤ c < n < 100000000. kOk, kNoMemory, kStopped.
Result RangeProductSchool(CalcContext* ctx, int32_t c, int32_t n, BigInt* result);
// gcd of magnitudes with |a| > |b| > 0, non-negative. kOk, kNoMemory, kStopped.
Result GcdSchool(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result);
// The inverse of a (0 <= a <= m, both non-negative) modulo m by the chain of
// quotients and its back-substitution: the v in 0 … m − 1, or 0 when there
// is none. A zero a is divided anyway: kImpossibleEstimate for a modulus of two limbs or
// more, an endless subtraction of zero that only the poll ends (kStopped) for
// one limb. kOk, kImpossibleEstimate, kNoMemory, kStopped.
Result ModInverseSchool(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result);
// value of the digits (values 0..base-1, most significant first), base 2..16.
Result RadixToBigSchool(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                        BigInt* value);
// Digits of a non-negative value in base 2..16 ("0"-"9", "A"-"F"), no leading
// zeros; zero gives the empty text.
Result BigToRadixSchool(CalcContext* ctx, const BigInt* value, int base, std::string* text);
