// Sums and differences of limb arrays sixteen limbs to a register with AVX2,
// compiled for that instruction set alone and chosen at run time only where
// the processor has it.
//
// Every limb of both inputs is 0..9999, so a lane sum is 0..19998 and a
// difference −9999..9999, each in a signed 16-bit lane. The carries between
// lanes come from two bit masks over 64 limbs: G, lanes that generate a carry
// (sum above 9999) and P, lanes that pass one on (sum exactly 9999; never also
// in G). One 64-bit addition resolves every chain of 9999s at once: the
// carries in are ((G << 1 | c) + P) ^ P, and the carry out of the block is
// G's top bit or the addition's own carry. A lane then gains its carry and
// loses 10000 when it reaches 10000, so each output limb is 0..9999 again.
// Borrows are the same with G the negative differences and P the zero ones.
// Most blocks of unrelated limbs hold no chain at all, so each block of 64
// is first tried with every lane reduced on its own and its carry handed to
// the next lane; a block where that leaves a lane out of range is done again
// by the masks before anything is stored.
#include "bigint/add_kernels.h"

// Only GCC builds this kernel, as for the transform's (its per-function target
// pragma and __builtin_cpu_supports); other compilers take the portable sums.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)

#pragma GCC push_options
#pragma GCC target("avx2,bmi2")
#include <immintrin.h>

namespace {

constexpr uint64_t kEvenBits = 0x5555555555555555ull;

inline __m256i Load(const Limb* p) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

// Lane i of the result is all ones when bit i of bits is set.
inline __m256i Spread(uint32_t bits) {
    const __m256i select = _mm256_setr_epi16(1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048,
                                             4096, 8192, 16384, -32768);
    const __m256i v = _mm256_set1_epi16(static_cast<int16_t>(bits));
    return _mm256_cmpeq_epi16(_mm256_and_si256(v, select), select);
}

// kRegs registers of lanes: d[0..16·kRegs) := a + b + carry, or with kSub
// a − b − borrow. Answers the carry or borrow out.
template <int kRegs, bool kSub>
inline uint64_t Block(const Limb* a, const Limb* b, Limb* d, uint64_t carry) {
    const __m256i nines = _mm256_set1_epi16(9999), base = _mm256_set1_epi16(10000);
    const __m256i zero = _mm256_setzero_si256();
    __m256i s[kRegs];
    uint64_t g = 0, p = 0;
    for (int k = 0; k < kRegs; k += 2) {
        // movemask gives two bits a lane; the even ones are kept, 32 lanes per pext.
        uint64_t gw = 0, pw = 0;
        for (int j = 0; j < 2 && k + j < kRegs; ++j) {
            const __m256i x = Load(a + 16 * (k + j)), y = Load(b + 16 * (k + j));
            const __m256i v = kSub ? _mm256_sub_epi16(x, y) : _mm256_add_epi16(x, y);
            const __m256i gv = kSub ? _mm256_cmpgt_epi16(zero, v) : _mm256_cmpgt_epi16(v, nines);
            const __m256i pv = _mm256_cmpeq_epi16(v, kSub ? zero : nines);
            gw |= static_cast<uint64_t>(static_cast<uint32_t>(_mm256_movemask_epi8(gv)))
                  << (32 * j);
            pw |= static_cast<uint64_t>(static_cast<uint32_t>(_mm256_movemask_epi8(pv)))
                  << (32 * j);
            s[k + j] = v;
        }
        g |= _pext_u64(gw, kEvenBits) << (16 * k);
        p |= _pext_u64(pw, kEvenBits) << (16 * k);
    }
    // A carry that runs through lane 15 or 63 finds no generated one above it
    // (lanes in P are not in G), so the sum's next bit is the carry out; on
    // 64 lanes that bit is lost to the shift and the addition.
    const uint64_t x = (g << 1) | carry;
    const uint64_t sum = x + p;
    const uint64_t out = kRegs == 4 ? (g >> 63) | static_cast<uint64_t>(sum < x) : sum >> 16;
    const uint64_t in = sum ^ p;
    for (int k = 0; k < kRegs; ++k) {
        const __m256i c = Spread(static_cast<uint32_t>(in >> (16 * k)) & 0xFFFFu);
        // A sum r is 0..19999: as unsigned, r − 10000 is below r exactly when
        // r ≥ 10000. A difference r is −10000..9999: r + 10000 is below r
        // exactly when r < 0.
        const __m256i r = kSub ? _mm256_add_epi16(s[k], c) : _mm256_sub_epi16(s[k], c);
        const __m256i wrapped = kSub ? _mm256_add_epi16(r, base) : _mm256_sub_epi16(r, base);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 16 * k), _mm256_min_epu16(r, wrapped));
    }
    return out;
}

