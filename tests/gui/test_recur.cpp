// The recursion dialog and the One step and Many steps commands, driven as
// the user drives them: typing and clicking, the count through the modal seam.
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

#include "calc/calc_test_util.h"
#include "dialogs/recur_dlg.h"
#include "dialogs/recur_run.h"
#include "scripted_modal.h"
#include "stub_host.h"
#include "windows/help_win.h"

namespace {

QStringList Rows(const TRecurDlg& dlg) {
    QStringList rows;
    for (int i = 0; i < dlg.listBox()->count(); ++i) rows << dlg.listBox()->item(i)->text();
    return rows;
}

QList<int> ErrorCodes(const ScriptedModal& modal) {
    QList<int> codes;
    for (const ModalCall& c : modal.calls)
        if (c.what == QLatin1String("error")) codes << c.kind;
    return codes;
}

void Type(TRecurDlg* dlg, const QString& text, bool condition = false) {
    (condition ? dlg->conditionButton() : dlg->stepButton())->setChecked(true);
    dlg->entryEdit()->setText(text);
    QTest::keyClick(dlg->entryEdit(), Qt::Key_Return);   // the default button "enter"
}

void Click(QWidget* dlg, const char* name) {
    QPushButton* b = dlg->findChild<QPushButton*>(QLatin1String(name));
    QVERIFY2(b, name);
    QTest::mouseClick(b, Qt::LeftButton);
}

}  // namespace

class TestRecur : public QObject {
    Q_OBJECT
private slots:
    void entriesListNewestFirstWithConditionsAfterSteps() {
        ModelFixture f;
        ScriptedModal modal;
        TRecurDlg dlg(nullptr, &f.model);
        dlg.show();
        QCOMPARE(dlg.windowTitle(), QStringLiteral("recursion"));
        QVERIFY(dlg.stepButton()->isChecked() && !dlg.conditionButton()->isChecked());
        Type(&dlg, "b=a+b");
        Type(&dlg, "a = b");
        Type(&dlg, "b", true);
        Type(&dlg, "a-b", true);
        QCOMPARE(Rows(dlg), QStringList({"a = b", "b=a+b", "0 < a-b", "0 < b"}));
        QVERIFY(dlg.entryEdit()->text().isEmpty());
        // An empty field enters nothing and says nothing.
        Type(&dlg, "");
        QCOMPARE(dlg.listBox()->count(), 4);
        QCOMPARE(modal.calls.size(), 0);

        // Row 2 is the newest condition: rows past the steps are conditions.
        dlg.listBox()->setCurrentRow(2);
        Click(&dlg, "one");
        QCOMPARE(Rows(dlg), QStringList({"a = b", "b=a+b", "0 < b"}));
        dlg.listBox()->setCurrentRow(0);
        Click(&dlg, "one");
        QCOMPARE(Rows(dlg), QStringList({"b=a+b", "0 < b"}));
        QCOMPARE(f.model.Steps().size(), size_t(1));
        // Nothing selected: nothing deleted.
        dlg.listBox()->clearSelection();
        QVERIFY(!dlg.deleteSelected());
        QCOMPARE(dlg.listBox()->count(), 2);
        Click(&dlg, "all");
        QCOMPARE(dlg.listBox()->count(), 0);
        QVERIFY(!f.model.HasSteps() && f.model.Conditions().empty());
    }

    void aBadEntryIsReportedTwiceAndKeptInTheField() {
        ModelFixture f;
        ScriptedModal modal;
        TRecurDlg dlg(nullptr, &f.model);
        dlg.show();
        Type(&dlg, "2=A");
        QCOMPARE(ErrorCodes(modal), QList<int>({1, 1}));
        Type(&dlg, "(1", true);
        QCOMPARE(ErrorCodes(modal), QList<int>({1, 1, 108, 1}));
        QCOMPARE(modal.calls.last().text, QStringLiteral("cannot understand"));
        QCOMPARE(dlg.entryEdit()->text(), QStringLiteral("(1"));
        QCOMPARE(dlg.listBox()->count(), 0);
    }

    void rowsFollowTheModelWhenShownAgain() {
        ModelFixture f;
        TRecurDlg dlg(nullptr, &f.model);
        dlg.show();
        Click(&dlg, "close");
        QVERIFY(!dlg.isVisible());
        f.model.EnterStep("c=c+1");
        dlg.show();
        QCOMPARE(Rows(dlg), QStringList({"c=c+1"}));
    }

