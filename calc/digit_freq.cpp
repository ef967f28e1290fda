#include "calc/digit_freq.h"

#include <cstdio>
#include <new>

namespace {

Result TableText(const uint64_t counts[10], std::string* out) {
    out->clear();
    uint64_t total = 0;
    for (int d = 0; d < 10; ++d) total += counts[d];
    const int width = std::snprintf(nullptr, 0, "%llu", static_cast<unsigned long long>(total));
    std::string text;
    try {
        char line[96];
        int lastLength = 0;
        for (int d = 0; d < 10; ++d) {
            double percent =
                total ? 100.0 * static_cast<double>(counts[d]) / static_cast<double>(total) : 0.0;
            lastLength = std::snprintf(line, sizeof line, "%d: %*llu %5.1f%%", d, width,
                                       static_cast<unsigned long long>(counts[d]), percent);
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

}  // namespace

Result CountDigits(const BigInt* v, CalcContext* ctx, uint64_t counts[10]) {
    for (int d = 0; d < 10; ++d) counts[d] = 0;
    if (!v->limbs || v->top < 0) return Result::kOk;
    // At most INT32_MAX limbs: a 32-bit counter cannot overflow.
    uint32_t seen[kLimbBase] = {};
    for (int32_t at = 0; at < v->top; at += kDigitFreqBlockLimbs) {
        if (at > 0 && ctx && ctx->ShouldStop()) return Result::kStopped;
        const int32_t end = v->top - at > kDigitFreqBlockLimbs ? at + kDigitFreqBlockLimbs : v->top;
        for (int32_t i = at; i < end; ++i) ++seen[v->limbs[i]];
    }
    for (int32_t l = 0; l < kLimbBase; ++l) {
        if (seen[l] == 0) continue;
        counts[l % 10] += seen[l];
        counts[l / 10 % 10] += seen[l];
        counts[l / 100 % 10] += seen[l];
        counts[l / 1000] += seen[l];
    }
    int32_t t = v->limbs[v->top];
    do {
        ++counts[t % 10];
        t /= 10;
    } while (t > 0);
    return Result::kOk;
}

Result DigitFrequencyText(BigInt* v, std::string* out) {
    BigCountDigits(v);
    uint64_t counts[10];
    for (int d = 0; d < 10; ++d) counts[d] = v->digitCount[d];
    return TableText(counts, out);
}

Result DigitFrequencies(const BigInt* v, CalcContext* ctx, std::string* out) {
    out->clear();
    uint64_t counts[10];
    const Result code = CountDigits(v, ctx, counts);
    if (!Ok(code)) return code;
    return TableText(counts, out);
}
