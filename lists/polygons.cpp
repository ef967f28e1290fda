// Random search for convex lattice polygons whose m sides all have squared
// length N and no two of which are parallel.
#include <vector>

#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/two_squares.h"
#include "resources/result.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

struct EdgeVector {
    int32_t x, y;
};

// The vectors of squared length n ordered by direction, four quarters of q
// entries; entry j + 2q is the opposite of entry j. A representation (x, 0)
// also yields (0, x) at the end of the first quarter, the same vector as the
// first of the second quarter: that double entry is part of the search.
std::vector<EdgeVector> EdgeVectors(uint32_t n) {
    std::vector<SquarePair> l = TwoSquareRepresentations(n);
    for (size_t i = l.size(); i-- > 0;)
        if (l[i].y < l[i].x) l.push_back({l[i].y, l[i].x});
    const size_t q = l.size();
    std::vector<EdgeVector> table(4 * q);
    for (size_t i = 0; i < q; ++i) {
        const int32_t x = static_cast<int32_t>(l[i].x), y = static_cast<int32_t>(l[i].y);
        table[i] = {x, y};
        table[q + i] = {-y, x};
        table[2 * q + i] = {-x, -y};
        table[3 * q + i] = {y, -x};
    }
    return table;
}

// One round: m sides drawn, the first two from the first quarter, none
// parallel to an earlier one. Answers the chosen indices in increasing order
// (the sides in order of direction) when they close up, else nothing.
// Requires 2q >= m, so that every round can complete.
bool DrawPolygon(const std::vector<EdgeVector>& table, uint32_t m, ListRandom* rng,
                 std::vector<uint32_t>* sides) {
    const uint32_t q = static_cast<uint32_t>(table.size() / 4);
    std::vector<uint8_t> available(4 * q, 1), chosen(4 * q, 0);
    int64_t sx = 0, sy = 0;
    for (uint32_t k = 0; k < m;) {
        const uint32_t r = k < 2 ? static_cast<uint32_t>(rng->Next()) % q
                                 : q + static_cast<uint32_t>(rng->Next()) % (3 * q);
        if (!available[r]) continue;
        available[r] = 0;
        chosen[r] = 1;
        sx += table[r].x;
        sy += table[r].y;
        ++k;
        available[(r + 2 * q) % (4 * q)] = 0;
    }
    if (sx != 0 || sy != 0) return false;
    sides->clear();
    for (uint32_t i = 0; i < 4 * q; ++i)
        if (chosen[i]) sides->push_back(i);
    return true;
}

// A new polygon is refused when it has the same side as an earlier one at any
// position, not only when it equals it: the stricter test is the search's own.
bool SharesAPosition(const std::vector<std::vector<uint32_t>>& found,
                     const std::vector<uint32_t>& sides) {
    for (const std::vector<uint32_t>& earlier : found)
        for (size_t j = 0; j < sides.size(); ++j)
            if (earlier[j] == sides[j]) return true;
    return false;
}

}  // namespace

Result ListPolygons(CalcContext* ctx, uint32_t squaredLength, uint32_t sides, uint32_t maxRounds,
                    ListRandom* rng, ListOutput* out) {
    if (Result code = CheckPolygonInputs(squaredLength, sides)) return code;
    const std::vector<EdgeVector> table = EdgeVectors(squaredLength);
    const uint32_t q = static_cast<uint32_t>(table.size() / 4);

    // Newest first, as listed.
    std::vector<std::vector<uint32_t>> found;
    // Fewer than m non-parallel directions (or none at all): no round could end.
    if (2 * q >= sides) {
        const std::string quit = OxString(kStrPressQToQuit);
        ListStatus(out, quit);
        std::vector<uint32_t> polygon;
        for (uint32_t round = 0; round < maxRounds && round < kPolygonRoundCap; ++round) {
            if (DrawPolygon(table, sides, rng, &polygon) && !SharesAPosition(found, polygon)) {
                found.insert(found.begin(), polygon);
                ListStatus(out, std::string(OxString(kStrFound)) + ": " +
                                    Dec(static_cast<uint32_t>(found.size())) + " [" + quit + "]");
            }
            if (ListStopRequested(ctx)) break;
        }
    }

    out->text = table.empty() ? ResultMessage(Result::kNothingToShow) : "";
    if (!table.empty()) {
        const int w = DecDigits(static_cast<uint32_t>(table.front().x)) + 1;
        std::string rule;
        HyphenRule(&rule, 2 * w + 6, false);
        rule += "\r\n";
        // Rows past the ceiling are left out; the caption still counts every
        // polygon found.
        for (const std::vector<uint32_t>& polygon : found) {
            for (uint32_t index : polygon) {
                std::string row;
                Concat8(&row, "[", PadLeft(w, Dec(static_cast<int64_t>(table[index].x))), " , ",
                        PadLeft(w, Dec(static_cast<int64_t>(table[index].y))), "]\r\n");
                (void)AppendListLine(out, row);
            }
            (void)AppendListLine(out, rule);
        }
    }
    out->caption = std::string(OxString(kStrPolygons)) + " [" + OxString(kStrSides) + " " +
                   Dec(sides) + ", " + OxString(kStrSquaredLength) + " " + Dec(squaredLength) +
                   "] : " + Dec(static_cast<uint32_t>(found.size()));
    // The search has no other end than the user's stop: that is its normal end.
    return Result::kOk;
}
