#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "io/byte_io.h"
#include "io/num_file.h"
#include "support/alloc_refusal.h"
#include "support/scratch_dir.h"
#include "support/test_support.h"

namespace {

NumFile Sample() {
    NumFile f;
    f.label = 3;
    f.numerator = {{5678, 1234}, true};  // -12345678
    f.hasDenominator = true;
    f.denominator = {{7}};
    f.notebook = "hi";
    f.font.height = -16;
    f.font.weight = 700;
    f.font.charSet = 2;
    f.font.pitchAndFamily = 0x31;
    SetFaceName(&f.font, "Courier New");
    f.fontExtra = 0xDEADBEEF;
    return f;
}

NumFile Decoded(const std::string& bytes, int expectCode = 0) {
    NumFile f;
    EXPECT_EQ(DecodeNumFile(bytes.data(), bytes.size(), &f), expectCode);
    return f;
}

// Bytes from hex digits; spaces are left out.
std::string FromHex(const std::string& hex) {
    std::string digits, out;
    for (char c : hex)
        if (c != ' ') digits += c;
    for (size_t i = 0; i + 1 < digits.size(); i += 2)
        out += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    return out;
}

// The font of Sample(), 60 bytes, and the value kept with it.
const std::string kSampleFont = "f0ffffff" + std::string(24, '0') +
                                "bc020000 00000002 00000031 436f7572696572204e6577" +
                                std::string(42, '0') + "efbeadde";

}  // namespace

// Header -103 (label C, version 1, a denominator follows); numerator top 1,
// negative, limbs 5678 1234; denominator 7; notebook length 3, "hi", zero.
TEST(NumFileLayout, FractionIsWrittenFieldByField) {
    EXPECT_EQ(EncodeNumFile(Sample()),
              FromHex("99ffffff 01000000 01 2e16d204 00000000 00 0700 0300 686900" + kSampleFont));
    // A denominator of one is not written; an empty notebook is one zero byte.
    NumFile f = Sample();
    f.denominator = {{1}};
    f.notebook.clear();
    EXPECT_EQ(EncodeNumFile(f), FromHex("67000000 01000000 01 2e16d204 0100 00" + kSampleFont));
}

TEST(NumFileRoundTrip, ValuesNotebookAndFontComeBack) {
    NumFile zero;
    zero.label = 26;
    zero.numerator = {{0}};
    NumFile big = Sample();
    big.numerator.limbs.assign(5000, 9999);  // 20000 nines
    big.denominator = {{0, 0, 1}};           // 10^8
    big.notebook = std::string(1000, 'x') + "\n2^100";
    NumFile longNote = Sample();
    longNote.notebook = std::string(64001, 'n');  // cut to what the length field holds
    // The layout test pins the bytes, so what reads back must write the same.
    for (const NumFile& in : {Sample(), zero, big, longNote}) {
        const std::string bytes = EncodeNumFile(in);
        const NumFile out = Decoded(bytes);
        EXPECT_EQ(EncodeNumFile(out), bytes);
        EXPECT_EQ(out.version, 1);
        EXPECT_TRUE(out.hasFont);
        EXPECT_EQ(out.notebook, in.notebook.substr(0, kNumFileNotebookChars));
    }
}

TEST(NumFileRoundTrip, WholeFilesAndTheirFailures) {
    ScratchDir dir;
    const std::string path = dir.file("number3.num");
    ASSERT_EQ(WriteNumFile(path, Sample()), 0);
    NumFile out;
    ASSERT_EQ(ReadNumFile(path, &out), 0);
    EXPECT_EQ(out.notebook, "hi");
    EXPECT_EQ(ReadNumFile(dir.file("missing.num"), &out), Result::kCannotOpenFile);
    EXPECT_EQ(ReadNumFile(dir.path.string(), &out), Result::kCannotOpenFile);  // a folder
    EXPECT_EQ(WriteNumFile(dir.file("no/such/folder.num"), Sample()), Result::kCannotSaveFile);
}

// A file longer than any number file is refused: a regular one before it is
// read, an endless device once the ceiling is passed. The ceiling itself is
// allowed: the sample's own size reads, one byte less does not.
TEST(NumFileRoundTrip, FilesPastTheCeiling) {
    ScratchDir dir;
    const std::string path = dir.file("n.num");
    ASSERT_EQ(WriteNumFile(path, Sample()), 0);
    const std::uint64_t size = std::filesystem::file_size(path);
    NumFile out;
    EXPECT_EQ(ReadNumFile(path, &out, size), Result::kOk);
    EXPECT_EQ(ReadNumFile(path, &out, size - 1), Result::kCannotOpenFile);
    const std::string sparse = dir.file("sparse.num");
    ASSERT_EQ(WriteNumFile(sparse, Sample()), 0);
    std::filesystem::resize_file(sparse, kMaxNumFileBytes + 1);
    EXPECT_EQ(ReadNumFile(sparse, &out), Result::kCannotOpenFile);
    EXPECT_EQ(ReadNumFile("/dev/zero", &out, 1 << 20), Result::kCannotOpenFile);
    std::string bytes = "junk";
    EXPECT_EQ(ReadWholeFile("/dev/zero", &bytes, 1 << 20), Result::kNoMoreRoom);
    EXPECT_EQ(bytes, "");
}

