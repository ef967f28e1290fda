#include "resources/menus_frame.h"

namespace {

constexpr MenuEntry Sep() { return {kMenuSeparator, 0, nullptr, nullptr, 0}; }
constexpr MenuEntry End() { return {kMenuEnd, 0, nullptr, nullptr, 0}; }
constexpr MenuEntry Popup(const char* text) { return {kMenuPopup, 0, text, nullptr, 0}; }
constexpr MenuEntry Item(int id, const char* text, const char* keys = nullptr,
                         unsigned char flags = 0) {
    return {kMenuItem, id, text, keys, flags};
}
// The list generators the program does not have: offered, always greyed.
constexpr MenuEntry Closed(int id, const char* text) {
    return {kMenuItem, id, text, nullptr, kMenuGreyed};
}

const MenuEntry kOxEntries[] = {
    Popup("&File"),
    Item(kCmdCalculate, "&Calculate ...", "Ctrl+C", kMenuEnabler),
    Item(kCmdModulus, "&Modulus", nullptr, kMenuEnabler),
    Item(kCmdBatch, "B&atch ..."),
    Item(kCmdBaseConversion, "&Base conversion ..."),
    Item(kCmdHailstone, "Hailstone &sequences ..."),
    Sep(),
    Item(kCmdOpen, "&Open ...", "Ctrl+O", kMenuEnabler),
    Item(kCmdPaste, "&Paste", "Ctrl+V", kMenuEnabler),
    Sep(),
    Item(kCmdWhiteBackgrounds, "&White backgrounds", nullptr, kMenuChecked),
    Sep(),
    Item(kCmdFileHelp, "&Help"),
    Item(kCmdExit, "E&xit"),
    End(),
    Popup("&Recursion"),
    Item(kCmdDefine, "&Define ...", "Ctrl+R"),
    Item(kCmdOneStep, "&One step", "Ctrl+S", kMenuEnabler),
    Item(kCmdManySteps, "&Many steps ...", "Ctrl+M", kMenuEnabler),
    Sep(),
    Item(kCmdLunch, "&Lunch ...", "F12"),
    End(),
    Popup("&View"),  // label items A..Z are inserted at kViewLabelPosition
    Item(kCmdTable, "&Table ...", nullptr, kMenuEnabler),
    Item(kCmdViewModulus, "&0=Modulus ..."),
    Item(kCmdViewHelp, "&1=Help"),
    End(),
    Popup("&Lists"),
    Popup("&Primes"),
    Item(610, "&List ..."),
    Item(612, "&Factor ...", "Ctrl+F"),
    Item(638, "&Divisors ...", "Ctrl+D"),
    End(),
    Popup("P&ythagorean triples"),
    Item(620, "&Primitive ..."),
    Item(621, "&All ..."),
    Item(622, "&Generators ..."),
    Item(623, "&Common entry ..."),
    Sep(),
    Item(624, "&60-degree triangles ..."),
    Item(625, "&120-degree triangles ..."),
    End(),
    Item(626, "Pythagorean &quadruples ..."),
    Item(630, "Lattice c&ubes ..."),
    Sep(),
    Item(627, "&Heronian triangles ..."),
    Item(628, "&Rational medians ..."),
    Item(629, "P&erpendicular medians ..."),
    Sep(),
    Popup("&Sums of squares"),
    Item(611, "&Two squares ..."),
    Item(607, "&Convex polygons ..."),
    End(),
    Item(637, "C&yclotomic polynomials ..."),
    Sep(),
    Popup("S&oddy"),
    Closed(631, "&Circles ..."),
    Closed(632, "&Spheres ..."),
    Closed(633, "Circles on a &line ..."),
    Closed(634, "Spheres on a &plane ..."),
    Closed(635, "C&urvatures ..."),
    End(),
    Closed(636, "Rational &tetrahedra ..."),
    Closed(639, "&Inscribed quadrilaterals ..."),
    Closed(642, "Circu&mscribed quadrilaterals ..."),
    Sep(),
    Item(kCmdListsHelp, "&Help"),
    End(),
    Popup("&Help"),
    Item(kCmdProgramHelp, "&Help"),
    Item(kCmdAbout, "&About ..."),
    End(),
};

const MenuEntry kNumEntries[] = {
    Popup("&File"),
    Item(kNumSave, "&Save", "Ctrl+S"),
    Item(kNumSaveAs, "Save &As ...", "Ctrl+Shift+S"),
    Item(kNumSaveAsText, "Save as &Text ..."),
    Sep(),
    Item(kNumPrint, "&Print ...", "Ctrl+P"),
    Item(kNumSelectPrinter, "S&elect printer ..."),
    Item(kNumOffsets, "&Offsets ..."),
    Sep(),
    Item(kNumFileHelp, "&Help"),
    Item(kNumClose, "&Close"),
    End(),
    Popup("&Edit"),
    Item(kNumCopy, "&Copy", "Ctrl+C"),
    Item(kNumSelectAll, "Select &All", "Ctrl+A"),
    Sep(),
    Item(kNumFont, "&Font ..."),
    Item(kNumNotes, "&Notes ...", "Shift+Ctrl+N"),
    Item(kNumDigitFreq, "&Digit freq ..."),
    Sep(),
    Item(kNumEditHelp, "&Help"),
    End(),
    Popup("&Section"),
    Item(kNumNumerator, "&Numerator", "Ctrl+N", kMenuEnabler),
    Item(kNumDenominator, "&Denominator", "Ctrl+D", kMenuEnabler),
    Sep(),
    Item(kNumBack, "&Back", "Ctrl+B", kMenuEnabler),
    Item(kNumJump, "&Jump ...", "Ctrl+J", kMenuEnabler),
    Item(kNumForward, "&Forward", "Ctrl+F", kMenuEnabler),
    Sep(),
    Item(kNumSectionHelp, "&Help"),
    End(),
};

}  // namespace

const MenuData kOxMenu = MakeMenu("OXMENU", kOxEntries);
const MenuData kNumMenu = MakeMenu("NUMMENU", kNumEntries);
