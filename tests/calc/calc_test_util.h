// A calculator model for the tests of the model and of the dialogs that drive
// it (no test framework here: the GUI tests include it too).
#pragma once

#include <string>

#include "calc/model.h"
#include "support/test_support.h"

// "n" for a whole value, "n/d" otherwise, as stored.
inline std::string Value(const BigInt* num, const BigInt* den) {
    return BigIsOne(den) ? Text(num) : Text(num) + "/" + Text(den);
}

// A model over its own context (answering Q from poll quitAt on), with a
// modulus of 7 and the mode off.
struct ModelFixture {
    QuitAtPoll ctx;
    CalcModel model{&ctx};
    explicit ModelFixture(long quitAt = 0) : ctx(quitAt) {
        Num seven("7");
        // (void): a one-limb value; only memory could fail.
        (void)model.SetModulus(&seven.v);
    }

    static int Label(char letter) { return letter - 'A' + 1; }
    // int rather than Result: the dialog tests call it for its effect.
    int Let(char letter, const std::string& formula) {
        return model.Calculate(Label(letter), formula);
    }
    // The letter's Value, or "(empty)".
    std::string Var(char letter) const {
        const NumberValue* v = model.Variable(Label(letter));
        return v ? Value(&v->numerator, &v->denominator) : "(empty)";
    }
    // Several values, separated by spaces.
    std::string Vars(const char* letters) const {
        std::string out;
        for (const char* c = letters; *c; ++c) out += (out.empty() ? "" : " ") + Var(*c);
        return out;
    }
};
