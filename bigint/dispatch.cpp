#include "bigint/dispatch.h"

int DivModDispatch(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* q, BigInt* r) {
    return DivModSchool(ctx, x, d, q, r);
}
int SqrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result) {
    return SqrtSchool(ctx, x, result);
}
int CbrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result) {
    return CbrtSchool(ctx, x, result);
}
int RangeProductDispatch(CalcContext* ctx, int32_t c, int32_t n, BigInt* result) {
    return RangeProductSchool(ctx, c, n, result);
}
int GcdDispatch(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    return GcdSchool(ctx, a, b, result);
}
int RadixToBigDispatch(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                       BigInt* value) {
    return RadixToBigSchool(ctx, digits, count, base, value);
}
int BigToRadixDispatch(CalcContext* ctx, const BigInt* value, int base, std::string* text) {
    return BigToRadixSchool(ctx, value, base, text);
}
