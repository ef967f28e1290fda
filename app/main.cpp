#include <csignal>

#include "app/calc_app.h"

int main(int argc, char** argv) {
    // A save that passes a file-size limit then fails with "cannot save file"
    // and leaves the old file, instead of ending the program.
#ifdef SIGXFSZ  // POSIX only
    (void)std::signal(SIGXFSZ, SIG_IGN);
#endif
    TCalc calc(argc, argv);
    return calc.run();
}
