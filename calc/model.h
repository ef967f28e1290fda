// The calculator's model: everything the main frame owns that outlives one
// command, without any window.
//
//  - 26 variable slots, labels 1..26 for A..Z, each empty or holding a value
//    (numerator, denominator, inscription);
//  - the modulus (label -1): its value M, the formula text that produced it
//    and the modulus mode, kept in step with the calculation context;
//  - the current compiled tree;
//  - the recursion: its steps and conditions (newest first) and the step
//    count default.
//
// Front ends learn about changes through CalcObserver. Questions to the user
// (overwrite confirmation, counts, formulas) are asked by the caller before
// it calls in; messages are shown by the caller from the returned code
// (ResultMessage in resources/result.h).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bigint/bigint.h"
#include "calc/evaluator.h"
#include "calc/tree.h"
#include "resources/limits.h"
#include "resources/result.h"

constexpr int kModulusLabel = -1;
constexpr int kDefaultStepCount = 100;

// 'A' for label 1 ... 'Z' for 26.
inline char LabelLetter(int label) { return static_cast<char>('A' + label - 1); }

// Notifications; every callback has an empty default.
class CalcObserver {
public:
    virtual ~CalcObserver();
    // label 1..26 gained, changed or lost its value.
    virtual void VariableChanged(int label) { (void)label; }
    // The modulus value or the modulus mode changed; atStart marks the value
    // set when the model is made.
    virtual void ModulusChanged(bool atStart) { (void)atStart; }
    // A recursion step or condition was entered or deleted.
    virtual void RecursionChanged() {}
    // A recursion run begins (the title shows "press Q to quit"); targets are
    // the labels the steps assign, each told once.
    virtual void RunStarted(const std::vector<int>& targets) { (void)targets; }
    // One recursion step has replaced the targets' numerators (tables append
    // a row here).
    virtual void StepDone(const std::vector<int>& targets) { (void)targets; }
    // The run is over with this code (the title returns to "Ordix").
    virtual void RunFinished(Result code) { (void)code; }
};

struct RecursionStep {
    std::string text;  // as typed, shown in the list
    int label = 0;     // target, 1..26
    TreePtr tree;      // the compiled right side
};

struct RecursionCondition {
    std::string text;  // as typed; listed after "0 < "
    TreePtr tree;
};

// What Batch writes to its text window.
struct BatchResult {
    std::string title;   // "batch calculation [formula]"
    std::string text;    // rows separated by "\r\n"
    bool shown = false;  // false when Batch stopped before making output
};

struct HailResult {
    int steps = 0;           // steps to reach 1
    int stepsToMaximum = 0;  // steps to reach the largest term
};

class CalcModel : public VariableReader {
public:
    // ctx must outlive the model. The starting modulus is a pseudo-random
    // value from 4 to 26 with the mode off.
    explicit CalcModel(CalcContext* ctx);
    ~CalcModel() override;
    CalcModel(const CalcModel&) = delete;
    CalcModel& operator=(const CalcModel&) = delete;

    CalcContext* Context() const { return ctx_; }
    void AddObserver(CalcObserver* observer);
    void RemoveObserver(CalcObserver* observer);

    // ---- Variables ----------------------------------------------------
    [[nodiscard]] const NumberValue* Variable(int label) const override;  // null when empty
    bool HasVariable(int label) const { return Variable(label) != nullptr; }
    // The lowest empty label 1..26, or 0 when all are taken.
    [[nodiscard]] int FirstFreeLabel() const;
    // Writes copies of numerator and denominator under label 1..26 with the
    // inscription, filling the slot when it is empty. kNoMemory leaves the
    // slot's old value; kOutOfBounds for a label outside 1..26.
    Result StoreValue(int label, const std::string& inscription, const BigInt* numerator,
                      const BigInt* denominator);
    // The same, taking value's records instead of copying them (a value of
    // hundreds of megabytes is stored without a second copy or a pass that
    // does not poll): on kOk value is left empty, on a failure as it was.
    Result TakeValue(int label, const std::string& inscription, NumberValue* value);

    // ---- Formulas -----------------------------------------------------
    // Compiles into the current tree (none after a failure).
    Result Compile(const std::string& formula);
    ExprNode* CurrentTree() const { return tree_.get(); }
    // Compiles and evaluates formula; on success result holds the value.
    // The current tree is freed either way.
    Result EvaluateFormula(const std::string& formula, NumberValue* result);
    // The Calculate command: the value of formula under label 1..26 with the
    // formula as inscription; on failure the variable is left as it was. The
    // caller asks for overwrite permission first when HasVariable(label).
    Result Calculate(int label, const std::string& formula);

