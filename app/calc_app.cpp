#include "app/calc_app.h"

#include <QStyle>

#include "app/calc_frame.h"

QIcon ProgramIcon() {
    // The icon is compiled into the program's static library; this keeps it.
    Q_INIT_RESOURCE(icons);
    // 64 pixels: a title bar's 32 at twice the scale.
    return QIcon(QStringLiteral(":/icons/CALCICON.png"));
}

bool DarkRequested() {
    const QByteArray v = qgetenv("ORDIX_DARK");
    return !v.isEmpty() && v != "0";
}

QPalette DarkPalette() {
    const QColor window(53, 53, 53), base(35, 35, 35), text(230, 230, 230);
    const QColor dimmed(128, 128, 128), accent(42, 130, 218);
    QPalette p;
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, window);
    p.setColor(QPalette::ToolTipBase, window);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, dimmed);
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, window);
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::BrightText, QColor(255, 90, 90));
    p.setColor(QPalette::Light, QColor(80, 80, 80));
    p.setColor(QPalette::Midlight, QColor(66, 66, 66));
    p.setColor(QPalette::Mid, QColor(40, 40, 40));
    p.setColor(QPalette::Dark, QColor(25, 25, 25));
    p.setColor(QPalette::Shadow, QColor(10, 10, 10));
    p.setColor(QPalette::Link, QColor(90, 160, 240));
    p.setColor(QPalette::LinkVisited, QColor(170, 130, 230));
    p.setColor(QPalette::Highlight, accent);
    p.setColor(QPalette::HighlightedText, Qt::white);
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        p.setColor(QPalette::Disabled, role, dimmed);
    p.setColor(QPalette::Disabled, QPalette::Highlight, QColor(80, 80, 80));
    return p;
}

TCalc::TCalc(int& argc, char** argv) : app_(argc, argv) {
    QApplication::setApplicationName(QStringLiteral("ordix"));
    // Wayland desktops match the windows to the installed desktop entry by this.
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.ordix.Ordix"));
    QApplication::setWindowIcon(ProgramIcon());
    if (DarkRequested()) {
        QApplication::setStyle(QStringLiteral("Fusion"));
        QApplication::setPalette(DarkPalette());
    }
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
