// Builds a QMenuBar from menu data (resources/menu_data.h) and routes every
// command, chosen from a menu or typed as a key, to the owner's MenuTarget.
//
// Enablers: while a menu is open, each item flagged kMenuEnabler shows the
// state MenuTarget::commandEnabled() gives it; keys stay live and ask the
// enabler again before the command runs, so a key never runs a disabled
// command and never misses one that became enabled. Check marks are asked
// from commandChecked() when the menu opens. Each QAction carries its command
// id in data(); kMenuGreyed items are disabled for good.
#pragma once

#include "resources/menu_data.h"

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

class MenuTarget {
public:
    virtual ~MenuTarget();
    virtual void command(int id) = 0;
    virtual bool commandEnabled(int id);  // default: enabled
    virtual bool commandChecked(int id);  // default: unchecked
};

// The menu bar for `menu`, parented to `owner`; accelerator-only entries
// become actions of `owner`. `target` must outlive `owner`.
QMenuBar* BuildMenuBar(const MenuData& menu, QWidget* owner, MenuTarget* target);

// One command action for an entry of kind kMenuItem or kMenuAccel, parented
// to owner, for callers that insert items into a built menu at run time.
QAction* MakeCommandAction(const MenuEntry& entry, QWidget* owner, MenuTarget* target);

// The action of command id among owner's menus and accelerators, or nullptr.
QAction* FindMenuAction(QWidget* owner, int id);

// Sets the enabled and checked states of menu's items from target, as when
// the menu opens (done automatically; public for tests and callers).
void UpdateMenuStates(QMenu* menu, MenuTarget* target);