    // ---- Modulus ------------------------------------------------------
    const NumberValue& Modulus() const { return modulus_; }
    const std::string& ModulusFormula() const { return modulusFormula_; }
    bool ModulusMode() const;
    // The mode is on exactly while the modulus window is shown.
    void SetModulusMode(bool on);
    // M := value (denominator 1); kOk or kNoMemory.
    Result SetModulus(const BigInt* value, bool atStart = false);
    // The Modulus command after OK: compiles and evaluates formula; on
    // success it becomes the modulus formula and its numerator the modulus.
    // A value below 1 is refused with kPositiveValue; on any code nothing
    // changes.
    Result ModulusCommand(const std::string& formula);

    // ---- Recursion ----------------------------------------------------
    // "X=formula" (spaces and case free); kCannotUnderstand when the text
    // does not start with a letter and '=', else the compile code. Goes to
    // the front.
    Result EnterStep(const std::string& text);
    // A halting condition: the run stops when its value is not positive.
    Result EnterCondition(const std::string& text);
    // An empty text does nothing and answers kOk.
    Result EnterRecursion(const std::string& text, bool condition);
    // Removes list row `row` (0 = first row; steps first, then conditions);
    // false when there is no such row.
    [[nodiscard]] bool DeleteRecursionRow(int row);
    void ClearRecursion();
    // The list rows in order: steps newest first, then conditions newest
    // first, each condition prefixed "0 < ".
    std::vector<std::string> RecursionRows() const;
    const std::vector<RecursionStep>& Steps() const { return steps_; }
    const std::vector<RecursionCondition>& Conditions() const { return conditions_; }
    // One step and Many steps are offered only while there are steps.
    bool HasSteps() const { return !steps_.empty(); }
    int StepCountDefault() const { return stepCountDefault_; }
    // Runs n steps: conditions first, then every right side, then the
    // stores. kOk, kHalted (a condition stopped being positive: a normal end
    // that is not reported), kStopped, or an error code. A step is done whole
    // or not at all; when memory ends the run before its first step, targets
    // it gave a 0 lose it again.
    Result RunSteps(int n);
    // One step; kHalted counts as success and answers kOk.
    Result OneStep();
    // Many steps: a count below 1 gives kPositiveValue; the count becomes the
    // default only when the run ends with kOk. kHalted answers kOk.
    Result ManySteps(int count);
    // The same from the text of the count dialog (text that is not a number
    // counts as 0).
    Result ManySteps(const std::string& countText);
    // Asks a running recursion to end after the current step with kStopped; meant
    // for observers (StepDone), since the run itself ignores keys.
    void StopRun() { stopRequested_ = true; }

    // ---- Batch and hailstone --------------------------------------------
    // value of list1 as A and, within it, each
    // value of list2 as B. Answers the code of the last evaluation, or
    // kInconsistent for an empty list, or the compile code (then nothing is
    // shown).
    Result Batch(const std::string& formula, const std::string& list1, const std::string& list2,
                 BatchResult* out);
    // The hailstone sequence from the seed under seedLabel, with the largest
    // term stored under maxLabel. kCouldNotFind (empty seed), kInconsistent
    // (same label), kOutOfBounds (maxLabel), kPositiveValue (a seed of 0 or
    // below, which never reaches 1), kStopped (the largest term so far is
    // stored), kNoMemory (maxLabel is left as it was).
    Result Hailstone(int seedLabel, int maxLabel, HailResult* out);

private:
    NumberValue* Slot(int label);
    void NotifyVariable(int label);
    void NotifyModulus(bool atStart);
    void NotifyRecursion();
    Result RunOneStep(std::vector<BigInt>* values);
    Result PrepareTargets(std::vector<int>* targets, std::vector<int>* created);

    CalcContext* ctx_;
    std::vector<CalcObserver*> observers_;
    std::unique_ptr<NumberValue> slots_[kLabelCount];
    NumberValue modulus_;
    std::string modulusFormula_;
    TreePtr tree_;
    std::vector<RecursionStep> steps_;            // newest first
    std::vector<RecursionCondition> conditions_;  // newest first
    int stepCountDefault_ = kDefaultStepCount;
    bool stopRequested_ = false;
};
