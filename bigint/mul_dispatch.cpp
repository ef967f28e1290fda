#include "bigint/mul_dispatch.h"

int32_t MulLimbs(CalcContext* ctx, const Limb* a, int32_t ta, const Limb* b, int32_t tb, Limb* p) {
    return LimbsMul(ctx, a, b, p, ta, tb);
}
