// View|Table and the calculation dialogs as the main frame's menus reach
// them: label tables filled by a recursion, the batch window, and the
// Recursion, Batch, Hailstone and Base conversion items.
#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QtTest>

#include "app/calc_frame.h"
#include "app/label_tables.h"
#include "dialogs/batc_dlg.h"
#include "dialogs/conv_dlg.h"
#include "dialogs/hail_dlg.h"
#include "dialogs/recur_dlg.h"
#include "resources/menus_frame.h"
#include "scripted_modal.h"
#include "windows/table_win.h"

namespace {

constexpr int kA = 1, kB = 2;

int Calculate(TCalcFrame& f, const QString& formula, int label) {
    f.calcDialog()->formulaEdit()->setText(formula);
    f.calcDialog()->labelBox()->setCurrentIndex(label - 1);
    return f.calcDialog()->create();
}

void Trigger(TCalcFrame& f, int id) {
    QAction* a = FindMenuAction(&f, id);
    QVERIFY(a);
    if (a->isEnabled() && f.commandEnabled(id)) a->trigger();
}

}  // namespace

class TestViewTable : public QObject {
    Q_OBJECT
private slots:
    void init() { qputenv("ORDIX_INI_DIR", QByteArray(dir_.path().toLocal8Bit())); }

    // A shown table of B collects B after every step of a Fibonacci
    // recursion; a hidden table and a label without a table collect nothing.
    void tableLogsAFibonacciRecursion() {
        ScriptedModal modal;
        TCalcFrame f;
        QVERIFY(!f.commandEnabled(kCmdTable));   // no label in use
        QCOMPARE(Calculate(f, "1", kA), 0);
        QCOMPARE(Calculate(f, "1", kB), 0);

        modal.answerText(" b ");
        Trigger(f, kCmdTable);
        QCOMPARE(modal.calls.last().caption, QString("input"));
        QCOMPARE(modal.calls.last().text, QString("label (A ... Z)"));
        QCOMPARE(modal.defaults.last(), QString("A"));   // the first label in use
        TTableWin* t = f.tables().table(kB);
        QVERIFY(t && t->isVisible());
        QCOMPARE(t->windowTitle(), QString("table B"));
        modal.answerText("AB");
        Trigger(f, kCmdTable);
        QCOMPARE(modal.lastError(), 17);

        QVERIFY(!f.commandEnabled(kCmdOneStep) && !f.commandEnabled(kCmdManySteps));
        Trigger(f, kCmdDefine);
        TRecurDlg* d = f.recursionDialog();
        QVERIFY(d && d->isVisible());
        for (const char* step : {"B=A+B", "A=B"}) {
            d->entryEdit()->setText(step);
            QCOMPARE(d->enter(), 0);
        }
        Trigger(f, kCmdOneStep);
        modal.answerText("4");
        Trigger(f, kCmdManySteps);
        QCOMPARE(modal.calls.last().caption, QString("how many iterations?"));
        QCOMPARE(t->text(), QString("  0: 2\r\n  1: 3\r\n  2: 5\r\n  3: 8\r\n  4: 13\r\n"));
        QCOMPARE(t->editor()->toPlainText().trimmed(), QString("0: 2\n  1: 3\n  2: 5\n  3: 8\n  4: 13"));
        QVERIFY(!f.tables().table(kA));

        t->close();   // hides it: the rows stop and stay
        Trigger(f, kCmdOneStep);
        QCOMPARE(t->rowCounter(), 5);
        modal.answerText("B");
        Trigger(f, kCmdTable);   // the same window again, rows and all
        QCOMPARE(f.tables().table(kB), t);
        QVERIFY(t->isVisible());
        Trigger(f, kCmdOneStep);
        QVERIFY(t->text().endsWith("  4: 13\r\n  5: 34\r\n"));   // 21 came while hidden
        QCOMPARE(modal.unexpected, 0);
    }

    // Batch writes into the frame's batch window.
    void batchFillsTheBatchWindow() {
        ScriptedModal modal;
        TCalcFrame f;
        Trigger(f, kCmdBatch);
        TBatcDlg* d = f.batchDialog();
        QVERIFY(d && d->isVisible());
        QCOMPARE(d->calculate(), 0);
        TTableWin* w = f.tables().batchWindow();
        QVERIFY(w && w->isVisible());
        QCOMPARE(w->windowTitle(), QString("batch calculation [A^B]"));
        QVERIFY(w->text().contains("1267650600228229401496703205376"));
        d->formulaEdit()->setText("A*B");
        QCOMPARE(d->calculate(), 0);   // the same window, new rows
        QCOMPARE(f.tables().batchWindow(), w);
        QCOMPARE(w->windowTitle(), QString("batch calculation [A*B]"));
        QVERIFY(!w->text().contains("1024"));
    }

    // Hailstone and Base conversion open from their items and run under
    // the frame.
    void hailstoneAndConversionRunFromTheMenu() {
        ScriptedModal modal;
        TCalcFrame f;
        Trigger(f, kCmdHailstone);
        THailDlg* h = f.hailstoneDialog();
        QVERIFY(h && h->isVisible());
        QCOMPARE(Calculate(f, "27", h->seedBox()->currentIndex() + 1), 0);
        QCOMPARE(h->calculate(), 0);
        QCOMPARE(h->stepsField()->text(), QString("111"));
        QVERIFY(!f.busy());

        Trigger(f, kCmdBaseConversion);
        TConvDlg* c = f.conversionDialog();
        QVERIFY(c && c->isVisible());
        c->inputEdit()->setText("11111111");
        QCOMPARE(c->convert(), 0);
        QCOMPARE(c->outputEdit()->text(), QString("255"));
        QCOMPARE(modal.count("error"), 0);
    }

private:
    QTemporaryDir dir_;
};

QTEST_MAIN(TestViewTable)
#include "test_view_table.moc"
