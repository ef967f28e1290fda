// The 64-bit transform in pieces: loads of four limbs a point, pointwise
// products, and the join of three residues into limbs, around the vector
// butterflies of ntt64_ifma.cpp (through ntt64.cpp's tables).
//
// A point is v = a[4j] + 10^4·a[4j+1] + 10^8·a[4j+2] + 10^12·a[4j+3] < 2^55,
// loaded below 2p by a quotient estimated in double precision (off by at
// most one, since v / p < 2^6). Pointwise products take x·y·2^−52 and then
// times 2^104/n: the inverse's 1/n. The join runs Garner's steps eight
// points at a time (value v1 + p1·v2 + p1·p2·v3 below 2^150), then sums
// each coefficient in base-10^8 digits into a window of pending digits
// (each sum below 10^17) and settles two digits, four limbs, a coefficient.
#include "bigint/ntt64_plan.h"

#include <algorithm>
#include <new>

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__)
#define ORDIX_NTT64_PLAN_AVX512 1
#include <immintrin.h>
#endif

#include "bigint/ntt64.h"
#include "bigint/ntt64_kernels.h"

namespace {

using Wide = unsigned __int128;

// Work units (poll_clock.h) a point of each step, about half a nanosecond each.
constexpr int64_t kLoadPoint = 6;
constexpr int64_t kPointwise = 4;  // all three primes
constexpr int64_t kJoinPoint = 24;
constexpr int32_t kJoinBlock = 1024;
constexpr uint64_t kDigit = 100000000u;  // 10^8: two limbs

uint64_t Times2To52(uint64_t x, uint64_t p) { return static_cast<uint64_t>((Wide(x) << 52) % p); }

// Garner's constants (ntt64_kernels.h) and the base-10^8 digits of p1 and
// p1·p2 for the join.
struct JoinConstants {
    const uint64_t* k = Ntt64VecGarnerConstants();
    uint64_t p1[2], p12[4];
    explicit JoinConstants(const Ntt64Vec* c) {
        const uint64_t p1v = c[0].p, p2v = c[1].p;
        p1[0] = p1v % kDigit;
        p1[1] = p1v / kDigit;
        Wide p12v = Wide(p1v) * p2v;
        for (uint64_t& d : p12) {
            d = static_cast<uint64_t>(p12v % kDigit);
            p12v /= kDigit;
        }
    }
};

// Limb i of the output gets v < 10^4 when inside [0, len).
inline void PutLimb(Limb* p, int64_t i, int64_t len, uint64_t v) {
    if (i < len) p[i] = static_cast<Limb>(v);
}

// Limbs at … at + 3 get the base-10^8 digits d0, d1 (low first), those at
// and above len dropped.
inline void PutDigits(Limb* p, int64_t at, int64_t len, uint64_t d0, uint64_t d1) {
    if (at + 3 < len) {
        p[at] = static_cast<Limb>(d0 % 10000);
        p[at + 1] = static_cast<Limb>(d0 / 10000);
        p[at + 2] = static_cast<Limb>(d1 % 10000);
        p[at + 3] = static_cast<Limb>(d1 / 10000);
    } else {
        PutLimb(p, at, len, d0 % 10000);
        PutLimb(p, at + 1, len, d0 / 10000);
        PutLimb(p, at + 2, len, d1 % 10000);
        PutLimb(p, at + 3, len, d1 / 10000);
    }
}

// Coefficients first … count − 1 (after Garner's steps, in r[0..3)) summed
// into limbs, each two base-10^8 digits above the last; the limbs below
// coefficient first are zeros. Limbs at and above len are
// dropped (the product modulo B^len); those of the pending digits past the
// last coefficient go to p up to len and then to over[0 … kOver) when over
// is not null. False when told to stop.
constexpr int kOver = 12;
bool JoinDigits(PollClock& clk, const Ntt64Vec* c, uint64_t* const* r, int64_t first, int64_t count,
                Limb* p, int64_t len, Limb* over) {
    static const JoinConstants jc(c);  // the primes never change
    uint64_t w[6] = {};
    std::fill(p, p + std::min(len, kNtt64PlanLimbs * first), Limb(0));
    for (int64_t from = first; from < count; from += kJoinBlock) {
        const int64_t to = std::min(count, from + kJoinBlock);
        Ntt64VecGarner(c, jc.k, r[0] + from, r[1] + from, r[2] + from, to - from);
        for (int64_t i = from; i < to; ++i) {
            const uint64_t v1 = r[0][i], v2 = r[1][i], v3 = r[2][i];
            const uint64_t a1 = v1 / kDigit, a0 = v1 - a1 * kDigit;
            const uint64_t b1 = v2 / kDigit, b0 = v2 - b1 * kDigit;
            const uint64_t c1 = v3 / kDigit, c0 = v3 - c1 * kDigit;
            w[0] += a0 + jc.p1[0] * b0 + jc.p12[0] * c0;
            w[1] += a1 + jc.p1[0] * b1 + jc.p1[1] * b0 + jc.p12[0] * c1 + jc.p12[1] * c0;
            w[2] += jc.p1[1] * b1 + jc.p12[1] * c1 + jc.p12[2] * c0;
            w[3] += jc.p12[2] * c1 + jc.p12[3] * c0;
            w[4] += jc.p12[3] * c1;
            const uint64_t q0 = w[0] / kDigit, d0 = w[0] - q0 * kDigit;
            w[1] += q0;
            const uint64_t q1 = w[1] / kDigit, d1 = w[1] - q1 * kDigit;
            PutDigits(p, 4 * i, len, d0, d1);
            w[0] = w[2] + q1;
            w[1] = w[3];
            w[2] = w[4];
            w[3] = w[4] = 0;
        }
        if (clk.Tick((to - from) * kJoinPoint)) return false;
    }
    // The pending digits: below 10^17 each, four limbs and a carry.
    int64_t at = 4 * count;
    if (over != nullptr) std::fill(over, over + kOver, Limb(0));
    uint64_t carry = 0;
    for (int s = 0; s < 6; ++s) {
        const uint64_t v = w[s] + carry;
        carry = v / kDigit;
        const uint64_t d = v - carry * kDigit;
        for (const uint64_t limb : {d % 10000, d / 10000}) {
            if (at < len)
                p[at] = static_cast<Limb>(limb);
            else if (over != nullptr && at - len < kOver)
                over[at - len] = static_cast<Limb>(limb);
            ++at;
        }
    }
    if (at < len) std::fill(p + at, p + len, Limb(0));
    return true;
}

bool Inverse(PollClock& clk, Ntt64Vector* acc) {
    for (int i = 0; i < 3; ++i)
        if (!Ntt64VecTransform(clk, i, true, acc->prime(i), acc->points())) return false;
    return true;
}

}  // namespace

