// TCalc: the application object. It makes the main frame, places it from the
// settings file and runs the event loop; the frame writes the settings back
// when it closes.
#pragma once

#include <QApplication>

#include <memory>

class TCalcFrame;

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
