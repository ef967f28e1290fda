// Table windows: paging a megabyte, the append ceiling, rows of values,
// section commands and their enablers, searching across sections, saving.
#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QtTest>

#include <string>

#include "bigint/bigint.h"
#include "resources/limits.h"
#include "resources/menus_table.h"
#include "scripted_modal.h"
#include "windows/table_win.h"
#include "windows/table_win_sections.h"

namespace {

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

std::vector<std::size_t> Starts(const QString& s) {
    return TableSectionStarts(
        std::u16string_view(reinterpret_cast<const char16_t*>(s.utf16()), s.size()));
}

struct Big {
    BigInt v{};
    explicit Big(const char* digits) {
        std::string s = digits;
        BigFromText(s.data(), &v);
    }
    ~Big() { BigFree(&v); }
};

}  // namespace

class TestTableWin : public QObject {
    Q_OBJECT
private slots:
    void sectionsEndAfterTheLastLineFeedThatFits() {
        QCOMPARE(Starts(QString(kTableSectionChars, 'a')).size(), std::size_t(1));
        QString t = QString(kTableSectionChars, 'a');
        t[100] = '\n';
        t += 'b';   // 30001 characters with a line feed inside
        QCOMPARE(Starts(t), (std::vector<std::size_t>{0, 101}));
        // A line feed as the section's very last character still counts.
        t = QString(kTableSectionChars - 1, 'a') + "\n" + "bc";
        QCOMPARE(Starts(t), (std::vector<std::size_t>{0, std::size_t(kTableSectionChars)}));
        // A row longer than a section is cut at the section's length, but a
        // CR is not parted from its LF.
        QCOMPARE(Starts(QString(70000, '7')),
                 (std::vector<std::size_t>{0, 30000, 60000}));
        t = QString(kTableSectionChars - 1, 'a') + "\r\n" + "bc";
        QCOMPARE(Starts(t), (std::vector<std::size_t>{0, std::size_t(kTableSectionChars - 1)}));
        QCOMPARE(Starts(QString()), std::vector<std::size_t>{0});
    }

    void aMegabytePagesBySectionsOfWholeRows() {
        TTableWin w(nullptr, "primes");
        const int rows = FillToCeiling(&w);
        QVERIFY(w.text().size() <= kListChars);
        QVERIFY(w.text().size() + 97 > kListChars);
        w.setTextAndTitle("1000 primes");
        const int perSection = kTableSectionChars / 97;
        const int sections = (rows + perSection - 1) / perSection;
        QCOMPARE(w.sectionCount(), sections);
        QCOMPARE(w.windowTitle(), QStringLiteral("1000 primes [1/%1]").arg(sections));
        // The editor holds one section, never the whole text.
        QCOMPARE(w.editor()->toPlainText(), Rows(0, perSection, 97).replace("\r\n", "\n"));
        QVERIFY(!w.commandEnabled(kTblBack));
        QVERIFY(w.commandEnabled(kTblForward));
        QVERIFY(w.commandEnabled(kTblJump));
        w.command(kTblForward);
        QCOMPARE(w.windowTitle(), QStringLiteral("1000 primes [2/%1]").arg(sections));
        QVERIFY(w.editor()->toPlainText().startsWith(
            QString::number(perSection).rightJustified(7, '0')));
        QVERIFY(w.commandEnabled(kTblBack));
        w.showSection(sections - 1);
        QVERIFY(!w.commandEnabled(kTblForward));
        QVERIFY(w.sectionText(sections - 1).endsWith(
            Rows(rows - 1, 1, 97)));   // the last row is on the last page
    }

    void oneSectionHasNoMarkAndNoSectionCommands() {
        ScriptedModal modal;
        TTableWin w(nullptr, "batch calculation");
        w.append(Rows(0, 3, 20));
        w.setTextAndTitle("batch calculation [A^B]");
        QCOMPARE(w.windowTitle(), QStringLiteral("batch calculation [A^B]"));
        for (int id : {kTblBack, kTblForward, kTblJump, kTblFormat}) QVERIFY(!w.commandEnabled(id));
        QVERIFY(!FindMenuAction(&w, kTblFormat)->isEnabled());
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QTest::keyClick(&w, Qt::Key_J, Qt::ControlModifier);   // greyed: no question
        QCOMPARE(modal.calls.size(), 0);
    }