bool Ntt64PlanAvailable() { return Ntt64VectorButterflies(); }

int32_t Ntt64PlanPoints(int64_t coefficients) {
    return int32_t(1) << CeilLog2(std::max<int64_t>(coefficients, 64));
}

bool Ntt64Vector::Reset(int32_t n) {
    if (n == n_ && r_ != nullptr) return true;
    delete[] r_;
    n_ = 0;
    r_ = new (std::nothrow) uint64_t[3 * size_t(n)];
    if (r_ == nullptr) return false;
    n_ = n;
    return true;
}

Result Ntt64PlanForward(PollClock& clk, const Limb* a, int32_t la, int32_t n, Ntt64Vector* out) {
    const Ntt64Vec* c = Ntt64VecPrimes();
    if (c == nullptr || !out->Reset(n)) return Result::kNoMemory;
    const int32_t full = la / kNtt64PlanLimbs;
    const int32_t used = (la + kNtt64PlanLimbs - 1) / kNtt64PlanLimbs;
    double inv[3];
    for (int i = 0; i < 3; ++i) inv[i] = 1.0 / double(c[i].p);
    uint64_t* r[3] = {out->prime(0), out->prime(1), out->prime(2)};
    auto put = [&](int32_t j, uint64_t v) {
        for (int i = 0; i < 3; ++i) {
            const uint64_t p = c[i].p;
            const uint64_t q = static_cast<uint64_t>(double(v) * inv[i]);
            const int64_t x = static_cast<int64_t>(v - q * p);
            r[i][j] = static_cast<uint64_t>(x < 0 ? x + int64_t(p) : x);
        }
    };
    for (int32_t j = 0; j < full; ++j) {
        const Limb* s = a + 4 * j;
        put(j, uint64_t(uint16_t(s[0])) + 10000u * uint64_t(uint16_t(s[1])) +
                   100000000u * uint64_t(uint16_t(s[2])) +
                   1000000000000u * uint64_t(uint16_t(s[3])));
    }
    if (used > full) {
        uint64_t v = 0;
        for (int32_t t = la - 1; t >= 4 * full; --t) v = v * 10000 + uint64_t(uint16_t(a[t]));
        put(full, v);
    }
    for (int i = 0; i < 3; ++i) std::fill(r[i] + used, r[i] + n, uint64_t(0));
    if (clk.Tick(kLoadPoint * n)) return Result::kStopped;
    for (int i = 0; i < 3; ++i)
        if (!Ntt64VecTransform(clk, i, false, r[i], n)) return Result::kStopped;
    return Result::kOk;
}

