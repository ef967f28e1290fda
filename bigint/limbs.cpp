// Limb-array primitives on raw arrays and top indices. Callers size the
// arrays; the contracts above each function say how much room is needed.
#include <cassert>
#include <cstring>
#if defined(__x86_64__)
#include <x86intrin.h>
#endif
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "bigint/add_kernels.h"
#include "bigint/internal.h"

// Sign of |b| - |a|. Trusts the tops: meant for normalised arrays, so a top
// limb of 10000 left by LimbsAdd compares as the array it is, not its value.
int LimbsCompare(const Limb* a, const Limb* b, int32_t ta, int32_t tb) {
    if (tb > ta) return 1;
    if (ta > tb) return -1;
    int32_t i = ta;
    while (i > 0 && a[i] == b[i]) --i;
    if (b[i] > a[i]) return 1;
    if (a[i] > b[i]) return -1;
    return 0;
}

namespace {

// Four limbs at a time in one 64-bit word: each limb of b is biased by
// 10000 - 65536 first, so a 16-bit lane overflows exactly when its limb sum
// reaches 10000 and the machine carry runs from lane to lane as the decimal
// carry does. Lanes that did not overflow are unbiased afterwards. Valid only
// while every limb of both words is 0..9999, which holds below both tops.
constexpr uint64_t kLaneBias = 0xD8F0D8F0D8F0D8F0ull;  // 55536 in each lane
constexpr uint64_t kLaneLow = 0x0001000100010001ull;

inline uint64_t LoadWord(const Limb* p) {
    uint64_t w;
    std::memcpy(&w, p, sizeof w);
    return w;
}

inline void StoreWord(Limb* p, uint64_t w) { std::memcpy(p, &w, sizeof w); }

#if defined(__x86_64__)
// One add-with-carry instruction, so the carry chain costs a cycle a word.
inline uint64_t AddWithCarry(uint64_t x, uint64_t y, uint64_t carry, uint64_t* sum) {
    unsigned long long s;
    const unsigned char out = _addcarry_u64(static_cast<unsigned char>(carry), x, y, &s);
    *sum = s;
    return out;
}
#else
inline uint64_t AddWithCarry(uint64_t x, uint64_t y, uint64_t carry, uint64_t* sum) {
    const uint64_t partial = x + y;
    *sum = partial + carry;
    return static_cast<uint64_t>(partial < x) | static_cast<uint64_t>(*sum < partial);
}
#endif

// d[0..n) := a + b + carry over n limbs, n a multiple of 4. Answers the carry out.
int AddWords(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry) {
    uint64_t c = static_cast<uint64_t>(carry);
    for (int32_t i = 0; i < n; i += 4) {
        const uint64_t x = LoadWord(a + i);
        const uint64_t y = LoadWord(b + i) + kLaneBias;
        uint64_t s;
        c = AddWithCarry(x, y, c, &s);
        // Bit 16k of x ^ y ^ s is the carry into lane k; lane 3's is the carry out.
        const uint64_t overflowed = (((x ^ y ^ s) >> 16) & kLaneLow) | (c << 48);
        StoreWord(d + i, s - (overflowed ^ kLaneLow) * 0xD8F0u);
    }
    return static_cast<int>(c);
}

#if defined(__SSE2__)
// Eight limbs at a time in SSE2 lanes: the lane sums are formed at once, and
// the carries between lanes come from two 8-bit masks, lanes that generate a
// carry (sum above 9999) and lanes that pass one on (sum 9999), by one
// addition: the carries in are ((G << 1 | c) + P) ^ P. Valid while every limb
// of both inputs is 0..9999.
struct CarrySpread {
    alignas(16) int16_t lanes[256][8];  // lane i = bit i of the index
    CarrySpread() {
        for (int m = 0; m < 256; ++m) {
            for (int i = 0; i < 8; ++i) lanes[m][i] = static_cast<int16_t>((m >> i) & 1);
        }
    }
};
const CarrySpread kCarrySpread;

// d[0..n) := a + b + carry over n limbs, n a multiple of 8. Answers the carry out.
int AddLanes(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry) {
    const __m128i nines = _mm_set1_epi16(kLimbBase - 1), base = _mm_set1_epi16(kLimbBase);
    unsigned c = static_cast<unsigned>(carry);
    for (int32_t i = 0; i < n; i += 8) {
        const __m128i s = _mm_add_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a + i)),
                                        _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + i)));
        const __m128i g = _mm_cmpgt_epi16(s, nines), p = _mm_cmpeq_epi16(s, nines);
        const unsigned G = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(g, g))) & 0xFFu;
        const unsigned P = static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(p, p))) & 0xFFu;
        const unsigned sum = ((G << 1) | c) + P;
        c = (sum >> 8) & 1u;
        const __m128i in =
            _mm_load_si128(reinterpret_cast<const __m128i*>(kCarrySpread.lanes[(sum ^ P) & 0xFFu]));
        __m128i r = _mm_add_epi16(s, in);
        r = _mm_sub_epi16(r, _mm_and_si128(_mm_cmpgt_epi16(r, nines), base));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(d + i), r);
    }
    return static_cast<int>(c);
}
#endif

