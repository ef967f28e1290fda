// Quadrilaterals inscribed in a circle with integer sides and integer area.
#include <algorithm>
#include <vector>

#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/quadrilaterals.h"
#include "resources/string_ids.h"

namespace {

// Both diagonals of the inscribed quadrilateral with sides t in order, when
// both are integers: p^2 = (ac+bd)(ad+bc)/(ab+cd), q^2 = (ac+bd)(ab+cd)/(ad+bc).
// Sides below 500 keep the products far inside 64 bits.
bool IntegralDiagonals(const QuadSides& t, uint64_t* p, uint64_t* q) {
    const uint64_t a = t[0], b = t[1], c = t[2], d = t[3];
    const uint64_t e = a * c + b * d, f = a * d + b * c, g = a * b + c * d;
    return e * f % g == 0 && e * g % f == 0 && ExactSqrt(e * f / g, p) && ExactSqrt(e * g / f, q);
}

struct CyclicRow {
    QuadSides sides;
    uint64_t area;
    bool operator<(const CyclicRow& o) const { return sides < o.sides; }
    bool operator==(const CyclicRow& o) const { return sides == o.sides; }
};

// With x_i = s - side_i (s the semiperimeter), Brahmagupta's formula reads
// K^2 = x1 x2 x3 x4 where the x_i are positive, below s, and sum to 2s: the
// search runs over x1 <= x2 <= x3 <= x4, each multiset of sides once, and
// polls after each x1.
bool FindCyclic(CalcContext* ctx, uint32_t p, const QuadWidths& w,
                std::vector<std::string>* cells) {
    const uint32_t s = p / 2;
    std::vector<CyclicRow> rows;
    for (uint32_t x1 = 1; 4 * x1 <= p; ++x1) {
        for (uint32_t x2 = x1; x1 + 3 * x2 <= p; ++x2) {
            const uint32_t rest = p - x1 - x2;  // x3 + x4, with x4 <= s - 1
            const uint32_t lowest = rest > s - 1 ? std::max(x2, rest - (s - 1)) : x2;
            for (uint32_t x3 = lowest; 2 * x3 <= rest; ++x3) {
                const uint32_t x4 = rest - x3;
                uint64_t area;
                if (!ExactSqrt(uint64_t{x1} * x2 * x3 * x4, &area)) continue;
                // Ascending sides w <= x <= y <= z; the cyclic orders differ
                // in the side opposite w.
                const uint32_t sw = s - x4, sx = s - x3, sy = s - x2, sz = s - x1;
                for (const QuadSides& t : {QuadSides{sw, sx, sy, sz}, QuadSides{sw, sx, sz, sy},
                                           QuadSides{sw, sy, sx, sz}})
                    rows.push_back({CanonicalQuad(t), area});
            }
        }
        if (ListStopRequested(ctx)) return false;
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    for (const CyclicRow& row : rows) {
        std::string text = QuadCells(w, row.sides, row.area);
        uint64_t d1, d2;
        if (IntegralDiagonals(row.sides, &d1, &d2))
            Concat8(&text, "  ", PadLeft(w.side - 1, Dec(static_cast<int64_t>(d1))),
                    PadLeft(w.side, Dec(static_cast<int64_t>(d2))));
        cells->push_back(text);
    }
    return true;
}

}  // namespace

Result ListCyclicQuadrilaterals(CalcContext* ctx, uint32_t maxPerimeter, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::cyclicQuads, maxPerimeter)) return code;
    const QuadWidths w = QuadWidthsFor(maxPerimeter);
    std::string header = QuadHeader(w);
    Concat8(&header, "  ", PadLeft(w.side - 1, "p"), PadLeft(w.side, "q"));
    return WalkQuadPerimeters(ctx, maxPerimeter, kStrInscribedQuads, header, FindCyclic, out);
}
