// The transform over three primes of up to 62 bits behind the longest
// products: of limbs (ntt64_decimal.cpp) and of binary words (ntt64_bits.cpp).
// Here: the primes' tables, the transforms, and the cyclic and linear
// products of point sequences modulo one prime (ntt64_prime.h).
//
// Primes p = c·2^32 + 1, so every power-of-two length up to 2^32 has its roots
// of unity; two sets of three: the three largest c below 2^30 (p < 2^62) for
// the plain 64-bit butterflies, the three largest c below 2^18 (p < 2^50) for
// the vector ones (ntt64_ifma.cpp, AVX-512 IFMA, chosen at run time from 256
// points). AVX2 alone has no 64-bit multiply-high and does not pay.
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
// Two threads: from the thresholds' parallel lengths, each transform, the
// loads, the pointwise products and the join are cut in two halves, the second
// on a helper thread. Only the calling thread polls; it waits for the helper
// polling every millisecond and, when told to stop, cancels it and waits for
// it (a few thousand butterflies).
//
// The vector primes' tables and whole transforms are also lent to the
// piece-wise interface of ntt64_plan.cpp (Ntt64VecPrimes, Ntt64VecTransform).
//
// Memory: a product of at most 3n/4 points is split into a cyclic one of n/2
// points and a short one (ProductShape); beyond kCacheBlock points the shorter
// factor's transform is made a half at a time (ForwardByHalves). The root
// tables are kept between products. All from nothrow new, code 3 when
// refused; a helper thread that cannot be started leaves both halves to the
// calling thread.
#include "bigint/ntt64.h"

#include <algorithm>
#include <array>
#include <new>

#include "bigint/ntt64_kernels.h"
#include "bigint/ntt64_prime.h"

namespace ntt64 {
namespace {

// Two sets of primes c·2^32 + 1, each with a generator: below 2^62 for the
// plain 64-bit butterflies, below 2^50 for the vector ones.
constexpr uint64_t kPrime[2][3] = {{0x3fffffee00000001u, 0x3fffffb400000001u, 0x3fffffa000000001u},
                                   {0x3fff300000001u, 0x3ffed00000001u, 0x3ffeb00000001u}};
constexpr uint64_t kGenerator[2][3] = {{3, 19, 3}, {5, 7, 3}};

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

// f(i, end) over [from, to) in chunks of 4096 points, a tick of the clock
// after each (kPointwise a point); false when told to stop.
template <typename F>
bool InChunks(PollClock& clk, int64_t from, int64_t to, F&& f) {
    for (int64_t i = from; i < to; i += 4096) {
        const int64_t end = std::min(to, i + 4096);
        f(i, end);
        if (clk.Tick(kPointwise * (end - i))) return false;
    }
    return true;
}

// Points from … to − 1 of those `load` writes, the first m kept, zeros beyond.
struct LowPoints {
    const Loader& load;
    int64_t m;
    bool operator()(PollClock& c, uint64_t* out, int64_t from, int64_t to) const {
        const int64_t kept = std::clamp(m, from, to);
        if (from < kept && !load(c, out, from, kept)) return false;
        return InChunks(c, kept, to, [&](int64_t i, int64_t end) {
            std::fill(out + i, out + end, uint64_t(0));
        });
    }
};

}  // namespace

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

const PrimeData* Primes(int set) { return gPrime[set]; }

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

Result Transform(PollClock& clk, bool parallel, const PrimeData& d, int64_t n, int64_t points,
                 const Loader& load, uint64_t* out) {
    Result rc =
        Halves(clk, parallel, std::max(n, points),
               [&](PollClock& c, int64_t from, int64_t to) { return load(c, out, from, to); });
    const uint64_t p2 = 2 * d.f.p;
    const auto fold = [&](int64_t i, int64_t end) {
        for (int64_t j = i; j < end; ++j) out[j - n] = Fold(out[j - n] + out[j], p2);
    };
    if (Ok(rc) && !InChunks(clk, n, points, fold)) rc = Result::kStopped;
    return Ok(rc) ? ForwardTop(clk, parallel, d, out, n) : rc;
}

uint64_t Scale(const Field& f, int64_t n) {
    return f.ToMont(f.Pow(f.ToMont(uint64_t(n)), f.p - 2));
}

uint64_t Scale52(const PrimeData& d, int64_t n) {
    const Field& f = d.f;
    const uint64_t inv = f.FromMont(f.Pow(f.ToMont(uint64_t(n)), f.p - 2));
    const uint64_t once = static_cast<uint64_t>((Wide(inv) << 52) % f.p);
    return static_cast<uint64_t>((Wide(once) << 52) % f.p);
}

Result Pointwise(PollClock& clk, bool parallel, const PrimeData& d, uint64_t* x, const uint64_t* y,
                 int64_t count, uint64_t scale) {
    const Field& f = d.f;
    const auto product = [&](int64_t j, int64_t end) {
        if (d.vec) {
            Ntt64VecPointwise(d.v, x + j, y + j, scale, end - j);
        } else {
            for (int64_t e = j; e < end; ++e) x[e] = f.Mul(f.Mul(x[e], y[e]), scale);
        }
    };
    return Halves(clk, parallel, count, [&](PollClock& c, int64_t from, int64_t to) {
        return InChunks(c, from, to, product);
    });
}

int64_t FactorWords(int64_t n, int64_t cb) { return n > kCacheBlock && 2 * cb <= n ? n / 2 : n; }

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

ProductShape::ProductShape(int64_t a, int64_t b, bool square, bool splittable) : ca(a), cb(b) {
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
    const auto keepLow = [&](int64_t i, int64_t end) { std::copy(r + i, r + end, low + i); };
    if (Ok(rc) && !InChunks(clk, 0, s.m, keepLow)) rc = Result::kStopped;
    if (Ok(rc))
        rc = CyclicProduct(clk, parallel, d, s.h, s.ca, loadA, loadB, s.cb, nullptr, r, r + s.h);
    // c_i = low_i and c_(i+h) = r_i − low_i below m; r[h + i] lies in the
    // second factor's room or is low_i itself (a square), read first.
    const Field& f = d.f;
    const auto difference = [&](int64_t i, int64_t end) {
        for (int64_t j = i; j < end; ++j) {
            const uint64_t c = f.Reduce(r[j]), l = f.Reduce(low[j]);  // both below 2p
            r[j] = l;
            r[s.h + j] = c >= l ? c - l : c - l + f.p;
        }
    };
    if (Ok(rc) && !InChunks(clk, 0, s.m, difference)) rc = Result::kStopped;
    return rc;
}

}  // namespace ntt64

using namespace ntt64;

void UsePortableNtt64(bool portable) { gPortable = portable; }

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
