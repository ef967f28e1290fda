#include "calc/decimal_read.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <new>

namespace {

constexpr int64_t kPollChars = int64_t{8} << 20;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

Result DecimalReader::Add(const char* text, size_t size) {
    const int64_t n = static_cast<int64_t>(size);
    if (n > maxChars_ - seen_) {
        kept_ = std::string();
        return Result::kNoMemory;
    }
    seen_ += n;
    size_t i = 0;
    try {
        // The digits are taken in runs: one append per run, not per digit.
        for (; atStart_ && i < size && text[i] == '-'; ++i) kept_.push_back('-');
        if (i < size) atStart_ = false;
        while (i < size) {
            while (i < size && !IsDigit(text[i])) ++i;
            const size_t run = i;
            while (i < size && IsDigit(text[i])) ++i;
            if (i > run) {
                kept_.append(text + run, i - run);
                anyDigit_ = true;
            }
        }
    } catch (const std::bad_alloc&) {
        kept_ = std::string();
        return Result::kNoMemory;
    }
    sincePoll_ += n;
    if (sincePoll_ >= kPollChars) {
        sincePoll_ = 0;
        if (ctx_ && ctx_->ShouldStop()) {
            kept_ = std::string();
            return Result::kStopped;
        }
    }
    return Result::kOk;
}

Result DecimalReader::Finish(BigInt* v) {
    // Without a digit the text never reaches BigFromText, whose empty digit
    // case would ask for an enormous limb array.
    if (!anyDigit_) {
        *v = BigInt{};
        return Result::kCouldNotFind;
    }
    const Result code = BigFromText(&kept_[0], v);
    kept_ = std::string();
    return code;
}

Result ReadDecimal(const std::string& text, BigInt* v, CalcContext* ctx) {
    DecimalReader reader(ctx);
    const Result code = reader.Add(text.data(), text.size());
    if (!Ok(code)) return code;
    return reader.Finish(v);
}

Result ReadDecimalFile(const std::string& path, BigInt* v, CalcContext* ctx, int64_t maxChars) {
    errno = 0;
    std::FILE* f = std::fopen(path.c_str(), "rb");
    // Opening a pipe waits for its writer, and Ctrl+C ends the wait.
    if (!f)
        return errno == EINTR && ctx && ctx->ShouldStop() ? Result::kStopped
                                                          : Result::kCannotOpenFile;
    Result code = Result::kOk;
#ifdef _WIN32
    // The plain stat of Windows holds a 32-bit size.
    struct _stat64 info = {};
    const bool known = _fstat64(_fileno(f), &info) == 0;
    const bool folder = (info.st_mode & _S_IFMT) == _S_IFDIR;
    const bool regular = (info.st_mode & _S_IFMT) == _S_IFREG;
#else
    struct stat info = {};
    const bool known = fstat(fileno(f), &info) == 0;
    const bool folder = S_ISDIR(info.st_mode), regular = S_ISREG(info.st_mode);
#endif
    if (!known || folder) {
        code = Result::kCannotOpenFile;
    } else if (regular && info.st_size > maxChars) {
        code = Result::kNoMemory;  // known before a byte is read
    }
    DecimalReader reader(ctx, maxChars);
    char chunk[1 << 16];
    while (Ok(code)) {
        errno = 0;
        const size_t n = std::fread(chunk, 1, sizeof chunk, f);
        if (n > 0) code = reader.Add(chunk, n);
        if (!Ok(code) || n == sizeof chunk) continue;
        if (std::feof(f)) break;
        // A signal cut the read short (Ctrl+C while reading a pipe): that is
        // the user asking to stop, not a broken file.
        if (!std::ferror(f) || errno != EINTR) {
            code = Result::kCannotOpenFile;
        } else if (ctx && ctx->ShouldStop()) {
            code = Result::kStopped;
        } else {
            std::clearerr(f);
        }
    }
    std::fclose(f);
    return Ok(code) ? reader.Finish(v) : code;
}
