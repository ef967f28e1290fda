#include "dialogs/list_dlg.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

#include "lists/list_frame.h"
#include "lists/list_inputs.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

namespace {
constexpr int kBoundChars = 29;
constexpr int kBoundWidthChars = 10;
constexpr int kListText = 820;    // "list"
constexpr int kCloseText = 44;    // "close"
}  // namespace

QLineEdit* ListBoundEdit(QWidget* parent, int id, const QString& preset) {
    auto* e = new QLineEdit(preset, parent);
    e->setObjectName(QStringLiteral("ctl%1").arg(id));
    e->setMaxLength(kBoundChars);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kBoundWidthChars);
    return e;
}

QDialogButtonBox* ListButtons(QWidget* parent, QPushButton** list, QPushButton** close) {
    *list = new QPushButton(OxText(kListText), parent);
    (*list)->setObjectName(QStringLiteral("list"));
    (*list)->setDefault(true);
    *close = new QPushButton(OxText(kCloseText), parent);
    (*close)->setObjectName(QStringLiteral("close"));
    (*close)->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(parent);
    buttons->addButton(*list, QDialogButtonBox::ActionRole);
    buttons->addButton(*close, QDialogButtonBox::RejectRole);
    return buttons;
}

int ReadDialogBound(const QLineEdit* edit, uint32_t* value) {
    return ParseListUnsigned(edit->text().toStdString(), value) ? 0 : Result::kOutOfBounds;
}
