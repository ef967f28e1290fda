// Butterfly kernels of the transform on eight points at a time with AVX2,
// and the long stages and pointwise products on sixteen with AVX-512, each
// compiled for its instruction set alone and chosen at run time only where
// the processor has it.
//
// Montgomery products in a lane: for a·b < p·2^32, q = lo(a·b)·p^−1 mod 2^32
// makes a·b − q·p a multiple of 2^32, so hi(a·b) − hi(q·p) lies in (−p, p)
// and adding p gives a·b·2^−32 mod p in (0, 2p), the lazy range of the
// points. The 32×32-bit products come from the even lanes (vpmuludq), the
// odd lanes shifted down.
//
// The stages of half length 4, 2 and 1 work inside blocks of eight points:
// eight blocks are loaded as an 8×8 tile and transposed, so that each
// register holds the same point of eight blocks and the butterflies become
// whole-register operations with one twiddle each.
#include "bigint/ntt_kernels.h"

// Only GCC builds these kernels (on Linux and with MinGW-w64 on Windows): they
// rest on its per-function target pragma and __builtin_cpu_supports. Clang,
// MSVC and clang-cl take the portable kernels, which give the same results;
// MSVC would need the file compiled with /arch:AVX2 and a __cpuid check.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)

#pragma GCC push_options
#pragma GCC target("avx2")
#include <immintrin.h>

namespace {

struct V {
    __m256i p, twoP, pinv;  // pinv = p^−1 mod 2^32
    explicit V(const Mont& mt)
        : p(_mm256_set1_epi32(int32_t(mt.p))),
          twoP(_mm256_set1_epi32(int32_t(2 * mt.p))),
          pinv(_mm256_set1_epi32(int32_t(0u - mt.pinv))) {}

    __m256i Fold(__m256i x) const { return _mm256_min_epu32(x, _mm256_sub_epi32(x, twoP)); }
    __m256i Mul(__m256i a, __m256i b) const {
        const __m256i abEven = _mm256_mul_epu32(a, b);
        const __m256i abOdd = _mm256_mul_epu32(_mm256_srli_epi64(a, 32), _mm256_srli_epi64(b, 32));
        const __m256i qpEven = _mm256_mul_epu32(_mm256_mul_epu32(abEven, pinv), p);
        const __m256i qpOdd = _mm256_mul_epu32(_mm256_mul_epu32(abOdd, pinv), p);
        const __m256i hiAb = _mm256_blend_epi32(_mm256_srli_epi64(abEven, 32), abOdd, 0xAA);
        const __m256i hiQp = _mm256_blend_epi32(_mm256_srli_epi64(qpEven, 32), qpOdd, 0xAA);
        return _mm256_add_epi32(_mm256_sub_epi32(hiAb, hiQp), p);
    }
    // Decimation in frequency: (u, v) → (u + v, (u − v)·w).
    void Dif(__m256i& x, __m256i& y, __m256i w) const {
        const __m256i u = x, v = y;
        x = Fold(_mm256_add_epi32(u, v));
        y = Mul(_mm256_add_epi32(_mm256_sub_epi32(u, v), twoP), w);
    }
    // Either with w = 1.
    void Dif1(__m256i& x, __m256i& y) const {
        const __m256i u = x, v = y;
        x = Fold(_mm256_add_epi32(u, v));
        y = Fold(_mm256_add_epi32(_mm256_sub_epi32(u, v), twoP));
    }
    // Decimation in time: (u, v) → (u + v·w, u − v·w).
    void Dit(__m256i& x, __m256i& y, __m256i w) const {
        const __m256i u = x, t = Mul(y, w);
        x = Fold(_mm256_add_epi32(u, t));
        y = Fold(_mm256_add_epi32(_mm256_sub_epi32(u, t), twoP));
    }
};

inline __m256i Load(const uint32_t* a) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(a));
}
inline void Store(uint32_t* a, __m256i x) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(a), x); }
inline __m256i Splat(uint32_t w) { return _mm256_set1_epi32(int32_t(w)); }

