#include "calc/digit_freq.h"

#include <cstdio>
#include <new>

Result DigitFrequencyText(BigInt* v, std::string* out) {
    out->clear();
    BigCountDigits(v);
    uint64_t total = 0;
    for (uint32_t count : v->digitCount) total += count;
    const int width = std::snprintf(nullptr, 0, "%llu", static_cast<unsigned long long>(total));
    std::string text;
    try {
        char line[96];
        int lastLength = 0;
        for (int d = 0; d < 10; ++d) {
            double percent = total ? 100.0 * v->digitCount[d] / static_cast<double>(total) : 0.0;
            lastLength = std::snprintf(line, sizeof line, "%d: %*u %5.1f%%", d, width,
                                       v->digitCount[d], percent);
            text += line;
            text += "\r\n";
        }
        text.append(static_cast<size_t>(lastLength), '-');
        text += "\r\n";
        std::snprintf(line, sizeof line, "%*llu 100.0%%", width + 3,
                      static_cast<unsigned long long>(total));
        text += line;
        text += "\r\n";
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
    out->swap(text);
    return Result::kOk;
}
