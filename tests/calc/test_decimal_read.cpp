// Reading numbers from files and texts in pieces: the same value as the text
// read whole, and a clear code (never a crash, never unbounded memory) for
// what holds no number or too much.
#include <gtest/gtest.h>
#include <unistd.h>
#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#endif

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "calc/decimal_read.h"
#include "support/scratch_dir.h"
#ifndef _WIN32
#include "support/memory_limit.h"
#endif
#include "support/test_support.h"

// The leading minus signs are those at the very start of the whole text,
// wherever the pieces are cut.
TEST(DecimalRead, PiecesReadAsTheWholeText) {
    for (const std::string text : {"--12", "-x-5", "-1-2,3", "7 - 8"}) {
        Num whole;
        ASSERT_EQ(ReadDecimal(text, &whole.v), Result::kOk);
        for (size_t cut = 0; cut <= text.size(); ++cut) {
            DecimalReader reader;
            ASSERT_EQ(reader.Add(text.data(), cut), Result::kOk);
            ASSERT_EQ(reader.Add(text.data() + cut, text.size() - cut), Result::kOk);
            Num v;
            ASSERT_EQ(reader.Finish(&v.v), Result::kOk);
            EXPECT_EQ(Text(v), Text(whole)) << text << " cut at " << cut;
        }
    }
}

TEST(DecimalRead, FilesThatHoldNoNumberOrTooMuch) {
    ScratchDir s;
    Num v;
    const std::string digits(200000, '9');  // more than one piece
    ASSERT_EQ(ReadDecimalFile(s.write("n.txt", "-" + digits + "\n"), v.Out()), Result::kOk);
    EXPECT_EQ(Text(v), "-" + digits);

    EXPECT_EQ(ReadDecimalFile(s.path.string(), v.Out()), Result::kCannotOpenFile);
    EXPECT_EQ(ReadDecimalFile((s.path / "none").string(), v.Out()), Result::kCannotOpenFile);
    EXPECT_EQ(ReadDecimalFile(s.write("empty", ""), v.Out()), Result::kCouldNotFind);
    // Past the ceiling: a sparse file is refused before it is read, a file
    // of digits and an endless device once the ceiling is reached.
    const std::string sparse = s.write("sparse", "");
#ifdef _WIN32
    // Past 32 bits, where the plain stat of Windows wraps; NTFS would
    // allocate a whole terabyte.
    const int64_t size = (int64_t{1} << 32) + 1;
#else
    const int64_t size = int64_t{1} << 40;
#endif
    std::filesystem::resize_file(sparse, static_cast<uintmax_t>(size));
    QuitAtPoll never(1);  // a read would stop at its first poll
    EXPECT_EQ(ReadDecimalFile(sparse, v.Out(), &never, size - 1), Result::kNoMemory);
    EXPECT_EQ(never.polls(), 0);
    EXPECT_EQ(ReadDecimalFile(s.write("d.txt", digits), v.Out(), nullptr, 1000), Result::kNoMemory);
#ifndef _WIN32  // Windows has no endless device
    EXPECT_EQ(ReadDecimalFile("/dev/zero", v.Out(), nullptr, 1 << 20), Result::kNoMemory);
    // An endless read ends at the first poll that answers Q.
    QuitAtPoll quit(1);
    EXPECT_EQ(ReadDecimalFile("/dev/zero", v.Out(), &quit), Result::kStopped);
    EXPECT_EQ(quit.polls(), 1);
#endif
}

// A file cut short while it is read gives the digits that were there; one
// that grows is read on, up to the ceiling.
TEST(DecimalRead, FileChangingWhileRead) {
    ScratchDir s;
    const std::string path = s.write("n.txt", std::string(9 << 20, '7'));  // past the first poll
    struct Cutting : CalcContext {
        std::string path;
        int PollQuitKey() override {
            std::filesystem::resize_file(path, 1000);
            return 0;
        }
    } cut;
    cut.path = path;
    Num v;
    const Result code = ReadDecimalFile(path, v.Out(), &cut);
    ASSERT_TRUE(code == Result::kOk || code == Result::kCouldNotFind) << code;
    EXPECT_EQ(Text(v).find_first_not_of('7'), std::string::npos);
    struct Growing : CalcContext {
        std::string path;
        int PollQuitKey() override {
            std::ofstream(path, std::ios::app) << std::string(16 << 20, '1');
            return 0;
        }
    } grow;
    grow.path = s.write("g.txt", std::string(9 << 20, '7'));
    EXPECT_EQ(ReadDecimalFile(grow.path, v.Out(), &grow, 32 << 20), Result::kNoMemory);
}

// Memory running out while the digits are gathered is code 3, not an abort:
// a child limited to 32 MiB more address space reads 128 MiB of digits.
TEST(DecimalRead, MemoryRunningOutIsACode) {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizer's allocator aborts instead of throwing";
#elif defined(_WIN32)
    GTEST_SKIP() << "no fork and no address-space limit on Windows";
#else
    const std::string digits(size_t{128} << 20, '5');
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        if (!LimitAddressSpaceAbove(size_t{32} << 20)) _exit(100);
        BigInt v = {};
        _exit(ReadDecimal(digits, &v));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), Result::kNoMemory);
#endif
}