void Transpose(__m256i r[8]) {
    __m256i t[8], u[8];
    for (int k = 0; k < 8; k += 2) {
        t[k] = _mm256_unpacklo_epi32(r[k], r[k + 1]);
        t[k + 1] = _mm256_unpackhi_epi32(r[k], r[k + 1]);
    }
    for (int k = 0; k < 8; k += 4) {
        u[k] = _mm256_unpacklo_epi64(t[k], t[k + 2]);
        u[k + 1] = _mm256_unpackhi_epi64(t[k], t[k + 2]);
        u[k + 2] = _mm256_unpacklo_epi64(t[k + 1], t[k + 3]);
        u[k + 3] = _mm256_unpackhi_epi64(t[k + 1], t[k + 3]);
    }
    for (int k = 0; k < 4; ++k) {
        r[k] = _mm256_permute2x128_si256(u[k], u[k + 4], 0x20);
        r[k + 4] = _mm256_permute2x128_si256(u[k], u[k + 4], 0x31);
    }
}

// Runs butterfly(x, y, w) on every eight pairs of a stage of half length m.
template <typename Butterfly>
void OnRows(const uint32_t* roots, uint32_t* a, int32_t n, int32_t m, Butterfly butterfly) {
    const uint32_t* w = roots + m;
    for (int32_t s = 0; s < n; s += 2 * m) {
        uint32_t* x = a + s;
        uint32_t* y = x + m;
        for (int32_t j = 0; j < m; j += 8) {
            __m256i u = Load(x + j), t = Load(y + j);
            butterfly(u, t, Load(w + j));
            Store(x + j, u);
            Store(y + j, t);
        }
    }
}

void ForwardStage(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    const V v(mt);
    OnRows(roots, a, n, m, [&](__m256i& x, __m256i& y, __m256i w) { v.Dif(x, y, w); });
}

void InverseStage(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    const V v(mt);
    OnRows(roots, a, n, m, [&](__m256i& x, __m256i& y, __m256i w) { v.Dit(x, y, w); });
}

// Runs butterflies(r) on every 8×8 tile of a, r[j] holding point j of eight
// blocks.
template <typename Butterflies>
void OnTiles(uint32_t* a, int32_t n, Butterflies butterflies) {
    for (int32_t s = 0; s < n; s += 64) {
        __m256i r[8];
        for (int k = 0; k < 8; ++k) r[k] = Load(a + s + 8 * k);
        Transpose(r);
        butterflies(r);
        Transpose(r);
        for (int k = 0; k < 8; ++k) Store(a + s + 8 * k, r[k]);
    }
}

void ForwardTail(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    if (n < 64) {
        PortableNttKernels().forwardTail(mt, roots, a, n);
        return;
    }
    const V v(mt);
    const __m256i w41 = Splat(roots[5]), w42 = Splat(roots[6]), w43 = Splat(roots[7]);
    const __m256i w21 = Splat(roots[3]);
    OnTiles(a, n, [&](__m256i* r) {
        v.Dif1(r[0], r[4]);
        v.Dif(r[1], r[5], w41);
        v.Dif(r[2], r[6], w42);
        v.Dif(r[3], r[7], w43);
        for (int h = 0; h < 8; h += 4) {
            v.Dif1(r[h], r[h + 2]);
            v.Dif(r[h + 1], r[h + 3], w21);
        }
        for (int h = 0; h < 8; h += 2) v.Dif1(r[h], r[h + 1]);
    });
}

void InverseHead(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    if (n < 64) {
        PortableNttKernels().inverseHead(mt, roots, a, n);
        return;
    }
    const V v(mt);
    const __m256i w41 = Splat(roots[5]), w42 = Splat(roots[6]), w43 = Splat(roots[7]);
    const __m256i w21 = Splat(roots[3]);
    OnTiles(a, n, [&](__m256i* r) {
        for (int h = 0; h < 8; h += 2) v.Dif1(r[h], r[h + 1]);
        for (int h = 0; h < 8; h += 4) {
            v.Dif1(r[h], r[h + 2]);
            v.Dit(r[h + 1], r[h + 3], w21);
        }
        v.Dif1(r[0], r[4]);
        v.Dit(r[1], r[5], w41);
        v.Dit(r[2], r[6], w42);
        v.Dit(r[3], r[7], w43);
    });
}

