// The text, number and table windows driven through their commands, keys
// and the modal seam: search, files, fonts, the edit limits, and paging
// numbers and tables by sections.
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <string>

#include "bigint/bigint.h"
#include "io/num_file.h"
#include "resources/limits.h"
#include "resources/menus_frame.h"
#include "resources/menus_table.h"
#include "scripted_modal.h"
#include "support/test_support.h"
#include "windows/font_table.h"
#include "windows/help_win.h"
#include "windows/note_win.h"
#include "windows/num_win.h"
#include "windows/num_win_layout.h"
#include "windows/num_win_text.h"
#include "windows/table_win.h"
#include "windows/text_win.h"

namespace {

template <class W>
QString Selected(W& w) {
    return w.editor()->textCursor().selectedText();
}
template <class W>
int SelStart(W& w) {
    return w.editor()->textCursor().selectionStart();
}

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

// Digits 1..9 only, so that no limb has leading zeros (a section that starts
// inside the number prints its first limb without them).
std::string NonZeroDigits(int count, quint32 seed) {
    QRandomGenerator rng(seed);
    std::string s;
    for (int i = 0; i < count; ++i) s += static_cast<char>('1' + rng.bounded(9));
    return s;
}

LogFont Font() { return FontTableEntry(2, 96); }

// Rows of exactly `width` characters, "\r\n" included, numbered from first.
QString Rows(int first, int count, int width) {
    QString s;
    for (int i = first; i < first + count; ++i) {
        QString row = QString::number(i).rightJustified(7, '0') + ':';
        s += row.leftJustified(width - 2, 'x') + "\r\n";
    }
    return s;
}

// A table window filled with rows of width 97 up to the ceiling.
int FillToCeiling(TTableWin* w) {
    int rows = 0;
    while (w->append(Rows(rows, 1, 97))) ++rows;
    return rows;
}

}  // namespace

class TestWindows : public QObject {
    Q_OBJECT
private slots:
    // A fresh window searches from its first character, case aside; after a
    // miss the caret goes to the top and the next search starts there. The
    // keys reach search, top, next and lunch.
    void searchRunsOnThroughAMiss() {
        ScriptedModal modal;
        TTextWin w(nullptr, "t", "", "abc abc ABC", 0);
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QVERIFY(!w.commandEnabled(kTxtNext));  // no search text yet
        modal.answerText("");
        QTest::keyClick(&w, Qt::Key_F1);
        QCOMPARE(modal.lastError(), 9);
        QCOMPARE(modal.calls[0].kind, kMaxFieldChars);
        modal.answerText("abc");
        w.command(kTxtSearch);
        QCOMPARE(SelStart(w), 0);
        w.command(kTxtNext);
        QTest::keyClick(&w, Qt::Key_F3);
        QCOMPARE(Selected(w), QStringLiteral("ABC"));
        w.command(kTxtNext);
        QCOMPARE(modal.lastError(), 2);
        w.command(kTxtNext);
        QCOMPARE(SelStart(w), 0);
        QCOMPARE(Selected(w), QStringLiteral("abc"));
        w.command(kTxtNext);
        QTest::keyClick(&w, Qt::Key_F2);
        QCOMPARE(SelStart(w), 0);
        QVERIFY(Selected(w).isEmpty());
        modal.answerCancel();
        QTest::keyClick(&w, Qt::Key_F1);
        QCOMPARE(modal.defaults.last(), QStringLiteral("abc"));
        modal.answer(QDialog::Rejected);
        QTest::keyClick(&w, Qt::Key_F12);
        QCOMPARE(modal.calls.last().caption, QStringLiteral("LUNCH"));
        QCOMPARE(modal.count("error"), 2);  // a declined lunch says nothing
    }

    // Copy and cut follow the selection; the text is held to the buffer
    // size; minus signs take codes 2 to 255.
    void editCommandsFollowTheSelectionAndTheBufferSize() {
        TTextWin w(nullptr, "t", "", QString(kTextBufferChars + 10, 'x'), 0);
        QCOMPARE(w.text().size(), kTextBufferChars);
        QVERIFY(!w.commandEnabled(kTxtCopy) && !w.commandEnabled(kTxtCut));
        w.command(kTxtSelectAll);
        QVERIFY(w.commandEnabled(kTxtCut));
        w.command(kTxtCopy);
        QCOMPARE(QApplication::clipboard()->text(), w.text());
        w.replaceText(QString(kTextBufferChars, 'y'));
        QApplication::clipboard()->setText("pasted");
        w.editor()->moveCursor(QTextCursor::Start);
        w.editor()->moveCursor(QTextCursor::Right, QTextCursor::KeepAnchor);
        w.command(kTxtPaste);  // replaces one character: one fits
        QCOMPARE(w.text().size(), kTextBufferChars);
        QVERIFY(w.text().startsWith("pyy"));

        ScriptedModal modal;
        TTextWin m(nullptr, "t", "", "-1 - 2", 0);
        modal.answerText("256");
        m.command(kTxtMinusSigns);
        QCOMPARE(modal.lastError(), 1);
        QCOMPARE(m.text(), QStringLiteral("-1 - 2"));
        modal.answerText("150");
        m.command(kTxtMinusSigns);
        QCOMPARE(m.text(), QString::fromUtf8("\u20131 \u2013 2"));
        QCOMPARE(modal.defaults.last(), QStringLiteral("150"));
        QVERIFY(m.isModified());
    }

