// Helpers of the list tests: a scripted quit key and row access.
#pragma once

#include <string>
#include <vector>

#include "bigint/context.h"

// Answers Q from the given poll (1-based) on; counts the polls.
class QuitAtPoll : public CalcContext {
public:
    explicit QuitAtPoll(long at) : at_(at) {}
    int PollQuitKey() override { return ++polls_ >= at_ ? kQuitKey : 0; }
    long polls() const { return polls_; }

private:
    long at_;
    long polls_ = 0;
};

// The rows of a list text without their "\r\n".
inline std::vector<std::string> Rows(const std::string& text) {
    std::vector<std::string> rows;
    for (size_t start = 0; start < text.size();) {
        size_t end = text.find("\r\n", start);
        if (end == std::string::npos) end = text.size();
        rows.push_back(text.substr(start, end - start));
        start = end + 2;
    }
    return rows;
}

// The blank-separated words of a row.
inline std::vector<std::string> Words(const std::string& row) {
    std::vector<std::string> words;
    for (size_t i = 0; i < row.size();) {
        size_t start = row.find_first_not_of(' ', i);
        if (start == std::string::npos) break;
        i = std::min(row.find(' ', start), row.size());
        words.push_back(row.substr(start, i - start));
    }
    return words;
}
