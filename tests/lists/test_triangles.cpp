// Heronian triangles and triangles with rational or perpendicular medians.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "list_support.h"
#include "lists/list_generators.h"

namespace {

TriangleOptions Bounds(uint32_t lo, uint32_t hi) {
    TriangleOptions o;
    o.minPerimeter = lo;
    o.maxPerimeter = hi;
    return o;
}

struct Tri {
    uint32_t a, b, c;
    bool operator==(const Tri& o) const { return a == o.a && b == o.b && c == o.c; }
};

// The sides of each row: the perimeter is present only on the first row of its perimeter.
std::vector<Tri> SidesOf(const std::string& text) {
    std::vector<Tri> tris;
    std::vector<std::string> rows = Rows(text);
    for (size_t i = 2; i < rows.size(); ++i) {
        std::vector<std::string> w = Words(rows[i]);
        // The perimeter column (5 wide in these tests) is blank on later rows.
        size_t k = rows[i][4] != ' ' ? 1 : 0;
        tris.push_back({uint32_t(std::stoul(w[k])), uint32_t(std::stoul(w[k + 1])),
                        uint32_t(std::stoul(w[k + 2]))});
    }
    return tris;
}

bool Right(const Tri& t) { return t.a * t.a + t.b * t.b == t.c * t.c; }
bool Isosceles(const Tri& t) { return t.a == t.b || t.b == t.c; }


}  // namespace

TEST(Heronian, DefaultsGiveSixteenHundredNinety) {
    ListOutput out;
    ASSERT_EQ(ListHeronian(nullptr, Bounds(12, 1000), &out), 0);
    EXPECT_EQ(out.caption, "Heronian triangles [11 < perim < 1001] : 1690");
    const std::vector<std::string> rows = Rows(out.text);
    ASSERT_EQ(rows.size(), 1692u);
    EXPECT_EQ(rows[0], "perim     a    b    c    area");
    EXPECT_EQ(rows[1], std::string(31, '-')) << "two longer than the header";
    EXPECT_EQ(rows[2], "   32     4   13   15      24");
    EXPECT_EQ(rows[3], "   36     9   10   17      36");
    EXPECT_EQ(rows[4], "   42     7   15   20      42");
    EXPECT_EQ(rows[5], "         13   14   15      84") << "a perimeter is shown once";
}

TEST(Heronian, AgreesWithBruteForceAndOptions) {
    // Every primitive integer triangle of even perimeter 12..160 with integer area.
    for (int flags = 0; flags < 4; ++flags) {
        TriangleOptions o = Bounds(12, 160);
        o.right = flags & 1;
        o.isosceles = flags & 2;
        std::vector<Tri> expected;
        for (uint32_t p = 12; p <= 160; p += 2)
            for (uint32_t a = 3; a <= p; ++a)
                for (uint32_t b = a; b <= p; ++b) {
                    if (a + b >= p) break;
                    uint32_t c = p - a - b;
                    if (c < b || c >= a + b || std::gcd(std::gcd(a, b), c) != 1) continue;
                    Tri t{a, b, c};
                    if ((Right(t) && !o.right) || (Isosceles(t) && !o.isosceles)) continue;
                    uint64_t z = uint64_t(p) * (p - 2 * a) * (p - 2 * b) * (p - 2 * c);
                    uint64_t r = std::llround(std::sqrt(double(z)));
                    if (r * r == z) expected.push_back(t);
                }
        ListOutput out;
        ASSERT_EQ(ListHeronian(nullptr, o, &out), 0);
        std::vector<Tri> listed = SidesOf(out.text);
        // Same set; the list orders by perimeter, then a, then b.
        auto order = [](const Tri& x, const Tri& y) {
            return std::make_tuple(x.a + x.b + x.c, x.a, x.b) < std::make_tuple(y.a + y.b + y.c, y.a, y.b);
        };
        std::sort(expected.begin(), expected.end(), order);
        EXPECT_EQ(listed, expected) << "flags " << flags;
    }
}

