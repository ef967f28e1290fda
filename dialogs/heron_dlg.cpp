#include "dialogs/heron_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/gui_host.h"
#include "dialogs/list_dlg.h"
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"

namespace {

struct TriangleText {
    const char* resource;
    int titleId;
    uint32_t presetMin;
    int minAdviceId;
};

TriangleText TextOf(TriangleList kind) {
    switch (kind) {
    case TriangleList::heronian:
        return {"HERON", kStrHeronian, kPerimeterPresetMin, kStrAboveEleven};
    case TriangleList::rationalMedians:
        return {"RATMED", kStrRationalMedians, kPerimeterPresetMin, kStrAboveEleven};
    case TriangleList::perpendicularMedians:
        return {"PERPMED", kStrPerpendicularMedians, kPerpendicularPresetMin, kStrAboveFiftyThree};
    }
    return {"", 0, 0, 0};
}

}  // namespace

TTriangleDlg::TTriangleDlg(QWidget* parent, GuiHost* host, TriangleList kind)
    : TListDlg(parent, host, QString::number(TextOf(kind).presetMin),
               QString::number(kPerimeterPresetMax)),
      kind_(kind) {
    const TriangleText t = TextOf(kind);
    setObjectName(QString::fromLatin1(t.resource));
    setWindowTitle(title());

    right_ = ListControl<QCheckBox>(this, 271, OxText(kStrRightTriangles));
    isosceles_ = ListControl<QCheckBox>(this, 272, OxText(kStrIsosceles));
    atLeastTwo_ = ListControl<QCheckBox>(this, 273, OxText(kStrAtLeastTwo));
    const bool perpendicular = kind == TriangleList::perpendicularMedians;
    right_->setVisible(!perpendicular);
    isosceles_->setVisible(!perpendicular);
    atLeastTwo_->setVisible(kind == TriangleList::rationalMedians);

    QDialogButtonBox* buttons = makeButtons();

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(OxText(kStrMinPerimeter), this), 0, 0);
    grid->addWidget(min_, 0, 1);
    grid->addWidget(new QLabel(OxText(t.minAdviceId), this), 0, 2);
    grid->addWidget(new QLabel(OxText(kStrMaxPerimeter), this), 1, 0);
    grid->addWidget(max_, 1, 1);
    grid->addWidget(new QLabel(OxText(kStrBelow65536), this), 1, 2);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    if (!perpendicular) {
        layout->addWidget(right_);
        layout->addWidget(isosceles_);
        if (kind == TriangleList::rationalMedians) layout->addWidget(atLeastTwo_);
    }
    layout->addWidget(buttons);

    AddLunchKey(this);
}

QString TTriangleDlg::title() const { return OxText(TextOf(kind_).titleId); }

Result TTriangleDlg::list() {
    if (busy()) return Result::kOk;
    TriangleOptions o;
    const Result refused = readBounds(&o.minPerimeter, &o.maxPerimeter, CheckPerimeterBounds);
    if (refused != 0) return refused;
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
    QString summary;
    const Result code = runList(generator, &summary);
    // Deliberately, the perpendicular-median dialog keeps the list's summary.
    const bool keepSummary = kind_ == TriangleList::perpendicularMedians && !summary.isEmpty();
    setWindowTitle(keepSummary ? summary : title());
    return code;
}

THeroDlg::THeroDlg(QWidget* parent, GuiHost* host)
    : TTriangleDlg(parent, host, TriangleList::heronian) {}

TRatMDlg::TRatMDlg(QWidget* parent, GuiHost* host, bool perpendicular)
    : TTriangleDlg(
          parent, host,
          perpendicular ? TriangleList::perpendicularMedians : TriangleList::rationalMedians) {}
