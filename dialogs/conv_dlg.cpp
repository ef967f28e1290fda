#include "dialogs/conv_dlg.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <string>

#include "calc/conversion.h"
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "dialogs/run_host.h"
#include "resources/strings.h"

namespace {

QString S(int id) { return QString::fromUtf8(OxString(id)); }

constexpr int kInputBaseAtStart = 2;
constexpr int kOutputBaseAtStart = 10;

// A row of radio buttons "2" ... "16" in one group; a button's id is its base.
QButtonGroup* BaseRow(QWidget* parent, QGridLayout* grid, int row, int checked) {
    auto* group = new QButtonGroup(parent);
    for (int base = kFirstBase; base <= kLastBase; ++base) {
        auto* b = new QRadioButton(QString::number(base), parent);
        group->addButton(b, base);
        grid->addWidget(b, row, base - kFirstBase);
    }
    group->button(checked)->setChecked(true);
    return group;
}

}  // namespace

TConvDlg::TConvDlg(QWidget* parent, CalcContext* ctx, RunHost* host)
    : TGenDlg(parent), ctx_(ctx), host_(host) {
    setObjectName(QStringLiteral("CONVERT"));
    setWindowTitle(S(912));
    setModal(false);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2);
    const int columns = kLastBase - kFirstBase + 1;
    from_ = BaseRow(this, grid, 0, kInputBaseAtStart);
    input_ = new QLineEdit(S(919), this);
    input_->setMaxLength(kConvInputChars);
    grid->addWidget(input_, 1, 0, 1, columns);

    auto* convertButton = new QPushButton(S(913), this);
    convertButton->setObjectName(QStringLiteral("convert"));
    convertButton->setDefault(true);
    auto* closeButton = new QPushButton(S(44), this);
    closeButton->setObjectName(QStringLiteral("close"));
    closeButton->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(convertButton, QDialogButtonBox::ActionRole);
    buttons->addButton(closeButton, QDialogButtonBox::RejectRole);
    buttons->setCenterButtons(true);
    grid->addWidget(buttons, 2, 0, 1, columns);

    to_ = BaseRow(this, grid, 3, kOutputBaseAtStart);
    // The longest output, a full base-16 input written in base 2, has 12000
    // digits: within a line edit's default limit of 32767.
    output_ = new QLineEdit(S(920), this);
    output_->setReadOnly(true);
    grid->addWidget(output_, 4, 0, 1, columns);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);

    AddLunchKey(this);
    connect(convertButton, &QPushButton::clicked, this, [this] { convert(); });
    connect(closeButton, &QPushButton::clicked, this, &QDialog::reject);
}

int TConvDlg::inputBase() const { return from_->checkedId(); }
int TConvDlg::outputBase() const { return to_->checkedId(); }

void TConvDlg::setBases(int from, int to) {
    if (QAbstractButton* b = from_->button(from)) b->setChecked(true);
    if (QAbstractButton* b = to_->button(to)) b->setChecked(true);
}

int TConvDlg::convert() {
    const std::string input = input_->text().toStdString();
    const int from = inputBase(), to = outputBase();
    std::string digits;
    const int code =
        host_->RunWatched([&] { return ConvertDigits(ctx_, from, to, input, &digits); });
    if (code != 0) {
        output_->clear();
        ShowError(this, code);
        return code;
    }
    output_->setText(QString::fromStdString(digits));
    return 0;
}
