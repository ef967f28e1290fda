// Butterflies of the 64-bit transform on eight points at a time with AVX-512
// IFMA, compiled for that instruction set alone and chosen at run time only
// where the processor has it.
//
// Montgomery products in a lane, for primes below 2^50: with t = a·w < p·2^52,
// m = lo52(t)·p^−1 mod 2^52 makes lo52(m·p) = lo52(t), so hi52(t) − hi52(m·p)
// lies in (−p, p) and adding p gives a·w·2^−52 mod p in (0, 2p). Four
// multiply-adds a product. Lazy bounds: differences below 4p < 2^52 times
// twiddles below p.
//
// The stages of half length 4, 2 and 1 run on 64-point tiles transposed as
// 8×8, each register then holding one point of eight blocks.
//
// Also the pointwise products, Garner's first steps and the cut of its
// values into 50-bit pieces (52-bit products of factors taken times 4).
#include "bigint/ntt64_kernels.h"

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)

#pragma GCC push_options
#pragma GCC target("avx512f,avx512ifma")
#include <immintrin.h>

namespace {

struct V {
    __m512i p, twoP, pinv, zero;
    explicit V(const Ntt64Vec& c)
        : p(_mm512_set1_epi64(int64_t(c.p))),
          twoP(_mm512_set1_epi64(int64_t(2 * c.p))),
          pinv(_mm512_set1_epi64(int64_t(c.pinv))),
          zero(_mm512_setzero_si512()) {}

    __m512i Fold(__m512i x, __m512i bound) const {
        return _mm512_maskz_min_epu64(
            0xFF, x, _mm512_sub_epi64(x, bound));  // (the unmasked form warns in GCC 12)
    }
    __m512i Mul(__m512i a, __m512i w) const {
        const __m512i lo = _mm512_madd52lo_epu64(zero, a, w);
        const __m512i hi = _mm512_madd52hi_epu64(zero, a, w);
        const __m512i m = _mm512_madd52lo_epu64(zero, lo, pinv);
        const __m512i mp = _mm512_madd52hi_epu64(zero, m, p);
        return _mm512_add_epi64(_mm512_sub_epi64(hi, mp), p);
    }
    void Dif(__m512i& x, __m512i& y, __m512i w) const {
        const __m512i u = x, v = y;
        x = Fold(_mm512_add_epi64(u, v), twoP);
        y = Mul(_mm512_add_epi64(_mm512_sub_epi64(u, v), twoP), w);
    }
    void Dit(__m512i& x, __m512i& y, __m512i w) const {
        const __m512i u = x, t = Mul(y, w);
        x = Fold(_mm512_add_epi64(u, t), twoP);
        y = Fold(_mm512_add_epi64(_mm512_sub_epi64(u, t), twoP), twoP);
    }
};

// 8×8 transpose by three rounds, round b swapping bit b of row and column:
// kSwap[b][0] picks the new row i (bit b clear) from rows i and i ^ b,
// kSwap[b][1] the new row i ^ b.
alignas(64) const int64_t kSwap[3][2][8] = {
    {{0, 8, 2, 10, 4, 12, 6, 14}, {1, 9, 3, 11, 5, 13, 7, 15}},
    {{0, 1, 8, 9, 4, 5, 12, 13}, {2, 3, 10, 11, 6, 7, 14, 15}},
    {{0, 1, 2, 3, 8, 9, 10, 11}, {4, 5, 6, 7, 12, 13, 14, 15}}};

void Transpose(__m512i* r) {
    for (int round = 0; round < 3; ++round) {
        const int b = 1 << round;
        const __m512i ilo = _mm512_loadu_si512(kSwap[round][0]);
        const __m512i ihi = _mm512_loadu_si512(kSwap[round][1]);
        for (int i = 0; i < 8; ++i) {
            if (i & b) continue;
            const __m512i x = r[i], y = r[i ^ b];
            r[i] = _mm512_permutex2var_epi64(x, ilo, y);
            r[i ^ b] = _mm512_permutex2var_epi64(x, ihi, y);
        }
    }
}

__m512i Load(const uint64_t* a) { return _mm512_loadu_si512(a); }
void Store(uint64_t* a, __m512i x) { _mm512_storeu_si512(a, x); }
__m512i Splat(uint64_t x) { return _mm512_set1_epi64(int64_t(x)); }

}  // namespace

bool Ntt64VecAvailable() {
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512ifma");
}