const LaneKernels* WidestLaneKernels() {
    const LaneKernels* widest = Avx512LaneKernels();
    return widest != nullptr ? widest : Avx2LaneKernels();
}

const LaneKernels* gLaneKernels = WidestLaneKernels();

}  // namespace

void UseLaneKernels(const LaneKernels* kernels) { gLaneKernels = kernels; }
void UseWidestLaneKernels() { gLaneKernels = WidestLaneKernels(); }

// d := a + b. d holds max(ta, tb) + 2 limbs and may be a itself, never b.
// The carry out of b's top limb is added into the next limb and not followed
// further when that limb is a's top: a top limb of 9999 then becomes 10000
// (99999999 + 1 gives limbs 0, 10000). The value stays right and renders
// right, since a top limb prints without width. Below a's top the carry runs
// on, because a limb of 10000 inside the number would print as five digits.
// LimbsAddCarry writes limbs 0..max(ta, tb) and answers the carry out of the
// last, which LimbsAdd stores as limb max + 1.
// A top limb of 10000 taking part in the sum can make a limb sum of 20000 or
// more: the carry is then 2, so the value stays right.
int LimbsAddCarry(const Limb* a, const Limb* b, Limb* d, int32_t ta, int32_t tb) {
    assert(d != b);
    const int32_t below = ta < tb ? ta : tb;  // limbs under both tops are 0..9999
    int32_t done = 0;
    int carry = 0;
    if (const LaneKernels* wide = gLaneKernels) {
        done = below & ~15;
        carry = wide->add(a, b, d, done, 0);
    }
#if defined(__SSE2__)
    const int32_t lanes = done + ((below - done) & ~7);
    carry = AddLanes(a + done, b + done, d + done, lanes - done, carry);
#else
    const int32_t lanes = done;
#endif
    const int32_t words = lanes + ((below - lanes) & ~3);
    carry = AddWords(a + lanes, b + lanes, d + lanes, words - lanes, carry);
    for (int32_t i = words; i <= tb; ++i) {
        const int32_t s = b[i] + (i <= ta ? a[i] : 0) + carry;
        d[i] = static_cast<Limb>(s % kLimbBase);
        carry = s / kLimbBase;
    }
    int32_t i = tb + 1;
    for (; carry != 0 && i < ta; ++i) {
        const int32_t s = a[i] + carry;
        carry = s >= kLimbBase ? 1 : 0;
        d[i] = static_cast<Limb>(carry ? s - kLimbBase : s);
    }
    if (i <= ta) {
        d[i] = static_cast<Limb>(a[i] + carry);
        if (d != a) CopyLimbs(d + i + 1, a + i + 1, ta - i);
        carry = 0;
    }
    return carry;
}

int32_t LimbsAdd(const Limb* a, const Limb* b, Limb* d, int32_t ta, int32_t tb) {
    const int32_t m = ta > tb ? ta : tb;
    const int carry = LimbsAddCarry(a, b, d, ta, tb);
    d[m + 1] = static_cast<Limb>(carry);
    return carry ? m + 1 : m;
}

