// The modeless dialogs of the triangle lists, all by increasing perimeter:
//   THeroDlg  (HERON, "Heronian triangles")  integer area;
//   TRatMDlg  (RATMED, "rational medians")    at least one rational median,
//             or (PERPMED, "perpendicular medians") two medians at right
//             angles, chosen by a flag at construction.
// Each has the perimeter bounds, edits 211 ("min perimeter") and 212 ("max
// perimeter"), the check boxes 271 "right triangles", 272 "isosceles
// triangles" and, in RATMED, 273 "at least two" (PERPMED shows none), and the
// buttons "list" and "close". Controls are named "ctl" + id. The dialog stays
// open after a run; while one runs its caption reads "press Q to quit" and
// its buttons do nothing.
#pragma once

#include <cstdint>

#include "dialogs/list_dlg.h"

class QCheckBox;

enum class TriangleList { heronian, rationalMedians, perpendicularMedians };

class TTriangleDlg : public TListDlg {
    Q_OBJECT
public:
    QCheckBox* rightBox() const { return right_; }
    QCheckBox* isoscelesBox() const { return isosceles_; }
    QCheckBox* atLeastTwoBox() const { return atLeastTwo_; }

    // "list": kOk or the run's code; kInconsistent for max below min and
    // kOutOfBounds outside 12..65535 are reported by the main window and
    // nothing runs.
    Result list() override;

protected:
    TTriangleDlg(QWidget* parent, GuiHost* host, TriangleList kind);

private:
    QString title() const;

    TriangleList kind_;
    QCheckBox* right_;
    QCheckBox* isosceles_;
    QCheckBox* atLeastTwo_;
};

class THeroDlg : public TTriangleDlg {
    Q_OBJECT
public:
    THeroDlg(QWidget* parent, GuiHost* host);
};

class TRatMDlg : public TTriangleDlg {
    Q_OBJECT
public:
    // perpendicular: the PERPMED dialog, whose caption after a run is the
    // list's summary.
    TRatMDlg(QWidget* parent, GuiHost* host, bool perpendicular);
};
