// Lattice cubes against a plain enumeration of all orthogonal triples.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <set>

#include "list_support.h"

namespace {

using V = std::array<long, 3>;
using Dirs = std::array<V, 6>;  // the sorted six edge directions of a cube

long Det(const V& u, const V& v, const V& w) {
    return u[0] * (v[1] * w[2] - v[2] * w[1]) - u[1] * (v[0] * w[2] - v[2] * w[0]) +
           u[2] * (v[0] * w[1] - v[1] * w[0]);
}

// The sorted directions, or with up to symmetry the smallest sorted image
// under the 48 signed permutations of the coordinates.
Dirs Key(const V& u, const V& v, const V& w, bool upToSymmetry) {
    std::set<Dirs> images;
    const V e[3] = {u, v, w};
    int p[3] = {0, 1, 2};
    do {
        for (int s = 0; s < (upToSymmetry ? 8 : 1); ++s) {
            Dirs d;
            for (int i = 0; i < 6; ++i)
                for (int k = 0; k < 3; ++k)
                    d[i][k] = (s >> k & 1 ? -1 : 1) * (i & 1 ? -1 : 1) * e[i / 2][p[k]];
            std::sort(d.begin(), d.end());
            images.insert(d);
        }
    } while (upToSymmetry && std::next_permutation(p, p + 3));
    return *images.begin();
}

// Every cube of edge n: all right-handed orthogonal triples of vectors of length n.
std::set<Dirs> BruteCubes(long n, bool upToSymmetry) {
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
                    cubes.insert(Key(u, v, w, upToSymmetry));
    return cubes;
}

// The ten numbers of every row below the header and rule: n, u, v, w.
std::vector<Numbers> CubeRows(std::string text) {
    std::replace(text.begin(), text.end(), '|', ' ');
    return Leading(text, 10);
}

}  // namespace

TEST(LatticeCubes, AgreeWithBruteForceUpToSymmetryAndWithDuplicates) {
    for (bool dups : {false, true}) {
        ListOutput out;
        ASSERT_EQ(ListLatticeCubes(nullptr, 13, dups, &out), Result::kOk);
        std::map<long, std::set<Dirs>> listed;
        const std::vector<Numbers> rows = CubeRows(out.text);
        for (const Numbers& r : rows) {
            const V u = {r[1], r[2], r[3]}, v = {r[4], r[5], r[6]}, w = {r[7], r[8], r[9]};
            // Orthogonality and length follow from matching the brute force's directions.
            EXPECT_EQ(Det(u, v, w), r[0] * r[0] * r[0]) << "left-handed, n = " << r[0];
            EXPECT_TRUE(listed[r[0]].insert(Key(u, v, w, !dups)).second) << "twice, n = " << r[0];
        }
        for (long n = 1; n <= 13; ++n) EXPECT_EQ(listed[n], BruteCubes(n, !dups)) << "n = " << n;
        EXPECT_EQ(out.caption, std::string("lattice cubes [") + (dups ? "duplicates; " : "") +
                                   "length < 14] : " + std::to_string(rows.size()));
    }
}

TEST(LatticeCubes, StopReportsTheLastLengthAndRefusedBoundsLeaveOutputAlone) {
    QuitAtPoll quit(12);  // every length polls at least once: the 12th poll comes by length 12
    ListOutput out;
    EXPECT_EQ(ListLatticeCubes(&quit, 1000, false, &out), Result::kStopped);
    const std::vector<Numbers> listed = CubeRows(out.text);
    const long last = std::stol(out.caption.substr(out.caption.find('<') + 1)) - 1;
    ASSERT_TRUE(!listed.empty() && last >= listed.back()[0] && last <= 12) << out.caption;
    EXPECT_EQ(out.caption, "lattice cubes [length < " + std::to_string(last + 1) +
                               "] : " + std::to_string(listed.size()));

    for (uint32_t bound : {0u, 65536u}) {
        ListOutput untouched;
        untouched.endWhenFull = true;  // an accepted bound would end, not hang
        EXPECT_EQ(ListLatticeCubes(nullptr, bound, false, &untouched), Result::kOutOfBounds);
        EXPECT_EQ(untouched.caption + untouched.text, "");
    }
}
