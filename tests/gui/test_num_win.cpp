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

LogFont Font() { return FontTableEntry(2, 96); }

}  // namespace

class TestNumWin : public QObject {
    Q_OBJECT
private slots:
    // Every section but the last fills whole lines, and all sections
    // together give back the number's text, sign and all.
    void sectionsCoverTheNumberInWholeLines() {
        for (int lineDigits : {7, 72}) {
            for (const char* sign : {"", "-"}) {
                const std::string text = sign + NonZeroDigits(130004, 1);
                Value value(text);
                SectionLayout layout;
                QCOMPARE(LayoutSections(value.v.top, BigTextLength(&value.v), *sign != 0,
                                        lineDigits, &layout),
                         0);
                QVERIFY(layout.count > 0);
                std::string joined;
                for (int k = 0; k <= layout.count; ++k) {
                    const QStringList lines = QString::fromStdString(
                        SectionText(&value.v, layout, k, lineDigits, "\n")).split('\n');
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
            w.command(kNumForward);
            QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103] [section 2/2]"));
            QVERIFY(w.commandEnabled(kNumBack));
            QVERIFY(!w.commandEnabled(kNumForward));
            // The last section ends with the number's last digit: 2^100000 ends in ...9376.
            QVERIFY(w.editor()->toPlainText().endsWith("9\n3\n7\n6"));

            ScriptedModal modal;
            modal.answerText("1");
            w.command(kNumJump);
            QCOMPARE(modal.calls.at(0).text, QString("target number [1 ... 2]"));
            QCOMPARE(w.currentSection(), 0);

            w.setLineDigits(60);   // wide lines: one section, no section part
            QCOMPARE(w.windowTitle(), QString("A [number1.num] [digits: 30103]"));
            QVERIFY(!w.commandEnabled(kNumForward) && !w.commandEnabled(kNumJump));
            w.show();
            QVERIFY(!w.close());   // closing only hides
            QVERIFY(!w.isVisible());
        }
        BigFree(&two);
        BigFree(&power);
        BigFree(&one);
    }

    void fractionsShowTogetherOrPartByPart() {
        Value seven("7"), two("2");
        TNumWin w(nullptr, "number3", 3, &seven.v, &two.v, Font());
        w.setLineDigits(20);
        QCOMPARE(w.editor()->toPlainText(), QString("7\n-\n2"));
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 1/1]"));

        Value big(NonZeroDigits(40000, 1)), bigger(NonZeroDigits(30000, 2));
        w.setLineDigits(72);
        w.refill(&big.v, &bigger.v);
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 40000][num]"));
        QVERIFY(!w.commandEnabled(kNumNumerator));
        w.command(kNumDenominator);
        QCOMPARE(w.windowTitle(), QString("C [number3.num] [digits: 30000][den]"));
        QVERIFY(w.editor()->toPlainText().startsWith(
            QString::fromStdString(NonZeroDigits(30000, 2).substr(0, 72))));
    }

    void digitFrequenciesAndSaveAsText() {
        QTemporaryDir dir;
        Value v("-123456789"), one("1");
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
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadOnly));
        QCOMPARE(f.readAll(), QByteArray("1234\r\n5678\r\n9\r\n"));
        modal.answerText("4");
        modal.answerFile(dir.filePath("missing/n.txt"));
        w.command(kNumSaveAsText);
        QCOMPARE(modal.lastError(), 12);
    }

    void aLargerFontOrANarrowerWindowGivesFewerDigitsPerLine() {
        Value v(NonZeroDigits(3000, 3)), one("1");
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
};

QTEST_MAIN(TestNumWin)
#include "test_num_win.moc"
