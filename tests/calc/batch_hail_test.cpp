// Batch calculation, the hailstone run, base conversion, the digit table
// and reading decimal text.
#include <gtest/gtest.h>

#include "calc/conversion.h"
#include "calc/decimal_read.h"
#include "calc/digit_freq.h"
#include "calc_test_util.h"

TEST(Batch, PresetsGiveFiveRows) {
    ModelFixture f;
    BatchResult out;
    ASSERT_EQ(f.model.Batch("A^B", "2", "10,20,40,80,100", &out), 0);
    EXPECT_TRUE(out.shown);
    EXPECT_EQ(out.title, "batch calculation [A^B]");
    EXPECT_EQ(out.text.rfind("A=2, B=10\r\n1024\r\n\r\nA=2, B=20\r\n1048576\r\n\r\n", 0), 0u);
    EXPECT_NE(out.text.find("A=2, B=100\r\n1267650600228229401496703205376\r\n\r\n"),
              std::string::npos);
    // The temporary A and B are gone again.
    EXPECT_FALSE(f.model.HasVariable(1));
    EXPECT_FALSE(f.model.HasVariable(2));
}

TEST(Batch, OrderSpacesAndTrailingCommas) {
    ModelFixture f;
    BatchResult a, b;
    ASSERT_EQ(f.model.Batch("A*10+B", "1,2", "3", &a), 0);
    EXPECT_EQ(a.text, "A=1, B=3\r\n13\r\n\r\nA=2, B=3\r\n23\r\n\r\n");
    ASSERT_EQ(f.model.Batch("A*10+B", " 1 , 2 ,", "3,", &b), 0);
    EXPECT_EQ(a.text, b.text);
}

TEST(Batch, ExistingVariablesGetTheirNumeratorsBack) {
    ModelFixture f;
    f.Let('A', "5/3");
    f.Let('B', "9");
    BatchResult out;
    ASSERT_EQ(f.model.Batch("A", "4", "1", &out), 0);
    // Only the numerator was replaced during the run: 4 over A's 3.
    EXPECT_EQ(out.text, "A=4, B=1\r\n4\r\n\r\n");
    EXPECT_EQ(f.Var('A'), "5/3");
    EXPECT_EQ(f.Var('B'), "9");
}

TEST(Batch, CodesAndSilentlyDroppedRows) {
    ModelFixture f;
    BatchResult out;
    EXPECT_EQ(f.model.Batch("A", " ", "1", &out), 6);
    EXPECT_FALSE(out.shown);
    EXPECT_EQ(f.model.Batch("A+", "1", "1", &out), 6);
    EXPECT_FALSE(out.shown);
    // Only the last pair's code counts.
    EXPECT_EQ(f.model.Batch("A/B", "1", "0,2", &out), 0);
    EXPECT_EQ(out.text, "A=1, B=2\r\n1\r\n\r\n");
    EXPECT_EQ(f.model.Batch("A/B", "1", "2,0", &out), 104);
    EXPECT_TRUE(out.shown);
    // A result of 64000 digits or more is left out without a message, and so
    // is one that would push the text past 64000 characters.
    BigInt big = {}, one = {};
    ASSERT_EQ(ReadDecimal("1" + std::string(63998, '0'), &big), 0);   // 63999 digits
    BigFromInt(&one, 1);
    ASSERT_EQ(f.model.StoreValue(3, "", &big, &one), 0);
    BigFree(&big);
    BigFree(&one);
    EXPECT_EQ(f.model.Batch("C*B", "1", "10,1,2", &out), 0);
    EXPECT_EQ(out.text.find("B=10"), std::string::npos);
    EXPECT_EQ(out.text.find("B=1\r\n1000"), 5u);
    EXPECT_EQ(out.text.find("B=2"), std::string::npos);
    // Values in the output are broken into lines of 72 digits.
    EXPECT_EQ(f.model.Batch("10^(B-1)", "1", "73", &out), 0);
    EXPECT_EQ(out.text, "A=1, B=73\r\n1" + std::string(71, '0') + "\r\n0\r\n\r\n");
}

