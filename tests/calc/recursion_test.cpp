// Recursion: entering and listing, the order of a step (conditions, then all
// right sides, then the stores), halting and failing runs.
#include <gtest/gtest.h>

#include "calc_test_util.h"

namespace {

struct RunRecorder : CalcObserver {
    std::vector<int> started;
    int steps = 0;
    int finished = 99;
    int stopAfter = 0;   // asks the model to stop after this many steps
    CalcModel* model = nullptr;
    void RunStarted(const std::vector<int>& targets) override { started = targets; }
    void StepDone(const std::vector<int>&) override {
        if (++steps == stopAfter) model->StopRun();
    }
    void RunFinished(int code) override { finished = code; }
};

}  // namespace

TEST(Recursion, EnteringAndListingRows) {
    ModelFixture f;
    EXPECT_EQ(f.model.EnterStep("b = a+b"), 0);
    EXPECT_EQ(f.model.EnterStep("a=b"), 0);
    EXPECT_EQ(f.model.EnterCondition("b - 1"), 0);
    EXPECT_EQ(f.model.EnterCondition("a"), 0);
    EXPECT_EQ(f.model.RecursionRows(),
              (std::vector<std::string>{"a=b", "b = a+b", "0 < a", "0 < b - 1"}));
    EXPECT_EQ(f.model.Steps()[1].label, 2);
    EXPECT_TRUE(f.model.HasSteps());

    EXPECT_EQ(f.model.EnterStep("2=A"), 1);
    EXPECT_EQ(f.model.EnterStep("A"), 1);
    EXPECT_EQ(f.model.EnterStep("A=2+"), 6);
    EXPECT_EQ(f.model.EnterCondition("(1"), 108);
    EXPECT_EQ(f.model.EnterRecursion("", false), 0);
    EXPECT_EQ(f.model.RecursionRows().size(), 4u);

    // With two steps, row 2 is the newest condition.
    EXPECT_TRUE(f.model.DeleteRecursionRow(2));
    EXPECT_EQ(f.model.RecursionRows(), (std::vector<std::string>{"a=b", "b = a+b", "0 < b - 1"}));
    EXPECT_TRUE(f.model.DeleteRecursionRow(0));
    EXPECT_FALSE(f.model.DeleteRecursionRow(2));
    EXPECT_FALSE(f.model.DeleteRecursionRow(-1));
    EXPECT_EQ(f.model.RecursionRows(), (std::vector<std::string>{"b = a+b", "0 < b - 1"}));
    f.model.ClearRecursion();
    EXPECT_TRUE(f.model.RecursionRows().empty());
    EXPECT_FALSE(f.model.HasSteps());
}

TEST(Recursion, FibonacciReadsTheValuesFromBeforeTheStep) {
    ModelFixture f;
    f.Let('A', "1");
    f.Let('B', "1");
    f.model.EnterStep("b=a+b");
    f.model.EnterStep("a=b");
    ASSERT_EQ(f.model.OneStep(), 0);
    EXPECT_EQ(f.Var('A') + " " + f.Var('B'), "1 2");
    ASSERT_EQ(f.model.OneStep(), 0);
    EXPECT_EQ(f.Var('A') + " " + f.Var('B'), "2 3");
    ASSERT_EQ(f.model.ManySteps(100), 0);
    EXPECT_EQ(f.Var('A'), "1500520536206896083277");
    EXPECT_EQ(f.Var('B'), "2427893228399975082453");
    EXPECT_EQ(f.model.StepCountDefault(), 100);
}

TEST(Recursion, EuclidHaltsOnItsCondition) {
    ModelFixture f;
    f.Let('A', "1071");
    f.Let('B', "462");
    f.model.EnterStep("b=a[mod]b");
    f.model.EnterStep("a=b");
    f.model.EnterCondition("b");
    EXPECT_EQ(f.model.RunSteps(1000), Result::kHalted);
    EXPECT_EQ(f.Var('A') + " " + f.Var('B'), "21 0");
    // A halted run succeeds but does not become the default count.
    EXPECT_EQ(f.model.ManySteps(50), 0);
    EXPECT_EQ(f.model.StepCountDefault(), 100);
    EXPECT_EQ(f.model.ManySteps(0), 14);
    EXPECT_EQ(f.model.ManySteps(std::string("x")), 14);
    EXPECT_EQ(f.model.ManySteps(std::string("-3")), 14);
}

