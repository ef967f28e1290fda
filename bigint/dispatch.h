// Algorithm choice for the heavy operations: each entry has the contract of
// the reference kernel of the same stem (reference.h) and picks a faster
// method above its threshold. The public operations call these.
#pragma once

#include "bigint/reference.h"

Result DivModDispatch(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                      BigInt* remainder);
Result SqrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result);
Result CbrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result);
Result RangeProductDispatch(CalcContext* ctx, int32_t c, int32_t n, BigInt* result);
// C(n, k) for 1 <= k <= n / 2, n < 100000000: from the prime factorisation
// when k is long enough, else n … (n - k + 1) / k!. kOk, kNoMemory, kStopped.
Result BinomialDispatch(CalcContext* ctx, int32_t n, int32_t k, BigInt* result);
Result GcdDispatch(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result);
Result ModInverseDispatch(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result);
Result RadixToBigDispatch(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                          BigInt* value);
Result BigToRadixDispatch(CalcContext* ctx, const BigInt* value, int base, std::string* text);

// Releases the reciprocal the division keeps for its last long divisor (the
// allocation test, which counts live blocks, starts each run without it).
void ReleaseDivisorCache();
