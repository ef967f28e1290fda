// Bases 2, 4, 8 and 16 through binary words, and the word products under
// them, against the digit-at-a-time kernel and GMP.
#include <gtest/gtest.h>

#include <cctype>

#include "bigint/binary_words.h"
#include "bigint/dispatch.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

std::string GmpDigits(const BigInt* v, int base) {
    mpz_t z;
    mpz_init(z);
    ToMpz(z, v);
    std::vector<char> buf(mpz_sizeinbase(z, base) + 2);
    mpz_get_str(buf.data(), base, z);
    mpz_clear(z);
    std::string s = buf.data();
    for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return s == "0" ? std::string() : s;
}

// Every power-of-two base against GMP, and against the reference kernel
// when it is cheap enough.
void CheckDigits(const BigInt* v, bool withSchool, const std::string& what) {
    CalcContext ctx;
    for (int base : {2, 4, 8, 16}) {
        std::string fast = "unset";
        ASSERT_EQ(BigToRadixDispatch(&ctx, v, base, &fast), 0) << what;
        ASSERT_EQ(fast, GmpDigits(v, base)) << what << ", base " << base;
        if (!withSchool) continue;
        std::string school;
        ASSERT_EQ(BigToRadixSchool(&ctx, v, base, &school), 0);
        ASSERT_EQ(fast, school) << what << ", base " << base;
    }
}

void SetFromMpz(BigInt* v, const mpz_t z) { FromDecimal(v, MpzDecimal(z)); }

// Leaves of 1, 2 and 3 limbs (powers of one word and of two), transforms
// from one word on; then the shipped values.
std::vector<FastThresholds> ThresholdSets() {
    std::vector<FastThresholds> sets;
    for (int32_t leaf : {1, 2, 3}) {
        FastThresholds t = FastThresholds::Lowered();
        t.radixBinaryLeaf = leaf;
        t.binaryNtt = leaf == 3 ? 4 : 1;
        sets.push_back(t);
    }
    sets.push_back(FastThresholds());
    return sets;
}

std::vector<uint32_t> Mul(const std::vector<uint32_t>& a, const std::vector<uint32_t>& b) {
    std::vector<uint32_t> p(a.size() + b.size(), 0xDEADBEEF);
    PollClock clk(nullptr);
    const bool square = &a == &b;
    EXPECT_EQ(WordsMul(clk, a.data(), int32_t(a.size()), square ? nullptr : b.data(),
                       int32_t(b.size()), p.data()),
              0);
    return p;
}

std::vector<uint32_t> GmpMul(const std::vector<uint32_t>& a, const std::vector<uint32_t>& b) {
    mpz_t x, y;
    mpz_inits(x, y, nullptr);
    mpz_import(x, a.size(), -1, 4, 0, 0, a.data());
    mpz_import(y, b.size(), -1, 4, 0, 0, b.data());
    mpz_mul(x, x, y);
    std::vector<uint32_t> p(a.size() + b.size(), 0);
    mpz_export(p.data(), nullptr, -1, 4, 0, 0, x);
    mpz_clears(x, y, nullptr);
    return p;
}

}  // namespace

TEST(FastRadixBinary, WordProductsMatchGmpOnBothSidesOfTheTransform) {
    const int32_t shipped = FastThresholds().binaryNtt;
    for (int32_t ntt : {1, 4, shipped}) {
        FastThresholds t = FastThresholds::Lowered();
        t.binaryNtt = ntt;
        ThresholdScope scope(t);
        for (int32_t la : {1, 3, 4, 5, 31, shipped - 1, shipped, shipped + 1, 2 * shipped + 3}) {
            for (int32_t lb : {1, 4, la / 2 + 1, la}) {
                // All-ones words give the largest coefficients and carries.
                for (bool ones : {false, true}) {
                    std::vector<uint32_t> a(la), b(lb);
                    for (auto& w : a) w = ones ? 0xFFFFFFFFu : uint32_t(Rng()());
                    for (auto& w : b) w = ones ? 0xFFFFFFFFu : uint32_t(Rng()());
                    ASSERT_EQ(Mul(a, b), GmpMul(a, b)) << la << " x " << lb << ", transform from " << ntt;
                    ASSERT_EQ(Mul(a, a), GmpMul(a, a)) << la << " squared, transform from " << ntt;
                }
            }
        }
    }
}

TEST(FastRadixBinary, ShiftedSumsCarryAcrossWordsAndAllOnes) {
    for (int64_t shift : {0, 1, 31, 32, 45, 64}) {
        for (bool ones : {false, true}) {
            // a below 2^(32·9), b below 2^(32·3): the sum fits 14 words.
            std::vector<uint32_t> a(14, 0), b(3);
            for (int i = 0; i < 9; ++i) a[i] = ones ? 0xFFFFFFFFu : uint32_t(Rng()());
            for (auto& w : b) w = ones ? 0xFFFFFFFFu : uint32_t(Rng()());
            mpz_t x, y;
            mpz_inits(x, y, nullptr);
            mpz_import(x, a.size(), -1, 4, 0, 0, a.data());
            mpz_import(y, b.size(), -1, 4, 0, 0, b.data());
            mpz_mul_2exp(y, y, shift);
            mpz_add(x, x, y);
            std::vector<uint32_t> want(a.size(), 0);
            mpz_export(want.data(), nullptr, -1, 4, 0, 0, x);
            mpz_clears(x, y, nullptr);
            WordsAddShifted(a.data(), int32_t(a.size()), b.data(), int32_t(b.size()), shift);
            ASSERT_EQ(a, want) << "shift " << shift;
        }
    }
}

