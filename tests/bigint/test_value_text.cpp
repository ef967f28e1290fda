// The value record and its decimal text: limb layout, tests on released and
// signed values, conversions back, stepping across limb boundaries, pages and
// columns of text.
#include <gtest/gtest.h>

#include <cstring>

#include "support/test_support.h"

namespace {

using Limbs = std::vector<int>;

std::string Render(const Num& v, int32_t width, int32_t line, int32_t first, int32_t last,
                   int32_t indent) {
    std::vector<char> buf(static_cast<size_t>(width) * 2 + 64);
    BigToText(&v.v, buf.data(), width, line, first, last, indent);
    return buf.data();
}

TEST(Value, MachineIntegersSplitIntoLimbsAndComeBack) {
    for (const int32_t n : {9999, 10000, 99999999, 100000000, -7, INT32_MIN}) {
        Num v;
        ASSERT_EQ(BigFromInt(&v.v, n), Result::kOk);
        EXPECT_EQ(Text(v), std::to_string(n));
        int32_t back = 0;
        const bool fits = v->top < 2;
        EXPECT_EQ(BigToInt(&v.v, &back), fits) << n;
        EXPECT_EQ(fits ? back : n, n);
    }
    Num high, wraps("4294967296"), released;
    ASSERT_EQ(BigFromUnsigned(&high.v, UINT32_MAX), Result::kOk);
    EXPECT_EQ(high.Limbs(), (Limbs{7295, 9496, 42}));
    uint32_t u = 7;
    EXPECT_TRUE(BigToUnsigned(&wraps.v, &u));
    EXPECT_EQ(u, 0u);
    EXPECT_FALSE(BigToUnsigned(&released.v, &u));
    EXPECT_FALSE(BigIsZero(&released.v) || BigIsOne(&released.v) || BigIsEven(&released.v));
    EXPECT_EQ(BigTextLength(&released.v), 0);
    EXPECT_TRUE(BigIsOne(Num("-1").operator->()));
}

TEST(Value, DigitCountsCountTheTopLimbByItsWidth) {
    const struct {
        const char* text;
        uint32_t zeros, ones, total;
    } cases[] = {{"1000", 3, 1, 4}, {"0", 1, 0, 1}, {"-10001", 3, 2, 5}, {"100000000", 8, 1, 9}};
    for (const auto& c : cases) {
        Num v(c.text);
        BigCountDigits(&v.v);
        uint32_t total = 0;
        for (uint32_t n : v->digitCount) total += n;
        EXPECT_EQ(v->digitCount[0], c.zeros) << c.text;
        EXPECT_EQ(v->digitCount[1], c.ones) << c.text;
        EXPECT_EQ(total, c.total) << c.text;
        EXPECT_EQ(BigTextLength(&v.v), static_cast<int32_t>(std::strlen(c.text))) << c.text;
    }
}

TEST(Value, SteppingCrossesLimbBoundariesBothWays) {
    Num v("9999"), w("100000000"), z("0"), n("-99999999");
    ASSERT_EQ(BigIncrement(&v.v), Result::kOk);
    EXPECT_EQ(v.Limbs(), (Limbs{0, 1}));
    ASSERT_EQ(BigDecrement(&v.v), Result::kOk);
    ASSERT_EQ(BigDecrement(&w.v), Result::kOk);
    EXPECT_EQ(v.Limbs(), (Limbs{9999}));
    EXPECT_EQ(w.Limbs(), (Limbs{9999, 9999}));
    ASSERT_EQ(BigDecrement(&z.v), Result::kOk);
    EXPECT_EQ(Text(z), "-1");
    ASSERT_EQ(BigIncrement(&z.v), Result::kOk);  // a zero that keeps the flag, shown as 0
    EXPECT_EQ(Text(z) + (BigIsZero(&z.v) ? " zero" : ""), "0 zero");
    ASSERT_EQ(BigDecrement(&n.v), Result::kOk);
    EXPECT_EQ(Text(n), "-100000000");
    Num odd("10001"), even("20000"), big("-100000000000000000001");
    EXPECT_FALSE(BigHalve(&odd.v));
    EXPECT_TRUE(BigHalve(&even.v));
    EXPECT_FALSE(BigHalve(&big.v));
    EXPECT_EQ(Text(odd) + " " + Text(even) + " " + Text(big), "5000 10000 -50000000000000000000");
    EXPECT_EQ(even->top, 1);
}

TEST(Text, ReadingCutsFromTheRightAfterDroppingZerosAndNoise) {
    EXPECT_EQ(Num("123456789").Limbs(), (Limbs{6789, 2345, 1}));
    // Zeros go before other characters, so "x00000" is a zero of two limbs.
    char text[] = "x00000";
    Num v;
    ASSERT_EQ(BigFromText(text, &v.v), Result::kOk);
    EXPECT_EQ(v.Limbs(), (Limbs{0, 0}));
    CalcContext ctx;
    Num big("1000000000000"), q, r;  // it still divides and roots as zero
    EXPECT_EQ(BigDivMod(&ctx, &big.v, &v.v, &q.v, &r.v), Result::kDivisionByZero);
    EXPECT_EQ(BigSqrt(&ctx, &v.v, r.Out()), Result::kOk);
    EXPECT_EQ(Text(r), "0");
    char empty[] = "";
    EXPECT_EQ(BigFromText(empty, v.Out()), Result::kCouldNotFind);
}

TEST(Text, WritingWithinABudget) {
    Num v("-1234567"), w("123456789");
    EXPECT_EQ(Render(v, 80, 0, -1, 0, 2), "  -1234567");
    EXPECT_EQ(Render(w, 6, 0, -1, 0, 0), "12...");
    EXPECT_EQ(Render(w, 9, 0, -1, 0, 0), "123456789");
    EXPECT_EQ(Render(Num("-123456789"), 9, 3, -1, 0, 0), "-12...");  // cut: no line breaks
}

TEST(Text, PagesAndLines) {
    Num v("1234004200070000000100990000");                  // pages of four digits
    EXPECT_EQ(Render(v, 64000, 0, 5, 3, 0), "4200070000");  // no leading zeros on a page
    EXPECT_EQ(Render(v, 64000, 0, 2, 0, 0), "100990000");
    Num n("-1234567890123"), u("1234567890123");
    EXPECT_EQ(Render(n, 64000, 0, 2, 0, 0), "234567890123");  // the sign belongs to the top page
    EXPECT_EQ(Render(u, 64000, 5, -1, 0, 0), "12345\r\n67890\r\n123");
    EXPECT_EQ(Render(n, 64000, 6, -1, 0, 2), "  -123\r\n456789\r\n0123");
    EXPECT_EQ(Render(u, 64000, 13, -1, 0, 0), "1234567890123");
}

}  // namespace
