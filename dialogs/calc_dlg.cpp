#include "dialogs/calc_dlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "dialogs/gui_host.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/limits.h"
#include "resources/string_ids.h"

namespace {

constexpr int kFirstLabelShown = 14;  // N

}  // namespace

TCalcDlg::TCalcDlg(QWidget* parent, GuiHost* host)
    : TBusyDlg(parent, "CALC", kStrCalculation), host_(host) {
    formula_ = new QLineEdit(OxText(kStrFormulaPreset), this);
    formula_->setMaxLength(kMaxFieldChars);
    formula_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    label_ = LabelComboBox(this, kFirstLabelShown);

    auto* form = new QFormLayout;
    form->addRow(formula_);
    form->addRow(OxText(kStrNameResult), label_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(
        makeButtons(kStrCreate, "create", [this] { (void)create(); }));  // reported already
}

Result TCalcDlg::create() {
    if (busy()) return Result::kOk;
    const int label = label_->currentIndex() + 1;
    if (host_->LabelInUse(label) &&
        AskMessage(this, OxText(kStrCareful), OxText(kStrOverwrite), kMsgYesNo) != kMbYes)
        return Result::kCancelled;
    setBusy(true);
    host_->MainWindow()->activateWindow();
    const Result code = host_->RunCalculate(label, formula_->text());
    setBusy(false);
    if (Ok(code))
        host_->ShowLabel(label);
    else
        ShowError(this, code);
    return code;
}
