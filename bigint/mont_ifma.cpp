// Montgomery products on 52-bit digits, eight to a register, with the
// AVX-512 IFMA products (52 × 52 bits, low or high half added to a 64-bit
// lane), compiled for that instruction set alone and chosen at run time only
// where the processor has it.
//
// Method: operand scanning with the reduction interleaved. Row i adds
// a · b[i] and y · m, y = −t0/m mod 2^52 chosen so that the lowest digit
// vanishes, then shifts the accumulator down one digit. The lowest digits
// are tracked in scalars, so that y does not wait for the vector lane (Row,
// up to ten vectors, where that wait bounds the time; WideRow beyond, where
// the products' throughput does). Digits are not normalised between rows:
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

// The digits one place up: lane j of result k is digit 8k + j − 1.
template <int K>
inline void Up(const __m512i* x, __m512i* up) {
    up[0] = _mm512_alignr_epi64(x[0], _mm512_setzero_si512(), 7);
#pragma GCC unroll 64
    for (int k = 1; k < K; ++k) up[k] = _mm512_alignr_epi64(x[k], x[k - 1], 7);
}

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

// The operands of a product: a and m with their digits moved up one place,
// and the two lowest digits of each for the scalar side.
template <int K>
struct Operands {
    __m512i A[K + 1], Au[K], M[K + 1], Mu[K];  // A[K], M[K]: the top digit in lane 0
    uint64_t a0, a1, m0, m1, k0;
    Operands(const uint64_t* a, const uint64_t* m, uint64_t k)
        : a0(a[0]), a1(a[1]), m0(m[0]), m1(m[1]), k0(k) {
        for (int i = 0; i < K; ++i) {
            A[i] = _mm512_loadu_si512(a + 8 * i);
            M[i] = _mm512_loadu_si512(m + 8 * i);
        }
        Up<K>(A, Au);
        Up<K>(M, Mu);
        A[K] = _mm512_alignr_epi64(_mm512_setzero_si512(), A[K - 1], 7);
        M[K] = _mm512_alignr_epi64(_mm512_setzero_si512(), M[K - 1], 7);
    }
};

// One row: acc := (acc + a s + y m) / 2^52, y making the lowest digit x0
// vanish. Both halves of every product go in before the shift (the high
// ones through the operands moved up). The next lowest digit is reckoned in
// scalars from lane 1 as the row found it, so that the next y waits on the
// scalar products only, not on the vector row.
template <int K>
inline void Row(__m512i* acc, const Operands<K>& o, uint64_t s, uint64_t& x0) {
    const uint64_t lane1 =
        static_cast<uint64_t>(_mm_extract_epi64(_mm512_castsi512_si128(acc[0]), 1));
    const __m512i S = _mm512_set1_epi64(static_cast<long long>(s));
    for (int k = 0; k < K; ++k) {
        acc[k] = _mm512_madd52lo_epu64(acc[k], o.A[k], S);
        acc[k] = _mm512_madd52hi_epu64(acc[k], o.Au[k], S);
    }
    const uint64_t t0 = x0 + Lo(o.a0, s);
    const uint64_t y = (t0 * o.k0) & kMask;
    const __m512i Y = _mm512_set1_epi64(static_cast<long long>(y));
    for (int k = 0; k < K; ++k) {
        acc[k] = _mm512_madd52lo_epu64(acc[k], o.M[k], Y);
        acc[k] = _mm512_madd52hi_epu64(acc[k], o.Mu[k], Y);
    }
    __m512i top = _mm512_madd52hi_epu64(_mm512_setzero_si512(), o.A[K], S);
    top = _mm512_madd52hi_epu64(top, o.M[K], Y);
    for (int k = 0; k + 1 < K; ++k) acc[k] = _mm512_alignr_epi64(acc[k + 1], acc[k], 1);
    acc[K - 1] = _mm512_alignr_epi64(top, acc[K - 1], 1);
    const uint64_t carry = (t0 + Lo(o.m0, y)) >> 52;
    x0 = lane1 + Lo(o.a1, s) + Hi(o.a0, s) + Lo(o.m1, y) + Hi(o.m0, y) + carry;
}

// The row for many vectors, where the products' throughput bounds the time
// rather than the wait for y, and four operand sets would not fit the
// registers: the low halves before the shift, the high ones after it, y
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

constexpr int kWideRows = 11;  // vectors from which WideRow is the faster

template <int K>
void Mul(const uint64_t* a, const uint64_t* b, const uint64_t* m, uint64_t k0, uint64_t* r) {
    uint64_t x0 = 0;
    __m512i acc[K];
#pragma GCC unroll 64
    for (int k = 0; k < K; ++k) acc[k] = _mm512_setzero_si512();
    if constexpr (K >= kWideRows) {
        __m512i A[K], M[K];
        for (int k = 0; k < K; ++k) {
            A[k] = _mm512_loadu_si512(a + 8 * k);
            M[k] = _mm512_loadu_si512(m + 8 * k);
        }
        for (int i = 0; i < 8 * K; ++i) WideRow<K>(acc, A, M, a[0], m[0], b[i], k0, x0);
        Normalise<K>(acc, x0, r);
        return;
    }
    const Operands<K> o(a, m, k0);
    for (int i = 0; i < 8 * K; ++i) Row<K>(acc, o, b[i], x0);
    Normalise<K>(acc, x0, r);
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
