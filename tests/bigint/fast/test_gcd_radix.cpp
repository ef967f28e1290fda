// Lehmer's gcd and divide-and-conquer base conversion against the reference
// kernels and GMP.
#include <gtest/gtest.h>

#include "bigint/dispatch.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

void CheckGcd(const std::vector<Limb>& a, const std::vector<Limb>& b) {
    Big x, y, g1, g2;
    SetLimbs(&x, a, false);
    SetLimbs(&y, b, true);
    if (BigCompareMag(&x, &y) >= 0) return;   // the dispatcher's contract: |a| > |b| > 0
    CalcContext ctx;
    ASSERT_EQ(GcdSchool(&ctx, &x, &y, &g1), 0);
    ASSERT_EQ(GcdDispatch(&ctx, &x, &y, &g2), 0);
    ASSERT_EQ(ToDecimal(&g2), ToDecimal(&g1)) << a.size() << ", " << b.size();
    ASSERT_EQ(g2.v.negative, 0);
}

std::vector<unsigned char> RandomDigits(int32_t n, int base) {
    std::vector<unsigned char> d(n);
    for (auto& c : d) c = static_cast<unsigned char>(Rng()() % base);
    return d;
}

}  // namespace

TEST(FastGcd, AgreesWithEuclidOnCommonFactorsAndHardShapes) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t n = 3; n <= 40; n += 4) {
        for (int32_t m : {3, n / 2 + 1, n - 1, n}) {
            const std::vector<Limb> g = Operand(1 + n / 5, Shape::Random);
            CheckGcd(NaiveProduct(Operand(n, Shape::Random), g), NaiveProduct(Operand(m, Shape::Nines), g));
            CheckGcd(Operand(n, Shape::RunsOfZeroAndNine), Operand(m, Shape::Random));
            CheckGcd(Operand(n, Shape::Nines), Operand(m, Shape::Nines));
        }
    }
    // Consecutive Fibonacci numbers: every quotient 1, the longest run of steps.
    std::vector<Limb> f0 = {1}, f1 = {1};
    for (int i = 0; i < 300; ++i) {
        std::vector<Limb> next(f1.size() + 1, 0);
        for (size_t k = 0; k < f1.size(); ++k) next[k] = static_cast<Limb>(f1[k] + (k < f0.size() ? f0[k] : 0));
        f0 = f1;
        f1 = Normalised(next.data(), int32_t(next.size()));
    }
    CheckGcd(f1, f0);
}

TEST(FastGcd, LargeGcdMatchesGmp) {
    mpz_t x, y, g;
    mpz_inits(x, y, g, nullptr);
    Big a, b, c, r;
    RandomBig(&a, 3000, false);
    RandomBig(&b, 2900, false);
    RandomBig(&c, 200, false);
    CalcContext ctx;
    Big ac, bc;
    BigMul(&ctx, &ac, &a, &c);
    BigMul(&ctx, &bc, &b, &c);
    ASSERT_EQ(BigGcd(&ctx, &ac, &bc, &r), 0);
    ToMpz(x, &ac);
    ToMpz(y, &bc);
    mpz_gcd(g, x, y);
    EXPECT_EQ(ToDecimal(&r), MpzDecimal(g));
    mpz_clears(x, y, g, nullptr);
}

TEST(FastRadix, BothDirectionsAgreeWithDigitAtATimeInEveryBase) {
    ThresholdScope scope(FastThresholds::Lowered());
    CalcContext ctx;
    for (int base = 2; base <= 16; ++base) {
        for (int32_t n : {1, 7, 8, 9, 31, 64, 100, 257}) {
            std::vector<unsigned char> d = RandomDigits(n, base);
            if (n > 3) d[0] = d[1] = 0;   // leading zeros
            Big a, b;
            ASSERT_EQ(RadixToBigSchool(&ctx, d.data(), n, base, &a), 0);
            ASSERT_EQ(RadixToBigDispatch(&ctx, d.data(), n, base, &b), 0);
            ASSERT_EQ(ToDecimal(&b), ToDecimal(&a)) << "base " << base << ", " << n << " digits";
            std::string s1, s2;
            ASSERT_EQ(BigToRadixSchool(&ctx, &a, base, &s1), 0);
            ASSERT_EQ(BigToRadixDispatch(&ctx, &a, base, &s2), 0);
            ASSERT_EQ(s2, s1) << "base " << base << ", " << n << " digits";
        }
        // Powers of the base and their neighbours: all-zero and all-top digits.
        for (int32_t n : {16, 33}) {
            std::vector<unsigned char> one(n + 1, 0), top(n, static_cast<unsigned char>(base - 1));
            one[0] = 1;
            for (const auto& d : {one, top}) {
                Big v;
                std::string s1, s2;
                ASSERT_EQ(RadixToBigDispatch(&ctx, d.data(), int32_t(d.size()), base, &v), 0);
                ASSERT_EQ(BigToRadixSchool(&ctx, &v, base, &s1), 0);
                ASSERT_EQ(BigToRadixDispatch(&ctx, &v, base, &s2), 0);
                ASSERT_EQ(s2, s1);
            }
        }
    }
}

TEST(FastRadix, ConvertBaseMatchesGmpOnLongText) {
    mpz_t z;
    mpz_init(z);
    CalcContext ctx;
    std::string dec(30000, '0');
    for (auto& c : dec) c = static_cast<char>('0' + Rng()() % 10);
    dec[0] = '7';
    mpz_set_str(z, dec.c_str(), 10);
    std::string hex = dec;
    ASSERT_EQ(ConvertBase(&ctx, 10, 16, &hex), 0);
    std::string expected = MpzDecimal(z);
    std::vector<char> buf(mpz_sizeinbase(z, 16) + 2);
    mpz_get_str(buf.data(), 16, z);
    expected = buf.data();
    for (auto& c : expected) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    EXPECT_EQ(hex, expected);
    std::string back = hex;
    ASSERT_EQ(ConvertBase(&ctx, 16, 10, &back), 0);
    EXPECT_EQ(back, dec);
    mpz_clear(z);
}

TEST(FastGcdAndRadix, QStopsThem) {
    Big a, b, g;
    RandomBig(&a, 20000, false);
    RandomBig(&b, 19000, false);
    std::string text;
    for (long stopAt : {1L, 3L}) {
        ScriptedContext c1(stopAt), c2(stopAt);
        EXPECT_EQ(GcdDispatch(&c1, &a, &b, &g), -1);
        EXPECT_EQ(BigToRadixDispatch(&c2, &a, 7, &text), -1);
    }
}
