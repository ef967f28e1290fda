// Base conversion as the conversion dialog runs it.
#pragma once

#include <string>

#include "bigint/bigint.h"

constexpr int kConversionInputChars = 12344;   // characters of the input read

// Rewrites input (digits of fromBase) as digits of toBase, both 2..16. At most
// kConversionInputChars characters are read. 0 with the digits in *output
// (empty for zero); 1 for an invalid digit or a base outside 2..16, with
// *output empty.
int ConvertDigits(CalcContext* ctx, int fromBase, int toBase, const std::string& input,
                  std::string* output);
