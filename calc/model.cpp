#include "calc/model.h"

#include <algorithm>
#include <new>
#include <random>
#include <utility>

#include "calc/compiler.h"

CalcObserver::~CalcObserver() = default;

CalcModel::CalcModel(CalcContext* ctx) : ctx_(ctx) {
    // The starting modulus is deliberately an odd pseudo-random 4..26.
    std::random_device device;
    int r = static_cast<int>(device() % 23) + 4;
    BigInt value = {};
    // (void): a constructor cannot answer a code, and a one-limb value at
    // start-up is not where memory runs out; a failure has never been
    // reported here.
    (void)BigFromInt(&value, r);
    (void)SetModulus(&value, true);
    BigFree(&value);
    modulusFormula_ = std::to_string(r);
    ctx_->modulusMode = false;
}

CalcModel::~CalcModel() = default;

void CalcModel::AddObserver(CalcObserver* observer) { observers_.push_back(observer); }

void CalcModel::RemoveObserver(CalcObserver* observer) {
    observers_.erase(std::remove(observers_.begin(), observers_.end(), observer), observers_.end());
}

void CalcModel::NotifyVariable(int label) {
    for (CalcObserver* o : observers_) o->VariableChanged(label);
}

void CalcModel::NotifyModulus(bool atStart) {
    for (CalcObserver* o : observers_) o->ModulusChanged(atStart);
}

void CalcModel::NotifyRecursion() {
    for (CalcObserver* o : observers_) o->RecursionChanged();
}

NumberValue* CalcModel::Slot(int label) {
    if (label < 1 || label > kLabelCount) return nullptr;
    return slots_[label - 1].get();
}

const NumberValue* CalcModel::Variable(int label) const {
    if (label < 1 || label > kLabelCount) return nullptr;
    return slots_[label - 1].get();
}

int CalcModel::FirstFreeLabel() const {
    for (int label = 1; label <= kLabelCount; ++label)
        if (!slots_[label - 1]) return label;
    return 0;
}

Result CalcModel::StoreValue(int label, const std::string& inscription, const BigInt* numerator,
                             const BigInt* denominator) {
    if (label < 1 || label > kLabelCount) return Result::kOutOfBounds;
    NumberValue copy;
    if (BigCopy(&copy.numerator, numerator) != 0 || BigCopy(&copy.denominator, denominator) != 0)
        return Result::kNoMemory;
    return TakeValue(label, inscription, &copy);
}

Result CalcModel::TakeValue(int label, const std::string& inscription, NumberValue* value) {
    if (label < 1 || label > kLabelCount) return Result::kOutOfBounds;
    // Everything that can fail comes first, so that a failure leaves the old
    // value in place.
    std::string text;
    std::unique_ptr<NumberValue>& slot = slots_[label - 1];
    try {
        text = inscription;
        if (!slot) slot = std::make_unique<NumberValue>();
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
    std::swap(slot->numerator, value->numerator);
    std::swap(slot->denominator, value->denominator);
    BigFree(&value->numerator);
    BigFree(&value->denominator);
    slot->inscription.swap(text);
    NotifyVariable(label);
    return Result::kOk;
}

Result CalcModel::Compile(const std::string& formula) { return CompileFormula(formula, &tree_); }

Result CalcModel::EvaluateFormula(const std::string& formula, NumberValue* result) {
    Result code = Compile(formula);
    if (Ok(code)) code = Evaluate(ctx_, *this, tree_.get());
    if (Ok(code)) {
        // The root's records are its own (a letter at the root is copied):
        // they become the result, and the tree frees what result held.
        std::swap(result->numerator, tree_->numerator);
        std::swap(result->denominator, tree_->denominator);
    }
    tree_.reset();
    return code;
}

Result CalcModel::Calculate(int label, const std::string& formula) {
    if (label < 1 || label > kLabelCount) return Result::kOutOfBounds;
    NumberValue value;
    Result code = EvaluateFormula(formula, &value);
    if (!Ok(code)) return code;
    return TakeValue(label, formula, &value);
}

bool CalcModel::ModulusMode() const { return ctx_->modulusMode; }

void CalcModel::SetModulusMode(bool on) {
    if (ctx_->modulusMode == on) return;
    ctx_->modulusMode = on;
    NotifyModulus(false);
}

Result CalcModel::SetModulus(const BigInt* value, bool atStart) {
    BigInt num = {}, den = {}, shared = {};
    if (BigCopy(&num, value) != 0 || BigFromInt(&den, 1) != 0 || BigCopy(&shared, value) != 0) {
        BigFree(&num);
        BigFree(&den);
        BigFree(&shared);
        return Result::kNoMemory;
    }
    BigFree(&modulus_.numerator);
    BigFree(&modulus_.denominator);
    modulus_.numerator = num;
    modulus_.denominator = den;
    // The context's copy is the one the arithmetic reduces by.
    BigFree(&ctx_->modulus);
    ctx_->modulus = shared;
    NotifyModulus(atStart);
    return Result::kOk;
}

Result CalcModel::ModulusCommand(const std::string& formula) {
    NumberValue value;
    Result code = EvaluateFormula(formula, &value);
    if (!Ok(code)) return code;
    // A modulus below 1 would make every reduction meaningless (x mod 0 is 0).
    if (BigIsZero(&value.numerator) || value.numerator.negative) return Result::kPositiveValue;
    std::string text;
    try {
        text = formula;
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
    code = SetModulus(&value.numerator);
    if (Ok(code)) modulusFormula_.swap(text);
    return code;
}