    void helpShowsTheFileHelpUnderTheRecursionTitle() {
        ModelFixture f;
        TRecurDlg dlg(nullptr, &f.model);
        dlg.show();
        Click(&dlg, "help");
        QVERIFY(dlg.helpWindow() && dlg.helpWindow()->isVisible());
        QCOMPARE(dlg.helpWindow()->windowTitle(), QStringLiteral("recursion"));
        QVERIFY(!HelpText("OXFILEH").isEmpty());
    }

    void fibonacciStepsWithTheCaptionDuringTheRun() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        f.Let('A', "1");
        f.Let('B', "1");
        TRecurDlg dlg(nullptr, &f.model);
        dlg.show();
        Type(&dlg, "b=a+b");
        Type(&dlg, "a=b");

        QCOMPARE(OneStepCommand(&f.model, &host), 0);
        QCOMPARE(f.Var('A') + " " + f.Var('B'), std::string("1 2"));
        QCOMPARE(OneStepCommand(&f.model, &host), 0);
        QCOMPARE(f.Var('A') + " " + f.Var('B'), std::string("2 3"));
        QCOMPARE(host.captionsDuringRuns,
                 QStringList({"press Q to quit", "press Q to quit"}));
        QCOMPARE(host.main.windowTitle(), QStringLiteral("Ordix"));

        modal.answerText("100");
        QCOMPARE(ManyStepsCommand(&f.model, &host), 0);
        QCOMPARE(modal.calls.last().caption, QStringLiteral("how many iterations?"));
        QCOMPARE(modal.calls.last().text, QStringLiteral("input"));
        QCOMPARE(modal.calls.last().kind, kStepCountChars);
        QCOMPARE(modal.defaults.last(), QStringLiteral("100"));
        QCOMPARE(f.Var('A'), std::string("1500520536206896083277"));
        QCOMPARE(f.Var('B'), std::string("2427893228399975082453"));
        QCOMPARE(modal.lastError(), 0);
    }

    void theCountDefaultChangesOnlyWithACleanRun() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        f.Let('A', "1071");
        f.Let('B', "462");
        f.model.EnterStep("c=c+1");
        modal.answerText("7");
        QCOMPARE(ManyStepsCommand(&f.model, &host), 0);
        QCOMPARE(f.Var('C'), std::string("7"));

        // Euclid halts when b reaches 0: not reported, and 50 is not kept.
        f.model.ClearRecursion();
        f.model.EnterStep("b=a[mod]b");
        f.model.EnterStep("a=b");
        f.model.EnterCondition("b");
        modal.answerText("50");
        QCOMPARE(ManyStepsCommand(&f.model, &host), 0);
        QCOMPARE(f.Var('A') + " " + f.Var('B'), std::string("21 0"));
        QCOMPARE(modal.lastError(), 0);

        // Counts below 1 and text that is no number: "positive value?".
        for (const char* bad : {"0", "-4", "many"}) {
            modal.answerText(bad);
            QCOMPARE(ManyStepsCommand(&f.model, &host), 14);
            QCOMPARE(modal.lastError(), 14);
        }
        // A cancelled question runs nothing.
        const int runs = host.captionsDuringRuns.size();
        modal.answerCancel();
        QCOMPARE(ManyStepsCommand(&f.model, &host), kStepCountCancelled);
        QCOMPARE(host.captionsDuringRuns.size(), runs);

        modal.answerCancel();
        ManyStepsCommand(&f.model, &host);
        QCOMPARE(modal.defaults, QStringList({"100", "7", "7", "7", "7", "7", "7"}));
        QCOMPARE(host.main.windowTitle(), QStringLiteral("Ordix"));
    }

    void aFailingStepIsReportedOnce() {
        ModelFixture f;
        ScriptedModal modal;
        StubHost host;
        f.model.EnterStep("e=Z");   // Z holds nothing
        QCOMPARE(OneStepCommand(&f.model, &host), 2);
        QCOMPARE(ErrorCodes(modal), QList<int>({2}));
        QCOMPARE(host.main.windowTitle(), QStringLiteral("Ordix"));
    }
};

QTEST_MAIN(TestRecur)
#include "test_recur.moc"
