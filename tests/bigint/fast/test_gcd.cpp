// Lehmer's gcd, the half-gcd and the inverse by the extended gcd against
// Euclid by long division and GMP: random pairs of every shape around the
// thresholds (products of matrices by summed transforms or not), large common factors, pairs built from chosen quotient
// sequences (all ones; one huge quotient anywhere), the inverse's kept
// answers.
#include <gtest/gtest.h>

#include "bigint/dispatch.h"
#include "bigint/gcd_lehmer.h"
#include "bigint/ntt64.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

// The dispatcher's gcd (Lehmer or the half-gcd at the thresholds in force)
// against GMP, and against Euclid when asked; signs of the operands at random.
void CheckGcd(const std::vector<Limb>& a, const std::vector<Limb>& b, bool withEuclid) {
    Num x, y, g;
    SetLimbs(&x.v, a, Rng()() % 2 == 0);
    SetLimbs(&y.v, b, Rng()() % 2 == 0);
    if (BigCompareMag(&x.v, &y.v) > 0) std::swap(x.v, y.v);
    if (BigCompareMag(&x.v, &y.v) == 0) return;  // the contract: |x| > |y| > 0
    CalcContext ctx;
    ASSERT_EQ(GcdDispatch(&ctx, &x.v, &y.v, &g.v), Result::kOk);
    ASSERT_EQ(g->negative, 0);
    EXPECT_EQ(ToDecimal(&g.v), mpz_class(gcd(Gmp(&x.v), Gmp(&y.v))).get_str())
        << a.size() << " and " << b.size() << " limbs";
    if (withEuclid) {
        Num e;
        ASSERT_EQ(GcdSchool(&ctx, &x.v, &y.v, &e.v), Result::kOk);
        EXPECT_EQ(ToDecimal(&g.v), ToDecimal(&e.v));
    }
}

// ModInverse against mpz_invert, with 0 where there is no inverse.
void CheckInverse(const std::vector<Limb>& av, const std::vector<Limb>& mv) {
    CalcContext ctx;
    Num a, m, r;
    SetLimbs(&a.v, av, false);
    SetLimbs(&m.v, mv, false);
    ASSERT_EQ(ModInverse(&ctx, &a.v, &m.v, &r.v), Result::kOk)
        << av.size() << " mod " << mv.size() << " limbs";
    EXPECT_EQ(ToDecimal(&r.v), GmpInverse(Gmp(&a.v), Gmp(&m.v)).get_str())
        << av.size() << " mod " << mv.size() << " limbs";
}

// A modulus of n limbs and a number of k limbs below it, of random shapes;
// the modulus made odd half the time, so that both answers come up.
void CheckRandomInverse(int32_t n, int32_t k) {
    std::vector<Limb> m = Operand(n, kShapes[Rng()() % 5]);
    if (Rng()() % 2 == 0) m[0] = static_cast<Limb>(m[0] | 1);
    std::vector<Limb> a = Operand(k, kShapes[Rng()() % 4]);
    if (k == n) a[n - 1] = static_cast<Limb>(1 + Rng()() % (m[n - 1] > 1 ? m[n - 1] - 1 : 1));
    CheckInverse(a, m);
}

}  // namespace

TEST(FastGcd, RandomPairsAndCommonFactorsAgreeWithEuclidAndGmp) {
    ThresholdScope scope(FastThresholds::Lowered());
    // Smaller operands of 3 to 5 limbs take Lehmer's gcd, longer ones the half-gcd.
    for (int32_t n = 3; n <= 160; n += n < 40 ? 1 : 7) {
        for (int32_t m : {3, 5, 6, n / 2 + 3, n - 1, n}) {
            if (m > n) continue;
            const Shape sb = kShapes[Rng()() % 5];
            CheckGcd(Operand(n, kShapes[Rng()() % 5]), Operand(m, sb), true);
            // A common factor of any length up to the smaller operand.
            const std::vector<Limb> g = Operand(1 + int32_t(Rng()() % m), Shape::Random);
            CheckGcd(NaiveProduct(Operand(n, Shape::Random), g), NaiveProduct(Operand(m, sb), g),
                     true);
        }
    }
    // a far longer than b: the first rounds are divisions.
    for (int32_t m : {6, 40, 200})
        CheckGcd(Operand(3000, Shape::Random), Operand(m, Shape::Random), false);
}

