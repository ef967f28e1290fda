#include "cli/line_editor.h"

#include <sys/stat.h>

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "calc/compiler.h"
#include "cli/signal_context.h"
#include "lists/list_command.h"

#ifdef ORDIX_HAVE_LIBEDIT
#include <editline/readline.h>
#include <unistd.h>
#endif

namespace {

const char* const kStatementWords[] = {"modulus", "recur",   "cond",  "step", "steps",
                                       "hail",    "convert", "batch", "freq", "read",
                                       "write",   "list",    "help"};
const char* const kRecurWords[] = {"list", "clear", "delete"};

bool StartsWithNoCase(const std::string& word, const std::string& prefix) {
    if (prefix.size() > word.size()) return false;
    for (size_t i = 0; i < prefix.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(word[i])) !=
            std::tolower(static_cast<unsigned char>(prefix[i])))
            return false;
    return true;
}

template <class Words>
void AddMatching(const Words& words, const std::string& text, const char* after,
                 std::vector<std::string>* out) {
    for (const auto& w : words)
        if (StartsWithNoCase(w, text)) out->push_back(std::string(w) + after);
}

}  // namespace

std::string LineEditor::HistoryPath() {
    const char* data = std::getenv("XDG_DATA_HOME");
    std::string base;
    if (data && data[0] == '/') {
        base = data;
    } else {
        const char* home = std::getenv("HOME");
        if (!home || !home[0]) return "";
        base = std::string(home) + "/.local/share";
    }
    return base + "/ordix/history";
}

std::vector<std::string> LineEditor::Completions(const std::string& line, size_t start,
                                                 const std::string& text,
                                                 const std::function<bool(int)>& hasValue,
                                                 bool* filesToo) {
    std::vector<std::string> out;
    *filesToo = false;
    if (start > 0 && line[start - 1] == '[') {
        AddMatching(FunctionNames(), text, "]", &out);
        return out;
    }
    // The words before the one completed decide what it can be.
    std::vector<std::string> before;
    size_t i = 0;
    while (i < start) {
        size_t b = line.find_first_not_of(" \t", i);
        if (b == std::string::npos || b >= start) break;
        size_t e = line.find_first_of(" \t", b);
        if (e == std::string::npos || e > start) e = start;
        before.push_back(line.substr(b, e - b));
        i = e;
    }
    std::string first;
    for (char c : before.empty() ? std::string() : before[0])
        first.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    if (before.empty()) {
        AddMatching(kStatementWords, text, " ", &out);
    } else if (first == "recur" && before.size() == 1) {
        AddMatching(kRecurWords, text, " ", &out);
    } else if (first == "list" && before.size() == 1) {
        AddMatching(ListCommandNames(), text, " ", &out);
    } else if (first == "modulus" && before.size() == 1 && StartsWithNoCase("off", text) &&
               !text.empty()) {
        out.push_back("off");
    } else if ((first == "read" || first == "write") && before.size() == 2) {
        *filesToo = true;
        return out;
    }
    if (text.size() <= 1 && first != "list" && first != "convert") {
        // Labels that hold a value, wherever a formula or a label may stand;
        // first on the line (X = ...) they take no space after them.
        for (int label = 1; label <= 26; ++label) {
            const char name = static_cast<char>('A' + label - 1);
            if (hasValue(label) && StartsWithNoCase(std::string(1, name), text))
                out.push_back(std::string(1, name) + (before.empty() ? "" : " "));
        }
    }
    return out;
}

#ifdef ORDIX_HAVE_LIBEDIT

namespace {

std::function<bool(int)> gHasValue;
std::vector<std::string> gMatches;
bool gInterruptedRead = false;

// Reads a byte for libedit; Ctrl+C (a read cut short by the handler) ends
// the line being typed as if at its end, and ReadLine tells the two apart.
int GetKey(FILE*) {
    unsigned char c = 0;
    for (;;) {
        const ssize_t n = read(STDIN_FILENO, &c, 1);
        if (n == 1) return c;
        if (n < 0 && errno == EINTR) {
            if (!SignalContext::Interrupted()) continue;
            gInterruptedRead = true;
        }
        return EOF;
    }
}

char* NextMatch(const char*, int state) {
    static size_t next = 0;
    if (state == 0) next = 0;
    if (next >= gMatches.size()) return nullptr;
    return strdup(gMatches[next++].c_str());
}

char** Complete(const char* text, int start, int) {
    bool filesToo = false;
    // libedit appends nothing itself: each word carries what follows it.
    rl_completion_append_character = '\0';
    gMatches = LineEditor::Completions(rl_line_buffer, static_cast<size_t>(start), text, gHasValue,
                                       &filesToo);
    rl_attempted_completion_over = filesToo ? 0 : 1;
    if (gMatches.empty()) return nullptr;
    return rl_completion_matches(text, NextMatch);
}

// Makes each missing folder of path's parent (mode 0700, private data).
void MakeParents(const std::string& path) {
    for (size_t slash = path.find('/', 1); slash != std::string::npos;
         slash = path.find('/', slash + 1))
        (void)mkdir(path.substr(0, slash).c_str(), 0700);  // an existing one fails harmlessly
}

std::string gHistoryPath;

}  // namespace

bool LineEditor::Available() { return true; }

LineEditor::LineEditor(std::function<bool(int)> hasValue) {
    gHasValue = std::move(hasValue);
    rl_readline_name = "ordix-cli";
    rl_catch_signals = 0;  // SignalContext's handler stays in charge of Ctrl+C
    rl_getc_function = GetKey;
    rl_attempted_completion_function = Complete;
    rl_basic_word_break_characters = " \t\n=()+-*/^,;![]";
    using_history();
    stifle_history(1000);
    gHistoryPath = HistoryPath();
    if (!gHistoryPath.empty()) (void)read_history(gHistoryPath.c_str());  // none yet is fine
}

LineEditor::~LineEditor() = default;

LineEditor::Read LineEditor::ReadLine(const char* prompt, std::string* line) {
    gInterruptedRead = false;
    // A Ctrl+C that stopped the last statement is spent: one at the prompt
    // drops the line instead of counting as the second that ends the program.
    SignalContext::Clear();
    char* text = readline(prompt);
    if (!text) {
        if (!gInterruptedRead) return Read::kEnd;
        SignalContext::Clear();
        std::fputc('\n', stdout);
        return Read::kInterrupted;
    }
    *line = text;
    std::free(text);
    const bool blank = line->find_first_not_of(" \t") == std::string::npos;
    const HIST_ENTRY* last =
        history_length > 0 ? history_get(history_base + history_length - 1) : nullptr;
    if (!blank && !(last && *line == last->line)) {
        add_history(line->c_str());
        // Written at once, so a killed session keeps it; a data folder that
        // cannot be written only loses the history.
        if (!gHistoryPath.empty()) {
            MakeParents(gHistoryPath);
            (void)write_history(gHistoryPath.c_str());
        }
    }
    return Read::kLine;
}

#else

bool LineEditor::Available() { return false; }
LineEditor::LineEditor(std::function<bool(int)>) {}
LineEditor::~LineEditor() = default;
LineEditor::Read LineEditor::ReadLine(const char*, std::string*) { return Read::kEnd; }

#endif
