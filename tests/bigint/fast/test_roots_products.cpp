// Recursive square root, Newton cube root and the product tree against the
// reference kernels and GMP.
#include <gtest/gtest.h>

#include "bigint/dispatch.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

using RootFn = Result (*)(CalcContext*, const BigInt*, BigInt*);

// Same code, digits and sign from the dispatcher and the reference kernel.
void CheckRoot(RootFn fast, RootFn school, const std::vector<Limb>& limbs, bool negative) {
    Num x, a, b;
    SetLimbs(&x.v, limbs, negative);
    CalcContext ctx;
    const int expected = school(&ctx, &x.v, &a.v);
    ASSERT_EQ(fast(&ctx, &x.v, &b.v), expected) << limbs.size() << " limbs";
    ASSERT_EQ(ToDecimal(&b.v), ToDecimal(&a.v)) << limbs.size() << " limbs";
    ASSERT_EQ(b.v.negative, a.v.negative);
}

// s², s² − 1 and s² + 1 (s³ and neighbours for cubes) around a random s.
std::vector<std::vector<Limb>> NearPowers(int32_t rootLimbs, int power) {
    std::vector<Limb> s = Operand(rootLimbs, Shape::RunsOfZeroAndNine);
    std::vector<Limb> p = NaiveProduct(s, s);
    if (power == 3) p = NaiveProduct(p, s);
    std::vector<Limb> above = p;
    above[0] = static_cast<Limb>(above[0] + 1);
    return {p, MinusOne(p), Normalised(above.data(), int32_t(above.size()))};
}

}  // namespace

TEST(FastRoots, SquareRootsAgreeWithDigitByDigitRoots) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t n = 1; n <= 60; ++n) {
        for (Shape s : kShapes) CheckRoot(SqrtDispatch, SqrtSchool, Operand(n, s), false);
        CheckRoot(SqrtDispatch, SqrtSchool, Operand(n, Shape::Random), true);
    }
    for (int32_t r = 1; r <= 30; r += 3) {
        for (const auto& v : NearPowers(r, 2)) CheckRoot(SqrtDispatch, SqrtSchool, v, false);
    }
}

TEST(FastRoots, CubeRootsAgreeWithDigitByDigitRootsSignKept) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t n = 1; n <= 50; ++n) {
        for (Shape s : kShapes) CheckRoot(CbrtDispatch, CbrtSchool, Operand(n, s), (n & 1) != 0);
    }
    for (int32_t r = 1; r <= 20; r += 3) {
        for (const auto& v : NearPowers(r, 3)) {
            CheckRoot(CbrtDispatch, CbrtSchool, v, false);
            CheckRoot(CbrtDispatch, CbrtSchool, v, true);
        }
    }
}

// Deep recursions against GMP: random radicands (the top level's remainder
// then only bounded), exact powers and their neighbours (the bound cannot
// decide; the full remainder does), negative radicands for the cube root.
TEST(FastRoots, DeepRecursionsMatchGmpOnRandomAndExactPowers) {
    ThresholdScope scope(FastThresholds::Lowered());
    CalcContext ctx;
    auto check = [&](const mpz_class& x) {
        Num v(x.get_str()), s, c;
        mpz_class root, rest;
        mpz_rootrem(root.get_mpz_t(), rest.get_mpz_t(), x.get_mpz_t(), 3);
        ASSERT_EQ(BigCbrt(&ctx, &v.v, c.Out()), rest == 0 ? Result::kOk : kRootInexact)
            << x.get_str();
        ASSERT_EQ(ToDecimal(&c.v), root.get_str()) << x.get_str();
        if (x < 0) return;
        mpz_sqrtrem(root.get_mpz_t(), rest.get_mpz_t(), x.get_mpz_t());
        ASSERT_EQ(BigSqrt(&ctx, &v.v, s.Out()), rest == 0 ? Result::kOk : kRootInexact)
            << x.get_str();
        ASSERT_EQ(ToDecimal(&s.v), root.get_str()) << x.get_str();
    };
    for (int32_t n : {61, 97, 150, 241, 400}) {
        for (Shape shape : kShapes) {
            Num x;
            SetLimbs(&x.v, Operand(n, shape), (n & 1) != 0);
            check(Gmp(&x.v));
        }
    }
    for (int32_t r : {23, 40, 77, 120}) {
        Num s;
        SetLimbs(&s.v, Operand(r, Shape::Random), false);
        // Low limbs all 9s put the top level's u/d near 1/B² for cubes and
        // their neighbours, where the cube root's bound from the truncated
        // quotient has to decide.
        mpz_class nines, high = Gmp(&s.v);
        mpz_ui_pow_ui(nines.get_mpz_t(), 10000, static_cast<unsigned long>(r) / 2 + 1);
        high = high / nines * nines + nines - 1;
        for (const mpz_class& root : {Gmp(&s.v), high}) {
            for (const mpz_class& p : {mpz_class(root * root), mpz_class(root * root * root)}) {
                for (int delta : {-1, 0, 1}) {
                    check(p + delta);
                    check(-(p + delta));
                }
            }
        }
    }
}

// Both ways of forming the coefficient, on either side of the threshold, with
// the sign of a negative n: C(-n, k) = (-1)^k C(n + k - 1, k); then a
// factorial and a binomial at the shipped thresholds.
TEST(FastProducts, FactorialAndBinomialsMatchGmp) {
    CalcContext ctx;
    mpz_class z;
    for (int32_t n : {41, 80, 81, 97, 128, 1000, 4099}) {
        ThresholdScope scope(FastThresholds::Lowered());
        for (int32_t k : {1, 39, 40, 41, n / 3, n / 2, n - 40, n - 1}) {
            Num bn(std::to_string(n)), bk(std::to_string(k)), c, neg;
            ASSERT_EQ(BigBinomial(&ctx, &c.v, &bn.v, &bk.v), Result::kOk);
            mpz_bin_uiui(z.get_mpz_t(), static_cast<unsigned long>(n),
                         static_cast<unsigned long>(k));
            EXPECT_EQ(ToDecimal(&c.v), z.get_str()) << n << " " << k;
            if (k == n) continue;  // C(-1, k) refuses
            Num negN(std::to_string(-(n - k + 1)));
            ASSERT_EQ(BigBinomial(&ctx, &neg.v, &negN.v, &bk.v), Result::kOk);
            EXPECT_EQ(ToDecimal(&neg.v), (k % 2 ? "-" : "") + z.get_str())
                << -(n - k + 1) << " " << k;
        }
    }
    Num n("20000"), k("7000"), f, c;
    ASSERT_EQ(BigFact(&ctx, &f.v, &n.v), Result::kOk);
    mpz_fac_ui(z.get_mpz_t(), 20000);
    EXPECT_EQ(ToDecimal(&f.v), z.get_str());
    ASSERT_EQ(BigBinomial(&ctx, &c.v, &n.v, &k.v), Result::kOk);
    mpz_bin_uiui(z.get_mpz_t(), 20000, 7000);
    EXPECT_EQ(ToDecimal(&c.v), z.get_str());
}
