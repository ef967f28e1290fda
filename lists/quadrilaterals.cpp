#include "lists/quadrilaterals.h"

#include <algorithm>

#include "lists/int_math.h"
#include "lists/triangles.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

// Bit r is set when r is a square modulo 64: 12 residues of 64, so most
// candidates leave before the root is taken.
constexpr uint64_t SquaresMod64() {
    uint64_t mask = 0;
    for (uint64_t r = 0; r < 64; ++r) mask |= uint64_t{1} << (r * r % 64);
    return mask;
}
constexpr uint64_t kSquaresMod64 = SquaresMod64();

}  // namespace

QuadSides CanonicalQuad(const QuadSides& t) {
    QuadSides best = t;
    for (int i = 0; i < 4; ++i) {
        const QuadSides forward = {t[i], t[(i + 1) % 4], t[(i + 2) % 4], t[(i + 3) % 4]};
        const QuadSides backward = {t[i], t[(i + 3) % 4], t[(i + 2) % 4], t[(i + 1) % 4]};
        best = std::min({best, forward, backward});
    }
    return best;
}

bool ExactSqrt(uint64_t v, uint64_t* root) {
    if ((kSquaresMod64 >> (v % 64) & 1) == 0) return false;
    const uint64_t r = TruncSqrt(v);
    *root = r;
    return r * r == v;
}

QuadWidths QuadWidthsFor(uint32_t maxPerimeter) {
    const uint64_t maxArea = uint64_t{maxPerimeter} * maxPerimeter / 16;
    return {PerimeterWidth(maxPerimeter), DecDigits(maxPerimeter / 2) + 1,
            std::max(static_cast<int>(std::string(OxString(kStrArea)).size()), DecDigits(maxArea))};
}

std::string QuadCells(const QuadWidths& w, const QuadSides& t, uint64_t area) {
    std::string cells;
    Concat8(&cells, PadLeft(w.side + 1, Dec(t[0])), PadLeft(w.side, Dec(t[1])),
            PadLeft(w.side, Dec(t[2])), PadLeft(w.side, Dec(t[3])), "  ",
            PadLeft(w.area, Dec(static_cast<int64_t>(area))));
    return cells;
}

Result WalkQuadPerimeters(CalcContext* ctx, uint32_t maxPerimeter, int nounId,
                          const std::string& header, QuadFinder find, ListOutput* out) {
    const QuadWidths w = QuadWidthsFor(maxPerimeter);
    ListStatus(out, OxString(kStrPressQToQuit));
    out->text = header + "\r\n";
    HyphenRule(&out->text, static_cast<int>(header.size()), true);
    out->text += "\r\n";

    uint32_t count = 0, upper = maxPerimeter + 1;
    bool stopped = false;
    std::vector<std::string> cells;
    for (uint32_t p = 4; p <= maxPerimeter && !stopped; p += 2) {
        cells.clear();
        if (!find(ctx, p, w, &cells)) {
            stopped = true;
            upper = p;
            break;
        }
        for (size_t i = 0; i < cells.size(); ++i) {
            const std::string perimeter = i == 0 ? Dec(p) : std::string();
            if (!OfferListRow(ctx, out, PadLeft(w.perimeter, perimeter) + cells[i] + "\r\n")) {
                stopped = true;
                upper = i == 0 ? p : p + 1;
                break;
            }
            ++count;
        }
        if (!stopped && p + 2 <= maxPerimeter && ListStopRequested(ctx)) {
            stopped = true;
            upper = p + 1;
        }
    }
    std::string caption;
    Concat8(&caption, OxString(nounId), " [", OxString(kStrPerimeter), " < ", Dec(upper),
            "] : ", Dec(count));
    out->caption = caption;
    return stopped ? Result::kStopped : Result::kOk;
}

std::string QuadHeader(const QuadWidths& w) {
    std::string header;
    Concat8(&header, PadLeft(w.perimeter, OxString(kStrPerimeter)), PadLeft(w.side + 1, "a"),
            PadLeft(w.side, "b"), PadLeft(w.side, "c"), PadLeft(w.side, "d"), "  ",
            PadLeft(w.area, OxString(kStrArea)));
    return header;
}
