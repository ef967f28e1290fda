// Every allocating operation with each of its allocations refused in turn
// (tests/support/alloc_refusal.h), k = 1, 2, ... until a run is refused
// nothing: a refused run answers 3 (or -1, a refused product's code, which the
// operations built on products pass on, or, where a fallback took over, the
// value of an unrefused run), leaves its operands alone and leaks no block.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "bigint/dispatch.h"
#include "bigint/thresholds.h"
#include "support/alloc_refusal.h"
#include "support/test_support.h"

namespace {

std::string Digits(int count, unsigned seed) {
    std::string s;
    for (int i = 0; i < count; ++i) {
        seed = seed * 1103515245u + 12345u;
        s.push_back(char('0' + (seed >> 16) % 10));
    }
    s[0] = char('1' + s[0] % 9);
    return s;
}

// One operation: two result records (the second for quotients' remainders
// and denominators); prepare runs unarmed before each run.
struct Row {
    const char* name;
    std::function<Result(CalcContext*, BigInt*, BigInt*)> op;
    std::function<void()> prepare = nullptr;
};

// The first fault of the sweep, or ""; *runs counts the runs. conv is the
// text of the base conversions, compared with the results.
std::string Sweep(const Row& row, const std::vector<const Num*>& operands, const std::string& conv,
                  long* runs) {
    CalcContext ctx;
    std::vector<std::string> before;
    for (const Num* n : operands) before.push_back(Text(*n));
    Result code = Result::kOk;
    long leaked = 0;
    auto run = [&](long refuse, std::string* value) {
        if (row.prepare) row.prepare();
        BigInt r1 = {}, r2 = {};
        ReleaseDivisorCache();
        const long live = gAllocLive;
        ArmAllocations(refuse);
        code = row.op(&ctx, &r1, &r2);
        gAllocArmed = false;
        const long afterOp = gAllocLive;
        *value = Text(&r1) + " " + Text(&r2) + " " + conv;  // its own blocks stay
        const long withText = gAllocLive;
        BigFree(&r1);
        BigFree(&r2);
        ReleaseDivisorCache();
        leaked = afterOp - live - (withText - gAllocLive);
        return gAllocRefused > 0;
    };
    std::string expected, v;
    run(0, &expected);  // makes the kept root tables
    run(0, &expected);
    const Result expectedCode = code;
    if (leaked != 0) return "an unrefused run leaks";
    for (long k = 1;; ++k) {
        *runs = k;
        const bool refused = run(k, &v);
        std::string fault;
        if (!refused) {
            if (v == expected && code == expectedCode) return "";
            fault = "the run refused nothing answers " + std::to_string(code) + " " + v;
        } else if (code != Result::kNoMemory && code != Result::kStopped &&
                   (code != expectedCode || v != expected)) {
            // (the value of an unrefused run: a fallback needing no memory took over)
            fault = "answers " + std::to_string(code);
        } else if (leaked != 0) {
            fault = "leaks " + std::to_string(leaked) + " blocks";
        }
        for (size_t i = 0; fault.empty() && i < operands.size(); ++i)
            if (Text(*operands[i]) != before[i]) fault = "changes an operand";
        if (!fault.empty()) return fault + " when allocation " + std::to_string(k) + " is refused";
    }
}

// An operation of the table: results in r (and s), the context c.
#define OP(...)                                                                                    \
    [&]([[maybe_unused]] CalcContext* c, [[maybe_unused]] BigInt* r, [[maybe_unused]] BigInt* s) { \
        return __VA_ARGS__;                                                                        \
    }

TEST(AllocationFailures, EveryAllocationOfEveryOperationMayBeRefused) {
    // Small operands take every path: thresholds at their minimum, the long
    // modular power from three limbs.
    const FastThresholds saved = gFastThresholds;
    gFastThresholds = FastThresholds::Lowered();
    gFastThresholds.powMontgomery = 40;
    gFastThresholds.nttParallel = 1 << 12;  // one helper thread per product would be slow
    Num one9("9999"), a("123456789"), neg("-98765432123456789"), x(Digits(40, 1)), y(Digits(36, 2)),
        big(Digits(200, 3)), big2(Digits(180, 4)), even(Digits(60, 5) + "0"),
        longM(Digits(170, 6) + "1"), longE(Digits(4400, 7)), n300("300"), k120("120"), n25("25"),
        e7("7");
    char text[220];
    const std::string textIn = Digits(200, 8);
    std::string conv;
    const std::string hexIn = "7FA3" + Digits(150, 9), decIn = Digits(150, 10);
    auto with = [](int32_t* threshold, int32_t value, auto op) {  // no std::function: it allocates
        const int32_t kept = *threshold;
        *threshold = value;
        const Result code = op();
        *threshold = kept;
        return code;
    };
    const Row rows[] = {
        {"copy", OP(BigCopy(r, &big.v))},
        {"add", OP(BigAdd(r, &big.v, &neg.v))},
        {"sub", OP(BigSub(r, &x.v, &big.v))},
        {"mul schoolbook", OP(BigMul(c, r, &big.v, &one9.v))},
        {"mul Karatsuba", OP(BigMul(c, r, &x.v, &y.v))},
        {"mul pieces", OP(BigMul(c, r, &big.v, &a.v))},
        {"mul transform, two threads",
         OP(with(&gFastThresholds.nttParallel, 64, [&] { return BigMul(c, r, &big.v, &big2.v); }))},
        {"square transform", OP(BigMul(c, r, &big.v, &big.v))},
        {"mul 64-bit transform, two threads",
         OP(with(&gFastThresholds.ntt64Length, 20,
                 [&] {
                     return with(&gFastThresholds.ntt64Parallel, 4,
                                 [&] { return BigMul(c, r, &big.v, &big2.v); });
                 }))},
        {"divmod small", OP(BigDivMod(c, &big.v, &one9.v, r, s))},
        {"divmod cached reciprocal", OP(BigDivMod(c, &big.v, &x.v, r, s))},
        {"divmod Newton", OP(BigDivMod(c, &big.v, &big2.v, r, s))},
        {"power", OP(BigPow(c, r, &x.v, &n25.v))},
        {"power by int", OP(BigPowInt(c, &neg.v, 9, r))},
        {"fraction power", OP(FracPow(c, r, s, &a.v, &x.v, &e7.v))},
        {"square root", OP(BigSqrt(c, &big.v, r))},
        {"cube root", OP(BigCbrt(c, &big.v, r))},
        {"gcd", OP(BigGcd(c, &big.v, &big2.v, r))},
        {"lcm", OP(BigLcm(c, &x.v, &y.v, r))},
        {"modular inverse", OP(ModInverse(c, &x.v, &longM.v, r))},
        {"modular product", OP(ModMul(c, r, &big.v, &big2.v, &x.v))},
        {"modular power, odd word modulus", OP(ModPow(c, &big.v, &y.v, r, &x.v))},
        {"modular power, even word modulus", OP(ModPow(c, &big.v, &y.v, r, &even.v))},
        {"modular power, long exponent", OP(ModPow(c, &x.v, &longE.v, r, &a.v))},
        {"modular power, long modulus",
         OP(with(&gFastThresholds.powMontgomery, 3,
                 [&] { return ModPow(c, &x.v, &n25.v, r, &longM.v); }))},
        {"fraction reduce", OP(FracReduce(c, &big.v, &x.v, r, s))},
        {"fraction sum", OP(FracAdd(c, r, s, &a.v, &x.v, &neg.v, &y.v))},
        {"fraction difference", OP(FracSub(c, r, s, &a.v, &x.v, &neg.v, &y.v))},
        {"fraction product", OP(FracMul(c, r, s, &big.v, &x.v, &y.v, &big2.v))},
        {"fraction quotient", OP(FracDiv(c, r, s, &big.v, &x.v, &y.v, &big2.v))},
        {"remainder", OP(BigMod(c, &neg.v, &x.v, r))},
        {"modular sum", OP(ModAdd(c, r, &big.v, &neg.v, &y.v))},
        {"modular difference", OP(ModSub(c, r, &neg.v, &big.v, &y.v))},
        {"product by an int", OP(BigMulSmallInt(c, r, &big.v, -7777))},
        // A copy fails for memory only.
        {"hailstone step, in a copy",
         OP(Ok(BigCopy(r, &neg.v)) ? BigHail(c, r) : Result::kNoMemory)},
        {"increment, in a copy", OP(Ok(BigCopy(r, &one9.v)) ? BigIncrement(r) : Result::kNoMemory)},
        {"text in", OP(BigFromText(text, r)),
         [&] { std::memcpy(text, textIn.c_str(), textIn.size() + 1); }},
        {"base 16 to 10", OP(ConvertBase(c, 16, 10, &conv)), [&] { conv = hexIn; }},
        {"base 10 to 7", OP(ConvertBase(c, 10, 7, &conv)), [&] { conv = decIn; }},
        {"base 10 to 2", OP(ConvertBase(c, 10, 2, &conv)), [&] { conv = decIn; }},
        {"factorial", OP(BigFact(c, r, &n300.v))},
        {"permutations", OP(BigPerm(c, r, &n300.v, &n25.v))},
        {"binomial, primes", OP(BigBinomial(c, r, &n300.v, &k120.v))},
        {"binomial, quotient", OP(BigBinomial(c, r, &n300.v, &n25.v))},
    };
    const std::vector<const Num*> operands = {&one9, &a,     &neg,   &x,    &y,    &big, &big2,
                                              &even, &longM, &longE, &n300, &k120, &n25, &e7};
    long most = 0;
    for (const Row& row : rows) {
        long runs = 0;
        EXPECT_EQ(Sweep(row, operands, conv, &runs), "") << row.name;
        EXPECT_GT(runs, 1) << row.name << ": allocates nothing";
        most = std::max(most, runs);
    }
    gFastThresholds = saved;
    RecordProperty("most allocations of one operation", std::to_string(most));
}

}  // namespace
