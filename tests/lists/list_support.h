// Helpers of the list tests: the rows of a list text and the numbers they hold.
#pragma once

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "lists/list_generators.h"
#include "support/test_support.h"

// The rows of a list text without their "\r\n".
inline std::vector<std::string> Rows(const std::string& text) {
    std::vector<std::string> rows;
    for (size_t start = 0, end; start < text.size(); start = end + 2) {
        end = std::min(text.find("\r\n", start), text.size());
        rows.push_back(text.substr(start, end - start));
    }
    return rows;
}

// The blank-separated words of a row.
inline std::vector<std::string> Words(const std::string& row) {
    std::istringstream in(row);
    std::vector<std::string> words;
    for (std::string w; in >> w;) words.push_back(w);
    return words;
}

// The first n numbers of every row below the header and rule, read from
// column `from` on (a star after a number ends it).
using Numbers = std::vector<long>;
inline std::vector<Numbers> Leading(const std::string& text, size_t n, size_t from = 0) {
    std::vector<Numbers> table;
    const std::vector<std::string> rows = Rows(text);
    for (size_t i = 2; i < rows.size(); ++i) {
        const std::vector<std::string> w = Words(rows[i].substr(from));
        table.emplace_back();
        for (size_t k = 0; k < n; ++k) table.back().push_back(std::stol(w.at(k)));
    }
    return table;
}
