// Products of binary words: schoolbook rows on 64-bit words (pairs of words
// read as one; binary_rows.cpp, mulx where the processor has it), or the
// 16-bit transform convolution.
// Its coefficients are below min(la, lb)·2^32 <= 2^56, so a word's column
// sum c[2i] + c[2i+1]·2^16 is carried with the high part of c[2i+1] folded
// straight into the next carry: every sum stays below 2^58. The transform
// has a power of two of points, so a product that fills little more than
// half of its transform is cut into pieces of the longer operand that each
// fill one of half the points, when a cost model of the transforms says so;
// operands too long for one transform are halved until they fit. From
// gFastThresholds.binaryNtt64 words the transform over three 64-bit primes
// (ntt64_bits.cpp, 50 bits a point on its vector butterflies) takes the
// product instead when its own power-of-two length costs less by the same
// model; a factor shared by several products (WordsByFactor) is transformed
// once when that pays. The plain 64-bit butterflies were measured slower
// than the 16-bit transform at every length here and are left alone. Shifted sums
// place one number at any bit of another.
//
// Allocation: words and scratch from nothrow new (schoolbook products of up
// to 512 64-bit words in all on the stack); a refused array answers code 3.
#include "bigint/binary_words.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <memory>
#include <new>

#include "bigint/binary_rows.h"
#include "bigint/ntt64.h"
#include "bigint/thresholds.h"

#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "the schoolbook products read pairs of 32-bit words as 64-bit words"
#endif

bool Words::Allocate(int32_t n) {
    Release();
    if (n < 1) n = 1;
    p_ = new (std::nothrow) uint32_t[size_t(n)];
    n_ = p_ ? n : 0;
    return p_ != nullptr;
}

void Words::Release() {
    delete[] p_;
    p_ = nullptr;
    n_ = 0;
}

void Words::Swap(Words& other) {
    std::swap(p_, other.p_);
    std::swap(n_, other.n_);
}

void Words::Trim() { n_ = n_ > 0 ? WordsTrim(p_, n_) : 0; }

int32_t WordsTrim(const uint32_t* a, int32_t n) {
    while (n > 1 && a[n - 1] == 0) --n;
    return n;
}

void WordsAddShifted(uint32_t* a, int32_t n, const uint32_t* b, int32_t m, int64_t shift) {
    const int64_t at = shift / 32;
    const int s = static_cast<int>(shift % 32);
    uint64_t carry = 0;
    uint32_t below = 0;  // the previous word of b, whose top s bits move up
    int64_t k = at;
    int32_t i = 0;
    // Two words a turn as one 64-bit word while b and a have them.
    for (; i + 2 <= m && k + 2 <= n; i += 2, k += 2) {
        uint64_t v, x;
        std::memcpy(&v, b + i, 8);
        std::memcpy(&x, a + k, 8);
        const uint64_t piece = s == 0 ? v : (v << s) | (below >> (32 - s));
        below = static_cast<uint32_t>(v >> 32);
        const unsigned __int128 t = static_cast<unsigned __int128>(x) + piece + carry;
        x = static_cast<uint64_t>(t);
        std::memcpy(a + k, &x, 8);
        carry = static_cast<uint64_t>(t >> 64);
    }
    for (; i <= m && k < n; ++i, ++k) {
        const uint32_t v = i < m ? b[i] : 0;
        const uint32_t piece = s == 0 ? v : (v << s) | (below >> (32 - s));
        below = v;
        const uint64_t t = uint64_t(a[k]) + piece + carry;
        a[k] = static_cast<uint32_t>(t);
        carry = t >> 32;
    }
    for (; carry != 0 && k < n; ++k) carry = ++a[k] == 0;
}