TEST(FastGcd, SizesAroundTheThresholdsAgreeWithGmp) {
    const FastThresholds t;
    for (int32_t n : {t.gcdLehmer, t.gcdHalf, t.gcdHalf + 1, 2 * t.gcdHalf + 3}) {
        CheckGcd(Operand(n + 1, Shape::Random), Operand(n, Shape::Random), false);
        CheckGcd(Operand(n, Shape::Nines), Operand(n - 1, Shape::RunsOfZeroAndNine), false);
    }
    // y divides x: the answer is y, found by the first division.
    const std::vector<Limb> y = Operand(t.gcdHalf + 5, Shape::Random);
    CheckGcd(NaiveProduct(Operand(3 * t.gcdHalf, Shape::Random), y), y, false);
    // Leaves around each size, with everything else lowered.
    FastThresholds lowered = FastThresholds::Lowered();
    for (int32_t leaf : {8, 13, 30}) {
        lowered.gcdHalfLeaf = leaf;
        ThresholdScope scope(lowered);
        for (int32_t n : {leaf, 2 * leaf - 1, 2 * leaf, 4 * leaf + 1, 300})
            CheckGcd(Operand(n, Shape::Random), Operand(n - 1, Shape::Random), false);
    }
    // Matrices and pair updates by summed transforms from every size, from
    // some, or never; the inverse's row likewise. The 64-bit transform takes
    // them from every size, from some, or (switched off) never.
    for (const int32_t wide : {8, 400, 0}) {
        UsePortableNtt64(wide == 0);
        lowered.gcdMatrixNtt64 = wide;
        for (int32_t from : {1, 30, 1 << 30}) {
            lowered.gcdHalfLeaf = 8;
            lowered.gcdMatrixNtt = from;
            ThresholdScope scope(lowered);
            for (const Shape shape : {Shape::Random, Shape::Nines}) {
                CheckGcd(Operand(500, shape), Operand(499, Shape::Random), false);
                CheckInverse(Operand(499, Shape::Random), Operand(500, shape));
            }
        }
    }
    UsePortableNtt64(false);
}

TEST(FastModInverse, RandomPairsAroundTheThresholdsMatchGmp) {
    {
        ThresholdScope scope(FastThresholds::Lowered());
        for (int32_t n = 2; n <= 220; n += n < 40 ? 1 : 9) {
            for (int32_t k : {1, 2, n / 2 + 1, n - 1, n}) {
                if (k >= 1 && k <= n) CheckRandomInverse(n, k);
            }
        }
    }
    // Leaves and the start of the half-gcd rounds at several sizes.
    FastThresholds lowered = FastThresholds::Lowered();
    for (int32_t leaf : {8, 13, 30}) {
        lowered.gcdHalfLeaf = leaf;
        lowered.modInverseHalf = 2 * leaf;
        ThresholdScope inner(lowered);
        for (int32_t n : {2 * leaf - 1, 2 * leaf, 4 * leaf + 1, 300}) CheckRandomInverse(n, n - 1);
    }
    const FastThresholds t;
    // A short a: the first steps are divisions.
    CheckRandomInverse(3 * t.modInverseHalf, 5);
    CheckRandomInverse(3 * t.modInverseHalf, t.modInverseHalf + 2);
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
            std::vector<Limb> m = Operand(n, Shape::Random);
            m[0] = static_cast<Limb>(m[0] | 1);
            std::vector<Limb> below = m;  // m − 1, its own inverse
            below[0] = static_cast<Limb>(below[0] - 1);
            std::vector<Limb> over = NaiveProduct(m, {3});  // 3·m + 2: reduced first
            over[0] = static_cast<Limb>(over[0] + 2);
            for (const std::vector<Limb>& a :
                 {std::vector<Limb>{1}, below, Normalised(over.data(), int32_t(over.size())),
                  Operand(2 * n + 1, Shape::Random), m}) {  // a = m: the chain's answer 0
                CheckInverse(a, m);
            }
        }
    }
}

TEST(FastModInverse, ZeroMultiplesAndNegativesAnswerAsTheChainDoes) {
    for (const bool lowered : {true, false}) {
        ThresholdScope scope(lowered ? FastThresholds::Lowered() : FastThresholds());
        const int32_t n = lowered ? 12 : 2 * FastThresholds().modInverseHalf;
        CalcContext ctx;
        Num zero("0"), seven("7"), m, multiple, r;
        RandomBig(&m.v, n, false);
        ASSERT_EQ(BigMul(&ctx, &multiple.v, &m.v, &seven.v), Result::kOk);
        // A zero divisor with a modulus of two limbs or more.
        for (const BigInt* a : {&zero.v, &multiple.v}) {
            EXPECT_EQ(ModInverse(&ctx, a, &m.v, r.Out()), kImpossibleEstimate);
            EXPECT_EQ(ToDecimal(&r.v), "1");
        }
        m->negative = 1;
        EXPECT_EQ(ModInverse(&ctx, &seven.v, &m.v, r.Out()), Result::kInconsistent);
        EXPECT_EQ(ToDecimal(&r.v), "1");
    }
}

