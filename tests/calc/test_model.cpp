// The calculator's model: variables, the modulus, recursion, batch and
// hailstone runs, and the helpers the number window and dialogs call.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bigint/alloc.h"
#include "calc/conversion.h"
#include "calc/decimal_read.h"
#include "calc/digit_freq.h"
#include "calc_test_util.h"

namespace {

int Label(char letter) { return ModelFixture::Label(letter); }

// The fixture with the steps of a test entered and its values set, each
// expected to succeed.
struct Model : ModelFixture {
    using ModelFixture::ModelFixture;
    void Lets(std::initializer_list<std::pair<char, const char*>> values) {
        for (const auto& v : values) EXPECT_EQ(Let(v.first, v.second), 0) << v.second;
    }
    // Entered in the order given, so the last one is listed first.
    void Steps(std::initializer_list<const char*> steps) {
        for (const char* s : steps) EXPECT_EQ(model.EnterStep(s), 0) << s;
    }
};

struct Recorder : CalcObserver {
    std::vector<int> variables, started;
    int modulusChanges = 0, steps = 0, finished = 99, stopAfter = 0;
    CalcModel* model = nullptr;
    void VariableChanged(int label) override { variables.push_back(label); }
    void ModulusChanged(bool) override { ++modulusChanges; }
    void RunStarted(const std::vector<int>& targets) override { started = targets; }
    void StepDone(const std::vector<int>&) override {
        if (++steps == stopAfter) model->StopRun();
    }
    void RunFinished(Result code) override { finished = code; }
};

}  // namespace

TEST(Variables, CalculateStoresOrLeavesTheOldValue) {
    Model f;
    Recorder rec;
    f.model.AddObserver(&rec);
    EXPECT_EQ(f.model.FirstFreeLabel(), 1);
    ASSERT_EQ(f.Let('A', "7/2"), 0);
    EXPECT_EQ(f.model.Variable(1)->inscription, "7/2");
    ASSERT_EQ(f.Let('B', "2A"), 0);  // a later formula reads the fraction back
    EXPECT_EQ(f.Vars("AB"), "7/2 14/2");
    EXPECT_EQ(rec.variables, (std::vector<int>{1, 2}));
    f.model.RemoveObserver(&rec);
    for (const char* bad : {"1/0", "2+"}) EXPECT_NE(f.Let('A', bad), 0) << bad;
    EXPECT_EQ(f.Let('A', "Q"), Result::kCouldNotFind);
    EXPECT_EQ(f.Var('A'), "7/2");
    EXPECT_EQ(f.model.CurrentTree(), nullptr);
    EXPECT_EQ(f.model.Calculate(27, "1"), Result::kOutOfBounds);
    EXPECT_EQ(f.model.Calculate(0, "1"), Result::kOutOfBounds);
    for (char c = 'C'; c <= 'Z'; ++c) ASSERT_EQ(c == 'K' ? Result::kOk : f.Let(c, "1"), 0);
    EXPECT_EQ(f.model.FirstFreeLabel(), Label('K'));
    ASSERT_EQ(f.Let('K', "1"), 0);
    EXPECT_EQ(f.model.FirstFreeLabel(), 0);
    ASSERT_EQ(f.model.Compile("1+2"), 0);
    EXPECT_NE(f.model.CurrentTree(), nullptr);
    EXPECT_EQ(f.model.Compile("1+"), Result::kInconsistent);
    EXPECT_EQ(f.model.CurrentTree(), nullptr);
}

TEST(Modulus, StartsBetween4And26WithTheModeOffAndTheCommandSetsIt) {
    for (int i = 0; i < 20; ++i) {
        QuitAtPoll ctx;
        CalcModel model(&ctx);
        int32_t m = 0;
        ASSERT_TRUE(BigToInt(&model.Modulus().numerator, &m));
        EXPECT_TRUE(m >= 4 && m <= 26) << m;
        EXPECT_EQ(model.ModulusFormula(), std::to_string(m));
        EXPECT_EQ(Text(&ctx.modulus), std::to_string(m));
        EXPECT_FALSE(model.ModulusMode());
    }
    Model f;
    Recorder rec;
    f.model.AddObserver(&rec);
    ASSERT_EQ(f.model.ModulusCommand("2^3+3"), 0);
    EXPECT_EQ(Text(&f.model.Modulus().numerator), "11");
    EXPECT_EQ(Text(&f.ctx.modulus), "11");
    // Failures and values below 1 change nothing.
    EXPECT_EQ(f.model.ModulusCommand("2+"), Result::kInconsistent);
    EXPECT_EQ(f.model.ModulusCommand("0"), Result::kPositiveValue);
    EXPECT_EQ(f.model.ModulusCommand("-5"), Result::kPositiveValue);
    EXPECT_EQ(Text(&f.ctx.modulus), "11");
    EXPECT_EQ(f.model.ModulusFormula(), "2^3+3");
    f.model.SetModulusMode(true);
    EXPECT_TRUE(f.ctx.modulusMode);
    f.Lets({{'A', "10+5"}, {'F', "[fact](10)"}, {'G', "2^1000000006"}});
    // 10! = -1 and 2^1000000006 = 2^6 modulo 11.
    EXPECT_EQ(f.Vars("AFG"), "4 10 9");
    f.model.SetModulusMode(false);
    ASSERT_EQ(f.Let('A', "10+5"), 0);
    EXPECT_EQ(f.Var('A'), "15");
    EXPECT_EQ(rec.modulusChanges, 3);
    f.model.RemoveObserver(&rec);
}

