#include "bigint/fast_ops.h"

#include <algorithm>

#include "bigint/dispatch.h"
#include "bigint/poll_clock.h"

namespace {

// Units charged a limb of a linear pass (its pages first touched among
// them), and the slice between ticks: 2^21 units of pollWork are then a
// poll every 2^19 limbs, well under a millisecond.
constexpr int64_t kLinearLimb = 4;
constexpr int32_t kSliceLimbs = 1 << 18;

// v := work's first top + 1 limbs; the array is taken over unless it is
// much longer than that, then copied at exact size.
Result TakeOver(BigInt* v, LimbBuffer* work, int64_t size, int32_t top, uint8_t negative) {
    if (size - top > 64) return BigFromLimbs(v, work->get(), top, negative);
    v->limbs = work->Release();
    v->top = top;
    v->negative = negative;
    return Result::kOk;
}

}  // namespace

Result FastCharge(CalcContext* ctx, Result code, const BigInt* v) {
    if (!Ok(code)) return code;
    PollClock clk(ctx);
    return clk.Tick(kLinearLimb * (int64_t(v->top) + 1)) ? Result::kStopped : Result::kOk;
}

BigInt FastViewDown(const BigInt* v, int32_t k) {
    BigInt view = BigMagnitudeView(v);
    view.limbs += k;
    view.top = LimbsTrimTop(view.limbs, v->top - k);
    return view;
}

BigInt FastViewLow(const BigInt* v, int32_t k) {
    BigInt view = BigMagnitudeView(v);
    view.top = LimbsTrimTop(v->limbs, std::min(k - 1, v->top));
    return view;
}

Result FastSubPolled(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y) {
    PollClock clk(ctx);
    // i: the highest limb where x and y differ; the difference lies below B^(i+1).
    int32_t i = std::max(x->top, y->top);
    if (x->top == y->top) {
        for (;;) {
            const int32_t stop = std::max(i - kSliceLimbs, -1);  // scans (stop, i]
            int32_t j = i;
            while (j > stop && x->limbs[j] == y->limbs[j]) --j;
            i = j;
            if (j > stop || j < 0) break;
            if (clk.Tick(kLinearLimb * kSliceLimbs)) return Result::kStopped;
        }
        if (i < 0) return BigFromInt(r, 0);
    }
    const bool less = x->top != y->top ? x->top < y->top : x->limbs[i] < y->limbs[i];
    const BigInt* big = less ? y : x;
    const BigInt* small = less ? x : y;
    LimbBuffer work(int64_t(i) + 1);
    if (!work.ok()) return Result::kNoMemory;
    int borrow = 0;
    for (int32_t from = 0; from <= i; from += kSliceLimbs) {
        const int32_t n = std::min(kSliceLimbs, i + 1 - from);
        const int32_t both = std::clamp(small->top + 1 - from, 0, n);
        Limb* d = work.get() + from;
        const Limb* a = big->limbs + from;
        if (both > 0) borrow = LimbsSubBorrow(a, small->limbs + from, d, both, borrow);
        int32_t j = both;
        for (; j < n && borrow != 0; ++j) {
            borrow = a[j] == 0 ? 1 : 0;
            d[j] = static_cast<Limb>(borrow != 0 ? kLimbBase - 1 : a[j] - 1);
        }
        CopyLimbs(d + j, a + j, n - j);
        if (clk.Tick(kLinearLimb * n)) return Result::kStopped;
    }
    return TakeOver(r, &work, int64_t(i) + 1, LimbsTrimTop(work.get(), i), less ? 1 : 0);
}

