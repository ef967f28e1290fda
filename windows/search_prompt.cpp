#include "windows/search_prompt.h"

#include <QString>

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/limits.h"
#include "resources/string_ids.h"

bool AskSearchText(QWidget* owner, QString* searchText) {
    QString answer = *searchText;
    if (!TheModal().oneInput(owner, OxText(kStrInput), OxText(kStrSearchFor), &answer,
                             kMaxFieldChars))
        return false;
    if (answer.isEmpty()) {
        ShowError(owner, Result::kNothingToDo);
        return false;
    }
    *searchText = answer;
    return true;
}
