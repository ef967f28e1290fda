// How a window's text is laid out on printed pages, without any printer:
// the print format a window keeps, the offsets as printed, the usable height
// of a page, lines per page and the breaking of a text into pages of lines.
// io/print/print.h draws the pages this computes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "resources/result.h"

constexpr long double kCmPerInch = 2.54L;
// Nothing is printed nearer than this to the paper's left or top edge.
constexpr long double kMinPrintOffset = 0.25L;

// A window's print format, lengths in inches. Width, x unit and the two flags
// serve printed pictures; text windows use only the offsets. Of width and
// x unit exactly one is positive: the one that governs a picture's size.
struct PrintFormat {
    long double width = 3.0L;
    long double hOffset = 1.0L;  // paper's left edge to the text's upper left corner
    long double vOffset = 1.0L;  // paper's top edge to the text's upper left corner
    long double xUnit = -1.0L / kCmPerInch;
    bool frameImage = false;
    bool colorPrinter = false;
    // Which fields the offsets dialog shows: 0 the offsets only (text
    // windows), 1 adds the picture's width and its flags, 2 everything.
    int dialogMode = 0;
};

// An offset as printed: never below kMinPrintOffset.
long double PrintedOffset(long double inches);

// Height left for lines below the vertical offset (already floored): 10
// inches on paper whose printable width is at most 9 inches, 7.5 inches on
// wider (landscape) paper. May be zero or negative for absurd offsets.
long double UsableHeightInches(long double printableWidthMm, long double vOffset);

// Whole lines of lineHeight in usableHeight (both in printer pixels); at
// least one, so that every page carries text.
int LinesPerPage(long double usableHeight, long double lineHeight);

// One printed line: a stretch of the text without its line end.
struct TextLine {
    std::size_t start;
    std::size_t length;
};
using TextPage = std::vector<TextLine>;

// Breaks text into pages of at most linesPerPage (>= 1) lines. A line ends
// at a carriage return (which takes a line feed after it along), at a lone
// line feed, at a form feed, or at the end of the text; a form feed also
// ends the page. Nothing at all gives no pages.
std::vector<TextPage> BreakIntoPages(std::u16string_view text, int linesPerPage);

// The offsets dialog's view of a length: its absolute value in centimetres
// as "%4.2f" writes it.
std::string CentimetreText(long double inches);
// A typed length in centimetres, in inches; text that is no number reads as 0.
long double InchesFromCentimetreText(const std::string& text);

// Takes lengths read from the offsets dialog (all as typed, in inches):
// answers kOutOfBounds when width or an offset is below kMinPrintOffset or
// the x unit is not positive, leaving *f alone; else stores them, the length
// whose choice is not taken made negative, and answers kOk.
Result AcceptPrintFormat(PrintFormat* f, long double width, long double xUnit, long double hOffset,
                         long double vOffset, bool widthChosen, bool frameImage, bool colorPrinter);
