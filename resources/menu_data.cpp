#include "resources/menu_data.h"

namespace {

#define OX_TEXT_EDIT_MENU                                                                          \
    {kMenuPopup, 0, "&Edit", nullptr, 0}, {kMenuItem, kTxtCopy, "&Copy", "Ctrl+C", kMenuEnabler},  \
        {kMenuItem, kTxtCut, "Cu&t", "Ctrl+X", kMenuEnabler},                                      \
        {kMenuItem, kTxtPaste, "&Paste", "Ctrl+V", 0},                                             \
        {kMenuItem, kTxtSelectAll, "Select &All", "Ctrl+A", 0},                                    \
        {kMenuSeparator, 0, nullptr, nullptr, 0}, {kMenuItem, kTxtSearch, "&Search ...", "F1", 0}, \
        {kMenuItem, kTxtNext, "&Next", "F3", kMenuEnabler},                                        \
        {kMenuItem, kTxtRestart, "&Restart at top", "F2", 0},                                      \
        {kMenuSeparator, 0, nullptr, nullptr, 0}, {kMenuItem, kTxtFont, "&Font ...", nullptr, 0},  \
        {kMenuItem, kTxtMinusSigns, "&Minus signs ...", nullptr, 0},                               \
        {kMenuEnd, 0, nullptr, nullptr, 0}, {kMenuPopup, 0, "&Help", nullptr, 0},                  \
        {kMenuItem, kTxtSearchHelp, "&Help", nullptr, 0}, {kMenuEnd, 0, nullptr, nullptr, 0}, {    \
        kMenuAccel, kTxtLunch, nullptr, "F12", 0                                                   \
    }

#define OX_TEXT_PRINT_ITEMS                                                  \
    {kMenuItem, kTxtPrint, "&Print ...", "Ctrl+P", 0},                       \
        {kMenuItem, kTxtSelectPrinter, "S&elect printer ...", nullptr, 0}, { \
        kMenuItem, kTxtOffsets, "O&ffsets ...", nullptr, 0                   \
    }

const MenuEntry kTextEntries[] = {
    {kMenuPopup, 0, "&File", nullptr, 0},
    {kMenuItem, kTxtOpen, "&Open ...", "Ctrl+O", 0},
    {kMenuItem, kTxtSave, "&Save", "Ctrl+S", 0},
    {kMenuItem, kTxtSaveAs, "Save &As ...", "Ctrl+Shift+S", 0},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    OX_TEXT_PRINT_ITEMS,
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kTxtClose, "&Close", nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    OX_TEXT_EDIT_MENU,
};

const MenuEntry kNoteEntries[] = {
    {kMenuPopup, 0, "&File", nullptr, 0},     OX_TEXT_PRINT_ITEMS,
    {kMenuSeparator, 0, nullptr, nullptr, 0}, {kMenuItem, kTxtClose, "&Close", nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},       OX_TEXT_EDIT_MENU,
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
        default: return "unknown entry kind";
        }
    }
    return depth == 0 ? nullptr : "popup not closed";
}
