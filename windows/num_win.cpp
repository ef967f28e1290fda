#include "windows/num_win.h"

#include <QCloseEvent>
#include <QFile>
#include <QFileInfo>
#include <QFontMetricsF>
#include <QHideEvent>
#include <QPlainTextEdit>
#include <QResizeEvent>
#include <QScrollBar>
#include <QShowEvent>
#include <QStyle>

#include <cstdio>

#include "bigint/bigint.h"
#include "calc/digit_freq.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "io/num_file.h"
#include "io/safe_file.h"
#include "resources/limits.h"
#include "resources/menus_frame.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "windows/font_map.h"
#include "windows/help_win.h"
#include "windows/note_win.h"
#include "windows/num_win_text.h"

namespace {

constexpr int kNotebookFont = 2;

}  // namespace

TNumWin::TNumWin(QWidget* parent, const QString& name, int label, const BigInt* numerator,
                 const BigInt* denominator, const LogFont& font)
    : TTextWin(parent, QString(), name + ".num", QString(), 0, &kNumMenu),
      label_(label),
      num_(numerator),
      den_(denominator),
      font_(font) {
    askToSave_ = false;
    editor()->setReadOnly(true);
    editor()->setLineWrapMode(QPlainTextEdit::NoWrap);
    editor()->setFont(FontFromLogFont(font_));
    notebook_ = new TNoteWin(this, QFileInfo(fileName()).fileName(), QString(), kNotebookFont);
    (void)relayout();  // reports its own code
}

TNumWin::~TNumWin() = default;

Result TNumWin::refill(const BigInt* numerator, const BigInt* denominator) {
    num_ = numerator;
    den_ = denominator;
    return relayout();
}

void TNumWin::setInscription(const QString& text) {
    notebook_->replaceText(text);
    notebook_->markNotModified();
}

void TNumWin::setLineDigits(int32_t digits) {
    fixedLineDigits_ = digits;
    (void)relayout();  // reports its own code
}

int32_t TNumWin::measuredLineDigits() const {
    // Text is laid out at fractional advances: a rounded one would let a
    // long line run under the scroll bar.
    const qreal charWidth =
        QFontMetricsF(editor()->font()).horizontalAdvance(QString(10, QLatin1Char('8'))) / 10;
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const int frame = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
    const int margin = static_cast<int>(editor()->document()->documentMargin());
    const int room = width() - 2 * frame - 2 * margin - scrollBar;
    const int digits = static_cast<int>(room / qMax(charWidth, qreal(1))) - 1;
    return digits < 1 ? 1 : digits;
}

Result TNumWin::relayout() {
    lineDigits_ = fixedLineDigits_ > 0 ? fixedLineDigits_ : measuredLineDigits();
    Result code = Result::kOk;
    const BigInt* parts[2] = {num_, den_};
    for (int p = 0; p < 2; ++p) {
        const Result c = LayoutSections(parts[p]->top, BigTextLength(parts[p]),
                                        parts[p]->negative != 0, lineDigits_, &layout_[p]);
        if (c != 0) code = c;
    }
    chooseState();
    display();
    if (!Ok(code)) report(code);
    return code;
}

void TNumWin::chooseState() {
    const bool denIsOne = BigIsOne(den_) && !den_->negative;
    if (denIsOne) part_ = 0;
    state_ = ChooseDisplayState(denIsOne, layout_[0].count, layout_[1].count, DigitCount(num_),
                                DigitCount(den_), part_);
}

void TNumWin::display() {
    const std::string text =
        state_ == kShowFraction
            ? FractionText(num_, den_, lineDigits_, "\n")
            : SectionText(shownPart(), layout_[part_], layout_[part_].current, lineDigits_, "\n");
    replaceText(QString::fromLatin1(text.data(), static_cast<int>(text.size())));
    markNotModified();
    QTextCursor c = editor()->textCursor();
    c.setPosition(0);
    editor()->setTextCursor(c);
    editor()->verticalScrollBar()->setValue(0);
    setWindowTitle(titleText());
}