// The same 64 limbs the quick way, taken when no chain is longer than one
// lane, as in nearly every block of unrelated limbs: each lane is reduced on
// its own and its carry added to the next lane (the generate lanes shifted up
// one). Only a lane that was 9999 and gained a carry (10000), or was 0 and
// lost a borrow (−1), needs the masks; then nothing is stored and the answer
// is false.
template <bool kSub>
inline bool QuickBlock(const Limb* a, const Limb* b, Limb* d, uint64_t* carry) {
    const __m256i nines = _mm256_set1_epi16(9999), base = _mm256_set1_epi16(10000);
    const __m256i zero = _mm256_setzero_si256();
    // Lane 15 of prev holds the carry into lane 0.
    __m256i prev = _mm256_insert_epi16(zero, -static_cast<int16_t>(*carry), 15);
    __m256i r[4], bad = zero;
    for (int k = 0; k < 4; ++k) {
        const __m256i x = Load(a + 16 * k), y = Load(b + 16 * k);
        const __m256i v = kSub ? _mm256_sub_epi16(x, y) : _mm256_add_epi16(x, y);
        const __m256i g = kSub ? _mm256_cmpgt_epi16(zero, v) : _mm256_cmpgt_epi16(v, nines);
        const __m256i own = kSub ? _mm256_min_epu16(v, _mm256_add_epi16(v, base))
                                 : _mm256_min_epu16(v, _mm256_sub_epi16(v, base));
        const __m256i in = _mm256_alignr_epi8(g, _mm256_permute2x128_si256(prev, g, 0x21), 14);
        r[k] = kSub ? _mm256_add_epi16(own, in) : _mm256_sub_epi16(own, in);
        bad = _mm256_or_si256(
            bad, _mm256_cmpeq_epi16(r[k], kSub ? _mm256_cmpeq_epi16(zero, zero) : base));
        prev = g;
    }
    if (!_mm256_testz_si256(bad, bad)) return false;
    for (int k = 0; k < 4; ++k) _mm256_storeu_si256(reinterpret_cast<__m256i*>(d + 16 * k), r[k]);
    *carry = static_cast<uint32_t>(_mm256_movemask_epi8(prev)) >> 31;
    return true;
}

template <bool kSub>
int Lanes(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry) {
    auto c = static_cast<uint64_t>(carry);
    int32_t i = 0;
    for (; i + 64 <= n; i += 64)
        if (!QuickBlock<kSub>(a + i, b + i, d + i, &c)) c = Block<4, kSub>(a + i, b + i, d + i, c);
    for (; i < n; i += 16) c = Block<1, kSub>(a + i, b + i, d + i, c);
    return static_cast<int>(c);
}

const LaneKernels kAvx2 = {Lanes<false>, Lanes<true>};

}  // namespace

#pragma GCC pop_options

const LaneKernels* Avx2LaneKernels() {
    __builtin_cpu_init();  // may run before the constructors that would call it
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2") ? &kAvx2 : nullptr;
}

#else

const LaneKernels* Avx2LaneKernels() { return nullptr; }

#endif
