// The font table every window carries: ten LOGFONT entries with a point size.
// All are normal weight, upright, ANSI, outline precision, stroke clipping,
// draft quality, fixed-pitch modern "Courier New", except entry 1 ("Symbol",
// symbol character set) and entries 4 and 5 ("Times", variable pitch):
//   0 Courier New 12, 1 Symbol 10, 2 Courier New 10, 3 Courier New 8,
//   4 Times 12, 5 Times 10, 6..9 Courier New 10.
#pragma once

#include "io/logfont.h"

constexpr int kFontTableSize = 10;

// Entry index (0..9; others read as 0) for a screen of dpiY pixels per inch:
// the height is the negative pixel height, points * dpiY / 72.
LogFont FontTableEntry(int index, int dpiY);