QString TNumWin::titleText() const {
    QString t = label_ == kModulusLabel ? OxText(kStrModulus) : QString(QChar('A' + label_ - 1));
    t += " [" + QFileInfo(fileName()).fileName() + "] [" + OxText(kStrDigits) + ": ";
    if (state_ == kShowFraction)
        t += QString::number(DigitCount(num_)) + "/" + QString::number(DigitCount(den_));
    else
        t += QString::number(DigitCount(shownPart()));
    t += "]";
    if (state_ >= kShowNumerator) t += "[" + OxText(part_ == 0 ? 803 : 804) + "]";
    const SectionLayout& l = layout_[part_];
    if (state_ != kShowFraction && l.count > 0)
        t += " [" + OxText(kStrSection) + " " + QString::number(l.current + 1) + "/" +
             QString::number(l.count + 1) + "]";
    return t;
}

void TNumWin::go(int32_t section) {
    SectionLayout& l = layout_[part_];
    if (section < 0 || section > l.count || section == l.current) return;
    l.current = section;
    display();
}

void TNumWin::jump() {
    const SectionLayout& l = layout_[part_];
    const QString prompt =
        OxText(kStrTargetNumber) + " [1 ... " + QString::number(l.count + 1) + "]";
    QString answer = QString::number(l.current + 1);
    if (!TheModal().oneInput(this, OxText(kStrInput), prompt, &answer, kMaxFieldChars)) return;
    bool ok = false;
    const int target = answer.trimmed().toInt(&ok);
    if (ok && target >= 1 && target <= l.count + 1) go(target - 1);
}

Result TNumWin::run(const Work& work) {
    if (runner_) return runner_(work);
    CalcContext unwatched;
    return work(&unwatched);
}

void TNumWin::reportError(Result code) {
    if (IsError(code)) report(code);
}

void TNumWin::digitFrequencies() {
    std::string frequencies;
    const BigInt* part = shownPart();
    const Result code =
        run([&](CalcContext* ctx) { return DigitFrequencies(part, ctx, &frequencies); });
    if (!Ok(code)) {
        reportError(code);
        return;
    }
    const std::string table = WithBreaks(frequencies.c_str(), "\n");
    if (!notebook_->text().isEmpty()) notebook_->appendText("\n\n");
    notebook_->appendText(QString::fromLatin1(table.c_str()));
    notebook_->show();
    notebook_->raise();
}

void TNumWin::saveAsText() {
    QString answer = QString::number(lineDigits_);
    if (!TheModal().oneInput(this, OxText(kStrInput), OxText(kStrDigitsPerLine), &answer,
                             kMaxFieldChars))
        return;
    const int asked = answer.trimmed().toInt();
    const int32_t perLine = asked > 1 ? asked : lineDigits_;
    const QString start = QFileInfo(fileName()).completeBaseName() + ".txt";
    const QString path =
        TheModal().saveFileName(this, QString(), FileFilter(OxString(kStrTextFiles)), "txt", start);
    if (path.isEmpty()) return;
    // Written as it is made, a block at a time: the text of a big number is
    // never whole in memory.
    SafeFile file;
    if (!file.Open(QFile::encodeName(path).toStdString())) {
        report(Result::kCannotSaveFile);
        return;
    }
    const BigInt* part = shownPart();
    const Result code = run([&](CalcContext* ctx) {
        return PutDigitLines(part, perLine, "\r\n", ctx, [&file](const char* p, size_t n) {
            (void)std::fwrite(p, 1, n, file.file());  // Commit answers a short write
        });
    });
    if (!Ok(code)) {
        reportError(code);  // a stop abandons the file, the old one left as it was
        return;
    }
    if (!file.Commit()) report(Result::kCannotSaveFile);
}

