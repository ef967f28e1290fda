#include "app/calc_frame.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QScreen>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <vector>

#include "app/label_tables.h"
#include "app/list_commands.h"
#include "app/placement.h"
#include "calc/decimal_read.h"
#include "dialogs/about_dlg.h"
#include "dialogs/batc_dlg.h"
#include "dialogs/calc_dlg.h"
#include "dialogs/conv_dlg.h"
#include "dialogs/hail_dlg.h"
#include "dialogs/list_dlg.h"
#include "dialogs/modal.h"
#include "dialogs/modulus.h"
#include "dialogs/recur_dlg.h"
#include "dialogs/recur_run.h"
#include "dialogs/ui_text.h"
#include "io/num_file.h"
#include "lists/prime_table.h"
#include "resources/menus_frame.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "windows/font_table.h"
#include "windows/help_win.h"
#include "windows/note_win.h"
#include "windows/num_win.h"
#include "windows/num_win_text.h"

namespace {

constexpr int kFrameWidth = 640;
constexpr int kFrameHeight = 120;
constexpr int kNumWinBaseWidth = 720;
constexpr int kNumWinFont = 2;  // the font table's Courier New 10
// A few changes a second are enough for a count of seconds.
constexpr qint64 kRunStatusStepMs = 250;

// White with black digits, or the desktop's window colour with its text
// colour (light on dark under a dark palette), behind a number's digits.
void SetBackground(TNumWin* w, bool white) {
    QPlainTextEdit* e = w->editor();
    QPalette p = e->palette();
    const QPalette& app = QApplication::palette();
    p.setColor(QPalette::Base, white ? QColor(Qt::white) : app.color(QPalette::Window));
    p.setColor(QPalette::Text, white ? QColor(Qt::black) : app.color(QPalette::Text));
    e->setPalette(p);
}

// A menu item's text as a name: "&Many steps ..." gives "Many steps".
QString PlainMenuText(QString text) {
    text = text.section(QLatin1Char('\t'), 0, 0);
    text.replace(QLatin1String("&&"), QString(QChar(0x1)));
    text.remove(QLatin1Char('&'));
    text.replace(QChar(0x1), QLatin1Char('&'));
    text = text.trimmed();
    while (text.endsWith(QLatin1Char('.')) || text.endsWith(QChar(0x2026))) text.chop(1);
    return text.trimmed();
}

// A command's name for the status line: its item's text, after the title of
// the submenu holding it ("Primes: List").
QString CommandName(const QAction* item) {
    QString name = PlainMenuText(item->text());
    for (QObject* o : item->associatedObjects()) {
        const auto* menu = qobject_cast<QMenu*>(o);
        if (!menu) continue;
        for (QObject* up : menu->menuAction()->associatedObjects())
            if (qobject_cast<QMenu*>(up))
                return PlainMenuText(menu->title()) + QStringLiteral(": ") + name;
    }
    return name;
}

QString Seconds(qint64 ms, int decimals) {
    return QString::number(static_cast<double>(ms) / 1000.0, 'f', decimals) + QStringLiteral(" s");
}

std::string ConfigFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation).toStdString();
}

// Answers only the Q key of the context it wraps.
class QuitKeyOnly : public CalcContext {
public:
    explicit QuitKeyOnly(CalcContext* ctx) : ctx_(ctx) {}
    int PollQuitKey() override { return ctx_->PollQuitKey(); }

private:
    CalcContext* ctx_;
};

// A value record over limbs read from a file: StoreValue copies it.
BigInt ViewOf(NumLimbs& l) {
    BigInt v = {};
    v.limbs = l.limbs.data();
    v.top = static_cast<int32_t>(l.limbs.size()) - 1;
    v.negative = l.negative ? 1 : 0;
    return v;
}

}  // namespace

TCalcFrame::TCalcFrame() : TKelWin(nullptr) {
    setWindowTitle(OxText(kStrOrdix));
    setObjectName(QStringLiteral("TCalcFrame"));
    lastFont_ = FontTableEntry(kNumWinFont, logicalDpiY());
    installMenu(kOxMenu);
    auto* client = new QWidget(this);
    client->setAutoFillBackground(true);
    runStatus_ = new QLabel(client);
    runStatus_->setObjectName(QStringLiteral("runStatus"));
    runStatus_->setTextFormat(Qt::PlainText);
    // A longer text must not widen the frame: a resize while a run lasts
    // would stop it. What does not fit is cut at the right.
    runStatus_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* column = new QVBoxLayout(client);
    column->addStretch(1);
    column->addWidget(runStatus_);
    setCentralWidget(client);
    ctx_.setFetchHook([this] { showRunProgress(); });
    resize(kFrameWidth, kFrameHeight);

    model_ = std::make_unique<CalcModel>(&ctx_);
    model_->AddObserver(this);
    ModulusChanged(true);  // the starting modulus; its window starts hidden

    calcDlg_ = new TCalcDlg(this, this);
    tables_ = std::make_unique<LabelTables>(this);
    lists_ = std::make_unique<ListCommands>(this, &ctx_);
    ListPrimeTable();  // paid once here rather than by the first list
    applyBackgrounds();
}

