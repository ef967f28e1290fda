// Every Pythagorean triple that contains a given number.
#include <algorithm>
#include <vector>

#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

struct Triple {
    std::string entry[3];
    bool primitive;
};

Triple MakeTriple(uint32_t a, uint32_t b, uint32_t c) {
    return Triple{{Dec(a), Dec(b), Dec(c)}, Gcd32(a, c) < 2};
}

}  // namespace

Result ListCommonEntry(CalcContext*, uint32_t number, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::commonEntry, number)) return code;
    const uint32_t n = number, n2 = n * n;  // n <= 65535: n^2 fits 32 bits
    std::vector<Triple> found;

    // The number as hypotenuse, legs a < b.
    const uint32_t u = static_cast<uint32_t>(std::ceil(n * std::sqrt(0.5)));
    for (uint32_t a = 3; a < u; ++a) {
        const uint32_t s = n2 - a * a, b = TruncSqrt(s);
        if (b * b == s) found.push_back(MakeTriple(a, b, n));
    }
    // The number as a leg: n^2 = (h - o)(h + o) with d = h - o of n's parity,
    // taken in decreasing d, so hypotenuses come increasing.
    for (int64_t d = static_cast<int64_t>(n) - 2; d >= 1; d -= 2) {
        const uint32_t du = static_cast<uint32_t>(d);
        if (n2 % du != 0 || (n2 / du + du) % 2 != 0) continue;
        const uint32_t h = (n2 / du + du) / 2, o = (n2 / du - du) / 2;
        found.push_back(MakeTriple(std::min(o, n), std::max(o, n), h));
    }

    size_t longest[3] = {1, 1, 1};
    for (const Triple& t : found)
        for (int i = 0; i < 3; ++i) longest[i] = std::max(longest[i], t.entry[i].size());
    int width[3];
    for (int i = 0; i < 3; ++i) width[i] = static_cast<int>(longest[i]) + 2;

    std::string rule;
    HyphenRule(&rule, static_cast<int>(longest[0] + longest[1] + longest[2]) + 7, false);
    out->text = PadLeft(width[0], "a") + PadLeft(width[1], "b") + PadLeft(width[2], "c") + "\r\n" +
                rule + "\r\n";
    for (const Triple& t : found) {
        std::string row;
        Concat8(&row, PadLeft(width[0], t.entry[0]), PadLeft(width[1], t.entry[1]),
                PadLeft(width[2], t.entry[2]), t.primitive ? "*" : "", "\r\n");
        (void)AppendListLine(out, row);  // a short list: a refusal is ignored
    }
    out->caption = std::string(OxString(kStrTriples)) + " [" + OxString(kStrCommonNumber) + " = " +
                   Dec(n) + "] : " + Dec(static_cast<uint32_t>(found.size()));
    return Result::kOk;
}
