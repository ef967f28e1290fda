#include "cli/signal_context.h"

#include <csignal>

namespace {

volatile std::sig_atomic_t gInterrupted = 0;

extern "C" void OnInterrupt(int) {
    if (gInterrupted) {
        // (void): the handler has nowhere to report to; the default action
        // ends the program.
        (void)std::signal(SIGINT, SIG_DFL);
        (void)std::raise(SIGINT);
        return;
    }
    gInterrupted = 1;
#ifdef _WIN32
    // Windows puts back the default action before calling a handler.
    (void)std::signal(SIGINT, OnInterrupt);
#endif
}

}  // namespace

void SignalContext::Install() {
#ifdef _WIN32
    // No sigaction there; Ctrl+C in a console calls the handler on a thread
    // of its own, and a read at the prompt is not cut short.
    (void)std::signal(SIGINT, OnInterrupt);
#else
    struct sigaction action = {};
    action.sa_handler = OnInterrupt;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;  // no restart: a read at the prompt returns
    // (void): it fails only for an invalid signal number; SIGINT is valid.
    (void)sigaction(SIGINT, &action, nullptr);
#endif
}

bool SignalContext::Interrupted() { return gInterrupted != 0; }
void SignalContext::Clear() { gInterrupted = 0; }

int SignalContext::PollQuitKey() { return gInterrupted ? kQuitKey : 0; }
