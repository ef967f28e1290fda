// The calculation context of the command line: Ctrl+C (SIGINT) makes the
// polls answer Q, so that the running statement ends as interrupted.
#pragma once

#include "bigint/context.h"

class SignalContext : public CalcContext {
public:
    // Installs the SIGINT handler. A second Ctrl+C while the first has not
    // been taken up yet ends the program, for work that never polls.
    static void Install();
    // Whether Ctrl+C came since the last Clear.
    static bool Interrupted();
    static void Clear();

    int PollQuitKey() override;
};
