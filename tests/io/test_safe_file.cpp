// Saving whole or not at all: a write that fails part way leaves the old
// file and no temporary file.
#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <csignal>
#include <filesystem>

#include "io/byte_io.h"
#include "support/scratch_dir.h"

namespace {

std::vector<std::string> Names(const ScratchDir& dir) {
    std::vector<std::string> names;
    for (const auto& e : std::filesystem::directory_iterator(dir.path))
        names.push_back(e.path().filename().string());
    return names;
}

}  // namespace

// Replacing is the step std::rename refuses on Windows.
TEST(SafeFile, ReplacesTheOldFileWhole) {
    ScratchDir dir;
    const std::string path = dir.file("v.num");
    ASSERT_TRUE(WriteWholeFile(path, "older"));
    ASSERT_TRUE(WriteWholeFile(path, "new"));
    std::string bytes;
    ASSERT_EQ(ReadWholeFile(path, &bytes, 100), Result::kOk);
    EXPECT_EQ(bytes, "new");
    EXPECT_EQ(Names(dir), std::vector<std::string>{"v.num"});

    EXPECT_FALSE(WriteWholeFile(dir.file("no/such/v.num"), "x"));
    EXPECT_EQ(Names(dir), std::vector<std::string>{"v.num"});
}

TEST(SafeFile, FailedWriteKeepsTheOldFile) {
#ifdef _WIN32
    GTEST_SKIP() << "no fork and no file-size limit on Windows";
#else
    ScratchDir dir;
    const std::string path = dir.file("v.num");
    ASSERT_TRUE(WriteWholeFile(path, "older"));
    std::string bytes;

    // A full disk, as a child limited to 1000-byte files sees it.
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit = {1000, 1000};
        setrlimit(RLIMIT_FSIZE, &limit);
        _exit(WriteWholeFile(path, std::string(100000, '7')) ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1);  // the write reports its failure
    ASSERT_EQ(ReadWholeFile(path, &bytes, 100), Result::kOk);
    EXPECT_EQ(bytes, "older");
    EXPECT_EQ(Names(dir), std::vector<std::string>{"v.num"});
#endif
}
