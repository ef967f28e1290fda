// The base-conversion dialog: bases from the clicked radio buttons, the
// output emptied and the code reported when the input is refused or stopped.
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include "bigint/context.h"
#include "dialogs/conv_dlg.h"
#include "scripted_modal.h"
#include "stub_host.h"

namespace {

class QuitContext : public CalcContext {
public:
    int PollQuitKey() override { return kQuitKey; }
};

// The radio buttons "2" ... "16", the input's row first.
QRadioButton* BaseButton(TConvDlg* dlg, int row, int base) {
    const QList<QRadioButton*> all = dlg->findChildren<QRadioButton*>();
    return all.value(row * (kLastBase - kFirstBase + 1) + base - kFirstBase);
}

}  // namespace

class TestConv : public QObject {
    Q_OBJECT
private slots:
    void convertsBetweenTheCheckedBases() {
        CalcContext ctx;
        ScriptedModal modal;
        StubHost host;
        TConvDlg dlg(nullptr, &ctx, &host);
        dlg.show();
        dlg.outputEdit()->clear();
        QTest::mouseClick(dlg.findChild<QPushButton*>("convert"), Qt::LeftButton);
        QCOMPARE(dlg.outputEdit()->text(), QStringLiteral("33"));   // the presets
        QTest::mouseClick(BaseButton(&dlg, 0, 16), Qt::LeftButton);
        QTest::mouseClick(BaseButton(&dlg, 1, 2), Qt::LeftButton);
        dlg.inputEdit()->setText("f f");
        QCOMPARE(dlg.convert(), 0);
        QCOMPARE(dlg.outputEdit()->text(), QStringLiteral("11111111"));
        QCOMPARE(modal.calls.size(), 0);
    }

    void refusedOrStoppedInputEmptiesTheOutput() {
        CalcContext ctx;
        ScriptedModal modal;
        StubHost host;
        TConvDlg dlg(nullptr, &ctx, &host);
        for (const char* bad : {"1002", "-101", "10\xc3\xa9"}) {
            dlg.outputEdit()->setText("33");
            dlg.inputEdit()->setText(QString::fromUtf8(bad));
            QCOMPARE(dlg.convert(), 1);
            QCOMPARE(dlg.outputEdit()->text(), QString());
        }
        QCOMPARE(modal.lastError(), 1);
        QCOMPARE(dlg.inputEdit()->text(), QString::fromUtf8("10\xc3\xa9"));   // kept to be corrected

        QuitContext quitting;
        TConvDlg stopped(nullptr, &quitting, &host);
        stopped.setBases(10, 2);
        stopped.inputEdit()->setText(QString(200, QChar('9')));
        QCOMPARE(stopped.convert(), -1);
        QCOMPARE(stopped.outputEdit()->text(), QString());
        QCOMPARE(modal.calls.last().text, QStringLiteral("interrupted"));
    }
};

QTEST_MAIN(TestConv)
#include "test_conv.moc"
