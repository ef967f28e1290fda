// The main frame driven as a user would, through its menus, keys and the
// dialogs they open, down to the list windows and their captions.
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <cstdlib>
#include <string>

#include "app/calc_app.h"
#include "app/calc_frame.h"
#include "app/label_tables.h"
#include "app/list_commands.h"
#include "bigint/bigint.h"
#include "dialogs/batc_dlg.h"
#include "dialogs/calc_dlg.h"
#include "dialogs/conv_dlg.h"
#include "dialogs/hail_dlg.h"
#include "dialogs/heron_dlg.h"
#include "dialogs/quads_dlg.h"
#include "dialogs/recur_dlg.h"
#include "io/num_file.h"
#include "io/settings.h"
#include "resources/menus_frame.h"
#include "scripted_modal.h"
#include "support/test_support.h"
#include "windows/help_win.h"
#include "windows/note_win.h"
#include "windows/num_win.h"
#include "windows/table_win.h"
#include "windows/text_win.h"

namespace {

constexpr int kA = 1, kB = 2, kC = 3, kD = 4, kN = 14;

// The decimal text of a label's numerator ("" when empty).
std::string Text(TCalcFrame& f, int label) {
    const NumberValue* v = f.model().Variable(label);
    return v ? Text(&v->numerator) : std::string();
}

int Calculate(TCalcFrame& f, const QString& formula, int label) {
    f.calcDialog()->formulaEdit()->setText(formula);
    f.calcDialog()->labelBox()->setCurrentIndex(label - 1);
    return f.calcDialog()->create();
}

QStringList ViewItems(TCalcFrame& f) {
    QStringList texts;
    for (QAction* a : f.menuBar()->actions().at(kViewMenuIndex)->menu()->actions())
        texts << (a->isSeparator() ? QString("-") : a->text());
    return texts;
}

void Trigger(TCalcFrame& f, int id) {
    QAction* a = FindMenuAction(&f, id);
    QVERIFY(a);
    if (a->isEnabled() && f.commandEnabled(id)) a->trigger();
}

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
    QCoreApplication::postEvent(to,
                                new QKeyEvent(QEvent::KeyPress, Qt::Key_Q, Qt::NoModifier, "q"));
}

}  // namespace

class TestFrame : public QObject {
    Q_OBJECT
private slots:
    void init() { qputenv("ORDIX_INI_DIR", QByteArray(dir_.path().toLocal8Bit())); }

    void calculateStoresAndShowsTheResult() {
        QCOMPARE(ProgramIcon().pixmap(64, 64).size(), QSize(64, 64));  // compiled in
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(f.calcDialog()->create(), 0);  // the presets: 2^100 into N
        TNumWin* n = f.numWin(kN);
        QVERIFY(n && n->isVisible());
        QCOMPARE(n->windowTitle(), QString("N [number14.num] [digits: 31]"));
        QCOMPARE(n->editor()->toPlainText(), QString("1267650600228229401496703205376"));
        QCOMPARE(n->notebook()->text(), QString("2^100"));
        QCOMPARE(Calculate(f, "N/3", kA), 0);  // a fraction keeps its denominator
        QCOMPARE(f.numWin(kA)->displayState(), int(kShowFraction));
        QCOMPARE(ViewItems(f).mid(2, 2), QStringList({"&A ...", "&N ..."}));

        QCOMPARE(Calculate(f, "Q+1", kB), 2);  // no such variable
        QCOMPARE(modal.lastError(), 2);
        QVERIFY(!f.numWin(kB));

        // Overwriting asks; No changes nothing, a failure leaves the value.
        QCOMPARE(Calculate(f, "12", kC), 0);
        modal.answer(kMbNo);
        QVERIFY(Calculate(f, "1/0", kC) != 0);
        QCOMPARE(modal.calls.last().text, QString("overwrite existing file?"));
        QCOMPARE(modal.count("error"), 1);  // refused before anything was computed
        QCOMPARE(Text(f, kC), std::string("12"));
        modal.answer(kMbYes);
        QCOMPARE(Calculate(f, "1/0", kC), 104);
        QCOMPARE(Text(f, kC), std::string("12"));
        modal.answer(kMbYes);
        QCOMPARE(Calculate(f, "C*C", kC), 0);
        QCOMPARE(Text(f, kC), std::string("144"));
    }

