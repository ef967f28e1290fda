// Signed addition and subtraction with their kept quirks, and the limb-array
// primitives the heavier operations build on.
#include <gtest/gtest.h>

#include "support.h"

namespace {

using Limbs = std::vector<int>;

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
    Num x("99999999"), one("1"), seven("7"), u, root, m, cube;
    BigAdd(&u.v, &x.v, &one.v);
    EXPECT_EQ(BigSqrt(&ctx, &u.v, &root.v), 0);
    EXPECT_EQ(BigCbrt(&ctx, &u.v, &cube.v), 1);
    ASSERT_EQ(BigMod(&ctx, &u.v, &seven.v, &m.v), 0);
    BigIncrement(&u.v);
    EXPECT_EQ(Text(root) + " " + Text(cube) + " " + Text(m) + " " + Text(u),
              "10000 464 2 100000001");
}

TEST(LimbPrimitives, CarriesAndBorrowsRunAcrossWholeArrays) {
    Limb a[] = {0, 0, 0, 1}, b[4] = {9999, 9999, 0, 0};
    const Limb one[] = {1};
    EXPECT_EQ(LimbsSub(a, one, 3, 0), 2);
    EXPECT_EQ(Limbs(a, a + 3), (Limbs{9999, 9999, 9999}));
    EXPECT_EQ(LimbsCompare(one, a, 0, 2), 1);  // the sign of b - a
    EXPECT_EQ(LimbsMulSmall(b, 9999, 1), 2);
    EXPECT_EQ(Limbs(b, b + 3), (Limbs{1, 9999, 9998}));
    EXPECT_EQ(LimbsAddSmall(a, 1, 2), 3);
    EXPECT_EQ(Limbs(a, a + 4), (Limbs{0, 0, 0, 1}));
}

}  // namespace
