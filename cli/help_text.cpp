#include "cli/help_text.h"

#ifndef ORDIX_VERSION
#define ORDIX_VERSION "unknown"
#endif

const char kStatementHelp[] =
    "Statements (one a line; words in any case; # starts a comment):\n"
    "  FORMULA                  print its value            2^100\n"
    "  X = FORMULA              store it under label X     A = 10!\n"
    "  modulus [FORMULA|off]    show, set (mode on), off   modulus 2^61-1\n"
    "  recur X=FORMULA          add a recursion step       recur b=a[mod]b\n"
    "  recur list|clear         show or drop the steps     recur list\n"
    "  recur delete N           drop step N                recur delete 2\n"
    "  cond FORMULA             halt when not positive     cond b\n"
    "  step                     run one recursion step     step\n"
    "  steps N                  run up to N steps          steps 1000\n"
    "  hail X Y                 hailstone of X, top in Y   hail H M\n"
    "  convert FROM TO DIGITS   base conversion, 2..16     convert 10 2 25\n"
    "  convert 10 TO @X         X in base TO, any length   convert 10 16 @A\n"
    "  batch FORMULA ; As ; Bs  over lists of A and B   batch A*10+B ; 1,2 ; 3\n"
    "  freq X                   digit frequencies of X     freq A\n"
    "  read X FILE              X from a decimal file      read A a.txt\n"
    "  write X FILE             X to a decimal file        write A a.txt\n"
    "  list NAME BOUND...       number-theory table        list primes 100\n"
    "  help                     this list                  help\n";

const char kFormulaHelp[] =
    "Formulas:\n"
    "  integers and exact fractions, labels A..Z, spaces ignored\n"
    "  precedence, highest first:\n"
    "    [FACT] [ABS] [SQRT] [SQR] [CURT] [INT] [HAIL]  prefix, [SQRT](16)\n"
    "    -x  ^                      from the right, 2^3^2 = 2^9, -2^2 = -4\n"
    "    * / [QUO] [MOD] [C] [BIN] [BINOM] [COMB] [P] [PERM]   10[C]3\n"
    "    + -\n"
    "    [GCD] [LCM]                also as lists, [GCD](12,18,8)\n"
    "  x! is [FACT](x); 2A and (2)(3) are products; (...) groups\n"
    "  in modulus mode every result is reduced modulo the modulus\n";

const char kExitHelp[] =
    "Exit status: 0 every line succeeded, 1 a line failed, 2 a usage error\n"
    "or a file that cannot be opened. A failing line is reported on standard\n"
    "error as \"ordix-cli: line N: message (code K)\", followed, where the\n"
    "formula shows where, by the line and a caret under that place.\n";

const char kVersionText[] = "ordix-cli " ORDIX_VERSION "\n";

void PrintFullHelp(std::FILE* out, const char* usage) {
    std::fputs(usage, out);
    std::fputs(
        "Runs the -e lines, then FILE; with neither, standard input.\n"
        "  --wrap N   break printed values into lines of N characters\n"
        "  -e LINE    run LINE (may be repeated)\n"
        "  --version  print the version\n"
        "  -h, --help print this help\n\n",
        out);
    std::fputs(kStatementHelp, out);
    std::fputc('\n', out);
    std::fputs(kFormulaHelp, out);
    std::fputc('\n', out);
    std::fputs(kExitHelp, out);
}
