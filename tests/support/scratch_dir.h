// Scratch files for the tests that read and write files.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#ifdef _WIN32
#include <cstdlib>
// Windows' C library sets variables with _putenv_s, where an empty value
// removes the variable: as the program reads it, the same as an empty one.
inline int setenv(const char* name, const char* value, int) { return _putenv_s(name, value); }
inline int unsetenv(const char* name) { return _putenv_s(name, ""); }
#endif

// A fresh folder under the system's temporary folder, removed at the end.
struct ScratchDir {
    std::filesystem::path path =
        std::filesystem::temp_directory_path() / ("ordix_io_" + std::to_string(::getpid()));
    ScratchDir() {
        std::filesystem::remove_all(path);
        std::filesystem::create_directories(path);
    }
    ~ScratchDir() {
        std::error_code ec;  // a folder left behind fails no test
        std::filesystem::remove_all(path, ec);
    }
    std::string file(const char* name) const { return (path / name).string(); }
    // The file's path, after writing text into it.
    std::string write(const char* name, const std::string& text) const {
        std::ofstream(file(name), std::ios::binary) << text;
        return file(name);
    }
};
