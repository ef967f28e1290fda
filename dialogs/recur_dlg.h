// TRecurDlg (RECUR, "recursion"): the modeless dialog that defines the
// recursion. An edit field, the radio buttons "recursion" and "condition"
// that say which list an entry goes to, "enter", delete "one" and "all",
// "help", "close", and the list box of the model's rows: steps newest first,
// then conditions, each shown after "0 < ". The steps themselves run from the
// Recursion menu (dialogs/recur_run.h).
#pragma once

#include "dialogs/gen_dlg.h"
#include "resources/result.h"

class CalcModel;
class GuiHost;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;

class TRecurDlg : public TGenDlg {
    Q_OBJECT
public:
    // model and host must outlive the dialog; the host shows the help.
    TRecurDlg(QWidget* parent, CalcModel* model, GuiHost* host);

    QLineEdit* entryEdit() const { return edit_; }
    QRadioButton* stepButton() const { return step_; }
    QRadioButton* conditionButton() const { return condition_; }
    QListWidget* listBox() const { return list_; }

    // "enter": the edit text into the list the radio buttons choose. kOk
    // (also for an empty text, which does nothing) or the code, reported
    // twice: as itself and then as "cannot understand".
    Result enter();
    // delete "one": the selected row; false when none is selected.
    [[nodiscard]] bool deleteSelected();
    // delete "all".
    void deleteAll();
    // "help": the file help in a help window of the dialog, captioned "recursion".
    void showHelp();
    // Fills the list box from the model again.
    void refill();

protected:
    void showEvent(QShowEvent* e) override;

private:
    CalcModel* model_;
    GuiHost* host_;
    QLineEdit* edit_;
    QRadioButton* step_;
    QRadioButton* condition_;
    QListWidget* list_;
};
