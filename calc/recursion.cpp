// Recursion: steps "X=formula" applied to the variables over and over, all
// right sides seeing the values from before the step, halted by conditions
// that stop being positive.
#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <new>

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

// The label a right side reads when it is a lone letter, else 0.
int LoneLetter(const ExprNode* tree) {
    if (!IsLetterCode(tree->kind) || tree->left || tree->right) return 0;
    return tree->kind - 'A' + 1;
}

}  // namespace

Result CalcModel::EnterStep(const std::string& text) {
    try {
        std::string work = WorkingText(text);
        if (work.size() < 2 || work[0] < 'A' || work[0] > 'Z' || work[1] != '=')
            return Result::kCannotUnderstand;
        RecursionStep step;
        Result code = CompileFormula(work.substr(2), &step.tree);
        if (!Ok(code)) return code;
        step.text = text;
        step.label = work[0] - 'A' + 1;
        // A step moves without allocating, so a failed insert leaves the list.
        steps_.insert(steps_.begin(), std::move(step));
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
    NotifyRecursion();
    return Result::kOk;
}

Result CalcModel::EnterCondition(const std::string& text) {
    try {
        RecursionCondition condition;
        Result code = CompileFormula(WorkingText(text), &condition.tree);
        if (!Ok(code)) return code;
        condition.text = text;
        conditions_.insert(conditions_.begin(), std::move(condition));
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
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

// Every target without a value gets 0 (denominator 1), and is listed in
// *created; the targets in list order, each once. Both lists have room for
// every step.
Result CalcModel::PrepareTargets(std::vector<int>* targets, std::vector<int>* created) {
    BigInt zero = {}, one = {};
    // A released record must never reach the stores: BigCopy reads its limbs.
    Result code = Result::kOk;
    if (BigFromInt(&zero, 0) != 0 || BigFromInt(&one, 1) != 0) code = Result::kNoMemory;
    for (const RecursionStep& s : steps_) {
        if (std::find(targets->begin(), targets->end(), s.label) != targets->end()) continue;
        targets->push_back(s.label);
        if (!Ok(code) || HasVariable(s.label)) continue;
        if (Ok(StoreValue(s.label, "", &zero, &one)))
            created->push_back(s.label);
        else
            code = Result::kNoMemory;
    }
    BigFree(&zero);
    BigFree(&one);
    return code;
}

// One step: conditions in list order (the first that fails or is not
// positive ends the run), then every right side, and only then the stores,
// so that all right sides read the values from before the step. Every new
// numerator is ready before the first store: a step is done whole or not at
// all. values has a record for every step.
//
// A right side that is a lone letter, read by no other lone letter, whose
// variable this step replaces, takes that variable's old numerator instead
// of a copy (X=Y with Y=X+Y moves Y's limbs to X): it is taken only once the
// step cannot fail, so a failed step still leaves every variable as it was.
Result CalcModel::RunOneStep(std::vector<BigInt>* values) {
    Result code = Result::kOk;
    for (RecursionCondition& c : conditions_) {
        code = Evaluate(ctx_, *this, c.tree.get());
        if (Ok(code) && IsNotPositive(c.tree.get())) code = Result::kHalted;
        ReleaseValues(c.tree.get());
        if (!Ok(code)) return code;
    }
    int replaced[kLabelCount + 1] = {}, readers[kLabelCount + 1] = {};
    for (const RecursionStep& s : steps_) {
        replaced[s.label] = 1;
        ++readers[LoneLetter(s.tree.get())];
    }
    auto moves = [&](const ExprNode* tree) {
        const int from = LoneLetter(tree);
        return from != 0 && replaced[from] && readers[from] == 1 ? from : 0;
    };
    for (RecursionStep& s : steps_) {
        const int from = moves(s.tree.get());
        if (from != 0)
            code = HasVariable(from) ? Result::kOk : Result::kCouldNotFind;
        else
            code = Evaluate(ctx_, *this, s.tree.get());
        if (!Ok(code)) break;
    }
    // A computed result is handed over (the tree releases its values right
    // after); a constant right side keeps its compiled value.
    for (size_t i = 0; Ok(code) && i < steps_.size(); ++i) {
        ExprNode* tree = steps_[i].tree.get();
        BigInt& value = (*values)[i];
        if (moves(tree) != 0) continue;
        if (tree->kind != kCodeOperand) {
            value = tree->numerator;
            tree->numerator = BigInt{};
        } else if (BigCopy(&value, &tree->numerator) != 0) {
            code = Result::kNoMemory;
        }
    }
    for (size_t i = 0; Ok(code) && i < steps_.size(); ++i) {
        if (const int from = moves(steps_[i].tree.get())) {
            NumberValue* source = Slot(from);
            (*values)[i] = source->numerator;
            source->numerator = BigInt{};
        }
    }
    for (size_t i = 0; i < steps_.size(); ++i) {
        BigInt& value = (*values)[i];
        if (Ok(code)) {
            // Only the numerator is replaced; the target keeps its denominator.
            NumberValue* target = Slot(steps_[i].label);
            BigFree(&target->numerator);
            target->numerator = value;
        } else {
            BigFree(&value);
        }
        value = BigInt{};
        ReleaseValues(steps_[i].tree.get());
    }
    return code;
}

Result CalcModel::RunSteps(int n) {
    stopRequested_ = false;
    std::vector<int> targets, created;
    std::vector<BigInt> values;
    try {
        targets.reserve(steps_.size());
        created.reserve(steps_.size());
        values.resize(steps_.size());
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
    Result code = PrepareTargets(&targets, &created);
    const bool started = Ok(code);
    bool stepped = false;
    if (started) {
        for (CalcObserver* o : observers_) o->RunStarted(targets);
    }
    while (started && n > 0 && Ok(code)) {
        code = RunOneStep(&values);
        if (Ok(code)) {
            stepped = true;
            for (int label : targets) NotifyVariable(label);
            for (CalcObserver* o : observers_) o->StepDone(targets);
        }
        // A pending key is read, and then window actions looked at, but
        // neither ends the run: n steps are n steps unless a code stops it.
        if (ctx_->PollQuitKey() != kQuitKey) ctx_->PollInterrupt();
        if (Ok(code) && stopRequested_) code = Result::kStopped;
        --n;
    }
    // A run that memory ends before its first step leaves the labels as they
    // were: the zeros it gave new targets go again.
    if (code == Result::kNoMemory && !stepped) {
        for (int label : created) {
            slots_[label - 1].reset();
            NotifyVariable(label);
        }
    }
    if (started) {
        for (CalcObserver* o : observers_) o->RunFinished(code);
    }
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
