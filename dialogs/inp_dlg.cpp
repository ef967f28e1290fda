#include "dialogs/inp_dlg.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "resources/limits.h"

namespace {

// Fields are wide enough for a formula line; a long prompt widens the dialog.
constexpr int kFieldMinWidth = 320;

QLineEdit* MakeEdit(QWidget* parent, int id, const QString& text, int maxChars) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(QStringLiteral("ctl%1").arg(id));
    e->setMaxLength(maxChars > 0 ? maxChars : kMaxFieldChars);
    e->setText(text);
    e->setMinimumWidth(kFieldMinWidth);
    return e;
}

QLabel* MakeLabel(QWidget* parent, int id, const QString& text) {
    auto* l = new QLabel(text, parent);
    l->setObjectName(QStringLiteral("ctl%1").arg(id));
    return l;
}

// ok (id 1, default) and cancel (id 2) at the bottom right.
QHBoxLayout* MakeButtons(QDialog* dlg, const QString& okText, const QString& cancelText) {
    auto* ok = new QPushButton(okText.isEmpty() ? QStringLiteral("ok") : okText, dlg);
    auto* cancel =
        new QPushButton(cancelText.isEmpty() ? QStringLiteral("cancel") : cancelText, dlg);
    ok->setObjectName(QStringLiteral("ctl1"));
    cancel->setObjectName(QStringLiteral("ctl2"));
    ok->setDefault(true);
    QObject::connect(ok, &QPushButton::clicked, dlg, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, dlg, &QDialog::reject);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    row->addWidget(ok);
    row->addWidget(cancel);
    return row;
}

}  // namespace

TInpDlg::TInpDlg(QWidget* parent, const QString& caption, const QString& prompt,
                 const QString& text, int maxChars)
    : TGenDlg(parent) {
    setObjectName(QStringLiteral("ONEINPUT"));
    setWindowTitle(caption);
    auto* box = new QVBoxLayout(this);
    box->addWidget(MakeLabel(this, 231, prompt));
    edit_ = MakeEdit(this, 211, text, maxChars);
    edit_->selectAll();
    box->addWidget(edit_);
    box->addLayout(MakeButtons(this, QString(), QString()));
}

QString TInpDlg::text() const { return edit_->text(); }

TInp2Dlg::TInp2Dlg(QWidget* parent, const QString& caption, const QString& label1,
                   const QString& label2, const QString& text1, int max1, const QString& text2,
                   int max2, const QString& okText, const QString& cancelText)
    : TGenDlg(parent) {
    setObjectName(QStringLiteral("TWOINPUT"));
    setWindowTitle(caption);
    auto* box = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    edit1_ = MakeEdit(this, 211, text1, max1);
    edit2_ = MakeEdit(this, 212, text2, max2);
    grid->addWidget(MakeLabel(this, 231, label1), 0, 0);
    grid->addWidget(edit1_, 0, 1);
    grid->addWidget(MakeLabel(this, 232, label2), 1, 0);
    grid->addWidget(edit2_, 1, 1);
    box->addLayout(grid);
    box->addLayout(MakeButtons(this, okText, cancelText));
    edit1_->selectAll();
}

QString TInp2Dlg::text1() const { return edit1_->text(); }
QString TInp2Dlg::text2() const { return edit2_->text(); }
