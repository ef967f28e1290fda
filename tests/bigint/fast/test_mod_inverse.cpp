// Modular inverses by the extended gcd against GMP: random pairs at sizes
// around every threshold, shared factors, the ends of the range, operands
// above the modulus, chosen quotient sequences; the answers kept from the
// long-division chain for zero and multiples; stops at any poll.
#include <gtest/gtest.h>

#include "fast_support.h"

using namespace fasttest;

namespace {

// ModInverse against mpz_invert, with 0 where there is no inverse.
void CheckInverse(const BigInt* a, const BigInt* m) {
    CalcContext ctx;
    Big r;
    ASSERT_EQ(ModInverse(&ctx, a, m, &r), 0) << a->top + 1 << " mod " << m->top + 1 << " limbs";
    mpz_t za, zm, zr;
    mpz_inits(za, zm, zr, nullptr);
    ToMpz(za, a);
    ToMpz(zm, m);
    if (!mpz_invert(zr, za, zm)) mpz_set_ui(zr, 0);
    EXPECT_EQ(ToDecimal(&r), MpzDecimal(zr)) << a->top + 1 << " mod " << m->top + 1 << " limbs";
    mpz_clears(za, zm, zr, nullptr);
}

void CheckInverse(const std::vector<Limb>& a, const std::vector<Limb>& m) {
    Big x, y;
    SetLimbs(&x, a, false);
    SetLimbs(&y, m, false);
    CheckInverse(&x, &y);
}

// A modulus of n limbs and a number of k limbs below it, of random shapes;
// the modulus made odd half the time, so that both answers come up.
void CheckRandom(int32_t n, int32_t k) {
    std::vector<Limb> m = Operand(n, kShapes[Rng()() % 5]);
    if (Rng()() % 2 == 0) m[0] = static_cast<Limb>(m[0] | 1);
    std::vector<Limb> a = Operand(k, kShapes[Rng()() % 4]);
    if (k == n) a[n - 1] = static_cast<Limb>(1 + Rng()() % (m[n - 1] > 1 ? m[n - 1] - 1 : 1));
    CheckInverse(a, m);
}

}  // namespace

TEST(FastModInverse, RandomPairsAroundTheLoweredThresholdsMatchGmp) {
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t n = 2; n <= 220; n += n < 40 ? 1 : 9) {
        for (int32_t k : {1, 2, n / 2 + 1, n - 1, n}) {
            if (k < 1 || k > n) continue;
            CheckRandom(n, k);
        }
    }
    // Leaves and the start of the half-gcd rounds at several sizes.
    FastThresholds lowered = FastThresholds::Lowered();
    for (int32_t leaf : {8, 13, 30}) {
        lowered.gcdHalfLeaf = leaf;
        lowered.modInverseHalf = 2 * leaf;
        ThresholdScope inner(lowered);
        for (int32_t n : {2 * leaf - 1, 2 * leaf, 4 * leaf + 1, 300}) CheckRandom(n, n - 1);
    }
}

TEST(FastModInverse, RandomPairsAroundTheShippedThresholdsMatchGmp) {
    const FastThresholds t;
    // A modulus of one limb is left out: a multiple of it would never end.
    for (int32_t n : {std::max(2, t.modInverse - 1), t.modInverse, t.modInverse + 1,
                      t.modInverseHalf - 1, t.modInverseHalf, t.modInverseHalf + 1,
                      2 * t.modInverseHalf + 3, t.gcdHalfLeaf, 2 * t.gcdHalfLeaf + 1}) {
        CheckRandom(n, n);
        CheckRandom(n, n - 1);
    }
    // A short a: the first steps are divisions.
    CheckRandom(3 * t.modInverseHalf, 5);
    CheckRandom(3 * t.modInverseHalf, t.modInverseHalf + 2);
}

