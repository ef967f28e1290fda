// ordix-cli [--wrap N] [-e LINE]... [FILE]
//
// Runs the -e lines in order, then FILE's lines; with neither, standard input
// (with a prompt on a terminal). A failing statement is reported on standard
// error and the run goes on. Exit status: 0 when every statement succeeded,
// 1 otherwise, 2 for a usage error.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "cli/interpreter.h"
#include "cli/signal_context.h"
#include "resources/result.h"

namespace {

const char kUsage[] = "usage: ordix-cli [--wrap N] [-e LINE]... [FILE]\n";

#ifdef _WIN32
// Windows' C library has no getline: the same contract, the line with its
// newline in a buffer that grows by realloc, -1 at the end or on an error.
ssize_t getline(char** buffer, size_t* capacity, std::FILE* f) {
    size_t n = 0;
    for (int c; (c = std::fgetc(f)) != EOF;) {
        if (n + 2 > *capacity) {
            const size_t grown = *capacity ? 2 * *capacity : 128;
            char* p = static_cast<char*>(std::realloc(*buffer, grown));
            if (!p) {
                errno = ENOMEM;
                return -1;
            }
            *buffer = p;
            *capacity = grown;
        }
        (*buffer)[n++] = static_cast<char>(c);
        if (c == '\n') break;
    }
    if (n == 0) return -1;
    (*buffer)[n] = '\0';
    return static_cast<ssize_t>(n);
}
#endif

int UsageError(const std::string& message) {
    std::fprintf(stderr, "ordix-cli: %s\n%s", message.c_str(), kUsage);
    return 2;
}

// Runs lines and reports failures; answers whether all succeeded.
class Session {
public:
    Session(Interpreter* interpreter) : interpreter_(interpreter) {}

    void RunLine(const std::string& line, long number) {
        SignalContext::Clear();
        const Result code = interpreter_->Run(line);
        if (Ok(code)) return;
        ok_ = false;
        std::fflush(stdout);
        std::fprintf(stderr, "ordix-cli: line %ld: %s (code %d)\n", number, ResultMessage(code),
                     ToInt(code));
    }

    // Lines of f until its end; a prompt before each when interactive.
    void RunStream(std::FILE* f, bool interactive) {
        char* buffer = nullptr;
        size_t capacity = 0;
        long number = 0;
        for (;;) {
            if (interactive) {
                std::fputs("ordix> ", stdout);
                std::fflush(stdout);
            }
            errno = 0;
            ssize_t n = getline(&buffer, &capacity, f);
            if (n < 0) {
                // Ctrl+C at the prompt drops the line being typed.
                if (errno == EINTR && interactive) {
                    std::clearerr(f);
                    SignalContext::Clear();
                    std::fputc('\n', stdout);
                    continue;
                }
                break;
            }
            RunLine(std::string(buffer, static_cast<size_t>(n)), ++number);
            if (interactive) std::fflush(stdout);
        }
        // A script that cannot be read to its end did not run.
        if (std::ferror(f) && !interactive) {
            ok_ = false;
            std::fflush(stdout);
            std::fprintf(stderr, "ordix-cli: line %ld: %s\n", number + 1, std::strerror(errno));
        }
        std::free(buffer);
        if (interactive) std::fputc('\n', stdout);
    }

    bool ok() const { return ok_; }

private:
    Interpreter* interpreter_;
    bool ok_ = true;
};

}  // namespace

int main(int argc, char** argv) {
    int wrap = 0;
    std::vector<std::string> lines;
    const char* fileName = nullptr;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--wrap" || arg == "-e") {
            if (i + 1 == argc) return UsageError(arg + " needs a value");
            std::string value = argv[++i];
            if (arg == "-e") {
                lines.push_back(value);
                continue;
            }
            char* end = nullptr;
            long n = std::strtol(value.c_str(), &end, 10);
            if (value.empty() || *end != '\0' || n < 1 || n > 1000000)
                return UsageError("--wrap needs a positive number");
            wrap = static_cast<int>(n);
        } else if (arg == "-h" || arg == "--help") {
            std::fputs(kUsage, stdout);
            return 0;
        } else if (arg.size() > 1 && arg[0] == '-') {
            return UsageError("unknown option " + arg);
        } else if (fileName) {
            return UsageError("only one file");
        } else {
            fileName = argv[i];
        }
    }
    std::FILE* file = nullptr;
    if (fileName) {
        // A folder opens for reading on POSIX; only its first read fails.
        struct stat info = {};
        const bool folder = stat(fileName, &info) == 0 && S_ISDIR(info.st_mode);
        if (!folder) file = std::fopen(fileName, "r");
        if (!file) return UsageError(std::string("cannot open file ") + fileName);
    }

    const bool interactive = !fileName && lines.empty() && isatty(STDIN_FILENO);
    if (!interactive) {
        static char outputBuffer[1 << 16];
        std::setvbuf(stdout, outputBuffer, _IOFBF, sizeof outputBuffer);
    }
    SignalContext::Install();
    // A file-size limit (ulimit -f) then fails the write, which is reported
    // and leaves no temporary file, instead of ending the program.
#ifdef SIGXFSZ  // POSIX only
    (void)std::signal(SIGXFSZ, SIG_IGN);
#endif
    SignalContext context;
    Interpreter interpreter(&context, stdout, wrap);
    Session session(&interpreter);
    for (size_t i = 0; i < lines.size(); ++i) session.RunLine(lines[i], static_cast<long>(i + 1));
    if (file) {
        session.RunStream(file, false);
        std::fclose(file);
    } else if (lines.empty()) {
        session.RunStream(stdin, interactive);
    }
    std::fflush(stdout);
    return session.ok() ? 0 : 1;
}
