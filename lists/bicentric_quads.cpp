// Quadrilaterals with both an incircle and a circumcircle, integer sides and
// integer area.
#include <algorithm>
#include <numeric>
#include <vector>

#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/quadrilaterals.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

// A reduced fraction: numerator below the area's width, denominator below a side's.
int InradiusWidth(const QuadWidths& w) {
    return std::max(static_cast<int>(std::string(OxString(kStrInradius)).size()), w.area + w.side);
}

// With a + c = b + d = s, s - a = c and so on: K^2 = abcd. The row (a, b,
// s - a, s - b) with a <= b <= s/2 is the listed form of each; polls after
// each a.
bool FindBicentric(CalcContext* ctx, uint32_t p, const QuadWidths& w,
                   std::vector<std::string>* cells) {
    const uint32_t s = p / 2;
    const int fraction = InradiusWidth(w);
    for (uint32_t a = 1; 2 * a <= s; ++a) {
        const uint64_t ac = uint64_t{a} * (s - a);
        for (uint32_t b = a; 2 * b <= s; ++b) {
            uint64_t area;
            if (!ExactSqrt(ac * b * (s - b), &area)) continue;
            const uint64_t g = std::gcd(area, uint64_t{s});
            std::string r = Dec(static_cast<int64_t>(area / g));
            if (g != s) r += "/" + Dec(s / static_cast<uint32_t>(g));
            cells->push_back(QuadCells(w, {a, b, s - a, s - b}, area) + "  " +
                             PadLeft(fraction, r));
        }
        if (ListStopRequested(ctx)) return false;
    }
    return true;
}

}  // namespace

Result ListBicentricQuadrilaterals(CalcContext* ctx, uint32_t maxPerimeter, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::bicentricQuads, maxPerimeter)) return code;
    const QuadWidths w = QuadWidthsFor(maxPerimeter);
    const std::string header =
        QuadHeader(w) + "  " + PadLeft(InradiusWidth(w), OxString(kStrInradius));
    return WalkQuadPerimeters(ctx, maxPerimeter, kStrCircumscribedQuads, header, FindBicentric,
                              out);
}
