// The main frame driven as a user would: Calculate, overwrite, modulus,
// paste, number files, the View menu, the settings file and stopping a long
// computation with Q.
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <string>

#include "app/calc_app.h"
#include "app/calc_frame.h"
#include "bigint/bigint.h"
#include "io/print/print.h"
#include "io/settings.h"
#include "resources/menus_frame.h"
#include "scripted_modal.h"
#include "windows/note_win.h"
#include "windows/num_win.h"

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
        QCOMPARE(f.windowTitle(), QString("Ordix"));
        QCOMPARE(f.calcDialog()->windowTitle(), QString("calculation"));
        QCOMPARE(f.calcDialog()->formulaEdit()->text(), QString("2^100"));
        QCOMPARE(f.calcDialog()->labelBox()->currentText(), QString("N"));
        QCOMPARE(f.calcDialog()->create(), 0);
        TNumWin* n = f.numWin(kN);
        QVERIFY(n && n->isVisible());
        QCOMPARE(n->windowTitle(), QString("N [number14.num] [digits: 31]"));
        QCOMPARE(n->editor()->toPlainText(), QString("1267650600228229401496703205376"));
        QCOMPARE(n->notebook()->text(), QString("2^100"));
        QCOMPARE(ViewItems(f), QStringList({"&Table ...", "&0=Modulus ...", "&N ...", "-",
                                            "&1=Help"}));

        QCOMPARE(Calculate(f, "N/3", kA), 0);   // a fraction keeps its denominator
        QCOMPARE(f.numWin(kA)->displayState(), int(kShowFraction));
        QCOMPARE(ViewItems(f).mid(2, 3), QStringList({"&A ...", "&N ...", "-"}));

        QCOMPARE(Calculate(f, "Q+1", kB), 2);   // no such variable
        QCOMPARE(modal.lastError(), 2);
        QVERIFY(!f.numWin(kB));
        QCOMPARE(modal.unexpected, 0);
    }

    void overwriteAsksAndNoChangesNothing() {
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(Calculate(f, "12", kC), 0);
        modal.answer(kMbNo);
        QVERIFY(Calculate(f, "1/0", kC) != 0);
        QCOMPARE(modal.calls.last().caption, QString("careful!"));
        QCOMPARE(modal.calls.last().text, QString("overwrite existing file?"));
        QCOMPARE(modal.count("error"), 0);   // refused before anything was computed
        QCOMPARE(Text(f, kC), std::string("12"));

        modal.answer(kMbYes);
        QCOMPARE(Calculate(f, "C*C", kC), 0);
        QCOMPARE(Text(f, kC), std::string("144"));
        QCOMPARE(f.numWin(kC)->notebook()->text(), QString("C*C"));
        modal.answer(kMbYes);
        QCOMPARE(Calculate(f, "1/0", kC), 104);   // a failure leaves the value
        QCOMPARE(Text(f, kC), std::string("144"));
    }

    void modulusModeFollowsItsWindow() {
        ScriptedModal modal;
        TCalcFrame f;
        QVERIFY(f.numWin(kModulusLabel));
        QVERIFY(!f.numWin(kModulusLabel)->isVisible());
        QVERIFY(!f.model().ModulusMode());

        modal.answerText("3+4");
        f.command(kCmdModulus);
        QCOMPARE(modal.calls.at(0).caption, QString("modulus"));
        QCOMPARE(modal.calls.at(0).text, QString("input"));
        TNumWin* m = f.numWin(kModulusLabel);
        QVERIFY(m->isVisible());
        QVERIFY(f.model().ModulusMode());
        QCOMPARE(m->windowTitle(), QString("modulus [modulus.num] [digits: 1]"));
        QCOMPARE(Calculate(f, "10+3", kA), 0);
        QCOMPARE(Text(f, kA), std::string("6"));

        modal.answerCancel();   // cancel ends the mode
        f.command(kCmdModulus);
        QVERIFY(!m->isVisible());
        QCOMPARE(Calculate(f, "10+3", kB), 0);
        QCOMPARE(Text(f, kB), std::string("13"));

        m->notebook()->appendText(" noted");
        f.command(kCmdViewModulus);   // showing the window brings it back as it was
        QVERIFY(f.model().ModulusMode());
        QCOMPARE(m->notebook()->text(), QString("3+4 noted"));
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
        QCOMPARE(f.numWin(kB)->notebook()->text(), QString("LaTeX file saved"));
        QCOMPARE(f.pasteNumber("-"), 2);
        QVERIFY(!f.model().HasVariable(kC));

        QGuiApplication::clipboard()->setText("777");
        QVERIFY(f.commandEnabled(kCmdPaste));
        f.command(kCmdPaste);
        QCOMPARE(Text(f, kC), std::string("777"));
        for (int label = 4; label <= 26; ++label) QCOMPARE(f.pasteNumber("1"), 0);
        QVERIFY(!f.commandEnabled(kCmdPaste));
        QVERIFY(!f.commandEnabled(kCmdOpen));
        QCOMPARE(f.pasteNumber("1"), 4);
    }

    void numberFilesGoThroughTheWindows() {
        ScriptedModal modal;
        const QString path = dir_.filePath("seven.num");
        {
            TCalcFrame f;
            QCOMPARE(Calculate(f, "-7/2", kC), 0);
            f.numWin(kC)->notebook()->appendText(" and more");
            QFont font("DejaVu Serif");
            font.setPixelSize(19);
            modal.answerFont(font);
            f.numWin(kC)->command(kNumFont);
            modal.answerFile(path);
            f.numWin(kC)->command(kNumSaveAs);
            QCOMPARE(modal.lastError(), 0);
            QVERIFY(!f.numWin(kC)->notebook()->isModified());
            QCOMPARE(f.numWin(kC)->windowTitle(), QString("C [seven.num] [digits: 1/1]"));
        }
        TCalcFrame g;
        modal.answerFile(path);
        g.command(kCmdOpen);
        QCOMPARE(modal.calls.last().text, QString("Number files (*.num)"));
        QCOMPARE(Text(g, kC), std::string("-7"));
        TNumWin* w = g.numWin(kC);
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->editor()->toPlainText(), QString("-7\n-\n2"));
        QCOMPARE(w->notebook()->text(), QString("-7/2 and more"));
        QCOMPARE(w->fileName(), path + ".num");   // the name grows on purpose
        QCOMPARE(w->logFont().height, -19);       // the file's font, kept for later windows
        QCOMPARE(QString(w->logFont().faceName), QString("DejaVu Serif"));
        QCOMPARE(g.openNumberFile(path), 0);      // C is taken: the first free label
        QCOMPARE(Text(g, kA), std::string("-7"));
        QCOMPARE(g.numWin(kA)->logFont().height, -19);
        QCOMPARE(g.openNumberFile(dir_.filePath("absent.num")), 11);

        const QString modulus = dir_.filePath("m.num");
        QCOMPARE(g.numWin(kModulusLabel)->saveNumber(modulus), 0);
        QCOMPARE(g.openNumberFile(modulus), 0);   // a modulus reopens as a variable
        QCOMPARE(g.model().Variable(kB)->inscription, g.model().ModulusFormula());
    }

    void settingsAreWrittenAtCloseAndReadAtStart() {
        QFile::remove(dir_.filePath("ox.ini"));
        {
            ScriptedModal modal;
            TCalcFrame f;
            f.setGeometry(100, 120, 500, 150);
            f.show();
            QCOMPARE(Calculate(f, "1", kA), 0);
            QVERIFY(f.numWin(kA)->isVisible());
            f.command(kCmdExit);
            QVERIFY(!f.isVisible());
            QVERIFY(!f.numWin(kA)->isVisible());   // the number windows go with it
        }
        QVERIFY(QFile::exists(dir_.filePath("ox.ini")));
        TCalcFrame g;
        g.readSettings();
        QCOMPARE(g.settings().left, 100);
        QCOMPARE(g.settings().width, 500);
        QCOMPARE(g.geometry(), QRect(100, 120, 500, 150));
    }

    void whiteBackgroundsToggles() {
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(Calculate(f, "1", kA), 0);
        auto base = [&] { return f.numWin(kA)->editor()->palette().color(QPalette::Base); };
        QVERIFY(f.commandChecked(kCmdWhiteBackgrounds));
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
        QVERIFY(!f.context().running());
    }

    // An accelerator stops the run and its command does not run; other keys
    // are read and ignored.
    void anAcceleratorStopsWithoutRunningItsCommand() {
        ScriptedModal modal;
        TCalcFrame f;
        f.show();
        QVERIFY(QTest::qWaitForWindowExposed(&f));
        QCOMPARE(Calculate(f, "7^120000", kA), 0);
        QTimer::singleShot(0, &f, [&] {
            PostKey(&f, Qt::Key_X, Qt::NoModifier, "x");
            QTimer::singleShot(30, &f, [&] { PostKey(&f, Qt::Key_O, Qt::ControlModifier, ""); });
        });
        // Millions of digits: still running when the accelerator comes 30 ms on.
        QCOMPARE(Calculate(f, "(A*A)^40", kB), -1);
        QCOMPARE(modal.count("open"), 0);
        QVERIFY(!f.model().HasVariable(kB));
    }

    // Print in a number window prints the section on show, at once, on the
    // current printer, named after the number's file.
    void numberWindowPrintsItsShownSection() {
        if (QStandardPaths::findExecutable("pdftotext").isEmpty())
            QSKIP("pdftotext (poppler-utils) is not installed");
        ScriptedModal modal;
        TCalcFrame f;
        QCOMPARE(Calculate(f, "3^2000", kA), 0);
        TNumWin* w = f.numWin(kA);
        w->setLineDigits(50);
        const QString pdf = dir_.filePath("a.pdf");
        QPrinter& printer = CurrentPrinter();
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(pdf);
        printer.setPageSize(QPageSize(QPageSize::A4));
        QAction* print = FindMenuAction(w, kNumPrint);
        QVERIFY(print && print->isEnabled());
        QVERIFY(FindMenuAction(w, kNumSelectPrinter)->isEnabled());
        QVERIFY(FindMenuAction(w, kNumOffsets)->isEnabled());
        print->trigger();
        QCOMPARE(modal.count("error"), 0);
        QProcess p;
        p.start(QStandardPaths::findExecutable("pdftotext"), {pdf, "-"});
        QVERIFY(p.waitForFinished(20000));
        const QString printed = QString::fromUtf8(p.readAllStandardOutput()).simplified();
        const QString shown = w->editor()->toPlainText().simplified();
        QVERIFY(shown.startsWith("1"));
        QCOMPARE(printed, shown);

        modal.answer(QDialog::Rejected);   // the offsets dialog, cancelled
        w->command(kNumOffsets);
        QCOMPARE(modal.calls.last().caption, QString("PRNSPX2"));
    }

private:
    QTemporaryDir dir_;
};

QTEST_MAIN(TestFrame)
#include "test_frame.moc"
