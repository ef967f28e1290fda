// The Soddy lists: root quadruples and quintuples of the integral packings,
// circles on a line and spheres on a plane.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "list_support.h"

namespace {

long Gcd(long a, long b) { return std::gcd(a, b); }

// The numbers of every row below the header and rule, a trailing star kept
// as a last entry 1 (0 without).
std::vector<Numbers> Marked(const std::string& text, size_t n) {
    std::vector<Numbers> table = Leading(text, n);
    const std::vector<std::string> rows = Rows(text);
    for (size_t i = 0; i < table.size(); ++i) table[i].push_back(rows[i + 2].back() == '*');
    return table;
}

}  // namespace

// All tuples in a box well beyond the largest entry the generators allow for
// (x^2 + x + 1), in display order.
TEST(SoddyRoots, AgreeWithBruteForce) {
    std::vector<Numbers> circles;
    for (long x = 1; x <= 9; ++x)
        for (long b = 1; b <= 200; ++b)
            for (long c = b; c <= 200; ++c)
                for (long d = c; d <= 200; ++d) {
                    const long s = -x + b + c + d;
                    if (s * s != 2 * (x * x + b * b + c * c + d * d) || -x + b + c < d) continue;
                    if (Gcd(Gcd(x, b), Gcd(c, d)) == 1)
                        circles.push_back({-x, b, c, d, b == c || c == d});
                }
    ListOutput out;
    ASSERT_EQ(ListSoddyCircles(nullptr, 9, &out), Result::kOk);
    EXPECT_EQ(Marked(out.text, 4), circles);
    EXPECT_EQ(out.caption, "Soddy circles [|a| < 10] : " + std::to_string(circles.size()));
    EXPECT_EQ(Rows(out.text)[2], " -1  2  2  3*");

    // Every b <= c <= d in the box, e from (S +- sqrt(3(S^2 - 2Q))) / 2. Up to
    // |a| = 14: the search's candidates with d < c first come at |a| = 13.
    std::vector<Numbers> spheres;
    for (long x = 1; x <= 14; ++x)
        for (long b = 1; b <= 250; ++b)
            for (long c = b; c <= 250; ++c)
                for (long d = c; d <= 250; ++d) {
                    const long s = -x + b + c + d, q = x * x + b * b + c * c + d * d;
                    const long disc = 3 * (s * s - 2 * q);
                    if (disc < 0) continue;
                    const long r = std::lround(std::sqrt(disc));
                    if (r * r != disc || (s + r) % 2 != 0) continue;
                    const long roots[] = {(s - r) / 2, (s + r) / 2};
                    for (int k = 0; k < (r == 0 ? 1 : 2); ++k) {
                        const long e = roots[k];
                        if (e >= d && s >= 2 * e && Gcd(Gcd(x, b), Gcd(Gcd(c, d), e)) == 1)
                            spheres.push_back({-x, b, c, d, e});
                    }
                }
    ASSERT_EQ(ListSoddySpheres(nullptr, 14, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 5), spheres);
    EXPECT_EQ(spheres.front(), (Numbers{-1, 2, 2, 3, 3}));
    EXPECT_EQ(out.caption, "Soddy spheres [|a| < 15] : " + std::to_string(spheres.size()));
}

// The root quadruples of the first integral circle packings as published.
TEST(SoddyRoots, PublishedRootQuadruples) {
    ListOutput out;
    ASSERT_EQ(ListSoddyCircles(nullptr, 6, &out), Result::kOk);
    const std::vector<Numbers> rows = Leading(out.text, 4);
    const std::vector<Numbers> first{{-1, 2, 2, 3}, {-2, 3, 6, 7},   {-3, 4, 12, 13},
                                     {-3, 5, 8, 8}, {-4, 5, 20, 21}, {-4, 8, 9, 9}};
    EXPECT_EQ(std::vector<Numbers>(rows.begin(), rows.begin() + 6), first);
    for (const Numbers& r :
         std::vector<Numbers>{{-6, 7, 42, 43}, {-6, 10, 15, 19}, {-6, 11, 14, 15}})
        EXPECT_NE(std::find(rows.begin(), rows.end(), r), rows.end());
}