    void modulusModeFollowsItsWindow() {
        ScriptedModal modal;
        TCalcFrame f;
        modal.answerText("3+4");
        f.command(kCmdModulus);
        TNumWin* m = f.numWin(kModulusLabel);
        QVERIFY(m->isVisible());
        QCOMPARE(m->windowTitle(), QString("modulus [modulus.num] [digits: 1]"));
        QCOMPARE(Calculate(f, "10+3", kA), 0);
        QCOMPARE(Text(f, kA), std::string("6"));

        modal.answerCancel();  // cancel ends the mode
        f.command(kCmdModulus);
        QVERIFY(!m->isVisible() && !f.model().ModulusMode());
        f.command(kCmdViewModulus);  // showing the window brings the mode back
        QVERIFY(f.model().ModulusMode());
        m->command(kNumClose);
        QVERIFY(!f.model().ModulusMode());

        modal.answerText("0");  // refused: nothing changes
        f.command(kCmdModulus);
        QCOMPARE(modal.lastError(), 14);
        QCOMPARE(f.model().ModulusFormula(), std::string("3+4"));
    }

    // Reading a long pasted number polls: Q stops it and no label is taken.
    void pasteTakesTheFirstFreeLabel() {
        ScriptedModal modal;
        TCalcFrame f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        PostQ(&f);
        QCOMPARE(f.pasteNumber(QString(20'000'000, QLatin1Char('7'))), -1);
        QCOMPARE(f.model().FirstFreeLabel(), 1);
        QCOMPARE(Calculate(f, "1", kA), 0);
        QCOMPARE(f.pasteNumber(" -12,345\n"), 0);
        QCOMPARE(Text(f, kB), std::string("-12345"));
        QGuiApplication::clipboard()->setText("777");
        QVERIFY(f.commandEnabled(kCmdPaste));
        f.command(kCmdPaste);
        QCOMPARE(Text(f, kC), std::string("777"));
        for (int label = 4; label <= 26; ++label) QCOMPARE(f.pasteNumber("1"), 0);
        QVERIFY(!f.commandEnabled(kCmdPaste) && !f.commandEnabled(kCmdOpen));
    }

