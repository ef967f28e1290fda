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

#include "dialogs/gen_dlg.h"
#include "resources/result.h"

class GuiHost;
class QCheckBox;
class QLineEdit;

enum class TriangleList { heronian, rationalMedians, perpendicularMedians };

class TTriangleDlg : public TGenDlg {
    Q_OBJECT
public:
    QLineEdit* minEdit() const { return min_; }
    QLineEdit* maxEdit() const { return max_; }
    QCheckBox* rightBox() const { return right_; }
    QCheckBox* isoscelesBox() const { return isosceles_; }
    QCheckBox* atLeastTwoBox() const { return atLeastTwo_; }
    bool busy() const { return busy_; }

    // "list": 0 or the run's code; 6 ("inconsistent data") for max below
    // min and 17 ("out of bounds") outside 12..65535 are reported by the
    // main window and nothing runs.
    Result list();

public slots:
    void reject() override;

protected:
    TTriangleDlg(QWidget* parent, GuiHost* host, TriangleList kind);

private:
    QString title() const;

    GuiHost* host_;
    TriangleList kind_;
    QLineEdit* min_;
    QLineEdit* max_;
    QCheckBox* right_;
    QCheckBox* isosceles_;
    QCheckBox* atLeastTwo_;
    bool busy_ = false;
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
