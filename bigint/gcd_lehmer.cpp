// Greatest common divisor by Lehmer's method.
//
// The numbers are kept in base-10^8 words. Their leading four or five
// words (a number below 10^38, in 128-bit integers) run Euclid's algorithm
// for as long as the quotients they give are those of the full numbers
// (Knuth's test with the cofactors on both sides); the cofactors, at most
// 10^18 in magnitude, then replace a and b by two linear combinations in one
// pass over their words. Each pass removes about fifteen to seventeen
// digits, where long division removes one quotient limb per pass. When the
// leading words cannot decide a quotient (a far longer than b, or a single
// huge quotient) one full division step is taken instead. From 16 common
// words the combination pass runs its body eight words to a register where
// the processor has AVX-512 (gcd_avx512.cpp), the words here otherwise.
//
// Allocation: work arrays from alloc.h (LimbBuffer); a refused one answers code 3.
#include "bigint/gcd_lehmer.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "bigint/fast_paths.h"
#include "bigint/mul_kernels.h"
#include "bigint/reference.h"
#include "bigint/thresholds.h"

namespace {

using Wide = __int128;

// Cofactors past this are refused, which keeps the pass's terms in range.
constexpr int64_t kCofactorLimit = 1000000000000000000;

// Conversions of 128-bit integers in two halves, cheaper than the library's.
double ToDouble(Wide v) {
    return double(int64_t(v >> 64)) * 18446744073709551616.0 + double(uint64_t(v));
}
double ToDouble(int64_t v) { return double(v); }

// *q := num / den for num >= 0, den > 0; false when the quotient is too
// large for the cofactors to take. A double's estimate, corrected by the
// exact remainder, stands in for the division.
template <typename T>
bool Quotient(T num, T den, int64_t* q) {
    if (den <= 0 || num < 0) return false;
    // Two quotients in three are 1, 2 or 3 (Gauss–Kuzmin): subtractions
    // find them for less than the conversions and the division below.
    T rest = num;
    for (int64_t k = 0; k < 4; ++k) {
        if (rest < den) {
            *q = k;
            return true;
        }
        rest -= den;
    }
    const double estimate = ToDouble(num) / ToDouble(den);
    if (estimate > 1e15) return false;
    int64_t e = int64_t(estimate);
    T r = num - T(e) * den;
    while (r < 0) {
        --e;
        r += den;
    }
    while (r >= den) {
        ++e;
        r -= den;
    }
    *q = e;
    return true;
}

// Windows below this (with cofactors up to 10^18 added) go on in 64-bit integers.
constexpr int64_t kNarrow = int64_t(1) << 61;

// Euclid's steps on the leading windows xh >= yh, with `least` > 0 the
// bound the remainders' windows must keep (0: none), taking c's cofactors
// on. With T = Wide the steps stop (*narrowed true) once both windows fit
// 64-bit integers.
template <typename T>
void LeadingSteps(T& xh, T& yh, T least, LehmerCofactors* c, bool* narrowed) {
    int64_t A = c->A, B = c->B, C = c->C, D = c->D;
    int32_t steps = c->steps;
    while (yh + C != 0 && yh + D != 0) {
        if (narrowed != nullptr && xh < kNarrow && least < kNarrow) {
            *narrowed = true;
            break;
        }
        // Knuth's test: the same quotient for (xh + A)/(yh + C) and
        // (xh + B)/(yh + D), the second checked by its remainder.
        int64_t q = 0;
        if (!Quotient<T>(xh + A, yh + C, &q)) break;
        // The next cofactors on 64-bit words (one past 10^18 ends the
        // steps, and so does an overflow, far past it), and the second
        // quotient's remainder (xh + B) − q·(yh + D) as nextY + nextD.
        int64_t qC = 0, qD = 0, nextC = 0, nextD = 0;
        if (__builtin_mul_overflow(q, C, &qC) || __builtin_mul_overflow(q, D, &qD) ||
            __builtin_sub_overflow(A, qC, &nextC) || __builtin_sub_overflow(B, qD, &nextD))
            break;
        if (nextC > kCofactorLimit || nextC < -kCofactorLimit || nextD > kCofactorLimit ||
            nextD < -kCofactorLimit)
            break;
        const T nextY = xh - T(q) * yh;
        const T den2 = yh + D, rest2 = nextY + nextD;
        if (den2 <= 0 || rest2 < 0 || rest2 >= den2) break;
        if (least > 0 && nextY - std::max(std::abs(nextC), std::abs(nextD)) < least) break;
        A = C;
        C = nextC;
        B = D;
        D = nextD;
        xh = yh;
        yh = nextY;
        ++steps;
    }
    c->A = A;
    c->B = B;
    c->C = C;
    c->D = D;
    c->steps = steps;
}

// The steps on 128-bit windows, on 64-bit ones once they fit.
LehmerCofactors LeadingSteps(Wide xh, Wide yh, Wide least) {
    LehmerCofactors c;
    bool narrowed = false;
    LeadingSteps<Wide>(xh, yh, least, &c, &narrowed);
    if (narrowed) {
        int64_t x64 = int64_t(xh), y64 = int64_t(yh);
        LeadingSteps<int64_t>(x64, y64, int64_t(least), &c, nullptr);
    }
    return c;
}

// B^(floor − k) for a window whose bottom is at limb k, or -1 when the
// floor is more than eight limbs above it; 0 without a floor.
Wide FloorInWindow(int32_t floorLimbs, int32_t k) {
    if (floorLimbs < 0) return 0;
    const int32_t above = floorLimbs - k;
    if (above > 8) return -1;
    Wide least = 1;
    for (int32_t i = 0; i < above; ++i) least *= kLimbBase;
    return least;
}

// The vector body of the combination pass, where the processor has one,
// from this many common words (a shorter pass costs about the same either
// way).
constexpr int32_t kVectorWords = 16;
LehmerCombineBody gCombineBody = Avx512LehmerCombine();

}  // namespace

