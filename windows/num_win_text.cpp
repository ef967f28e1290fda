#include "windows/num_win_text.h"

#include <algorithm>
#include <cstdio>
#include <vector>

#include "bigint/bigint.h"
#include "resources/limits.h"

std::string WithBreaks(const char* text, const char* lineBreak) {
    std::string out;
    const std::string br = lineBreak;
    for (const char* p = text; *p; ++p) {
        if (p[0] == '\r' && p[1] == '\n') {
            out += br;
            ++p;
        } else {
            out += *p;
        }
    }
    return out;
}

namespace {

std::string Render(const BigInt* v, int32_t first, int32_t last, int32_t lineDigits, int32_t indent,
                   const char* lineBreak) {
    const int32_t width = kTextBufferChars;
    const int32_t lines = width / std::max(lineDigits, 1) + 2;
    std::vector<char> buf(static_cast<size_t>(width) + 2 * lines + 16, '\0');
    BigToText(v, buf.data(), width, lineDigits, first, last, indent);
    return WithBreaks(buf.data(), lineBreak);
}

}  // namespace

int32_t DigitCount(const BigInt* v) {
    return BigTextLength(v) - (v->negative ? 1 : 0);  // the length counts the sign
}

std::string SectionText(const BigInt* v, const SectionLayout& layout, int32_t section,
                        int32_t lineDigits, const char* lineBreak) {
    if (section < 0 || section > layout.count) return std::string();
    const int32_t first = layout.bounds[section];
    const int32_t last = layout.bounds[section + 1] + 1;
    return Render(v, first, last, lineDigits, section == 0 ? layout.offset : 0, lineBreak);
}

std::string FractionText(const BigInt* num, const BigInt* den, int32_t lineDigits,
                         const char* lineBreak) {
    const int32_t rule = std::min(std::max(DigitCount(num), DigitCount(den)), lineDigits);
    return Render(num, -1, 0, lineDigits, 0, lineBreak) + lineBreak +
           std::string(static_cast<size_t>(std::max(rule, 1)), '-') + lineBreak +
           Render(den, -1, 0, lineDigits, 0, lineBreak);
}

std::string DigitLines(const BigInt* v, int32_t lineDigits, const char* lineBreak) {
    std::string digits;
    digits.reserve(static_cast<size_t>(v->top + 1) * 4);
    char limb[8];
    std::snprintf(limb, sizeof limb, "%d", v->limbs[v->top]);
    digits += limb;
    for (int32_t i = v->top - 1; i >= 0; --i) {
        std::snprintf(limb, sizeof limb, "%04d", v->limbs[i]);
        digits += limb;
    }
    const size_t per = static_cast<size_t>(std::max(lineDigits, 1));
    std::string out;
    out.reserve(digits.size() + (digits.size() / per + 1) * 2);
    for (size_t at = 0; at < digits.size(); at += per) {
        out.append(digits, at, per);
        out += lineBreak;
    }
    return out;
}
