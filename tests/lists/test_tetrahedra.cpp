// Rational tetrahedra: the rows against a brute force over every labelling,
// the smallest perfect tetrahedron, the caption after a stop, the bounds.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>

#include "list_support.h"
#include "lists/tetrahedra.h"

namespace {

using Edges = std::array<long, 6>;  // AB, AC, AD, BC, BD, CD

// The minor of the rows from `row` on and the columns not in `used`, by
// cofactor expansion along its first row.
long Minor(const long (&m)[5][5], int row, unsigned used) {
    if (row == 5) return 1;
    long det = 0, sign = 1;
    for (int j = 0; j < 5; ++j) {
        if (used & (1u << j)) continue;
        if (m[row][j] != 0) det += sign * m[row][j] * Minor(m, row + 1, used | (1u << j));
        sign = -sign;
    }
    return det;
}

// 288 V^2 from the Cayley-Menger matrix of the four vertices.
long CayleyMenger(const Edges& t) {
    const long d[4][4] = {
        {0, t[0], t[1], t[2]}, {t[0], 0, t[3], t[4]}, {t[1], t[3], 0, t[5]}, {t[2], t[4], t[5], 0}};
    long m[5][5];
    for (int i = 0; i < 5; ++i)
        for (int j = 0; j < 5; ++j)
            m[i][j] = i == 0 || j == 0 ? (i != j) : d[i - 1][j - 1] * d[i - 1][j - 1];
    return Minor(m, 0, 0);
}

long Root(long v) {
    long r = std::lround(std::sqrt(double(v)));
    return r * r == v ? r : -1;
}

bool Proper(long x, long y, long z) { return x < y + z && y < x + z && z < x + y; }

bool IntegerArea(long x, long y, long z) {
    const long r = Root((x + y + z) * (y + z - x) * (x + z - y) * (x + y - z));
    return r >= 0 && r % 4 == 0;
}

// The largest of the labellings by the 24 orders of the vertices.
Edges Largest(const Edges& t) {
    const long d[4][4] = {
        {0, t[0], t[1], t[2]}, {t[0], 0, t[3], t[4]}, {t[1], t[3], 0, t[5]}, {t[2], t[4], t[5], 0}};
    int p[4] = {0, 1, 2, 3};
    Edges best = t;
    do {
        const Edges image = {d[p[0]][p[1]], d[p[0]][p[2]], d[p[0]][p[3]],
                             d[p[1]][p[2]], d[p[1]][p[3]], d[p[2]][p[3]]};
        best = std::max(best, image);
    } while (std::next_permutation(p, p + 4));
    return best;
}

// Every row the list should hold for edges up to n, as its words, in the
// list's order: lexicographic in the edges.
std::vector<std::vector<std::string>> BruteForce(long n) {
    std::map<Edges, std::string> volumes;
    Edges t;
    for (t[0] = 1; t[0] <= n; ++t[0])
        for (t[1] = 1; t[1] <= n; ++t[1])
            for (t[2] = 1; t[2] <= n; ++t[2])
                for (t[3] = 1; t[3] <= n; ++t[3])
                    for (t[4] = 1; t[4] <= n; ++t[4])
                        for (t[5] = 1; t[5] <= n; ++t[5]) {
                            const long faces[4][3] = {{t[0], t[1], t[3]},
                                                      {t[0], t[2], t[4]},
                                                      {t[1], t[2], t[5]},
                                                      {t[3], t[4], t[5]}};
                            bool proper = true, heron = true;
                            for (const auto& f : faces) {
                                proper = proper && Proper(f[0], f[1], f[2]);
                                heron = heron && proper && IntegerArea(f[0], f[1], f[2]);
                            }
                            long gcd = 0;
                            for (long e : t) gcd = std::gcd(gcd, e);
                            const long cm = proper && gcd == 1 ? CayleyMenger(t) : 0;
                            const long s = cm > 0 && cm % 2 == 0 ? Root(cm / 2) : -1;
                            if (s <= 0 || Largest(t) != t) continue;
                            const long g = std::gcd(s, 12L);
                            volumes[t] = std::to_string(s / g) +
                                         (g == 12 ? "" : "/" + std::to_string(12 / g)) +
                                         (heron ? "*" : "");
                        }
    std::vector<std::vector<std::string>> rows;
    for (const auto& [edges, volume] : volumes) {
        rows.emplace_back();
        for (long e : edges) rows.back().push_back(std::to_string(e));
        rows.back().push_back(volume);
    }
    return rows;
}

std::vector<std::vector<std::string>> Body(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    for (const std::string& row : Rows(text)) rows.push_back(Words(row));
    return {rows.begin() + 2, rows.end()};
}

}  // namespace

