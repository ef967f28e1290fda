// Product by number-theoretic transforms over three primes of up to 62 bits,
// joined by Garner's form of the Chinese remainder theorem.
//
// Primes p = c·2^32 + 1, so every power-of-two length up to 2^32 has its roots
// of unity; two sets of three. Several limbs make one coefficient (below
// 2·10^(4k), the top limb up to 20000). A coefficient of the product is a sum
// of at most n products, of which at most three involve a top limb, so it
// stays below (n + 5)·10^(8k), which must stay below P, the primes' product.
//   Plain 64-bit butterflies, the three largest c below 2^30 (p < 2^62,
//   P = 2^185.99): k = 6 up to 2^26 points ((2^26 + 5)·10^48 = 2^185.45),
//   k = 4 beyond (2^138.3 at 2^32 points).
//   Vector butterflies (ntt64_ifma.cpp, AVX-512 IFMA, chosen at run time from
//   256 points), the three largest c below 2^18 (p < 2^50, P = 2^149.99):
//   k = 4, (n + 5)·10^32 < P up to n = 2^43.
// Lengths are not limited otherwise: n <= 2^32 for every la + lb below 2^31.
// AVX2 alone has no 64-bit multiply-high and does not pay.
//
// Points are kept lazily in [0, 2p); Montgomery products with R = 2^64 take
// x·y < p·2^64, so factors below 4p and p (p < 2^62). Forward transform by
// decimation in frequency, the inverse by decimation in time with the inverse
// roots; the factor 1/n goes with the pointwise product. Sub-transforms of at
// most kCacheBlock points run all their stages from a kept table of roots;
// longer ones do one stage over the array (its twiddles made as it goes, one
// extra product a butterfly, by eight independent chains) and recurse into the
// halves.
//
// Two threads: from gFastThresholds.ntt64Parallel points, each transform, the
// loads, the pointwise products and the join are cut in two halves, the second
// on a helper thread. Only the calling thread polls; it waits for the helper
// polling every millisecond and, when told to stop, cancels it and waits for
// it (a few thousand butterflies).
//
// Binary products (Ntt64ConvolveBits, Ntt64Factor) cut 32-bit words into
// pieces of 50 bits (vector primes) or 64 (plain ones), one a point; their
// bound and join are given where they are made below. A kept factor holds
// its three transforms (3n words) with 1/n folded in. The vector primes'
// tables and whole transforms are also lent to the piece-wise interface of
// ntt64_plan.cpp (Ntt64VecPrimes, Ntt64VecTransform).
//
// Allocation: one buffer, for count coefficients of the product the
// residues of the primes kept for the join and one prime's work
// (ProductShape: a product of at most 3n/4 points is split into a cyclic
// one of n/2 points and a short one; beyond kCacheBlock points the shorter
// factor's transform is made a half at a time, ForwardByHalves). With four
// limbs a point, and in binary products, the first prime's residues wait in
// the product's own words: count + work words, at most three times the
// operands' points. Run and RunBits say more. The root tables are kept
// between products. All from nothrow new, code 3 when refused; a helper
// thread that cannot be started leaves both halves to the calling thread.
#include "bigint/ntt64.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

#include <algorithm>
#include <array>
#include <cassert>
#include <cstring>
#include <new>

#include "bigint/ntt64_kernels.h"
#include "bigint/thresholds.h"
#include "bigint/two_threads.h"

namespace {

using Wide = unsigned __int128;

// Arithmetic modulo one prime, Montgomery form with R = 2^64.
struct Field {
    uint64_t p = 0;
    uint64_t pinv = 0;  // p^−1 mod 2^64
    uint64_t r2 = 0;    // R^2 mod p

