// The texts of --help, --version and the help statement.
#pragma once

#include <cstdio>

// One line per statement with an example; what the help statement prints.
extern const char kStatementHelp[];
// The formula language: operators, precedence and the bracket functions.
extern const char kFormulaHelp[];
// The exit statuses.
extern const char kExitHelp[];
extern const char kVersionText[];

// usage, the options, statements, formula language and exit statuses, as
// --help shows them.
void PrintFullHelp(std::FILE* out, const char* usage);