namespace {

using Wide = unsigned __int128;

// Schoolbook on 64-bit words (pairs of words, a zero word added to an odd
// length): one 64 x 64-bit product does the work of four 32-bit ones, and a
// row is one carry chain (binary_rows.h). Polled per row so that a long a
// cannot run on.
Result WordsBasecase(PollClock& clk, const uint32_t* a, int32_t la, const uint32_t* b, int32_t lb,
                     uint32_t* p) {
    const int32_t na = (la + 1) / 2, nb = (lb + 1) / 2;
    // The tree's lower levels make hundreds of short products: theirs on the
    // stack (4 KB).
    const int64_t need = 2 * (int64_t(na) + nb);
    uint64_t local[512];
    std::unique_ptr<uint64_t[]> heap;
    uint64_t* x = local;
    if (need > 512) {
        heap.reset(new (std::nothrow) uint64_t[size_t(need)]);
        if (!heap) return Result::kNoMemory;
        x = heap.get();
    }
    uint64_t* y = x + na;
    uint64_t* r = y + nb;
    // Little-endian: two words are the 64-bit word they make.
    x[na - 1] = 0;
    y[nb - 1] = 0;
    std::memcpy(x, a, 4 * size_t(la));
    std::memcpy(y, b, 4 * size_t(lb));
    std::fill(r, r + na, uint64_t(0));
    const AddRowFn row = BinaryAddRow();
    for (int32_t i = 0; i < nb; ++i) {
        r[i + na] = row(r + i, x, na, y[i]);
        if (clk.Tick(na)) return Result::kStopped;
    }
    // r has 2(na + nb) >= la + lb words; those past la + lb are zero.
    std::memcpy(p, r, 4 * (size_t(la) + size_t(lb)));
    return Result::kOk;
}

// Words as 16-bit halves, without a zero half on top; answers their count.
int32_t Halves(const uint32_t* a, int32_t la, uint16_t* h) {
    for (int32_t i = 0; i < la; ++i) {
        h[2 * i] = static_cast<uint16_t>(a[i]);
        h[2 * i + 1] = static_cast<uint16_t>(a[i] >> 16);
    }
    return (a[la - 1] >> 16) == 0 ? 2 * la - 1 : 2 * la;
}

Result MulTransform(PollClock& clk, const uint32_t* a, int32_t la, const uint32_t* b, int32_t lb,
                    uint32_t* p) {
    const bool square = b == nullptr;
    Scratch<uint16_t> h(2 * int64_t(la) + (square ? 0 : 2 * int64_t(lb)));
    Scratch<uint64_t> c(2 * (int64_t(la) + lb));
    if (!h || !c) return Result::kNoMemory;
    const int32_t ha = Halves(a, la, h.get());
    const int32_t hb = square ? ha : Halves(b, lb, h.get() + ha);
    const Result rc = NttConvolve16(clk, h.get(), ha, square ? nullptr : h.get() + ha, hb, c.get());
    if (!Ok(rc)) return rc;
    const int32_t nc = ha + hb - 1;
    uint64_t carry = 0;
    for (int32_t i = 0; i < la + lb; ++i) {
        const uint64_t lo = 2 * i < nc ? c[2 * i] : 0;
        const uint64_t hi = 2 * i + 1 < nc ? c[2 * i + 1] : 0;
        const uint64_t t = lo + ((hi & 0xFFFF) << 16) + carry;
        p[i] = static_cast<uint32_t>(t);
        carry = (t >> 32) + (hi >> 16);
    }
    assert(carry == 0);
    return Result::kOk;
}

// Work of a product of la >= lb words in butterflies: column sums cost about
// a third of a butterfly per word product; a transform product is three
// transforms of the power of two that holds its halves.
int64_t TransformPoints(int64_t la, int64_t lb) {
    int64_t n = 1;
    while (n < 2 * (la + lb) - 1) n <<= 1;
    return n;
}

// The same for the transform over three 64-bit primes, 50 bits a point with
// the vector butterflies (64 with the plain ones, counted alike): nine
// transforms (six for a square) of n points, each point-stage about 2.4
// times the work of one of the 16-bit transforms' pairs (measured).
int64_t Ntt64Work(int64_t la, int64_t lb, bool square) {
    const int64_t bits = Ntt64VectorButterflies() ? 50 : 64;
    int64_t n = 1;
    while (n < (32 * la + bits - 1) / bits + (32 * lb + bits - 1) / bits - 1) n <<= 1;
    return (square ? 2 : 3) * n * CeilLog2(n) * 12 / 5;
}

// Words of a (la >= lb) for the first piece when a is cut into pieces each
// of which fills a transform of half the points, or 0 when the one product
// is cheaper; *work answers the work of the choice. A product whose halves
// fill little more than half of their transform costs up to twice what its
// length asks: the pieces, though each transforms b again, pay for
// what they use.
int32_t PieceWords(int64_t la, int64_t lb, int64_t* work) {
    if (la < lb) std::swap(la, lb);
    if (lb < gFastThresholds.binaryNtt) {
        *work = la * lb / 3;
        return 0;
    }
    const int64_t n = TransformPoints(la, lb);
    *work = 3 * n * CeilLog2(n);
    const int64_t piece = n / 4 - lb;
    if (piece < 1 || piece < lb / 2 || piece >= la) return 0;
    int64_t rest = 0;
    PieceWords(la - piece, lb, &rest);
    const int64_t cut = 3 * (n / 2) * CeilLog2(n / 2) + rest;
    if (cut >= *work) return 0;
    *work = cut;
    return int32_t(piece);
}

int32_t Ntt64From();

// la >= lb; b null for the square of a.
Result MulOrdered(PollClock& clk, const uint32_t* a, int32_t la, const uint32_t* b, int32_t lb,
                  uint32_t* p) {
    if (lb < gFastThresholds.binaryNtt) return WordsBasecase(clk, a, la, b ? b : a, lb, p);
    int64_t work = 0;
    int32_t h = b != nullptr ? PieceWords(la, lb, &work) : 0;
    const int32_t from64 = Ntt64From();
    if (from64 > 0 && lb >= from64) {
        if (b == nullptr) work = 2 * TransformPoints(la, lb) * CeilLog2(TransformPoints(la, lb));
        if (Ntt64Work(la, lb, b == nullptr) < work) return Ntt64ConvolveBits(clk, a, la, b, lb, p);
    }
    if (h == 0 && 2 * (int64_t(la) + lb) <= NttMaxLength())
        return MulTransform(clk, a, la, b, lb, p);
    // a = a1·2^(32h) + a0: p = a0·b, then a1·b added in at word h.
    if (h == 0) h = la / 2;
    if (b == nullptr) b = a;
    Scratch<uint32_t> t(int64_t(la - h) + lb);
    if (!t) return Result::kNoMemory;
    Result rc = h >= lb ? MulOrdered(clk, a, h, b, lb, p) : MulOrdered(clk, b, lb, a, h, p);
    if (Ok(rc))
        rc = la - h >= lb ? MulOrdered(clk, a + h, la - h, b, lb, t.get())
                          : MulOrdered(clk, b, lb, a + h, la - h, t.get());
    if (!Ok(rc)) return rc;
    std::fill(p + h + lb, p + la + lb, 0u);
    WordsAddShifted(p, la + lb, t.get(), la - h + lb, 32 * int64_t(h));
    return Result::kOk;
}

// Words of the shorter factor from which the 64-bit transform may take a
// product, 0 for never.
int32_t Ntt64From() {
    return Ntt64VectorButterflies() ? gFastThresholds.binaryNtt64
                                    : gFastThresholds.binaryNtt64Plain;
}

}  // namespace

