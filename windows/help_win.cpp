#include "windows/help_win.h"

#include <QFile>

#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

// The help texts are compiled into the program's static library; this makes
// sure the linker keeps them.
static void EnsureHelpResources() {
    static const bool done = [] {
        Q_INIT_RESOURCE(help);
        return true;
    }();
    (void)done;
}

QString HelpText(const char* name) {
    EnsureHelpResources();
    QFile f(QStringLiteral(":/help/%1.txt").arg(QLatin1String(name)));
    if (!f.open(QIODevice::ReadOnly)) return QString();
    return QString::fromUtf8(f.readAll());
}

THelpWin::THelpWin(QWidget* parent)
    : TTextWin(parent, OxText(kStrOrdixHelp), QString(), QString(), 0) {
    askToSave_ = false;
}

void THelpWin::showHelp(const char* name) {
    replaceText(HelpText(name));
    markNotModified();
    show();
    raise();
    activateWindow();
}
