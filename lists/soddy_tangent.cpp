// Mutually tangent circles resting on one line and spheres resting on one
// plane, with whole curvatures and no common factor.
#include <algorithm>
#include <array>
#include <vector>

#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/soddy_rows.h"
#include "resources/string_ids.h"

// Tangent circles of radii r, r' on a line touch it sqrt(4 r r') apart, so
// the middle one of three obeys sqrt d = sqrt b + sqrt c: d = b + c +
// 2 sqrt(bc), and bc is a square. With g = gcd(b, c) the coprime b/g and c/g
// have a square product, so each is a square: b = g s^2, c = g t^2 with
// gcd(s, t) = 1, and d = g (s + t)^2. As s^2 and t^2 are coprime,
// gcd(b, c, d) = g: the primitive rows are exactly b = s^2, c = t^2,
// d = (s + t)^2 with s <= t coprime. Rows ascend by d = u^2, u = s + t, then
// by b.
Result ListSoddyLine(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::soddyLine, maxCurvature)) return code;
    const int w = DecDigits(maxCurvature) + 1;
    ListStatus(out, OxString(kStrPressQToQuit));
    OpenSoddyTable(out, {{"b", w}, {"c", w}, {"d", w}}, 0);

    SoddyRun run(ctx, out);
    uint64_t u = 2;
    for (; u * u <= maxCurvature; ++u) {
        for (uint64_t s = 1; 2 * s <= u; ++s) {
            if (Gcd64(s, u) != 1) continue;
            std::string row;
            Concat8(&row, PadLeft(w, Dec(static_cast<int64_t>(s * s))),
                    PadLeft(w, Dec(static_cast<int64_t>((u - s) * (u - s)))),
                    PadLeft(w, Dec(static_cast<int64_t>(u * u))), "\r\n");
            if (!run.Row(row)) break;
        }
        if (!run.Poll()) break;
    }
    run.Caption(kStrCirclesOnLine, "d", maxCurvature, u * u);
    return run.stopped() ? Result::kStopped : Result::kOk;
}

// The plane is a fifth sphere of curvature 0, so (b+c+d+e)^2 =
// 3(b^2+c^2+d^2+e^2). Fixing b and e, X = b + e - c and Y = b + e - d lie on
// X^2 - XY + Y^2 = 3be; then 2X - Y is a multiple 3U of 3 and Y^2 + 3U^2 =
// 4be. b <= c <= d <= e reads X <= e, X >= Y (3U^2 >= be) and Y >= b
// (3U^2 <= 4be - b^2), so for each largest e and smallest b only
// about 0.6 sqrt(be) values of U are tried: O(bound^3) in all, not the
// O(bound^4) of every quadruple. Rows ascend by e, then b, c.
Result ListSoddyPlane(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::soddyPlane, maxCurvature)) return code;
    const int w = DecDigits(maxCurvature) + 1;
    ListStatus(out, OxString(kStrPressQToQuit));
    OpenSoddyTable(out, {{"b", w}, {"c", w}, {"d", w}, {"e", w}}, 0);

    SoddyRun run(ctx, out);
    std::vector<std::array<uint64_t, 3>> found;  // (b, c, d) of one e
    uint64_t e = 1;
    for (; e <= maxCurvature; ++e) {
        found.clear();
        for (uint64_t b = 1; b <= e && !run.stopped(); ++b) {
            const uint64_t be = b * e;
            uint64_t u = TruncSqrt(be / 3);
            while (3 * u * u < be) ++u;
            // Y >= b keeps 3U <= 2e - Y <= 2e - b.
            for (; 3 * u <= 2 * e - b && 3 * u * u + b * b <= 4 * be; ++u) {
                uint64_t y;
                if (!ExactSquare(4 * be - 3 * u * u, &y) || (y + u) % 2 != 0) continue;
                const uint64_t x = (y + 3 * u) / 2;
                if (x > e || Gcd64(Gcd64(b, e), Gcd64(b + e - x, b + e - y)) != 1) continue;
                found.push_back({b, b + e - x, b + e - y});
            }
            run.Poll();
        }
        std::sort(found.begin(), found.end());
        for (const auto& f : found) {
            std::string row;
            Concat8(&row, PadLeft(w, Dec(static_cast<int64_t>(f[0]))),
                    PadLeft(w, Dec(static_cast<int64_t>(f[1]))),
                    PadLeft(w, Dec(static_cast<int64_t>(f[2]))),
                    PadLeft(w, Dec(static_cast<int64_t>(e))), "\r\n");
            if (!run.Row(row)) break;
        }
        if (run.stopped()) break;
    }
    run.Caption(kStrSpheresOnPlane, "e", maxCurvature, e);
    return run.stopped() ? Result::kStopped : Result::kOk;
}