void Pointwise(const Mont& mt, uint32_t* a, const uint32_t* b, uint32_t scale, int32_t n) {
    if (n % 8 != 0) {
        PortableNttKernels().pointwise(mt, a, b, scale, n);
        return;
    }
    const V v(mt);
    const __m256i f = Splat(scale);
    if (b == nullptr) b = a;
    for (int32_t i = 0; i < n; i += 8) Store(a + i, v.Mul(v.Mul(Load(a + i), Load(b + i)), f));
}

void MulAccumulate(const Mont& mt, uint32_t* acc, const uint32_t* a, const uint32_t* b,
                   uint32_t scale, int how, int32_t n) {
    if (n % 8 != 0) {
        PortableNttKernels().mulAccumulate(mt, acc, a, b, scale, how, n);
        return;
    }
    const V v(mt);
    const __m256i f = Splat(scale);
    for (int32_t i = 0; i < n; i += 8) {
        const __m256i x = v.Mul(v.Mul(Load(a + i), Load(b + i)), f);
        if (how == 0) {
            Store(acc + i, x);
        } else {
            const __m256i y = Load(acc + i);
            Store(acc + i, v.Fold(how == 1 ? _mm256_add_epi32(y, x)
                                           : _mm256_sub_epi32(_mm256_add_epi32(y, v.twoP), x)));
        }
    }
}

// x mod p for x < 2p.
inline __m256i Below(__m256i x, __m256i p) { return _mm256_min_epu32(x, _mm256_sub_epi32(x, p)); }

// Eight residue pairs at a time; the 64-bit values come from the even and
// the odd lanes and are put back in order.
void Crt(const CrtPair& c, const uint32_t* r1, const uint32_t* r2, uint64_t* out, int32_t count) {
    const V v2(c.m2);
    const __m256i p1 = Splat(c.p1), p2 = v2.p, invR = Splat(c.invR);
    int32_t k = 0;
    for (; k + 8 <= count; k += 8) {
        const __m256i x1 = Below(Load(r1 + k), p1);
        const __m256i x2 = Below(Load(r2 + k), p2);
        const __m256i x1m = Below(Below(x1, p2), p2);
        const __m256i d = Below(v2.Mul(_mm256_sub_epi32(_mm256_add_epi32(x2, p2), x1m), invR), p2);
        const __m256i even = _mm256_add_epi64(_mm256_mul_epu32(d, p1),
                                              _mm256_srli_epi64(_mm256_slli_epi64(x1, 32), 32));
        const __m256i odd = _mm256_add_epi64(_mm256_mul_epu32(_mm256_srli_epi64(d, 32), p1),
                                             _mm256_srli_epi64(x1, 32));
        const __m256i lo = _mm256_unpacklo_epi64(even, odd), hi = _mm256_unpackhi_epi64(even, odd);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + k),
                            _mm256_permute2x128_si256(lo, hi, 0x20));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + k + 4),
                            _mm256_permute2x128_si256(lo, hi, 0x31));
    }
    PortableNttKernels().crt(c, r1 + k, r2 + k, out + k, count - k);
}

const NttKernels kAvx2 = {ForwardStage, InverseStage, nullptr,       nullptr, ForwardTail,
                          InverseHead,  Pointwise,    MulAccumulate, Crt};

}  // namespace

#pragma GCC pop_options

// The stages of half length 16 and more, and the pointwise products, on
// sixteen points at a time where the processor has AVX-512: the same
// Montgomery products on 512-bit registers, half the instructions a point.
// The shorter stages and the join stay as above.
#pragma GCC push_options
#pragma GCC target("avx512f")
// GCC 12's AVX-512 headers fill unused operands from a self-initialised
// variable, which -Wuninitialized reports at every inlined use.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"

namespace {

struct V16 {
    __m512i p, twoP, pinv;
    explicit V16(const Mont& mt)
        : p(_mm512_set1_epi32(int32_t(mt.p))),
          twoP(_mm512_set1_epi32(int32_t(2 * mt.p))),
          pinv(_mm512_set1_epi32(int32_t(0u - mt.pinv))) {}

