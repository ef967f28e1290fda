// THailDlg (COLLATZ, captioned "Collatz calculation"): the modeless
// hailstone dialog. The seed label (H at first) and the label that receives
// the largest term (M at first), each from A..Z; "calculate" runs the
// sequence from the seed down to 1 and shows how many steps that took and
// after how many steps the largest term came. While it runs the caption
// reads "press Q to quit" and the buttons do nothing.
#pragma once

#include "dialogs/busy_dlg.h"
#include "resources/result.h"

class CalcModel;
class QComboBox;
class QLineEdit;
class GuiHost;

class THailDlg : public TBusyDlg {
    Q_OBJECT
public:
    // model and host must outlive the dialog.
    THailDlg(QWidget* parent, CalcModel* model, GuiHost* host);

    QComboBox* seedBox() const { return seed_; }
    QComboBox* maximumBox() const { return maximum_; }
    QLineEdit* stepsField() const { return steps_; }
    QLineEdit* stepsToMaximumField() const { return stepsToMaximum_; }

    // "calculate": 0, or the code (already reported): 2 for a seed label
    // without a value, 6 for the same label twice, 14 for a seed below 1,
    // -1 when stopped, 3. The result fields change only on 0.
    Result calculate();

private:
    CalcModel* model_;
    GuiHost* host_;
    QComboBox* seed_;
    QComboBox* maximum_;
    QLineEdit* steps_;
    QLineEdit* stepsToMaximum_;
};
