// What every window is built on: the menu builder, the real modal dialogs
// behind the seam, the standard dialogs, the font mapping, and the polls
// that decide what an event does to a running computation.
#include <QAction>
#include <QCheckBox>
#include <QFontInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSet>
#include <QTimer>
#include <QtTest>

#include "app/poll_context.h"
#include "dialogs/about_dlg.h"
#include "dialogs/inp_dlg.h"
#include "dialogs/lunch_dlg.h"
#include "dialogs/modal.h"
#include "dialogs/msg_dlg.h"
#include "scripted_modal.h"
#include "windows/font_map.h"
#include "windows/font_table.h"
#include "windows/menu_builder.h"

namespace {

const MenuEntry kSample[] = {
    {kMenuPopup, 0, "&File", nullptr, 0},
    {kMenuItem, 11, "&Plain", "Ctrl+K", 0},
    {kMenuItem, 12, "&Guarded", "F7", kMenuEnabler},
    {kMenuItem, 13, "&Option", nullptr, kMenuChecked},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    {kMenuAccel, 15, nullptr, "F12", 0},
};
const MenuData kSampleMenu = MakeMenu("SAMPLE", kSample);

struct Recorder : MenuTarget {
    QList<int> ran;
    bool guardOpen = false;
    void command(int id) override { ran.append(id); }
    bool commandEnabled(int id) override { return id != 12 || guardOpen; }
    bool commandChecked(int id) override { return id == 13; }
};

// Clicks the button ctl<id> of the next modal dialog once it is up.
void ClickWhenShown(int buttonId) {
    QTimer::singleShot(0, [buttonId] {
        QWidget* w = QApplication::activeModalWidget();
        QVERIFY(w);
        w->findChild<QPushButton*>(QStringLiteral("ctl%1").arg(buttonId))->click();
    });
}

// Polls until the events posted so far have been fetched (the context looks
// at the queue at most every few milliseconds).
int NextKey(QtPollContext& ctx) {
    QTest::qWait(2 * QtPollContext::kPollIntervalMs);
    return ctx.PollQuitKey();
}

}  // namespace

class TestDialogs : public QObject {
    Q_OBJECT
private slots:
    void keysAndItemsRouteToTheTargetThroughItsEnablers() {
        QMainWindow w;
        Recorder r;
        w.setMenuBar(BuildMenuBar(kSampleMenu, &w, &r));
        w.setCentralWidget(new QLabel("x"));
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QTest::keyClick(&w, Qt::Key_K, Qt::ControlModifier);
        QTest::keyClick(&w, Qt::Key_F7);   // guarded, enabler says no
        QTest::keyClick(&w, Qt::Key_F12);  // accelerator without item
        QCOMPARE(r.ran, (QList<int>{11, 15}));
        r.guardOpen = true;  // becomes enabled without a menu refresh
        QTest::keyClick(&w, Qt::Key_F7);
        QCOMPARE(r.ran.last(), 12);

        r.guardOpen = false;
        UpdateMenuStates(w.menuBar()->actions()[0]->menu(), &r);
        QVERIFY(!FindMenuAction(&w, 12)->isEnabled());
        QVERIFY(FindMenuAction(&w, 13)->isChecked());
        FindMenuAction(&w, 12)->trigger();  // greyed: nothing runs
        QCOMPARE(r.ran.size(), 3);
    }

