// Montgomery products on 52-bit digits, eight to a register, with the
// AVX-512 IFMA products (52 × 52 bits, low or high half added to a 64-bit
// lane), compiled for that instruction set alone and chosen at run time only
// where the processor has it.
//
// Method: operand scanning with the reduction interleaved. Row i adds
// a · b[i] and y · m, y = −t0/m mod 2^52 chosen so that the lowest digit
// vanishes, then moves the accumulator down one digit. Up to ten vectors
// (BlockRow) the lowest digits are tracked in scalars, so that y does not
// wait for the vector lane, and the rows go in blocks of eight with the
// operands' copies moved up 0 … 8 places, so that the accumulator moves by
// a whole register once a block; beyond (WideRow), where the products'
// throughput bounds the time, each row shifts the accumulator. Digits are not normalised between rows:
// each row adds at most four values below 2^52 to a digit, so 8K rows stay
// below 2^(52 + 2 + log2(8K)) < 2^63 for K <= 40, and one carry pass at the
// end brings them below 2^52. With a, b < 2m and 4m < R the result
// (a b + Y m) / R is below 2m. The loops over the vectors are unrolled, the
// accumulator living in registers as far as they go.
#include "bigint/mont_ifma.h"

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)

#include <cstddef>
#include <utility>

#pragma GCC push_options
#pragma GCC target("avx512f,avx512ifma")
// GCC 12's AVX-512 headers fill unused operands from a self-initialised
// variable, which -Wuninitialized reports at every inlined use.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <immintrin.h>