TEST(Recursion, ConditionsComeBeforeTheStep) {
    ModelFixture f;
    f.Let('A', "0");
    f.model.EnterStep("a=a+1");
    f.model.EnterCondition("a");
    EXPECT_EQ(f.model.RunSteps(5), Result::kHalted);
    EXPECT_EQ(f.Var('A'), "0");
    // Negative values halt too, fractions by their sign.
    f.model.ClearRecursion();
    f.Let('A', "5");
    f.model.EnterStep("a=a-3");
    f.model.EnterCondition("(1/2)/(a-3)");   // 1/(2(a-3)): the denominator holds the sign
    EXPECT_EQ(f.model.RunSteps(10), Result::kHalted);
    EXPECT_EQ(f.Var('A'), "2");
}

TEST(Recursion, EmptyListsRunEmptySteps) {
    ModelFixture f;
    EXPECT_EQ(f.model.ManySteps(7), 0);
    EXPECT_EQ(f.model.StepCountDefault(), 7);
}

TEST(Recursion, MissingTargetsStartAtZeroAndKeepTheirDenominator) {
    ModelFixture f;
    RunRecorder rec;
    f.model.AddObserver(&rec);
    f.Let('H', "7/2");
    f.model.EnterStep("c=c+2");
    f.model.EnterStep("h=h*2");
    ASSERT_EQ(f.model.RunSteps(3), 0);
    EXPECT_EQ(f.Var('C'), "6");
    // (7/2)*2 = 14/2 unreduced: the numerator doubles, the denominator 2 stays.
    EXPECT_EQ(f.Var('H'), "56/2");
    EXPECT_EQ(rec.started, (std::vector<int>{8, 3}));
    EXPECT_EQ(rec.steps, 3);
    EXPECT_EQ(rec.finished, 0);
    f.model.RemoveObserver(&rec);
}

TEST(Recursion, FailureMidRunKeepsEarlierSteps) {
    ModelFixture f;
    f.Let('C', "3");
    f.Let('D', "0");
    f.model.EnterStep("c=c-1");
    f.model.EnterStep("d=6/c");
    EXPECT_EQ(f.model.ManySteps(10), 104);
    // Three steps went through; in the fourth no variable was replaced.
    EXPECT_EQ(f.Var('C') + " " + f.Var('D'), "0 6");
    EXPECT_EQ(f.model.StepCountDefault(), 100);
    // The same trees run again from the values now held.
    f.Let('C', "2");
    EXPECT_EQ(f.model.RunSteps(1), 0);
    EXPECT_EQ(f.Var('C') + " " + f.Var('D'), "1 3");
    EXPECT_EQ(f.model.EnterStep("e=Z"), 0);
    EXPECT_EQ(f.model.OneStep(), 2);
}

TEST(Recursion, KeysDoNotStopARunButStopRunDoes) {
    ModelFixture f;
    f.Let('A', "0");
    f.model.EnterStep("a=a+1");
    f.ctx.quitAtPoll = 1;   // Q pending all the time
    EXPECT_EQ(f.model.RunSteps(20), 0);
    EXPECT_EQ(f.Var('A'), "20");
    f.ctx.quitAtPoll = 0;
    RunRecorder rec;
    rec.model = &f.model;
    rec.stopAfter = 4;
    f.model.AddObserver(&rec);
    EXPECT_EQ(f.model.ManySteps(20), -1);
    EXPECT_EQ(f.Var('A'), "24");
    EXPECT_EQ(rec.finished, -1);
    EXPECT_EQ(f.model.StepCountDefault(), 100);
    f.model.RemoveObserver(&rec);
}

// Right sides read the variables in place and hand their results to the
// targets: constants, bare letters and repeated letters must still behave as
// independent values from step to step.
TEST(Recursion, ValuesStayIndependentAcrossSteps) {
    ModelFixture f;
    f.Let('A', "1");
    f.Let('B', "2");
    f.Let('F', "1/3");
    f.model.EnterStep("a=b");
    f.model.EnterStep("b=a");
    f.model.EnterStep("k=5");
    f.model.EnterStep("f=f*f-f");
    ASSERT_EQ(f.model.RunSteps(3), 0);
    EXPECT_EQ(f.Var('A') + " " + f.Var('B') + " " + f.Var('K'), "2 1 5");
    // Numerators of f*f-f over the kept denominator: -6/3, 162/3, 77274/3.
    EXPECT_EQ(f.Var('F'), "77274/3");
    EXPECT_EQ(f.Eval("k+a*a"), "9");
    EXPECT_EQ(f.Var('A'), "2");

    // A missing letter after a lent one fails the step and leaves every
    // variable as it was; the same trees run again once it has a value.
    f.model.ClearRecursion();
    f.model.EnterStep("a=a+z");
    EXPECT_EQ(f.model.OneStep(), 2);
    EXPECT_EQ(f.Var('A'), "2");
    f.Let('Z', "10");
    ASSERT_EQ(f.model.ManySteps(2), 0);
    EXPECT_EQ(f.Var('A') + " " + f.Var('Z'), "22 10");
}
