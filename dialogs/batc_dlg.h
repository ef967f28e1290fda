// TBatcDlg (BATCH, "batch calculation"): the modeless Batch dialog. A formula
// in A and B (preset "A^B") and two comma-separated lists of values for A
// ("2") and for B ("10,20,40,80,100"); "calculate" evaluates the formula for
// every pair and the host shows the rows in the batch text window. While a
// batch runs the dialog is busy: its caption reads "press Q to quit" and its
// buttons do nothing.
#pragma once

#include "dialogs/gen_dlg.h"

class CalcModel;
class QLineEdit;
class RunHost;

class TBatcDlg : public TGenDlg {
    Q_OBJECT
public:
    // model and host must outlive the dialog.
    TBatcDlg(QWidget* parent, CalcModel* model, RunHost* host);

    QLineEdit* formulaEdit() const { return formula_; }
    QLineEdit* firstList() const { return first_; }
    QLineEdit* secondList() const { return second_; }
    bool busy() const { return busy_; }

    // "calculate": 0, or the code of the batch (already reported): 6 for an
    // empty list, a compile code, or the last pair's evaluation code.
    int calculate();

public slots:
    void reject() override;

private:
    void setBusy(bool busy);

    CalcModel* model_;
    RunHost* host_;
    QLineEdit* formula_;
    QLineEdit* first_;
    QLineEdit* second_;
    bool busy_ = false;
};
