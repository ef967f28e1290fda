#include "dialogs/batc_dlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "calc/model.h"
#include "dialogs/modal.h"
#include "dialogs/run_host.h"
#include "resources/limits.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

namespace {


constexpr int kTitleString = 278;     // "batch calculation"
constexpr int kBusyString = 601;      // "press Q to quit"
constexpr int kFieldWidthChars = 40;

QLineEdit* Field(QWidget* parent, int presetId) {
    auto* e = new QLineEdit(OxText(presetId), parent);
    e->setMaxLength(kMaxFieldChars);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kFieldWidthChars);
    return e;
}

}  // namespace

TBatcDlg::TBatcDlg(QWidget* parent, CalcModel* model, RunHost* host)
    : TBusyDlg(parent, "BATCH", kTitleString), model_(model), host_(host) {
    formula_ = Field(this, 916);
    first_ = Field(this, 917);
    second_ = Field(this, 918);

    auto* form = new QFormLayout;
    form->addRow(OxText(205), formula_);
    form->addRow(OxText(914), first_);
    form->addRow(OxText(915), second_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(makeButtons(45, "calculate", [this] { calculate(); }));
}

int TBatcDlg::calculate() {
    if (busy()) return 0;
    const std::string formula = formula_->text().toStdString();
    const std::string first = first_->text().toStdString();
    const std::string second = second_->text().toStdString();
    setBusy(true);
    host_->MainWindow()->activateWindow();
    BatchResult out;
    const int code =
        host_->RunWatched([&] { return model_->Batch(formula, first, second, &out); });
    if (out.shown)
        host_->ShowBatchOutput(QString::fromStdString(out.title), QString::fromStdString(out.text));
    setBusy(false);
    if (code != 0) ShowError(this, code);
    return code;
}
