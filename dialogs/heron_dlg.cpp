#include "dialogs/heron_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/list_dlg.h"
#include "dialogs/list_runner.h"
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

namespace {


struct TriangleText {
    const char* resource;
    int titleId;
    uint32_t presetMin;
    int minAdviceId;
};

TriangleText TextOf(TriangleList kind) {
    switch (kind) {
    case TriangleList::heronian: return {"HERON", 248, kPerimeterPresetMin, 823};
    case TriangleList::rationalMedians: return {"RATMED", 249, kPerimeterPresetMin, 823};
    case TriangleList::perpendicularMedians:
        return {"PERPMED", 251, kPerpendicularPresetMin, 825};
    }
    return {"", 0, 0, 0};
}

}  // namespace

TTriangleDlg::TTriangleDlg(QWidget* parent, ListRunner* runner, TriangleList kind)
    : TGenDlg(parent), runner_(runner), kind_(kind) {
    const TriangleText t = TextOf(kind);
    setObjectName(QString::fromLatin1(t.resource));
    setWindowTitle(title());
    setModal(false);

    min_ = ListBoundEdit(this, 211, QString::number(t.presetMin));
    max_ = ListBoundEdit(this, 212, QString::number(kPerimeterPresetMax));
    right_ = ListControl<QCheckBox>(this, 271, OxText(826));
    isosceles_ = ListControl<QCheckBox>(this, 272, OxText(827));
    atLeastTwo_ = ListControl<QCheckBox>(this, 273, OxText(828));
    const bool perpendicular = kind == TriangleList::perpendicularMedians;
    right_->setVisible(!perpendicular);
    isosceles_->setVisible(!perpendicular);
    atLeastTwo_->setVisible(kind == TriangleList::rationalMedians);

    QPushButton* listButton = nullptr;
    QPushButton* closeButton = nullptr;
    QDialogButtonBox* buttons = ListButtons(this, &listButton, &closeButton);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(OxText(821), this), 0, 0);
    grid->addWidget(min_, 0, 1);
    grid->addWidget(new QLabel(OxText(t.minAdviceId), this), 0, 2);
    grid->addWidget(new QLabel(OxText(822), this), 1, 0);
    grid->addWidget(max_, 1, 1);
    grid->addWidget(new QLabel(OxText(824), this), 1, 2);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    if (!perpendicular) {
        layout->addWidget(right_);
        layout->addWidget(isosceles_);
        if (kind == TriangleList::rationalMedians) layout->addWidget(atLeastTwo_);
    }
    layout->addWidget(buttons);

    AddLunchKey(this);
    connect(listButton, &QPushButton::clicked, this, [this] { list(); });
    connect(closeButton, &QPushButton::clicked, this, &TTriangleDlg::reject);
}

QString TTriangleDlg::title() const { return OxText(TextOf(kind_).titleId); }

void TTriangleDlg::reject() {
    if (!busy_) TGenDlg::reject();
}

int TTriangleDlg::list() {
    if (busy_) return 0;
    TriangleOptions o;
    int code = ReadDialogBound(min_, &o.minPerimeter);
    if (code == 0) code = ReadDialogBound(max_, &o.maxPerimeter);
    if (code == 0) code = CheckPerimeterBounds(o.minPerimeter, o.maxPerimeter);
    if (code != 0) {
        ShowError(runner_->MainWindow(), code);
        return code;
    }
    o.right = right_->isChecked();
    o.isosceles = isosceles_->isChecked();
    o.atLeastTwo = atLeastTwo_->isChecked();
    const TriangleList kind = kind_;
    const ListGenerator generator = [o, kind](CalcContext* ctx, ListOutput* out) {
        switch (kind) {
        case TriangleList::heronian: return ListHeronian(ctx, o, out);
        case TriangleList::rationalMedians: return ListRationalMedians(ctx, o, out);
        case TriangleList::perpendicularMedians: break;
        }
        return ListPerpendicularMedians(ctx, o, out);
    };
    busy_ = true;
    QString summary;
    code = runner_->RunList(generator, this, &summary);
    busy_ = false;
    // Deliberately, the perpendicular-median dialog keeps the list's summary.
    const bool keepSummary = kind_ == TriangleList::perpendicularMedians && !summary.isEmpty();
    setWindowTitle(keepSummary ? summary : title());
    return code;
}

THeroDlg::THeroDlg(QWidget* parent, ListRunner* runner)
    : TTriangleDlg(parent, runner, TriangleList::heronian) {}

TRatMDlg::TRatMDlg(QWidget* parent, ListRunner* runner, bool perpendicular)
    : TTriangleDlg(parent, runner,
                   perpendicular ? TriangleList::perpendicularMedians
                                 : TriangleList::rationalMedians) {}