// The limbs of a value for saving answer 3 when their array is refused.
TEST(NumFileRoundTrip, LimbsOfAValueShortOfMemory) {
    Num v("-123456789");
    NumLimbs limbs;
    ASSERT_EQ(LimbsOf(&v.v, &limbs), Result::kOk);
    EXPECT_EQ(limbs.limbs, (std::vector<Limb>{6789, 2345, 1}));
    EXPECT_TRUE(limbs.negative);
    ArmAllocations(1);
    const Result code = LimbsOf(&v.v, &limbs);
    gAllocArmed = false;
    EXPECT_EQ(code, Result::kNoMemory);
    EXPECT_TRUE(limbs.limbs.empty());
}

// Files written by hand, in hex: header, then per value its top, sign byte
// and limbs, then the notebook's length and bytes, then the font.
TEST(NumFileRead, HandMadeFiles) {
    const std::string font(2 * 64, '0');
    // Version 0: the header is the label alone and no font follows.
    NumFile out = Decoded(FromHex("03000000 00000000 00 2a00 0100 00"));
    EXPECT_EQ(out.label * 10 + out.version, 30);
    EXPECT_FALSE(out.hasFont);
    EXPECT_EQ(out.numerator.limbs, std::vector<Limb>{42});
    // Leading zero limbs are dropped; a notebook without its zero byte is
    // taken whole.
    out = Decoded(FromHex("69000000 02000000 01 0700 0000 0000 0400 61626364" + font));
    EXPECT_EQ(out.numerator.limbs, std::vector<Limb>{7});
    EXPECT_TRUE(out.numerator.negative);
    EXPECT_EQ(out.notebook, "abcd");
    // Fields no number has, each in an otherwise sound fraction of label A.
    for (const char* bad : {"ffffff7f 00 0100 00000000 00 0100",   // top past the data
                            "feffffff 00 0100 00000000 00 0100",   // negative top
                            "00000000 00 1027 00000000 00 0100",   // limb 10000
                            "00000000 00 ffff 00000000 00 0100",   // limb -1
                            "00000000 00 0100 00000000 00 0000"})  // zero denominator
        Decoded(FromHex("9bffffff " + std::string(bad) + " 0100 00" + font),
                Result::kCannotOpenFile);
    Decoded(FromHex("00000080"), Result::kCannotOpenFile);  // the header must not overflow
}

TEST(NumFileRead, LabelGoesToFirstFreeWhenTakenOrInvalid) {
    bool used[26] = {};
    EXPECT_EQ(LabelForOpenedFile(3, used), 3);
    used[2] = used[0] = true;
    EXPECT_EQ(LabelForOpenedFile(3, used), 2);
    EXPECT_EQ(LabelForOpenedFile(0, used), 2);   // header 100: no label
    EXPECT_EQ(LabelForOpenedFile(27, used), 2);  // header 127
    for (bool& u : used) u = true;
    EXPECT_EQ(LabelForOpenedFile(5, used), 0);
}

TEST(NumFileRead, EveryTruncationFailsCleanly) {
    const std::string whole = EncodeNumFile(Sample());
    for (size_t n = 0; n < whole.size(); ++n) {
        // A copy of exactly n bytes, so that a read past it is an error the
        // sanitizers see.
        std::string part = whole.substr(0, n);
        NumFile out;
        EXPECT_EQ(DecodeNumFile(part.data(), part.size(), &out), Result::kCannotOpenFile)
            << "length " << n;
    }
}

// Random damage must give either a sound number or kCannotOpenFile, never a
// crash or a read outside the buffer. Replay with ORDIX_SEED=<seed>.
TEST(NumFileRead, RandomCorruptionNeverBreaksTheReader) {
    const char* env = std::getenv("ORDIX_SEED");
    const unsigned seed = env ? unsigned(std::strtoul(env, nullptr, 10)) : std::random_device{}();
    std::printf("ORDIX_SEED=%u (include this in bug reports)\n", seed);
    std::mt19937 rng(seed);
    NumFile base = Sample();
    base.numerator.limbs.assign(40, 1234);
    base.notebook = "notebook text";
    const std::string whole = EncodeNumFile(base);
    int opened = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = whole;
        const int hits = 1 + int(rng() % 4);
        for (int h = 0; h < hits; ++h) bytes[rng() % bytes.size()] = char(rng());
        if (rng() % 3 == 0) bytes.resize(rng() % bytes.size());
        NumFile out;
        const Result code = DecodeNumFile(bytes.data(), bytes.size(), &out);
        ASSERT_TRUE(Ok(code) || code == Result::kCannotOpenFile)
            << "seed " << seed << " round " << round;
        if (!Ok(code)) continue;
        ++opened;
        for (const NumLimbs* v : {&out.numerator, &out.denominator}) {
            ASSERT_FALSE(v->limbs.empty());
            for (Limb l : v->limbs) ASSERT_TRUE(l >= 0 && l < kLimbBase);
            ASSERT_TRUE(v->limbs.size() == 1 || v->limbs.back() != 0);
        }
        ASSERT_FALSE(out.denominator.limbs.size() == 1 && out.denominator.limbs[0] == 0);
        ASSERT_LT(out.font.faceName[kLogFontFaceChars - 1], 1);
    }
    EXPECT_GT(opened, 0);  // damage inside limbs and text still opens
}

