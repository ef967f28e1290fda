// The main frame driven as a user would: Calculate, overwrite, modulus,
// paste, number files, the View menu, the settings file, stopping a long
// computation with Q, label tables and the calculation dialogs its menus open.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <string>

#include "app/calc_app.h"
#include "app/calc_frame.h"
#include "app/label_tables.h"
#include "bigint/bigint.h"
#include "dialogs/batc_dlg.h"
#include "dialogs/conv_dlg.h"
#include "dialogs/hail_dlg.h"
#include "dialogs/recur_dlg.h"
#include "io/settings.h"
#include "resources/menus_frame.h"
#include "scripted_modal.h"
#include "windows/note_win.h"
#include "windows/num_win.h"
#include "windows/table_win.h"

namespace {

constexpr int kA = 1, kB = 2, kC = 3, kN = 14;

// The decimal text of a label's numerator ("" when empty).
std::string Text(TCalcFrame& f, int label) {
    const NumberValue* v = f.model().Variable(label);
    if (!v) return std::string();
    std::string buf(static_cast<size_t>(BigTextLength(&v->numerator)) + 8, '\0');
    BigToText(&v->numerator, buf.data(), static_cast<int32_t>(buf.size()), 0, -1, 0, 0);
    return buf.c_str();
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

void PostKey(QWidget* to, int key, Qt::KeyboardModifiers mods, const QString& text) {
    QCoreApplication::postEvent(to, new QKeyEvent(QEvent::KeyPress, key, mods, text));
}

}  // namespace

class TestFrame : public QObject {
    Q_OBJECT
private slots:
    void init() { qputenv("ORDIX_INI_DIR", QByteArray(dir_.path().toLocal8Bit())); }

    void programIconIsCompiledIn() {
        const QIcon icon = ProgramIcon();
        QVERIFY(!icon.isNull());
        QCOMPARE(icon.pixmap(64, 64).size(), QSize(64, 64));
    }

    void calculateStoresAndShowsTheResult() {
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(f.calcDialog()->create(), 0);   // the presets: 2^100 into N
        TNumWin* n = f.numWin(kN);
        QVERIFY(n && n->isVisible());
        QCOMPARE(n->windowTitle(), QString("N [number14.num] [digits: 31]"));
        QCOMPARE(n->editor()->toPlainText(), QString("1267650600228229401496703205376"));
        QCOMPARE(n->notebook()->text(), QString("2^100"));
        QCOMPARE(Calculate(f, "N/3", kA), 0);   // a fraction keeps its denominator
        QCOMPARE(f.numWin(kA)->displayState(), int(kShowFraction));
        QCOMPARE(ViewItems(f).mid(2, 2), QStringList({"&A ...", "&N ..."}));

        QCOMPARE(Calculate(f, "Q+1", kB), 2);   // no such variable
        QCOMPARE(modal.lastError(), 2);
        QVERIFY(!f.numWin(kB));
    }

    void overwriteAsksAndNoChangesNothing() {
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(Calculate(f, "12", kC), 0);
        modal.answer(kMbNo);
        QVERIFY(Calculate(f, "1/0", kC) != 0);
        QCOMPARE(modal.calls.last().text, QString("overwrite existing file?"));
        QCOMPARE(modal.count("error"), 0);   // refused before anything was computed
        QCOMPARE(Text(f, kC), std::string("12"));
        modal.answer(kMbYes);
        QCOMPARE(Calculate(f, "1/0", kC), 104);   // a failure leaves the value
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

        modal.answerCancel();   // cancel ends the mode
        f.command(kCmdModulus);
        QVERIFY(!m->isVisible() && !f.model().ModulusMode());
        f.command(kCmdViewModulus);   // showing the window brings the mode back
        QVERIFY(f.model().ModulusMode());
        m->command(kNumClose);
        QVERIFY(!f.model().ModulusMode());

        modal.answerText("0");   // refused: nothing changes
        f.command(kCmdModulus);
        QCOMPARE(modal.lastError(), 14);
        QCOMPARE(f.model().ModulusFormula(), std::string("3+4"));
    }

