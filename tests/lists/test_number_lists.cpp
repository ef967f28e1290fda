// The lists of one number: primes, factors, divisors, sums of two squares,
// cyclotomic polynomials.
#include <gtest/gtest.h>

#include <cstdio>
#include <map>

#include "list_support.h"

namespace {

using Poly = std::map<long, long>;  // exponent -> coefficient

Poly Multiply(const Poly& x, const std::vector<Numbers>& rows) {
    Poly product;
    for (const auto& [i, a] : x)
        for (const Numbers& r : rows) product[i + r[0]] += a * r[1];
    for (auto it = product.begin(); it != product.end();)
        it = it->second == 0 ? product.erase(it) : std::next(it);
    return product;
}

}  // namespace

TEST(PrimeList, NumberedToTheWidthOfCountPlusOneAndStopped) {
    ListOutput out;
    ASSERT_EQ(ListPrimes(nullptr, 23, &out), Result::kOk);
    EXPECT_EQ(Rows(out.text)[8], " 9. 23");
    EXPECT_EQ(out.caption, "9 primes");
    QuitAtPoll quit(5);
    EXPECT_EQ(ListPrimes(&quit, 1000, &out), Result::kStopped);
    EXPECT_EQ(Rows(out.text).size(), 5u) << "the rows written";
    EXPECT_EQ(out.caption, "5 primes");
}

TEST(PrimeList, FullSizeRunsFitTheCeiling) {
    ListOutput out;
    ASSERT_EQ(ListPrimes(nullptr, 1598843, &out), Result::kOk);
    EXPECT_EQ(out.caption, "121057 primes");
    EXPECT_EQ(out.text.size(), 999997u);
    EXPECT_EQ(out.text.substr(out.text.size() - 9), "1598843\r\n");
    // 847043 is the 67401st prime: the last numbered list; 847051 is the 67402nd.
    ASSERT_EQ(ListPrimes(nullptr, 847043, &out), Result::kOk);
    EXPECT_EQ(out.caption, "67401 primes");
    EXPECT_EQ(out.text.size(), 999997u);
    EXPECT_EQ(out.text.substr(0, 10), "    1. 2\r\n");
    ASSERT_EQ(ListPrimes(nullptr, 847051, &out), Result::kOk);
    EXPECT_EQ(out.text.substr(0, 3), "2\r\n");
}

TEST(Factor, FactorizationLinesAndRefusals) {
    const std::pair<const char*, const char*> cases[] = {
        {"2", "2"},          {"1024", "2^10"},    {"360", "(2^3)*(3^2)*5"},
        {"1001", "7*11*13"}, {"--12", "(2^2)*3"},
    };
    ListOutput out;
    for (const auto& [input, line] : cases) {
        ASSERT_EQ(ListFactor(nullptr, input, &out), Result::kOk) << input;
        EXPECT_EQ(out.text, line);
        EXPECT_EQ(out.caption, std::string("prime factorization of ") + input);
    }
    EXPECT_EQ(ListFactor(nullptr, "1", &out), Result::kNothingToShow);
    EXPECT_EQ(ListDivisors(nullptr, "1", &out), Result::kNothingToShow);
    for (const char* bad : {"0", "2556298938650", "-5", "abc", "", "99999999999999999999"}) {
        EXPECT_EQ(ListFactor(nullptr, bad, &out), Result::kOutOfBounds) << bad;
        EXPECT_EQ(ListDivisors(nullptr, bad, &out), Result::kOutOfBounds) << bad;
    }
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
        ASSERT_EQ(ListDivisors(nullptr, std::to_string(n), &out), Result::kOk);
        const std::string rule(std::to_string(sum).size(), '-');
        EXPECT_EQ(out.text, expected + rule + "\r\ndivisor sum = " + std::to_string(sum)) << n;
        EXPECT_EQ(out.caption,
                  "divisor list [" + std::to_string(n) + "] : " + std::to_string(count));
    }
    ListOutput out;  // a prime beyond the table, and its sum past 32 bits
    ASSERT_EQ(ListDivisors(nullptr, "2556298938551", &out), Result::kOk);
    EXPECT_EQ(out.text, "1\r\n2556298938551\r\n-------------\r\ndivisor sum = 2556298938552");
}

TEST(TwoSquares, AgreeWithBruteForceAndTopOfTheRangePrintsUnsigned) {
    for (long n = 0; n <= 3000; ++n) {
        std::vector<std::pair<long, long>> expected, listed;
        for (long y = 0; 2 * y * y <= n; ++y)
            for (long x = y; x * x + y * y <= n; ++x)
                if (x * x + y * y == n) expected.emplace_back(x, y);
        ListOutput out;
        ASSERT_EQ(ListTwoSquares(static_cast<uint32_t>(n), &out), Result::kOk);
        for (const std::string& row : Rows(out.text)) {
            long x = -1, y = -1;
            EXPECT_EQ(std::sscanf(row.c_str(), "[%ld,%ld]", &x, &y), 2) << row;
            listed.emplace_back(x, y);
        }
        ASSERT_EQ(listed, expected) << n;
        EXPECT_NE(out.caption.find(" = " + std::to_string(expected.size()) + " "),
                  std::string::npos);
    }
    ListOutput out;
    ASSERT_EQ(ListTwoSquares(4294967295u, &out), Result::kOk);
    EXPECT_EQ(out.caption, "4294967295 = 0 sums of two squares");
    ASSERT_EQ(ListTwoSquares(4294836225u, &out), Result::kOk);  // 65535^2: the widest x and square
    EXPECT_EQ(Rows(out.text).front(), "[65535,    0] (4294836225 + 0)");
}

TEST(Cyclotomic, ProductOverDivisorsIsZToTheNMinusOne) {
    for (long n = 1; n <= 150; ++n) {
        Poly product{{0, 1}};
        for (long d = 1; d <= n; ++d) {
            ListOutput out;
            if (n % d != 0) continue;
            ASSERT_EQ(ListCyclotomic(nullptr, static_cast<uint32_t>(d), &out), Result::kOk);
            const std::vector<Numbers> rows = Leading(out.text, 2);
            for (const Numbers& r : rows) EXPECT_NE(r[1], 0) << "zero coefficients have no row";
            product = Multiply(product, rows);
        }
        EXPECT_EQ(product, (Poly{{0, -1}, {n, 1}})) << n;
    }
}

TEST(Cyclotomic, LargestIndexAndAStopThatReplacesTheText) {
    ListOutput out;
    ASSERT_EQ(ListCyclotomic(nullptr, 65535, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 1)[0][0], 32768) << "phi(3 * 5 * 17 * 257)";
    EXPECT_EQ(Rows(out.text)[0], " expo  coef") << "the exponent column widens to five digits";
    QuitAtPoll quit(1);
    EXPECT_EQ(ListCyclotomic(&quit, 30, &out), Result::kStopped);
    EXPECT_EQ(out.text + "; " + out.caption, "interrupted; cyclotomic polynomial [30]");
}