    Field() = default;
    explicit Field(uint64_t prime) : p(prime) {
        uint64_t inv = prime;  // three correct low bits; each step doubles them
        for (int i = 0; i < 5; ++i) inv *= 2 - prime * inv;
        pinv = inv;
        const uint64_t r = static_cast<uint64_t>((Wide(1) << 64) % prime);
        r2 = static_cast<uint64_t>(Wide(r) * r % prime);
    }
    // x·y·R^−1 mod p in [0, 2p), for x·y < p·2^64: t − m·p is a multiple of
    // 2^64 in (−p·2^64, p·2^64).
    uint64_t Mul(uint64_t x, uint64_t y) const {
        const Wide t = Wide(x) * y;
        const uint64_t m = static_cast<uint64_t>(t) * pinv;
        const uint64_t h = static_cast<uint64_t>((Wide(m) * p) >> 64);
        return static_cast<uint64_t>(t >> 64) - h + p;
    }
    uint64_t Reduce(uint64_t x) const { return x >= p ? x - p : x; }  // x < 2p
    uint64_t ToMont(uint64_t x) const { return Reduce(Mul(x, r2)); }  // x < 4p
    uint64_t One() const { return ToMont(1); }
    // x^e in Montgomery form, x in Montgomery form below p.
    uint64_t Pow(uint64_t x, uint64_t e) const {
        uint64_t r = One();
        for (; e > 0; e >>= 1) {
            if (e & 1) r = Reduce(Mul(r, x));
            x = Reduce(Mul(x, x));
        }
        return r;
    }
    uint64_t FromMont(uint64_t x) const { return Reduce(Mul(x, 1)); }
};

// Two sets of primes c·2^32 + 1, each with a generator: below 2^62 for the
// plain 64-bit butterflies, below 2^50 for the vector ones.
constexpr uint64_t kPrime[2][3] = {{0x3fffffee00000001u, 0x3fffffb400000001u, 0x3fffffa000000001u},
                                   {0x3fff300000001u, 0x3ffed00000001u, 0x3ffeb00000001u}};
constexpr uint64_t kGenerator[2][3] = {{3, 19, 3}, {5, 7, 3}};
constexpr int kMaxLog = 32;
// Points from which the vector butterflies take a product (their tiles are
// 64 points).
constexpr int64_t kVecFrom = 256;

// Sub-transforms of at most this many points (128 KB) stay in the core's
// cache for all their stages, with twiddles from the tables below.
constexpr int64_t kCacheBlock = int64_t(1) << 14;
constexpr int64_t kRow = kCacheBlock / 2;

// Work units (poll_clock.h) of the steps, each unit about half a nanosecond
// on the machine the thresholds come from, so that the budget between polls
// is a millisecond or two whatever the step.
constexpr int64_t kButterfly = 5;     // plain 64-bit
constexpr int64_t kVecButterfly = 1;  // one of eight in a vector, in cache
constexpr int64_t kVecStreamed = 16;  // the same from and to memory, bandwidth-bound
constexpr int64_t kLoadPoint = 64;    // packing limbs into fresh pages (their faults)
constexpr int64_t kJoinPoint = 80;    // Garner's join and the carries
constexpr int64_t kPointwise = 8;
constexpr int64_t kTwistPoint = 10;  // a point times w^j and the next power

inline uint64_t Fold(uint64_t x, uint64_t twoP) { return x >= twoP ? x - twoP : x; }

struct PrimeData {
    Field f;
    // Of order 2^l and their inverses, Montgomery form (R = 2^52 for the
    // vector butterflies).
    uint64_t root[kMaxLog + 1];
    uint64_t rootInv[kMaxLog + 1];
    // The same roots in the form of Field (R = 2^64) for both sets, for the
    // first stage folded into a load (ForwardByHalves).
    uint64_t twist[kMaxLog + 1];
    // row[m + j] = w_2m^j (inverse: w_2m^−j), m = 1, 2, 4 … kRow.
    uint64_t* row = nullptr;
    uint64_t* rowInv = nullptr;
    bool vec = false;
    Ntt64Vec v = {};
};

PrimeData gPrime[2][3];
bool gReady[2] = {false, false};
bool gPortable = false;

// x (Montgomery form, R = 2^64) in the vector butterflies' form, R = 2^52.
uint64_t To52(const Field& f, uint64_t x) {
    return static_cast<uint64_t>((Wide(f.FromMont(x)) << 52) % f.p);
}

// The vector form's powers are stepped in that form (R = 2^52), not
// converted one by one: a 128-bit remainder per entry made the tables cost
// a third of a millisecond, a tenth of a short base conversion.
// Eight chains of steps w^8 run side by side, not one of steps w. Entries
// reduced below p. The rows of lower m: every other entry of the one above.
void FillRow(const Field& f, uint64_t w, bool vec, uint64_t* t) {
    const uint64_t pinv52 = f.pinv & ((uint64_t(1) << 52) - 1);
    const auto mul = [&](uint64_t x, uint64_t y) {
        return f.Reduce(vec ? Mul52(x, y, f.p, pinv52) : f.Mul(x, y));
    };
    const uint64_t step = vec ? To52(f, w) : w;
    t[kRow] = vec ? To52(f, f.One()) : f.One();
    for (int64_t j = 1; j < 8; ++j) t[kRow + j] = mul(t[kRow + j - 1], step);
    const uint64_t step8 = mul(t[kRow + 7], step);
    for (int64_t j = 8; j < kRow; ++j) t[kRow + j] = mul(t[kRow + j - 8], step8);
    for (int64_t m = kRow / 2; m >= 1; m >>= 1)
        for (int64_t j = 0; j < m; ++j) t[m + j] = t[2 * m + 2 * j];
}

// The inverse row from the row of w, of order 2·kRow: w^−j = −w^(kRow − j).
void MirrorRow(uint64_t p, const uint64_t* row, uint64_t* t) {
    t[kRow] = row[kRow];
    for (int64_t j = 1; j < kRow; ++j) t[kRow + j] = p - row[2 * kRow - j];
    for (int64_t m = kRow / 2; m >= 1; m >>= 1)
        for (int64_t j = 0; j < m; ++j) t[m + j] = t[2 * m + 2 * j];
}

// The kept tables of a set, made once on the calling thread before any
// helper runs.
Result EnsureTables(int set) {
    if (gReady[set]) return Result::kOk;
    for (PrimeData& d : gPrime[set]) {
        if (d.row == nullptr) d.row = new (std::nothrow) uint64_t[2 * kRow];
        if (d.rowInv == nullptr) d.rowInv = new (std::nothrow) uint64_t[2 * kRow];
        if (d.row == nullptr || d.rowInv == nullptr) return Result::kNoMemory;
    }
    for (int i = 0; i < 3; ++i) {
        PrimeData& d = gPrime[set][i];
        const uint64_t p = kPrime[set][i];
        d.f = Field(p);
        d.vec = set == 1;
        const uint64_t g = d.f.ToMont(kGenerator[set][i]);
        uint64_t w = d.f.Pow(g, (p - 1) >> kMaxLog);
        uint64_t wi = d.f.Pow(w, p - 2);
        for (int l = kMaxLog; l >= 0; --l) {
            d.root[l] = d.vec ? To52(d.f, w) : w;
            d.rootInv[l] = d.vec ? To52(d.f, wi) : wi;
            d.twist[l] = w;
            if (l == CeilLog2(2 * kRow)) {
                FillRow(d.f, w, d.vec, d.row);
                MirrorRow(p, d.row, d.rowInv);
            }
            w = d.f.Reduce(d.f.Mul(w, w));
            wi = d.f.Reduce(d.f.Mul(wi, wi));
        }
        uint64_t inv = p;
        for (int k = 0; k < 5; ++k) inv *= 2 - p * inv;
        d.v = Ntt64Vec{p, inv & ((uint64_t(1) << 52) - 1), d.row, d.rowInv};
    }
    gReady[set] = true;
    return Result::kOk;
}

// w^e for w below p in the vector butterflies' form, below p.
uint64_t Pow52(const PrimeData& d, uint64_t w, uint64_t e) {
    const uint64_t p = d.v.p;
    uint64_t r = static_cast<uint64_t>((Wide(1) << 52) % p);
    for (; e > 0; e >>= 1) {
        if (e & 1) r = d.f.Reduce(Mul52(r, w, p, d.v.pinv));
        w = d.f.Reduce(Mul52(w, w, p, d.v.pinv));
    }
    return r;
}

// All stages of a transform of n <= kCacheBlock points.
void ForwardSmall(const Field& f, const uint64_t* row, uint64_t* a, int64_t n) {
    const uint64_t p2 = 2 * f.p;
    for (int64_t m = n / 2; m >= 1; m >>= 1) {
        const uint64_t* w = row + m;
        for (int64_t s = 0; s < n; s += 2 * m) {
            uint64_t* x = a + s;
            uint64_t* y = x + m;
            for (int64_t j = 0; j < m; ++j) {
                const uint64_t u = x[j], v = y[j];
                x[j] = Fold(u + v, p2);
                y[j] = f.Mul(u - v + p2, w[j]);
            }
        }
    }
}

void InverseSmall(const Field& f, const uint64_t* row, uint64_t* a, int64_t n) {
    const uint64_t p2 = 2 * f.p;
    for (int64_t m = 1; m < n; m <<= 1) {
        const uint64_t* w = row + m;
        for (int64_t s = 0; s < n; s += 2 * m) {
            uint64_t* x = a + s;
            uint64_t* y = x + m;
            for (int64_t j = 0; j < m; ++j) {
                const uint64_t u = x[j], v = f.Mul(y[j], w[j]);
                x[j] = Fold(u + v, p2);
                y[j] = Fold(u - v + p2, p2);
            }
        }
    }
}

// One stage of half length m > kRow over a[0, 2m), butterflies j0 … j1 − 1
// (multiples of 8), w of order 2m. False when told to stop.
template <bool kInverse>
bool BigStage(PollClock& clk, const Field& f, uint64_t w, uint64_t* a, int64_t m, int64_t j0,
              int64_t j1) {
    const uint64_t p2 = 2 * f.p;
    uint64_t x[8];
    x[0] = f.Pow(w, uint64_t(j0));
    for (int i = 1; i < 8; ++i) x[i] = f.Reduce(f.Mul(x[i - 1], w));
    const uint64_t w8 = f.Pow(w, 8);
    uint64_t* lo = a;
    uint64_t* hi = a + m;
    constexpr int64_t kChunk = 4096;
    for (int64_t from = j0; from < j1; from += kChunk) {
        const int64_t to = std::min(j1, from + kChunk);
        for (int64_t j = from; j < to; j += 8) {
            for (int i = 0; i < 8; ++i) {
                const uint64_t u = lo[j + i];
                if (kInverse) {
                    const uint64_t v = f.Mul(hi[j + i], x[i]);
                    lo[j + i] = Fold(u + v, p2);
                    hi[j + i] = Fold(u - v + p2, p2);
                } else {
                    const uint64_t v = hi[j + i];
                    lo[j + i] = Fold(u + v, p2);
                    hi[j + i] = f.Mul(u - v + p2, x[i]);
                }
                x[i] = f.Reduce(f.Mul(x[i], w8));
            }
        }
        if (clk.Tick(2 * kButterfly * (to - from))) return false;
    }
    return true;
}

// The same with the vector butterflies.
bool VecStage(PollClock& clk, const PrimeData& d, bool inverse, uint64_t w, uint64_t* a, int64_t m,
              int64_t j0, int64_t j1) {
    constexpr int64_t kChunk = 4096;
    const uint64_t w8 = Pow52(d, w, 8);
    for (int64_t from = j0; from < j1; from += kChunk) {
        const int64_t to = std::min(j1, from + kChunk);
        uint64_t first[8];
        first[0] = Pow52(d, w, uint64_t(from));
        for (int i = 1; i < 8; ++i) first[i] = d.f.Reduce(Mul52(first[i - 1], w, d.v.p, d.v.pinv));
        Ntt64VecStage(d.v, inverse, first, w8, a, m, from, to);
        if (clk.Tick(kVecStreamed * (to - from))) return false;
    }
    return true;
}

// Stage of half length m over a[0, 2m), butterflies j0 … j1 − 1.
bool Stage(PollClock& clk, const PrimeData& d, bool inverse, uint64_t* a, int64_t m, int64_t j0,
           int64_t j1) {
    const uint64_t w = (inverse ? d.rootInv : d.root)[CeilLog2(2 * m)];
    if (d.vec) return VecStage(clk, d, inverse, w, a, m, j0, j1);
    return inverse ? BigStage<true>(clk, d.f, w, a, m, j0, j1)
                   : BigStage<false>(clk, d.f, w, a, m, j0, j1);
}

bool Forward(PollClock& clk, const PrimeData& d, uint64_t* a, int64_t n) {
    if (n <= kCacheBlock) {
        if (d.vec)
            Ntt64VecForward(d.v, a, n);
        else
            ForwardSmall(d.f, d.row, a, n);
        return !clk.Tick((d.vec ? kVecButterfly : kButterfly) * (n / 2) * CeilLog2(n));
    }
    return Stage(clk, d, false, a, n / 2, 0, n / 2) && Forward(clk, d, a, n / 2) &&
           Forward(clk, d, a + n / 2, n / 2);
}

bool Inverse(PollClock& clk, const PrimeData& d, uint64_t* a, int64_t n) {
    if (n <= kCacheBlock) {
        if (d.vec)
            Ntt64VecInverse(d.v, a, n);
        else
            InverseSmall(d.f, d.rowInv, a, n);
        return !clk.Tick((d.vec ? kVecButterfly : kButterfly) * (n / 2) * CeilLog2(n));
    }
    return Inverse(clk, d, a, n / 2) && Inverse(clk, d, a + n / 2, n / 2) &&
           Stage(clk, d, true, a, n / 2, 0, n / 2);
}

// Runs f0 on the calling thread and f1 on a helper thread (both here when
// !parallel or when no thread can be had); each takes a PollClock& and
// answers false when told to stop.
template <typename F0, typename F1>
Result Both(PollClock& clk, bool parallel, F0&& f0, F1&& f1) {
    auto code = [](bool ok) { return ok ? Result::kOk : Result::kStopped; };
    return OnTwoThreads(
        clk, parallel, [&](PollClock& c) { return code(f0(c)); },
        [&](PollClock& c) { return code(f1(c)); });
}

// f(clock, from, to) over [0, count), cut at mid (a multiple of 8) when
// parallel.
template <typename F>
Result Halves(PollClock& clk, bool parallel, int64_t count, F&& f) {
    if (!parallel) return f(clk, 0, count) ? Result::kOk : Result::kStopped;
    const int64_t mid = (count / 2) & ~int64_t(7);
    return Both(
        clk, true, [&](PollClock& c) { return f(c, 0, mid); },
        [&](PollClock& c) { return f(c, mid, count); });
}

Result ForwardTop(PollClock& clk, bool parallel, const PrimeData& d, uint64_t* a, int64_t n) {
    if (!parallel || n <= kCacheBlock)
        return Forward(clk, d, a, n) ? Result::kOk : Result::kStopped;
    const Result rc = Halves(clk, true, n / 2, [&](PollClock& c, int64_t from, int64_t to) {
        return Stage(c, d, false, a, n / 2, from, to);
    });
    if (!Ok(rc)) return rc;
    return Both(
        clk, true, [&](PollClock& c) { return Forward(c, d, a, n / 2); },
        [&](PollClock& c) { return Forward(c, d, a + n / 2, n / 2); });
}

Result InverseTop(PollClock& clk, bool parallel, const PrimeData& d, uint64_t* a, int64_t n) {
    if (!parallel || n <= kCacheBlock)
        return Inverse(clk, d, a, n) ? Result::kOk : Result::kStopped;
    const Result rc = Both(
        clk, true, [&](PollClock& c) { return Inverse(c, d, a, n / 2); },
        [&](PollClock& c) { return Inverse(c, d, a + n / 2, n / 2); });
    if (!Ok(rc)) return rc;
    return Halves(clk, true, n / 2, [&](PollClock& c, int64_t from, int64_t to) {
        return Stage(c, d, true, a, n / 2, from, to);
    });
}

// Writes points from … to − 1 of an operand into out; false when told to
// stop. Borrows the callable it is made from (no allocation: a refused one
// must come back as a code), which must outlive it.
class Loader {
public:
    template <typename F>
    explicit Loader(const F& f)
        : f_(&f), call_([](const void* g, PollClock& c, uint64_t* out, int64_t from, int64_t to) {
              return (*static_cast<const F*>(g))(c, out, from, to);
          }) {}
    bool operator()(PollClock& c, uint64_t* out, int64_t from, int64_t to) const {
        return call_(f_, c, out, from, to);
    }

private:
    const void* f_;
    bool (*call_)(const void*, PollClock&, uint64_t*, int64_t, int64_t);
};

// out[0..n) := the transform of the points load writes, `points` of them
// (zeros beyond): more than n are folded modulo x^n − 1 (point i + n added to
// point i), and out has room for them all.
Result Transform(PollClock& clk, bool parallel, const PrimeData& d, int64_t n, int64_t points,
                 const Loader& load, uint64_t* out) {
    Result rc =
        Halves(clk, parallel, std::max(n, points),
               [&](PollClock& c, int64_t from, int64_t to) { return load(c, out, from, to); });
    const uint64_t p2 = 2 * d.f.p;
    for (int64_t i = n; Ok(rc) && i < points; i += 4096) {
        const int64_t end = std::min(points, i + 4096);
        for (int64_t j = i; j < end; ++j) out[j - n] = Fold(out[j - n] + out[j], p2);
        if (clk.Tick(kPointwise * (end - i))) rc = Result::kStopped;
    }
    return Ok(rc) ? ForwardTop(clk, parallel, d, out, n) : rc;
}

// 1/n times R^2, for the two Montgomery products of a point.
uint64_t Scale(const Field& f, int64_t n) {
    return f.ToMont(f.Pow(f.ToMont(uint64_t(n)), f.p - 2));
}

// The same for the vector primes' products: 2^104/n mod p.
uint64_t Scale52(const PrimeData& d, int64_t n) {
    const Field& f = d.f;
    const uint64_t inv = f.FromMont(f.Pow(f.ToMont(uint64_t(n)), f.p - 2));
    const uint64_t once = static_cast<uint64_t>((Wide(inv) << 52) % f.p);
    return static_cast<uint64_t>((Wide(once) << 52) % f.p);
}

// x[0..count) := x·y·scale pointwise (the products of Field::Mul, or Mul52's
// for the vector primes, scale 0 there for none).
Result Pointwise(PollClock& clk, bool parallel, const PrimeData& d, uint64_t* x, const uint64_t* y,
                 int64_t count, uint64_t scale) {
    const Field& f = d.f;
    return Halves(clk, parallel, count, [&](PollClock& c, int64_t from, int64_t to) {
        for (int64_t j = from; j < to; j += 4096) {
            const int64_t end = std::min(to, j + 4096);
            if (d.vec) {
                Ntt64VecPointwise(d.v, x + j, y + j, scale, end - j);
            } else {
                for (int64_t e = j; e < end; ++e) x[e] = f.Mul(f.Mul(x[e], y[e]), scale);
            }
            if (c.Tick(kPointwise * (end - j))) return false;
        }
        return true;
    });
}

// y[from..to) (a multiple of 8 long) times w^j: x[i] = w^(from + i) on
// entry, w^(to + i) on return, stepped by w8 = w^8.
void Twist(const Field& f, uint64_t w8, uint64_t* y, int64_t from, int64_t to, uint64_t* x) {
    for (int64_t e = from; e < to; e += 8) {
        for (int i = 0; i < 8; ++i) {
            y[e + i] = f.Mul(y[e + i], x[i]);
            x[i] = f.Reduce(f.Mul(x[i], w8));
        }
    }
}

// The transform of n points (beyond kCacheBlock) of which only the lower n/2
// can be nonzero, one half at a time in y[0..n/2): the forward transform's
// first stage leaves those points themselves in the lower half and the points
// times w^j in the upper one, so each half of the transform is a transform of
// n/2 points of one of them, the product w^j folded into the load. use(half)
// takes each half in turn: a factor's transform never needs n words.
template <typename Use>
Result ForwardByHalves(PollClock& clk, bool parallel, const PrimeData& d, int64_t n,
                       const Loader& load, uint64_t* y, Use&& use) {
    constexpr int64_t kChunk = 4096;  // loaded, then twisted in the cache
    const Field& f = d.f;
    const uint64_t w = d.twist[CeilLog2(n)];
    const uint64_t w8 = f.Pow(w, 8);
    const int64_t h = n / 2;
    const auto half = [&](Result rc, int which) {
        if (Ok(rc)) rc = ForwardTop(clk, parallel, d, y, h);
        return Ok(rc) ? use(which) : rc;
    };
    Result rc =
        half(Halves(clk, parallel, h,
                    [&](PollClock& c, int64_t from, int64_t to) { return load(c, y, from, to); }),
             0);
    if (!Ok(rc)) return rc;
    rc = Halves(clk, parallel, h, [&](PollClock& c, int64_t from, int64_t to) {
        // w^(j + i), eight chains stepped by w^8. Each starts from a power of
        // its own: GCC 12 at -O3 made the last start wrong when they were
        // stepped from one another here (x[7] off by −1; caught by the tests).
        uint64_t x[8];
        for (int i = 0; i < 8; ++i) x[i] = f.Pow(w, uint64_t(from + i));
        for (int64_t j = from; j < to; j += kChunk) {
            const int64_t end = std::min(to, j + kChunk);
            if (!load(c, y, j, end)) return false;
            Twist(f, w8, y, j, end, x);
            if (c.Tick(kTwistPoint * (end - j))) return false;
        }
        return true;
    });
    return half(rc, 1);
}

// Puts the shorter factor second (b null: a square, left as it is): its
// points then lie below n/2, since ca + cb − 1 <= n (ForwardByHalves).
template <typename T>
void ShorterSecond(const T*& a, int32_t& la, const T*& b, int32_t& lb) {
    if (b != nullptr && lb > la) {
        std::swap(a, b);
        std::swap(la, lb);
    }
}

// Room for the second factor's transform in CyclicProduct: n words, n/2
// beyond kCacheBlock points when its points lie below n/2.
int64_t FactorWords(int64_t n, int64_t cb) { return n > kCacheBlock && 2 * cb <= n ? n / 2 : n; }

// x[0..n) := the cyclic product modulo d's prime of the ca points loadA
// writes (x has room for them when there are more than n) by those loadB
// writes (null: by themselves), or by the kept transform `kept` (with 1/n
// folded in) when given. y: FactorWords(n, cb) words of room for b's
// transform, cb its points.
Result CyclicProduct(PollClock& clk, bool parallel, const PrimeData& d, int64_t n, int64_t ca,
                     const Loader& loadA, const Loader* loadB, int64_t cb, const uint64_t* kept,
                     uint64_t* x, uint64_t* y) {
    Result rc = Transform(clk, parallel, d, n, ca, loadA, x);
    if (!Ok(rc)) return rc;
    const uint64_t scale = kept ? (d.vec ? 0 : d.f.One()) : d.vec ? Scale52(d, n) : Scale(d.f, n);
    if (loadB == nullptr) {
        rc = Pointwise(clk, parallel, d, x, kept ? kept : x, n, scale);
    } else if (FactorWords(n, cb) == n) {
        rc = Transform(clk, parallel, d, n, cb, *loadB, y);
        if (Ok(rc)) rc = Pointwise(clk, parallel, d, x, y, n, scale);
    } else {
        rc = ForwardByHalves(clk, parallel, d, n, *loadB, y, [&](int half) {
            return Pointwise(clk, parallel, d, x + half * (n / 2), y, n / 2, scale);
        });
    }
    return Ok(rc) ? InverseTop(clk, parallel, d, x, n) : rc;
}

// The points of a linear product's count = ca + cb − 1 coefficients (ca >= cb
// points of its factors; cb = ca for a square) and the work they take. Just
// above a power of two a cyclic product of n >= count points would be nearly
// twice as long as the product, so up to count <= 3n/4 it is split: a cyclic
// product of h = n/2 points gives c_i + c_(i+h) for i < m = count − h, the
// low m coefficients come from a product of the low m points of each factor
// (lowN >= 2m points, at most h), and their difference gives the rest.
// Memory: count + FactorWords(h, cb) words split (the longer factor's points
// folded in place), n + FactorWords(n, cb) whole; a square no FactorWords.
// So count + work, what a product takes whose first residues wait in its
// own words, stays within three times count, where a whole cyclic product of
// n points took up to four.
struct ProductShape {
    int64_t ca = 0, cb = 0, count = 0, n = 0;
    int64_t h = 0, m = 0, lowN = 0;  // h = 0: not split
    int64_t yWords = 0;              // room for the second factor's transform
    int64_t work = 0;                // words of a prime's work, its residues first

