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

#include "dialogs/gui_host.h"
#include "dialogs/list_dlg.h"
#include "dialogs/lunch_key.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "resources/string_ids.h"

namespace {

constexpr const char* kMinPreset = "3";
constexpr const char* kMaxPreset = "100";

}  // namespace

TQuadDlg::TQuadDlg(QWidget* parent, GuiHost* host)
    : TListDlg(parent, host, QString::fromLatin1(kMinPreset), QString::fromLatin1(kMaxPreset)) {
    setObjectName(QStringLiteral("QUADS"));
    setWindowTitle(OxText(kStrQuadruples));

    minLabel_ = new QLabel(OxText(kStrMinLength), this);
    minAdvice_ = new QLabel(OxText(kStrAboveTwo), this);
    maxLabel_ = new QLabel(OxText(kStrMaxLength), this);

    kind_ = new QButtonGroup(this);
    auto* radios = new QVBoxLayout;
    for (int id = 251; id <= 254; ++id) {
        auto* r = ListControl<QRadioButton>(this, id, OxText(kStrFirstQuadChoice + id - 251));
        kind_->addButton(r, id);
        radios->addWidget(r);
    }
    kind_->button(251)->setChecked(true);
    ascending_ = ListControl<QCheckBox>(this, 272, OxText(kStrAscending));
    primitive_ = ListControl<QCheckBox>(this, 271, OxText(kStrPrimitiveOnly));
    zeros_ = ListControl<QCheckBox>(this, 273, OxText(kStrAllowZeros));
    duplicates_ = ListControl<QCheckBox>(this, 274, OxText(kStrAllowDuplicates));

    QDialogButtonBox* buttons = makeButtons();

    auto* grid = new QGridLayout;
    grid->addWidget(minLabel_, 0, 0);
    grid->addWidget(min_, 0, 1);
    grid->addWidget(minAdvice_, 0, 2);
    grid->addWidget(maxLabel_, 1, 0);
    grid->addWidget(max_, 1, 1);
    grid->addWidget(new QLabel(OxText(kStrLengthBelow65536), this), 1, 2);
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
    maxLabel_->setText(OxText(c ? kStrLength : kStrMaxLength));
}

Result TQuadDlg::list() {
    if (busy()) return Result::kOk;
    QString summary;
    if (cubes()) {
        uint32_t length = 0;
        const Result refused =
            ReadListValue(ListKind::latticeCubes, max_->text().toStdString(), &length);
        if (!Ok(refused)) {
            ShowError(host_->MainWindow(), refused);
            return refused;
        }
        const bool duplicates = duplicates_->isChecked();
        const Result code = runList(
            [length, duplicates](CalcContext* ctx, ListOutput* out) {
                return ListLatticeCubes(ctx, length, duplicates, out);
            },
            &summary);
        setWindowTitle(OxText(kStrQuadruples));
        return code;
    }
    QuadOptions o;
    const Result refused = readBounds(&o.minLength, &o.maxLength, CheckQuadBounds);
    if (refused != 0) return refused;
    o.primitiveOnly = primitive_->isChecked();
    o.ascending = ascending_->isChecked();
    o.zeros = zeros_->isChecked();
    o.kind = static_cast<QuadKind>(choice() - 251);
    const Result code = runList(
        [o](CalcContext* ctx, ListOutput* out) { return ListQuadruples(ctx, o, out); }, &summary);
    setWindowTitle(OxText(kStrQuadruples));
    return code;
}
