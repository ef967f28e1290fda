#include "dialogs/about_dlg.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

namespace {

constexpr int kMinorVersion = 2;

QPointer<TAboutDlg> g_open;

}  // namespace

QString TAboutDlg::Caption() {
    return OxText(kStrAboutOrdix) + OxText(kStrVersionOpen) + QString::number(kMinorVersion) + "]";
}

QString TAboutDlg::Text() {
    QStringList lines{QString(), OxText(kStrSystems),
                      OxText(kStrVersionCompiled) + " 5 " + OxText(kStrCompileMonth) + " 2012",
                      QString(), QString()};
    // The notice: blank lines after its third and seventh lines.
    for (int id = kStrNoticeFirst; id <= kStrNoticeLast; ++id) {
        lines << OxText(id);
        if (id == kStrNoticeThird || id == kStrNoticeLast) lines << QString();
    }
    lines << OxText(kStrComments);
    return lines.join('\n');
}

TAboutDlg::TAboutDlg(QWidget* parent) : TGenDlg(parent) {
    setObjectName(QStringLiteral("ABOUTBOX"));
    setWindowTitle(Caption());
    auto* box = new QVBoxLayout(this);
    auto* text = new QPlainTextEdit(Text(), this);
    text->setObjectName(QStringLiteral("ctl211"));
    text->setReadOnly(true);
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    const QFontMetrics fm(text->font());
    const int lines = Text().count('\n') + 1;
    text->setMinimumSize(fm.horizontalAdvance(OxText(kStrNoticeLast)) + 40,
                         fm.lineSpacing() * (lines + 1) + 12);
    box->addWidget(text);
    auto* row = new QHBoxLayout;
    auto* ok = new QPushButton(QStringLiteral("ok"), this);
    ok->setObjectName(QStringLiteral("ctl1"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    row->addStretch(1);
    row->addWidget(ok);
    row->addStretch(1);
    box->addLayout(row);
}

void ShowAbout(QWidget* owner) {
    if (g_open) {
        g_open->raise();
        g_open->activateWindow();
        return;
    }
    TAboutDlg dlg(owner);
    g_open = &dlg;
    TheModal().runDialog(&dlg);
}