TEST(Tetrahedra, RowsAgreeWithBruteForce) {
    const auto expected = BruteForce(10);
    ListOutput out;
    ASSERT_EQ(ListRationalTetrahedra(nullptr, 10, &out), Result::kOk);
    EXPECT_EQ(Words(Rows(out.text)[0]),
              (std::vector<std::string>{"AB", "AC", "AD", "BC", "BD", "CD", "volume"}));
    // In the order of the list: by largest edge, then lexicographically.
    EXPECT_EQ(Body(out.text), expected);
    EXPECT_EQ(out.caption, "rational tetrahedra [edge < 11] : " + std::to_string(expected.size()));
}

TEST(Tetrahedra, SmallestPerfectTetrahedron) {
    // Every face has integer area (1890, 1800, 2016, 1170); volume 18144.
    const TetraEdges scrambled = {{51, 84, 52, 117, 53, 80}};  // A and C swapped
    const TetraEdges t = CanonicalTetra(scrambled);
    EXPECT_EQ(std::vector<uint32_t>(t.e, t.e + 6),
              (std::vector<uint32_t>{117, 84, 80, 51, 53, 52}));
    TetraVolume v;
    ASSERT_TRUE(RationalTetraVolume(t, &v));
    EXPECT_EQ(v.num, 18144u);
    EXPECT_EQ(v.den, 1u);
    EXPECT_TRUE(v.integerFaces);
    // Three faces of integer area, not the fourth (13, 13, 6).
    ASSERT_TRUE(RationalTetraVolume({{13, 13, 12, 6, 5, 5}}, &v));
    EXPECT_EQ(v.num, 48u);
    EXPECT_FALSE(v.integerFaces);
    // The same six edges paired otherwise: an irrational volume.
    EXPECT_FALSE(RationalTetraVolume({{117, 84, 80, 51, 52, 53}}, &v));
    // A flat face: 3 + 4 = 7.
    EXPECT_FALSE(RationalTetraVolume({{7, 3, 4, 4, 3, 5}}, &v));
}

TEST(Tetrahedra, StopReportsTheEdgeReached) {
    ListOutput full, out;
    ASSERT_EQ(ListRationalTetrahedra(nullptr, 12, &full), Result::kOk);
    QuitAtPoll quit(8);  // one poll after each largest edge: stops after AB = 8
    ASSERT_EQ(ListRationalTetrahedra(&quit, 12, &out), Result::kStopped);
    auto rows = Body(full.text);
    rows.erase(std::find_if(rows.begin(), rows.end(), [](auto& r) { return r[0] == "9"; }),
               rows.end());
    EXPECT_EQ(Body(out.text), rows);
    EXPECT_EQ(out.caption, "rational tetrahedra [edge < 9] : " + std::to_string(rows.size()));
}

TEST(Tetrahedra, RefusedBounds) {
    ListOutput out;
    out.caption = "kept";
    EXPECT_EQ(ListRationalTetrahedra(nullptr, 0, &out), Result::kOutOfBounds);
    EXPECT_EQ(ListRationalTetrahedra(nullptr, 1000, &out), Result::kOutOfBounds);
    EXPECT_EQ(out.caption, "kept");
    EXPECT_TRUE(out.text.empty());
}