int32_t WordsRowsBelow() {
    const int32_t from64 = Ntt64From();
    return from64 > 0 ? std::min(from64, gFastThresholds.binaryNtt) : gFastThresholds.binaryNtt;
}

Result WordsByFactor::Prepare(PollClock& clk, const uint32_t* b, int32_t lb, int32_t maxLa,
                              int64_t uses) {
    b_ = b;
    lb_ = lb;
    maxLa_ = maxLa;
    kept_ = false;
    const int32_t from64 = Ntt64From();
    if (from64 <= 0 || std::min(lb, maxLa) < from64 || uses < 2) return Result::kOk;
    int64_t work = 0;
    PieceWords(maxLa, lb, &work);
    work = std::min(work, Ntt64Work(maxLa, lb, false));
    // Kept: one transform of b, then six of the nine a product.
    const int64_t keptWork = Ntt64Work(maxLa, lb, false) * (2 * uses + 1) / 3;
    if (keptWork >= uses * work) return Result::kOk;
    const Result rc = factor_.Prepare(clk, b, lb, maxLa);
    kept_ = Ok(rc);
    return rc;
}

Result WordsByFactor::Mul(PollClock& clk, const uint32_t* a, int32_t la, uint32_t* p) const {
    // A kept product costs six of the nine transforms of maxLa words by b;
    // a shorter a may take a shorter product of its own.
    if (kept_ && la <= maxLa_ && Ntt64Work(maxLa_, lb_, false) * 2 < 3 * Ntt64Work(la, lb_, false))
        return factor_.Mul(clk, a, la, p);
    return WordsMul(clk, a, la, b_, lb_, p);
}

Result WordsByFactor::Square(PollClock& clk, uint32_t* p) const {
    // Kept: three of the nine transforms of maxLa words by b.
    if (kept_ && maxLa_ >= lb_ && Ntt64Work(maxLa_, lb_, false) < 3 * Ntt64Work(lb_, lb_, true))
        return factor_.Square(clk, p);
    return WordsMul(clk, b_, lb_, nullptr, lb_, p);
}

Result WordsMul(PollClock& clk, const uint32_t* a, int32_t la, const uint32_t* b, int32_t lb,
                uint32_t* p) {
    if (b == nullptr || (b == a && lb == la)) return MulOrdered(clk, a, la, nullptr, la, p);
    if (la < lb) {
        std::swap(a, b);
        std::swap(la, lb);
    }
    return MulOrdered(clk, a, la, b, lb, p);
}
