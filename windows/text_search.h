// Text operations of the text windows that need no window: finding a pattern
// and the replacement character for minus signs.
#pragma once

#include <QChar>
#include <QString>

// The first position >= from where pattern occurs in text, compared without
// regard to case, or -1 (also for an empty pattern or from past the end).
int FindInText(const QString& text, const QString& pattern, int from);

// The character of code 2..255 as the program's 8-bit texts show it
// (Windows-1252: 150 is the en dash, 151 the em dash); a null QChar
// outside 2..255.
QChar CharOfCode(int code);
