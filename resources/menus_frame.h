// The menus of the main frame (OXMENU) and of the number windows (NUMMENU),
// as menu data (resources/menu_data.h), with their command ids.
#pragma once

#include "resources/menu_data.h"

enum FrameCommand {
    kCmdOpen = 59,
    kCmdPaste = 99,
    kCmdCalculate = 601,
    kCmdDefine = 602,
    kCmdOneStep = 603,
    kCmdManySteps = 604,
    kCmdLunch = 399,
    kCmdModulus = 605,
    kCmdBatch = 606,
    kCmdBaseConversion = 613,
    kCmdHailstone = 615,
    kCmdWhiteBackgrounds = 410,
    kCmdFileHelp = 330,
    kCmdExit = 24310,
    kCmdTable = 614,
    kCmdViewLabel = 501,  // 501..526: the window of label A..Z
    kCmdViewModulus = 527,
    kCmdViewHelp = 331,
    kCmdListsHelp = 332,
    kCmdProgramHelp = 354,
    kCmdAbout = 355,
};

enum NumCommand {
    kNumSave = 57,
    kNumSaveAs = 58,
    kNumSaveAsText = 401,
    kNumPrint = 97,
    kNumSelectPrinter = 93,
    kNumOffsets = 304,
    kNumFileHelp = 330,
    kNumCopy = 95,
    kNumSelectAll = 119,
    kNumFont = 61,
    kNumNotes = 75,
    kNumDigitFreq = 404,
    kNumEditHelp = 331,
    kNumNumerator = 640,
    kNumDenominator = 641,
    kNumBack = 402,
    kNumJump = 405,
    kNumForward = 403,
    kNumSectionHelp = 332,
    kNumClose = 357,
};

extern const MenuData kOxMenu;   // OXMENU
extern const MenuData kNumMenu;  // NUMMENU

// Where the View menu's label items go: its index in the menu bar and the
// position of the first label item inside it.
constexpr int kViewMenuIndex = 2;
constexpr int kViewLabelPosition = 2;
