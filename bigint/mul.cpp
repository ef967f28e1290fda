// Schoolbook multiplication, one poll per row (and per 2^18 limbs of a
// longer row) so a long product can be stopped.
#include <cassert>

#include "bigint/internal.h"
#include "bigint/mul_dispatch.h"

// p += a * b, row by row over b's limbs. p holds ta + tb + 2 limbs and does
// not overlap a or b. Each row adds a·b[i] into p[i …] two limbs at a time
// (pairs below 10^8, so a pair's product and sum stay below 2^40) and puts
// its carry in the limb above, which no earlier row has written. Answers the
// product's top, or -1 when the context asks to stop (p then holds the
// normalised sum of the rows done, or part of a row: a row of more than
// kRowSlice limbs, milliseconds long, polls within too).
namespace {
constexpr int32_t kRowSlice = 1 << 18;  // even: slices end between pairs
}  // namespace

int32_t LimbsMul(CalcContext* ctx, const Limb* a, const Limb* b, Limb* p, int32_t ta, int32_t tb) {
    assert(ta >= 0 && tb >= 0 && p != a && p != b);
    constexpr uint64_t kPair = uint64_t(kLimbBase) * kLimbBase;
    auto limb = [](Limb x) { return uint64_t(uint16_t(x)); };
    int32_t k = 0;
    for (int32_t i = 0; i <= tb; ++i) {
        const uint64_t bi = limb(b[i]);
        Limb* row = p + i;
        uint64_t carry = 0;
        int32_t j = 0;
        while (j < ta) {
            const int32_t end = ta - j > kRowSlice ? j + kRowSlice : ta;
            for (; j < end; j += 2) {
                const uint64_t v = (limb(a[j]) + limb(a[j + 1]) * kLimbBase) * bi + limb(row[j]) +
                                   limb(row[j + 1]) * kLimbBase + carry;
                carry = v / kPair;
                const uint32_t low = static_cast<uint32_t>(v - carry * kPair);
                row[j] = static_cast<Limb>(low % kLimbBase);
                row[j + 1] = static_cast<Limb>(low / kLimbBase);
            }
            if (j < ta && ctx->ShouldStop()) return -1;
        }
        if (j == ta) {
            const uint64_t v = limb(a[ta]) * bi + limb(row[ta]) + carry;
            carry = v / kLimbBase;
            row[ta] = static_cast<Limb>(v - carry * kLimbBase);
        }
        k = i + ta + 1;
        p[k] = static_cast<Limb>(carry);
        if (ctx->ShouldStop()) return -1;
    }
    return p[k] >= 1 ? k : k - 1;
}

// The rows, and so the polls, run over y's limbs. A stop answers -1 and
// leaves the result 1; a product whose arrays (the result's, allocated first,
// or the kernels' work) are refused answers 3, the result also 1.
Result BigMul(CalcContext* ctx, BigInt* result, const BigInt* x, const BigInt* y) {
    if (BigIsZero(x) || BigIsZero(y)) return BigFromInt(result, 0);
    const uint8_t negative = x->negative != y->negative;
    // MulLimbs zeroes the limbs it uses.
    LimbBuffer product(static_cast<int64_t>(x->top) + y->top + 10);
    if (!product.ok()) {
        BigSetFailed(result);
        return Result::kNoMemory;
    }
    const int32_t top = MulLimbs(ctx, x->limbs, x->top, y->limbs, y->top, product.get());
    if (top == kMulNoMemory) {
        BigSetFailed(result);
        return Result::kNoMemory;
    }
    if (top < 0) {
        BigSetFailed(result);
        return Result::kStopped;
    }
    // The product's array becomes the result's (a few limbs longer than
    // needed): a copy of a long product would be a pass with no poll.
    result->limbs = product.Release();
    result->top = top;
    result->negative = negative;
    return Result::kOk;
}
