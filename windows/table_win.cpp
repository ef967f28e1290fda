#include "windows/table_win.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTextCursor>

#include <string>

#include "bigint/bigint.h"
#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "io/byte_io.h"
#include "io/print/print.h"
#include "resources/limits.h"
#include "resources/menus_table.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "windows/font_map.h"
#include "windows/pre_text_win.h"
#include "windows/search_prompt.h"
#include "windows/table_win_sections.h"
#include "windows/text_search.h"

namespace {

std::u16string_view View(const QString& s) {
    return std::u16string_view(reinterpret_cast<const char16_t*>(s.utf16()),
                               static_cast<std::size_t>(s.size()));
}

// The numerator's digits, without line breaks; a number wider than a text
// buffer ends in "..." as the number windows show it.
QString NumeratorDigits(const BigInt* numerator) {
    std::string buf(kTextBufferChars + 1, '\0');
    BigToText(numerator, buf.data(), kTextBufferChars, 0, -1, 0, 0);
    return QString::fromLatin1(buf.c_str());
}

// A section as the editor holds it: every line end one "\n".
QString EditorText(QString section) {
    section.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    section.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return section;
}

}  // namespace

TTableWin::TTableWin(QWidget* parent, const QString& title, int fontIndex)
    : TFontWin(parent), baseTitle_(title), fontIndex_(fontIndex) {
    setWindowTitle(title);
    edit_ = new QPlainTextEdit(this);
    edit_->setObjectName(QStringLiteral("ctl30"));
    edit_->setFrameShape(QFrame::NoFrame);
    edit_->setReadOnly(true);
    edit_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    edit_->setUndoRedoEnabled(false);
    edit_->setLineWrapMode(QPlainTextEdit::NoWrap);
    edit_->setFont(tableFont(fontIndex_));
    setCentralWidget(edit_);
    installMenu(kTableMenu);
    resize(TextWindowSize(this, edit_));
    const QPoint base = parent ? parent->geometry().topLeft() : QPoint(60, 40);
    move(base + QPoint(40, 40 + QRandomGenerator::global()->bounded(51)));
}

// ---- The buffer ----------------------------------------------------------

bool TTableWin::fits(qsizetype chars) const { return text_.size() + chars <= kListChars; }

bool TTableWin::append(const QString& text) {
    if (!fits(text.size())) return false;
    text_ += text;
    return true;
}

bool TTableWin::appendRow(const BigInt* numerator) {
    const bool head = append(QString::asprintf("%3d: ", rows_++));
    const bool value = append(NumeratorDigits(numerator) + QLatin1String("\r\n"));
    return head && value;
}

void TTableWin::replaceText(const QString& text) {
    text_ = text.left(kListChars);
    shownValid_ = false;
}

// ---- Sections ------------------------------------------------------------

void TTableWin::rebuildSections() { starts_ = TableSectionStarts(View(text_)); }

std::size_t TTableWin::sectionEnd(int index) const {
    return index + 1 < sectionCount() ? starts_[index + 1] : static_cast<std::size_t>(text_.size());
}

QString TTableWin::sectionText(int index) const {
    if (index < 0 || index >= sectionCount()) return QString();
    return text_.mid(qsizetype(starts_[index]), qsizetype(sectionEnd(index) - starts_[index]));
}

QString TTableWin::TitleFor(const QString& base, int shown, int count) {
    if (count <= 1) return base;
    return base + QStringLiteral(" [%1/%2]").arg(shown + 1).arg(count);
}

void TTableWin::setTextAndTitle(const QString& title) {
    baseTitle_ = title;
    rebuildSections();
    shown_ = 0;
    shownValid_ = false;
    display();
}

void TTableWin::refresh() {
    rebuildSections();
    shown_ = qMin(shown_, sectionCount() - 1);
    display();
}

void TTableWin::showSection(int index) {
    if (index < 0 || index >= sectionCount()) return;
    shown_ = index;
    display();
}

void TTableWin::display() {
    const std::size_t start = starts_[shown_];
    const std::size_t length = sectionEnd(shown_) - start;
    // Text only ever grows at the end between replacements, so a section
    // with the same start that is not shorter holds what is shown and more.
    // A shown part ending in CR may yet be joined by an LF: redo it then.
    const bool grown = shownValid_ && start == shownStart_ && length >= shownLength_ &&
                       !(shownLength_ > 0 && text_.at(qsizetype(start + shownLength_ - 1)) == '\r');
    if (grown) {
        if (length > shownLength_) {
            QScrollBar* bar = edit_->verticalScrollBar();
            const bool atBottom = bar->value() == bar->maximum();
            QTextCursor c(edit_->document());
            c.movePosition(QTextCursor::End);
            c.insertText(text_.mid(qsizetype(start) + qsizetype(shownLength_),
                                   qsizetype(length - shownLength_)));
            if (atBottom) bar->setValue(bar->maximum());
        }
    } else {
        // A new page puts the caret at its start, where the next search begins.
        edit_->setPlainText(text_.mid(qsizetype(start), qsizetype(length)));
        restart_ = true;
    }
    shownStart_ = start;
    shownLength_ = length;
    shownValid_ = true;
    setWindowTitle(TitleFor(baseTitle_, shown_, sectionCount()));
}

