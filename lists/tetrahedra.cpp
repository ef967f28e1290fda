// Primitive tetrahedra with integer edges and rational volume.
#include "lists/tetrahedra.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

using Wide = __int128;

// Cheap refusals of non-squares before the root: a square is a square
// residue modulo 64, 63, 65 and 11; together they pass about 1 value in 120.
// Bit r of a mask is set when r is a square residue.
constexpr uint64_t SquareMask(uint32_t m) {
    uint64_t mask = 0;
    for (uint32_t i = 0; i < m; ++i) mask |= uint64_t{1} << (i * i % m);
    return mask;
}
constexpr uint64_t kSquaresMod64 = SquareMask(64), kSquaresMod63 = SquareMask(63),
                   kSquaresMod11 = SquareMask(11);
constexpr bool MaySquareMod64(uint64_t v) { return (kSquaresMod64 >> (v & 63)) & 1; }

// The root of v when v is a perfect square, else 0 (v > 0).
uint64_t SquareRootIfSquare(uint64_t v) {
    static const auto mod65 = [] {
        std::array<bool, 65> r = {};
        for (uint32_t i = 0; i < 65; ++i) r[i * i % 65] = true;
        return r;
    }();
    if (!MaySquareMod64(v) || !((kSquaresMod63 >> (v % 63)) & 1) || !mod65[v % 65] ||
        !((kSquaresMod11 >> (v % 11)) & 1))
        return 0;
    const uint64_t root = ISqrt64(v);
    return root * root == v ? root : 0;
}

bool ProperTriangle(uint32_t x, uint32_t y, uint32_t z) {
    return x < y + z && y < x + z && z < x + y;
}

// For a proper triangle: whether its area K is an integer. Heron gives
// 16 K^2 as an integer; with integer sides a rational K is already whole.
bool IntegerArea(uint64_t x, uint64_t y, uint64_t z) {
    return SquareRootIfSquare((x + y + z) * (y + z - x) * (x + z - y) * (x + y - z)) != 0;
}

// 144 V^2 = -a^2 F^2 + lin F + constant as a polynomial in F = CD^2: the inner
// loop over CD evaluates it with two products.
struct VolumeByCD {
    int64_t a2, lin;
    Wide constant;
    VolumeByCD(uint32_t a, uint32_t b, uint32_t c, uint32_t d, uint32_t e) {
        const int64_t A = int64_t{a} * a, B = int64_t{b} * b, C = int64_t{c} * c,
                      D = int64_t{d} * d, E = int64_t{e} * e;
        a2 = A;
        lin = A * (B + C + D + E - A) + B * E + C * D - B * C - D * E;
        constant = Wide{B * E} * (A + C + D - B - E) + Wide{C * D} * (A + B + E - C - D) -
                   Wide{A * B} * D - Wide{A * C} * E;
    }
    // Narrows [*low, *high] to the CD for which 144 V^2 may be positive. The
    // roots in F are only floating point: the CD range is rounded outward and
    // the exact sign is still tested for each CD.
    void Narrow(uint32_t* low, uint32_t* high) const {
        const double l = static_cast<double>(lin), q = static_cast<double>(a2);
        const double disc = l * l + 4 * q * static_cast<double>(constant);
        if (disc < 0) {
            *high = 0;
            return;
        }
        const double root = std::sqrt(disc), lower = (l - root) / (2 * q),
                     upper = (l + root) / (2 * q);
        if (upper < 0) {
            *high = 0;
            return;
        }
        if (lower > 0) *low = std::max(*low, static_cast<uint32_t>(std::sqrt(lower)));
        *high = std::min(*high, static_cast<uint32_t>(std::sqrt(upper)) + 1);
    }
    Wide At(uint32_t f) const {
        const int64_t F = int64_t{f} * f;
        return Wide{F} * (lin - a2 * F) + constant;
    }
};

// Faces ABC, ABD, ACD, BCD as indices into AB, AC, AD, BC, BD, CD.
constexpr int kFaces[4][3] = {{0, 1, 3}, {0, 2, 4}, {1, 2, 5}, {3, 4, 5}};

std::string TetraRow(const TetraEdges& t, const TetraVolume& v, int w, int volumeWidth) {
    std::string row;
    Concat8(&row, PadLeft(w, Dec(t.e[0])), PadLeft(w, Dec(t.e[1])), PadLeft(w, Dec(t.e[2])),
            PadLeft(w, Dec(t.e[3])), PadLeft(w, Dec(t.e[4])), PadLeft(w, Dec(t.e[5])), "  ");
    std::string volume = Dec(static_cast<int64_t>(v.num));
    if (v.den != 1) volume += "/" + Dec(v.den);
    Concat8(&row, PadLeft(volumeWidth, volume), v.integerFaces ? "*" : "", "\r\n");
    return row;
}

// The inner loops poll once this many edge sets have been looked at, which
// keeps the gap between polls to a few milliseconds at any bound.
constexpr uint32_t kPollWork = 1u << 18;

}  // namespace

