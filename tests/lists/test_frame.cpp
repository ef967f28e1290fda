// The frame the lists share: ceiling, padding, numbering, the random
// generator and the input checks the dialogs reuse.
#include <gtest/gtest.h>

#include "lists/list_frame.h"
#include "lists/list_inputs.h"
#include "lists/list_random.h"
#include "lists/prime_table.h"
#include "resources/limits.h"

TEST(ListFrame, CeilingAdmitsExactlyOneMillionCharacters) {
    ListOutput out;
    out.text.assign(kListChars - 10, 'x');
    EXPECT_FALSE(AppendListLine(&out, std::string(11, 'y')));
    EXPECT_EQ(out.text.size(), size_t(kListChars - 10)) << "a refused row leaves the text as it was";
    EXPECT_TRUE(AppendListLine(&out, std::string(10, 'y')));
    EXPECT_EQ(out.text.size(), size_t(kListChars));
    EXPECT_FALSE(AppendListLine(&out, "z"));
    EXPECT_TRUE(AppendListLine(&out, "")) << "nothing more always fits";
}

TEST(ListFrame, PadLeftPadsOrCuts) {
    EXPECT_EQ(PadLeft(5, "42"), "   42");
    EXPECT_EQ(PadLeft(3, "123456"), "123") << "longer text keeps its first characters";
    EXPECT_EQ(PadLeft(4, "7", '0'), "0007");
    EXPECT_EQ(PadLeft(0, "7"), "");
}

TEST(ListFrame, RowPiecesAndRules) {
    std::string t = "x";
    Concat8(&t, "a", "", "b", "c", "d", "e", "f", "g");
    EXPECT_EQ(t, "xabcdefg");
    HyphenRule(&t, 3, true);
    EXPECT_EQ(t, "xabcdefg---");
    HyphenRule(&t, 2, false);
    EXPECT_EQ(t, "--");
    // Row labels take the width of count + 1: 99 rows need three places.
    EXPECT_EQ(NumberedRowLabel(7, 98), " 7. ");
    EXPECT_EQ(NumberedRowLabel(7, 99), "  7. ");
    EXPECT_EQ(Dec(uint32_t{4294967295u}), "4294967295") << "never printed as a negative";
    EXPECT_EQ(DecDigits(0), 1);
    EXPECT_EQ(DecDigits(100000), 6);
}

TEST(ListRandom, RuntimeSequenceAndSeeding) {
    // The runtime generator's well-known opening from seed 1.
    ListRandom rng;
    const int expected[] = {346, 130, 10982, 1090, 11656, 7117, 17595, 6415, 22948, 31126};
    for (int v : expected) EXPECT_EQ(rng.Next(), v);
    ListRandom a(12345), b(99);
    b.Seed(12345);
    for (int i = 0; i < 1000; ++i) {
        int v = a.Next();
        ASSERT_EQ(v, b.Next());
        ASSERT_GE(v, 0);
        ASSERT_LE(v, ListRandom::kMax);
    }
}

TEST(PrimeTable, FirstPrimesMatchTrialDivision) {
    const std::vector<uint32_t>& table = ListPrimeTable();
    ASSERT_EQ(table.size(), size_t{kPrimeTableCount});
    EXPECT_EQ(table.front(), 2u);
    EXPECT_EQ(table.back(), kLargestTabledPrime);
    std::vector<uint32_t> slow;
    for (uint32_t c = 2; slow.size() < 2000; ++c) {
        bool prime = true;
        for (uint32_t d = 2; d * d <= c && prime; ++d) prime = c % d != 0;
        if (prime) slow.push_back(c);
    }
    EXPECT_TRUE(std::equal(slow.begin(), slow.end(), table.begin()));
    EXPECT_EQ(BuildPrimeTable(5), (std::vector<uint32_t>{2, 3, 5, 7, 11}));
    EXPECT_TRUE(BuildPrimeTable(0).empty());
}

