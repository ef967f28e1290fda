// Printing a window's text on the current printer, placed on the page by
// the window's print format (io/page_layout.h), and the three print commands
// every text, number and table window answers:
//   97 Print            prints at once on the current printer, no dialog
//   93 Select printer   the platform's printer set-up, through the modal seam
//   304 Offsets         the offsets dialog (dialogs/prnspx_dlg.h)
// The current printer is one for the whole program; a printer chosen in any
// window serves every later print.
#pragma once

#include <QString>

#include "io/page_layout.h"
#include "resources/result.h"

class QFont;
class QPrinter;
class QWidget;

// PrintTextOn's answer when the printer would not start the job. No message
// of the table fits; the print command says "cannot print" itself.
constexpr Result kPrintRefused = Result::kHalted;

QPrinter& CurrentPrinter();

// The printer set-up dialog for CurrentPrinter(); true when accepted.
[[nodiscard]] bool SelectPrinter(QWidget* owner);

// The font a window shows (sized in screen pixels at screenDpiY, or in
// points) sized in points, so that it prints at the size it is seen.
QFont PrintFont(const QFont& screenFont, int screenDpiY);

// Prints text in font (sized in points): one line per line of the text, a
// new page at each form feed and whenever the usable height is full. The
// job is named after jobName without its folder. Answers kOk, kNothingToDo
// for an empty text, or kPrintRefused.
Result PrintTextOn(QPrinter* printer, const QString& jobName, const QString& text,
                   const QFont& font, const PrintFormat& format);

// Prints on the current printer the text owner shows in screenFont and tells
// the user when that fails.
void PrintText(QWidget* owner, const QString& jobName, const QString& text, const QFont& screenFont,
               const PrintFormat& format);

// Runs print command id (97, 93 or 304) for a window; false for any other id.
bool RunPrintCommand(int id, QWidget* owner, const QString& jobName, const QString& text,
                     const QFont& screenFont, PrintFormat* format);
