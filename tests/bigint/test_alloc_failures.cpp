// Every allocating operation, with each of its allocations refused in turn.
//
// The program's operator new (tests/support/alloc_refusal.h) refuses
// allocation k and counts the live blocks. For each operation of
// the table and k = 1, 2, … until a run is refused nothing, a refused run
// must answer code 3 (or -1, the code of a product whose result array was
// refused, which the operations built on products pass on), leave its
// operands as they were (or, where a fallback took over, give the value of an
// unrefused run), and leave as many live blocks as before once its
// result is released; the run refused nothing must give the value of an
// unrefused run.
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
// and denominators), prepare runs unarmed before each run.
struct Row {
    const char* name;
    std::function<Result(CalcContext*, BigInt*, BigInt*)> op;
    std::function<void()> prepare = nullptr;
};

struct Outcome {
    long runs = 0;
    std::string firstFault;
};

// conv is the text of the base conversions, compared with the results.
Outcome Sweep(const Row& row, const std::vector<const Num*>& operands, const std::string& conv) {
    CalcContext ctx;
    std::vector<std::string> before;
    for (const Num* n : operands) before.push_back(Text(*n));
    auto run = [&](long refuse, std::string* value, Result* code, long* count, long* leaked) {
        if (row.prepare) row.prepare();
        BigInt r1 = {}, r2 = {};
        ReleaseDivisorCache();
        const long live = gAllocLive;
        ArmAllocations(refuse);
        *code = row.op(&ctx, &r1, &r2);
        gAllocArmed = false;
        *count = gAllocCount;
        const long afterOp = gAllocLive;
        *value = Text(&r1) + " " + Text(&r2) + " " + conv;  // its own blocks stay
        const long withText = gAllocLive;
        BigFree(&r1);
        BigFree(&r2);
        ReleaseDivisorCache();
        *leaked = afterOp - live - (withText - gAllocLive);
        return gAllocRefused > 0;
    };
    std::string expected;
    Result expectedCode, code;
    long total = 0, leaked = 0;
    run(0, &expected, &expectedCode, &total, &leaked);  // makes the kept root tables
    run(0, &expected, &expectedCode, &total, &leaked);
    Outcome out;
    if (leaked != 0) out.firstFault = "an unrefused run leaks";
    for (long k = 1; out.firstFault.empty(); ++k) {
        long count = 0;
        std::string v;
        const bool refused = run(k, &v, &code, &count, &leaked);
        out.runs = k;
        std::string fault;
        if (!refused) {
            if (v != expected || code != expectedCode)
                fault = "the run refused nothing answers " + std::to_string(code) + " " + v;
            else
                break;
        } else if (code != Result::kNoMemory && code != Result::kStopped &&
                   (code != expectedCode || v != expected)) {
            // (the value of an unrefused run: a fallback needing no memory took over)
            fault = "answers " + std::to_string(code);
        } else if (leaked != 0) {
            fault = "leaks " + std::to_string(leaked) + " blocks";
        }
        for (size_t i = 0; fault.empty() && i < operands.size(); ++i) {
            if (Text(*operands[i]) != before[i]) fault = "changes an operand";
        }
        if (!fault.empty())
            out.firstFault = fault + " when allocation " + std::to_string(k) + " of " +
                             std::to_string(count) + " is refused";
    }
    return out;
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
    auto powLong = [&](CalcContext* c, BigInt* r, const BigInt* m) {
        gFastThresholds.powMontgomery = 3;
        const Result code = ModPow(c, &x.v, &n25.v, r, m);
        gFastThresholds.powMontgomery = 40;
        return code;
    };
    const Row rows[] = {
        {"copy", [&](CalcContext*, BigInt* r, BigInt*) { return BigCopy(r, &big.v); }, {}},
        {"add", [&](CalcContext*, BigInt* r, BigInt*) { return BigAdd(r, &big.v, &neg.v); }, {}},
        {"sub", [&](CalcContext*, BigInt* r, BigInt*) { return BigSub(r, &x.v, &big.v); }, {}},
        {"mul schoolbook",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigMul(c, r, &big.v, &one9.v); }},
        {"mul Karatsuba",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigMul(c, r, &x.v, &y.v); }},
        {"mul pieces",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigMul(c, r, &big.v, &a.v); }},
        {"mul transform, two threads",
         [&](CalcContext* c, BigInt* r, BigInt*) {
             gFastThresholds.nttParallel = 64;
             const Result code = BigMul(c, r, &big.v, &big2.v);
             gFastThresholds.nttParallel = 1 << 12;
             return code;
         }},
        {"square transform",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigMul(c, r, &big.v, &big.v); }},
        {"divmod small",
         [&](CalcContext* c, BigInt* q, BigInt* r) { return BigDivMod(c, &big.v, &one9.v, q, r); }},
        {"divmod cached reciprocal",
         [&](CalcContext* c, BigInt* q, BigInt* r) { return BigDivMod(c, &big.v, &x.v, q, r); }},
        {"divmod Newton",
         [&](CalcContext* c, BigInt* q, BigInt* r) { return BigDivMod(c, &big.v, &big2.v, q, r); }},
        {"power", [&](CalcContext* c, BigInt* r, BigInt*) { return BigPow(c, r, &x.v, &n25.v); }},
        {"power by int",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigPowInt(c, &neg.v, 9, r); }},
        {"fraction power",
         [&](CalcContext* c, BigInt* n, BigInt* d) { return FracPow(c, n, d, &a.v, &x.v, &e7.v); }},
        {"square root", [&](CalcContext* c, BigInt* r, BigInt*) { return BigSqrt(c, &big.v, r); }},
        {"cube root", [&](CalcContext* c, BigInt* r, BigInt*) { return BigCbrt(c, &big.v, r); }},
        {"gcd", [&](CalcContext* c, BigInt* r, BigInt*) { return BigGcd(c, &big.v, &big2.v, r); }},
        {"lcm", [&](CalcContext* c, BigInt* r, BigInt*) { return BigLcm(c, &x.v, &y.v, r); }},
        {"modular inverse",
         [&](CalcContext* c, BigInt* r, BigInt*) { return ModInverse(c, &x.v, &longM.v, r); }},
        {"modular product",
         [&](CalcContext* c, BigInt* r, BigInt*) { return ModMul(c, r, &big.v, &big2.v, &x.v); }},
        {"modular power, odd word modulus",
         [&](CalcContext* c, BigInt* r, BigInt*) { return ModPow(c, &big.v, &y.v, r, &x.v); }},
        {"modular power, even word modulus",
         [&](CalcContext* c, BigInt* r, BigInt*) { return ModPow(c, &big.v, &y.v, r, &even.v); }},
        {"modular power, long exponent",
         [&](CalcContext* c, BigInt* r, BigInt*) { return ModPow(c, &x.v, &longE.v, r, &a.v); }},
        {"modular power, long modulus",
         [&](CalcContext* c, BigInt* r, BigInt*) { return powLong(c, r, &longM.v); }},
        {"fraction reduce",
         [&](CalcContext* c, BigInt* n, BigInt* d) { return FracReduce(c, &big.v, &x.v, n, d); }},
        {"fraction sum", [&](CalcContext* c, BigInt* n,
                             BigInt* d) { return FracAdd(c, n, d, &a.v, &x.v, &neg.v, &y.v); }},
        {"fraction difference",
         [&](CalcContext* c, BigInt* n, BigInt* d) {
             return FracSub(c, n, d, &a.v, &x.v, &neg.v, &y.v);
         }},
        {"fraction product",
         [&](CalcContext* c, BigInt* n, BigInt* d) {
             return FracMul(c, n, d, &big.v, &x.v, &y.v, &big2.v);
         }},
        {"fraction quotient",
         [&](CalcContext* c, BigInt* n, BigInt* d) {
             return FracDiv(c, n, d, &big.v, &x.v, &y.v, &big2.v);
         }},
        {"remainder",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigMod(c, &neg.v, &x.v, r); }},
        {"modular sum",
         [&](CalcContext* c, BigInt* r, BigInt*) { return ModAdd(c, r, &big.v, &neg.v, &y.v); }},
        {"modular difference",
         [&](CalcContext* c, BigInt* r, BigInt*) { return ModSub(c, r, &neg.v, &big.v, &y.v); }},
        {"product by an int",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigMulSmallInt(c, r, &big.v, -7777); }},
        {"hailstone step, in a copy",
         [&](CalcContext* c, BigInt* r, BigInt*) {
             const Result code = BigCopy(r, &neg.v);
             return Ok(code) ? BigHail(c, r) : code;
         }},
        {"increment, in a copy",
         [&](CalcContext*, BigInt* r, BigInt*) {
             const Result code = BigCopy(r, &one9.v);
             return Ok(code) ? BigIncrement(r) : code;
         }},
        {"text in", [&](CalcContext*, BigInt* r, BigInt*) { return BigFromText(text, r); },
         [&] { std::memcpy(text, textIn.c_str(), textIn.size() + 1); }},
        {"base 16 to 10",
         [&](CalcContext* c, BigInt*, BigInt*) { return ConvertBase(c, 16, 10, &conv); },
         [&] { conv = hexIn; }},
        {"base 10 to 7",
         [&](CalcContext* c, BigInt*, BigInt*) { return ConvertBase(c, 10, 7, &conv); },
         [&] { conv = decIn; }},
        {"base 10 to 2",
         [&](CalcContext* c, BigInt*, BigInt*) { return ConvertBase(c, 10, 2, &conv); },
         [&] { conv = decIn; }},
        {"factorial", [&](CalcContext* c, BigInt* r, BigInt*) { return BigFact(c, r, &n300.v); }},
        {"permutations",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigPerm(c, r, &n300.v, &n25.v); }},
        {"binomial, primes",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigBinomial(c, r, &n300.v, &k120.v); }},
        {"binomial, quotient",
         [&](CalcContext* c, BigInt* r, BigInt*) { return BigBinomial(c, r, &n300.v, &n25.v); }},
    };
    const std::vector<const Num*> operands = {&one9, &a,     &neg,   &x,    &y,    &big, &big2,
                                              &even, &longM, &longE, &n300, &k120, &n25, &e7};
    long most = 0;
    for (const Row& row : rows) {
        const Outcome out = Sweep(row, operands, conv);
        EXPECT_EQ(out.firstFault, "") << row.name;
        EXPECT_GT(out.runs, 1) << row.name << ": allocates nothing";
        most = std::max(most, out.runs);
    }
    gFastThresholds = saved;
    RecordProperty("most allocations of one operation", std::to_string(most));
}

}  // namespace
