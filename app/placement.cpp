#include "app/placement.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {
constexpr int kGap = 40;  // below the frame, as the number windows
constexpr int kStepPixels = 24;
}  // namespace

void PlaceBelowFrame(const QWidget* frame, QWidget* window, int step) {
    const QRect f = frame->frameGeometry();
    QPoint at(f.left() + kStepPixels * step, f.bottom() + kGap + kStepPixels * step);
    if (QScreen* screen = frame->screen()) {
        const QRect area = screen->availableGeometry();
        at.setX(qMax(area.left(), qMin(at.x(), area.right() + 1 - window->width())));
        at.setY(qMax(area.top(), qMin(at.y(), area.bottom() + 1 - window->height())));
    }
    window->move(at);
}

void PresentWindow(QWidget* window) {
    window->show();
    window->raise();
    window->activateWindow();
}
