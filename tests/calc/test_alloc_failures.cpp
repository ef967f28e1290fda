// The formula language and the model's commands with each allocation refused
// in turn (tests/support/alloc_refusal.h), with labels set and the modulus
// mode off and on: a refused run answers 3 (or what Sweep accepts), leaves
// the labels, the modulus and the recursion alone and leaks no block.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>

#include <functional>
#include <memory>
#include <new>
#include <string>

#include "bigint/dispatch.h"
#include "calc/conversion.h"
#include "calc/digit_freq.h"
#include "calc_test_util.h"
#include "support/alloc_refusal.h"
#ifndef _WIN32
#include "support/memory_limit.h"
#endif

namespace {

// Everything a command may change, as text.
std::string State(const ModelFixture& f) {
    std::string s = f.Vars("ABCDEFGHIJKLMNOPQRSTUVWXYZ") +
                    " M=" + Value(&f.model.Modulus().numerator, &f.model.Modulus().denominator) +
                    (f.model.ModulusMode() ? " on" : " off");
    for (int label = 1; label <= kLabelCount; ++label)
        if (const NumberValue* v = f.model.Variable(label)) s += " " + v->inscription;
    for (const std::string& row : f.model.RecursionRows()) s += " [" + row + "]";
    return s;
}

// A model with labels A-D set (fractions among them), the modulus 1000003 and
// a recursion whose steps read and write them (or the one step given).
std::unique_ptr<ModelFixture> Prepared(bool modulusMode, const char* recursion) {
    auto f = std::make_unique<ModelFixture>();
    for (const char* let : {"A=12345678901234567890/7", "B=-98765432109876543210", "C=2^100-1",
                            "D=360", "M=1000003"}) {
        EXPECT_EQ(f->Let(let[0], let + 2), 0) << let;
    }
    EXPECT_EQ(f->model.ModulusCommand("M"), 0);
    f->model.SetModulusMode(modulusMode);
    if (recursion) {
        EXPECT_EQ(f->model.EnterStep(recursion), 0);
        return f;
    }
    for (const char* step : {"A=7", "C=C*B+A", "D=D+1"}) EXPECT_EQ(f->model.EnterStep(step), 0);
    EXPECT_EQ(f->model.EnterCondition("D-100"), 0);
    return f;
}

// A command: its code, with what it shows in *out.
using Command = std::function<Result(ModelFixture&, std::string* out)>;

// Not a code: std::bad_alloc escaped from the command.
constexpr Result kEscaped = static_cast<Result>(999);

// The first fault of the sweep, or "".
// lastCodeOnly: the command answers only its last item's code (the batch).
std::string Sweep(const Command& command, bool modulusMode, const char* recursion,
                  bool lastCodeOnly, long* runs) {
    // The code, the state after the run ("changed: " when a refused run
    // changed it) and what the command shows; copied into room reserved before
    // the count, so that only the command's own blocks are counted.
    Result code = Result::kOk;
    std::string state, out;
    state.reserve(1 << 16);
    out.reserve(1 << 16);
    long leaked = 0;
    auto run = [&](long refuse) {
        ReleaseDivisorCache();
        const long live = gAllocLive;
        {
            auto f = Prepared(modulusMode, recursion);
            const std::string before = State(*f);
            std::string shown;
            ArmAllocations(refuse);
            try {
                code = command(*f, &shown);
            } catch (const std::bad_alloc&) {
                code = kEscaped;
            }
            gAllocArmed = false;
            const std::string after = State(*f);
            state.assign(gAllocRefused > 0 && after != before ? "changed: " + after : after);
            out.assign(shown);
        }
        ReleaseDivisorCache();
        leaked = gAllocLive - live;
        return gAllocRefused > 0;
    };
    run(0);
    if (leaked != 0) return "an unrefused run leaks";
    const Result wantCode = code;
    const std::string wantState = state, wantOut = out;
    for (long k = 1;; ++k) {
        *runs = k;
        const bool refused = run(k);
        std::string fault;
        if (!refused) {
            if (code == wantCode && state == wantState && out == wantOut) return "";
            fault = "the run refused nothing answers " + std::to_string(code);
        } else if (code == wantCode && out == wantOut && state == "changed: " + wantState) {
            // a refusal that nothing needed (a constant made in advance)
        } else if (code == Result::kStopped || (lastCodeOnly && code == Result::kOk)) {
            // A product whose result array is refused answers -1 (a kept rule
            // of the product), which the commands take for the user's stop,
            // keeping what a stop keeps; the batch forgets it at its next
            // pair. Only leaks are checked then.
            if (leaked != 0) fault = "leaks " + std::to_string(leaked) + " blocks after a stop";
        } else if (code != Result::kNoMemory) {
            fault = "answers " + std::to_string(code);
        } else if (state.rfind("changed", 0) == 0) {
            fault = state;
        } else if (leaked != 0) {
            fault = "leaks " + std::to_string(leaked) + " blocks";
        }
        if (!fault.empty()) return fault + " when allocation " + std::to_string(k) + " is refused";
    }
}

Command Method(Result (*call)(CalcModel&)) {
    return [call](ModelFixture& f, std::string*) { return call(f.model); };
}

Command Calculate(std::string formula) {
    return [formula](ModelFixture& f, std::string*) {
        return f.model.Calculate(ModelFixture::Label('C'), formula);
    };
}

TEST(AllocationFailures, EveryFormulaAndCommandMayBeRefused) {
    const std::string hex = "7fa3" + std::string(60, 'c');
    const std::string literal300 = std::string(150, '7') + std::string(150, '3');
    const struct {
        std::string name;
        Command command;
        const char* recursion = nullptr;  // the only step, instead of the usual ones
        bool lastCodeOnly = false;
    } rows[] = {
        {"sum, difference, product, quotient", Calculate("(A+B)*C-D/(3-A)")},
        {"powers and negation", Calculate("-(A^3)+-2^-2+B^2^2-(C)")},
        {"factorials", Calculate("D!/[FACT](30)+(D-300)!")},
        {"abs and int", Calculate("[ABS](B)+[INT](A)-[INT](-A/3)")},
        {"binomials and permutations",
         Calculate("D[C]7+D[BINOM]300+D[BIN]5+D[COMB]3+D[P]9+D[PERM]2")},
        {"mod and quo", Calculate("B[MOD]D+C[QUO]A+B[MOD]-7")},
        {"gcd and lcm lists", Calculate("[GCD](C,B,D)+[LCM](D,24,35)+D[GCD]12")},
        {"hail", Calculate("[HAIL](C)+[HAIL](D)")},
        {"roots", Calculate("[SQRT](C)+[SQR](D)+[CURT](-C)")},
        {"products of constants and a long literal", Calculate("2D(3)(D)" + literal300)},
        {"a letter alone", Calculate("A")},
        {"compile only", Method([](CalcModel& m) { return m.Compile("A+[GCD](B,C,D)!"); })},
        {"modulus command", Method([](CalcModel& m) { return m.ModulusCommand("C[MOD]97+2"); })},
        {"enter a step", Method([](CalcModel& m) { return m.EnterStep("b = b*c+1"); })},
        {"enter a condition", Method([](CalcModel& m) { return m.EnterCondition("C-D"); })},
        {"one recursion step", Method([](CalcModel& m) { return m.OneStep(); })},
        {"a step into an empty label", Method([](CalcModel& m) { return m.OneStep(); }), "Q=D*D"},
        {"batch",
         [](ModelFixture& f, std::string* out) {
             BatchResult r;
             const Result code = f.model.Batch("A*B+C", "3, 4", "5,-6", &r);
             gAllocArmed = false;  // the test's own text
             *out = r.title + r.text;
             return code;
         },
         nullptr, true},
        {"hailstone",
         [](ModelFixture& f, std::string* out) {
             HailResult r;
             const Result code = f.model.Hailstone(4, 5, &r);
             *out = std::to_string(r.steps) + " " + std::to_string(r.stepsToMaximum);
             return code;
         }},
        {"base conversion",
         [&hex](ModelFixture& f, std::string* out) {
             return ConvertDigits(f.model.Context(), 16, 7, hex, out);
         }},
        {"digit frequency",
         [](ModelFixture& f, std::string* out) {
             Num copy;
             if (BigCopy(&copy.v, &f.model.Variable(3)->numerator) != 0) return Result::kNoMemory;
             return DigitFrequencyText(&copy.v, out);
         }},
    };
    for (const auto& row : rows) {
        for (bool mode : {false, true}) {
            long runs = 0;
            EXPECT_EQ(Sweep(row.command, mode, row.recursion, row.lastCodeOnly, &runs), "")
                << row.name << (mode ? ", modulus mode" : "");
            EXPECT_GT(runs, 1) << row.name << ": allocates nothing";
        }
    }
}

// Requests far beyond the memory left: a child with 160 MiB more address
// space than it holds answers 3 for each, promptly, and never aborts. A holds
// 10^8 nines, read from text (the limbs are decimal: one linear pass).
TEST(AllocationFailures, HugeRequestsUnderAMemoryLimit) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's allocator aborts instead of throwing";
#endif
    const char* const formulas[] = {"10^(10^8-1)", "99999999!", "A*A", "A*(A-1)"};
    int fds[2];
    ASSERT_EQ(pipe(fds), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        close(fds[0]);
        ModelFixture f;
        {
            std::string nines;
            nines.resize(100000000, '9');
            BigInt a = {}, one = {};
            if (BigFromText(nines.data(), &a) != 0 || BigFromInt(&one, 1) != 0 ||
                f.model.StoreValue(1, "", &a, &one) != 0)
                _exit(100);
            BigFree(&a);
            BigFree(&one);
        }
        if (!LimitAddressSpaceAbove(size_t{160} << 20)) _exit(101);
        char codes[64] = {};
        int length = 0;
        for (const char* formula : formulas)
            length += std::snprintf(codes + length, sizeof codes - static_cast<size_t>(length),
                                    "%d ", f.model.Calculate(2, formula));
        _exit(write(fds[1], codes, static_cast<size_t>(length)) == length ? 0 : 102);
    }
    close(fds[1]);
    char codes[64] = {};
    const ssize_t n = read(fds[0], codes, sizeof codes - 1);
    close(fds[0]);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
    EXPECT_GT(n, 0);
    EXPECT_EQ(std::string(codes), "3 3 3 3 ") << "codes of " << formulas[0] << ", " << formulas[1]
                                              << ", " << formulas[2] << ", " << formulas[3];
}

}  // namespace
