// Stopping long operations through the context's polls.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support.h"

namespace {

std::string Digits(int count, char fill) { return std::string(1, '1') + std::string(count - 1, fill); }

// Answers a key that is not Q on every poll.
class OtherKey : public CalcContext {
public:
    int PollQuitKey() override { return 'A'; }
};

// Reports a pending window action after the given number of polls.
class InterruptAfter : public CalcContext {
public:
    explicit InterruptAfter(int polls) : left_(polls) {}
    bool PollInterrupt() override { return left_-- <= 0; }

private:
    int left_;
};

TEST(Interruption, ProductPollsOncePerRowOfTheSecondFactor) {
    Num x(Digits(12, '3')), y(Digits(28, '7')), r;
    StopAfter counting(1000000);
    ASSERT_EQ(BigMul(&counting, &r.v, &x.v, &y.v), 0);
    EXPECT_EQ(counting.polls(), 7);
    Num zero("0");
    StopAfter untouched(0);
    EXPECT_EQ(BigMul(&untouched, r.Out(), &zero.v, &y.v), 0);
    EXPECT_EQ(untouched.polls(), 0);
}

TEST(Interruption, LongProductStopsWithOne) {
    Num x(Digits(4000, '9')), y(Digits(4000, '8')), r;
    StopAfter stop(10);
    EXPECT_EQ(BigMul(&stop, &r.v, &x.v, &y.v), -1);
    EXPECT_EQ(stop.polls(), 11);
    EXPECT_EQ(Text(r), "1");
    InterruptAfter moved(3);
    EXPECT_EQ(BigMul(&moved, r.Out(), &x.v, &y.v), -1);
    OtherKey ignored;
    EXPECT_EQ(BigMul(&ignored, r.Out(), &x.v, &y.v), 0);
}

TEST(Interruption, DivisionStopsAndLeavesZeros) {
    Num x(Digits(4000, '9')), d(Digits(1500, '3')), q, r;
    StopAfter stop(5);
    EXPECT_EQ(BigDivMod(&stop, &x.v, &d.v, &q.v, &r.v), -1);
    EXPECT_EQ(stop.polls(), 6);
    EXPECT_EQ(Text(q) + " " + Text(r), "0 0");
}

TEST(Interruption, FactorialAndBinomialStop) {
    Num n("3000"), k("1500"), r;
    StopAfter stop(100);
    EXPECT_EQ(BigFact(&stop, &r.v, &n.v), -1);
    EXPECT_EQ(Text(r), "1");
    StopAfter stop2(100);
    EXPECT_EQ(BigBinomial(&stop2, r.Out(), &n.v, &k.v), -1);
}

TEST(Interruption, InverseOfAMultipleRunsUntilStopped) {
    // With a one-limb modulus the zero divisor is subtracted without end.
    Num a("20"), m("10"), r;
    StopAfter stop(5000);
    EXPECT_EQ(ModInverse(&stop, &a.v, &m.v, &r.v), -1);
    EXPECT_EQ(stop.polls(), 5001);
    EXPECT_EQ(Text(r), "1");
    StopAfter viaDivision(50);
    viaDivision.modulusMode = true;
    BigFromInt(&viaDivision.modulus, 10);
    Num one("1"), twenty("20"), n, dd;
    EXPECT_EQ(FracDiv(&viaDivision, &n.v, &dd.v, &one.v, &one.v, &twenty.v, &one.v), -1);
}

TEST(Interruption, StopsPassThroughEveryCompositeOperation) {
    const std::string big = Digits(3000, '7');
    Num x(big), y(Digits(2900, '3')), one("1"), m(Digits(2000, '1')), e(Digits(60, '5'));
    auto stopsSoon = [](const std::function<int(CalcContext*)>& op) {
        StopAfter stop(3);
        return op(&stop);
    };
    Num r, s;
    EXPECT_EQ(stopsSoon([&](CalcContext* c) { return BigGcd(c, &x.v, &y.v, r.Out()); }), -1);
    EXPECT_EQ(stopsSoon([&](CalcContext* c) { return BigLcm(c, &x.v, &y.v, r.Out()); }), -1);
    EXPECT_EQ(stopsSoon([&](CalcContext* c) { return BigMod(c, &x.v, &y.v, r.Out()); }), -1);
    EXPECT_EQ(stopsSoon([&](CalcContext* c) { return ModPow(c, &x.v, &e.v, r.Out(), &m.v); }), -1);
    EXPECT_EQ(stopsSoon([&](CalcContext* c) { return BigPowInt(c, &x.v, 5, r.Out()); }), -1);
    EXPECT_EQ(stopsSoon([&](CalcContext* c) { return BigCbrt(c, &x.v, r.Out()); }), -1);
    EXPECT_EQ(stopsSoon([&](CalcContext* c) {
                  Num half("2");
                  return FracAdd(c, r.Out(), s.Out(), &one.v, &half.v, &x.v, &y.v);
              }),
              -1);
    EXPECT_EQ(stopsSoon([&](CalcContext* c) {
                  std::string text = big;
                  return ConvertBase(c, 10, 16, &text);
              }),
              -1);
}

}  // namespace
