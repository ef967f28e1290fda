// The digit-frequency table of a number, as the number window writes it into
// its notebook.
#pragma once

#include <string>

#include "bigint/bigint.h"
#include "resources/result.h"

// For each digit 0-9 a line "d: count pct%", a rule of '-' and the total,
// every line ending in "\r\n". Counts the decimal digits of v (its digit
// counters are refreshed). kOk, or kNoMemory with *text empty.
Result DigitFrequencyText(BigInt* v, std::string* text);
