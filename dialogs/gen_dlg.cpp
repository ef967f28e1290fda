#include "dialogs/gen_dlg.h"

#include <QGuiApplication>
#include <QRandomGenerator>
#include <QScreen>

TGenDlg::TGenDlg(QWidget* parent, QPoint* remembered) : QDialog(parent), remembered_(remembered) {}

QPoint TGenDlg::DefaultPosition() {
    QRandomGenerator* rng = QRandomGenerator::global();
    return QPoint(480 + rng->bounded(50), 300 + rng->bounded(50));
}

void TGenDlg::showEvent(QShowEvent* e) {
    if (!placed_) {
        placed_ = true;
        adjustSize();
        QPoint at = remembered_ && !remembered_->isNull() ? *remembered_ : DefaultPosition();
        // Keep the whole dialog on the screen it opens on (small screens,
        // positions remembered on a larger one).
        QScreen* screen = QGuiApplication::screenAt(at);
        if (!screen) screen = QGuiApplication::primaryScreen();
        if (screen) {
            const QRect area = screen->availableGeometry();
            const QSize size = frameGeometry().size();
            at.setX(qMax(area.left(), qMin(at.x(), area.right() + 1 - size.width())));
            at.setY(qMax(area.top(), qMin(at.y(), area.bottom() + 1 - size.height())));
        }
        move(at);
    }
    QDialog::showEvent(e);
}

void TGenDlg::done(int r) {
    if (remembered_) *remembered_ = pos();
    QDialog::done(r);
}
