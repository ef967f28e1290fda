// The half-gcd against Euclid by long division and GMP, on random pairs,
// pairs with large common factors, and pairs built from chosen quotient
// sequences (all ones; one huge quotient at the start, middle or end).
#include <gtest/gtest.h>

#include <algorithm>

#include "bigint/dispatch.h"
#include "bigint/fast_paths.h"
#include "bigint/gcd_lehmer.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

// The gcd through the dispatcher (which picks the half-gcd at the thresholds
// in force) against GMP, and against Euclid when asked.
void CheckGcd(const BigInt* x, const BigInt* y, bool withSchool) {
    if (BigCompareMag(x, y) >= 0 || BigIsZero(y)) return;   // the contract: |x| > |y| > 0
    CalcContext ctx;
    Big g;
    ASSERT_EQ(GcdDispatch(&ctx, x, y, &g), 0);
    ASSERT_EQ(g.v.negative, 0);
    mpz_t zx, zy, zg;
    mpz_inits(zx, zy, zg, nullptr);
    ToMpz(zx, x);
    ToMpz(zy, y);
    mpz_gcd(zg, zx, zy);
    const std::string expected = MpzDecimal(zg);
    mpz_clears(zx, zy, zg, nullptr);
    ASSERT_EQ(ToDecimal(&g), expected) << x->top + 1 << " and " << y->top + 1 << " limbs";
    if (withSchool) {
        Big e;
        ASSERT_EQ(GcdSchool(&ctx, x, y, &e), 0);
        ASSERT_EQ(ToDecimal(&g), ToDecimal(&e));
    }
}

void CheckGcd(const std::vector<Limb>& a, const std::vector<Limb>& b, bool withSchool) {
    Big x, y;
    SetLimbs(&x, a, Rng()() % 2 == 0);
    SetLimbs(&y, b, Rng()() % 2 == 0);
    if (BigCompareMag(&x, &y) > 0) std::swap(x.v, y.v);
    CheckGcd(&x, &y, withSchool);
}

void FromMpz(BigInt* v, const mpz_t z) {
    BigFree(v);
    FromDecimal(v, MpzDecimal(z));
}

// The pair whose continued fraction has the given quotients, times g:
// (x, y) := (q·x + y, x) from the last quotient back, starting at (g, 0).
void FromQuotients(const std::vector<std::string>& quotients, const mpz_t g, BigInt* x, BigInt* y) {
    mpz_t a, b, q;
    mpz_inits(a, b, q, nullptr);
    mpz_set(a, g);
    for (auto it = quotients.rbegin(); it != quotients.rend(); ++it) {
        mpz_set_str(q, it->c_str(), 10);
        mpz_addmul(b, q, a);
        mpz_swap(a, b);
    }
    FromMpz(x, a);
    FromMpz(y, b);
    mpz_clears(a, b, q, nullptr);
}

std::string RandomDigits(int32_t n) {
    std::string s(n, '0');
    for (auto& c : s) c = static_cast<char>('0' + Rng()() % 10);
    s[0] = static_cast<char>('1' + Rng()() % 9);
    return s;
}

// Quotients mostly small (as Euclid meets them), with `huge` digits at
// position `where` when huge > 0.
std::vector<std::string> Quotients(int32_t count, int32_t where, int32_t huge) {
    std::vector<std::string> q;
    for (int32_t i = 0; i < count; ++i)
        q.push_back(i == where && huge > 0 ? RandomDigits(huge) : std::to_string(1 + Rng()() % 6));
    return q;
}

}  // namespace

TEST(FastGcdHalf, RandomPairsAgreeWithEuclidAndGmpAtEverySizeAndShape) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t n = 6; n <= 160; n += n < 40 ? 1 : 7) {
        for (int32_t m : {6, n / 2 + 3, n - 2, n - 1, n}) {
            if (m < 6 || m > n) continue;
            const Shape sa = kShapes[Rng()() % 5], sb = kShapes[Rng()() % 5];
            CheckGcd(Operand(n, sa), Operand(m, sb), true);
            // A common factor of every length up to the smaller operand.
            const std::vector<Limb> g = Operand(1 + int32_t(Rng()() % m), Shape::Random);
            CheckGcd(NaiveProduct(Operand(n, Shape::Random), g), NaiveProduct(Operand(m, sb), g), true);
        }
    }
}

