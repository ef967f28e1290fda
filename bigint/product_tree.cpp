// The range product (c + 1) × … × n by a balanced product tree.
//
// Leaves multiply up to gFastThresholds.productTree consecutive factors into
// a limb array one factor at a time (a factor is below 10^8, so a limb times
// a factor plus the carry stays below 2^40); the leaves are then joined in
// pairs by MulLimbs, so the large products are of equal sizes, where the
// fast multiplications pay.
//
// Allocation: leaf arrays and records from alloc.h; a refused one answers code 3.
#include "bigint/fast_paths.h"
#include "bigint/mul_dispatch.h"
#include "bigint/poll_clock.h"
#include "bigint/thresholds.h"

namespace {

// v := product of lo + 1 … hi (hi − lo factors, each below 10^8).
Result Leaf(int32_t lo, int32_t hi, BigInt* v) {
    // Each factor adds at most two limbs.
    LimbBuffer work(2 * int64_t(hi - lo) + 2, true);
    if (!work.ok()) return Result::kNoMemory;
    Limb* a = work.get();
    a[0] = 1;
    int32_t len = 1;
    for (int32_t f = lo + 1; f <= hi; ++f) {
        uint64_t carry = 0;
        for (int32_t i = 0; i < len; ++i) {
            const uint64_t t = uint64_t(a[i]) * uint32_t(f) + carry;
            carry = t / kLimbBase;
            a[i] = static_cast<Limb>(t - carry * kLimbBase);
        }
        while (carry != 0) {
            a[len++] = static_cast<Limb>(carry % kLimbBase);
            carry /= kLimbBase;
        }
    }
    return BigFromLimbs(v, a, len - 1, 0);
}

// Leaves are charged to clk (a leaf costs about its factor count times its
// length); the joining products poll through their own clocks.
Result Tree(CalcContext* ctx, PollClock& clk, int32_t lo, int32_t hi, BigInt* v) {
    if (hi - lo <= gFastThresholds.productTree) {
        const Result code = Leaf(lo, hi, v);
        if (Ok(code) && clk.Tick(int64_t(hi - lo) * (v->top + 1))) {
            BigFree(v);
            return Result::kStopped;
        }
        return code;
    }
    const int32_t mid = lo + (hi - lo) / 2;
    BigTemp left, right;
    Result code = Tree(ctx, clk, lo, mid, &left.v);
    if (Ok(code)) code = Tree(ctx, clk, mid, hi, &right.v);
    if (Ok(code)) code = FastMul(ctx, v, &left.v, &right.v);
    return code;
}

}  // namespace

Result RangeProductTree(CalcContext* ctx, int32_t c, int32_t n, BigInt* result) {
    PollClock clk(ctx);
    const Result code = Tree(ctx, clk, c, n, result);
    if (Ok(code)) result->negative = 0;
    return code;
}
