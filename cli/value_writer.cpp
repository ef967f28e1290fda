#include "cli/value_writer.h"

#include <algorithm>
#include <functional>
#include <vector>

namespace {

constexpr int32_t kPageLimbs = 16000;  // 64000 digits a page

// Hands v's decimal text to sink page by page, never the whole number at once.
void RenderPages(const BigInt* v, const std::function<void(const char*, size_t)>& sink) {
    const int32_t width = 4 * kPageLimbs + 8;
    std::vector<char> page(static_cast<size_t>(width) + 1);
    for (int32_t first = v->top; first >= 0; first -= kPageLimbs) {
        int32_t last = first >= kPageLimbs ? first - kPageLimbs + 1 : 0;
        BigToText(v, page.data(), width, 0, first, last, 0);
        size_t length = std::char_traits<char>::length(page.data());
        if (first != v->top) {
            // A page inside the number starts without its first limb's
            // leading zeros; they belong here.
            static const char kZeros[] = "000";
            size_t expected = 4 * static_cast<size_t>(first - last + 1);
            if (length < expected) sink(kZeros, expected - length);
        }
        sink(page.data(), length);
    }
}

void RenderValue(const BigInt* numerator, const BigInt* denominator,
                 const std::function<void(const char*, size_t)>& sink) {
    RenderPages(numerator, sink);
    if (!BigIsOne(denominator)) {
        sink("/", 1);
        RenderPages(denominator, sink);
    }
}

}  // namespace

void ValueWriter::Wrapped(const char* text, size_t length) {
    if (wrap_ < 1) {
        std::fwrite(text, 1, length, out_);
        return;
    }
    while (length > 0) {
        if (column_ == wrap_) {
            std::fputc('\n', out_);
            column_ = 0;
        }
        size_t n = std::min(length, static_cast<size_t>(wrap_ - column_));
        std::fwrite(text, 1, n, out_);
        column_ += static_cast<int>(n);
        text += n;
        length -= n;
    }
}

void ValueWriter::Value(const BigInt* numerator, const BigInt* denominator) {
    column_ = 0;
    RenderValue(numerator, denominator, [this](const char* t, size_t n) { Wrapped(t, n); });
    std::fputc('\n', out_);
    column_ = 0;
}

void ValueWriter::Digits(std::FILE* out, const BigInt* numerator, const BigInt* denominator) {
    RenderValue(numerator, denominator,
                [out](const char* t, size_t n) { std::fwrite(t, 1, n, out); });
}

void ValueWriter::Text(const std::string& text) {
    std::string plain;
    plain.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i)
        if (!(text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n'))
            plain.push_back(text[i]);
    std::fwrite(plain.data(), 1, plain.size(), out_);
}
