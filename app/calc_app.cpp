#include "app/calc_app.h"

#include "app/calc_frame.h"

TCalc::TCalc(int& argc, char** argv) : app_(argc, argv) {
    QApplication::setApplicationName(QStringLiteral("ordix"));
    frame_ = std::make_unique<TCalcFrame>();
    frame_->readSettings();
}

TCalc::~TCalc() = default;

int TCalc::run() {
    if (frame_->settings().maximized)
        frame_->showMaximized();
    else
        frame_->show();
    return app_.exec();
}
