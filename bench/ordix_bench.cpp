// Ordix arithmetic beside GMP.
//
// Every workload runs twice, each side in a child process of its own so that
// its peak memory can be read from the child's resource usage: once with
// Ordix, once with GMP, on the same decimal input text generated from a fixed
// seed. A side times the whole run (parse, compute, print the decimal answer)
// and the computation alone, and reports a hash of its answer text so the
// two answers are compared.
//
//   ordix_bench [--scale F] [--only NAME] [--repeat N] [--set threshold=value ...]
// --scale shrinks every size (0.1 for a quick run while developing);
// --repeat runs each side N times and keeps its fastest run, which steadies
// the ratios on a machine shared with other work.
#include <gmp.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cassert>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bigint/bigint.h"
#include "bigint/thresholds.h"
#include "calc/model.h"

namespace {

double gScale = 1.0;

using Clock = std::chrono::steady_clock;
double Seconds(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

struct Report {
    double total = 0;  // parse + compute + print
    double compute = 0;
    double pollGap = -1;  // longest stretch of the computation without a poll; -1: never polled
    uint64_t hash = 0;
    int code = 0;
};

// The longest time between two polls of the context, or between the start
// or the end of the computation and its nearest poll: how long a press of Q
// could wait to be seen.
struct PollGaps {
    Clock::time_point last;
    double longest = 0;
    long polls = 0;
    void Begin(Clock::time_point t) {
        last = t;
        longest = 0;
        polls = 0;
    }
    void At(Clock::time_point t) {
        longest = std::max(longest, Seconds(last, t));
        last = t;
    }
    double Longest() const { return polls > 0 ? longest : -1; }
} gPollGaps;

// A context that answers no key and times the gaps between polls.
class GapContext : public CalcContext {
public:
    int PollQuitKey() override {
        ++gPollGaps.polls;
        gPollGaps.At(Clock::now());
        return 0;
    }
};

uint64_t Fnv(const char* s, size_t n, uint64_t h = 1469598103934665603ull) {
    for (size_t i = 0; i < n; ++i) h = (h ^ static_cast<unsigned char>(s[i])) * 1099511628211ull;
    return h;
}

int32_t Scaled(double n) {
    return std::max<int32_t>(1, static_cast<int32_t>(std::lround(n * gScale)));
}

// n random decimal digits, no leading zero.
std::string Digits(int32_t n, uint64_t seed) {
    std::mt19937_64 rng(seed);
    std::string s(n, '0');
    for (auto& c : s) c = static_cast<char>('0' + rng() % 10);
    s[0] = static_cast<char>('1' + rng() % 9);
    return s;
}

// ---- Ordix side -------------------------------------------------------------

struct Ours {
    GapContext ctx;
    std::vector<BigInt> vals;
    ~Ours() {
        for (auto& v : vals) BigFree(&v);
    }
    // Records stay where they are: a run makes at most kMaxValues.
    static constexpr size_t kMaxValues = 16;
    BigInt* New() {
        vals.reserve(kMaxValues);
        assert(vals.size() < kMaxValues);
        vals.push_back(BigInt{});
        return &vals.back();
    }
    BigInt* Parse(const std::string& s) {
        BigInt* v = New();
        std::string copy = s;
        // The inputs are digits made here: only memory can fail, and a
        // failed value shows in the result's hash.
        (void)BigFromText(&copy[0], v);
        return v;
    }
    BigInt* Int(int32_t n) {
        BigInt* v = New();
        (void)BigFromInt(v, n);  // as in Parse
        return v;
    }
    static uint64_t Print(const BigInt* v, uint64_t h = 1469598103934665603ull) {
        std::vector<char> buf(size_t(v->top + 1) * 4 + 16);
        BigToText(v, buf.data(), int32_t(buf.size() - 4), 0, -1, 0, 0);
        return Fnv(buf.data(), std::strlen(buf.data()), h);
    }
};

// ---- GMP side ---------------------------------------------------------------

uint64_t PrintMpz(const mpz_t z, uint64_t h = 1469598103934665603ull, int base = 10) {
    std::vector<char> buf(mpz_sizeinbase(z, base) + 3);
    mpz_get_str(buf.data(), base, z);
    for (char& c : buf) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return Fnv(buf.data(), std::strlen(buf.data()), h);
}

// ---- Workloads ----------------------------------------------------------------

struct Workload {
    const char* name;
    const char* what;
    double target;  // end-to-end ratio we aim to stay below
    std::function<Report()> ours, gmp;
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

// z as decimal text.
std::string MpzText(const mpz_t z) {
    std::vector<char> buf(mpz_sizeinbase(z, 10) + 2);
    return mpz_get_str(buf.data(), 10, z);
}

// F(n) by GMP's bare addition loop, the measure for both Fibonacci workloads.
Report GmpFibonacci(int32_t n) {
    Report r;
    mpz_t a, b;
    mpz_init_set_ui(a, 0);
    mpz_init_set_ui(b, 1);
    auto t0 = Clock::now();
    TIMED(r, compute, {
        for (int32_t i = 1; i < n; ++i) {
            mpz_add(a, a, b);
            mpz_swap(a, b);
        }
    });
    r.hash = PrintMpz(b);
    r.total = Seconds(t0, Clock::now());
    mpz_clears(a, b, nullptr);
    return r;
}

// One computation on decimal inputs made by inputs(), ours beside GMP's: the
// total times parsing, the computation and printing every result (hashed in
// order); the computation is also timed alone.
using Texts = std::vector<std::string>;
using OursOp = std::function<Result(CalcContext*, BigInt* const* in, BigInt* const* out)>;
using GmpOp = std::function<int(mpz_ptr const* out, mpz_srcptr const* in)>;

Workload Decimal(const char* name, const char* what, double target, std::function<Texts()> inputs,
                 size_t outputs, OursOp ours, GmpOp gmp) {
    return {name, what, target,
            [=] {
                const Texts texts = inputs();
                Report r;
                Ours o;
                auto t0 = Clock::now();
                std::vector<BigInt*> in, out;
                for (const std::string& t : texts) in.push_back(o.Parse(t));
                for (size_t i = 0; i < outputs; ++i) out.push_back(o.New());
                TIMED(r, compute, r.code = ours(&o.ctx, in.data(), out.data()));
                r.hash = 1469598103934665603ull;
                for (BigInt* v : out) r.hash = Ours::Print(v, r.hash);
                r.total = Seconds(t0, Clock::now());
                return r;
            },
            [=] {
                const Texts texts = inputs();
                Report r;
                const size_t count = texts.size() + outputs;
                std::unique_ptr<mpz_t[]> values(new mpz_t[count]);
                for (size_t i = 0; i < count; ++i) mpz_init(values[i]);
                std::vector<mpz_ptr> out;
                std::vector<mpz_srcptr> in;
                for (size_t i = 0; i < outputs; ++i) out.push_back(values[i]);
                auto t0 = Clock::now();
                for (size_t i = 0; i < texts.size(); ++i) {
                    mpz_set_str(values[outputs + i], texts[i].c_str(), 10);
                    in.push_back(values[outputs + i]);
                }
                TIMED(r, compute, r.code = gmp(out.data(), in.data()));
                r.hash = 1469598103934665603ull;
                for (mpz_ptr v : out) r.hash = PrintMpz(v, r.hash);
                r.total = Seconds(t0, Clock::now());
                for (size_t i = 0; i < count; ++i) mpz_clear(values[i]);
                return r;
            }};
}

// A workload on small whole inputs that each side makes inside its
// computation (a few limbs, nothing to time): ours computes into v, GMP into v.
Workload SmallInputs(const char* name, const char* what, double target,
                     std::function<Result(Ours*, BigInt*)> ours, std::function<void(mpz_t)> gmp) {
    return {name, what, target,
            [=] {
                Report r;
                Ours o;
                auto t0 = Clock::now();
                BigInt* v = o.New();
                TIMED(r, compute, r.code = ours(&o, v));
                r.hash = Ours::Print(v);
                r.total = Seconds(t0, Clock::now());
                return r;
            },
            [=] {
                Report r;
                mpz_t v;
                mpz_init(v);
                auto t0 = Clock::now();
                TIMED(r, compute, gmp(v));
                r.hash = PrintMpz(v);
                r.total = Seconds(t0, Clock::now());
                mpz_clear(v);
                return r;
            }};
}

std::vector<Workload> Workloads() {
    std::vector<Workload> w;
    const int32_t mulDigits = Scaled(1000000);
    w.push_back(Decimal(
        "mul", "1M-digit product", 0.35,
        [=] {
            return Texts{Digits(mulDigits, 1), Digits(mulDigits, 2)};
        },
        1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigMul(c, out[0], in[0], in[1]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_mul(out[0], in[0], in[1]);
            return 0;
        }));
    const int32_t powE = Scaled(2000000);
    w.push_back(SmallInputs(
        "pow", "3^2000000", 0.7,
        [=](Ours* o, BigInt* v) { return BigPowInt(&o->ctx, o->Int(3), powE, v); },
        [=](mpz_t v) { mpz_ui_pow_ui(v, 3, powE); }));
    const int32_t factN = Scaled(200000);
    w.push_back(SmallInputs(
        "fact", "200000!", 1.0,
        [=](Ours* o, BigInt* v) { return BigFact(&o->ctx, v, o->Int(factN)); },
        [=](mpz_t v) { mpz_fac_ui(v, factN); }));
    const int32_t divX = Scaled(2000000), divD = Scaled(1000000);
    w.push_back(Decimal(
        "divmod", "2M-digit / 1M-digit, quotient and remainder", 0.8,
        [=] {
            return Texts{Digits(divX, 3), Digits(divD, 4)};
        },
        2,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigDivMod(c, in[0], in[1], out[0], out[1]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_tdiv_qr(out[0], out[1], in[0], in[1]);
            return 0;
        }));
    const int32_t sqrtDigits = Scaled(2000000);
    // A root of a number of the given digits, ours beside GMP's.
    auto root = [=](const char* name, const char* what, double target, int32_t digits,
                    Result (*ours)(CalcContext*, const BigInt*, BigInt*), unsigned long degree) {
        return Decimal(
            name, what, target, [=] { return Texts{Digits(digits, 5)}; }, 1,
            [=](CalcContext* c, BigInt* const* in, BigInt* const* out) {
                return ours(c, in[0], out[0]);
            },
            [=](mpz_ptr const* out, mpz_srcptr const* in) {
                return mpz_root(out[0], in[0], degree) ? 0 : 1;
            });
    };
    w.push_back(root("sqrt", "square root of 2M digits", 0.8, sqrtDigits, BigSqrt, 2));
    w.push_back(root("cbrt", "cube root of 2M digits", 8.0, sqrtDigits, BigCbrt, 3));
    const int32_t binN = Scaled(1000000);
    w.push_back(SmallInputs(
        "binomial", "binomial(1000000, 500000)", 5.0,
        [=](Ours* o, BigInt* v) { return BigBinomial(&o->ctx, v, o->Int(binN), o->Int(binN / 2)); },
        [=](mpz_t v) { mpz_bin_uiui(v, binN, binN / 2); }));
    // Two 200000-digit numbers sharing a factor of 1000 digits.
    const int32_t gcdDigits = Scaled(200000);
    auto gcdInputs = [=] {
        mpz_t g, a, b;
        mpz_inits(g, a, b, nullptr);
        const int32_t gd = std::max(1, gcdDigits / 200);
        mpz_set_str(g, Digits(gd, 6).c_str(), 10);
        mpz_set_str(a, Digits(gcdDigits - gd, 7).c_str(), 10);
        mpz_set_str(b, Digits(gcdDigits - gd, 8).c_str(), 10);
        mpz_mul(a, a, g);
        mpz_mul(b, b, g);
        Texts texts{MpzText(a), MpzText(b)};
        mpz_clears(g, a, b, nullptr);
        return texts;
    };
    w.push_back(Decimal(
        "gcd", "gcd of two 200000-digit numbers", 8.0, gcdInputs, 1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigGcd(c, in[0], in[1], out[0]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_gcd(out[0], in[0], in[1]);
            return 0;
        }));
    // An inverse modulo an odd 200000-digit number: a's common factors
    // with the modulus divided out of it, so that the inverse exists.
    const int32_t invDigits = Scaled(200000);
    auto modinvInputs = [=] {
        mpz_t a, m, g;
        mpz_inits(a, m, g, nullptr);
        mpz_set_str(m, Digits(invDigits, 12).c_str(), 10);
        mpz_setbit(m, 0);
        mpz_set_str(a, Digits(invDigits, 13).c_str(), 10);
        for (mpz_gcd(g, a, m); mpz_cmp_ui(g, 1) != 0; mpz_gcd(g, a, m)) mpz_divexact(a, a, g);
        Texts texts{MpzText(a), MpzText(m)};
        mpz_clears(a, m, g, nullptr);
        return texts;
    };
    w.push_back(Decimal(
        "modinv", "inverse modulo a 200000-digit number", 8.0, modinvInputs, 1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return ModInverse(c, in[0], in[1], out[0]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            return mpz_invert(out[0], in[0], in[1]) ? 0 : 1;
        }));
    // 3^(10^1000) modulo a number of the given digits.
    const std::string expText = "1" + std::string(Scaled(1000), '0');
    auto powmod = [=](const char* name, const char* what, double target, int32_t modDigits) {
        return Decimal(
            name, what, target,
            [=] {
                return Texts{"3", expText, Digits(modDigits, 9)};
            },
            1,
            [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
                return ModPow(c, in[0], in[1], out[0], in[2]);
            },
            [](mpz_ptr const* out, mpz_srcptr const* in) {
                mpz_powm(out[0], in[0], in[1], in[2]);
                return 0;
            });
    };
    w.push_back(
        powmod("powmod", "3^(10^1000) mod a 1000-digit number (ModPow)", 4.0, Scaled(1000)));
    w.push_back(powmod("powmod20k", "3^(10^1000) mod a 20000-digit number", 8.0, Scaled(20000)));
    const int32_t radixDigits = Scaled(300000);
    w.push_back({"base16", "300000 decimal digits to base 16", 4.0,
                 [=] {
                     Report r;
                     Ours o;
                     auto t0 = Clock::now();
                     std::string s = Digits(radixDigits, 10);
                     TIMED(r, compute, r.code = ConvertBase(&o.ctx, 10, 16, &s));
                     r.hash = Fnv(s.data(), s.size());
                     r.total = Seconds(t0, Clock::now());
                     return r;
                 },
                 [=] {
                     Report r;
                     mpz_t x;
                     mpz_init(x);
                     auto t0 = Clock::now();
                     const std::string s = Digits(radixDigits, 10);
                     TIMED(r, compute, {
                         mpz_set_str(x, s.c_str(), 10);
                         r.hash = PrintMpz(x, 1469598103934665603ull, 16);
                     });
                     r.total = Seconds(t0, Clock::now());
                     mpz_clear(x);
                     return r;
                 }});
    // F(200000) as the calculator's recursion computes it: A=0, B=1 and the
    // steps A=B, B=A+B (all right sides from the current values), against
    // GMP's bare addition loop.
    const int32_t fibN = Scaled(200000);
    w.push_back({"fib-rec", "F(200000) by 199999 recursion steps", 10.0,
                 [=] {
                     Report r;
                     GapContext ctx;
                     auto t0 = Clock::now();
                     CalcModel model(&ctx);
                     r.code = model.Calculate(1, "0");
                     if (r.code == 0) r.code = model.Calculate(2, "1");
                     if (r.code == 0) r.code = model.EnterStep("B=A+B");
                     if (r.code == 0) r.code = model.EnterStep("A=B");
                     TIMED(r, compute, if (r.code == 0) r.code = model.ManySteps(fibN - 1));
                     if (const NumberValue* b = model.Variable(2))
                         r.hash = Ours::Print(&b->numerator);
                     r.total = Seconds(t0, Clock::now());
                     return r;
                 },
                 [=] { return GmpFibonacci(fibN); }});
    // The addition loop alone, without the calculation language around it.
    w.push_back({"fib-add", "F(200000) by an addition loop (no formula language)", 10.0,
                 [=] {
                     Report r;
                     Ours o;
                     auto t0 = Clock::now();
                     BigInt a{}, b{};
                     r.code = BigFromInt(&a, 0);
                     if (r.code == 0) r.code = BigFromInt(&b, 1);
                     TIMED(r, compute, {
                         for (int32_t i = 1; i < fibN && r.code == 0; ++i) {
                             BigInt c{};
                             r.code = BigAdd(&c, &a, &b);
                             BigFree(&a);
                             a = b;
                             b = c;
                         }
                     });
                     r.hash = Ours::Print(&b);
                     r.total = Seconds(t0, Clock::now());
                     BigFree(&a);
                     BigFree(&b);
                     return r;
                 },
                 [=] { return GmpFibonacci(fibN); }});
    return w;
}

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
    m.peakKb = ru.ru_maxrss;
    return m;
}

// The fastest of n runs (times), with the largest peak memory seen.
Measured Fastest(const std::function<Report()>& side, int n) {
    Measured best = RunChild(side);
    for (int i = 1; i < n; ++i) {
        const Measured m = RunChild(side);
        const long peak = std::max(best.peakKb, m.peakKb);
        if (m.ok && (!best.ok || m.r.total < best.r.total)) best = m;
        best.peakKb = peak;
    }
    return best;
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
                 {"radixDivide", &t.radixDivide},
                 {"radixBinary", &t.radixBinary},
                 {"radixBinaryLeaf", &t.radixBinaryLeaf},
                 {"binaryNtt", &t.binaryNtt}};
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
    for (int i = 1; i < argc; ++i) {
        if (!std::strcmp(argv[i], "--scale") && i + 1 < argc)
            gScale = std::atof(argv[++i]);
        else if (!std::strcmp(argv[i], "--repeat") && i + 1 < argc)
            repeat = std::max(1, std::atoi(argv[++i]));
        else if (!std::strcmp(argv[i], "--only") && i + 1 < argc)
            only = argv[++i];
        else if (!std::strcmp(argv[i], "--set") && i + 1 < argc && SetThreshold(argv[i + 1]))
            ++i;
        else {
            std::fprintf(
                stderr,
                "usage: %s [--scale F] [--only NAME] [--repeat N] [--set threshold=value]\n",
                argv[0]);
            return 2;
        }
    }
    std::printf(
        "scale %.3g, fastest of %d; times in seconds, memory in MB (peak resident set of the "
        "side's process)\n",
        gScale, repeat);
    std::printf("%-9s %9s %9s %7s %6s | %9s %9s %7s | %7s %7s %6s | %6s | %s\n", "workload", "ours",
                "gmp", "ratio", "goal", "ours-cmp", "gmp-cmp", "ratio", "ours-MB", "gmp-MB",
                "ratio", "gap-ms", "answer");
    int failures = 0;
    for (const Workload& w : Workloads()) {
        if (!only.empty() && only != w.name) continue;
        const Measured o = Fastest(w.ours, repeat);
        const Measured g = Fastest(w.gmp, repeat);
        const bool same = o.ok && g.ok && o.r.hash == g.r.hash;
        if (!same) ++failures;
        const double ratio = o.r.total / g.r.total;
        char gap[16] = "     -";
        if (o.r.pollGap >= 0) std::snprintf(gap, sizeof gap, "%6.1f", o.r.pollGap * 1000);
        std::printf(
            "%-9s %9.4f %9.4f %7.3f %6.2f | %9.4f %9.4f %7.3f | %7.1f %7.1f %6.2f | %s | %s%s  "
            "%s\n",
            w.name, o.r.total, g.r.total, ratio, w.target, o.r.compute, g.r.compute,
            o.r.compute / g.r.compute, o.peakKb / 1024.0, g.peakKb / 1024.0,
            double(o.peakKb) / double(g.peakKb), gap, same ? "same" : "DIFFERENT",
            ratio < w.target ? "" : " (goal missed)", w.what);
        std::fflush(stdout);
    }
    return failures == 0 ? 0 : 1;
}
