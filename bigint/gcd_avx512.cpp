// The body of Lehmer's combination pass (gcd_lehmer.cpp) eight words of
// 10^8 to a register with AVX-512 (F and DQ), compiled for that instruction
// set alone and chosen at run time only where the processor has it.
//
// The cofactors (at most 10^18) go in three base-W digits (W = 10^8), so
// that each lane's term T = a0·x_i + a1·x_(i−1) + a2·x_(i−2) + (b likewise)
// takes six signed 32-bit products, and |T| < 2^56. The serial carry is
// taken apart in three rounds: T = H·W + L with 0 <= L < W (the quotient
// from a double, corrected by one), then U_i = L_i + H_(i−1) likewise into
// H2·W + L2 with |H2| <= 5, then V_i = L2_i + H2_(i−1), in [−5, W + 5).
// Only V's carries (−1, 0 or 1) run from word to word, in a scalar loop for
// the rare register where some V falls outside [0, W). The carry into the
// first word past the body is H + H2 + that carry + a2·x_(k−2) + b2·y_(k−2)
// (the one term the scalar pass's two digits do not take on there), below
// 2.1·10^10 in magnitude.
#include "bigint/gcd_lehmer.h"

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)

#pragma GCC push_options
#pragma GCC target("avx512f,avx512dq")
// GCC 12's AVX-512 headers fill unused operands from a self-initialised
// variable, which -Wuninitialized reports at every inlined use.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <immintrin.h>

namespace {

constexpr int64_t kWord = 100000000;

// v = h·W + l with 0 <= l < W, for |v| < 2^60 and |h| < 2^31: the
// double's quotient is off by at most one either way.
inline void Split(__m512i v, __m512i* h, __m512i* l) {
    const __m512i w = _mm512_set1_epi64(kWord);
    const __m512d q =
        _mm512_roundscale_pd(_mm512_mul_pd(_mm512_cvtepi64_pd(v), _mm512_set1_pd(1e-8)),
                             _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC);
    __m512i hi = _mm512_cvttpd_epi64(q);
    __m512i lo = _mm512_sub_epi64(v, _mm512_mul_epi32(hi, w));
    const __m512i one = _mm512_set1_epi64(1);
    const __mmask8 low = _mm512_cmplt_epi64_mask(lo, _mm512_setzero_si512());
    lo = _mm512_mask_add_epi64(lo, low, lo, w);
    hi = _mm512_mask_sub_epi64(hi, low, hi, one);
    const __mmask8 high = _mm512_cmpge_epi64_mask(lo, w);
    lo = _mm512_mask_sub_epi64(lo, high, lo, w);
    hi = _mm512_mask_add_epi64(hi, high, hi, one);
    *h = hi;
    *l = lo;
}

// A register of words with its serial carry, −1, 0 or 1, in from the
// previous one: out[0 … 8) and the carry out.
inline void Store(__m512i v, int64_t* carry, uint32_t* out) {
    const __m512i w = _mm512_set1_epi64(kWord), zero = _mm512_setzero_si512();
    const __mmask8 outside = _mm512_cmplt_epi64_mask(v, zero) | _mm512_cmpge_epi64_mask(v, w);
    if (outside == 0 && *carry == 0) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm512_cvtepi64_epi32(v));
        return;
    }
    alignas(64) int64_t lanes[8];
    _mm512_store_si512(lanes, v);
    for (int j = 0; j < 8; ++j) {
        int64_t d = lanes[j] + *carry;
        *carry = d < 0 ? -1 : d >= kWord ? 1 : 0;
        d -= *carry * kWord;
        out[j] = uint32_t(d);
    }
}

// One combination's digits and carries between registers.
struct Lane {
    __m512i d0, e0, d1, e1, d2, e2;  // A's three digits, B's
    __m512i h = _mm512_setzero_si512(), h2 = _mm512_setzero_si512();
    int64_t carry = 0;
    int64_t a2, b2;

