#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>

#include "io/byte_io.h"
#include "io/num_file.h"
#include "io_test_util.h"

namespace {

NumLimbs Limbs(std::initializer_list<Limb> l, bool negative = false) {
    NumLimbs v;
    v.limbs = l;
    v.negative = negative;
    return v;
}

NumFile Sample() {
    NumFile f;
    f.label = 3;
    f.numerator = Limbs({5678, 1234}, true);   // -12345678
    f.hasDenominator = true;
    f.denominator = Limbs({7});
    f.notebook = "hi";
    f.font.height = -16;
    f.font.weight = 700;
    f.font.charSet = 2;
    f.font.pitchAndFamily = 0x31;
    SetFaceName(&f.font, "Courier New");
    f.fontExtra = 0xDEADBEEF;
    return f;
}

std::string Hex(const std::string& s) {
    std::string out;
    char buf[4];
    for (unsigned char c : s) {
        std::snprintf(buf, sizeof buf, "%02x", c);
        out += buf;
    }
    return out;
}

NumFile Decoded(const std::string& bytes, int expectCode = 0) {
    NumFile f;
    EXPECT_EQ(DecodeNumFile(bytes.data(), bytes.size(), &f), expectCode);
    return f;
}

// A value as the file holds it: top, sign byte, limbs.
void PutRaw(ByteWriter* w, int32_t top, uint8_t negative, std::initializer_list<Limb> limbs) {
    w->i32(top);
    w->u8(negative);
    for (Limb l : limbs) w->i16(l);
}

void ExpectSameValue(const NumLimbs& a, const NumLimbs& b) {
    EXPECT_EQ(a.limbs, b.limbs);
    EXPECT_EQ(a.negative, b.negative);
}

}  // namespace

TEST(NumFileLayout, FractionIsWrittenFieldByField) {
    const std::string bytes = EncodeNumFile(Sample());
    const std::string expectHead =
        "99ffffff"                // -103: label C, version 1, denominator follows
        "01000000" "01"           // numerator top 1, negative
        "2e16" "d204"             // 5678, 1234
        "00000000" "00" "0700"    // denominator 7
        "0300" "686900";          // notebook "hi" with its zero byte, length 3
    ASSERT_EQ(bytes.size(), expectHead.size() / 2 + 60 + 4);
    EXPECT_EQ(Hex(bytes.substr(0, expectHead.size() / 2)), expectHead);
    const std::string font = bytes.substr(expectHead.size() / 2);
    EXPECT_EQ(Hex(font.substr(0, 4)), "f0ffffff");               // height -16
    EXPECT_EQ(Hex(font.substr(16, 4)), "bc020000");              // weight 700
    EXPECT_EQ(Hex(font.substr(20, 8)), "0000000200000031");      // byte fields in order
    EXPECT_EQ(font.substr(28, 12), std::string("Courier New\0", 12));
    EXPECT_EQ(Hex(font.substr(60, 4)), "efbeadde");

    // A denominator of one is not written; an empty notebook is one zero byte.
    NumFile f = Sample();
    f.denominator = Limbs({1});
    f.notebook.clear();
    const std::string whole = EncodeNumFile(f);
    EXPECT_EQ(Hex(whole.substr(0, 16)), "67000000" "01000000" "01" "2e16d204" "0100" "00");
    EXPECT_EQ(whole.size(), 16u + 64u);
}

TEST(NumFileRoundTrip, ValuesNotebookAndFontComeBack) {
    NumFile zero;
    zero.label = 26;
    zero.numerator = Limbs({0});
    NumFile big = Sample();
    big.numerator.limbs.assign(5000, 9999);   // 20000 nines
    big.denominator = Limbs({0, 0, 1});       // 10^8
    big.notebook = std::string(1000, 'x') + "\n2^100";
    NumFile longNote = Sample();
    longNote.notebook = std::string(64001, 'n');   // cut to what the length field holds
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
    ScratchDir dir("numfile");
    const std::string path = dir.file("number3.num");
    ASSERT_EQ(WriteNumFile(path, Sample()), 0);
    NumFile out;
    ASSERT_EQ(ReadNumFile(path, &out), 0);
    EXPECT_EQ(out.notebook, "hi");
    EXPECT_EQ(ReadNumFile(dir.file("missing.num"), &out), Result::kCannotOpenFile);
    EXPECT_EQ(ReadNumFile(dir.path(), &out), Result::kCannotOpenFile);   // a folder
    EXPECT_EQ(WriteNumFile(dir.file("no/such/folder.num"), Sample()), Result::kCannotSaveFile);
}

TEST(NumFileRead, HandMadeFiles) {
    // Version 0: the header is the label alone and no font follows.
    ByteWriter old;
    old.i32(3);
    PutRaw(&old, 0, 0, {42});
    old.i16(1);
    old.u8(0);
    NumFile out = Decoded(old.data());
    EXPECT_EQ(out.label * 10 + out.version, 30);
    EXPECT_FALSE(out.hasFont);
    ExpectSameValue(out.numerator, Limbs({42}));
    EXPECT_EQ(out.notebook, "");
    ByteWriter oldFraction;   // header -3; a zero length reads as an empty notebook
    oldFraction.i32(-3);
    PutRaw(&oldFraction, 0, 0, {5});
    PutRaw(&oldFraction, 0, 0, {6});
    oldFraction.i16(0);
    ExpectSameValue(Decoded(oldFraction.data()).denominator, Limbs({6}));

    // Leading zero limbs are dropped; a notebook without its zero byte is
    // taken whole.
    ByteWriter tidy;
    tidy.i32(105);
    PutRaw(&tidy, 2, 1, {7, 0, 0});
    tidy.i16(4);
    tidy.bytes("abcd", 4);
    tidy.bytes(std::string(64, '\0').data(), 64);
    out = Decoded(tidy.data());
    ExpectSameValue(out.numerator, Limbs({7}, true));
    EXPECT_EQ(out.notebook, "abcd");

    struct Case { const char* what; int32_t top; Limb limb; Limb denominator; };
    const Case cases[] = {{"top past the data", INT32_MAX, 1, 1}, {"negative top", -2, 1, 1},
                          {"limb above 9999", 0, 10000, 1},       {"negative limb", 0, -1, 1},
                          {"zero denominator", 0, 1, 0}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ByteWriter w;
        w.i32(-101);
        PutRaw(&w, c.top, 0, {c.limb});
        PutRaw(&w, 0, 0, {c.denominator});
        w.i16(1);
        w.bytes(std::string(65, '\0').data(), 65);
        Decoded(w.data(), Result::kCannotOpenFile);
    }
    ByteWriter m;   // the most negative header must not overflow
    m.i32(INT32_MIN);
    Decoded(m.data(), Result::kCannotOpenFile);
}

TEST(NumFileRead, LabelGoesToFirstFreeWhenTakenOrInvalid) {
    bool used[26] = {};
    EXPECT_EQ(LabelForOpenedFile(3, used), 3);
    used[2] = used[0] = true;
    EXPECT_EQ(LabelForOpenedFile(3, used), 2);
    EXPECT_EQ(LabelForOpenedFile(0, used), 2);    // header 100: no label
    EXPECT_EQ(LabelForOpenedFile(27, used), 2);   // header 127
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
        EXPECT_EQ(DecodeNumFile(part.data(), part.size(), &out), Result::kCannotOpenFile) << "length " << n;
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
    EXPECT_GT(opened, 0);   // damage inside limbs and text still opens
}
