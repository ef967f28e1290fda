// Printing to PDF files through QPrinter, read back with poppler's pdftotext
// and pdfinfo (skipped when they are missing); the offsets dialog; the print
// commands of the text, notebook and table windows.
#include <QFile>
#include <QLineEdit>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include "dialogs/prnspx_dlg.h"
#include "io/print/print.h"
#include "resources/menus_table.h"
#include "scripted_modal.h"
#include "windows/note_win.h"
#include "windows/table_win.h"
#include "windows/text_win.h"

namespace {

#define NEED_POPPLER()                                                              \
    if (QStandardPaths::findExecutable("pdftotext").isEmpty() ||                    \
        QStandardPaths::findExecutable("pdfinfo").isEmpty())                        \
    QSKIP("pdftotext and pdfinfo (poppler-utils) are not installed")

QString Run(const char* tool, const QStringList& args) {
    QProcess p;
    p.start(QStandardPaths::findExecutable(tool), args);
    p.waitForFinished(20000);
    return QString::fromUtf8(p.readAllStandardOutput());
}

QString Info(const QString& pdf, const QString& field) {
    const QRegularExpression re("^" + field + ":\\s*(.*)$", QRegularExpression::MultilineOption);
    return re.match(Run("pdfinfo", {pdf})).captured(1).trimmed();
}

// The text lines of each page, blank lines dropped.
QList<QStringList> PageLines(const QString& pdf) {
    QStringList pages = Run("pdftotext", {"-layout", pdf, "-"}).split('\f');
    if (!pages.isEmpty() && pages.last().trimmed().isEmpty()) pages.removeLast();
    QList<QStringList> out;
    for (const QString& p : pages) {
        QStringList lines;
        for (const QString& l : p.split('\n'))
            if (!l.trimmed().isEmpty()) lines << l.trimmed();
        out << lines;
    }
    return out;
}

struct Word {
    QString text;
    double x, y;   // upper left corner in points
};

QList<Word> Words(const QString& pdf) {
    const QString html = Run("pdftotext", {"-bbox", pdf, "-"});
    static const QRegularExpression re(
        R"re(<word xMin="([\d.]+)" yMin="([\d.]+)"[^>]*>([^<]*)</word>)re");
    QList<Word> words;
    for (auto it = re.globalMatch(html); it.hasNext();) {
        const auto m = it.next();
        words.append({m.captured(3), m.captured(1).toDouble(), m.captured(2).toDouble()});
    }
    return words;
}

// A4 with margins the program has to subtract, writing a PDF file.
void ToPdf(QPrinter* p, const QString& path,
           QPageLayout::Orientation o = QPageLayout::Portrait) {
    p->setOutputFormat(QPrinter::PdfFormat);
    p->setOutputFileName(path);
    p->setPageSize(QPageSize(QPageSize::A4));
    p->setPageOrientation(o);
    p->setPageMargins(QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter);
}

QFont Mono() { return QFont(QStringLiteral("DejaVu Sans Mono"), 12); }

template <class W = QLineEdit>
W* Child(QDialog* d, const char* name) { return d->findChild<W*>(QString::fromLatin1(name)); }

}  // namespace

class TestPrint : public QObject {
    Q_OBJECT
private slots:
    void formFeedStartsANewPageAndTheJobIsNamedAfterTheFile() {
        NEED_POPPLER();
        QTemporaryDir dir;
        QPrinter printer(QPrinter::HighResolution);
        const QString pdf = dir.filePath("ff.pdf");
        ToPdf(&printer, pdf);
        QCOMPARE(PrintTextOn(&printer, "/some/folder/report.txt", "alpha\r\nbeta\fgamma\r\ndelta",
                             Mono(), PrintFormat()),
                 0);
        QCOMPARE(Info(pdf, "Pages"), QStringLiteral("2"));
        QCOMPARE(PageLines(pdf), (QList<QStringList>{{"alpha", "beta"}, {"gamma", "delta"}}));
        QCOMPARE(Info(pdf, "Title"), QStringLiteral("report.txt"));
    }

