#include "dialogs/batc_dlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "calc/model.h"
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "dialogs/run_host.h"
#include "resources/limits.h"
#include "resources/strings.h"

namespace {

QString S(int id) { return QString::fromUtf8(OxString(id)); }

constexpr int kTitleString = 278;     // "batch calculation"
constexpr int kBusyString = 601;      // "press Q to quit"
constexpr int kFieldWidthChars = 40;

QLineEdit* Field(QWidget* parent, int presetId) {
    auto* e = new QLineEdit(S(presetId), parent);
    e->setMaxLength(kMaxFieldChars);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kFieldWidthChars);
    return e;
}

}  // namespace

TBatcDlg::TBatcDlg(QWidget* parent, CalcModel* model, RunHost* host)
    : TGenDlg(parent), model_(model), host_(host) {
    setObjectName(QStringLiteral("BATCH"));
    setWindowTitle(S(kTitleString));
    setModal(false);

    formula_ = Field(this, 916);
    first_ = Field(this, 917);
    second_ = Field(this, 918);

    auto* calculateButton = new QPushButton(S(45), this);
    calculateButton->setObjectName(QStringLiteral("calculate"));
    calculateButton->setDefault(true);
    auto* closeButton = new QPushButton(S(44), this);
    closeButton->setObjectName(QStringLiteral("close"));
    closeButton->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(calculateButton, QDialogButtonBox::ActionRole);
    buttons->addButton(closeButton, QDialogButtonBox::RejectRole);

    auto* form = new QFormLayout;
    form->addRow(S(205), formula_);
    form->addRow(S(914), first_);
    form->addRow(S(915), second_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);

    AddLunchKey(this);
    connect(calculateButton, &QPushButton::clicked, this, [this] { calculate(); });
    connect(closeButton, &QPushButton::clicked, this, &TBatcDlg::reject);
}

void TBatcDlg::setBusy(bool busy) {
    busy_ = busy;
    setWindowTitle(S(busy ? kBusyString : kTitleString));
}

void TBatcDlg::reject() {
    if (!busy_) TGenDlg::reject();
}

int TBatcDlg::calculate() {
    if (busy_) return 0;
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
