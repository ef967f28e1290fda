// Signed addition and subtraction with their kept quirks, and the limb-array
// primitives the heavier operations build on.
#include <gtest/gtest.h>

#include <random>

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
}

// The limb rule of the sum one limb at a time: every carry added into the next
// limb, followed upward only below a's top.
Limbs PlainSum(const Limbs& a, const Limbs& b) {
    const size_t m = std::max(a.size(), b.size());
    Limbs d(a);
    d.resize(m + 1, 0);
    for (size_t i = 0; i < b.size(); ++i) {
        const int s = b[i] + d[i];
        d[i] = s % 10000;
        if (s > 9999) ++d[i + 1];
    }
    for (size_t i = b.size(); i + 1 < a.size() && d[i] >= 10000; ++i) d[i] -= 10000, ++d[i + 1];
    if (d[m] == 0) d.pop_back();
    return d;
}

// Arrays from 1 to 40 limbs with runs of 9999 and of 0, the top limb now and
// then 10000 as sums leave it: the word-wide carry must agree limb for limb.
TEST(LimbPrimitives, SumsAndDifferencesAgreeWithTheLimbRule) {
    std::mt19937 rng(7);
    auto below = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    auto random = [&](int n) {
        Limbs v(static_cast<size_t>(n));
        for (int& x : v) x = below(3) == 0 ? 9999 : below(4) == 0 ? 0 : below(10000);
        v.back() = below(6) == 0 ? 10000 : 1 + below(9999);
        return v;
    };
    for (int round = 0; round < 4000; ++round) {
        const Limbs a = random(1 + below(40)), b = random(1 + below(40));
        const int ta = static_cast<int>(a.size()) - 1, tb = static_cast<int>(b.size()) - 1;
        const Limbs expected = PlainSum(a, b);
        std::vector<Limb> la(a.begin(), a.end()), lb(b.begin(), b.end());
        std::vector<Limb> d(std::max(a.size(), b.size()) + 2, -1);
        const int top = LimbsAdd(la.data(), lb.data(), d.data(), ta, tb);
        ASSERT_EQ(Limbs(d.begin(), d.begin() + top + 1), expected) << "round " << round;
        la.resize(d.size());
        EXPECT_EQ(LimbsAdd(la.data(), lb.data(), la.data(), ta, tb), top);  // in place
        EXPECT_EQ(Limbs(la.begin(), la.begin() + top + 1), expected) << "round " << round;
        // The difference of the sum and b gives a back, normalised.
        if (b.back() == 10000 || a.back() == 10000) continue;
        ASSERT_EQ(LimbsSub(la.data(), lb.data(), top, tb), ta);
        EXPECT_EQ(Limbs(la.begin(), la.begin() + ta + 1), a) << "round " << round;
    }
}

}  // namespace
