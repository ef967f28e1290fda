// The statements of ordix-cli, one a line, run on one calculator model.
#pragma once

#include <cstdio>
#include <string>

#include "calc/model.h"
#include "cli/value_writer.h"
#include "resources/result.h"

class Interpreter : private CalcObserver {
public:
    // Values go to out, broken into lines of wrap characters (0: none).
    Interpreter(CalcContext* ctx, std::FILE* out, int wrap);
    ~Interpreter() override;

    // Runs one line: kOk for success (also for blank lines and comments),
    // else the code of the failure (kCannotUnderstand for a statement that
    // cannot be understood).
    Result Run(const std::string& line);
    // After a failed Run: the byte index in its line of the character where
    // the formula compiler stopped, or -1 when the failure has no place.
    int ErrorIndex() const { return errorIndex_; }
    // Whether label 1..26 holds a value.
    bool HasValue(int label) const { return model_.Variable(label) != nullptr; }

private:
    // The code of a formula-carrying statement; on a compile failure it
    // records where, the formula having started at index start of the line.
    Result Placed(Result code, const std::string& formula, size_t start);

    Result Formula(const std::string& text);
    Result Modulus(const std::string& args);
    Result Recur(const std::string& args);
    Result Step(bool many, const std::string& args);
    Result Hail(const std::string& args);
    Result Convert(const std::string& args);
    Result Batch(const std::string& args);
    Result Freq(const std::string& args);
    Result Read(const std::string& args);
    Result Write(const std::string& args);
    Result List(const std::string& args);

    void StepDone(const std::vector<int>& targets) override;

    CalcModel model_;
    ValueWriter writer_;
    int errorIndex_ = -1;
};
