// TBusyDlg: the base of the modeless calculation dialogs (Calculate, Batch,
// Hailstone, Conversion). They share the button row (an action button that is
// the default, then "close"), F12 for lunch, and a busy flag: while a run is
// under way the caption reads "press Q to quit" and neither the action nor
// closing does anything.
#pragma once

#include <functional>

#include "dialogs/gen_dlg.h"

class QComboBox;
class QDialogButtonBox;
class QPushButton;

class TBusyDlg : public TGenDlg {
    Q_OBJECT
public:
    bool busy() const { return busy_; }
    // The caption the dialog has when idle (while busy it reads
    // "press Q to quit"): the name of what it runs.
    QString idleTitle() const;

public slots:
    void reject() override;  // refused while busy

protected:
    // resourceName names the dialog for tests; titleId is its idle caption.
    TBusyDlg(QWidget* parent, const char* resourceName, int titleId);

    // The button row: the button with text actionTextId (object name
    // actionName) calls onAction unless the dialog is busy; "close" rejects.
    QDialogButtonBox* makeButtons(int actionTextId, const char* actionName,
                                  std::function<void()> onAction);
    void setBusy(bool busy);

private:
    int titleId_;
    bool busy_ = false;
};

// A box of the labels A..Z with label (1..26) selected.
QComboBox* LabelComboBox(QWidget* parent, int label);