bool RationalTetraVolume(const TetraEdges& t, TetraVolume* v) {
    for (const auto& face : kFaces)
        if (!ProperTriangle(t.e[face[0]], t.e[face[1]], t.e[face[2]])) return false;
    const Wide q = VolumeByCD(t.e[0], t.e[1], t.e[2], t.e[3], t.e[4]).At(t.e[5]);
    if (q <= 0) return false;
    // V = s / 12 with s^2 = 144 V^2.
    const uint64_t s = SquareRootIfSquare(static_cast<uint64_t>(q));
    if (s == 0) return false;
    const uint32_t g = static_cast<uint32_t>(std::gcd(s, uint64_t{12}));
    v->num = s / g;
    v->den = 12 / g;
    v->integerFaces = true;
    for (const auto& face : kFaces)
        v->integerFaces = v->integerFaces && IntegerArea(t.e[face[0]], t.e[face[1]], t.e[face[2]]);
    return true;
}

TetraEdges CanonicalTetra(const TetraEdges& t) {
    // The edge joining vertices i < j (A = 0 ... D = 3).
    constexpr int kEdge[4][4] = {{-1, 0, 1, 2}, {0, -1, 3, 4}, {1, 3, -1, 5}, {2, 4, 5, -1}};
    constexpr int kEnds[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};
    std::array<int, 4> p = {0, 1, 2, 3};
    TetraEdges best = t;
    do {
        TetraEdges image;
        for (int k = 0; k < 6; ++k) image.e[k] = t.e[kEdge[p[kEnds[k][0]]][p[kEnds[k][1]]]];
        if (std::lexicographical_compare(best.e, best.e + 6, image.e, image.e + 6)) best = image;
    } while (std::next_permutation(p.begin(), p.end()));
    return best;
}

Result ListRationalTetrahedra(CalcContext* ctx, uint32_t maxEdge, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::tetrahedra, maxEdge)) return code;
    const int w = DecDigits(maxEdge) + 2;
    // The volume is at most that of the regular tetrahedron, s = 12 V <= sqrt(2) max^3,
    // written as a fraction over at most 12.
    const uint64_t cube = uint64_t{maxEdge} * maxEdge * maxEdge;
    const int volumeWidth = std::max(static_cast<int>(std::string(OxString(kStrVolume)).size()),
                                     DecDigits(ISqrt64(2 * cube * cube)) + 3);

    ListStatus(out, OxString(kStrPressQToQuit));
    out->text.clear();
    Concat8(&out->text, PadLeft(w, "AB"), PadLeft(w, "AC"), PadLeft(w, "AD"), PadLeft(w, "BC"),
            PadLeft(w, "BD"), PadLeft(w, "CD"), "  ", PadLeft(volumeWidth, OxString(kStrVolume)));
    const int headerWidth = static_cast<int>(out->text.size());
    out->text += "\r\n";
    HyphenRule(&out->text, headerWidth + 1, true);  // + 1: the mark
    out->text += "\r\n";

    // Labels: a = AB is a longest edge and b = AC the longest of the four
    // edges meeting AB, as in the lexicographically largest labelling; the
    // full canonical test waits until the volume has proved rational. The
    // lower ends come from the faces ABC (b + d > a), ABD (c + e > a) and the
    // upper and lower ends of CD from the faces ACD and BCD.
    uint32_t count = 0, a = 1, work = 0;
    bool stopped = false;
    for (; a <= maxEdge && !stopped; ++a) {
        for (uint32_t b = a / 2 + 1; b <= a && !stopped; ++b)
            for (uint32_t c = a - b + 1; c <= b && !stopped; ++c)
                for (uint32_t d = a - b + 1; d <= b && !stopped; ++d)
                    for (uint32_t e = a - c + 1; e <= b && !stopped; ++e) {
                        uint32_t low = std::max(b - c, d > e ? d - e : e - d) + 1;
                        uint32_t high = std::min({a, b + c - 1, d + e - 1});
                        if (low <= high) {
                            const VolumeByCD volume(a, b, c, d, e);
                            volume.Narrow(&low, &high);
                            for (uint32_t f = low; f <= high && !stopped; ++f) {
                                const Wide q = volume.At(f);
                                if (q <= 0 || !MaySquareMod64(static_cast<uint64_t>(q)) ||
                                    SquareRootIfSquare(static_cast<uint64_t>(q)) == 0 ||
                                    Gcd32(Gcd32(Gcd32(a, b), Gcd32(c, d)), Gcd32(e, f)) != 1)
                                    continue;
                                const TetraEdges t = {{a, b, c, d, e, f}};
                                const TetraEdges canonical = CanonicalTetra(t);
                                TetraVolume v;
                                if (!std::equal(t.e, t.e + 6, canonical.e) ||
                                    !RationalTetraVolume(t, &v))
                                    continue;
                                const std::string row = TetraRow(t, v, w, volumeWidth);
                                stopped = !OfferListRow(ctx, out, row);
                                if (!stopped) ++count;
                            }
                            if (low <= high) work += high - low;
                        }
                        if (++work >= kPollWork && !stopped) {
                            work = 0;
                            stopped = ListStopRequested(ctx);
                        }
                    }
        if (!stopped) stopped = a < maxEdge && ListStopRequested(ctx);
    }
    // a has gone one past the largest edge reached.
    out->caption = std::string(OxString(kStrRationalTetrahedra)) + " [" + OxString(kStrEdge) +
                   " < " + Dec(a) + "] : " + Dec(count);
    return stopped ? Result::kStopped : Result::kOk;
}
