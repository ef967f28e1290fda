// The evaluator: walks a compiled tree on exact fractions.
//
// Codes: kCouldNotFind a variable has no value, kNoMemory, kInconsistent a
// missing or non-whole operand where a whole one is needed, kPositiveValue
// negative square root, kOutOfBounds, kDivisionByZero, kStopped (the
// context's poll), and whatever the arithmetic answers.
#pragma once

#include <string>

#include "bigint/bigint.h"
#include "calc/tree.h"
#include "resources/result.h"

// A stored value: numerator and denominator (not kept in lowest terms) and the
// inscription that tells how the number was formed.
struct NumberValue {
    NumberValue() = default;
    ~NumberValue();
    NumberValue(const NumberValue&) = delete;
    NumberValue& operator=(const NumberValue&) = delete;

    BigInt numerator = {};
    BigInt denominator = {};
    std::string inscription;
};

// Where the evaluator reads the variables: label 1..26 (A..Z) to its value,
// or null when the label holds none.
class VariableReader {
public:
    virtual ~VariableReader();
    [[nodiscard]] virtual const NumberValue* Variable(int label) const = 0;
};

// Evaluates node and its subtrees, left, right, then the node. The result is
// left in node's numerator and denominator. A tree may be evaluated again:
// every inner value is released before it is rewritten.
Result Evaluate(CalcContext* ctx, const VariableReader& variables, ExprNode* node);

// destination := temporary, reduced modulo the context's modulus while the
// modulus mode is on. The temporary is released; destination is written as new.
Result StoreResult(CalcContext* ctx, BigInt* destination, BigInt* temporary);
