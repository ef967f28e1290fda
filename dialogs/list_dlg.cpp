#include "dialogs/list_dlg.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "lists/list_frame.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"

namespace {

constexpr int kBoundChars = 29;
constexpr int kBoundWidthChars = 10;
constexpr int kMinEditId = 211;
constexpr int kMaxEditId = 212;

}  // namespace

QLineEdit* ListBoundEdit(QWidget* parent, int id, const QString& preset) {
    auto* e = new QLineEdit(preset, parent);
    e->setObjectName(QStringLiteral("ctl%1").arg(id));
    e->setMaxLength(kBoundChars);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kBoundWidthChars);
    return e;
}

QDialogButtonBox* ListButtons(QWidget* parent, QPushButton** list, QPushButton** close) {
    *list = new QPushButton(OxText(kStrList), parent);
    (*list)->setObjectName(QStringLiteral("list"));
    (*list)->setDefault(true);
    *close = new QPushButton(OxText(kStrClose), parent);
    (*close)->setObjectName(QStringLiteral("close"));
    (*close)->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(parent);
    buttons->addButton(*list, QDialogButtonBox::ActionRole);
    buttons->addButton(*close, QDialogButtonBox::RejectRole);
    return buttons;
}

Result ReadDialogBound(const QLineEdit* edit, uint32_t* value) {
    return ParseListUnsigned(edit->text().toStdString(), value) ? Result::kOk
                                                                : Result::kOutOfBounds;
}

TListDlg::TListDlg(QWidget* parent, GuiHost* host, const QString& minPreset,
                   const QString& maxPreset)
    : TGenDlg(parent), host_(host) {
    setModal(false);
    min_ = ListBoundEdit(this, kMinEditId, minPreset);
    max_ = ListBoundEdit(this, kMaxEditId, maxPreset);
}

void TListDlg::reject() {
    if (!busy_) TGenDlg::reject();
}

QDialogButtonBox* TListDlg::makeButtons() {
    QPushButton* listButton = nullptr;
    QPushButton* closeButton = nullptr;
    QDialogButtonBox* buttons = ListButtons(this, &listButton, &closeButton);
    // list() reports its codes itself.
    connect(listButton, &QPushButton::clicked, this, [this] { (void)list(); });
    connect(closeButton, &QPushButton::clicked, this, &TListDlg::reject);
    return buttons;
}

Result TListDlg::readBounds(uint32_t* min, uint32_t* max,
                            const std::function<Result(uint32_t, uint32_t)>& check) {
    Result code = ReadDialogBound(min_, min);
    if (Ok(code)) code = ReadDialogBound(max_, max);
    if (Ok(code)) code = check(*min, *max);
    if (!Ok(code)) ShowError(host_->MainWindow(), code);
    return code;
}

Result TListDlg::runList(const ListGenerator& generator, QString* summary) {
    busy_ = true;
    const Result code = host_->RunList(generator, this, summary);
    busy_ = false;
    return code;
}
