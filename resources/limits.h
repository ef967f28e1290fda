// Fixed limits of the program, defined once.
#pragma once

constexpr int kLabelCount = 26;            // variables A..Z
constexpr int kMaxFormulaChars = 5000;     // a formula's text
constexpr int kMaxFieldChars = 255;        // a dialog field
constexpr int kMaxLiteralDigits = 255;     // a number inside a formula
constexpr int kTextBufferChars = 64000;    // a text window, a number-window section
constexpr int kListChars = 1000000;        // a list or table window
constexpr int kTableSectionChars = 30000;  // a shown section of a table window
