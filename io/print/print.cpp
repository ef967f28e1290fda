#include "io/print/print.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QWidget>

#include <string_view>

#include "dialogs/modal.h"
#include "dialogs/prnspx_dlg.h"
#include "dialogs/ui_text.h"
#include "resources/menu_data.h"
#include "resources/string_ids.h"

namespace {

QPrinter* g_printer = nullptr;

// The printer goes with the application object, before Qt's own teardown.
void DropPrinter() {
    delete g_printer;
    g_printer = nullptr;
}

std::u16string_view View(const QString& s) {
    return std::u16string_view(reinterpret_cast<const char16_t*>(s.utf16()),
                               static_cast<std::size_t>(s.size()));
}

}  // namespace

QPrinter& CurrentPrinter() {
    if (!g_printer) {
        g_printer = new QPrinter(QPrinter::HighResolution);
        qAddPostRoutine(DropPrinter);
    }
    return *g_printer;
}

bool SelectPrinter(QWidget* owner) {
    QPrintDialog dlg(&CurrentPrinter(), owner);
    dlg.setObjectName(QStringLiteral("PRINTSETUP"));
    // Set-up only: which printer, paper and orientation; Print prints all.
    dlg.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
    return TheModal().runDialog(&dlg) == QDialog::Accepted;
}

QFont PrintFont(const QFont& screenFont, int screenDpiY) {
    QFont f = screenFont;
    if (f.pixelSize() > 0 && screenDpiY > 0) f.setPointSizeF(f.pixelSize() * 72.0 / screenDpiY);
    return f;
}

Result PrintTextOn(QPrinter* printer, const QString& jobName, const QString& text,
                   const QFont& font, const PrintFormat& format) {
    if (text.isEmpty()) return Result::kNothingToDo;
    printer->setDocName(QFileInfo(jobName).fileName());
    QPainter painter;
    if (!painter.begin(printer)) return kPrintRefused;
    painter.setFont(font);
    const QFontMetricsF metrics(font, printer);
    const qreal lineHeight = metrics.lineSpacing();
    // The painter's origin is the corner of the printable area; offsets count
    // from the paper's edges.
    const QPageLayout layout = printer->pageLayout();
    const QPoint margin = layout.paintRectPixels(printer->resolution()).topLeft();
    const long double vOffset = PrintedOffset(format.vOffset);
    const qreal x = qreal(PrintedOffset(format.hOffset)) * printer->logicalDpiX() - margin.x();
    const qreal top = qreal(vOffset) * printer->logicalDpiY() - margin.y();
    const long double usable =
        UsableHeightInches(layout.paintRect(QPageLayout::Millimeter).width(), vOffset) *
        printer->logicalDpiY();
    const std::vector<TextPage> pages =
        BreakIntoPages(View(text), LinesPerPage(usable, lineHeight));
    for (std::size_t p = 0; p < pages.size(); ++p) {
        if (p > 0) printer->newPage();
        qreal y = top + metrics.ascent();
        for (const TextLine& line : pages[p]) {
            painter.drawText(QPointF(x, y),
                             text.mid(qsizetype(line.start), qsizetype(line.length)));
            y += lineHeight;
        }
    }
    painter.end();
    return Result::kOk;
}

void PrintText(QWidget* owner, const QString& jobName, const QString& text, const QFont& screenFont,
               const PrintFormat& format) {
    const Result code = PrintTextOn(&CurrentPrinter(), jobName, text,
                                    PrintFont(screenFont, owner->logicalDpiY()), format);
    if (code == kPrintRefused)
        AskMessage(owner, OxText(kStrHmm), OxText(kStrCannotPrint), kMsgOk);
    else if (!Ok(code))
        ShowError(owner, code);
}

bool RunPrintCommand(int id, QWidget* owner, const QString& jobName, const QString& text,
                     const QFont& screenFont, PrintFormat* format) {
    switch (id) {
    case kTxtPrint: PrintText(owner, jobName, text, screenFont, *format); return true;
    // A cancelled dialog leaves everything as it was.
    case kTxtSelectPrinter: (void)SelectPrinter(owner); return true;
    case kTxtOffsets: (void)RunOffsetsDialog(owner, format); return true;
    default: return false;
    }
}
