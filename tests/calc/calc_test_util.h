// Helpers of the calculation-language tests.
#pragma once

#include <string>
#include <vector>

#include "bigint/bigint.h"
#include "calc/model.h"
#include "calc/tree.h"

// Decimal text of v (sign included).
inline std::string Text(const BigInt* v) {
    std::vector<char> buf(static_cast<size_t>(BigTextLength(v)) + 16);
    BigToText(v, buf.data(), static_cast<int32_t>(buf.size()) - 1, 0, -1, 0, 0);
    return buf.data();
}

// "n" for a whole value, "n/d" otherwise, as stored.
inline std::string Text(const BigInt* num, const BigInt* den) {
    return BigIsOne(den) ? Text(num) : Text(num) + "/" + Text(den);
}

inline std::string Text(const NumberValue* v) {
    return v ? Text(&v->numerator, &v->denominator) : "(empty)";
}

// A context whose quit poll answers Q from the given poll on (counting from
// 1; 0 never), so that a test can stop a computation at a known point.
class ScriptedContext : public CalcContext {
public:
    int quitAtPoll = 0;
    int polls = 0;
    int PollQuitKey() override {
        ++polls;
        return quitAtPoll > 0 && polls >= quitAtPoll ? kQuitKey : 0;
    }
};

// A model over its own scripted context, with a known modulus of 7 (mode off).
struct ModelFixture {
    ScriptedContext ctx;
    CalcModel model{&ctx};
    ModelFixture() { SetModulus(7); }

    void SetModulus(int m) {
        BigInt v = {};
        BigFromInt(&v, m);
        model.SetModulus(&v);
        BigFree(&v);
    }
    // Calculates formula into the letter's label; fails the test on an error.
    int Let(char letter, const std::string& formula) {
        return model.Calculate(letter - 'A' + 1, formula);
    }
    std::string Var(char letter) const { return Text(model.Variable(letter - 'A' + 1)); }
    // The value of formula, or "code k".
    std::string Eval(const std::string& formula) {
        NumberValue v;
        int code = model.EvaluateFormula(formula, &v);
        return code ? "code " + std::to_string(code) : Text(&v.numerator, &v.denominator);
    }
};
