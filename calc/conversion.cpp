#include "calc/conversion.h"

#include <new>

Result ConvertDigits(CalcContext* ctx, int fromBase, int toBase, const std::string& input,
                     std::string* output) {
    output->clear();
    if (fromBase < 2 || fromBase > 16 || toBase < 2 || toBase > 16)
        return Result::kCannotUnderstand;
    std::string text;
    try {
        text = input.substr(0, kConversionInputChars);
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
    Result code = ConvertBase(ctx, fromBase, toBase, &text);
    if (Ok(code)) output->swap(text);
    return code;
}
