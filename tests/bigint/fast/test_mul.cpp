// The multiplication dispatcher and its kernels against a naive product.
#include <gtest/gtest.h>

#include "bigint/mul_dispatch.h"
#include "bigint/mul_kernels.h"
#include "bigint/ntt_kernels.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

constexpr Limb kSentinel = 0x5A5A;

// Runs MulLimbs with sentinels around the output and checks value, sentinels
// and the top it answers.
void CheckProduct(const std::vector<Limb>& a, const std::vector<Limb>& b, bool square = false) {
    CalcContext ctx;
    const std::vector<Limb>& bb = square ? a : b;
    const int32_t n = static_cast<int32_t>(a.size() + bb.size());
    std::vector<Limb> buf(n + 8, kSentinel);
    Limb* p = buf.data() + 4;
    std::fill(p, p + n, Limb(0));
    const int32_t top =
        MulLimbs(&ctx, a.data(), int32_t(a.size()) - 1, bb.data(), int32_t(bb.size()) - 1, p);
    for (int i = 0; i < 4; ++i) {
        ASSERT_EQ(buf[i], kSentinel) << "below the product";
        ASSERT_EQ(buf[n + 4 + i], kSentinel) << "above the product";
    }
    ASSERT_EQ(Normalised(p, n), NaiveProduct(a, bb)) << "sizes " << a.size() << " x " << bb.size();
    ASSERT_GE(top, n - 2);
    ASSERT_LE(top, n - 1);
    if (top == n - 2)
        ASSERT_EQ(p[n - 1], 0);
    else
        ASSERT_GE(p[n - 1], 1);
}

FastThresholds SmallLadder() {
    FastThresholds t;
    t.mulKaratsuba = 6;
    t.mulNtt = 30;
    t.sqrKaratsuba = 6;
    t.sqrNtt = 30;
    return t;
}

}  // namespace

TEST(FastMul, EveryPathAroundItsThresholdAndEveryShape) {
    ThresholdScope scope(SmallLadder());
    for (int32_t threshold : {6, 30}) {
        for (int32_t n = threshold - 2; n <= threshold + 20; ++n) {
            for (Shape sa : kShapes) {
                for (Shape sb : {Shape::Random, Shape::RunsOfZeroAndNine, Shape::TopTenThousand}) {
                    CheckProduct(Operand(n, sa), Operand(n, sb));
                    CheckProduct(Operand(n + 3, sa), Operand(n, sb));
                }
                CheckProduct(Operand(n, sa), {}, true);
            }
            // 10000·B^(n-1) squared is B^(2n): the carry lands in the top limb.
            std::vector<Limb> top(n, 0);
            top[n - 1] = 10000;
            CheckProduct(top, top);
            CheckProduct(top, {}, true);
        }
    }
}

TEST(FastMul, UnbalancedOperandsAreCutIntoPieces) {
    ThresholdScope scope(SmallLadder());
    for (int32_t lb : {1, 5, 6, 7, 29, 30, 31, 45}) {
        for (int32_t la : {2 * lb, 2 * lb + 1, 7 * lb - 3, 400}) {
            if (la < lb) continue;
            CheckProduct(Operand(la, Shape::Random), Operand(lb, Shape::RunsOfZeroAndNine));
            CheckProduct(Operand(lb, Shape::TopTenThousand), Operand(la, Shape::TopTenThousand));
        }
    }
}

TEST(FastMul, KernelsWithoutDispatcherAgreeOnLargeTransform) {
    // A transform of 2^17 points: coefficient sums close to their bound.
    const std::vector<Limb> a = Operand(70000, Shape::Nines);
    const std::vector<Limb> b = Operand(60000, Shape::TopTenThousand);
    std::vector<Limb> p1(a.size() + b.size()), p2(a.size() + b.size());
    PollClock clk(nullptr);
    ASSERT_EQ(MulNtt(clk, a.data(), 70000, b.data(), 60000, p1.data()), Result::kOk);
    ASSERT_EQ(MulKaratsuba(clk, a.data(), 70000, b.data(), 60000, p2.data()), Result::kOk);
    EXPECT_EQ(Normalised(p1.data(), 130000), Normalised(p2.data(), 130000));
}

