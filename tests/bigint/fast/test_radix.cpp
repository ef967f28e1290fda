// Base conversion against the digit-at-a-time kernels and GMP: divide and
// conquer over powers of the base in every base, and bases 2, 4, 8 and 16
// out through binary words (whose products meet their worst coefficients in
// the powers of two less one).
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

#include "bigint/binary_rows.h"
#include "bigint/binary_words.h"
#include "bigint/dispatch.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

// Every power-of-two base against GMP, and against the reference kernel
// when it is cheap enough.
void CheckDigits(const BigInt* v, bool withSchool, const std::string& what) {
    const mpz_class z = Gmp(v);
    CalcContext ctx;
    for (int base : {2, 4, 8, 16}) {
        std::string fast = "unset", school;
        ASSERT_EQ(BigToRadixDispatch(&ctx, v, base, &fast), Result::kOk) << what;
        EXPECT_EQ(fast, z == 0 ? "" : z.get_str(-base)) << what << ", base " << base;
        if (!withSchool) continue;
        ASSERT_EQ(BigToRadixSchool(&ctx, v, base, &school), Result::kOk);
        EXPECT_EQ(fast, school) << what << ", base " << base;
    }
}

// Leaves of 1, 2 and 3 limbs (powers of one word and of two), transforms
// from one word on, the powers made on the helper thread; leaves of 2 also
// with each power squared from the kept transform of the one before; then
// the shipped values.
std::vector<FastThresholds> ThresholdSets() {
    std::vector<FastThresholds> sets;
    for (int32_t leaf : {1, 2, 3, -2}) {
        FastThresholds t = FastThresholds::Lowered();
        if (leaf < 0) t.radixBinaryParallel = 0;
        leaf = std::abs(leaf);
        t.radixBinaryLeaf = leaf;
        t.radixBinaryLeafVector = leaf;
        t.binaryNtt = leaf == 3 ? 4 : 1;
        t.binaryNtt64 = leaf == 2 ? 1 : 8;
        sets.push_back(t);
    }
    sets.push_back(FastThresholds());
    return sets;
}

std::vector<unsigned char> RandomDigits(int32_t n, int base) {
    std::vector<unsigned char> d(n);
    for (auto& c : d) c = static_cast<unsigned char>(Rng()() % base);
    return d;
}

}  // namespace

TEST(FastRadix, BothDirectionsAgreeWithDigitAtATimeInEveryBase) {
    ThresholdScope scope(FastThresholds::Lowered());
    CalcContext ctx;
    for (int base = 2; base <= 16; ++base) {
        for (int32_t n : {1, 7, 8, 9, 31, 64, 100, 257}) {
            std::vector<unsigned char> d = RandomDigits(n, base);
            if (n > 3) d[0] = d[1] = 0;  // leading zeros
            Num a, b;
            ASSERT_EQ(RadixToBigSchool(&ctx, d.data(), n, base, &a.v), Result::kOk);
            ASSERT_EQ(RadixToBigDispatch(&ctx, d.data(), n, base, &b.v), Result::kOk);
            ASSERT_EQ(ToDecimal(&b.v), ToDecimal(&a.v))
                << "base " << base << ", " << n << " digits";
            std::string s1, s2;
            ASSERT_EQ(BigToRadixSchool(&ctx, &a.v, base, &s1), Result::kOk);
            ASSERT_EQ(BigToRadixDispatch(&ctx, &a.v, base, &s2), Result::kOk);
            ASSERT_EQ(s2, s1) << "base " << base << ", " << n << " digits";
        }
    }
}

