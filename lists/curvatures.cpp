// The curvatures of an integral Apollonian circle packing and how many
// circles have each.
//
// A Descartes quadruple k is the curvatures of four mutually tangent circles:
// (k1+k2+k3+k4)^2 = 2(k1^2+k2^2+k3^2+k4^2). Replacing one circle by the other
// circle tangent to the remaining three is the reflection
// S_i: k_i -> 2(sum of the other three) - k_i, and the packing is every
// circle those reflections reach. Reducing the quadruple until no reflection
// lowers its largest entry gives the packing's root (one entry <= 0, the
// enclosing circle). Below the root the reflections form a tree (a node never
// applies the reflection that made it) in which every circle outside the root
// is the new circle of exactly one node and the new curvature never drops, so
// a branch ends where it passes the bound.
#include <algorithm>
#include <memory>
#include <new>
#include <vector>

#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

// Walk nodes between two polls: well under a millisecond of walking.
constexpr uint32_t kNodesPerPoll = 4096;
// The walk runs by rising bounds, each four times the previous (the circles
// up to a bound grow like its 1.3057th power, so the repeats cost about a
// fifth more than one walk); a stop lists the last bound completed.
constexpr uint32_t kFirstStageBound = 1000;
constexpr uint32_t kStageFactor = 4;

struct Node {
    int64_t k[4];
    int made;  // the reflection that made the node; -1 at the root
};

int64_t Reflect(const int64_t k[4], int i) { return 2 * (k[0] + k[1] + k[2] + k[3] - k[i]) - k[i]; }

bool IsDescartes(const int64_t k[4]) {
    __int128 sum = 0, squares = 0;
    for (int i = 0; i < 4; ++i) {
        sum += k[i];
        squares += static_cast<__int128>(k[i]) * k[i];
    }
    return sum * sum == 2 * squares;
}

// Reduces a Descartes quadruple with positive sum to the root of its packing.
// The sum stays positive and drops at every step, so this ends; entries stay
// within three times the largest |k| typed.
void ReduceToRoot(int64_t k[4]) {
    for (;;) {
        int top = 0;
        for (int i = 1; i < 4; ++i)
            if (k[i] > k[top]) top = i;
        const int64_t reflected = Reflect(k, top);
        if (reflected >= k[top]) return;
        k[top] = reflected;
    }
}

// Adds to count[c] the circles with curvature lo < c <= hi, count indexed up
// to hi. False when the context stopped the walk (the band is then partial).
bool CountBand(CalcContext* ctx, const int64_t root[4], int64_t lo, int64_t hi, uint32_t* count,
               std::vector<Node>* stack, uint32_t* sincePoll) {
    for (int i = 0; i < 4; ++i)
        if (root[i] > lo && root[i] <= hi) ++count[root[i]];
    stack->clear();
    stack->push_back(Node{{root[0], root[1], root[2], root[3]}, -1});
    while (!stack->empty()) {
        const Node node = stack->back();
        stack->pop_back();
        for (int j = 0; j < 4; ++j) {
            if (j == node.made) continue;
            const int64_t c = Reflect(node.k, j);
            if (c > hi) continue;
            if (c > lo) ++count[c];
            Node child = node;
            child.k[j] = c;
            child.made = j;
            stack->push_back(child);
        }
        if (++*sincePoll == kNodesPerPoll) {
            *sincePoll = 0;
            if (ListStopRequested(ctx)) return false;
        }
    }
    return true;
}

// Writes the rows of the curvatures 1..to and answers the last curvature
// listed in full. With poll, it polls after every row and a row that does not
// fit is offered again after the poll; without, a refused row ends the rows.
uint32_t WriteRows(CalcContext* ctx, const uint32_t* count, uint32_t to, int w1, int w2, bool poll,
                   ListOutput* out, uint32_t* written, bool* stopped) {
    uint32_t last = to;
    while (last > 0 && count[last] == 0) --last;
    for (uint32_t c = 1; c <= last; ++c) {
        if (count[c] == 0) continue;
        std::string row;
        Concat8(&row, PadLeft(w1, Dec(c)), PadLeft(w2, Dec(count[c])), "\r\n");
        for (;;) {
            const bool appended = AppendListLine(out, row);
            if (appended) ++*written;
            if (appended && c == last) return to;
            if ((!appended && (out->endWhenFull || !poll)) || (poll && ListStopRequested(ctx))) {
                *stopped = true;
                return appended ? c : c - 1;
            }
            if (appended) break;
        }
    }
    return to;
}

}  // namespace

Result ListCurvatures(CalcContext* ctx, const DescartesQuadruple& start, uint32_t maxCurvature,
                      ListOutput* out) {
    if (Result code = CheckCurvatureBound(maxCurvature)) return code;
    int64_t sum = 0;
    for (int64_t k : start.k) {
        if (k < -kCurvatureInputMax || k > kCurvatureInputMax) return Result::kOutOfBounds;
        sum += k;
    }
    // A negative sum is a quadruple with its orientation reversed; 0 0 0 0 is
    // no circles at all.
    if (!IsDescartes(start.k) || sum <= 0) return Result::kInconsistent;
    int64_t root[4] = {start.k[0], start.k[1], start.k[2], start.k[3]};
    ReduceToRoot(root);
    // A root curvature 0 is a straight line: the packing is unbounded and
    // repeats every circle infinitely often along it.
    for (int64_t k : root)
        if (k == 0) return Result::kOutOfBounds;

    std::unique_ptr<uint32_t[]> count(new (std::nothrow) uint32_t[maxCurvature + size_t{1}]());
    if (!count) return Result::kNoMemory;
    ListStatus(out, OxString(kStrPressQToQuit));

    std::vector<Node> stack;
    uint32_t sincePoll = 0;
    uint32_t reached = 0;  // every curvature up to here is counted in full
    bool stopped = false;
    while (reached < maxCurvature && !stopped) {
        const uint32_t next =
            std::min(maxCurvature, std::max(kFirstStageBound, reached * kStageFactor));
        if (CountBand(ctx, root, reached, next, count.get(), &stack, &sincePoll) &&
            (next == maxCurvature || !ListStopRequested(ctx)))
            reached = next;
        else
            stopped = true;
    }

    uint32_t most = 0;
    for (uint32_t c = 1; c <= reached; ++c) most = std::max(most, count[c]);
    const std::string curvatureHeader = OxString(kStrCurvatureColumn);
    const std::string circlesHeader = OxString(kStrCirclesColumn);
    const int w1 = std::max(DecDigits(maxCurvature), static_cast<int>(curvatureHeader.size()));
    const int w2 = 2 + std::max(DecDigits(most), static_cast<int>(circlesHeader.size()));
    out->text = PadLeft(w1, curvatureHeader) + PadLeft(w2, circlesHeader) + "\r\n";
    HyphenRule(&out->text, w1 + w2, true);
    out->text += "\r\n";

    // After a stop in the walk the rows up to the last bound completed are
    // written without asking again; they always fit (see kCurvatureBoundMax).
    uint32_t written = 0;
    const uint32_t listedTo =
        WriteRows(ctx, count.get(), reached, w1, w2, !stopped, out, &written, &stopped);

    out->caption = std::string(OxString(kStrCurvatures)) + " [";
    for (int i = 0; i < 4; ++i) Concat8(&out->caption, i ? " " : "", Dec(start.k[i]));
    Concat8(&out->caption, "; c < ", Dec(int64_t{listedTo} + 1), "] : ", Dec(written));
    return stopped ? Result::kStopped : Result::kOk;
}