TEST(Hailstone, Seed27AndSeed1) {
    ModelFixture f;
    f.Let('H', "27");
    HailResult r;
    ASSERT_EQ(f.model.Hailstone('H' - 64, 'M' - 64, &r), 0);
    EXPECT_EQ(r.steps, 111);
    EXPECT_EQ(r.stepsToMaximum, 77);
    EXPECT_EQ(f.Var('M'), "9232");
    EXPECT_EQ(f.Var('H'), "27");
    f.Let('H', "1");
    ASSERT_EQ(f.model.Hailstone('H' - 64, 'M' - 64, &r), 0);
    EXPECT_EQ(r.steps, 0);
    EXPECT_EQ(r.stepsToMaximum, 0);
    EXPECT_EQ(f.Var('M'), "1");
}

TEST(Hailstone, RefusedSeedsAndLabels) {
    ModelFixture f;
    HailResult r;
    EXPECT_EQ(f.model.Hailstone(1, 2, &r), 2);
    f.Let('A', "0");
    EXPECT_EQ(f.model.Hailstone(1, 1, &r), 6);
    EXPECT_EQ(f.model.Hailstone(1, 2, &r), 14);
    f.Let('A', "-7");
    EXPECT_EQ(f.model.Hailstone(1, 2, &r), 14);
    EXPECT_FALSE(f.model.HasVariable(2));
    f.Let('A', "7");
    f.ctx.quitAtPoll = 3;
    EXPECT_EQ(f.model.Hailstone(1, 2, &r), -1);
}

TEST(Conversion, ThroughConvertBase) {
    ScriptedContext ctx;
    std::string out;
    EXPECT_EQ(ConvertDigits(&ctx, 2, 10, "100001", &out), 0);
    EXPECT_EQ(out, "33");
    EXPECT_EQ(ConvertDigits(&ctx, 16, 10, "ff", &out), 0);
    EXPECT_EQ(out, "255");
    EXPECT_EQ(ConvertDigits(&ctx, 10, 10, "0", &out), 0);
    EXPECT_EQ(out, "");
    EXPECT_EQ(ConvertDigits(&ctx, 2, 10, "102", &out), 1);
    EXPECT_EQ(out, "");
    EXPECT_EQ(ConvertDigits(&ctx, 1, 10, "0", &out), 1);
}

TEST(DigitFrequency, NotebookTable) {
    BigInt v = {};
    BigFromInt(&v, 1000);
    std::string t = DigitFrequencyText(&v);
    EXPECT_EQ(t.substr(0, 26), "0: 3  75.0%\r\n1: 1  25.0%\r\n");
    EXPECT_EQ(t.substr(t.size() - 26), "-----------\r\n   4 100.0%\r\n");
    BigFree(&v);
    // Counts wider than one digit are right-aligned to the total's width.
    BigFromText(const_cast<char*>(std::string(12, '7').c_str()), &v);
    t = DigitFrequencyText(&v);
    EXPECT_NE(t.find("7: 12 100.0%\r\n"), std::string::npos);
    EXPECT_NE(t.find("0:  0   0.0%\r\n"), std::string::npos);
    EXPECT_NE(t.find("\r\n   12 100.0%\r\n"), std::string::npos);
    BigFree(&v);
}

TEST(ReadDecimal, LikePastedText) {
    const struct {
        const char* text;
        int code;
        const char* value;
    } cases[] = {
        {"123\n", 0, "123"},   {"--12", 0, "12"},     {"-12", 0, "-12"},
        {"1,234,567", 0, "1234567"}, {"12-3", 0, "123"}, {"+5", 0, "5"},
        {"-0", 0, "0"},        {"-", 2, ""},           {"", 2, ""},
        {"abc", 2, ""},        {"0abc", 0, "0"},
    };
    for (const auto& c : cases) {
        BigInt v = {};
        EXPECT_EQ(ReadDecimal(c.text, &v), c.code) << c.text;
        if (c.code == 0) {
            EXPECT_EQ(Text(&v), c.value) << c.text;
        }
        BigFree(&v);
    }
}
