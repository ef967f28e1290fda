// The frame the lists share: ceiling, random generator, prime table, input
// checks, and the command-line entry's own codes (the golden scripts run every
// list by name).
#include <gtest/gtest.h>

#include "list_support.h"
#include "lists/list_command.h"
#include "lists/list_inputs.h"
#include "lists/prime_table.h"
#include "resources/limits.h"

TEST(ListFrame, CeilingAdmitsExactlyOneMillionCharacters) {
    ListOutput out;
    out.text.assign(kListChars - 10, 'x');
    EXPECT_FALSE(AppendListLine(&out, std::string(11, 'y')));
    EXPECT_EQ(out.text.size(), size_t(kListChars - 10))
        << "a refused row leaves the text as it was";
    EXPECT_TRUE(AppendListLine(&out, std::string(10, 'y')));
    EXPECT_FALSE(AppendListLine(&out, "z"));
    EXPECT_EQ(PadLeft(3, "123456"), "123") << "a field too narrow keeps the first characters";
}

TEST(ListFrame, RuntimeRandomSequenceAndSeed) {
    ListRandom rng;  // the runtime generator's well-known opening from seed 1
    for (int v : {346, 130, 10982, 1090, 11656, 7117, 17595, 6415, 22948, 31126})
        EXPECT_EQ(rng.Next(), v);
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

TEST(ListFrame, OneInputChecks) {
    // Both ends are accepted, the triple list's advertised limit included;
    // below the range the triple and triangle lists have nothing to show.
    uint32_t v = 0;
    for (const char* in : {"5", " 197890 "})
        EXPECT_EQ(ReadListValue(ListKind::primitiveTriples, in, &v), Result::kOk) << in;
    EXPECT_EQ(ReadListValue(ListKind::primitiveTriples, "4", &v), Result::kNothingToShow);
    EXPECT_EQ(ReadListValue(ListKind::primitiveTriples, "197891", &v), Result::kOutOfBounds);
    EXPECT_EQ(ReadListValue(ListKind::cyclotomic, "0", &v), Result::kOutOfBounds);
    for (const char* bad : {"abc", "-5", "12x", "", "4294967296"})
        EXPECT_EQ(ReadListValue(ListKind::factor, bad, &v), Result::kOutOfBounds) << bad;
}

TEST(ListFrame, TwoInputChecks) {
    EXPECT_EQ(CheckPerimeterBounds(5, 4), Result::kInconsistent) << "before the range";
    EXPECT_EQ(CheckPerimeterBounds(11, 65535), Result::kOutOfBounds);
    EXPECT_EQ(CheckQuadBounds(3, 65535), Result::kOk);
    EXPECT_EQ(CheckQuadBounds(2, 10), Result::kOutOfBounds);
    for (uint32_t m : {6u, 8u, 10u, 12u}) EXPECT_EQ(CheckPolygonInputs(5, m), Result::kOk);
    for (uint32_t m : {5u, 7u, 14u}) EXPECT_EQ(CheckPolygonInputs(5, m), Result::kOutOfBounds);
    EXPECT_EQ(CheckPolygonInputs(4, 6), Result::kOutOfBounds);
    EXPECT_EQ(ReadListUnsignedLoose("99999999999"), 4294967295u) << "two squares takes any text";
}

TEST(ListCommand, ArgumentCodesAndSeed) {
    const std::pair<std::vector<std::string>, Result> cases[] = {
        {{"quads", "3", "10", "distinct", "repeats"}, Result::kCannotUnderstand},
        {{"heron", "12", "50", "sideways"}, Result::kCannotUnderstand},
        {{"heron", "12", "50", "right", "right"}, Result::kCannotUnderstand},
        {{"perpmed", "54", "100", "right"}, Result::kCannotUnderstand},
        {{"heron", "x", "50"}, Result::kOutOfBounds},
        {{"primes"}, Result::kCannotUnderstand},
        {{"polygons", "32045", "6"}, Result::kCannotUnderstand},
        {{"polygons", "32045", "6", "10", "x"}, Result::kCannotUnderstand},
        {{"pentagons", "5"}, Result::kCouldNotFind},
        {{}, Result::kCannotUnderstand},
    };
    CalcContext quiet;
    for (const auto& [args, code] : cases) {
        ListOutput out;
        EXPECT_EQ(RunListCommand(&quiet, args, &out), code) << (args.empty() ? "" : args[0]);
        EXPECT_TRUE(out.text.empty());
    }
    ListOutput nine, ten;
    ASSERT_EQ(RunListCommand(&quiet, {"polygons", "1105", "8", "50000", "9"}, &nine), Result::kOk);
    ASSERT_EQ(RunListCommand(&quiet, {"polygons", "1105", "8", "50000", "10"}, &ten), Result::kOk);
    EXPECT_NE(nine.text, ten.text) << "the seed is passed on";
}