void Ntt64PlanMul(PollClock& clk, Ntt64Vector* acc, const Ntt64Vector& b) {
    const Ntt64Vec* c = Ntt64VecPrimes();  // made by the forward transforms
    const int32_t n = acc->points();
    // 1/n = p − (p − 1)/n modulo p, n dividing p − 1; times 2^104. Kept
    // for each length (the arithmetic runs on one thread).
    static uint64_t scales[32][3];
    uint64_t* scale = scales[CeilLog2(n)];
    if (scale[0] == 0) {
        for (int i = 0; i < 3; ++i) {
            const uint64_t p = c[i].p;
            scale[i] = Times2To52(Times2To52(p - (p - 1) / uint64_t(n), p), p);
        }
    }
    for (int i = 0; i < 3; ++i) Ntt64VecPointwise(c[i], acc->prime(i), b.prime(i), scale[i], n);
    (void)clk.Tick(kPointwise * n);
}

Result Ntt64PlanToLimbs(PollClock& clk, Ntt64Vector* acc, int32_t len, Limb* p, int32_t first) {
    if (!Inverse(clk, acc)) return Result::kStopped;
    const int64_t count = std::min<int64_t>(acc->points(), (len + kNtt64PlanLimbs - 1) / 4);
    uint64_t* r[3] = {acc->prime(0), acc->prime(1), acc->prime(2)};
    return JoinDigits(clk, Ntt64VecPrimes(), r, std::min<int64_t>(first, count), count, p, len,
                      nullptr)
               ? Result::kOk
               : Result::kStopped;
}

Result Ntt64PlanToLimbsSplit(PollClock& clk, Ntt64Vector* wrap, Ntt64Vector* low, int32_t w,
                             Ntt64Vector* joined, int32_t len, Limb* p, int32_t first) {
    const int32_t nW = wrap->points();
    if (!joined->Reset(Ntt64PlanPoints(int64_t(nW) + w))) return Result::kNoMemory;
    if (!Inverse(clk, wrap) || !Inverse(clk, low)) return Result::kStopped;
    const Ntt64Vec* c = Ntt64VecPrimes();
    // c[j] = low[j] and c[nW + j] = wrap[j] − low[j] for j < w, c[j] = wrap[j]
    // between; residues below 2p.
    uint64_t* r[3];
    for (int i = 0; i < 3; ++i) {
        const uint64_t p2 = 2 * c[i].p;
        const uint64_t* x = wrap->prime(i);
        const uint64_t* y = low->prime(i);
        r[i] = joined->prime(i);
        std::copy(x + w, x + nW, r[i] + w);
        for (int32_t j = 0; j < w; ++j) {
            const uint64_t d = x[j] - y[j] + p2;
            r[i][nW + j] = d >= p2 ? d - p2 : d;
            r[i][j] = y[j];
        }
    }
    const int64_t count = std::min<int64_t>(int64_t(nW) + w, (len + kNtt64PlanLimbs - 1) / 4);
    return JoinDigits(clk, c, r, std::min<int64_t>(first, count), count, p, len, nullptr)
               ? Result::kOk
               : Result::kStopped;
}