// Deleting rows shows in the command line's script and the recursion
// dialog's test; here the order of the rows, the refused entries and the
// bounds of a row.
TEST(Recursion, RefusedEntriesAndRowBounds) {
    Model f;
    f.Steps({"b = a+b"});
    ASSERT_EQ(f.model.EnterCondition("b - 1"), 0);
    ASSERT_EQ(f.model.EnterCondition("a"), 0);
    for (const char* bad : {"2=A", "A"})
        EXPECT_EQ(f.model.EnterStep(bad), Result::kCannotUnderstand) << bad;
    EXPECT_EQ(f.model.EnterStep("A=2+"), Result::kInconsistent);
    EXPECT_EQ(f.model.EnterCondition("(1"), Result::kUnbalanced);
    EXPECT_EQ(f.model.EnterRecursion("", false), 0);
    EXPECT_EQ(f.model.RecursionRows(), (std::vector<std::string>{"b = a+b", "0 < a", "0 < b - 1"}));
    EXPECT_FALSE(f.model.DeleteRecursionRow(3));
    EXPECT_FALSE(f.model.DeleteRecursionRow(-1));
    f.model.ClearRecursion();
    EXPECT_TRUE(f.model.RecursionRows().empty());
}

// A negative fraction halts by its sign, which the denominator may hold. A
// halted run succeeds but neither steps nor becomes the default count.
TEST(Recursion, ConditionsHaltBeforeTheStep) {
    Model f;
    f.Lets({{'A', "5"}});
    f.Steps({"a=a-3"});
    ASSERT_EQ(f.model.EnterCondition("(1/2)/(a-3)"), 0);
    EXPECT_EQ(f.model.RunSteps(10), Result::kHalted);
    EXPECT_EQ(f.model.ManySteps(50), 0);
    EXPECT_EQ(f.Var('A'), "2");
    EXPECT_EQ(f.model.StepCountDefault(), kDefaultStepCount);
    EXPECT_EQ(f.model.ManySteps(0), Result::kPositiveValue);
    for (const char* bad : {"x", "-3"})
        EXPECT_EQ(f.model.ManySteps(std::string(bad)), Result::kPositiveValue) << bad;
    // Empty lists run empty steps.
    f.model.ClearRecursion();
    EXPECT_EQ(f.model.ManySteps(7), 0);
    EXPECT_EQ(f.model.StepCountDefault(), 7);
}

TEST(Recursion, MissingTargetsStartAtZeroAndKeepTheirDenominator) {
    Model f;
    Recorder rec;
    f.model.AddObserver(&rec);
    f.Lets({{'H', "7/2"}});
    f.Steps({"c=c+2", "h=h*2"});
    ASSERT_EQ(f.model.RunSteps(3), 0);
    // (7/2)*2 = 14/2 unreduced: the numerator doubles, the denominator 2 stays.
    EXPECT_EQ(f.Vars("CH"), "6 56/2");
    EXPECT_EQ(rec.started, (std::vector<int>{Label('H'), Label('C')}));
    EXPECT_EQ(rec.steps, 3);
    EXPECT_EQ(rec.finished, 0);
    f.model.RemoveObserver(&rec);
}

TEST(Recursion, FailureMidRunKeepsEarlierSteps) {
    Model f;
    f.Lets({{'C', "3"}, {'D', "0"}});
    f.Steps({"c=c-1", "d=6/c"});
    EXPECT_EQ(f.model.ManySteps(10), Result::kDivisionByZero);
    // Three steps went through; in the fourth no variable was replaced.
    EXPECT_EQ(f.Vars("CD"), "0 6");
    EXPECT_EQ(f.model.StepCountDefault(), kDefaultStepCount);
    // The same trees run again from the values now held.
    ASSERT_EQ(f.Let('C', "2"), 0);
    EXPECT_EQ(f.model.RunSteps(1), 0);
    EXPECT_EQ(f.Vars("CD"), "1 3");
    f.Steps({"e=Z"});
    EXPECT_EQ(f.model.OneStep(), Result::kCouldNotFind);
    EXPECT_EQ(f.Vars("CD"), "1 3");
}

