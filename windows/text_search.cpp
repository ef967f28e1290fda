#include "windows/text_search.h"

int FindInText(const QString& text, const QString& pattern, int from) {
    if (pattern.isEmpty() || from < 0 || from > text.size() - pattern.size()) return -1;
    return text.indexOf(pattern, from, Qt::CaseInsensitive);
}

QChar CharOfCode(int code) {
    // 0x80..0x9F of Windows-1252; its five unused codes stay themselves.
    static const char16_t k1252[32] = {
        0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    if (code < 2 || code > 255) return QChar();
    if (code >= 0x80 && code < 0xA0 && k1252[code - 0x80]) return QChar(k1252[code - 0x80]);
    return QChar(code);
}