Result Ntt64PlanToLimbsCyclic(PollClock& clk, Ntt64Vector* acc, Limb* p) {
    if (!Inverse(clk, acc)) return Result::kStopped;
    const int64_t n = acc->points(), len = kNtt64PlanLimbs * n;
    uint64_t* r[3] = {acc->prime(0), acc->prime(1), acc->prime(2)};
    Limb over[kOver];
    if (!JoinDigits(clk, Ntt64VecPrimes(), r, 0, n, p, len, over)) return Result::kStopped;
    // B^len = 1 modulo B^len − 1: what lies above goes back in at limb 0; a
    // carry out of the top goes round once more (and then stops: the value
    // is then at most kOver limbs long).
    int carry = 0;
    for (int64_t i = 0; i < len; ++i) {
        const int v = p[i] + (i < kOver ? over[i] : 0) + carry;
        carry = v >= 10000 ? 1 : 0;
        p[i] = static_cast<Limb>(v - carry * 10000);
        if (i >= kOver && carry == 0) break;
    }
    for (int64_t i = 0; carry != 0 && i < len; ++i) {
        const int v = p[i] + 1;
        carry = v >= 10000 ? 1 : 0;
        p[i] = static_cast<Limb>(v - carry * 10000);
    }
    return Result::kOk;
}

namespace {

// x := x + y or x − y modulo p, residues below 2p on both sides and after;
// eight at a time on AVX-512, which the vector primes imply (this runs only
// where they are present).
#ifdef ORDIX_NTT64_PLAN_AVX512
__attribute__((target("avx512f")))
#endif
void AddResidues(uint64_t* x, const uint64_t* y, uint64_t p2, int32_t n, bool subtract) {
    int32_t j = 0;
#ifdef ORDIX_NTT64_PLAN_AVX512
    const __m512i twoP = _mm512_set1_epi64(static_cast<long long>(p2));
    for (; j + 8 <= n; j += 8) {
        const __m512i a = _mm512_loadu_si512(x + j), b = _mm512_loadu_si512(y + j);
        const __m512i t =
            subtract ? _mm512_add_epi64(_mm512_sub_epi64(a, b), twoP) : _mm512_add_epi64(a, b);
        _mm512_storeu_si512(x + j,
                            _mm512_mask_sub_epi64(t, _mm512_cmpge_epu64_mask(t, twoP), t, twoP));
    }
#endif
    for (; j < n; ++j) {
        const uint64_t t = subtract ? x[j] - y[j] + p2 : x[j] + y[j];
        x[j] = t >= p2 ? t - p2 : t;
    }
}

}  // namespace

Result Ntt64PlanMulAccumulate(PollClock& clk, Ntt64Vector* acc, const Ntt64Vector& a,
                              const Ntt64Vector& b, Ntt64Accumulate how, Ntt64Vector* scratch) {
    const int32_t n = a.points();
    Ntt64Vector* into = how == Ntt64Accumulate::kSet ? acc : scratch;
    if (!into->Reset(n)) return Result::kNoMemory;
    std::copy(a.prime(0), a.prime(0) + 3 * int64_t(n), into->prime(0));
    Ntt64PlanMul(clk, into, b);
    if (how == Ntt64Accumulate::kSet) return Result::kOk;
    const Ntt64Vec* c = Ntt64VecPrimes();
    for (int i = 0; i < 3; ++i)
        AddResidues(acc->prime(i), scratch->prime(i), 2 * c[i].p, n, how == Ntt64Accumulate::kSub);
    return Result::kOk;
}

