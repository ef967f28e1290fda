#include "dialogs/recur_dlg.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "calc/model.h"
#include "dialogs/gui_host.h"
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/limits.h"
#include "resources/string_ids.h"

namespace {

constexpr int kEditWidthChars = 36;
constexpr int kListRowsShown = 8;

QPushButton* Button(QWidget* parent, int textId, const char* name) {
    auto* b = new QPushButton(OxText(textId), parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

}  // namespace

TRecurDlg::TRecurDlg(QWidget* parent, CalcModel* model, GuiHost* host)
    : TGenDlg(parent), model_(model), host_(host) {
    setObjectName(QStringLiteral("RECUR"));
    setWindowTitle(OxText(kStrRecursion));
    setModal(false);

    edit_ = new QLineEdit(this);
    edit_->setMaxLength(kMaxFieldChars);
    edit_->setMinimumWidth(fontMetrics().averageCharWidth() * kEditWidthChars);
    step_ = new QRadioButton(OxText(kStrRecursion), this);
    condition_ = new QRadioButton(OxText(kStrCondition), this);
    step_->setChecked(true);
    list_ = new QListWidget(this);
    list_->setMinimumHeight(list_->fontMetrics().height() * kListRowsShown);

    QPushButton* enterButton = Button(this, kStrEnter, "enter");
    enterButton->setDefault(true);  // Return in the edit field enters the text
    QPushButton* one = Button(this, kStrDeleteOne, "one");
    QPushButton* all = Button(this, kStrDeleteAll, "all");
    QPushButton* help = Button(this, kStrHelp, "help");
    QPushButton* close = Button(this, kStrClose, "close");

    auto* radios = new QHBoxLayout;
    radios->addWidget(step_);
    radios->addWidget(condition_);
    radios->addStretch();

    auto* deleteBox = new QGroupBox(OxText(kStrDelete), this);
    auto* deleteLayout = new QVBoxLayout(deleteBox);
    deleteLayout->addWidget(one);
    deleteLayout->addWidget(all);

    auto* grid = new QGridLayout(this);
    grid->addWidget(edit_, 0, 0);
    grid->addWidget(enterButton, 0, 1);
    grid->addLayout(radios, 1, 0);
    grid->addWidget(list_, 2, 0, 4, 1);
    grid->addWidget(deleteBox, 2, 1);
    grid->addWidget(help, 3, 1);
    grid->addWidget(close, 4, 1);
    grid->setRowStretch(5, 1);

    AddLunchKey(this);
    connect(enterButton, &QPushButton::clicked, this,
            [this] { (void)enter(); });  // reported already
    connect(one, &QPushButton::clicked, this,
            [this] { (void)deleteSelected(); });  // none selected: nothing to do
    connect(all, &QPushButton::clicked, this, [this] { deleteAll(); });
    connect(help, &QPushButton::clicked, this, [this] { showHelp(); });
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    refill();
}

void TRecurDlg::showEvent(QShowEvent* e) {
    refill();
    TGenDlg::showEvent(e);
    edit_->setFocus();
}

void TRecurDlg::refill() {
    list_->clear();
    for (const std::string& row : model_->RecursionRows())
        list_->addItem(QString::fromStdString(row));
}

Result TRecurDlg::enter() {
    const QString text = edit_->text();
    if (text.isEmpty()) return Result::kOk;
    const Result code = model_->EnterRecursion(text.toStdString(), condition_->isChecked());
    if (!Ok(code)) {
        // Two messages on purpose, as the program always had them: the
        // specific one, then "cannot understand" once more.
        ShowError(this, code);
        ShowError(this, Result::kCannotUnderstand);
        return code;
    }
    refill();
    edit_->clear();
    edit_->setFocus();
    return Result::kOk;
}

bool TRecurDlg::deleteSelected() {
    const int row = list_->currentRow();
    if (row < 0 || !list_->currentItem()->isSelected()) return false;
    if (!model_->DeleteRecursionRow(row)) return false;
    refill();
    return true;
}

void TRecurDlg::deleteAll() {
    model_->ClearRecursion();
    refill();
}

void TRecurDlg::showHelp() { host_->ShowHelp(this, "OXFILEH", OxText(kStrRecursion)); }
