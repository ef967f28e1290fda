// Pythagorean quadruples a^2 + b^2 + c^2 = d^2 with d between two bounds.
#include <algorithm>
#include <vector>

#include "lists/int_math.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

// The search keeps at most this many records (one more ends it).
constexpr uint32_t kQuadRecordCap = 50000;

struct Quad {
    uint32_t leg[3];  // in display order
    uint32_t d;
    bool primitive;
};

}  // namespace

Result ListQuadruples(CalcContext* ctx, const QuadOptions& options, ListOutput* out) {
    if (Result code = CheckQuadBounds(options.minLength, options.maxLength)) return code;
    std::vector<Quad> found;
    uint32_t firstD = 0, lastD = 0;
    bool stopped = false;
    ListStatus(out, OxString(kStrPressQToQuit));

    // Legs are found as a >= b >= c, each quadruple once.
    for (uint32_t d = options.minLength; d <= options.maxLength && !stopped; ++d) {
        const uint32_t lowA = static_cast<uint32_t>(d * std::sqrt(1.0 / 3.0));
        const uint32_t firstA = options.zeros && !options.primitiveOnly ? d : d - 1;
        for (uint32_t a = firstA; a > lowA && !stopped; --a) {
            const uint32_t s = d * d - a * a;
            uint32_t b = std::min(a, TruncSqrt(s));
            if (b * b == s && !options.zeros) --b;
            // For s = 0 the lower end drops below 0 and wraps: the b range is then empty.
            uint32_t lowB = static_cast<uint32_t>(std::sqrt(s / 2.0L));
            if (2 * lowB * lowB == s) --lowB;
            for (; b > lowB; --b) {
                const uint32_t r = s - b * b, c = TruncSqrt(r);
                if (c * c == r) {
                    const bool repeated = a == b || b == c;
                    const bool primitive = Gcd32(Gcd32(a, b), d) == 1;
                    const bool kindOk = options.kind == QuadKind::any ||
                                        (options.kind == QuadKind::distinct && !repeated) ||
                                        (options.kind == QuadKind::repeats && repeated);
                    if ((!options.primitiveOnly || primitive) && kindOk) {
                        Quad q = options.ascending ? Quad{{c, b, a}, d, primitive}
                                                   : Quad{{a, b, c}, d, primitive};
                        found.push_back(q);
                        if (firstD == 0) firstD = d;
                        lastD = d;
                    }
                }
                if (ListStopRequested(ctx) || found.size() > kQuadRecordCap) {
                    stopped = true;
                    break;
                }
            }
        }
    }
    // A complete search shown ascending is ordered by d, then by the first leg.
    if (options.ascending && !stopped)
        std::stable_sort(found.begin(), found.end(), [](const Quad& x, const Quad& y) {
            return x.d != y.d ? x.d < y.d : x.leg[0] < y.leg[0];
        });

    // From here on the bounds are those of the d actually present.
    const uint32_t minD = firstD, maxD = lastD;
    const bool dColumn = minD != maxD;
    const int w = DecDigits(maxD) + 1;
    const bool stars = !options.primitiveOnly;
    const std::string dHeader = dColumn ? PadLeft(w + 1, "d") : "";
    out->text = PadLeft(w, "a") + PadLeft(w, "b") + PadLeft(w, "c") + dHeader + "\r\n";
    HyphenRule(&out->text, 3 * w + static_cast<int>(dHeader.size()) + (stars ? 1 : 0), true);
    out->text += "\r\n";
    uint32_t count = 0;
    for (const Quad& q : found) {
        std::string row;
        Concat8(&row, PadLeft(w, Dec(q.leg[0])), PadLeft(w, Dec(q.leg[1])),
                PadLeft(w, Dec(q.leg[2])), dColumn ? PadLeft(w + 1, Dec(q.d)) : "",
                q.primitive && stars ? "*" : "", "\r\n");
        if (AppendListLine(out, row)) ++count;
    }

    out->caption = std::string(OxString(kStrQuadruples)) + " [";
    if (options.primitiveOnly) out->caption += std::string(OxString(kStrPrimitive)) + "; ";
    if (options.kind == QuadKind::distinct)
        out->caption += std::string(OxString(kStrDistinct)) + "; ";
    if (options.kind == QuadKind::repeats)
        out->caption += std::string(OxString(kStrRepeats)) + "; ";
    if (minD < maxD)
        Concat8(&out->caption, Dec(minD - 1), " < ", OxString(kStrLength), " < ", Dec(maxD + 1));
    else
        Concat8(&out->caption, OxString(kStrLength), " = ", Dec(maxD));
    out->caption += "] : " + Dec(count);
    return stopped && found.size() <= kQuadRecordCap ? Result::kStopped : Result::kOk;
}
