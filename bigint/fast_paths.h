// The fast kernels behind the ...Dispatch entries (dispatch.h). Each has the
// contract of the reference kernel of the same stem (reference.h) on the
// operands its dispatcher hands it.
#pragma once

#include <string>

#include "bigint/fast_ops.h"
#include "bigint/ntt_plan.h"

// Quotient and remainder of magnitudes |x| > |d| > 1 by a Newton reciprocal
// of d; quotient and remainder non-negative. kOk, kNoMemory, kStopped.
Result DivModNewton(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                    BigInt* remainder);
// The same for canonical divisors below 10^8 (at most two limbs), in one
// pass; quotient and remainder non-negative. kOk, kNoMemory, kStopped.
Result DivModSmall(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                   BigInt* remainder);
// A divisor with its reciprocal, for many divisions by the same number.
struct NewtonDivisor {
    const BigInt* d = nullptr;  // not owned
    BigInt R = {};
    int32_t k = 0;  // leading limbs of d behind R
    // Transforms of d and R kept from one division to the next (0 points:
    // none); Start and Complete drop them, Forget frees them.
    mutable NttVector dHat, rHat;
    mutable int32_t dPoints = 0, rPoints = 0;
    bool reused = false;  // by Complete (and Prepare): the transforms are kept
    void ForgetTransforms() const {
        dPoints = rPoints = 0;
        (void)dHat.Reset(0);
        (void)rHat.Reset(0);
    }
    NewtonDivisor() = default;
    ~NewtonDivisor() { BigFree(&R); }
    NewtonDivisor(const NewtonDivisor&) = delete;
    NewtonDivisor& operator=(const NewtonDivisor&) = delete;
};
// Reciprocal of all of d (at least 2 limbs, canonical), good for any quotient.
Result NewtonDivisorPrepare(CalcContext* ctx, const BigInt* d, NewtonDivisor* divisor);
// The same in two steps: the reciprocal of d's leading half, enough for one
// division, then (for a divisor seen again) the rest of it.
Result NewtonDivisorStart(CalcContext* ctx, const BigInt* d, NewtonDivisor* divisor);
Result NewtonDivisorComplete(CalcContext* ctx, NewtonDivisor* divisor);
// |x| divmod d for any x >= 0 with a prepared divisor (or one made by
// DivModNewton for quotients as long as x's).
Result DivModWithDivisor(CalcContext* ctx, const BigInt* x, const NewtonDivisor* divisor,
                         BigInt* quotient, BigInt* remainder);
// An approximation within a few units of 10000^(2k) / D, for D of exactly
// k >= 2 limbs. kOk, kNoMemory, kStopped.
Result Reciprocal(CalcContext* ctx, const BigInt* D, int32_t k, BigInt* result);

// floor(sqrt(|x|)) by the recursive square root with remainder.
// kOk exact, kRootInexact, kNoMemory, kStopped.
Result SqrtRecursive(CalcContext* ctx, const BigInt* x, BigInt* result);
// floor(cbrt(|x|)) with x's sign, by Newton's iteration. kOk exact,
// kRootInexact, kNoMemory, kStopped.
Result CbrtNewton(CalcContext* ctx, const BigInt* x, BigInt* result);

// (c + 1) × … × n by a balanced product tree. kOk, kNoMemory, kStopped.
Result RangeProductTree(CalcContext* ctx, int32_t c, int32_t n, BigInt* result);
// The same from the prime factorisation of n! / c!; sieves up to n.
Result RangeProductPrimes(CalcContext* ctx, int32_t c, int32_t n, BigInt* result);
// C(n, k) for 0 <= k <= n from its prime factorisation; sieves up to n. kOk, kNoMemory, kStopped.
Result BinomialPrimes(CalcContext* ctx, int32_t n, int32_t k, BigInt* result);

// base^e mod |m| in 0 … |m| - 1 for m != 0 and |e| >= 2 (the exponent's
// sign is ignored), by Montgomery multiplication on 64-bit words. kOk, kNoMemory, kStopped.
Result ModPowMontgomery(CalcContext* ctx, const BigInt* base, const BigInt* exponent,
                        const BigInt* m, BigInt* result);

// The same for moduli of any length, by transform products and the
// modulus's cached reciprocal. kOk, kNoMemory, kStopped.
Result ModPowLong(CalcContext* ctx, const BigInt* base, const BigInt* exponent, const BigInt* m,
                  BigInt* result);

// gcd of |a| > |b| > 0 by Lehmer's method. kOk, kNoMemory, kStopped.
Result GcdLehmer(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result);
// The same by the half-gcd: Lehmer's steps at the leaves, cofactor matrices
// joined by products above them. kOk, kNoMemory, kStopped.
Result GcdHalf(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result);
// The inverse of a modulo m in 1 … m − 1, or 0 when gcd(a, m) > 1, by the
// extended gcd on Lehmer's steps and the half-gcd; canonical magnitudes
// 0 < a < m. kOk, kNoMemory, kStopped.
Result ModInverseExtended(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result);

// Base conversion by divide and conquer over powers of the base.
Result RadixToBigSplit(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                       BigInt* value);
Result BigToRadixSplit(CalcContext* ctx, const BigInt* value, int base, std::string* text);
// Digits of a canonical magnitude in base 2, 4, 8 or 16 through binary
// words (radix_binary.cpp). kOk, kNoMemory, kStopped.
Result BigToRadixBinary(CalcContext* ctx, const BigInt* value, int base, std::string* text);
