#include "dialogs/modulus.h"

#include "dialogs/modal.h"
#include "resources/limits.h"
#include "resources/strings.h"

bool AskModulusFormula(QWidget* owner, QString* formula) {
    return TheModal().oneInput(owner, QString::fromUtf8(OxString(206)),
                               QString::fromUtf8(OxString(5)), formula, kMaxFieldChars);
}
