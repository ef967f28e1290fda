// Signed addition and subtraction with their kept quirks, and the limb-array
// primitives the heavier operations build on.
#include <gtest/gtest.h>

#include "support.h"

namespace {

using Limbs = std::vector<int>;

TEST(AddSub, SignsOfEveryCombination) {
    const struct { const char *x, *y, *sum, *difference; } cases[] = {
        {"7", "5", "12", "2"},      {"-7", "5", "-2", "-12"}, {"7", "-5", "2", "12"},
        {"-7", "-5", "-12", "-2"},  {"5", "7", "12", "-2"},   {"-5", "7", "2", "-12"},
        {"5", "-7", "-2", "12"},    {"-5", "-7", "-12", "2"}, {"0", "-3", "-3", "3"},
        {"-3", "0", "-3", "-3"},    {"100000000", "1", "100000001", "99999999"},
        {"1", "100000000", "100000001", "-99999999"}};
    for (const auto& c : cases) {
        Num x(c.x), y(c.y), s, d;
        ASSERT_EQ(BigAdd(&s.v, &x.v, &y.v), 0);
        ASSERT_EQ(BigSub(&d.v, &x.v, &y.v), 0);
        EXPECT_EQ(Text(s), c.sum) << c.x << " + " << c.y;
        EXPECT_EQ(Text(d), c.difference) << c.x << " - " << c.y;
    }
}

TEST(AddSub, CancellingGivesZeroThatMayCarryTheFlag) {
    Num minus("-5"), plus("5"), a, b, c;
    BigAdd(&a.v, &minus.v, &plus.v);
    BigSub(&b.v, &plus.v, &plus.v);
    BigSub(&c.v, &minus.v, &minus.v);
    for (Num* z : {&a, &b, &c}) {
        EXPECT_TRUE(BigIsZero(&z->v));
        EXPECT_EQ(Text(*z), "0");
    }
    EXPECT_EQ(a->negative, 1);
    EXPECT_EQ(b->negative, 0);
    EXPECT_EQ(c->negative, 1);
}

TEST(AddSub, LongerFirstOperandMayLeaveATopLimbOf10000) {
    Num x("99999999"), one("1"), s, t;
    BigAdd(&s.v, &x.v, &one.v);
    EXPECT_EQ(s.Limbs(), (Limbs{0, 10000}));
    EXPECT_EQ(Text(s), "100000000");
    EXPECT_EQ(BigTextLength(&s.v), 8);
    BigAdd(&t.v, &one.v, &x.v);
    EXPECT_EQ(t.Limbs(), (Limbs{0, 0, 1}));
    // Below the top the carry runs on, so no limb of 10000 sits inside a number.
    Num inner("599999999"), u;
    BigAdd(&u.v, &inner.v, &one.v);
    EXPECT_EQ(u.Limbs(), (Limbs{0, 0, 6}));
}

TEST(AddSub, LaterArithmeticTakesTheTopLimbOf10000AtItsValue) {
    CalcContext ctx;
    Num x("99999999"), one("1"), three("3"), seven("7"), u;
    BigAdd(&u.v, &x.v, &one.v);
    Num p, q, r, root, back, text, m;
    ASSERT_EQ(BigMul(&ctx, &p.v, &u.v, &three.v), 0);
    EXPECT_EQ(Text(p), "300000000");
    ASSERT_EQ(BigDivMod(&ctx, &u.v, &seven.v, &q.v, &r.v), 0);
    EXPECT_EQ(Text(q) + " " + Text(r), "14285714 2");
    EXPECT_EQ(BigSqrt(&ctx, &u.v, &root.v), 0);
    EXPECT_EQ(Text(root), "10000");
    ASSERT_EQ(BigSub(&back.v, &u.v, &one.v), 0);
    EXPECT_EQ(Text(back), "99999999");
    ASSERT_EQ(BigMod(&ctx, &u.v, &seven.v, &m.v), 0);
    EXPECT_EQ(Text(m), "2");
    BigIncrement(&u.v);
    EXPECT_EQ(Text(u), "100000001");
}

TEST(LimbPrimitives, CompareAnswersTheSignOfBMinusA) {
    const Limb small[] = {5, 1}, large[] = {4, 2}, shorter[] = {9999};
    EXPECT_EQ(LimbsCompare(small, large, 1, 1), 1);
    EXPECT_EQ(LimbsCompare(large, small, 1, 1), -1);
    EXPECT_EQ(LimbsCompare(small, small, 1, 1), 0);
    EXPECT_EQ(LimbsCompare(shorter, small, 0, 1), 1);
}

TEST(LimbPrimitives, SubtractBorrowsAcrossZeroRuns) {
    Limb a[] = {0, 0, 0, 1};
    const Limb one[] = {1};
    EXPECT_EQ(LimbsSub(a, one, 3, 0), 2);
    EXPECT_EQ(Limbs(a, a + 3), (Limbs{9999, 9999, 9999}));
    Limb b[] = {5, 7};
    const Limb same[] = {5, 7};
    EXPECT_EQ(LimbsSub(b, same, 1, 1), 0);
    EXPECT_EQ(b[0], 0);
}

TEST(LimbPrimitives, SmallMultiplyAndAddCarryIntoANewLimb) {
    Limb a[4] = {9999, 9999, 0, 0};
    EXPECT_EQ(LimbsMulSmall(a, 9999, 1), 2);
    EXPECT_EQ(Limbs(a, a + 3), (Limbs{1, 9999, 9998}));
    EXPECT_EQ(LimbsMulSmall(a, 1, 2), 2);
    EXPECT_EQ(LimbsMulSmall(a, 0, 2), 0);
    EXPECT_EQ(a[0], 0);
    Limb b[3] = {9999, 9999, 0};
    EXPECT_EQ(LimbsAddSmall(b, 1, 1), 2);
    EXPECT_EQ(Limbs(b, b + 3), (Limbs{0, 0, 1}));
    Limb c[3] = {9000, 5, 0};
    EXPECT_EQ(LimbsAddSmall(c, 1500, 1), 1);
    EXPECT_EQ(Limbs(c, c + 2), (Limbs{500, 6}));
}

}  // namespace
