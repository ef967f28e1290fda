#include "windows/num_win_layout.h"

#include "resources/limits.h"

int32_t LinesPerSection(int32_t lineDigits) { return (kTextBufferChars + 2) / (lineDigits + 2); }

Result LayoutSections(int32_t top, int32_t textLength, bool negative, int32_t lineDigits,
                      SectionLayout* out) {
    const int32_t L = lineDigits < 1 ? 1 : lineDigits;
    const int32_t digits = textLength - (negative ? 1 : 0);
    // Digits of the top limb, 1..4. (Taken as 0 for a full top limb, the
    // first section would get one limb too many and end in a short line.)
    const int32_t r = digits % 4 == 0 ? 4 : digits % 4;

    const int32_t n = LinesPerSection(L);
    int32_t firstLimbs = n * L / 4;
    const int32_t s = n * L % 4;
    int32_t offset = s - r;
    if (offset < 0) offset += 4;
    if (r <= s && s > 0) ++firstLimbs;
    if (negative) {
        // The minus sign takes one place of the first line.
        if (offset < 1) {
            offset = 3;
            --firstLimbs;
        } else {
            --offset;
        }
    }
    // Later sections hold whole lines of whole limbs.
    int32_t later = n;
    while (later > 1 && later * L % 4 != 0) --later;
    int32_t laterLimbs = later * L / 4;
    if (laterLimbs < 1) laterLimbs = 1;
    if (firstLimbs < 1) firstLimbs = 1;

    out->bounds.assign(1, top);
    out->count = 0;
    out->current = 0;
    int32_t b = top - firstLimbs;
    while (b >= 0) {
        if (out->count >= kMaxSections) {
            out->bounds.assign({top, -1});
            out->count = 0;
            out->offset = 0;
            return Result::kNoMoreRoom;
        }
        out->bounds.push_back(b);
        ++out->count;
        b -= laterLimbs;
    }
    out->bounds.push_back(-1);
    out->offset = out->count == 0 ? 0 : offset;
    return Result::kOk;
}

int ChooseDisplayState(bool denominatorIsOne, int32_t numSections, int32_t denSections,
                       int32_t numDigits, int32_t denDigits, int part) {
    if (denominatorIsOne) return numSections == 0 ? kShowWhole : kShowSections;
    if (numSections == 0 && denSections == 0 && numDigits + denDigits < kFractionTogetherDigits)
        return kShowFraction;
    if (part == 0) return numSections == 0 ? kShowNumerator : kShowNumeratorSections;
    return denSections == 0 ? kShowDenominator : kShowDenominatorSections;
}
