// The value record and its decimal text: limb layout, tests, conversions back,
// increment and decrement across limb boundaries, pages and columns of text.
#include <gtest/gtest.h>

#include <cstring>

#include "support.h"

namespace {

using Limbs = std::vector<int>;

std::string Render(const BigInt* v, int32_t width, int32_t line, int32_t first, int32_t last,
                   int32_t indent) {
    std::vector<char> buf(static_cast<size_t>(width) * 2 + 64);
    BigToText(v, buf.data(), width, line, first, last, indent);
    return buf.data();
}

TEST(Construction, MachineIntegersSplitIntoLimbs) {
    const struct { int32_t n; int top; } tops[] = {
        {9999, 0}, {10000, 1}, {99999999, 1}, {100000000, 2}, {-100000000, 2}, {0, 0}};
    for (const auto& c : tops) {
        Num v;
        BigFromInt(&v.v, c.n);
        EXPECT_EQ(v->top, c.top) << c.n;
        int32_t back = 0;
        EXPECT_EQ(BigToInt(&v.v, &back), c.top < 2) << c.n;
        if (c.top < 2) {
            EXPECT_EQ(back, c.n);
        }
    }
    Num low, high;
    BigFromInt(&low.v, INT32_MIN);
    EXPECT_EQ(Text(low), "-2147483648");
    BigFromUnsigned(&high.v, UINT32_MAX);
    EXPECT_EQ(Text(high), "4294967295");
    EXPECT_EQ(high.Limbs(), (Limbs{7295, 9496, 42}));
}

TEST(Construction, TestsIgnoreSignAndRefuseReleasedValues) {
    Num minusOne("-1"), released;
    EXPECT_TRUE(BigIsOne(&minusOne.v));
    EXPECT_FALSE(BigIsZero(&released.v));
    EXPECT_FALSE(BigIsOne(&released.v));
    EXPECT_FALSE(BigIsEven(&released.v));
    EXPECT_EQ(BigTextLength(&released.v), 0);
    int32_t i = 0;
    uint32_t u = 0;
    EXPECT_FALSE(BigToInt(&released.v, &i));
    EXPECT_FALSE(BigToUnsigned(&released.v, &u));
}

TEST(Construction, ConversionsBackKeepTheirLimits) {
    Num fits("-99999999"), tooBig("100000000"), wraps("4294967296"), big("123456789012345");
    int32_t i = 0;
    uint32_t u = 7;
    EXPECT_TRUE(BigToInt(&fits.v, &i));
    EXPECT_EQ(i, -99999999);
    EXPECT_FALSE(BigToInt(&tooBig.v, &i));
    EXPECT_TRUE(BigToUnsigned(&wraps.v, &u));
    EXPECT_EQ(u, 0u);
    EXPECT_TRUE(BigToUnsigned(&big.v, &u));  // limbs above the third ignored
    EXPECT_EQ(u, 1522478969u);
}

TEST(Construction, CopyIsIndependentAndDropsDigitCounts) {
    Num a("-123456789"), b;
    BigCountDigits(&a.v);
    ASSERT_EQ(BigCopy(&b.v, &a.v), 0);
    b->limbs[0] = 0;
    EXPECT_EQ(Text(a), "-123456789");
    EXPECT_EQ(Text(b), "-123450000");
}

TEST(Construction, DigitCountsCountTheTopLimbByItsWidth) {
    const struct { const char* text; int zeros, ones, total; } cases[] = {
        {"1000", 3, 1, 4}, {"0", 1, 0, 1}, {"-10001", 3, 2, 5}, {"7", 0, 0, 1},
        {"100000000", 8, 1, 9}};
    for (const auto& c : cases) {
        Num v(c.text);
        BigCountDigits(&v.v);
        uint32_t total = 0;
        for (uint32_t n : v->digitCount) total += n;
        EXPECT_EQ(v->digitCount[0], static_cast<uint32_t>(c.zeros)) << c.text;
        EXPECT_EQ(v->digitCount[1], static_cast<uint32_t>(c.ones)) << c.text;
        EXPECT_EQ(total, static_cast<uint32_t>(c.total)) << c.text;
    }
}

TEST(Stepping, IncrementAndDecrementCrossLimbBoundaries) {
    Num v("9999");
    BigIncrement(&v.v);
    EXPECT_EQ(v.Limbs(), (Limbs{0, 1}));
    BigDecrement(&v.v);
    EXPECT_EQ(v.Limbs(), (Limbs{9999}));
    Num w("100000000");
    BigDecrement(&w.v);
    EXPECT_EQ(Text(w), "99999999");
    EXPECT_EQ(w->top, 1);
    Num z("0");
    BigDecrement(&z.v);
    EXPECT_EQ(Text(z), "-1");
    BigIncrement(&z.v);  // -1 + 1: a zero that keeps the flag
    EXPECT_TRUE(BigIsZero(&z.v));
    EXPECT_EQ(Text(z), "0");
    BigIncrement(&z.v);
    EXPECT_EQ(Text(z), "1");
    Num n("-99999999");
    BigDecrement(&n.v);
    EXPECT_EQ(Text(n), "-100000000");
    BigIncrement(&n.v);
    EXPECT_EQ(Text(n), "-99999999");
}

TEST(Stepping, HalvingTruncatesAndTellsParity) {
    Num odd("10001"), even("20000"), big("100000000000000000001");
    EXPECT_FALSE(BigHalve(&odd.v));
    EXPECT_EQ(Text(odd), "5000");
    EXPECT_TRUE(BigHalve(&even.v));
    EXPECT_EQ(even.Limbs(), (Limbs{0, 1}));
    EXPECT_FALSE(BigHalve(&big.v));
    EXPECT_EQ(Text(big), "50000000000000000000");
}

TEST(ReadingText, DigitsAreCutFromTheRight) {
    Num a("123456789"), b("10000"), c("-000123");
    EXPECT_EQ(a.Limbs(), (Limbs{6789, 2345, 1}));
    EXPECT_EQ(b.Limbs(), (Limbs{0, 1}));
    EXPECT_EQ(c.Limbs(), (Limbs{123}));
    EXPECT_EQ(c->negative, 1);
}

TEST(ReadingText, ZerosAreDroppedBeforeOtherCharacters) {
    // "x00000" keeps its zeros past the leading x: a zero of two limbs.
    char text[] = "x00000";
    Num v;
    ASSERT_EQ(BigFromText(text, &v.v), 0);
    EXPECT_EQ(v.Limbs(), (Limbs{0, 0}));
    EXPECT_FALSE(BigIsZero(&v.v));
    char empty[] = "";
    EXPECT_EQ(BigFromText(empty, v.Out()), 2);
}

TEST(WritingText, SignsIndentAndWidth) {
    Num v("-1234567"), minusFive("-5"), five("5"), minusZero;
    EXPECT_EQ(Render(&v.v, 80, 0, -1, 0, 0), "-1234567");
    EXPECT_EQ(Render(&v.v, 80, 0, -1, 0, 2), "  -1234567");
    BigAdd(&minusZero.v, &minusFive.v, &five.v);
    ASSERT_EQ(minusZero->negative, 1);
    EXPECT_EQ(Render(&minusZero.v, 80, 0, -1, 0, 0), "0");
}

TEST(WritingText, TooWideTextEndsInDots) {
    Num v("123456789");
    EXPECT_EQ(Render(&v.v, 6, 0, -1, 0, 0), "12...");
    EXPECT_EQ(Render(&v.v, 9, 0, -1, 0, 0), "123456789");
    Num w("-123456789");
    EXPECT_EQ(Render(&w.v, 9, 5, -1, 0, 0), "-12...");  // no line breaks once cut
}

TEST(WritingText, PagesStartWithoutLeadingZeros) {
    Num v("1234" "0042" "0007" "0000" "0001" "0099" "0000");
    EXPECT_EQ(Render(&v.v, 64000, 0, 5, 3, 0), "4200070000");
    EXPECT_EQ(Render(&v.v, 64000, 0, 2, 0, 0), "100990000");
    EXPECT_EQ(Render(&v.v, 64000, 0, -1, 6, 0), "1234");
}

TEST(WritingText, LinesAreJoinedByCrLf) {
    Num v("1234567890123"), neg("-123456");
    EXPECT_EQ(Render(&v.v, 64000, 5, -1, 0, 0), "12345\r\n67890\r\n123");
    EXPECT_EQ(Render(&v.v, 64000, 13, -1, 0, 0), "1234567890123");
    EXPECT_EQ(Render(&neg.v, 64000, 4, -1, 0, 2), "  -1\r\n2345\r\n6");
}

TEST(WritingText, LengthMatchesTheRenderedText) {
    for (const char* t : {"0", "-7", "9999", "10000", "-123456789", "100000000000"}) {
        Num v(t);
        EXPECT_EQ(BigTextLength(&v.v), static_cast<int32_t>(std::strlen(t))) << t;
    }
}

}  // namespace
