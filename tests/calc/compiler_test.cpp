// The compiler by its passes: the code each bad formula ends with, and the
// shape of the tree each good one builds.
#include <gtest/gtest.h>

#include <string>

#include "calc/codes.h"
#include "calc/compiler.h"
#include "calc_test_util.h"

namespace {

std::string OperatorName(int kind) {
    switch (kind) {
    case kCodeFact: return "FACT";
    case kCodeAbs: return "ABS";
    case kCodeBinom: return "C";
    case kCodePerm: return "P";
    case kCodeMod: return "MOD";
    case kCodeGcd: return "GCD";
    case kCodeLcm: return "LCM";
    case kCodeHail: return "HAIL";
    case kCodeQuo: return "QUO";
    case kCodeInt: return "INT";
    case kCodeSqrt: return "SQRT";
    case kCodeCurt: return "CURT";
    case kCodeNegate: return "NEG";
    default: return std::string(1, static_cast<char>(kind));
    }
}

// Prefix form: a leaf is its value, a variable its letter, an operation
// "(op left right)" or "(op right)".
std::string Shape(const ExprNode* n) {
    if (!n) return "?";
    if (n->kind == kCodeOperand) return Text(&n->numerator, &n->denominator);
    if (IsLetterCode(n->kind) && !n->left && !n->right) return OperatorName(n->kind);
    std::string s = "(" + OperatorName(n->kind);
    if (n->left) s += " " + Shape(n->left);
    if (n->right) s += " " + Shape(n->right);
    return s + ")";
}

std::string Compiled(const std::string& formula) {
    TreePtr root;
    Result code = CompileFormula(formula, &root);
    if (!Ok(code)) {
        EXPECT_EQ(root, nullptr) << formula;
        return "code " + std::to_string(code);
    }
    return Shape(root.get());
}

struct Case {
    const char* formula;
    const char* expected;
};

void Check(const Case* cases, size_t n) {
    for (size_t i = 0; i < n; ++i)
        EXPECT_EQ(Compiled(cases[i].formula), cases[i].expected) << "formula " << cases[i].formula;
}

}  // namespace

TEST(Compiler, FunctionTableMatchesWholeNamesOnly) {
    EXPECT_EQ(LookUpFunction("SQR"), kCodeSqrt);
    EXPECT_EQ(LookUpFunction("SQRT"), kCodeSqrt);
    EXPECT_EQ(LookUpFunction("C"), kCodeBinom);
    EXPECT_EQ(LookUpFunction("BINOM"), kCodeBinom);
    EXPECT_EQ(LookUpFunction("P"), kCodePerm);
    EXPECT_EQ(LookUpFunction("QUO"), kCodeQuo);
    EXPECT_EQ(LookUpFunction("INT"), kCodeInt);
    EXPECT_EQ(LookUpFunction("sqrt"), 0);
    EXPECT_EQ(LookUpFunction("SQROOT"), 0);
    EXPECT_EQ(LookUpFunction(""), 0);
}

