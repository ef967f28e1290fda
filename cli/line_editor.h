// Reading lines at a terminal: editing, history (kept in the user's data
// folder) and completion when the program was built with libedit, else none
// (Available() answers false and the caller reads the plain way).
#pragma once

#include <functional>
#include <string>
#include <vector>

class LineEditor {
public:
    enum class Read { kLine, kEnd, kInterrupted };

    // hasValue(label 1..26): whether the label may be offered as a completion.
    explicit LineEditor(std::function<bool(int)> hasValue);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    static bool Available();
    // Shows prompt and reads one line (without its '\n'); kInterrupted after
    // Ctrl+C, which drops what was typed.
    Read ReadLine(const char* prompt, std::string* line);

    // The history file: XDG_DATA_HOME/ordix/history, else
    // HOME/.local/share/ordix/history; empty when neither is set.
    static std::string HistoryPath();
    // The words Tab offers for the word text beginning at start of line,
    // each with what follows it (a space, or nothing after a bracket name).
    static std::vector<std::string> Completions(const std::string& line, size_t start,
                                                const std::string& text,
                                                const std::function<bool(int)>& hasValue,
                                                bool* filesToo);
};
