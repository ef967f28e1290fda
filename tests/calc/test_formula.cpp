// The formula language end to end: each formula is compiled once and its tree
// evaluated twice (as recursion does), and both answers must agree. A value
// is "n" or "n/d" as stored; a failure is "compile k" or "code k".
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "calc/compiler.h"
#include "calc/evaluator.h"
#include "calc_test_util.h"

namespace {

std::string EvaluateTwice(CalcContext* ctx, const std::string& formula) {
    ModelFixture vars;  // A = 7/2, B = 10, every other letter empty
    EXPECT_EQ(vars.Let('A', "7/2") + vars.Let('B', "10"), 0);
    TreePtr root;
    const Result compiled = CompileFormula(formula, &root);
    if (!Ok(compiled)) {
        EXPECT_EQ(root, nullptr) << formula;
        return "compile " + std::to_string(compiled);
    }
    std::string answers[2];
    for (std::string& answer : answers) {
        const Result code = Evaluate(ctx, vars.model, root.get());
        answer =
            Ok(code) ? Value(&root->numerator, &root->denominator) : "code " + std::to_string(code);
        ReleaseValues(root.get());
    }
    EXPECT_EQ(answers[0], answers[1]) << formula << " differs when evaluated again";
    return answers[0];
}

// Pairs of formula and expected answer.
void Check(CalcContext* ctx, std::initializer_list<std::pair<std::string, std::string>> cases) {
    for (const auto& [formula, expected] : cases)
        EXPECT_EQ(EvaluateTwice(ctx, formula), expected) << "formula " << formula;
}

}  // namespace

TEST(Formula, RefusedTextAndSyntax) {
    QuitAtPoll ctx;
    // clang-format off
    Check(&ctx, {
        {"", "compile 9"}, {"   ", "compile 9"}, {"[sqroot](16)", "compile 1"},
        {"[sqrt(16)", "compile 1"}, {"2.5", "compile 1"}, {"2\t+3", "compile 1"},
        {"2\xe9", "compile 1"}, {"2\x84(3)", "compile 1"}, {"!5", "compile 1"},
        {"(12,18)", "compile 1"}, {"12,18", "compile 1"}, {"[sqrt](1,2)", "compile 1"},
        {"[gcd]((1,2))", "compile 1"}, {std::string(5001, '1'), "compile 1"}, {"(2", "compile 108"},
        {"2)", "compile 108"}, {")(", "compile 108"}, {"a'", "compile 6"}, {"()", "compile 6"},
        {"5!!", "compile 6"}, {"+!", "compile 6"}, {"2+", "compile 6"}, {"+2", "compile 6"},
        {"2*/3", "compile 6"}, {"[SQRT]16", "compile 6"}, {"2[SQRT]", "compile 6"},
        {"(*2)", "compile 6"}, {"2@", "compile 6"},
    });
    // clang-format on
}

TEST(Formula, NamesLiteralsAndImplicitProducts) {
    QuitAtPoll ctx;
    const std::string d255(255, '9'), first = "1" + std::string(254, '0');
    // clang-format off
    Check(&ctx, {
        {"2 ^ 1 0 0", "1267650600228229401496703205376"}, {"[Sqr] (16)", "4"}, {"5[bin]2", "10"},
        {"5[comb]2", "10"}, {"5[binom]2", "10"}, {"5[p]2", "20"}, {"007", "7"}, {"((2))", "2"},
        {"(2)(3)", "6"}, {"2A", "14/2"}, {"AB", "70/2"}, {"B2", "20"}, {"2(3)", "6"},
        {"3[SQRT](16)", "12"}, {"A-2", "3/2"}, {"2--3", "5"}, {"---3", "-3"}, {"Q+1", "code 2"},
        // A literal holds 255 digits; the 256th starts a number multiplied by it.
        {d255, d255},          {first + "7", "7" + std::string(254, '0')},
        {first + "2" + std::string(44, '0'), "2" + std::string(298, '0')},
        {"1" + [] { std::string s; for (int i = 0; i < 2400; ++i) s += "+1"; return s; }(), "2401"},
    });
    // clang-format on
}

TEST(Formula, PrecedenceAndAssociativity) {
    QuitAtPoll ctx;
    // clang-format off
    Check(&ctx, {
        {"2+3*4", "14"}, {"2*3+4", "10"}, {"8-4-2", "2"}, {"8/4/2", "1"}, {"2^3^2", "512"},
        {"-2^2", "-4"}, {"2*3^2", "18"}, {"10[c]3*2", "240"}, {"7[mod]3+1", "2"},
        {"7[quo]2[p]2", "6"}, {"[sqrt](16)^2", "16"}, {"-[abs](2)", "-2"}, {"(1+2)*3", "9"},
        {"5!", "120"}, {"(2+1)!", "6"}, {"2*3!", "12"}, {"3!^2", "36"}, {"A!", "code 6"},
        {"[gcd](12,18,30)", "6"}, {"[gcd](2+2,[lcm](3,4))", "4"}, {"12[gcd]18+1", "1"},
        {"[abs](-3)[gcd]4", "1"}, {"-(A)", "-7/2"}, {"A*-2", "-14/2"}, {"--5", "5"},
        // '%', '~', '&' belong to no level: the root is the subtree built last.
        {"2+3%4", "5"}, {"5%3", "5"}, {"1~2&3", "1"}, {"(2+3)%(4+5)", "9"}, {"2*3%4+1", "5"},
    });
    // clang-format on
}

TEST(Formula, FractionsStayExactAndUnreduced) {
    QuitAtPoll ctx;
    // clang-format off
    Check(&ctx, {
        {"7/2", "7/2"}, {"6/4", "3/2"}, {"6/3", "2"}, {"1/2+1/3", "5/6"}, {"1/2+1/2", "4/4"},
        {"1/2-1/3", "1/6"}, {"(1/2)*(2/3)", "2/6"}, {"(1/2)/(1/4)", "4/2"}, {"3/-2", "3/-2"},
        {"2^-3", "1/8"}, {"(2/3)^-2", "9/4"}, {"0^0", "1"}, {"1/0", "code 104"},
        {"(1/2)/0", "code 104"}, {"0^-1", "code 104"}, {"2^(1/2)", "code 6"},
        {"2^100000000", "code 17"}, {"[int](7/2)", "3"}, {"[int](-7/2)", "-3"}, {"7[quo]2", "3"},
        {"(15/2)[quo](1/2)", "15"}, {"7[quo]0", "code 104"}, {"7[quo]-2", "-3"},
    });
    // clang-format on
}

TEST(Formula, InterruptionPassesUp) {
    QuitAtPoll ctx(1);
    EXPECT_EQ(EvaluateTwice(&ctx, "(10^400)*(10^400)+1"), "code -1");
}
