// Inscribed (cyclic) and bicentric quadrilaterals with integer sides and area.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <set>

#include "list_support.h"

namespace {

// One row as printed, the perimeter filled in where the list leaves it blank:
// perimeter, a, b, c, d, area, then the rest of the row's words.
using Row = std::vector<std::string>;

std::vector<Row> Parse(const std::string& text) {
    std::vector<Row> table;
    const std::vector<std::string> rows = Rows(text);
    std::string perimeter;
    for (size_t i = 2; i < rows.size(); ++i) {
        const std::vector<std::string> head = Words(rows[i].substr(0, 5));
        if (!head.empty()) perimeter = head[0];
        Row row = Words(rows[i].substr(5));
        row.insert(row.begin(), perimeter);
        table.push_back(row);
    }
    return table;
}

using Quad = std::array<long, 4>;

// The least of the eight ways of reading the sides around the quadrilateral.
Quad Least(const Quad& q) {
    const long a = q[0], b = q[1], c = q[2], d = q[3];
    return std::min({Quad{a, b, c, d}, Quad{b, c, d, a}, Quad{c, d, a, b}, Quad{d, a, b, c},
                     Quad{a, d, c, b}, Quad{d, c, b, a}, Quad{c, b, a, d}, Quad{b, a, d, c}});
}

long Root(long v) {
    long r = 0;
    while (r * r < v) ++r;
    return r * r == v ? r : -1;
}

// The rows a list of perimeters up to maxP should hold, from every 4-tuple
// of sides; extra(q, area) gives the words after the area.
template <class Extra>
std::vector<Row> BruteForce(long maxP, bool bicentric, Extra extra) {
    std::set<std::pair<long, Quad>> seen;
    for (long a = 1; a < maxP; ++a)
        for (long b = 1; a + b < maxP; ++b)
            for (long c = 1; a + b + c < maxP; ++c)
                for (long d = 1; a + b + c + d <= maxP; ++d) {
                    const long p = a + b + c + d;
                    if (p - 2 * a <= 0 || p - 2 * b <= 0 || p - 2 * c <= 0 || p - 2 * d <= 0)
                        continue;
                    if (bicentric && a + c != b + d) continue;
                    const long k16 = (p - 2 * a) * (p - 2 * b) * (p - 2 * c) * (p - 2 * d);
                    if (k16 % 16 == 0 && Root(k16 / 16) > 0) seen.insert({p, Least({a, b, c, d})});
                }
    std::vector<Row> rows;
    for (const auto& [p, q] : seen) {
        const long s = p / 2, area = Root((s - q[0]) * (s - q[1]) * (s - q[2]) * (s - q[3]));
        Row row{std::to_string(p)};
        for (long side : q) row.push_back(std::to_string(side));
        row.push_back(std::to_string(area));
        for (const std::string& w : extra(q, area, s)) row.push_back(w);
        rows.push_back(row);
    }
    return rows;
}

// Both diagonals when both are integers: p^2 (ab + cd) = (ac + bd)(ad + bc).
std::vector<std::string> Diagonals(const Quad& q, long, long) {
    const long a = q[0], b = q[1], c = q[2], d = q[3];
    const long e = a * c + b * d, f = a * d + b * c, g = a * b + c * d;
    long p = 1, r = 1;
    while (p * p * g < e * f) ++p;
    while (r * r * f < e * g) ++r;
    if (p * p * g != e * f || r * r * f != e * g) return {};
    return {std::to_string(p), std::to_string(r)};
}

std::vector<std::string> Inradius(const Quad&, long area, long s) {
    const long g = std::gcd(area, s);
    return {std::to_string(area / g) + (g == s ? "" : "/" + std::to_string(s / g))};
}

bool Has(const std::vector<Row>& rows, const Row& row) {
    return std::find(rows.begin(), rows.end(), row) != rows.end();
}

}  // namespace

