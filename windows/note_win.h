// TNoteWin: the notebook of a number window (menu NOTEMENU). Its caption is
// "notebook [" + the number's file name + "]". The number window writes its
// text into the number file; closing the notebook only hides it.
#pragma once

#include "windows/pre_text_win.h"

class TNoteWin : public TPreTextWin {
    Q_OBJECT
public:
    TNoteWin(QWidget* parent, const QString& numberFileName, const QString& text, int fontIndex);

    // Renames the number the notebook belongs to; the caption follows.
    void setNumberFileName(const QString& name);

    static QString CaptionFor(const QString& numberFileName);
};
