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

// Types an entry and presses Return, which the default button "enter" takes.
void Type(TRecurDlg* dlg, const QString& text, bool condition = false) {
    (condition ? dlg->conditionButton() : dlg->stepButton())->setChecked(true);
    dlg->entryEdit()->setText(text);
    QTest::keyClick(dlg->entryEdit(), Qt::Key_Return);
}

void Click(QWidget* dlg, const char* name) {
    QTest::mouseClick(dlg->findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
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
        QVERIFY(dlg.stepButton()->isChecked());
        Type(&dlg, "b=a+b");
        Type(&dlg, "a = b");
        Type(&dlg, "b", true);
        Type(&dlg, "a-b", true);
        Type(&dlg, "");   // nothing, and no message
        QCOMPARE(Rows(dlg), QStringList({"a = b", "b=a+b", "0 < a-b", "0 < b"}));
        QVERIFY(dlg.entryEdit()->text().isEmpty());
        QCOMPARE(modal.calls.size(), 0);

        // Row 2 is past the two steps: the newest condition.
        dlg.listBox()->setCurrentRow(2);
        Click(&dlg, "one");
        dlg.listBox()->setCurrentRow(0);
        Click(&dlg, "one");
        QCOMPARE(Rows(dlg), QStringList({"b=a+b", "0 < b"}));
        Click(&dlg, "all");
        QCOMPARE(dlg.listBox()->count(), 0);
        QVERIFY(!f.model.HasSteps() && f.model.Conditions().empty());

        // Entries made elsewhere show when the dialog opens again.
        Click(&dlg, "close");
        f.model.EnterStep("c=c+1");
        dlg.show();
        QCOMPARE(Rows(dlg), QStringList({"c=c+1"}));

        Click(&dlg, "help");
        QVERIFY(dlg.helpWindow()->isVisible());
        QCOMPARE(dlg.helpWindow()->windowTitle(), QStringLiteral("recursion"));
    }

    void aBadEntryIsReportedTwiceAndStaysInTheField() {
        ModelFixture f;
        ScriptedModal modal;
        TRecurDlg dlg(nullptr, &f.model);
        dlg.show();
        Type(&dlg, "2=A");
        Type(&dlg, "(1", true);
        QCOMPARE(ErrorCodes(modal), QList<int>({1, 1, 108, 1}));
        QCOMPARE(dlg.entryEdit()->text(), QStringLiteral("(1"));
        QCOMPARE(dlg.listBox()->count(), 0);
    }

    void fibonacciStepsUnderTheRunCaption() {
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
        modal.answerText("100");
        QCOMPARE(ManyStepsCommand(&f.model, &host), 0);
        QCOMPARE(f.Var('A'), std::string("1500520536206896083277"));
        QCOMPARE(f.Var('B'), std::string("2427893228399975082453"));

        QCOMPARE(modal.calls.last().caption, QStringLiteral("how many iterations?"));
        QCOMPARE(modal.calls.last().text, QStringLiteral("input"));
        QCOMPARE(host.captionsDuringRuns, QStringList(3, QStringLiteral("press Q to quit")));
        QCOMPARE(host.main.windowTitle(), QStringLiteral("Ordix"));
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

        for (const char* bad : {"0", "many"}) {
            modal.answerText(bad);
            QCOMPARE(ManyStepsCommand(&f.model, &host), 14);
        }
        const int runs = host.captionsDuringRuns.size();
        modal.answerCancel();
        QCOMPARE(ManyStepsCommand(&f.model, &host), kStepCountCancelled);
        QCOMPARE(host.captionsDuringRuns.size(), runs);
        QCOMPARE(modal.defaults, QStringList({"100", "7", "7", "7", "7"}));

        // A failing step is reported once, a halt never.
        f.model.ClearRecursion();
        f.model.EnterStep("e=Z");
        QCOMPARE(OneStepCommand(&f.model, &host), 2);
        QCOMPARE(ErrorCodes(modal), QList<int>({14, 14, 2}));
        QCOMPARE(host.main.windowTitle(), QStringLiteral("Ordix"));
    }
};

QTEST_MAIN(TestRecur)
#include "test_recur.moc"
