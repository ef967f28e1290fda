#include "windows/note_win.h"

#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

TNoteWin::TNoteWin(QWidget* parent, const QString& numberFileName, const QString& text,
                   int fontIndex)
    : TPreTextWin(parent, CaptionFor(numberFileName), numberFileName, text, fontIndex, &kNoteMenu) {
}

QString TNoteWin::CaptionFor(const QString& numberFileName) {
    return OxText(kStrNotebook) + " [" + numberFileName + "]";
}

void TNoteWin::setNumberFileName(const QString& name) {
    setFileName(name);
    setWindowTitle(CaptionFor(name));
}
