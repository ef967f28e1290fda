// The question of the Modulus command: one line titled "modulus" with the
// prompt "input", preset with the formula last accepted.
#pragma once

#include <QString>

class QWidget;

// True on ok, with *formula the text typed (at most 255 characters).
[[nodiscard]] bool AskModulusFormula(QWidget* owner, QString* formula);
