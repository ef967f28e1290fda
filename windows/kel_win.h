// TKelWin: the base of every window of the program. It builds its menu bar
// and keys from menu data, routes their commands to command(), and answers
// F12 with the lunch dialog whether or not its menu lists it.
// TFontWin adds the window's font table (windows/font_table.h).
#pragma once

#include <QMainWindow>

#include "io/logfont.h"
#include "resources/menu_data.h"
#include "windows/font_table.h"
#include "windows/menu_builder.h"

class TKelWin : public QMainWindow, public MenuTarget {
    Q_OBJECT
public:
    explicit TKelWin(QWidget* parent);

    // Handles the commands every window shares (lunch); subclasses pass on
    // the ids they do not handle.
    void command(int id) override;

protected:
    void installMenu(const MenuData& menu);
};

class TFontWin : public TKelWin {
    Q_OBJECT
public:
    explicit TFontWin(QWidget* parent);

    LogFont fontEntry(int index) const;
    void setFontEntry(int index, const LogFont& f);
    QFont tableFont(int index) const;

private:
    LogFont fonts_[kFontTableSize];
};