namespace {

// A value of `limbs` random limbs (top non-zero) owned by the test.
Num RandomValue(std::size_t limbs, bool negative, unsigned seed) {
    std::mt19937 rng(seed);
    std::string text = negative ? "-" : "";
    text += static_cast<char>('1' + rng() % 9);
    for (std::size_t i = 1; i < 4 * limbs; ++i) text += static_cast<char>('0' + rng() % 10);
    return Num(text);
}

std::string FileBytes(const std::string& path) {
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(path, &bytes, 1 << 30), Result::kOk);
    return bytes;
}

}  // namespace

// Saved straight from the records, a file has the bytes EncodeNumFile gives
// for copies of their limbs, on both sides of the block size; it reads back
// through the streaming reader to the same limbs.
TEST(NumFileStream, RecordsWriteAndReadBackBlockByBlock) {
    ScratchDir dir;
    const std::string path = dir.file("view.num");
    for (std::size_t limbs : {std::size_t{1}, kNumFileBlockLimbs, 2 * kNumFileBlockLimbs + 7}) {
        Num num = RandomValue(limbs, true, unsigned(limbs));
        Num den = RandomValue(limbs / 2 + 1, false, 9);
        Num one("1");
        for (const BigInt* d : {&den.v, &one.v, static_cast<BigInt*>(nullptr)}) {
            NumFileView view;
            view.label = 7;
            view.numerator = &num.v;
            view.denominator = d;
            view.notebook = "note";
            view.fontExtra = 5;
            ASSERT_EQ(WriteNumFile(path, view, nullptr), Result::kOk);
            NumFile copy;
            copy.label = 7;
            ASSERT_EQ(LimbsOf(&num.v, &copy.numerator), Result::kOk);
            copy.hasDenominator = d != nullptr;
            if (d) {
                ASSERT_EQ(LimbsOf(d, &copy.denominator), Result::kOk);
            }
            copy.notebook = "note";
            copy.fontExtra = 5;
            EXPECT_EQ(FileBytes(path), EncodeNumFile(copy)) << limbs;
            NumFile back;
            ASSERT_EQ(ReadNumFile(path, &back), Result::kOk);
            EXPECT_EQ(back.numerator.limbs, copy.numerator.limbs);
            EXPECT_EQ(back.hasDenominator, d == &den.v);
        }
    }
}

// Q between two blocks: a save leaves the old file as it was and nothing
// beside it, a read leaves nothing behind. A value of one block never polls.
TEST(NumFileStream, AStopLeavesTheOldFile) {
    ScratchDir dir;
    const std::string path = dir.file("kept.num");
    ASSERT_EQ(WriteNumFile(path, Sample()), Result::kOk);
    const std::string old = FileBytes(path);
    Num big = RandomValue(3 * kNumFileBlockLimbs, false, 1);
    NumFileView view;
    view.numerator = &big.v;
    QuitAtPoll quit(2);
    EXPECT_EQ(WriteNumFile(path, view, &quit), Result::kStopped);
    EXPECT_EQ(quit.polls(), 2);
    EXPECT_EQ(FileBytes(path), old);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path),
                            std::filesystem::directory_iterator()),
              1);

    ASSERT_EQ(WriteNumFile(path, view, nullptr), Result::kOk);
    NumFile out;
    QuitAtPoll readQuit(1);
    EXPECT_EQ(ReadNumFile(path, &out, kMaxNumFileBytes, &readQuit), Result::kStopped);
    EXPECT_TRUE(out.numerator.limbs.empty());

    Num small = RandomValue(kNumFileBlockLimbs, false, 2);
    view.numerator = &small.v;
    QuitAtPoll never(1);
    EXPECT_EQ(WriteNumFile(path, view, &never), Result::kOk);
    EXPECT_EQ(ReadNumFile(path, &out, kMaxNumFileBytes, &never), Result::kOk);
    EXPECT_EQ(never.polls(), 0);
}
