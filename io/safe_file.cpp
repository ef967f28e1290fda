#include "io/safe_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

SafeFile::~SafeFile() { Abandon(); }

bool SafeFile::Open(const std::string& path) {
    Abandon();
    path_ = path;
    struct stat old = {};
    const bool exists = stat(path.c_str(), &old) == 0;
    if (exists && !S_ISREG(old.st_mode)) {
        f_ = std::fopen(path.c_str(), "wb");
        return f_ != nullptr;
    }
    // A fresh name of our own: O_EXCL never reuses a file someone else made,
    // and the mode 0666 is narrowed by the umask as for any new file.
    int fd = -1;
    for (int attempt = 0; fd < 0 && attempt < 100; ++attempt) {
        temp_ = path + ".~" + std::to_string(getpid()) + "-" + std::to_string(attempt);
        fd = open(temp_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno != EEXIST) break;
    }
    if (fd < 0) {
        temp_.clear();
        return false;
    }
    // A replaced file keeps its permissions; failing that, the new file has
    // the usual ones, which is no reason to refuse the save.
    if (exists) (void)fchmod(fd, old.st_mode & 07777);
    f_ = fdopen(fd, "wb");
    if (!f_) {
        close(fd);
        Abandon();
        return false;
    }
    return true;
}

bool SafeFile::Commit() {
    if (!f_) return false;
    bool ok = !std::ferror(f_) && std::fflush(f_) == 0;
    // Only a renamed file must reach the disk first; a device need not sync.
    if (ok && !temp_.empty()) ok = fsync(fileno(f_)) == 0;
    if (std::fclose(f_) != 0) ok = false;
    f_ = nullptr;
    if (ok && !temp_.empty()) ok = std::rename(temp_.c_str(), path_.c_str()) == 0;
    if (ok) temp_.clear();
    Abandon();
    return ok;
}

void SafeFile::Abandon() {
    if (f_) std::fclose(f_);
    f_ = nullptr;
    if (!temp_.empty()) std::remove(temp_.c_str());
    temp_.clear();
}
