#include "resources/menus_frame.h"

namespace {

constexpr MenuEntry Sep() { return {kMenuSeparator, 0, nullptr, nullptr, 0}; }
constexpr MenuEntry End() { return {kMenuEnd, 0, nullptr, nullptr, 0}; }
constexpr MenuEntry Popup(const char* text) { return {kMenuPopup, 0, text, nullptr, 0}; }
constexpr MenuEntry Item(int id, const char* text, const char* keys = nullptr,
                         unsigned char flags = 0) {
    return {kMenuItem, id, text, keys, flags};
}
// Commands whose features the program does not have yet.
constexpr MenuEntry Later(int id, const char* text, const char* keys = nullptr) {
    return {kMenuItem, id, text, keys, kMenuGreyed};
}

const MenuEntry kOxEntries[] = {
    Popup("&File"),
    Item(kCmdCalculate, "&Calculate ...", "Ctrl+C", kMenuEnabler),
    Item(kCmdModulus, "&Modulus", nullptr, kMenuEnabler),
    Later(kCmdBaseConversion, "&Base conversion ..."),
    Later(kCmdHailstone, "Hailstone &sequences ..."),
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
    Later(kCmdDefine, "&Define ...", "Ctrl+R"),
    Later(kCmdOneStep, "&One step", "Ctrl+S"),
    Later(kCmdManySteps, "&Many steps ...", "Ctrl+M"),
    Sep(),
    Item(kCmdLunch, "&Lunch ...", "F12"),
    End(),
    Popup("&View"),   // label items A..Z are inserted at kViewLabelPosition
    Later(kCmdTable, "&Table ..."),
    Item(kCmdViewModulus, "&0=Modulus ..."),
    Item(kCmdViewHelp, "&1=Help"),
    End(),
    Popup("&Lists"),
    Popup("&Primes"),
    Later(610, "&List ..."),
    Later(612, "&Factor ...", "Ctrl+F"),
    Later(638, "&Divisors ...", "Ctrl+D"),
    End(),
    Popup("P&ythagorean triples"),
    Later(620, "&Primitive ..."),
    Later(621, "&All ..."),
    Later(622, "&Generators ..."),
    Later(623, "&Common entry ..."),
    Sep(),
    Later(624, "&60-degree triangles ..."),
    Later(625, "&120-degree triangles ..."),
    End(),
    Later(626, "Pythagorean &quadruples ..."),
    Later(630, "Lattice c&ubes ..."),
    Sep(),
    Later(627, "&Heronian triangles ..."),
    Later(628, "&Rational medians ..."),
    Later(629, "P&erpendicular medians ..."),
    Sep(),
    Popup("&Sums of squares"),
    Later(611, "&Two squares ..."),
    Later(607, "&Convex polygons ..."),
    End(),
    Later(637, "C&yclotomic polynomials ..."),
    Sep(),
    Popup("S&oddy"),
    Later(631, "&Circles ..."),
    Later(632, "&Spheres ..."),
    Later(633, "Circles on a &line ..."),
    Later(634, "Spheres on a &plane ..."),
    Later(635, "C&urvatures ..."),
    End(),
    Later(636, "Rational &tetrahedra ..."),
    Later(639, "&Inscribed quadrilaterals ..."),
    Later(642, "Circu&mscribed quadrilaterals ..."),
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
    Later(kNumPrint, "&Print ...", "Ctrl+P"),
    Later(kNumSelectPrinter, "S&elect printer ..."),
    Later(kNumOffsets, "&Offsets ..."),
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
