#include "resources/menu_data.h"

namespace {

// Print items stay greyed until the text windows can print.
#define OX_TEXT_EDIT_MENU                                                   \
    {kMenuPopup, 0, "&Edit", nullptr, 0},                                   \
    {kMenuItem, kCmdCopy, "&Copy", "Ctrl+C", kMenuEnabler},                 \
    {kMenuItem, kCmdCut, "Cu&t", "Ctrl+X", kMenuEnabler},                   \
    {kMenuItem, kCmdPaste, "&Paste", "Ctrl+V", 0},                          \
    {kMenuItem, kCmdSelectAll, "Select &All", "Ctrl+A", 0},                 \
    {kMenuSeparator, 0, nullptr, nullptr, 0},                               \
    {kMenuItem, kCmdSearch, "&Search ...", "F1", 0},                        \
    {kMenuItem, kCmdNext, "&Next", "F3", kMenuEnabler},                     \
    {kMenuItem, kCmdRestart, "&Restart at top", "F2", 0},                   \
    {kMenuSeparator, 0, nullptr, nullptr, 0},                               \
    {kMenuItem, kCmdFont, "&Font ...", nullptr, 0},                         \
    {kMenuItem, kCmdMinusSigns, "&Minus signs ...", nullptr, 0},            \
    {kMenuEnd, 0, nullptr, nullptr, 0},                                     \
    {kMenuPopup, 0, "&Help", nullptr, 0},                                   \
    {kMenuItem, kCmdSearchHelp, "&Help", nullptr, 0},                       \
    {kMenuEnd, 0, nullptr, nullptr, 0},                                     \
    {kMenuAccel, kCmdLunch, nullptr, "F12", 0}

#define OX_TEXT_PRINT_ITEMS                                                 \
    {kMenuItem, kCmdPrint, "&Print ...", "Ctrl+P", kMenuGreyed},            \
    {kMenuItem, kCmdSelectPrinter, "S&elect printer ...", nullptr, kMenuGreyed}, \
    {kMenuItem, kCmdOffsets, "O&ffsets ...", nullptr, kMenuGreyed}

const MenuEntry kTextEntries[] = {
    {kMenuPopup, 0, "&File", nullptr, 0},
    {kMenuItem, kCmdOpen, "&Open ...", "Ctrl+O", 0},
    {kMenuItem, kCmdSave, "&Save", "Ctrl+S", 0},
    {kMenuItem, kCmdSaveAs, "Save &As ...", "Ctrl+Shift+S", 0},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    OX_TEXT_PRINT_ITEMS,
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kCmdClose, "&Close", nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    OX_TEXT_EDIT_MENU,
};

const MenuEntry kNoteEntries[] = {
    {kMenuPopup, 0, "&File", nullptr, 0},
    OX_TEXT_PRINT_ITEMS,
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kCmdClose, "&Close", nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    OX_TEXT_EDIT_MENU,
};

#undef OX_TEXT_EDIT_MENU
#undef OX_TEXT_PRINT_ITEMS

}  // namespace

const MenuData kTextMenu = MakeMenu("TEXTMENU", kTextEntries);
const MenuData kNoteMenu = MakeMenu("NOTEMENU", kNoteEntries);

const char* MenuDataProblem(const MenuData& menu) {
    int depth = 0;
    for (std::size_t i = 0; i < menu.count; ++i) {
        const MenuEntry& e = menu.entries[i];
        switch (e.kind) {
        case kMenuPopup:
            if (!e.text) return "popup without text";
            ++depth;
            break;
        case kMenuEnd:
            if (--depth < 0) return "end without popup";
            break;
        case kMenuItem:
            if (depth == 0) return "item outside any popup";
            if (e.id <= 0 || !e.text) return "item without id or text";
            break;
        case kMenuSeparator:
            if (depth == 0) return "separator outside any popup";
            break;
        case kMenuAccel:
            if (e.id <= 0 || !e.keys) return "accelerator without id or key";
            break;
        default:
            return "unknown entry kind";
        }
    }
    return depth == 0 ? nullptr : "popup not closed";
}
