// pty_drive KEYS PROGRAM [ARG]...
//
// Runs PROGRAM on a pseudo-terminal, as a user at a terminal would: waits for
// its first prompt ("ordix> "), types KEYS, and writes everything the
// program showed to standard output. KEYS takes the escapes \r \t \e \\ and
// \xHH, and \w, which waits until the program has been quiet for a moment
// (its answer to the keys so far is complete). Exits with the program's
// status, 124 when it did not end in time (it is then killed).
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

std::vector<std::string> Chunks(const char* keys) {
    std::vector<std::string> chunks(1);
    for (const char* p = keys; *p; ++p) {
        if (*p != '\\' || !p[1]) {
            chunks.back().push_back(*p);
            continue;
        }
        const char c = *++p;
        if (c == 'r')
            chunks.back().push_back('\r');
        else if (c == 't')
            chunks.back().push_back('\t');
        else if (c == 'e')
            chunks.back().push_back('\x1b');
        else if (c == 'w')
            chunks.emplace_back();
        else if (c == 'x' && p[1] && p[2]) {
            chunks.back().push_back(
                static_cast<char>(std::strtol(std::string(p + 1, 2).c_str(), nullptr, 16)));
            p += 2;
        } else
            chunks.back().push_back(c);
    }
    return chunks;
}

// Reads what the program shows into *shown until it has been quiet for
// quietMs, or until `until` appears in it, or the deadline; false at its end.
bool Collect(int fd, std::string* shown, int quietMs, const std::string& until,
             Clock::time_point deadline) {
    for (;;) {
        if (!until.empty() && shown->find(until) != std::string::npos) return true;
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0) return true;
        pollfd p = {fd, POLLIN, 0};
        const int ready = poll(&p, 1, static_cast<int>(std::min<long>(left, quietMs)));
        if (ready < 0 && errno == EINTR) continue;
        if (ready == 0) {
            if (until.empty()) return true;
            continue;
        }
        char buffer[4096];
        const ssize_t n = read(fd, buffer, sizeof buffer);
        if (n <= 0) return false;  // EIO: the program closed the terminal
        shown->append(buffer, static_cast<size_t>(n));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: pty_drive KEYS PROGRAM [ARG]...\n", stderr);
        return 2;
    }
    winsize size = {};
    size.ws_row = 24;
    size.ws_col = 80;
    int fd = -1;
    const pid_t child = forkpty(&fd, nullptr, nullptr, &size);
    if (child < 0) {
        std::perror("forkpty");
        return 2;
    }
    if (child == 0) {
        setenv("TERM", "xterm", 1);
        execvp(argv[2], argv + 2);
        std::perror("exec");
        _exit(127);
    }
    std::string shown;
    const auto deadline = Clock::now() + std::chrono::seconds(20);
    bool open = Collect(fd, &shown, 100, "ordix> ", deadline);
    for (const std::string& chunk : Chunks(argv[1])) {
        if (!open) break;
        // Keys typed while the terminal is still in line mode (before the
        // editor takes it over, or while a statement runs) would be echoed
        // by the terminal as well; a key for a running statement (Ctrl+C)
        // goes after a while anyway.
        const auto editing = Clock::now() + std::chrono::seconds(2);
        termios mode = {};
        while (tcgetattr(fd, &mode) == 0 && (mode.c_lflag & ICANON) && Clock::now() < editing)
            usleep(10000);
        if (!chunk.empty() && write(fd, chunk.data(), chunk.size()) < 0) break;
        open = Collect(fd, &shown, 400, "", deadline);
    }
    while (open && Clock::now() < deadline) open = Collect(fd, &shown, 400, "", deadline);
    int status = 0;
    int code = 124;
    if (waitpid(child, &status, WNOHANG) == 0) {
        // Still running at the deadline, or it never closed the terminal.
        if (open) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
        } else {
            waitpid(child, &status, 0);
            code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        }
    } else {
        code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
    std::fwrite(shown.data(), 1, shown.size(), stdout);
    return code;
}