void UsePortableLehmerCombine(bool portable) {
    gCombineBody = portable ? nullptr : Avx512LehmerCombine();
}

// The full remainder C·x + D·y is yh·B^k plus C·(x mod B^k) + D·(y mod
// B^k), which differs from yh·B^k by less than max(|C|, |D|)·B^k
// (B = 10000, k the window's bottom limb): yh − max(|C|, |D|) >= B^(floor − k)
// keeps it at least B^floor.
LehmerCofactors LehmerLeadingWords(const uint32_t* x, int32_t lx, const uint32_t* y, int32_t ly,
                                   int32_t floorLimbs) {
    if (lx - ly >= 2) return LehmerCofactors();
    // Five words while they stay below 10^38 (in a signed 128-bit integer), else four.
    const int32_t count = x[lx - 1] < 1000000 ? 5 : 4;
    const Wide least = FloorInWindow(floorLimbs, 2 * (lx - count));
    if (least < 0) return LehmerCofactors();
    constexpr Wide kWord = Wide(kLimbBase) * kLimbBase;
    Wide xh = 0, yh = 0;
    for (int32_t i = lx - 1; i >= lx - count; --i) {
        xh = xh * kWord + (i >= 0 ? x[i] : 0);
        yh = yh * kWord + (i >= 0 && i < ly ? y[i] : 0);
    }
    return LeadingSteps(xh, yh, least);
}

