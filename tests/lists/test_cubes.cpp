// Lattice cubes against a plain enumeration of all orthogonal triples.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <set>

#include "list_support.h"

namespace {

using V = std::array<long, 3>;
using Dirs = std::array<V, 6>;  // the sorted six edge directions of a cube

Dirs DirectionsOf(const V& u, const V& v, const V& w) {
    Dirs d = {u, {-u[0], -u[1], -u[2]}, v, {-v[0], -v[1], -v[2]}, w, {-w[0], -w[1], -w[2]}};
    std::sort(d.begin(), d.end());
    return d;
}

long Det(const V& u, const V& v, const V& w) {
    return u[0] * (v[1] * w[2] - v[2] * w[1]) - u[1] * (v[0] * w[2] - v[2] * w[0]) +
           u[2] * (v[0] * w[1] - v[1] * w[0]);
}

// The smallest image of the directions under the signed permutations.
Dirs ClassKey(const Dirs& d) {
    Dirs best = d;
    int p[3] = {0, 1, 2};
    do {
        for (int s = 0; s < 8; ++s) {
            Dirs img;
            for (int i = 0; i < 6; ++i)
                for (int k = 0; k < 3; ++k) img[i][k] = (s >> k & 1 ? -1 : 1) * d[i][p[k]];
            std::sort(img.begin(), img.end());
            best = std::min(best, img);
        }
    } while (std::next_permutation(p, p + 3));
    return best;
}

// Every cube of edge n as its directions: all right-handed orthogonal
// triples of vectors of length n.
std::set<Dirs> BruteCubes(long n) {
    std::vector<V> vs;
    for (long x = -n; x <= n; ++x)
        for (long y = -n; y <= n; ++y)
            for (long z = -n; z <= n; ++z)
                if (x * x + y * y + z * z == n * n) vs.push_back({x, y, z});
    auto dot = [](const V& a, const V& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; };
    std::set<Dirs> cubes;
    for (const V& u : vs)
        for (const V& v : vs)
            for (const V& w : vs)
                if (dot(u, v) == 0 && dot(u, w) == 0 && dot(v, w) == 0 && Det(u, v, w) == n * n * n)
                    cubes.insert(DirectionsOf(u, v, w));
    return cubes;
}

// The ten numbers of every row below the header and rule: n, u, v, w.
std::vector<Numbers> CubeRows(const std::string& text) {
    std::string plain = text;
    std::replace(plain.begin(), plain.end(), '|', ' ');
    return Leading(plain, 10);
}

}  // namespace

TEST(LatticeCubes, AgreeWithBruteForceUpToSymmetryAndWithDuplicates) {
    constexpr long kMax = 13;
    for (bool dups : {false, true}) {
        ListOutput out;
        ASSERT_EQ(ListLatticeCubes(nullptr, kMax, dups, &out), Result::kOk);
        std::map<long, std::set<Dirs>> listed;
        const std::vector<Numbers> rows = CubeRows(out.text);
        for (const Numbers& r : rows) {
            const long n = r[0];
            const std::string row = Rows(out.text)[&r - rows.data() + 2];
            ASSERT_EQ(Words(row).size(), 13u) << row;
            V e[3];
            for (int k = 0; k < 9; ++k) e[k / 3][k % 3] = r[1 + k];
            for (int i = 0; i < 3; ++i) {
                EXPECT_EQ(e[i][0] * e[i][0] + e[i][1] * e[i][1] + e[i][2] * e[i][2], n * n) << row;
                const V& f = e[(i + 1) % 3];
                EXPECT_EQ(e[i][0] * f[0] + e[i][1] * f[1] + e[i][2] * f[2], 0) << row;
            }
            EXPECT_EQ(Det(e[0], e[1], e[2]), n * n * n) << row;
            const Dirs d = DirectionsOf(e[0], e[1], e[2]);
            EXPECT_TRUE(listed[n].insert(dups ? d : ClassKey(d)).second) << "twice: " << row;
        }
        for (long n = 1; n <= kMax; ++n) {
            std::set<Dirs> expected;
            for (const Dirs& d : BruteCubes(n)) expected.insert(dups ? d : ClassKey(d));
            EXPECT_EQ(listed[n], expected) << "n = " << n << (dups ? " with duplicates" : "");
        }
        EXPECT_EQ(out.caption, std::string(dups ? "lattice cubes [duplicates; length < 14] : "
                                                : "lattice cubes [length < 14] : ") +
                                   std::to_string(rows.size()));
    }
}

TEST(LatticeCubes, StopReportsTheLastLengthAndRefusedBoundsLeaveOutputAlone) {
    // Every length polls at least once: the 12th poll comes by length 12.
    QuitAtPoll quit(12);
    ListOutput out, whole;
    EXPECT_EQ(ListLatticeCubes(&quit, 1000, false, &out), Result::kStopped);
    ASSERT_EQ(ListLatticeCubes(nullptr, 12, false, &whole), Result::kOk);
    const std::string head = "lattice cubes [length < ";
    ASSERT_EQ(out.caption.substr(0, head.size()), head);
    const long last = std::stol(out.caption.substr(head.size())) - 1;
    const std::vector<Numbers> listed = CubeRows(out.text), all = CubeRows(whole.text);
    ASSERT_FALSE(listed.empty());
    EXPECT_TRUE(last >= listed.back()[0] && last <= 12) << out.caption;
    // The rows so far: those of the complete list, at least all of the lengths before the last.
    const auto before =
        std::count_if(all.begin(), all.end(), [&](const Numbers& r) { return r[0] < last; });
    EXPECT_GE(static_cast<long>(listed.size()), before);
    ASSERT_LE(listed.size(), all.size());
    EXPECT_TRUE(std::equal(listed.begin(), listed.end(), all.begin()));
    EXPECT_EQ(out.caption.substr(out.caption.rfind(' ') + 1), std::to_string(listed.size()));

    // A full text ends the run at the first refused row when asked to.
    ListOutput full;
    full.endWhenFull = true;
    EXPECT_EQ(ListLatticeCubes(nullptr, 65535, true, &full), Result::kStopped);
    EXPECT_GT(full.text.size(), 999000u);

    for (uint32_t bound : {0u, 65536u}) {
        ListOutput untouched;
        untouched.caption = "before";
        untouched.endWhenFull = true;  // an accepted bound would end, not hang
        EXPECT_EQ(ListLatticeCubes(nullptr, bound, false, &untouched), Result::kOutOfBounds);
        EXPECT_EQ(untouched.caption, "before");
        EXPECT_TRUE(untouched.text.empty());
    }
}
