#include "dialogs/modal.h"

#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QMessageBox>

#include "dialogs/inp_dlg.h"
#include "dialogs/msg_dlg.h"
#include "dialogs/ui_text.h"
#include "resources/result.h"
#include "resources/string_ids.h"

namespace {

QString ErrorCaption(const QString& caption) {
    return caption.isEmpty() ? OxText(kStrHmm) : caption;
}

// The real dialogs.
class QtModal : public Modal {
public:
    int messageBox(QWidget* owner, const QString& caption, const QString& text, int kind) override {
        TMsgDlg dlg(owner, caption, text, kind);
        return dlg.exec();
    }

    void errorMessage(QWidget* owner, Result code, const QString& caption) override {
        QMessageBox box(QMessageBox::Information, ErrorCaption(caption),
                        QString::fromUtf8(ResultMessage(code)), QMessageBox::Ok, owner);
        box.setWindowModality(Qt::ApplicationModal);
        box.exec();
    }

    bool oneInput(QWidget* owner, const QString& caption, const QString& prompt, QString* text,
                  int maxChars) override {
        TInpDlg dlg(owner, caption, prompt, *text, maxChars);
        if (dlg.exec() != QDialog::Accepted) return false;
        *text = dlg.text();
        return true;
    }

    bool twoInput(QWidget* owner, const QString& caption, const QString& label1,
                  const QString& label2, QString* text1, int max1, QString* text2, int max2,
                  const QString& okText, const QString& cancelText) override {
        TInp2Dlg dlg(owner, caption, label1, label2, *text1, max1, *text2, max2, okText,
                     cancelText);
        if (dlg.exec() != QDialog::Accepted) return false;
        *text1 = dlg.text1();
        *text2 = dlg.text2();
        return true;
    }

    QString openFileName(QWidget* owner, const QString& caption, const QString& filter,
                         const QString& suffix, const QString& start) override {
        return fileName(owner, caption, filter, suffix, start, QFileDialog::AcceptOpen);
    }

    QString saveFileName(QWidget* owner, const QString& caption, const QString& filter,
                         const QString& suffix, const QString& start) override {
        return fileName(owner, caption, filter, suffix, start, QFileDialog::AcceptSave);
    }

    bool chooseFont(QWidget* owner, QFont* font) override {
        bool ok = false;
        QFont chosen = QFontDialog::getFont(&ok, *font, owner);
        if (ok) *font = chosen;
        return ok;
    }

    int runDialog(QDialog* dialog) override { return dialog->exec(); }

private:
    static QString fileName(QWidget* owner, const QString& caption, const QString& filter,
                            const QString& suffix, const QString& start,
                            QFileDialog::AcceptMode mode) {
        QFileDialog dlg(owner, caption, QString(), filter);
        dlg.setAcceptMode(mode);
        dlg.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile
                                                        : QFileDialog::AnyFile);
        dlg.setDefaultSuffix(suffix);
        if (!start.isEmpty()) dlg.selectFile(start);
        if (dlg.exec() != QDialog::Accepted || dlg.selectedFiles().isEmpty()) return QString();
        return dlg.selectedFiles().first();
    }
};

QtModal g_real;
Modal* g_current = &g_real;

}  // namespace

Modal::~Modal() = default;

Modal& TheModal() { return *g_current; }

Modal* SetModal(Modal* m) {
    Modal* previous = g_current;
    g_current = m ? m : &g_real;
    return previous;
}

void ShowError(QWidget* owner, Result code) { TheModal().errorMessage(owner, code, QString()); }

int AskMessage(QWidget* owner, const QString& caption, const QString& text, int kind) {
    return TheModal().messageBox(owner, caption, text, kind);
}

QString FileFilter(const char* pairs) {
    const QStringList parts = QString::fromUtf8(pairs).split('|');
    QStringList filters;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        // The description's own "(*.TXT)" is replaced by the pattern that
        // really matches on a case-sensitive file system.
        QString description = parts[i];
        const int paren = description.indexOf('(');
        if (paren >= 0) description.truncate(paren);
        filters << description.trimmed() + " (" + parts[i + 1] + ")";
    }
    return filters.join(QStringLiteral(";;"));
}
