#include "lists/two_squares.h"

#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

std::vector<SquarePair> TwoSquareRepresentations(uint32_t n) {
    std::vector<SquarePair> reps;
    // y <= sqrt(n / 2) <= 46340: y^2 and x^2 + y^2 stay within 32 bits.
    const uint32_t lim = TruncSqrt(static_cast<uint64_t>(n * 0.5));
    for (uint32_t y = 0; y <= lim; ++y) {
        const uint32_t x = TruncSqrt(n - y * y);
        if (x * x + y * y == n) reps.push_back({x, y});
    }
    return reps;
}

Result ListTwoSquares(uint32_t n, ListOutput* out) {
    const std::vector<SquarePair> reps = TwoSquareRepresentations(n);
    // The width is fixed by the first representation, the one with the largest x.
    int width = 5;
    if (!reps.empty()) {
        const uint32_t x = reps.front().x;
        width = x <= 9 ? 1 : x <= 99 ? 2 : x <= 999 ? 3 : x <= 9999 ? 4 : 5;
    }
    out->text.clear();
    for (const SquarePair& r : reps) {
        std::string row;
        Concat8(&row, "[", PadLeft(width, Dec(r.x)), ",", PadLeft(width, Dec(r.y)), "] (",
                Dec(r.x * r.x), " + ", Dec(r.y * r.y));
        row += ")\r\n";
        out->text += row;
    }
    out->caption = Dec(n) + " = " + Dec(static_cast<uint32_t>(reps.size())) + " " +
                   OxString(reps.size() == 1 ? kStrSumOfTwoSquares : kStrSumsOfTwoSquares);
    return Result::kOk;
}
