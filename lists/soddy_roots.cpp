// Root quadruples of the integral circle packings and root quintuples of the
// integral sphere packings, by the curvature x = -a of the outer circle or
// sphere.
#include <algorithm>

#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/soddy_rows.h"
#include "resources/string_ids.h"

namespace {

// Column widths from the bound n: "-n" in the first column; no other entry
// passes n^2 + n + 1 (b = x + 1 and the last entry x + x^2 + 1 in both lists).
int FirstWidth(uint64_t n) { return DecDigits(n) + 2; }
int EntryWidth(uint64_t n) { return DecDigits(n * n + n + 1) + 1; }

}  // namespace

// With x = -a, b = x + d1, c = x + d2: ab + bc + ca = d1 d2 - x^2 must be a
// square m^2 (Descartes: d = a + b + c +- 2 sqrt(ab + bc + ca)), and the root
// takes the smaller d = x + d1 + d2 - 2m. Then b <= c is d1 <= d2, c <= d is
// 2m <= d1, and a + b + c >= d is m >= 0; d1^2 <= d1 d2 = x^2 + m^2 <= x^2 +
// d1^2 / 4 bounds d1 by 2x / sqrt 3. A common factor of x, d1, d2 has its
// square dividing m^2, so gcd(x, d1, d2) = 1 is the primitivity. For one x
// the rows come out ascending in d1 and, d2 growing with m, in m.
Result ListSoddyCircles(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::soddyCircles, maxCurvature)) return code;
    const int wa = FirstWidth(maxCurvature), w = EntryWidth(maxCurvature);
    ListStatus(out, OxString(kStrPressQToQuit));
    OpenSoddyTable(out, {{"a", wa}, {"b", w}, {"c", w}, {"d", w}}, 1);

    SoddyRun run(ctx, out);
    uint64_t x = 1;
    for (; x <= maxCurvature; ++x) {
        const uint64_t xx = x * x;
        for (uint64_t d1 = 1; 3 * d1 * d1 <= 4 * xx && !run.stopped(); ++d1) {
            for (uint64_t m = 0; 2 * m <= d1; ++m) {
                const uint64_t s = xx + m * m;
                if (s % d1 != 0) continue;
                const uint64_t d2 = s / d1;
                if (d2 < d1 || Gcd64(Gcd64(x, d1), d2) != 1) continue;
                // The packing has a mirror symmetry when two of b, c, d agree.
                const bool symmetric = d1 == d2 || d1 == 2 * m;
                std::string row;
                Concat8(&row, PadLeft(wa, Dec(-static_cast<int64_t>(x))),
                        PadLeft(w, Dec(static_cast<int64_t>(x + d1))),
                        PadLeft(w, Dec(static_cast<int64_t>(x + d2))),
                        PadLeft(w, Dec(static_cast<int64_t>(x + d1 + d2 - 2 * m))),
                        symmetric ? "*" : "", "\r\n");
                if (!run.Row(row)) break;
            }
            run.Poll();
        }
        if (run.stopped()) break;
    }
    run.Caption(kStrSoddyCircles, "|a|", maxCurvature, x);
    return run.stopped() ? Result::kStopped : Result::kOk;
}

// With x = -a and b, c, d, e = x + p, x + q, x + r, x + s the equation
// (sum k)^2 = 3 sum k^2 becomes (p+q+r+s)^2 - 3(p^2+q^2+r^2+s^2) = 6x^2.
// For fixed p <= q, R = r - p - q and S = s - p - q then lie on the ellipse
// R^2 - RS + S^2 = 3N, N = pq - x^2, so N >= 0. The root form asks q <= r
// (R >= -p), r <= s (R <= S) and a + b + c + d >= 2e (R >= 2S): with
// A = -S, B = -R that is A <= B <= min(2A, p). On B in [A, 2A] the form
// B^2 - AB + A^2 runs from A^2 to 3A^2, so sqrt N <= A <= sqrt 3N, and B is
// the larger root (A + sqrt(12N - 3A^2)) / 2, which falls as A grows: d
// ascends with A. B <= p bounds 3N by B^2 <= p^2, so q <= x^2/p + p/3, and
// with q >= p, p^2 <= 3x^2 / 2. The search is finite; b > -a holds
// throughout (p >= 1).
Result ListSoddySpheres(CalcContext* ctx, uint32_t maxCurvature, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::soddySpheres, maxCurvature)) return code;
    const int wa = FirstWidth(maxCurvature), w = EntryWidth(maxCurvature);
    ListStatus(out, OxString(kStrPressQToQuit));
    OpenSoddyTable(out, {{"a", wa}, {"b", w}, {"c", w}, {"d", w}, {"e", w}}, 0);

    SoddyRun run(ctx, out);
    uint64_t x = 1;
    for (; x <= maxCurvature; ++x) {
        const uint64_t xx = x * x;
        for (uint64_t p = 1; 2 * p * p <= 3 * xx && !run.stopped(); ++p) {
            // q from max(p, ceil(x^2 / p)) while 3(pq - x^2) <= p^2.
            for (uint64_t q = std::max(p, (xx + p - 1) / p); 3 * p * q <= 3 * xx + p * p; ++q) {
                const uint64_t n = p * q - xx;
                uint64_t a = TruncSqrt(n);
                if (a * a < n) ++a;
                for (; a * a <= 3 * n && a <= p; ++a) {
                    uint64_t root;
                    if (!ExactSquare(12 * n - 3 * a * a, &root) || (a + root) % 2 != 0) continue;
                    const uint64_t b = (a + root) / 2;
                    if (b > p || Gcd64(Gcd64(x, p), Gcd64(q, Gcd64(p + q - b, p + q - a))) != 1)
                        continue;
                    std::string row = PadLeft(wa, Dec(-static_cast<int64_t>(x)));
                    for (uint64_t k : {p, q, p + q - b, p + q - a})
                        row += PadLeft(w, Dec(static_cast<int64_t>(x + k)));
                    row += "\r\n";
                    if (!run.Row(row)) break;
                }
                if (!run.Poll()) break;
            }
        }
        if (run.stopped()) break;
    }
    run.Caption(kStrSoddySpheres, "|a|", maxCurvature, x);
    return run.stopped() ? Result::kStopped : Result::kOk;
}
