// Products of binary 32-bit words by the 64-bit transform (ntt64.cpp), for
// base conversion: Ntt64ConvolveBits, and Ntt64Factor, a factor whose three
// transforms (3n words, 1/n folded in) are kept for products by several
// others. The words are cut into pieces of 50 bits (vector primes) or 64
// (plain ones), one a point; the first prime's residues wait packed in the
// product's own words (FirstBits).
#include "bigint/ntt64.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <new>

#include "bigint/ntt64_prime.h"
#include "bigint/thresholds.h"

using namespace ntt64;

namespace {

// Binary products: bits [b·i, b·(i + 1)) of a word array make point i, b =
// kBits[set]. Both operands' pieces are below 2^b, so a coefficient of the
// convolution is below min(ca, cb)·2^(2b) for ca, cb points, and n <= 2^32
// points keep it below P: 2^32·2^128 = 2^160 < 2^185.99 with b = 64 on the
// primes below 2^62, 2^32·2^100 = 2^132 < 2^149.99 with b = 50 on those below
// 2^50. A piece must be below 2p when loaded: 2^50 < 2p for the vector primes
// (p > 2^49.99); below 2^62 a 64-bit x is x − (x >> 62)·p < 2^62 + 3·2^37.
constexpr int kBits[2] = {64, 50};

// The low b bits (b <= 64).
constexpr uint64_t Mask(int b) { return b == 64 ? ~uint64_t(0) : (uint64_t(1) << b) - 1; }

// Bits bit … bit + 63 of the words a[0..la) (bit below 32·la), masked; zeros
// past the end.
inline uint64_t BitsAt(const uint32_t* a, int64_t la, int64_t bit, uint64_t mask) {
    const int64_t w = bit >> 5;
    Wide x = a[w];
    if (w + 1 < la) x |= Wide(a[w + 1]) << 32;
    if (w + 2 < la) x |= Wide(a[w + 2]) << 64;
    return static_cast<uint64_t>(x >> (bit & 31)) & mask;
}

// Points from … to − 1 of the words a[0..la) cut b bits a point.
bool LoadBits(PollClock& clk, const Field& f, bool vec, const uint32_t* a, int64_t la, int b,
              uint64_t* out, int64_t from, int64_t to) {
    const uint64_t mask = Mask(b);
    // Up to 56 bits a point: eight bytes from the one holding its first bit,
    // while they lie within the words.
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(a);
    if (b == 50) {
        // Four points (25 bytes) at a time, from bytes 0, 6, 12 and 18 of
        // their group; polled at the same points as one at a time.
        for (; from < to && (from & 3) != 0 && (from * b) / 8 + 8 <= 4 * la; ++from) {
            uint64_t x;
            std::memcpy(&x, bytes + (from * b) / 8, 8);
            out[from] = (x >> ((from * b) & 7)) & mask;
            if ((from & 4095) == 4095 && clk.Tick(4096 * kLoadPoint / 4)) return false;
        }
        for (; from + 4 <= to && (from / 4) * 25 + 26 <= 4 * la; from += 4) {
            const unsigned char* g = bytes + (from / 4) * 25;
            uint64_t x[4];
            for (int j = 0; j < 4; ++j) std::memcpy(&x[j], g + 6 * j, 8);
            for (int j = 0; j < 4; ++j) out[from + j] = (x[j] >> (2 * j)) & mask;
            if ((from & 4095) == 4092 && clk.Tick(4096 * kLoadPoint / 4)) return false;
        }
    }
    if (b <= 56) {
        for (; from < to && (from * b) / 8 + 8 <= 4 * la; ++from) {
            uint64_t x;
            std::memcpy(&x, bytes + (from * b) / 8, 8);
            out[from] = (x >> ((from * b) & 7)) & mask;
            if ((from & 4095) == 4095 && clk.Tick(4096 * kLoadPoint / 4)) return false;
        }
    }
    for (int64_t i = from; i < to; ++i) {
        if (((i * b) >> 5) < la) {
            const uint64_t v = BitsAt(a, la, i * b, mask);
            out[i] = vec ? v : v - (v >> 62) * f.p;
        } else {
            out[i] = 0;
        }
        if ((i & 4095) == 4095 && clk.Tick(4096 * kLoadPoint / 4)) return false;
    }
    return true;
}

// A group of residues packed B bits each into whole words and back: 32 of
// 50 bits fill 25 words, one of 64 one.
template <int B>
constexpr int kGroup = B == 64 ? 1 : 32;
template <int B>
void PackGroup(const Field& f, const uint64_t* x, uint64_t* w) {
    static_assert(kGroup<B> * B % 64 == 0, "whole words");
    std::fill(w, w + kGroup<B> * B / 64, uint64_t(0));
#pragma GCC unroll 32
    for (int j = 0; j < kGroup<B>; ++j) {
        const uint64_t v = f.Reduce(x[j]);
        const int at = B * j;
        w[at / 64] |= v << (at % 64);
        if (at % 64 + B > 64) w[at / 64 + 1] |= v >> (64 - at % 64);
    }
}
template <int B>
void UnpackGroup(const uint64_t* w, uint64_t* out) {
    constexpr uint64_t kMask = Mask(B);
#pragma GCC unroll 32
    for (int j = 0; j < kGroup<B>; ++j) {
        const int at = B * j;
        uint64_t v = w[at / 64] >> (at % 64);
        if (at % 64 + B > 64) v |= w[at / 64 + 1] << (64 - at % 64);
        out[j] = v & kMask;
    }
}

// The first prime's residues of a binary product: in an array of their own,
// or packed b bits each into the product's own words p (the first inP; the
// rest in `rest`), whose bits the join writes only after reading them: with
// b bits a point the product has room for all but the last one or two.
struct FirstBits {
    const uint64_t* words = nullptr;  // the array, or null when packed
    const uint32_t* p = nullptr;
    int64_t len = 0;  // p's words
    int b = 64;
    int64_t inP = 0;
    const uint64_t* rest = nullptr;