    ProductShape(int64_t a, int64_t b, bool square, bool splittable) : ca(a), cb(b) {
        count = ca + cb - 1;
        n = int64_t(1) << CeilLog2(count);
        if (splittable && n / 2 >= kCacheBlock && 4 * count <= 3 * n) {
            h = n / 2;
            m = count - h;
            lowN = std::max(kVecFrom, int64_t(1) << CeilLog2(2 * m));
        }
        const int64_t len = h > 0 ? h : n;
        yWords = square ? 0 : FactorWords(len, cb);
        work = (h > 0 ? count : n) + yWords;
    }
};

// Points from … to − 1 of those `load` writes, the first m kept, zeros beyond.
struct LowPoints {
    const Loader& load;
    int64_t m;
    bool operator()(PollClock& c, uint64_t* out, int64_t from, int64_t to) const {
        const int64_t kept = std::clamp(m, from, to);
        if (from < kept && !load(c, out, from, kept)) return false;
        for (int64_t i = kept; i < to; i += 4096) {
            const int64_t end = std::min(to, i + 4096);
            std::fill(out + i, out + end, uint64_t(0));
            if (c.Tick(kPointwise * (end - i))) return false;
        }
        return true;
    }
};

// r[0..s.count) := the residues modulo d's prime of the linear product's
// coefficients, as ProductShape says; r has s.work words.
Result LinearProduct(PollClock& clk, bool parallel, const PrimeData& d, const ProductShape& s,
                     const Loader& loadA, const Loader* loadB, uint64_t* r) {
    if (s.h == 0)
        return CyclicProduct(clk, parallel, d, s.n, s.ca, loadA, loadB, s.cb, nullptr, r, r + s.n);
    // The low product works at r[0..lowN + its factor's room) and leaves its
    // m coefficients past the cyclic product's two factors, at low; the
    // longer factor's ca points fit below low (ca + m <= h + yWords).
    const LowPoints lowA{loadA, s.m};
    const LowPoints lowB{loadB ? *loadB : loadA, s.m};
    const Loader fromLowB(lowB);
    Result rc = CyclicProduct(clk, parallel, d, s.lowN, s.lowN, Loader(lowA),
                              loadB ? &fromLowB : nullptr, s.m, nullptr, r, r + s.lowN);
    uint64_t* low = r + s.h + s.yWords;
    for (int64_t i = 0; Ok(rc) && i < s.m; i += 4096) {
        const int64_t end = std::min(s.m, i + 4096);
        std::copy(r + i, r + end, low + i);
        if (clk.Tick(kPointwise * (end - i))) rc = Result::kStopped;
    }
    if (Ok(rc))
        rc = CyclicProduct(clk, parallel, d, s.h, s.ca, loadA, loadB, s.cb, nullptr, r, r + s.h);
    // c_i = low_i and c_(i+h) = r_i − low_i below m; r[h + i] lies in the
    // second factor's room or is low_i itself (a square), read first.
    const Field& f = d.f;
    for (int64_t i = 0; Ok(rc) && i < s.m; i += 4096) {
        const int64_t end = std::min(s.m, i + 4096);
        for (int64_t j = i; j < end; ++j) {
            const uint64_t c = f.Reduce(r[j]), l = f.Reduce(low[j]);  // both below 2p
            r[j] = l;
            r[s.h + j] = c >= l ? c - l : c - l + f.p;
        }
        if (clk.Tick(kPointwise * (end - i))) rc = Result::kStopped;
    }
    return rc;
}

// Points from … to − 1 of the operand packed k limbs a point, reduced below
// 2p: the low three limbs (below 2.1·10^12 < p) plus the others times 10^12.
bool Load(PollClock& clk, const Field& f, const Limb* a, int64_t la, int k, uint64_t* out,
          int64_t from, int64_t to) {
    const uint64_t scaleR = f.ToMont(1000000000000u);
    const uint64_t p2 = 2 * f.p;
    auto limb = [&](int64_t i) { return i < la ? uint64_t(static_cast<uint16_t>(a[i])) : 0u; };
    // The zeros past the operand are charged too: on fresh pages they cost
    // as much as the points (a short factor of a 10^8-digit product leaves
    // hundreds of MB of them).
    for (int64_t i = from; i < to; ++i) {
        const int64_t at = i * k;
        if (at < la) {
            uint64_t low = 0, high = 0;
            for (int t = std::min(k, 3) - 1; t >= 0; --t) low = low * 10000 + limb(at + t);
            for (int t = k - 1; t >= 3; --t) high = high * 10000 + limb(at + t);
            out[i] = Fold(low + f.Mul(high, scaleR), p2);
        } else {
            out[i] = 0;
        }
        if ((i & 4095) == 4095 && clk.Tick(4096 * kLoadPoint)) return false;
    }
    return true;
}

// The D base-10^8 digits of v < 10^(8D).
template <int D>
inline void Digits(uint64_t v, uint64_t* d) {
    for (int i = 0; i + 1 < D; ++i) {
        const uint64_t q = v / 100000000u;
        d[i] = v - q * 100000000u;
        v = q;
    }
    d[D - 1] = v;
}

// The constants of Garner's steps, in Montgomery form: p1^−1 modulo p2,
// p1 modulo p3 and (p1·p2)^−1 modulo p3.
struct Garner {
    uint64_t inv1R, p1m3R, inv12R;
    explicit Garner(const PrimeData* primes) {
        const Field& f2 = primes[1].f;
        const Field& f3 = primes[2].f;
        const uint64_t p1 = primes[0].f.p, p2 = f2.p, p3 = f3.p;
        inv1R = f2.Pow(f2.ToMont(p1 - p2), p2 - 2);
        p1m3R = f3.ToMont(p1 - p3);
        const uint64_t p12 = f3.FromMont(f3.Reduce(f3.Mul(f3.ToMont(p1 - p3), f3.ToMont(p2 - p3))));
        inv12R = f3.Pow(f3.ToMont(p12), p3 - 2);
    }
};

// Garner's join of the three residues into base-10^8 digits, carried into
// limbs. A coefficient x = v1 + p1·v2 + p1·p2·v3 (v_i below p_i) is summed in
// D digits of 10^8 each for v_i (D = 3 for primes below 2^62, 2 below 2^50):
// at most 3D + 1 digits below 10^17 into a window of pending digits; each
// coefficient then settles k/2 digits.
// The first prime's residues: the first inP over p's limbs (word i on limbs
// 4i … 4i + 3), the others in rest.
struct FirstResidues {
    const Limb* p = nullptr;
    int64_t inP = 0;
    const uint64_t* rest = nullptr;
    uint64_t operator[](int64_t i) const {
        if (i >= inP) return rest[i - inP];
        uint64_t v;
        std::memcpy(&v, p + 4 * i, sizeof v);
        return v;
    }
};
static_assert(sizeof(Limb) * 4 == sizeof(uint64_t), "a residue word over four limbs");

class Join {
public:
    Join(const PrimeData* primes, FirstResidues r1, const uint64_t* r2, const uint64_t* r3, int k,
         Limb* p, int64_t len)
        : primes_(primes), r1_(r1), r_{r2, r3}, half_(k / 2), p_(p), len_(len), garner_(primes) {
        const uint64_t p1 = primes[0].f.p, p2 = primes[1].f.p;
        Digits<3>(p1, p1d_);
        Wide prod = Wide(p1) * p2;
        for (uint64_t& d : p12d_) {
            d = static_cast<uint64_t>(prod % 100000000u);
            prod /= 100000000u;
        }
    }

