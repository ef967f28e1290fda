// Texts a number window makes from its value: the shown section, the digit
// frequency table of its notebook and the digits of Save as Text. Qt-free;
// `lineBreak` is "\r\n" for files and "\n" for the program's editors.
#pragma once

#include <cstdint>
#include <string>

#include "bigint/record.h"
#include "windows/num_win_layout.h"

// Decimal digits of a part, the sign not counted.
int32_t DigitCount(const BigInt* v);

// Section `section` of a part laid out by LayoutSections, lines of lineDigits
// characters; section 0 starts with the layout's offset in spaces.
std::string SectionText(const BigInt* v, const SectionLayout& layout, int32_t section,
                        int32_t lineDigits, const char* lineBreak);

// Numerator, a rule of "-" as long as the longer part (at most lineDigits),
// and denominator, each in lines of lineDigits.
std::string FractionText(const BigInt* num, const BigInt* den, int32_t lineDigits,
                         const char* lineBreak);

// The table of how often each digit 0..9 occurs in counts[0..9]: one line per
// digit (count, percentage with one decimal), a rule and the total.
std::string DigitFrequencyText(const uint32_t counts[10], const char* lineBreak);

// The digits of a part without sign, in lines of exactly lineDigits digits
// (the last one shorter), every line followed by lineBreak.
std::string DigitLines(const BigInt* v, int32_t lineDigits, const char* lineBreak);
