// Montgomery products on 52-bit digits, eight to a register, with the
// AVX-512 IFMA products (52 × 52 bits, low or high half added to a 64-bit
// lane), compiled for that instruction set alone and chosen at run time only
// where the processor has it.
//
// Method: operand scanning with the reduction interleaved. Row i adds
// a · b[i] and y · m, y = −t0/m mod 2^52 chosen so that the lowest digit
// vanishes, then shifts the accumulator down one digit. The low halves of
// the products go in before the shift, the high halves after it; the lowest
// digit is tracked in a scalar so that y does not wait for the vector lane,
// and its carry joins the next one there. Digits are not normalised between
// rows: each row adds at most four values below 2^52 to a digit, so 8K rows
// stay below 2^(52 + 2 + log2(8K)) < 2^64 for K <= 16, and one carry pass at
// the end brings them below 2^52. With a, b < 2m and 4m < R the result
// (a b + Y m) / R is below 2m.
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

// r[0..8K) := the accumulator's digits with their carries passed up; the
// lowest digit is x0 (its lane 0 is stale).
template <int K>
inline void Normalise(const __m512i* acc, uint64_t x0, uint64_t* r) {
    alignas(64) uint64_t u[8 * K];
    for (int k = 0; k < K; ++k) _mm512_store_si512(reinterpret_cast<__m512i*>(u + 8 * k), acc[k]);
    u[0] = x0;
    uint64_t carry = 0;
    for (int k = 0; k < 8 * K; ++k) {
        const uint64_t d = u[k] + carry;
        r[k] = d & kMask;
        carry = d >> 52;
    }
}

// One row: acc := (acc + a s + y m) / 2^52 with y from the lowest digit x0,
// which is updated to the new lowest digit (its lane is left stale).
template <int K>
inline void Row(__m512i* acc, const __m512i* A, const __m512i* M, uint64_t a0, uint64_t m0,
                uint64_t s, uint64_t k0, uint64_t& x0) {
    const uint64_t t0 = x0 + ((a0 * s) & kMask);
    const uint64_t y = (t0 * k0) & kMask;
    const uint64_t carry = (t0 + ((m0 * y) & kMask)) >> 52;
    const __m512i S = _mm512_set1_epi64(static_cast<long long>(s));
    const __m512i Y = _mm512_set1_epi64(static_cast<long long>(y));
    for (int k = 0; k < K; ++k) {
        acc[k] = _mm512_madd52lo_epu64(acc[k], A[k], S);
        acc[k] = _mm512_madd52lo_epu64(acc[k], M[k], Y);
    }
    for (int k = 0; k + 1 < K; ++k) acc[k] = _mm512_alignr_epi64(acc[k + 1], acc[k], 1);
    acc[K - 1] = _mm512_alignr_epi64(_mm512_setzero_si512(), acc[K - 1], 1);
    for (int k = 0; k < K; ++k) {
        acc[k] = _mm512_madd52hi_epu64(acc[k], A[k], S);
        acc[k] = _mm512_madd52hi_epu64(acc[k], M[k], Y);
    }
    x0 = static_cast<uint64_t>(_mm_cvtsi128_si64(_mm512_castsi512_si128(acc[0]))) + carry;
}

template <int K>
void Mul(const uint64_t* a, const uint64_t* b, const uint64_t* m, uint64_t k0, uint64_t* r) {
    __m512i A[K], M[K], acc[K];
    for (int k = 0; k < K; ++k) {
        A[k] = _mm512_loadu_si512(a + 8 * k);
        M[k] = _mm512_loadu_si512(m + 8 * k);
        acc[k] = _mm512_setzero_si512();
    }
    const uint64_t a0 = a[0], m0 = m[0];
    uint64_t x0 = 0;
    for (int i = 0; i < 8 * K; ++i) Row<K>(acc, A, M, a0, m0, b[i], k0, x0);
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
