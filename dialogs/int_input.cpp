#include "dialogs/int_input.h"

#include <QString>

#include "dialogs/modal.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

int AskBoundedInt(QWidget* owner, int captionId, int promptId, int64_t* value, bool bounded,
                  int64_t lo, int64_t hi) {
    QString prompt = OxText(promptId);
    if (bounded)
        prompt = QString::number(lo) + " .. " + prompt + " .. " + QString::number(hi);
    QString text = QString::number(*value);
    if (!TheModal().oneInput(owner, OxText(captionId), prompt, &text,
                             kIntInputChars))
        return kIntInputCancelled;
    bool ok = false;
    const qlonglong v = text.trimmed().toLongLong(&ok);
    if (!ok) return 1;
    if (bounded && (v < lo || v > hi)) return 17;
    *value = v;
    return 0;
}
