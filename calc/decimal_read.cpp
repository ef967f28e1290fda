#include "calc/decimal_read.h"

Result ReadDecimal(const std::string& text, BigInt* v) {
    // The leading minus signs and the digits are all the reader uses; handing
    // it only those keeps a text without digits from reaching its empty-digit
    // case (which would ask for an enormous limb array).
    std::string kept;
    size_t i = 0;
    while (i < text.size() && text[i] == '-') kept.push_back(text[i++]);
    bool anyDigit = false;
    for (; i < text.size(); ++i) {
        if (text[i] >= '0' && text[i] <= '9') {
            kept.push_back(text[i]);
            anyDigit = true;
        }
    }
    if (!anyDigit) {
        *v = BigInt{};
        return Result::kCouldNotFind;
    }
    return BigFromText(&kept[0], v);
}
