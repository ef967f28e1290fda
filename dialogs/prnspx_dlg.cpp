#include "dialogs/prnspx_dlg.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

namespace {

constexpr int kLengthChars = 12;

template <class W>
W* Named(W* w, const QString& name) {
    w->setObjectName(name);
    return w;
}

QLineEdit* LengthEdit(QWidget* parent, int id, long double inches) {
    auto* e = Named(new QLineEdit(parent), QStringLiteral("ctl%1").arg(id));
    e->setMaxLength(kLengthChars);
    e->setText(QString::fromStdString(CentimetreText(inches)));
    e->setAlignment(Qt::AlignRight);
    e->setFixedWidth(e->fontMetrics().horizontalAdvance(QLatin1Char('8')) * 9);
    return e;
}

long double Inches(const QLineEdit* e) { return InchesFromCentimetreText(e->text().toStdString()); }

}  // namespace

TPrnSpxDlg::TPrnSpxDlg(QWidget* parent, PrintFormat* format) : TGenDlg(parent), format_(format) {
    setObjectName(QStringLiteral("PRNSPX2"));
    setWindowTitle(OxText(kStrPrintFormat));
    const int mode = format->dialogMode;
    const bool pictures = mode >= 1 && mode <= 2;

    widthChoice_ = Named(new QRadioButton(this), QStringLiteral("ctl251"));
    unitChoice_ = Named(new QRadioButton(this), QStringLiteral("ctl252"));
    auto* choices = new QButtonGroup(this);
    choices->addButton(widthChoice_);
    choices->addButton(unitChoice_);
    widthChoice_->setChecked(format->width >= 0);
    unitChoice_->setChecked(format->width < 0 && format->xUnit >= 0);
    width_ = LengthEdit(this, 211, format->width);
    unit_ = LengthEdit(this, 212, format->xUnit);
    hori_ = LengthEdit(this, 213, format->hOffset);
    vert_ = LengthEdit(this, 214, format->vOffset);
    auto* widthLabel = Named(new QLabel(OxText(kStrPrintWidth), this), QStringLiteral("lbl211"));
    auto* unitLabel = Named(new QLabel(OxText(kStrPrintUnit), this), QStringLiteral("lbl212"));
    auto* horiLabel =
        Named(new QLabel(OxText(kStrPrintHorizontal), this), QStringLiteral("lbl213"));
    auto* vertLabel = Named(new QLabel(OxText(kStrPrintVertical), this), QStringLiteral("lbl214"));
    frame_ = Named(new QCheckBox(OxText(kStrPrintFrame), this), QStringLiteral("ctl271"));
    color_ = Named(new QCheckBox(OxText(kStrColorPrinter), this), QStringLiteral("ctl272"));
    frame_->setChecked(format->frameImage);
    color_->setChecked(format->colorPrinter);

    auto* grid = new QGridLayout;
    grid->addWidget(widthChoice_, 0, 0);
    grid->addWidget(widthLabel, 0, 1);
    grid->addWidget(width_, 0, 2);
    grid->addWidget(unitChoice_, 1, 0);
    grid->addWidget(unitLabel, 1, 1);
    grid->addWidget(unit_, 1, 2);
    grid->addWidget(Named(new QLabel(OxText(kStrPrintOffset), this), QStringLiteral("lblOffsets")),
                    2, 0, 1, 3);
    grid->addWidget(horiLabel, 3, 1);
    grid->addWidget(hori_, 3, 2);
    grid->addWidget(vertLabel, 4, 1);
    grid->addWidget(vert_, 4, 2);
    grid->addWidget(frame_, 5, 0, 1, 3);
    grid->addWidget(color_, 6, 0, 1, 3);
    grid->setColumnMinimumWidth(1, fontMetrics().horizontalAdvance(QLatin1Char('8')) * 4);

    for (QWidget* w : {static_cast<QWidget*>(widthChoice_), static_cast<QWidget*>(unitChoice_),
                       static_cast<QWidget*>(unit_), static_cast<QWidget*>(unitLabel)})
        w->setVisible(mode == 2);
    frame_->setVisible(mode >= 1);
    for (QWidget* w : {static_cast<QWidget*>(color_), static_cast<QWidget*>(width_),
                       static_cast<QWidget*>(widthLabel)})
        w->setVisible(pictures);

    auto* ok = Named(new QPushButton(QStringLiteral("ok"), this), QStringLiteral("ctl1"));
    auto* cancel = Named(new QPushButton(QStringLiteral("cancel"), this), QStringLiteral("ctl2"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);

    auto* box = new QVBoxLayout(this);
    box->addLayout(grid);
    box->addLayout(buttons);
    box->setSizeConstraint(QLayout::SetFixedSize);
}

void TPrnSpxDlg::accept() {
    const Result code =
        AcceptPrintFormat(format_, Inches(width_), Inches(unit_), Inches(hori_), Inches(vert_),
                          widthChoice_->isChecked(), frame_->isChecked(), color_->isChecked());
    if (!Ok(code)) {
        ShowError(this, code);
        return;
    }
    TGenDlg::accept();
}

bool RunOffsetsDialog(QWidget* owner, PrintFormat* format) {
    TPrnSpxDlg dlg(owner, format);
    return TheModal().runDialog(&dlg) == QDialog::Accepted;
}
