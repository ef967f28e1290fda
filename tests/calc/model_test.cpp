// The variable store, the Calculate command, the modulus and what observers
// hear about them.
#include <gtest/gtest.h>

#include <vector>

#include "calc_test_util.h"

namespace {

struct Recorder : CalcObserver {
    std::vector<int> variables;
    int modulusChanges = 0;
    void VariableChanged(int label) override { variables.push_back(label); }
    void ModulusChanged(bool) override { ++modulusChanges; }
};

}  // namespace

TEST(VariableStore, StoreFillsAndRefillsSlots) {
    ModelFixture f;
    Recorder rec;
    f.model.AddObserver(&rec);
    EXPECT_EQ(f.model.FirstFreeLabel(), 1);
    ASSERT_EQ(f.Let('A', "7/2"), 0);
    EXPECT_EQ(f.Var('A'), "7/2");
    EXPECT_EQ(f.model.Variable(1)->inscription, "7/2");
    EXPECT_EQ(f.model.FirstFreeLabel(), 2);
    // A later formula reads the fraction back.
    EXPECT_EQ(f.Eval("2A"), "14/2");
    ASSERT_EQ(f.Let('A', "5"), 0);
    EXPECT_EQ(f.Var('A'), "5");
    EXPECT_EQ(rec.variables, (std::vector<int>{1, 1}));
    f.model.RemoveObserver(&rec);
}

TEST(VariableStore, FailedCalculationLeavesTheVariable) {
    ModelFixture f;
    ASSERT_EQ(f.Let('N', "2^100"), 0);
    EXPECT_EQ(f.Var('N'), "1267650600228229401496703205376");
    EXPECT_EQ(f.Let('N', "1/0"), 104);
    EXPECT_EQ(f.Let('N', "2+"), 6);
    EXPECT_EQ(f.Let('N', "Q"), 2);
    EXPECT_EQ(f.Var('N'), "1267650600228229401496703205376");
    EXPECT_EQ(f.model.CurrentTree(), nullptr);
    EXPECT_EQ(f.model.Calculate(27, "1"), 17);
    EXPECT_EQ(f.model.Calculate(0, "1"), 17);
}

TEST(VariableStore, FirstFreeLabelWhenAllAreTaken) {
    ModelFixture f;
    for (char c = 'A'; c <= 'Z'; ++c) {
        if (c == 'K') continue;
        ASSERT_EQ(f.Let(c, "1"), 0);
    }
    EXPECT_EQ(f.model.FirstFreeLabel(), 'K' - 'A' + 1);
    ASSERT_EQ(f.Let('K', "1"), 0);
    EXPECT_EQ(f.model.FirstFreeLabel(), 0);
}

TEST(VariableStore, CompileReplacesTheCurrentTree) {
    ModelFixture f;
    ASSERT_EQ(f.model.Compile("1+2"), 0);
    EXPECT_NE(f.model.CurrentTree(), nullptr);
    EXPECT_EQ(f.model.Compile("1+"), 6);
    EXPECT_EQ(f.model.CurrentTree(), nullptr);
}

TEST(Modulus, StartsBetween4And26WithTheModeOff) {
    for (int i = 0; i < 20; ++i) {
        ScriptedContext ctx;
        CalcModel model(&ctx);
        int32_t m = 0;
        ASSERT_TRUE(BigToInt(&model.Modulus().numerator, &m));
        EXPECT_GE(m, 4);
        EXPECT_LE(m, 26);
        EXPECT_EQ(model.ModulusFormula(), std::to_string(m));
        EXPECT_FALSE(model.ModulusMode());
        EXPECT_EQ(Text(&ctx.modulus), std::to_string(m));
    }
}

TEST(Modulus, CommandSetsValueFormulaAndContext) {
    ModelFixture f;
    Recorder rec;
    f.model.AddObserver(&rec);
    ASSERT_EQ(f.model.ModulusCommand("2^3+3"), 0);
    EXPECT_EQ(Text(&f.model.Modulus().numerator), "11");
    EXPECT_EQ(Text(&f.ctx.modulus), "11");
    EXPECT_EQ(f.model.ModulusFormula(), "2^3+3");
    // Failures and values below 1 change nothing.
    EXPECT_EQ(f.model.ModulusCommand("2+"), 6);
    EXPECT_EQ(f.model.ModulusCommand("0"), 14);
    EXPECT_EQ(f.model.ModulusCommand("-5"), 14);
    EXPECT_EQ(Text(&f.ctx.modulus), "11");
    EXPECT_EQ(f.model.ModulusFormula(), "2^3+3");
    f.model.SetModulusMode(true);
    EXPECT_TRUE(f.ctx.modulusMode);
    EXPECT_EQ(f.Eval("10+5"), "4");
    f.model.SetModulusMode(false);
    EXPECT_EQ(f.Eval("10+5"), "15");
    EXPECT_EQ(rec.modulusChanges, 3);
    f.model.RemoveObserver(&rec);
}

TEST(Modulus, StoredResultsAreReducedInModulusMode) {
    ModelFixture f;
    f.model.SetModulusMode(true);
    ASSERT_EQ(f.Let('F', "[fact](10)"), 0);
    EXPECT_EQ(f.Var('F'), "0");
    ASSERT_EQ(f.Let('G', "2^1000000006"), 0);
    EXPECT_EQ(f.Var('G'), "2");   // 1000000006 = 4 mod 6, and 2^4 = 2 mod 7
}
