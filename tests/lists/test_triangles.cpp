// Pythagorean triples, 60/120-degree triangles, Heronian triangles and
// triangles with rational or perpendicular medians.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <set>

#include "list_support.h"

namespace {

// The sides of each row, after the perimeter column (5 wide in these tests).
std::vector<Numbers> SidesOf(const std::string& text) { return Leading(text, 3, 5); }

// Every primitive triangle a <= b <= c of even perimeter lo..hi, by perimeter,
// then a, then b; isosceles ones only when asked.
std::vector<Numbers> Triangles(long lo, long hi, bool isosceles) {
    std::vector<Numbers> all;
    for (long p = lo + lo % 2; p <= hi; p += 2)
        for (long a = 1; 3 * a <= p; ++a)
            for (long b = a; a + 2 * b <= p; ++b) {
                const long c = p - a - b;
                if (c < a + b && std::gcd(std::gcd(a, b), c) == 1 &&
                    (isosceles || (a != b && b != c)))
                    all.push_back({a, b, c});
            }
    return all;
}

bool Square(long v) {
    const long r = std::lround(std::sqrt(double(v)));
    return r * r == v;
}

bool Right(const Numbers& t) { return t[0] * t[0] + t[1] * t[1] == t[2] * t[2]; }

}  // namespace

TEST(Triples, HypotenuseListsAgreeWithBruteForceAndStop) {
    std::vector<Numbers> all, primitive;
    for (long c = 5; c <= 400; ++c)
        for (long a = 1; a < c; ++a)
            for (long b = a + 1; b < c; ++b)
                if (a * a + b * b == c * c) {
                    all.push_back({a, b, c});
                    if (std::gcd(a, c) == 1) primitive.push_back({a, b, c});
                }
    ListOutput out;
    ASSERT_EQ(ListHypotenuseTriples(nullptr, 400, false, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 3), all);
    ASSERT_EQ(ListHypotenuseTriples(nullptr, 400, true, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 3), primitive);
    QuitAtPoll quit(9);  // after the ninth hypotenuse, c = 5 + 8 * 4 = 37
    EXPECT_EQ(ListHypotenuseTriples(&quit, 1000, true, &out), Result::kStopped);
    EXPECT_EQ(out.caption, "Pythagorean triples [primitive; hypotenuse < 38] : 6");
}

TEST(Triples, GeneratorsAndAngleTrianglesHaveTheirProperty) {
    ListOutput out;
    ASSERT_EQ(ListTripleGenerators(nullptr, 40, &out), Result::kOk);
    std::set<Numbers> seen;
    for (const Numbers& t : Leading(out.text, 3)) {
        EXPECT_EQ(t[0] * t[0] + t[1] * t[1], t[2] * t[2]);
        EXPECT_EQ(std::gcd(t[0], t[1]), 1);
        EXPECT_LT(t[0], t[1]);
        EXPECT_TRUE(seen.insert(t).second) << "each primitive triple once";
    }
    EXPECT_EQ(out.caption, "Pythagorean triples : " + std::to_string(seen.size()));
    // (For some bounds, 7 and 60 among them, b and c fill the widths taken
    // from 2N^2 and the columns touch; 40 is not one of them.)
    ASSERT_EQ(ListAngleTriangles(nullptr, 40, false, &out), Result::kOk);
    for (const Numbers& t : Leading(out.text, 3))
        EXPECT_EQ(t[2] * t[2] + t[0] * t[1], t[0] * t[0] + t[1] * t[1]);
    ASSERT_EQ(ListAngleTriangles(nullptr, 40, true, &out), Result::kOk);
    for (const Numbers& t : Leading(out.text, 3))
        EXPECT_EQ(t[2] * t[2], t[0] * t[0] + t[1] * t[1] + t[0] * t[1]);
}

TEST(Triples, CommonEntryAgreesWithBruteForce) {
    ListOutput out;
    for (long n = 3; n <= 150; ++n) {
        std::set<Numbers> expected;
        for (long a = 1; a <= n * n / 2; ++a) {
            long h2 = a * a + n * n, h = std::lround(std::sqrt(h2));
            if (h * h == h2) expected.insert({std::min(a, n), std::max(a, n), h});
            long x2 = n * n - a * a, x = a < n ? std::lround(std::sqrt(x2)) : 0;
            if (a < n && x * x == x2 && a < x) expected.insert({a, x, n});
        }
        ASSERT_EQ(ListCommonEntry(nullptr, static_cast<uint32_t>(n), &out), Result::kOk);
        const std::vector<Numbers> listed = Leading(out.text, 3);
        EXPECT_EQ(std::set<Numbers>(listed.begin(), listed.end()), expected) << n;
        EXPECT_EQ(listed.size(), expected.size()) << n;
    }
}

