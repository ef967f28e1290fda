// Stopping long operations through the context's polls. The long cases are
// large enough that a faster algorithm, polling per amount of work instead of
// per row, still polls several times; the composite cases stay small enough
// for the row-polling kernels.
#include <gtest/gtest.h>

#include <functional>

#include "support.h"

namespace {

std::string Digits(int count, char fill) { return "1" + std::string(count - 1, fill); }

// Answers a key other than Q on every poll, and reports a pending window
// action from the given poll on.
class OtherKeyThenAction : public CalcContext {
public:
    explicit OtherKeyThenAction(long polls) : left_(polls) {}
    int PollQuitKey() override { return 'A'; }
    bool PollInterrupt() override { return left_-- <= 0; }

private:
    long left_;
};

TEST(Interruption, SchoolbookProductPollsOncePerRowOfB) {
    const Limb a[] = {1, 2, 3}, b[] = {9, 8, 7, 6, 5, 4, 3};
    Limb p[12] = {};
    StopAfter counting(1000);
    EXPECT_EQ(LimbsMul(&counting, a, b, p, 2, 6), 8);
    EXPECT_EQ(counting.polls(), 7);
    Num zero("0"), x(Digits(100, '7')), r;
    StopAfter untouched(0);
    EXPECT_EQ(BigMul(&untouched, &r.v, &zero.v, &x.v), 0);
    EXPECT_EQ(untouched.polls(), 0);
    OtherKeyThenAction keyIgnored(1 << 30);
    EXPECT_EQ(BigMul(&keyIgnored, r.Out(), &x.v, &x.v), 0);
}

TEST(Interruption, LongRunsStopAtTheFirstQ) {
    Num x(Digits(400000, '9')), y(Digits(400000, '8')), d(Digits(400, '3')), n("100000"),
        k("50000"), q, r;
    StopAfter product(1), division(1), factorial(1), binomial(1);
    EXPECT_EQ(BigMul(&product, &r.v, &x.v, &y.v), -1);
    EXPECT_EQ(Text(r), "1");
    EXPECT_EQ(BigDivMod(&division, &x.v, &d.v, &q.v, r.Out()), -1);
    EXPECT_EQ(Text(q) + " " + Text(r), "0 0");
    EXPECT_EQ(BigFact(&factorial, r.Out(), &n.v), -1);
    EXPECT_EQ(Text(r), "1");
    EXPECT_EQ(BigBinomial(&binomial, r.Out(), &n.v, &k.v), -1);
    for (const StopAfter* c : {&product, &division, &factorial, &binomial}) {
        EXPECT_EQ(c->polls(), 2);
    }
    OtherKeyThenAction moved(1);
    EXPECT_EQ(BigMul(&moved, r.Out(), &x.v, &y.v), -1);
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
    const std::string big = Digits(100, '7');
    Num x(big), y(Digits(60, '3')), m(Digits(90, '1')), e(Digits(30, '5')), r, s;
    const std::function<int(CalcContext*)> ops[] = {
        [&](CalcContext* c) { return BigGcd(c, &x.v, &y.v, r.Out()); },
        [&](CalcContext* c) { return BigLcm(c, &x.v, &y.v, r.Out()); },
        [&](CalcContext* c) { return BigMod(c, &x.v, &y.v, r.Out()); },
        [&](CalcContext* c) { return ModPow(c, &x.v, &e.v, r.Out(), &m.v); },
        [&](CalcContext* c) { return BigPowInt(c, &x.v, 5, r.Out()); },
        [&](CalcContext* c) { return BigCbrt(c, &x.v, r.Out()); },
        [&](CalcContext* c) { return FracAdd(c, r.Out(), s.Out(), &y.v, &x.v, &x.v, &y.v); },
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
