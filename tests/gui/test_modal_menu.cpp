// The modal seam and the menu builder: what every window is built on.
#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include "dialogs/inp_dlg.h"
#include "dialogs/msg_dlg.h"
#include "scripted_modal.h"
#include "windows/menu_builder.h"

namespace {

const MenuEntry kSample[] = {
    {kMenuPopup, 0, "&File", nullptr, 0},
    {kMenuItem, 11, "&Plain", "Ctrl+K", 0},
    {kMenuItem, 12, "&Guarded", "F7", kMenuEnabler},
    {kMenuSeparator, 0, nullptr, nullptr, 0},
    {kMenuPopup, 0, "&More", nullptr, 0},
    {kMenuItem, 13, "&Option", nullptr, kMenuChecked},
    {kMenuItem, 14, "&Never", nullptr, kMenuGreyed},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    {kMenuEnd, 0, nullptr, nullptr, 0},
    {kMenuAccel, 15, nullptr, "F12", 0},
};
const MenuData kSampleMenu = MakeMenu("SAMPLE", kSample);

struct Recorder : MenuTarget {
    QList<int> ran;
    bool guardOpen = false;
    bool option = false;
    void command(int id) override { ran.append(id); }
    bool commandEnabled(int id) override { return id != 12 || guardOpen; }
    bool commandChecked(int id) override { return id == 13 && option; }
};

// Runs f once the next modal dialog is up, then closes it with button id.
void ClickWhenShown(int buttonId) {
    QTimer::singleShot(0, [buttonId] {
        QWidget* w = QApplication::activeModalWidget();
        QVERIFY(w);
        auto* b = w->findChild<QPushButton*>(QStringLiteral("ctl%1").arg(buttonId));
        QVERIFY(b);
        b->click();
    });
}

}  // namespace

class TestModalMenu : public QObject {
    Q_OBJECT
private slots:
    void menuStructureOfEveryWindowIsWellFormed() {
        QCOMPARE(MenuDataProblem(kTextMenu), nullptr);
        QCOMPARE(MenuDataProblem(kNoteMenu), nullptr);
        const MenuEntry unbalanced[] = {{kMenuPopup, 0, "&A", nullptr, 0}};
        QVERIFY(MenuDataProblem(MakeMenu("X", unbalanced)) != nullptr);
        const MenuEntry loose[] = {{kMenuItem, 3, "&B", nullptr, 0}};
        QVERIFY(MenuDataProblem(MakeMenu("X", loose)) != nullptr);
    }

