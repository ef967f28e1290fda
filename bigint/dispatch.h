// Algorithm choice for the heavy operations: each entry has the contract of
// the reference kernel of the same stem (reference.h) and picks a faster
// method above its threshold. The public operations call these.
#pragma once

#include "bigint/reference.h"

int DivModDispatch(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                   BigInt* remainder);
int SqrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result);
int CbrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result);
int RangeProductDispatch(CalcContext* ctx, int32_t c, int32_t n, BigInt* result);
// C(n, k) for 1 <= k <= n / 2, n < 100000000: from the prime factorisation
// when k is long enough, else n … (n - k + 1) / k!. 0, 3, -1.
int BinomialDispatch(CalcContext* ctx, int32_t n, int32_t k, BigInt* result);
int GcdDispatch(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result);
int ModInverseDispatch(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result);
int RadixToBigDispatch(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                       BigInt* value);
int BigToRadixDispatch(CalcContext* ctx, const BigInt* value, int base, std::string* text);
