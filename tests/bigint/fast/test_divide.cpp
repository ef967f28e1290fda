// Division by Newton reciprocal against long division (GMP checks the public
// division at the shipped thresholds in test_differential.cpp).
#include <gtest/gtest.h>

#include "bigint/dispatch.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

// Dispatcher (fast path forced) and long division give the same records.
void CheckAgainstSchool(const std::vector<Limb>& xl, const std::vector<Limb>& dl, bool xn,
                        bool dn) {
    Num x, d, q1, r1, q2, r2;
    SetLimbs(&x.v, xl, xn);
    SetLimbs(&d.v, dl, dn);
    if (BigCompareMag(&x.v, &d.v) >= 0) return;  // the dispatcher's contract: |x| > |d|
    CalcContext ctx;
    ASSERT_EQ(DivModSchool(&ctx, &x.v, &d.v, &q1.v, &r1.v), Result::kOk);
    ASSERT_EQ(DivModDispatch(&ctx, &x.v, &d.v, &q2.v, &r2.v), Result::kOk);
    ASSERT_EQ(ToDecimal(&q2.v), ToDecimal(&q1.v)) << xl.size() << " / " << dl.size();
    ASSERT_EQ(ToDecimal(&r2.v), ToDecimal(&r1.v)) << xl.size() << " / " << dl.size();
    ASSERT_EQ(q2.v.negative, q1.v.negative);
    ASSERT_EQ(r2.v.negative, r1.v.negative);
}

}  // namespace

TEST(FastDivide, AgreesWithLongDivisionAcrossSizesShapesAndSigns) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t m = 2; m <= 26; m += 3) {
        for (int32_t n : {m, m + 1, m + 2, m + 5, 2 * m - 1, 2 * m, 2 * m + 3, 3 * m + 7, 5 * m}) {
            for (Shape sx : kShapes) {
                for (Shape sd : {Shape::Random, Shape::Nines, Shape::RunsOfZeroAndNine}) {
                    const bool xn = Rng()() & 1, dn = Rng()() & 1;
                    CheckAgainstSchool(Operand(n, sx), Operand(m, sd), xn, dn);
                }
            }
        }
    }
}

// One- and two-limb divisors go through the dividend in one pass, checked
// against GMP by the differential; here its polls.
TEST(FastDivide, OneLimbDivisorOfALongDividendStopsAtItsPolls) {
    Num x, d, q, r;
    RandomBig(&x.v, 300000, false);
    ASSERT_EQ(BigFromInt(&d.v, 7), Result::kOk);
    for (long stopAt : {1L, 2L}) {
        QuitAtPoll ctx(stopAt);
        EXPECT_EQ(DivModDispatch(&ctx, &x.v, &d.v, &q.v, &r.v), Result::kStopped);
        EXPECT_EQ(ctx.polls(), stopAt);
    }
}

TEST(FastDivide, HardQuotientsAndExactMultiples) {
    // Divisors just above a power of the base give the largest quotient limbs;
    // x = q·d and x = q·d − 1 sit on either side of a remainder of zero.
    ThresholdScope scope(FastThresholds::Lowered());
    CalcContext ctx;
    for (int32_t m : {3, 7, 12, 30}) {
        std::vector<Limb> d(m, 0);
        d[0] = 1;
        d[m - 1] = 1;
        const std::vector<Limb> q = Operand(m + 4, Shape::Nines);
        const std::vector<Limb> prod = NaiveProduct(q, d);
        CheckAgainstSchool(prod, d, false, false);
        CheckAgainstSchool(Operand(2 * m, Shape::Nines), d, true, false);
        CheckAgainstSchool(Operand(2 * m + 1, Shape::Nines), Operand(m, Shape::Nines), false, true);
        CheckAgainstSchool(MinusOne(prod), d, false, false);
    }
}

TEST(FastDivide, RepeatedDivisorsReuseNothingStale) {
    // The same divisor twice, then one differing in its lowest limb only,
    // then the first again after a division stopped while preparing it.
    ThresholdScope scope(FastThresholds::Lowered());
    const std::vector<Limb> d1 = Operand(20, Shape::Random);
    std::vector<Limb> d2 = d1;
    d2[0] = static_cast<Limb>((d2[0] + 1) % kLimbBase);
    for (const std::vector<Limb>* d : {&d1, &d1, static_cast<const std::vector<Limb>*>(&d2), &d1}) {
        CheckAgainstSchool(Operand(39, Shape::Random), *d, false, false);
        CheckAgainstSchool(Operand(40, Shape::Nines), *d, true, false);
    }
    Num x, d, q, r;
    SetLimbs(&x.v, Operand(40, Shape::Random), false);
    SetLimbs(&d.v, d2, false);
    QuitAtPoll stopping(1);
    ASSERT_EQ(DivModDispatch(&stopping, &x.v, &d.v, &q.v, &r.v), Result::kStopped);
    CheckAgainstSchool(Operand(39, Shape::Random), d2, false, true);
    // Seen again, the divisor's half reciprocal is completed; a stop while
    // completing it leaves nothing half made for the next division.
    Num q2, r2;
    QuitAtPoll stopAgain(1);
    ASSERT_EQ(DivModDispatch(&stopAgain, &x.v, &d.v, &q2.v, &r2.v), Result::kStopped);
    for (int i = 0; i < 2; ++i) CheckAgainstSchool(Operand(40, Shape::Random), d2, true, false);
}

TEST(FastDivide, WrappedRemaindersAroundTheTransformLengths) {
    // From the product threshold on, q·d and the Newton step's D·Rh come
    // modulo B^n − 1 with n the power of two above m + 2; divisors whose
    // length puts m + 3 on either side of a power of two, B^m − 1 and
    // B^(m−1) + 1 (the modulus itself and its neighbour), and dividends on
    // both sides of an exact multiple, each divisor seen once and again.
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t m : {12, 13, 14, 28, 29, 30, 31, 45, 60, 61, 62}) {
        std::vector<Limb> sparse(m, 0);
        sparse[0] = 1;
        sparse[m - 1] = 1;
        for (const std::vector<Limb>& d : {Operand(m, Shape::Random), Operand(m, Shape::Nines),
                                           sparse, Operand(m, Shape::TopTenThousand)}) {
            for (int32_t lq : {m / 2, m - 2, m + 1, 2 * m + 3}) {
                const std::vector<Limb> prod = NaiveProduct(Operand(lq, Shape::Random), d);
                CheckAgainstSchool(prod, d, false, false);
                CheckAgainstSchool(MinusOne(prod), d, false, false);
                CheckAgainstSchool(Operand(m + lq, Shape::Nines), d, false, false);
                CheckAgainstSchool(Operand(m + lq, Shape::Random), d, true, true);
            }
        }
    }
}
