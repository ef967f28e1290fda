// Number windows: paging into sections, display states, titles, the
// section commands, digit frequencies and Save as Text.
#include <QFile>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <string>

#include "bigint/bigint.h"
#include "resources/menus_frame.h"
#include "scripted_modal.h"
#include "windows/font_table.h"
#include "windows/note_win.h"
#include "windows/num_win.h"
#include "windows/num_win_layout.h"
#include "windows/num_win_text.h"

namespace {

// A value record that frees itself.
struct Value {
    BigInt v = {};
    Value() = default;
    explicit Value(std::string text) { BigFromText(text.data(), &v); }
    ~Value() { BigFree(&v); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;
};

// Digits 1..9 only, so that no limb has leading zeros (a section that starts
// inside the number prints its first limb without them).
std::string NonZeroDigits(int count, quint32 seed) {
    QRandomGenerator rng(seed);
    std::string s;
    for (int i = 0; i < count; ++i) s += static_cast<char>('1' + rng.bounded(9));
    return s;
}

QStringList Lines(const std::string& text) {
    return QString::fromStdString(text).split('\n');
}

LogFont Font() { return FontTableEntry(2, 96); }

}  // namespace

class TestNumWin : public QObject {
    Q_OBJECT
private slots:
    // Every section fills whole lines, later sections start on a limb, and
    // all sections together give back the number's text.
    void sectionsCoverTheNumberInWholeLines_data() {
        QTest::addColumn<int>("digits");
        QTest::addColumn<int>("lineDigits");
        QTest::addColumn<bool>("negative");
        for (int L : {7, 40, 72})
            for (int d : {130001, 130002, 130003, 130004, 160005})
                for (bool neg : {false, true})
                    QTest::addRow("%d digits, %d per line%s", d, L, neg ? ", negative" : "")
                        << d << L << neg;
    }
    void sectionsCoverTheNumberInWholeLines() {
        QFETCH(int, digits);
        QFETCH(int, lineDigits);
        QFETCH(bool, negative);
        const std::string text = (negative ? "-" : "") + NonZeroDigits(digits, digits);
        Value value(text);
        SectionLayout layout;
        QCOMPARE(LayoutSections(value.v.top, BigTextLength(&value.v), negative, lineDigits,
                                &layout),
                 0);
        QVERIFY(layout.count > 0);
        QCOMPARE(layout.bounds.front(), value.v.top);
        QCOMPARE(layout.bounds.back(), -1);
        std::string joined;
        for (int k = 0; k <= layout.count; ++k) {
            const QStringList lines = Lines(SectionText(&value.v, layout, k, lineDigits, "\n"));
            QVERIFY(lines.size() <= LinesPerSection(lineDigits) + 1);
            for (int i = 0; i < lines.size(); ++i) {
                const bool lastOfAll = k == layout.count && i == lines.size() - 1;
                if (!lastOfAll) QCOMPARE(lines[i].size(), lineDigits);
            }
            if (k == 0) {
                QCOMPARE(lines[0].size() - lines[0].trimmed().size(), layout.offset);
                QCOMPARE(lines[0].trimmed().startsWith('-'), negative);
            }
            joined += lines.join(QString()).trimmed().toStdString();
            QVERIFY(SectionText(&value.v, layout, k, lineDigits, "\n").size() <= 64000 + 2000);
        }
        QCOMPARE(joined, text);
    }

    void aNumberOfOneSectionHasNoOffsetAndNoSectionCommands() {
        Value value("-1234567890123");
        TNumWin w(nullptr, "number1", 1, &value.v, &value.v, Font());
        Value one("1");
        w.refill(&value.v, &one.v);
        w.setLineDigits(5);
        QCOMPARE(w.displayState(), int(kShowWhole));
        QCOMPARE(w.editor()->toPlainText(), QString("-1234\n56789\n0123"));
        QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 13]"));
        for (int id : {kNumBack, kNumForward, kNumJump, kNumNumerator, kNumDenominator})
            QVERIFY2(!w.commandEnabled(id), qPrintable(QString::number(id)));
        QVERIFY(w.commandEnabled(kNumNotes));
    }

    void sectionCommandsMoveThroughA30103DigitNumber() {
        BigInt two = {}, power = {}, one = {};
        CalcContext ctx;
        BigFromInt(&two, 2);
        BigFromInt(&one, 1);
        QCOMPARE(BigPowInt(&ctx, &two, 100000, &power), 0);
        {
            TNumWin w(nullptr, "number1", 1, &power, &one, Font());
            w.setLineDigits(1);
            QCOMPARE(w.displayState(), int(kShowSections));
            QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103] [section 1/2]"));
            QVERIFY(!w.commandEnabled(kNumBack));
            QVERIFY(w.commandEnabled(kNumForward));
            w.command(kNumForward);
            QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103] [section 2/2]"));
            QVERIFY(w.commandEnabled(kNumBack));
            QVERIFY(!w.commandEnabled(kNumForward));
            // The last section ends with the number's last digit: 2^100000 ends in ...9376.
            QVERIFY(w.editor()->toPlainText().endsWith("9\n3\n7\n6"));

