// The polls of the desktop program: what each kind of event makes of a run.
#include <QAction>
#include <QMainWindow>
#include <QMouseEvent>
#include <QtTest>

#include "app/poll_context.h"

namespace {

// Polls until the events posted so far have been fetched (the context looks
// at the queue at most every few milliseconds).
int NextKey(QtPollContext& ctx) {
    QTest::qWait(2 * QtPollContext::kPollIntervalMs);
    return ctx.PollQuitKey();
}

}  // namespace

class TestPollContext : public QObject {
    Q_OBJECT
private slots:
    void keysAreReadOneAtATime() {
        QMainWindow w;
        auto* calc = new QAction(&w);
        calc->setShortcut(QKeySequence("Ctrl+C"));
        bool ran = false;
        connect(calc, &QAction::triggered, [&] { ran = true; });
        w.addAction(calc);
        w.show();
        QtPollContext ctx;
        PollScope scope(&ctx, &w);
        QCoreApplication::postEvent(&w, new QKeyEvent(QEvent::KeyPress, Qt::Key_X, {}, "x"));
        QCoreApplication::postEvent(&w, new QKeyEvent(QEvent::KeyPress, Qt::Key_Q, {}, "q"));
        QCoreApplication::postEvent(
            &w, new QKeyEvent(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier, ""));
        QCoreApplication::postEvent(
            &w, new QKeyEvent(QEvent::KeyPress, Qt::Key_D, Qt::ControlModifier, ""));
        QCOMPARE(NextKey(ctx), int('X'));     // other keys are read and ignored
        QCOMPARE(ctx.PollQuitKey(), kQuitKey);   // q reads as Q
        QCOMPARE(ctx.PollQuitKey(), kQuitKey);   // a command's key reads as Q ...
        QVERIFY(!ran);                           // ... and its command does not run
        QCOMPARE(ctx.PollQuitKey(), int(Qt::Key_D));   // Ctrl+D is no command here
        QCOMPARE(ctx.PollQuitKey(), 0);
        QVERIFY(!ctx.PollInterrupt());
    }

    void windowActionsInterrupt() {
        QMainWindow w;
        w.resize(300, 200);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QtPollContext ctx;
        {
            PollScope scope(&ctx, &w);
            QTest::qWait(10);
            QVERIFY(!ctx.PollInterrupt());
            w.resize(320, 220);   // sizing goes on, and stops the run
            QVERIFY(ctx.PollInterrupt());
            QCOMPARE(w.size(), QSize(320, 220));
        }
        {
            PollScope scope(&ctx, &w);   // a new run starts clean
            QVERIFY(!ctx.PollInterrupt());
            QCoreApplication::postEvent(
                &w, new QMouseEvent(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5),
                                    Qt::RightButton, Qt::RightButton, {}));
            QTest::qWait(2 * QtPollContext::kPollIntervalMs);
            QVERIFY(ctx.PollInterrupt());
            QVERIFY(!w.close());   // no window closes under a running computation
        }
        QVERIFY(!ctx.running());
        QVERIFY(w.close());
    }
};

QTEST_MAIN(TestPollContext)
#include "test_poll_context.moc"
