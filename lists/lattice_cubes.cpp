// Cubes with integer vertices: edge vectors u, v, w of one length n,
// pairwise orthogonal, det(u, v, w) = +n^3.
//
// A cube is the set of its edge directions {±u, ±v, ±w}. Among the 24
// right-handed orderings (a, b, c) of such a set, the one shown is the
// lexicographically largest triple of vectors (a before b before c,
// coordinates x, y, z): a is the largest of the six directions, b the
// largest of the four left, c = (a × b) / n. Up to the 48 signed
// permutations of the coordinates, a class is shown by the largest such
// triple among the images of its sets; its first vector then has
// x >= y >= z >= 0. Rows come by n, then by that triple, largest first.
#include <algorithm>
#include <array>
#include <set>
#include <vector>

#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

using Vec = std::array<int32_t, 3>;
using Triple = std::array<int32_t, 9>;  // u, v, w one after another
// Largest first: the order in which the rows are shown.
using TripleSet = std::set<Triple, std::greater<Triple>>;

int64_t Dot(const Vec& a, const Vec& b) {
    return int64_t{a[0]} * b[0] + int64_t{a[1]} * b[1] + int64_t{a[2]} * b[2];
}

// (a × b) / n into *c; false when the quotient is not integral. With
// |a| = |b| = n the components of a × b stay within n^2 < 2^32 in size.
bool CrossOverN(const Vec& a, const Vec& b, int64_t n, Vec* c) {
    const int64_t p[3] = {int64_t{a[1]} * b[2] - int64_t{a[2]} * b[1],
                          int64_t{a[2]} * b[0] - int64_t{a[0]} * b[2],
                          int64_t{a[0]} * b[1] - int64_t{a[1]} * b[0]};
    for (int k = 0; k < 3; ++k) {
        if (p[k] % n != 0) return false;
        (*c)[k] = static_cast<int32_t>(p[k] / n);
    }
    return true;
}

Vec Negated(const Vec& a) { return {-a[0], -a[1], -a[2]}; }

// The 48 signed permutations of the coordinates: image coordinate k is
// sign * source coordinate perm[k].
struct Symmetry {
    int perm[3];
    int sign[3];
};

const std::vector<Symmetry>& Symmetries() {
    static const std::vector<Symmetry> all = [] {
        std::vector<Symmetry> s;
        int p[3] = {0, 1, 2};
        do {
            for (int signs = 0; signs < 8; ++signs)
                s.push_back({{p[0], p[1], p[2]},
                             {signs & 1 ? -1 : 1, signs & 2 ? -1 : 1, signs & 4 ? -1 : 1}});
        } while (std::next_permutation(p, p + 3));
        return s;
    }();
    return all;
}

Vec Apply(const Symmetry& s, const Vec& a) {
    return {s.sign[0] * a[s.perm[0]], s.sign[1] * a[s.perm[1]], s.sign[2] * a[s.perm[2]]};
}

// The shown ordering of the set {±u, ±v, ±w} (see the head of the file).
Triple OrderedCube(const Vec& u, const Vec& v, const Vec& w, int64_t n) {
    const Vec dirs[6] = {u, Negated(u), v, Negated(v), w, Negated(w)};
    Triple best{};
    bool first = true;
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 6; ++j) {
            if (i / 2 == j / 2) continue;
            Vec c{};
            // Always integral: a × b is ±n times the third direction.
            (void)CrossOverN(dirs[i], dirs[j], n, &c);
            const Triple t = {dirs[i][0], dirs[i][1], dirs[i][2], dirs[j][0], dirs[j][1],
                              dirs[j][2], c[0],       c[1],       c[2]};
            if (first || t > best) best = t;
            first = false;
        }
    return best;
}

Vec Part(const Triple& t, int k) { return {t[3 * k], t[3 * k + 1], t[3 * k + 2]}; }

// The shown representative of the class of the cube under the symmetries.
Triple ClassOf(const Vec& u, const Vec& v, const Vec& w, int64_t n) {
    Triple best{};
    bool first = true;
    for (const Symmetry& s : Symmetries()) {
        const Triple t = OrderedCube(Apply(s, u), Apply(s, v), Apply(s, w), n);
        if (first || t > best) best = t;
        first = false;
    }
    return best;
}

