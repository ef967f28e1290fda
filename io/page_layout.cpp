#include "io/page_layout.h"

#include <cmath>
#include <iomanip>
#include <locale>
#include <sstream>

namespace {

constexpr long double kInchesPerMm = 0.03937L;
constexpr long double kNarrowPaperWidth = 9.0L;     // inches of printable width
constexpr long double kNarrowUsableHeight = 10.0L;  // portrait letter and A4
constexpr long double kWideUsableHeight = 7.5L;     // landscape

}  // namespace

long double PrintedOffset(long double inches) {
    return inches < kMinPrintOffset ? kMinPrintOffset : inches;
}

long double UsableHeightInches(long double printableWidthMm, long double vOffset) {
    const long double page = printableWidthMm * kInchesPerMm <= kNarrowPaperWidth
                                 ? kNarrowUsableHeight
                                 : kWideUsableHeight;
    return page - vOffset;
}

int LinesPerPage(long double usableHeight, long double lineHeight) {
    if (lineHeight <= 0) return 1;
    const long double lines = std::floor(usableHeight / lineHeight);
    return lines < 1 ? 1 : lines > 1e6L ? 1000000 : static_cast<int>(lines);
}

std::vector<TextPage> BreakIntoPages(std::u16string_view text, int linesPerPage) {
    if (linesPerPage < 1) linesPerPage = 1;
    std::vector<TextPage> pages;
    const std::size_t n = text.size();
    std::size_t pos = 0;
    while (pos < n) {
        TextPage page;
        bool pageEnded = false;
        while (!pageEnded && static_cast<int>(page.size()) < linesPerPage && pos < n) {
            const std::size_t start = pos;
            while (pos < n && text[pos] != u'\f' && text[pos] != u'\r' && text[pos] != u'\n') ++pos;
            page.push_back({start, pos - start});
            if (pos == n) break;
            const char16_t end = text[pos++];
            if (end == u'\r' && pos < n && text[pos] == u'\n') ++pos;
            pageEnded = end == u'\f';
        }
        pages.push_back(std::move(page));
    }
    return pages;
}

// Lengths are written and read with a decimal point whatever the user's
// locale (the desktop program sets the locale from the environment); a
// decimal comma typed by the user is read as a point.
std::string CentimetreText(long double inches) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << std::fixed << std::setprecision(2) << std::setw(4) << std::fabs(inches) * kCmPerInch;
    return out.str();
}

long double InchesFromCentimetreText(const std::string& text) {
    std::string t = text;
    for (char& c : t)
        if (c == ',') c = '.';
    std::istringstream in(t);
    in.imbue(std::locale::classic());
    long double cm = 0;
    if (!(in >> cm) || !std::isfinite(cm)) return 0;
    return cm / kCmPerInch;
}

Result AcceptPrintFormat(PrintFormat* f, long double width, long double xUnit, long double hOffset,
                         long double vOffset, bool widthChosen, bool frameImage,
                         bool colorPrinter) {
    if (width < kMinPrintOffset || hOffset < kMinPrintOffset || vOffset < kMinPrintOffset ||
        !(xUnit > 0))
        return Result::kOutOfBounds;
    f->width = widthChosen ? width : -width;
    f->xUnit = widthChosen ? -xUnit : xUnit;
    f->hOffset = hOffset;
    f->vOffset = vOffset;
    f->frameImage = frameImage;
    f->colorPrinter = colorPrinter;
    return Result::kOk;
}