    // Save writes a trailing zero, open reads it back (8-bit files too);
    // closing a modified text asks to save.
    void filesSaveOpenAndCloseAsking() {
        QTemporaryDir dir;
        ScriptedModal modal;
        const QString path = dir.filePath("out.txt");
        TTextWin w(nullptr, "t", "", QString::fromUtf8("r\u00e9sum\u00e9\n2 \u2013 1"), 0);
        modal.answerFile(path);
        w.command(kTxtSave);  // no file yet: asks for one
        QCOMPARE(modal.calls.last().text, QStringLiteral("Text Files (*.txt)"));
        QCOMPARE(ReadAll(path), QString::fromUtf8("r\u00e9sum\u00e9\n2 \u2013 1").toUtf8() + '\0');
        QVERIFY(!w.isModified());

        TTextWin r(nullptr, "t", "", "", 0);
        modal.answerFile(path);
        r.command(kTxtOpen);
        QCOMPARE(r.text(), w.text());  // the zero byte is not part of the text
        QCOMPARE(r.fileName(), path);

        QFile old(dir.filePath("old.txt"));  // an 8-bit file of older days
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("caf\xe9 \x96 x");
        old.close();
        QCOMPARE(r.openFile(old.fileName()), 0);
        QCOMPARE(r.text(), QString::fromUtf8("caf\u00e9 \u2013 x"));
        modal.answerFile(dir.filePath("missing.txt"));
        r.command(kTxtOpen);
        QCOMPARE(modal.lastError(), 11);

        const QString keep = dir.filePath("keep.txt");
        TTextWin k(nullptr, "t", keep, "x", 0);
        k.show();
        k.editor()->insertPlainText("changed ");
        modal.answer(kMbCancel);
        QVERIFY(!k.close());
        QCOMPARE(modal.calls.last().text, "save changes to " + keep + "?");
        QCOMPARE(modal.calls.last().kind, int(kMsgYesNoCancel));
        QVERIFY(!QFile::exists(keep));

        modal.answer(kMbYes);
        QVERIFY(k.close());
        QCOMPARE(ReadAll(keep), QByteArray("changed x\0", 10));

        TTextWin g(nullptr, "t", dir.filePath("no/dir.txt"), "x", 0);
        g.show();
        g.editor()->insertPlainText("y");
        modal.answer(kMbYes);  // the save fails: the window stays
        QVERIFY(!g.close());
        QCOMPARE(modal.lastError(), 12);
        modal.answer(kMbNo);
        QVERIFY(g.close());
        QCOMPARE(modal.count("message"), 4);
    }

    void fontCommandKeepsChosenFontInTable() {
        ScriptedModal modal;
        TTextWin w(nullptr, "t", "", "x", 2);
        QFont chosen("DejaVu Serif");
        chosen.setPixelSize(21);
        chosen.setItalic(true);
        modal.answerFont(chosen);
        w.command(kTxtFont);
        QCOMPARE(w.editor()->font().pixelSize(), 21);
        QCOMPARE(QString::fromLatin1(w.fontEntry(2).faceName), QStringLiteral("DejaVu Serif"));
        QCOMPARE(w.fontEntry(2).height, -21);
    }

    void notebookAndHelpCloseWithoutAsking() {
        TNoteWin n(nullptr, "number3.num", "made by 2^100", 0);
        QCOMPARE(n.windowTitle(), QStringLiteral("notebook [number3.num]"));
        QVERIFY(!FindMenuAction(&n, kTxtOpen));
        ScriptedModal modal;
        n.show();
        n.editor()->insertPlainText("typed");
        QVERIFY(n.close());  // a notebook hides without asking
        QCOMPARE(modal.calls.size(), 0);

        THelpWin h(nullptr);
        h.showHelp("OXNSECTH");
        QVERIFY(h.isVisible() && h.text().size() > 200);
        h.command(kTxtSearchHelp);
        QCOMPARE(modal.calls.last().caption, QStringLiteral("searching"));
        h.editor()->insertPlainText("scribble");
        QVERIFY(h.close());  // no save question for help
        QCOMPARE(modal.calls.size(), 1);
    }

