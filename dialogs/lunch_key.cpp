#include "dialogs/lunch_key.h"

#include <QAction>
#include <QWidget>

#include "dialogs/lunch_dlg.h"

void AddLunchKey(QWidget* window) {
    auto* lunch = new QAction(window);
    lunch->setShortcut(QKeySequence(Qt::Key_F12));
    lunch->setShortcutContext(Qt::WindowShortcut);
    QObject::connect(lunch, &QAction::triggered, window, [window] { RunLunch(window); });
    window->addAction(lunch);
}
