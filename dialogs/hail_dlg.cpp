#include "dialogs/hail_dlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
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

constexpr int kTitleString = 275;   // "Collatz calculation"
constexpr int kBusyString = 601;    // "press Q to quit"
constexpr int kSeedAtStart = 8;     // H
constexpr int kMaximumAtStart = 13; // M
constexpr int kResultWidthChars = 12;

QComboBox* LabelBox(QWidget* parent, int label) {
    auto* box = new QComboBox(parent);
    for (int i = 1; i <= kLabelCount; ++i) box->addItem(QString(QChar(LabelLetter(i))));
    box->setCurrentIndex(label - 1);
    return box;
}

QLineEdit* ResultField(QWidget* parent, int textId) {
    auto* e = new QLineEdit(S(textId), parent);
    e->setReadOnly(true);
    e->setFocusPolicy(Qt::NoFocus);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kResultWidthChars);
    return e;
}

}  // namespace

THailDlg::THailDlg(QWidget* parent, CalcModel* model, RunHost* host)
    : TGenDlg(parent), model_(model), host_(host) {
    setObjectName(QStringLiteral("COLLATZ"));
    setWindowTitle(S(kTitleString));
    setModal(false);

    seed_ = LabelBox(this, kSeedAtStart);
    maximum_ = LabelBox(this, kMaximumAtStart);
    steps_ = ResultField(this, 910);
    stepsToMaximum_ = ResultField(this, 911);

    auto* grid = new QGridLayout;
    grid->addWidget(seed_, 0, 0);
    grid->addWidget(new QLabel(S(906), this), 0, 1);
    grid->addWidget(new QLabel(S(907), this), 1, 0, Qt::AlignRight);
    grid->addWidget(steps_, 1, 1);
    grid->addWidget(maximum_, 2, 0);
    grid->addWidget(new QLabel(S(908), this), 2, 1);
    grid->addWidget(new QLabel(S(909), this), 3, 0, Qt::AlignRight);
    grid->addWidget(stepsToMaximum_, 3, 1);

    auto* calculateButton = new QPushButton(S(45), this);
    calculateButton->setObjectName(QStringLiteral("calculate"));
    calculateButton->setDefault(true);
    auto* closeButton = new QPushButton(S(44), this);
    closeButton->setObjectName(QStringLiteral("close"));
    closeButton->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(calculateButton, QDialogButtonBox::ActionRole);
    buttons->addButton(closeButton, QDialogButtonBox::RejectRole);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(buttons);

    AddLunchKey(this);
    connect(calculateButton, &QPushButton::clicked, this, [this] { calculate(); });
    connect(closeButton, &QPushButton::clicked, this, &THailDlg::reject);
}

void THailDlg::setBusy(bool busy) {
    busy_ = busy;
    setWindowTitle(S(busy ? kBusyString : kTitleString));
}

void THailDlg::reject() {
    if (!busy_) TGenDlg::reject();
}

int THailDlg::calculate() {
    if (busy_) return 0;
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
