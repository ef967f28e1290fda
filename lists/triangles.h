// The enumeration shared by the Heronian and median lists: primitive
// integer triangles a <= b <= c of even perimeter, by increasing perimeter.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "bigint/context.h"
#include "lists/list_frame.h"

struct TriangleWalk {
    uint32_t minPerimeter, maxPerimeter;
    bool isosceles;   // include triangles with two equal sides (a = 2 never occurs)
};

// Calls visit(p, a, b, c) for every primitive triangle, polling the context
// after each smallest side a. visit answers false to end the run (a refused
// row). Answers 0 when the range was walked, -1 when the user stopped it, 4
// when visit ended it; *lastPerimeter is the perimeter reached.
int WalkTriangles(CalcContext* ctx, const TriangleWalk& walk,
                  const std::function<bool(uint32_t p, uint32_t a, uint32_t b, uint32_t c)>& visit,
                  uint32_t* lastPerimeter);

// The width of the perimeter column: the digits of max perimeter, at least
// the length of "perim".
int PerimeterWidth(uint32_t maxPerimeter);

// " [min - 1 < perim < upper] : count" after the list's noun.
std::string TriangleCaption(int nounId, uint32_t minPerimeter, uint32_t upper, uint32_t count);
