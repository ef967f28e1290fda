#include "windows/menu_builder.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

#include <vector>

MenuTarget::~MenuTarget() = default;
bool MenuTarget::commandEnabled(int) { return true; }
bool MenuTarget::commandChecked(int) { return false; }

namespace {

constexpr const char* kFlagsProperty = "oxMenuFlags";

unsigned Flags(const QAction* a) { return a->property(kFlagsProperty).toUInt(); }

// Re-enables the enabler items when their menu closes, so that their keys
// reach the enabler check in the trigger handler.
void ReleaseMenuStates(QMenu* menu) {
    for (QAction* a : menu->actions())
        if (Flags(a) & kMenuEnabler) a->setEnabled(true);
}

QMenu* NewPopup(const MenuEntry& e, QWidget* parent, MenuTarget* target) {
    auto* menu = new QMenu(QString::fromUtf8(e.text), parent);
    QObject::connect(menu, &QMenu::aboutToShow, menu,
                     [menu, target] { UpdateMenuStates(menu, target); });
    QObject::connect(menu, &QMenu::aboutToHide, menu, [menu] { ReleaseMenuStates(menu); });
    return menu;
}

}  // namespace

QAction* MakeCommandAction(const MenuEntry& e, QWidget* owner, MenuTarget* target) {
    auto* a = new QAction(e.text ? QString::fromUtf8(e.text) : QString(), owner);
    a->setData(e.id);
    a->setProperty(kFlagsProperty, static_cast<unsigned>(e.flags));
    if (e.keys)
        a->setShortcut(QKeySequence(QString::fromLatin1(e.keys), QKeySequence::PortableText));
    a->setCheckable(e.flags & kMenuChecked);
    a->setEnabled(!(e.flags & kMenuGreyed));
    const int id = e.id;
    const bool ask = e.flags & kMenuEnabler;
    QObject::connect(a, &QAction::triggered, owner, [target, id, ask] {
        if (ask && !target->commandEnabled(id)) return;
        target->command(id);
    });
    return a;
}

QMenuBar* BuildMenuBar(const MenuData& menu, QWidget* owner, MenuTarget* target) {
    auto* bar = new QMenuBar(owner);
    std::vector<QMenu*> open;  // innermost popup last
    for (std::size_t i = 0; i < menu.count; ++i) {
        const MenuEntry& e = menu.entries[i];
        switch (e.kind) {
        case kMenuPopup: {
            QMenu* popup =
                NewPopup(e, open.empty() ? static_cast<QWidget*>(bar) : open.back(), target);
            if (open.empty())
                bar->addMenu(popup);
            else
                open.back()->addMenu(popup);
            open.push_back(popup);
            break;
        }
        case kMenuEnd:
            if (!open.empty()) open.pop_back();
            break;
        case kMenuSeparator:
            if (!open.empty()) open.back()->addSeparator();
            break;
        case kMenuItem:
            if (!open.empty()) {
                QAction* a = MakeCommandAction(e, owner, target);
                open.back()->addAction(a);
                // Keys of menu items work while the window is active even
                // when the bar is hidden or not in a main window.
                owner->addAction(a);
            }
            break;
        case kMenuAccel: owner->addAction(MakeCommandAction(e, owner, target)); break;
        }
    }
    return bar;
}

QAction* FindMenuAction(QWidget* owner, int id) {
    for (QAction* a : owner->actions())
        if (a->data().toInt() == id && a->data().isValid()) return a;
    return nullptr;
}

void UpdateMenuStates(QMenu* menu, MenuTarget* target) {
    for (QAction* a : menu->actions()) {
        const unsigned flags = Flags(a);
        const int id = a->data().toInt();
        if (flags & kMenuGreyed)
            a->setEnabled(false);
        else if (flags & kMenuEnabler)
            a->setEnabled(target->commandEnabled(id));
        if (flags & kMenuChecked) a->setChecked(target->commandChecked(id));
    }
}
