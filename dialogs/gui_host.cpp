#include "dialogs/gui_host.h"

#include <QWidget>

#include "dialogs/ui_text.h"
#include "resources/string_ids.h"

GuiHost::~GuiHost() = default;

Result GuiHost::RunCaptioned(const std::function<Result()>& work) {
    QWidget* main = MainWindow();
    const QString caption = main->windowTitle();
    main->setWindowTitle(OxText(kStrPressQToQuit));
    const Result code = RunWatched(work);
    main->setWindowTitle(caption);
    return code;
}
