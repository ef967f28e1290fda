#include "dialogs/quads_dlg.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
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


constexpr int kTitle = 216;          // "Pythagorean quadruples"
constexpr int kMaxLength = 229;      // "max length"
constexpr int kCubeLength = 227;     // "length"
constexpr const char* kMinPreset = "3";
constexpr const char* kMaxPreset = "100";

}  // namespace

TQuadDlg::TQuadDlg(QWidget* parent, ListRunner* runner) : TGenDlg(parent), runner_(runner) {
    setObjectName(QStringLiteral("QUADS"));
    setWindowTitle(OxText(kTitle));
    setModal(false);

    min_ = ListBoundEdit(this, 211, QString::fromLatin1(kMinPreset));
    max_ = ListBoundEdit(this, 212, QString::fromLatin1(kMaxPreset));
    minLabel_ = new QLabel(OxText(829), this);
    minAdvice_ = new QLabel(OxText(830), this);
    maxLabel_ = new QLabel(OxText(kMaxLength), this);

    kind_ = new QButtonGroup(this);
    auto* radios = new QVBoxLayout;
    for (int id = 251; id <= 254; ++id) {
        auto* r = ListControl<QRadioButton>(this, id, OxText(832 + id - 251));
        kind_->addButton(r, id);
        radios->addWidget(r);
    }
    kind_->button(251)->setChecked(true);
    ascending_ = ListControl<QCheckBox>(this, 272, OxText(836));
    primitive_ = ListControl<QCheckBox>(this, 271, OxText(837));
    zeros_ = ListControl<QCheckBox>(this, 273, OxText(838));
    duplicates_ = ListControl<QCheckBox>(this, 274, OxText(839));

    QPushButton* listButton = nullptr;
    QPushButton* closeButton = nullptr;
    QDialogButtonBox* buttons = ListButtons(this, &listButton, &closeButton);

    auto* grid = new QGridLayout;
    grid->addWidget(minLabel_, 0, 0);
    grid->addWidget(min_, 0, 1);
    grid->addWidget(minAdvice_, 0, 2);
    grid->addWidget(maxLabel_, 1, 0);
    grid->addWidget(max_, 1, 1);
    grid->addWidget(new QLabel(OxText(831), this), 1, 2);
    auto* checks = new QVBoxLayout;
    for (QCheckBox* c : {ascending_, primitive_, zeros_, duplicates_}) checks->addWidget(c);
    auto* options = new QHBoxLayout;
    options->addLayout(radios);
    options->addSpacing(fontMetrics().averageCharWidth() * 2);
    options->addLayout(checks);
    options->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(options);
    layout->addWidget(buttons);
    showChoice();

    AddLunchKey(this);
    connect(kind_, &QButtonGroup::idClicked, this, [this] { showChoice(); });
    connect(listButton, &QPushButton::clicked, this, [this] { list(); });
    connect(closeButton, &QPushButton::clicked, this, &TQuadDlg::reject);
}

int TQuadDlg::choice() const { return kind_->checkedId(); }

void TQuadDlg::choose(int radioId) {
    if (QAbstractButton* b = kind_->button(radioId)) {
        b->setChecked(true);
        showChoice();
    }
}

void TQuadDlg::showChoice() {
    const bool c = cubes();
    for (QWidget* w : {static_cast<QWidget*>(min_), static_cast<QWidget*>(minLabel_),
                       static_cast<QWidget*>(minAdvice_), static_cast<QWidget*>(zeros_)})
        w->setVisible(!c);
    duplicates_->setVisible(c);
    maxLabel_->setText(OxText(c ? kCubeLength : kMaxLength));
}

void TQuadDlg::reject() {
    if (!busy_) TGenDlg::reject();
}

int TQuadDlg::list() {
    if (busy_) return 0;
    if (cubes()) {
        ShowError(runner_->MainWindow(), Result::kKitchenClosed);
        return Result::kKitchenClosed;
    }
    QuadOptions o;
    int code = ReadDialogBound(min_, &o.minLength);
    if (code == 0) code = ReadDialogBound(max_, &o.maxLength);
    if (code == 0) code = CheckQuadBounds(o.minLength, o.maxLength);
    if (code != 0) {
        ShowError(runner_->MainWindow(), code);
        return code;
    }
    o.primitiveOnly = primitive_->isChecked();
    o.ascending = ascending_->isChecked();
    o.zeros = zeros_->isChecked();
    o.kind = static_cast<QuadKind>(choice() - 251);
    busy_ = true;
    QString summary;
    code = runner_->RunList(
        [o](CalcContext* ctx, ListOutput* out) { return ListQuadruples(ctx, o, out); }, this,
        &summary);
    busy_ = false;
    setWindowTitle(OxText(kTitle));
    return code;
}