TEST(FastGcdAndInverse, QuotientsAllOneAndSingleHugeQuotients) {
    const mpz_class one = 1, g("123456789012345678901234567890123456789");
    for (const bool lowered : {true, false}) {
        ThresholdScope scope(lowered ? FastThresholds::Lowered() : FastThresholds());
        std::vector<Limb> x, y;
        // Consecutive Fibonacci numbers (F(60000) has 12539 digits), with and
        // without a common factor: every quotient 1, the longest chain.
        for (const mpz_class& factor : {one, g}) {
            FromQuotients(lowered ? 1200 : 60000, -1, 0, true, factor, &x, &y);
            CheckGcd(x, y, lowered);
            CheckInverse(y, x);
        }
        // One quotient about as long as the rest of the sequence together,
        // at the start, the second, a quarter, half way, and near the end.
        const int32_t count = lowered ? 600 : 30000, huge = lowered ? 800 : 12000;
        for (int32_t where : {0, 1, count / 4, count / 2, count - 3}) {
            FromQuotients(count, where, huge, false, one, &x, &y);
            CheckGcd(x, y, lowered);
            CheckInverse(y, x);
        }
    }
}

// A divisor of at most three limbs goes by one pass of word remainders: odd
// and even lengths of the long operand, divisors at the edges of the pair
// and single-limb steps, common factors, and the kept signs through BigGcd.
TEST(FastGcd, ShortOperandsAgreeWithGmpAndStop) {
    const std::vector<std::vector<Limb>> divisors = {{1},
                                                     {7},
                                                     {9999},
                                                     {0, 1},
                                                     {9999, 9999},
                                                     {0, 0, 1},
                                                     {9999, 9999, 9999},
                                                     {1234, 5678, 9012},
                                                     {0, 0, 0, 1}};
    for (const int32_t n : {1, 4, 5, 2001, 40000}) {
        const std::vector<Limb> a = Operand(n, Shape::Random);
        for (const std::vector<Limb>& d : divisors) {
            CheckGcd(a, d, n < 3000);
            CheckGcd(NaiveProduct(a, d), d, false);
            CheckGcd(NaiveProduct(a, d), NaiveProduct(d, {3}), false);
        }
    }
    CalcContext ctx;
    Num big, product, seven("-7"), g;
    RandomBig(&big.v, 5000, false);
    ASSERT_EQ(BigMul(&ctx, &product.v, &big.v, &seven.v), Result::kOk);
    ASSERT_EQ(BigGcd(&ctx, &seven.v, &product.v, g.Out()), Result::kOk);
    EXPECT_EQ(ToDecimal(&g.v), "7");
    // A long operand stops at any of the pass's polls.
    FastThresholds t = FastThresholds::Lowered();
    t.nttParallel = 0;
    ThresholdScope scope(t);
    RandomBig(big.Out(), 300000, false);
    ExpectStopsAtEveryPoll(
        [&](CalcContext* c, BigInt* r) { return BigGcd(c, &big.v, &seven.v, r); });
}

