#include "dialogs/modulus.h"

#include "dialogs/modal.h"
#include "resources/limits.h"
#include "resources/strings.h"
#include "windows/ui_text.h"

bool AskModulusFormula(QWidget* owner, QString* formula) {
    return TheModal().oneInput(owner, OxText(206),
                               OxText(5), formula, kMaxFieldChars);
}
