// Inscribed (cyclic) and bicentric quadrilaterals with integer sides and area.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <set>

#include "list_support.h"

namespace {

// The words of each row, the perimeter filled in where the list leaves it blank.
using Row = std::vector<std::string>;
std::vector<Row> Parse(const std::string& text) {
    std::vector<Row> table;
    for (const std::string& row : Rows(text)) {
        table.push_back(Words(row));
        if (row[4] == ' ') table.back().insert(table.back().begin(), table.end()[-2][0]);
    }
    return {table.begin() + 2, table.end()};
}

long Root(long v) {
    const long r = std::lround(std::sqrt(static_cast<double>(v)));
    return r * r == v ? r : -1;
}

// Every 4-tuple of sides, one per class of its 8 rotations and reflections;
// after the area the two diagonals when both are integers, or the inradius.
std::vector<Row> BruteForce(long maxP, bool bicentric) {
    using Q = std::array<long, 4>;
    std::set<std::pair<long, Q>> seen;
    for (long a = 1; a < maxP; ++a)
        for (long b = 1; a + b < maxP; ++b)
            for (long c = 1; a + b + c < maxP; ++c)
                for (long d = 1, p = a + b + c + 1; p <= maxP; ++d, ++p) {
                    const long k16 = (p - 2 * a) * (p - 2 * b) * (p - 2 * c) * (p - 2 * d);
                    if (2 * std::max({a, b, c, d}) < p && k16 % 16 == 0 && Root(k16 / 16) > 0 &&
                        (!bicentric || a + c == b + d))
                        seen.insert({p, std::min({Q{a, b, c, d}, Q{b, c, d, a}, Q{c, d, a, b},
                                                  Q{d, a, b, c}, Q{a, d, c, b}, Q{d, c, b, a},
                                                  Q{c, b, a, d}, Q{b, a, d, c}})});
                }
    std::vector<Row> rows;
    auto text = [](long v) { return std::to_string(v); };
    for (const auto& [p, q] : seen) {
        const long a = q[0], b = q[1], c = q[2], d = q[3], s = p / 2;
        const long area = Root((s - a) * (s - b) * (s - c) * (s - d)), k = std::gcd(area, s);
        const long e = a * c + b * d, f = a * d + b * c, g = a * b + c * d;
        const long d1 = e * f % g ? -1 : Root(e * f / g), d2 = e * g % f ? -1 : Root(e * g / f);
        rows.push_back({text(p), text(a), text(b), text(c), text(d), text(area)});
        if (bicentric) rows.back().push_back(text(area / k) + (k == s ? "" : "/" + text(s / k)));
        if (!bicentric && d1 > 0 && d2 > 0)
            rows.back().insert(rows.back().end(), {text(d1), text(d2)});
    }
    return rows;
}

}  // namespace

TEST(Quadrilaterals, ListsAgreeWithBruteForceAndBrahmagupta) {
    ListOutput out;
    ASSERT_EQ(ListCyclicQuadrilaterals(nullptr, 44, &out), Result::kOk);
    EXPECT_EQ(Parse(out.text), BruteForce(44, false));
    EXPECT_EQ(out.caption, "inscribed quadrilaterals [perim < 45] : 409");
    ASSERT_EQ(ListBicentricQuadrilaterals(nullptr, 61, &out), Result::kOk);
    EXPECT_EQ(Parse(out.text), BruteForce(61, true));
    EXPECT_EQ(out.caption, "circumscribed quadrilaterals [perim < 62] : 256");
    // Brahmagupta's 25, 39, 52, 60: all three cyclic orders have integer
    // diagonals, with product ac + bd (Ptolemy).
    ASSERT_EQ(ListCyclicQuadrilaterals(nullptr, 176, &out), Result::kOk);
    const std::vector<Row> rows = Parse(out.text);
    for (const Row& row : {Row{"176", "25", "39", "52", "60", "1764", "56", "65"},
                           Row{"176", "25", "39", "60", "52", "1764", "56", "63"},
                           Row{"176", "25", "52", "39", "60", "1764", "63", "65"}})
        EXPECT_EQ(std::count(rows.begin(), rows.end(), row), 1);
}

TEST(Quadrilaterals, StopsAndRefusedBounds) {
    ListOutput full;
    ASSERT_EQ(ListCyclicQuadrilaterals(nullptr, 100, &full), Result::kOk);
    // Poll 2 ends perimeter 4; polls 3 and 300 come within a search.
    for (long at : {2, 3, 300}) {
        QuitAtPoll quit(at);
        ListOutput out;
        ASSERT_EQ(ListCyclicQuadrilaterals(&quit, 100, &out), Result::kStopped);
        const long upper = std::stol(out.caption.substr(out.caption.find("< ") + 2));
        std::vector<Row> expected;
        for (const Row& row : Parse(full.text))
            if (std::stol(row[0]) < upper) expected.push_back(row);
        EXPECT_EQ(Parse(out.text), expected) << out.caption;
        EXPECT_EQ(out.caption.substr(out.caption.find(':')),
                  ": " + std::to_string(expected.size()));
    }
    // Without a user at the keyboard a full text ends the run at once.
    QuitAtPoll late(1000000);
    full.endWhenFull = true;
    ASSERT_EQ(ListBicentricQuadrilaterals(&late, 999, &full), Result::kStopped);
    EXPECT_LT(late.polls(), 100000);
    ListOutput out;
    for (uint32_t bound : {0u, 3u, 1000u, 65535u}) {
        EXPECT_EQ(ListCyclicQuadrilaterals(nullptr, bound, &out), Result::kOutOfBounds);
        EXPECT_EQ(ListBicentricQuadrilaterals(nullptr, bound, &out), Result::kOutOfBounds);
    }
    EXPECT_EQ(out.text, "");
}
