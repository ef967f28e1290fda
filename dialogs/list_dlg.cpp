#include "dialogs/list_dlg.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>

#include "dialogs/ui_text.h"
#include "lists/list_frame.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {
constexpr int kBoundChars = 29;
constexpr int kBoundWidthChars = 10;
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
