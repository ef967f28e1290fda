// Products beyond the transform's longest length take their own branches
// (Karatsuba over transform-sized halves, pieces, halved binary words), which
// the primes' limit of 2^25 points keeps out of reach; a lowered limit brings
// them down to sizes GMP checks at once.
#include <gtest/gtest.h>

#include "bigint/mul_kernels.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

constexpr int32_t kLimit = 1025;  // la + lb of the longest transform

FastThresholds LowLimit() {
    FastThresholds t;
    t.mulKaratsuba = 8;
    t.mulNtt = 24;
    t.sqrKaratsuba = 8;
    t.sqrNtt = 24;
    t.binaryNtt = 4;
    t.nttParallel = 256;  // the helper thread too, on the longer transforms
    t.nttMaxLength = kLimit;
    return t;
}

}  // namespace

TEST(NttLimit, ProductsBelowAtAndAboveTheLimit) {
    ThresholdScope scope(LowLimit());
    ASSERT_EQ(NttMaxLength(), kLimit);
    CalcContext ctx;
    struct Sizes {
        int32_t la, lb;
    };
    const Sizes cases[] = {
        {512, 512}, {513, 512},  {513, 513}, {514, 513},   // balanced around the limit
        {1000, 25}, {1001, 24},  {1001, 25}, {1002, 24},   // a long by a short one
        {700, 330}, {2050, 600}, {3000, 24}, {4100, 2049}  // pieces, and halves of halves
    };
    for (const Sizes& c : cases) {
        for (Shape shape : {Shape::Random, Shape::Nines, Shape::TopTenThousand}) {
            Num a, b, r;
            SetLimbs(&a.v, Operand(c.la, shape), c.la % 2 == 0);
            SetLimbs(&b.v, Operand(c.lb, Shape::Nines), false);
            ASSERT_EQ(BigMul(&ctx, &r.v, &a.v, &b.v), Result::kOk);
            EXPECT_EQ(Text(r), mpz_class(Gmp(&a.v) * Gmp(&b.v)).get_str()) << c.la << " x " << c.lb;
            ASSERT_EQ(BigMul(&ctx, r.Out(), &a.v, &a.v), Result::kOk);
            EXPECT_EQ(Text(r), mpz_class(Gmp(&a.v) * Gmp(&a.v)).get_str()) << c.la << " squared";
        }
    }
}

TEST(NttLimit, BinaryWordsBeyondTheLimitAreHalved) {
    // Base 16 goes out through products of 32-bit words in 16-bit halves: a
    // transform takes la + lb words up to half the limit.
    FastThresholds t = LowLimit();
    t.nttMaxLength = 257;
    ThresholdScope scope(t);
    CalcContext ctx;
    for (int32_t limbs : {200, 700, 3000}) {
        Num a;
        SetLimbs(&a.v, Operand(limbs, Shape::RunsOfZeroAndNine), false);
        std::string text = Text(a);
        ASSERT_EQ(ConvertBase(&ctx, 10, 16, &text), Result::kOk);
        EXPECT_EQ(text, Gmp(&a.v).get_str(-16)) << limbs << " limbs";
    }
}