    void numberFilesGoThroughTheWindows() {
        ScriptedModal modal;
        const QString path = dir_.filePath("seven.num");
        {
            TCalcFrame f;
            QCOMPARE(Calculate(f, "-7/2", kC), 0);
            QFont font("DejaVu Serif");
            font.setPixelSize(19);
            modal.answerFont(font);
            f.numWin(kC)->command(kNumFont);
            modal.answerFile(path);
            f.numWin(kC)->command(kNumSaveAs);
            QCOMPARE(f.numWin(kC)->windowTitle(), QString("C [seven.num] [digits: 1/1]"));
        }
        TCalcFrame g;
        modal.answerFile(path);
        g.command(kCmdOpen);
        TNumWin* w = g.numWin(kC);
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->editor()->toPlainText(), QString("-7\n-\n2"));
        QCOMPARE(w->notebook()->text(), QString("-7/2"));
        QCOMPARE(w->fileName(), path + ".num");  // the name grows on purpose
        QCOMPARE(w->logFont().height, -19);      // the file's font
        QCOMPARE(g.openNumberFile(path), 0);     // C is taken: the first free label
        QCOMPARE(Text(g, kA), std::string("-7"));
        modal.answerFile(dir_.filePath("absent.num"));
        g.command(kCmdOpen);
        QCOMPARE(modal.lastError(), 11);
        // Files named at start-up open the same way, each refusal shown.
        g.openFiles({dir_.filePath("absent.num"), path});
        QCOMPARE(modal.count("error"), 2);
        QCOMPARE(Text(g, kB), std::string("-7"));
    }

    // Files named at start-up are read while the window manager places the
    // new frame: its moves must not stop them, Q must, quietly, and leave
    // the files after it unopened. 32M limbs take far longer than the polls'
    // interval to read.
    void startUpFilesStopForQAlone() {
        ScriptedModal modal;
        const QString path = dir_.filePath("long.num");
        NumFile file;
        file.label = 4;
        file.numerator.limbs.assign(std::size_t(1) << 25, 1234);
        QCOMPARE(WriteNumFile(QFile::encodeName(path).toStdString(), file), 0);
        TCalcFrame f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QCoreApplication::postEvent(&f, new QMoveEvent(f.pos() + QPoint(30, 30), f.pos()));
        f.openFiles({path});
        QVERIFY(f.numWin(kD));
        PostQ(&f);
        f.openFiles({path, dir_.filePath("absent.num")});
        QCOMPARE(modal.count("error"), 0);
        QVERIFY(!f.numWin(kA));  // where a second copy would go
    }

    void settingsAreWrittenAtCloseAndReadAtStart() {
        QFile::remove(dir_.filePath("ox.ini"));
        {
            ScriptedModal modal;
            TCalcFrame f;
            f.setGeometry(100, 120, 500, 150);
            f.show();
            QCOMPARE(Calculate(f, "1", kA), 0);
            f.command(kCmdExit);
            QVERIFY(!f.isVisible());
            QVERIFY(!f.numWin(kA)->isVisible());  // the number windows go with it
        }
        TCalcFrame g;
        g.readSettings();
        QCOMPARE(g.geometry(), QRect(100, 120, 500, 150));
    }

    // A power of a million digits, seconds of work at any speed, is stopped
    // by Q typed while it runs; the target keeps its value and the caption
    // said what to do.
    void qStopsALongProduct() {
        ScriptedModal modal;
        TCalcFrame f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QCOMPARE(Calculate(f, "7^120000", kA), 0);
        QCOMPARE(Calculate(f, "5", kB), 0);
        QString captionDuring;
        bool secondStarted = false;
        QTimer::singleShot(0, &f, [&] {
            captionDuring = f.calcDialog()->windowTitle();
            secondStarted = f.calcDialog()->create() != 0;  // refused while busy
            f.command(kCmdCalculate);
            PostQ(&f);
        });
        modal.answer(kMbYes);
        QCOMPARE(Calculate(f, "(A*A)^6", kB), -1);
        QCOMPARE(captionDuring, QString("press Q to quit"));
        QVERIFY(!secondStarted);
        QCOMPARE(f.calcDialog()->windowTitle(), QString("calculation"));
        QCOMPARE(modal.lastError(), -1);
        QCOMPARE(Text(f, kB), std::string("5"));
    }

    // A shown table of B collects B after every step of a Fibonacci
    // recursion; a hidden table and a label without a table collect nothing.
    void tableLogsAFibonacciRecursion() {
        ScriptedModal modal;
        TCalcFrame f;
        QVERIFY(!f.commandEnabled(kCmdTable));  // no label in use
        QCOMPARE(Calculate(f, "1", kA), 0);
        QCOMPARE(Calculate(f, "1", kB), 0);

        modal.answerText(" b ");
        Trigger(f, kCmdTable);
        QCOMPARE(modal.defaults.last(), QString("A"));  // the first label in use
        TTableWin* t = f.tables().table(kB);
        QVERIFY(t && t->isVisible());
        QCOMPARE(t->windowTitle(), QString("table B"));

        QVERIFY(!f.commandEnabled(kCmdOneStep) && !f.commandEnabled(kCmdManySteps));
        Trigger(f, kCmdDefine);
        TRecurDlg* d = f.recursionDialog();
        QVERIFY(d && d->isVisible());
        d->showHelp();  // a help window of the dialog's own, under its caption
        const auto* help = d->findChild<THelpWin*>();
        QVERIFY(help && help->isVisible());
        QCOMPARE(help->windowTitle(), QString("recursion"));
        for (const char* step : {"B=A+B", "A=B"}) {
            d->entryEdit()->setText(step);
            QCOMPARE(d->enter(), 0);
        }
        Trigger(f, kCmdOneStep);
        modal.answerText("4");
        Trigger(f, kCmdManySteps);
        QCOMPARE(t->text(), QString("  0: 2\r\n  1: 3\r\n  2: 5\r\n  3: 8\r\n  4: 13\r\n"));
        QVERIFY(!f.tables().table(kA));

        t->close();  // hides it: the rows stop and stay
        Trigger(f, kCmdOneStep);
        QCOMPARE(t->rowCounter(), 5);
        modal.answerText("B");
        Trigger(f, kCmdTable);  // the same window again, rows and all
        QCOMPARE(f.tables().table(kB), t);
        Trigger(f, kCmdOneStep);
        QVERIFY(t->text().endsWith("  4: 13\r\n  5: 34\r\n"));  // 21 came while hidden
    }

    // Batch, Hailstone and Base conversion open from their items and run
    // under the frame; Batch writes into the frame's batch window.
    void calculationDialogsRunFromTheMenu() {
        ScriptedModal modal;
        TCalcFrame f;
        Trigger(f, kCmdBatch);
        TBatcDlg* d = f.batchDialog();
        QCOMPARE(d->calculate(), 0);
        TTableWin* w = f.tables().batchWindow();
        QVERIFY(w && w->isVisible());
        d->formulaEdit()->setText("A*B");
        QCOMPARE(d->calculate(), 0);  // the same window, new rows
        QCOMPARE(f.tables().batchWindow(), w);
        QCOMPARE(w->windowTitle(), QString("batch calculation [A*B]"));
        QVERIFY(!w->text().contains("1024"));

        Trigger(f, kCmdHailstone);
        THailDlg* h = f.hailstoneDialog();
        QCOMPARE(Calculate(f, "27", h->seedBox()->currentIndex() + 1), 0);
        QCOMPARE(h->calculate(), 0);
        QVERIFY(!f.busy());
        Trigger(f, kCmdBaseConversion);
        TConvDlg* c = f.conversionDialog();
        c->inputEdit()->setText("11111111");
        QCOMPARE(c->convert(), 0);
        QCOMPARE(c->outputEdit()->text(), QString("255"));
        QCOMPARE(modal.count("error"), 0);
    }

    // Each list asks with its noun as caption (a one-number list also with
    // its prompt and length) and its summary becomes the list window's
    // caption; the cyclotomic index offered first is 105, later the last one
    // accepted.
    void listsReachTheListWindow() {
        ScriptedModal modal;
        TCalcFrame f;
        const struct {
            int id;
            QString answer, caption, summary, prompt = {};
            int chars = 0;  // 0: a list with no prompt to check
        } cases[] = {
            {kCmdPrimes, "10", "primes", "4 primes", "largest prime at most", 29},
            {kCmdDivisors, "360", "divisor list", "divisor list [360] : 24",
             "input < = 2556298938649", 19},
            {kCmdSoddyCircles, "3", "Soddy circles", "Soddy circles"},
            {kCmdSoddySpheres, "3", "Soddy spheres", "Soddy spheres"},
            {kCmdSoddyLine, "50", "circles on a line", "circles on a line"},
            {kCmdSoddyPlane, "50", "spheres on a plane", "spheres on a plane"},
            {kCmdTetrahedra, "5", "rational tetrahedra", "rational tetrahedra"},
            {kCmdInscribedQuads, "20", "inscribed quadrilaterals", "inscribed quadrilaterals"},
            {kCmdCircumscribedQuads, "20", "circumscribed quadrilaterals",
             "circumscribed quadrilaterals"},
            {kCmdCyclotomic, "6", "cyclotomic polynomial", "cyclotomic polynomial [6]",
             "index [ < 65536 ]", 49},
        };
        for (const auto& c : cases) {
            modal.calls.clear();
            Choose(f, modal, c.id, c.answer);
            QCOMPARE(modal.calls.size(), 1);
            QCOMPARE(modal.calls[0].caption, c.caption);
            QVERIFY(f.lists().listWindow()->isVisible());
            if (!c.chars) {
                QVERIFY2(ListCaption(f).startsWith(c.summary), qPrintable(ListCaption(f)));
                continue;
            }
            QCOMPARE(modal.calls[0].text, c.prompt);
            QCOMPARE(modal.calls[0].kind, c.chars);
            QCOMPARE(ListCaption(f), c.summary);
        }
        QCOMPARE(modal.defaults.first(), QString("1598843"));
        QCOMPARE(modal.defaults.last(), QString("105"));
        QVERIFY(ListText(f).startsWith("expo  coef\r\n"));
        modal.answerCancel();
        f.command(kCmdCyclotomic);
        QCOMPARE(modal.defaults.last(), QString("6"));
        modal.answerTexts("-1 2 2 3", "20");
        f.command(kCmdCurvatures);
        QVERIFY(ListCaption(f).startsWith("curvatures"));
        QCOMPARE(modal.count("error"), 0);

        // Refusals come as messages and leave the list window as it was.
        const QString caption = ListCaption(f), text = ListText(f);
        const struct {
            int id;
            QString answer;
            int code;
        } refused[] = {{kCmdCyclotomic, "65536", 17},
                       {kCmdPrimes, "1598844", 17},
                       {kCmdDivisors, "1", 10},
                       {kCmd120Degrees, "461", 17}};
        for (const auto& c : refused) {
            Choose(f, modal, c.id, c.answer);
            QCOMPARE(modal.lastError(), c.code);
        }
        QCOMPARE(f.lists().cyclotomicIndex(), 6u);  // a refused index is not remembered
        modal.answerTexts("1 1 1 1", "20");         // no Descartes quadruple
        f.command(kCmdCurvatures);
        QCOMPARE(modal.lastError(), 6);
        modal.answerTexts("32045", "7");  // the polygon search's two inputs
        f.command(kCmdPolygons);
        QCOMPARE(modal.lastError(), 17);
        QCOMPARE(modal.count("error"), 6);
        QCOMPARE(ListCaption(f), caption);
        QCOMPARE(ListText(f), text);
    }

    // Factor and Two squares write into the factorization window, a text
    // window apart from the list window.
    void factorAndTwoSquaresShareTheFactorizationWindow() {
        ScriptedModal modal;
        TCalcFrame f;
        Choose(f, modal, kCmdFactor, "360");
        TTextWin* w = f.lists().factorWindow();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QString("prime factorization of 360"));
        QCOMPARE(w->text(), QString("(2^3)*(3^2)*5"));
        QVERIFY(!f.lists().listWindow());
        Choose(f, modal, kCmdTwoSquares, "25");
        QCOMPARE(modal.defaults.last(), QString("32045"));
        QCOMPARE(w->windowTitle(), QString("25 = 2 sums of two squares"));
        QVERIFY(!w->isModified());  // closing it asks nothing
    }

    // The Heronian dialog with its presets lists 1690 triangles and stays
    // open; its bounds are checked before anything runs.
    void listDialogsStayOpenAndCheckTheirBounds() {
        ScriptedModal modal;
        TCalcFrame f;
        f.command(kCmdHeronian);
        THeroDlg* d = f.lists().heronDialog();
        QVERIFY(d && d->isVisible());
        QTest::mouseClick(d->findChild<QPushButton*>("list"), Qt::LeftButton);
        const QString listed("Heronian triangles [11 < perim < 1001] : 1690");
        QCOMPARE(ListCaption(f), listed);
        QVERIFY(d->isVisible());
        for (const char* min : {"500", "11"}) {  // refused before anything runs
            d->minEdit()->setText(min);
            d->maxEdit()->setText("100");
            const int code = d->list();
            QCOMPARE(modal.lastError(), code);
            QCOMPARE(ListCaption(f), listed);
        }
        QCOMPARE(modal.count("error"), 2);
        d->minEdit()->setText("12");
        d->maxEdit()->setText("12");
        d->rightBox()->setChecked(true);
        QCOMPARE(d->list(), 0);
        QCOMPARE(ListText(f).split("\r\n").value(2).simplified(), QString("12 3 4 5 6"));

        // The perpendicular medians dialog keeps its summary as its caption;
        // the quadruples take the bounds and kinds, the fourth choice lists
        // lattice cubes.
        f.command(kCmdPerpendicularMedians);
        TRatMDlg* p = f.lists().perpendicularDialog();
        QCOMPARE(p->list(), 0);
        const QString summary("perpendicular medians [53 < perim < 1001] : 26");
        QCOMPARE(ListCaption(f), summary);
        QCOMPARE(p->windowTitle(), summary);

        f.command(kCmdQuadruples);
        TQuadDlg* q = f.lists().quadDialog();
        QVERIFY(q && q->isVisible());
        q->minEdit()->setText("3");
        q->maxEdit()->setText("3");
        q->ascendingBox()->setChecked(true);
        q->choose(253);
        QCOMPARE(q->list(), 0);
        QCOMPARE(ListCaption(f), QString("Pythagorean quadruples [repeats; length = 3] : 1"));
        QVERIFY(!q->duplicatesBox()->isVisibleTo(q));
        FindMenuAction(&f, kCmdLatticeCubes)->trigger();
        QCOMPARE(q->choice(), 254);
        QVERIFY(!q->minEdit()->isVisibleTo(q) && q->duplicatesBox()->isVisibleTo(q));
        q->maxEdit()->setText("3");
        QCOMPARE(q->list(), 0);
        QVERIFY(ListCaption(f).startsWith("lattice cubes"));
        q->maxEdit()->setText("0");
        QCOMPARE(q->list(), 17);
        QCOMPARE(modal.lastError(), 17);
    }

    // Q typed while a long list runs stops it, a second command is refused
    // meanwhile, and the list's caption counts the rows written. The status
    // line stays quiet for a run shorter than its delay, counts the seconds
    // of a longer one under the name of the menu item that started it, and
    // keeps the last run's time.
    void statusLineNamesAndTimesARun() {
        ScriptedModal modal;
        TCalcFrame f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        auto minWidth = [&] {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            const int width = f.layout()->minimumSize().width();
            QTest::qWait(20);  // a resize it causes must not reach the next run
            return width;
        };
        const int narrowest = minWidth();
        QString during, title;
        auto stopLater = [&] {
            QTimer::singleShot(300, &f, [&] {
                during = f.runStatusText();
                title = f.windowTitle();
                f.command(kCmdPrimes);
                PostQ(&f);
            });
        };
        stopLater();
        Choose(f, modal, kCmdPrimitiveTriples, "197890");  // runs until Q
        QCOMPARE(during, QString());                       // under the one-second delay
        QCOMPARE(title, QString("press Q to quit"));
        QCOMPARE(modal.calls.size(), 1);  // the bound asked, nothing refused
        const int rows = ListCaption(f).section(" : ", 1).toInt();
        QVERIFY(rows > 0);
        QCOMPARE(ListText(f).count("\r\n"), rows + 2);  // the header and its rule
        const QRegularExpression last(
            "^last run: Pythagorean triples: Primitive, \\d+\\.\\d\\d s$");
        QVERIFY2(last.match(f.runStatusText()).hasMatch(), qPrintable(f.runStatusText()));

        // The text never widens the frame: a resize during a run would stop it.
        QCOMPARE(minWidth(), narrowest);
        f.setRunStatusDelay(0);
        stopLater();
        Choose(f, modal, kCmdPrimitiveTriples, "197890");  // runs until Q
        QVERIFY2(QRegularExpression("^running: Pythagorean triples: Primitive, \\d+ s$")
                     .match(during)
                     .hasMatch(),
                 qPrintable(during));
        QVERIFY(last.match(f.runStatusText()).hasMatch());
        QCOMPARE(f.windowTitle(), QString("Ordix"));

        QCOMPARE(Calculate(f, "2^100", kA), 0);
        QVERIFY2(f.runStatusText().startsWith("last run: calculation, "),
                 qPrintable(f.runStatusText()));
    }

    // Under a dark palette the digits and the status line stay readable:
    // black on white while "White backgrounds" is on, the palette's own
    // light text on its window colour when it is off; new windows follow.
    void whiteBackgroundsKeepTextReadable() {
        const QPalette saved = QApplication::palette();
        QApplication::setPalette(DarkPalette());
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(Calculate(f, "1", kA), 0);
        auto contrast = [](const QPalette& p, QPalette::ColorRole fg, QPalette::ColorRole bg) {
            return std::abs(p.color(fg).lightness() - p.color(bg).lightness());
        };
        const QWidget* status = f.findChild<QWidget*>("runStatus");
        QVERIFY(status);
        for (int pass = 0; pass < 2; ++pass) {
            const QPalette digits = f.numWin(kA)->editor()->palette();
            QVERIFY(contrast(digits, QPalette::Text, QPalette::Base) > 150);
            QVERIFY(contrast(status->palette(), QPalette::WindowText, QPalette::Window) > 150);
            f.command(kCmdWhiteBackgrounds);
        }
        auto base = [&](int label) {
            return f.numWin(label)->editor()->palette().color(QPalette::Base);
        };
        QCOMPARE(base(kA), QColor(Qt::white));
        f.command(kCmdWhiteBackgrounds);
        QVERIFY(!f.commandChecked(kCmdWhiteBackgrounds));
        QCOMPARE(base(kA), QApplication::palette().color(QPalette::Window));
        QCOMPARE(Calculate(f, "2", kB), 0);
        QCOMPARE(base(kB), base(kA));
        QApplication::setPalette(saved);
    }

    // Every command of the menu is offered.
    void everyCommandIsOffered() {
        ScriptedModal modal;
        TCalcFrame f;
        QVERIFY(f.model().EnterStep("A=A+1") == 0);
        QCOMPARE(f.pasteNumber("5"), 0);  // View|Table wants a label in use
        QGuiApplication::clipboard()->setText("6");
        for (QAction* top : f.menuBar()->actions()) {
            QList<QMenu*> menus{top->menu()};
            while (!menus.isEmpty()) {
                QMenu* m = menus.takeFirst();
                UpdateMenuStates(m, &f);
                for (QAction* a : m->actions()) {
                    if (a->menu())
                        menus << a->menu();
                    else if (!a->isSeparator())
                        QVERIFY2(a->isEnabled(), qPrintable(a->text()));
                }
            }
        }
    }

private:
    QTemporaryDir dir_;
};

QTEST_MAIN(TestFrame)
#include "test_frame.moc"
