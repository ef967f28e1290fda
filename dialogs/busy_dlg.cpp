#include "dialogs/busy_dlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QPushButton>

#include "calc/model.h"
#include "dialogs/lunch_key.h"
#include "dialogs/ui_text.h"
#include "resources/limits.h"
#include "resources/string_ids.h"

namespace {}  // namespace

TBusyDlg::TBusyDlg(QWidget* parent, const char* resourceName, int titleId)
    : TGenDlg(parent), titleId_(titleId) {
    setObjectName(QString::fromLatin1(resourceName));
    setWindowTitle(OxText(titleId));
    setModal(false);
    AddLunchKey(this);
}

QDialogButtonBox* TBusyDlg::makeButtons(int actionTextId, const char* actionName,
                                        std::function<void()> onAction) {
    auto* action = new QPushButton(OxText(actionTextId), this);
    action->setObjectName(QString::fromLatin1(actionName));
    action->setDefault(true);
    auto* close = new QPushButton(OxText(kStrClose), this);
    close->setObjectName(QStringLiteral("close"));
    close->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(action, QDialogButtonBox::ActionRole);
    buttons->addButton(close, QDialogButtonBox::RejectRole);
    connect(action, &QPushButton::clicked, this, [this, onAction] {
        if (!busy_) onAction();
    });
    connect(close, &QPushButton::clicked, this, &TBusyDlg::reject);
    return buttons;
}

void TBusyDlg::setBusy(bool busy) {
    busy_ = busy;
    setWindowTitle(OxText(busy ? kStrPressQToQuit : titleId_));
}

QString TBusyDlg::idleTitle() const { return OxText(titleId_); }

void TBusyDlg::reject() {
    if (!busy_) TGenDlg::reject();
}

QComboBox* LabelComboBox(QWidget* parent, int label) {
    auto* box = new QComboBox(parent);
    for (int i = 1; i <= kLabelCount; ++i) box->addItem(QString(QChar(LabelLetter(i))));
    box->setCurrentIndex(label - 1);
    return box;
}
