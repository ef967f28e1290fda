// How a number window pages one part (numerator or denominator) of its value
// into sections, and which display state the two parts give. Plain data and
// free functions so that the paging can be checked without windows.
//
// A section is at most kTextBufferChars characters of text: n lines of L
// digits, each line followed by a two-character break. Section 0 may begin
// with a short first line (its offset, rendered as leading spaces) so that
// every later section starts on a whole limb at the start of a line.
#pragma once

#include <cstdint>
#include <vector>

#include "resources/result.h"

constexpr int kMaxSections = 50000;

struct SectionLayout {
    // bounds[0] is the top limb; section k shows limbs bounds[k] down to
    // bounds[k + 1] + 1, and the last entry is -1 (down to limb 0).
    std::vector<int32_t> bounds;
    int32_t count = 0;   // index of the last section (0 = one section)
    int32_t offset = 0;  // characters the first line of section 0 is short
    int32_t current = 0;
};

// Pages a part of top limb index `top`, `textLength` characters of decimal
// text (the sign included) and sign `negative` into lines of `lineDigits`.
// kOk, or kNoMoreRoom when it needs more than kMaxSections sections.
Result LayoutSections(int32_t top, int32_t textLength, bool negative, int32_t lineDigits,
                      SectionLayout* out);

// Lines per section and the limbs of section 0 and of every later one, as
// LayoutSections uses them (exposed for the window's own checks).
int32_t LinesPerSection(int32_t lineDigits);

// Display states of a number window.
enum DisplayState {
    kShowWhole = 0,      // an integer in one section
    kShowSections = 1,   // an integer in sections
    kShowFraction = 2,   // numerator, rule, denominator together
    kShowNumerator = 3,  // a fraction shown part by part ...
    kShowNumeratorSections = 4,
    kShowDenominator = 5,
    kShowDenominatorSections = 6,
};

// Parts shown together need fewer digits than this in all.
constexpr int32_t kFractionTogetherDigits = 63800;

// The state for a value; part 0 shows the numerator, 1 the denominator.
int ChooseDisplayState(bool denominatorIsOne, int32_t numSections, int32_t denSections,
                       int32_t numDigits, int32_t denDigits, int part);
