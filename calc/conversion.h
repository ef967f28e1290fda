// Base conversion as the conversion dialog runs it.
#pragma once

#include <string>

#include "bigint/bigint.h"
#include "resources/result.h"

constexpr int kConversionInputChars = 12344;  // characters of the input read

// Rewrites input (digits of fromBase) as digits of toBase, both 2..16. At most
// kConversionInputChars characters are read. kOk with the digits in *output
// (empty for zero); kCannotUnderstand for an invalid digit or a base outside
// 2..16, with *output empty.
Result ConvertDigits(CalcContext* ctx, int fromBase, int toBase, const std::string& input,
                     std::string* output);
