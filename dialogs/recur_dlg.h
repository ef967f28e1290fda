// TRecurDlg (RECUR, "recursion"): the modeless dialog that defines the
// recursion. An edit field, the radio buttons "recursion" and "condition"
// that say which list an entry goes to, "enter", delete "one" and "all",
// "help", "close", and the list box of the model's rows: steps newest first,
// then conditions, each shown after "0 < ". The steps themselves run from the
// Recursion menu (dialogs/recur_run.h).
#pragma once

#include "dialogs/gen_dlg.h"

class CalcModel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QRadioButton;
class THelpWin;

class TRecurDlg : public TGenDlg {
    Q_OBJECT
public:
    // model must outlive the dialog.
    TRecurDlg(QWidget* parent, CalcModel* model);

    QLineEdit* entryEdit() const { return edit_; }
    QRadioButton* stepButton() const { return step_; }
    QRadioButton* conditionButton() const { return condition_; }
    QListWidget* listBox() const { return list_; }
    THelpWin* helpWindow() const { return help_; }

    // "enter": the edit text into the list the radio buttons choose. 0 (also
    // for an empty text, which does nothing) or the code, reported twice: as
    // itself and then as "cannot understand".
    int enter();
    // delete "one": the selected row; false when none is selected.
    bool deleteSelected();
    // delete "all".
    void deleteAll();
    void showHelp();
    // Fills the list box from the model again.
    void refill();

protected:
    void showEvent(QShowEvent* e) override;

private:
    CalcModel* model_;
    QLineEdit* edit_;
    QRadioButton* step_;
    QRadioButton* condition_;
    QListWidget* list_;
    THelpWin* help_ = nullptr;
};
