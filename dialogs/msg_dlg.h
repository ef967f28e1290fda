// TMsgDlg: the program's message boxes OKMBOX ("ok"), YNMBOX ("&yes", "&no")
// and YNCMBOX ("&yes", "&no", "&cancel"). exec() answers kMbOk, kMbYes, kMbNo
// or kMbCancel (Escape and closing the box count as cancel, as in every kind).
#pragma once

#include "dialogs/gen_dlg.h"

class TMsgDlg : public TGenDlg {
    Q_OBJECT
public:
    TMsgDlg(QWidget* parent, const QString& caption, const QString& text, int kind);

public slots:
    void reject() override;
};
