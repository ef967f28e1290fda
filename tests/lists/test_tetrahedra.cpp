// Rational tetrahedra: the rows against a brute force over every labelling,
// the smallest perfect tetrahedron, a stop, the refused bounds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "list_support.h"
#include "lists/tetrahedra.h"

namespace {

using Table = std::vector<std::vector<std::string>>;

// The minor of m from row `row` on, without the columns in `used`, expanded
// along its first row: the determinant for row 0.
long Minor(const long (&m)[5][5], int row = 0, unsigned used = 0) {
    long det = 0, sign = 1;
    for (int j = 0; j < 5 && row < 5; ++j)
        if (!(used & (1u << j))) {
            det += sign * m[row][j] * Minor(m, row + 1, used | (1u << j));
            sign = -sign;
        }
    return row == 5 ? 1 : det;
}

bool Square(long v) { return v >= 0 && std::lround(std::sqrt(v)) * std::lround(std::sqrt(v)) == v; }

// Every row of the list for edges up to n: the lexicographically largest
// labelling of each tetrahedron, in increasing order.
Table BruteForce(long n) {
    std::map<std::vector<long>, std::string> rows;
    for (long code = 0; code < n * n * n * n * n * n; ++code) {
        long d[4][4] = {}, m[5][5] = {{0, 1, 1, 1, 1}, {1}, {1}, {1}, {1}}, gcd = 0, x = code;
        for (int i = 0; i < 4; ++i)
            for (int j = i + 1; j < 4; ++j, x /= n) d[i][j] = d[j][i] = x % n + 1;
        bool proper = true, heron = true;
        for (int i = 0; i < 4; ++i) {
            for (int j = 0; j < 4; ++j) {
                m[i + 1][j + 1] = d[i][j] * d[i][j];
                gcd = std::gcd(gcd, d[i][j]);
            }
            const long a = d[(i + 1) % 4][(i + 2) % 4], b = d[(i + 2) % 4][(i + 3) % 4],
                       c = d[(i + 1) % 4][(i + 3) % 4];  // the face without vertex i
            proper = proper && a < b + c && b < a + c && c < a + b;
            heron = heron && Square((a + b + c) * (b + c - a) * (a + c - b) * (a + b - c));
        }
        const long cm = proper && gcd == 1 ? Minor(m) : 0, s = std::lround(std::sqrt(cm / 2));
        if (cm <= 0 || s * s * 2 != cm) continue;
        std::vector<long> best;
        int p[4] = {0, 1, 2, 3};
        do
            best = std::max(best, {d[p[0]][p[1]], d[p[0]][p[2]], d[p[0]][p[3]], d[p[1]][p[2]],
                                   d[p[1]][p[3]], d[p[2]][p[3]]});
        while (std::next_permutation(p, p + 4));
        const long g = std::gcd(s, 12L);
        rows[best] = std::to_string(s / g) + (g == 12 ? "" : "/" + std::to_string(12 / g)) +
                     (heron ? "*" : "");
    }
    Table table;
    for (const auto& [edges, volume] : rows) {
        table.emplace_back();
        for (long e : edges) table.back().push_back(std::to_string(e));
        table.back().push_back(volume);
    }
    return table;
}

Table Body(const std::string& text) {
    Table rows;
    for (const std::string& row : Rows(text)) rows.push_back(Words(row));
    return {rows.begin() + 2, rows.end()};
}

}  // namespace

TEST(Tetrahedra, RowsAgreeWithBruteForce) {
    const Table expected = BruteForce(10);
    ListOutput out;
    ASSERT_EQ(ListRationalTetrahedra(nullptr, 10, &out), Result::kOk);
    EXPECT_EQ(Words(Rows(out.text)[0]).size(), 7u);  // AB ... CD, volume
    EXPECT_EQ(Body(out.text), expected);
    EXPECT_EQ(out.caption, "rational tetrahedra [edge < 11] : " + std::to_string(expected.size()));
}

TEST(Tetrahedra, SmallestPerfectTetrahedron) {
    // Faces of area 1890, 1800, 2016 and 1170; volume 18144.
    const TetraEdges t = CanonicalTetra({{51, 84, 52, 117, 53, 80}});  // A and C swapped
    EXPECT_EQ(std::vector<uint32_t>(t.e, t.e + 6),
              (std::vector<uint32_t>{117, 84, 80, 51, 53, 52}));
    TetraVolume v;
    ASSERT_TRUE(RationalTetraVolume(t, &v));
    EXPECT_TRUE(v.num == 18144 && v.den == 1 && v.integerFaces);
    // Three faces of integer area, not the fourth (13, 13, 6).
    ASSERT_TRUE(RationalTetraVolume({{13, 13, 12, 6, 5, 5}}, &v));
    EXPECT_TRUE(v.num == 48 && v.den == 1 && !v.integerFaces);
    // The six edges paired otherwise; a flat face 3 + 4 = 7.
    EXPECT_FALSE(RationalTetraVolume({{117, 84, 80, 51, 52, 53}}, &v));
    EXPECT_FALSE(RationalTetraVolume({{7, 3, 4, 4, 3, 5}}, &v));
}

TEST(Tetrahedra, StopReportsTheEdgeReachedAndRefusedBoundsLeaveOutputAlone) {
    ListOutput full, out, refused;
    ASSERT_EQ(ListRationalTetrahedra(nullptr, 12, &full), Result::kOk);
    QuitAtPoll quit(8);  // one poll after each largest edge: stops after AB = 8
    ASSERT_EQ(ListRationalTetrahedra(&quit, 12, &out), Result::kStopped);
    Table rows = Body(full.text);
    rows.erase(std::find_if(rows.begin(), rows.end(), [](auto& r) { return r[0] == "9"; }),
               rows.end());
    EXPECT_EQ(Body(out.text), rows);
    EXPECT_EQ(out.caption, "rational tetrahedra [edge < 9] : " + std::to_string(rows.size()));
    for (uint32_t bound : {0u, 1000u})
        EXPECT_EQ(ListRationalTetrahedra(nullptr, bound, &refused), Result::kOutOfBounds);
    EXPECT_TRUE(refused.caption.empty() && refused.text.empty());
}
