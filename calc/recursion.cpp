// Recursion: steps "X=formula" applied to the variables over and over, all
// right sides seeing the values from before the step, halted by conditions
// that stop being positive.
#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>

#include "calc/codes.h"
#include "calc/compiler.h"
#include "calc/model.h"

namespace {

// The working text of an entry: spaces removed, upper case.
std::string WorkingText(const std::string& text) {
    std::string out;
    for (char c : text)
        if (c != ' ') out.push_back(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    return out;
}

// Zero or negative, as a fraction (a denominator may carry the sign).
bool IsNotPositive(const ExprNode* node) {
    if (BigIsZero(&node->numerator)) return true;
    bool negative = node->numerator.negative != 0;
    if (!BigIsZero(&node->denominator) && node->denominator.negative) negative = !negative;
    return negative;
}

}  // namespace

Result CalcModel::EnterStep(const std::string& text) {
    std::string work = WorkingText(text);
    if (work.size() < 2 || work[0] < 'A' || work[0] > 'Z' || work[1] != '=')
        return Result::kCannotUnderstand;
    RecursionStep step;
    Result code = CompileFormula(work.substr(2), &step.tree);
    if (!Ok(code)) return code;
    step.text = text;
    step.label = work[0] - 'A' + 1;
    steps_.insert(steps_.begin(), std::move(step));
    NotifyRecursion();
    return Result::kOk;
}

Result CalcModel::EnterCondition(const std::string& text) {
    RecursionCondition condition;
    Result code = CompileFormula(WorkingText(text), &condition.tree);
    if (!Ok(code)) return code;
    condition.text = text;
    conditions_.insert(conditions_.begin(), std::move(condition));
    NotifyRecursion();
    return Result::kOk;
}

Result CalcModel::EnterRecursion(const std::string& text, bool condition) {
    if (text.empty()) return Result::kOk;
    return condition ? EnterCondition(text) : EnterStep(text);
}

bool CalcModel::DeleteRecursionRow(int row) {
    const int r = static_cast<int>(steps_.size());
    if (row < 0 || row >= r + static_cast<int>(conditions_.size())) return false;
    if (row > r - 1)
        conditions_.erase(conditions_.begin() + (row - r));
    else
        steps_.erase(steps_.begin() + row);
    NotifyRecursion();
    return true;
}

void CalcModel::ClearRecursion() {
    steps_.clear();
    conditions_.clear();
    NotifyRecursion();
}

std::vector<std::string> CalcModel::RecursionRows() const {
    std::vector<std::string> rows;
    for (const RecursionStep& s : steps_) rows.push_back(s.text);
    for (const RecursionCondition& c : conditions_) rows.push_back("0 < " + c.text);
    return rows;
}

// Every target without a value gets 0 (denominator 1); the targets in list
// order, each once.
Result CalcModel::PrepareTargets(std::vector<int>* targets) {
    BigInt zero = {}, one = {};
    // (void): one-limb constants whose failure has never been reported here;
    // the run keeps that, and the stores below still answer their own codes.
    (void)BigFromInt(&zero, 0);
    (void)BigFromInt(&one, 1);
    Result code = Result::kOk;
    for (const RecursionStep& s : steps_) {
        if (std::find(targets->begin(), targets->end(), s.label) != targets->end()) continue;
        targets->push_back(s.label);
        if (Ok(code) && !HasVariable(s.label) && !Ok(StoreValue(s.label, "", &zero, &one)))
            code = Result::kNoMemory;
    }
    BigFree(&zero);
    BigFree(&one);
    return code;
}

// One step: conditions in list order (the first that fails or is not
// positive ends the run), then every right side, and only then the stores,
// so that all right sides read the values from before the step.
Result CalcModel::RunOneStep() {
    Result code = Result::kOk;
    for (RecursionCondition& c : conditions_) {
        code = Evaluate(ctx_, *this, c.tree.get());
        if (Ok(code) && IsNotPositive(c.tree.get())) code = Result::kHalted;
        ReleaseValues(c.tree.get());
        if (!Ok(code)) return code;
    }
    for (RecursionStep& s : steps_) {
        code = Evaluate(ctx_, *this, s.tree.get());
        if (!Ok(code)) break;
    }
    for (RecursionStep& s : steps_) {
        if (Ok(code)) {
            // Only the numerator is replaced; the target keeps its denominator.
            // A computed result is handed over (the tree releases its values
            // right after); a constant right side keeps its compiled value.
            NumberValue* target = Slot(s.label);
            BigInt value = {};
            if (s.tree->kind != kCodeOperand) {
                value = s.tree->numerator;
                s.tree->numerator = BigInt{};
            } else if (BigCopy(&value, &s.tree->numerator) != 0) {
                BigFree(&value);
                code = Result::kNoMemory;
            }
            if (Ok(code)) {
                BigFree(&target->numerator);
                target->numerator = value;
            }
        }
        ReleaseValues(s.tree.get());
    }
    return code;
}

Result CalcModel::RunSteps(int n) {
    stopRequested_ = false;
    std::vector<int> targets;
    Result code = PrepareTargets(&targets);
    if (!Ok(code)) return code;
    for (CalcObserver* o : observers_) o->RunStarted(targets);
    while (n > 0 && Ok(code)) {
        code = RunOneStep();
        if (Ok(code)) {
            for (int label : targets) NotifyVariable(label);
            for (CalcObserver* o : observers_) o->StepDone(targets);
        }
        // A pending key is read, and then window actions looked at, but
        // neither ends the run: n steps are n steps unless a code stops it.
        if (ctx_->PollQuitKey() != kQuitKey) ctx_->PollInterrupt();
        if (Ok(code) && stopRequested_) code = Result::kStopped;
        --n;
    }
    for (CalcObserver* o : observers_) o->RunFinished(code);
    return code;
}

Result CalcModel::OneStep() {
    Result code = RunSteps(1);
    return code == Result::kHalted ? Result::kOk : code;
}

Result CalcModel::ManySteps(int count) {
    if (count < 1) return Result::kPositiveValue;
    Result code = RunSteps(count);
    if (Ok(code)) stepCountDefault_ = count;
    return code == Result::kHalted ? Result::kOk : code;
}

Result CalcModel::ManySteps(const std::string& countText) {
    long n = std::strtol(countText.c_str(), nullptr, 10);
    if (n > INT_MAX) n = INT_MAX;
    if (n < 1) return Result::kPositiveValue;
    return ManySteps(static_cast<int>(n));
}
