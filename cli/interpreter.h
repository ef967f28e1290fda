// The statements of ordix-cli, one a line, run on one calculator model.
#pragma once

#include <cstdio>
#include <string>

#include "calc/model.h"
#include "cli/value_writer.h"

class Interpreter : private CalcObserver {
public:
    // Values go to out, broken into lines of wrap characters (0: none).
    Interpreter(CalcContext* ctx, std::FILE* out, int wrap);
    ~Interpreter() override;

    // Runs one line: 0 for success (also for blank lines and comments), else
    // the code of the failure (1 for a statement that cannot be understood).
    int Run(const std::string& line);

private:
    int Formula(const std::string& text);
    int Modulus(const std::string& args);
    int Recur(const std::string& args);
    int Hail(const std::string& args);
    int Convert(const std::string& args);
    int Batch(const std::string& args);
    int Freq(const std::string& args);
    int Read(const std::string& args);
    int Write(const std::string& args);
    int List(const std::string& args);

    void StepDone(const std::vector<int>& targets) override;

    CalcModel model_;
    ValueWriter writer_;
    std::FILE* out_;
};
