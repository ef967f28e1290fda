// Schoolbook multiplication, one poll per row so a long product can be stopped.
#include <cassert>

#include "bigint/internal.h"
#include "bigint/mul_dispatch.h"

// p += a * b, row by row over b's limbs. p holds ta + tb + 2 limbs and does
// not overlap a or b. A limb times a limb plus both carries stays below
// 10^8 + 2 * 10^4, inside 32 bits. Answers the product's top, or -1 when the
// context asks to stop (p then holds a partial sum).
int32_t LimbsMul(CalcContext* ctx, const Limb* a, const Limb* b, Limb* p, int32_t ta,
                 int32_t tb) {
    assert(ta >= 0 && tb >= 0 && p != a && p != b);
    int32_t k = 0;
    for (int32_t i = 0; i <= tb; ++i) {
        const int32_t bi = b[i];
        int32_t c1 = 0;  // product carry
        int32_t c2 = 0;  // sum carry
        k = i;
        for (int32_t j = 0; j <= ta; ++j) {
            const int32_t t = bi * a[j] + c1;
            c1 = t / kLimbBase;
            const int32_t s = c2 + t % kLimbBase + p[k];
            c2 = s / kLimbBase;
            p[k] = static_cast<Limb>(s % kLimbBase);
            ++k;
        }
        p[k] = static_cast<Limb>(c1 + c2);
        if (ctx->ShouldStop()) return -1;
    }
    return p[k] >= 1 ? k : k - 1;
}

// The rows, and so the polls, run over y's limbs. A stop and a failed result
// allocation both answer -1 and leave the result 1.
int BigMul(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y) {
    if (BigIsZero(x) || BigIsZero(y)) return BigFromInt(result, 0);
    const uint8_t negative = x->negative != y->negative;
    LimbBuffer product(static_cast<int64_t>(x->top) + y->top + 10, true);
    if (!product.ok()) {
        BigSetFailed(result);
        return 3;
    }
    const int32_t top = MulLimbs(ctx, x->limbs, x->top, y->limbs, y->top, product.get());
    if (top < 0 || BigFromLimbs(result, product.get(), top, negative) != 0) {
        BigSetFailed(result);
        return -1;
    }
    return 0;
}
