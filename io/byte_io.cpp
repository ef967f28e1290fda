#include "io/byte_io.h"

#include <cstdio>

#include "io/safe_file.h"

bool ReadWholeFile(const std::string& path, std::string* out) {
    out->clear();
    FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return false;
    char buf[65536];
    std::size_t n;
    while ((n = std::fread(buf, 1, sizeof buf, f)) > 0) out->append(buf, n);
    const bool ok = !std::ferror(f);
    std::fclose(f);
    return ok;
}

bool WriteWholeFile(const std::string& path, const std::string& data) {
    SafeFile file;
    if (!file.Open(path)) return false;
    // A short write sets the stream's error, which Commit answers.
    (void)std::fwrite(data.data(), 1, data.size(), file.file());
    return file.Commit();
}
