#include "dialogs/calc_dlg.h"

#include <QDialogButtonBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "dialogs/modal.h"
#include "resources/limits.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

namespace {


constexpr int kFirstLabelShown = 14;   // N
constexpr int kCancelledByUser = -12;

}  // namespace

CalcDlgOwner::~CalcDlgOwner() = default;

TCalcDlg::TCalcDlg(QWidget* parent, CalcDlgOwner* owner)
    : TBusyDlg(parent, "CALC", 205), owner_(owner) {
    formula_ = new QLineEdit(OxText(810), this);
    formula_->setMaxLength(kMaxFieldChars);
    formula_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    label_ = LabelComboBox(this, kFirstLabelShown);

    auto* form = new QFormLayout;
    form->addRow(formula_);
    form->addRow(OxText(807), label_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(makeButtons(808, "create", [this] { create(); }));
}

int TCalcDlg::create() {
    if (busy()) return 0;
    const int label = label_->currentIndex() + 1;
    if (owner_->LabelInUse(label) &&
        AskMessage(this, OxText(2), OxText(13), kMsgYesNo) != kMbYes)
        return kCancelledByUser;
    setBusy(true);
    if (QWidget* w = owner_->MainWindow()) w->activateWindow();
    const int code = owner_->RunCalculate(label, formula_->text());
    setBusy(false);
    if (code == 0)
        owner_->ShowLabel(label);
    else
        ShowError(this, code);
    return code;
}