            ScriptedModal modal;
            modal.answerText("1");
            w.command(kNumJump);
            QCOMPARE(modal.calls.at(0).caption, QString("input"));
            QCOMPARE(modal.calls.at(0).text, QString("target number [1 ... 2]"));
            QCOMPARE(modal.defaults.at(0), QString("2"));
            QCOMPARE(w.currentSection(), 0);
            modal.answerText("3");   // out of range: nothing moves
            w.command(kNumJump);
            QCOMPARE(w.currentSection(), 0);

            w.setLineDigits(60);   // wide lines: one section, no section part
            QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103]"));
        }
        BigFree(&two);
        BigFree(&power);
        BigFree(&one);
    }

    void fractionsShowTogetherOrPartByPart() {
        Value seven("7"), two("2");
        TNumWin w(nullptr, "number3", 3, &seven.v, &two.v, Font());
        w.setLineDigits(20);
        QCOMPARE(w.displayState(), int(kShowFraction));
        QCOMPARE(w.editor()->toPlainText(), QString("7\n-\n2"));
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 1/1]"));

        Value big(NonZeroDigits(40000, 1)), bigger(NonZeroDigits(30000, 2));
        w.setLineDigits(72);
        w.refill(&big.v, &bigger.v);
        QCOMPARE(w.displayState(), int(kShowNumerator));
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 40000][num]"));
        QVERIFY(w.commandEnabled(kNumDenominator));
        QVERIFY(!w.commandEnabled(kNumNumerator));
        w.command(kNumDenominator);
        QCOMPARE(w.displayState(), int(kShowDenominator));
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 30000][den]"));
        QVERIFY(w.editor()->toPlainText().startsWith(
            QString::fromStdString(NonZeroDigits(30000, 2).substr(0, 72))));
        QVERIFY(w.commandEnabled(kNumNumerator));

        // Parts of fewer than 63800 digits together go back to one display.
        w.refill(&seven.v, &two.v);
        QCOMPARE(w.displayState(), int(kShowFraction));
    }

    void digitFrequenciesGoToTheNotebook() {
        Value v("-1122333"), one("1");
        TNumWin w(nullptr, "number2", 2, &v.v, &one.v, Font());
        w.setInscription("x");
        w.command(kNumDigitFreq);
        const QString expected =
            "x\n\n"
            "0: 0   0.0%\n1: 2  28.6%\n2: 2  28.6%\n3: 3  42.9%\n4: 0   0.0%\n"
            "5: 0   0.0%\n6: 0   0.0%\n7: 0   0.0%\n8: 0   0.0%\n9: 0   0.0%\n"
            "-----------\n   7 100.0%\n";
        QCOMPARE(w.notebook()->text(), expected);
        QVERIFY(w.notebook()->isVisible());
    }

    void saveAsTextWritesWholeLinesOfDigits() {
        QTemporaryDir dir;
        Value v("-123456789"), one("1");
        TNumWin w(nullptr, "number2", 2, &v.v, &one.v, Font());
        ScriptedModal modal;
        const QString path = dir.filePath("n.txt");
        modal.answerText("4");
        modal.answerFile(path);
        w.command(kNumSaveAsText);
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("1234\r\n5678\r\n9\r\n"));
        QCOMPARE(modal.calls.at(0).text, QString("digits per line"));

        modal.answerText("1");   // 1 is no count: the window's own is used
        modal.answerFile(dir.filePath("missing/n.txt"));
        w.command(kNumSaveAsText);
        QCOMPARE(modal.lastError(), 12);
    }

    void aLargerFontGivesFewerDigitsPerLine() {
        Value v(NonZeroDigits(3000, 3)), one("1");
        TNumWin w(nullptr, "number2", 2, &v.v, &one.v, Font());
        w.resize(700, 400);
        const int32_t before = w.lineDigits();
        QVERIFY(before > 10);
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
        QVERIFY(w.logFont().height != Font().height);
        const int32_t wide = w.lineDigits();
        w.show();
        w.resize(350, 400);   // a narrower window re-lays the number out
        QVERIFY(w.lineDigits() < wide);
        QCOMPARE(w.editor()->toPlainText().section('\n', 0, 0).size(), int(w.lineDigits()));
    }

    void closingOnlyHides() {
        Value v("5"), one("1");
        TNumWin w(nullptr, "number2", 2, &v.v, &one.v, Font());
        w.show();
        QVERIFY(!w.close());
        QVERIFY(!w.isVisible());
        w.command(kNumClose);
        QVERIFY(!w.isVisible());
    }

    void placementCascadesByLabel() {
        const QRect base(0, 100, 600, 0);
        QCOMPARE(TNumWin::Placement(1, 50, base), QRect(45, 115, 450, 225));
        QCOMPARE(TNumWin::Placement(14, 1000, base), QRect(30 + 210 + 200, 100, 600, 450));
    }
};

QTEST_MAIN(TestNumWin)
#include "test_num_win.moc"
