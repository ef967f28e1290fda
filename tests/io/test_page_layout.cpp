#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "io/page_layout.h"

namespace {

// The lines each page prints, a page in brackets, its lines split by '|'.
std::string Layout(std::u16string_view text, int linesPerPage) {
    std::string out;
    for (const TextPage& page : BreakIntoPages(text, linesPerPage)) {
        out += '[';
        for (const TextLine& line : page) {
            if (&line != &page.front()) out += '|';
            for (char16_t c : text.substr(line.start, line.length)) out += char(c);
        }
        out += ']';
    }
    return out;
}

TEST(PageBreaking, LineEndsFullPagesAndFormFeeds) {
    // clang-format off
    const struct { std::u16string_view text; int linesPerPage; const char* pages; } cases[] = {
        // CR LF is one line end; lone CR and lone LF end a line each, and LF
        // CR is two (the CR does not reach back). A final line end adds nothing.
        {u"ab\r\ncd\ref\ngh", 10, "[ab|cd|ef|gh]"}, {u"a\r\n\r\nb\r\n", 10, "[a||b]"},
        {u"a\n\rb", 10, "[a||b]"},
        // Full pages continue where the previous stopped; a page size below
        // one still moves on.
        {u"1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n", 3, "[1|2|3][4|5|6][7]"},
        {u"1\r\n2\r\n3\r\n", 3, "[1|2|3]"},      {u"", 5, ""},      {u"1\n2", 0, "[1][2]"},
        // A form feed starts a new page there; the line before it is drawn
        // even when empty, a final form feed makes no blank page, and one
        // right after a full page gives a page of one empty line.
        {u"a\r\nb\fc\r\nd", 10, "[a|b][c|d]"},    {u"a\r\n\fb\f", 10, "[a|][b]"},
        {u"\f\fx", 10, "[][][x]"},               {u"1\r\n2\r\n\f3", 2, "[1|2][][3]"},
    };
    // clang-format on
    for (const auto& c : cases)
        EXPECT_EQ(Layout(c.text, c.linesPerPage), c.pages) << c.pages << " " << c.linesPerPage;
}

TEST(PageGeometry, UsableHeightAndLinesPerPage) {
    // A4 portrait (about 200 mm printable) and letter landscape (about 270 mm).
    EXPECT_DOUBLE_EQ(double(UsableHeightInches(200, 1.0L)), 9.0);
    EXPECT_DOUBLE_EQ(double(UsableHeightInches(270, 1.0L)), 6.5);
    // Nine inches of printable width still count as narrow.
    EXPECT_DOUBLE_EQ(double(UsableHeightInches(228.6L, 0.5L)), 9.5);
    EXPECT_DOUBLE_EQ(double(UsableHeightInches(228.7L, 0.5L)), 7.0);
    // Absurd offsets still print a line per page.
    EXPECT_EQ(LinesPerPage(999.9L, 100), 9);
    EXPECT_EQ(LinesPerPage(-200, 100), 1);
    EXPECT_EQ(LinesPerPage(100, 0), 1);
}

TEST(OffsetsText, CentimetresShownWithTwoDecimalsAndReadBack) {
    EXPECT_EQ(CentimetreText(1.0L), "2.54");
    EXPECT_EQ(CentimetreText(-1.0L / kCmPerInch), "1.00");  // the default x unit
    EXPECT_EQ(CentimetreText(100.0L / kCmPerInch), "100.00");
    EXPECT_NEAR(double(InchesFromCentimetreText("2.54")), 1.0, 1e-12);
    EXPECT_NEAR(double(InchesFromCentimetreText(" 5,08")), 2.0, 1e-12);
    EXPECT_EQ(InchesFromCentimetreText("cm"), 0);
    EXPECT_EQ(InchesFromCentimetreText("nan"), 0);
}

TEST(OffsetsDialogRules, TheLengthNotChosenBecomesNegative) {
    PrintFormat f;
    // The x unit must be positive, the width and offsets at least kMinPrintOffset.
    EXPECT_EQ(AcceptPrintFormat(&f, 3, 0, 1, 1, true, false, false), Result::kOutOfBounds);
    EXPECT_EQ(AcceptPrintFormat(&f, 0.2L, 1, 1, 1, true, false, false), Result::kOutOfBounds);
    EXPECT_EQ(AcceptPrintFormat(&f, 3, 1, 1, 0.2L, true, false, false), Result::kOutOfBounds);
    EXPECT_EQ(f.width, 3);
    const auto fields = [&f] {
        return std::make_tuple(f.width, f.xUnit, f.hOffset, f.vOffset, f.frameImage,
                               f.colorPrinter);
    };
    ASSERT_EQ(AcceptPrintFormat(&f, 4, 0.5L, 1.5L, 2, true, true, false), 0);
    EXPECT_EQ(fields(), std::make_tuple(4.0L, -0.5L, 1.5L, 2.0L, true, false));
    ASSERT_EQ(AcceptPrintFormat(&f, 4, 0.5L, 1.5L, 2, false, false, true), 0);
    EXPECT_EQ(fields(), std::make_tuple(-4.0L, 0.5L, 1.5L, 2.0L, false, true));
}

}  // namespace