TEST(SoddyTangent, AgreeWithBruteForce) {
    // sqrt d = sqrt b + sqrt c squared twice: d - b - c >= 0 and (d - b - c)^2 = 4bc.
    std::vector<Numbers> line;
    for (long d = 1; d <= 400; ++d)
        for (long b = 1; b <= d; ++b)
            for (long c = b; c < d; ++c)
                if (d - b - c >= 0 && (d - b - c) * (d - b - c) == 4 * b * c &&
                    Gcd(Gcd(b, c), d) == 1)
                    line.push_back({b, c, d});
    ListOutput out;
    ASSERT_EQ(ListSoddyLine(nullptr, 400, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 3), line);
    EXPECT_EQ(out.caption, "circles on a line [d < 401] : " + std::to_string(line.size()));

    std::vector<Numbers> plane;
    for (long e = 1; e <= 70; ++e)
        for (long b = 1; b <= e; ++b)
            for (long c = b; c <= e; ++c)
                for (long d = c; d <= e; ++d) {
                    const long s = b + c + d + e;
                    if (s * s == 3 * (b * b + c * c + d * d + e * e) &&
                        Gcd(Gcd(b, c), Gcd(d, e)) == 1)
                        plane.push_back({b, c, d, e});
                }
    ASSERT_EQ(ListSoddyPlane(nullptr, 70, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 4), plane);
    EXPECT_EQ(out.caption, "spheres on a plane [e < 71] : " + std::to_string(plane.size()));
    EXPECT_EQ(Rows(out.text)[2], "  1  1  1  3");
}

// A stop reports the curvature reached: |a| = 3 holds polls 4 to 6 (one per
// d1), e = 4 polls 7 to 10 (one per b); the rows found before stay.
TEST(SoddyLists, StopReportsTheBoundReached) {
    QuitAtPoll quit(5);
    ListOutput out;
    ASSERT_EQ(ListSoddyCircles(&quit, 1000, &out), Result::kStopped);
    EXPECT_EQ(out.caption, "Soddy circles [|a| < 4] : 4");
    QuitAtPoll late(10);
    ASSERT_EQ(ListSoddyPlane(&late, 1000, &out), Result::kStopped);
    EXPECT_EQ(out.caption, "spheres on a plane [e < 5] : 2");
    EXPECT_EQ(Leading(out.text, 4).back(), (Numbers{1, 1, 3, 4}));
}

// Without a user to stop it, a run that fills the text ends there.
TEST(SoddyLists, FullTextEndsARunWithoutAUser) {
    ListOutput out;
    ASSERT_EQ(ListSoddySpheres(nullptr, 1000, &out), Result::kStopped);
    EXPECT_GT(out.text.size(), 990000u);
    const long last = -Leading(out.text, 1).back()[0];
    EXPECT_EQ(out.caption.rfind("Soddy spheres [|a| < " + std::to_string(last + 1) + "] : ", 0),
              0u);
}

TEST(SoddyLists, RefusedBounds) {
    ListOutput out;
    out.caption = "kept";
    EXPECT_EQ(ListSoddyCircles(nullptr, 0, &out), Result::kOutOfBounds);
    EXPECT_EQ(ListSoddySpheres(nullptr, 65536, &out), Result::kOutOfBounds);
    EXPECT_EQ(ListSoddyLine(nullptr, 3, &out), Result::kNothingToShow);
    EXPECT_EQ(ListSoddyLine(nullptr, 65536, &out), Result::kOutOfBounds);
    EXPECT_EQ(ListSoddyPlane(nullptr, 2, &out), Result::kNothingToShow);
    EXPECT_EQ(out.caption, "kept");
    EXPECT_TRUE(out.text.empty());
}
