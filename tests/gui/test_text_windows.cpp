// Text windows driven as a user would: commands, keys and the modal seam.
#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest>

#include "resources/limits.h"
#include "scripted_modal.h"
#include "windows/help_win.h"
#include "windows/note_win.h"
#include "windows/text_win.h"

namespace {

QString Selected(TPreTextWin& w) { return w.editor()->textCursor().selectedText(); }
int SelStart(TPreTextWin& w) { return w.editor()->textCursor().selectionStart(); }

QByteArray ReadAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

}  // namespace

class TestTextWindows : public QObject {
    Q_OBJECT
private slots:
    void searchStartsAtCaretOnlyAfterRestart() {
        ScriptedModal modal;
        TTextWin w(nullptr, "t", "", "abc abc ABC", 0);
        modal.answerText("abc");
        w.command(kTxtSearch);            // fresh window: a match at the first character
        QCOMPARE(SelStart(w), 0);
        w.command(kTxtNext);
        w.command(kTxtNext);              // case does not matter
        QCOMPARE(Selected(w), QStringLiteral("ABC"));
        w.command(kTxtNext);              // miss: caret to the top, restart set
        QCOMPARE(modal.lastError(), 2);
        w.command(kTxtNext);              // so the first match is found again
        QCOMPARE(SelStart(w), 0);
        QCOMPARE(Selected(w), QStringLiteral("abc"));
    }

    void searchDialogAndItsAnswers() {
        ScriptedModal modal;
        TTextWin w(nullptr, "t", "", "one two", 0);
        QVERIFY(!w.commandEnabled(kTxtNext));   // no search text yet
        modal.answerText("");
        w.command(kTxtSearch);
        QCOMPARE(modal.lastError(), 9);         // nothing to do
        QCOMPARE(modal.calls[0].kind, kMaxFieldChars);
        modal.answerText("three");
        w.command(kTxtSearch);
        QCOMPARE(modal.lastError(), 2);
        QVERIFY(w.commandEnabled(kTxtNext));    // kept although missed
        modal.answerCancel();
        w.command(kTxtSearch);
        QCOMPARE(modal.defaults.last(), QStringLiteral("three"));
    }

    void matchIsScrolledToFourthLine() {
        QStringList lines;
        for (int i = 0; i < 300; ++i) lines << QStringLiteral("line %1").arg(i);
        lines[200] = QStringLiteral("needle here");
        TTextWin w(nullptr, "t", "", lines.join('\n'), 0);
        w.editor()->setLineWrapMode(QPlainTextEdit::NoWrap);
        w.resize(400, 300);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        QCOMPARE(w.find("NEEDLE"), 0);
        QCOMPARE(w.editor()->verticalScrollBar()->value(), 197);
        w.command(kTxtRestart);
        QCOMPARE(w.editor()->verticalScrollBar()->value(), 0);
    }

    void keysReachTheCommands() {
        ScriptedModal modal;
        TTextWin w(nullptr, "t", "", "alpha beta", 0);
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        modal.answerText("beta");
        QTest::keyClick(&w, Qt::Key_F1);
        QCOMPARE(Selected(w), QStringLiteral("beta"));
        QTest::keyClick(&w, Qt::Key_F2);
        QCOMPARE(SelStart(w), 0);
        QTest::keyClick(&w, Qt::Key_F3);
        QCOMPARE(Selected(w), QStringLiteral("beta"));
        modal.answer(QDialog::Rejected);
        QTest::keyClick(&w, Qt::Key_F12);
        QCOMPARE(modal.calls.last().caption, QStringLiteral("LUNCH"));
        QCOMPARE(modal.lastError(), 0);   // a declined lunch says nothing
    }

    void textIsHeldToTheBufferSize() {
        const QString big(kTextBufferChars + 10, 'x');
        TTextWin w(nullptr, "t", "", big, 0);
        QCOMPARE(w.text().size(), kTextBufferChars);
        w.replaceText(QString(kTextBufferChars, 'y'));
        w.show();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QApplication::clipboard()->setText("pasted");
        w.editor()->moveCursor(QTextCursor::Start);
        w.editor()->moveCursor(QTextCursor::Right, QTextCursor::KeepAnchor);
        w.command(kTxtPaste);                       // replaces one character: one fits
        QCOMPARE(w.text().size(), kTextBufferChars);
        QVERIFY(w.text().startsWith("pyy"));
    }