    struct Pending {
        uint64_t digit[10] = {};  // base 10^8, from limb `at` on
        int64_t at = 0;
        uint64_t top = 0;  // the value of limbs at and above len − 1
    };

    // Coefficients from … to − 1: their low limbs written to p, what is left
    // in out. False when told to stop.
    bool Run(PollClock& clk, int64_t from, int64_t to, Pending* out) const {
        if (primes_[0].f.p >> 50 == 0) return RunT<2, 2>(clk, from, to, out);
        return half_ == 3 ? RunT<3, 3>(clk, from, to, out) : RunT<3, 2>(clk, from, to, out);
    }

private:
    template <int D, int H>
    bool RunT(PollClock& clk, int64_t from, int64_t to, Pending* out) const {
        const Field& f1 = primes_[0].f;
        const Field& f2 = primes_[1].f;
        const Field& f3 = primes_[2].f;
        const uint64_t p2 = f2.p, p3 = f3.p;
        uint64_t w[10] = {};
        uint64_t top = 0;
        for (int64_t i = from; i < to; ++i) {
            const uint64_t v1 = f1.Reduce(r1_[i]);
            const uint64_t u2 = f2.Reduce(r_[0][i]);
            const uint64_t u3 = f3.Reduce(r_[1][i]);
            const uint64_t v1m2 = v1 >= p2 ? v1 - p2 : v1;
            const uint64_t v2 = f2.Reduce(f2.Mul(u2 - v1m2 + p2, garner_.inv1R));
            uint64_t t = (v1 >= p3 ? v1 - p3 : v1) + f3.Mul(v2, garner_.p1m3R);
            t = t >= 2 * p3 ? t - 2 * p3 : f3.Reduce(t);
            const uint64_t v3 = f3.Reduce(f3.Mul(u3 - t + p3, garner_.inv12R));
            uint64_t a[D], b[D], c[D];
            Digits<D>(v1, a);
            Digits<D>(v2, b);
            Digits<D>(v3, c);
            for (int j = 0; j < D; ++j) w[j] += a[j];
            for (int x = 0; x < D; ++x)
                for (int y = 0; y < D; ++y) w[x + y] += p1d_[x] * b[y];
            for (int x = 0; x < 2 * D; ++x)
                for (int y = 0; y < D; ++y) w[x + y] += p12d_[x] * c[y];
            int64_t limb = i * 2 * H;
            for (int s = 0; s < H; ++s, limb += 2) {
                const uint64_t q = w[s] / 100000000u;
                Put(limb, w[s] - q * 100000000u, &top);
                w[s + 1] += q;
            }
            for (int s = 0; s + H < 10; ++s) w[s] = w[s + H];
            for (int s = 10 - H; s < 10; ++s) w[s] = 0;
            if ((i & 1023) == 1023 && clk.Tick(1024 * kJoinPoint)) return false;
        }
        std::copy(w, w + 10, out->digit);
        out->at = to * 2 * H;
        out->top = top;
        return true;
    }

public:
    // Adds what a run left into p, carrying; the top limb takes the rest.
    void Settle(const Pending& left, uint64_t* top) const {
        *top += left.top;
        uint64_t carry = 0;
        for (int s = 0; s < 10; ++s) {
            const uint64_t v = left.digit[s] + carry;
            carry = v / 100000000u;
            const uint64_t d = v - carry * 100000000u;
            AddAt(left.at + 2 * s, d % 10000, top);
            AddAt(left.at + 2 * s + 1, d / 10000, top);
        }
        assert(carry == 0);
    }

private:
    // Limb index i gets the digit pair d (below 10^8); limbs from len − 1 on
    // go to the top limb's value.
    void Put(int64_t i, uint64_t d, uint64_t* top) const {
        const uint64_t hi = d / 10000, lo = d - hi * 10000;
        if (i + 1 < len_ - 1) {
            p_[i] = static_cast<Limb>(lo);
            p_[i + 1] = static_cast<Limb>(hi);
            return;
        }
        ToTop(i, lo, top);
        ToTop(i + 1, hi, top);
    }
    void ToTop(int64_t i, uint64_t v, uint64_t* top) const {
        if (i < len_ - 1) {
            p_[i] = static_cast<Limb>(v);
            return;
        }
        const int64_t e = i - (len_ - 1);
        if (v == 0 || e > 4) {
            assert(v == 0);
            return;
        }
        uint64_t scale = 1;
        for (int64_t s = 0; s < e; ++s) scale *= 10000;
        *top += v * scale;
    }
    void AddAt(int64_t i, uint64_t v, uint64_t* top) const {
        for (; v != 0 && i < len_ - 1; ++i) {
            const uint64_t s = uint64_t(p_[i]) + v;
            v = s / 10000;
            p_[i] = static_cast<Limb>(s - v * 10000);
        }
        if (v != 0) ToTop(i, v, top);
    }

