// The menu of the table windows (TABLEMENU), as menu data
// (resources/menu_data.h). Commands shared with the text windows keep their
// ids (kTxtCopy, kTxtPrint, ...); the Section menu's ids match those of the
// number windows.
#pragma once

#include "resources/menu_data.h"

enum TableCommand {
    kTblBack = 402,
    kTblForward = 403,
    kTblJump = 405,
    kTblFormat = 406,  // always greyed in a table window
    kTblSectionHelp = 332,
};

extern const MenuData kTableMenu;  // TABLEMENU
