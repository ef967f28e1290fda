// Greatest common divisor by Lehmer's method.
//
// The leading four or five limbs of a and b (a number below 9·10^18) run
// Euclid's algorithm on machine integers for as long as the quotients they
// give are those of the full numbers (Knuth's test with the cofactors on both
// sides); the cofactors, below 3·10^9 in magnitude, then replace a and b by
// two linear combinations in one pass over their limbs. Each pass removes
// seven to nine digits, where long division removes one quotient limb per
// pass. When the leading limbs cannot decide a quotient (a far longer than
// b, or a single huge quotient) one full division step is taken instead.
#include <utility>

#include "bigint/fast_paths.h"
#include "bigint/reference.h"
#include "bigint/mul_kernels.h"
#include "bigint/thresholds.h"

namespace {

struct Number {
    LimbBuffer limbs;
    int32_t len = 0;
};

// Leading limbs of x at positions n − count … n − 1 (missing limbs 0).
int64_t Leading(const Number& x, int32_t n, int32_t count) {
    int64_t v = 0;
    for (int32_t i = n - 1; i >= n - count; --i) v = v * kLimbBase + (i >= 0 && i < x.len ? x.limbs[i] : 0);
    return v;
}

// s := A·x + B·y and t := C·x + D·y in one pass, for combinations known to
// be non-negative (y no longer than x); s and t hold x.len + 1 limbs and
// alias neither input. The pass takes two limbs at a time (digits below
// 10^8): a term stays below 6·10^17 in magnitude, so adding kBias (a
// multiple of 10^8) makes it non-negative and the carry is an unsigned
// division by a constant. Both results are below x, so nothing is written
// past limb x.len.
void Combine(int64_t A, int64_t B, int64_t C, int64_t D, const Number& x, const Number& y,
             Number* s, Number* t) {
    constexpr int64_t kPair = int64_t(kLimbBase) * kLimbBase;
    constexpr int64_t kBias = kPair << 35;
    constexpr int64_t kBiasCarry = kBias / kPair;
    int64_t c1 = 0, c2 = 0;
    Limb* so = s->limbs.get();
    Limb* to = t->limbs.get();
    const Limb* xs = x.limbs.get();
    const Limb* ys = y.limbs.get();
    auto pair = [](const Limb* v, int32_t len, int32_t i) -> int64_t {
        const int64_t low = i < len ? v[i] : 0;
        return i + 1 < len ? low + int64_t(v[i + 1]) * kLimbBase : low;
    };
    int32_t i = 0;
    for (; i < x.len; i += 2) {
        const int64_t xi = pair(xs, x.len, i), yi = pair(ys, y.len, i);
        const uint64_t u1 = uint64_t(A * xi + B * yi + c1 + kBias);
        const uint64_t u2 = uint64_t(C * xi + D * yi + c2 + kBias);
        const uint64_t q1 = u1 / uint64_t(kPair), q2 = u2 / uint64_t(kPair);
        const uint32_t r1 = uint32_t(u1 - q1 * uint64_t(kPair)), r2 = uint32_t(u2 - q2 * uint64_t(kPair));
        so[i] = static_cast<Limb>(r1 % kLimbBase);
        so[i + 1] = static_cast<Limb>(r1 / kLimbBase);
        to[i] = static_cast<Limb>(r2 % kLimbBase);
        to[i + 1] = static_cast<Limb>(r2 / kLimbBase);
        c1 = int64_t(q1) - kBiasCarry;
        c2 = int64_t(q2) - kBiasCarry;
    }
    for (auto [out, carry] : {std::pair<Number*, int64_t>{s, c1}, std::pair<Number*, int64_t>{t, c2}}) {
        int32_t len = i;
        while (carry > 0) {
            out->limbs[len++] = static_cast<Limb>(carry % kLimbBase);
            carry /= kLimbBase;
        }
        while (len > 1 && out->limbs[len - 1] == 0) --len;
        out->len = len;
    }
}

int FromRecord(const BigInt* v, int32_t room, Number* n) {
    if (!n->limbs.Reset(room)) return 3;
    CopyLimbs(n->limbs.get(), v->limbs, v->top + 1);
    n->len = v->top + 1;
    return 0;
}

// a := a mod b by one division (a >= b > 0).
int DivisionStep(CalcContext* ctx, Number* a, const Number& b) {
    BigInt av = {}, bv = {};
    av.limbs = a->limbs.get();
    av.top = a->len - 1;
    bv.limbs = b.limbs.get();
    bv.top = b.len - 1;
    BigTemp q, r;
    const int code = FastDivMod(ctx, &av, &bv, &q.v, &r.v);
    if (code != 0) return code;
    CopyLimbs(a->limbs.get(), r.v.limbs, r.v.top + 1);
    a->len = r.v.top + 1;
    return 0;
}

bool IsZero(const Number& x) { return x.len == 1 && x.limbs[0] == 0; }

void Exchange(Number* x, Number* y) {
    x->limbs.Swap(y->limbs);
    std::swap(x->len, y->len);
}

}  // namespace

int GcdLehmer(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    const int32_t room = a->top + 2;
    Number x, y, s, t;
    int code = FromRecord(a, room, &x);
    if (code == 0) code = FromRecord(b, room, &y);
    if (code == 0 && (!s.limbs.Reset(room) || !t.limbs.Reset(room))) code = 3;
    PollClock clk(ctx);
    const int32_t small = gFastThresholds.gcdLehmer;
    while (code == 0 && !IsZero(y) && y.len >= small) {
        if (clk.Tick(4 * int64_t(x.len))) {
            code = -1;
            break;
        }
        // x >= y > 0 here.
        int64_t A = 1, B = 0, C = 0, D = 1;
        if (x.len - y.len < 2) {
            // Five limbs when they stay below 9·10^18, else four: the more
            // digits, the more quotients one pass settles.
            const int32_t count = x.limbs[x.len - 1] < 900 ? 5 : 4;
            int64_t xh = Leading(x, x.len, count), yh = Leading(y, x.len, count);
            while (yh + C != 0 && yh + D != 0) {
                const int64_t q = (xh + A) / (yh + C);
                if (q != (xh + B) / (yh + D)) break;
                int64_t r = A - q * C;
                A = C;
                C = r;
                r = B - q * D;
                B = D;
                D = r;
                r = xh - q * yh;
                xh = yh;
                yh = r;
            }
        }
        if (B == 0) {
            code = DivisionStep(ctx, &x, y);
            Exchange(&x, &y);
            continue;
        }
        Combine(A, B, C, D, x, y, &s, &t);
        Exchange(&x, &s);
        Exchange(&y, &t);
    }
    // The rest by long division, on numbers below the threshold.
    if (code == 0) {
        BigInt xv = {}, yv = {};
        xv.limbs = x.limbs.get();
        xv.top = x.len - 1;
        yv.limbs = y.limbs.get();
        yv.top = y.len - 1;
        if (IsZero(y)) {
            code = BigFromLimbs(result, xv.limbs, xv.top, 0);
        } else {
            const int order = BigCompareMag(&xv, &yv);
            if (order == 0) code = BigFromLimbs(result, xv.limbs, xv.top, 0);
            else if (order < 0) code = GcdSchool(ctx, &xv, &yv, result);
            else code = GcdSchool(ctx, &yv, &xv, result);
        }
    }
    return code;
}
