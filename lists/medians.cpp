// Primitive triangles with rational medians, and with perpendicular medians.
#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/triangles.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

// The three medians m_a, m_b, m_c, each as r/2 when 4m^2 = r^2 (written
// reduced), else as [4m^2]; each followed by a blank. *rational counts the
// rational ones. For sides below 32768, 4m^2 fits 32 bits.
std::string MediansText(uint32_t a, uint32_t b, uint32_t c, int* rational) {
    const uint32_t aa = a * a, bb = b * b, cc = c * c;
    const uint32_t fourSquares[3] = {2 * bb + 2 * cc - aa, 2 * cc + 2 * aa - bb,
                                     2 * aa + 2 * bb - cc};
    std::string text;
    *rational = 0;
    for (uint32_t v : fourSquares) {
        const uint32_t r = TruncSqrt(v);
        if (r * r == v) {
            ++*rational;
            text += r % 2 == 0 ? Dec(r / 2) : Dec(r) + "/2";
            text += " ";
        } else {
            Concat8(&text, "[", Dec(v), "] ");
        }
    }
    return text;
}

struct MedianList {
    int nounId;
    TriangleWalk walk;
    // Which triangles are considered, and which of them make rows given k.
    bool (*considered)(uint32_t a, uint32_t b, uint32_t c, const TriangleOptions& o);
    bool (*listed)(int rational, const TriangleOptions& o);
};

Result RunMedianList(CalcContext* ctx, const MedianList& list, const TriangleOptions& options,
                     ListOutput* out) {
    const uint32_t maxP = options.maxPerimeter;
    const int w = DecDigits(maxP), perimWidth = PerimeterWidth(maxP);
    ListStatus(out, OxString(kStrPressQToQuit));
    out->text.clear();
    Concat8(&out->text, PadLeft(perimWidth, OxString(kStrPerimeter)), PadLeft(w + 2, "a"),
            PadLeft(w + 1, "b"), PadLeft(w + 1, "c"), "   ", OxString(kStrMedians), "\r\n");
    HyphenRule(&out->text, static_cast<int>(out->text.size()), true);
    out->text += "\r\n";

    uint32_t count = 0, lastRowPerimeter = 0, lastP = 0;
    auto visit = [&](uint32_t p, uint32_t a, uint32_t b, uint32_t c) {
        if (!list.considered(a, b, c, options) || !PrimitiveTriangle(a, b, c)) return true;
        int rational = 0;
        const std::string medians = MediansText(a, b, c, &rational);
        if (!list.listed(rational, options)) return true;
        // Later rows of a perimeter get w + 2 blanks, not the perimeter
        // column's width: the misalignment for w != 3 is the list's own.
        std::string row = p != lastRowPerimeter ? PadLeft(perimWidth, Dec(p))
                                                : std::string(static_cast<size_t>(w + 2), ' ');
        const char* stars = rational == 3 ? " **" : rational == 2 ? "  *" : "   ";
        Concat8(&row, PadLeft(w + 2, Dec(a)), PadLeft(w + 1, Dec(b)), PadLeft(w + 1, Dec(c)), stars,
                medians, "\r\n");
        if (!AppendListLine(out, row)) return false;
        lastRowPerimeter = p;
        ++count;
        return true;
    };
    TriangleWalk walk = list.walk;
    walk.minPerimeter = options.minPerimeter;
    walk.maxPerimeter = maxP;
    Result code = WalkTriangles(ctx, walk, visit, &lastP);
    const uint32_t upper = code == Result::kOk ? maxP + 1 : lastP + 1;
    out->caption = TriangleCaption(list.nounId, options.minPerimeter, upper, count);
    if (code == Result::kNoMoreRoom) code = Result::kOk;  // the list simply ends at the ceiling
    return code;
}

}  // namespace

Result ListRationalMedians(CalcContext* ctx, const TriangleOptions& options, ListOutput* out) {
    if (Result code = CheckPerimeterBounds(options.minPerimeter, options.maxPerimeter)) return code;
    MedianList list{
        kStrRationalMedians,
        {0, 0, options.isosceles},
        [](uint32_t a, uint32_t b, uint32_t c, const TriangleOptions& o) {
            return o.right || a * a + b * b != c * c;
        },
        [](int k, const TriangleOptions& o) { return k >= 2 || (k >= 1 && !o.atLeastTwo); }};
    return RunMedianList(ctx, list, options, out);
}

Result ListPerpendicularMedians(CalcContext* ctx, const TriangleOptions& options, ListOutput* out) {
    if (Result code = CheckPerimeterBounds(options.minPerimeter, options.maxPerimeter)) return code;
    // The medians to b and c are perpendicular exactly when b^2 + c^2 = 5a^2;
    // such a triangle is never isosceles nor right.
    MedianList list{kStrPerpendicularMedians,
                    {0, 0, false},
                    [](uint32_t a, uint32_t b, uint32_t c, const TriangleOptions&) {
                        return b * b + c * c == 5 * a * a;
                    },
                    [](int, const TriangleOptions&) { return true; }};
    return RunMedianList(ctx, list, options, out);
}
