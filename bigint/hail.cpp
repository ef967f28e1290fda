// One step of the hailstone (3x + 1) sequence.
#include "bigint/internal.h"

// x / 2 when x is even, else 3x + 1 on the magnitude, the sign kept (so -3
// becomes -10). The odd branch answers kHailOddStep (-1) on success, which
// callers take as success: only positive codes are errors.
Result BigHail(CalcContext*, BigInt* x) {
    if (BigIsEven(x)) {
        BigHalve(x);
        return Result::kOk;
    }
    LimbBuffer work(static_cast<int64_t>(x->top) + 10);
    if (!work.ok()) return Result::kNoMemory;
    CopyLimbs(work.get(), x->limbs, x->top + 1);
    int32_t top = LimbsMulSmall(work.get(), 3, x->top);
    top = LimbsAddSmall(work.get(), 1, top);
    if (top > x->top) {
        Limb* grown = AllocLimbs(static_cast<int64_t>(top) + 1);
        if (!grown) return Result::kNoMemory;
        FreeLimbs(x->limbs);
        x->limbs = grown;
    }
    CopyLimbs(x->limbs, work.get(), top + 1);
    x->top = top;
    return kHailOddStep;
}
