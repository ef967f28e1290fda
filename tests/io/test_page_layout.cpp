#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "io/page_layout.h"

namespace {

using Pages = std::vector<std::vector<std::u16string>>;

// The pages of text as the lines they print.
Pages Layout(std::u16string_view text, int linesPerPage) {
    Pages out;
    for (const TextPage& page : BreakIntoPages(text, linesPerPage)) {
        out.emplace_back();
        for (const TextLine& line : page)
            out.back().emplace_back(text.substr(line.start, line.length));
    }
    return out;
}

TEST(PageBreaking, EveryKindOfLineEndEndsOneLine) {
    // CR LF is one line end, not two; lone CR and lone LF end a line each.
    EXPECT_EQ(Layout(u"ab\r\ncd\ref\ngh", 10), (Pages{{u"ab", u"cd", u"ef", u"gh"}}));
    // A blank line between two line ends survives; a final line end adds nothing.
    EXPECT_EQ(Layout(u"a\r\n\r\nb\r\n", 10), (Pages{{u"a", u"", u"b"}}));
    // LF CR is two line ends (the CR does not reach back).
    EXPECT_EQ(Layout(u"a\n\rb", 10), (Pages{{u"a", u"", u"b"}}));
}

TEST(PageBreaking, FullPagesContinueWhereThePreviousStopped) {
    EXPECT_EQ(Layout(u"1\r\n2\r\n3\r\n4\r\n5\r\n6\r\n7\r\n", 3),
              (Pages{{u"1", u"2", u"3"}, {u"4", u"5", u"6"}, {u"7"}}));
    EXPECT_EQ(Layout(u"1\r\n2\r\n3\r\n", 3), (Pages{{u"1", u"2", u"3"}}));
    EXPECT_TRUE(Layout(u"", 5).empty());
    // A page size below one still moves on.
    EXPECT_EQ(Layout(u"1\n2", 0), (Pages{{u"1"}, {u"2"}}));
}

TEST(PageBreaking, FormFeedStartsANewPageThere) {
    EXPECT_EQ(Layout(u"a\r\nb\fc\r\nd", 10), (Pages{{u"a", u"b"}, {u"c", u"d"}}));
    // The line before a form feed is drawn even when empty; a final form
    // feed makes no blank page.
    EXPECT_EQ(Layout(u"a\r\n\fb\f", 10), (Pages{{u"a", u""}, {u"b"}}));
    EXPECT_EQ(Layout(u"\f\fx", 10), (Pages{{u""}, {u""}, {u"x"}}));
    // A form feed right after a full page gives a page of one empty line.
    EXPECT_EQ(Layout(u"1\r\n2\r\n\f3", 2), (Pages{{u"1", u"2"}, {u""}, {u"3"}}));
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
