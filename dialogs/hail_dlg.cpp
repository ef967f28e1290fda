#include "dialogs/hail_dlg.h"

#include <QDialogButtonBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "calc/model.h"
#include "dialogs/modal.h"
#include "dialogs/run_host.h"
#include "resources/limits.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

namespace {


constexpr int kTitleString = 275;   // "Collatz calculation"
constexpr int kSeedAtStart = 8;     // H
constexpr int kMaximumAtStart = 13; // M
constexpr int kResultWidthChars = 12;

QLineEdit* ResultField(QWidget* parent, int textId) {
    auto* e = new QLineEdit(OxText(textId), parent);
    e->setReadOnly(true);
    e->setFocusPolicy(Qt::NoFocus);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kResultWidthChars);
    return e;
}

}  // namespace

THailDlg::THailDlg(QWidget* parent, CalcModel* model, RunHost* host)
    : TBusyDlg(parent, "COLLATZ", kTitleString), model_(model), host_(host) {
    seed_ = LabelComboBox(this, kSeedAtStart);
    maximum_ = LabelComboBox(this, kMaximumAtStart);
    steps_ = ResultField(this, 910);
    stepsToMaximum_ = ResultField(this, 911);

    auto* grid = new QGridLayout;
    grid->addWidget(seed_, 0, 0);
    grid->addWidget(new QLabel(OxText(906), this), 0, 1);
    grid->addWidget(new QLabel(OxText(907), this), 1, 0, Qt::AlignRight);
    grid->addWidget(steps_, 1, 1);
    grid->addWidget(maximum_, 2, 0);
    grid->addWidget(new QLabel(OxText(908), this), 2, 1);
    grid->addWidget(new QLabel(OxText(909), this), 3, 0, Qt::AlignRight);
    grid->addWidget(stepsToMaximum_, 3, 1);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(makeButtons(45, "calculate", [this] { calculate(); }));
}

int THailDlg::calculate() {
    if (busy()) return 0;
    const int seed = seed_->currentIndex() + 1;
    const int maximum = maximum_->currentIndex() + 1;
    setBusy(true);
    host_->MainWindow()->activateWindow();
    HailResult result;
    const int code =
        host_->RunWatched([&] { return model_->Hailstone(seed, maximum, &result); });
    setBusy(false);
    if (code != 0) {
        ShowError(this, code);
        return code;
    }
    steps_->setText(QString::number(result.steps));
    stepsToMaximum_->setText(QString::number(result.stepsToMaximum));
    return 0;
}
