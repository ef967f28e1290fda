// The curvatures of an integral circle packing.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>

#include "list_support.h"
#include "lists/list_inputs.h"

static std::map<long, long> Listed(const std::string& text) {
    std::map<long, long> counts;
    for (const Numbers& row : Leading(text, 2)) counts[row[0]] = row[1];
    return counts;
}

// Brute force: the packing -1 2 2 3 placed in curvature-centre coordinates
// (k, kx, ky), integers for all its circles, closed under all four
// reflections (quadruples within the bound), circles told apart by position.
// The last start's ancestors in the packing pass the bound.
TEST(Curvatures, AgreeWithThePlacedPackingFromAnyQuadrupleOfIt) {
    using Circle = std::array<long, 3>;
    std::vector<std::set<Circle>> todo = {{{-1, 0, 0}, {2, 1, 0}, {2, -1, 0}, {3, 0, 2}}};
    std::set<std::set<Circle>> seen(todo.begin(), todo.end());
    std::set<Circle> circles(todo[0].begin(), todo[0].end());
    for (std::set<Circle> q; !todo.empty();) {
        q = todo.back(), todo.pop_back();
        for (const Circle& old : q) {
            Circle made{};
            for (const Circle& c : q)
                for (int t = 0; t < 3; ++t) made[t] += c == old ? -old[t] : 2 * c[t];
            std::set<Circle> next = q;
            next.erase(old), next.insert(made);
            if (made[0] <= 200 && seen.insert(next).second)
                todo.push_back(next), circles.insert(made);
        }
    }
    std::map<long, long> expected;
    for (const Circle& c : circles)
        if (c[0] > 0) ++expected[c[0]];
    for (DescartesQuadruple start :
         {DescartesQuadruple{{-1, 2, 2, 3}}, DescartesQuadruple{{2, 2, 3, 15}},
          DescartesQuadruple{{3, 2, 2, -1}}, DescartesQuadruple{{71, 6234, 782, 2451}}}) {
        ListOutput out;
        ASSERT_EQ(ListCurvatures(nullptr, start, 200, &out), Result::kOk);
        EXPECT_EQ(Listed(out.text), expected) << out.caption;
        EXPECT_EQ(out.caption.substr(out.caption.find(';')),
                  "; c < 201] : " + std::to_string(expected.size()));
    }
}

TEST(Curvatures, RefusesWhatIsNoBoundedPacking) {
    ListOutput out;
    out.text = "kept";
    // No Descartes quadruple, orientation reversed, no circles; lines, at the root or not.
    for (DescartesQuadruple q :
         {DescartesQuadruple{{1, 2, 2, 3}}, DescartesQuadruple{{1, -2, -2, -3}},
          DescartesQuadruple{{0, 0, 0, 0}}})
        EXPECT_EQ(ListCurvatures(nullptr, q, 100, &out), Result::kInconsistent);
    EXPECT_EQ(ListCurvatures(nullptr, {{0, 0, 1, 1}}, 100, &out), Result::kOutOfBounds);
    EXPECT_EQ(ListCurvatures(nullptr, {{1, 4, 0, 1}}, 100, &out), Result::kOutOfBounds);
    EXPECT_EQ(out.text, "kept");
}

TEST(Curvatures, StopListsTheCurvaturesCompletedSoFar) {
    ListOutput full, out;
    ASSERT_EQ(ListCurvatures(nullptr, {{-1, 2, 2, 3}}, 1000, &full), Result::kOk);
    QuitAtPoll inWalk(2), inRows(5), afterLast(static_cast<long>(Listed(full.text).size()));
    EXPECT_EQ(ListCurvatures(&inWalk, {{-1, 2, 2, 3}}, kCurvatureBoundMax, &out), Result::kStopped);
    EXPECT_EQ(out.text, full.text);
    EXPECT_EQ(out.caption, full.caption);
    // The first curvatures, from the mirror symmetries: 2 (2), 3 (2), 6 (4), 11 (4), 14 (4).
    EXPECT_EQ(ListCurvatures(&inRows, {{-1, 2, 2, 3}}, 1000, &out), Result::kStopped);
    EXPECT_EQ(Leading(out.text, 2),
              (std::vector<Numbers>{{2, 2}, {3, 2}, {6, 4}, {11, 4}, {14, 4}}));
    EXPECT_EQ(out.caption, "curvatures [-1 2 2 3; c < 15] : 5");
    EXPECT_EQ(ListCurvatures(&afterLast, {{-1, 2, 2, 3}}, 1000, &out), Result::kOk);
}
