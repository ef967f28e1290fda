// Sums and differences of limb arrays 32 limbs to a register with AVX-512
// (BW), compiled for that instruction set alone and chosen at run time only
// where the processor has it. The method is the AVX2 kernel's (add_avx2.cpp):
// lanes of limbs 0..9999, a 64-bit generate mask and propagate mask over 64
// limbs, the carries or borrows in from ((G << 1 | c) + P) ^ P; here the
// masks come straight from the compares and the carries go back in through a
// mask register.
#include "bigint/add_kernels.h"

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)

#pragma GCC push_options
#pragma GCC target("avx512f,avx512bw")
#include <immintrin.h>

namespace {

// d[0..lanes) := a + b + carry, or with kSub a − b − borrow, in kRegs
// registers, lanes up to 32·kRegs (the lanes past it in the last register are
// neither read nor written). Answers the carry or borrow out.
template <int kRegs, bool kSub>
inline uint64_t Block(const Limb* a, const Limb* b, Limb* d, uint64_t carry, int lanes) {
    const __m512i nines = _mm512_set1_epi16(9999), base = _mm512_set1_epi16(10000);
    const __m512i ones = _mm512_set1_epi16(1), zero = _mm512_setzero_si512();
    __m512i s[kRegs];
    __mmask32 used[kRegs];
    uint64_t g = 0, p = 0;
    for (int k = 0; k < kRegs; ++k) {
        const int inside = lanes - 32 * k;
        used[k] = inside >= 32 ? ~__mmask32{0} : (__mmask32{1} << inside) - 1;
        const __m512i x = _mm512_maskz_loadu_epi16(used[k], a + 32 * k);
        const __m512i y = _mm512_maskz_loadu_epi16(used[k], b + 32 * k);
        s[k] = kSub ? _mm512_sub_epi16(x, y) : _mm512_add_epi16(x, y);
        // Lanes past the end read as 0, which would pass a borrow on: not in P.
        const __mmask32 gk =
            kSub ? _mm512_cmplt_epi16_mask(s[k], zero) : _mm512_cmpgt_epi16_mask(s[k], nines);
        const __mmask32 pk = _mm512_mask_cmpeq_epi16_mask(used[k], s[k], kSub ? zero : nines);
        g |= static_cast<uint64_t>(gk) << (32 * k);
        p |= static_cast<uint64_t>(pk) << (32 * k);
    }
    // Lanes in P are never in G, so a carry that runs through the last lane
    // lands in the sum's next bit; on 64 lanes that bit is lost to the shift
    // and the addition.
    const uint64_t x = (g << 1) | carry;
    const uint64_t sum = x + p;
    const uint64_t out =
        lanes == 64 ? (g >> 63) | static_cast<uint64_t>(sum < x) : (sum >> lanes) & 1u;
    const uint64_t in = sum ^ p;
    for (int k = 0; k < kRegs; ++k) {
        const auto carries = static_cast<__mmask32>(in >> (32 * k));
        // A sum r is 0..19999: as unsigned, r − 10000 is below r exactly when
        // r ≥ 10000. A difference r is −10000..9999: r + 10000 is below r
        // exactly when r < 0.
        const __m512i r = kSub ? _mm512_mask_sub_epi16(s[k], carries, s[k], ones)
                               : _mm512_mask_add_epi16(s[k], carries, s[k], ones);
        const __m512i wrapped = kSub ? _mm512_add_epi16(r, base) : _mm512_sub_epi16(r, base);
        _mm512_mask_storeu_epi16(d + 32 * k, used[k], _mm512_min_epu16(r, wrapped));
    }
    return out;
}

template <bool kSub>
int Lanes(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry) {
    auto c = static_cast<uint64_t>(carry);
    int32_t i = 0;
    for (; i + 64 <= n; i += 64) c = Block<2, kSub>(a + i, b + i, d + i, c, 64);
    for (; i < n; i += 32) c = Block<1, kSub>(a + i, b + i, d + i, c, n - i < 32 ? n - i : 32);
    return static_cast<int>(c);
}

const LaneKernels kAvx512 = {Lanes<false>, Lanes<true>};

}  // namespace

#pragma GCC pop_options

const LaneKernels* Avx512LaneKernels() {
    __builtin_cpu_init();  // may run before the constructors that would call it
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") ? &kAvx512
                                                                                   : nullptr;
}

#else

const LaneKernels* Avx512LaneKernels() { return nullptr; }

#endif