void TTableWin::jump() {
    const int count = sectionCount();
    QString answer = QString::number(shown_ + 1);
    const QString prompt = OxText(kStrTableTarget) + QStringLiteral(" [1 ... %1]").arg(count);
    if (!TheModal().oneInput(this, OxText(kStrInput), prompt, &answer, kMaxFieldChars)) return;
    bool ok = false;
    const int target = answer.trimmed().toInt(&ok);
    if (!ok)
        report(Result::kCannotUnderstand);
    else if (target < 1 || target > count)
        report(Result::kOutOfBounds);
    else if (target - 1 != shown_)
        showSection(target - 1);
}

// ---- Searching -----------------------------------------------------------

Result TTableWin::find(const QString& pattern) {
    if (pattern.isEmpty()) return Result::kNothingToDo;
    const int from = edit_->textCursor().selectionStart() + (restart_ ? 0 : 1);
    restart_ = false;
    for (int k = shown_; k < sectionCount(); ++k) {
        const bool here = k == shown_;
        const int at = FindInText(here ? edit_->toPlainText() : EditorText(sectionText(k)), pattern,
                                  here ? from : 0);
        if (at < 0) continue;
        if (!here) showSection(k);
        QTextCursor c = edit_->textCursor();
        c.setPosition(at);
        c.setPosition(at + pattern.size(), QTextCursor::KeepAnchor);
        edit_->setTextCursor(c);
        ScrollSelectionToFourthLine(edit_);
        restart_ = false;
        return Result::kOk;
    }
    restartAtTop();
    return Result::kCouldNotFind;
}

void TTableWin::search() {
    if (AskSearchText(this, &searchText_)) report(find(searchText_));
}

void TTableWin::restartAtTop() {
    if (shown_ != 0) showSection(0);
    QTextCursor c = edit_->textCursor();
    c.setPosition(0);
    edit_->setTextCursor(c);
    edit_->verticalScrollBar()->setValue(0);
    restart_ = true;
}

// ---- Files, font, commands -----------------------------------------------

// Saved as the text windows save: the text, then one zero byte.
Result TTableWin::saveFile(const QString& path) {
    QByteArray bytes = text_.toUtf8();
    bytes.append('\0');
    if (!WriteWholeFile(QFile::encodeName(path).toStdString(), bytes.toStdString()))
        return Result::kCannotSaveFile;
    fileName_ = path;
    return Result::kOk;
}

void TTableWin::saveAs() {
    const QString path = TheModal().saveFileName(
        this, QString(), FileFilter(OxString(kStrTextFiles)), "txt", fileName_);
    if (!path.isEmpty()) report(saveFile(path));
}

void TTableWin::chooseFont() {
    QFont font = edit_->font();
    if (!TheModal().chooseFont(this, &font)) return;
    setFontEntry(fontIndex_, LogFontFromFont(font, logicalDpiY()));
    edit_->setFont(tableFont(fontIndex_));
}

void TTableWin::report(Result code) {
    if (!Ok(code)) ShowError(this, code);
}

bool TTableWin::commandEnabled(int id) {
    if (busy_) return id == kTxtClose || id == kTxtLunch;
    switch (id) {
    case kTxtCopy: return edit_->textCursor().hasSelection();
    case kTxtNext: return !searchText_.isEmpty();
    case kTxtPrint:
    case kTxtSaveAs:
    case kTxtSearch: return !text_.isEmpty();
    case kTblBack: return shown_ > 0;
    case kTblForward: return shown_ + 1 < sectionCount();
    case kTblJump: return sectionCount() > 1;
    case kTblFormat: return false;
    default: return true;
    }
}

void TTableWin::command(int id) {
    if (busy_ && id != kTxtClose && id != kTxtLunch) return;
    switch (id) {
    case kTxtSaveAs: saveAs(); break;
    case kTxtPrint:
    case kTxtSelectPrinter:
    case kTxtOffsets:
        RunPrintCommand(id, this, fileName_.isEmpty() ? baseTitle_ : fileName_, sectionText(shown_),
                        edit_->font(), &printFormat_);
        break;
    case kTxtClose: close(); break;
    case kTxtCopy: edit_->copy(); break;
    case kTxtSelectAll: edit_->selectAll(); break;
    case kTxtSearch: search(); break;
    case kTxtNext: report(find(searchText_)); break;
    case kTxtRestart: restartAtTop(); break;
    case kTxtFont: chooseFont(); break;
    case kTblBack: showSection(shown_ - 1); break;
    case kTblForward: showSection(shown_ + 1); break;
    case kTblJump: jump(); break;
    case kTblSectionHelp:
        AskMessage(this, OxText(kStrSections), OxText(kStrSectionsHelp), kMsgOk);
        break;
    default: TFontWin::command(id); break;
    }
}
