// TCalcDlg (CALC, "calculation"): the modeless Calculate dialog. A formula,
// the label of the result (A..Z, N at first) and the buttons "create" and
// "close". While a calculation runs the dialog is busy: its caption reads
// "press Q to quit" and its buttons do nothing.
#pragma once

#include <QString>

#include "dialogs/busy_dlg.h"

class QComboBox;
class QLineEdit;

// What the dialog needs from the main window.
class CalcDlgOwner {
public:
    virtual ~CalcDlgOwner();
    virtual bool LabelInUse(int label) = 0;
    // Compiles and evaluates formula into label 1..26: the result code.
    virtual int RunCalculate(int label, const QString& formula) = 0;
    virtual void ShowLabel(int label) = 0;
    virtual QWidget* MainWindow() = 0;
};

class TCalcDlg : public TBusyDlg {
    Q_OBJECT
public:
    TCalcDlg(QWidget* parent, CalcDlgOwner* owner);

    QLineEdit* formulaEdit() const { return formula_; }
    QComboBox* labelBox() const { return label_; }

    // The "create" button: 0, -12 when the overwrite question was answered
    // no, or the calculation's code (already reported).
    int create();

private:
    CalcDlgOwner* owner_;
    QLineEdit* formula_;
    QComboBox* label_;
};