    int group() const { return b == 64 ? kGroup<64> : kGroup<50>; }
    int64_t groupWords() const { return group() * b / 64; }
    // Groups packed whole into p; the residues after them up to inP go
    // bit by bit.
    int64_t groups() const { return std::min(inP / group(), len / (2 * groupWords())); }

    // out[0..to − from) := residues from … to − 1.
    void Get(int64_t from, int64_t to, uint64_t* out) const {
        if (words != nullptr) {
            std::copy(words + from, words + to, out);
            return;
        }
        // Whole groups (from is a multiple of theirs), then the last few
        // bit by bit.
        const int group = this->group();
        const int64_t groupWords = this->groupWords();
        int64_t i = from;
        for (; i + group <= std::min(to, groups() * group); i += group) {
            uint64_t w[25];
            std::memcpy(w, p + 2 * (i / group) * groupWords, sizeof(uint64_t) * size_t(groupWords));
            if (b == 64)
                UnpackGroup<64>(w, out + (i - from));
            else
                UnpackGroup<50>(w, out + (i - from));
        }
        for (; i < std::min(to, inP); ++i) out[i - from] = BitsAt(p, len, i * b, Mask(b));
        for (; i < to; ++i) out[i - from] = rest[i - inP];
    }
};

// Packs x[0..count) (below 2p) reduced into `to`'s places: the first to.inP
// into p, b bits each (whole groups on both threads when parallel), the
// others into rest.
Result PackToP(PollClock& clk, bool parallel, const Field& f, const uint64_t* x, int64_t count,
               uint32_t* p, const FirstBits& to, uint64_t* rest) {
    const int b = to.b;
    const int group = to.group();
    const int64_t groupWords = to.groupWords();
    const int64_t groups = to.groups();
    const Result rc = Halves(clk, parallel, groups, [&](PollClock& c, int64_t from, int64_t end) {
        for (int64_t g = from; g < end; ++g) {
            uint64_t w[25];
            if (b == 64)
                PackGroup<64>(f, x + g * group, w);
            else
                PackGroup<50>(f, x + g * group, w);
            std::memcpy(p + 2 * g * groupWords, w, sizeof(uint64_t) * size_t(groupWords));
            if ((g & 1023) == 1023 && c.Tick(kLoadPoint / 4 * 1024 * group)) return false;
        }
        return true;
    });
    if (!Ok(rc)) return rc;
    Wide acc = 0;
    int have = 0;
    for (int64_t i = groups * group, w = 2 * groups * groupWords; i < to.inP; ++i) {
        acc |= Wide(f.Reduce(x[i])) << have;
        for (have += b; have >= 32; have -= 32, acc >>= 32) p[w++] = static_cast<uint32_t>(acc);
        if (i + 1 == to.inP && have > 0) p[w] = static_cast<uint32_t>(acc);
    }
    for (int64_t i = to.inP; i < count; ++i) rest[i - to.inP] = f.Reduce(x[i]);
    return Result::kOk;
}

// Garner's join of the residues into the bits of p[0..len): x = v1 + p1·(v2 +
// p2·v3) below P < 2^186 in three words. With b = 64 the running sum of the
// coefficients, each b bits above the last, stays below 2^187 and gives up b
// bits each time; on the vector primes (b = 50, P < 2^150) each x is cut
// into three pieces at 50 and 100 bits (each below 2^52) added into the sums
// of the coefficient positions they fall on, so the sum carried is one word
// (below 2^54). The first prime's residues come from r0, the others' from
// r[1] and r[2].
bool JoinBits(PollClock& clk, const PrimeData* primes, const FirstBits& r0, uint64_t* const* r,
              int64_t count, int b, uint32_t* p, int64_t len) {
    const Field& f1 = primes[0].f;
    const Field& f2 = primes[1].f;
    const Field& f3 = primes[2].f;
    const uint64_t p1 = f1.p, p2 = f2.p, p3 = f3.p;
    const Garner g(primes);
    const uint64_t inv1R = g.inv1R, p1m3R = g.p1m3R, inv12R = g.inv12R;
    uint64_t acc[3] = {0, 0, 0};
    // The settled bits go to p in order through a 64-bit buffer (out, have
    // bits of it), stored a whole word at a time: no store is read back.
    uint64_t out = 0;
    int have = 0;
    int64_t word = 0;  // 64-bit words stored
    auto store = [&](uint64_t x) {
        const int64_t at = 2 * word++;
        if (at + 1 < len) {
            std::memcpy(p + at, &x, 8);
        } else {
            if (at < len) {
                p[at] = static_cast<uint32_t>(x);
                x >>= 32;
            }
            assert(x == 0);
        }
    };
    auto put = [&](uint64_t v, int bits) {  // v below 2^bits
        out |= v << have;
        if (have + bits >= 64) {
            store(out);
            out = have == 0 ? 0 : v >> (64 - have);
            have += bits - 64;
        } else {
            have += bits;
        }
    };
    const uint64_t mask = Mask(b);
    const bool vec = primes[0].vec;
    const Ntt64Vec c[3] = {primes[0].v, primes[1].v, primes[2].v};
    const uint64_t* k = vec ? Ntt64VecGarnerConstants() : nullptr;
    const Wide p12 = Wide(p1) * p2;
    const uint64_t k4[3] = {4 * p1, 4 * (static_cast<uint64_t>(p12) & ((uint64_t(1) << 50) - 1)),
                            4 * static_cast<uint64_t>(p12 >> 50)};
    uint64_t first[1024];  // the first prime's residues of a chunk
    for (int64_t from = 0; from < count; from += 1024) {
        const int64_t to = std::min(count, from + 1024);
        r0.Get(from, to, first);
        if (vec) {
            Ntt64VecGarner(c, k, first, r[1] + from, r[2] + from, to - from);
            Ntt64VecPieces(k4, first, r[1] + from, r[2] + from, to - from);
            // The pieces are due at coefficients i, i + 1 and i + 2. acc: the
            // carry, the pieces due at i, those due at i + 1 so far. 32
            // coefficients fill 25 words: whole groups straight into p.
            int64_t i = from;
            for (; i + 32 <= to && have == 0 && 2 * (word + 25) <= len; i += 32) {
                uint64_t w[26] = {};
#pragma GCC unroll 32
                for (int j = 0; j < 32; ++j) {
                    const uint64_t s = acc[0] + first[i - from + j] + acc[1];
                    const uint64_t v = s & mask;
                    acc[0] = s >> 50;
                    acc[1] = acc[2] + r[1][i + j];
                    acc[2] = r[2][i + j];
                    const int at = 50 * j;
                    w[at / 64] |= v << (at % 64);
                    if (at % 64 > 14) w[at / 64 + 1] |= v >> (64 - at % 64);
                }
                std::memcpy(p + 2 * word, w, 25 * sizeof(uint64_t));
                word += 25;
            }
            for (; i < to; ++i) {
                const uint64_t s = acc[0] + first[i - from] + acc[1];
                put(s & mask, b);
                acc[0] = s >> b;
                acc[1] = acc[2] + r[1][i];
                acc[2] = r[2][i];
            }
            if (clk.Tick((to - from) * kJoinPoint)) return false;
            continue;
        }
        for (int64_t i = from; i < to; ++i) {
            const uint64_t v1 = f1.Reduce(first[i - from]);
            const uint64_t v1m2 = v1 >= p2 ? v1 - p2 : v1;
            const uint64_t v2 = f2.Reduce(f2.Mul(f2.Reduce(r[1][i]) - v1m2 + p2, inv1R));
            uint64_t t = (v1 >= p3 ? v1 - p3 : v1) + f3.Mul(v2, p1m3R);
            t = t >= 2 * p3 ? t - 2 * p3 : f3.Reduce(t);
            const uint64_t v3 = f3.Reduce(f3.Mul(f3.Reduce(r[2][i]) - t + p3, inv12R));
            const Wide q = Wide(v3) * p2 + v2;  // below 2^124
            const Wide lo = Wide(p1) * static_cast<uint64_t>(q) + v1;
            const Wide hi = Wide(p1) * static_cast<uint64_t>(q >> 64) + (lo >> 64);
            Wide sum = Wide(acc[0]) + static_cast<uint64_t>(lo);
            acc[0] = static_cast<uint64_t>(sum);
            sum = Wide(acc[1]) + static_cast<uint64_t>(hi) + (sum >> 64);
            acc[1] = static_cast<uint64_t>(sum);
            acc[2] += static_cast<uint64_t>(hi >> 64) + static_cast<uint64_t>(sum >> 64);
            put(acc[0], 64);
            acc[0] = acc[1];
            acc[1] = acc[2];
            acc[2] = 0;
        }
        if (clk.Tick((to - from) * kJoinPoint)) return false;
    }
    if (b < 64) {
        const Wide rest = (Wide(acc[2]) << b) + acc[0] + acc[1];
        acc[0] = static_cast<uint64_t>(rest);
        acc[1] = static_cast<uint64_t>(rest >> 64);
        acc[2] = 0;
    }
    for (int j = 0; j < 3; ++j) put(acc[j], 64);
    if (have > 0) store(out);
    if (2 * word < len) std::fill(p + 2 * word, p + len, 0u);
    return true;
}

// The set of primes, bits a point and points for a product of la and lb
// words: the vector primes from kVecFrom points.
struct BitsPlan {
    int set = 0;
    int bits = 64;
    int64_t count = 0;  // coefficients of the product
    int64_t n = 0;
    bool parallel = false;
};

BitsPlan PlanBits(int64_t la, int64_t lb) {
    BitsPlan q;
    for (q.set = Ntt64VectorButterflies() ? 1 : 0;; q.set = 0) {
        q.bits = kBits[q.set];
        q.count = (32 * la + q.bits - 1) / q.bits + (32 * lb + q.bits - 1) / q.bits - 1;
        q.n = int64_t(1) << CeilLog2(q.count);
        if (q.set == 0 || q.n >= kVecFrom) break;
    }
    assert(q.n <= (int64_t(1) << kMaxLog));
    const int32_t parallelFrom = gFastThresholds.binaryNtt64Parallel;
    q.parallel = parallelFrom > 0 && q.n >= parallelFrom;
    return q;
}

// Loads the pieces of words a[0..la) for plan q and prime d.
struct BitsLoad {
    const BitsPlan& q;
    const PrimeData& d;
    const uint32_t* a;
    int32_t la;
    bool operator()(PollClock& c, uint64_t* out, int64_t from, int64_t to) const {
        return LoadBits(c, d.f, d.vec, a, la, q.bits, out, from, to);
    }
};

// a·b, or a·(the kept transform of b) when kept is not null (its plan q, of
// q.n points whatever la is). Memory: the second prime's residues and one
// prime's work (ProductShape's, or q.n words with a kept factor); the first
// prime's residues wait in p (FirstBits).
Result RunBits(PollClock& clk, const BitsPlan& q, const uint32_t* a, int32_t la, const uint32_t* b,
               int32_t lb, const uint64_t* kept, uint32_t* p) {
    const int64_t len = int64_t(la) + lb;
    ShorterSecond(a, la, b, lb);
    Result rc = EnsureTables(q.set);
    if (!Ok(rc)) return rc;
    const PrimeData* primes = Primes(q.set);
    if (clk.Tick(q.n)) return Result::kStopped;
    const auto pieces = [&](int64_t words) { return (32 * words + q.bits - 1) / q.bits; };
    const bool square = b == nullptr && kept == nullptr;
    const ProductShape shape(pieces(la), pieces(square ? la : lb), square, kept == nullptr);
    const int64_t work = kept ? q.n : shape.work;
    FirstBits first;
    first.p = p;
    first.len = len;
    first.b = q.bits;
    first.inP = std::min(q.count, 32 * len / q.bits);
    // Prime i works at r[i]: the second's residues keep only their count
    // words; the first's beyond p go last.
    Scratch<uint64_t> buf(q.count + work + (q.count - first.inP));
    if (!buf) return Result::kNoMemory;
    uint64_t* r[3] = {buf.get(), buf.get(), buf.get() + q.count};
    for (int i = 0; i < 3 && Ok(rc); ++i) {
        const PrimeData& d = primes[i];
        const BitsLoad loadA{q, d, a, la}, loadB{q, d, b, lb};
        const Loader fromB(loadB);
        rc = kept ? CyclicProduct(clk, q.parallel, d, q.n, q.n, Loader(loadA), nullptr, 0,
                                  kept + i * q.n, r[i], nullptr)
                  : LinearProduct(clk, q.parallel, d, shape, Loader(loadA),
                                  b != nullptr ? &fromB : nullptr, r[i]);
        if (i == 0 && Ok(rc)) {
            uint64_t* rest = buf.get() + q.count + work;
            rc = PackToP(clk, q.parallel, d.f, r[0], q.count, p, first, rest);
            first.rest = rest;
        }
    }
    if (!Ok(rc)) return rc;
    return JoinBits(clk, primes, first, r, q.count, q.bits, p, len) ? Result::kOk
                                                                    : Result::kStopped;
}

}  // namespace

