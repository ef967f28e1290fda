// Choice of the multiplication algorithm by operand sizes.
//
// Ladder (lb the shorter operand, thresholds from gFastThresholds):
//   lb < mulKaratsuba            schoolbook
//   lb < mulNtt                  Karatsuba, after cutting a into pieces of
//                                lb limbs when la >= 2·lb
//   la + lb < ntt64Length        the two-prime 32-bit transform, up to its
//                                longest length NttMaxLength()
//   otherwise                    the three-prime 64-bit transform (ntt64.h),
//                                any length
// Squares have their own ladder. MulLimbs keeps LimbsMul (with its row polls)
// below the Karatsuba threshold, and falls back to it when scratch memory
// runs out, since LimbsMul needs none, but only for products of at most
// kFallbackWork limb products (la·lb), a fraction of a second: beyond that
// the schoolbook product would run for minutes (hours for millions of limbs),
// and the product answers low memory at once.
//
// Allocation: scratch from nothrow new (mul_kernels.h); no containers.
#include "bigint/mul_dispatch.h"

#include <algorithm>
#include <cassert>

#include "bigint/mul_kernels.h"
#include "bigint/ntt64.h"

FastThresholds gFastThresholds;

namespace {

// Limb products of the longest schoolbook product run when the fast kernels'
// scratch is refused: 8192 limbs by 8192, well under a second.
constexpr int64_t kFallbackWork = int64_t(1) << 26;

}  // namespace

Result MulRec(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    assert(la >= lb && lb >= 1);
    const FastThresholds& t = gFastThresholds;
    if (lb < t.mulKaratsuba) return MulBasecase(clk, a, la, b, lb, p);
    if (lb < t.mulNtt) {
        if (la >= 2 * lb) return MulPieces(clk, a, la, b, lb, lb, p);
        return MulKaratsuba(clk, a, la, b, lb, p);
    }
    if (la + lb < t.ntt64Length && la + lb <= NttMaxLength()) return MulNtt(clk, a, la, b, lb, p);
    return MulNtt64(clk, a, la, b, lb, p);
}

Result SqrRec(PollClock& clk, const Limb* a, int32_t la, Limb* p) {
    const FastThresholds& t = gFastThresholds;
    if (la < t.sqrKaratsuba) return SqrBasecase(clk, a, la, p);
    if (la < t.sqrNtt) return SqrKaratsuba(clk, a, la, p);
    if (2 * la < t.ntt64Length && 2 * la <= NttMaxLength()) return SqrNtt(clk, a, la, p);
    return SqrNtt64(clk, a, la, p);
}

int32_t MulLimbs(CalcContext* ctx, const Limb* a, int32_t ta, const Limb* b, int32_t tb, Limb* p) {
    if (ta < tb) {
        std::swap(a, b);
        std::swap(ta, tb);
    }
    const bool square = a == b && ta == tb;
    const int32_t la = ta + 1, lb = tb + 1;
    // p zeroed here, a slice at a time with a poll between: the first touch
    // of a product's hundreds of MB takes tens of ms.
    PollClock clk(ctx);
    constexpr int64_t kSlice = int64_t(1) << 20;
    for (int64_t from = 0; from < int64_t(la) + lb; from += kSlice) {
        const int64_t end = std::min(int64_t(la) + lb, from + kSlice);
        std::fill(p + from, p + end, Limb(0));
        if (end - from == kSlice && clk.Tick(kSlice)) return -1;
    }
    if (lb < (square ? gFastThresholds.sqrKaratsuba : gFastThresholds.mulKaratsuba))
        return LimbsMul(ctx, a, b, p, ta, tb);
    const Result rc = square ? SqrRec(clk, a, la, p) : MulRec(clk, a, la, b, lb, p);
    if (rc == Result::kStopped) return -1;
    if (rc == Result::kNoMemory) {
        if (int64_t(la) * lb > kFallbackWork) return kMulNoMemory;
        std::fill(p, p + la + lb, Limb(0));
        return LimbsMul(ctx, a, b, p, ta, tb);
    }
    return p[la + lb - 1] >= 1 ? la + lb - 1 : la + lb - 2;
}

Result MulPieces(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb,
                 int32_t piece, Limb* p) {
    Scratch<Limb> t(int64_t(piece) + lb);
    if (!t) return Result::kNoMemory;
    std::fill(p, p + la + lb, Limb(0));
    for (int32_t off = 0; off < la; off += piece) {
        const int32_t q = std::min(piece, la - off);
        const Result rc = q >= lb ? MulRec(clk, a + off, q, b, lb, t.get())
                                  : MulRec(clk, b, lb, a + off, q, t.get());
        if (!Ok(rc)) return rc;
        LimbsAddInto(p + off, la + lb - off, t.get(), LimbsTrim(t.get(), q + lb));
    }
    return Result::kOk;
}
