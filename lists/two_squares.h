// The representations n = x^2 + y^2 with x >= y >= 0, in increasing y.
#pragma once

#include <cstdint>
#include <vector>

struct SquarePair {
    uint32_t x, y;
};

std::vector<SquarePair> TwoSquareRepresentations(uint32_t n);
