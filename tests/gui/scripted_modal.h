// A scripted answerer for every modal question of the program. While one is
// alive it replaces the real dialogs: each question is recorded in `calls`
// and answered from a queue filled by the test, in order. A question asked
// with an empty queue is answered as cancelled and counted in `unexpected`.
// Error messages are recorded but take no answer.
//
//   ScriptedModal modal;
//   modal.answerText("needle");          // the next input dialog says ok
//   win.command(353);
//   QCOMPARE(modal.lastError(), 0);
#pragma once

#include <QDialog>
#include <QFont>
#include <QList>
#include <QString>

#include <deque>
#include <functional>

#include "dialogs/modal.h"
#include "resources/result.h"
#include "resources/strings.h"

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

    // Answers, consumed in order.
    void answer(int result) { push({result, true, {}, {}, {}}); }   // boxes, dialogs
    void answerText(const QString& t) { push({QDialog::Accepted, true, t, {}, {}}); }
    void answerTexts(const QString& a, const QString& b) {
        push({QDialog::Accepted, true, a, b, {}});
    }
    void answerFile(const QString& path) { push({QDialog::Accepted, true, path, {}, {}}); }
    void answerFont(const QFont& f) { push({QDialog::Accepted, true, {}, {}, f}); }
    void answerCancel() { push({kMbCancel, false, {}, {}, {}}); }

    // Called with a dialog given to runDialog before it is answered, to look
    // at it or fill in its fields.
    std::function<void(QDialog*)> onDialog;

    QList<ModalCall> calls;
    int unexpected = 0;

    // The code of the last error message shown, 0 for none.
    int lastError() const {
        for (int i = calls.size() - 1; i >= 0; --i)
            if (calls[i].what == QLatin1String("error")) return calls[i].kind;
        return 0;
    }
    int count(const char* what) const {
        int n = 0;
        for (const ModalCall& c : calls) n += c.what == QLatin1String(what);
        return n;
    }
    bool pending() const { return !queue_.empty(); }

    int messageBox(QWidget*, const QString& caption, const QString& text, int kind) override {
        calls.append({"message", caption, text, kind});
        Answer a;
        if (!take(&a)) return kMbCancel;
        return a.result;
    }
    void errorMessage(QWidget*, int code, const QString& caption) override {
        calls.append({"error", caption.isEmpty() ? QStringLiteral("hmm ...") : caption,
                      QString::fromUtf8(ResultMessage(static_cast<Result>(code))), code});
    }
    bool oneInput(QWidget*, const QString& caption, const QString& prompt, QString* text,
                  int maxChars) override {
        calls.append({"input", caption, prompt, maxChars});
        defaults.append(*text);
        Answer a;
        if (!take(&a) || !a.ok) return false;
        *text = a.text1.left(maxChars);
        return true;
    }
    bool twoInput(QWidget*, const QString& caption, const QString& label1, const QString&,
                  QString* text1, int max1, QString* text2, int max2, const QString&,
                  const QString&) override {
        calls.append({"input2", caption, label1, max1});
        Answer a;
        if (!take(&a) || !a.ok) return false;
        *text1 = a.text1.left(max1);
        *text2 = a.text2.left(max2);
        return true;
    }
    QString openFileName(QWidget*, const QString& caption, const QString& filter,
                         const QString&, const QString&) override {
        return file("open", caption, filter);
    }
    QString saveFileName(QWidget*, const QString& caption, const QString& filter,
                         const QString&, const QString&) override {
        return file("save", caption, filter);
    }
    bool chooseFont(QWidget*, QFont* font) override {
        calls.append({"font", QString(), font->family(), 0});
        Answer a;
        if (!take(&a) || !a.ok) return false;
        *font = a.font;
        return true;
    }
    int runDialog(QDialog* dialog) override {
        calls.append({"dialog", dialog->objectName(), dialog->windowTitle(), 0});
        if (onDialog) onDialog(dialog);
        Answer a;
        if (take(&a) && a.ok && a.result == QDialog::Accepted)
            dialog->accept();   // a dialog that refuses its input stays rejected
        else
            dialog->reject();
        return dialog->result();
    }

    // The defaults the input dialogs were opened with, in order.
    QStringList defaults;

private:
    struct Answer {
        int result;
        bool ok;
        QString text1, text2;
        QFont font;
    };
    void push(Answer a) { queue_.push_back(std::move(a)); }
    bool take(Answer* a) {
        if (queue_.empty()) {
            ++unexpected;
            return false;
        }
        *a = queue_.front();
        queue_.pop_front();
        return true;
    }
    QString file(const char* what, const QString& caption, const QString& filter) {
        calls.append({what, caption, filter, 0});
        Answer a;
        if (!take(&a) || !a.ok) return QString();
        return a.text1;
    }

    Modal* previous_;
    std::deque<Answer> queue_;
};