    // The real dialogs behind the seam: boxes answer their codes, an input
    // gives its text only on ok, an error shows its text under "hmm ...".
    void realDialogsAnswerThroughTheSeam() {
        struct Case {
            int kind, button, answer;
        };
        const Case cases[] = {
            {kMsgYesNo, 88, kMbYes}, {kMsgYesNoCancel, 2, kMbCancel}, {kMsgYesNoCancel, 89, kMbNo}};
        for (const Case& c : cases) {
            ClickWhenShown(c.button);
            QCOMPARE(AskMessage(nullptr, "careful!", "text", c.kind), c.answer);
        }
        TMsgDlg box(nullptr, "c", "t", kMsgYesNo);
        QTimer::singleShot(0, [&box] { box.reject(); });  // Escape
        QCOMPARE(box.exec(), int(kMbCancel));

        // The dialogs are answered first and checked after they closed, so a
        // failed check cannot leave one open.
        QString preset;
        QTimer::singleShot(0, [&preset] {
            QWidget* dlg = QApplication::activeModalWidget();
            auto* edit = dlg->findChild<QLineEdit*>("ctl211");
            preset = edit->text();
            edit->setText("toolong");  // the field keeps five characters
            dlg->findChild<QPushButton*>("ctl1")->click();
        });
        QString t = "12";
        QVERIFY(TheModal().oneInput(nullptr, "input", "search for", &t, 5));
        QCOMPARE(preset, QStringLiteral("12"));
        QCOMPARE(t, QStringLiteral("toolo"));
        ClickWhenShown(2);
        QVERIFY(!TheModal().oneInput(nullptr, "input", "search for", &t, 5));
        QCOMPARE(t, QStringLiteral("toolo"));

        QString caption = "no box", text;
        QTimer::singleShot(0, [&caption, &text] {
            auto* error = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!error) return;
            caption = error->windowTitle();
            text = error->text();
            error->accept();
        });
        ShowError(nullptr, Result::kCannotSaveFile);
        QCOMPARE(caption + " / " + text, QStringLiteral("hmm ... / cannot save file"));
    }

    // Keys are read one at a time; sizing or a click stops a run, and no
    // window closes under it.
    void pollsReadKeysAndWindowActions() {
        QMainWindow w;
        auto* calc = new QAction(&w);
        calc->setShortcut(QKeySequence("Ctrl+C"));
        bool ran = false;
        connect(calc, &QAction::triggered, [&] { ran = true; });
        w.addAction(calc);
        w.resize(300, 200);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QtPollContext ctx;
        {
            PollScope scope(&ctx, &w);
            auto post = [&](int key, Qt::KeyboardModifiers mods, const char* text) {
                QCoreApplication::postEvent(&w, new QKeyEvent(QEvent::KeyPress, key, mods, text));
            };
            post(Qt::Key_X, {}, "x");
            post(Qt::Key_Q, {}, "q");
            post(Qt::Key_C, Qt::ControlModifier, "");
            post(Qt::Key_D, Qt::ControlModifier, "");
            QCOMPARE(NextKey(ctx), int('X'));             // other keys are read and ignored
            QCOMPARE(ctx.PollQuitKey(), kQuitKey);        // q reads as Q
            QCOMPARE(ctx.PollQuitKey(), kQuitKey);        // a command's key reads as Q ...
            QVERIFY(!ran);                                // ... and its command does not run
            QCOMPARE(ctx.PollQuitKey(), int(Qt::Key_D));  // Ctrl+D is no command here
            QCOMPARE(ctx.PollQuitKey(), 0);
            QVERIFY(!ctx.PollInterrupt());
            w.resize(320, 220);  // sizing goes on, and stops the run
            QVERIFY(ctx.PollInterrupt());
        }
        {
            PollScope scope(&ctx, &w);  // a new run starts clean
            QVERIFY(!ctx.PollInterrupt());
            QCoreApplication::postEvent(
                &w, new QMouseEvent(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5),
                                    Qt::RightButton, Qt::RightButton, {}));
            QTest::qWait(2 * QtPollContext::kPollIntervalMs);
            QVERIFY(ctx.PollInterrupt());
            QVERIFY(!w.close());  // no window closes under a running computation
        }
        QVERIFY(!ctx.running());
        QVERIFY(w.close());
    }

    // Lunch shows five dishes and its ok says the kitchen is closed; the
    // about box shows its text, once however often asked.
    void lunchAndAboutRunThroughTheSeam() {
        TLunch dlg(nullptr);
        QSet<QString> shown;
        for (int id = 271; id <= 275; ++id)
            shown.insert(dlg.findChild<QCheckBox*>(QStringLiteral("ctl%1").arg(id))->text());
        QCOMPARE(shown.size(), 5);
        ScriptedModal modal;
        modal.answer(QDialog::Rejected);
        RunLunch(nullptr);
        QCOMPARE(modal.lastError(), 0);
        modal.answer(QDialog::Accepted);
        RunLunch(nullptr);
        QCOMPARE(modal.lastError(), 13);

        modal.answer(QDialog::Accepted);
        modal.onDialog = [](QDialog* d) {
            QCOMPARE(d->findChild<QPlainTextEdit*>("ctl211")->toPlainText(), TAboutDlg::Text());
            ShowAbout(nullptr);  // a second request while open makes no second box
        };
        ShowAbout(nullptr);
        QCOMPARE(modal.count("dialog"), 3);  // two lunches, one about box
    }

    void dialogsOpenNearDefaultOrRememberedPlace() {
        QPoint remembered(20, 30);
        {
            TGenDlg dlg(nullptr, &remembered);
            dlg.resize(100, 60);
            dlg.show();
            QVERIFY(QTest::qWaitForWindowExposed(&dlg));
            QCOMPARE(dlg.pos(), QPoint(20, 30));
            dlg.move(40, 50);
            dlg.accept();
        }
        QCOMPARE(remembered, QPoint(40, 50));
    }

    void fontTableSurvivesTheQtRoundTrip() {
        for (int i = 0; i < kFontTableSize; ++i) {
            const LogFont entry = FontTableEntry(i, 96);
            const QFont font = FontFromLogFont(entry);
            const LogFont back = LogFontFromFont(font, 96);
            QCOMPARE(back.height, entry.height);
            QCOMPARE(QString::fromLatin1(back.faceName), QString::fromLatin1(entry.faceName));
            // A face this machine lacks still gives a usable font of its kind.
            QVERIFY(QFontInfo(font).pixelSize() > 0);
            if (entry.charSet != kSymbolCharSet)  // symbol faces are proportional anyway
                QCOMPARE(QFontInfo(font).fixedPitch(), (entry.pitchAndFamily & 3) == kFixedPitch);
        }
        LogFont f = FontTableEntry(2, 96);
        f.height = -5000;  // from a damaged file
        QCOMPARE(FontFromLogFont(f).pointSize(), 10);
        std::memset(f.faceName, 'A', sizeof f.faceName);  // no terminating zero
        QCOMPARE(FontFromLogFont(f).family().size(), kLogFontFaceChars - 1);
    }
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
