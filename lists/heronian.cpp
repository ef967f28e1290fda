// Primitive triangles with integer sides and integer area.
#include <algorithm>

#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/triangles.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

Result ListHeronian(CalcContext* ctx, const TriangleOptions& options, ListOutput* out) {
    if (Result code = CheckPerimeterBounds(options.minPerimeter, options.maxPerimeter)) return code;
    const uint32_t maxP = options.maxPerimeter;
    const int w = DecDigits(maxP), perimWidth = PerimeterWidth(maxP);
    // The area is below p^2 / 20.8; the column is sized from (max + 1)^2 * 0.15.
    const double maxNext = static_cast<double>(maxP) + 1;
    const int areaWidth = std::max(static_cast<int>(std::string(OxString(kStrArea)).size()),
                                   DecDigits(static_cast<uint64_t>(maxNext * maxNext * 0.15)));

    ListStatus(out, OxString(kStrPressQToQuit));
    out->text.clear();
    Concat8(&out->text, PadLeft(perimWidth, OxString(kStrPerimeter)), PadLeft(w + 2, "a"),
            PadLeft(w + 1, "b"), PadLeft(w + 1, "c"), "  ", PadLeft(areaWidth, OxString(kStrArea)),
            "\r\n");
    HyphenRule(&out->text, static_cast<int>(out->text.size()), true);
    out->text += "\r\n";

    uint32_t count = 0, lastRowPerimeter = 0, lastP = 0;
    auto visit = [&](uint32_t p, uint32_t a, uint32_t b, uint32_t c) {
        if (!options.right && a * a + b * b == c * c) return true;
        // 16 area^2 = p(p - 2a) (p - 2b)(p - 2c); both factors are below 2^32
        // for perimeters below 65536, so the product is exact in 64 bits.
        const uint64_t z = uint64_t{p * (p - 2 * a)} * uint64_t{(p - 2 * b) * (p - 2 * c)};
        const uint64_t root = ISqrt64(z);
        if (root * root != z || !PrimitiveTriangle(a, b, c)) return true;
        std::string row = p != lastRowPerimeter ? PadLeft(perimWidth, Dec(p))
                                                : std::string(static_cast<size_t>(perimWidth), ' ');
        lastRowPerimeter = p;
        Concat8(&row, PadLeft(w + 2, Dec(a)), PadLeft(w + 1, Dec(b)), PadLeft(w + 1, Dec(c)), "  ",
                PadLeft(areaWidth, Dec(static_cast<uint32_t>(root / 4))), "\r\n");
        out->text += row;  // at most a few thousand rows: no ceiling test
        ++count;
        return true;
    };
    const Result code =
        WalkTriangles(ctx, {options.minPerimeter, maxP, options.isosceles}, visit, &lastP);
    const uint32_t upper = code == Result::kStopped ? lastP + 1 : maxP + 1;
    out->caption = TriangleCaption(kStrHeronian, options.minPerimeter, upper, count);
    return code;
}