    Lane(int64_t al, int64_t bl, int64_t ah, int64_t bh) : a2(ah / kWord), b2(bh / kWord) {
        d0 = _mm512_set1_epi64(al);
        e0 = _mm512_set1_epi64(bl);
        d1 = _mm512_set1_epi64(ah % kWord);
        e1 = _mm512_set1_epi64(bh % kWord);
        d2 = _mm512_set1_epi64(a2);
        e2 = _mm512_set1_epi64(b2);
    }
    // |T| < 2·(2·10^16 + 10^10) < 2^56.
    void Step(__m512i x0, __m512i x1, __m512i x2, __m512i y0, __m512i y1, __m512i y2,
              uint32_t* out) {
        const __m512i t = _mm512_add_epi64(
            _mm512_add_epi64(_mm512_add_epi64(_mm512_mul_epi32(d0, x0), _mm512_mul_epi32(e0, y0)),
                             _mm512_add_epi64(_mm512_mul_epi32(d1, x1), _mm512_mul_epi32(e1, y1))),
            _mm512_add_epi64(_mm512_mul_epi32(d2, x2), _mm512_mul_epi32(e2, y2)));
        __m512i hi, lo, hi2, lo2;
        Split(t, &hi, &lo);
        const __m512i u = _mm512_add_epi64(lo, _mm512_alignr_epi64(hi, h, 7));
        h = hi;
        Split(u, &hi2, &lo2);
        const __m512i v = _mm512_add_epi64(lo2, _mm512_alignr_epi64(hi2, h2, 7));
        h2 = hi2;
        Store(v, &carry, out);
    }
    // The carry into word k, where the scalar pass goes on with
    // Ah·x_(k−1) + Bh·y_(k−1): it lacks a2·x_(k−2) + b2·y_(k−2).
    int64_t CarryOut(const uint32_t* x, const uint32_t* y, int32_t k) const {
        alignas(64) int64_t hs[8], h2s[8];
        _mm512_store_si512(hs, h);
        _mm512_store_si512(h2s, h2);
        return hs[7] + h2s[7] + carry + a2 * int64_t(x[k - 2]) + b2 * int64_t(y[k - 2]);
    }
};

// s and t of the header's contract, both combinations in one pass so that
// their chains overlap.
void Combine(const int64_t* cof, const uint32_t* x, const uint32_t* y, int32_t k, uint32_t* s,
             uint32_t* t, int64_t* carries) {
    Lane first(cof[0], cof[1], cof[2], cof[3]), second(cof[4], cof[5], cof[6], cof[7]);
    __m512i xPrev = _mm512_setzero_si512(), yPrev = _mm512_setzero_si512();
    for (int32_t i = 0; i < k; i += 8) {
        const __m512i xv =
            _mm512_cvtepu32_epi64(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(x + i)));
        const __m512i yv =
            _mm512_cvtepu32_epi64(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(y + i)));
        const __m512i x1 = _mm512_alignr_epi64(xv, xPrev, 7),
                      x2 = _mm512_alignr_epi64(xv, xPrev, 6);
        const __m512i y1 = _mm512_alignr_epi64(yv, yPrev, 7),
                      y2 = _mm512_alignr_epi64(yv, yPrev, 6);
        xPrev = xv;
        yPrev = yv;
        first.Step(xv, x1, x2, yv, y1, y2, s + i);
        second.Step(xv, x1, x2, yv, y1, y2, t + i);
    }
    carries[0] = first.CarryOut(x, y, k);
    carries[1] = second.CarryOut(x, y, k);
}

}  // namespace

#pragma GCC diagnostic pop
#pragma GCC pop_options

LehmerCombineBody Avx512LehmerCombine() {
    __builtin_cpu_init();  // may run before the constructors that would call it
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") ? Combine
                                                                                   : nullptr;
}

#else

LehmerCombineBody Avx512LehmerCombine() { return nullptr; }

#endif