namespace {

constexpr uint64_t kMask = (uint64_t(1) << 52) - 1;

// The low and high halves of the 52-bit product a b.
inline uint64_t Lo(uint64_t a, uint64_t b) { return (a * b) & kMask; }
inline uint64_t Hi(uint64_t a, uint64_t b) {
    return static_cast<uint64_t>((static_cast<unsigned __int128>(a) * b) >> 52);
}

// r[0..8K) := the accumulator's digits (below 2^64) with their carries
// passed up; the lowest digit is x0 (its lane is stale). One vector pass
// leaves digits below 2^52 + 2^12, whose carries are 0 or 1; those ripple
// through digits of 2^52 − 1 as in an adder: with G the digits that carry
// out and P those that pass a carry on, one bit each, the carries in are
// ((G << 1) + P) ^ P.
template <int K>
inline void Normalise(__m512i* acc, uint64_t x0, uint64_t* r) {
    constexpr int kWords = (K + 7) / 8;  // mask words of 64 digits
    const __m512i mask = _mm512_set1_epi64(static_cast<long long>(kMask));
    acc[0] = _mm512_mask_set1_epi64(acc[0], 1, static_cast<long long>(x0));
    __m512i below = _mm512_setzero_si512();
    uint64_t g[kWords] = {}, p[kWords] = {};
#pragma GCC unroll 64
    for (int k = 0; k < K; ++k) {
        const __m512i carry = _mm512_srli_epi64(acc[k], 52);
        acc[k] =
            _mm512_add_epi64(_mm512_and_si512(acc[k], mask), _mm512_alignr_epi64(carry, below, 7));
        below = carry;
        g[k / 8] |= uint64_t(_mm512_cmpgt_epu64_mask(acc[k], mask)) << (8 * (k % 8));
        p[k / 8] |= uint64_t(_mm512_cmpeq_epu64_mask(acc[k], mask)) << (8 * (k % 8));
    }
    uint64_t in[kWords], shifted = 0, sumCarry = 0;
    for (int w = 0; w < kWords; ++w) {  // in := ((g << 1) + p) ^ p over the words
        const uint64_t gs = (g[w] << 1) | shifted;
        shifted = g[w] >> 63;
        const unsigned __int128 sum = static_cast<unsigned __int128>(gs) + p[w] + sumCarry;
        sumCarry = static_cast<uint64_t>(sum >> 64);
        in[w] = static_cast<uint64_t>(sum) ^ p[w];
    }
    const __m512i one = _mm512_set1_epi64(1);
#pragma GCC unroll 64
    for (int k = 0; k < K; ++k) {
        const auto bits = static_cast<__mmask8>((in[k / 8] >> (8 * (k % 8))) & 0xFF);
        const __m512i d = _mm512_and_si512(_mm512_mask_add_epi64(acc[k], bits, acc[k], one), mask);
        _mm512_storeu_si512(r + 8 * k, d);
    }
}

// The operands of a product for rows in blocks of eight: a and m moved up
// r = 0 … 8 places over K + 1 vectors (lane j of vector k of copy r is
// digit 8k + j − r), and the two lowest digits of each for the scalar side.
template <int K>
struct Shifted {
    __m512i A[9][K + 1], M[9][K + 1];
    uint64_t a0, a1, m0, m1, k0;
    static void Copies(const uint64_t* x, __m512i (*out)[K + 1]) {
        __m512i v[K + 2];
        v[0] = _mm512_setzero_si512();
#pragma GCC unroll 64
        for (int k = 0; k < K; ++k) v[k + 1] = _mm512_loadu_si512(x + 8 * k);
        v[K + 1] = _mm512_setzero_si512();
#pragma GCC unroll 64
        for (int k = 0; k <= K; ++k) {
            out[0][k] = v[k + 1];
            out[1][k] = _mm512_alignr_epi64(v[k + 1], v[k], 7);
            out[2][k] = _mm512_alignr_epi64(v[k + 1], v[k], 6);
            out[3][k] = _mm512_alignr_epi64(v[k + 1], v[k], 5);
            out[4][k] = _mm512_alignr_epi64(v[k + 1], v[k], 4);
            out[5][k] = _mm512_alignr_epi64(v[k + 1], v[k], 3);
            out[6][k] = _mm512_alignr_epi64(v[k + 1], v[k], 2);
            out[7][k] = _mm512_alignr_epi64(v[k + 1], v[k], 1);
            out[8][k] = v[k];
        }
    }
    Shifted(const uint64_t* a, const uint64_t* m, uint64_t k)
        : a0(a[0]), a1(a[1]), m0(m[0]), m1(m[1]), k0(k) {
        Copies(a, A);
        Copies(m, M);
    }
};

// Row R of a block of eight: acc (K + 1 vectors, digit R of the block's
// first vector the lowest live one) += a s + y m, the products placed by the
// shifted copies, so that no row moves the accumulator; the block moves it
// one vector at its end.
template <int K, int R>
inline void BlockRow(__m512i* acc, const Shifted<K>& o, uint64_t s, uint64_t& x0) {
    const __m128i part = _mm512_extracti32x4_epi32(R == 7 ? acc[1] : acc[0], ((R + 1) % 8) / 2);
    const auto next = static_cast<uint64_t>(_mm_extract_epi64(part, (R + 1) % 2));
    const __m512i S = _mm512_set1_epi64(static_cast<long long>(s));
#pragma GCC unroll 64
    for (int k = 0; k <= K; ++k) {
        acc[k] = _mm512_madd52lo_epu64(acc[k], o.A[R][k], S);
        acc[k] = _mm512_madd52hi_epu64(acc[k], o.A[R + 1][k], S);
    }
    const uint64_t t0 = x0 + Lo(o.a0, s);
    const uint64_t y = (t0 * o.k0) & kMask;
    const __m512i Y = _mm512_set1_epi64(static_cast<long long>(y));
#pragma GCC unroll 64
    for (int k = 0; k <= K; ++k) {
        acc[k] = _mm512_madd52lo_epu64(acc[k], o.M[R][k], Y);
        acc[k] = _mm512_madd52hi_epu64(acc[k], o.M[R + 1][k], Y);
    }
    const uint64_t carry = (t0 + Lo(o.m0, y)) >> 52;
    x0 = next + Lo(o.a1, s) + Hi(o.a0, s) + Lo(o.m1, y) + Hi(o.m0, y) + carry;
}

// The row for many vectors, where the products' throughput bounds the time
// rather than the wait for y, and the shifted copies would crowd the first
// level cache: the low halves before the shift, the high ones after it, y
// from the lowest lane.
template <int K>
inline void WideRow(__m512i* acc, const __m512i* A, const __m512i* M, uint64_t a0, uint64_t m0,
                    uint64_t s, uint64_t k0, uint64_t& x0) {
    const uint64_t t0 = x0 + Lo(a0, s);
    const uint64_t y = (t0 * k0) & kMask;
    const uint64_t carry = (t0 + Lo(m0, y)) >> 52;
    const __m512i S = _mm512_set1_epi64(static_cast<long long>(s));
    const __m512i Y = _mm512_set1_epi64(static_cast<long long>(y));
#pragma GCC unroll 64
    for (int k = 0; k < K; ++k) {
        acc[k] = _mm512_madd52lo_epu64(acc[k], A[k], S);
        acc[k] = _mm512_madd52lo_epu64(acc[k], M[k], Y);
    }
#pragma GCC unroll 64
    for (int k = 0; k + 1 < K; ++k) acc[k] = _mm512_alignr_epi64(acc[k + 1], acc[k], 1);
    acc[K - 1] = _mm512_alignr_epi64(_mm512_setzero_si512(), acc[K - 1], 1);
#pragma GCC unroll 64
    for (int k = 0; k < K; ++k) {
        acc[k] = _mm512_madd52hi_epu64(acc[k], A[k], S);
        acc[k] = _mm512_madd52hi_epu64(acc[k], M[k], Y);
    }
    x0 = static_cast<uint64_t>(_mm_cvtsi128_si64(_mm512_castsi512_si128(acc[0]))) + carry;
}

// Blocks of eight rows up to ten vectors, WideRow beyond.
template <int K>
void Mul(const uint64_t* a, const uint64_t* b, const uint64_t* m, uint64_t k0, uint64_t* r) {
    uint64_t x0 = 0;
    if constexpr (K <= 10) {
        const Shifted<K> o(a, m, k0);
        __m512i acc[K + 1];
#pragma GCC unroll 64
        for (int k = 0; k <= K; ++k) acc[k] = _mm512_setzero_si512();
        for (int i = 0; i < 8 * K; i += 8) {
            BlockRow<K, 0>(acc, o, b[i], x0);
            BlockRow<K, 1>(acc, o, b[i + 1], x0);
            BlockRow<K, 2>(acc, o, b[i + 2], x0);
            BlockRow<K, 3>(acc, o, b[i + 3], x0);
            BlockRow<K, 4>(acc, o, b[i + 4], x0);
            BlockRow<K, 5>(acc, o, b[i + 5], x0);
            BlockRow<K, 6>(acc, o, b[i + 6], x0);
            BlockRow<K, 7>(acc, o, b[i + 7], x0);
#pragma GCC unroll 64
            for (int k = 0; k < K; ++k) acc[k] = acc[k + 1];
            acc[K] = _mm512_setzero_si512();
        }
        Normalise<K>(acc, x0, r);
    } else {
        __m512i A[K], M[K], acc[K];
#pragma GCC unroll 64
        for (int k = 0; k < K; ++k) {
            A[k] = _mm512_loadu_si512(a + 8 * k);
            M[k] = _mm512_loadu_si512(m + 8 * k);
            acc[k] = _mm512_setzero_si512();
        }
        for (int i = 0; i < 8 * K; ++i) WideRow<K>(acc, A, M, a[0], m[0], b[i], k0, x0);
        Normalise<K>(acc, x0, r);
    }
}

template <size_t... I>
constexpr auto Table(std::index_sequence<I...>) {
    struct T {
        IfmaMontKernels k[sizeof...(I)];
    };
    return T{{IfmaMontKernels{Mul<int(I) + 1>}...}};
}

constexpr auto kKernels = Table(std::make_index_sequence<kIfmaMaxVectors>());

}  // namespace

#pragma GCC diagnostic pop
#pragma GCC pop_options

const IfmaMontKernels* IfmaMont(int vectors) {
    static const bool has =
        __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512ifma");
    if (!has || vectors < 1 || vectors > kIfmaMaxVectors) return nullptr;
    return &kKernels.k[vectors - 1];
}

#else

const IfmaMontKernels* IfmaMont(int) { return nullptr; }

#endif
