// The evaluator by operation: exact fractions, whole-only functions, the
// codes of the failures and the modulus mode. Every tree is evaluated twice,
// as recursion does, and must give the same value both times.
#include <gtest/gtest.h>

#include <string>

#include "calc/compiler.h"
#include "calc/evaluator.h"
#include "calc_test_util.h"

namespace {

class NoVariables : public VariableReader {
public:
    const NumberValue* Variable(int) const override { return nullptr; }
};

struct Case {
    const char* formula;
    const char* expected;   // a value, or "code k"
};

std::string EvaluateTwice(CalcContext* ctx, const std::string& formula) {
    NoVariables none;
    TreePtr root;
    Result code = CompileFormula(formula, &root);
    if (code != 0) return "compile " + std::to_string(code);
    code = Evaluate(ctx, none, root.get());
    std::string first = code ? "code " + std::to_string(code)
                             : Text(&root->numerator, &root->denominator);
    ReleaseValues(root.get());
    code = Evaluate(ctx, none, root.get());
    std::string second = code ? "code " + std::to_string(code)
                              : Text(&root->numerator, &root->denominator);
    EXPECT_EQ(first, second) << formula << " differs when evaluated again";
    return first;
}

void Check(CalcContext* ctx, const Case* cases, size_t n) {
    for (size_t i = 0; i < n; ++i)
        EXPECT_EQ(EvaluateTwice(ctx, cases[i].formula), cases[i].expected)
            << "formula " << cases[i].formula;
}

}  // namespace

TEST(Evaluator, FractionsStayExactAndUnreduced) {
    ScriptedContext ctx;
    const Case cases[] = {
        {"7/2", "7/2"},          {"6/4", "3/2"},         {"6/3", "2"},
        {"1/2+1/3", "5/6"},      {"1/2+1/2", "4/4"},     {"1/2-1/3", "1/6"},
        {"(1/2)*(2/3)", "2/6"},  {"(1/2)/(1/4)", "4/2"}, {"3/-2", "3/-2"},
        {"2^-3", "1/8"},         {"(2/3)^-2", "9/4"},    {"0^0", "1"},
        {"1/0", "code 104"},     {"(1/2)/0", "code 104"}, {"0^-1", "code 104"},
        {"2^(1/2)", "code 6"},   {"2^100000000", "code 17"},
    };
    Check(&ctx, cases, std::size(cases));
}

TEST(Evaluator, IntegerParts) {
    ScriptedContext ctx;
    const Case cases[] = {
        {"[int](7/2)", "3"},   {"[int](-7/2)", "-3"}, {"[int](5)", "5"},
        {"7[quo]2", "3"},      {"(15/2)[quo](1/2)", "15"}, {"7[quo]0", "code 104"},
        {"7[quo]-2", "-3"},
    };
    Check(&ctx, cases, std::size(cases));
}

TEST(Evaluator, WholeOnlyFunctions) {
    ScriptedContext ctx;
    const Case cases[] = {
        {"[fact](20)", "2432902008176640000"}, {"(7/2)!", "code 6"},   {"[fact](0)", "code 17"},
        {"10[perm]3", "720"},  {"10[c]3", "120"},      {"5[c]6", "0"},  {"(-4)[c]3", "-20"},
        {"(1/2)[c]1", "code 6"},
        {"17[mod]5", "2"},     {"(-15)[mod]5", "5"},   {"7[mod]0", "0"}, {"(-7)[mod]0", "code 104"},
        {"[gcd](12,18)", "6"}, {"[gcd](0,0)", "code 6"}, {"[lcm](4,6)", "12"},
        {"[lcm](0,5)", "code 104"}, {"[gcd](1/2,1)", "code 6"},
        {"[hail](6)", "3"},    {"[hail](7)", "22"},    {"[hail](-3)", "-10"}, {"[hail](1/3)", "code 6"},
        {"[sqrt](99999999)", "9999"}, {"[sqrt](100000000)", "10000"}, {"[sqrt](10^20)", "10000000000"},
        {"[sqrt](-4)", "code 14"},   {"[sqrt](9/4)", "code 6"},
        {"[curt](27)", "3"},   {"[curt](26)", "2"},    {"[curt](-27)", "-3"},
        {"[abs](-5/3)", "5/3"}, {"[abs](-2)*3", "6"},
    };
    Check(&ctx, cases, std::size(cases));
}

TEST(Evaluator, ModulusModeReducesResults) {
    ScriptedContext ctx;
    ctx.modulusMode = true;
    BigFromInt(&ctx.modulus, 7);
    const Case cases[] = {
        {"[fact](10)", "0"}, {"5+4", "2"},  {"3-5", "5"},   {"3*5", "1"},
        {"2/3", "3"},        {"3^-1", "5"}, {"3^100", "4"}, {"2^0", "1"},
        {"10[c]3", "1"},     {"[gcd](14,21)", "0"},
        // Leaves and copies are not reduced; only computed results are.
        {"100", "100"},      {"[abs](-100)", "100"},
    };
    Check(&ctx, cases, std::size(cases));
}

TEST(Evaluator, InterruptionPassesUp) {
    ScriptedContext ctx;
    ctx.quitAtPoll = 1;
    EXPECT_EQ(EvaluateTwice(&ctx, "(10^400)*(10^400)+1"), "code -1");
}

TEST(Evaluator, StoreResultCopiesOrReduces) {
    ScriptedContext ctx;
    BigInt t = {}, d = {};
    BigFromInt(&t, 23);
    ASSERT_EQ(StoreResult(&ctx, &d, &t), 0);
    EXPECT_EQ(Text(&d), "23");
    EXPECT_EQ(t.limbs, nullptr);   // the temporary is released
    BigFree(&d);
    ctx.modulusMode = true;
    BigFromInt(&ctx.modulus, 10);
    BigFromInt(&t, -23);
    ASSERT_EQ(StoreResult(&ctx, &d, &t), 0);
    EXPECT_EQ(Text(&d), "7");
    BigFree(&d);
}
