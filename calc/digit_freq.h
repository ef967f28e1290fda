// The digit-frequency table of a number, as the number window writes it into
// its notebook.
//
// The digits are counted without a copy of the value: a histogram of the
// limbs below the top one (10000 counters, so the loop is one increment a
// limb), each limb value's four digits added in at the end, and the top limb
// counted without its leading zeros. Polls between blocks of limbs.
#pragma once

#include <cstdint>
#include <string>

#include "bigint/bigint.h"
#include "bigint/context.h"
#include "resources/result.h"

// Limbs counted between two polls.
constexpr int32_t kDigitFreqBlockLimbs = 1 << 16;

// For each digit 0-9 a line "d: count pct%", a rule of '-' and the total,
// every line ending in "\r\n". Counts the decimal digits of v (its digit
// counters are refreshed). kOk, or kNoMemory with *text empty.
Result DigitFrequencyText(BigInt* v, std::string* text);

// The same table for a value left as it is, ctx asked between blocks of
// limbs (a value of one block is counted without a poll): kOk, kStopped or
// kNoMemory, with *text empty unless kOk.
Result DigitFrequencies(const BigInt* v, CalcContext* ctx, std::string* text);

// counts[d] = how many digits d the decimal text of v has (a released record
// has none). kOk, or kStopped with the counts unfinished.
Result CountDigits(const BigInt* v, CalcContext* ctx, uint64_t counts[10]);
