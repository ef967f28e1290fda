// The Batch and hailstone dialogs: what reaches the model and the output,
// the busy caption that refuses a second press, and the reported codes.
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include "calc/calc_test_util.h"
#include "dialogs/batc_dlg.h"
#include "dialogs/hail_dlg.h"
#include "scripted_modal.h"
#include "stub_host.h"

namespace {

// Presses "calculate" and records the dialog's caption during the run, when
// a second press must do nothing.
template <class Dlg>
QString CalculateWhileWatching(Dlg* dlg, StubHost* host) {
    QString caption;
    host->onRun = [&] {
        caption = dlg->windowTitle();
        QCOMPARE(dlg->calculate(), 0);
    };
    QTest::mouseClick(dlg->template findChild<QPushButton*>("calculate"), Qt::LeftButton);
    host->onRun = nullptr;
    return caption;
}

}  // namespace

class TestBatchHail : public QObject {
    Q_OBJECT
private slots:
    void batchPresetsGiveFiveRows() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        TBatcDlg dlg(nullptr, &f.model, &host);
        QCOMPARE(CalculateWhileWatching(&dlg, &host), QStringLiteral("press Q to quit"));
        QCOMPARE(host.captionsDuringRuns.size(), 1);
        QCOMPARE(dlg.windowTitle(), QStringLiteral("batch calculation"));
        QCOMPARE(host.batchTitles, QStringList({"batch calculation [A^B]"}));
        const QStringList rows = host.batchText.split("\r\n\r\n", Qt::SkipEmptyParts);
        QCOMPARE(rows.size(), 5);
        QCOMPARE(rows[0], QStringLiteral("A=2, B=10\r\n1024"));
        QCOMPARE(rows[4], QStringLiteral("A=2, B=100\r\n1267650600228229401496703205376"));
        QCOMPARE(modal.calls.size(), 0);
    }

    void batchReportsOnlyTheLastPairAndShowsNothingForAnEmptyList() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        TBatcDlg dlg(nullptr, &f.model, &host);
        dlg.secondList()->setText("  ");
        QCOMPARE(dlg.calculate(), 6);
        QVERIFY(host.batchTitles.isEmpty());
        dlg.formulaEdit()->setText("A/B");
        dlg.firstList()->setText("1");
        dlg.secondList()->setText("0,2");
        QCOMPARE(dlg.calculate(), 0);
        dlg.secondList()->setText("2,0,");
        QCOMPARE(dlg.calculate(), 104);
        QVERIFY(host.batchText.startsWith("A=1, B=2\r\n") && !host.batchText.contains("B=0"));
        QCOMPARE(host.batchTitles.size(), 2);
        QCOMPARE(modal.count("error"), 2);
        QCOMPARE(modal.lastError(), 104);
    }

    void hailstoneOf27() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        THailDlg dlg(nullptr, &f.model, &host);
        f.Let('H', "27");
        QCOMPARE(CalculateWhileWatching(&dlg, &host), QStringLiteral("press Q to quit"));
        QCOMPARE(host.captionsDuringRuns.size(), 1);
        QCOMPARE(dlg.windowTitle(), QStringLiteral("Collatz calculation"));
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral("111"));
        QCOMPARE(dlg.stepsToMaximumField()->text(), QStringLiteral("77"));
        QCOMPARE(f.Var('M'), std::string("9232"));
        QCOMPARE(modal.calls.size(), 0);
    }

    void hailstoneRefusalsLeaveTheFieldsAndTheDialogUsable() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        THailDlg dlg(nullptr, &f.model, &host);
        dlg.seedBox()->setCurrentIndex(2);   // C, empty
        QCOMPARE(dlg.calculate(), 2);
        f.Let('C', "6");
        dlg.maximumBox()->setCurrentIndex(2);
        QCOMPARE(dlg.calculate(), 6);
        f.Let('D', "0");
        dlg.seedBox()->setCurrentIndex(3);
        QCOMPARE(dlg.calculate(), 14);
        QCOMPARE(modal.count("error"), 3);
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral(" ...."));
        f.Let('D', "1");
        QCOMPARE(dlg.calculate(), 0);
        QCOMPARE(dlg.stepsField()->text() + dlg.stepsToMaximumField()->text(), QStringLiteral("00"));
        QCOMPARE(f.Var('C'), std::string("1"));
    }
};

QTEST_MAIN(TestBatchHail)
#include "test_batch_hail.moc"
