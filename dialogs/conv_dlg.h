// TConvDlg (CONVERT, "base conversion"): the modeless dialog that rewrites a
// number from one base into another. A row of radio buttons "2" ... "16"
// for the input's base (2 at first), the input (preset "100001", at most
// 3000 characters), "convert" and "close", a second row for the output's
// base (10 at first) and the output (preset "33").
#pragma once

#include "dialogs/busy_dlg.h"
#include "resources/result.h"

class CalcContext;
class QButtonGroup;
class QLineEdit;
class GuiHost;

constexpr int kConvInputChars = 3000;
constexpr int kFirstBase = 2;
constexpr int kLastBase = 16;

class TConvDlg : public TBusyDlg {
    Q_OBJECT
public:
    // ctx and host must outlive the dialog.
    TConvDlg(QWidget* parent, CalcContext* ctx, GuiHost* host);

    QLineEdit* inputEdit() const { return input_; }
    QLineEdit* outputEdit() const { return output_; }
    int inputBase() const;
    int outputBase() const;

    // "convert": 0 with the digits in the output, or the code (already
    // reported, the output emptied): 1 for an invalid digit, 3, -1.
    Result convert();

private:
    CalcContext* ctx_;
    GuiHost* host_;
    QButtonGroup* from_;
    QButtonGroup* to_;
    QLineEdit* input_;
    QLineEdit* output_;
};
