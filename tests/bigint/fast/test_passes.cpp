// The linear passes that poll in slices of 2^18 limbs (sums, differences, copies,
// schoolbook rows, the additions of x²·y) against their one-pass forms, on
// operands over two slices long, so that borrows and carries cross the
// slices' ends; and their stops.
#include <gtest/gtest.h>

#include <cstring>

#include "bigint/fast_ops.h"
#include "bigint/mul_kernels.h"
#include "bigint/product_list.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

constexpr int32_t kSlice = 1 << 18;

void ExpectSameRecord(const BigInt* got, const BigInt* want) {
    ASSERT_EQ(got->top, want->top);
    ASSERT_EQ(got->negative, want->negative);
    ASSERT_EQ(std::memcmp(got->limbs, want->limbs, sizeof(Limb) * size_t(want->top + 1)), 0);
}

}  // namespace

TEST(FastPasses, PolledSumsDifferencesAndCopiesMatchThePlainOnes) {
    const int32_t n = 2 * kSlice + 77;
    const std::vector<Limb> x = Operand(n, Shape::Random);
    std::vector<std::pair<std::vector<Limb>, std::vector<Limb>>> pairs = {
        {x, Operand(kSlice + 5, Shape::Random)},
        {x, Operand(n, Shape::Random)},
        {x, x},
        // B^(n−1) − 1: the borrow runs through every slice.
        {Operand(n, Shape::Zeros), {1}},
    };
    // Operands equal above limb k: a difference much shorter than they are.
    for (const int32_t k : {1000, kSlice - 1, kSlice, kSlice + 1, 2 * kSlice + 3}) {
        std::vector<Limb> y = x;
        const std::vector<Limb> low = Operand(k, Shape::RunsOfZeroAndNine);
        std::copy(low.begin(), low.end(), y.begin());
        pairs.push_back({x, y});
    }
    CalcContext ctx;
    for (const auto& [a, b] : pairs) {
        for (const bool swap : {false, true}) {
            Num u, v, plain, polled, copy;
            SetLimbs(&u.v, swap ? b : a, false);
            SetLimbs(&v.v, swap ? a : b, false);
            ASSERT_EQ(BigSub(&plain.v, &u.v, &v.v), Result::kOk);
            ASSERT_EQ(FastSubPolled(&ctx, &polled.v, &u.v, &v.v), Result::kOk);
            ExpectSameRecord(&polled.v, &plain.v);
            ASSERT_EQ(FastCopyPolled(&ctx, &copy.v, &u.v), Result::kOk);
            ExpectSameRecord(&copy.v, &u.v);
            Num sum, polledSum;
            ASSERT_EQ(FastAdd(&sum.v, &u.v, &v.v), Result::kOk);
            ASSERT_EQ(FastAddPolled(&ctx, &polledSum.v, &u.v, &v.v), Result::kOk);
            ExpectSameRecord(&polledSum.v, &sum.v);
            // u·B^k + (v mod B^k), the low part's zeros written in slices too.
            for (const int32_t k : {1, kSlice + 3}) {
                const BigInt low = FastViewLow(&v.v, k);
                Num shifted, want, joined;
                ASSERT_EQ(FastShiftUp(&shifted.v, &u.v, k), Result::kOk);
                ASSERT_EQ(FastAdd(&want.v, &shifted.v, &low), Result::kOk);
                ASSERT_EQ(FastJoinPolled(&ctx, &joined.v, &u.v, &low, k), Result::kOk);
                ExpectSameRecord(&joined.v, &want.v);
            }
        }
    }
}

TEST(FastPasses, PolledDifferenceStopsAtEachSliceLeavingNothing) {
    FastThresholds t;
    t.pollWork = 1;
    ThresholdScope scope(t);
    std::vector<Limb> a = Operand(2 * kSlice + 9, Shape::Random), b = a;
    b[kSlice + 2] = static_cast<Limb>((b[kSlice + 2] + 1) % kLimbBase);
    Num x, y;
    SetLimbs(&x.v, a, false);
    SetLimbs(&y.v, b, false);
    QuitAtPoll counting;
    Num full;
    ASSERT_EQ(FastSubPolled(&counting, &full.v, &x.v, &y.v), Result::kOk);
    ASSERT_GE(counting.polls(), 3);  // the scan's first slice, and two subtracted
    for (long at = 1; at <= counting.polls(); ++at) {
        QuitAtPoll stop(at);
        Num r;
        EXPECT_EQ(FastSubPolled(&stop, &r.v, &x.v, &y.v), Result::kStopped);
        EXPECT_EQ(stop.polls(), at);
        EXPECT_EQ(r.v.limbs, nullptr);
    }
}

TEST(FastPasses, UnitStepsInPlaceMatchSums) {
    CalcContext ctx;
    Num one("1");
    for (const Shape shape : kShapes) {
        for (const bool up : {false, true}) {
            Num v, want;
            SetLimbs(&v.v, Normalised(Operand(6, shape).data(), 6), false);
            ASSERT_EQ(up ? FastAdd(&want.v, &v.v, &one.v) : FastSub(&want.v, &v.v, &one.v),
                      Result::kOk);
            ASSERT_EQ(FastStepOne(&v.v, up), Result::kOk);
            ExpectSameRecord(&v.v, &want.v);
        }
    }
}

TEST(FastPasses, SchoolbookRowsPollWithinTheirSlices) {
    const std::vector<Limb> a = Operand(2 * kSlice + 3, Shape::Random),
                            b = Operand(3, Shape::Nines);
    Num x, y, p;
    SetLimbs(&x.v, a, false);
    SetLimbs(&y.v, b, false);
    QuitAtPoll counting;
    ASSERT_EQ(BigMul(&counting, &p.v, &x.v, &y.v), Result::kOk);
    EXPECT_EQ(Normalised(p.v.limbs, p.v.top + 1), NaiveProduct(a, b));
    EXPECT_EQ(counting.polls(), 3 * 3);  // three slices a row
    QuitAtPoll stop(2);
    EXPECT_EQ(BigMul(&stop, p.Out(), &x.v, &y.v), Result::kStopped);
    EXPECT_EQ(stop.polls(), 2);
}

TEST(FastPasses, SlicedAdditionCarriesAcrossSlices) {
    for (const Shape shape : {Shape::Nines, Shape::Random}) {
        std::vector<Limb> p = Operand(2 * kSlice + 40, shape), q = p;
        p.push_back(0);
        q.push_back(0);
        const std::vector<Limb> t = Operand(2 * kSlice + 1, shape);
        LimbsAddInto(q.data(), int32_t(q.size()), t.data(), int32_t(t.size()));
        PollClock clk(nullptr);
        ASSERT_TRUE(AddIntoPolled(clk, p.data(), int32_t(p.size()), t.data(), int32_t(t.size())));
        EXPECT_EQ(p, q);
    }
}
