// Ordix arithmetic beside GMP.
//
// Every workload runs twice, each side in a child process of its own so that
// its peak memory can be read from the child's resource usage: once with
// Ordix, once with GMP, on the same decimal input text generated from a fixed
// seed. A side times the whole run (parse, compute, print the answer) and,
// where it can, the computation alone, and reports a hash of its answer so
// the two answers are compared. The rows: the arithmetic called in process
// (workloads_kernels.cpp), whole ordix-cli runs on scripts (workloads_cli.cpp)
// and, with --huge, 10^8-digit operands and 99999999! (workloads_huge.cpp).
//
//   ordix_bench [--scale F] [--only NAME] [--repeat N] [--huge] [--cli PATH]
//               [--set threshold=value ...]
// --scale shrinks every size (0.1 for a quick run while developing);
// --repeat runs each side N times and reports its median run, which steadies
// the ratios on a machine shared with other work.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "bench/bench_harness.h"
#include "bigint/thresholds.h"

namespace {

struct Measured {
    Report r;
    long peakKb = 0;
    bool ok = false;
};

Measured RunChild(const std::function<Report()>& side) {
    int fds[2];
    Measured m;
    if (pipe(fds) != 0) return m;
    std::fflush(stdout);
    const pid_t pid = fork();
    if (pid == 0) {
        close(fds[0]);
        Report r = side();
        if (write(fds[1], &r, sizeof r) != static_cast<ssize_t>(sizeof r)) _exit(2);
        _exit(0);
    }
    close(fds[1]);
    m.ok = read(fds[0], &m.r, sizeof m.r) == static_cast<ssize_t>(sizeof m.r);
    close(fds[0]);
    int status = 0;
    struct rusage ru {};
    wait4(pid, &status, 0, &ru);
    m.peakKb = std::max<long>(ru.ru_maxrss, m.r.childPeakKb);
    return m;
}

// The median of n runs by their total time, with the largest peak memory
// seen; a failed run counts as the slowest.
Measured Median(const std::function<Report()>& side, int n) {
    std::vector<Measured> runs;
    long peak = 0;
    for (int i = 0; i < n; ++i) {
        runs.push_back(RunChild(side));
        peak = std::max(peak, runs.back().peakKb);
    }
    std::sort(runs.begin(), runs.end(), [](const Measured& x, const Measured& y) {
        if (x.ok != y.ok) return x.ok;
        return x.r.total < y.r.total;
    });
    Measured m = runs[runs.size() / 2];
    m.peakKb = peak;
    return m;
}

bool GoalMet(const Workload& w, const Measured& o, const Measured& g) {
    if (w.maxMb > 0 && o.peakKb / 1024.0 > w.maxMb) return false;
    switch (w.goal) {
    case Goal::kTotalRatio: return o.r.total / g.r.total < w.target;
    case Goal::kComputeRatio: return o.r.compute >= 0 && o.r.compute / g.r.compute < w.target;
    case Goal::kSeconds: return o.r.total < w.target;
    }
    return false;
}

bool SetThreshold(const char* arg) {
    const char* eq = std::strchr(arg, '=');
    if (!eq) return false;
    const std::string key(arg, eq);
    const long v = std::atol(eq + 1);
    FastThresholds& t = gFastThresholds;
    struct {
        const char* name;
        int32_t* field;
    } table[] = {{"mulKaratsuba", &t.mulKaratsuba},
                 {"mulNtt", &t.mulNtt},
                 {"sqrKaratsuba", &t.sqrKaratsuba},
                 {"sqrNtt", &t.sqrNtt},
                 {"divNewton", &t.divNewton},
                 {"sqrtRecursive", &t.sqrtRecursive},
                 {"cbrtNewton", &t.cbrtNewton},
                 {"productTree", &t.productTree},
                 {"gcdLehmer", &t.gcdLehmer},
                 {"gcdHalf", &t.gcdHalf},
                 {"gcdHalfLeaf", &t.gcdHalfLeaf},
                 {"modInverse", &t.modInverse},
                 {"modInverseHalf", &t.modInverseHalf},
                 {"powMontgomery", &t.powMontgomery},
                 {"powPlan", &t.powPlan},
                 {"gcdMatrixNtt", &t.gcdMatrixNtt},
                 {"gcdMatrixNtt64", &t.gcdMatrixNtt64},
                 {"radixDivide", &t.radixDivide},
                 {"radixBinary", &t.radixBinary},
                 {"radixBinaryLeaf", &t.radixBinaryLeaf},
                 {"radixBinaryLeafVector", &t.radixBinaryLeafVector},
                 {"radixBinaryParallel", &t.radixBinaryParallel},
                 {"binaryNtt", &t.binaryNtt},
                 {"productLeaf", &t.productLeaf},
                 {"rangePrimesSieve", &t.rangePrimesSieve},
                 {"powVector", &t.powVector},
                 {"nttMaxLength", &t.nttMaxLength},
                 {"ntt64Length", &t.ntt64Length},
                 {"ntt64SixLimbs", &t.ntt64SixLimbs},
                 {"ntt64Parallel", &t.ntt64Parallel},
                 {"nttParallel", &t.nttParallel}};
    for (auto& e : table) {
        if (key == e.name) {
            *e.field = static_cast<int32_t>(v);
            return true;
        }
    }
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    std::string only;
    int repeat = 1;
    bool huge = false;
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--scale") && i + 1 < argc)
            gScale = std::atof(argv[++i]);
        else if (!std::strcmp(argv[i], "--repeat") && i + 1 < argc)
            repeat = std::max(1, std::atoi(argv[++i]));
        else if (!std::strcmp(argv[i], "--only") && i + 1 < argc)
            only = argv[++i];
        else if (!std::strcmp(argv[i], "--gmp-script") && i + 1 < argc)
            return RunGmpScript(argv[i + 1], std::vector<std::string>(argv + i + 2, argv + argc));
        else if (!std::strcmp(argv[i], "--huge"))
            huge = true;
        else if (!std::strcmp(argv[i], "--cli") && i + 1 < argc)
            gCliPath = argv[++i];
        else if (!std::strcmp(argv[i], "--set") && i + 1 < argc && SetThreshold(argv[i + 1]))
            ++i;
        else {
            std::fprintf(stderr,
                         "usage: %s [--scale F] [--only NAME] [--repeat N] [--huge] [--cli PATH] "
                         "[--set threshold=value]\n",
                         argv[0]);
            return 2;
        }
    }
    // --only looks through every group; otherwise the default rows, or the
    // huge ones alone.
    std::vector<Workload> rows;
    if (!only.empty() || !huge) {
        for (auto& w : KernelWorkloads()) rows.push_back(w);
        for (auto& w : CliWorkloads()) rows.push_back(w);
    }
    if (!only.empty() || huge)
        for (auto& w : HugeWorkloads()) rows.push_back(w);

