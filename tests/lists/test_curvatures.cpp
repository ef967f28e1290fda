// The curvatures of an integral circle packing.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>

#include "list_support.h"
#include "lists/list_inputs.h"

namespace {

// A circle as curvature k and curvature times centre (kx, ky): integers for
// every circle of the packing -1 2 2 3 placed as below, and one circle each.
using Circle = std::array<long, 3>;

// Every circle of curvature up to bound in the packing -1 2 2 3: the closure
// of the placed quadruple under all four reflections (which act on each
// coordinate alike), keeping quadruples whose circles stay within the bound
// and telling circles apart by their exact position.
std::map<long, long> PlacedPackingCounts(long bound) {
    using Quad = std::set<Circle>;
    const Quad root = {{-1, 0, 0}, {2, 1, 0}, {2, -1, 0}, {3, 0, 2}};
    std::set<Quad> seen = {root};
    std::vector<Quad> todo = {root};
    std::set<Circle> circles(root.begin(), root.end());
    while (!todo.empty()) {
        const Quad q = todo.back();
        todo.pop_back();
        for (const Circle& old : q) {
            Circle made{};
            for (int t = 0; t < 3; ++t) {
                long sum = 0;
                for (const Circle& c : q) sum += c[t];
                made[t] = 2 * (sum - old[t]) - old[t];
            }
            if (made[0] > bound) continue;
            Quad next = q;
            next.erase(old);
            next.insert(made);
            if (seen.insert(next).second) todo.push_back(next);
            circles.insert(made);
        }
    }
    std::map<long, long> counts;
    for (const Circle& c : circles)
        if (c[0] > 0) ++counts[c[0]];
    return counts;
}

std::map<long, long> Listed(const std::string& text) {
    std::map<long, long> counts;
    for (const Numbers& row : Leading(text, 2)) counts[row[0]] = row[1];
    return counts;
}

}  // namespace

TEST(Curvatures, AgreeWithThePlacedPackingFromAnyQuadrupleOfIt) {
    const std::map<long, long> expected = PlacedPackingCounts(200);
    // The packing's mirror symmetries: the two largest circles and the two
    // 3-circles are mirror pairs, each of the four gaps between the outer
    // circle, a 2 and a 3 holds a 6, and the gaps between both 2s and a 3 a 15.
    const std::map<long, long> first(expected.begin(), std::next(expected.begin(), 6));
    EXPECT_EQ(first, (std::map<long, long>{{2, 2}, {3, 2}, {6, 4}, {11, 4}, {14, 4}, {15, 2}}));
    for (const DescartesQuadruple& start :
         {DescartesQuadruple{{-1, 2, 2, 3}}, DescartesQuadruple{{2, 2, 3, 15}},
          DescartesQuadruple{{3, 2, 2, -1}}}) {
        ListOutput out;
        ASSERT_EQ(ListCurvatures(nullptr, start, 200, &out), Result::kOk);
        EXPECT_EQ(Listed(out.text), expected) << out.caption;
        EXPECT_EQ(out.caption.substr(out.caption.find(';')),
                  "; c < 201] : " + std::to_string(expected.size()));
    }
    ListOutput out;
    ASSERT_EQ(ListCurvatures(nullptr, DescartesQuadruple{{2, 2, 3, 15}}, 200, &out), Result::kOk);
    EXPECT_EQ(out.caption.substr(0, out.caption.find(';')), "curvatures [2 2 3 15");
}

// The circles of a packing fill its outer disc: the sum of count/c^2 over
// every curvature is 1/a^2 for the outer curvature -a. Up to 100000 all
// but a few parts in 10^4 of the area is there; a circle counted twice or
// missed among the larger ones shows at once.
TEST(Curvatures, CirclesFillTheOuterDisc) {
    for (const DescartesQuadruple& root :
         {DescartesQuadruple{{-1, 2, 2, 3}}, DescartesQuadruple{{-2, 3, 6, 7}},
          DescartesQuadruple{{-6, 11, 14, 15}}, DescartesQuadruple{{-12, 25, 25, 28}}}) {
        ListOutput out;
        ASSERT_EQ(ListCurvatures(nullptr, root, kCurvatureBoundMax, &out), Result::kOk);
        double area = 0;
        for (const auto& [c, n] : Listed(out.text))
            area += static_cast<double>(n) / (static_cast<double>(c) * static_cast<double>(c));
        const double outer = static_cast<double>(root.k[0] * root.k[0]);
        EXPECT_GT(area * outer, 0.995) << out.caption;
        EXPECT_LE(area * outer, 1.0) << out.caption;
    }
}

TEST(Curvatures, RefusesWhatIsNoBoundedPacking) {
    const struct {
        DescartesQuadruple start;
        uint32_t bound;
        Result code;
    } cases[] = {
        {{{1, 2, 2, 3}}, 100, Result::kInconsistent},     // no Descartes quadruple
        {{{1, -2, -2, -3}}, 100, Result::kInconsistent},  // orientation reversed
        {{{0, 0, 0, 0}}, 100, Result::kInconsistent},     // no circles
        {{{0, 0, 1, 1}}, 100, Result::kOutOfBounds},      // two lines
        {{{1, 4, 0, 1}}, 100, Result::kOutOfBounds},      // a line, not at the root
        {{{-1, 2, 2, 3}}, 0, Result::kOutOfBounds},
        {{{-1, 2, 2, 3}}, kCurvatureBoundMax + 1, Result::kOutOfBounds},
        {{{-1, 2, 2, 2147483648}}, 100, Result::kOutOfBounds},
    };
    for (const auto& c : cases) {
        ListOutput out;
        out.text = "kept";
        EXPECT_EQ(ListCurvatures(nullptr, c.start, c.bound, &out), c.code) << c.start.k[3];
        EXPECT_EQ(out.text, "kept");
    }
}

TEST(Curvatures, StopListsTheCurvaturesCompletedSoFar) {
    ListOutput full;
    ASSERT_EQ(ListCurvatures(nullptr, DescartesQuadruple{{-1, 2, 2, 3}}, 1000, &full), Result::kOk);
    const std::map<long, long> upTo1000 = Listed(full.text);

    // In the walk beyond 1000: the rows are those up to the last bound walked.
    QuitAtPoll early(2);
    ListOutput out;
    EXPECT_EQ(ListCurvatures(&early, DescartesQuadruple{{-1, 2, 2, 3}}, 100000, &out),
              Result::kStopped);
    EXPECT_EQ(Listed(out.text), upTo1000);
    EXPECT_EQ(out.caption, "curvatures [-1 2 2 3; c < 1001] : " + std::to_string(upTo1000.size()));

    // While the rows are written (one poll per row): the caption ends at the last.
    QuitAtPoll late(5);
    out = ListOutput{};
    EXPECT_EQ(ListCurvatures(&late, DescartesQuadruple{{-1, 2, 2, 3}}, 1000, &out),
              Result::kStopped);
    EXPECT_EQ(Leading(out.text, 2),
              (std::vector<Numbers>{{2, 2}, {3, 2}, {6, 4}, {11, 4}, {14, 4}}));
    EXPECT_EQ(out.caption, "curvatures [-1 2 2 3; c < 15] : 5");

    // A poll after the last row would turn a complete list into a stopped one.
    QuitAtPoll never(static_cast<long>(upTo1000.size()));
    EXPECT_EQ(ListCurvatures(&never, DescartesQuadruple{{-1, 2, 2, 3}}, 1000, &out), Result::kOk);
}
