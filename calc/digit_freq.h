// The digit-frequency table of a number, as the number window writes it into
// its notebook.
#pragma once

#include <string>

#include "bigint/bigint.h"

// For each digit 0-9 a line "d: count pct%", a rule of '-' and the total,
// every line ending in "\r\n". Counts the decimal digits of v (its digit
// counters are refreshed).
std::string DigitFrequencyText(BigInt* v);
