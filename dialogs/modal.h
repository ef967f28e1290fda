// Every modal question the program asks goes through one object, Modal.
//
// Windows and commands never open a message box, an input dialog, a file
// dialog or the font dialog themselves; they call TheModal(). The process-wide
// instance shows real Qt dialogs; a test installs a scripted answerer with
// SetModal() and so drives the program end to end without a person (see
// tests/gui/scripted_modal.h). Results follow the program's conventions:
// message boxes answer kMbOk, kMbYes, kMbNo or kMbCancel; inputs answer true
// for ok; file dialogs answer the chosen path or an empty string.
#pragma once

#include <QFont>
#include <QString>

#include "resources/result.h"

class QDialog;
class QWidget;

// Message box kinds and their answers.
enum MsgKind { kMsgOk = 0, kMsgYesNo = 1, kMsgYesNoCancel = 2 };
enum MsgAnswer { kMbOk = 1, kMbCancel = 2, kMbYes = 6, kMbNo = 7 };

class Modal {
public:
    virtual ~Modal();

    // A message box of the given kind (MsgKind); answers a MsgAnswer.
    virtual int messageBox(QWidget* owner, const QString& caption, const QString& text,
                           int kind) = 0;
    // The message of result code `code` (string 400 + code) under `caption`,
    // "hmm ..." when the caption is empty. Never fails.
    virtual void errorMessage(QWidget* owner, Result code, const QString& caption) = 0;
    // One line of input; *text is the default on entry and the answer on ok.
    // The field accepts maxChars characters.
    [[nodiscard]] virtual bool oneInput(QWidget* owner, const QString& caption,
                                        const QString& prompt, QString* text, int maxChars) = 0;
    // Two lines of input; button texts empty mean "ok" and "cancel".
    [[nodiscard]] virtual bool twoInput(QWidget* owner, const QString& caption,
                                        const QString& label1, const QString& label2,
                                        QString* text1, int max1, QString* text2, int max2,
                                        const QString& okText, const QString& cancelText) = 0;
    // File dialogs; `filter` in Qt's form ("Number files (*.num)"), `suffix`
    // added to a typed name without one. Open insists on an existing file.
    virtual QString openFileName(QWidget* owner, const QString& caption, const QString& filter,
                                 const QString& suffix, const QString& start) = 0;
    virtual QString saveFileName(QWidget* owner, const QString& caption, const QString& filter,
                                 const QString& suffix, const QString& start) = 0;
    // The system font dialog; *font is the current font on entry.
    [[nodiscard]] virtual bool chooseFont(QWidget* owner, QFont* font) = 0;
    // Any other modal dialog of the program (about, lunch, calculate ...):
    // answers QDialog::Accepted or QDialog::Rejected.
    virtual int runDialog(QDialog* dialog) = 0;
};

// The process-wide instance (real dialogs unless replaced).
Modal& TheModal();
// Installs m (nullptr restores the real dialogs); answers the previous one.
Modal* SetModal(Modal* m);

// A file filter of the program's resources ("Text Files (*.TXT)|*.txt", pairs
// of description and pattern) in Qt's form ("Text Files (*.txt)").
QString FileFilter(const char* pairs);

// Shorthands for the common cases.
void ShowError(QWidget* owner, Result code);
int AskMessage(QWidget* owner, const QString& caption, const QString& text, int kind);