    // Every section but the last fills whole lines, and all sections
    // together give back the number's text, sign and all.
    void sectionsCoverTheNumberInWholeLines() {
        for (int lineDigits : {7, 72}) {
            for (const char* sign : {"", "-"}) {
                const std::string text = sign + NonZeroDigits(130004, 1);
                Num value(text);
                SectionLayout layout;
                QCOMPARE(LayoutSections(value.v.top, BigTextLength(&value.v), *sign != 0,
                                        lineDigits, &layout),
                         0);
                QVERIFY(layout.count > 0);
                std::string joined;
                for (int k = 0; k <= layout.count; ++k) {
                    const QStringList lines =
                        QString::fromStdString(SectionText(&value.v, layout, k, lineDigits, "\n"))
                            .split('\n');
                    QVERIFY(lines.size() <= LinesPerSection(lineDigits) + 1);
                    for (int i = 0; i + 1 < lines.size(); ++i)
                        QCOMPARE(lines[i].size(), lineDigits);
                    joined += lines.join(QString()).trimmed().toStdString();
                }
                QCOMPARE(joined, text);
            }
        }
    }

    void sectionCommandsMoveThroughA30103DigitNumber() {
        const std::string digits = NonZeroDigits(30103, 5);
        Num v(digits), one("1");
        TNumWin w(nullptr, "number1", 1, &v.v, &one.v, Font());
        w.setLineDigits(1);
        QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103] [section 1/2]"));
        QVERIFY(!w.commandEnabled(kNumBack));
        w.command(kNumForward);
        QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103] [section 2/2]"));
        QVERIFY(!w.commandEnabled(kNumForward));
        QVERIFY(w.editor()->toPlainText().endsWith(QString("\n%1").arg(digits.back())));

        ScriptedModal modal;
        modal.answerText("1");
        w.command(kNumJump);
        QCOMPARE(modal.calls.at(0).text, QString("target number [1 ... 2]"));
        QCOMPARE(w.currentSection(), 0);

        w.setLineDigits(60);  // wide lines: one section, no section part
        QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103]"));
        QVERIFY(!w.commandEnabled(kNumForward) && !w.commandEnabled(kNumJump));
        w.show();
        QVERIFY(!w.close());  // closing only hides
        QVERIFY(!w.isVisible());
    }

    void fractionsShowTogetherOrPartByPart() {
        Num seven("7"), two("2");
        TNumWin w(nullptr, "number3", 3, &seven.v, &two.v, Font());
        Num big(NonZeroDigits(40000, 1)), bigger(NonZeroDigits(30000, 2));
        w.setLineDigits(72);
        QCOMPARE(w.refill(&big.v, &bigger.v), Result::kOk);
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 40000][num]"));
        QVERIFY(!w.commandEnabled(kNumNumerator));
        w.command(kNumDenominator);
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 30000][den]"));
        QVERIFY(w.editor()->toPlainText().startsWith(
            QString::fromStdString(NonZeroDigits(30000, 2).substr(0, 72))));
    }

    void digitFrequenciesAndSaveAsText() {
        QTemporaryDir dir;
        Num v("-123456789"), one("1");
        TNumWin w(nullptr, "number2", 2, &v.v, &one.v, Font());
        w.setInscription("x");
        w.command(kNumDigitFreq);
        QVERIFY(w.notebook()->text().startsWith("x\n\n0: 0   0.0%\n1: 1  11.1%\n"));
        QVERIFY(w.notebook()->isVisible());

        ScriptedModal modal;
        const QString path = dir.filePath("n.txt");
        modal.answerText("4");
        modal.answerFile(path);
        w.command(kNumSaveAsText);
        QCOMPARE(ReadAll(path), QByteArray("1234\r\n5678\r\n9\r\n"));
        modal.answerText("4");
        modal.answerFile(dir.filePath("missing/n.txt"));
        w.command(kNumSaveAsText);
        QCOMPARE(modal.lastError(), 12);
    }

    // A value of millions of digits, through the commands that go over all of
    // it: the last section, digit frequencies, saving (watched: Q leaves the
    // old file), reading back, saving as text, and a fraction part by part.
    void aMillionsOfDigitsNumberThroughItsCommands() {
        QTemporaryDir dir;
        const std::string digits = NonZeroDigits(3000001, 7);
        Num v(digits), one("1"), seven("7");
        TNumWin w(nullptr, "big", 1, &v.v, &one.v, Font());
        w.setLineDigits(72);
        QuitAtPoll watch(0);  // counts the polls, never stops
        QuitAtPoll* context = &watch;
        w.setRunner([&context](const TNumWin::Work& work) { return work(context); });
        ScriptedModal modal;
        const QString last = QString::number(w.sectionCount() + 1);
        modal.answerText(last);
        w.command(kNumJump);
        QVERIFY(w.windowTitle().endsWith("[section " + last + "/" + last + "]"));
        QVERIFY(w.editor()->toPlainText().size() <= kTextBufferChars);
        QVERIFY(w.editor()->toPlainText().endsWith(
            QString::fromStdString(digits.substr(digits.size() - 30))));

        w.command(kNumDigitFreq);
        const auto nines = std::count(digits.begin(), digits.end(), '9');
        QVERIFY(w.notebook()->text().contains(QString("9: %1 ").arg(nines, 7)));
        QVERIFY(watch.polls() > 0);

        const QString path = dir.filePath("big.num");
        modal.answerFile(path);
        w.command(kNumSaveAs);
        NumFile back;
        QCOMPARE(ReadNumFile(QFile::encodeName(path).toStdString(), &back), Result::kOk);
        QVERIFY(std::equal(back.numerator.limbs.begin(), back.numerator.limbs.end(), v.v.limbs,
                           v.v.limbs + v.v.top + 1));
        const QByteArray saved = ReadAll(path);
        QuitAtPoll quit(1);
        context = &quit;
        w.setFontExtra(9);  // a change the stopped save must not write
        w.command(kNumSave);
        QCOMPARE(ReadAll(path), saved);
        QCOMPARE(modal.lastError(), 0);  // a stop is quiet
        context = &watch;

        modal.answerText("100");
        modal.answerFile(dir.filePath("big.txt"));
        w.command(kNumSaveAsText);
        const QByteArray text = ReadAll(dir.filePath("big.txt"));
        QCOMPARE(text.size(), 3000001 + 30001 * 2);
        QVERIFY(text.startsWith(QByteArray::fromStdString(digits.substr(0, 100)) + "\r\n"));
        QVERIFY(text.endsWith("\r\n" + QByteArray::fromStdString(digits.substr(3000000)) + "\r\n"));

        QCOMPARE(w.refill(&v.v, &seven.v), Result::kOk);  // the value over 7
        QVERIFY(w.windowTitle().contains("[digits: 3000001][num] [section 1/"));
        w.command(kNumDenominator);
        QCOMPARE(w.windowTitle(), QString("A [big.num] [digits: 1][den]"));
        QCOMPARE(w.editor()->toPlainText(), QString("7"));
        w.command(kNumNumerator);
        QVERIFY(w.editor()->toPlainText().trimmed().startsWith(
            QString::fromStdString(digits.substr(0, 60))));
    }

    void aLargerFontOrANarrowerWindowGivesFewerDigitsPerLine() {
        Num v(NonZeroDigits(3000, 3)), one("1");
        TNumWin w(nullptr, "number2", 2, &v.v, &one.v, Font());
        w.resize(700, 400);
        const int32_t before = w.lineDigits();
        ScriptedModal modal;
        QFont big = w.editor()->font();
        if (big.pixelSize() > 0)
            big.setPixelSize(big.pixelSize() * 2);
        else
            big.setPointSizeF(big.pointSizeF() * 2);
        modal.answerFont(big);
        w.command(kNumFont);
        QVERIFY2(w.lineDigits() < before * 2 / 3, qPrintable(QString::number(w.lineDigits())));
        QCOMPARE(w.editor()->toPlainText().section('\n', 0, 0).size(), int(w.lineDigits()));
        const int32_t wide = w.lineDigits();
        w.show();
        w.resize(350, 400);
        QVERIFY(w.lineDigits() < wide);
        QCOMPARE(w.editor()->toPlainText().section('\n', 0, 0).size(), int(w.lineDigits()));
    }

    void aMegabytePagesBySectionsOfWholeRows() {
        TTableWin w(nullptr, "primes");
        const int rows = FillToCeiling(&w);
        w.setTextAndTitle("1000 primes");
        const int perSection = kTableSectionChars / 97;
        const int sections = (rows + perSection - 1) / perSection;
        QCOMPARE(w.sectionCount(), sections);
        QCOMPARE(w.windowTitle(), QStringLiteral("1000 primes [1/%1]").arg(sections));
        // The editor holds one section, never the whole text.
        QCOMPARE(w.editor()->toPlainText(), Rows(0, perSection, 97).replace("\r\n", "\n"));
        QVERIFY(!w.commandEnabled(kTblBack));
        QVERIFY(w.commandEnabled(kTblForward));
        w.command(kTblForward);
        QCOMPARE(w.windowTitle(), QStringLiteral("1000 primes [2/%1]").arg(sections));
        QVERIFY(w.editor()->toPlainText().startsWith(
            QString::number(perSection).rightJustified(7, '0')));
        w.showSection(sections - 1);
        QVERIFY(!w.commandEnabled(kTblForward));

        ScriptedModal modal;
        modal.answerText("3");
        w.command(kTblJump);
        QCOMPARE(modal.calls[0].text, QStringLiteral("target number [1 ... %1]").arg(sections));
        QCOMPARE(w.windowTitle(), QStringLiteral("1000 primes [3/%1]").arg(sections));
        modal.answerText("99");
        w.command(kTblJump);
        QCOMPARE(modal.lastError(), 17);
        QCOMPARE(w.shownSection(), 2);
    }

    void refreshKeepsTheShownSectionWhileRowsArrive() {
        TTableWin w(nullptr, "A");
        QVERIFY(w.append(Rows(0, 250, 100)));
        w.setTextAndTitle("A");
        QCOMPARE(w.sectionCount(), 1);
        QVERIFY(!w.commandEnabled(kTblJump) && !w.commandEnabled(kTblFormat));
        QVERIFY(w.append(Rows(250, 100, 100)));          // spills into a second section
        QCOMPARE(w.windowTitle(), QStringLiteral("A"));  // not before refresh
        w.refresh();
        QCOMPARE(w.windowTitle(), QStringLiteral("A [1/2]"));
        QCOMPARE(w.editor()->toPlainText().count('\n'), 300);
        w.command(kTblForward);
        QVERIFY(w.append(Rows(350, 10, 100)));
        w.refresh();  // the last section grows in place
        QCOMPARE(w.shownSection(), 1);
        QCOMPARE(w.editor()->toPlainText(), QString(w.sectionText(1)).replace("\r\n", "\n"));
        QCOMPARE(w.editor()->toPlainText().count('\n'), 60);
    }

    // Search runs on into later sections; a busy table refuses every
    // command but close, and Save as writes all sections.
    void searchAndSaveTheWholeTableRefusedWhileBusy() {
        QTemporaryDir dir;
        ScriptedModal modal;
        TTableWin w(nullptr, "t");
        QString text = Rows(0, 1000, 100);
        text.replace(QStringLiteral("0000650:"), QStringLiteral("0NeEdLe:"));
        text.replace(QStringLiteral("0000020:"), QStringLiteral("0needle:"));
        QVERIFY(w.append(text));
        w.setTextAndTitle("t");
        modal.answerText("needle");
        w.command(kTxtSearch);  // fresh window: from the caret
        QCOMPARE(w.shownSection(), 0);
        QCOMPARE(Selected(w), QStringLiteral("needle"));
        w.command(kTxtNext);
        QCOMPARE(w.shownSection(), 2);
        QCOMPARE(Selected(w), QStringLiteral("NeEdLe"));
        QCOMPARE(w.windowTitle(), QStringLiteral("t [3/4]"));
        w.command(kTxtNext);  // none after it: back to the top
        QCOMPARE(modal.lastError(), 2);
        QCOMPARE(w.shownSection(), 0);
        // A section just turned to is searched from its very first character.
        w.command(kTblForward);
        modal.answerText("0000300");
        w.command(kTxtSearch);
        QCOMPARE(SelStart(w), 0);
        QCOMPARE(w.shownSection(), 1);

        modal.calls.clear();
        w.show();
        w.setBusy(true);
        for (int id : {int(kTblForward), int(kTblJump), int(kTxtSearch), int(kTxtSaveAs)})
            QVERIFY(!w.commandEnabled(id));
        w.command(kTblJump);
        w.command(kTxtSaveAs);
        QCOMPARE(modal.calls.size(), 0);
        w.command(kTxtClose);
        QVERIFY(w.isHidden());  // hidden, not destroyed
        w.setBusy(false);
        modal.answerFile(dir.filePath("table.txt"));
        w.command(kTxtSaveAs);  // all sections, then a zero byte
        QCOMPARE(ReadAll(dir.filePath("table.txt")), w.text().toLatin1() + QByteArray(1, '\0'));
    }
};

QTEST_MAIN(TestWindows)
#include "test_windows.moc"
