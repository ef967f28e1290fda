// The formula compiler: text in, expression tree out.
//
// A fixed chain of passes over a flat array of one-code tokens; the first pass
// that fails ends the compile with its code:
//   kCannotUnderstand  invalid character, unknown or unclosed bracket name,
//                      '!' first, a comma outside a list function's parentheses
//   kNoMemory          memory exhausted
//   kInconsistent      the syntax rule is broken
//   kNothingToDo       empty formula
//   kUnbalanced        unbalanced parentheses (its message text is empty)
#pragma once

#include <string>
#include <vector>

#include "calc/tree.h"
#include "resources/result.h"

// The code of a bracketed function name ("SQRT" -> 251), or 0 when the name is
// not one of the 17 in the table. Names are matched exactly, upper case.
[[nodiscard]] int LookUpFunction(const std::string& name);
// The 17 names of that table, in its order (for completion).
std::vector<std::string> FunctionNames();

// Compiles formula; on success *root holds the new tree, on failure it is
// empty and the code says why. When failedAt is given it receives the index
// in formula of the character the failure was found at, or -1 where there is
// none (an empty or too long formula, memory).
Result CompileFormula(const std::string& formula, TreePtr* root, int* failedAt = nullptr);
