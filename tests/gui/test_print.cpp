// Printing to PDF files through QPrinter, read back with poppler's pdftotext
// and pdfinfo (skipped when they are missing); the offsets dialog; the print
// commands of the text, number and table windows.
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <string>

#include "bigint/bigint.h"
#include "dialogs/prnspx_dlg.h"
#include "io/print/print.h"
#include "resources/menus_frame.h"
#include "resources/menus_table.h"
#include "scripted_modal.h"
#include "support/test_support.h"
#include "windows/font_table.h"
#include "windows/num_win.h"
#include "windows/table_win.h"
#include "windows/text_win.h"

namespace {

#define NEED_POPPLER()                                           \
    if (QStandardPaths::findExecutable("pdftotext").isEmpty() || \
        QStandardPaths::findExecutable("pdfinfo").isEmpty())     \
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

// A4 with margins the program has to subtract, writing a PDF file.
void ToPdf(QPrinter* p, const QString& path) {
    p->setOutputFormat(QPrinter::PdfFormat);
    p->setOutputFileName(path);
    p->setPageSize(QPageSize(QPageSize::A4));
    p->setPageMargins(QMarginsF(12, 12, 12, 12), QPageLayout::Millimeter);
}

template <class W = QLineEdit>
W* Child(QDialog* d, const char* name) {
    return d->findChild<W*>(QString::fromLatin1(name));
}

}  // namespace

class TestPrint : public QObject {
    Q_OBJECT
private slots:
    void nothingToPrintARefusedJobAndThePrinterSetUp() {
        QTemporaryDir dir;
        ScriptedModal modal;
        ToPdf(&CurrentPrinter(), dir.filePath("no/such/folder/y.pdf"));
        TTextWin w(nullptr, "t", "", "text", 0);
        w.command(kTxtPrint);
        QCOMPARE(modal.calls.size(), 1);
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

    // A job is named after the file, a form feed starts a new page.
    void windowsPrintWhatTheyShowUnderTheirFileName() {
        NEED_POPPLER();
        QTemporaryDir dir;
        const QString pdf = dir.filePath("win.pdf");
        ToPdf(&CurrentPrinter(), pdf);

        TTextWin text(nullptr, "t", "/a/b/notes.txt", "first line\fsecond line", 0);
        text.show();
        QVERIFY(QTest::qWaitForWindowActive(&text));
        QTest::keyClick(&text, Qt::Key_P, Qt::ControlModifier);
        QCOMPARE(Info(pdf, "Title"), QStringLiteral("notes.txt"));
        QCOMPARE(Info(pdf, "Pages"), QStringLiteral("2"));
        QCOMPARE(Run("pdftotext", {pdf, "-"}).simplified(),
                 QStringLiteral("first line second line"));
        text.close();

        {
            Num v(std::string(2000, '7')), one("1");
            TNumWin num(nullptr, "number1", 1, &v.v, &one.v, FontTableEntry(2, 96));
            num.setLineDigits(50);
            num.command(kNumPrint);
            QCOMPARE(Run("pdftotext", {pdf, "-"}).simplified(),
                     num.editor()->toPlainText().simplified());
        }
        // A table window prints its shown section, named after its title
        // until it is saved.
        TTableWin table(nullptr, "t");
        QString rows;
        for (int i = 0; i < 700; ++i)
            rows += QStringLiteral("row %1").arg(i).leftJustified(98, '.') + "\r\n";
        QVERIFY(table.append(rows));
        table.setTextAndTitle("squares");
        table.command(kTblForward);
        ScriptedModal modal;
        modal.onDialog = [](QDialog* d) { Child(d, "ctl213")->setText("7.62"); };
        modal.answer(QDialog::Accepted);
        table.command(kTxtOffsets);
        table.command(kTxtPrint);
        QCOMPARE(Info(pdf, "Title"), QStringLiteral("squares"));
        const QString printed = Run("pdftotext", {pdf, "-"});
        QVERIFY(printed.contains("row 300.") && printed.contains("row 599."));
        QVERIFY(!printed.contains("row 299.") && !printed.contains("row 600."));
        // 7.62 cm are three inches (216 points) from the paper's edge.
        const QRegularExpression firstWord(R"re(<word xMin="([\d.]+)")re");
        const double x =
            firstWord.match(Run("pdftotext", {"-bbox", pdf, "-"})).captured(1).toDouble();
        QVERIFY2(qAbs(x - 216) < 1.5, qPrintable(QString::number(x)));
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
        modal.answer(QDialog::Rejected);  // cancel after editing
        QVERIFY(!RunOffsetsDialog(nullptr, &f));
        QCOMPARE(double(f.hOffset) + double(f.vOffset), 2.0);
        modal.answer(QDialog::Accepted);
        QVERIFY(RunOffsetsDialog(nullptr, &f));
        QCOMPARE(double(f.hOffset), 2.0);
        QCOMPARE(double(f.vOffset), 1.5);

        // The real dialog stays open on a refused ok.
        f.dialogMode = 0;
        TPrnSpxDlg dlg(nullptr, &f);
        dlg.show();
        Child(&dlg, "ctl214")->setText("0.6");
        QTest::mouseClick(Child<QWidget>(&dlg, "ctl1"), Qt::LeftButton);
        QVERIFY(dlg.isVisible());
        QCOMPARE(modal.lastError(), 17);
        Child(&dlg, "ctl214")->setText("0.635");  // exactly a quarter inch
        QTest::mouseClick(Child<QWidget>(&dlg, "ctl1"), Qt::LeftButton);
        QVERIFY(!dlg.isVisible());
        QCOMPARE(dlg.result(), int(QDialog::Accepted));
        QCOMPARE(double(f.vOffset), 0.25);
    }
};

QTEST_MAIN(TestPrint)
#include "test_print.moc"
