// What every benchmark row shares: the report a side sends back from its
// child process, the context that times the gaps between polls, inputs from
// fixed seeds, the Ordix and GMP sides' printing, and the row builders.
#pragma once

#include <gmp.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bigint/bigint.h"
#include "calc/model.h"

using Clock = std::chrono::steady_clock;
double Seconds(Clock::time_point a, Clock::time_point b);

// Every size is multiplied by this (--scale).
extern double gScale;
int32_t Scaled(double n);

struct Report {
    double total = 0;     // parse + compute + print
    double compute = -1;  // the computation alone; -1 when a side cannot time it apart
    double pollGap = -1;  // longest stretch of the computation without a poll; -1: never polled
    uint64_t hash = 0;
    int code = 0;
    long childPeakKb = 0;  // peak of a program the side ran (ordix-cli), 0: none
};

// The longest time between two polls of the context, or between the start
// or the end of the computation and its nearest poll: how long a press of Q
// could wait to be seen.
struct PollGaps {
    Clock::time_point last;
    double longest = 0;
    long polls = 0;
    void Begin(Clock::time_point t);
    void At(Clock::time_point t);
    double Longest() const { return polls > 0 ? longest : -1; }
};
extern PollGaps gPollGaps;

// A context that answers no key and times the gaps between polls.
class GapContext : public CalcContext {
public:
    int PollQuitKey() override;
};

constexpr uint64_t kFnvStart = 1469598103934665603ull;
uint64_t Fnv(const char* s, size_t n, uint64_t h = kFnvStart);
// n random decimal digits, no leading zero.
std::string Digits(int32_t n, uint64_t seed);
// Two numbers of the given digits sharing a factor of a two-hundredth of
// them, as decimal text.
std::vector<std::string> GcdInputs(int32_t digits);
// z as decimal text.
std::string MpzText(const mpz_t z);

// Values of the Ordix side; records stay where they are.
struct Ours {
    GapContext ctx;
    std::vector<BigInt> vals;
    ~Ours();
    static constexpr size_t kMaxValues = 16;
    BigInt* New();
    BigInt* Parse(const std::string& s);
    BigInt* Int(int32_t n);
    static uint64_t Print(const BigInt* v, uint64_t h = kFnvStart);
};
// The hash of z's text in base (upper case digits), as Ours::Print hashes.
uint64_t PrintMpz(const mpz_t z, uint64_t h = kFnvStart, int base = 10);

// What a row's goal bounds: the end-to-end ratio, the ratio of the
// computations alone, or our own end-to-end seconds.
enum class Goal { kTotalRatio, kComputeRatio, kSeconds };

struct Workload {
    const char* name;
    const char* what;
    double target;
    std::function<Report()> ours, gmp;
    Goal goal = Goal::kTotalRatio;
    double maxMb = 0;  // our peak memory's bound in MB, 0: none beyond the ratio
};

#define TIMED(report, field, body)              \
    do {                                        \
        auto t0_ = Clock::now();                \
        gPollGaps.Begin(t0_);                   \
        body;                                   \
        auto t1_ = Clock::now();                \
        (report).field = Seconds(t0_, t1_);     \
        gPollGaps.At(t1_);                      \
        (report).pollGap = gPollGaps.Longest(); \
    } while (0)

// One computation on decimal inputs made by inputs(), ours beside GMP's: the
// total times parsing, the computation and printing every result (hashed in
// order); the computation is also timed alone. With residues set, results
// are compared by their remainders modulo a few primes instead of their text
// (for values whose text would take GMP minutes), and the total leaves the
// printing out. GMP prints its results in base (ours in base 10).
using Texts = std::vector<std::string>;
using OursOp = std::function<Result(CalcContext*, BigInt* const* in, BigInt* const* out)>;
using GmpOp = std::function<int(mpz_ptr const* out, mpz_srcptr const* in)>;
Workload Decimal(const char* name, const char* what, double target, std::function<Texts()> inputs,
                 size_t outputs, OursOp ours, GmpOp gmp, bool residues = false, int base = 10);

// A workload on small whole inputs that each side makes inside its
// computation (a few limbs, nothing to time).
Workload SmallInputs(const char* name, const char* what, double target,
                     std::function<Result(Ours*, BigInt*)> ours, std::function<void(mpz_t)> gmp);

// F(n) by GMP's bare addition loop, the measure for the Fibonacci rows.
Report GmpFibonacci(int32_t n);

// The rows, by group.
std::vector<Workload> KernelWorkloads();  // the arithmetic called in process
std::vector<Workload> CliWorkloads();     // whole ordix-cli runs on scripts
std::vector<Workload> HugeWorkloads();    // 10^8-digit operands and 99999999!

// ordix-cli to run for the script rows (--cli).
extern std::string gCliPath;
// GMP's side of the script row name as a program of its own: reads the
// files, computes, prints "#compute SECONDS" and the answer. Its exit status.
int RunGmpScript(const char* name, const std::vector<std::string>& files);
