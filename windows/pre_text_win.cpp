#include "windows/pre_text_win.h"

#include <QKeyEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QRandomGenerator>
#include <QScreen>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextLayout>

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "io/print/print.h"
#include "resources/limits.h"
#include "resources/string_ids.h"
#include "windows/font_map.h"
#include "windows/search_prompt.h"
#include "windows/text_search.h"

namespace {

// A new window shows this many columns and lines of its font.
constexpr int kDefaultColumns = 80;
constexpr int kDefaultLines = 26;
constexpr int kMatchLine = 3;  // lines shown above a match

// The editor refuses input beyond the buffer's size, as a limited edit
// control does: typing stops and pasted text is cut.
class LimitedEdit : public QPlainTextEdit {
public:
    explicit LimitedEdit(QWidget* parent) : QPlainTextEdit(parent) {}

protected:
    int room() const {
        const QTextCursor c = textCursor();
        return kTextBufferChars - (document()->characterCount() - 1) +
               (c.selectionEnd() - c.selectionStart());
    }
    void keyPressEvent(QKeyEvent* e) override {
        const QString t = e->text();
        const bool inserts = !t.isEmpty() && (t.at(0).isPrint() || t == "\r" || t == "\t");
        if (inserts && room() < t.size()) return;
        QPlainTextEdit::keyPressEvent(e);
    }
    void insertFromMimeData(const QMimeData* source) override {
        if (!source->hasText()) return;
        const int n = room();
        if (n > 0) textCursor().insertText(source->text().left(n));
    }
};

}  // namespace

TPreTextWin::TPreTextWin(QWidget* parent, const QString& title, const QString& fileName,
                         const QString& text, int fontIndex, const MenuData* menu)
    : TFontWin(parent), fileName_(fileName), fontIndex_(fontIndex) {
    setWindowTitle(title);
    edit_ = new LimitedEdit(this);
    edit_->setObjectName(QStringLiteral("ctl30"));
    edit_->setFrameShape(QFrame::NoFrame);
    edit_->setFont(tableFont(fontIndex_));
    setCentralWidget(edit_);
    replaceText(text);
    markNotModified();
    if (menu) installMenu(*menu);
    resize(TextWindowSize(this, edit_));
    // New text windows cascade below their owner, a little apart in height.
    const QPoint base = parent ? parent->geometry().topLeft() : QPoint(60, 40);
    move(base + QPoint(40, 40 + QRandomGenerator::global()->bounded(51)));
}

QSize TextWindowSize(const QMainWindow* win, const QPlainTextEdit* edit) {
    const QFontMetrics fm(edit->font());
    const int margins = 2 * int(edit->document()->documentMargin()) + 4;
    QSize size(fm.horizontalAdvance(QLatin1Char('8')) * kDefaultColumns + margins +
                   edit->verticalScrollBar()->sizeHint().width(),
               fm.lineSpacing() * kDefaultLines + margins +
                   (win->menuBar() ? win->menuBar()->sizeHint().height() : 0));
    if (const QScreen* screen = win->screen())
        size = size.boundedTo(screen->availableGeometry().size() * 9 / 10);
    return size;
}

void TPreTextWin::replaceText(const QString& text) {
    edit_->setPlainText(text.left(kTextBufferChars));
}

void TPreTextWin::appendText(const QString& text) {
    const int room = kTextBufferChars - edit_->document()->characterCount() + 1;
    if (room <= 0) return;
    QTextCursor c(edit_->document());
    c.movePosition(QTextCursor::End);
    c.insertText(text.left(room));
}

QString TPreTextWin::text() const { return edit_->toPlainText(); }

bool TPreTextWin::isModified() const { return edit_->document()->isModified(); }

void TPreTextWin::markNotModified() { edit_->document()->setModified(false); }

