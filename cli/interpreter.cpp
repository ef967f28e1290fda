#include "cli/interpreter.h"

#include <cctype>
#include <climits>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "calc/compiler.h"
#include "calc/conversion.h"
#include "calc/decimal_read.h"
#include "calc/digit_freq.h"
#include "cli/help_text.h"
#include "cli/signal_context.h"
#include "io/safe_file.h"
#include "lists/list_command.h"
#include "resources/result.h"

namespace {

constexpr char kBlanks[] = " \t\r\n";

// Where Trim(s.substr(from)) starts in s.
size_t TrimmedStart(const std::string& s, size_t from) {
    size_t b = s.find_first_not_of(kBlanks, from);
    return b == std::string::npos ? s.size() : b;
}

std::string Trim(const std::string& s) {
    size_t b = s.find_first_not_of(" \t\r\n");
    if (b == std::string::npos) return "";
    size_t e = s.find_last_not_of(" \t\r\n");
    return s.substr(b, e - b + 1);
}

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
}

std::vector<std::string> Words(const std::string& s) {
    std::istringstream in(s);
    std::vector<std::string> words;
    for (std::string w; in >> w;) words.push_back(w);
    return words;
}

// The text after the first n words (the conversion drops inner spaces).
std::string AfterWords(const std::string& s, int n) {
    size_t pos = 0;
    for (int i = 0; i < n; ++i) {
        pos = s.find_first_not_of(" \t", pos);
        pos = pos == std::string::npos ? s.size() : s.find_first_of(" \t", pos);
        if (pos == std::string::npos) pos = s.size();
    }
    return Trim(s.substr(pos));
}

// "A".."Z" in either case -> 1..26, else 0.
[[nodiscard]] int ParseLabel(const std::string& word) {
    if (word.size() != 1 || !std::isalpha(static_cast<unsigned char>(word[0]))) return 0;
    return std::toupper(static_cast<unsigned char>(word[0])) - 'A' + 1;
}

// A whole decimal number in int range.
[[nodiscard]] bool ParseInt(const std::string& word, int* out) {
    if (word.empty()) return false;
    char* end = nullptr;
    long v = std::strtol(word.c_str(), &end, 10);
    if (*end != '\0' || v < INT_MIN || v > INT_MAX) return false;
    *out = static_cast<int>(v);
    return true;
}

}  // namespace

Interpreter::Interpreter(CalcContext* ctx, std::FILE* out, int wrap)
    : model_(ctx), writer_(out, wrap) {
    model_.AddObserver(this);
}

Interpreter::~Interpreter() { model_.RemoveObserver(this); }

void Interpreter::StepDone(const std::vector<int>&) {
    // The recursion itself keeps going whatever key comes; Ctrl+C does not.
    if (SignalContext::Interrupted()) model_.StopRun();
}

Result Interpreter::Placed(Result code, const std::string& formula, size_t start) {
    if (Ok(code)) return code;
    // The model keeps no place; compiling the text again is cheap and finds
    // the same failure, unless the failure came after the compile.
    TreePtr tree;
    int at = -1;
    if (CompileFormula(formula, &tree, &at) == code && at >= 0)
        errorIndex_ = static_cast<int>(start) + at;
    return code;
}

