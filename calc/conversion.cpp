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

Result ConvertValue(CalcContext* ctx, int toBase, const BigInt* numerator,
                    const BigInt* denominator, std::string* output) {
    output->clear();
    if (toBase < 2 || toBase > 16) return Result::kOutOfBounds;
    std::string digits, below;
    Result code = BigToRadix(ctx, numerator, toBase, &digits);
    const bool fraction = !BigIsOne(denominator);
    if (Ok(code) && fraction) code = BigToRadix(ctx, denominator, toBase, &below);
    if (!Ok(code)) return code;
    // Each part with its own sign, as values print; a whole zero has no
    // digits, as in ConvertDigits, but a fraction's zero numerator shows.
    const auto sign = [](const BigInt* v) { return v->negative && !BigIsZero(v) ? "-" : ""; };
    try {
        output->append(sign(numerator)).append(digits.empty() && fraction ? "0" : digits);
        if (fraction) output->append("/").append(sign(denominator)).append(below);
    } catch (const std::bad_alloc&) {
        output->clear();
        return Result::kNoMemory;
    }
    return Result::kOk;
}
