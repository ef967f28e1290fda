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

TEST(HypotenuseTriples, AllUpToTwentyFive) {
    ListOutput out;
    ASSERT_EQ(ListHypotenuseTriples(nullptr, 25, false, &out), 0);
    EXPECT_EQ(out.text,
              " a  b  c\r\n---------\r\n"
              " 3  4  5*\r\n 6  8 10\r\n 5 12 13*\r\n 9 12 15\r\n"
              " 8 15 17*\r\n12 16 20\r\n 7 24 25*\r\n15 20 25\r\n");
    EXPECT_EQ(out.caption, "Pythagorean triples [hypotenuse < 26] : 8");
    ASSERT_EQ(ListHypotenuseTriples(nullptr, 5, true, &out), 0);
    EXPECT_EQ(out.text, "a b c\r\n-----\r\n3 4 5\r\n");
    EXPECT_EQ(out.caption, "Pythagorean triples [primitive; hypotenuse < 6] : 1");
}

TEST(HypotenuseTriples, AgreeWithBruteForce) {
    const uint32_t bound = 400;
    std::vector<Triple> all, primitive;
    for (uint32_t c = 5; c <= bound; ++c)
        for (uint32_t a = 1; a < c; ++a)
            for (uint32_t b = a + 1; b < c; ++b)
                if (a * a + b * b == c * c) {
                    all.emplace_back(a, b, c);
                    if (std::gcd(a, c) == 1) primitive.emplace_back(a, b, c);
                }
    ListOutput out;
    ASSERT_EQ(ListHypotenuseTriples(nullptr, bound, false, &out), 0);
    EXPECT_EQ(TriplesOf(out.text), all);
    ASSERT_EQ(ListHypotenuseTriples(nullptr, bound, true, &out), 0);
    EXPECT_EQ(TriplesOf(out.text), primitive);
    EXPECT_EQ(out.caption, "Pythagorean triples [primitive; hypotenuse < 401] : " +
                               std::to_string(primitive.size()));
}

TEST(HypotenuseTriples, StopReportsTheLastHypotenuse) {
    QuitAtPoll quit(9);   // after the ninth hypotenuse, c = 5 + 8 * 4 = 37
    ListOutput out;
    EXPECT_EQ(ListHypotenuseTriples(&quit, 1000, true, &out), -1);
    EXPECT_EQ(out.caption, "Pythagorean triples [primitive; hypotenuse < 38] : 6");
}

TEST(HypotenuseTriples, BoundsAndWidths) {
    ListOutput out;
    EXPECT_EQ(ListHypotenuseTriples(nullptr, 4, true, &out), 10);
    EXPECT_EQ(ListHypotenuseTriples(nullptr, 95151, false, &out), 17);
    EXPECT_EQ(ListHypotenuseTriples(nullptr, 197891, true, &out), 17);
    ASSERT_EQ(ListHypotenuseTriples(nullptr, 100, true, &out), 0);
    EXPECT_EQ(out.caption, "Pythagorean triples [primitive; hypotenuse < 101] : 16");
    EXPECT_EQ(Rows(out.text)[0], " a   b   c") << "widths 2, 4, 4 from the bound 100";
}

TEST(Generators, RowsByGeneratingPair) {
    ListOutput out;
    ASSERT_EQ(ListTripleGenerators(nullptr, 2, &out), 0);
    EXPECT_EQ(out.text, "a b c    m   n\r\n--------------\r\n3 4 5    1   2\r\n");
    EXPECT_EQ(out.caption, "Pythagorean triples : 1");
    EXPECT_EQ(ListTripleGenerators(nullptr, 1, &out), 10);
    EXPECT_EQ(ListTripleGenerators(nullptr, 399, &out), 17);

    // Each primitive triple once, each row a true primitive triple from its pair.
    ASSERT_EQ(ListTripleGenerators(nullptr, 40, &out), 0);
    std::set<Triple> seen;
    const std::vector<std::string> rows = Rows(out.text);
    for (size_t i = 2; i < rows.size(); ++i) {
        std::vector<std::string> w = Words(rows[i]);
        uint32_t a = std::stoul(w[0]), b = std::stoul(w[1]), c = std::stoul(w[2]);
        uint32_t m = std::stoul(w[3]), n = std::stoul(w[4]);
        EXPECT_EQ(a * a + b * b, c * c);
        EXPECT_EQ(c, m * m + n * n);
        EXPECT_EQ(std::gcd(a, b), 1u);
        EXPECT_LT(a, b);
        EXPECT_TRUE(seen.insert({a, b, c}).second);
    }
    EXPECT_EQ(out.caption, "Pythagorean triples : " + std::to_string(seen.size()));
}