    void pasteTakesTheFirstFreeLabel() {
        ScriptedModal modal;
        TCalcFrame f;
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
        QCOMPARE(w->fileName(), path + ".num");   // the name grows on purpose
        QCOMPARE(w->logFont().height, -19);       // the file's font
        QCOMPARE(g.openNumberFile(path), 0);      // C is taken: the first free label
        QCOMPARE(Text(g, kA), std::string("-7"));
        modal.answerFile(dir_.filePath("absent.num"));
        g.command(kCmdOpen);
        QCOMPARE(modal.lastError(), 11);
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
            QVERIFY(!f.numWin(kA)->isVisible());   // the number windows go with it
        }
        TCalcFrame g;
        g.readSettings();
        QCOMPARE(g.geometry(), QRect(100, 120, 500, 150));
    }

    void whiteBackgroundsToggles() {
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(Calculate(f, "1", kA), 0);
        auto base = [&] { return f.numWin(kA)->editor()->palette().color(QPalette::Base); };
        QCOMPARE(base(), QColor(Qt::white));
        f.command(kCmdWhiteBackgrounds);
        QVERIFY(!f.commandChecked(kCmdWhiteBackgrounds));
        QCOMPARE(base(), QApplication::palette().color(QPalette::Window));
        QCOMPARE(Calculate(f, "2", kB), 0);   // new windows follow the option
        QCOMPARE(f.numWin(kB)->editor()->palette().color(QPalette::Base), base());
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
            secondStarted = f.calcDialog()->create() != 0;   // refused while busy
            f.command(kCmdCalculate);
            PostKey(&f, Qt::Key_Q, Qt::NoModifier, "q");
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
        QVERIFY(!f.commandEnabled(kCmdTable));   // no label in use
        QCOMPARE(Calculate(f, "1", kA), 0);
        QCOMPARE(Calculate(f, "1", kB), 0);

        modal.answerText(" b ");
        Trigger(f, kCmdTable);
        QCOMPARE(modal.defaults.last(), QString("A"));   // the first label in use
        TTableWin* t = f.tables().table(kB);
        QVERIFY(t && t->isVisible());
        QCOMPARE(t->windowTitle(), QString("table B"));

        QVERIFY(!f.commandEnabled(kCmdOneStep) && !f.commandEnabled(kCmdManySteps));
        Trigger(f, kCmdDefine);
        TRecurDlg* d = f.recursionDialog();
        QVERIFY(d && d->isVisible());
        for (const char* step : {"B=A+B", "A=B"}) {
            d->entryEdit()->setText(step);
            QCOMPARE(d->enter(), 0);
        }
        Trigger(f, kCmdOneStep);
        modal.answerText("4");
        Trigger(f, kCmdManySteps);
        QCOMPARE(t->text(), QString("  0: 2\r\n  1: 3\r\n  2: 5\r\n  3: 8\r\n  4: 13\r\n"));
        QVERIFY(!f.tables().table(kA));

        t->close();   // hides it: the rows stop and stay
        Trigger(f, kCmdOneStep);
        QCOMPARE(t->rowCounter(), 5);
        modal.answerText("B");
        Trigger(f, kCmdTable);   // the same window again, rows and all
        QCOMPARE(f.tables().table(kB), t);
        Trigger(f, kCmdOneStep);
        QVERIFY(t->text().endsWith("  4: 13\r\n  5: 34\r\n"));   // 21 came while hidden
    }

    // Batch, Hailstone and Base conversion open from their items and run
    // under the frame; Batch writes into the frame's batch window.
    void calculationDialogsRunFromTheMenu() {
        ScriptedModal modal;
        TCalcFrame f;
        Trigger(f, kCmdBatch);
        TBatcDlg* d = f.batchDialog();
        QVERIFY(d && d->isVisible());
        QCOMPARE(d->calculate(), 0);
        TTableWin* w = f.tables().batchWindow();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QString("batch calculation [A^B]"));
        d->formulaEdit()->setText("A*B");
        QCOMPARE(d->calculate(), 0);   // the same window, new rows
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

private:
    QTemporaryDir dir_;
};

QTEST_MAIN(TestFrame)
#include "test_frame.moc"
