// The half-gcd against Euclid by long division and GMP: random pairs of
// every shape, large common factors, pairs built from chosen quotient
// sequences (all ones; one huge quotient anywhere), Lehmer's step under a
// floor, and stops at any poll.
#include <gtest/gtest.h>

#include "bigint/dispatch.h"
#include "bigint/gcd_lehmer.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

// The dispatcher's gcd (the half-gcd at the thresholds in force) against
// GMP, and against Euclid when asked; signs of the operands at random.
void CheckGcd(const std::vector<Limb>& a, const std::vector<Limb>& b, bool withEuclid) {
    Big x, y, g;
    SetLimbs(&x, a, Rng()() % 2 == 0);
    SetLimbs(&y, b, Rng()() % 2 == 0);
    if (BigCompareMag(&x, &y) > 0) std::swap(x.v, y.v);
    if (BigCompareMag(&x, &y) == 0) return;   // the contract: |x| > |y| > 0
    CalcContext ctx;
    ASSERT_EQ(GcdDispatch(&ctx, &x, &y, &g), 0);
    ASSERT_EQ(g.v.negative, 0);
    mpz_t zx, zy, zg;
    mpz_inits(zx, zy, zg, nullptr);
    ToMpz(zx, &x);
    ToMpz(zy, &y);
    mpz_gcd(zg, zx, zy);
    EXPECT_EQ(ToDecimal(&g), MpzDecimal(zg)) << a.size() << " and " << b.size() << " limbs";
    mpz_clears(zx, zy, zg, nullptr);
    if (withEuclid) {
        Big e;
        ASSERT_EQ(GcdSchool(&ctx, &x, &y, &e), 0);
        EXPECT_EQ(ToDecimal(&g), ToDecimal(&e));
    }
}

}  // namespace

TEST(FastGcdHalf, RandomPairsAndCommonFactorsAgreeWithEuclidAndGmp) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t n = 6; n <= 160; n += n < 40 ? 1 : 7) {
        for (int32_t m : {6, n / 2 + 3, n - 1, n}) {
            if (m > n) continue;
            const Shape sb = kShapes[Rng()() % 5];
            CheckGcd(Operand(n, kShapes[Rng()() % 5]), Operand(m, sb), true);
            // A common factor of any length up to the smaller operand.
            const std::vector<Limb> g = Operand(1 + int32_t(Rng()() % m), Shape::Random);
            CheckGcd(NaiveProduct(Operand(n, Shape::Random), g), NaiveProduct(Operand(m, sb), g),
                     true);
        }
    }
    // a far longer than b: the first rounds are divisions.
    for (int32_t m : {6, 40, 200})
        CheckGcd(Operand(3000, Shape::Random), Operand(m, Shape::Random), false);
}

TEST(FastGcdHalf, SizesAroundTheThresholdsAgreeWithGmp) {
    const FastThresholds t;
    for (int32_t n : {t.gcdHalf, t.gcdHalf + 1, 2 * t.gcdHalf + 3}) {
        CheckGcd(Operand(n + 1, Shape::Random), Operand(n, Shape::Random), false);
        CheckGcd(Operand(n, Shape::Nines), Operand(n - 1, Shape::RunsOfZeroAndNine), false);
    }
    // y divides x: the answer is y, found by the first division.
    const std::vector<Limb> y = Operand(t.gcdHalf + 5, Shape::Random);
    CheckGcd(NaiveProduct(Operand(3 * t.gcdHalf, Shape::Random), y), y, false);
    // Leaves around each size, with everything else lowered.
    FastThresholds lowered = FastThresholds::Lowered();
    for (int32_t leaf : {8, 13, 30}) {
        lowered.gcdHalfLeaf = leaf;
        ThresholdScope scope(lowered);
        for (int32_t n : {leaf, 2 * leaf - 1, 2 * leaf, 4 * leaf + 1, 300})
            CheckGcd(Operand(n, Shape::Random), Operand(n - 1, Shape::Random), false);
    }
}

TEST(FastGcdHalf, QuotientsAllOneAndSingleHugeQuotients) {
    mpz_t one, g;
    mpz_inits(one, g, nullptr);
    mpz_set_ui(one, 1);
    mpz_set_str(g, "123456789012345678901234567890123456789", 10);
    for (const bool lowered : {true, false}) {
        ThresholdScope scope(lowered ? FastThresholds::Lowered() : FastThresholds());
        std::vector<Limb> x, y;
        // Consecutive Fibonacci numbers (F(60000) has 12539 digits), with
        // and without a common factor.
        const int32_t fib = lowered ? 1200 : 60000;
        FromQuotients(fib, -1, 0, true, one, &x, &y);
        CheckGcd(x, y, lowered);
        FromQuotients(fib, -1, 0, true, g, &x, &y);
        CheckGcd(x, y, lowered);
        // One quotient about as long as the rest of the sequence together,
        // at the start, a quarter, half way, and near the end.
        const int32_t count = lowered ? 600 : 30000, huge = lowered ? 800 : 12000;
        for (int32_t where : {0, count / 4, count / 2, count - 3}) {
            FromQuotients(count, where, huge, false, g, &x, &y);
            CheckGcd(x, y, lowered);
        }
    }
    mpz_clears(one, g, nullptr);
}

TEST(FastGcdHalf, LehmerStepsKeepEveryRemainderAboveTheFloor) {
    // Applied to the whole numbers, the cofactors give Euclid's own
    // remainders, the smaller no less than 10000^floor.
    mpz_t x0, y0, x, y, u, v, q;
    mpz_inits(x0, y0, x, y, u, v, q, nullptr);
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
            mpz_fdiv_r(q, x, y);
            mpz_swap(x, y);
            mpz_swap(y, q);
        }
        for (auto [rem, f, g] : {std::tuple{x, c.A, c.B}, {y, c.C, c.D}}) {
            mpz_mul_si(u, x0, f);
            mpz_mul_si(v, y0, g);
            mpz_add(u, u, v);
            ASSERT_EQ(mpz_cmp(u, rem), 0) << "trial " << trial;
        }
        mpz_ui_pow_ui(q, 10000, floorLimbs);
        ASSERT_GE(mpz_cmp(y, q), 0) << "trial " << trial << ", floor " << floorLimbs;
    }
    EXPECT_GT(taken, 1000);
    mpz_clears(x0, y0, x, y, u, v, q, nullptr);
}

TEST(FastGcdHalf, QStopsItAtEveryPoll) {
    for (const bool lowered : {false, true}) {
        FastThresholds t = lowered ? FastThresholds::Lowered() : FastThresholds();
        t.nttParallel = 0;
        ThresholdScope scope(t);
        Big a, b;
        const int32_t n = lowered ? 300 : 4 * t.gcdHalf;
        RandomBig(&a, n, true);
        RandomBig(&b, n - 3, true);
        ExpectStopsAtEveryPoll([&](CalcContext* c, BigInt* r) { return BigGcd(c, &a.v, &b.v, r); });
    }
}