TEST(FastModInverse, SharedFactorsEndsOfTheRangeAndLargerOperands) {
    for (const bool lowered : {true, false}) {
        ThresholdScope scope(lowered ? FastThresholds::Lowered() : FastThresholds());
        for (int32_t n : {40, 700, lowered ? 900 : 2500}) {
            // A common factor of one limb or many: no inverse, the answer 0.
            for (int32_t g : {1, n / 3}) {
                std::vector<Limb> f = Operand(g, Shape::Random);
                f[0] = static_cast<Limb>(f[0] | 1);
                if (g == 1 && f[0] == 1) f[0] = 7;
                CheckInverse(NaiveProduct(Operand(n / 2, Shape::Random), f),
                             NaiveProduct(Operand(n - g, Shape::Random), f));
            }
            Big m, a, r;
            RandomBig(&m, n, false);
            m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] | 1);
            // a = 1 and a = m − 1 (its own inverse).
            BigFromInt(&a, 1);
            CheckInverse(&a, &m);
            BigFree(&a);
            BigFromInt(&r, 1);
            BigSub(&a, &m, &r);
            CheckInverse(&a, &m);
            // a = 3·m + 2 and a > m of twice the length: reduced first.
            Big three, two, t;
            BigFromInt(&three, 3);
            BigFromInt(&two, 2);
            BigFree(&a);
            CalcContext ctx;
            BigMul(&ctx, &t, &m, &three);
            BigAdd(&a, &t, &two);
            CheckInverse(&a, &m);
            Big longer;
            RandomBig(&longer, 2 * n + 1, false);
            CheckInverse(&longer, &m);
            // a = m: the chain's answer 0.
            CheckInverse(&m, &m);
        }
    }
}

TEST(FastModInverse, QuotientsAllOneAndSingleHugeQuotients) {
    mpz_t one, g;
    mpz_inits(one, g, nullptr);
    mpz_set_ui(one, 1);
    mpz_set_str(g, "1234567890123456789012345678901", 10);
    for (const bool lowered : {true, false}) {
        ThresholdScope scope(lowered ? FastThresholds::Lowered() : FastThresholds());
        std::vector<Limb> m, a;
        // Consecutive Fibonacci numbers: every quotient 1, the longest chain.
        const int32_t fib = lowered ? 1500 : 40000;
        FromQuotients(fib, -1, 0, true, one, &m, &a);
        CheckInverse(a, m);
        FromQuotients(fib, -1, 0, true, g, &m, &a);
        CheckInverse(a, m);
        const int32_t count = lowered ? 600 : 20000, huge = lowered ? 800 : 9000;
        for (int32_t where : {0, 1, count / 2, count - 3}) {
            FromQuotients(count, where, huge, false, one, &m, &a);
            CheckInverse(a, m);
        }
    }
    mpz_clears(one, g, nullptr);
}

TEST(FastModInverse, ZeroMultiplesAndNegativesAnswerAsTheChainDoes) {
    for (const bool lowered : {true, false}) {
        ThresholdScope scope(lowered ? FastThresholds::Lowered() : FastThresholds());
        const int32_t n = lowered ? 12 : 2 * FastThresholds().modInverseHalf;
        CalcContext ctx;
        Big m, zero, multiple, seven, r, negative;
        RandomBig(&m, n, false);
        BigFromInt(&zero, 0);
        BigFromInt(&seven, 7);
        BigMul(&ctx, &multiple, &m, &seven);
        // A zero divisor with a modulus of two limbs or more: code 1.
        for (const BigInt* a : {&zero.v, &multiple.v}) {
            EXPECT_EQ(ModInverse(&ctx, a, &m, &r), 1);
            EXPECT_EQ(ToDecimal(&r), "1");
            BigFree(&r);
        }
        BigCopy(&negative, &m);
        negative.v.negative = 1;
        EXPECT_EQ(ModInverse(&ctx, &seven, &negative, &r), 6);
        EXPECT_EQ(ToDecimal(&r), "1");
    }
}

TEST(FastModInverse, QStopsItAtEveryPoll) {
    for (const bool lowered : {false, true}) {
        FastThresholds t = lowered ? FastThresholds::Lowered() : FastThresholds();
        t.nttParallel = 0;
        ThresholdScope scope(t);
        Big a, m;
        const int32_t n = lowered ? 300 : 3 * t.gcdHalfLeaf;
        RandomBig(&m, n, false);
        RandomBig(&a, n - 2, false);
        ExpectStopsAtEveryPoll([&](CalcContext* c, BigInt* r) { return ModInverse(c, &a.v, &m.v, r); });
    }
}