Result Ntt64PlanToLimbsSigned(PollClock& clk, Ntt64Vector* acc, int32_t len, Limb* p,
                              bool* negative) {
    if (!Inverse(clk, acc)) return Result::kStopped;
    const Ntt64Vec* c = Ntt64VecPrimes();
    static const JoinConstants jc(c);
    const int64_t count = std::min<int64_t>(acc->points(), (len + kNtt64PlanLimbs - 1) / 4);
    uint64_t* r[3] = {acc->prime(0), acc->prime(1), acc->prime(2)};
    // A coefficient v1 + p1·v2 + p1·p2·v3 in the upper half of [0, P) (v3 >
    // p3/2: the magnitudes stay far below P/2) stands for v − P = −(P − v),
    // whose mixed-radix digits (p1 − v1, p2 − 1 − v2, p3 − 1 − v3) are
    // subtracted. Pending base-10^8 digits are then signed, each below
    // 10^17 in magnitude, and carried down by floor division (of the digit
    // plus 10^18, unsigned, without branches): the limbs are the sum modulo
    // B^len, its complement when negative.
    constexpr uint64_t kShift = 10000000000u;  // 10^18 / 10^8
    int64_t w[6] = {};
    const auto p10 = int64_t(jc.p1[0]), p11 = int64_t(jc.p1[1]);
    const auto q0 = int64_t(jc.p12[0]), q1 = int64_t(jc.p12[1]);
    const auto q2 = int64_t(jc.p12[2]), q3 = int64_t(jc.p12[3]);
    auto split = [](int64_t v, uint64_t* d) {
        const uint64_t u = static_cast<uint64_t>(v) + kShift * kDigit;
        const uint64_t q = u / kDigit;
        *d = u - q * kDigit;
        return static_cast<int64_t>(q) - static_cast<int64_t>(kShift);
    };
    auto settle = [&](int64_t at, int64_t v, int64_t* carry) {
        uint64_t d = 0;
        *carry = split(v, &d);
        PutLimb(p, at, len, d % 10000);
        PutLimb(p, at + 1, len, d / 10000);
    };
    for (int64_t from = 0; from < count; from += kJoinBlock) {
        const int64_t to = std::min(count, from + kJoinBlock);
        Ntt64VecGarner(c, jc.k, r[0] + from, r[1] + from, r[2] + from, to - from);
        for (int64_t i = from; i < to; ++i) {
            const uint64_t v1 = r[0][i], v2 = r[1][i], v3 = r[2][i];
            const bool minus = v3 > c[2].p / 2;
            const uint64_t x1 = minus ? c[0].p - v1 : v1;
            const uint64_t x2 = minus ? c[1].p - 1 - v2 : v2;
            const uint64_t x3 = minus ? c[2].p - 1 - v3 : v3;
            const int64_t a1 = int64_t(x1 / kDigit), a0 = int64_t(x1 % kDigit);
            const int64_t b1 = int64_t(x2 / kDigit), b0 = int64_t(x2 % kDigit);
            const int64_t c1 = int64_t(x3 / kDigit), c0 = int64_t(x3 % kDigit);
            const int64_t sg = 1 - 2 * int64_t(minus);
            w[0] += sg * (a0 + p10 * b0 + q0 * c0);
            w[1] += sg * (a1 + p10 * b1 + p11 * b0 + q0 * c1 + q1 * c0);
            w[2] += sg * (p11 * b1 + q1 * c1 + q2 * c0);
            w[3] += sg * (q2 * c1 + q3 * c0);
            w[4] += sg * (q3 * c1);
            uint64_t d0 = 0, d1 = 0;
            const int64_t k0 = split(w[0], &d0);
            const int64_t k1 = split(w[1] + k0, &d1);
            PutDigits(p, 4 * i, len, d0, d1);
            w[0] = w[2] + k1;
            w[1] = w[3];
            w[2] = w[4];
            w[3] = w[4] = 0;
        }
        if (clk.Tick((to - from) * kJoinPoint)) return Result::kStopped;
    }
    int64_t carry = 0;
    for (int s = 0; s < 6; ++s) settle(4 * count + 2 * s, w[s] + carry, &carry);
    if (4 * count + 12 < len) std::fill(p + 4 * count + 12, p + len, Limb(0));
    // A negative sum leaves B^len − |sum|, whose top limb is 9999.
    *negative = p[len - 1] != 0;
    if (*negative) {
        int borrow = 0;
        for (int32_t i = 0; i < len; ++i) {
            const int v = -p[i] - borrow;
            borrow = v < 0 ? 1 : 0;
            p[i] = static_cast<Limb>(v + 10000 * borrow);
        }
    }
    return Result::kOk;
}