TEST(Recursion, KeysDoNotStopARunButStopRunDoes) {
    Model f(1);  // Q pending all the time
    f.Lets({{'A', "0"}});
    f.Steps({"a=a+1"});
    EXPECT_EQ(f.model.RunSteps(20), 0);
    EXPECT_EQ(f.Var('A'), "20");
    Recorder rec;
    rec.model = &f.model;
    rec.stopAfter = 4;
    f.model.AddObserver(&rec);
    EXPECT_EQ(f.model.ManySteps(20), Result::kStopped);
    EXPECT_EQ(f.Var('A'), "24");
    EXPECT_EQ(rec.finished, Result::kStopped);
    EXPECT_EQ(f.model.StepCountDefault(), kDefaultStepCount);
    f.model.RemoveObserver(&rec);
}

// Right sides read the variables in place and hand their results to the
// targets: constants, bare letters and repeated letters must still behave as
// independent values from step to step.
TEST(Recursion, ValuesStayIndependentAcrossSteps) {
    Model f;
    f.Lets({{'A', "1"}, {'B', "2"}, {'F', "1/3"}});
    f.Steps({"a=b", "b=a", "k=5", "f=f*f-f"});
    ASSERT_EQ(f.model.RunSteps(3), 0);
    // Numerators of f*f-f over the kept denominator: -6/3, 162/3, 77274/3.
    EXPECT_EQ(f.Vars("ABKF"), "2 1 5 77274/3");
    ASSERT_EQ(f.Let('X', "k+a*a"), 0);
    EXPECT_EQ(f.Vars("XA"), "9 2");
    // A missing letter after a lent one fails the step and leaves every
    // variable as it was; the same trees run again once it has a value.
    f.model.ClearRecursion();
    f.Steps({"a=a+z"});
    EXPECT_EQ(f.model.OneStep(), Result::kCouldNotFind);
    EXPECT_EQ(f.Var('A'), "2");
    ASSERT_EQ(f.Let('Z', "10"), 0);
    ASSERT_EQ(f.model.ManySteps(2), 0);
    EXPECT_EQ(f.Vars("AZ"), "22 10");
}

// A lone letter whose variable the step replaces takes the old value rather
// than a copy (A=B); one that others read too (C) or that is not replaced (E)
// is copied. A step that fails after such a move leaves every variable as it
// was.
TEST(Recursion, LoneLettersTakeReplacedValuesAndStillMatch) {
    Model f;
    f.Lets({{'A', "0"}, {'B', "1"}, {'C', "7"}, {'E', "5"}});
    f.Steps({"B=A+B", "A=B", "D=C", "G=C", "C=C+1", "H=E"});
    ASSERT_EQ(f.model.ManySteps(3), 0);
    EXPECT_EQ(f.Vars("ABCDEGH"), "2 3 10 9 5 9 5");
    ASSERT_EQ(f.model.ManySteps(997), 0);
    // F(1000), F(1001) (209 digits) by Cassini's identity: B² − AB − A² = 1.
    ASSERT_EQ(f.Let('X', "B*B-A*B-A*A"), 0);
    EXPECT_EQ(f.Vars("XCDG"), "1 1007 1006 1006");
    EXPECT_EQ(f.Var('B').size(), 209u);
    f.Steps({"F=6/(E-5)"});
    const std::string before = f.Vars("ABCDGH");
    EXPECT_EQ(f.model.OneStep(), Result::kDivisionByZero);
    EXPECT_EQ(f.Vars("ABCDGH"), before);
}

// Row order, spaces and trailing commas show in the command line's script.
TEST(Batch, TemporaryAndLentVariables) {
    Model f;
    BatchResult out;
    ASSERT_EQ(f.model.Batch("A^B", "2", "10", &out), 0);
    EXPECT_FALSE(f.model.HasVariable(1));  // the temporary A and B are gone again
    EXPECT_FALSE(f.model.HasVariable(2));
    // Existing variables lend only their numerators: 4 over A's 3 shows 4.
    f.Lets({{'A', "5/3"}, {'B', "9"}});
    ASSERT_EQ(f.model.Batch("A", "4", "1", &out), 0);
    EXPECT_EQ(out.text, "A=4, B=1\r\n4\r\n\r\n");
    EXPECT_EQ(f.Vars("AB"), "5/3 9");
    // Values in the output are broken into lines of 72 digits.
    ASSERT_EQ(f.model.Batch("10^(B-1)", "1", "73", &out), 0);
    EXPECT_EQ(out.text, "A=1, B=73\r\n1" + std::string(71, '0') + "\r\n0\r\n\r\n");
}

