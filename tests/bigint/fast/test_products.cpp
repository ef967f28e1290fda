// Range products, factorials and binomials from the list products
// (bigint/product_list.cpp) against GMP: leaves of every room, words of one
// factor and of many, sieve segments and the x²·y steps cut into pieces.
#include <gtest/gtest.h>

#include "bigint/dispatch.h"
#include "bigint/fast_paths.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

mpz_class GmpRange(int32_t c, int32_t n) {
    mpz_class r = 1;
    for (int32_t i = c + 1; i <= n; ++i) r *= i;
    return r;
}

}  // namespace

// Both routes of (c, n], with rooms from one word to several leaves' worth:
// factors near 10^8 make words of one factor, small ones words of many.
TEST(FastProducts, RangeProductsByTreeAndPrimesMatchGmpAtEveryLeafRoom) {
    FastThresholds t = FastThresholds::Lowered();
    CalcContext ctx;
    struct Range {
        int32_t c, n;
    };
    for (const int32_t room : {1, 5, 8, 33, 128}) {
        t.productLeaf = room;
        ThresholdScope scope(t);
        for (Range r : {Range{0, 1}, Range{0, 2}, Range{0, 97}, Range{10, 900},
                        Range{99998000, 99999999}, Range{31622700, 31623000}, Range{0, 3000}}) {
            const std::string want = GmpRange(r.c, r.n).get_str();
            Num tree, primes;
            ASSERT_EQ(RangeProductTree(&ctx, r.c, r.n, &tree.v), Result::kOk);
            EXPECT_EQ(ToDecimal(&tree.v), want) << r.c << ".." << r.n << " room " << room;
            if (r.n > 100000) continue;  // the sieve runs over 1 … n
            ASSERT_EQ(RangeProductPrimes(&ctx, r.c, r.n, &primes.v), Result::kOk);
            EXPECT_EQ(ToDecimal(&primes.v), want) << r.c << ".." << r.n << " room " << room;
        }
    }
}

// n at the edges of the sieve's segments (65536 numbers each) and of its
// base primes (squares of primes), every edge k, and factorials whose last
// squares are multiplied by many pieces.
TEST(FastProducts, BinomialsAndFactorialsAtSieveEdgesMatchGmp) {
    ThresholdScope scope(FastThresholds::Lowered());
    CalcContext ctx;
    mpz_class z;
    for (const int32_t n : {961, 962, 65535, 65536, 65537, 131071, 131073}) {
        for (const int32_t k : {0, 1, 2, 40, n / 2, n / 2 + 1, n - 41, n - 1, n}) {
            Num bn(std::to_string(n)), bk(std::to_string(k)), c;
            ASSERT_EQ(BigBinomial(&ctx, &c.v, &bn.v, &bk.v), Result::kOk);
            mpz_bin_uiui(z.get_mpz_t(), static_cast<unsigned long>(n),
                         static_cast<unsigned long>(k));
            EXPECT_EQ(ToDecimal(&c.v), z.get_str()) << n << " " << k;
        }
    }
    for (const int32_t n : {40, 41, 1024, 4099, 30011}) {
        Num bn(std::to_string(n)), f;
        ASSERT_EQ(BigFact(&ctx, &f.v, &bn.v), Result::kOk);
        mpz_fac_ui(z.get_mpz_t(), static_cast<unsigned long>(n));
        EXPECT_EQ(ToDecimal(&f.v), z.get_str()) << n << "!";
    }
}

// A range starting above n / 2 goes by the tree.
TEST(FastProducts, RangeTreeStopsAtAnyPoll) {
    FastThresholds t = FastThresholds::Lowered();
    t.nttParallel = 0;
    ThresholdScope scope(t);
    const Num n("99999999"), r("10000");
    ExpectStopsAtEveryPoll([&](CalcContext* c, BigInt* v) { return BigPerm(c, v, &n.v, &r.v); });
}

// At the shipped thresholds the blocks and pieces are real transform
// products: the x²·y steps of n! and of (c, n], and a binomial's one list.
TEST(FastProducts, LongProductsAtShippedThresholdsMatchGmp) {
    CalcContext ctx;
    mpz_class z, low;
    Num f, range, c;
    const Num n("100000"), k("49999");
    ASSERT_EQ(BigFact(&ctx, &f.v, &n.v), Result::kOk);
    mpz_fac_ui(z.get_mpz_t(), 100000);
    EXPECT_EQ(ToDecimal(&f.v), z.get_str());
    ASSERT_EQ(RangeProductPrimes(&ctx, 30000, 100000, &range.v), Result::kOk);
    mpz_fac_ui(low.get_mpz_t(), 30000);
    EXPECT_EQ(ToDecimal(&range.v), mpz_class(z / low).get_str());
    ASSERT_EQ(BigBinomial(&ctx, &c.v, &n.v, &k.v), Result::kOk);
    mpz_bin_uiui(z.get_mpz_t(), 100000, 49999);
    EXPECT_EQ(ToDecimal(&c.v), z.get_str());
}