TEST(Heronian, StopReportsThePerimeterReached) {
    QuitAtPoll quit(4);   // perimeter 12 has one a, 14 two: the fourth poll is at 16
    ListOutput out;
    TriangleOptions o = Bounds(12, 1000);
    o.right = true;
    EXPECT_EQ(ListHeronian(&quit, o, &out), -1);
    EXPECT_EQ(out.caption, "Heronian triangles [11 < perim < 17] : 1");
}

TEST(RationalMedians, RowsCarryThreeMedianFields) {
    TriangleOptions o = Bounds(12, 60);
    ListOutput out;
    ASSERT_EQ(ListRationalMedians(nullptr, o, &out), 0);
    const std::vector<std::string> rows = Rows(out.text);
    EXPECT_EQ(rows[0], "perim   a  b  c   medians");
    EXPECT_EQ(rows[2], "   20   4  7  9   [244] [145] 7/2 ");
    for (size_t i = 2; i < rows.size(); ++i) {
        // perimeter 5, sides 4 + 3 + 3, star field 3, then the medians
        EXPECT_EQ(Words(rows[i].substr(18)).size(), 3u) << rows[i];
    }
    // "at least two" keeps exactly the starred rows.
    size_t starred = 0;
    for (size_t i = 2; i < rows.size(); ++i) starred += rows[i].find('*') != std::string::npos;
    o.atLeastTwo = true;
    ASSERT_EQ(ListRationalMedians(nullptr, o, &out), 0);
    EXPECT_EQ(Rows(out.text).size() - 2, starred);
}

TEST(RationalMedians, DefaultsFillTheTextAndStop) {
    ListOutput out;
    ASSERT_EQ(ListRationalMedians(nullptr, Bounds(12, 1000), &out), 0);
    EXPECT_LE(out.text.size(), 1000000u);
    EXPECT_GT(out.text.size(), 1000000u - 60);
    // The caption's upper bound is the perimeter the run reached.
    EXPECT_EQ(out.caption.substr(0, 31), "rational medians [11 < perim < ");
    EXPECT_NE(out.caption.find(" < 595] : "), std::string::npos) << out.caption;
}

TEST(PerpendicularMedians, TwentySixWithTheDefaults) {
    ListOutput out;
    ASSERT_EQ(ListPerpendicularMedians(nullptr, Bounds(54, 1000), &out), 0);
    EXPECT_EQ(out.caption, "perpendicular medians [53 < perim < 1001] : 26");
    std::vector<Tri> tris = SidesOf(out.text);
    ASSERT_EQ(tris.size(), 26u);
    EXPECT_EQ(tris[0], (Tri{13, 19, 22}));
    EXPECT_EQ(tris[1], (Tri{17, 22, 31}));
    EXPECT_EQ(tris[2], (Tri{25, 38, 41}));
    for (const Tri& t : tris) {
        EXPECT_EQ(t.b * t.b + t.c * t.c, 5 * t.a * t.a);
        EXPECT_FALSE(Right(t) || Isosceles(t));
    }
    EXPECT_EQ(Rows(out.text)[2], "   54    13   19   22  *39/2 [945] 12 ");
}

TEST(RationalMedians, LaterRowsOfAPerimeterKeepTheirOwnBlankWidth) {
    // With four-digit bounds the perimeter column is 5 wide ("perim") but the
    // blank field of a later row of the same perimeter is w + 2 = 6: those
    // rows are deliberately shifted by one.
    ListOutput out;
    ASSERT_EQ(ListRationalMedians(nullptr, Bounds(990, 1000), &out), 0);
    const std::vector<std::string> rows = Rows(out.text);
    EXPECT_EQ(rows[2], "  990    31  478  481   [918729] [236160] 477/2 ");
    EXPECT_EQ(rows[3], "          33  472  485   [914929] [249844] 461/2 ");
}