TCalcFrame::~TCalcFrame() {
    model_->RemoveObserver(this);
    lists_.reset();
    tables_.reset();
    // The dialogs call into the model: they go before it.
    delete recurDlg_;
    delete batchDlg_;
    delete hailDlg_;
    delete convDlg_;
    // The windows view the model's values: they go first.
    for (TNumWin*& w : numWins_) {
        delete w;
        w = nullptr;
    }
    delete modWin_;
    modWin_ = nullptr;
}

TNumWin* TCalcFrame::numWin(int label) const {
    if (label == kModulusLabel) return modWin_;
    return label >= 1 && label <= kLabelCount ? numWins_[label - 1] : nullptr;
}

// ---- Settings ----------------------------------------------------------

void TCalcFrame::readSettings() {
    FrameSettings s;
    const QRect screen = QGuiApplication::primaryScreen()
                             ? QGuiApplication::primaryScreen()->availableGeometry()
                             : QRect(0, 0, 1280, 1024);
    if (ReadSettings(ConfigFolder(), &s) == 0 &&
        PlacementFits(s, screen.width(), screen.height())) {
        setGeometry(s.left, s.top, s.width, s.height);
    } else {
        QRandomGenerator* r = QRandomGenerator::global();
        s = FrameSettings();
        move(screen.left() + 20 + r->bounded(100), screen.top() + 20 + r->bounded(60));
    }
    settings_ = s;
    // The modulus window was made before the frame found its place.
    if (modWin_ && !modWin_->isVisible())
        placeNumWin(modWin_, DigitCount(&model_->Modulus().numerator));
}

Result TCalcFrame::writeSettings() {
    const QRect g = normalGeometry().isValid() ? normalGeometry() : geometry();
    settings_.left = g.left();
    settings_.top = g.top();
    settings_.width = g.width();
    settings_.height = g.height();
    settings_.maximized = isMaximized() ? 1 : 0;
    return WriteSettings(ConfigFolder(), settings_);
}

void TCalcFrame::closeEvent(QCloseEvent* e) {
    if (busy_ || ctx_.running()) {
        e->ignore();
        return;
    }
    // Every other window closes (number windows only hide); a text window
    // whose owner keeps it open after the save question keeps the program open.
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w == this || !w->isVisible()) continue;
        if (!w->close() && w->isVisible()) {
            e->ignore();
            return;
        }
    }
    // A settings file that cannot be written only loses the placement.
    (void)writeSettings();
    model_->ClearRecursion();
    e->accept();
}

// ---- Number windows ------------------------------------------------------

TNumWin* TCalcFrame::makeNumWin(int label, const QString& name, const BigInt* num,
                                const BigInt* den) {
    auto* w = new TNumWin(this, name, label, num, den, lastFont_);
    w->setFontExtra(lastFontExtra_);
    w->setRunner(
        [this](const TNumWin::Work& work) { return RunCaptioned([&] { return work(&ctx_); }); });
    placeNumWin(w, DigitCount(num));
    SetBackground(w, white_);
    return w;
}

// Number windows cascade below the frame.
void TCalcFrame::placeNumWin(TNumWin* w, int32_t digits) {
    const QRect base(0, geometry().bottom() + 40, kNumWinBaseWidth, 0);
    w->setGeometry(TNumWin::Placement(w->label(), digits, base));
}

void TCalcFrame::VariableChanged(int label) {
    if (label < 1 || label > kLabelCount) return;
    TNumWin*& w = numWins_[label - 1];
    const NumberValue* v = model_->Variable(label);
    if (!v) {
        delete w;
        w = nullptr;
        rebuildViewMenu();
        return;
    }
    if (w) {
        (void)w->refill(&v->numerator, &v->denominator);  // the window reports its own code
    } else {
        const QString name =
            pendingName_.isEmpty() ? OxText(kStrNumber) + QString::number(label) : pendingName_;
        w = makeNumWin(label, name, &v->numerator, &v->denominator);
        rebuildViewMenu();
    }
    w->setInscription(QString::fromStdString(v->inscription));
}

