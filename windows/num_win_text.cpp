#include "windows/num_win_text.h"

#include <algorithm>
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
    std::string out;
    (void)PutDigitLines(v, lineDigits, lineBreak, nullptr,  // no context: never stops
                        [&out](const char* p, std::size_t n) { out.append(p, n); });
    return out;
}

Result PutDigitLines(const BigInt* v, int32_t lineDigits, const char* lineBreak, CalcContext* ctx,
                     const std::function<void(const char*, std::size_t)>& put) {
    const std::size_t per = static_cast<std::size_t>(std::max(lineDigits, 1));
    const std::string br = lineBreak;
    // Room past the block's end for one limb with a break after each digit,
    // and the last break.
    std::vector<char> buf(kDigitLinesBlock + 5 * br.size() + 8);
    std::size_t n = 0;
    std::size_t column = 0;
    bool handedOn = false;
    auto flushFull = [&]() -> bool {
        if (n < kDigitLinesBlock) return true;
        if (handedOn && ctx && ctx->ShouldStop()) return false;
        put(buf.data(), kDigitLinesBlock);
        handedOn = true;
        n -= kDigitLinesBlock;
        std::copy(buf.begin() + static_cast<std::ptrdiff_t>(kDigitLinesBlock),
                  buf.begin() + static_cast<std::ptrdiff_t>(kDigitLinesBlock + n), buf.begin());
        return true;
    };
    for (int32_t i = v->top; i >= 0; --i) {
        const int l = v->limbs[i];
        char d[4] = {char('0' + l / 1000), char('0' + l / 100 % 10), char('0' + l / 10 % 10),
                     char('0' + l % 10)};
        // The top limb without its leading zeros (at least one digit).
        int from = 0;
        if (i == v->top)
            while (from < 3 && d[from] == '0') ++from;
        if (column + 4 < per && from == 0) {
            std::copy(d, d + 4, buf.begin() + static_cast<std::ptrdiff_t>(n));
            n += 4;
            column += 4;
        } else {
            for (int k = from; k < 4; ++k) {
                buf[n++] = d[k];
                if (++column == per) {
                    std::copy(br.begin(), br.end(), buf.begin() + static_cast<std::ptrdiff_t>(n));
                    n += br.size();
                    column = 0;
                }
            }
        }
        if (!flushFull()) return Result::kStopped;
    }
    if (column > 0) {
        std::copy(br.begin(), br.end(), buf.begin() + static_cast<std::ptrdiff_t>(n));
        n += br.size();
        if (!flushFull()) return Result::kStopped;
    }
    if (n > 0) {
        if (handedOn && ctx && ctx->ShouldStop()) return Result::kStopped;
        put(buf.data(), n);
    }
    return Result::kOk;
}
