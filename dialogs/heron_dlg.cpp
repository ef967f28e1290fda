#include "dialogs/heron_dlg.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/list_runner.h"
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/strings.h"

namespace {

QString S(int id) { return QString::fromUtf8(OxString(id)); }

// The edits take 29 characters, as every bound of the lists.
constexpr int kBoundChars = 29;
constexpr int kBoundWidthChars = 10;

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

QLineEdit* BoundEdit(QWidget* parent, int id, uint32_t preset) {
    auto* e = new QLineEdit(QString::number(preset), parent);
    e->setObjectName(QStringLiteral("ctl%1").arg(id));
    e->setMaxLength(kBoundChars);
    e->setMinimumWidth(e->fontMetrics().averageCharWidth() * kBoundWidthChars);
    return e;
}

QCheckBox* Check(QWidget* parent, int id, int textId) {
    auto* c = new QCheckBox(S(textId), parent);
    c->setObjectName(QStringLiteral("ctl%1").arg(id));
    return c;
}

}  // namespace

int ReadDialogBound(const QLineEdit* edit, uint32_t* value) {
    return ParseListUnsigned(edit->text().toStdString(), value) ? 0 : kListOutOfBounds;
}

TTriangleDlg::TTriangleDlg(QWidget* parent, ListRunner* runner, TriangleList kind)
    : TGenDlg(parent), runner_(runner), kind_(kind) {
    const TriangleText t = TextOf(kind);
    setObjectName(QString::fromLatin1(t.resource));
    setWindowTitle(title());
    setModal(false);

    min_ = BoundEdit(this, 211, t.presetMin);
    max_ = BoundEdit(this, 212, kPerimeterPresetMax);
    right_ = Check(this, 271, 826);
    isosceles_ = Check(this, 272, 827);
    atLeastTwo_ = Check(this, 273, 828);
    const bool perpendicular = kind == TriangleList::perpendicularMedians;
    right_->setVisible(!perpendicular);
    isosceles_->setVisible(!perpendicular);
    atLeastTwo_->setVisible(kind == TriangleList::rationalMedians);

    auto* listButton = new QPushButton(S(820), this);
    listButton->setObjectName(QStringLiteral("list"));
    listButton->setDefault(true);
    auto* closeButton = new QPushButton(S(44), this);
    closeButton->setObjectName(QStringLiteral("close"));
    closeButton->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(listButton, QDialogButtonBox::ActionRole);
    buttons->addButton(closeButton, QDialogButtonBox::RejectRole);

    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(S(821), this), 0, 0);
    grid->addWidget(min_, 0, 1);
    grid->addWidget(new QLabel(S(t.minAdviceId), this), 0, 2);
    grid->addWidget(new QLabel(S(822), this), 1, 0);
    grid->addWidget(max_, 1, 1);
    grid->addWidget(new QLabel(S(824), this), 1, 2);
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

QString TTriangleDlg::title() const { return S(TextOf(kind_).titleId); }

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
