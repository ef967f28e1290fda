// Digit frequencies counted in place against the decimal text of the value,
// and the poll between blocks.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "calc/digit_freq.h"
#include "support/test_support.h"

namespace {

// Digits drawn from a narrow range, so that one digit is rare and repeated
// limbs (runs of zeros, as factorials end) are common.
std::string Digits(std::size_t count, unsigned seed) {
    std::mt19937 rng(seed);
    std::string s;
    for (std::size_t i = 0; i < count; ++i) s += static_cast<char>('0' + rng() % 3 * (rng() % 4));
    s[0] = static_cast<char>('1' + seed % 9);
    return s;
}

}  // namespace

// Every top-limb length, across the block boundary, and zero: the counts are
// those of the text, and the table is the one the counters of the record give.
TEST(DigitFreq, CountsMatchTheTextAndTheRecordsTable) {
    const std::size_t block = 4 * static_cast<std::size_t>(kDigitFreqBlockLimbs);
    for (std::size_t length : {std::size_t{1}, std::size_t{4}, block + 1, block + 2, block + 3,
                               block + 4, 2 * block + 6}) {
        for (const char* sign : {"", "-"}) {
            const std::string text = sign + Digits(length, unsigned(length));
            Num v(text);
            uint64_t counts[10];
            ASSERT_EQ(CountDigits(&v.v, nullptr, counts), Result::kOk);
            for (int d = 0; d < 10; ++d)
                EXPECT_EQ(counts[d], uint64_t(std::count(text.begin(), text.end(), '0' + d)))
                    << length << " digit " << d;
            std::string inPlace, counted;
            ASSERT_EQ(DigitFrequencies(&v.v, nullptr, &inPlace), Result::kOk);
            ASSERT_EQ(DigitFrequencyText(&v.v, &counted), Result::kOk);
            EXPECT_EQ(inPlace, counted);
        }
    }
    Num zero("0");
    uint64_t counts[10];
    ASSERT_EQ(CountDigits(&zero.v, nullptr, counts), Result::kOk);
    EXPECT_EQ(counts[0], 1u);
}

// Q between blocks ends the count with no table; one block never polls.
TEST(DigitFreq, StopsBetweenBlocks) {
    Num big(Digits(4 * static_cast<std::size_t>(kDigitFreqBlockLimbs) * 3, 1));
    QuitAtPoll quit(2);
    std::string text = "old";
    EXPECT_EQ(DigitFrequencies(&big.v, &quit, &text), Result::kStopped);
    EXPECT_EQ(quit.polls(), 2);
    EXPECT_EQ(text, "");
    Num small(Digits(4 * static_cast<std::size_t>(kDigitFreqBlockLimbs), 2));
    QuitAtPoll never(1);
    EXPECT_EQ(DigitFrequencies(&small.v, &never, &text), Result::kOk);
    EXPECT_EQ(never.polls(), 0);
}
