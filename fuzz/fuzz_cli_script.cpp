// Whole ordix-cli scripts through the interpreter, one statement a line, all
// sharing one time budget. A recursion run ignores the quit key by design and
// ends only at Ctrl+C: when the budget is spent, the harness raises SIGINT as
// the user would. Output goes nowhere; "read" and "write" reach only
// plain file names, moved into a scratch folder, so that a script cannot
// touch other files.
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include "cli/interpreter.h"
#include "cli/signal_context.h"
#include "fuzz/fuzz_support.h"

namespace {

constexpr std::size_t kMaxScript = 4096;

class ScriptBudget : public BudgetContext {
public:
    int PollQuitKey() override {
        const int key = BudgetContext::PollQuitKey();
        if (key == kQuitKey && !SignalContext::Interrupted()) (void)std::raise(SIGINT);
        return key;
    }
};

struct Scratch {
    std::FILE* sink = nullptr;
    std::string folder;
};

const Scratch& Files() {
    static const Scratch scratch = [] {
        Scratch s;
        char name[] = "/tmp/ordix-fuzz-cli-XXXXXX";
        s.sink = std::fopen("/dev/null", "w");
        if (!mkdtemp(name) || !s.sink) std::abort();
        s.folder = name;
        SignalContext::Install();
        return s;
    }();
    return scratch;
}

std::string Lower(std::string s) {
    for (char& c : s) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
    return s;
}

// Letters, digits, '_' and inner dots: no "..", no hidden name, no folder.
bool PlainName(const std::string& name) {
    for (std::size_t i = 0; i < name.size(); ++i) {
        const char c = name[i];
        const bool plain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
        if (!plain && !(c == '.' && i > 0 && name[i - 1] != '.')) return false;
    }
    return !name.empty();
}

// The line as the interpreter will run it, with the file of a "read" or
// "write" moved into the scratch folder; false for a file elsewhere (the
// statement splits its words as the interpreter does).
bool Confine(std::string* line) {
    const std::size_t start = line->find_first_not_of(" \t\r\n");
    if (start == std::string::npos) return true;
    const std::size_t end = line->find_first_of(" \t", start);
    const std::string word =
        Lower(line->substr(start, end == std::string::npos ? end : end - start));
    if (word != "read" && word != "write") return true;
    if (end == std::string::npos) return true;
    std::istringstream in(line->substr(end));
    std::vector<std::string> words;
    for (std::string w; in >> w;) words.push_back(w);
    if (words.size() != 2) return true;  // refused before any file is named
    if (!PlainName(words[1])) return false;
    *line = word + " " + words[0] + " " + Files().folder + "/" + words[1];
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size > kMaxScript) return 0;
    std::FILE* out = Files().sink;
    const std::string script(reinterpret_cast<const char*>(data), size);
    SignalContext::Clear();
    ScriptBudget ctx;
    Interpreter interpreter(&ctx, out, size % 2 ? 0 : 70);
    std::size_t start = 0;
    while (start <= script.size()) {
        std::size_t end = script.find('\n', start);
        if (end == std::string::npos) end = script.size();
        std::string line = script.substr(start, end - start);
        if (Confine(&line)) (void)interpreter.Run(line);
        start = end + 1;
    }
    return 0;
}