TEST(Quadrilaterals, ListsAgreeWithBruteForce) {
    ListOutput out;
    ASSERT_EQ(ListCyclicQuadrilaterals(nullptr, 44, &out), Result::kOk);
    const std::vector<Row> cyclic = BruteForce(44, false, Diagonals);
    EXPECT_EQ(Parse(out.text), cyclic);
    EXPECT_EQ(out.caption,
              "inscribed quadrilaterals [perim < 45] : " + std::to_string(cyclic.size()));

    ASSERT_EQ(ListBicentricQuadrilaterals(nullptr, 61, &out), Result::kOk);
    const std::vector<Row> bicentric = BruteForce(61, true, Inradius);
    EXPECT_EQ(Parse(out.text), bicentric);
    EXPECT_EQ(out.caption,
              "circumscribed quadrilaterals [perim < 62] : " + std::to_string(bicentric.size()));
}

TEST(Quadrilaterals, KnownQuadrilaterals) {
    ListOutput out;
    ASSERT_EQ(ListCyclicQuadrilaterals(nullptr, 176, &out), Result::kOk);
    const std::vector<Row> cyclic = Parse(out.text);
    // Brahmagupta's 25, 39, 52, 60: each of its three cyclic orders has
    // integer diagonals, p q = ac + bd (Ptolemy).
    EXPECT_TRUE(Has(cyclic, {"176", "25", "39", "52", "60", "1764", "56", "65"}));
    EXPECT_TRUE(Has(cyclic, {"176", "25", "39", "60", "52", "1764", "56", "63"}));
    EXPECT_TRUE(Has(cyclic, {"176", "25", "52", "39", "60", "1764", "63", "65"}));
    EXPECT_TRUE(Has(cyclic, {"14", "3", "4", "3", "4", "12", "5", "5"}));
    EXPECT_TRUE(Has(cyclic, {"40", "7", "13", "7", "13", "91"}));
    EXPECT_TRUE(Has(cyclic, {"172", "43", "43", "43", "43", "1849"}));

    ASSERT_EQ(ListBicentricQuadrilaterals(nullptr, 300, &out), Result::kOk);
    const std::vector<Row> bicentric = Parse(out.text);
    EXPECT_TRUE(Has(bicentric, {"20", "5", "5", "5", "5", "25", "5/2"}));
    EXPECT_TRUE(Has(bicentric, {"296", "74", "74", "74", "74", "5476", "37"}));
    EXPECT_FALSE(Has(bicentric, {"14", "3", "4", "3", "4", "12", "6/7"})) << "no incircle";
}

TEST(Quadrilaterals, StopListsWhatTheCaptionSays) {
    ListOutput full;
    ASSERT_EQ(ListCyclicQuadrilaterals(nullptr, 100, &full), Result::kOk);
    const std::vector<Row> all = Parse(full.text);
    // Early polls stop between perimeters, later ones within a search.
    for (long at : {2, 3, 300}) {
        QuitAtPoll quit(at);
        ListOutput out;
        ASSERT_EQ(ListCyclicQuadrilaterals(&quit, 100, &out), Result::kStopped);
        const std::vector<Row> rows = Parse(out.text);
        const std::string tail = out.caption.substr(out.caption.find("< ") + 2);
        const long upper = std::stol(tail);
        EXPECT_EQ(tail.substr(tail.find(':')), ": " + std::to_string(rows.size()));
        std::vector<Row> expected;
        for (const Row& row : all)
            if (std::stol(row[0]) < upper) expected.push_back(row);
        EXPECT_EQ(rows, expected) << out.caption;
    }
    // Without a user at the keyboard a full text ends the run.
    ListOutput out;
    out.endWhenFull = true;
    ASSERT_EQ(ListBicentricQuadrilaterals(nullptr, 999, &out), Result::kStopped);
    EXPECT_GT(out.text.size(), 990000u);
    EXPECT_EQ(out.caption.substr(out.caption.find(':')),
              ": " + std::to_string(Parse(out.text).size()));
}

TEST(Quadrilaterals, RefusedBounds) {
    for (uint32_t bound : {0u, 3u, 1000u, 65535u}) {
        ListOutput out;
        out.text = "kept";
        EXPECT_EQ(ListCyclicQuadrilaterals(nullptr, bound, &out), Result::kOutOfBounds);
        EXPECT_EQ(ListBicentricQuadrilaterals(nullptr, bound, &out), Result::kOutOfBounds);
        EXPECT_EQ(out.text, "kept");
    }
}
