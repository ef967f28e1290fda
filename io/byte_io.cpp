#include "io/byte_io.h"

#include <cstdio>
#include <new>

#include "io/safe_file.h"

bool ReadWholeFile(const std::string& path, std::string* out) {
    out->clear();
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    char buf[65536];
    std::size_t n;
    bool ok = true;
    try {
        while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) out->append(buf, n);
        ok = !std::ferror(f);
    } catch (const std::bad_alloc&) {
        ok = false;  // a file larger than the memory left (or endless: /dev/zero)
    }
    std::fclose(f);
    if (!ok) *out = std::string();
    return ok;
}

bool WriteWholeFile(const std::string& path, const std::string& data) {
    SafeFile file;
    if (!file.Open(path)) return false;
    // A short write sets the stream's error, which Commit answers.
    (void)std::fwrite(data.data(), 1, data.size(), file.file());
    return file.Commit();
}