Result Interpreter::Run(const std::string& line) {
    errorIndex_ = -1;
    const size_t textStart = TrimmedStart(line, 0);
    std::string text = Trim(line);
    if (text.empty() || text[0] == '#') return Result::kOk;
    size_t space = text.find_first_of(" \t");
    std::string word = Lower(text.substr(0, space));
    std::string args = space == std::string::npos ? "" : Trim(text.substr(space));

    const size_t argsStart =
        space == std::string::npos ? line.size() : TrimmedStart(line, textStart + space);

    if (word == "help" && args.empty()) {
        writer_.Text(kStatementHelp);
        return Result::kOk;
    }
    if (word == "modulus") return Placed(Modulus(args), args, argsStart);
    if (word == "recur") {
        // Only a step "X=FORMULA" holds a formula to point into.
        const size_t eq = args.find('=');
        if (eq == std::string::npos || ParseLabel(Trim(args.substr(0, eq))) == 0)
            return Recur(args);
        return Placed(Recur(args), args.substr(eq + 1), argsStart + eq + 1);
    }
    if (word == "cond") return Placed(model_.EnterCondition(args), args, argsStart);
    if (word == "step" || word == "steps") return Step(word == "steps", args);
    if (word == "hail") return Hail(args);
    if (word == "convert") return Convert(args);
    if (word == "batch") return Batch(args);
    if (word == "freq") return Freq(args);
    if (word == "read") return Read(args);
    if (word == "write") return Write(args);
    if (word == "list") return List(args);

    // X = FORMULA stores; the formula language itself has no '='.
    size_t eq = text.find('=');
    if (eq != std::string::npos) {
        int label = ParseLabel(Trim(text.substr(0, eq)));
        if (label == 0) return Result::kCannotUnderstand;
        std::string formula = Trim(text.substr(eq + 1));
        return Placed(model_.Calculate(label, formula), formula,
                      TrimmedStart(line, textStart + eq + 1));
    }
    return Placed(Formula(text), text, textStart);
}

Result Interpreter::Formula(const std::string& text) {
    NumberValue value;
    Result code = model_.EvaluateFormula(text, &value);
    if (Ok(code)) writer_.Value(&value.numerator, &value.denominator);
    return code;
}

Result Interpreter::Modulus(const std::string& args) {
    if (args.empty()) {
        const NumberValue& m = model_.Modulus();
        writer_.Value(&m.numerator, &m.denominator);
        writer_.Line(model_.ModulusMode() ? "on" : "off");
        return Result::kOk;
    }
    if (Lower(args) == "off") {
        model_.SetModulusMode(false);
        return Result::kOk;
    }
    Result code = model_.ModulusCommand(args);
    if (Ok(code)) model_.SetModulusMode(true);
    return code;
}

Result Interpreter::Recur(const std::string& args) {
    std::vector<std::string> words = Words(args);
    std::string first = words.empty() ? "" : Lower(words[0]);
    if (first == "list" && words.size() == 1) {
        for (const std::string& row : model_.RecursionRows()) writer_.Line(row);
        return Result::kOk;
    }
    if (first == "clear" && words.size() == 1) {
        model_.ClearRecursion();
        return Result::kOk;
    }
    if (first == "delete") {
        int row = 0;
        if (words.size() != 2 || !ParseInt(words[1], &row)) return Result::kCannotUnderstand;
        return model_.DeleteRecursionRow(row) ? Result::kOk : Result::kOutOfBounds;
    }
    if (args.empty()) return Result::kCannotUnderstand;
    return model_.EnterStep(args);
}

Result Interpreter::Step(bool many, const std::string& args) {
    if (!many && !args.empty()) return Result::kCannotUnderstand;
    // Without steps a run would only count: the desktop program offers
    // neither command then.
    if (!model_.HasSteps()) return Result::kNothingToDo;
    return many ? model_.ManySteps(args) : model_.OneStep();
}

Result Interpreter::Hail(const std::string& args) {
    std::vector<std::string> words = Words(args);
    if (words.size() != 2) return Result::kCannotUnderstand;
    int seed = ParseLabel(words[0]);
    int maximum = ParseLabel(words[1]);
    if (seed == 0 || maximum == 0) return Result::kCannotUnderstand;
    HailResult result;
    Result code = model_.Hailstone(seed, maximum, &result);
    if (!Ok(code)) return code;
    writer_.Line("1 = term " + std::to_string(result.steps));
    writer_.Line("maximum = term " + std::to_string(result.stepsToMaximum));
    return Result::kOk;
}

