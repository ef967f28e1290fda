// The prime list, factoring and divisor lists.
#include <gtest/gtest.h>

#include "list_support.h"
#include "lists/list_generators.h"

TEST(PrimeList, SmallBoundsAreNumberedToTheWidthOfCountPlusOne) {
    ListOutput out;
    ASSERT_EQ(ListPrimes(nullptr, 2, &out), 0);
    EXPECT_EQ(out.text, "1. 2\r\n");
    EXPECT_EQ(out.caption, "1 primes") << "the noun is not inflected";
    ASSERT_EQ(ListPrimes(nullptr, 30, &out), 0);
    EXPECT_EQ(Rows(out.text)[6], " 7. 17");
    EXPECT_EQ(out.caption, "10 primes");
    out.text = "kept";
    EXPECT_EQ(ListPrimes(nullptr, 1, &out), 17);
    EXPECT_EQ(ListPrimes(nullptr, 1598844, &out), 17);
    EXPECT_EQ(out.text, "kept");
}

TEST(PrimeList, FullSizeRunsFitTheCeiling) {
    ListOutput out;
    ASSERT_EQ(ListPrimes(nullptr, 1598843, &out), 0);
    EXPECT_EQ(out.caption, "121057 primes");
    EXPECT_EQ(out.text.size(), 999997u);
    EXPECT_EQ(out.text.substr(out.text.size() - 9), "1598843\r\n");
    // 847043 is the 67401st prime: the last numbered list; 847051 is the 67402nd.
    ASSERT_EQ(ListPrimes(nullptr, 847043, &out), 0);
    EXPECT_EQ(out.caption, "67401 primes");
    EXPECT_EQ(out.text.size(), 999997u);
    EXPECT_EQ(out.text.substr(0, 10), "    1. 2\r\n");
    ASSERT_EQ(ListPrimes(nullptr, 847051, &out), 0);
    EXPECT_EQ(out.caption, "67402 primes");
    EXPECT_EQ(out.text.substr(0, 3), "2\r\n");
}

TEST(PrimeList, QuitKeyEndsTheRunWithTheRowsWritten) {
    QuitAtPoll quit(5);
    ListOutput out;
    EXPECT_EQ(ListPrimes(&quit, 1000, &out), -1);
    EXPECT_EQ(Rows(out.text).size(), 5u);
    EXPECT_EQ(out.caption, "5 primes");
}

TEST(Factor, FactorizationLinesAndRefusals) {
    const std::pair<const char*, const char*> cases[] = {
        {"2", "2"}, {"4", "2^2"}, {"1024", "2^10"}, {"360", "(2^3)*(3^2)*5"}, {"1001", "7*11*13"},
        {"2556298938649", "1598843^2"},
        {"2556298938551", "2556298938551"},   // a prime cofactor beyond the table
        {"--12", "(2^2)*3"},
    };
    for (const auto& [input, line] : cases) {
        ListOutput out;
        ASSERT_EQ(ListFactor(nullptr, input, &out), 0) << input;
        EXPECT_EQ(out.text, line);
        EXPECT_EQ(out.caption, std::string("prime factorization of ") + input);
    }
    ListOutput out;
    EXPECT_EQ(ListFactor(nullptr, "1", &out), 10);
    EXPECT_EQ(ListDivisors(nullptr, "1", &out), 10);
    for (const char* bad : {"0", "2556298938650", "-5", "abc", "", "99999999999999999999"}) {
        EXPECT_EQ(ListFactor(nullptr, bad, &out), 17) << bad;
        EXPECT_EQ(ListDivisors(nullptr, bad, &out), 17) << bad;
    }
}

TEST(Divisors, ListRuleAndSum) {
    ListOutput out;
    ASSERT_EQ(ListDivisors(nullptr, "360", &out), 0);
    EXPECT_EQ(out.caption, "divisor list [360] : 24");
    EXPECT_EQ(out.text.substr(out.text.size() - 29), "360\r\n----\r\ndivisor sum = 1170");
    ASSERT_EQ(ListDivisors(nullptr, "2556298938551", &out), 0);
    EXPECT_EQ(out.text, "1\r\n2556298938551\r\n-------------\r\ndivisor sum = 2556298938552");
}

TEST(Divisors, AgreeWithBruteForce) {
    for (uint32_t n = 2; n <= 1500; n += 7) {
        std::string expected;
        uint32_t count = 0, sum = 0;
        for (uint32_t d = 1; d <= n; ++d)
            if (n % d == 0) {
                expected += std::to_string(d) + "\r\n";
                ++count;
                sum += d;
            }
        ListOutput out;
        ASSERT_EQ(ListDivisors(nullptr, std::to_string(n), &out), 0);
        ASSERT_EQ(out.text.substr(0, expected.size()), expected) << n;
        EXPECT_EQ(out.text.substr(out.text.rfind(" = ") + 3), std::to_string(sum)) << n;
        EXPECT_EQ(out.caption, "divisor list [" + std::to_string(n) + "] : " + std::to_string(count));
    }
}
