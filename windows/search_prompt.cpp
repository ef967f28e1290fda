#include "windows/search_prompt.h"

#include <QString>

#include "dialogs/modal.h"
#include "resources/limits.h"
#include "windows/ui_text.h"

bool AskSearchText(QWidget* owner, QString* searchText) {
    QString answer = *searchText;
    if (!TheModal().oneInput(owner, OxText(5), OxText(700), &answer, kMaxFieldChars)) return false;
    if (answer.isEmpty()) {
        ShowError(owner, 9);
        return false;
    }
    *searchText = answer;
    return true;
}
