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
}

TEST(NumFileLayout, IntegerHasNoDenominatorAndEmptyNotebookIsOneZeroByte) {
    NumFile f = Sample();
    f.hasDenominator = true;
    f.denominator = Limbs({1});   // a denominator of one is not written
    f.notebook.clear();
    const std::string bytes = EncodeNumFile(f);
    EXPECT_EQ(Hex(bytes.substr(0, 16)), "67000000" "01000000" "01" "2e16d204" "0100" "00");
    EXPECT_EQ(bytes.size(), 16u + 64u);
}

TEST(NumFileRoundTrip, ValuesNotebookAndFontComeBack) {
    NumFile zero;
    zero.label = 26;
    zero.numerator = Limbs({0});
    NumFile big = Sample();
    big.numerator.limbs.assign(5000, 9999);   // 20000 nines
    big.denominator = Limbs({0, 0, 1});       // 10^8
    big.notebook = std::string(1000, 'x') + "\n2^100";
    for (const NumFile& in : {Sample(), zero, big}) {
        const NumFile out = Decoded(EncodeNumFile(in));
        EXPECT_EQ(out.label, in.label);
        EXPECT_EQ(out.version, 1);
        ExpectSameValue(out.numerator, in.numerator);
        EXPECT_EQ(out.hasDenominator, in.hasDenominator);
        if (in.hasDenominator) ExpectSameValue(out.denominator, in.denominator);
        else ExpectSameValue(out.denominator, Limbs({1}));
        EXPECT_EQ(out.notebook, in.notebook);
        ASSERT_TRUE(out.hasFont);
        EXPECT_EQ(out.font.height, in.font.height);
        EXPECT_EQ(out.font.weight, in.font.weight);
        EXPECT_EQ(out.font.charSet, in.font.charSet);
        EXPECT_EQ(out.font.pitchAndFamily, in.font.pitchAndFamily);
        EXPECT_STREQ(out.font.faceName, in.font.faceName);
        EXPECT_EQ(out.fontExtra, in.fontExtra);
    }
}

TEST(NumFileRoundTrip, NotebookLongerThanTheLengthFieldIsCut) {
    NumFile f = Sample();
    f.notebook = std::string(64001, 'n');
    const NumFile out = Decoded(EncodeNumFile(f));
    EXPECT_EQ(out.notebook.size(), size_t(kNumFileNotebookChars));
}

TEST(NumFileRoundTrip, WholeFilesAndTheirFailures) {
    ScratchDir dir("numfile");
    const std::string path = dir.file("number3.num");
    ASSERT_EQ(WriteNumFile(path, Sample()), 0);
    NumFile out;
    ASSERT_EQ(ReadNumFile(path, &out), 0);
    EXPECT_EQ(out.notebook, "hi");
    EXPECT_EQ(ReadNumFile(dir.file("missing.num"), &out), 11);
    EXPECT_EQ(ReadNumFile(dir.path(), &out), 11);   // a folder
    EXPECT_EQ(WriteNumFile(dir.file("no/such/folder.num"), Sample()), 12);
}

TEST(NumFileRead, OldLayoutHasNoFont) {
    ByteWriter w;
    w.i32(3);   // label C alone
    w.i32(0);
    w.u8(0);
    w.i16(42);
    w.i16(1);
    w.u8(0);
    NumFile out = Decoded(w.data());
    EXPECT_EQ(out.label, 3);
    EXPECT_EQ(out.version, 0);
    EXPECT_FALSE(out.hasFont);
    ExpectSameValue(out.numerator, Limbs({42}));
    EXPECT_EQ(out.notebook, "");

    ByteWriter f;   // an old fraction: header -3
    f.i32(-3);
    for (Limb l : {Limb(5), Limb(6)}) {
        f.i32(0);
        f.u8(0);
        f.i16(l);
    }
    f.i16(0);   // a zero length reads as an empty notebook
    out = Decoded(f.data());
    ExpectSameValue(out.denominator, Limbs({6}));
    EXPECT_FALSE(out.hasFont);
}

TEST(NumFileRead, LabelGoesToFirstFreeWhenTakenOrInvalid) {
    bool used[26] = {};
    EXPECT_EQ(LabelForOpenedFile(3, used), 3);
    used[2] = true;
    EXPECT_EQ(LabelForOpenedFile(3, used), 1);
    used[0] = true;
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
        EXPECT_EQ(DecodeNumFile(part.data(), part.size(), &out), 11) << "length " << n;
    }
}

TEST(NumFileRead, ImpossibleFieldsAreRefused) {
    struct Case { const char* what; int32_t top; Limb limb; bool zeroDen; };
    const Case cases[] = {{"top past the data", INT32_MAX, 1, false},
                          {"negative top", -2, 1, false},
                          {"limb above 9999", 0, 10000, false},
                          {"negative limb", 0, -1, false},
                          {"zero denominator", 0, 1, true}};
    for (const Case& c : cases) {
        ByteWriter w;
        w.i32(-101);
        w.i32(c.top);
        w.u8(0);
        w.i16(c.limb);
        w.i32(0);
        w.u8(0);
        w.i16(c.zeroDen ? 0 : 1);
        w.i16(1);
        w.u8(0);
        const std::string pad(64, '\0');
        w.bytes(pad.data(), pad.size());
        Decoded(w.data(), 11);
        SCOPED_TRACE(c.what);
    }
    ByteWriter m;   // the most negative header must not overflow
    m.i32(INT32_MIN);
    NumFile out;
    EXPECT_EQ(DecodeNumFile(m.data().data(), m.data().size(), &out), 11);
}

TEST(NumFileRead, LeadingZeroLimbsAndUnterminatedNotebookAreTidied) {
    ByteWriter w;
    w.i32(105);
    w.i32(2);
    w.u8(1);
    for (Limb l : {Limb(7), Limb(0), Limb(0)}) w.i16(l);
    w.i16(4);
    w.bytes("abcd", 4);   // no zero byte inside the stored length
    const std::string pad(64, '\0');
    w.bytes(pad.data(), pad.size());
    const NumFile out = Decoded(w.data());
    ExpectSameValue(out.numerator, Limbs({7}, true));
    EXPECT_EQ(out.notebook, "abcd");
}

// Random damage must give either a sound number or code 11, never a crash or
// a read outside the buffer. Replay with ORDIX_SEED=<seed>.
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
        const int code = DecodeNumFile(bytes.data(), bytes.size(), &out);
        ASSERT_TRUE(code == 0 || code == 11) << "seed " << seed << " round " << round;
        if (code != 0) continue;
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