TEST(Compiler, TextPreparationAndScan) {
    const Case cases[] = {
        {"", "code 9"},
        {"   ", "code 9"},
        {"2 ^ 1 0 0", "(^ 2 100)"},
        {"[sqrt](16)", "(SQRT 16)"},
        {"[Sqr] (16)", "(SQRT 16)"},
        {"[sqroot](16)", "code 1"},
        {"[sqrt(16)", "code 1"},
        {"2.5", "code 1"},
        {"2\t+3", "code 1"},
        {"a'", "code 6"},
        {"2\xe9", "code 1"},         // a byte above 127 never acts as a function code
        {"2\x84(3)", "code 1"},
        {"[abs](-3)[gcd]4", "(GCD (ABS -3) 4)"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, ParenthesesAndEmptiness) {
    const Case cases[] = {
        {"(2", "code 108"},
        {"2)", "code 108"},
        {")(", "code 108"},
        {"((2))", "2"},
        {"()", "code 6"},
        {"(2)(3)", "(* 2 3)"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, NumbersHoldAtMost255Digits) {
    std::string d255(255, '9');
    EXPECT_EQ(Compiled(d255), d255);
    // The 256th digit starts a second number, multiplied by the first.
    std::string first = "1" + std::string(254, '0');
    std::string second = "2" + std::string(44, '0');
    EXPECT_EQ(Compiled(first + second), "(* " + first + " " + second + ")");
    EXPECT_EQ(Compiled(first + "7"), "(* " + first + " 7)");
    EXPECT_EQ(Compiled("007"), "7");
}

TEST(Compiler, PostfixFactorialBecomesFact) {
    const Case cases[] = {
        {"5!", "(FACT 5)"},
        {"[fact](5)", "(FACT 5)"},
        {"A!", "(FACT A)"},
        {"(N+1)!", "(FACT (+ N 1))"},
        {"2*3!", "(* 2 (FACT 3))"},
        {"3!^2", "(^ (FACT 3) 2)"},
        {"!5", "code 1"},
        {"5!!", "code 6"},   // FACT FACT (5): a function before a function
        {"+!", "code 6"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, ListFunctionsFoldIntoInfixChains) {
    const Case cases[] = {
        {"[gcd](12,18,30)", "(GCD (GCD 12 18) 30)"},
        {"[lcm](4,6)", "(LCM 4 6)"},
        {"[gcd](2+2,[lcm](3,4))", "(GCD (+ 2 2) (LCM 3 4))"},
        {"12[GCD]18", "(GCD 12 18)"},
        {"12[gcd]18+1", "(GCD 12 (+ 18 1))"},   // the lowest level of all
        {"(12,18)", "code 1"},
        {"12,18", "code 1"},
        {"[sqrt](1,2)", "code 1"},
        {"[gcd]((1,2))", "code 1"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, ImplicitProductsAndSyntaxRule) {
    const Case cases[] = {
        {"2A", "(* 2 A)"},
        {"AB", "(* A B)"},
        {"A2", "(* A 2)"},
        {"2(3)", "(* 2 3)"},
        {"3[SQRT](16)", "(* 3 (SQRT 16))"},
        {"A-2", "(- A 2)"},
        {"2+", "code 6"},
        {"+2", "code 6"},
        {"2*/3", "code 6"},
        {"[SQRT]16", "code 6"},
        {"2[SQRT]", "code 6"},
        {"(*2)", "code 6"},
        {"2@", "code 6"},
        {"2--3", "(- 2 -3)"},
        {"---3", "-3"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, PrecedenceLevels) {
    const Case cases[] = {
        {"2+3*4", "(+ 2 (* 3 4))"},
        {"2*3+4", "(+ (* 2 3) 4)"},
        {"8-4-2", "(- (- 8 4) 2)"},
        {"8/4/2", "(/ (/ 8 4) 2)"},
        {"2^3^2", "(^ 2 (^ 3 2))"},
        {"-2^2", "(* -1 (^ 2 2))"},
        {"2^-3", "(^ 2 -3)"},
        {"2*3^2", "(* 2 (^ 3 2))"},
        {"10[c]3*2", "(* (C 10 3) 2)"},
        {"7[mod]3+1", "(+ (MOD 7 3) 1)"},
        {"7[quo]2[p]1", "(P (QUO 7 2) 1)"},
        {"[sqrt](16)^2", "(^ (SQRT 16) 2)"},
        {"[int](7/2)", "(INT (/ 7 2))"},
        {"-[abs](2)", "(* -1 (ABS 2))"},
        {"(1+2)*3", "(* (+ 1 2) 3)"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, UnaryMinusFoldsIntoLeavesOrMinusOne) {
    const Case cases[] = {
        {"-5", "-5"},
        {"A*-2", "(* A -2)"},
        {"-(A)", "(* -1 A)"},
        {"-A", "(* -1 A)"},
        {"-(5)", "-5"},
        {"-(2+3)", "(* -1 (+ 2 3))"},
        {"--5", "5"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, OperatorsOfNoLevelAreLeftOut) {
    // The root is the subtree built last; the rest is dropped silently.
    const Case cases[] = {
        {"2+3%4", "(+ 2 3)"},
        {"5%3", "5"},
        {"1~2&3", "1"},
        {"(2+3)%(4+5)", "(+ 4 5)"},
        {"2*3%4+1", "(+ 4 1)"},
    };
    Check(cases, std::size(cases));
}

TEST(Compiler, LongFormulas) {
    std::string sum = "1";
    for (int i = 0; i < 2400; ++i) sum += "+1";
    TreePtr root;
    ASSERT_EQ(CompileFormula(sum, &root), 0);
    EXPECT_EQ(CompileFormula(std::string(5001, '1'), &root), 1);
    EXPECT_EQ(root, nullptr);
}
