// TCalcFrame: the main window "Ordix". It owns the calculation model and its
// context, one number window per label in use and the modulus window, the
// table windows (app/label_tables.h), the Lists menu with its windows and
// dialogs (app/list_commands.h), the help window and the modeless dialogs
// of Calculate, Recursion, Batch, Hailstone and Base conversion; its menu
// is OXMENU. The prime table of the lists is built when the frame is made.
//
// The model tells the frame about every change (CalcObserver); the frame
// makes, refills or removes the number windows accordingly and rebuilds the
// View menu. Commands run one at a time: while a computation runs, the
// context holds back user input and the frame refuses further commands.
#pragma once

#include <QElapsedTimer>
#include <QList>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/poll_context.h"
#include "calc/model.h"
#include "dialogs/gui_host.h"
#include "io/logfont.h"
#include "io/settings.h"
#include "windows/kel_win.h"

class LabelTables;
class ListCommands;
class QAction;
class QLabel;
class QMenu;
class TBatcDlg;
class TCalcDlg;
class TConvDlg;
class THailDlg;
class TNumWin;
class TRecurDlg;

class TCalcFrame : public TKelWin, public CalcObserver, public GuiHost {
    Q_OBJECT
public:
    TCalcFrame();
    ~TCalcFrame() override;

    CalcModel& model() { return *model_; }
    QtPollContext& context() { return ctx_; }
    // The window of label 1..26, or of the modulus for kModulusLabel.
    TNumWin* numWin(int label) const;
    TCalcDlg* calcDialog() const { return calcDlg_; }
    ListCommands& lists() { return *lists_; }
    LabelTables& tables() { return *tables_; }
    // The modeless dialogs, nullptr until first opened.
    TRecurDlg* recursionDialog() const { return recurDlg_; }
    TBatcDlg* batchDialog() const { return batchDlg_; }
    THailDlg* hailstoneDialog() const { return hailDlg_; }
    TConvDlg* conversionDialog() const { return convDlg_; }
    bool busy() const { return busy_; }
    const FrameSettings& settings() const { return settings_; }

    // The line at the foot of the client area: what is running and for how
    // long, once a run has lasted the delay (1 s; tests lower it), then the
    // time of the last run. Captions are left alone.
    QString runStatusText() const;
    void setRunStatusDelay(int ms) { runStatusDelayMs_ = ms; }

    // The settings record: read and placed at start, written at close.
    void readSettings();
    Result writeSettings();

    // Commands (public so that tests drive them as the menu does).
    void command(int id) override;
    bool commandEnabled(int id) override;
    bool commandChecked(int id) override;

    // Reads a number file into the label it names, or the first free one,
    // watched: Q stops a long read, and so do interrupting actions unless
    // onlyQ. kOk, kNoMoreRoom (no label free), kCannotOpenFile, or the
    // store's code; kStopped when the read was stopped.
    Result openNumberFile(const QString& path, bool onlyQ = false);
    // The files named when the program starts (a file manager opening .num
    // files with it): each opens as File|Open would, a refusal shown; Q
    // stops the one being read and those after it. Only Q: the window
    // manager placing the new frame would read as an interrupt.
    void openFiles(const QStringList& paths);
    // Clipboard text as an integer into the first free label.
    Result pasteNumber(const QString& text);

    // GuiHost: one computation at a time, under the poll context.
    QWidget* MainWindow() override { return this; }
    Result RunWatched(const std::function<Result()>& work) override;
    bool LabelInUse(int label) override;
    Result RunCalculate(int label, const QString& formula) override;
    void ShowLabel(int label) override;
    void ShowBatchOutput(const QString& title, const QString& text) override;
    Result RunList(const ListGenerator& generator, QWidget* progress, QString* summary) override;
    void ShowHelp(QWidget* owner, const char* name, const QString& caption) override;

    // CalcObserver
    void VariableChanged(int label) override;
    void ModulusChanged(bool atStart) override;
    void RecursionChanged() override;
    void StepDone(const std::vector<int>& targets) override;
    void RunFinished(Result code) override;

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    TNumWin* makeNumWin(int label, const QString& name, const BigInt* num, const BigInt* den);
    void placeNumWin(TNumWin* w, int32_t digits);
    void rebuildViewMenu();
    void modulusCommand();
    void applyBackgrounds();
    void showWindow(QWidget* w);
    int firstLabelInUse() const;  // 0 when every label is free
    void tableCommand();
    void showDialog(int id);
    void dispatch(int id);
    QString runName() const;
    void showRunProgress();

    QtPollContext ctx_;
    std::unique_ptr<CalcModel> model_;
    TNumWin* numWins_[kLabelCount] = {};
    TNumWin* modWin_ = nullptr;
    TCalcDlg* calcDlg_ = nullptr;
    TRecurDlg* recurDlg_ = nullptr;
    TBatcDlg* batchDlg_ = nullptr;
    THailDlg* hailDlg_ = nullptr;
    TConvDlg* convDlg_ = nullptr;
    std::unique_ptr<LabelTables> tables_;
    std::unique_ptr<ListCommands> lists_;
    QList<QAction*> viewItems_;
    LogFont lastFont_;
    uint32_t lastFontExtra_ = 0;
    QString pendingName_;  // the name of the window a store is about to make
    FrameSettings settings_;
    QLabel* runStatus_ = nullptr;
    QString commandName_;  // the menu command under way, for the run status
    QString runName_;
    QElapsedTimer runClock_;
    qint64 runShownMs_ = -1;  // when the status line last changed during a run
    int runStatusDelayMs_ = 1000;
    bool modeSeen_ = false;  // the modulus mode as last told
    bool white_ = true;
    bool busy_ = false;
};