Result TPreTextWin::find(const QString& pattern) {
    if (pattern.isEmpty()) return Result::kNothingToDo;
    const QString all = text();
    QTextCursor c = edit_->textCursor();
    const int start = c.selectionStart() + (restart_ ? 0 : 1);
    restart_ = false;
    const int at = FindInText(all, pattern, start);
    if (at < 0) {
        c.setPosition(0);
        edit_->setTextCursor(c);
        restart_ = true;
        return Result::kCouldNotFind;
    }
    c.setPosition(at);
    c.setPosition(at + pattern.size(), QTextCursor::KeepAnchor);
    edit_->setTextCursor(c);
    ScrollSelectionToFourthLine(edit_);
    return Result::kOk;
}

// The scroll bar of a plain-text editor counts laid-out lines.
void ScrollSelectionToFourthLine(QPlainTextEdit* edit) {
    const QTextCursor c = edit->textCursor();
    const QTextBlock block = c.block();
    int line = block.firstLineNumber();
    if (const QTextLayout* layout = block.layout()) {
        const QTextLine l = layout->lineForTextPosition(c.selectionStart() - block.position());
        if (l.isValid()) line += l.lineNumber();
    }
    edit->verticalScrollBar()->setValue(qMax(0, line - kMatchLine));
}

void TPreTextWin::search() {
    if (AskSearchText(this, &searchText_)) report(find(searchText_));
}

void TPreTextWin::restartAtTop() {
    QTextCursor c = edit_->textCursor();
    c.setPosition(0);
    edit_->setTextCursor(c);
    edit_->verticalScrollBar()->setValue(0);
    restart_ = true;
}

void TPreTextWin::chooseFont() {
    QFont font = edit_->font();
    if (!TheModal().chooseFont(this, &font)) return;
    setFontEntry(fontIndex_, LogFontFromFont(font, logicalDpiY()));
    edit_->setFont(tableFont(fontIndex_));
}

void TPreTextWin::minusSigns() {
    QString answer = QStringLiteral("150");
    if (!TheModal().oneInput(this, OxText(kStrLengthenHyphens), OxText(kStrMinusSignCode), &answer,
                             kMaxFieldChars))
        return;
    bool ok = false;
    const QChar c = CharOfCode(answer.trimmed().toInt(&ok));
    if (!ok || c.isNull()) {
        report(Result::kCannotUnderstand);
        return;
    }
    QString all = text();
    if (!all.contains('-')) return;
    all.replace('-', c);
    // One edit step, so that the change can be undone and marks the text modified.
    QTextCursor cursor(edit_->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(all);
}

void TPreTextWin::report(Result code) {
    if (!Ok(code)) ShowError(this, code);
}

bool TPreTextWin::commandEnabled(int id) {
    switch (id) {
    case kTxtCopy:
    case kTxtCut: return edit_->textCursor().hasSelection();
    case kTxtNext: return !searchText_.isEmpty();
    default: return true;
    }
}

void TPreTextWin::command(int id) {
    switch (id) {
    case kTxtCopy: edit_->copy(); break;
    case kTxtCut: edit_->cut(); break;
    case kTxtPaste: edit_->paste(); break;
    case kTxtSelectAll: edit_->selectAll(); break;
    case kTxtSearch: search(); break;
    case kTxtNext: report(find(searchText_)); break;
    case kTxtRestart: restartAtTop(); break;
    case kTxtFont: chooseFont(); break;
    case kTxtMinusSigns: minusSigns(); break;
    case kTxtSearchHelp:
        AskMessage(this, OxText(kStrSearching), OxText(kStrSearchHelp), kMsgOk);
        break;
    case kTxtPrint:
    case kTxtSelectPrinter:
    case kTxtOffsets:
        RunPrintCommand(id, this, fileName_.isEmpty() ? windowTitle() : fileName_, text(),
                        edit_->font(), &printFormat_);
        break;
    case kTxtClose: close(); break;
    default: TFontWin::command(id); break;
    }
}