TEST(ListInputs, OneInputBoundsAndTheirCodes) {
    struct Case {
        ListKind kind;
        uint32_t belowLow, low, high;
        int belowCode;
    };
    const Case cases[] = {
        {ListKind::primes, 1, 2, 1598843, 17},
        {ListKind::primitiveTriples, 4, 5, 197890, 10},   // the advertised limit itself is accepted
        {ListKind::allTriples, 4, 5, 95150, 10},
        {ListKind::generators, 1, 2, 398, 10},
        {ListKind::commonEntry, 2, 3, 65535, 10},
        {ListKind::tri60, 1, 2, 439, 10},
        {ListKind::tri120, 1, 2, 460, 10},
        {ListKind::cyclotomic, 0, 1, 65535, 17},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.kind));
        EXPECT_EQ(CheckListValue(c.kind, c.belowLow), c.belowCode);
        EXPECT_EQ(CheckListValue(c.kind, c.low), 0);
        EXPECT_EQ(CheckListValue(c.kind, c.high), 0);
        EXPECT_EQ(CheckListValue(c.kind, c.high + 1), 17);
        uint32_t v = 0;
        EXPECT_EQ(ReadListValue(c.kind, "abc", &v), 17) << "text that is not a number";
        EXPECT_EQ(ReadListValue(c.kind, " " + std::to_string(c.low) + " ", &v), 0);
        EXPECT_EQ(v, c.low);
    }
}

TEST(ListInputs, ParsingNumbersStrictAndLoose) {
    uint32_t v = 0;
    EXPECT_TRUE(ParseListUnsigned("4294967295", &v));
    EXPECT_EQ(v, 4294967295u);
    EXPECT_FALSE(ParseListUnsigned("4294967296", &v));
    EXPECT_FALSE(ParseListUnsigned("-5", &v));
    EXPECT_FALSE(ParseListUnsigned("12x", &v));
    EXPECT_FALSE(ParseListUnsigned("", &v));
    EXPECT_EQ(ReadListUnsignedLoose("  25abc"), 25u);
    EXPECT_EQ(ReadListUnsignedLoose("99999999999"), 4294967295u);
    EXPECT_EQ(ReadListUnsignedLoose("x"), 0u);
}

TEST(ListInputs, TwoBoundDialogs) {
    EXPECT_EQ(CheckPerimeterBounds(100, 99), 6) << "inconsistency is reported before the range";
    EXPECT_EQ(CheckPerimeterBounds(5, 4), 6);
    EXPECT_EQ(CheckPerimeterBounds(11, 100), 17);
    EXPECT_EQ(CheckPerimeterBounds(12, 65536), 17);
    EXPECT_EQ(CheckPerimeterBounds(12, 12), 0);
    EXPECT_EQ(CheckQuadBounds(2, 10), 17);
    EXPECT_EQ(CheckQuadBounds(3, 65535), 0);
    EXPECT_EQ(CheckQuadBounds(3, 65536), 17);
    for (uint32_t m : {6u, 8u, 10u, 12u}) EXPECT_EQ(CheckPolygonInputs(5, m), 0);
    for (uint32_t m : {4u, 5u, 7u, 11u, 14u}) EXPECT_EQ(CheckPolygonInputs(5, m), 17);
    EXPECT_EQ(CheckPolygonInputs(4, 6), 17);
}

TEST(ListInputs, DialogTexts) {
    EXPECT_EQ(ListDialogCaption(ListKind::primes), "primes");
    EXPECT_EQ(ListDialogPrompt(ListKind::primes), "largest prime at most");
    EXPECT_EQ(ListDialogPrompt(ListKind::primitiveTriples), "maximum hypotenuse [ < 197890 ]");
    EXPECT_EQ(ListDialogPrompt(ListKind::cyclotomic), "index [ < 65536 ]");
    ListRandom rng;
    EXPECT_EQ(ListDialogDefault(ListKind::primes, &rng), "1598843");
    EXPECT_EQ(ListDialogDefault(ListKind::twoSquares, &rng), "32045");
    // Random defaults: 346 % 1111 + 111, then 130 % 1234 + 4, then 10982 % 256.
    EXPECT_EQ(ListDialogDefault(ListKind::factor, &rng), "457");
    EXPECT_EQ(ListDialogDefault(ListKind::allTriples, &rng), "134");
    EXPECT_EQ(ListDialogDefault(ListKind::tri60, &rng), "230");
    EXPECT_EQ(ListDialogOf(ListKind::divisors).menuId, 638);
}
