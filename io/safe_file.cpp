#include "io/safe_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

#ifdef _WIN32
#include <io.h>
#include <process.h>
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32
// Names are in the ANSI code page, as every narrow call of the C library
// (the fopen that reads the file back) and QFile::encodeName take them.
struct FileInfo {
    bool exists = false;
    bool regular = false;
    unsigned mode = 0;
};
FileInfo Inspect(const std::string& path) {
    struct _stat64 st = {};
    FileInfo info;
    info.exists = _stat64(path.c_str(), &st) == 0;
    info.regular = info.exists && (st.st_mode & _S_IFMT) == _S_IFREG;
    return info;
}
int CreateNew(const std::string& path) {
    return _open(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                 _S_IREAD | _S_IWRITE);
}
std::FILE* OpenInPlace(const std::string& path) { return std::fopen(path.c_str(), "wb"); }
int ProcessId() { return _getpid(); }
// Windows keeps its own permissions (access lists), which the new file
// inherits from the folder.
void KeepMode(int, unsigned) {}
bool Sync(std::FILE* f) { return _commit(_fileno(f)) == 0; }
// std::rename does not replace an existing file on Windows; MoveFileEx does,
// and on one volume the replacement is a single step as on POSIX.
bool Replace(const std::string& from, const std::string& to) {
    return MoveFileExA(from.c_str(), to.c_str(),
                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}
void Remove(const std::string& path) { (void)std::remove(path.c_str()); }
#else
struct FileInfo {
    bool exists = false;
    bool regular = false;
    mode_t mode = 0;
};
FileInfo Inspect(const std::string& path) {
    struct stat st = {};
    FileInfo info;
    info.exists = stat(path.c_str(), &st) == 0;
    info.regular = info.exists && S_ISREG(st.st_mode);
    info.mode = st.st_mode & 07777;
    return info;
}
// The mode 0666 is narrowed by the umask as for any new file.
int CreateNew(const std::string& path) {
    return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}
std::FILE* OpenInPlace(const std::string& path) { return std::fopen(path.c_str(), "wb"); }
int ProcessId() { return int(getpid()); }
// A replaced file keeps its permissions; failing that, the new file has the
// usual ones, which is no reason to refuse the save.
void KeepMode(int fd, mode_t mode) { (void)fchmod(fd, mode); }
bool Sync(std::FILE* f) { return fsync(fileno(f)) == 0; }
bool Replace(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}
void Remove(const std::string& path) { (void)std::remove(path.c_str()); }
#endif

}  // namespace

SafeFile::~SafeFile() { Abandon(); }

bool SafeFile::Open(const std::string& path) {
    Abandon();
    path_ = path;
    const FileInfo old = Inspect(path);
    if (old.exists && !old.regular) {
        f_ = OpenInPlace(path);
        return f_ != nullptr;
    }
    // A fresh name of our own: O_EXCL never reuses a file someone else made.
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 100; ++attempt) {
        temp_ = path + ".~" + std::to_string(ProcessId()) + "-" + std::to_string(attempt);
        fd = CreateNew(temp_);
        if (fd < 0 && errno != EEXIST) break;
    }
    if (fd < 0) {
        temp_.clear();
        return false;
    }
    if (old.exists) KeepMode(fd, old.mode);
#ifdef _WIN32
    f_ = _fdopen(fd, "wb");
    if (!f_) _close(fd);
#else
    f_ = fdopen(fd, "wb");
    if (!f_) close(fd);
#endif
    if (!f_) {
        Abandon();
        return false;
    }
    return true;
}

bool SafeFile::Commit() {
    if (!f_) return false;
    bool ok = !std::ferror(f_) && std::fflush(f_) == 0;
    // Only a renamed file must reach the disk first; a device need not sync.
    if (ok && !temp_.empty()) ok = Sync(f_);
    if (std::fclose(f_) != 0) ok = false;
    f_ = nullptr;
    if (ok && !temp_.empty()) ok = Replace(temp_, path_);
    if (ok) temp_.clear();
    Abandon();
    return ok;
}

void SafeFile::Abandon() {
    if (f_) std::fclose(f_);
    f_ = nullptr;
    if (!temp_.empty()) Remove(temp_);
    temp_.clear();
}
