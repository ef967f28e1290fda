// Products of long lists of small factors (product_list.h).
//
// Leaves: consecutive factors are packed into words below 10^15 and each
// word multiplies a limb array in one pass (limb·word + carry < 2^64). The
// pass is a chain of dependent multiplications and divisions by 10^4, so
// a leaf runs two arrays through one loop, words taken in turn, and joins
// them with one schoolbook product. A leaf fills a room of
// gFastThresholds.productLeaf limbs (a power of two): beyond it the joining
// products are cheaper per limb than the word passes.
//
// Tree: the transforms have a power of two points, so blocks are joined
// like the digits of a binary counter: two blocks of room r make one of
// room 2r whose product fills its transform; the leftover blocks, of
// distinct rooms, are joined from the smallest up. A product much longer
// on one side is cut into pieces that fill smaller transforms with the
// shorter factor when that costs fewer points·log points in all.
//
// Memory: every product is written straight into the array that becomes
// its record and both operands are released as soon as it exists; the
// counter holds at most one block per room. x²·y squares into an array
// with room for y, releases x, and multiplies by y in place from the top
// piece down, so the square and x²·y never coexist.
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

// Points times their logarithm of the transform of a product of len limbs.
double TransformCost(int64_t len) {
    int64_t points = 1;
    int lg = 0;
    for (; points < len - 1; points *= 2) ++lg;
    return double(points) * lg;
}

// Limbs of the pieces of a (la >= lb) whose products with b cost the
// fewest transform points in all: each piece with b fills a power of two
// of at most NttMaxLength() points. la when one product of a and b costs
// less (counted as one transform even beyond that length, where it is cut
// by MulRec) or b is too short for transforms. With inPlace, pieces
// whenever there is a length for them: they cost at most a few tenths more
// and spare a second array of a·b's size.
int32_t PieceLength(int32_t la, int32_t lb, bool inPlace = false) {
    if (lb < gFastThresholds.mulNtt) return la;
    int32_t best = la;
    double bestCost = inPlace ? 1e300 : TransformCost(int64_t(la) + lb);
    for (int64_t fill = 2; fill <= NttMaxLength(); fill *= 2) {
        const int64_t piece = fill - lb;
        if (piece < lb) continue;
        if (piece >= la) break;
        const int64_t pieces = (la + piece - 1) / piece;
        const double cost = double(pieces) * TransformCost(fill);
        if (cost < bestCost) {
            best = int32_t(piece);
            bestCost = cost;
        }
    }
    return best;
}

// r := a·b of la >= 1 and lb >= 1 normalised limbs, in r's own array.
Result MulArrays(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, BigInt* r) {
    if (la < lb) {
        std::swap(a, b);
        std::swap(la, lb);
    }
    LimbBuffer p(int64_t(la) + lb);
    if (!p.ok()) return Result::kNoMemory;
    const int32_t piece = PieceLength(la, lb);
    const Result code = piece < la             ? MulPieces(clk, a, la, b, lb, piece, p.get())
                        : (a == b && la == lb) ? SqrRec(clk, a, la, p.get())
                                               : MulRec(clk, a, la, b, lb, p.get());
    if (!Ok(code)) return code;
    r->top = LimbsTrimTop(p.get(), la + lb - 1);
    r->negative = 0;
    r->limbs = p.Release();
    return Result::kOk;
}

// Limbs a word adds to a product at most: the least d with w <= 10^(4d).
int32_t WordLimbs(uint64_t w) {
    int32_t d = 0;
    for (uint64_t r = 1; r < w; r *= uint64_t(kLimbBase)) ++d;
    return d;
}

// v := the product of the factors from *pos on while it keeps within room
// limbs (at least one factor is taken); *pos moves past them.
Result Leaf(PollClock& clk, const FactorList& f, size_t* pos, int64_t room, BigInt* v) {
    const size_t end = f.Count();
    // Each array stays within room limbs, but for a first word of up to four.
    LimbBuffer left(room + 5), right(room + 5);
    if (!left.ok() || !right.ok()) return Result::kNoMemory;
    Limb* a = left.get();
    Limb* b = right.get();
    a[0] = b[0] = 1;
    int32_t la = 1, lb = 1;
    int64_t work = 0;
    while (*pos < end) {
        size_t next = *pos;
        const uint64_t wa = NextWord(f, &next, end);
        const int32_t da = WordLimbs(wa);
        if (la + lb + da > room && work > 0) break;
        size_t after = next;
        uint64_t wb = next < end ? NextWord(f, &after, end) : 1;
        if (la + lb + da + WordLimbs(wb) > room) {
            wb = 1;
            after = next;
        }
        // A word of up to 15 digits is about four limbs: the pass costs as many limb products.
        work += 4 * (la + lb) + 1;
        MulWords2(a, &la, wa, b, &lb, wb);
        *pos = after;
        if (wb == 1) break;
    }
    if (clk.Tick(work)) return Result::kStopped;
    if (lb == 1 && b[0] == 1) return BigFromLimbs(v, a, la - 1, 0);
    return MulArrays(clk, a, la, b, lb, v);
}

}  // namespace

