// TBatcDlg (BATCH, "batch calculation"): the modeless Batch dialog. A formula
// in A and B (preset "A^B") and two comma-separated lists of values for A
// ("2") and for B ("10,20,40,80,100"); "calculate" evaluates the formula for
// every pair and the host shows the rows in the batch text window. While a
// batch runs the dialog is busy: its caption reads "press Q to quit" and its
// buttons do nothing.
#pragma once

#include "dialogs/busy_dlg.h"
#include "resources/result.h"

class CalcModel;
class QLineEdit;
class GuiHost;

class TBatcDlg : public TBusyDlg {
    Q_OBJECT
public:
    // model and host must outlive the dialog.
    TBatcDlg(QWidget* parent, CalcModel* model, GuiHost* host);

    QLineEdit* formulaEdit() const { return formula_; }
    QLineEdit* firstList() const { return first_; }
    QLineEdit* secondList() const { return second_; }

    // "calculate": 0, or the code of the batch (already reported): 6 for an
    // empty list, a compile code, or the last pair's evaluation code.
    Result calculate();

private:
    CalcModel* model_;
    GuiHost* host_;
    QLineEdit* formula_;
    QLineEdit* first_;
    QLineEdit* second_;
};