    void jumpAsksForASectionInRange() {
        ScriptedModal modal;
        TTableWin w(nullptr, "t");
        w.append(Rows(0, 1000, 100));   // 100000 characters: 4 sections
        w.setTextAndTitle("t");
        QCOMPARE(w.sectionCount(), 4);
        modal.answerText("3");
        w.command(kTblJump);
        QCOMPARE(modal.calls[0].caption, QStringLiteral("input"));
        QCOMPARE(modal.calls[0].text, QStringLiteral("target number [1 ... 4]"));
        QCOMPARE(modal.defaults[0], QStringLiteral("1"));
        QCOMPARE(w.shownSection(), 2);
        QCOMPARE(w.windowTitle(), QStringLiteral("t [3/4]"));
        const struct { const char* answer; int error; } refused[] = {{"5", 17}, {"two", 1}};
        for (const auto& r : refused) {
            modal.answerText(r.answer);
            w.command(kTblJump);
            QCOMPARE(modal.lastError(), r.error);
            QCOMPARE(w.shownSection(), 2);
        }
        QCOMPARE(modal.defaults.last(), QStringLiteral("3"));
        QCOMPARE(modal.unexpected, 0);
    }

    void theCeilingIsExactlyAMillionCharacters() {
        ScriptedModal modal;
        TTableWin w(nullptr, "t");
        QVERIFY(w.append(QString(kListChars - 10, 'a')));
        QVERIFY(!w.append(Rows(0, 1, 20)));   // 20 more would pass it: refused, silently
        QCOMPARE(w.text().size(), kListChars - 10);
        QVERIFY(w.appendLatin1("0123456789"));   // exactly reaches it
        QCOMPARE(w.text().size(), kListChars);
        QVERIFY(!w.append("x"));
        QVERIFY(!w.appendLatin1("x"));
        QCOMPARE(modal.calls.size(), 0);
        w.replaceText(QString(kListChars + 5, 'b'));
        QCOMPARE(w.text().size(), kListChars);
        // A row's head and value fit or not each on its own; the counter counts both ways.
        Big v("12345678901234567890");
        w.replaceText(QString(kListChars - 10, 'a'));
        QVERIFY(!w.appendRow(&v.v));           // the head fits, the value does not
        QVERIFY(!w.appendRow(&v.v));           // the next head just reaches the ceiling
        QVERIFY(w.text().endsWith("a  0:   1: "));
        QVERIFY(!w.appendRow(&v.v));
        QCOMPARE(w.rowCounter(), 3);
        QCOMPARE(w.text().size(), kListChars);
    }

    void rowsCarryTheCounterAndTheNumeratorsDigits() {
        TTableWin w(nullptr, "A");
        Big fib[] = {Big("0"), Big("1"), Big("-12345678901234567890")};
        for (Big& b : fib) QVERIFY(w.appendRow(&b.v));
        QCOMPARE(w.text(), QStringLiteral("  0: 0\r\n  1: 1\r\n  2: -12345678901234567890\r\n"));
        QCOMPARE(w.rowCounter(), 3);
        // Wide heads are not cut.
        while (w.rowCounter() < 1000) QVERIFY(w.appendRow(&fib[1].v));
        QVERIFY(w.appendRow(&fib[2].v));
        QVERIFY(w.text().endsWith("\r\n1000: -12345678901234567890\r\n"));
        // A value wider than a text buffer is shown cut, as the number windows do.
        TTableWin huge(nullptr, "C");
        Big many(std::string(70000, '1').c_str());
        QVERIFY(huge.appendRow(&many.v));
        QCOMPARE(huge.text().size(), 5 + kTextBufferChars + 2);
        QVERIFY(huge.text().endsWith("11...\r\n"));
        huge.clearText();
        QCOMPARE(huge.rowCounter(), 0);
    }

