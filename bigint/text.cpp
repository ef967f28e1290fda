// Decimal text in and out, four digits per limb.
#include <cstring>

#include "bigint/internal.h"

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Appends n (0..99999) in decimal, at least minWidth digits; answers the length.
int32_t AppendLimb(char* out, int32_t n, int minWidth) {
    char tmp[8];
    int len = 0;
    do {
        tmp[len++] = static_cast<char>('0' + n % 10);
        n /= 10;
    } while (n > 0);
    while (len < minWidth) tmp[len++] = '0';
    for (int i = 0; i < len; ++i) out[i] = tmp[len - 1 - i];
    return len;
}

// Breaks text of length len into lines of lineLength characters joined by
// CR LF, in place from the end; buf holds the longer result.
void BreakLines(char* buf, int32_t len, int32_t lineLength) {
    const int32_t lines = (len + lineLength - 1) / lineLength;
    if (lines < 2) return;
    int32_t dst = len + 2 * (lines - 1);
    buf[dst] = '\0';
    int32_t lastStart = (lines - 1) * lineLength;
    int32_t end = len;
    for (int32_t start = lastStart; start >= 0; start -= lineLength) {
        const int32_t n = end - start;
        dst -= n;
        std::memmove(buf + dst, buf + start, static_cast<size_t>(n));
        if (start > 0) {
            buf[--dst] = '\n';
            buf[--dst] = '\r';
        }
        end = start;
    }
}

}  // namespace

// Signs lead (each "-" inverts), zeros are dropped, then every non-digit is
// discarded. Because zeros go first, "x00000" keeps its zeros and reads as a
// zero of two limbs, and text with no digits after the zeros ("abc") is
// answered 3, the code of the failed allocation this case has always made.
Result BigFromText(char* text, BigInt* v) {
    uint8_t negative = 0;
    char* s = text;
    while (*s == '-') {
        negative ^= 1;
        ++s;
    }
    // On failure v reads zero; the failure reported is the text's, and a
    // record left released by a failed zero reads as zero too.
    if (*s == '\0') {
        (void)BigFromInt(v, 0);
        return Result::kCouldNotFind;
    }
    while (*s == '0') ++s;
    if (*s == '\0') return BigFromInt(v, 0);

    size_t length = 0;
    for (const char* c = s; *c; ++c) {
        if (IsDigit(*c)) ++length;
    }
    if (length != std::strlen(s)) {
        char* w = text;
        for (const char* c = s; *c; ++c) {
            if (IsDigit(*c)) *w++ = *c;
        }
        *w = '\0';
        s = text;
    }
    if (length == 0 || length / 4 >= static_cast<size_t>(INT32_MAX)) {
        (void)BigFromInt(v, 0);
        return Result::kNoMemory;
    }
    const int32_t top = static_cast<int32_t>((length - 1) / 4);
    Limb* limbs = AllocLimbs(static_cast<int64_t>(top) + 1);
    if (!limbs) {
        (void)BigFromInt(v, 0);
        return Result::kNoMemory;
    }
    // Cut four digits at a time from the right, ending the text at each cut.
    size_t position = length;
    for (int32_t k = 0; position > 0; ++k) {
        position = position >= 4 ? position - 4 : 0;
        int32_t limb = 0;
        for (const char* c = s + position; *c; ++c) limb = limb * 10 + (*c - '0');
        limbs[k] = static_cast<Limb>(limb);
        s[position] = '\0';
    }
    v->limbs = limbs;
    v->top = top;
    v->negative = negative;
    return Result::kOk;
}

// The first rendered limb is written without leading zeros even when it is
// not the top limb, so a page that starts inside a number starts with its
// significant digits. A text wider than the budget ends in "..." and is not
// broken into lines.
void BigToText(const BigInt* v, char* buf, int32_t width, int32_t lineLength, int32_t firstLimb,
               int32_t lastLimb, int32_t indent) {
    if (firstLimb < 0) firstLimb = v->top;
    int32_t len = 0;
    for (int32_t i = 0; i < indent; ++i) buf[len++] = ' ';
    if (v->negative && firstLimb == v->top && !BigIsZero(v)) buf[len++] = '-';
    len += AppendLimb(buf + len, v->limbs[firstLimb], 1);
    int32_t room = (width - len) / 4;
    const bool truncated = lastLimb + room < firstLimb;
    while (lastLimb < firstLimb && room > 0) {
        --firstLimb;
        len += AppendLimb(buf + len, v->limbs[firstLimb], 4);
        --room;
    }
    buf[len] = '\0';
    if (truncated) {
        for (int32_t i = len >= 3 ? len - 3 : 0; i < len; ++i) buf[i] = '.';
        return;
    }
    if (lineLength < 1) return;
    BreakLines(buf, len, lineLength);
}
