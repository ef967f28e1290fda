// The Lists menu driven from its menu items as a user would: the bounds
// dialogs with their captions, prompts and defaults, refusals, the list and
// factorization windows with their summary captions, the modeless triangle
// and quadruple dialogs, and Q stopping a run.
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>
#include <QtTest>

#include "app/calc_frame.h"
#include "app/list_commands.h"
#include "dialogs/heron_dlg.h"
#include "dialogs/quads_dlg.h"
#include "resources/menus_frame.h"
#include "scripted_modal.h"
#include "windows/table_win.h"
#include "windows/text_win.h"

namespace {

// Answers the next input dialog with `answer` and chooses the menu item.
void Choose(TCalcFrame& f, ScriptedModal& modal, int id, const QString& answer) {
    modal.answerText(answer);
    QAction* a = FindMenuAction(&f, id);
    QVERIFY(a && a->isEnabled());
    a->trigger();
}

// Without the section mark a long list adds.
QString ListCaption(TCalcFrame& f) {
    return f.lists().listWindow() ? f.lists().listWindow()->baseTitle() : QString();
}

QString ListText(TCalcFrame& f) { return f.lists().listWindow()->text(); }

void PostQ(QWidget* to) {
    QCoreApplication::postEvent(to, new QKeyEvent(QEvent::KeyPress, Qt::Key_Q, Qt::NoModifier, "q"));
}

}  // namespace

class TestLists : public QObject {
    Q_OBJECT
private slots:
    void init() { qputenv("ORDIX_INI_DIR", QByteArray(dir_.path().toLocal8Bit())); }

    // Each one-number list asks with its own caption, prompt and length,
    // and its summary becomes the list window's caption.
    void oneNumberListsReachTheListWindow() {
        ScriptedModal modal;
        TCalcFrame f;
        const struct {
            int id;
            QString answer, caption, prompt;
            int chars;
            QString summary;
        } cases[] = {
            {kCmdPrimes, "10", "primes", "largest prime at most", 29, "4 primes"},
            {kCmdDivisors, "360", "divisor list", "input < = 2556298938649", 19,
             "divisor list [360] : 24"},
            {kCmdCyclotomic, "6", "cyclotomic polynomial", "index [ < 65536 ]", 49,
             "cyclotomic polynomial [6]"},
        };
        for (const auto& c : cases) {
            modal.calls.clear();
            Choose(f, modal, c.id, c.answer);
            QCOMPARE(modal.calls.size(), 1);
            QCOMPARE(modal.calls[0].caption, c.caption);
            QCOMPARE(modal.calls[0].text, c.prompt);
            QCOMPARE(modal.calls[0].kind, c.chars);
            QCOMPARE(ListCaption(f), c.summary);
            QVERIFY(f.lists().listWindow()->isVisible());
            QVERIFY(!f.lists().listWindow()->isBusy());
        }
        QCOMPARE(modal.defaults.first(), QString("1598843"));
        QVERIFY(ListText(f).startsWith("expo  coef\r\n"));
    }

    // The cyclotomic index asked for first is 105, later the last one typed.
    void cyclotomicRemembersItsIndex() {
        ScriptedModal modal;
        TCalcFrame f;
        Choose(f, modal, kCmdCyclotomic, "12");
        modal.answerCancel();
        f.command(kCmdCyclotomic);
        QCOMPARE(modal.defaults, QStringList({"105", "12"}));
        Choose(f, modal, kCmdCyclotomic, "65536");   // refused: not remembered
        QCOMPARE(modal.lastError(), 17);
        QCOMPARE(f.lists().cyclotomicIndex(), 12u);
    }

    // Refusals come as messages of the main window and leave the list
    // window as it was; a cancelled dialog changes nothing at all.
    void refusedBoundsChangeNothing() {
        ScriptedModal modal;
        TCalcFrame f;
        Choose(f, modal, kCmdPrimes, "100");
        const QString caption = ListCaption(f), text = ListText(f);
        const struct {
            int id;
            QString answer;
            int code;
        } cases[] = {
            {kCmdPrimes, "1598844", 17}, {kCmdDivisors, "1", 10}, {kCmdAllTriples, "4", 10},
            {kCmd120Degrees, "461", 17},
        };
        for (const auto& c : cases) {
            Choose(f, modal, c.id, c.answer);
            QCOMPARE(modal.lastError(), c.code);
            QCOMPARE(ListCaption(f), caption);
            QCOMPARE(ListText(f), text);
        }

        modal.answerTexts("32045", "7");   // the polygon search's two inputs
        f.command(kCmdPolygons);
        QCOMPARE(modal.lastError(), 17);
        QCOMPARE(ListCaption(f), caption);
    }

