// Signed addition and subtraction with their kept quirks (their values at
// every length are checked against GMP in fast/test_differential.cpp).
#include <gtest/gtest.h>

#include "support/test_support.h"

namespace {

using Limbs = std::vector<int>;

TEST(AddSub, CancellingGivesZeroThatMayCarryTheFlag) {
    Num minus("-5"), plus("5"), a, b, c;
    ASSERT_EQ(BigAdd(&a.v, &minus.v, &plus.v), Result::kOk);
    ASSERT_EQ(BigSub(&b.v, &plus.v, &plus.v), Result::kOk);
    ASSERT_EQ(BigSub(&c.v, &minus.v, &minus.v), Result::kOk);
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
    ASSERT_EQ(BigAdd(&s.v, &x.v, &one.v), Result::kOk);
    EXPECT_EQ(s.Limbs(), (Limbs{0, 10000}));
    EXPECT_EQ(Text(s), "100000000");
    EXPECT_EQ(BigTextLength(&s.v), 8);
    ASSERT_EQ(BigAdd(&t.v, &one.v, &x.v), Result::kOk);
    EXPECT_EQ(t.Limbs(), (Limbs{0, 0, 1}));
    // Below the top the carry runs on, so no limb of 10000 sits inside a number.
    Num inner("599999999"), u;
    ASSERT_EQ(BigAdd(&u.v, &inner.v, &one.v), Result::kOk);
    EXPECT_EQ(u.Limbs(), (Limbs{0, 0, 6}));
}

TEST(AddSub, LaterArithmeticTakesTheTopLimbOf10000AtItsValue) {
    CalcContext ctx;
    Num x("99999999"), one("1"), seven("7"), u, root, m, cube;
    ASSERT_EQ(BigAdd(&u.v, &x.v, &one.v), Result::kOk);
    EXPECT_EQ(BigSqrt(&ctx, &u.v, &root.v), Result::kOk);
    EXPECT_EQ(BigCbrt(&ctx, &u.v, &cube.v), kRootInexact);
    ASSERT_EQ(BigMod(&ctx, &u.v, &seven.v, &m.v), Result::kOk);
    ASSERT_EQ(BigIncrement(&u.v), Result::kOk);
    EXPECT_EQ(Text(root) + " " + Text(cube) + " " + Text(m) + " " + Text(u),
              "10000 464 2 100000001");
    // Added again, that limb with a carry and a 9999 makes 20000: two carries.
    Num v("9999"), w, sum;
    ASSERT_EQ(BigAdd(&w.v, &x.v, &v.v), Result::kOk);
    ASSERT_EQ(BigAdd(&sum.v, &w.v, &x.v), Result::kOk);
    EXPECT_EQ(Text(sum), "200009997");
    // The same two carries below the first operand's top.
    Num longer("5999999999999"), twice;
    ASSERT_EQ(BigAdd(&twice.v, &longer.v, &w.v), Result::kOk);
    EXPECT_EQ(Text(twice), "6000100009997");
}

}  // namespace