Result TNumWin::saveNumber(const QString& path) {
    NumFileView file;
    // The modulus has no label of its own: its file opens in the first free one.
    file.label = label_ > 0 ? label_ : 0;
    file.numerator = num_;
    file.denominator = den_;
    file.notebook = notebook_->text().left(kNumFileNotebookChars).toStdString();
    file.font = font_;
    file.fontExtra = fontExtra_;
    const std::string name = QFile::encodeName(path).toStdString();
    const Result code = run([&](CalcContext* ctx) { return WriteNumFile(name, file, ctx); });
    if (code == Result::kStopped) return code;
    if (!Ok(code)) return Result::kCannotSaveFile;
    if (path != fileName()) {
        setFileName(path);
        notebook_->setNumberFileName(QFileInfo(path).fileName());
    }
    notebook_->markNotModified();
    setWindowTitle(titleText());
    return Result::kOk;
}

void TNumWin::chooseFont() {
    QFont font = editor()->font();
    if (!TheModal().chooseFont(this, &font)) return;
    font_ = LogFontFromFont(font, logicalDpiY());
    editor()->setFont(FontFromLogFont(font_));
    (void)relayout();  // reports its own code
}

void TNumWin::showHelp(const char* name) {
    if (!help_) help_ = new THelpWin(this);
    help_->showHelp(name);
}

bool TNumWin::commandEnabled(int id) {
    const SectionLayout& l = layout_[part_];
    switch (id) {
    case kNumBack: return l.current > 0;
    case kNumForward: return l.current < l.count && l.current < kMaxSections + 1;
    case kNumJump: return l.count > 0;
    case kNumNumerator: return state_ == kShowDenominator || state_ == kShowDenominatorSections;
    case kNumDenominator: return state_ == kShowNumerator || state_ == kShowNumeratorSections;
    case kNumNotes: return true;
    default: return TTextWin::commandEnabled(id);
    }
}

void TNumWin::command(int id) {
    switch (id) {
    case kNumSave: reportError(saveNumber(fileName())); break;
    case kNumSaveAs: {
        const QString path = TheModal().saveFileName(
            this, QString(), FileFilter(OxString(kStrNumberFiles)), "num", fileName());
        if (!path.isEmpty()) reportError(saveNumber(path));
        break;
    }
    case kNumSaveAsText: saveAsText(); break;
    case kNumFont: chooseFont(); break;
    case kNumNotes:
        notebook_->show();
        notebook_->raise();
        break;
    case kNumDigitFreq: digitFrequencies(); break;
    case kNumFileHelp: showHelp("OXNFILEH"); break;
    case kNumEditHelp: showHelp("OXNEDITH"); break;
    case kNumSectionHelp: showHelp("OXNSECTH"); break;
    case kNumNumerator:
    case kNumDenominator:
        part_ = id == kNumNumerator ? 0 : 1;
        chooseState();
        display();
        break;
    case kNumBack: go(layout_[part_].current - 1); break;
    case kNumForward: go(layout_[part_].current + 1); break;
    case kNumJump: jump(); break;
    case kNumClose: hide(); break;
    default: TTextWin::command(id); break;
    }
}

void TNumWin::showEvent(QShowEvent* e) {
    TTextWin::showEvent(e);
    if (!e->spontaneous()) emit shownChanged(true);
}

void TNumWin::hideEvent(QHideEvent* e) {
    TTextWin::hideEvent(e);
    if (!e->spontaneous()) emit shownChanged(false);
}

void TNumWin::closeEvent(QCloseEvent* e) {
    e->ignore();
    hide();
}

void TNumWin::resizeEvent(QResizeEvent* e) {
    TTextWin::resizeEvent(e);
    if (fixedLineDigits_ == 0 && measuredLineDigits() != lineDigits_)
        (void)relayout();  // reports its own code
}

QRect TNumWin::Placement(int label, int32_t digits, const QRect& base) {
    const int n = label < 0 ? 0 : label;
    const int width = digits < 100 ? base.width() * 3 / 4 : base.width();
    const int height = digits < 500 ? width / 2 : width * 3 / 4;
    const int x = 30 + 15 * n + (n / 14) * (base.width() / 3);
    const int y = base.top() + 15 * (n % 14);
    return QRect(x, y, width, height);
}