TEST(FastMul, PortableAndProcessorKernelsGiveTheSameTransformProducts) {
    // Lengths across the eight-point blocks, the 64-point tiles and the cache
    // block of the transform, with the worst limb shapes.
    PollClock clk(nullptr);
    for (int32_t la : {3, 5, 17, 40, 100, 2100, 9000}) {
        for (int32_t lb : {2, la / 2 + 1, la}) {
            const std::vector<Limb> a = Operand(la, Shape::Nines);
            const std::vector<Limb> b = Operand(lb, Shape::TopTenThousand);
            const std::vector<Limb> want = NaiveProduct(a, b);
            for (bool portable : {true, false}) {
                UsePortableNttKernels(portable);
                std::vector<Limb> p(la + lb), q(2 * la);
                ASSERT_EQ(MulNtt(clk, a.data(), la, b.data(), lb, p.data()), Result::kOk);
                ASSERT_EQ(SqrNtt(clk, b.data(), lb, q.data()), Result::kOk);
                EXPECT_EQ(Normalised(p.data(), la + lb), want)
                    << la << " x " << lb << (portable ? " portable" : "");
                EXPECT_EQ(Normalised(q.data(), 2 * lb), NaiveProduct(b, b)) << lb;
            }
            UsePortableNttKernels(false);
        }
    }
}

TEST(FastMul, ShippedThresholdsAgreeWithTheNaiveProduct) {
    std::uniform_int_distribution<int32_t> size(1, 2500);
    for (int round = 0; round < 12; ++round) {
        const int32_t la = size(Rng()), lb = size(Rng());
        CheckProduct(Operand(la, Shape::Random), Operand(lb, Shape::RunsOfZeroAndNine));
    }
    const FastThresholds& t = gFastThresholds;
    for (int32_t n : {t.mulKaratsuba - 2, t.mulKaratsuba, t.mulNtt - 1, t.mulNtt + 20})
        CheckProduct(Operand(n, Shape::TopTenThousand), Operand(n, Shape::Nines));
    for (int32_t n : {t.sqrKaratsuba - 1, t.sqrNtt, t.sqrNtt + 7})
        CheckProduct(Operand(n, Shape::Nines), {}, true);
}

TEST(FastMul, QStopsEveryPathAndPollsKeepComing) {
    struct Case {
        int32_t la, lb;
        long minPolls;  // far below the work divided by the budget
    };
    // One thread: the main thread's polls while it waits for the helper
    // thread come with time, not work, and their count would vary.
    ThresholdScope scope([] {
        FastThresholds t = SmallLadder();
        t.pollWork = 4096;
        t.nttParallel = 0;
        return t;
    }());
    for (Case c :
         {Case{400, 400, 3}, Case{3000, 25, 3}, Case{5000, 5000, 15}, Case{20000, 300, 15}}) {
        const std::vector<Limb> a = Operand(c.la, Shape::Random), b = Operand(c.lb, Shape::Random);
        std::vector<Limb> p(c.la + c.lb, 0);
        // The first product of a length makes the transform's root tables,
        // which polls too; the counted runs find them made.
        QuitAtPoll warmUp;
        ASSERT_GE(MulLimbs(&warmUp, a.data(), c.la - 1, b.data(), c.lb - 1, p.data()), 0);
        std::fill(p.begin(), p.end(), Limb(0));
        QuitAtPoll counting;
        ASSERT_GE(MulLimbs(&counting, a.data(), c.la - 1, b.data(), c.lb - 1, p.data()), 0);
        EXPECT_GE(counting.polls(), c.minPolls) << c.la << " x " << c.lb;
        for (long stopAt : {1L, counting.polls()}) {
            std::fill(p.begin(), p.end(), Limb(0));
            QuitAtPoll stopping(stopAt);
            EXPECT_EQ(MulLimbs(&stopping, a.data(), c.la - 1, b.data(), c.lb - 1, p.data()), -1);
            EXPECT_EQ(stopping.polls(), stopAt) << "no poll after the stop";
        }
    }
}

TEST(FastMul, QStopsATransformOnTwoThreads) {
    ThresholdScope scope([] {
        FastThresholds t = SmallLadder();
        t.pollWork = 4096;
        t.nttParallel = 64;
        return t;
    }());
    const std::vector<Limb> a = Operand(6000, Shape::Random), b = Operand(5000, Shape::Random);
    std::vector<Limb> p(a.size() + b.size(), 0);
    for (long stopAt : {1L, 2L, 3L}) {
        QuitAtPoll stopping(stopAt);
        EXPECT_EQ(MulLimbs(&stopping, a.data(), 5999, b.data(), 4999, p.data()), -1);
        EXPECT_EQ(stopping.polls(), stopAt);
    }
    std::fill(p.begin(), p.end(), Limb(0));
    QuitAtPoll never;
    ASSERT_GE(MulLimbs(&never, a.data(), 5999, b.data(), 4999, p.data()), 0);
    EXPECT_EQ(Normalised(p.data(), 11000), NaiveProduct(a, b)) << "the stopped runs left no trace";
}
