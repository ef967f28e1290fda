// TTableWin: a read-only window that collects rows of text, up to kListChars
// (1,000,000) characters, and shows them one section (at most
// kTableSectionChars) at a time (menu TABLEMENU). The main frame keeps one
// per label for the values of a recursion, one for Batch and one for the
// lists.
//
// The text lives in the window's own buffer, rows ending in "\r\n"; only the
// shown section is ever put into the editor, so a megabyte pages at once.
// Filling and showing are separate steps: append() and appendRow() only add
// to the buffer (cheap enough for every row of a tight loop), and the
// display follows when the owner calls setTextAndTitle() (sections rebuilt,
// first section shown, new caption) or refresh() (sections rebuilt, the
// shown section kept).
//
// The caption is the base title, followed by " [k/n]" while there is more
// than one section. Closing the window only hides it.
#pragma once

#include <QString>

#include <cstddef>
#include <vector>

#include "io/page_layout.h"
#include "resources/result.h"
#include "windows/kel_win.h"

struct BigInt;
class QPlainTextEdit;

class TTableWin : public TFontWin {
    Q_OBJECT
public:
    // Created hidden and empty; the owner shows it.
    TTableWin(QWidget* parent, const QString& title, int fontIndex = 2);

    // ---- The buffer (the display follows on setTextAndTitle or refresh).

    // Adds text at the end unless the buffer would pass kListChars; then
    // nothing is added and the answer is false. No message either way.
    [[nodiscard]] bool append(const QString& text);
    // One row: the row counter as "%3d: ", then the numerator's decimal
    // digits without line breaks and "\r\n", as two appends under the rule
    // above. The counter goes up by one whether or not they fitted. True
    // when both fitted.
    [[nodiscard]] bool appendRow(const BigInt* numerator);
    // The whole text, cut at kListChars; the row counter is left alone.
    void replaceText(const QString& text);
    const QString& text() const { return text_; }
    int rowCounter() const { return rows_; }

    // ---- The display.

    // Sections rebuilt, the first one shown, the base title replaced.
    void setTextAndTitle(const QString& title);
    // Sections rebuilt after appends; the shown section stays (or becomes the
    // last one when it no longer exists). A shown section that only grew is
    // extended in place, keeping the view at the bottom if it was there.
    void refresh();
    void showSection(int index);  // 0-based; out of range is ignored
    int sectionCount() const { return static_cast<int>(starts_.size()); }
    int shownSection() const { return shown_; }
    QString sectionText(int index) const;  // as held in the buffer, "\r\n" and all
    QString baseTitle() const { return baseTitle_; }
    static QString TitleFor(const QString& base, int shown, int count);

    // While busy (a run filling the window) every command is refused.
    void setBusy(bool busy) { busy_ = busy; }
    bool isBusy() const { return busy_; }

    // The file Save As last wrote, empty until then; prints are named after it.
    QString fileName() const { return fileName_; }
    QPlainTextEdit* editor() const { return edit_; }
    PrintFormat& printFormat() { return printFormat_; }

    // The search of F1 and F3 over the whole text from the caret on, moving
    // to the section of a match: kOk (found, selected), kNothingToDo (empty
    // pattern) or kCouldNotFind (the first section shown, caret at its start).
    Result find(const QString& pattern);
    // 0, or 12 (cannot save file).
    Result saveFile(const QString& path);

    void command(int id) override;
    bool commandEnabled(int id) override;

private:
    bool fits(qsizetype chars) const;
    void rebuildSections();
    void display();  // shows shown_ and renews the caption
    std::size_t sectionEnd(int index) const;
    void jump();
    void search();
    void restartAtTop();
    void saveAs();
    void chooseFont();
    void report(Result code);

    QPlainTextEdit* edit_;
    QString text_;
    QString baseTitle_;
    QString fileName_;
    QString searchText_;
    std::vector<std::size_t> starts_{0};
    int shown_ = 0;
    // What the editor holds: the section's start and length in the buffer.
    std::size_t shownStart_ = 0;
    std::size_t shownLength_ = 0;
    bool shownValid_ = false;
    int rows_ = 0;
    int fontIndex_;
    bool busy_ = false;
    bool restart_ = true;
    PrintFormat printFormat_;
};
