// The base-conversion dialog: presets, bases from the radio rows, the output
// emptied and the code reported when the input is refused.
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include "bigint/context.h"
#include "dialogs/conv_dlg.h"
#include "scripted_modal.h"
#include "stub_host.h"

namespace {

// A context whose quit poll always answers Q.
class QuitContext : public CalcContext {
public:
    int PollQuitKey() override { return kQuitKey; }
};

QRadioButton* BaseButton(TConvDlg* dlg, int row, int base) {
    // Each row holds the buttons "2" ... "16" in order, the input's row first.
    const QList<QRadioButton*> all = dlg->findChildren<QRadioButton*>();
    return all.value(row * (kLastBase - kFirstBase + 1) + base - kFirstBase);
}

}  // namespace

class TestConv : public QObject {
    Q_OBJECT
private slots:
    void presetsConvertTo33() {
        CalcContext ctx;
        ScriptedModal modal;
        StubHost host;
        TConvDlg dlg(nullptr, &ctx, &host);
        QCOMPARE(dlg.windowTitle(), QStringLiteral("base conversion"));
        QCOMPARE(dlg.inputEdit()->text(), QStringLiteral("100001"));
        QCOMPARE(dlg.inputEdit()->maxLength(), kConvInputChars);
        QCOMPARE(dlg.inputBase(), 2);
        QCOMPARE(dlg.outputBase(), 10);
        dlg.outputEdit()->clear();
        QTest::mouseClick(dlg.findChild<QPushButton*>("convert"), Qt::LeftButton);
        QCOMPARE(dlg.outputEdit()->text(), QStringLiteral("33"));
        QCOMPARE(modal.calls.size(), 0);
    }

    void basesFollowTheClickedButtons() {
        CalcContext ctx;
        StubHost host;
        TConvDlg dlg(nullptr, &ctx, &host);
        dlg.show();
        QTest::mouseClick(BaseButton(&dlg, 0, 16), Qt::LeftButton);
        QTest::mouseClick(BaseButton(&dlg, 1, 2), Qt::LeftButton);
        QCOMPARE(dlg.inputBase(), 16);
        QCOMPARE(dlg.outputBase(), 2);
        QCOMPARE(BaseButton(&dlg, 0, 16)->text(), QStringLiteral("16"));
        dlg.inputEdit()->setText(QStringLiteral("f f"));
        QCOMPARE(dlg.convert(), 0);
        QCOMPARE(dlg.outputEdit()->text(), QStringLiteral("11111111"));
        dlg.setBases(10, 16);
        dlg.inputEdit()->setText(QStringLiteral("0"));
        QCOMPARE(dlg.convert(), 0);
        QCOMPARE(dlg.outputEdit()->text(), QString());
    }

    void refusedInputEmptiesTheOutput() {
        CalcContext ctx;
        ScriptedModal modal;
        StubHost host;
        TConvDlg dlg(nullptr, &ctx, &host);
        for (const char* bad : {"1002", "-101", "10\xc3\xa9"}) {
            dlg.outputEdit()->setText(QStringLiteral("33"));
            dlg.inputEdit()->setText(QString::fromUtf8(bad));
            QCOMPARE(dlg.convert(), 1);
            QCOMPARE(dlg.outputEdit()->text(), QString());
            QCOMPARE(modal.lastError(), 1);
        }
        // The field keeps what was typed, to be corrected.
        QCOMPARE(dlg.inputEdit()->text(), QString::fromUtf8("10\xc3\xa9"));
    }

    void aStoppedConversionReportsInterrupted() {
        QuitContext ctx;
        ScriptedModal modal;
        StubHost host;
        TConvDlg dlg(nullptr, &ctx, &host);
        dlg.setBases(10, 2);
        dlg.inputEdit()->setText(QString(200, QChar('9')));
        QCOMPARE(dlg.convert(), -1);
        QCOMPARE(dlg.outputEdit()->text(), QString());
        QCOMPARE(modal.calls.last().text, QStringLiteral("interrupted"));
    }
};

QTEST_MAIN(TestConv)
#include "test_conv.moc"
