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
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "resources/limits.h"
#include "resources/strings.h"
#include "windows/help_win.h"

namespace {

QString S(int id) { return QString::fromUtf8(OxString(id)); }

constexpr int kTitleString = 266;   // "recursion", also the first radio button
constexpr int kEditWidthChars = 36;
constexpr int kListRowsShown = 8;

QPushButton* Button(QWidget* parent, int textId, const char* name) {
    auto* b = new QPushButton(S(textId), parent);
    b->setObjectName(QLatin1String(name));
    b->setAutoDefault(false);
    return b;
}

}  // namespace

TRecurDlg::TRecurDlg(QWidget* parent, CalcModel* model) : TGenDlg(parent), model_(model) {
    setObjectName(QStringLiteral("RECUR"));
    setWindowTitle(S(kTitleString));
    setModal(false);

    edit_ = new QLineEdit(this);
    edit_->setMaxLength(kMaxFieldChars);
    edit_->setMinimumWidth(fontMetrics().averageCharWidth() * kEditWidthChars);
    step_ = new QRadioButton(S(kTitleString), this);
    condition_ = new QRadioButton(S(900), this);
    step_->setChecked(true);
    list_ = new QListWidget(this);
    list_->setMinimumHeight(list_->fontMetrics().height() * kListRowsShown);

    QPushButton* enterButton = Button(this, 901, "enter");
    enterButton->setDefault(true);   // Return in the edit field enters the text
    QPushButton* one = Button(this, 903, "one");
    QPushButton* all = Button(this, 904, "all");
    QPushButton* help = Button(this, 905, "help");
    QPushButton* close = Button(this, 44, "close");

    auto* radios = new QHBoxLayout;
    radios->addWidget(step_);
    radios->addWidget(condition_);
    radios->addStretch();

    auto* deleteBox = new QGroupBox(S(902), this);
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
    connect(enterButton, &QPushButton::clicked, this, [this] { enter(); });
    connect(one, &QPushButton::clicked, this, [this] { deleteSelected(); });
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

int TRecurDlg::enter() {
    const QString text = edit_->text();
    if (text.isEmpty()) return 0;
    const int code = model_->EnterRecursion(text.toStdString(), condition_->isChecked());
    if (code != 0) {
        // Two messages on purpose, as the program always had them: the
        // specific one, then "cannot understand" once more.
        ShowError(this, code);
        ShowError(this, 1);
        return code;
    }
    refill();
    edit_->clear();
    edit_->setFocus();
    return 0;
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

void TRecurDlg::showHelp() {
    if (!help_) help_ = new THelpWin(this);
    help_->showHelp("OXFILEH");
    help_->setWindowTitle(S(kTitleString));
}
