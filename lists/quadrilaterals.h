// What the inscribed and circumscribed quadrilateral lists share: the form a
// cyclic order of sides is shown in, the column widths, and the walk over
// the perimeters with its rows, stops and caption.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "bigint/context.h"
#include "lists/list_frame.h"

using QuadSides = std::array<uint32_t, 4>;  // in cyclic order

// The least of the eight rotations and reflections of a cyclic order,
// lexicographically: the one form each quadrilateral is listed in.
QuadSides CanonicalQuad(const QuadSides& t);

// The exact root of a square, or false.
bool ExactSqrt(uint64_t v, uint64_t* root);

// Column widths from the largest perimeter: a side (or a diagonal) is below
// half of it, the area at most a sixteenth of its square (the square's).
// The side width includes the blank before the number.
struct QuadWidths {
    int perimeter, side, area;
};
QuadWidths QuadWidthsFor(uint32_t maxPerimeter);

// The cells of one row after the perimeter column: the sides, the area.
std::string QuadCells(const QuadWidths& w, const QuadSides& t, uint64_t area);

// The cells (after the perimeter column) of the rows of one perimeter, in
// the order shown, or false when a poll asked to stop the search.
using QuadFinder = bool (*)(CalcContext* ctx, uint32_t perimeter, const QuadWidths& w,
                            std::vector<std::string>* cells);

// Writes the header and rule, then the rows of the even perimeters 4 to
// maxPerimeter, polling after each perimeter (the finder polls within one),
// and the caption "<noun> [perim < upper] : count". After a stop, upper is
// the first perimeter whose rows are not all listed, plus one when some of
// its rows are.
Result WalkQuadPerimeters(CalcContext* ctx, uint32_t maxPerimeter, int nounId,
                          const std::string& header, QuadFinder find, ListOutput* out);

// The header row up to the area column.
std::string QuadHeader(const QuadWidths& w);