TEST(FastRadixBinary, ShiftedSumCarriesPastTheShiftedTop) {
    mpz_class x, y;
    for (int64_t shift : {0, 1, 31, 32, 45, 64}) {
        std::vector<uint32_t> a(14, 0), b(3, 0xFFFFFFFFu);
        std::fill(a.begin(), a.begin() + 9, 0xFFFFFFFFu);
        mpz_import(x.get_mpz_t(), a.size(), -1, 4, 0, 0, a.data());
        mpz_import(y.get_mpz_t(), b.size(), -1, 4, 0, 0, b.data());
        x += y << static_cast<mp_bitcnt_t>(shift);
        WordsAddShifted(a.data(), int32_t(a.size()), b.data(), int32_t(b.size()), shift);
        std::vector<uint32_t> want(a.size(), 0);
        mpz_export(want.data(), nullptr, -1, 4, 0, 0, x.get_mpz_t());
        ASSERT_EQ(a, want) << "shift " << shift;
    }
}

TEST(FastRadixBinary, RandomValuesAroundEveryLevelOfTheTree) {
    // The 64-bit primes' vector butterflies (where the processor has them)
    // and the plain ones, which the products leave to the 16-bit transform;
    // with them the schoolbook rows on mulx and in C++.
    for (const FastThresholds& t : ThresholdSets()) {
        for (bool portable : {false, true}) {
            UsePortableNtt64(portable);
            UsePortableRows(portable);
            ThresholdScope scope(t);
            const int32_t leaf = BinaryLeafLimbs();
            std::vector<int32_t> sizes = {1, 2, 700};
            for (int32_t blocks : {1, 2, 3, 4, 7, 8, 9, 16, 33, 64})
                for (int32_t d : {-1, 0, 1}) sizes.push_back(blocks * leaf + d);
            for (int32_t n : sizes) {
                if (n < 1) continue;
                for (Shape shape :
                     {Shape::Random, Shape::RunsOfZeroAndNine, Shape::TopTenThousand}) {
                    Num v;
                    SetLimbs(&v.v, Operand(n, shape), false);
                    CheckDigits(&v.v, n <= 60,
                                std::to_string(n) + " limbs, leaf " + std::to_string(leaf));
                }
            }
        }
    }
    UsePortableNtt64(false);
    UsePortableRows(false);
}

TEST(FastRadixBinary, PowersOfTenAndOfTwoTheirNeighboursBelowAndZero) {
    const std::vector<unsigned long> tens = {1, 3, 4, 5, 12, 179, 180, 181, 720, 4001};
    const std::vector<unsigned long> twos = {1, 31, 32, 33, 1023, 1024, 1025, 8192};
    for (const FastThresholds& t : ThresholdSets()) {
        ThresholdScope scope(t);
        for (unsigned long b : {10ul, 2ul}) {
            for (unsigned long k : b == 10 ? tens : twos) {
                mpz_class z;
                mpz_ui_pow_ui(z.get_mpz_t(), b, k);
                for (int below : {0, 1}) {
                    z -= below;
                    Num v(z.get_str());
                    CheckDigits(
                        &v.v, z.get_str().size() < 200,
                        std::to_string(b) + "^" + std::to_string(k) + (below ? " - 1" : ""));
                }
            }
        }
        // Zero, also as a record of several zero limbs (which the reference
        // kernel, dividing until the record is a one-limb zero, writes as "0").
        for (int32_t n : {1, 9}) {
            Num zero;
            SetLimbs(&zero.v, std::vector<Limb>(n, 0), false);
            CheckDigits(&zero.v, n == 1, "zero of " + std::to_string(n) + " limbs");
        }
    }
}

