// Products of limbs by the 64-bit transform (ntt64.cpp), joined by Garner's
// form of the Chinese remainder theorem into base-10^8 digits.
//
// Several limbs make one coefficient (below 2·10^(4k), the top limb up to
// 20000). A coefficient of the product is a sum of at most n products, of
// which at most three involve a top limb, so it stays below (n + 5)·10^(8k),
// which must stay below P, the primes' product.
//   Plain 64-bit butterflies (P = 2^185.99): k = 6 up to 2^26 points
//   ((2^26 + 5)·10^48 = 2^185.45), k = 4 beyond (2^138.3 at 2^32 points).
//   Vector butterflies (P = 2^149.99): k = 4, (n + 5)·10^32 < P up to
//   n = 2^43.
// Lengths are not limited otherwise: n <= 2^32 for every la + lb below 2^31.
//
// Allocation: one buffer, for the residues of the primes kept for the join
// and one prime's work (ProductShape). With four limbs a point the first
// prime's residues wait in the product's own limbs: count + work words, at
// most three times the operands' points. Run says more.
#include "bigint/ntt64.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

#include <algorithm>
#include <cassert>
#include <cstring>

#include "bigint/ntt64_prime.h"
#include "bigint/thresholds.h"

using namespace ntt64;

namespace {

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
    const int set = n >= kVecFrom && Ntt64VectorButterflies() ? 1 : 0;
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
    const PrimeData* primes = Primes(set);
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

}  // namespace

int Ntt64LimbsPerPoint(int64_t n) {
    return n <= std::min(gFastThresholds.ntt64SixLimbs, int32_t(1) << 26) ? 6 : 4;
}

Result MulNtt64(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    return Run(clk, a, la, b, lb, p);
}

Result SqrNtt64(PollClock& clk, const Limb* a, int32_t la, Limb* p) {
    return Run(clk, a, la, nullptr, la, p);
}
