#include "windows/text_win.h"

#include <QCloseEvent>
#include <QFile>
#include <QStringDecoder>

#include <cstdint>
#include <string>

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "io/byte_io.h"
#include "resources/limits.h"
#include "resources/string_ids.h"
#include "resources/strings.h"
#include "windows/text_search.h"

namespace {

// The longest text file opened: a list window's kListChars characters, each
// at most four bytes of UTF-8, which is the most this program writes (the
// window then shows the first kTextBufferChars).
constexpr std::uint64_t kMaxTextFileBytes = 4 * std::uint64_t{kListChars};

std::string LocalPath(const QString& path) { return QFile::encodeName(path).toStdString(); }

}  // namespace

QString DecodeTextBytes(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8.decode(bytes);
    if (!utf8.hasError()) return text;
    text.clear();
    text.reserve(bytes.size());
    for (char b : bytes) {
        const int code = static_cast<unsigned char>(b);
        text += code < 2 ? QChar(code) : CharOfCode(code);
    }
    return text;
}

TTextWin::TTextWin(QWidget* parent, const QString& title, const QString& fileName,
                   const QString& text, int fontIndex)
    : TTextWin(parent, title, fileName, text, fontIndex, &kTextMenu) {}

TTextWin::TTextWin(QWidget* parent, const QString& title, const QString& fileName,
                   const QString& text, int fontIndex, const MenuData* menu)
    : TPreTextWin(parent, title, fileName, text, fontIndex, menu) {}

Result TTextWin::openFile(const QString& path) {
    std::string bytes;
    const Result read = ReadWholeFile(LocalPath(path), &bytes, kMaxTextFileBytes);
    if (!Ok(read)) return read;
    // A file saved here ends with a zero byte: it is no part of the text.
    const std::size_t end = bytes.find('\0');
    if (end != std::string::npos) bytes.resize(end);
    replaceText(DecodeTextBytes(QByteArray::fromStdString(bytes)));
    markNotModified();
    setFileName(path);
    return Result::kOk;
}

Result TTextWin::saveFile(const QString& path) {
    QByteArray bytes = text().toUtf8();
    bytes.append('\0');
    if (!WriteWholeFile(LocalPath(path), bytes.toStdString())) return Result::kCannotSaveFile;
    setFileName(path);
    markNotModified();
    return Result::kOk;
}

Result TTextWin::save() { return fileName().isEmpty() ? saveAs() : saveFile(fileName()); }

Result TTextWin::saveAs() {
    const QString path = TheModal().saveFileName(
        this, QString(), FileFilter(OxString(kStrTextFiles)), "txt", fileName());
    return path.isEmpty() ? Result::kCancelled : saveFile(path);
}

void TTextWin::command(int id) {
    switch (id) {
    case kTxtOpen: {
        const QString path = TheModal().openFileName(
            this, QString(), FileFilter(OxString(kStrTextFiles)), "txt", fileName());
        if (!path.isEmpty()) report(openFile(path));
        break;
    }
    case kTxtSave: {
        const Result code = save();
        if (code != Result::kCancelled) report(code);
        break;
    }
    case kTxtSaveAs: {
        const Result code = saveAs();
        if (code != Result::kCancelled) report(code);
        break;
    }
    default: TPreTextWin::command(id); break;
    }
}

void TTextWin::closeEvent(QCloseEvent* e) {
    if (!askToSave_ || !isModified()) {
        e->accept();
        return;
    }
    const QString name = fileName().isEmpty() ? windowTitle() : fileName();
    switch (AskMessage(this, OxText(kStrCareful), OxText(kStrSaveChangesTo) + name + "?",
                       kMsgYesNoCancel)) {
    case kMbYes: {
        const Result code = save();
        if (Ok(code)) {
            e->accept();
        } else {
            if (code != Result::kCancelled) report(code);
            e->ignore();
        }
        break;
    }
    case kMbNo: e->accept(); break;
    default: e->ignore(); break;
    }
}