void Ntt64VecForward(const Ntt64Vec& c, uint64_t* a, int64_t n) {
    const V v(c);
    for (int64_t m = n / 2; m >= 8; m >>= 1) {
        const uint64_t* w = c.roots + m;
        for (int64_t s = 0; s < n; s += 2 * m) {
            uint64_t* x = a + s;
            for (int64_t j = 0; j < m; j += 8) {
                __m512i lo = Load(x + j), hi = Load(x + j + m);
                v.Dif(lo, hi, Load(w + j));
                Store(x + j, lo);
                Store(x + j + m, hi);
            }
        }
    }
    const uint64_t* w = c.roots;
    const __m512i w4[4] = {Splat(w[4]), Splat(w[5]), Splat(w[6]), Splat(w[7])};
    const __m512i w2[2] = {Splat(w[2]), Splat(w[3])}, w1 = Splat(w[1]);
    for (int64_t t = 0; t < n; t += 64) {
        __m512i r[8];
        for (int i = 0; i < 8; ++i) r[i] = Load(a + t + 8 * i);
        Transpose(r);
        for (int i = 0; i < 4; ++i) v.Dif(r[i], r[i + 4], w4[i]);
        for (int i = 0; i < 8; i += 4) {
            v.Dif(r[i], r[i + 2], w2[0]);
            v.Dif(r[i + 1], r[i + 3], w2[1]);
        }
        for (int i = 0; i < 8; i += 2) v.Dif(r[i], r[i + 1], w1);
        for (int i = 0; i < 8; ++i) Store(a + t + 8 * i, r[i]);
    }
}

void Ntt64VecInverse(const Ntt64Vec& c, uint64_t* a, int64_t n) {
    const V v(c);
    const uint64_t* w = c.rootsInv;
    const __m512i w4[4] = {Splat(w[4]), Splat(w[5]), Splat(w[6]), Splat(w[7])};
    const __m512i w2[2] = {Splat(w[2]), Splat(w[3])}, w1 = Splat(w[1]);
    for (int64_t t = 0; t < n; t += 64) {
        __m512i r[8];
        for (int i = 0; i < 8; ++i) r[i] = Load(a + t + 8 * i);
        for (int i = 0; i < 8; i += 2) v.Dit(r[i], r[i + 1], w1);
        for (int i = 0; i < 8; i += 4) {
            v.Dit(r[i], r[i + 2], w2[0]);
            v.Dit(r[i + 1], r[i + 3], w2[1]);
        }
        for (int i = 0; i < 4; ++i) v.Dit(r[i], r[i + 4], w4[i]);
        Transpose(r);
        for (int i = 0; i < 8; ++i) Store(a + t + 8 * i, r[i]);
    }
    for (int64_t m = 8; m < n; m <<= 1) {
        const uint64_t* wm = c.rootsInv + m;
        for (int64_t s = 0; s < n; s += 2 * m) {
            uint64_t* x = a + s;
            for (int64_t j = 0; j < m; j += 8) {
                __m512i lo = Load(x + j), hi = Load(x + j + m);
                v.Dit(lo, hi, Load(wm + j));
                Store(x + j, lo);
                Store(x + j + m, hi);
            }
        }
    }
}

void Ntt64VecStage(const Ntt64Vec& c, bool inverse, const uint64_t* first, uint64_t w8, uint64_t* a,
                   int64_t m, int64_t j0, int64_t j1) {
    const V v(c);
    __m512i tw = Load(first);
    const __m512i step = Splat(w8);
    uint64_t* hiHalf = a + m;
    for (int64_t j = j0; j < j1; j += 8) {
        __m512i lo = Load(a + j), hi = Load(hiHalf + j);
        if (inverse)
            v.Dit(lo, hi, tw);
        else
            v.Dif(lo, hi, tw);
        Store(a + j, lo);
        Store(hiHalf + j, hi);
        tw = v.Fold(v.Mul(tw, step), v.p);
    }
}

void Ntt64VecPointwise(const Ntt64Vec& c, uint64_t* x, const uint64_t* y, uint64_t scale,
                       int64_t n) {
    const V v(c);
    const __m512i sc = Splat(scale);
    int64_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m512i t = v.Mul(Load(x + i), Load(y + i));
        Store(x + i, scale != 0 ? v.Mul(t, sc) : t);
    }
    for (; i < n; ++i) {
        const uint64_t t = Mul52(x[i], y[i], c.p, c.pinv);
        x[i] = scale != 0 ? Mul52(t, scale, c.p, c.pinv) : t;
    }
}