Result Ntt64ConvolveBits(PollClock& clk, const uint32_t* a, int32_t la, const uint32_t* b,
                         int32_t lb, uint32_t* p) {
    return RunBits(clk, PlanBits(la, b ? lb : la), a, la, b, lb, nullptr, p);
}

Ntt64Factor::~Ntt64Factor() { delete[] points_; }

Result Ntt64Factor::Prepare(PollClock& clk, const uint32_t* b, int32_t lb, int32_t maxLa) {
    delete[] points_;
    points_ = nullptr;
    const BitsPlan q = PlanBits(maxLa, lb);
    Result rc = EnsureTables(q.set);
    if (!Ok(rc)) return rc;
    points_ = new (std::nothrow) uint64_t[size_t(3 * q.n)];
    if (points_ == nullptr) return Result::kNoMemory;
    for (int i = 0; i < 3 && Ok(rc); ++i) {
        const PrimeData& d = Primes(q.set)[i];
        uint64_t* x = points_ + i * q.n;
        const BitsLoad load{q, d, b, lb};
        rc = Transform(clk, q.parallel, d, q.n, q.n, Loader(load), x);
        // The scale goes with the kept points: one product fewer a point.
        if (d.vec) {
            const uint64_t scale = Scale52(d, q.n);
            if (Ok(rc)) Ntt64VecScale(d.v, x, scale, q.n);
        } else {
            const uint64_t scale = Scale(d.f, q.n);
            for (int64_t e = 0; Ok(rc) && e < q.n; ++e) x[e] = d.f.Mul(x[e], scale);
        }
    }
    if (!Ok(rc)) {
        delete[] points_;
        points_ = nullptr;
        return rc;
    }
    lb_ = lb;
    maxLa_ = maxLa;
    return Result::kOk;
}