Result Interpreter::Convert(const std::string& args) {
    std::vector<std::string> words = Words(args);
    int from = 0, to = 0;
    if (words.size() < 2 || !ParseInt(words[0], &from) || !ParseInt(words[1], &to))
        return Result::kCannotUnderstand;
    if (from < 2 || from > 16 || to < 2 || to > 16) return Result::kOutOfBounds;
    std::string result;
    Result code;
    if (words.size() > 2 && words[2][0] == '@') {
        // A label's value, whatever its length; labels hold decimal values,
        // so 10 is the only base to read them in.
        const int label = ParseLabel(words[2].substr(1));
        if (words.size() != 3 || label == 0) return Result::kCannotUnderstand;
        if (from != 10) return Result::kOutOfBounds;
        const NumberValue* v = model_.Variable(label);
        if (!v) return Result::kCouldNotFind;
        code = ConvertValue(model_.Context(), to, &v->numerator, &v->denominator, &result);
    } else {
        code = ConvertDigits(model_.Context(), from, to, AfterWords(args, 2), &result);
    }
    if (!Ok(code)) return code;
    writer_.Line(result);
    return Result::kOk;
}

Result Interpreter::Batch(const std::string& args) {
    size_t a = args.find(';');
    size_t b = a == std::string::npos ? a : args.find(';', a + 1);
    if (b == std::string::npos || args.find(';', b + 1) != std::string::npos)
        return Result::kCannotUnderstand;
    BatchResult result;
    Result code = model_.Batch(Trim(args.substr(0, a)), args.substr(a + 1, b - a - 1),
                               args.substr(b + 1), &result);
    if (result.shown) {
        writer_.Line(result.title);
        writer_.Text(result.text);
    }
    return code;
}

Result Interpreter::Freq(const std::string& args) {
    int label = ParseLabel(args);
    if (label == 0) return Result::kCannotUnderstand;
    const NumberValue* v = model_.Variable(label);
    if (!v) return Result::kCouldNotFind;
    BigInt copy = {};
    std::string table;
    Result code = BigCopy(&copy, &v->numerator) == 0 ? Result::kOk : Result::kNoMemory;
    if (Ok(code)) code = DigitFrequencyText(&copy, &table);
    BigFree(&copy);
    if (Ok(code)) writer_.Text(table);
    return code;
}

Result Interpreter::Read(const std::string& args) {
    std::vector<std::string> words = Words(args);
    if (words.size() != 2) return Result::kCannotUnderstand;
    int label = ParseLabel(words[0]);
    if (label == 0) return Result::kCannotUnderstand;
    NumberValue value;
    Result code = ReadDecimalFile(words[1], &value.numerator, model_.Context());
    if (Ok(code)) code = BigFromInt(&value.denominator, 1);
    if (Ok(code)) code = model_.TakeValue(label, words[1], &value);
    return code;
}

Result Interpreter::Write(const std::string& args) {
    std::vector<std::string> words = Words(args);
    if (words.size() != 2) return Result::kCannotUnderstand;
    int label = ParseLabel(words[0]);
    if (label == 0) return Result::kCannotUnderstand;
    const NumberValue* v = model_.Variable(label);
    if (!v) return Result::kCouldNotFind;
    SafeFile file;
    if (!file.Open(words[1])) return Result::kCannotSaveFile;
    ValueWriter::Digits(file.file(), &v->numerator, &v->denominator);
    std::fputc('\n', file.file());
    return file.Commit() ? Result::kOk : Result::kCannotSaveFile;
}

Result Interpreter::List(const std::string& args) {
    std::vector<std::string> words = Words(args);
    if (words.empty()) return Result::kCannotUnderstand;
    ListOutput output;
    output.endWhenFull = true;  // no one will press Q for a row that does not fit
    Result code = RunListCommand(model_.Context(), words, &output);
    if (Ok(code) || !output.caption.empty() || !output.text.empty()) {
        writer_.Line(output.caption);
        writer_.Text(output.text);
        if (!output.text.empty() && output.text.back() != '\n') writer_.Text("\n");
    }
    return code;
}
