// TCalcFrame: the main window "Ordix". It owns the calculation model and its
// context, one number window per label in use and the modulus window, the
// help window and the modeless Calculate dialog; its menu is OXMENU.
//
// The model tells the frame about every change (CalcObserver); the frame
// makes, refills or removes the number windows accordingly and rebuilds the
// View menu. Commands run one at a time: while a computation runs, the
// context holds back user input and the frame refuses further commands.
#pragma once

#include <QList>
#include <QPointer>
#include <QString>

#include <memory>
#include <string>

#include "app/poll_context.h"
#include "calc/model.h"
#include "dialogs/calc_dlg.h"
#include "io/logfont.h"
#include "io/settings.h"
#include "windows/kel_win.h"

class QAction;
class QMenu;
class TNumWin;
class THelpWin;

class TCalcFrame : public TKelWin, public CalcObserver, public CalcDlgOwner {
    Q_OBJECT
public:
    TCalcFrame();
    ~TCalcFrame() override;

    CalcModel& model() { return *model_; }
    QtPollContext& context() { return ctx_; }
    // The window of label 1..26, or of the modulus for kModulusLabel.
    TNumWin* numWin(int label) const;
    TCalcDlg* calcDialog() const { return calcDlg_; }
    bool busy() const { return busy_; }
    bool whiteBackgrounds() const { return white_; }
    const FrameSettings& settings() const { return settings_; }

    // The settings record: read and placed at start, written at close.
    void readSettings();
    int writeSettings();

    // Commands (public so that tests drive them as the menu does).
    void command(int id) override;
    bool commandEnabled(int id) override;
    bool commandChecked(int id) override;

    // Reads a number file into the label it names, or the first free one.
    // 0, 4 (no label free), 11, or the store's code.
    int openNumberFile(const QString& path);
    // Clipboard text as an integer into the first free label.
    int pasteNumber(const QString& text);

    // CalcDlgOwner
    bool LabelInUse(int label) override;
    int RunCalculate(int label, const QString& formula) override;
    void ShowLabel(int label) override;
    QWidget* MainWindow() override { return this; }

    // CalcObserver
    void VariableChanged(int label) override;
    void ModulusChanged(bool atStart) override;

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    TNumWin* makeNumWin(int label, const QString& name, const BigInt* num, const BigInt* den);
    void rebuildViewMenu();
    void showHelp(const char* name);
    void modulusCommand();
    void applyBackgrounds();
    void showWindow(QWidget* w);

    QtPollContext ctx_;
    std::unique_ptr<CalcModel> model_;
    TNumWin* numWins_[kLabelCount] = {};
    TNumWin* modWin_ = nullptr;
    THelpWin* help_ = nullptr;
    TCalcDlg* calcDlg_ = nullptr;
    QList<QAction*> viewItems_;
    LogFont lastFont_;
    uint32_t lastFontExtra_ = 0;
    QString pendingName_;   // the name of the window a store is about to make
    FrameSettings settings_;
    bool white_ = true;
    bool busy_ = false;
};
