// TCalcDlg (CALC, "calculation"): the modeless Calculate dialog. A formula,
// the label of the result (A..Z, N at first) and the buttons "create" and
// "close". While a calculation runs the dialog is busy: its caption reads
// "press Q to quit" and its buttons do nothing.
#pragma once

#include <QString>

#include "dialogs/busy_dlg.h"
#include "resources/result.h"

class GuiHost;
class QComboBox;
class QLineEdit;

class TCalcDlg : public TBusyDlg {
    Q_OBJECT
public:
    TCalcDlg(QWidget* parent, GuiHost* host);

    QLineEdit* formulaEdit() const { return formula_; }
    QComboBox* labelBox() const { return label_; }

    // The "create" button: kOk, kCancelled when the overwrite question was
    // answered no, or the calculation's code (already reported).
    Result create();

private:
    GuiHost* host_;
    QLineEdit* formula_;
    QComboBox* label_;
};
