#include "dialogs/calc_dlg.h"

#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/lunch_dlg.h"
#include "dialogs/modal.h"
#include "resources/limits.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

namespace {


constexpr int kFirstLabelShown = 14;   // N
constexpr int kCancelledByUser = -12;

}  // namespace

CalcDlgOwner::~CalcDlgOwner() = default;

TCalcDlg::TCalcDlg(QWidget* parent, CalcDlgOwner* owner) : TGenDlg(parent), owner_(owner) {
    setObjectName(QStringLiteral("CALC"));
    setWindowTitle(OxText(205));
    setModal(false);

    formula_ = new QLineEdit(OxText(810), this);
    formula_->setMaxLength(kMaxFieldChars);
    formula_->setMinimumWidth(fontMetrics().averageCharWidth() * 40);
    label_ = new QComboBox(this);
    for (int i = 0; i < kLabelCount; ++i) label_->addItem(QString(QChar('A' + i)));
    label_->setCurrentIndex(kFirstLabelShown - 1);

    create_ = new QPushButton(OxText(808), this);
    create_->setDefault(true);
    close_ = new QPushButton(OxText(44), this);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(create_, QDialogButtonBox::ActionRole);
    buttons->addButton(close_, QDialogButtonBox::RejectRole);

    auto* form = new QFormLayout;
    form->addRow(formula_);
    form->addRow(OxText(807), label_);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);

    // F12 asks about lunch here as in every window of the program.
    auto* lunch = new QAction(this);
    lunch->setShortcut(QKeySequence(Qt::Key_F12));
    connect(lunch, &QAction::triggered, this, [this] { RunLunch(this); });
    addAction(lunch);

    connect(create_, &QPushButton::clicked, this, [this] { create(); });
    connect(close_, &QPushButton::clicked, this, [this] {
        if (!busy_) hide();
    });
}

void TCalcDlg::setBusy(bool busy) {
    busy_ = busy;
    setWindowTitle(OxText(busy ? 601 : 205));
}

int TCalcDlg::create() {
    if (busy_) return 0;
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
