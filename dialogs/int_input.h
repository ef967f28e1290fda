// Bounded integer input: a one-input dialog whose caption and prompt come
// from the string table, preset with *value in decimal. With a range the
// prompt reads "lo .. prompt .. hi" (a page count from 1 to 9 is asked for as
// "1 .. number of pages .. 9"). The field takes 19 characters.
#pragma once

#include <cstdint>

class QWidget;

constexpr int kIntInputChars = 19;
constexpr int kIntInputCancelled = -12;

// 0 and *value set when accepted; 17 ("out of bounds") outside lo..hi;
// 1 ("cannot understand") for text that is no whole number;
// kIntInputCancelled when cancelled. *value changes only on 0.
int AskBoundedInt(QWidget* owner, int captionId, int promptId, int64_t* value,
                  bool bounded = false, int64_t lo = 0, int64_t hi = 0);
