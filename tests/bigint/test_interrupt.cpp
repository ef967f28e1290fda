// Stopping long operations through the context's polls.
#include <gtest/gtest.h>

#include <functional>

#include "support.h"

namespace {

std::string Digits(int count, char fill) { return "1" + std::string(count - 1, fill); }

// Answers a key other than Q on every poll, or reports a pending window
// action from the given poll on.
class OtherKeyThenAction : public CalcContext {
public:
    explicit OtherKeyThenAction(int polls) : left_(polls) {}
    int PollQuitKey() override { return 'A'; }
    bool PollInterrupt() override { return left_-- <= 0; }

private:
    int left_;
};

TEST(Interruption, ProductPollsOncePerRowOfTheSecondFactor) {
    Num x(Digits(12, '3')), y(Digits(28, '7')), zero("0"), r;
    StopAfter counting(1000000), untouched(0);
    ASSERT_EQ(BigMul(&counting, &r.v, &x.v, &y.v), 0);
    EXPECT_EQ(counting.polls(), 7);
    EXPECT_EQ(BigMul(&untouched, r.Out(), &zero.v, &y.v), 0);
    EXPECT_EQ(untouched.polls(), 0);
}

TEST(Interruption, LongProductStopsWithOne) {
    Num x(Digits(4000, '9')), y(Digits(4000, '8')), r;
    StopAfter stop(10);
    EXPECT_EQ(BigMul(&stop, &r.v, &x.v, &y.v), -1);
    EXPECT_EQ(stop.polls(), 11);
    EXPECT_EQ(Text(r), "1");
    OtherKeyThenAction keyIgnoredThenMoved(3);
    EXPECT_EQ(BigMul(&keyIgnoredThenMoved, r.Out(), &x.v, &y.v), -1);
    OtherKeyThenAction keyIgnored(1 << 30);
    EXPECT_EQ(BigMul(&keyIgnored, r.Out(), &x.v, &y.v), 0);
}

TEST(Interruption, DivisionStopsAndLeavesZeros) {
    Num x(Digits(4000, '9')), d(Digits(1500, '3')), q, r;
    StopAfter stop(5);
    EXPECT_EQ(BigDivMod(&stop, &x.v, &d.v, &q.v, &r.v), -1);
    EXPECT_EQ(stop.polls(), 6);
    EXPECT_EQ(Text(q) + " " + Text(r), "0 0");
}

TEST(Interruption, InverseOfAMultipleRunsUntilStopped) {
    // With a one-limb modulus the zero divisor is subtracted without end.
    Num a("20"), m("10"), one("1"), r, d;
    StopAfter stop(5000), viaDivision(50);
    EXPECT_EQ(ModInverse(&stop, &a.v, &m.v, &r.v), -1);
    EXPECT_EQ(stop.polls(), 5001);
    EXPECT_EQ(Text(r), "1");
    viaDivision.modulusMode = true;
    BigFromInt(&viaDivision.modulus, 10);
    EXPECT_EQ(FracDiv(&viaDivision, r.Out(), &d.v, &one.v, &one.v, &a.v, &one.v), -1);
}

TEST(Interruption, StopsPassThroughEveryCompositeOperation) {
    const std::string big = Digits(3000, '7');
    Num x(big), y(Digits(2900, '3')), one("1"), two("2"), m(Digits(2000, '1')),
        e(Digits(60, '5')), n("3000"), k("1500"), r, s;
    const std::function<int(CalcContext*)> ops[] = {
        [&](CalcContext* c) { return BigFact(c, r.Out(), &n.v); },
        [&](CalcContext* c) { return BigBinomial(c, r.Out(), &n.v, &k.v); },
        [&](CalcContext* c) { return BigGcd(c, &x.v, &y.v, r.Out()); },
        [&](CalcContext* c) { return BigLcm(c, &x.v, &y.v, r.Out()); },
        [&](CalcContext* c) { return BigMod(c, &x.v, &y.v, r.Out()); },
        [&](CalcContext* c) { return ModPow(c, &x.v, &e.v, r.Out(), &m.v); },
        [&](CalcContext* c) { return BigPowInt(c, &x.v, 5, r.Out()); },
        [&](CalcContext* c) { return BigCbrt(c, &x.v, r.Out()); },
        [&](CalcContext* c) { return FracAdd(c, r.Out(), s.Out(), &one.v, &two.v, &x.v, &y.v); },
        [&](CalcContext* c) {
            std::string text = big;
            return ConvertBase(c, 10, 16, &text);
        }};
    for (size_t i = 0; i < sizeof ops / sizeof ops[0]; ++i) {
        StopAfter stop(3);
        EXPECT_EQ(ops[i](&stop), -1) << "operation " << i;
        EXPECT_EQ(stop.polls(), 4) << "operation " << i;
    }
}

}  // namespace
