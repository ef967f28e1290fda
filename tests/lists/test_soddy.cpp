// The Soddy lists: root quadruples and quintuples of the integral packings,
// circles on a line and spheres on a plane.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "list_support.h"

// Brute forces over a box well beyond the largest entry the generators allow
// for (x^2 + x + 1), in display order. Spheres up to |a| = 14: the search's
// candidates with d < c first come at |a| = 13.
TEST(SoddyRoots, AgreeWithBruteForceAndPublishedRoots) {
    std::vector<Numbers> circles, spheres;
    long symmetric = 0;
    for (long x = 1; x <= 14; ++x)
        for (long b = 1; b <= 250; ++b)
            for (long c = b; c <= 250; ++c)
                for (long d = c; d <= 250; ++d) {
                    long s = -x + b + c + d, q = x * x + b * b + c * c + d * d;
                    if (x <= 9 && s * s == 2 * q && s >= 2 * d &&
                        std::gcd(std::gcd(x, b), std::gcd(c, d)) == 1)
                        circles.push_back({-x, b, c, d}), symmetric += b == c || c == d;
                    // e = (S - sqrt(3(S^2 - 2Q))) / 2: the larger root fails S >= 2e.
                    const long disc = 3 * (s * s - 2 * q),
                               r = std::lround(std::sqrt(std::abs(disc))), e = (s - r) / 2;
                    if (disc >= 0 && r * r == disc && (s + r) % 2 == 0 && e >= d &&
                        std::gcd(std::gcd(x, b), std::gcd(std::gcd(c, d), e)) == 1)
                        spheres.push_back({-x, b, c, d, e});
                }
    ListOutput out;
    ASSERT_EQ(ListSoddyCircles(nullptr, 9, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 4), circles);
    EXPECT_EQ(std::count(out.text.begin(), out.text.end(), '*'), symmetric);
    EXPECT_EQ(out.caption, "Soddy circles [|a| < 10] : " + std::to_string(circles.size()));
    // The published roots of the first packings, with their marks: all of
    // |a| <= 4, three of 6.
    EXPECT_NE(out.text.find("-\r\n -1  2  2  3*\r\n -2  3  6  7\r\n -3  4 12 13\r\n"
                            " -3  5  8  8*\r\n -4  5 20 21\r\n -4  8  9  9*\r\n -5"),
              std::string::npos);
    for (const char* r : {" -6  7 42 43\r\n", " -6 10 15 19\r\n", " -6 11 14 15\r\n"})
        EXPECT_NE(out.text.find(r), std::string::npos);

    ASSERT_EQ(ListSoddySpheres(nullptr, 14, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 5), spheres);
    EXPECT_EQ(out.caption, "Soddy spheres [|a| < 15] : " + std::to_string(spheres.size()));
}

TEST(SoddyTangent, AgreeWithBruteForce) {
    std::vector<Numbers> line, plane;
    for (long e = 1; e <= 400; ++e)
        for (long b = 1; b <= e; ++b)
            for (long c = b; c <= e; ++c) {
                // sqrt e = sqrt b + sqrt c squared twice.
                if (c < e && e - b - c >= 0 && (e - b - c) * (e - b - c) == 4 * b * c &&
                    std::gcd(std::gcd(b, c), e) == 1)
                    line.push_back({b, c, e});
                for (long d = c; d <= e && e <= 70; ++d) {
                    const long s = b + c + d + e;
                    if (s * s == 3 * (b * b + c * c + d * d + e * e) &&
                        std::gcd(std::gcd(b, c), std::gcd(d, e)) == 1)
                        plane.push_back({b, c, d, e});
                }
            }
    ListOutput out;
    ASSERT_EQ(ListSoddyLine(nullptr, 400, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 3), line);
    EXPECT_EQ(out.caption, "circles on a line [d < 401] : " + std::to_string(line.size()));
    ASSERT_EQ(ListSoddyPlane(nullptr, 70, &out), Result::kOk);
    EXPECT_EQ(Leading(out.text, 4), plane);
    EXPECT_EQ(out.caption, "spheres on a plane [e < 71] : " + std::to_string(plane.size()));
}

// A stop keeps the rows found and reports the curvature reached: |a| = 3
// holds polls 4 to 6 (one per d1), e = 4 polls 7 to 10 (one per b). Without a
// user to stop it, a run that fills the text ends there. Bounds refused leave
// the output alone.
TEST(SoddyLists, StopsAndRefusedBounds) {
    QuitAtPoll quit(5), late(10);
    ListOutput out;
    ASSERT_EQ(ListSoddyCircles(&quit, 1000, &out), Result::kStopped);
    EXPECT_EQ(out.caption, "Soddy circles [|a| < 4] : 4");
    ASSERT_EQ(ListSoddyPlane(&late, 1000, &out), Result::kStopped);
    EXPECT_EQ(out.caption, "spheres on a plane [e < 5] : 2");
    EXPECT_EQ(Leading(out.text, 4).back(), (Numbers{1, 1, 3, 4}));

    ASSERT_EQ(ListSoddySpheres(nullptr, 1000, &out), Result::kStopped);
    EXPECT_GT(out.text.size(), 990000u);
    const std::string upper = std::to_string(1 - Leading(out.text, 1).back()[0]);
    EXPECT_EQ(out.caption.rfind("Soddy spheres [|a| < " + upper + "] : ", 0), 0u);

    ListOutput refused;
    EXPECT_EQ(ListSoddyCircles(nullptr, 0, &refused), Result::kOutOfBounds);
    EXPECT_EQ(ListSoddySpheres(nullptr, 65536, &refused), Result::kOutOfBounds);
    EXPECT_EQ(ListSoddyLine(nullptr, 3, &refused), Result::kNothingToShow);
    EXPECT_EQ(ListSoddyPlane(nullptr, 2, &refused), Result::kNothingToShow);
    EXPECT_TRUE(refused.text.empty() && refused.caption.empty());
}
