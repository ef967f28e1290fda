#include "calc/conversion.h"

int ConvertDigits(CalcContext* ctx, int fromBase, int toBase, const std::string& input,
                  std::string* output) {
    output->clear();
    if (fromBase < 2 || fromBase > 16 || toBase < 2 || toBase > 16) return 1;
    std::string text = input.substr(0, kConversionInputChars);
    int code = ConvertBase(ctx, fromBase, toBase, &text);
    if (code == 0) output->swap(text);
    return code;
}