// a := a - b in place; requires |a| >= |b|, and limbs 0..9999 under both
// tops (normal form, as every caller's are). Answers the new top of a.
// A top limb of b above 9999 may borrow twice.
int32_t LimbsSub(Limb* a, const Limb* b, int32_t ta, int32_t tb) {
    const int32_t below = ta < tb ? ta : tb;
    const LaneKernels* wide = gLaneKernels;
    const int32_t done = wide != nullptr ? below & ~15 : 0;
    int32_t borrow = done > 0 ? wide->sub(a, b, a, done, 0) : 0;
    for (int32_t i = done; i <= tb; ++i) {
        int32_t s = a[i] - b[i] - borrow;
        borrow = 0;
        while (s < 0) {
            s += kLimbBase;
            ++borrow;
        }
        a[i] = static_cast<Limb>(s);
    }
    for (int32_t i = tb + 1; borrow != 0 && i <= ta; ++i) {
        const int32_t s = a[i] - borrow;
        borrow = s < 0 ? 1 : 0;
        a[i] = static_cast<Limb>(s < 0 ? s + kLimbBase : s);
    }
    return LimbsTrimTop(a, ta);
}

// d[0..n) := a + b + carry, every limb of a and b 0..9999; d may be a,
// never b. Answers the carry out, 0 or 1.
int LimbsAddCarryIn(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry) {
    int32_t done = 0;
    if (const LaneKernels* wide = gLaneKernels) {
        done = n & ~15;
        carry = wide->add(a, b, d, done, carry);
    }
    for (int32_t i = done; i < n; ++i) {
        const int32_t s = a[i] + b[i] + carry;
        carry = s >= kLimbBase ? 1 : 0;
        d[i] = static_cast<Limb>(s - carry * kLimbBase);
    }
    return carry;
}

// d[0..n) := a − b − borrow, every limb of a and b 0..9999; d may be a,
// never b. Answers the borrow out, 0 or 1.
int LimbsSubBorrow(const Limb* a, const Limb* b, Limb* d, int32_t n, int borrow) {
    const LaneKernels* wide = gLaneKernels;
    const int32_t done = wide != nullptr ? n & ~15 : 0;
    if (done > 0) borrow = wide->sub(a, b, d, done, borrow);
    for (int32_t i = done; i < n; ++i) {
        const int32_t s = a[i] - b[i] - borrow;
        borrow = s < 0 ? 1 : 0;
        d[i] = static_cast<Limb>(s + borrow * kLimbBase);
    }
    return borrow;
}

// a := a * f in place, f 0..9999; a holds t + 2 limbs. Answers the new top.
int32_t LimbsMulSmall(Limb* a, int32_t f, int32_t t) {
    if (f == 0) {
        a[0] = 0;
        return 0;
    }
    if (f == 1) return t;
    int32_t carry = 0;
    for (int32_t i = 0; i <= t; ++i) {
        const int32_t p = a[i] * f + carry;
        a[i] = static_cast<Limb>(p % kLimbBase);
        carry = p / kLimbBase;
    }
    a[t + 1] = static_cast<Limb>(carry);
    return carry > 0 ? t + 1 : t;
}

// a := a + v in place, v 0..9999; a holds t + 2 limbs. Answers the new top.
int32_t LimbsAddSmall(Limb* a, int32_t v, int32_t t) {
    a[0] = static_cast<Limb>(a[0] + v);
    for (int32_t i = 0; a[i] > kLimbBase - 1; ++i) {
        a[i] = static_cast<Limb>(a[i] % kLimbBase);
        if (i == t) {
            a[t + 1] = 1;
            return t + 1;
        }
        a[i + 1] = static_cast<Limb>(a[i + 1] + 1);
    }
    return t;
}

int32_t LimbsNormalizeTop(Limb* a, int32_t top) {
    top = LimbsTrimTop(a, top);
    if (a[top] < kLimbBase) return top;
    a[top + 1] = static_cast<Limb>(a[top] / kLimbBase);
    a[top] = static_cast<Limb>(a[top] % kLimbBase);
    return top + 1;
}
