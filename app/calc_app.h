// TCalc: the application object. It makes the main frame, places it from the
// settings file and runs the event loop; the frame writes the settings back
// when it closes.
#pragma once

#include <QApplication>
#include <QIcon>
#include <QPalette>

#include <memory>

class TCalcFrame;

// CALCICON, the icon every window of the program shows.
QIcon ProgramIcon();

// The dark palette the program takes when ORDIX_DARK is set (to anything but
// "" or "0"), with the Fusion style, which draws every palette role.
QPalette DarkPalette();
bool DarkRequested();

class TCalc {
public:
    TCalc(int& argc, char** argv);
    ~TCalc();
    int run();
    TCalcFrame* frame() const { return frame_.get(); }

private:
    QApplication app_;
    std::unique_ptr<TCalcFrame> frame_;
};