    void offsetsPlaceTheTextFromThePapersEdges() {
        NEED_POPPLER();
        QTemporaryDir dir;
        const struct { double h, v, x, y; } cases[] = {
            {2.0, 1.5, 144, 108},   // inches, then points
            {0.0, 0.1, 18, 18},     // below a quarter inch: at a quarter inch
        };
        for (const auto& c : cases) {
            QPrinter printer(QPrinter::HighResolution);
            const QString pdf = dir.filePath(QStringLiteral("o%1.pdf").arg(c.h));
            ToPdf(&printer, pdf);
            PrintFormat f;
            f.hOffset = c.h;
            f.vOffset = c.v;
            QCOMPARE(PrintTextOn(&printer, "o", "Offset\r\nnext", Mono(), f), 0);
            const QList<Word> words = Words(pdf);
            QVERIFY(words.size() == 2 && words[0].text == "Offset");
            QVERIFY2(qAbs(words[0].x - c.x) < 1.5, qPrintable(QString::number(words[0].x)));
            // The word box starts at the font's ascent as poppler reads it.
            QVERIFY2(qAbs(words[0].y - c.y) < 4, qPrintable(QString::number(words[0].y)));
            QVERIFY(words[1].y > words[0].y + 10);
        }
    }

    void widePaperGetsLessUsableHeight() {
        NEED_POPPLER();
        QTemporaryDir dir;
        QString text;
        for (int i = 1; i <= 150; ++i) text += QStringLiteral("L%1\r\n").arg(i);
        const struct { QPageLayout::Orientation o; double inches; } cases[] = {
            {QPageLayout::Portrait, 10.0 - 1.0},
            {QPageLayout::Landscape, 7.5 - 1.0},
        };
        QList<int> firstPage;
        for (const auto& c : cases) {
            QPrinter printer(QPrinter::HighResolution);
            const QString pdf = dir.filePath(QStringLiteral("p%1.pdf").arg(int(c.o)));
            ToPdf(&printer, pdf, c.o);
            QCOMPARE(PrintTextOn(&printer, "p", text, Mono(), PrintFormat()), 0);
            const double line = QFontMetricsF(Mono(), &printer).lineSpacing();
            const int perPage = int(c.inches * printer.resolution() / line);
            const QList<QStringList> pages = PageLines(pdf);
            QCOMPARE(pages.first().size(), perPage);
            QCOMPARE(Info(pdf, "Pages").toInt(), (150 + perPage - 1) / perPage);
            // Every line once, in order, across the page breaks.
            QStringList all;
            for (const QStringList& p : pages) all << p;
            QCOMPARE(all.join(','), QString(text).replace("\r\n", ",").chopped(1));
            firstPage << perPage;
        }
        QVERIFY(firstPage[0] > firstPage[1]);
    }

    void nothingToPrintARefusedJobAndThePrinterSetUp() {
        QTemporaryDir dir;
        QPrinter printer(QPrinter::HighResolution);
        const QString pdf = dir.filePath("none.pdf");
        ToPdf(&printer, pdf);
        QCOMPARE(PrintTextOn(&printer, "x", QString(), Mono(), PrintFormat()), 9);
        QVERIFY(!QFile::exists(pdf));
        ScriptedModal modal;
        ToPdf(&CurrentPrinter(), dir.filePath("no/such/folder/y.pdf"));
        TTextWin w(nullptr, "t", "", "text", 0);
        w.command(kTxtPrint);
        QCOMPARE(modal.calls.size(), 1);
        QCOMPARE(modal.calls[0].caption, QStringLiteral("hmm ..."));
        QCOMPARE(modal.calls[0].text, QStringLiteral("cannot print"));
        w.replaceText(QString());
        w.command(kTxtPrint);
        QCOMPARE(modal.lastError(), 9);
        // Select printer is the platform's dialog, asked through the seam.
        modal.answer(QDialog::Rejected);
        w.command(kTxtSelectPrinter);
        QCOMPARE(modal.calls.last().caption, QStringLiteral("PRINTSETUP"));
        QCOMPARE(CurrentPrinter().outputFileName(), dir.filePath("no/such/folder/y.pdf"));
    }

