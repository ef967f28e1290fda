// One prime's share of the 64-bit transform's products (ntt64.cpp): its
// Montgomery arithmetic, the transforms, and the cyclic and linear products
// of point sequences modulo it. Shared by the products of limbs
// (ntt64_decimal.cpp) and of binary words (ntt64_bits.cpp); not part of the
// public interface.
#pragma once

#include <algorithm>
#include <cstdint>

#include "bigint/mul_kernels.h"
#include "bigint/ntt64_kernels.h"
#include "bigint/two_threads.h"

namespace ntt64 {

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

// The kept tables of a set (0: the primes below 2^62, 1: the vector ones
// below 2^50), made once on the calling thread before any helper runs.
Result EnsureTables(int set);
const PrimeData* Primes(int set);

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

// The forward and the inverse transform of a[0..n), on two threads when
// parallel (past kCacheBlock points); kOk or kStopped.
Result ForwardTop(PollClock& clk, bool parallel, const PrimeData& d, uint64_t* a, int64_t n);
Result InverseTop(PollClock& clk, bool parallel, const PrimeData& d, uint64_t* a, int64_t n);

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
                 const Loader& load, uint64_t* out);

// 1/n times R^2, for the two Montgomery products of a point.
uint64_t Scale(const Field& f, int64_t n);

// The same for the vector primes' products: 2^104/n mod p.
uint64_t Scale52(const PrimeData& d, int64_t n);

// x[0..count) := x·y·scale pointwise (the products of Field::Mul, or Mul52's
// for the vector primes, scale 0 there for none).
Result Pointwise(PollClock& clk, bool parallel, const PrimeData& d, uint64_t* x, const uint64_t* y,
                 int64_t count, uint64_t scale);

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
int64_t FactorWords(int64_t n, int64_t cb);

// x[0..n) := the cyclic product modulo d's prime of the ca points loadA
// writes (x has room for them when there are more than n) by those loadB
// writes (null: by themselves), or by the kept transform `kept` (with 1/n
// folded in) when given. y: FactorWords(n, cb) words of room for b's
// transform, cb its points.
Result CyclicProduct(PollClock& clk, bool parallel, const PrimeData& d, int64_t n, int64_t ca,
                     const Loader& loadA, const Loader* loadB, int64_t cb, const uint64_t* kept,
                     uint64_t* x, uint64_t* y);

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

    ProductShape(int64_t a, int64_t b, bool square, bool splittable);
};

// r[0..s.count) := the residues modulo d's prime of the linear product's
// coefficients, as ProductShape says; r has s.work words.
Result LinearProduct(PollClock& clk, bool parallel, const PrimeData& d, const ProductShape& s,
                     const Loader& loadA, const Loader* loadB, uint64_t* r);

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

}  // namespace ntt64
