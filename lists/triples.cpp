// Pythagorean triples by hypotenuse and by generating pair.
#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

// The header of the three side columns, then extra, then a rule of the
// header's length plus ruleExtra.
void OpenTable(ListOutput* out, int w1, int w2, int w3, const char* extra, int ruleExtra) {
    std::string header = PadLeft(w1, "a") + PadLeft(w2, "b") + PadLeft(w3, "c") + extra;
    std::string rule;
    HyphenRule(&rule, static_cast<int>(header.size()) + ruleExtra, false);
    out->text = header + "\r\n" + rule + "\r\n";
}

std::string SidesRow(uint32_t a, uint32_t b, uint32_t c, int w1, int w2, int w3) {
    std::string row;
    Concat8(&row, PadLeft(w1, Dec(a)), PadLeft(w2, Dec(b)), PadLeft(w3, Dec(c)));
    return row;
}

// Appends a row of sides followed by its generators m and n. The row counts
// even when the ceiling refuses it; a refusal marks the list full.
void AppendGeneratedRow(ListOutput* out, std::string row, uint32_t m, uint32_t n, uint32_t* count,
                        bool* full) {
    Concat8(&row, PadLeft(5, Dec(m)), PadLeft(4, Dec(n)), "\r\n");
    ++*count;
    if (!AppendListLine(out, row)) *full = true;
}

struct Widths {
    int w1, w2, w3;
};

// The table of a list made from generators m < n <= bound: sides up to
// 2 bound^2, the first column sized from 0.414 of that, then m and n.
Widths OpenGeneratedTable(ListOutput* out, uint32_t bound) {
    const uint32_t top = 2 * bound * bound;
    const int w2 = DecDigits(top) + 1;
    const int w1 = DecDigits(static_cast<uint32_t>(top * 0.414214));
    ListStatus(out, OxString(kStrPressQToQuit));
    OpenTable(out, w1, w2, w2, "    m   n", 0);
    return {w1, w2, w2};
}

}  // namespace

Result ListHypotenuseTriples(CalcContext* ctx, uint32_t bound, bool primitiveOnly,
                             ListOutput* out) {
    if (Result code = CheckListValue(
            primitiveOnly ? ListKind::primitiveTriples : ListKind::allTriples, bound))
        return code;
    const int w1 = DecDigits(static_cast<uint32_t>(bound * 0.707107));
    const int w2 = DecDigits(bound) + 1, w3 = w2;
    ListStatus(out, OxString(kStrPressQToQuit));
    OpenTable(out, w1, w2, w3, "", primitiveOnly ? 0 : 1);

    uint32_t count = 0, c = 5, lastC = 5;
    bool full = false, stopped = false;
    const uint32_t step = primitiveOnly ? 4 : 1;  // primitive hypotenuses are 1 mod 4
    for (; c <= bound; c += step) {
        lastC = c;
        const uint32_t lim = static_cast<uint32_t>(c * std::sqrt(0.5));
        for (uint32_t b = c - 1; b > lim; --b) {
            // From c = 92683 on the product wraps at 32 bits; the wrapped value
            // is tested as it stands.
            const uint32_t s = (c - b) * (c + b);
            const uint32_t a = TruncSqrt(s);
            if (a * a != s) continue;
            const bool primitive = Gcd32(a, c) == 1;
            if (primitiveOnly && !primitive) continue;
            std::string row = SidesRow(a, b, c, w1, w2, w3);
            if (!primitiveOnly && primitive) row += "*";
            row += "\r\n";
            // Counted before the append; the rest of this hypotenuse is still tried.
            ++count;
            if (!AppendListLine(out, row)) full = true;
        }
        if (ListStopRequested(ctx) || full) {
            stopped = true;
            break;
        }
    }
    const uint32_t shownBound = stopped ? lastC + 1 : bound + 1;
    out->caption = std::string(OxString(kStrTriples)) + " [";
    if (primitiveOnly) out->caption += std::string(OxString(kStrPrimitive)) + "; ";
    Concat8(&out->caption, OxString(kStrHypotenuse), " < ", Dec(shownBound), "] : ", Dec(count));
    return stopped && !full ? Result::kStopped : Result::kOk;
}

Result ListTripleGenerators(CalcContext* ctx, uint32_t bound, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::generators, bound)) return code;
    const auto [w1, w2, w3] = OpenGeneratedTable(out, bound);

    uint32_t count = 0;
    bool full = false, stopped = false;
    for (uint32_t n = 2; n <= bound; ++n) {
        for (uint32_t m = (n % 2 == 1) ? 2 : 1; m < n; m += 2) {
            if (Gcd32(n, m) != 1) continue;
            const uint32_t x = 2 * m * n, y = n * n - m * m, c = n * n + m * m;
            AppendGeneratedRow(out, SidesRow(x < y ? x : y, x < y ? y : x, c, w1, w2, w3), m, n,
                               &count, &full);
        }
        if (full || ListStopRequested(ctx)) {
            stopped = true;
            break;
        }
    }
    out->caption = std::string(OxString(kStrTriples)) + " : " + Dec(count);
    return stopped && !full ? Result::kStopped : Result::kOk;
}

Result ListAngleTriangles(CalcContext* ctx, uint32_t bound, bool angle120, ListOutput* out) {
    if (Result code = CheckListValue(angle120 ? ListKind::tri120 : ListKind::tri60, bound))
        return code;
    const auto [w1, w2, w3] = OpenGeneratedTable(out, bound);
    // The equilateral triangle heads the 60-degree list, outside the count and the ceiling.
    if (!angle120) out->text += SidesRow(1, 1, 1, w1, w2, w3) + "    1   2\r\n";

    uint32_t count = 0;
    bool full = false, stopped = false;
    for (uint32_t n = angle120 ? 2 : 3; n <= bound; ++n) {
        for (uint32_t m = angle120 ? 1 : (n + 1) / 2; m < n; ++m) {
            if (Gcd32(n, m) != 1) continue;
            // Rows sharing the factor 3 (n + m or n - m a multiple of 3) are
            // listed undivided, as computed.
            uint32_t a = n * n - m * m, b, c;
            if (angle120) {
                b = m * m + 2 * m * n;
                c = m * m + m * n + n * n;
            } else {
                b = 2 * m * n - m * m;
                c = m * m + n * n - m * n;
            }
            AppendGeneratedRow(out, SidesRow(a, b, c, w1, w2, w3), m, n, &count, &full);
        }
        if (full || ListStopRequested(ctx)) {
            stopped = true;
            break;
        }
    }
    out->caption = Dec(count) + " " + OxString(angle120 ? kStrPrimitive120 : kStrPrimitive60) + " ";
    return stopped && !full ? Result::kStopped : Result::kOk;
}