// With a factor 4·a below 2^52, the low 52 bits of 4·a·b are lo50(a·b)·4
// and the high ones a·b >> 50.
void Ntt64VecPieces(const uint64_t* k, uint64_t* r1, uint64_t* r2, uint64_t* r3, int64_t n) {
    const __m512i zero = _mm512_setzero_si512();
    const __m512i a = Splat(k[0]), c0 = Splat(k[1]), c1 = Splat(k[2]);
    int64_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m512i v1 = Load(r1 + i), v2 = Load(r2 + i), v3 = Load(r3 + i);
        __m512i lo = _mm512_madd52lo_epu64(zero, a, v2);
        lo = _mm512_madd52lo_epu64(lo, c0, v3);
        __m512i mid = _mm512_madd52hi_epu64(zero, a, v2);
        mid = _mm512_madd52hi_epu64(mid, c0, v3);
        const __m512i c1v3 = _mm512_madd52lo_epu64(zero, c1, v3);
        Store(r1 + i, _mm512_add_epi64(v1, _mm512_maskz_srli_epi64(0xFF, lo, 2)));
        Store(r2 + i, _mm512_add_epi64(mid, _mm512_maskz_srli_epi64(0xFF, c1v3, 2)));
        Store(r3 + i, _mm512_madd52hi_epu64(zero, c1, v3));
    }
    const uint64_t m50 = (uint64_t(1) << 50) - 1;
    for (; i < n; ++i) {
        using W = unsigned __int128;
        const W x = W(k[0] >> 2) * r2[i], y = W(k[1] >> 2) * r3[i], z = W(k[2] >> 2) * r3[i];
        r1[i] += (uint64_t(x) & m50) + (uint64_t(y) & m50);
        r2[i] = uint64_t(x >> 50) + uint64_t(y >> 50) + (uint64_t(z) & m50);
        r3[i] = uint64_t(z >> 50);
    }
}

void Ntt64VecScale(const Ntt64Vec& c, uint64_t* x, uint64_t scale, int64_t n) {
    const V v(c);
    const __m512i sc = Splat(scale);
    int64_t i = 0;
    for (; i + 8 <= n; i += 8) Store(x + i, v.Mul(Load(x + i), sc));
    for (; i < n; ++i) x[i] = Mul52(x[i], scale, c.p, c.pinv);
}

void Ntt64VecGarner(const Ntt64Vec* c, const uint64_t* k, uint64_t* r1, uint64_t* r2, uint64_t* r3,
                    int64_t n) {
    const V v1(c[0]), v2(c[1]), v3(c[2]);
    const __m512i inv1 = Splat(k[0]), p1m3 = Splat(k[1]), inv12 = Splat(k[2]);
    const __m512i twoP3 = v3.twoP;
    int64_t i = 0;
    for (; i + 8 <= n; i += 8) {
        const __m512i a = v1.Fold(Load(r1 + i), v1.p);
        const __m512i u2 = Load(r2 + i), u3 = Load(r3 + i);
        // a < p1 < 2p2: u2 − a + 2p2 in (0, 4p2).
        const __m512i b =
            v2.Fold(v2.Mul(_mm512_add_epi64(_mm512_sub_epi64(u2, a), v2.twoP), inv1), v2.p);
        __m512i t = _mm512_add_epi64(v3.Fold(a, v3.p), v3.Mul(b, p1m3));
        t = v3.Fold(v3.Fold(t, twoP3), v3.p);
        const __m512i d =
            v3.Fold(v3.Mul(_mm512_add_epi64(_mm512_sub_epi64(u3, t), v3.twoP), inv12), v3.p);
        Store(r1 + i, a);
        Store(r2 + i, b);
        Store(r3 + i, d);
    }
    for (; i < n; ++i) {
        const auto fold = [](uint64_t x, uint64_t p) { return x >= p ? x - p : x; };
        const uint64_t p1 = c[0].p, p2 = c[1].p, p3 = c[2].p;
        const uint64_t a = fold(r1[i], p1);
        const uint64_t b = fold(Mul52(r2[i] - a + 2 * p2, k[0], p2, c[1].pinv), p2);
        uint64_t t = fold(a, p3) + Mul52(b, k[1], p3, c[2].pinv);
        t = fold(fold(t, 2 * p3), p3);
        r1[i] = a;
        r2[i] = b;
        r3[i] = fold(Mul52(r3[i] - t + 2 * p3, k[2], p3, c[2].pinv), p3);
    }
}

#pragma GCC pop_options

#else

bool Ntt64VecAvailable() { return false; }
void Ntt64VecForward(const Ntt64Vec&, uint64_t*, int64_t) {}
void Ntt64VecInverse(const Ntt64Vec&, uint64_t*, int64_t) {}
void Ntt64VecStage(const Ntt64Vec&, bool, const uint64_t*, uint64_t, uint64_t*, int64_t, int64_t,
                   int64_t) {}
void Ntt64VecPointwise(const Ntt64Vec&, uint64_t*, const uint64_t*, uint64_t, int64_t) {}
void Ntt64VecScale(const Ntt64Vec&, uint64_t*, uint64_t, int64_t) {}
void Ntt64VecPieces(const uint64_t*, uint64_t*, uint64_t*, uint64_t*, int64_t) {}
void Ntt64VecGarner(const Ntt64Vec*, const uint64_t*, uint64_t*, uint64_t*, uint64_t*, int64_t) {}

#endif
