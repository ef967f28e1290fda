// The enumeration shared by the Heronian and median lists: primitive
// integer triangles a <= b <= c of even perimeter, by increasing perimeter.
#pragma once

#include <cstdint>
#include <string>

#include "bigint/context.h"
#include "lists/int_math.h"
#include "lists/list_frame.h"

struct TriangleWalk {
    uint32_t minPerimeter, maxPerimeter;
    bool isosceles;  // include triangles with two equal sides (a = 2 never occurs)
};

// Calls visit(p, a, b, c) for every triangle of the range, primitive or not
// (visitors test primitivity after their cheaper tests), polling the context
// after each smallest side a. visit answers false to end the run (a refused
// row). Answers kOk when the range was walked, kStopped when the user stopped
// it, kNoMoreRoom when visit ended it; *lastPerimeter is the perimeter reached.
template <class Visit>
Result WalkTriangles(CalcContext* ctx, const TriangleWalk& walk, Visit&& visit,
                     uint32_t* lastPerimeter) {
    for (uint32_t p = walk.minPerimeter + (walk.minPerimeter & 1u); p <= walk.maxPerimeter;
         p += 2) {
        *lastPerimeter = p;
        const uint32_t s = p / 2;
        // a <= b <= c and c < a + b: b from s + 1 - a up to s - a/2.
        for (uint32_t a = 3; a < (p + 2) / 3; ++a) {
            uint32_t b = s + 1 - a;
            const uint32_t lowest = walk.isosceles ? a : a + 1;
            if (b < lowest) b = lowest;
            uint32_t end = s - (a - 1) / 2;            // b < end
            if (!walk.isosceles && a % 2 == 0) --end;  // keeps b < c
            for (; b < end; ++b)
                if (!visit(p, a, b, p - a - b)) return Result::kNoMoreRoom;
            if (ListStopRequested(ctx)) return Result::kStopped;
        }
    }
    return Result::kOk;
}

inline bool PrimitiveTriangle(uint32_t a, uint32_t b, uint32_t c) {
    return Gcd32(Gcd32(a, b), c) == 1;
}

// The width of the perimeter column: the digits of max perimeter, at least
// the length of "perim".
int PerimeterWidth(uint32_t maxPerimeter);

// " [min - 1 < perim < upper] : count" after the list's noun.
std::string TriangleCaption(int nounId, uint32_t minPerimeter, uint32_t upper, uint32_t count);