// Blocks of room productLeaf · 2^j limbs (a power of two) are joined like
// the digits of a binary counter: two blocks of room r give one of room 2r,
// whose product fills its transform of 2r points. What is left at the end,
// blocks of distinct rooms, is joined from the smallest up.
Result ListProduct(PollClock& clk, const FactorList& list, BigInt* v) {
    if (list.Count() == 0) return BigFromInt(v, 1);
    constexpr int kLevels = 64;
    BigTemp block[kLevels];
    int64_t room[kLevels];
    int depth = 0;
    int64_t leafRoom = 1;
    while (leafRoom < gFastThresholds.productLeaf) leafRoom *= 2;
    size_t pos = 0;
    Result code = Result::kOk;
    auto join = [&] {
        BigTemp t;
        code = ProductInto(clk, &block[depth - 2].v, &block[depth - 1].v, &t.v);
        if (!Ok(code)) return;
        BigFree(&block[depth - 1].v);
        BigReplace(&block[depth - 2].v, &t.v);
        room[depth - 2] *= 2;
        --depth;
    };
    while (Ok(code) && pos < list.Count()) {
        code = Leaf(clk, list, &pos, leafRoom, &block[depth].v);
        room[depth++] = leafRoom;
        while (Ok(code) && depth >= 2 && room[depth - 1] == room[depth - 2]) join();
    }
    while (Ok(code) && depth >= 2) join();
    if (Ok(code)) BigMove(v, &block[0].v);
    return code;
}

// The passes between the products of x²·y (moving a piece out of the
// square, adding its product back) run in slices of this many limbs with a
// tick each: a piece can hold tens of millions of limbs.
constexpr int32_t kPassSlice = 1 << 18;

// Units of the poll clock a limb of such a pass.
constexpr int64_t kPassLimb = 4;

bool AddIntoPolled(PollClock& clk, Limb* p, int32_t lp, const Limb* t, int32_t lt) {
    for (int32_t from = 0; from < lt; from += kPassSlice) {
        const int32_t n = std::min(kPassSlice, lt - from);
        LimbsAddInto(p + from, lp - from, t + from, n);
        if (clk.Tick(kPassLimb * n)) return false;
    }
    return true;
}

// Squares from which x²·y multiplies in place even where one product would
// cost a little less (8 MB of limbs).
constexpr int32_t kInPlaceFrom = 1 << 22;

Result SquareTimes(PollClock& clk, BigInt* x, const BigInt* y, BigInt* r) {
    const int32_t lx = x->top + 1, ly = y->top + 1;
    LimbBuffer s(2 * int64_t(lx) + ly);
    if (!s.ok()) return Result::kNoMemory;
    Result code = SqrRec(clk, x->limbs, lx, s.get());
    if (!Ok(code)) return code;
    BigFree(x);
    const int32_t ls = LimbsTrim(s.get(), 2 * lx);
    const int32_t total = ls + ly;
    for (int32_t from = 0; from < ly; from += kPassSlice) {
        const int32_t n = std::min(kPassSlice, ly - from);
        ZeroLimbs(s.get() + ls + from, n);
        if (clk.Tick(kPassLimb * n)) return Result::kStopped;
    }
    int32_t piece = PieceLength(ls, ly, ls >= kInPlaceFrom);
    if (piece >= ls && ly >= gFastThresholds.mulNtt) {
        // One product: the square and the result are both alive.
        return MulArrays(clk, s.get(), ls, y->limbs, ly, r);
    }
    if (ly < gFastThresholds.mulNtt) piece = std::max(4096 - ly, ly);
    Scratch<Limb> copy(std::min(piece, ls)), product(int64_t(std::min(piece, ls)) + ly);
    if (!copy || !product) return Result::kNoMemory;
    for (int32_t off = (ls - 1) / piece * piece; Ok(code) && off >= 0; off -= piece) {
        const int32_t q = std::min(piece, ls - off);
        for (int32_t from = 0; from < q; from += kPassSlice) {
            const int32_t n = std::min(kPassSlice, q - from);
            CopyLimbs(copy.get() + from, s.get() + off + from, n);
            ZeroLimbs(s.get() + off + from, n);
            if (clk.Tick(kPassLimb * n)) return Result::kStopped;
        }
        code = q >= ly ? MulRec(clk, copy.get(), q, y->limbs, ly, product.get())
                       : MulRec(clk, y->limbs, ly, copy.get(), q, product.get());
        if (Ok(code) && !AddIntoPolled(clk, s.get() + off, total - off, product.get(),
                                       LimbsTrim(product.get(), q + ly)))
            code = Result::kStopped;
    }
    if (!Ok(code)) return code;
    r->top = LimbsTrimTop(s.get(), total - 1);
    r->negative = 0;
    r->limbs = s.Release();
    return Result::kOk;
}

Result ProductInto(PollClock& clk, const BigInt* x, const BigInt* y, BigInt* r) {
    return MulArrays(clk, x->limbs, x->top + 1, y->limbs, y->top + 1, r);
}