TEST(Batch, CodesSilentlyDroppedRowsAndAFailedCopy) {
    Model f;
    BatchResult out;
    EXPECT_EQ(f.model.Batch("A", " ", "1", &out), Result::kInconsistent);
    EXPECT_FALSE(out.shown);
    EXPECT_EQ(f.model.Batch("A+", "1", "1", &out), Result::kInconsistent);
    EXPECT_FALSE(out.shown);
    // Only the last pair's code counts.
    EXPECT_EQ(f.model.Batch("A/B", "1", "0,2", &out), 0);
    EXPECT_EQ(out.text, "A=1, B=2\r\n1\r\n\r\n");
    EXPECT_EQ(f.model.Batch("A/B", "1", "2,0", &out), Result::kDivisionByZero);
    EXPECT_TRUE(out.shown);
    // A result of 64000 digits or more is left out without a message, and so
    // is one that would push the text past 64000 characters.
    ASSERT_EQ(f.Let('C', "10^63998"), 0);  // 63999 digits
    EXPECT_EQ(f.model.Batch("C*B", "1", "10,1,2", &out), 0);
    EXPECT_EQ(out.text.find("B=10"), std::string::npos);
    EXPECT_EQ(out.text.find("B=1\r\n1000"), 5u);
    EXPECT_EQ(out.text.find("B=2"), std::string::npos);
    // A copy of A that cannot be made (arrays above 10 limbs refused; A has
    // 26) must not come back as the failed copy's 1.
    f.Lets({{'A', "10^100"}, {'B', "7"}});
    const std::string before = f.Vars("AB");
    gMaxLimbAlloc = 10;
    const Result code = f.model.Batch("A+B", "1,2", "3", &out);
    gMaxLimbAlloc = INT32_MAX;
    EXPECT_EQ(code, Result::kNoMemory);
    EXPECT_EQ(f.Vars("AB"), before);
}

// The run from 27 shows in the command line's script.
TEST(Hailstone, SeedOneAndRefusals) {
    Model f;
    HailResult r;
    f.Lets({{'H', "1"}, {'M', "5"}});
    ASSERT_EQ(f.model.Hailstone(Label('H'), Label('M'), &r), 0);
    EXPECT_EQ(r.steps * 1000 + r.stepsToMaximum, 0);
    EXPECT_EQ(f.Var('M'), "1");
    EXPECT_EQ(f.model.Hailstone(1, 2, &r), Result::kCouldNotFind);
    f.Lets({{'A', "0"}});
    EXPECT_EQ(f.model.Hailstone(1, 1, &r), Result::kInconsistent);
    EXPECT_EQ(f.model.Hailstone(1, 27, &r), Result::kOutOfBounds);
    EXPECT_EQ(f.model.Hailstone(1, 2, &r), Result::kPositiveValue);
    f.Lets({{'A', "-7"}});
    EXPECT_EQ(f.model.Hailstone(1, 2, &r), Result::kPositiveValue);
    EXPECT_FALSE(f.model.HasVariable(2));
    Model stopped(3);
    stopped.Lets({{'A', "7"}});
    EXPECT_EQ(stopped.model.Hailstone(1, 2, &r), Result::kStopped);
}

TEST(Helpers, ConversionDigitTableAndDecimalReading) {
    QuitAtPoll ctx;
    // The digits themselves are the arithmetic's; here only what the wrapper
    // adds: the base check and no digits shown after a failure.
    std::string out = "junk";
    EXPECT_EQ(ConvertDigits(&ctx, 16, 10, "ff", &out), Result::kOk);
    EXPECT_EQ(out, "255");
    EXPECT_EQ(ConvertDigits(&ctx, 1, 10, "0", &out), Result::kCannotUnderstand);
    EXPECT_EQ(out, "");
    // Counts wider than one digit are right-aligned to the total's width (a
    // table of one-digit counts shows in the command line's script).
    Num twelve(std::string(12, '7'));
    std::string t;
    ASSERT_EQ(DigitFrequencyText(&twelve.v, &t), Result::kOk);
    for (const char* line : {"7: 12 100.0%\r\n", "0:  0   0.0%\r\n", "\r\n   12 100.0%\r\n"})
        EXPECT_NE(t.find(line), std::string::npos) << line;

    // Decimal reading: the value, or null where no digit is found.
    // clang-format off
    const struct { const char* text; const char* value; } reads[] = {
        {"123\n", "123"}, {"--12", "12"}, {"-12", "-12"}, {"1,234,567", "1234567"}, {"12-3", "123"},
        {"+5", "5"}, {"-0", "0"}, {"0abc", "0"}, {"-", nullptr}, {"", nullptr}, {"abc", nullptr},
    };
    // clang-format on
    for (const auto& c : reads) {
        Num v;
        EXPECT_EQ(ReadDecimal(c.text, &v.v), c.value ? Result::kOk : Result::kCouldNotFind)
            << c.text;
        if (c.value) {
            EXPECT_EQ(Text(v), c.value) << c.text;
        }
    }
}
