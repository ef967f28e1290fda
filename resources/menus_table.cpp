#include "resources/menus_table.h"

namespace {

// Items that depend on the window's state (its sections, its selection, a
// run that is filling it) ask the window's enabler.
const MenuEntry kTableEntries[] = {
    {kMenuPopup, 0, "&File", nullptr, 0},
    {kMenuItem, kTxtSaveAs, "Save &As ...", "Ctrl+Shift+S", kMenuEnabler},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kTxtPrint, "&Print ...", "Ctrl+P", kMenuEnabler},
    {kMenuItem, kTxtSelectPrinter, "S&elect printer ...", nullptr, 0},
    {kMenuItem, kTxtOffsets, "O&ffsets ...", nullptr, 0},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kTxtClose, "&Close", nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    {kMenuPopup, 0, "&Edit", nullptr, 0},
    {kMenuItem, kTxtCopy, "&Copy", "Ctrl+C", kMenuEnabler},
    {kMenuItem, kTxtSelectAll, "Select &All", "Ctrl+A", 0},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kTxtSearch, "&Search ...", "F1", kMenuEnabler},
    {kMenuItem, kTxtNext, "&Next", "F3", kMenuEnabler},
    {kMenuItem, kTxtRestart, "&Restart at top", "F2", 0},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kTxtFont, "&Font ...", nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    {kMenuPopup, 0, "&Section", nullptr, 0},
    {kMenuItem, kTblBack, "&Back", "Ctrl+B", kMenuEnabler},
    {kMenuItem, kTblForward, "&Forward", "Ctrl+F", kMenuEnabler},
    {kMenuItem, kTblJump, "&Jump ...", "Ctrl+J", kMenuEnabler},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kTblFormat, "F&ormat ...", nullptr, kMenuGreyed},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuItem, kTblSectionHelp, "&Help", nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    {kMenuAccel, kTxtLunch, nullptr, "F12", 0},
};

}  // namespace

const MenuData kTableMenu = MakeMenu("TABLEMENU", kTableEntries);