// Told for a new value and for a change of mode alike. A change of mode
// comes from the window being shown or hidden and leaves it as it is; a new
// value refills it (the Modulus command then shows it).
void TCalcFrame::ModulusChanged(bool) {
    const bool mode = model_->ModulusMode();
    if (modWin_ && mode != modeSeen_) {
        modeSeen_ = mode;
        return;
    }
    const NumberValue& m = model_->Modulus();
    if (!modWin_) {
        modWin_ = makeNumWin(kModulusLabel, OxText(kStrModulus), &m.numerator, &m.denominator);
        connect(modWin_, &TNumWin::shownChanged, this,
                [this](bool shown) { model_->SetModulusMode(shown); });
    } else {
        (void)modWin_->refill(&m.numerator, &m.denominator);  // reports its own code
    }
    modWin_->setInscription(QString::fromStdString(model_->ModulusFormula()));
}

void TCalcFrame::showWindow(QWidget* w) {
    if (w) PresentWindow(w);
}

void TCalcFrame::ShowLabel(int label) { showWindow(numWin(label)); }

// The View menu lists the labels in use, A..Z, after its first two items.
void TCalcFrame::rebuildViewMenu() {
    const QList<QAction*> menus = menuBar()->actions();
    if (menus.size() <= kViewMenuIndex) return;
    QMenu* view = menus[kViewMenuIndex]->menu();
    for (QAction* a : viewItems_) {
        view->removeAction(a);
        removeAction(a);
        delete a;
    }
    viewItems_.clear();
    QList<QAction*> items;
    for (int i = 0; i < kLabelCount; ++i) {
        if (!numWins_[i]) continue;
        const std::string text = std::string("&") + LabelLetter(i + 1) + " ...";
        const MenuEntry e{kMenuItem, kCmdViewLabel + i, text.c_str(), nullptr, 0};
        items.append(MakeCommandAction(e, this, this));
    }
    if (items.isEmpty()) return;
    QAction* sep = new QAction(this);
    sep->setSeparator(true);
    items.append(sep);
    const QList<QAction*> existing = view->actions();
    QAction* before = existing.size() > kViewLabelPosition ? existing[kViewLabelPosition] : nullptr;
    view->insertActions(before, items);
    viewItems_ = items;
}

// ---- Commands --------------------------------------------------------------

bool TCalcFrame::LabelInUse(int label) { return model_->HasVariable(label); }

Result TCalcFrame::RunCalculate(int label, const QString& formula) {
    if (busy_) return Result::kOk;
    const std::string text = formula.toStdString();
    return RunWatched([&] { return model_->Calculate(label, text); });
}

Result TCalcFrame::RunWatched(const std::function<Result()>& work) {
    if (busy_ || ctx_.running()) return Result::kStopped;
    busy_ = true;
    runName_ = runName();
    runShownMs_ = -1;
    runClock_.start();
    Result code;
    {
        PollScope scope(&ctx_, this);
        code = work();
    }
    const qint64 ms = runClock_.elapsed();
    runClock_.invalidate();
    busy_ = false;
    const QString time = Seconds(ms, ms < 10000 ? 2 : 1);
    runStatus_->setText(runName_.isEmpty()
                            ? QStringLiteral("last run: %1").arg(time)
                            : QStringLiteral("last run: %1, %2").arg(runName_, time));
    return code;
}

// The menu command under way, else the dialog whose run this is: a busy
// calculation dialog by its idle caption, a busy list dialog by its caption
// (changed only once its generator starts).
QString TCalcFrame::runName() const {
    if (!commandName_.isEmpty()) return commandName_;
    for (const TBusyDlg* d : findChildren<TBusyDlg*>())
        if (d->busy()) return d->idleTitle();
    for (const TListDlg* d : findChildren<TListDlg*>())
        if (d->busy()) return d->windowTitle();
    return QString();
}

void TCalcFrame::showRunProgress() {
    if (!runClock_.isValid()) return;
    const qint64 ms = runClock_.elapsed();
    if (ms < runStatusDelayMs_) return;
    if (runShownMs_ >= 0 && ms - runShownMs_ < kRunStatusStepMs) return;
    runShownMs_ = ms;
    const QString time = QString::number(ms / 1000) + QStringLiteral(" s");
    runStatus_->setText(runName_.isEmpty() ? QStringLiteral("running: %1").arg(time)
                                           : QStringLiteral("running: %1, %2").arg(runName_, time));
}

QString TCalcFrame::runStatusText() const { return runStatus_->text(); }

