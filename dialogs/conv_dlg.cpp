#include "dialogs/conv_dlg.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include <string>

#include "calc/conversion.h"
#include "dialogs/gui_host.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

namespace {

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

TConvDlg::TConvDlg(QWidget* parent, CalcContext* ctx, GuiHost* host)
    : TBusyDlg(parent, "CONVERT", kStrBaseConversion), ctx_(ctx), host_(host) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(2);
    const int columns = kLastBase - kFirstBase + 1;
    from_ = BaseRow(this, grid, 0, kInputBaseAtStart);
    input_ = new QLineEdit(OxText(kStrConvInput), this);
    input_->setMaxLength(kConvInputChars);
    grid->addWidget(input_, 1, 0, 1, columns);

    auto* buttons =
        makeButtons(kStrConvert, "convert", [this] { (void)convert(); });  // reported already
    buttons->setCenterButtons(true);
    grid->addWidget(buttons, 2, 0, 1, columns);

    to_ = BaseRow(this, grid, 3, kOutputBaseAtStart);
    // The longest output, a full base-16 input written in base 2, has 12000
    // digits: within a line edit's default limit of 32767.
    output_ = new QLineEdit(OxText(kStrConvBases), this);
    output_->setReadOnly(true);
    grid->addWidget(output_, 4, 0, 1, columns);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
}

int TConvDlg::inputBase() const { return from_->checkedId(); }
int TConvDlg::outputBase() const { return to_->checkedId(); }

Result TConvDlg::convert() {
    const std::string input = input_->text().toStdString();
    const int from = inputBase(), to = outputBase();
    std::string digits;
    const Result code =
        host_->RunWatched([&] { return ConvertDigits(ctx_, from, to, input, &digits); });
    if (!Ok(code)) {
        output_->clear();
        ShowError(this, code);
        return code;
    }
    output_->setText(QString::fromStdString(digits));
    return Result::kOk;
}