TEST(AngleTriangles, SixtyDegrees) {
    ListOutput out;
    ASSERT_EQ(ListAngleTriangles(nullptr, 2, false, &out), 0);
    EXPECT_EQ(out.text, "a b c    m   n\r\n--------------\r\n1 1 1    1   2\r\n");
    EXPECT_EQ(out.caption, "0 primitive 60-degree triangles ");
    // Every row has a 60-degree angle between a and b: c^2 = a^2 + b^2 - ab.
    ASSERT_EQ(ListAngleTriangles(nullptr, 60, false, &out), 0);
    std::vector<Triple> rows = TriplesOf(out.text);
    for (const auto& [a, b, c] : rows) EXPECT_EQ(c * c + a * b, a * a + b * b);
    EXPECT_EQ(out.caption, std::to_string(rows.size() - 1) + " primitive 60-degree triangles ");
}

TEST(AngleTriangles, HundredTwentyDegreesUndivided) {
    ListOutput out;
    ASSERT_EQ(ListAngleTriangles(nullptr, 4, true, &out), 0);
    EXPECT_EQ(Rows(out.text)[5], "15  9 21    1   4") << "the common factor 3 stays";
    EXPECT_EQ(out.caption, "5 primitive 120-degree triangles ");
    // (For some bounds, 7 and 60 among them, b and c fill the widths taken
    // from 2N^2 and the columns touch; 40 is not one of them.)
    ASSERT_EQ(ListAngleTriangles(nullptr, 40, true, &out), 0);
    for (const auto& [a, b, c] : TriplesOf(out.text)) EXPECT_EQ(c * c, a * a + b * b + a * b);
    EXPECT_EQ(ListAngleTriangles(nullptr, 461, true, &out), 17);
    EXPECT_EQ(ListAngleTriangles(nullptr, 440, false, &out), 17);
    EXPECT_EQ(ListAngleTriangles(nullptr, 1, false, &out), 10);
}

TEST(CommonEntry, HypotenuseThenLeg) {
    ListOutput out;
    ASSERT_EQ(ListCommonEntry(nullptr, 5, &out), 0);
    // Each column two wider than its longest entry.
    EXPECT_EQ(out.text, "  a   b   c\r\n------------\r\n  3   4   5*\r\n  5  12  13*\r\n");
    EXPECT_EQ(out.caption, "Pythagorean triples [common number = 5] : 2");
    ASSERT_EQ(ListCommonEntry(nullptr, 12, &out), 0);
    EXPECT_EQ(out.caption, "Pythagorean triples [common number = 12] : 4");
    EXPECT_EQ(ListCommonEntry(nullptr, 2, &out), 10);
    EXPECT_EQ(ListCommonEntry(nullptr, 65536, &out), 17);
}

TEST(CommonEntry, AgreesWithBruteForce) {
    for (uint32_t n = 3; n <= 150; ++n) {
        std::set<Triple> expected;
        for (uint32_t a = 1; a <= 12000; ++a)
            for (uint32_t b : {n}) {
                // n as a leg: a^2 + n^2 = h^2; n as hypotenuse: a^2 + x^2 = n^2
                uint32_t h2 = a * a + b * b, h = static_cast<uint32_t>(std::sqrt(h2) + 0.5);
                if (h * h == h2) expected.insert({std::min(a, b), std::max(a, b), h});
                if (a < n) {
                    uint32_t x2 = n * n - a * a, x = static_cast<uint32_t>(std::sqrt(x2) + 0.5);
                    if (x * x == x2 && a < x) expected.insert({a, x, n});
                }
            }
        ListOutput out;
        ASSERT_EQ(ListCommonEntry(nullptr, n, &out), 0);
        std::vector<Triple> listed = TriplesOf(out.text);
        EXPECT_EQ(std::set<Triple>(listed.begin(), listed.end()), expected) << n;
        EXPECT_EQ(listed.size(), expected.size()) << n;
    }
}