TEST(FastRadixBinary, RandomValuesAroundEveryLevelOfTheTree) {
    for (const FastThresholds& t : ThresholdSets()) {
        ThresholdScope scope(t);
        const int32_t leaf = t.radixBinaryLeaf;
        const bool lowered = leaf < FastThresholds().radixBinaryLeaf;
        std::vector<int32_t> sizes = {1, 2};
        for (int32_t blocks : {1, 2, 3, 4, 7, 8, 9, 16, 33, 64})
            for (int32_t d : {-1, 0, 1}) sizes.push_back(blocks * leaf + d);
        if (lowered) sizes.push_back(700);
        for (int32_t n : sizes) {
            if (n < 1) continue;
            for (Shape shape : {Shape::Random, Shape::RunsOfZeroAndNine, Shape::TopTenThousand}) {
                Big v;
                SetLimbs(&v, Operand(n, shape), false);
                CheckDigits(&v, n <= 60, std::to_string(n) + " limbs, leaf " + std::to_string(leaf));
            }
        }
    }
}

TEST(FastRadixBinary, NinesPowersOfTenAndOfTwoAndZero) {
    for (const FastThresholds& t : ThresholdSets()) {
        ThresholdScope scope(t);
        mpz_t z;
        mpz_init(z);
        for (unsigned long k : {1ul, 3ul, 4ul, 5ul, 12ul, 179ul, 180ul, 181ul, 720ul, 4001ul}) {
            Big ten, nines;
            mpz_ui_pow_ui(z, 10, k);
            SetFromMpz(&ten, z);
            CheckDigits(&ten, k < 200, "10^" + std::to_string(k));
            mpz_sub_ui(z, z, 1);
            SetFromMpz(&nines, z);
            CheckDigits(&nines, k < 200, "10^" + std::to_string(k) + " - 1");
        }
        for (unsigned long k : {1ul, 31ul, 32ul, 33ul, 1023ul, 1024ul, 1025ul, 8192ul}) {
            Big two, below;
            mpz_ui_pow_ui(z, 2, k);
            SetFromMpz(&two, z);
            CheckDigits(&two, k < 700, "2^" + std::to_string(k));
            mpz_sub_ui(z, z, 1);
            SetFromMpz(&below, z);
            CheckDigits(&below, k < 700, "2^" + std::to_string(k) + " - 1");
        }
        mpz_clear(z);
        // Zero, also as a record of several zero limbs (which the reference
        // kernel, dividing until the record is a one-limb zero, writes as "0").
        for (int32_t n : {1, 9}) {
            Big zero;
            SetLimbs(&zero, std::vector<Limb>(n, 0), false);
            CheckDigits(&zero, n == 1, "zero of " + std::to_string(n) + " limbs");
        }
    }
}

TEST(FastRadixBinary, LongDecimalThroughBase16AndBack) {
    std::string dec(120000, '0');
    for (auto& c : dec) c = static_cast<char>('0' + Rng()() % 10);
    dec[0] = '9';
    Big v;
    FromDecimal(&v, dec);
    CalcContext ctx;
    std::string hex = dec;
    ASSERT_EQ(ConvertBase(&ctx, 10, 16, &hex), 0);
    EXPECT_EQ(hex, GmpDigits(&v, 16));
    std::string back = hex;
    ASSERT_EQ(ConvertBase(&ctx, 16, 10, &back), 0);
    EXPECT_EQ(back, dec);
}

TEST(FastRadixBinary, QStopsEveryStageAndPollsNoMore) {
    Big v;
    RandomBig(&v, 3000, false);
    std::string text;
    {
        Big longer;
        RandomBig(&longer, 30000, false);
        ScriptedContext stopping(1);
        EXPECT_EQ(BigToRadixDispatch(&stopping, &longer, 16, &text), -1) << "shipped thresholds";
    }
    ThresholdScope scope(FastThresholds::Lowered());
    ScriptedContext counting;
    ASSERT_EQ(BigToRadixDispatch(&counting, &v, 8, &text), 0);
    ASSERT_GE(counting.polls(), 10);
    // First poll (leaves), the middle (products), the last (digits).
    for (long stopAt : {1L, counting.polls() / 2, counting.polls()}) {
        ScriptedContext stopping(stopAt);
        EXPECT_EQ(BigToRadixDispatch(&stopping, &v, 8, &text), -1) << "stop at poll " << stopAt;
        EXPECT_EQ(stopping.polls(), stopAt) << "no poll after the stop";
    }
}
