// TPrnSpxDlg (PRNSPX2, "print format (cm)"): a window's print format in
// centimetres. Controls are named "ctl" + id: radio 251 and edit 211 (width),
// radio 252 and edit 212 (x unit), edits 213 and 214 (the offsets of the
// upper left corner), check boxes 271 "frame image" and 272 "color printer".
//
// What shows depends on the format's dialog mode: the radios, edit 212 and
// its label only in mode 2; "frame image" from mode 1 on; "color printer",
// edit 211 and its label in modes 1 and 2. Text windows use mode 0 and so
// see the two offsets alone.
//
// Ok stores the lengths only when width and offsets are at least a quarter
// inch and the x unit is positive; otherwise it says "out of bounds" and
// the dialog stays. Cancel leaves the format as it was.
#pragma once

#include "dialogs/gen_dlg.h"
#include "io/page_layout.h"

class QCheckBox;
class QLineEdit;
class QRadioButton;

class TPrnSpxDlg : public TGenDlg {
    Q_OBJECT
public:
    TPrnSpxDlg(QWidget* parent, PrintFormat* format);

    void accept() override;

private:
    PrintFormat* format_;
    QRadioButton* widthChoice_;
    QRadioButton* unitChoice_;
    QLineEdit* width_;
    QLineEdit* unit_;
    QLineEdit* hori_;
    QLineEdit* vert_;
    QCheckBox* frame_;
    QCheckBox* color_;
};

// Shows the dialog for *format through the modal seam; true when accepted.
[[nodiscard]] bool RunOffsetsDialog(QWidget* owner, PrintFormat* format);
