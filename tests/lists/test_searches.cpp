// The searches: Pythagorean quadruples and convex lattice polygons.
#include <gtest/gtest.h>

#include <numeric>

#include "list_support.h"

namespace {

// Shown ascending, a complete search is ordered by d, then by the first leg.
bool ByLengthThenFirstLeg(const Numbers& x, const Numbers& y) {
    return std::make_pair(x[3], x[0]) < std::make_pair(y[3], y[0]);
}

// The polygons of a list text, each as its sides; rows are "[  x ,   y]".
std::vector<std::vector<Numbers>> Polygons(const std::string& text) {
    std::vector<std::vector<Numbers>> polygons(1);
    for (const std::string& row : Rows(text)) {
        if (row[0] == '-') {
            polygons.emplace_back();
            continue;
        }
        const std::vector<std::string> w = Words(row.substr(1, row.size() - 2));
        polygons.back().push_back({std::stol(w[0]), std::stol(w[2])});
    }
    polygons.pop_back();
    return polygons;
}

}  // namespace

TEST(Quadruples, AgreeWithBruteForceForEveryOption) {
    for (int flags = 0; flags < 8; ++flags) {
        for (QuadKind kind : {QuadKind::any, QuadKind::distinct, QuadKind::repeats}) {
            const QuadOptions o{3, 45, (flags & 1) != 0, (flags & 2) != 0, kind, (flags & 4) != 0};
            // In search order: d ascending, then a and b descending, a >= b >= c.
            std::vector<Numbers> expected;
            for (long d = 3; d <= 45; ++d)
                for (long a = d - 1; a > 0; --a)
                    for (long b = a; b > 0; --b)  // a lone leg (d, 0, 0) never shows
                        for (long c = b; c >= (o.zeros ? 0 : 1); --c) {
                            const bool repeated = a == b || b == c;
                            if (a * a + b * b + c * c != d * d ||
                                (o.primitiveOnly &&
                                 std::gcd(std::gcd(a, b), std::gcd(c, d)) != 1) ||
                                (kind == QuadKind::distinct && repeated) ||
                                (kind == QuadKind::repeats && !repeated))
                                continue;
                            expected.push_back(o.ascending ? Numbers{c, b, a, d}
                                                           : Numbers{a, b, c, d});
                        }
            if (o.ascending)
                std::stable_sort(expected.begin(), expected.end(), ByLengthThenFirstLeg);
            ListOutput out;
            ASSERT_EQ(ListQuadruples(nullptr, o, &out), Result::kOk);
            EXPECT_EQ(Leading(out.text, 4), expected) << "flags " << flags << " kind " << int(kind);
            if (o.primitiveOnly) {
                EXPECT_EQ(out.text.find('*'), std::string::npos) << "no stars";
            }
        }
    }
}

TEST(Quadruples, StoppedSearchKeepsSearchOrderAndCountsRowsWritten) {
    const QuadOptions o{3, 200, false, true};
    QuitAtPoll quit(40);
    ListOutput out;
    EXPECT_EQ(ListQuadruples(&quit, o, &out), Result::kStopped);
    const std::vector<Numbers> listed = Leading(out.text, 4);
    ASSERT_GT(listed.size(), 2u);
    // Not re-ordered: the rows stay in search order.
    EXPECT_FALSE(std::is_sorted(listed.begin(), listed.end(), ByLengthThenFirstLeg))
        << "d = 9 alone shows 1 4 8, 4 4 7, 3 6 6";
    EXPECT_EQ(out.caption.substr(out.caption.rfind(' ') + 1), std::to_string(listed.size()));
}

TEST(Polygons, FoundPolygonsAreConvexClosedAndNeverShareAPosition) {
    ListOutput out;
    ListRandom rng(7);
    ASSERT_EQ(ListPolygons(nullptr, 1105, 8, 200000, &rng, &out), Result::kOk);
    const std::vector<std::vector<Numbers>> polygons = Polygons(out.text);
    ASSERT_GE(polygons.size(), 2u);
    EXPECT_EQ(out.caption,
              "polygons [sides 8, squared length 1105] : " + std::to_string(polygons.size()));
    for (const std::vector<Numbers>& p : polygons) {
        ASSERT_EQ(p.size(), 8u);
        long sx = 0, sy = 0;
        for (size_t i = 0; i < p.size(); ++i) {
            EXPECT_EQ(p[i][0] * p[i][0] + p[i][1] * p[i][1], 1105);
            sx += p[i][0];
            sy += p[i][1];
            // Turning left at every corner, by less than a half turn in all.
            const Numbers& next = p[(i + 1) % p.size()];
            EXPECT_GT(p[i][0] * next[1] - p[i][1] * next[0], 0);
        }
        EXPECT_EQ(sx, 0);
        EXPECT_EQ(sy, 0);
    }
    for (size_t i = 0; i < polygons.size(); ++i)
        for (size_t j = i + 1; j < polygons.size(); ++j)
            for (size_t k = 0; k < 8; ++k)
                EXPECT_NE(polygons[i][k], polygons[j][k])
                    << "polygons " << i << ", " << j << " at " << k;
}

TEST(Polygons, EndsAtTheQuitKeyOrAtOnceWhenHopeless) {
    QuitAtPoll quit(50);
    ListOutput out;
    ListRandom rng;
    EXPECT_EQ(ListPolygons(&quit, 32045, 6, kPolygonRoundCap, &rng, &out), Result::kOk);
    EXPECT_EQ(quit.polls(), 50) << "one poll per round";
    // 5 has only 2q = 4 directions for six sides: no round could end.
    ASSERT_EQ(ListPolygons(nullptr, 5, 6, kPolygonRoundCap, &rng, &out), Result::kOk);
    EXPECT_EQ(out.caption, "polygons [sides 6, squared length 5] : 0");
}
