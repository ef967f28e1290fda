// Pythagorean quadruples and sums of two squares.
#include <gtest/gtest.h>

#include <numeric>
#include <set>
#include <tuple>

#include "list_support.h"
#include "lists/list_generators.h"

namespace {

QuadOptions Lengths(uint32_t lo, uint32_t hi) {
    QuadOptions o;
    o.minLength = lo;
    o.maxLength = hi;
    return o;
}

using Quad = std::tuple<uint32_t, uint32_t, uint32_t, uint32_t>;

// The rows of a list with a d column.
std::vector<Quad> QuadsOf(const std::string& text) {
    std::vector<Quad> quads;
    std::vector<std::string> rows = Rows(text);
    for (size_t i = 2; i < rows.size(); ++i) {
        std::vector<std::string> w = Words(rows[i]);
        if (!w.empty() && w.back().back() == '*') w.back().pop_back();
        quads.emplace_back(std::stoul(w[0]), std::stoul(w[1]), std::stoul(w[2]), std::stoul(w[3]));
    }
    return quads;
}

}  // namespace

TEST(Quadruples, AgreeWithBruteForceForEveryOption) {
    const uint32_t lo = 3, hi = 45;
    for (int flags = 0; flags < 16; ++flags) {
        for (QuadKind kind : {QuadKind::any, QuadKind::distinct, QuadKind::repeats}) {
            QuadOptions o = Lengths(lo, hi);
            o.primitiveOnly = flags & 1;
            o.ascending = flags & 2;
            o.zeros = flags & 4;
            o.kind = kind;
            std::vector<Quad> expected;
            for (uint32_t d = lo; d <= hi; ++d)
                for (uint32_t a = d; a-- > 0;)
                    for (uint32_t b = a + 1; b-- > 0;)
                        for (uint32_t c = b + 1; c-- > 0;) {
                            if (a * a + b * b + c * c != d * d) continue;
                            if (c == 0 && !o.zeros) continue;
                            // A lone nonzero leg (d, 0, 0) never shows; a primitive one would be 1 = 1.
                            if (b == 0) continue;
                            bool repeated = a == b || b == c;
                            if (o.primitiveOnly && std::gcd(std::gcd(a, b), std::gcd(c, d)) != 1) continue;
                            if ((kind == QuadKind::distinct && repeated) || (kind == QuadKind::repeats && !repeated))
                                continue;
                            expected.emplace_back(a, b, c, d);
                        }
            // Search order: d ascending, then a and b descending; shown
            // ascending, the legs turn round and a complete search is
            // re-ordered by d and the first leg, keeping ties in search order.
            std::sort(expected.begin(), expected.end(), [](const Quad& x, const Quad& y) {
                return std::make_tuple(std::get<3>(x), std::get<0>(y), std::get<1>(y)) <
                       std::make_tuple(std::get<3>(y), std::get<0>(x), std::get<1>(x));
            });
            if (o.ascending) {
                for (Quad& q : expected) std::swap(std::get<0>(q), std::get<2>(q));
                std::stable_sort(expected.begin(), expected.end(), [](const Quad& x, const Quad& y) {
                    return std::make_pair(std::get<3>(x), std::get<0>(x)) <
                           std::make_pair(std::get<3>(y), std::get<0>(y));
                });
            }
            ListOutput out;
            ASSERT_EQ(ListQuadruples(nullptr, o, &out), 0);
            const std::vector<Quad> listed = QuadsOf(out.text);
            EXPECT_EQ(listed, expected) << "flags " << flags << " kind " << int(kind);
            // Only primitive rows listed: no stars.
            if (o.primitiveOnly) {
                EXPECT_EQ(out.text.find('*'), std::string::npos);
            }
        }
    }
}

TEST(Quadruples, StoppedSearchKeepsSearchOrderAndCountsRowsWritten) {
    QuadOptions o = Lengths(3, 200);
    o.ascending = true;
    QuitAtPoll quit(40);
    ListOutput out;
    EXPECT_EQ(ListQuadruples(&quit, o, &out), -1);
    std::vector<Quad> listed = QuadsOf(out.text);
    ASSERT_GT(listed.size(), 2u);
    // Not re-ordered: within one d the largest leg (shown last) falls, as searched.
    for (size_t i = 1; i < listed.size(); ++i)
        if (std::get<3>(listed[i]) == std::get<3>(listed[i - 1])) {
            EXPECT_LE(std::get<2>(listed[i]), std::get<2>(listed[i - 1]));
        }
    EXPECT_FALSE(std::is_sorted(listed.begin(), listed.end(), [](const Quad& x, const Quad& y) {
        return std::make_pair(std::get<3>(x), std::get<0>(x)) < std::make_pair(std::get<3>(y), std::get<0>(y));
    })) << "d = 9 alone shows 1 4 8, 4 4 7, 3 6 6";
    EXPECT_EQ(out.caption.substr(out.caption.rfind(' ') + 1), std::to_string(listed.size()));
}

TEST(TwoSquares, TopOfTheRangePrintsUnsigned) {
    ListOutput out;
    ListTwoSquares(4294967295u, &out);
    EXPECT_EQ(out.caption, "4294967295 = 0 sums of two squares");
    ListTwoSquares(4294836225u, &out);   // 65535^2: the widest x and square
    EXPECT_EQ(Rows(out.text).front(), "[65535,    0] (4294836225 + 0)");
}

TEST(TwoSquares, AgreeWithBruteForce) {
    for (uint32_t n = 0; n <= 3000; ++n) {
        std::string expected;
        int count = 0;
        for (uint32_t y = 0; 2 * y * y <= n; ++y)
            for (uint32_t x = y; x * x + y * y <= n; ++x)
                if (x * x + y * y == n) {
                    expected += std::to_string(x) + "," + std::to_string(y) + ";";
                    ++count;
                }
        ListOutput out;
        ListTwoSquares(n, &out);
        std::string got;
        for (const std::string& row : Rows(out.text)) {
            std::string pair = row.substr(1, row.find(']') - 1);
            pair.erase(std::remove(pair.begin(), pair.end(), ' '), pair.end());
            got += pair + ";";
        }
        ASSERT_EQ(got, expected) << n;
        EXPECT_NE(out.caption.find(" = " + std::to_string(count) + " "), std::string::npos);
    }
}
