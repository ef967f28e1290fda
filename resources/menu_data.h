// Menus and accelerators as data.
//
// A menu is a flat array of MenuEntry rows read top to bottom:
//
//   {kMenuPopup, 0,  "&File"}             opens a submenu (nested popups allowed)
//   {kMenuItem,  59, "&Open ...", "Ctrl+O"}  a command: id, text with an &
//                                            mnemonic, key sequence or nullptr
//   {kMenuSeparator}                      a line between items
//   {kMenuEnd}                            closes the innermost open popup
//   {kMenuAccel, 399, nullptr, "F12"}     a key with no menu item (accelerator)
//
// Key sequences are written in Qt's portable form ("Ctrl+Shift+S", "F3").
// Flags of a command:
//   kMenuEnabler  the owner's enabler decides whether the item is enabled;
//                 it is asked each time the menu opens and before a key runs it
//   kMenuChecked  the item shows a check mark, asked from the owner likewise
//   kMenuGreyed   the item is present but always disabled
// Every command, from a menu item or a key, reaches the owner as its id. The
// data holds no Qt types; windows/menu_builder.h turns it into a menu bar.
#pragma once

#include <cstddef>

enum MenuKind : unsigned char { kMenuItem, kMenuPopup, kMenuEnd, kMenuSeparator, kMenuAccel };

enum MenuFlags : unsigned char {
    kMenuEnabler = 1,
    kMenuChecked = 2,
    kMenuGreyed = 4,
};

struct MenuEntry {
    MenuKind kind;
    int id;
    const char* text;
    const char* keys;
    unsigned char flags;
};

struct MenuData {
    const char* name;  // the resource name, e.g. "TEXTMENU"
    const MenuEntry* entries;
    std::size_t count;
};

template <std::size_t N>
constexpr MenuData MakeMenu(const char* name, const MenuEntry (&entries)[N]) {
    return MenuData{name, entries, N};
}

// Commands of the text windows.
enum TextCommand {  // ids shared with other menus keep their numbers there
    kTxtOpen = 59,
    kTxtSave = 57,
    kTxtSaveAs = 58,
    kTxtPrint = 97,
    kTxtSelectPrinter = 93,
    kTxtOffsets = 304,
    kTxtCopy = 95,
    kTxtCut = 96,
    kTxtPaste = 99,
    kTxtSelectAll = 119,
    kTxtSearch = 353,
    kTxtNext = 352,
    kTxtRestart = 53,
    kTxtFont = 61,
    kTxtMinusSigns = 92,
    kTxtSearchHelp = 351,
    kTxtClose = 357,
    kTxtLunch = 399,
};

extern const MenuData kTextMenu;  // TEXTMENU: general text windows
extern const MenuData kNoteMenu;  // NOTEMENU: notebooks (no Open, Save, Save As)

// The first problem of a menu's structure (unbalanced popups, a command
// without id, an item outside any popup), or nullptr when it is well formed.
const char* MenuDataProblem(const MenuData& menu);