Result Ntt64Factor::Mul(PollClock& clk, const uint32_t* a, int32_t la, uint32_t* p) const {
    assert(points_ != nullptr && la <= maxLa_);
    return RunBits(clk, PlanBits(maxLa_, lb_), a, la, nullptr, lb_, points_, p);
}

Result Ntt64Factor::Square(PollClock& clk, uint32_t* p) const {
    assert(points_ != nullptr);
    BitsPlan q = PlanBits(maxLa_, lb_);
    // maxLa >= lb: the square's coefficients fit the kept n points.
    q.count = 2 * ((32 * int64_t(lb_) + q.bits - 1) / q.bits) - 1;
    assert(q.count <= q.n);
    const PrimeData* primes = Primes(q.set);
    if (clk.Tick(q.n)) return Result::kStopped;
    Scratch<uint64_t> buf(2 * q.count + q.n);
    if (!buf) return Result::kNoMemory;
    uint64_t* r[3] = {buf.get(), buf.get() + q.count, buf.get() + 2 * q.count};
    Result rc = Result::kOk;
    for (int i = 0; i < 3 && Ok(rc); ++i) {
        const PrimeData& d = primes[i];
        std::memcpy(r[i], points_ + i * q.n, size_t(q.n) * sizeof(uint64_t));
        // The kept points carry R/n (R = 2^52 on the vector primes, 2^64 on
        // the others); the product of two takes one R, the product by n
        // another: 1/n as in a product.
        rc = Pointwise(clk, q.parallel, d, r[i], r[i], q.n, uint64_t(q.n));
        if (Ok(rc)) rc = InverseTop(clk, q.parallel, d, r[i], q.n);
    }
    if (!Ok(rc)) return rc;
    FirstBits first;
    first.words = r[0];
    return JoinBits(clk, primes, first, r, q.count, q.bits, p, 2 * int64_t(lb_)) ? Result::kOk
                                                                                 : Result::kStopped;
}
