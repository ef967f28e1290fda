// ordix-cli [--wrap N] [-e LINE]... [FILE]
//
// Runs the -e lines in order, then FILE's lines; with neither, standard input
// (with a prompt on a terminal, and line editing where built with libedit).
// A failing statement is reported on standard error and the run goes on.
// Exit status: 0 when every statement succeeded, 1 otherwise, 2 for a usage
// error.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "cli/help_text.h"
#include "cli/interpreter.h"
#include "cli/line_editor.h"
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

// The longest script line read: far above any formula, conversion input or
// batch list, yet an endless line (a device, a runaway file) cannot take the
// memory. A longer line is reported and ends the script: where its end lies
// is only known by reading it all.
constexpr size_t kMaxScriptLineChars = 1000000;

enum class LineRead { kLine, kEnd, kTooLong, kNoMemory };

// The next line of f, its '\n' kept. kEnd when nothing more could be read
// (the end, or an error with errno set).
LineRead ReadLine(std::FILE* f, std::string* line) {
    line->clear();
    try {
        for (;;) {
            errno = 0;
            const int c = std::getc(f);
            if (c == EOF) return line->empty() || std::ferror(f) ? LineRead::kEnd : LineRead::kLine;
            if (line->size() == kMaxScriptLineChars) return LineRead::kTooLong;
            line->push_back(static_cast<char>(c));
            if (c == '\n') return LineRead::kLine;
        }
    } catch (const std::bad_alloc&) {
        return LineRead::kNoMemory;
    }
}

// Runs lines and reports failures; answers whether all succeeded.
class Session {
public:
    Session(Interpreter* interpreter) : interpreter_(interpreter) {}

    void RunLine(const std::string& line, long number) {
        SignalContext::Clear();
        Result code;
        // The model and the arithmetic answer codes; what the interpreter
        // builds around them (words, texts) may still find no memory.
        try {
            code = interpreter_->Run(line);
        } catch (const std::bad_alloc&) {
            code = Result::kNoMemory;
        }
        if (Ok(code)) return;
        Report(number,
               std::string(ResultMessage(code)) + " (code " + std::to_string(ToInt(code)) + ")");
        const int at = interpreter_->ErrorIndex();
        if (at >= 0) ShowPlace(line, static_cast<size_t>(at));
    }

    // Lines typed at a terminal with line editing, until the end (Ctrl+D).
    void RunEditor(LineEditor* editor) {
        std::string line;
        long number = 0;
        for (;;) {
            const LineEditor::Read read = editor->ReadLine("ordix> ", &line);
            if (read == LineEditor::Read::kEnd) break;
            if (read == LineEditor::Read::kInterrupted) continue;
            RunLine(line, ++number);
            std::fflush(stdout);
        }
        std::fputc('\n', stdout);
    }

    // Lines of f until its end; a prompt before each when interactive.
    void RunStream(std::FILE* f, bool interactive) {
        std::string line;
        long number = 0;
        for (;;) {
            if (interactive) {
                std::fputs("ordix> ", stdout);
                std::fflush(stdout);
            }
            const LineRead read = ReadLine(f, &line);
            if (read == LineRead::kTooLong || read == LineRead::kNoMemory) {
                Report(number + 1, read == LineRead::kTooLong
                                       ? "line longer than " + std::to_string(kMaxScriptLineChars) +
                                             " characters"
                                       : ResultMessage(Result::kNoMemory));
                break;
            }
            if (read == LineRead::kEnd) {
                // Ctrl+C at the prompt drops the line being typed.
                if (errno == EINTR && interactive) {
                    std::clearerr(f);
                    SignalContext::Clear();
                    std::fputc('\n', stdout);
                    continue;
                }
                // A script that cannot be read to its end did not run.
                if (std::ferror(f) && !interactive) Report(number + 1, std::strerror(errno));
                break;
            }
            RunLine(line, ++number);
            if (interactive) std::fflush(stdout);
        }
        if (interactive) std::fputc('\n', stdout);
    }

    bool ok() const { return ok_; }

private:
    void Report(long number, const std::string& message) {
        ok_ = false;
        std::fflush(stdout);
        std::fprintf(stderr, "ordix-cli: line %ld: %s\n", number, message.c_str());
    }

    // The line and a caret under the byte at, on the lines after the report
    // (whose form scripts may parse): "  <line>" then "  <spaces>^ column N",
    // N counted in characters. A long line is shown as a window around at.
    static void ShowPlace(const std::string& line, size_t at) {
        constexpr size_t kWindow = 100;
        // UTF-8 continuation bytes share the column of the byte before.
        auto continues = [&line](size_t i) {
            return (static_cast<unsigned char>(line[i]) & 0xC0) == 0x80;
        };
        size_t end = line.size();
        while (end > 0 && (line[end - 1] == '\n' || line[end - 1] == '\r')) --end;
        if (at >= end) return;
        long column = 0;
        for (size_t i = 0; i <= at; ++i)
            if (!continues(i)) ++column;
        size_t from = at > kWindow / 2 ? at - kWindow / 2 : 0;
        while (from > 0 && continues(from)) --from;
        size_t to = std::min(end, from + kWindow);
        while (to < end && continues(to)) ++to;
        const char* head = from > 0 ? "..." : "";
        std::string pad(std::strlen(head), ' ');
        // Tabs are kept so that the caret lines up however they are shown.
        for (size_t i = from; i < at; ++i)
            if (!continues(i)) pad.push_back(line[i] == '\t' ? '\t' : ' ');
        std::fprintf(stderr, "  %s%.*s%s\n  %s^ column %ld\n", head, static_cast<int>(to - from),
                     line.c_str() + from, to < end ? "..." : "", pad.c_str(), column);
    }

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
            PrintFullHelp(stdout, kUsage);
            return 0;
        } else if (arg == "--version") {
            std::fputs(kVersionText, stdout);
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
        // The editor draws on standard output: both ends must be the terminal.
        if (interactive && isatty(STDOUT_FILENO) && LineEditor::Available()) {
            LineEditor editor([&interpreter](int label) { return interpreter.HasValue(label); });
            session.RunEditor(&editor);
        } else {
            session.RunStream(stdin, interactive);
        }
    }
    std::fflush(stdout);
    return session.ok() ? 0 : 1;
}
