#include "windows/note_win.h"

#include "resources/strings.h"
#include "windows/ui_text.h"

TNoteWin::TNoteWin(QWidget* parent, const QString& numberFileName, const QString& text,
                   int fontIndex)
    : TPreTextWin(parent, CaptionFor(numberFileName), numberFileName, text, fontIndex,
                  &kNoteMenu) {}

QString TNoteWin::CaptionFor(const QString& numberFileName) {
    return OxText(704) + " [" + numberFileName + "]";
}

void TNoteWin::setNumberFileName(const QString& name) {
    setFileName(name);
    setWindowTitle(CaptionFor(name));
}

void TNoteWin::clearNotebook() {
    replaceText(QString());
    setWindowTitle(CaptionFor(fileName()));
}
