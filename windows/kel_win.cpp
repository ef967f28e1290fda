#include "windows/kel_win.h"

#include <QAction>
#include <QMenuBar>

#include "dialogs/lunch_dlg.h"
#include "windows/font_map.h"

TKelWin::TKelWin(QWidget* parent) : QMainWindow(parent) {}

void TKelWin::command(int id) {
    if (id == kTxtLunch) RunLunch(this);
}

void TKelWin::installMenu(const MenuData& menu) {
    setMenuBar(BuildMenuBar(menu, this, this));
    if (!FindMenuAction(this, kTxtLunch)) {
        const MenuEntry lunch{kMenuAccel, kTxtLunch, nullptr, "F12", 0};
        addAction(MakeCommandAction(lunch, this, this));
    }
}

TFontWin::TFontWin(QWidget* parent) : TKelWin(parent) {
    const int dpi = logicalDpiY();
    for (int i = 0; i < kFontTableSize; ++i) fonts_[i] = FontTableEntry(i, dpi);
}

LogFont TFontWin::fontEntry(int index) const {
    return fonts_[index >= 0 && index < kFontTableSize ? index : 0];
}

void TFontWin::setFontEntry(int index, const LogFont& f) {
    if (index >= 0 && index < kFontTableSize) fonts_[index] = f;
}

QFont TFontWin::tableFont(int index) const { return FontFromLogFont(fontEntry(index)); }
