// Products of long lists of small factors (product_list.h).
//
// Leaves: consecutive factors are packed into words below 10^15 and each
// word multiplies a limb array in one pass (limb·word + carry < 2^64). The
// pass is a chain of dependent multiplications and divisions by 10^4, so
// a leaf runs two arrays, the two halves of its factors, through one loop
// and joins them with one schoolbook product. A leaf stops at about
// gFastThresholds.productLeaf limbs, where the joining products become
// cheaper per limb than the word passes.
//
// Tree: the list is halved by count, so the products of each level are of
// nearly equal sizes (neighbouring factors have nearly equal sizes), which
// is where the transform products pay. Every product is written into a
// fresh array that becomes the result record, and each half is released as
// soon as the product of the two exists: the tree keeps alive at most the
// left halves along one path, the two operands and the product.
//
// Allocation: limb arrays from alloc.h, scratch of the kernels from nothrow
// new; a refused one answers code 3 with nothing left allocated.
#include "bigint/product_list.h"

#include <algorithm>

#include "bigint/mul_kernels.h"
#include "bigint/thresholds.h"

namespace {

// The next word of factors [*i, end): as many as fit below the bound.
uint64_t NextWord(const FactorList& f, size_t* i, size_t end) {
    uint64_t w = 1;
    while (*i < end) {
        const uint64_t x = f.At(*i);
        if (w > (kFactorWordBound - 1) / x) break;
        w *= x;
        ++*i;
    }
    return w;
}

inline uint64_t MulLimb(Limb* a, uint64_t w, uint64_t carry) {
    const uint64_t t = uint64_t(uint16_t(*a)) * w + carry;
    carry = t / uint64_t(kLimbBase);
    *a = static_cast<Limb>(t - carry * uint64_t(kLimbBase));
    return carry;
}

inline void PushCarry(Limb* a, int32_t* len, uint64_t carry) {
    while (carry != 0) {
        a[(*len)++] = static_cast<Limb>(carry % uint64_t(kLimbBase));
        carry /= uint64_t(kLimbBase);
    }
}

// a := a·wa and b := b·wb over the common length in one loop (two
// independent chains), then the rest of each.
void MulWords2(Limb* a, int32_t* la, uint64_t wa, Limb* b, int32_t* lb, uint64_t wb) {
    const int32_t common = std::min(*la, *lb);
    uint64_t ca = 0, cb = 0;
    int32_t i = 0;
    for (; i < common; ++i) {
        ca = MulLimb(a + i, wa, ca);
        cb = MulLimb(b + i, wb, cb);
    }
    for (int32_t j = i; j < *la; ++j) ca = MulLimb(a + j, wa, ca);
    for (int32_t j = i; j < *lb; ++j) cb = MulLimb(b + j, wb, cb);
    PushCarry(a, la, ca);
    PushCarry(b, lb, cb);
}

// r := a·b of la >= 1 and lb >= 1 normalised limbs, in r's own array.
Result MulArrays(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, BigInt* r) {
    if (la < lb) {
        std::swap(a, b);
        std::swap(la, lb);
    }
    LimbBuffer p(int64_t(la) + lb);
    if (!p.ok()) return Result::kNoMemory;
    const Result code =
        (a == b && la == lb) ? SqrRec(clk, a, la, p.get()) : MulRec(clk, a, la, b, lb, p.get());
    if (!Ok(code)) return code;
    r->top = LimbsTrimTop(p.get(), la + lb - 1);
    r->negative = 0;
    r->limbs = p.Release();
    return Result::kOk;
}

// v := product of factors [lo, hi), hi > lo.
Result Leaf(PollClock& clk, const FactorList& f, size_t lo, size_t hi, BigInt* v) {
    const size_t mid = lo + (hi - lo + 1) / 2;
    // A word below 10^15 lengthens an array by at most four limbs.
    LimbBuffer left(4 * int64_t(mid - lo) + 2), right(4 * int64_t(hi - mid) + 2);
    if (!left.ok() || !right.ok()) return Result::kNoMemory;
    Limb* a = left.get();
    Limb* b = right.get();
    a[0] = b[0] = 1;
    int32_t la = 1, lb = 1;
    size_t i = lo, j = mid;
    int64_t work = 0;
    while (i < mid || j < hi) {
        const uint64_t wa = NextWord(f, &i, mid);
        const uint64_t wb = NextWord(f, &j, hi);
        // A word of up to 15 digits is about four limbs: the pass costs as many limb products.
        work += 4 * (la + lb);
        MulWords2(a, &la, wa, b, &lb, wb);
    }
    if (clk.Tick(work)) return Result::kStopped;
    if (lb == 1 && b[0] == 1) return BigFromLimbs(v, a, la - 1, 0);
    return MulArrays(clk, a, la, b, lb, v);
}

Result Tree(PollClock& clk, const FactorList& f, size_t lo, size_t hi, BigInt* v) {
    const uint64_t typical = f.At(lo + (hi - lo) / 2);
    const int bits = 64 - __builtin_clzll(typical);
    // Four limbs hold at least 53 bits.
    if (hi - lo <= 1 || int64_t(hi - lo) * bits <= int64_t(gFastThresholds.productLeaf) * 13)
        return Leaf(clk, f, lo, hi, v);
    const size_t mid = lo + (hi - lo) / 2;
    BigTemp left, right;
    Result code = Tree(clk, f, lo, mid, &left.v);
    if (Ok(code)) code = Tree(clk, f, mid, hi, &right.v);
    if (Ok(code)) code = ProductInto(clk, &left.v, &right.v, v);
    return code;
}

}  // namespace

Result ListProduct(PollClock& clk, const FactorList& list, BigInt* v) {
    if (list.Count() == 0) return BigFromInt(v, 1);
    return Tree(clk, list, 0, list.Count(), v);
}

Result ProductInto(PollClock& clk, const BigInt* x, const BigInt* y, BigInt* r) {
    return MulArrays(clk, x->limbs, x->top + 1, y->limbs, y->top + 1, r);
}
