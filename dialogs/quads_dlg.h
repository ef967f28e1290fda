// TQuadDlg (QUADS, "Pythagorean quadruples"): the modeless dialog of the
// quadruples a^2 + b^2 + c^2 = d^2 with d between two bounds. Edits 211
// ("min length") and 212 ("max length"); radio buttons 251 "allow repeated
// entries", 252 "allow no repetitions", 253 "require a repetition" and 254
// "form lattice cubes"; check boxes 272 "display a < b < c", 271 "list only
// primitive examples", 273 "allow zeros" and 274 "allow duplicates"; buttons
// "list" and "close". Controls are named "ctl" + id.
//
// The fourth radio switches the dialog to the lattice cubes: the min edit,
// its labels and "allow zeros" hide, "allow duplicates" shows and the max
// edit is labelled "length"; "list" then lists the lattice cubes with edges
// up to that length.
#pragma once

#include "dialogs/list_dlg.h"

class QButtonGroup;
class QCheckBox;
class QLabel;

class TQuadDlg : public TListDlg {
    Q_OBJECT
public:
    TQuadDlg(QWidget* parent, GuiHost* host);

    QLabel* maxLabel() const { return maxLabel_; }
    QCheckBox* ascendingBox() const { return ascending_; }
    QCheckBox* zerosBox() const { return zeros_; }
    QCheckBox* duplicatesBox() const { return duplicates_; }
    // 251..254.
    int choice() const;
    void choose(int radioId);
    bool cubes() const { return choice() == 254; }

    // "list": kOk or the run's code; kInconsistent (max below min) and
    // kOutOfBounds (a bound below 3 or above 65535, a cube length outside
    // 1..65535) are reported by the main window and nothing runs.
    Result list() override;

private:
    void showChoice();

    QLabel* minLabel_;
    QLabel* minAdvice_;
    QLabel* maxLabel_;
    QButtonGroup* kind_;
    QCheckBox* ascending_;
    QCheckBox* primitive_;
    QCheckBox* zeros_;
    QCheckBox* duplicates_;
};
