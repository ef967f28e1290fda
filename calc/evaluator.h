// The evaluator: walks a compiled tree on exact fractions.
//
// Codes: 0 success, 2 a variable has no value, 3 memory, 6 a missing or
// non-whole operand where a whole one is needed, 14 negative square root,
// 17 out of bounds, 104 division by zero, -1 interrupted (the context's poll),
// and whatever the arithmetic answers.
#pragma once

#include <string>

#include "bigint/bigint.h"
#include "calc/tree.h"

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
    virtual const NumberValue* Variable(int label) const = 0;
};

// Evaluates node and its subtrees, left, right, then the node. The result is
// left in node's numerator and denominator. A tree may be evaluated again:
// every inner value is released before it is rewritten.
int Evaluate(CalcContext* ctx, const VariableReader& variables, ExprNode* node);

// destination := temporary, reduced modulo the context's modulus while the
// modulus mode is on. The temporary is released; destination is written as new.
int StoreResult(CalcContext* ctx, BigInt* destination, BigInt* temporary);

// The message the user sees for a code: string 400 + code ("interrupted" for
// -1; code 108 has an empty text), and the title of its box.
std::string ReportText(int code);
std::string ReportTitle();