TEST(FastGcdHalf, SizesAroundTheThresholdsAgreeWithGmp) {
    const FastThresholds t;
    for (int32_t n : {t.gcdHalf - 1, t.gcdHalf, t.gcdHalf + 1, 2 * t.gcdHalfLeaf - 1, 2 * t.gcdHalfLeaf,
                      2 * t.gcdHalfLeaf + 1, 4 * t.gcdHalfLeaf + 3}) {
        if (n < t.gcdHalf) n = t.gcdHalf + n % 7;
        CheckGcd(Operand(n + 1, Shape::Random), Operand(n, Shape::Random), false);
        CheckGcd(Operand(n, Shape::Random), Operand(n, Shape::Random), false);
        CheckGcd(Operand(n, Shape::Nines), Operand(n - 1, Shape::RunsOfZeroAndNine), false);
    }
    // Leaves of every size from one limb above the lowered floor.
    FastThresholds lowered = FastThresholds::Lowered();
    for (int32_t leaf : {8, 13, 30}) {
        lowered.gcdHalfLeaf = leaf;
        ThresholdScope scope(lowered);
        for (int32_t n : {leaf, 2 * leaf - 1, 2 * leaf, 4 * leaf + 1, 300})
            CheckGcd(Operand(n, Shape::Random), Operand(n - 1, Shape::Random), false);
    }
}

TEST(FastGcdHalf, LargeCommonFactorsAndDivisors) {
    CalcContext ctx;
    const int32_t n = 3 * FastThresholds().gcdHalf;
    for (int32_t gl : {1, 50, n / 2, n - 10}) {
        Big g, x, y, gx, gy;
        RandomBig(&g, gl, false);
        RandomBig(&x, n - gl + 7, false);
        RandomBig(&y, n - gl, false);
        ASSERT_EQ(BigMul(&ctx, &gx, &g, &x), 0);
        ASSERT_EQ(BigMul(&ctx, &gy, &g, &y), 0);
        CheckGcd(&gx, &gy, false);
        // y divides x·y: the answer is y itself, found by the first division.
        Big xy;
        ASSERT_EQ(BigMul(&ctx, &xy, &gx, &gy), 0);
        CheckGcd(&xy, &gy, false);
    }
}

TEST(FastGcdHalf, QuotientsAllOneAndSingleHugeQuotients) {
    mpz_t one, g;
    mpz_inits(one, g, nullptr);
    mpz_set_ui(one, 1);
    mpz_set_str(g, RandomDigits(300).c_str(), 10);
    for (const bool lowered : {true, false}) {
        ThresholdScope scope(lowered ? FastThresholds::Lowered() : FastThresholds());
        const int32_t fib = lowered ? 1200 : 60000;   // F(60000) has 12539 digits
        {
            // Consecutive Fibonacci numbers, with and without a common factor.
            Big x, y;
            FromQuotients(std::vector<std::string>(fib, "1"), one, &x, &y);
            CheckGcd(&x, &y, lowered);
            FromQuotients(std::vector<std::string>(fib, "1"), g, &x, &y);
            CheckGcd(&x, &y, lowered);
        }
        // A quotient of 12000 digits at the start, a quarter, half way, and
        // near the end of a sequence worth about as many digits.
        const int32_t count = lowered ? 600 : 30000, huge = lowered ? 800 : 12000;
        for (int32_t where : {0, count / 4, count / 2, count - 3}) {
            Big x, y;
            FromQuotients(Quotients(count, where, huge), g, &x, &y);
            CheckGcd(&x, &y, lowered);
        }
    }
    mpz_clears(one, g, nullptr);
}

TEST(FastGcdHalf, FarLongerFirstOperand) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t m : {6, 40, 200}) CheckGcd(Operand(5000, Shape::Random), Operand(m, Shape::Random), false);
    const FastThresholds t;
    ThresholdScope plain(t);
    CheckGcd(Operand(20 * t.gcdHalf, Shape::Random), Operand(t.gcdHalf + 5, Shape::Random), false);
}

