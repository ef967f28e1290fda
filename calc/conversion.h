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

// Writes the value numerator/denominator (a label's, of any length) in
// toBase, 2..16, as values print and with the digits of ConvertDigits: the
// numerator's sign and digits (none for a whole zero), then, when the
// denominator is not one, "/" and its sign and digits. kOk, kOutOfBounds for
// a base outside 2..16 (*output empty), kNoMemory, kStopped.
Result ConvertValue(CalcContext* ctx, int toBase, const BigInt* numerator,
                    const BigInt* denominator, std::string* output);
