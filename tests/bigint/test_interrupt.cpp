// Stopping the row-polling kernels and the composite operations through the
// context's polls; the fast paths' stops are in fast/test_stops.cpp.
#include <gtest/gtest.h>

#include <functional>

#include "support/test_support.h"

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
    QuitAtPoll counting(1001);
    EXPECT_EQ(LimbsMul(&counting, a, b, p, 2, 6), 8);
    EXPECT_EQ(counting.polls(), 7);
    Num zero("0"), x(Digits(100, '7')), r;
    QuitAtPoll untouched(1);
    EXPECT_EQ(BigMul(&untouched, &r.v, &zero.v, &x.v), Result::kOk);
    EXPECT_EQ(untouched.polls(), 0);
    OtherKeyThenAction keyIgnored(1 << 30);
    EXPECT_EQ(BigMul(&keyIgnored, r.Out(), &x.v, &x.v), Result::kOk);
    OtherKeyThenAction moved(1);  // a pending window action stops like Q
    EXPECT_EQ(BigMul(&moved, r.Out(), &x.v, &x.v), Result::kStopped);
}

TEST(Interruption, InverseOfAMultipleRunsUntilStopped) {
    // With a one-limb modulus the zero divisor is subtracted without end.
    Num a("20"), m("10"), one("1"), r, d;
    QuitAtPoll stop(5001), viaDivision(51);
    EXPECT_EQ(ModInverse(&stop, &a.v, &m.v, &r.v), Result::kStopped);
    EXPECT_EQ(stop.polls(), 5001);
    EXPECT_EQ(Text(r), "1");
    viaDivision.modulusMode = true;
    ASSERT_EQ(BigFromInt(&viaDivision.modulus, 10), Result::kOk);
    EXPECT_EQ(FracDiv(&viaDivision, r.Out(), &d.v, &one.v, &one.v, &a.v, &one.v), Result::kStopped);
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
        QuitAtPoll stop(4);
        EXPECT_EQ(ops[i](&stop), -1) << "operation " << i;
        EXPECT_EQ(stop.polls(), 4) << "operation " << i;
    }
}

}  // namespace
