// A scripted answerer for every modal question of the program. While one is
// alive it replaces the real dialogs: each question is recorded in `calls`
// and answered from a queue filled by the test, in order; a question asked
// with an empty queue is answered as cancelled and counted in `unexpected`.
// Error messages are recorded but take no answer.
#pragma once

#include <QDialog>
#include <QFont>
#include <QList>
#include <QString>

#include <deque>
#include <functional>

#include "dialogs/modal.h"
#include "resources/result.h"

struct ModalCall {
    QString what;     // "message", "error", "input", "input2", "open", "save", "font", "dialog"
    QString caption;  // caption, or the dialog's object name for "dialog"
    QString text;     // message text, prompt, first label or file filter
    int kind = 0;     // message kind, error code or the input's size
};

class ScriptedModal : public Modal {
public:
    ScriptedModal() : previous_(SetModal(this)) {}
    ~ScriptedModal() override { SetModal(previous_); }
    ScriptedModal(const ScriptedModal&) = delete;
    ScriptedModal& operator=(const ScriptedModal&) = delete;

    // Answers, consumed in order. A box or dialog takes `answer`, an input
    // or file dialog says ok with the text or path.
    void answer(int result) { queue_.push_back({result, true, {}, {}, {}}); }
    void answerText(const QString& t) { queue_.push_back({QDialog::Accepted, true, t, {}, {}}); }
    void answerTexts(const QString& a, const QString& b) {
        queue_.push_back({QDialog::Accepted, true, a, b, {}});
    }
    void answerFile(const QString& path) { answerText(path); }
    void answerFont(const QFont& f) { queue_.push_back({QDialog::Accepted, true, {}, {}, f}); }
    void answerCancel() { queue_.push_back({kMbCancel, false, {}, {}, {}}); }

    // Called with a dialog given to runDialog before it is answered.
    std::function<void(QDialog*)> onDialog;

    QList<ModalCall> calls;
    QStringList defaults;  // the texts the input dialogs opened with
    int unexpected = 0;

    QList<int> errors() const {
        QList<int> codes;
        for (const ModalCall& c : calls)
            if (c.what == QLatin1String("error")) codes << c.kind;
        return codes;
    }
    int lastError() const { return errors().value(errors().size() - 1); }  // 0 for none
    int count(const char* what) const {
        int n = 0;
        for (const ModalCall& c : calls) n += c.what == QLatin1String(what);
        return n;
    }

    int messageBox(QWidget*, const QString& caption, const QString& text, int kind) override {
        calls.append({"message", caption, text, kind});
        return next().result;
    }
    void errorMessage(QWidget*, Result code, const QString& caption) override {
        calls.append({"error", caption.isEmpty() ? QStringLiteral("hmm ...") : caption,
                      QString::fromUtf8(ResultMessage(code)), code});
    }
    bool oneInput(QWidget*, const QString& caption, const QString& prompt, QString* text,
                  int maxChars) override {
        calls.append({"input", caption, prompt, maxChars});
        defaults.append(*text);
        const Answer a = next();
        if (!a.ok) return false;
        *text = a.text1.left(maxChars);
        return true;
    }
    bool twoInput(QWidget*, const QString& caption, const QString& label1, const QString&,
                  QString* text1, int max1, QString* text2, int max2, const QString&,
                  const QString&) override {
        calls.append({"input2", caption, label1, max1});
        const Answer a = next();
        if (!a.ok) return false;
        *text1 = a.text1.left(max1);
        *text2 = a.text2.left(max2);
        return true;
    }
    QString openFileName(QWidget*, const QString& caption, const QString& filter, const QString&,
                         const QString&) override {
        return file("open", caption, filter);
    }
    QString saveFileName(QWidget*, const QString& caption, const QString& filter, const QString&,
                         const QString&) override {
        return file("save", caption, filter);
    }
    bool chooseFont(QWidget*, QFont* font) override {
        calls.append({"font", QString(), font->family(), 0});
        const Answer a = next();
        if (!a.ok) return false;
        *font = a.font;
        return true;
    }
    int runDialog(QDialog* dialog) override {
        calls.append({"dialog", dialog->objectName(), dialog->windowTitle(), 0});
        if (onDialog) onDialog(dialog);
        const Answer a = next();
        if (a.ok && a.result == QDialog::Accepted)
            dialog->accept();  // a dialog that refuses its input stays rejected
        else
            dialog->reject();
        return dialog->result();
    }

private:
    struct Answer {
        int result;
        bool ok;
        QString text1, text2;
        QFont font;
    };
    Answer next() {
        if (queue_.empty()) {
            ++unexpected;
            return {kMbCancel, false, {}, {}, {}};
        }
        const Answer a = queue_.front();
        queue_.pop_front();
        return a;
    }
    QString file(const char* what, const QString& caption, const QString& filter) {
        calls.append({what, caption, filter, 0});
        const Answer a = next();
        return a.ok ? a.text1 : QString();
    }

    Modal* previous_;
    std::deque<Answer> queue_;
};
