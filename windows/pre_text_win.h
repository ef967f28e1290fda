// TPreTextWin: a window whose whole client area is one plain-text editor
// holding at most kTextBufferChars characters (64000), with searching,
// Restart at top, minus signs, the font command and the edit commands of
// TEXTMENU and NOTEMENU. Subclasses add files (TTextWin) or belong to a
// number window (TNoteWin).
//
// Searching: a search starts one character after the selection start, so
// that repeating it never finds the same match twice; right after the window
// is made, after Restart at top and after a failed search it starts at the
// caret itself. A match is selected and scrolled to the fourth line shown.
#pragma once

#include <QString>

#include "io/page_layout.h"
#include "resources/result.h"
#include "windows/kel_win.h"

class QPlainTextEdit;

// Shared by the windows whose client area is one editor (text and table
// windows): the size of a new window, 80 columns by 26 lines of the editor's
// font within the screen; and the scroll that puts the selection's line
// fourth from the top.
QSize TextWindowSize(const QMainWindow* win, const QPlainTextEdit* edit);
void ScrollSelectionToFourthLine(QPlainTextEdit* edit);

class TPreTextWin : public TFontWin {
    Q_OBJECT
public:
    // menu may be nullptr for a window without a menu bar.
    TPreTextWin(QWidget* parent, const QString& title, const QString& fileName, const QString& text,
                int fontIndex, const MenuData* menu);

    // The text, cut at kTextBufferChars; the modified flag is left alone.
    void replaceText(const QString& text);
    void appendText(const QString& text);
    QString text() const;

    bool isModified() const;
    void markNotModified();

    QString fileName() const { return fileName_; }
    void setFileName(const QString& name) { fileName_ = name; }
    QString searchText() const { return searchText_; }
    QPlainTextEdit* editor() const { return edit_; }
    PrintFormat& printFormat() { return printFormat_; }

    // The search of F1 and F3 with the given pattern: kOk (found, selected),
    // kNothingToDo (empty pattern) or kCouldNotFind (caret to the start,
    // restart set).
    Result find(const QString& pattern);

    void command(int id) override;
    bool commandEnabled(int id) override;

protected:
    // Shows the message of a failed command's code (none for 0).
    void report(Result code);

private:
    void search();
    void restartAtTop();
    void chooseFont();
    void minusSigns();

    QPlainTextEdit* edit_;
    QString fileName_;
    QString searchText_;
    int fontIndex_;
    bool restart_ = true;
    PrintFormat printFormat_;
};
