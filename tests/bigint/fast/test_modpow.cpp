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
    return GmpPowMod(Gmp(base), abs(Gmp(e)), abs(Gmp(m))).get_str();
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
                Num m, base, e, r;
                RandomBig(&m.v, mLimbs);
                // Odd, even, or a multiple of a high power of two (times 3).
                if (parity == 1) m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] | 1);
                if (parity == 0) m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] & ~1);
                if (parity == 2)
                    FromDecimal(m.Out(), mpz_class(mpz_class(3) << (32 * mLimbs + 5)).get_str());
                RandomBig(&base.v, 1 + static_cast<int32_t>(Rng()() % (2 * mLimbs)));
                RandomBig(&e.v, eLimbs, false);
                if (BigIsZero(&e.v) || (e.v.top == 0 && e.v.limbs[0] < 2)) continue;
                ASSERT_EQ(ModPow(&ctx, &base.v, &e.v, &r.v, &m.v), Result::kOk);
                EXPECT_EQ(ToDecimal(&r.v), GmpPower(&base.v, &e.v, &m.v))
                    << mLimbs << " " << eLimbs << " " << parity;
            }
        }
    }
}

// Edge moduli and bases against GMP.
TEST_P(FastModPowKernels, EdgeModuliAndBasesMatchGmp) {
    CalcContext ctx;
    // Around one and two words, a top limb of 10000 (99999999 + 1 = 10^8 + 1
    // after the increment below), moduli 1 and -1, bases that are multiples.
    // clang-format off
    const char* moduli[] = {"1", "-1", "3", "2", "-10", "18446744073709551616",
        "36893488147419103232", "1000000000000000000000000", "55340232221128654848",
        "18446744073709551615", "18446744073709551617",
        "340282366920938463463374607431768211457", "-999999999999999999999"};
    const char* bases[] = {"0", "2", "-2", "18446744073709551617", "-999999999999999999999",
                           "123456789012345678901234567890123456789012345678901"};
    // clang-format on
    for (const char* ms : moduli) {
        for (const char* bs : bases) {
            for (const char* es : {"2", "3", "65537", "-5", "1000000000000000000000000000000"}) {
                Num m(ms), base(bs), e(es), r;
                const bool negative = ms[0] == '-' || bs[0] == '-';
                if (es[0] == '-' && !negative) continue;  // the inverse's own loops
                const Result code = ModPow(&ctx, &base.v, &e.v, &r.v, &m.v);
                if (es[0] == '-') {  // through the inverse, which refuses negatives
                    EXPECT_EQ(code, Result::kInconsistent);
                    continue;
                }
                ASSERT_EQ(code, Result::kOk) << bs << " ^ " << es << " mod " << ms;
                EXPECT_EQ(ToDecimal(&r.v), GmpPower(&base.v, &e.v, &m.v))
                    << bs << " ^ " << es << " mod " << ms;
            }
        }
    }
    Num top("99999999"), one("2"), sum, base("7"), e("123456789"), r;
    ASSERT_EQ(BigAdd(&sum.v, &top.v, &one.v), Result::kOk);  // limbs 1, 10000: 100000001, odd
    ASSERT_EQ(sum.v.limbs[sum.v.top], 10000);
    ASSERT_EQ(ModPow(&ctx, &base.v, &e.v, &r.v, &sum.v), Result::kOk);
    EXPECT_EQ(ToDecimal(&r.v), GmpPower(&base.v, &e.v, &sum.v));
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(WordsAndTransforms, FastModPowKernels, ::testing::Values(2000, 0));
