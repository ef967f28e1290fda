// Modular powers on Montgomery words against GMP, and against the bit-by-bit
// loop where the two must meet: signs, moduli with an unnormalised top limb,
// exponents long enough for the base-16 route.
#include <gtest/gtest.h>

#include "fast_support.h"

using namespace fasttest;

namespace {

// base^e mod m as ModPow answers it for |e| >= 2: the residue of the base's
// power in 0 … |m| - 1 whatever the signs.
std::string GmpPower(const BigInt* base, const BigInt* e, const BigInt* m) {
    mpz_t b, x, n, r;
    mpz_inits(b, x, n, r, nullptr);
    ToMpz(b, base);
    ToMpz(x, e);
    ToMpz(n, m);
    mpz_abs(x, x);
    mpz_abs(n, n);
    mpz_powm(r, b, x, n);
    const std::string s = MpzDecimal(r);
    mpz_clears(b, x, n, r, nullptr);
    return s;
}

// The parameter is the modulus size from which the long kernel takes over:
// 2000 keeps these moduli on words, 0 sends every one to the long kernel.
class FastModPowKernels : public ::testing::TestWithParam<int32_t> {
protected:
    FastModPowKernels() : scope_(WithLimit(GetParam())) {}
    static FastThresholds WithLimit(int32_t limit) {
        FastThresholds t = gFastThresholds;
        t.powMontgomery = limit;
        return t;
    }
    ThresholdScope scope_;
};

// Odd moduli, and even ones split into a power of two and an odd part.
TEST_P(FastModPowKernels, ModuliOfEverySizeAndParityMatchGmp) {
    CalcContext ctx;
    for (int32_t mLimbs : {1, 4, 5, 17, 33, 250, 600}) {
      for (int parity : {1, 0, 2}) {
        for (int32_t eLimbs : {1, 3, 40, 1200}) {
            if (mLimbs * eLimbs > 60000) continue;
            Big m, base, e, r;
            RandomBig(&m, mLimbs);
            // Odd, even, or a multiple of a high power of two (times 3).
            if (parity == 1) m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] | 1);
            if (parity == 0) m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] & ~1);
            if (parity == 2) {
                Big two, power, three;
                BigFromInt(&two, 2);
                BigFromInt(&three, 3);
                ASSERT_EQ(BigPowInt(&ctx, &two.v, 32 * mLimbs + 5, &power.v), 0);
                BigFree(&m.v);
                ASSERT_EQ(BigMul(&ctx, &m.v, &power.v, &three.v), 0);
            }
            RandomBig(&base, 1 + static_cast<int32_t>(Rng()() % (2 * mLimbs)));
            RandomBig(&e, eLimbs, false);
            if (BigIsZero(&e) || (e.v.top == 0 && e.v.limbs[0] < 2)) continue;
            ASSERT_EQ(ModPow(&ctx, &base, &e, &r, &m), 0);
            EXPECT_EQ(ToDecimal(&r), GmpPower(&base, &e, &m)) << mLimbs << " " << eLimbs << " " << parity;
        }
      }
    }
}

// Moduli of all-one words and bases just below them: every carry of the
// squaring and of its reduction runs to the top.
TEST(FastModPow, AllOnesModuliCarryThroughEveryWord) {
    CalcContext ctx;
    mpz_t z;
    mpz_init(z);
    for (unsigned words : {1u, 2u, 3u, 7u, 20u}) {
        for (unsigned below : {1u, 2u}) {
            Big m, base, e, r;
            mpz_ui_pow_ui(z, 2, 64 * words);
            mpz_sub_ui(z, z, 1);
            FromDecimal(&m, MpzDecimal(z));
            mpz_sub_ui(z, z, below);
            FromDecimal(&base, MpzDecimal(z));
            RandomBig(&e, 40, false);
            ASSERT_EQ(ModPow(&ctx, &base, &e, &r, &m), 0);
            EXPECT_EQ(ToDecimal(&r), GmpPower(&base, &e, &m)) << words << " words, m - " << below;
        }
    }
    mpz_clear(z);
}

// Edge moduli and bases against GMP.
TEST_P(FastModPowKernels, EdgeModuliAndBasesMatchGmp) {
    CalcContext ctx;
    // Around one and two words, a top limb of 10000 (99999999 + 1 = 10^8 + 1
    // after the increment below), moduli 1 and -1, bases that are multiples.
    const char* moduli[] = {"1", "-1", "3", "2", "-10", "18446744073709551616", "36893488147419103232",
                            "1000000000000000000000000", "55340232221128654848",
                            "18446744073709551615", "18446744073709551617",
                            "340282366920938463463374607431768211457", "-999999999999999999999"};
    const char* bases[] = {"0", "2", "-2", "18446744073709551617", "-999999999999999999999",
                           "123456789012345678901234567890123456789012345678901"};
    for (const char* ms : moduli) {
        for (const char* bs : bases) {
            for (const char* es : {"2", "3", "65537", "-5", "1000000000000000000000000000000"}) {
                Big m, base, e, r;
                FromDecimal(&m, ms);
                FromDecimal(&base, bs);
                FromDecimal(&e, es);
                const bool negative = ms[0] == '-' || bs[0] == '-';
                if (es[0] == '-' && !negative) continue;  // the inverse's own loops
                const int code = ModPow(&ctx, &base, &e, &r, &m);
                if (es[0] == '-') {
                    EXPECT_EQ(code, 6);  // through the inverse, which refuses negatives
                    continue;
                }
                ASSERT_EQ(code, 0) << bs << " ^ " << es << " mod " << ms;
                EXPECT_EQ(ToDecimal(&r), GmpPower(&base, &e, &m)) << bs << " ^ " << es << " mod " << ms;
            }
        }
    }
    Big top, one, sum, base, e, r;
    FromDecimal(&top, "99999999");
    FromDecimal(&one, "2");
    BigAdd(&sum, &top, &one);  // limbs 1, 10000: 100000001, odd
    ASSERT_EQ(sum.v.limbs[sum.v.top], 10000);
    FromDecimal(&base, "7");
    FromDecimal(&e, "123456789");
    ASSERT_EQ(ModPow(&ctx, &base, &e, &r, &sum), 0);
    EXPECT_EQ(ToDecimal(&r), GmpPower(&base, &e, &sum));
}


TEST_P(FastModPowKernels, QStopsItWithResultOne) {
    Big m, base, e, r;
    RandomBig(&m, 400, false);
    m.v.limbs[0] = 1;
    RandomBig(&base, 400, false);
    RandomBig(&e, 3000, false);
    for (long stopAt : {1L, 3L}) {
        ScriptedContext ctx(stopAt);
        EXPECT_EQ(ModPow(&ctx, &base, &e, &r, &m), -1);
        EXPECT_EQ(ToDecimal(&r), "1");
        EXPECT_EQ(ctx.polls(), stopAt);
        BigFree(&r.v);
    }
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(WordsAndTransforms, FastModPowKernels, ::testing::Values(2000, 0));
