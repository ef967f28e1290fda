#include "dialogs/modulus.h"

#include "dialogs/modal.h"
#include "dialogs/ui_text.h"
#include "resources/limits.h"
#include "resources/string_ids.h"

bool AskModulusFormula(QWidget* owner, QString* formula) {
    return TheModal().oneInput(owner, OxText(kStrModulus), OxText(kStrInput), formula,
                               kMaxFieldChars);
}