// Pairs whose quotient sequences hold many long quotients (up to 40 digits,
// one in twelve): the half-gcd's tops often stop short of their floor, so
// Lehmer's steps run between the two halves and onto the matrix, and the
// first half's matrix is exchanged or stepped after its transforms were kept
// for the product with the second. Every product by transforms, or only the
// long ones.
TEST(FastGcdAndInverse, LongQuotientsBetweenTheHalvesAgreeWithGmp) {
    auto build = [](int32_t count, mpz_class* x, mpz_class* y) {
        mpz_class a = 1, b = 0;
        for (int32_t i = 0; i < count; ++i) {
            mpz_class q = 1 + Rng()() % 6;
            if (Rng()() % 12 == 0) mpz_ui_pow_ui(q.get_mpz_t(), 10, 4 + Rng()() % 36);
            b += (q + int32_t(Rng()() % 1000)) * a;
            swap(a, b);
        }
        *x = a;
        *y = b;
    };
    FastThresholds lowered = FastThresholds::Lowered();
    for (int32_t from : {1, 60}) {
        lowered.gcdHalfLeaf = from == 1 ? 8 : 60;
        lowered.gcdMatrixNtt = from;
        ThresholdScope scope(lowered);
        // The leaves' combination pass by vector registers or by words, the
        // sums of products on the 64-bit transform or the two-prime one.
        UsePortableLehmerCombine(from == 60);
        UsePortableNtt64(from == 60);
        for (int32_t count : {300, 1500}) {
            mpz_class x, y;
            build(count, &x, &y);
            CheckGcd(FromMpz(x), FromMpz(y), false);
            CheckGcd(FromMpz(x * 7919), FromMpz(y * 7919), false);
            CheckInverse(FromMpz(y), FromMpz(x));
        }
        UsePortableLehmerCombine(false);
        UsePortableNtt64(false);
    }
    // The gcd's rounds take tops of 2^k − 2^(k−6) limbs: pairs of one limb
    // less, exactly that length (the whole pair the top), and one limb more.
    ThresholdScope scope(FastThresholds::Lowered());
    for (int32_t n : {125, 126, 127, 251, 252, 253})
        CheckGcd(Operand(n, Shape::Random), Operand(n - 1 - int32_t(Rng()() % 3), Shape::Random),
                 false);
}

// The combination pass on vector registers against the pass on words, which
// the gcds above check: cofactors of Lehmer's steps on random words and on
// runs of 99999999 and 0, and combinations that cancel to a small multiple
// of a run of nines, whose words carry from register to register.
TEST(FastLehmer, CombinationPassOnRegistersMatchesThePassOnWords) {
    constexpr uint32_t kWord = 100000000;
    auto words = [](int32_t n, int shape) {
        std::vector<uint32_t> w(size_t(n) + 8);
        for (int32_t i = 0; i < n; ++i)
            w[size_t(i)] = shape == 0   ? uint32_t(Rng()() % kWord)
                           : shape == 1 ? kWord - 1
                                        : (Rng()() % 4 == 0 ? 0 : kWord - 1);
        w[size_t(n) - 1] = std::max<uint32_t>(w[size_t(n) - 1], 1);
        return w;
    };
    auto combine = [](const LehmerCofactors& c, const std::vector<uint32_t>& x, int32_t lx,
                      const std::vector<uint32_t>& y, int32_t ly, bool portable) {
        UsePortableLehmerCombine(portable);
        std::vector<uint32_t> s(size_t(std::max(lx, ly)) + 3), t(s.size());
        int32_t ls = 0, lt = 0;
        LehmerCombineWords(c, x.data(), lx, y.data(), ly, s.data(), &ls, t.data(), &lt);
        s.resize(size_t(ls));
        t.resize(size_t(lt));
        s.insert(s.end(), t.begin(), t.end());
        return s;
    };
    for (int trial = 0; trial < 300; ++trial) {
        const int32_t n = 8 + int32_t(Rng()() % 90), shape = int(Rng()() % 3);
        std::vector<uint32_t> x = words(n, shape), y = words(n, int(Rng()() % 3));
        LehmerCofactors c;
        int32_t ly = n;
        if (trial % 2 == 0) {
            // y a little below x: Lehmer's steps on them.
            y = x;
            y[size_t(n) - 1] = std::max<uint32_t>(1, uint32_t(Rng()() % (x[size_t(n) - 1] + 1)));
            for (int32_t i = 0; i + 1 < n; ++i) y[size_t(i)] = uint32_t(Rng()() % kWord);
            if (Rng()() % 4 == 0) ly = n - 1;
            c = LehmerLeadingWords(x.data(), n, y.data(), ly, -1);
            if (c.steps == 0) continue;
        } else {
            // A·x + B·y = e·x and C·x + D·y = f·x for y = x, the cofactors near 10^18.
            y = x;
            const int64_t a = 999999999999999999 - int64_t(Rng()() % 1000000000);
            const int64_t e = int64_t(Rng()() % 3), f = int64_t(Rng()() % 3);
            c.A = a;
            c.B = e - a;
            c.C = f - a + 1;
            c.D = a - 1;
            c.steps = 1;
        }
        EXPECT_EQ(combine(c, x, n, y, ly, false), combine(c, x, n, y, ly, true))
            << n << " words, shape " << shape << ", trial " << trial;
    }
    UsePortableLehmerCombine(false);
}
