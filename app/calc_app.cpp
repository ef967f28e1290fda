#include "app/calc_app.h"

#include "app/calc_frame.h"

QIcon ProgramIcon() {
    // The icon is compiled into the program's static library; this keeps it.
    Q_INIT_RESOURCE(icons);
    return QIcon(QStringLiteral(":/icons/CALCICON.png"));
}

TCalc::TCalc(int& argc, char** argv) : app_(argc, argv) {
    QApplication::setApplicationName(QStringLiteral("ordix"));
    // Wayland desktops match the windows to the installed desktop entry by this.
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.ordix.Ordix"));
    QApplication::setWindowIcon(ProgramIcon());
    frame_ = std::make_unique<TCalcFrame>();
    frame_->readSettings();
}

TCalc::~TCalc() = default;

int TCalc::run() {
    if (frame_->settings().maximized)
        frame_->showMaximized();
    else
        frame_->show();
    frame_->openFiles(QApplication::arguments().mid(1));
    return app_.exec();
}