    void refreshKeepsTheShownSectionWhileRowsArrive() {
        TTableWin w(nullptr, "A");
        w.append(Rows(0, 250, 100));
        w.setTextAndTitle("A");
        QCOMPARE(w.sectionCount(), 1);
        w.append(Rows(250, 100, 100));          // spills into a second section
        QCOMPARE(w.windowTitle(), QStringLiteral("A"));   // not before refresh
        w.refresh();
        QCOMPARE(w.windowTitle(), QStringLiteral("A [1/2]"));
        QCOMPARE(w.editor()->toPlainText().count('\n'), 300);
        w.command(kTblForward);
        w.append(Rows(350, 10, 100));
        w.refresh();                            // the last section grows in place
        QCOMPARE(w.shownSection(), 1);
        QCOMPARE(w.editor()->toPlainText(), QString(w.sectionText(1)).replace("\r\n", "\n"));
        QCOMPARE(w.editor()->toPlainText().count('\n'), 60);
        // Pieces that part a CR from its LF still show one line end.
        w.appendLatin1("tail\r");
        w.refresh();
        w.appendLatin1("\nend");
        w.refresh();
        QVERIFY(w.editor()->toPlainText().endsWith("tail\nend"));
        // New text from the start: the first section again.
        w.clearText();
        w.append(Rows(0, 2, 10));
        w.setTextAndTitle("B");
        QCOMPARE(w.shownSection(), 0);
        QCOMPARE(w.editor()->toPlainText(), QStringLiteral("0000000:\n0000001:\n"));
        w.clearText();
        w.refresh();
        QCOMPARE(w.editor()->toPlainText(), QString());
        QCOMPARE(w.sectionCount(), 1);
    }

    void searchRunsOnThroughLaterSections() {
        ScriptedModal modal;
        TTableWin w(nullptr, "t");
        QString text = Rows(0, 1000, 100);
        text.replace(QStringLiteral("0000650:"), QStringLiteral("0NeEdLe:"));
        text.replace(QStringLiteral("0000020:"), QStringLiteral("0needle:"));
        w.append(text);
        w.setTextAndTitle("t");
        modal.answerText("needle");
        w.command(kTxtSearch);                  // fresh window: from the caret
        QCOMPARE(w.shownSection(), 0);
        QCOMPARE(w.editor()->textCursor().selectedText(), QStringLiteral("needle"));
        w.command(kTxtNext);                    // on into the third section
        QCOMPARE(w.shownSection(), 2);
        QCOMPARE(w.editor()->textCursor().selectedText(), QStringLiteral("NeEdLe"));
        QCOMPARE(w.windowTitle(), QStringLiteral("t [3/4]"));
        w.command(kTxtNext);                    // none after it: back to the top
        QCOMPARE(modal.lastError(), 2);
        QCOMPARE(w.shownSection(), 0);
        w.command(kTxtNext);
        QCOMPARE(w.editor()->textCursor().selectionStart(), 20 * 99 + 1);
        // A section just turned to is searched from its very first character.
        w.command(kTblForward);
        modal.answerText("0000300");
        w.command(kTxtSearch);
        QCOMPARE(w.editor()->textCursor().selectionStart(), 0);
        QCOMPARE(w.shownSection(), 1);
        modal.answerText("");
        w.command(kTxtSearch);
        QCOMPARE(modal.lastError(), 9);
    }

    void savesTheWholeTableAndRefusesAllWhileBusy() {
        QTemporaryDir dir;
        ScriptedModal modal;
        TTableWin w(nullptr, "t");
        w.append(Rows(0, 1000, 100));
        w.setTextAndTitle("t");
        w.show();
        w.setBusy(true);
        for (int id : {int(kTblForward), int(kTblJump), int(kTxtSearch), int(kTxtSaveAs)})
            QVERIFY(!w.commandEnabled(id));
        w.command(kTblJump);
        w.command(kTxtSaveAs);
        QCOMPARE(modal.calls.size(), 0);
        w.command(kTxtClose);
        QVERIFY(w.isHidden());                  // hidden, not destroyed
        w.setBusy(false);
        modal.answerFile(dir.filePath("table.txt"));
        w.command(kTxtSaveAs);                  // all sections, then a zero byte
        QFile f(dir.filePath("table.txt"));
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), w.text().toLatin1() + QByteArray(1, '\0'));
    }
};

QTEST_MAIN(TestTableWin)
#include "test_table_win.moc"
