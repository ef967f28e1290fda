#include "app/poll_context.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMouseEvent>
#include <QWidget>

QtPollContext::QtPollContext() = default;

QtPollContext::~QtPollContext() {
    if (depth_ > 0) qApp->removeEventFilter(this);
}

void QtPollContext::begin(QWidget* window) {
    if (depth_++ > 0) return;
    window_ = window;
    keys_.clear();
    interrupt_ = false;
    qApp->installEventFilter(this);
    sinceFetch_.start();
}

void QtPollContext::end() {
    if (depth_ == 0 || --depth_ > 0) return;
    qApp->removeEventFilter(this);
    keys_.clear();
}

void QtPollContext::fetchEvents() {
    if (depth_ == 0) return;
    if (sinceFetch_.isValid() && sinceFetch_.elapsed() < kPollIntervalMs) return;
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    sinceFetch_.restart();
    if (fetchHook_) fetchHook_();
}

int QtPollContext::PollQuitKey() {
    fetchEvents();
    if (keys_.empty()) return 0;
    const int k = keys_.front();
    keys_.pop_front();
    return k;
}

bool QtPollContext::PollInterrupt() {
    fetchEvents();
    return interrupt_;
}

bool QtPollContext::isCommandKey(const QKeyEvent* key) const {
    const int k = key->key();
    if (k == Qt::Key_Control || k == Qt::Key_Shift || k == Qt::Key_Alt || k == Qt::Key_Meta)
        return false;
    const QKeySequence typed(key->keyCombination());
    for (QWidget* top : QApplication::topLevelWidgets())
        for (const QAction* a : top->findChildren<QAction*>())
            for (const QKeySequence& s : a->shortcuts())
                if (s.matches(typed) == QKeySequence::ExactMatch) return true;
    return false;
}

bool QtPollContext::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // Claiming the key keeps Qt from running its shortcut; the key press
        // that follows is read below.
        event->accept();
        return true;
    case QEvent::Shortcut: keys_.push_back(kQuitKey); return true;
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
        int code = key->key();
        if (code == Qt::Key_Q || isCommandKey(key)) code = kQuitKey;
        keys_.push_back(code);
        return true;
    }
    case QEvent::KeyRelease: return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (static_cast<QMouseEvent*>(event)->button() == Qt::RightButton) interrupt_ = true;
        return true;
    case QEvent::MouseButtonRelease:
    case QEvent::Wheel:
    case QEvent::ContextMenu: return true;
    case QEvent::NonClientAreaMouseButtonPress:
    case QEvent::NonClientAreaMouseButtonDblClick: interrupt_ = true; return false;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
        if (watched->isWidgetType() && static_cast<QWidget*>(watched)->isWindow() &&
            static_cast<QWidget*>(watched)->isVisible())
            interrupt_ = true;
        return false;
    case QEvent::Close:
        interrupt_ = true;
        event->ignore();
        return true;
    default: return false;
    }
}
