// TAboutDlg (ABOUTBOX): the program's name and version, the build line and
// the maker's notice in a read-only text field (211) with an "ok" button.
#pragma once

#include "dialogs/gen_dlg.h"

class TAboutDlg : public TGenDlg {
    Q_OBJECT
public:
    explicit TAboutDlg(QWidget* parent);
    static QString Caption();
    static QString Text();
};

// Shows the about box unless one is already open (that one is raised).
void ShowAbout(QWidget* owner);