void TCalcFrame::ShowBatchOutput(const QString& title, const QString& text) {
    tables_->showBatch(title, text);
}

Result TCalcFrame::RunList(const ListGenerator& generator, QWidget* progress, QString* summary) {
    return lists_->runList(generator, progress, summary);
}

void TCalcFrame::ShowHelp(QWidget* owner, const char* name, const QString& caption) {
    auto* help = owner->findChild<THelpWin*>(QString(), Qt::FindDirectChildrenOnly);
    if (!help) help = new THelpWin(owner);
    help->showHelp(name);
    if (!caption.isEmpty()) help->setWindowTitle(caption);
}

void TCalcFrame::RecursionChanged() {
    if (recurDlg_) recurDlg_->refill();
}

void TCalcFrame::StepDone(const std::vector<int>& targets) { tables_->stepDone(*model_, targets); }

void TCalcFrame::RunFinished(Result) { tables_->runFinished(); }

int TCalcFrame::firstLabelInUse() const {
    for (int label = 1; label <= kLabelCount; ++label)
        if (model_->HasVariable(label)) return label;
    return 0;
}

// View|Table: the table window of the label typed.
void TCalcFrame::tableCommand() {
    const int first = firstLabelInUse();
    QString answer(QChar(LabelLetter(first > 0 ? first : 1)));
    if (!TheModal().oneInput(this, OxText(kStrInput), OxText(kStrLabelPrompt), &answer,
                             kMaxFieldChars))
        return;
    const int label = LabelFromText(answer);
    if (label == 0)
        ShowError(this, Result::kOutOfBounds);
    else
        tables_->showTable(label);
}

// The modeless dialogs of the calculation, made on first use.
void TCalcFrame::showDialog(int id) {
    QDialog* d = nullptr;
    switch (id) {
    case kCmdCalculate: d = calcDlg_; break;
    case kCmdDefine:
        if (!recurDlg_) recurDlg_ = new TRecurDlg(this, model_.get(), this);
        d = recurDlg_;
        break;
    case kCmdBatch:
        if (!batchDlg_) batchDlg_ = new TBatcDlg(this, model_.get(), this);
        d = batchDlg_;
        break;
    case kCmdHailstone:
        if (!hailDlg_) hailDlg_ = new THailDlg(this, model_.get(), this);
        d = hailDlg_;
        break;
    case kCmdBaseConversion:
        if (!convDlg_) convDlg_ = new TConvDlg(this, &ctx_, this);
        d = convDlg_;
        break;
    default: return;
    }
    showWindow(d);
}

Result TCalcFrame::openNumberFile(const QString& path, bool onlyQ) {
    NumFile file;
    const std::string name = QFile::encodeName(path).toStdString();
    QuitKeyOnly quitKey(&ctx_);
    CalcContext* poll = onlyQ ? static_cast<CalcContext*>(&quitKey) : &ctx_;
    const Result read =
        RunCaptioned([&] { return ReadNumFile(name, &file, kMaxNumFileBytes, poll); });
    if (read == Result::kStopped) return read;
    if (!Ok(read)) return Result::kCannotOpenFile;
    bool inUse[kLabelCount];
    for (int i = 0; i < kLabelCount; ++i) inUse[i] = model_->HasVariable(i + 1);
    const int label = LabelForOpenedFile(file.label, inUse);
    if (label == 0) return Result::kNoMoreRoom;
    if (file.hasFont) {
        lastFont_ = file.font;
        lastFontExtra_ = file.fontExtra;
    }
    const BigInt num = ViewOf(file.numerator);
    const BigInt den = ViewOf(file.denominator);
    pendingName_ = path;
    const Result code = model_->StoreValue(label, file.notebook, &num, &den);
    pendingName_.clear();
    if (!Ok(code)) return code;
    if (TNumWin* w = numWin(label)) w->notebook()->markNotModified();
    ShowLabel(label);
    return Result::kOk;
}

void TCalcFrame::openFiles(const QStringList& paths) {
    for (const QString& path : paths) {
        const Result code = openNumberFile(path, true);
        if (code == Result::kStopped) return;  // quietly, as File|Open
        if (!Ok(code)) ShowError(this, code);
    }
}

Result TCalcFrame::pasteNumber(const QString& text) {
    const int label = model_->FirstFreeLabel();
    if (label == 0) return Result::kNoMoreRoom;
    BigInt value = {}, one = {};
    // A sign may follow spaces. A long text is read watched, so Q stops it.
    const std::string digits = text.trimmed().toStdString();
    Result code = RunWatched([&] { return ReadDecimal(digits, &value, &ctx_); });
    if (Ok(code)) code = BigFromInt(&one, 1);
    if (Ok(code)) code = model_->StoreValue(label, OxString(kStrLatexSaved), &value, &one);
    BigFree(&value);
    BigFree(&one);
    if (Ok(code)) ShowLabel(label);
    return code;
}

