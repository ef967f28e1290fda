// Texts a number window makes from its value: the shown section and the
// digits of Save as Text (the digit table is calc/digit_freq.h's). Qt-free;
// `lineBreak` is "\r\n" for files and "\n" for the program's editors.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

#include "bigint/context.h"
#include "bigint/record.h"
#include "resources/result.h"
#include "windows/num_win_layout.h"

// text with every CR LF (as BigToText breaks lines) replaced by lineBreak.
std::string WithBreaks(const char* text, const char* lineBreak);

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

// The digits of a part without sign, in lines of exactly lineDigits digits
// (the last one shorter), every line followed by lineBreak.
std::string DigitLines(const BigInt* v, int32_t lineDigits, const char* lineBreak);

// Characters DigitLines hands on at a time (the last block may be shorter).
constexpr std::size_t kDigitLinesBlock = 65536;

// DigitLines' text without gathering it: handed to put a block at a time, ctx
// asked between blocks (a text of one block goes without a poll). kOk, or
// kStopped with only the blocks before the stop handed on.
Result PutDigitLines(const BigInt* v, int32_t lineDigits, const char* lineBreak, CalcContext* ctx,
                     const std::function<void(const char*, std::size_t)>& put);