    __m512i Fold(__m512i x) const { return _mm512_min_epu32(x, _mm512_sub_epi32(x, twoP)); }
    __m512i Mul(__m512i a, __m512i b) const {
        const __m512i abEven = _mm512_mul_epu32(a, b);
        const __m512i abOdd = _mm512_mul_epu32(_mm512_srli_epi64(a, 32), _mm512_srli_epi64(b, 32));
        const __m512i qpEven = _mm512_mul_epu32(_mm512_mul_epu32(abEven, pinv), p);
        const __m512i qpOdd = _mm512_mul_epu32(_mm512_mul_epu32(abOdd, pinv), p);
        const __m512i hiAb = _mm512_mask_blend_epi32(0xAAAA, _mm512_srli_epi64(abEven, 32), abOdd);
        const __m512i hiQp = _mm512_mask_blend_epi32(0xAAAA, _mm512_srli_epi64(qpEven, 32), qpOdd);
        return _mm512_add_epi32(_mm512_sub_epi32(hiAb, hiQp), p);
    }
};

inline __m512i Load16(const uint32_t* a) { return _mm512_loadu_si512(a); }
inline void Store16(uint32_t* a, __m512i x) { _mm512_storeu_si512(a, x); }

template <typename Butterfly>
void OnRows16(const uint32_t* roots, uint32_t* a, int32_t n, int32_t m, Butterfly butterfly) {
    const uint32_t* w = roots + m;
    for (int32_t s = 0; s < n; s += 2 * m) {
        uint32_t* x = a + s;
        uint32_t* y = x + m;
        for (int32_t j = 0; j < m; j += 16) {
            __m512i u = Load16(x + j), t = Load16(y + j);
            butterfly(u, t, Load16(w + j));
            Store16(x + j, u);
            Store16(y + j, t);
        }
    }
}

void ForwardStage16(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    if (m < 16) {
        ForwardStage(mt, roots, a, n, m);
        return;
    }
    const V16 v(mt);
    OnRows16(roots, a, n, m, [&](__m512i& x, __m512i& y, __m512i w) {
        const __m512i u = x, t = y;
        x = v.Fold(_mm512_add_epi32(u, t));
        y = v.Mul(_mm512_add_epi32(_mm512_sub_epi32(u, t), v.twoP), w);
    });
}

void InverseStage16(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    if (m < 16) {
        InverseStage(mt, roots, a, n, m);
        return;
    }
    const V16 v(mt);
    OnRows16(roots, a, n, m, [&](__m512i& x, __m512i& y, __m512i w) {
        const __m512i u = x, t = v.Mul(y, w);
        x = v.Fold(_mm512_add_epi32(u, t));
        y = v.Fold(_mm512_add_epi32(_mm512_sub_epi32(u, t), v.twoP));
    });
}

void MulAccumulate16(const Mont& mt, uint32_t* acc, const uint32_t* a, const uint32_t* b,
                     uint32_t scale, int how, int32_t n) {
    if (n % 16 != 0) {
        MulAccumulate(mt, acc, a, b, scale, how, n);
        return;
    }
    const V16 v(mt);
    const __m512i f = _mm512_set1_epi32(int32_t(scale));
    for (int32_t i = 0; i < n; i += 16) {
        const __m512i x = v.Mul(v.Mul(Load16(a + i), Load16(b + i)), f);
        if (how == 0) {
            Store16(acc + i, x);
        } else {
            const __m512i y = Load16(acc + i);
            Store16(acc + i, v.Fold(how == 1 ? _mm512_add_epi32(y, x)
                                             : _mm512_sub_epi32(_mm512_add_epi32(y, v.twoP), x)));
        }
    }
}

// Pairs of stages: four rows a quarter of a block apart, loaded once.
template <typename Butterflies>
void OnQuads16(const uint32_t* roots, uint32_t* a, int32_t n, int32_t m, Butterflies butterflies) {
    const int32_t h = m / 2;
    for (int32_t s = 0; s < n; s += 2 * m) {
        uint32_t* x = a + s;
        for (int32_t j = 0; j < h; j += 16) {
            __m512i r[4] = {Load16(x + j), Load16(x + j + h), Load16(x + j + m),
                            Load16(x + j + m + h)};
            butterflies(r, Load16(roots + m + j), Load16(roots + m + h + j), Load16(roots + h + j));
            Store16(x + j, r[0]);
            Store16(x + j + h, r[1]);
            Store16(x + j + m, r[2]);
            Store16(x + j + m + h, r[3]);
        }
    }
}

void ForwardStage2(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    const V16 v(mt);
    const auto dif = [&](__m512i& x, __m512i& y, __m512i w) {
        const __m512i u = x, t = y;
        x = v.Fold(_mm512_add_epi32(u, t));
        y = v.Mul(_mm512_add_epi32(_mm512_sub_epi32(u, t), v.twoP), w);
    };
    OnQuads16(roots, a, n, m, [&](__m512i* r, __m512i w0, __m512i w1, __m512i w2) {
        dif(r[0], r[2], w0);
        dif(r[1], r[3], w1);
        dif(r[0], r[1], w2);
        dif(r[2], r[3], w2);
    });
}

void InverseStage2(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    const V16 v(mt);
    const auto dit = [&](__m512i& x, __m512i& y, __m512i w) {
        const __m512i u = x, t = v.Mul(y, w);
        x = v.Fold(_mm512_add_epi32(u, t));
        y = v.Fold(_mm512_add_epi32(_mm512_sub_epi32(u, t), v.twoP));
    };
    OnQuads16(roots, a, n, m, [&](__m512i* r, __m512i w0, __m512i w1, __m512i w2) {
        dit(r[0], r[1], w2);
        dit(r[2], r[3], w2);
        dit(r[0], r[2], w0);
        dit(r[1], r[3], w1);
    });
}

inline __m512i Below16(__m512i x, __m512i p) { return _mm512_min_epu32(x, _mm512_sub_epi32(x, p)); }

// The join on sixteen residue pairs at a time, as Crt above; the 64-bit
// values of the even and the odd lanes are put back in order by one
// two-source permutation a half.
void Crt16(const CrtPair& c, const uint32_t* r1, const uint32_t* r2, uint64_t* out, int32_t count) {
    const V16 v2(c.m2);
    const __m512i p1 = _mm512_set1_epi32(int32_t(c.p1)), p2 = v2.p;
    const __m512i invR = _mm512_set1_epi32(int32_t(c.invR));
    const __m512i first = _mm512_set_epi64(11, 10, 3, 2, 9, 8, 1, 0);
    const __m512i second = _mm512_set_epi64(15, 14, 7, 6, 13, 12, 5, 4);
    int32_t k = 0;
    for (; k + 16 <= count; k += 16) {
        const __m512i x1 = Below16(Load16(r1 + k), p1);
        const __m512i x2 = Below16(Load16(r2 + k), p2);
        const __m512i x1m = Below16(Below16(x1, p2), p2);
        const __m512i d =
            Below16(v2.Mul(_mm512_sub_epi32(_mm512_add_epi32(x2, p2), x1m), invR), p2);
        const __m512i even = _mm512_add_epi64(_mm512_mul_epu32(d, p1),
                                              _mm512_srli_epi64(_mm512_slli_epi64(x1, 32), 32));
        const __m512i odd = _mm512_add_epi64(_mm512_mul_epu32(_mm512_srli_epi64(d, 32), p1),
                                             _mm512_srli_epi64(x1, 32));
        const __m512i lo = _mm512_unpacklo_epi64(even, odd), hi = _mm512_unpackhi_epi64(even, odd);
        _mm512_storeu_si512(out + k, _mm512_permutex2var_epi64(lo, first, hi));
        _mm512_storeu_si512(out + k + 8, _mm512_permutex2var_epi64(lo, second, hi));
    }
    Crt(c, r1 + k, r2 + k, out + k, count - k);
}

const NttKernels kAvx512 = {ForwardStage16, InverseStage16,  ForwardStage2,
                            InverseStage2,  ForwardTail,     InverseHead,
                            Pointwise,      MulAccumulate16, Crt16};

}  // namespace

#pragma GCC diagnostic pop
#pragma GCC pop_options

const NttKernels* Avx2NttKernels() {
    if (__builtin_cpu_supports("avx512f")) return &kAvx512;
    return __builtin_cpu_supports("avx2") ? &kAvx2 : nullptr;
}

#else

const NttKernels* Avx2NttKernels() { return nullptr; }

#endif