// The cofactors go in as two base-10^8 digits, A = Ah·10^8 + Al with
// |Ah| <= 10^10: a term Al·x_i + Bl·y_i + Ah·x_(i−1) + Bh·y_(i−1) + carry
// stays below 2.1·10^18 in magnitude, and adding kBias (a multiple of 10^8
// above that) makes it non-negative, so the carry is an unsigned division
// by a constant.
void LehmerCombineWords(const LehmerCofactors& c, const uint32_t* x, int32_t lx, const uint32_t* y,
                        int32_t ly, uint32_t* s, int32_t* ls, uint32_t* t, int32_t* lt) {
    constexpr int64_t kWord = int64_t(kLimbBase) * kLimbBase;
    constexpr int64_t kBias = kWord << 35;
    constexpr int64_t kBiasCarry = kBias / kWord;
    const int64_t Al = c.A % kWord, Ah = c.A / kWord, Bl = c.B % kWord, Bh = c.B / kWord;
    const int64_t Cl = c.C % kWord, Ch = c.C / kWord, Dl = c.D % kWord, Dh = c.D / kWord;
    // The carries are kept biased (q − kBiasCarry is the true carry), which
    // takes the bias's subtraction off the chain from one word to the next.
    constexpr int64_t kOffset = kBias - kBiasCarry;
    uint64_t q1 = kBiasCarry, q2 = kBiasCarry;
    int64_t px = 0, py = 0;
    auto step = [&](int32_t i, int64_t xi, int64_t yi) {
        const uint64_t u1 = uint64_t(Al * xi + Bl * yi + Ah * px + Bh * py + kOffset) + q1;
        const uint64_t u2 = uint64_t(Cl * xi + Dl * yi + Ch * px + Dh * py + kOffset) + q2;
        px = xi;
        py = yi;
        q1 = u1 / uint64_t(kWord);
        q2 = u2 / uint64_t(kWord);
        s[i] = uint32_t(u1 - q1 * uint64_t(kWord));
        t[i] = uint32_t(u2 - q2 * uint64_t(kWord));
    };
    const int32_t n = std::max(lx, ly), common = std::min(lx, ly);
    int32_t i = 0;
    const int32_t body = common & ~7;
    if (gCombineBody != nullptr && body >= kVectorWords) {
        const int64_t cofactors[8] = {Al, Bl, Ah, Bh, Cl, Dl, Ch, Dh};
        int64_t carries[2];
        gCombineBody(cofactors, x, y, body, s, t, carries);
        q1 = uint64_t(carries[0] + kBiasCarry);
        q2 = uint64_t(carries[1] + kBiasCarry);
        px = x[body - 1];
        py = y[body - 1];
        i = body;
    }
    for (; i < common; ++i) step(i, x[i], y[i]);
    for (; i < n; ++i) step(i, i < lx ? x[i] : 0, i < ly ? y[i] : 0);
    int64_t c1 = int64_t(q1) - kBiasCarry, c2 = int64_t(q2) - kBiasCarry;
    c1 += Ah * px + Bh * py;
    c2 += Ch * px + Dh * py;
    auto finish = [n](uint32_t* out, int64_t carry) {
        int32_t k = n;
        while (carry > 0) {
            out[k++] = uint32_t(carry % kWord);
            carry /= kWord;
        }
        while (k > 1 && out[k - 1] == 0) --k;
        return k;
    };
    *ls = finish(s, c1);
    *lt = finish(t, c2);
}

Result WordSlot::Store(BigInt* v) const {
    LimbBuffer limbs(2 * int64_t(len));
    if (!limbs.ok()) return Result::kNoMemory;
    const int32_t top = ToLimbs(limbs.get());
    BigFree(v);
    return BigFromLimbs(v, limbs.get(), top, 0);
}

Result GcdLehmer(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    const int32_t room = a->top + 2;
    WordSlot x, y, s, t;
    Result code = x.Load(*a, room);
    if (Ok(code)) code = y.Load(*b, room);
    if (Ok(code) && (!s.Reset((room + 1) / 2 + 4) || !t.Reset((room + 1) / 2 + 4)))
        code = Result::kNoMemory;
    PollClock clk(ctx);
    const int32_t small = gFastThresholds.gcdLehmer;
    while (Ok(code) && !y.IsZero() && y.Limbs() >= small) {
        if (clk.Tick(4 * int64_t(x.Limbs()))) {
            code = Result::kStopped;
            break;
        }
        // x >= y > 0 here.
        const LehmerCofactors c = LehmerLeadingWords(x.get(), x.len, y.get(), y.len, -1);
        if (c.steps == 0) {
            // x := x mod y by one division, then the pair exchanged.
            BigTemp xv, yv, q, r;
            code = x.Store(&xv.v);
            if (Ok(code)) code = y.Store(&yv.v);
            if (Ok(code)) code = FastDivMod(ctx, &xv.v, &yv.v, &q.v, &r.v);
            if (Ok(code)) x.FromLimbs(r.v.limbs, r.v.top + 1);
            x.Swap(y);
            continue;
        }
        // Both results are below x, so x's room suffices.
        LehmerCombineWords(c, x.get(), x.len, y.get(), y.len, s.get(), &s.len, t.get(), &t.len);
        x.Swap(s);
        y.Swap(t);
    }
    // The rest by long division, on numbers below the threshold.
    BigTemp xv, yv;
    if (Ok(code)) code = x.Store(&xv.v);
    if (Ok(code)) code = y.Store(&yv.v);
    if (Ok(code)) {
        if (BigIsZero(&yv.v)) {
            code = BigFromLimbs(result, xv.v.limbs, xv.v.top, 0);
        } else {
            const int order = BigCompareMag(&xv.v, &yv.v);
            if (order == 0)
                code = BigFromLimbs(result, xv.v.limbs, xv.v.top, 0);
            else if (order < 0)
                code = GcdSchool(ctx, &xv.v, &yv.v, result);
            else
                code = GcdSchool(ctx, &yv.v, &xv.v, result);
        }
    }
    return code;
}
