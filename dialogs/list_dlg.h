// Pieces the modeless list dialogs (dialogs/heron_dlg.h, dialogs/quads_dlg.h)
// share: the bound edits, controls named "ctl" + id, the buttons "list" and
// "close", and the reading of a bound.
#pragma once

#include <QString>

#include <cstdint>

#include "resources/result.h"

class QAbstractButton;
class QDialogButtonBox;
class QLineEdit;
class QPushButton;
class QWidget;

// An edit of a bound (29 characters), named "ctl" + id, preset with text.
QLineEdit* ListBoundEdit(QWidget* parent, int id, const QString& preset);
// Names a check box or radio button "ctl" + id.
template <class Button>
Button* ListControl(QWidget* parent, int id, const QString& text) {
    auto* b = new Button(text, parent);
    b->setObjectName(QStringLiteral("ctl%1").arg(id));
    return b;
}
// The buttons "list" (the default) and "close", named so; *list and *close
// receive them.
QDialogButtonBox* ListButtons(QWidget* parent, QPushButton** list, QPushButton** close);

// A bound typed into a list dialog: kOk, or kOutOfBounds when the text is
// not a whole number that fits 32 bits.
Result ReadDialogBound(const QLineEdit* edit, uint32_t* value);