    // Factor and Two squares write into the factorization window, a text
    // window apart from the list window.
    void factorAndTwoSquaresShareTheFactorizationWindow() {
        ScriptedModal modal;
        TCalcFrame f;
        Choose(f, modal, kCmdFactor, "360");
        QCOMPARE(modal.calls[0].caption, QString("prime factorization of"));
        TTextWin* w = f.lists().factorWindow();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QString("prime factorization of 360"));
        QCOMPARE(w->text(), QString("(2^3)*(3^2)*5"));
        QVERIFY(!f.lists().listWindow());
        Choose(f, modal, kCmdTwoSquares, "25");
        QCOMPARE(modal.defaults.last(), QString("32045"));
        QCOMPARE(w->windowTitle(), QString("25 = 2 sums of two squares"));
        QVERIFY(!w->isModified());   // closing it asks nothing
    }

    // Q typed while a long list runs stops it: the main caption said what
    // to do, the list shows the rows written and its caption counts them.
    void qStopsALongList() {
        ScriptedModal modal;
        TCalcFrame f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QString during;
        QTimer::singleShot(50, &f, [&] {
            during = f.windowTitle();
            f.command(kCmdPrimes);   // refused while the list runs
            PostQ(&f);
        });
        Choose(f, modal, kCmdAllTriples, "95150");
        QCOMPARE(during, QString("press Q to quit"));
        QCOMPARE(f.windowTitle(), QString("Ordix"));
        QCOMPARE(modal.count("input"), 1);
        QCOMPARE(modal.count("error"), 0);
        const int rows = ListCaption(f).section(" : ", 1).toInt();
        QVERIFY(rows > 0);
        QCOMPARE(ListText(f).count("\r\n"), rows + 2);   // the header and its rule
        QVERIFY(!f.context().running());
    }

    // The Heronian dialog with its presets lists 1690 triangles and stays
    // open; its bounds are checked before anything runs.
    void heronianDialogRunsWithItsPresets() {
        ScriptedModal modal;
        TCalcFrame f;
        f.command(kCmdHeronian);
        THeroDlg* d = f.lists().heronDialog();
        QVERIFY(d && d->isVisible());
        QTest::mouseClick(d->findChild<QPushButton*>("list"), Qt::LeftButton);
        QCOMPARE(ListCaption(f), QString("Heronian triangles [11 < perim < 1001] : 1690"));
        QVERIFY(d->isVisible());
        for (const char* min : {"500", "11"}) {   // refused before anything runs
            d->minEdit()->setText(min);
            d->maxEdit()->setText("100");
            const int code = d->list();
            QCOMPARE(modal.lastError(), code);
            QCOMPARE(ListCaption(f), QString("Heronian triangles [11 < perim < 1001] : 1690"));
        }
        QCOMPARE(modal.count("error"), 2);
        d->minEdit()->setText("12");
        d->maxEdit()->setText("12");
        d->rightBox()->setChecked(true);
        QCOMPARE(d->list(), 0);
        QCOMPARE(ListText(f).split("\r\n").value(2).simplified(), QString("12 3 4 5 6"));
    }

    // The perpendicular medians dialog keeps its summary as its caption.
    void perpendicularMediansDialog() {
        ScriptedModal modal;
        TCalcFrame f;
        f.command(kCmdPerpendicularMedians);
        TRatMDlg* p = f.lists().perpendicularDialog();
        QCOMPARE(p->list(), 0);
        const QString summary("perpendicular medians [53 < perim < 1001] : 26");
        QCOMPARE(ListCaption(f), summary);
        QCOMPARE(p->windowTitle(), summary);
    }

    // The quadruples: the bounds, the kinds, and the fourth choice, lattice
    // cubes, offered but closed.
    void quadruplesDialog() {
        ScriptedModal modal;
        TCalcFrame f;
        f.command(kCmdQuadruples);
        TQuadDlg* d = f.lists().quadDialog();
        QVERIFY(d && d->isVisible());
        d->minEdit()->setText("3");
        d->maxEdit()->setText("3");
        d->ascendingBox()->setChecked(true);
        d->choose(253);
        QCOMPARE(d->list(), 0);
        QCOMPARE(ListCaption(f), QString("Pythagorean quadruples [repeats; length = 3] : 1"));
        QVERIFY(!d->duplicatesBox()->isVisibleTo(d));
        FindMenuAction(&f, kCmdLatticeCubes)->trigger();
        QCOMPARE(d->choice(), 254);
        QVERIFY(!d->minEdit()->isVisibleTo(d) && d->duplicatesBox()->isVisibleTo(d));
        QCOMPARE(d->list(), 13);
        QCOMPARE(modal.lastError(), 13);
    }

    // Every command of the menu that the program has is offered; only the
    // list generators it does not have stay greyed.
    void onlyTheMissingGeneratorsAreGreyed() {
        ScriptedModal modal;
        TCalcFrame f;
        QVERIFY(f.model().EnterStep("A=A+1") == 0);
        QCOMPARE(f.pasteNumber("5"), 0);   // View|Table wants a label in use
        QGuiApplication::clipboard()->setText("6");
        const QList<int> missing = {631, 632, 633, 634, 635, 636, 639, 642};
        for (QAction* top : f.menuBar()->actions()) {
            QList<QMenu*> menus{top->menu()};
            while (!menus.isEmpty()) {
                QMenu* m = menus.takeFirst();
                UpdateMenuStates(m, &f);
                for (QAction* a : m->actions()) {
                    if (a->menu()) {
                        menus << a->menu();
                        continue;
                    }
                    if (a->isSeparator()) continue;
                    const int id = a->data().toInt();
                    QVERIFY2(a->isEnabled() != missing.contains(id),
                             qPrintable(QString::number(id) + " " + a->text()));
                }
            }
        }
    }

private:
    QTemporaryDir dir_;
};

QTEST_MAIN(TestLists)
#include "test_lists.moc"
