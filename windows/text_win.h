// TTextWin: a text window with a file (menu TEXTMENU): Open, Save and Save As
// of plain text files, and the save-changes question when a modified text is
// closed. A saved file ends with one zero byte after the text, on purpose.
#pragma once

#include "windows/pre_text_win.h"

class TTextWin : public TPreTextWin {
    Q_OBJECT
public:
    TTextWin(QWidget* parent, const QString& title, const QString& fileName, const QString& text,
             int fontIndex);

    // kOk or kCannotOpenFile; the text is cut at kTextBufferChars.
    Result openFile(const QString& path);
    // kOk or kCannotSaveFile; marks the text not modified on success.
    Result saveFile(const QString& path);

    void command(int id) override;

protected:
    // For windows of this kind with a menu of their own (number windows).
    TTextWin(QWidget* parent, const QString& title, const QString& fileName, const QString& text,
             int fontIndex, const MenuData* menu);

    void closeEvent(QCloseEvent* e) override;
    // Whether closing a modified text asks to save it (help windows do not).
    bool askToSave_ = true;

    Result save();    // to the current file, or as a new one when there is none
    Result saveAs();  // kCancelled when the file dialog is cancelled
};

// The text of a file's bytes: UTF-8 when they are valid UTF-8, else the
// 8-bit Windows-1252 text that older files hold.
QString DecodeTextBytes(const QByteArray& bytes);
