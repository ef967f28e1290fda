// The formula compiler: text in, expression tree out.
//
// A fixed chain of passes over a flat array of one-code tokens; the first pass
// that fails ends the compile with its code:
//    1 "cannot understand" (invalid character, unknown or unclosed bracket
//      name, '!' first, a comma outside a list function's parentheses)
//    3 memory exhausted
//    6 "inconsistent data" (the syntax rule is broken)
//    9 "nothing to do" (empty formula)
//  108 unbalanced parentheses (its message text is empty)
#pragma once

#include <string>

#include "calc/tree.h"

// The code of a bracketed function name ("SQRT" -> 251), or 0 when the name is
// not one of the 17 in the table. Names are matched exactly, upper case.
int LookUpFunction(const std::string& name);

// Compiles formula; on success *root is the new tree (owned by the caller),
// on failure *root is null and the code says why.
int CompileFormula(const std::string& formula, ExprNode** root);
