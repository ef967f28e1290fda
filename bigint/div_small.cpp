// Division by a number below 10^8 (one or two limbs) in one pass over the
// dividend, two limbs (a number below 10^8) at a time from the top: the
// rest stays below the divisor, so rest·10^8 + pair < 10^16 fits a machine
// word and each step is one machine division. Long division instead
// estimates each quotient limb from below and subtracts until it fits.
//
// Allocation: the quotient array from alloc.h; a refused one answers code 3.
#include "bigint/fast_paths.h"
#include "bigint/poll_clock.h"

Result DivModSmall(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* quotient,
                   BigInt* remainder) {
    auto limb = [](Limb v) { return uint64_t(uint16_t(v)); };
    const uint64_t dv =
        d->top == 0 ? limb(d->limbs[0]) : limb(d->limbs[0]) + limb(d->limbs[1]) * kLimbBase;
    const int32_t n = x->top + 1;
    LimbBuffer q(n);
    if (!q.ok()) return Result::kNoMemory;
    constexpr uint64_t kPair = uint64_t(kLimbBase) * kLimbBase;
    PollClock clk(ctx);
    uint64_t rest = 0;
    int32_t i = n - 1;
    if (n % 2 != 0) {
        const uint64_t v = limb(x->limbs[i]);
        q[i] = static_cast<Limb>(v / dv);
        rest = v % dv;
        --i;
    }
    for (; i > 0; i -= 2) {
        const uint64_t v = rest * kPair + limb(x->limbs[i - 1]) + limb(x->limbs[i]) * kLimbBase;
        const uint64_t qp = v / dv;
        rest = v - qp * dv;
        q[i - 1] = static_cast<Limb>(qp % kLimbBase);
        q[i] = static_cast<Limb>(qp / kLimbBase);
        // A machine division costs about as much as sixteen limb products.
        if ((i & 0x3FFF) == 1 && clk.Tick(16 * 0x4000)) return Result::kStopped;
    }
    const Limb r[2] = {static_cast<Limb>(rest % kLimbBase), static_cast<Limb>(rest / kLimbBase)};
    if (BigFromLimbs(quotient, q.get(), LimbsTrimTop(q.get(), n - 1), 0) != 0)
        return Result::kNoMemory;
    if (BigFromLimbs(remainder, r, r[1] != 0 ? 1 : 0, 0) != 0) {
        BigFree(quotient);
        return Result::kNoMemory;
    }
    return Result::kOk;
}
