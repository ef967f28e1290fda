#include "lists/list_frame.h"

#include "resources/limits.h"

bool AppendListLine(ListOutput* out, std::string_view row) {
    if (out->text.size() + row.size() > static_cast<size_t>(kListChars)) return false;
    out->text.append(row);
    return true;
}

bool OfferListRow(CalcContext* ctx, ListOutput* out, std::string_view row) {
    while (!AppendListLine(out, row))
        if (out->endWhenFull || ctx == nullptr || ctx->ShouldStop()) return false;
    return true;
}

std::string PadLeft(int width, std::string_view text, char fill) {
    if (width <= 0) return std::string();
    size_t w = static_cast<size_t>(width);
    if (text.size() >= w) return std::string(text.substr(0, w));
    std::string padded(w - text.size(), fill);
    padded.append(text);
    return padded;
}

void Concat8(std::string* target, std::string_view t1, std::string_view t2, std::string_view t3,
             std::string_view t4, std::string_view t5, std::string_view t6, std::string_view t7,
             std::string_view t8) {
    for (std::string_view t : {t1, t2, t3, t4, t5, t6, t7, t8}) target->append(t);
}

void HyphenRule(std::string* target, int n, bool keep) {
    if (!keep) target->clear();
    if (n > 0) target->append(static_cast<size_t>(n), '-');
}

std::string Dec(uint32_t v) { return std::to_string(v); }
std::string Dec(int64_t v) { return std::to_string(v); }

int DecDigits(uint64_t v) {
    int digits = 1;
    while (v >= 10) {
        v /= 10;
        ++digits;
    }
    return digits;
}

std::string NumberedRowLabel(uint32_t i, uint32_t count) {
    return PadLeft(DecDigits(uint64_t{count} + 1), Dec(i)) + ". ";
}

void ListStatus(ListOutput* out, const std::string& text) {
    if (out->status) out->status(text);
}