TEST(FastGcdHalf, SignsOfBigGcdStayTheCaller) {
    const FastThresholds t;
    Big x, y, nx, ny, r;
    RandomBig(&x, t.gcdHalf * 2, false);
    RandomBig(&y, t.gcdHalf * 2 - 1, false);
    ASSERT_EQ(BigCopy(&nx, &x), 0);
    ASSERT_EQ(BigCopy(&ny, &y), 0);
    nx.v.negative = ny.v.negative = 1;
    CalcContext ctx;
    ASSERT_EQ(BigGcd(&ctx, &x, &y, &r), 0);
    const std::string positive = ToDecimal(&r);
    for (auto [a, b] : {std::pair{&nx, &y}, {&x, &ny}, {&nx, &ny}, {&ny, &nx}}) {
        BigFree(&r.v);
        ASSERT_EQ(BigGcd(&ctx, a, b, &r), 0);
        EXPECT_EQ(ToDecimal(&r), positive);
    }
    // Equal magnitudes answer the second operand as it stands.
    BigFree(&r.v);
    ASSERT_EQ(BigGcd(&ctx, &x, &nx, &r), 0);
    EXPECT_EQ(ToDecimal(&r), "-" + ToDecimal(&x));
}

TEST(FastGcdHalf, LehmerStepsKeepEveryRemainderAboveTheFloor) {
    // The cofactors applied to the full numbers give Euclid's own remainders,
    // the smaller no less than 10000^floor.
    mpz_t x0, y0, x, y, u, v, bound, q, r;
    mpz_inits(x0, y0, x, y, u, v, bound, q, r, nullptr);
    int taken = 0;
    for (int trial = 0; trial < 4000; ++trial) {
        const int32_t lx = 2 + int32_t(Rng()() % 12), ly = lx - int32_t(Rng()() % 2);
        Big xb, yb;
        SetLimbs(&xb, Operand(lx, Shape::Random), false);
        SetLimbs(&yb, Operand(ly, trial % 3 != 0 ? Shape::Random : Shape::Nines), false);
        if (BigCompareMag(&xb, &yb) > 0) std::swap(xb.v, yb.v);
        const int32_t floorLimbs = int32_t(Rng()() % (lx + 1));
        const LehmerCofactors c =
            LehmerLeading(xb.v.limbs, xb.v.top + 1, yb.v.limbs, yb.v.top + 1, floorLimbs);
        if (c.steps == 0) continue;
        ++taken;
        ToMpz(x0, &xb.v);
        ToMpz(y0, &yb.v);
        mpz_set(x, x0);
        mpz_set(y, y0);
        for (int32_t k = 0; k < c.steps; ++k) {
            mpz_fdiv_qr(q, r, x, y);
            mpz_swap(x, y);
            mpz_swap(y, r);
        }
        mpz_mul_si(u, x0, c.A);
        mpz_mul_si(v, y0, c.B);
        mpz_add(u, u, v);
        ASSERT_EQ(mpz_cmp(u, x), 0) << "trial " << trial;
        mpz_mul_si(u, x0, c.C);
        mpz_mul_si(v, y0, c.D);
        mpz_add(u, u, v);
        ASSERT_EQ(mpz_cmp(u, y), 0) << "trial " << trial;
        mpz_ui_pow_ui(bound, 10000, floorLimbs);
        ASSERT_GE(mpz_cmp(y, bound), 0) << "trial " << trial << ", floor " << floorLimbs;
    }
    EXPECT_GT(taken, 1000);
    mpz_clears(x0, y0, x, y, u, v, bound, q, r, nullptr);
}

TEST(FastGcdHalf, QStopsItAtEveryPoll) {
    for (const bool lowered : {false, true}) {
        FastThresholds t = lowered ? FastThresholds::Lowered() : FastThresholds();
        ThresholdScope scope(t);
        Big a, b, g;
        const int32_t n = lowered ? 300 : 4 * t.gcdHalf;
        RandomBig(&a, n, false);
        RandomBig(&b, n - 3, false);
        ScriptedContext counting;
        ASSERT_EQ(GcdDispatch(&counting, &a, &b, &g), 0);
        const long polls = counting.polls();
        ASSERT_GT(polls, 10);
        for (long stopAt : {1L, 2L, polls / 3, polls / 2, polls - 1, polls}) {
            ScriptedContext stop(stopAt);
            Big r;
            EXPECT_EQ(BigGcd(&stop, &a, &b, &r), -1) << "poll " << stopAt << " of " << polls;
            EXPECT_EQ(ToDecimal(&r), "1");
            EXPECT_EQ(stop.polls(), stopAt);
        }
    }
}