    void windowsPrintWhatTheyShowUnderTheirFileName() {
        NEED_POPPLER();
        QTemporaryDir dir;
        const QString pdf = dir.filePath("win.pdf");
        ToPdf(&CurrentPrinter(), pdf);

        TTextWin text(nullptr, "t", "/a/b/notes.txt", "first line\nsecond line", 0);
        QVERIFY(FindMenuAction(&text, kTxtPrint)->isEnabled());
        text.show();
        QVERIFY(QTest::qWaitForWindowActive(&text));
        QTest::keyClick(&text, Qt::Key_P, Qt::ControlModifier);
        QCOMPARE(Info(pdf, "Title"), QStringLiteral("notes.txt"));
        QCOMPARE(PageLines(pdf), (QList<QStringList>{{"first line", "second line"}}));
        text.close();

        TNoteWin note(nullptr, "number1.num", "made by 2^100", 2);
        note.command(kTxtPrint);
        QCOMPARE(Info(pdf, "Title"), QStringLiteral("number1.num"));
        // A table window prints its shown section, named after its title
        // until it is saved.
        TTableWin table(nullptr, "t");
        QString rows;
        for (int i = 0; i < 700; ++i)
            rows += QStringLiteral("row %1").arg(i).leftJustified(98, '.') + "\r\n";
        table.append(rows);
        table.setTextAndTitle("squares");
        table.command(kTblForward);
        // Offsets set in the dialog move the next print.
        ScriptedModal modal;
        modal.onDialog = [](QDialog* d) { Child(d, "ctl213")->setText("7.62"); };
        modal.answer(QDialog::Accepted);
        table.command(kTxtOffsets);
        table.command(kTxtPrint);
        QCOMPARE(Info(pdf, "Title"), QStringLiteral("squares"));
        const QString printed = Run("pdftotext", {pdf, "-"});
        QVERIFY(printed.contains("row 300.") && printed.contains("row 599."));
        QVERIFY(!printed.contains("row 299.") && !printed.contains("row 600."));
        const QList<Word> words = Words(pdf);
        QVERIFY2(qAbs(words.value(0).x - 216) < 1.5, qPrintable(QString::number(words.value(0).x)));
    }

    void offsetsDialogShowsTheFieldsOfItsMode() {
        ScriptedModal modal;
        const char* all[] = {"ctl251", "ctl252", "ctl211", "ctl212", "lbl211", "lbl212",
                             "ctl213", "ctl214", "ctl271", "ctl272"};
        const struct { int mode; QStringList shown; } cases[] = {
            {0, {"ctl213", "ctl214"}},
            {1, {"ctl211", "lbl211", "ctl213", "ctl214", "ctl271", "ctl272"}},
            {2, {"ctl251", "ctl252", "ctl211", "ctl212", "lbl211", "lbl212", "ctl213", "ctl214",
                 "ctl271", "ctl272"}},
        };
        for (const auto& c : cases) {
            PrintFormat f;
            f.dialogMode = c.mode;
            modal.onDialog = [&](QDialog* d) {
                QCOMPARE(d->windowTitle(), QStringLiteral("print format (cm)"));
                for (const char* name : all)
                    QVERIFY2(Child<QWidget>(d, name)->isVisibleTo(d) == c.shown.contains(name),
                             name);
                QCOMPARE(Child(d, "ctl213")->text() + Child(d, "ctl211")->text() +
                             Child(d, "ctl212")->text(),
                         QStringLiteral("2.547.621.00"));
                QVERIFY(Child<QRadioButton>(d, "ctl251")->isChecked());
            };
            modal.answer(QDialog::Rejected);
            QVERIFY(!RunOffsetsDialog(nullptr, &f));
        }
        QCOMPARE(modal.calls.last().caption, QStringLiteral("PRNSPX2"));
    }

    void offsetsDialogChecksOkAndCancelKeepsTheFormat() {
        ScriptedModal modal;
        PrintFormat f;
        QString hori, vert;
        modal.onDialog = [&](QDialog* d) {
            Child(d, "ctl213")->setText(hori);
            Child(d, "ctl214")->setText(vert);
        };
        hori = "5,08";
        vert = "3.81";
        modal.answer(QDialog::Rejected);   // cancel after editing
        QVERIFY(!RunOffsetsDialog(nullptr, &f));
        QCOMPARE(double(f.hOffset), 1.0);
        QCOMPARE(double(f.vOffset), 1.0);
        modal.answer(QDialog::Accepted);
        QVERIFY(RunOffsetsDialog(nullptr, &f));
        QCOMPARE(double(f.hOffset), 2.0);
        QCOMPARE(double(f.vOffset), 1.5);
        QVERIFY(f.width > 0 && f.xUnit < 0);   // the hidden width keeps governing

        // The real dialog stays open on a refused ok.
        f.dialogMode = 0;
        TPrnSpxDlg dlg(nullptr, &f);
        dlg.show();
        Child(&dlg, "ctl214")->setText("0.6");
        QTest::mouseClick(Child<QWidget>(&dlg, "ctl1"), Qt::LeftButton);
        QVERIFY(dlg.isVisible());
        QCOMPARE(modal.lastError(), 17);
        Child(&dlg, "ctl214")->setText("0.635");   // exactly a quarter inch
        QTest::mouseClick(Child<QWidget>(&dlg, "ctl1"), Qt::LeftButton);
        QVERIFY(!dlg.isVisible());
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
        QCOMPARE(double(f.vOffset), 0.25);
    }

};

QTEST_MAIN(TestPrint)
#include "test_print.moc"
