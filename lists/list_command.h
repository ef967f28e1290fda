// Runs one list by name for the command line: the generator's text and caption
// land in out, as they would in the list window.
#pragma once

#include <string>
#include <vector>

#include "bigint/bigint.h"

struct ListOutput {
    std::string caption;
    std::string text;   // rows separated by "\r\n", as in the list window
};

// args[0] is the list's name (primes, factor, divisors, ...), the rest its
// arguments as typed. Answers 0, or a message code (17, 10, 6, 4, -1, ...)
// with out left as the run left it.
int RunListCommand(CalcContext* ctx, const std::vector<std::string>& args, ListOutput* out);
