// Modular powers on Montgomery words (64-bit or 52-bit vector products)
// against GMP, and against the bit-by-bit loop where the two must meet:
// signs, moduli with an unnormalised top limb, exponents long enough for the
// base-16 route, bases small enough for the linear product, stops.
#include <gtest/gtest.h>

#include "fast_support.h"

using namespace fasttest;

namespace {

// base^e mod m as ModPow answers it for |e| >= 2: the residue of the base's
// power in 0 … |m| - 1 whatever the signs.
std::string GmpPower(const BigInt* base, const BigInt* e, const BigInt* m) {
    return GmpPowMod(Gmp(base), abs(Gmp(e)), abs(Gmp(m))).get_str();
}

// The parameter is the modulus size from which the long kernel takes over
// (2000 keeps these moduli on words, 0 sends every one to the long kernel),
// and the odd part's words from which the words take the vector products (1:
// all of them where the processor has them, a million: none).
class FastModPowKernels : public ::testing::TestWithParam<std::pair<int32_t, int32_t>> {
protected:
    FastModPowKernels() : scope_(WithLimits(GetParam())) {}
    static FastThresholds WithLimits(std::pair<int32_t, int32_t> limits) {
        FastThresholds t = gFastThresholds;
        t.powMontgomery = limits.first;
        t.powVector = limits.second;
        return t;
    }
    ThresholdScope scope_;
};

// A random number of the given bits (top bit set) and shape.
mpz_class RandomBits(size_t bits, int shape) {
    if (shape == 1) return (mpz_class(1) << bits) - 1;        // all ones
    if (shape == 2) return (mpz_class(1) << (bits - 1)) + 1;  // one, zeros, one
    mpz_class v = 1;
    for (size_t i = 1; i < bits; ++i) v = 2 * v + (Rng()() & 1);
    return v;
}

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
    // Powers of 3 modulo 3^k (1, 4, 15 and 50 words), some of them 0: the
    // Montgomery products meet residues equal to m.
    for (const unsigned long k : {40ul, 130ul, 600ul, 2000ul}) {
        mpz_class m, b;
        mpz_ui_pow_ui(m.get_mpz_t(), 3, k);
        mpz_ui_pow_ui(b.get_mpz_t(), 3, k / 4);
        for (const mpz_class& base3 : {mpz_class(3), mpz_class(2 * b)}) {
            for (const unsigned long power : {3ul, 4ul, k - 1, k}) {
                Num mm, bb, ee, rr;
                FromDecimal(mm.Out(), m.get_str());
                FromDecimal(bb.Out(), base3.get_str());
                FromDecimal(ee.Out(), std::to_string(power));
                ASSERT_EQ(ModPow(&ctx, &bb.v, &ee.v, &rr.v, &mm.v), Result::kOk);
                EXPECT_EQ(ToDecimal(&rr.v), GmpPowMod(base3, power, m).get_str())
                    << k << " " << power;
            }
        }
    }
}

// Odd parts of 1 … 200 words, at the edges of the vector kernel's sizes (K
// vectors of eight 52-bit digits hold 416 K − 2 bits) and of a top word
// holding one bit, with powers of two beside; bases below and at the
// limit of the linear product (2^32), and full-size ones.
TEST_P(FastModPowKernels, WordSizesAndSmallBasesMatchGmp) {
    CalcContext ctx;
    const size_t oddBits[] = {2,   63,   64,   65,   129,  300,   414,   415,  830,
                              831, 3322, 3327, 6654, 6655, 12800, 16638, 16639};
    if (GetParam().first == 0) return;  // the long kernel has its own tests
    for (const size_t bits : oddBits) {
        for (int shape : {0, 1, 2}) {
            for (const size_t twos : {0, 1, 64, 200}) {
                const bool wide = bits > 3400;  // fewer cases, to keep it short
                if (wide && (shape != 0 || twos > 1)) continue;
                const mpz_class m = (RandomBits(bits, shape) | 1) << twos;
                const mpz_class e = RandomBits(wide ? 40 : 70 + Rng()() % 60, 0);
                std::vector<mpz_class> bases = {3, 0xFFFFFFFFu, m - 1,
                                                RandomBits(bits + twos + 5, 0)};
                if (!wide) {
                    const mpz_class more[] = {0, 1, 2, mpz_class(1) << 32,
                                              RandomBits(1 + Rng()() % 32, 0)};
                    bases.insert(bases.end(), std::begin(more), std::end(more));
                }
                for (const mpz_class& b : bases) {
                    Num base, exponent, modulus, r;
                    FromDecimal(base.Out(), b.get_str());
                    FromDecimal(exponent.Out(), e.get_str());
                    FromDecimal(modulus.Out(), m.get_str());
                    ASSERT_EQ(ModPow(&ctx, &base.v, &exponent.v, &r.v, &modulus.v), Result::kOk);
                    EXPECT_EQ(ToDecimal(&r.v), GmpPowMod(b, e, m).get_str())
                        << bits << " bits, shape " << shape << ", 2^" << twos << ", base "
                        << b.get_str();
                }
            }
        }
    }
}

// A stop at any poll, with a small base and a large one; the modulus is odd
// so that the stop must come from the Montgomery products.
TEST_P(FastModPowKernels, StopsAtAnyPoll) {
    FastThresholds t = gFastThresholds;
    t.pollWork = 1 << 14;
    t.nttParallel = 0;
    ThresholdScope scope(t);
    Num m, e, big, small("3");
    RandomBig(&m.v, 250, false);
    m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] | 1);
    RandomBig(&e.v, 60, false);
    RandomBig(&big.v, 240, false);
    for (const Num* base : {&small, &big}) {
        ExpectStopsAtEveryPoll(
            [&](CalcContext* c, BigInt* r) { return ModPow(c, &base->v, &e.v, r, &m.v); });
    }
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(WordsAndTransforms, FastModPowKernels,
                         ::testing::Values(std::make_pair(2000, 1), std::make_pair(2000, 1000000),
                                           std::make_pair(0, 1)));
