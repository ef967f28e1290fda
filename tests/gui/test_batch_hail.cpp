// The Batch and hailstone dialogs: presets, what reaches the model and the
// output, the busy caption while a run goes, and the reported codes.
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

void Click(QWidget* dlg, const char* name) {
    QPushButton* b = dlg->findChild<QPushButton*>(QLatin1String(name));
    QVERIFY2(b, name);
    QTest::mouseClick(b, Qt::LeftButton);
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
        QCOMPARE(dlg.windowTitle(), QStringLiteral("batch calculation"));
        QCOMPARE(dlg.formulaEdit()->text(), QStringLiteral("A^B"));
        QCOMPARE(dlg.firstList()->text(), QStringLiteral("2"));
        QCOMPARE(dlg.secondList()->text(), QStringLiteral("10,20,40,80,100"));
        // While it runs the dialog is busy and a second press does nothing.
        QString busyCaption;
        host.onRun = [&] {
            busyCaption = dlg.windowTitle();
            QCOMPARE(dlg.calculate(), 0);
        };
        Click(&dlg, "calculate");
        QCOMPARE(busyCaption, QStringLiteral("press Q to quit"));
        QCOMPARE(host.captionsDuringRuns.size(), 1);
        QCOMPARE(host.batchTitles, QStringList({"batch calculation [A^B]"}));
        const QStringList rows = host.batchText.split(QStringLiteral("\r\n\r\n"),
                                                      Qt::SkipEmptyParts);
        QCOMPARE(rows.size(), 5);
        QCOMPARE(rows[0], QStringLiteral("A=2, B=10\r\n1024"));
        QCOMPARE(rows[1], QStringLiteral("A=2, B=20\r\n1048576"));
        QCOMPARE(rows[4], QStringLiteral("A=2, B=100\r\n1267650600228229401496703205376"));
        QCOMPARE(dlg.windowTitle(), QStringLiteral("batch calculation"));
        QVERIFY(!dlg.busy());
        QCOMPARE(modal.calls.size(), 0);
        // A and B were temporary: they hold nothing afterwards.
        QVERIFY(!f.model.HasVariable(1) && !f.model.HasVariable(2));
    }

    void batchCodesAreReportedAndAnEmptyListShowsNothing() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        TBatcDlg dlg(nullptr, &f.model, &host);
        dlg.secondList()->setText(QStringLiteral("  "));
        QCOMPARE(dlg.calculate(), 6);
        QCOMPARE(modal.lastError(), 6);
        QVERIFY(host.batchTitles.isEmpty());

        // Only the last pair's code counts: 1/0 fails, then 1/2 is fine.
        dlg.formulaEdit()->setText(QStringLiteral("A/B"));
        dlg.firstList()->setText(QStringLiteral("1"));
        dlg.secondList()->setText(QStringLiteral("0,2"));
        modal.calls.clear();
        QCOMPARE(dlg.calculate(), 0);
        QCOMPARE(modal.calls.size(), 0);
        QCOMPARE(host.batchTitles.last(), QStringLiteral("batch calculation [A/B]"));
        dlg.secondList()->setText(QStringLiteral("2,0,"));
        QCOMPARE(dlg.calculate(), 104);
        QCOMPARE(modal.lastError(), 104);
        QVERIFY(host.batchText.startsWith(QStringLiteral("A=1, B=2\r\n")));
        QCOMPARE(host.batchTitles.size(), 2);
        QVERIFY(!dlg.busy());
    }

    void hailstoneOf27() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        THailDlg dlg(nullptr, &f.model, &host);
        QCOMPARE(dlg.windowTitle(), QStringLiteral("Collatz calculation"));
        QCOMPARE(dlg.seedBox()->currentText(), QStringLiteral("H"));
        QCOMPARE(dlg.maximumBox()->currentText(), QStringLiteral("M"));
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral(" ...."));
        QCOMPARE(dlg.stepsToMaximumField()->text(), QStringLiteral(" ..."));
        f.Let('H', "27");
        QString busyCaption;
        host.onRun = [&] {
            busyCaption = dlg.windowTitle();
            QCOMPARE(dlg.calculate(), 0);
        };
        Click(&dlg, "calculate");
        QCOMPARE(busyCaption, QStringLiteral("press Q to quit"));
        QCOMPARE(host.captionsDuringRuns.size(), 1);
        QCOMPARE(modal.calls.size(), 0);
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral("111"));
        QCOMPARE(dlg.stepsToMaximumField()->text(), QStringLiteral("77"));
        QCOMPARE(f.Var('M'), std::string("9232"));
        QCOMPARE(dlg.windowTitle(), QStringLiteral("Collatz calculation"));
    }

    void hailstoneRefusalsKeepTheFields() {
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
        QCOMPARE(modal.lastError(), 14);
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral(" ...."));
        QVERIFY(!dlg.busy());
        QCOMPARE(dlg.windowTitle(), QStringLiteral("Collatz calculation"));

        // Seed 1: no steps, and the maximum is the seed itself.
        f.Let('D', "1");
        QCOMPARE(dlg.calculate(), 0);
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral("0"));
        QCOMPARE(dlg.stepsToMaximumField()->text(), QStringLiteral("0"));
        QCOMPARE(f.Var('C'), std::string("1"));
    }
};

QTEST_MAIN(TestBatchHail)
#include "test_batch_hail.moc"