    void minusSignsTakeCodesTwoTo255() {
        ScriptedModal modal;
        TTextWin w(nullptr, "t", "", "-1 - 2", 0);
        const struct { const char* answer; QString text; int error; } cases[] = {
            {"256", "-1 - 2", 1}, {"150", QString::fromUtf8("\u20131 \u2013 2"), 0}};
        for (const auto& c : cases) {
            modal.calls.clear();
            modal.answerText(c.answer);
            w.command(kTxtMinusSigns);
            QCOMPARE(w.text(), c.text);
            QCOMPARE(modal.lastError(), c.error);
        }
        QCOMPARE(modal.calls[0].caption, QStringLiteral("lengthen hyphens"));
        QCOMPARE(modal.defaults.last(), QStringLiteral("150"));
        QVERIFY(w.isModified());
    }

    void saveWritesTrailingZeroAndOpenReadsItBack() {
        QTemporaryDir dir;
        ScriptedModal modal;
        const QString path = dir.filePath("out.txt");
        TTextWin w(nullptr, "t", "", QString::fromUtf8("r\u00e9sum\u00e9\n2 \u2013 1"), 0);
        modal.answerFile(path);
        w.command(kTxtSave);   // no file yet: asks for one
        QCOMPARE(modal.calls.last().text, QStringLiteral("Text Files (*.txt)"));
        QByteArray expect = QString::fromUtf8("r\u00e9sum\u00e9\n2 \u2013 1").toUtf8();
        expect.append('\0');
        QCOMPARE(ReadAll(path), expect);
        QVERIFY(!w.isModified());

        TTextWin r(nullptr, "t", "", "", 0);
        modal.answerFile(path);
        r.command(kTxtOpen);
        QCOMPARE(r.text(), w.text());   // the zero byte is not part of the text
        QCOMPARE(r.fileName(), path);

        QFile old(dir.filePath("old.txt"));   // an 8-bit file of older days
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("caf\xe9 \x96 x");
        old.close();
        QCOMPARE(r.openFile(old.fileName()), 0);
        QCOMPARE(r.text(), QString::fromUtf8("caf\u00e9 \u2013 x"));
        modal.answerFile(dir.filePath("missing.txt"));
        r.command(kTxtOpen);
        QCOMPARE(modal.lastError(), 11);
    }

    void closingModifiedTextAsksToSave() {
        QTemporaryDir dir;
        ScriptedModal modal;
        const QString path = dir.filePath("keep.txt");
        TTextWin w(nullptr, "t", path, "x", 0);
        w.show();
        w.editor()->insertPlainText("changed ");
        modal.answer(kMbCancel);
        QVERIFY(!w.close());
        QCOMPARE(modal.calls.last().text, "save changes to " + path + "?");
        QCOMPARE(modal.calls.last().kind, int(kMsgYesNoCancel));
        QVERIFY(!QFile::exists(path));

        modal.answer(kMbYes);
        QVERIFY(w.close());
        QCOMPARE(ReadAll(path), QByteArray("changed x\0", 10));

        TTextWin f(nullptr, "t", dir.filePath("no/dir.txt"), "x", 0);
        f.show();
        f.editor()->insertPlainText("y");
        modal.answer(kMbYes);         // the save fails: the window stays
        QVERIFY(!f.close());
        QCOMPARE(modal.lastError(), 12);
        modal.answer(kMbNo);
        QVERIFY(f.close());
        QCOMPARE(modal.count("message"), 4);
    }

    void editCommandsFollowTheSelection() {
        TTextWin w(nullptr, "t", "", "copy me", 0);
        QVERIFY(!w.commandEnabled(kTxtCopy));
        QVERIFY(!w.commandEnabled(kTxtCut));
        w.command(kTxtSelectAll);
        QVERIFY(w.commandEnabled(kTxtCut));
        w.command(kTxtCopy);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("copy me"));
        QVERIFY(FindMenuAction(&w, kTxtPrint)->isEnabled());
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

    void notebookCaptionAndMenu() {
        TNoteWin n(nullptr, "number3.num", "made by 2^100", 0);
        QCOMPARE(n.windowTitle(), QStringLiteral("notebook [number3.num]"));
        QVERIFY(!FindMenuAction(&n, kTxtOpen));
        ScriptedModal modal;
        n.show();
        n.editor()->insertPlainText("typed");
        QVERIFY(n.close());   // a notebook hides without asking
        QCOMPARE(modal.calls.size(), 0);
    }

    void helpWindowShowsEveryText() {
        ScriptedModal modal;
        THelpWin h(nullptr);
        h.showHelp("OXNSECTH");
        QVERIFY(h.isVisible() && h.text().size() > 200);
        h.command(kTxtSearchHelp);
        QCOMPARE(modal.calls.last().caption, QStringLiteral("searching"));
        h.editor()->insertPlainText("scribble");
        QVERIFY(h.close());   // no save question for help
        QCOMPARE(modal.count("message"), 1);
    }
};

QTEST_MAIN(TestTextWindows)
#include "test_text_windows.moc"
