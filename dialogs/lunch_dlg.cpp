#include "dialogs/lunch_dlg.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRandomGenerator>
#include <QVBoxLayout>

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

namespace {}

QList<int> TLunch::DrawDishes(QRandomGenerator* rng) {
    // A partial shuffle: the first five places of a random permutation.
    int ids[kLunchDishes];
    for (int i = 0; i < kLunchDishes; ++i) ids[i] = kStrFirstDish + i;
    QList<int> drawn;
    for (int i = 0; i < kLunchChoices; ++i) {
        const int j = i + static_cast<int>(rng->bounded(kLunchDishes - i));
        std::swap(ids[i], ids[j]);
        drawn.append(ids[i]);
    }
    return drawn;
}

TLunch::TLunch(QWidget* parent) : TGenDlg(parent) {
    setObjectName(QStringLiteral("LUNCH"));
    setWindowTitle(OxText(kStrTodaysSpecials));
    auto* box = new QVBoxLayout(this);
    int id = 271;
    for (int dish : DrawDishes(QRandomGenerator::global())) {
        auto* c = new QCheckBox(OxText(dish), this);
        c->setObjectName(QStringLiteral("ctl%1").arg(id++));
        box->addWidget(c);
    }
    box->addSpacing(6);
    auto* takeOut = new QCheckBox(OxText(kStrTakeOut), this);
    takeOut->setObjectName(QStringLiteral("ctl276"));
    box->addWidget(takeOut);
    auto* row = new QHBoxLayout;
    row->addStretch(1);
    auto* ok = new QPushButton(QStringLiteral("ok"), this);
    auto* cancel = new QPushButton(QStringLiteral("cancel"), this);
    ok->setObjectName(QStringLiteral("ctl1"));
    cancel->setObjectName(QStringLiteral("ctl2"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    row->addWidget(ok);
    row->addWidget(cancel);
    box->addLayout(row);
}

void RunLunch(QWidget* owner) {
    TLunch dlg(owner);
    if (TheModal().runDialog(&dlg) == QDialog::Accepted) ShowError(owner, Result::kKitchenClosed);
}
