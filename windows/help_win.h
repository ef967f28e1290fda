// THelpWin: a window's help window, a text window captioned "ordix help"
// that shows one of the program's help texts. Its owner makes it hidden and
// shows it on request; closing it only hides it, without questions.
#pragma once

#include "windows/text_win.h"

// The help text of a name (PROGHELP, OXFILEH, OXLISTH, OXVIEWH, OXNFILEH,
// OXNEDITH, OXNSECTH), or an empty string for an unknown name.
QString HelpText(const char* name);

class THelpWin : public TTextWin {
    Q_OBJECT
public:
    explicit THelpWin(QWidget* parent);

    // Replaces the text by the named help text, shows the window on top.
    void showHelp(const char* name);
};