    const PrimeData* primes_;
    FirstResidues r1_;  // read before the limbs over them are written
    const uint64_t* r_[2];
    int half_;
    Limb* p_;
    int64_t len_;
    Garner garner_;
    uint64_t p1d_[3] = {}, p12d_[6] = {};
};

// Gives the pages of a spent work array back a slice at a time, polling
// between slices: unmapping hundreds of MB at once takes tens of ms. The
// array's later free then has little left to do. False when told to stop.
bool Release(PollClock& clk, uint64_t* a, int64_t count) {
#ifdef __linux__
    constexpr uintptr_t kPage = 4096;
    constexpr int64_t kSlice = int64_t(1) << 21;  // words, 16 MB
    if (count < 2 * kSlice) return true;
    const uintptr_t from = (reinterpret_cast<uintptr_t>(a) + kPage - 1) & ~(kPage - 1);
    const uintptr_t to = reinterpret_cast<uintptr_t>(a + count) & ~(kPage - 1);
    for (uintptr_t at = from; at < to; at += kSlice * 8) {
        const uintptr_t end = std::min(to, at + kSlice * 8);
        madvise(reinterpret_cast<void*>(at), end - at, MADV_DONTNEED);
        if (clk.Tick(kSlice)) return false;
    }
#else
    (void)clk;
    (void)a;
    (void)count;
#endif
    return true;
}

// Moves x[0..count) to the first residues' places: over p's limbs, the rest
// to rest. False when told to stop.
bool MoveToP(PollClock& clk, const uint64_t* x, int64_t count, Limb* p, const FirstResidues& to,
             uint64_t* rest) {
    constexpr int64_t kSlice = int64_t(1) << 16;  // words; p's pages are fresh
    for (int64_t i = 0; i < to.inP; i += kSlice) {
        const int64_t end = std::min(to.inP, i + kSlice);
        std::memcpy(p + 4 * i, x + i, size_t(end - i) * sizeof(uint64_t));
        if (clk.Tick(kLoadPoint / 4 * (end - i))) return false;
    }
    std::copy(x + to.inP, x + count, rest);
    return true;
}

// Memory beyond the operands and p: the residues of the primes kept for the
// join (count words each) and one prime's work (ProductShape). With four
// limbs a point the first prime's residues move into p itself (count words
// take at most p's limbs and two more); the join writes word i of p only
// after reading it. So a product takes count + work words: 2.3 to 3 times
// its operands (count words), where three primes' residues and two whole
// transforms took 2·count + 2n, up to six times.
Result Run(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    ShorterSecond(a, la, b, lb);
    const int64_t len = int64_t(la) + lb;
    auto points = [&](int k) { return (la + k - 1) / k + (lb + k - 1) / k - 1; };
    // The vector primes take four limbs a point.
    int k = 4;
    int64_t count = points(k), n = int64_t(1) << CeilLog2(count);
    const int set = !gPortable && n >= kVecFrom && Ntt64VecAvailable() ? 1 : 0;
    if (set == 0) {
        for (k = 6;; k = Ntt64LimbsPerPoint(n)) {
            count = points(k);
            n = int64_t(1) << CeilLog2(count);
            if (Ntt64LimbsPerPoint(n) >= k) break;
        }
    }
    assert(n <= (int64_t(1) << kMaxLog));
    Result rc = EnsureTables(set);
    if (!Ok(rc)) return rc;
    const PrimeData* primes = gPrime[set];
    if (clk.Tick(n)) return Result::kStopped;
    const bool square = b == nullptr;
    // Word i of p covers limbs 4i … 4i + 3; the top limb stays out (it is
    // cleared before the join).
    FirstResidues first;
    if (k == 4) first = FirstResidues{p, std::min(count, (len - 1) / 4), nullptr};
    const int64_t kept = first.inP > 0 ? 1 : 2;  // residues kept in buf
    const ProductShape shape((la + k - 1) / k, (lb + k - 1) / k, square, true);
    const int64_t work = shape.work;
    const int64_t words = kept * count + work + (count - first.inP) * (kept == 1);
    Scratch<uint64_t> buf(words);
    if (!buf) return Result::kNoMemory;
    // Prime i works at r[i]: the residues of the primes before it keep only
    // their count words.
    uint64_t* r[3] = {buf.get(), buf.get() + (kept - 1) * count, buf.get() + kept * count};
    const int32_t parallelFrom = gFastThresholds.ntt64Parallel;
    const bool parallel = parallelFrom > 0 && n >= parallelFrom;

    for (int i = 0; i < 3 && Ok(rc); ++i) {
        const Field& f = primes[i].f;
        const auto loadA = [&](PollClock& c, uint64_t* out, int64_t from, int64_t to) {
            return Load(c, f, a, la, k, out, from, to);
        };
        const auto loadB = [&](PollClock& c, uint64_t* out, int64_t from, int64_t to) {
            return Load(c, f, b, lb, k, out, from, to);
        };
        const Loader fromB(loadB);
        rc = LinearProduct(clk, parallel, primes[i], shape, Loader(loadA),
                           square ? nullptr : &fromB, r[i]);
        if (i == 0 && Ok(rc) && kept == 1) {
            uint64_t* rest = buf.get() + count + work;
            if (!MoveToP(clk, r[0], count, p, first, rest)) rc = Result::kStopped;
            first.rest = rest;
        }
    }
    if (!Ok(rc)) return rc;
    if (kept == 2) first.rest = r[0];

    const Join join(primes, first, r[1], r[2], k, p, len);
    const int64_t assigned = std::min(count * k, len - 1);
    std::fill(p + assigned, p + len, Limb(0));
    const int64_t mid = parallel ? count / 2 : count;
    Join::Pending left[2];
    rc = Both(
        clk, parallel, [&](PollClock& c) { return join.Run(c, 0, mid, &left[0]); },
        [&](PollClock& c) { return join.Run(c, mid, count, &left[1]); });
    if (!Ok(rc)) return rc;
    uint64_t top = 0;
    join.Settle(left[0], &top);
    join.Settle(left[1], &top);
    assert(top < 32768);
    p[len - 1] = static_cast<Limb>(top);
    return Release(clk, buf.get(), words) ? Result::kOk : Result::kStopped;
}

// Binary products: bits [b·i, b·(i + 1)) of a word array make point i, b =
// kBits[set]. Both operands' pieces are below 2^b, so a coefficient of the
// convolution is below min(ca, cb)·2^(2b) for ca, cb points, and n <= 2^32
// points keep it below P: 2^32·2^128 = 2^160 < 2^185.99 with b = 64 on the
// primes below 2^62, 2^32·2^100 = 2^132 < 2^149.99 with b = 50 on those below
// 2^50. A piece must be below 2p when loaded: 2^50 < 2p for the vector primes
// (p > 2^49.99); below 2^62 a 64-bit x is x − (x >> 62)·p < 2^62 + 3·2^37.
constexpr int kBits[2] = {64, 50};

// Points from … to − 1 of the words a[0..la) cut b bits a point.
bool LoadBits(PollClock& clk, const Field& f, bool vec, const uint32_t* a, int64_t la, int b,
              uint64_t* out, int64_t from, int64_t to) {
    const uint64_t mask = b == 64 ? ~uint64_t(0) : (uint64_t(1) << b) - 1;
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
        const int64_t bit = i * b;
        const int64_t w = bit >> 5;
        if (w < la) {
            Wide x = a[w];
            if (w + 1 < la) x |= Wide(a[w + 1]) << 32;
            if (w + 2 < la) x |= Wide(a[w + 2]) << 64;
            const uint64_t v = static_cast<uint64_t>(x >> (bit & 31)) & mask;
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
    constexpr uint64_t kMask = B == 64 ? ~uint64_t(0) : (uint64_t(1) << B) - 1;
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

    // out[0..to − from) := residues from … to − 1.
    void Get(int64_t from, int64_t to, uint64_t* out) const {
        if (words != nullptr) {
            std::copy(words + from, words + to, out);
            return;
        }
        const uint64_t mask = b == 64 ? ~uint64_t(0) : (uint64_t(1) << b) - 1;
        // Whole groups (from is a multiple of theirs), then the last few
        // word by word.
        const int group = b == 64 ? kGroup<64> : kGroup<50>;
        const int64_t groupWords = group * b / 64;
        int64_t i = from;
        for (; i + group <= std::min(to, inP) && 2 * (i / group + 1) * groupWords <= len;
             i += group) {
            uint64_t w[25];
            std::memcpy(w, p + 2 * (i / group) * groupWords, sizeof(uint64_t) * size_t(groupWords));
            if (b == 64)
                UnpackGroup<64>(w, out + (i - from));
            else
                UnpackGroup<50>(w, out + (i - from));
        }
        for (; i < std::min(to, inP); ++i) {
            const int64_t bit = i * b, w = bit >> 5;
            Wide x = p[w];
            if (w + 1 < len) x |= Wide(p[w + 1]) << 32;
            if (w + 2 < len) x |= Wide(p[w + 2]) << 64;
            out[i - from] = static_cast<uint64_t>(x >> (bit & 31)) & mask;
        }
        for (; i < to; ++i) out[i - from] = rest[i - inP];
    }
};

// Packs x[0..count) (below 2p) reduced into `to`'s places: the first to.inP
// into p, b bits each (whole groups on both threads when parallel), the
// others into rest.
Result PackToP(PollClock& clk, bool parallel, const Field& f, const uint64_t* x, int64_t count,
               uint32_t* p, const FirstBits& to, uint64_t* rest) {
    const int b = to.b;
    const int group = b == 64 ? kGroup<64> : kGroup<50>;
    const int64_t groupWords = group * b / 64;
    const int64_t groups = std::min(to.inP / group, to.len / (2 * groupWords));
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
    const uint64_t mask = b == 64 ? ~uint64_t(0) : (uint64_t(1) << b) - 1;
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
    for (q.set = !gPortable && Ntt64VecAvailable() ? 1 : 0;; q.set = 0) {
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
    const PrimeData* primes = gPrime[q.set];
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

void UsePortableNtt64(bool portable) { gPortable = portable; }

int Ntt64LimbsPerPoint(int64_t n) {
    return n <= std::min(gFastThresholds.ntt64SixLimbs, int32_t(1) << 26) ? 6 : 4;
}

Result MulNtt64(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    return Run(clk, a, la, b, lb, p);
}

Result SqrNtt64(PollClock& clk, const Limb* a, int32_t la, Limb* p) {
    return Run(clk, a, la, nullptr, la, p);
}

bool Ntt64VectorButterflies() { return !gPortable && Ntt64VecAvailable(); }

const Ntt64Vec* Ntt64VecPrimes() {
    static Ntt64Vec primes[3];
    if (primes[0].p == 0) {
        if (!Ok(EnsureTables(1))) return nullptr;
        for (int i = 0; i < 3; ++i) primes[i] = gPrime[1][i].v;
    }
    return primes;
}

const uint64_t* Ntt64VecGarnerConstants() {
    // Garner's inverses in the vector butterflies' form (R = 2^52).
    static const std::array<uint64_t, 3> k = [] {
        const PrimeData* primes = gPrime[1];
        const Garner g(primes);
        const Field& f2 = primes[1].f;
        const Field& f3 = primes[2].f;
        const auto to52 = [](uint64_t x, uint64_t q) {
            return static_cast<uint64_t>((Wide(x) << 52) % q);
        };
        return std::array<uint64_t, 3>{to52(f2.FromMont(g.inv1R), f2.p),
                                       to52(primes[0].f.p % f3.p, f3.p),
                                       to52(f3.FromMont(g.inv12R), f3.p)};
    }();
    return k.data();
}

bool Ntt64VecTransform(PollClock& clk, int i, bool inverse, uint64_t* a, int64_t n) {
    return inverse ? Inverse(clk, gPrime[1][i], a, n) : Forward(clk, gPrime[1][i], a, n);
}

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
        const PrimeData& d = gPrime[q.set][i];
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
    const PrimeData* primes = gPrime[q.set];
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
