#include "dialogs/hail_dlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "calc/model.h"
#include "dialogs/gui_host.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/limits.h"
#include "resources/string_ids.h"

namespace {

constexpr int kSeedAtStart = 8;      // H
constexpr int kMaximumAtStart = 13;  // M
constexpr int kResultWidthChars = 12;

QLineEdit* ResultField(QWidget* parent, int textId) {
    auto* e = new QLineEdit(OxText(textId), parent);
    e->setReadOnly(true);
    e->setFocusPolicy(Qt::NoFocus);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kResultWidthChars);
    return e;
}

}  // namespace

THailDlg::THailDlg(QWidget* parent, CalcModel* model, GuiHost* host)
    : TBusyDlg(parent, "COLLATZ", kStrCollatz), model_(model), host_(host) {
    seed_ = LabelComboBox(this, kSeedAtStart);
    maximum_ = LabelComboBox(this, kMaximumAtStart);
    steps_ = ResultField(this, kStrStepsUnknown);
    stepsToMaximum_ = ResultField(this, kStrMaximumUnknown);

    auto* grid = new QGridLayout;
    grid->addWidget(seed_, 0, 0);
    grid->addWidget(new QLabel(OxText(kStrTermZero), this), 0, 1);
    grid->addWidget(new QLabel(OxText(kStrOneIsTerm), this), 1, 0, Qt::AlignRight);
    grid->addWidget(steps_, 1, 1);
    grid->addWidget(maximum_, 2, 0);
    grid->addWidget(new QLabel(OxText(kStrIsMaximum), this), 2, 1);
    grid->addWidget(new QLabel(OxText(kStrMaximumIsTerm), this), 3, 0, Qt::AlignRight);
    grid->addWidget(stepsToMaximum_, 3, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(makeButtons(kStrCalculate, "calculate",
                                  [this] { (void)calculate(); }));  // reported already
}

Result THailDlg::calculate() {
    if (busy()) return Result::kOk;
    const int seed = seed_->currentIndex() + 1;
    const int maximum = maximum_->currentIndex() + 1;
    setBusy(true);
    host_->MainWindow()->activateWindow();
    HailResult result;
    const Result code =
        host_->RunWatched([&] { return model_->Hailstone(seed, maximum, &result); });
    setBusy(false);
    if (!Ok(code)) {
        ShowError(this, code);
        return code;
    }
    steps_->setText(QString::number(result.steps));
    stepsToMaximum_->setText(QString::number(result.stepsToMaximum));
    return Result::kOk;
}