Result FastAddPolled(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y) {
    PollClock clk(ctx);
    const BigInt* big = x->top >= y->top ? x : y;
    const BigInt* small = x->top >= y->top ? y : x;
    const int64_t size = int64_t(big->top) + 2;
    LimbBuffer work(size);
    if (!work.ok()) return Result::kNoMemory;
    int carry = 0;
    for (int32_t from = 0; from <= big->top; from += kSliceLimbs) {
        const int32_t n = std::min(kSliceLimbs, big->top + 1 - from);
        const int32_t both = std::clamp(small->top + 1 - from, 0, n);
        Limb* d = work.get() + from;
        const Limb* a = big->limbs + from;
        if (both > 0) carry = LimbsAddCarryIn(a, small->limbs + from, d, both, carry);
        int32_t j = both;
        for (; j < n && carry != 0; ++j) {
            carry = a[j] == kLimbBase - 1 ? 1 : 0;
            d[j] = static_cast<Limb>(carry != 0 ? 0 : a[j] + 1);
        }
        CopyLimbs(d + j, a + j, n - j);
        if (clk.Tick(kLinearLimb * n)) return Result::kStopped;
    }
    work[big->top + 1] = static_cast<Limb>(carry);
    return TakeOver(r, &work, size, carry != 0 ? big->top + 1 : big->top, 0);
}

Result FastJoinPolled(CalcContext* ctx, BigInt* r, const BigInt* hi, const BigInt* lo, int32_t k) {
    if (BigIsZero(hi)) return lo != nullptr ? FastCopyPolled(ctx, r, lo) : BigFromInt(r, 0);
    const int64_t size = int64_t(hi->top) + k + 1;
    LimbBuffer work(size);
    if (!work.ok()) return Result::kNoMemory;
    const int32_t low = lo == nullptr || BigIsZero(lo) ? 0 : lo->top + 1;
    PollClock clk(ctx);
    Result code = FastCopyLimbsPolled(ctx, work.get(), lo != nullptr ? lo->limbs : nullptr, low);
    for (int32_t from = low; Ok(code) && from < k; from += kSliceLimbs) {
        const int32_t n = std::min(kSliceLimbs, k - from);
        ZeroLimbs(work.get() + from, n);
        if (clk.Tick(kLinearLimb * n)) code = Result::kStopped;
    }
    if (Ok(code)) code = FastCopyLimbsPolled(ctx, work.get() + k, hi->limbs, hi->top + 1);
    return !Ok(code) ? code : TakeOver(r, &work, size, hi->top + k, 0);
}

Result FastStepOne(BigInt* v, bool up) {
    v->negative = 0;
    Limb* a = v->limbs;
    int32_t i = 0;
    const Limb edge = up ? kLimbBase - 1 : 0;
    for (; i <= v->top && a[i] == edge; ++i) a[i] = static_cast<Limb>(kLimbBase - 1 - edge);
    if (i <= v->top) {
        a[i] = static_cast<Limb>(a[i] + (up ? 1 : -1));
        v->top = LimbsTrimTop(a, v->top);
        return Result::kOk;
    }
    // All nines going up: 10000^(top + 1).
    const int32_t top = v->top + 1;
    BigFree(v);
    return FastPowerOfBase(v, top);
}

Result FastCopyLimbsPolled(CalcContext* ctx, Limb* dst, const Limb* src, int32_t count) {
    PollClock clk(ctx);
    for (int32_t from = 0; from < count; from += kSliceLimbs) {
        const int32_t n = std::min(kSliceLimbs, count - from);
        CopyLimbs(dst + from, src + from, n);
        if (clk.Tick(kLinearLimb * n)) return Result::kStopped;
    }
    return Result::kOk;
}

Result FastEqualLimbsPolled(CalcContext* ctx, const Limb* a, const Limb* b, int32_t count,
                            bool* equal) {
    PollClock clk(ctx);
    *equal = true;
    for (int32_t from = 0; *equal && from < count; from += kSliceLimbs) {
        const int32_t n = std::min(kSliceLimbs, count - from);
        *equal = std::equal(a + from, a + from + n, b + from);
        if (clk.Tick(kLinearLimb / 2 * n)) return Result::kStopped;
    }
    return Result::kOk;
}

