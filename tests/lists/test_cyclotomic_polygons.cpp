// Cyclotomic polynomials and the convex lattice polygon search.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "list_support.h"
#include "lists/list_generators.h"

namespace {

// Exponent -> coefficient, read back from the rows of a cyclotomic list.
std::map<uint32_t, int64_t> Coefficients(const std::string& text) {
    std::map<uint32_t, int64_t> poly;
    std::vector<std::string> rows = Rows(text);
    for (size_t i = 2; i < rows.size(); ++i) {
        std::vector<std::string> w = Words(rows[i]);
        poly[std::stoul(w[0])] = std::stoll(w[1]);
    }
    return poly;
}

std::map<uint32_t, int64_t> Multiply(const std::map<uint32_t, int64_t>& x, const std::map<uint32_t, int64_t>& y) {
    std::map<uint32_t, int64_t> product;
    for (const auto& [i, a] : x)
        for (const auto& [j, b] : y) product[i + j] += a * b;
    for (auto it = product.begin(); it != product.end();) it = it->second == 0 ? product.erase(it) : std::next(it);
    return product;
}

struct Side {
    long x, y;
};

// The polygons of a list text, each as its sides.
std::vector<std::vector<Side>> Polygons(const std::string& text) {
    std::vector<std::vector<Side>> polygons(1);
    for (const std::string& row : Rows(text)) {
        if (row[0] == '-') {
            polygons.emplace_back();
            continue;
        }
        std::vector<std::string> w = Words(row.substr(1, row.size() - 2));
        polygons.back().push_back({std::stol(w[0]), std::stol(w[2])});
    }
    polygons.pop_back();
    return polygons;
}

}  // namespace

TEST(Cyclotomic, FirstCoefficientMinusTwo) {
    ListOutput out;
    ASSERT_EQ(ListCyclotomic(nullptr, 105, &out), 0);
    std::map<uint32_t, int64_t> phi105 = Coefficients(out.text);
    EXPECT_EQ(phi105[7], -2);
    EXPECT_EQ(phi105[41], -2);
    EXPECT_EQ(phi105.count(3), 0u) << "zero coefficients have no row";
    EXPECT_EQ(phi105.rbegin()->first, 48u);
}

TEST(Cyclotomic, ProductOverDivisorsIsZToTheNMinusOne) {
    for (uint32_t n = 1; n <= 150; ++n) {
        std::map<uint32_t, int64_t> product{{0, 1}};
        for (uint32_t d = 1; d <= n; ++d) {
            if (n % d != 0) continue;
            ListOutput out;
            ASSERT_EQ(ListCyclotomic(nullptr, d, &out), 0);
            product = Multiply(product, Coefficients(out.text));
        }
        EXPECT_EQ(product, (std::map<uint32_t, int64_t>{{0, -1}, {n, 1}})) << n;
    }
}

TEST(Cyclotomic, LargestIndexAndBounds) {
    ListOutput out;
    ASSERT_EQ(ListCyclotomic(nullptr, 65535, &out), 0);
    std::map<uint32_t, int64_t> phi = Coefficients(out.text);
    EXPECT_EQ(phi.rbegin()->first, 32768u) << "phi(3 * 5 * 17 * 257)";
    EXPECT_EQ(Rows(out.text)[0], " expo  coef") << "the exponent column widens to five digits";
    EXPECT_EQ(Rows(out.text)[2].substr(0, 5), "32768");
    EXPECT_EQ(ListCyclotomic(nullptr, 65536, &out), 17);
    EXPECT_EQ(ListCyclotomic(nullptr, 0, &out), 17);
}

TEST(Cyclotomic, StopReplacesTheText) {
    QuitAtPoll quit(1);
    ListOutput out;
    EXPECT_EQ(ListCyclotomic(&quit, 30, &out), -1);
    EXPECT_EQ(out.text, "interrupted");
    EXPECT_EQ(out.caption, "cyclotomic polynomial [30]");
}

TEST(Polygons, FoundPolygonsAreConvexClosedAndNeverShareAPosition) {
    ListOutput out;
    ListRandom rng(7);
    ASSERT_EQ(ListPolygons(nullptr, 1105, 8, 200000, &rng, &out), 0);
    std::vector<std::vector<Side>> polygons = Polygons(out.text);
    ASSERT_GE(polygons.size(), 2u);
    EXPECT_EQ(out.caption, "polygons [sides 8, squared length 1105] : " + std::to_string(polygons.size()));
    for (const std::vector<Side>& p : polygons) {
        ASSERT_EQ(p.size(), 8u);
        long sx = 0, sy = 0;
        for (size_t i = 0; i < p.size(); ++i) {
            EXPECT_EQ(p[i].x * p[i].x + p[i].y * p[i].y, 1105);
            sx += p[i].x;
            sy += p[i].y;
            // Turning left at every corner, by less than a half turn in all.
            const Side& next = p[(i + 1) % p.size()];
            EXPECT_GT(p[i].x * next.y - p[i].y * next.x, 0);
        }
        EXPECT_EQ(sx, 0);
        EXPECT_EQ(sy, 0);
    }
    for (size_t i = 0; i < polygons.size(); ++i)
        for (size_t j = i + 1; j < polygons.size(); ++j)
            for (size_t k = 0; k < 8; ++k)
                EXPECT_FALSE(polygons[i][k].x == polygons[j][k].x && polygons[i][k].y == polygons[j][k].y)
                    << "polygons " << i << " and " << j << " share position " << k;
}

TEST(Polygons, RowsAreLaidOutFromTheLargestX) {
    ListOutput first;
    ListRandom a(3);
    ASSERT_EQ(ListPolygons(nullptr, 32045, 6, 300000, &a, &first), 0);
    ASSERT_FALSE(first.text.empty());
    // Widths from the largest x, 179: four places; the rule is 2w + 6 long.
    for (const std::string& row : Rows(first.text))
        EXPECT_TRUE(row == std::string(14, '-') || (row.size() == 13 && row.substr(5, 3) == " , ")) << row;
}

TEST(Polygons, QuitEndsTheSearch) {
    QuitAtPoll quit(50);
    ListOutput out;
    ListRandom rng;
    EXPECT_EQ(ListPolygons(&quit, 32045, 6, kPolygonRoundCap, &rng, &out), 0);
    EXPECT_EQ(quit.polls(), 50) << "one poll per round";
}

TEST(Polygons, HopelessSearchesEndAtOnce) {
    ListOutput out;
    ListRandom rng;
    // 5 has only 2q = 4 directions for six sides; 7 is no sum of two squares.
    ASSERT_EQ(ListPolygons(nullptr, 5, 6, kPolygonRoundCap, &rng, &out), 0);
    EXPECT_EQ(out.text, "");
    EXPECT_EQ(out.caption, "polygons [sides 6, squared length 5] : 0");
    ASSERT_EQ(ListPolygons(nullptr, 7, 6, kPolygonRoundCap, &rng, &out), 0);
    EXPECT_EQ(out.text, "nothing to show");
    EXPECT_EQ(ListPolygons(nullptr, 4, 6, 10, &rng, &out), 17);
    EXPECT_EQ(ListPolygons(nullptr, 32045, 7, 10, &rng, &out), 17);
    EXPECT_EQ(ListPolygons(nullptr, 32045, 14, 10, &rng, &out), 17);
}
