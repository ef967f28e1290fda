#include "dialogs/batc_dlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "calc/model.h"
#include "dialogs/gui_host.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/limits.h"
#include "resources/string_ids.h"

namespace {

constexpr int kFieldWidthChars = 40;

QLineEdit* Field(QWidget* parent, int presetId) {
    auto* e = new QLineEdit(OxText(presetId), parent);
    e->setMaxLength(kMaxFieldChars);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kFieldWidthChars);
    return e;
}

}  // namespace

TBatcDlg::TBatcDlg(QWidget* parent, CalcModel* model, GuiHost* host)
    : TBusyDlg(parent, "BATCH", kStrBatch), model_(model), host_(host) {
    formula_ = Field(this, kStrBatchFormula);
    first_ = Field(this, kStrBatchFirst);
    second_ = Field(this, kStrBatchSecond);

    auto* form = new QFormLayout;
    form->addRow(OxText(kStrCalculation), formula_);
    form->addRow(OxText(kStrBaseA), first_);
    form->addRow(OxText(kStrBaseB), second_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(makeButtons(kStrCalculate, "calculate",
                                  [this] { (void)calculate(); }));  // reported already
}

Result TBatcDlg::calculate() {
    if (busy()) return Result::kOk;
    const std::string formula = formula_->text().toStdString();
    const std::string first = first_->text().toStdString();
    const std::string second = second_->text().toStdString();
    setBusy(true);
    host_->MainWindow()->activateWindow();
    BatchResult out;
    const Result code =
        host_->RunWatched([&] { return model_->Batch(formula, first, second, &out); });
    if (out.shown)
        host_->ShowBatchOutput(QString::fromStdString(out.title), QString::fromStdString(out.text));
    setBusy(false);
    if (!Ok(code)) ShowError(this, code);
    return code;
}
