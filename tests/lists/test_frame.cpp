// The frame the lists share: ceiling, random generator, prime table, input checks.
#include <gtest/gtest.h>

#include "lists/list_frame.h"
#include "lists/list_inputs.h"
#include "lists/prime_table.h"
#include "resources/limits.h"

TEST(ListFrame, CeilingAdmitsExactlyOneMillionCharacters) {
    ListOutput out;
    out.text.assign(kListChars - 10, 'x');
    EXPECT_FALSE(AppendListLine(&out, std::string(11, 'y')));
    EXPECT_EQ(out.text.size(), size_t(kListChars - 10)) << "a refused row leaves the text as it was";
    EXPECT_TRUE(AppendListLine(&out, std::string(10, 'y')));
    EXPECT_FALSE(AppendListLine(&out, "z"));
    EXPECT_EQ(PadLeft(3, "123456"), "123") << "a field too narrow keeps the first characters";
}

TEST(ListFrame, RuntimeRandomSequenceAndSeed) {
    // The runtime generator's well-known opening from seed 1.
    ListRandom rng;
    for (int v : {346, 130, 10982, 1090, 11656, 7117, 17595, 6415, 22948, 31126}) EXPECT_EQ(rng.Next(), v);
    rng.Seed(1);
    EXPECT_EQ(ListDialogDefault(ListKind::factor, &rng), "457") << "346 mod 1111 + 111";
}

TEST(ListFrame, PrimeTableMatchesTrialDivision) {
    const std::vector<uint32_t>& table = ListPrimeTable();
    ASSERT_EQ(table.size(), size_t{kPrimeTableCount});
    EXPECT_EQ(table.back(), kLargestTabledPrime);
    std::vector<uint32_t> slow;
    for (uint32_t c = 2; slow.size() < 2000; ++c) {
        bool prime = true;
        for (uint32_t d = 2; d * d <= c && prime; ++d) prime = c % d != 0;
        if (prime) slow.push_back(c);
    }
    EXPECT_TRUE(std::equal(slow.begin(), slow.end(), table.begin()));
}

TEST(ListFrame, OneInputBoundsAndTheirCodes) {
    struct Case {
        ListKind kind;
        uint32_t low, high;
        int belowCode;
    } cases[] = {
        {ListKind::primes, 2, 1598843, 17},
        {ListKind::primitiveTriples, 5, 197890, 10},   // the advertised limit itself is accepted
        {ListKind::allTriples, 5, 95150, 10},
        {ListKind::generators, 2, 398, 10},
        {ListKind::commonEntry, 3, 65535, 10},
        {ListKind::tri60, 2, 439, 10},
        {ListKind::tri120, 2, 460, 10},
        {ListKind::cyclotomic, 1, 65535, 17},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.kind));
        uint32_t v = 0;
        EXPECT_EQ(ReadListValue(c.kind, std::to_string(c.low - 1), &v), c.belowCode);
        EXPECT_EQ(ReadListValue(c.kind, " " + std::to_string(c.low) + " ", &v), 0);
        EXPECT_EQ(ReadListValue(c.kind, std::to_string(c.high), &v), 0);
        EXPECT_EQ(ReadListValue(c.kind, std::to_string(c.high + 1), &v), 17);
        for (const char* bad : {"abc", "-5", "12x", "", "4294967296"})
            EXPECT_EQ(ReadListValue(c.kind, bad, &v), 17) << bad;
    }
}

TEST(ListFrame, TwoInputChecks) {
    EXPECT_EQ(CheckPerimeterBounds(5, 4), 6) << "inconsistency is reported before the range";
    EXPECT_EQ(CheckPerimeterBounds(11, 100), 17);
    EXPECT_EQ(CheckPerimeterBounds(12, 65536), 17);
    EXPECT_EQ(CheckQuadBounds(2, 10), 17);
    EXPECT_EQ(CheckQuadBounds(3, 65535), 0);
    for (uint32_t m : {6u, 8u, 10u, 12u}) EXPECT_EQ(CheckPolygonInputs(5, m), 0);
    for (uint32_t m : {5u, 7u, 14u}) EXPECT_EQ(CheckPolygonInputs(5, m), 17);
    EXPECT_EQ(CheckPolygonInputs(4, 6), 17);
    EXPECT_EQ(ReadListUnsignedLoose("99999999999"), 4294967295u) << "two squares takes any text";
}
