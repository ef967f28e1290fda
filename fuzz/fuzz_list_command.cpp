// The list argument parser: the words of the input run as a list command, as
// ordix-cli's "list" statement runs them. The text stays under the window's
// ceiling.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fuzz/fuzz_support.h"
#include "lists/list_command.h"

namespace {

constexpr std::size_t kMaxInput = 512;
constexpr std::size_t kTextCeiling = 1000000;

std::vector<std::string> Words(const std::string& text) {
    std::vector<std::string> words;
    std::size_t i = 0;
    while (i < text.size()) {
        const std::size_t start = text.find_first_not_of(" \t\r\n", i);
        if (start == std::string::npos) break;
        std::size_t end = text.find_first_of(" \t\r\n", start);
        if (end == std::string::npos) end = text.size();
        words.push_back(text.substr(start, end - start));
        i = end;
    }
    return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    if (size > kMaxInput) return 0;
    const std::vector<std::string> words =
        Words(std::string(reinterpret_cast<const char*>(data), size));
    if (words.empty()) return 0;
    BudgetContext ctx;
    ListOutput out;
    out.endWhenFull = true;
    (void)RunListCommand(&ctx, words, &out);
    FUZZ_CHECK(out.text.size() <= kTextCeiling);
    return 0;
}
