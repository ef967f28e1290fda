// Helpers of the list tests: scripted stop polls and row access.
#pragma once

#include <string>
#include <vector>

#include "bigint/context.h"

// Answers Q at the given poll (1-based), and at every later one; 0 never.
class QuitAtPoll : public CalcContext {
public:
    explicit QuitAtPoll(long at) : at_(at) {}
    int PollQuitKey() override { return ++polls_ >= at_ && at_ > 0 ? kQuitKey : 0; }
    long polls() const { return polls_; }

private:
    long at_;
    long polls_ = 0;
};

// Answers an interrupting action at the given poll.
class InterruptAtPoll : public CalcContext {
public:
    explicit InterruptAtPoll(long at) : at_(at) {}
    bool PollInterrupt() override { return ++polls_ >= at_; }

private:
    long at_;
    long polls_ = 0;
};

// The rows of a list text, without their "\r\n"; a text must end in "\r\n"
// unless its last row is unterminated (then that row is returned as well).
inline std::vector<std::string> Rows(const std::string& text) {
    std::vector<std::string> rows;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find("\r\n", start);
        if (end == std::string::npos) {
            rows.push_back(text.substr(start));
            break;
        }
        rows.push_back(text.substr(start, end - start));
        start = end + 2;
    }
    return rows;
}

// The blank-separated words of a row.
inline std::vector<std::string> Words(const std::string& row) {
    std::vector<std::string> words;
    size_t i = 0;
    while (i < row.size()) {
        while (i < row.size() && row[i] == ' ') ++i;
        size_t start = i;
        while (i < row.size() && row[i] != ' ') ++i;
        if (i > start) words.push_back(row.substr(start, i - start));
    }
    return words;
}
