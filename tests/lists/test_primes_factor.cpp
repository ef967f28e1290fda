// The prime list, factoring and divisor lists.
#include <gtest/gtest.h>

#include "list_support.h"
#include "lists/factor.h"
#include "lists/list_generators.h"

TEST(PrimeList, SmallBoundsAreNumbered) {
    ListOutput out;
    ASSERT_EQ(ListPrimes(nullptr, 2, &out), 0);
    EXPECT_EQ(out.text, "1. 2\r\n");
    EXPECT_EQ(out.caption, "1 primes") << "the noun is not inflected";
    ASSERT_EQ(ListPrimes(nullptr, 30, &out), 0);
    const std::vector<std::string> rows = Rows(out.text);
    ASSERT_EQ(rows.size(), 10u);
    EXPECT_EQ(rows[6], " 7. 17") << "numbers take the width of count + 1 = 11";
    EXPECT_EQ(rows[9], "10. 29");
    EXPECT_EQ(out.caption, "10 primes");
}

TEST(PrimeList, BoundsOutsideTheTable) {
    ListOutput out;
    out.text = "kept";
    EXPECT_EQ(ListPrimes(nullptr, 1, &out), 17);
    EXPECT_EQ(ListPrimes(nullptr, 1598844, &out), 17);
    EXPECT_EQ(out.text, "kept");
}

TEST(PrimeList, WholeTableFillsTheTextAlmostExactly) {
    ListOutput out;
    ASSERT_EQ(ListPrimes(nullptr, 1598843, &out), 0);
    EXPECT_EQ(out.caption, "121057 primes");
    EXPECT_EQ(out.text.size(), 999997u);
    EXPECT_EQ(out.text.substr(0, 8), "2\r\n3\r\n5\r");
    EXPECT_EQ(out.text.substr(out.text.size() - 9), "1598843\r\n");
}

TEST(PrimeList, NumberingStopsAtTheThreshold) {
    ListOutput out;
    // 847043 is the 67401st prime, 847051 the 67402nd.
    ASSERT_EQ(ListPrimes(nullptr, 847043, &out), 0);
    EXPECT_EQ(out.caption, "67401 primes");
    EXPECT_EQ(out.text.size(), 999997u);
    EXPECT_EQ(out.text.substr(0, 10), "    1. 2\r\n");
    ASSERT_EQ(ListPrimes(nullptr, 847051, &out), 0);
    EXPECT_EQ(out.caption, "67402 primes");
    EXPECT_EQ(out.text.size(), 528198u);
    EXPECT_EQ(out.text.substr(0, 3), "2\r\n");
}

TEST(PrimeList, QuitKeyEndsTheRunWithTheRowsWritten) {
    QuitAtPoll quit(5);
    ListOutput out;
    EXPECT_EQ(ListPrimes(&quit, 1000, &out), -1);
    EXPECT_EQ(quit.polls(), 5);
    EXPECT_EQ(Rows(out.text).size(), 5u);
    EXPECT_EQ(out.caption, "5 primes");
    InterruptAtPoll interrupt(1);
    EXPECT_EQ(ListPrimes(&interrupt, 1000, &out), -1);
    EXPECT_EQ(out.caption, "1 primes");
}

TEST(Factor, FactorizationLines) {
    struct Case {
        const char* input;
        const char* line;
    } cases[] = {
        {"2", "2"},
        {"3", "3"},
        {"4", "2^2"},
        {"1024", "2^10"},
        {"360", "(2^3)*(3^2)*5"},
        {"1001", "7*11*13"},
        {"2556298938649", "1598843^2"},
        // a cofactor beyond the table, prime, printed as it is
        {"2556298938551", "2556298938551"},
        {"--12", "(2^2)*3"},
    };
    for (const Case& c : cases) {
        ListOutput out;
        ASSERT_EQ(ListFactor(nullptr, c.input, &out), 0) << c.input;
        EXPECT_EQ(out.text, c.line) << c.input;
        EXPECT_EQ(out.caption, std::string("prime factorization of ") + c.input);
    }
}

TEST(Factor, RefusedInputs) {
    ListOutput out;
    EXPECT_EQ(ListFactor(nullptr, "1", &out), 10);
    EXPECT_EQ(ListDivisors(nullptr, "1", &out), 10);
    for (const char* bad : {"0", "2556298938650", "-5", "abc", "", "-", "99999999999999999999"}) {
        EXPECT_EQ(ListFactor(nullptr, bad, &out), 17) << bad;
        EXPECT_EQ(ListDivisors(nullptr, bad, &out), 17) << bad;
    }
    EXPECT_TRUE(out.text.empty());
}

TEST(Factor, ProductOfFactorsGivesBackTheNumber) {
    CalcContext quiet;
    for (uint64_t n : {2ull, 97ull, 720720ull, 999999999989ull, 600851475143ull, 2147483648ull}) {
        BigInt v{};
        ASSERT_EQ(ReadFactorInput(std::to_string(n), &v), 0);
        std::vector<PrimeFactor> factors;
        ASSERT_EQ(FactorBig(&quiet, &v, &factors), 0) << n;
        BigFree(&v);
        uint64_t product = 1, last = 0;
        for (const PrimeFactor& f : factors) {
            uint64_t p = std::stoull(f.prime);
            EXPECT_GT(p, last) << "factors ascend";
            last = p;
            for (uint32_t k = 0; k < f.exponent; ++k) product *= p;
        }
        EXPECT_EQ(product, n);
    }
}

TEST(Divisors, ListRuleAndSum) {
    ListOutput out;
    ASSERT_EQ(ListDivisors(nullptr, "360", &out), 0);
    EXPECT_EQ(out.caption, "divisor list [360] : 24");
    const std::vector<std::string> rows = Rows(out.text);
    ASSERT_EQ(rows.size(), 26u);
    EXPECT_EQ(rows[0], "1");
    EXPECT_EQ(rows[23], "360");
    EXPECT_EQ(rows[24], "----");
    EXPECT_EQ(rows[25], "divisor sum = 1170");

    ASSERT_EQ(ListDivisors(nullptr, "2556298938551", &out), 0);
    EXPECT_EQ(out.text, "1\r\n2556298938551\r\n-------------\r\ndivisor sum = 2556298938552");
}

TEST(Divisors, AgreeWithBruteForce) {
    for (uint32_t n = 2; n <= 1500; n += 7) {
        ListOutput out;
        ASSERT_EQ(ListDivisors(nullptr, std::to_string(n), &out), 0);
        std::string expected;
        uint32_t count = 0, sum = 0;
        for (uint32_t d = 1; d <= n; ++d)
            if (n % d == 0) {
                expected += std::to_string(d) + "\r\n";
                ++count;
                sum += d;
            }
        ASSERT_EQ(out.text.substr(0, expected.size()), expected) << n;
        EXPECT_EQ(out.text.substr(out.text.rfind(" = ") + 3), std::to_string(sum)) << n;
        EXPECT_EQ(out.caption, "divisor list [" + std::to_string(n) + "] : " + std::to_string(count));
    }
}