// The vectors of length n with x >= y >= z >= 0 into *sorted, every vector
// of length n into *all. False when the context stopped it (polled once per
// x, so that a large n stays responsive).
bool VectorsOfLength(CalcContext* ctx, uint32_t n, std::vector<Vec>* sorted,
                     std::vector<Vec>* all) {
    sorted->clear();
    all->clear();
    const uint64_t nn = uint64_t{n} * n;
    // x^2 >= n^2 / 3 since x is the largest.
    for (uint64_t x = n; 3 * x * x >= nn; --x) {
        const uint64_t r = nn - x * x;
        for (uint64_t y = std::min<uint64_t>(x, TruncSqrt(r)); 2 * y * y >= r; --y) {
            const uint64_t zz = r - y * y, z = TruncSqrt(zz);
            if (z * z == zz && z <= y)
                sorted->push_back(
                    {static_cast<int32_t>(x), static_cast<int32_t>(y), static_cast<int32_t>(z)});
            if (y == 0) break;
        }
        if (ListStopRequested(ctx)) return false;
    }
    for (const Vec& a : *sorted)
        for (const Symmetry& s : Symmetries()) all->push_back(Apply(s, a));
    std::sort(all->begin(), all->end());
    all->erase(std::unique(all->begin(), all->end()), all->end());
    return true;
}

}  // namespace

Result ListLatticeCubes(CalcContext* ctx, uint32_t maxLength, bool duplicates, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::latticeCubes, maxLength)) return code;
    ListStatus(out, OxString(kStrPressQToQuit));

    // n takes the digits of the bound and a blank; a coordinate also a sign.
    const int wn = DecDigits(maxLength) + 1, wc = DecDigits(maxLength) + 2;
    out->text = PadLeft(wn, "n") + " |" + PadLeft(3 * wc, "u") + " |" + PadLeft(3 * wc, "v") +
                " |" + PadLeft(3 * wc, "w") + "\r\n";
    HyphenRule(&out->text, wn + 9 * wc + 6, true);
    out->text += "\r\n";

    uint32_t count = 0, last = 0;
    bool stopped = false;
    std::vector<Vec> sorted, all;
    for (uint32_t n = 1; n <= maxLength && !stopped; ++n) {
        last = n;
        stopped = !VectorsOfLength(ctx, n, &sorted, &all);
        // Every class has an edge that a symmetry maps to x >= y >= z >= 0,
        // so u runs over those only and v over every vector orthogonal to it.
        TripleSet classes;
        for (size_t i = 0; i < sorted.size() && !stopped; ++i) {
            const Vec& u = sorted[i];
            for (const Vec& v : all) {
                Vec w{};
                if (Dot(u, v) == 0 && CrossOverN(u, v, n, &w)) classes.insert(ClassOf(u, v, w, n));
            }
            stopped = ListStopRequested(ctx);
        }
        TripleSet cubes;
        if (duplicates) {
            for (const Triple& t : classes)
                for (const Symmetry& s : Symmetries())
                    cubes.insert(OrderedCube(Apply(s, Part(t, 0)), Apply(s, Part(t, 1)),
                                             Apply(s, Part(t, 2)), n));
        }
        // After a stop the rows found for this n are still true cubes: shown.
        for (const Triple& t : duplicates ? cubes : classes) {
            std::string row = PadLeft(wn, Dec(n));
            for (int k = 0; k < 9; ++k) {
                if (k % 3 == 0) row += " |";
                row += PadLeft(wc, Dec(int64_t{t[static_cast<size_t>(k)]}));
            }
            row += "\r\n";
            if (!OfferListRow(ctx, out, row)) {
                stopped = true;
                break;
            }
            ++count;
        }
    }

    out->caption = std::string(OxString(kStrLatticeCubes)) + " [";
    if (duplicates) out->caption += std::string(OxString(kStrDuplicates)) + "; ";
    Concat8(&out->caption, OxString(kStrLength), " < ", Dec(last + 1), "] : ", Dec(count));
    return stopped ? Result::kStopped : Result::kOk;
}
