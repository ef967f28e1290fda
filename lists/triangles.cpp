#include "lists/triangles.h"

#include <algorithm>

#include "lists/int_math.h"
#include "resources/strings.h"

int WalkTriangles(CalcContext* ctx, const TriangleWalk& walk,
                  const std::function<bool(uint32_t, uint32_t, uint32_t, uint32_t)>& visit,
                  uint32_t* lastPerimeter) {
    uint32_t p = walk.minPerimeter + (walk.minPerimeter & 1u);
    for (; p <= walk.maxPerimeter; p += 2) {
        *lastPerimeter = p;
        const uint32_t s = p / 2;
        // a <= b <= c and c < a + b: b from s + 1 - a up to s - a/2.
        for (uint32_t a = 3; a < (p + 2) / 3; ++a) {
            uint32_t b = std::max(s + 1 - a, walk.isosceles ? a : a + 1);
            uint32_t end = s - (a - 1) / 2;             // b < end
            if (!walk.isosceles && a % 2 == 0) --end;   // keeps b < c
            for (; b < end; ++b) {
                const uint32_t c = p - a - b;
                if (Gcd32(Gcd32(a, b), c) != 1) continue;
                if (!visit(p, a, b, c)) return kListFull;
            }
            if (ListStopRequested(ctx)) return kListStopped;
        }
    }
    return kListDone;
}

int PerimeterWidth(uint32_t maxPerimeter) {
    return std::max(DecDigits(maxPerimeter), static_cast<int>(std::string(OxString(230)).size()));
}

std::string TriangleCaption(int nounId, uint32_t minPerimeter, uint32_t upper, uint32_t count) {
    std::string caption;
    Concat8(&caption, OxString(nounId), " [", Dec(minPerimeter - 1), " < ", OxString(230), " < ",
            Dec(upper), "] : ");
    return caption + Dec(count);
}
