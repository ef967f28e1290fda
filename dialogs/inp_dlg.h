// The one-input dialog (ONEINPUT: prompt 231, edit 211) and the two-input
// dialog (TWOINPUT: labels 231 and 232, edits 211 and 212). Controls are named
// "ctl" + id so that tests and callers can find them.
#pragma once

#include "dialogs/gen_dlg.h"

class QLineEdit;
class QPushButton;

class TInpDlg : public TGenDlg {
    Q_OBJECT
public:
    // The edit accepts maxChars characters and starts with text selected.
    TInpDlg(QWidget* parent, const QString& caption, const QString& prompt, const QString& text,
            int maxChars);
    QString text() const;

private:
    QLineEdit* edit_;
};

class TInp2Dlg : public TGenDlg {
    Q_OBJECT
public:
    // Empty button texts give "ok" and "cancel".
    TInp2Dlg(QWidget* parent, const QString& caption, const QString& label1, const QString& label2,
             const QString& text1, int max1, const QString& text2, int max2, const QString& okText,
             const QString& cancelText);
    QString text1() const;
    QString text2() const;

private:
    QLineEdit* edit1_;
    QLineEdit* edit2_;
};