TEST(Heronian, DefaultsGiveSixteenHundredNinetyAndStop) {
    ListOutput out;
    ASSERT_EQ(ListHeronian(nullptr, TriangleOptions{12, 1000}, &out), Result::kOk);
    EXPECT_EQ(out.caption, "Heronian triangles [11 < perim < 1001] : 1690");
    const std::vector<std::string> rows = Rows(out.text);
    ASSERT_EQ(rows.size(), 1692u);
    EXPECT_EQ(rows[5], "         13   14   15      84") << "a perimeter is shown once";
    QuitAtPoll quit(4);  // perimeter 12 has one a, 14 two: the fourth poll is at 16
    EXPECT_EQ(ListHeronian(&quit, TriangleOptions{12, 1000, true}, &out), Result::kStopped);
    EXPECT_EQ(out.caption, "Heronian triangles [11 < perim < 17] : 1");
}

TEST(Heronian, AgreesWithBruteForceForEveryOption) {
    for (int flags = 0; flags < 4; ++flags) {
        const TriangleOptions o{12, 160, (flags & 1) != 0, (flags & 2) != 0};
        std::vector<Numbers> expected;
        for (const Numbers& t : Triangles(12, 160, o.isosceles)) {
            const long p = t[0] + t[1] + t[2];  // 16 area^2 = p (p - 2a) (p - 2b) (p - 2c)
            if ((o.right || !Right(t)) &&
                Square(p * (p - 2 * t[0]) * (p - 2 * t[1]) * (p - 2 * t[2])))
                expected.push_back(t);
        }
        ListOutput out;
        ASSERT_EQ(ListHeronian(nullptr, o, &out), Result::kOk);
        EXPECT_EQ(SidesOf(out.text), expected) << "flags " << flags;
    }
}

TEST(Medians, AgreeWithBruteForceForEveryOption) {
    // 4 m_a^2 = 2b^2 + 2c^2 - a^2, and so on round; the medians to b and c are
    // perpendicular exactly when b^2 + c^2 = 5a^2. The last round is the
    // perpendicular list.
    for (int flags = 0; flags < 9; ++flags) {
        const TriangleOptions o{12, 200, (flags & 1) != 0, (flags & 2) != 0, (flags & 4) != 0};
        const bool perpendicular = flags == 8;
        std::vector<Numbers> expected;
        for (const Numbers& t : Triangles(12, 200, o.isosceles)) {
            const long a2 = t[0] * t[0], b2 = t[1] * t[1], c2 = t[2] * t[2];
            const int k = Square(2 * b2 + 2 * c2 - a2) + Square(2 * c2 + 2 * a2 - b2) +
                          Square(2 * a2 + 2 * b2 - c2);
            if (perpendicular ? b2 + c2 == 5 * a2
                              : (o.right || !Right(t)) && (k >= 2 || (k == 1 && !o.atLeastTwo)))
                expected.push_back(t);
        }
        ListOutput out;
        const auto list = perpendicular ? ListPerpendicularMedians : ListRationalMedians;
        ASSERT_EQ(list(nullptr, o, &out), Result::kOk);
        EXPECT_EQ(SidesOf(out.text), expected) << "flags " << flags;
    }
}

TEST(Medians, DefaultsFillTheTextOrGiveTwentySix) {
    ListOutput out;
    ASSERT_EQ(ListRationalMedians(nullptr, TriangleOptions{12, 1000}, &out), Result::kOk);
    EXPECT_LE(out.text.size(), 1000000u);
    EXPECT_GT(out.text.size(), 1000000u - 60);
    // The caption's upper bound is the perimeter the run reached.
    EXPECT_EQ(out.caption.substr(0, 35), "rational medians [11 < perim < 595]");
    ASSERT_EQ(ListPerpendicularMedians(nullptr, TriangleOptions{54, 1000}, &out), Result::kOk);
    EXPECT_EQ(out.caption, "perpendicular medians [53 < perim < 1001] : 26");
    EXPECT_EQ(SidesOf(out.text).size(), 26u);
}
