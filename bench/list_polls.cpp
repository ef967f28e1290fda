// How the lists answer Q: each list runs once with its default bound (the
// time a user waits for the preset list) and once with its largest bound,
// under a context that times the gaps between polls and presses Q after a
// budget. The longest gap is how long a press of Q could wait to be seen; the
// stop latency is the time from the press to the generator's return.
//
//   ordix_list_polls [--budget SECONDS] [--only NAME]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "lists/list_command.h"

namespace {

using Clock = std::chrono::steady_clock;
double Ms(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double, std::milli>(b - a).count();
}

// Presses Q once the budget has passed; records the longest gap between polls.
class GapContext : public CalcContext {
public:
    explicit GapContext(double budgetMs) : budgetMs_(budgetMs) {}
    int PollQuitKey() override {
        const Clock::time_point now = Clock::now();
        longest = std::max(longest, Ms(last_, now));
        last_ = now;
        ++polls;
        if (Ms(start_, now) < budgetMs_) return 0;
        if (!pressed) pressed = true, pressedAt = now;
        return kQuitKey;
    }
    double longest = 0;
    long polls = 0;
    bool pressed = false;
    Clock::time_point pressedAt;

private:
    double budgetMs_;
    Clock::time_point start_ = Clock::now(), last_ = start_;
};

struct Case {
    const char* name;
    std::vector<std::string> preset, largest;  // arguments after the name
};

// The presets of the desktop dialogs and the largest bounds they accept.
const Case kCases[] = {
    {"primes", {"1598843"}, {"1598843"}},
    {"triples", {"1000"}, {"197890"}},
    {"alltriples", {"1000"}, {"95150"}},
    {"heron", {"12", "1000"}, {"12", "65535"}},
    {"quads", {"3", "100"}, {"3", "65535"}},
    {"cyclotomic", {"105"}, {"65535"}},
    {"cubes", {"100"}, {"65535", "dups"}},
    {"soddy", {"100"}, {"65535"}},
    {"soddy3", {"100"}, {"65535"}},
    {"soddyline", {"1000"}, {"65535"}},
    {"soddyplane", {"1000"}, {"65535"}},
    {"curvatures", {"1000"}, {"100000"}},
    {"tetra", {"40"}, {"999"}},
    {"cyclic", {"100"}, {"999"}},
    {"bicentric", {"300"}, {"999"}},
};

struct Run {
    Result code;
    double ms, longestGap, stopLatency;
    std::string caption;
};

Run RunOnce(const Case& c, const std::vector<std::string>& bounds, double budgetMs) {
    std::vector<std::string> args{c.name};
    args.insert(args.end(), bounds.begin(), bounds.end());
    GapContext ctx(budgetMs);
    ListOutput out;
    const Clock::time_point start = Clock::now();
    const Result code = RunListCommand(&ctx, args, &out);
    const Clock::time_point end = Clock::now();
    ctx.longest = std::max(ctx.longest, ctx.polls ? 0.0 : Ms(start, end));
    return {code, Ms(start, end), ctx.longest, ctx.pressed ? Ms(ctx.pressedAt, end) : -1,
            out.caption};
}

}  // namespace

int main(int argc, char** argv) {
    double budget = 2.0;
    std::string only;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--budget") && i + 1 < argc)
            budget = std::atof(argv[++i]);
        else if (!std::strcmp(argv[i], "--only") && i + 1 < argc)
            only = argv[++i];
        else {
            std::fprintf(stderr, "usage: %s [--budget SECONDS] [--only NAME]\n", argv[0]);
            return 2;
        }
    }
    std::printf("%-11s %10s %9s | %-14s %9s %9s %9s  %s\n", "list", "preset-ms", "code", "largest",
                "run-ms", "gap-ms", "stop-ms", "caption at the largest bound");
    int slow = 0;
    for (const Case& c : kCases) {
        if (!only.empty() && only != c.name) continue;
        const Run p = RunOnce(c, c.preset, 1e12);
        const Run l = RunOnce(c, c.largest, budget * 1000);
        std::string largest;
        for (const std::string& a : c.largest) largest += (largest.empty() ? "" : " ") + a;
        std::printf("%-11s %10.1f %9d | %-14s %9.1f %9.2f %9.2f  %s\n", c.name, p.ms, ToInt(p.code),
                    largest.c_str(), l.ms, l.longestGap, l.stopLatency, l.caption.c_str());
        // Goals: a preset list well under a second, Q seen within 50 ms.
        if (p.ms > 1000 || l.longestGap > 50 || l.stopLatency > 50 || !ListOutputShown(p.code) ||
            !ListOutputShown(l.code))
            ++slow;
    }
    std::printf("%d list(s) failed or outside the goals\n", slow);
    return slow == 0 ? 0 : 1;
}
