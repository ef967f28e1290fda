// Table windows: paging a megabyte, the append ceiling, rows of values,
// section commands and their enablers, searching across sections, saving.
#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QtTest>

#include <string>

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
        // A row longer than a section is cut at the section's length, but a
        // CR is not parted from its LF.
        QCOMPARE(Starts(QString(70000, '7')),
                 (std::vector<std::size_t>{0, 30000, 60000}));
        t = QString(kTableSectionChars - 1, 'a') + "\r\n" + "bc";
        QCOMPARE(Starts(t), (std::vector<std::size_t>{0, std::size_t(kTableSectionChars - 1)}));
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
    }

    void jumpAsksForASectionInRange() {
        ScriptedModal modal;
        TTableWin w(nullptr, "t");
        w.append(Rows(0, 1000, 100));   // 100000 characters: 4 sections
        w.setTextAndTitle("t");
        QCOMPARE(w.sectionCount(), 4);
        modal.answerText("3");
        w.command(kTblJump);
        QCOMPARE(modal.calls[0].text, QStringLiteral("target number [1 ... 4]"));
        QCOMPARE(modal.defaults[0], QStringLiteral("1"));
        QCOMPARE(w.shownSection(), 2);
        QCOMPARE(w.windowTitle(), QStringLiteral("t [3/4]"));
        modal.answerText("5");
        w.command(kTblJump);
        QCOMPARE(modal.lastError(), 17);
        QCOMPARE(w.shownSection(), 2);
        QCOMPARE(modal.defaults.last(), QStringLiteral("3"));
    }

    void theCeilingIsExactlyAMillionCharacters() {
        ScriptedModal modal;
        TTableWin w(nullptr, "t");
        QVERIFY(w.append(QString(kListChars - 10, 'a')));
        QVERIFY(!w.append(Rows(0, 1, 20)));   // 20 more would pass it: refused, silently
        QCOMPARE(w.text().size(), kListChars - 10);
        QVERIFY(w.appendLatin1("0123456789"));   // exactly reaches it
        QCOMPARE(w.text().size(), kListChars);
        QVERIFY(!w.appendLatin1("x"));
        QCOMPARE(modal.calls.size(), 0);
    }

    void refreshKeepsTheShownSectionWhileRowsArrive() {
        TTableWin w(nullptr, "A");
        w.append(Rows(0, 250, 100));
        w.setTextAndTitle("A");
        QCOMPARE(w.sectionCount(), 1);
        QVERIFY(!w.commandEnabled(kTblJump) && !w.commandEnabled(kTblFormat));
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
        // A section just turned to is searched from its very first character.
        w.command(kTblForward);
        modal.answerText("0000300");
        w.command(kTxtSearch);
        QCOMPARE(w.editor()->textCursor().selectionStart(), 0);
        QCOMPARE(w.shownSection(), 1);
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