Result FastCopyPolled(CalcContext* ctx, BigInt* r, const BigInt* v) {
    LimbBuffer work(int64_t(v->top) + 1);
    if (!work.ok()) return Result::kNoMemory;
    const Result code = FastCopyLimbsPolled(ctx, work.get(), v->limbs, v->top + 1);
    return !Ok(code) ? code : TakeOver(r, &work, int64_t(v->top) + 1, v->top, 0);
}

Result FastCanonical(BigInt* v) {
    int32_t top = LimbsTrimTop(v->limbs, v->top);
    if (v->limbs[top] < kLimbBase) {
        v->top = top;
        return Result::kOk;
    }
    LimbBuffer work(int64_t(top) + 2);
    if (!work.ok()) return Result::kNoMemory;
    CopyLimbs(work.get(), v->limbs, top + 1);
    top = LimbsNormalizeTop(work.get(), top);
    const uint8_t negative = v->negative;
    BigFree(v);
    return BigFromLimbs(v, work.get(), top, negative);
}

Result FastAdd(BigInt* r, const BigInt* x, const BigInt* y) {
    const Result code = BigAdd(r, x, y);
    return !Ok(code) ? code : FastCanonical(r);
}

Result FastSub(BigInt* r, const BigInt* x, const BigInt* y) {
    const Result code = BigSub(r, x, y);
    return !Ok(code) ? code : FastCanonical(r);
}

Result FastMul(CalcContext* ctx, BigInt* r, const BigInt* x, const BigInt* y) {
    const Result code = BigMul(ctx, r, x, y);
    return !Ok(code) ? code : FastCanonical(r);
}

Result FastShiftDown(BigInt* r, const BigInt* v, int32_t k) {
    if (k > v->top) return BigFromInt(r, 0);
    const int32_t top = LimbsTrimTop(v->limbs + k, v->top - k);
    return BigFromLimbs(r, v->limbs + k, top, 0);
}

Result FastShiftUp(BigInt* r, const BigInt* v, int32_t k) {
    if (BigIsZero(v) || k == 0) return BigFromLimbs(r, v->limbs, v->top, 0);
    const int64_t size = int64_t(v->top) + k + 1;
    LimbBuffer work(size);
    if (!work.ok()) return Result::kNoMemory;
    ZeroLimbs(work.get(), k);
    CopyLimbs(work.get() + k, v->limbs, v->top + 1);
    return TakeOver(r, &work, size, v->top + k, 0);
}

Result FastLowPart(BigInt* r, const BigInt* v, int32_t k) {
    if (k < 1) return BigFromInt(r, 0);
    const int32_t top = k > v->top ? v->top : k - 1;
    return BigFromLimbs(r, v->limbs, LimbsTrimTop(v->limbs, top), 0);
}

Result FastPowerOfBase(BigInt* r, int32_t k) {
    LimbBuffer work(int64_t(k) + 1, true);
    if (!work.ok()) return Result::kNoMemory;
    work[k] = 1;
    return TakeOver(r, &work, int64_t(k) + 1, k, 0);
}

Result FastDivMod(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* q, BigInt* r) {
    const int order = BigCompareMag(x, d);
    if (order > 0 || BigIsZero(x)) {
        const Result code = BigFromInt(q, 0);
        return !Ok(code) ? code : BigFromLimbs(r, x->limbs, x->top, 0);
    }
    if (order == 0) {
        const Result code = BigFromInt(q, 1);
        return !Ok(code) ? code : BigFromInt(r, 0);
    }
    if (BigIsOne(d)) {
        const Result code = BigFromLimbs(q, x->limbs, x->top, 0);
        return !Ok(code) ? code : BigFromInt(r, 0);
    }
    const BigInt xm = BigMagnitudeView(x), dm = BigMagnitudeView(d);
    const Result code = DivModDispatch(ctx, &xm, &dm, q, r);
    if (Ok(code)) {
        q->negative = 0;
        r->negative = 0;
    }
    return code;
}
