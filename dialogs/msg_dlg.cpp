#include "dialogs/msg_dlg.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/modal.h"

TMsgDlg::TMsgDlg(QWidget* parent, const QString& caption, const QString& text, int kind)
    : TGenDlg(parent) {
    static const char* const kNames[] = {"OKMBOX", "YNMBOX", "YNCMBOX"};
    if (kind < kMsgOk || kind > kMsgYesNoCancel) kind = kMsgOk;
    setObjectName(QLatin1String(kNames[kind]));
    setWindowTitle(caption);
    auto* box = new QVBoxLayout(this);
    auto* label = new QLabel(text, this);
    label->setObjectName(QStringLiteral("ctl231"));
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(240);
    box->addWidget(label);
    box->addSpacing(8);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    auto add = [&](int id, const char* buttonText, int answer) {
        auto* b = new QPushButton(QString::fromLatin1(buttonText), this);
        b->setObjectName(QStringLiteral("ctl%1").arg(id));
        connect(b, &QPushButton::clicked, this, [this, answer] { done(answer); });
        row->addWidget(b);
        return b;
    };
    if (kind == kMsgOk) {
        add(1, "ok", kMbOk)->setDefault(true);
    } else {
        add(88, "&yes", kMbYes)->setDefault(true);
        add(89, "&no", kMbNo);
        if (kind == kMsgYesNoCancel) add(2, "&cancel", kMbCancel);
    }
    row->addStretch(1);
    box->addLayout(row);
}

void TMsgDlg::reject() { done(kMbCancel); }
