// The calculation dialogs on their own, driven by typing and clicking, with
// a stub host for the runs.
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include "calc/calc_test_util.h"
#include "dialogs/batc_dlg.h"
#include "dialogs/conv_dlg.h"
#include "dialogs/hail_dlg.h"
#include "dialogs/recur_dlg.h"
#include "dialogs/recur_run.h"
#include "scripted_modal.h"
#include "stub_host.h"
#include "windows/help_win.h"

namespace {

void Click(QWidget* dlg, const char* name) {
    QTest::mouseClick(dlg->findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
}

// Presses "calculate" and records the dialog's caption during the run, when
// a second press must do nothing.
template <class Dlg>
QString CalculateWhileWatching(Dlg* dlg, StubHost* host) {
    QString caption;
    host->onRun = [&] {
        caption = dlg->windowTitle();
        QCOMPARE(dlg->calculate(), 0);
    };
    Click(dlg, "calculate");
    host->onRun = nullptr;
    return caption;
}

// The radio buttons "2" ... "16", the input's row first.
QRadioButton* BaseButton(TConvDlg* dlg, int row, int base) {
    const QList<QRadioButton*> all = dlg->findChildren<QRadioButton*>();
    return all.value(row * (kLastBase - kFirstBase + 1) + base - kFirstBase);
}

QStringList Rows(const TRecurDlg& dlg) {
    QStringList rows;
    for (int i = 0; i < dlg.listBox()->count(); ++i) rows << dlg.listBox()->item(i)->text();
    return rows;
}

// Types an entry and presses Return, which the default button "enter" takes.
void Type(TRecurDlg* dlg, const QString& text, bool condition = false) {
    (condition ? dlg->conditionButton() : dlg->stepButton())->setChecked(true);
    dlg->entryEdit()->setText(text);
    QTest::keyClick(dlg->entryEdit(), Qt::Key_Return);
}

}  // namespace

class TestCalcDialogs : public QObject {
    Q_OBJECT
private slots:
    // The fields reach the run, the output its window, the last pair's code
    // the message; an empty list shows nothing.
    void batchRunsTheFieldsOnce() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        TBatcDlg dlg(nullptr, &f.model, &host);
        QCOMPARE(CalculateWhileWatching(&dlg, &host), QStringLiteral("press Q to quit"));
        QCOMPARE(host.captionsDuringRuns.size(), 1);
        QCOMPARE(dlg.windowTitle(), QStringLiteral("batch calculation"));
        QCOMPARE(host.batchTitles, QStringList({"batch calculation [A^B]"}));
        QCOMPARE(modal.calls.size(), 0);

        host.batchTitles.clear();
        dlg.secondList()->setText("  ");
        QCOMPARE(dlg.calculate(), 6);
        QVERIFY(host.batchTitles.isEmpty());
        dlg.formulaEdit()->setText("A/B");
        dlg.firstList()->setText("1");
        dlg.secondList()->setText("0,2");
        QCOMPARE(dlg.calculate(), 0);
        dlg.secondList()->setText("2,0,");
        QCOMPARE(dlg.calculate(), 104);
        QVERIFY(host.batchText.startsWith("A=1, B=2\r\n"));
        QCOMPARE(host.batchTitles, QStringList(2, "batch calculation [A/B]"));
        QCOMPARE(modal.count("error"), 2);
        QCOMPARE(modal.lastError(), 104);
    }