    void builtBarHasItemsKeysAndNesting() {
        QMainWindow w;
        Recorder r;
        w.setMenuBar(BuildMenuBar(kSampleMenu, &w, &r));
        const QList<QAction*> top = w.menuBar()->actions();
        QCOMPARE(top.size(), 1);
        QCOMPARE(top[0]->text(), QStringLiteral("&File"));
        QMenu* file = top[0]->menu();
        QCOMPARE(file->actions().size(), 4);   // two items, separator, submenu
        QVERIFY(file->actions()[2]->isSeparator());
        QMenu* more = file->actions()[3]->menu();
        QVERIFY(more);
        QCOMPARE(more->actions().size(), 2);
        QCOMPARE(FindMenuAction(&w, 11)->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_K));
        QCOMPARE(FindMenuAction(&w, 15)->shortcut(), QKeySequence(Qt::Key_F12));
        QCOMPARE(FindMenuAction(&w, 99), nullptr);
    }

    void keysRouteToTargetAndRespectEnablers() {
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
        r.guardOpen = true;                // becomes enabled without a menu refresh
        QTest::keyClick(&w, Qt::Key_F7);
        QCOMPARE(r.ran.last(), 12);
    }

    void openingMenuShowsEnabledAndCheckedStates() {
        QMainWindow w;
        Recorder r;
        w.setMenuBar(BuildMenuBar(kSampleMenu, &w, &r));
        QMenu* file = w.menuBar()->actions()[0]->menu();
        QMenu* more = file->actions()[3]->menu();
        r.option = true;
        UpdateMenuStates(file, &r);
        UpdateMenuStates(more, &r);
        QVERIFY(!FindMenuAction(&w, 12)->isEnabled());
        QVERIFY(FindMenuAction(&w, 13)->isChecked());
        QVERIFY(!FindMenuAction(&w, 14)->isEnabled());
        FindMenuAction(&w, 14)->trigger();   // greyed: nothing runs
        QVERIFY(r.ran.isEmpty());
    }

    void scriptedModalAnswersInOrderAndRecords() {
        ScriptedModal modal;
        modal.answer(kMbNo);
        modal.answerText("abcdef");
        QCOMPARE(AskMessage(nullptr, "careful!", "sure?", kMsgYesNo), int(kMbNo));
        QString text = "old";
        QVERIFY(TheModal().oneInput(nullptr, "input", "prompt", &text, 3));
        QCOMPARE(text, QStringLiteral("abc"));   // cut to the field's size
        QCOMPARE(modal.defaults, QStringList{"old"});
        ShowError(nullptr, 11);
        QCOMPARE(modal.lastError(), 11);
        QCOMPARE(modal.calls.last().caption, QStringLiteral("hmm ..."));
        QCOMPARE(modal.calls.last().text, QStringLiteral("cannot open file"));
        QVERIFY(!TheModal().oneInput(nullptr, "c", "p", &text, 9));   // nothing queued
        QCOMPARE(modal.unexpected, 1);
        QCOMPARE(text, QStringLiteral("abc"));
    }

    void scriptedModalRestoresPreviousOnExit() {
        Modal* real = &TheModal();
        {
            ScriptedModal outer;
            {
                ScriptedModal inner;
                QCOMPARE(&TheModal(), static_cast<Modal*>(&inner));
            }
            QCOMPARE(&TheModal(), static_cast<Modal*>(&outer));
        }
        QCOMPARE(&TheModal(), real);
    }

    void realMessageBoxesAnswerTheirCodes() {
        struct Case { int kind, button, answer; };
        const Case cases[] = {{kMsgOk, 1, kMbOk},          {kMsgYesNo, 88, kMbYes},
                              {kMsgYesNo, 89, kMbNo},      {kMsgYesNoCancel, 2, kMbCancel},
                              {kMsgYesNoCancel, 89, kMbNo}};
        for (const Case& c : cases) {
            ClickWhenShown(c.button);
            QCOMPARE(AskMessage(nullptr, "careful!", "text", c.kind), c.answer);
        }
        TMsgDlg box(nullptr, "c", "t", kMsgYesNo);
        QVERIFY(!box.findChild<QPushButton*>("ctl2"));   // yes/no has no cancel button
        QTimer::singleShot(0, [&box] { box.reject(); });  // Escape
        QCOMPARE(box.exec(), int(kMbCancel));
    }

    void realInputDialogsReturnTextOnlyOnOk() {
        QTimer::singleShot(0, [] {
            auto* dlg = qobject_cast<TInpDlg*>(QApplication::activeModalWidget());
            QVERIFY(dlg);
            auto* edit = dlg->findChild<QLineEdit*>("ctl211");
            QCOMPARE(edit->maxLength(), 5);
            QCOMPARE(edit->text(), QStringLiteral("12"));
            edit->setText("toolong");   // the field keeps five characters
            dlg->findChild<QPushButton*>("ctl1")->click();
        });
        QString t = "12";
        QVERIFY(TheModal().oneInput(nullptr, "input", "search for", &t, 5));
        QCOMPARE(t, QStringLiteral("toolo"));
        ClickWhenShown(2);
        QVERIFY(!TheModal().oneInput(nullptr, "input", "search for", &t, 5));
        QCOMPARE(t, QStringLiteral("toolo"));

        QTimer::singleShot(0, [] {
            QWidget* dlg = QApplication::activeModalWidget();
            QCOMPARE(dlg->findChild<QPushButton*>("ctl1")->text(), QStringLiteral("go"));
            dlg->findChild<QLineEdit*>("ctl212")->setText("second");
            dlg->findChild<QPushButton*>("ctl1")->click();
        });
        QString a = "first", b;
        QVERIFY(TheModal().twoInput(nullptr, "c", "one", "two", &a, 10, &b, 10, "go", ""));
        QCOMPARE(a, QStringLiteral("first"));
        QCOMPARE(b, QStringLiteral("second"));
    }
};

QTEST_MAIN(TestModalMenu)
#include "test_modal_menu.moc"
