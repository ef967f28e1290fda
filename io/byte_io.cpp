#include "io/byte_io.h"

#include <sys/stat.h>

#include <cstdio>
#include <new>

#include "io/safe_file.h"

Result ReadWholeFile(const std::string& path, std::string* out, std::uint64_t maxBytes) {
    out->clear();
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return Result::kCannotOpenFile;
    struct stat info = {};
    const bool regular = fstat(fileno(f), &info) == 0 && S_ISREG(info.st_mode);
    if (regular && static_cast<std::uint64_t>(info.st_size) > maxBytes) {
        std::fclose(f);
        return Result::kNoMoreRoom;
    }
    char buf[65536];
    Result code = Result::kOk;
    try {
        if (regular) out->reserve(static_cast<std::size_t>(info.st_size));
        std::size_t n;
        while (Ok(code) && (n = std::fread(buf, 1, sizeof buf, f)) > 0) {
            if (n > maxBytes - out->size())
                code = Result::kNoMoreRoom;  // a file still growing, or endless (/dev/zero)
            else
                out->append(buf, n);
        }
        if (Ok(code) && std::ferror(f)) code = Result::kCannotOpenFile;
    } catch (const std::bad_alloc&) {
        code = Result::kNoMemory;
    }
    std::fclose(f);
    if (!Ok(code)) *out = std::string();
    return code;
}

bool WriteWholeFile(const std::string& path, const std::string& data) {
    SafeFile file;
    if (!file.Open(path)) return false;
    // A short write sets the stream's error, which Commit answers.
    (void)std::fwrite(data.data(), 1, data.size(), file.file());
    return file.Commit();
}