    std::printf(
        "scale %.3g, median of %d; times in seconds, memory in MB (peak resident set of the "
        "side's process)\n",
        gScale, repeat);
    std::printf("%-13s %9s %9s %7s %6s | %9s %9s %7s | %7s %7s %6s | %6s | %s\n", "workload",
                "ours", "gmp", "ratio", "goal", "ours-cmp", "gmp-cmp", "ratio", "ours-MB", "gmp-MB",
                "ratio", "gap-ms", "answer");
    int failures = 0, missed = 0;
    for (const Workload& w : rows) {
        if (!only.empty() && only != w.name) continue;
        const Measured o = Median(w.ours, repeat);
        const Measured g = Median(w.gmp, repeat);
        const bool same = o.ok && g.ok && o.r.hash == g.r.hash;
        if (!same) ++failures;
        const bool met = GoalMet(w, o, g);
        if (!met) ++missed;
        char gap[16] = "     -";
        if (o.r.pollGap >= 0) std::snprintf(gap, sizeof gap, "%6.1f", o.r.pollGap * 1000);
        char cmp[40] = "        -         -       -";
        if (o.r.compute >= 0)
            std::snprintf(cmp, sizeof cmp, "%9.4f %9.4f %7.3f", o.r.compute, g.r.compute,
                          o.r.compute / g.r.compute);
        else
            std::snprintf(cmp, sizeof cmp, "%9s %9.4f %7s", "-", g.r.compute, "-");
        const char* kind = w.goal == Goal::kComputeRatio ? "c"
                           : w.goal == Goal::kSeconds    ? "s"
                                                         : "";
        std::printf("%-13s %9.4f %9.4f %7.3f %5.2f%-1s | %s | %7.1f %7.1f %6.2f | %s | %s%s  %s\n",
                    w.name, o.r.total, g.r.total, o.r.total / g.r.total, w.target, kind, cmp,
                    o.peakKb / 1024.0, g.peakKb / 1024.0, double(o.peakKb) / double(g.peakKb), gap,
                    same ? "same" : "DIFFERENT", met ? "" : " (goal missed)", w.what);
        std::fflush(stdout);
    }
    std::printf("%d answer(s) differ, %d goal(s) missed\n", failures, missed);
    return failures == 0 ? 0 : 1;
}
