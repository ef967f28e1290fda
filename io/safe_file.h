// Saving a file whole or not at all.
//
// The bytes go to a temporary file beside the target (the same folder, so the
// same file system), are flushed to the disk, and only then does a rename put
// the file in the target's place, replacing the old file in one step (rename
// on POSIX; MoveFileEx on Windows, whose std::rename refuses an existing
// target). A failure at any point (a full disk, a write error) removes the
// temporary file and leaves the old file as it was. A target that exists and
// is no regular file (a device, a pipe) cannot be replaced and is written in
// place.
#pragma once

#include <cstdio>
#include <string>

class SafeFile {
public:
    SafeFile() = default;
    ~SafeFile();  // an uncommitted file is abandoned
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;

    // Creates the temporary file for path; false when it cannot be made.
    [[nodiscard]] bool Open(const std::string& path);
    // Where the bytes go between Open and Commit.
    std::FILE* file() const { return f_; }
    // Puts the file in place: false, with the target untouched, when any
    // write since Open failed or the file cannot be flushed or renamed.
    [[nodiscard]] bool Commit();

private:
    void Abandon();

    std::string path_;
    std::string temp_;  // empty when writing in place
    std::FILE* f_ = nullptr;
};
