// Pythagorean triples and the 60/120-degree triangles.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <set>
#include <tuple>

#include "list_support.h"
#include "lists/list_generators.h"

namespace {

using Triple = std::tuple<uint32_t, uint32_t, uint32_t>;

// The first three numbers of every row below the header and rule.
std::vector<Triple> TriplesOf(const std::string& text) {
    std::vector<Triple> triples;
    std::vector<std::string> rows = Rows(text);
    for (size_t i = 2; i < rows.size(); ++i) {
        std::vector<std::string> w = Words(rows[i]);
        triples.emplace_back(std::stoul(w[0]), std::stoul(w[1]), std::stoul(w[2]));
    }
    return triples;
}

}  // namespace

TEST(Triples, HypotenuseListsAgreeWithBruteForce) {
    std::vector<Triple> all, primitive;
    for (uint32_t c = 5; c <= 400; ++c)
        for (uint32_t a = 1; a < c; ++a)
            for (uint32_t b = a + 1; b < c; ++b)
                if (a * a + b * b == c * c) {
                    all.emplace_back(a, b, c);
                    if (std::gcd(a, c) == 1) primitive.emplace_back(a, b, c);
                }
    ListOutput out;
    ASSERT_EQ(ListHypotenuseTriples(nullptr, 400, false, &out), 0);
    EXPECT_EQ(TriplesOf(out.text), all);
    ASSERT_EQ(ListHypotenuseTriples(nullptr, 400, true, &out), 0);
    EXPECT_EQ(TriplesOf(out.text), primitive);
}

TEST(Triples, StopReportsTheLastHypotenuse) {
    QuitAtPoll quit(9);   // after the ninth hypotenuse, c = 5 + 8 * 4 = 37
    ListOutput out;
    EXPECT_EQ(ListHypotenuseTriples(&quit, 1000, true, &out), -1);
    EXPECT_EQ(out.caption, "Pythagorean triples [primitive; hypotenuse < 38] : 6");
}

TEST(Triples, GeneratorsGiveEachPrimitiveTripleOnce) {
    ListOutput out;
    ASSERT_EQ(ListTripleGenerators(nullptr, 40, &out), 0);
    std::set<Triple> seen;
    const std::vector<std::string> rows = Rows(out.text);
    for (size_t i = 2; i < rows.size(); ++i) {
        std::vector<std::string> w = Words(rows[i]);
        uint32_t a = std::stoul(w[0]), b = std::stoul(w[1]), c = std::stoul(w[2]);
        EXPECT_EQ(a * a + b * b, c * c);
        EXPECT_EQ(std::gcd(a, b), 1u);
        EXPECT_LT(a, b);
        EXPECT_TRUE(seen.insert({a, b, c}).second);
    }
    EXPECT_EQ(out.caption, "Pythagorean triples : " + std::to_string(seen.size()));
}

TEST(Triples, AngleTrianglesHaveTheirAngle) {
    ListOutput out;
    // (For some bounds, 7 and 60 among them, b and c fill the widths taken
    // from 2N^2 and the columns touch; 40 is not one of them.)
    ASSERT_EQ(ListAngleTriangles(nullptr, 40, false, &out), 0);
    for (const auto& [a, b, c] : TriplesOf(out.text)) EXPECT_EQ(c * c + a * b, a * a + b * b);
    ASSERT_EQ(ListAngleTriangles(nullptr, 40, true, &out), 0);
    for (const auto& [a, b, c] : TriplesOf(out.text)) EXPECT_EQ(c * c, a * a + b * b + a * b);
}

TEST(Triples, CommonEntryAgreesWithBruteForce) {
    ListOutput out;
    for (uint32_t n = 3; n <= 150; ++n) {
        std::set<Triple> expected;
        for (uint32_t a = 1; a <= n * n / 2; ++a) {
            uint32_t h2 = a * a + n * n, h = static_cast<uint32_t>(std::sqrt(h2) + 0.5);
            if (h * h == h2) expected.insert({std::min(a, n), std::max(a, n), h});
            if (a >= n) continue;
            uint32_t x2 = n * n - a * a, x = static_cast<uint32_t>(std::sqrt(x2) + 0.5);
            if (x * x == x2 && a < x) expected.insert({a, x, n});
        }
        ASSERT_EQ(ListCommonEntry(nullptr, n, &out), 0);
        std::vector<Triple> listed = TriplesOf(out.text);
        EXPECT_EQ(std::set<Triple>(listed.begin(), listed.end()), expected) << n;
        EXPECT_EQ(listed.size(), expected.size()) << n;
    }
}