    void hailstoneFillsItsFields() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        THailDlg dlg(nullptr, &f.model, &host);
        f.Let('H', "27");
        QCOMPARE(CalculateWhileWatching(&dlg, &host), QStringLiteral("press Q to quit"));
        QCOMPARE(dlg.windowTitle(), QStringLiteral("Collatz calculation"));
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral("111"));
        QCOMPARE(dlg.stepsToMaximumField()->text(), QStringLiteral("77"));
        QCOMPARE(f.Var('M'), std::string("9232"));
        QCOMPARE(modal.calls.size(), 0);

        dlg.seedBox()->setCurrentIndex(2);  // C, empty
        QCOMPARE(dlg.calculate(), 2);
        f.Let('C', "6");
        dlg.maximumBox()->setCurrentIndex(2);
        QCOMPARE(dlg.calculate(), 6);
        QCOMPARE(modal.count("error"), 2);
        dlg.maximumBox()->setCurrentIndex(3);
        QCOMPARE(dlg.calculate(), 0);
        QCOMPARE(dlg.stepsField()->text(), QStringLiteral("8"));
        QCOMPARE(f.Var('D'), std::string("16"));
    }

    // The clicked bases reach the conversion; a refused or stopped input
    // empties the output and keeps the input to be corrected.
    void conversionTakesTheCheckedBases() {
        CalcContext ctx;
        ScriptedModal modal;
        StubHost host;
        TConvDlg dlg(nullptr, &ctx, &host);
        dlg.show();
        QTest::mouseClick(BaseButton(&dlg, 0, 16), Qt::LeftButton);
        QTest::mouseClick(BaseButton(&dlg, 1, 2), Qt::LeftButton);
        dlg.inputEdit()->setText("f f");
        Click(&dlg, "convert");
        QCOMPARE(dlg.outputEdit()->text(), QStringLiteral("11111111"));
        QCOMPARE(modal.calls.size(), 0);

        dlg.inputEdit()->setText("fg");
        QCOMPARE(dlg.convert(), 1);
        QCOMPARE(dlg.outputEdit()->text(), QString());
        QCOMPARE(dlg.inputEdit()->text(), QStringLiteral("fg"));
        QCOMPARE(modal.lastError(), 1);

        QuitAtPoll quitting(1);
        TConvDlg stopped(nullptr, &quitting, &host);
        BaseButton(&stopped, 0, 10)->setChecked(true);
        BaseButton(&stopped, 1, 2)->setChecked(true);
        stopped.inputEdit()->setText(QString(200, QChar('9')));
        QCOMPARE(stopped.convert(), -1);
        QCOMPARE(stopped.outputEdit()->text(), QString());
        QCOMPARE(modal.lastError(), -1);
    }

    void recursionEntriesListNewestFirstWithConditionsAfterSteps() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        TRecurDlg dlg(nullptr, &f.model, &host);
        dlg.show();
        Type(&dlg, "b=a+b");
        Type(&dlg, "a = b");
        Type(&dlg, "b", true);
        Type(&dlg, "a-b", true);
        Type(&dlg, "");  // nothing, and no message
        QCOMPARE(Rows(dlg), QStringList({"a = b", "b=a+b", "0 < a-b", "0 < b"}));
        QCOMPARE(modal.calls.size(), 0);
        Type(&dlg, "(1", true);  // reported as it is entered and again: stays to be corrected
        QCOMPARE(modal.errors(), QList<int>({108, 1}));
        QCOMPARE(dlg.entryEdit()->text(), QStringLiteral("(1"));

        // Row 2 is past the two steps: the newest condition.
        dlg.listBox()->setCurrentRow(2);
        Click(&dlg, "one");
        QCOMPARE(Rows(dlg), QStringList({"a = b", "b=a+b", "0 < b"}));
        Click(&dlg, "all");
        QVERIFY(!f.model.HasSteps() && f.model.Conditions().empty());

        // Entries made elsewhere show when the dialog opens again.
        Click(&dlg, "close");
        QCOMPARE(f.model.EnterStep("c=c+1"), Result::kOk);
        dlg.show();
        QCOMPARE(Rows(dlg), QStringList({"c=c+1"}));
        Click(&dlg, "help");
        QCOMPARE(host.helps, QStringList({"OXFILEH recursion"}));
    }

    // One step and Many steps run under the busy caption; the count asked
    // for is the next default only after a clean run, a halt is no failure.
    void stepsRunAndTheCountDefaultChangesOnlyWithACleanRun() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        f.Let('A', "1071");
        f.Let('B', "462");
        QCOMPARE(f.model.EnterStep("c=c+1"), Result::kOk);
        QCOMPARE(OneStepCommand(&f.model, &host), 0);
        modal.answerText("7");
        QCOMPARE(ManyStepsCommand(&f.model, &host), 0);
        QCOMPARE(f.Var('C'), std::string("8"));
        QCOMPARE(modal.calls.last().caption, QStringLiteral("how many iterations?"));
        QCOMPARE(host.captionsDuringRuns, QStringList(2, QStringLiteral("press Q to quit")));
        QCOMPARE(host.main.windowTitle(), QStringLiteral("Ordix"));

        // Euclid halts when b reaches 0: not reported, and 50 is not kept.
        f.model.ClearRecursion();
        QCOMPARE(f.model.EnterStep("b=a[mod]b"), Result::kOk);
        QCOMPARE(f.model.EnterStep("a=b"), Result::kOk);
        QCOMPARE(f.model.EnterCondition("b"), Result::kOk);
        modal.answerText("50");
        QCOMPARE(ManyStepsCommand(&f.model, &host), 0);
        QCOMPARE(f.Var('A') + " " + f.Var('B'), std::string("21 0"));
        modal.answerText("0");
        QCOMPARE(ManyStepsCommand(&f.model, &host), 14);
        const int runs = host.captionsDuringRuns.size();
        modal.answerCancel();  // cancelled: nothing runs
        QCOMPARE(ManyStepsCommand(&f.model, &host), Result::kCancelled);
        QCOMPARE(host.captionsDuringRuns.size(), runs);
        QCOMPARE(modal.defaults, QStringList({"100", "7", "7", "7"}));

        f.model.ClearRecursion();  // a failing step is reported once
        QCOMPARE(f.model.EnterStep("e=Z"), Result::kOk);
        QCOMPARE(OneStepCommand(&f.model, &host), 2);
        QCOMPARE(modal.errors(), QList<int>({14, 2}));
    }
};

QTEST_MAIN(TestCalcDialogs)
#include "test_calc_dialogs.moc"