TEST(FastRadixBinary, QStopsEveryStageAndPollsNoMore) {
    Num v, longer;
    RandomBig(&v.v, 3000, false);
    RandomBig(&longer.v, 30000, false);
    std::string text;
    // Shipped thresholds: through binary words, and by divide and conquer.
    for (int base : {16, 7}) {
        QuitAtPoll first(1);
        EXPECT_EQ(BigToRadixDispatch(&first, &longer.v, base, &text), Result::kStopped) << base;
    }
    // Counted polls must repeat: one thread (the wait for a helper thread
    // polls by time), and the transform's root tables made beforehand.
    FastThresholds t = FastThresholds::Lowered();
    t.nttParallel = 0;
    t.radixBinaryParallel = 0;
    ThresholdScope scope(t);
    // Base 8 takes its digits bit by bit, base 16 a byte at a time.
    for (int base : {8, 16}) {
        QuitAtPoll warmUp, counting;
        ASSERT_EQ(BigToRadixDispatch(&warmUp, &v.v, base, &text), Result::kOk);
        ASSERT_EQ(BigToRadixDispatch(&counting, &v.v, base, &text), Result::kOk);
        ASSERT_GE(counting.polls(), 10);
        // First poll (leaves), the middle (products), the last (digits).
        for (long stopAt : {1L, counting.polls() / 2, counting.polls()}) {
            QuitAtPoll stopping(stopAt);
            EXPECT_EQ(BigToRadixDispatch(&stopping, &v.v, base, &text), Result::kStopped)
                << "base " << base << ", stop at poll " << stopAt;
            EXPECT_EQ(stopping.polls(), stopAt) << "no poll after the stop";
        }
    }
}

// Powers of the base, whose leaves divide without remainder (where a
// quotient estimated in floating point lands just below the integer), their
// neighbours below, and multiples of the leaf's group, in bases that are no
// power of two, against GMP.
TEST(FastRadix, PowersOfTheBaseAndTheirNeighboursOutInOtherBases) {
    for (const FastThresholds& t : {FastThresholds::Lowered(), FastThresholds()}) {
        ThresholdScope scope(t);
        CalcContext ctx;
        for (int base : {3, 5, 7, 12, 15}) {
            for (unsigned long k : {1ul, 17ul, 18ul, 399ul, 400ul, 801ul, 3200ul}) {
                mpz_class z;
                mpz_ui_pow_ui(z.get_mpz_t(), static_cast<unsigned long>(base), k);
                for (int variant = 0; variant < 3; ++variant) {
                    const mpz_class x = variant == 0   ? z
                                        : variant == 1 ? mpz_class(z - 1)
                                                       : mpz_class(z * (base - 1));
                    std::string want = x.get_str(base), got;
                    for (char& c : want) c = static_cast<char>(std::toupper(c));
                    Num v(x.get_str());
                    ASSERT_EQ(BigToRadixDispatch(&ctx, &v.v, base, &got), Result::kOk);
                    EXPECT_EQ(got, want)
                        << "base " << base << ", " << base << "^" << k << " variant " << variant;
                }
            }
        }
    }
}

// Texts longer than the chunks that the first pass takes whole when they are
// plain digits: digits only, letters in one chunk (read one by one), and a
// digit too large for the base far on, which must leave the text as the
// character-by-character pass leaves it.
TEST(FastRadix, LongTextsChunkByChunk) {
    CalcContext ctx;
    const int32_t n = 150000;  // two full chunks of 2^16 and a part
    for (int from : {8, 10, 16}) {
        std::string text(size_t(n), '0');
        for (char& c : text) c = static_cast<char>('0' + Rng()() % unsigned(std::min(from, 10)));
        text[0] = '1';
        if (from == 16) text[70000] = 'a';
        const mpz_class z(text, from);
        std::string got = text;
        ASSERT_EQ(ConvertBase(&ctx, from, 16, &got), Result::kOk) << from;
        std::string want = z.get_str(16);
        for (char& c : want) c = static_cast<char>(std::toupper(c));
        EXPECT_EQ(got, want) << "from base " << from;
    }
    std::string text(size_t(n), '7');
    const size_t bad = 140000;
    text[bad] = '9';
    std::string want = text;
    for (size_t j = 0; j < bad; ++j) want[j] = static_cast<char>(want[j] - '0' + 10);
    EXPECT_EQ(ConvertBase(&ctx, 8, 16, &text), Result::kCannotUnderstand);
    EXPECT_EQ(text, want);
}
