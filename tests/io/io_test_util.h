// Scratch files for the file-format tests.
#pragma once

#include <filesystem>
#include <string>

#include <unistd.h>

// A fresh folder under the system's temporary folder, removed at the end.
class ScratchDir {
public:
    explicit ScratchDir(const char* tag) {
        path_ = std::filesystem::temp_directory_path() /
                ("ordix_" + std::string(tag) + "_" + std::to_string(::getpid()));
        std::filesystem::remove_all(path_);
        std::filesystem::create_directories(path_);
    }
    ~ScratchDir() {
        std::error_code ec;
        std::filesystem::remove_all(path_, ec);
    }
    std::string file(const char* name) const { return (path_ / name).string(); }
    std::string path() const { return path_.string(); }

private:
    std::filesystem::path path_;
};