void TCalcFrame::modulusCommand() {
    QString formula = QString::fromStdString(model_->ModulusFormula());
    if (!AskModulusFormula(this, &formula)) {
        if (model_->ModulusMode() && modWin_) modWin_->hide();
        return;
    }
    const std::string text = formula.toStdString();
    const Result code = RunCaptioned([&] { return model_->ModulusCommand(text); });
    if (!Ok(code)) {
        ShowError(this, code);
        return;
    }
    // The model takes the formula after it has told about the value.
    modWin_->setInscription(QString::fromStdString(model_->ModulusFormula()));
    showWindow(modWin_);  // a new modulus is in force at once
}

void TCalcFrame::applyBackgrounds() {
    QWidget* c = centralWidget();
    QPalette p = c->palette();
    const QPalette& app = QApplication::palette();
    p.setColor(QPalette::Window, white_ ? QColor(Qt::white) : app.color(QPalette::Window));
    p.setColor(QPalette::WindowText, white_ ? QColor(Qt::black) : app.color(QPalette::WindowText));
    c->setPalette(p);
    for (TNumWin* w : numWins_)
        if (w) SetBackground(w, white_);
    if (modWin_) SetBackground(modWin_, white_);
}

bool TCalcFrame::commandEnabled(int id) {
    if (busy_) return false;
    switch (id) {
    case kCmdOpen: return model_->FirstFreeLabel() != 0;
    case kCmdPaste: {
        const QMimeData* m = QGuiApplication::clipboard()->mimeData();
        return model_->FirstFreeLabel() != 0 && m && m->hasText();
    }
    case kCmdTable: return firstLabelInUse() != 0;
    case kCmdOneStep:
    case kCmdManySteps: return model_->HasSteps();
    default: return true;
    }
}

bool TCalcFrame::commandChecked(int id) { return id == kCmdWhiteBackgrounds && white_; }

void TCalcFrame::command(int id) {
    if (busy_ || ctx_.running()) return;
    // A run the command starts is named after its menu item.
    const QString outer = commandName_;
    const QAction* item = FindMenuAction(this, id);
    commandName_ = item ? CommandName(item) : QString();
    dispatch(id);
    commandName_ = outer;
}

void TCalcFrame::dispatch(int id) {
    if (id >= kCmdViewLabel && id < kCmdViewLabel + kLabelCount) {
        ShowLabel(id - kCmdViewLabel + 1);
        return;
    }
    if (ListCommands::Handles(id)) {
        lists_->command(id);
        return;
    }
    switch (id) {
    case kCmdCalculate:
    case kCmdDefine:
    case kCmdBatch:
    case kCmdHailstone:
    case kCmdBaseConversion: showDialog(id); break;
    // The step commands report their own codes.
    case kCmdOneStep: (void)OneStepCommand(model_.get(), this); break;
    case kCmdManySteps: (void)ManyStepsCommand(model_.get(), this); break;
    case kCmdTable: tableCommand(); break;
    case kCmdModulus: modulusCommand(); break;
    case kCmdOpen: {
        const QString path =
            TheModal().openFileName(this, QString(), FileFilter(OxString(kStrNumberFiles)), "num",
                                    OxText(kStrNumber) + "1.num");
        if (path.isEmpty()) break;
        const Result code = openNumberFile(path);
        if (IsError(code)) ShowError(this, code);  // a stop (Q) is quiet
        break;
    }
    case kCmdPaste: {
        const Result code = pasteNumber(QGuiApplication::clipboard()->text());
        if (!Ok(code)) ShowError(this, code);
        break;
    }
    case kCmdWhiteBackgrounds:
        white_ = !white_;
        applyBackgrounds();
        break;
    case kCmdFileHelp: ShowHelp(this, "OXFILEH", QString()); break;
    case kCmdViewHelp: ShowHelp(this, "OXVIEWH", QString()); break;
    case kCmdListsHelp: ShowHelp(this, "OXLISTH", QString()); break;
    case kCmdProgramHelp: ShowHelp(this, "PROGHELP", QString()); break;
    case kCmdAbout: ShowAbout(this); break;
    case kCmdViewModulus: showWindow(modWin_); break;
    case kCmdExit: close(); break;
    default: TKelWin::command(id); break;
    }
}
