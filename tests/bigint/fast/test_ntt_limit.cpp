// Products beyond the 32-bit transform's longest length go to the transform
// over 64-bit primes (binary words are halved instead); lowered limits bring
// both, the packing of six or four limbs a point and the 64-bit transform's
// stages beyond its cache block down to sizes GMP checks at once.
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "bigint/mul_dispatch.h"
#include "bigint/mul_kernels.h"
#include "bigint/ntt64.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

constexpr int32_t kLimit = 1025;  // la + lb of the longest transform

FastThresholds LowLimit() {
    FastThresholds t;
    t.mulKaratsuba = 8;
    t.mulNtt = 24;
    t.sqrKaratsuba = 8;
    t.sqrNtt = 24;
    t.binaryNtt = 4;
    t.nttParallel = 256;  // the helper thread too, on the longer transforms
    t.nttMaxLength = kLimit;
    return t;
}

}  // namespace

TEST(NttLimit, ProductsBelowAtAndAboveTheLimit) {
    ThresholdScope scope(LowLimit());
    ASSERT_EQ(NttMaxLength(), kLimit);
    CalcContext ctx;
    struct Sizes {
        int32_t la, lb;
    };
    const Sizes cases[] = {
        {512, 512}, {513, 512},  {513, 513}, {514, 513},   // balanced around the limit
        {1000, 25}, {1001, 24},  {1001, 25}, {1002, 24},   // a long by a short one
        {700, 330}, {2050, 600}, {3000, 24}, {4100, 2049}  // the 64-bit transform
    };
    for (const Sizes& c : cases) {
        for (Shape shape : {Shape::Random, Shape::Nines, Shape::TopTenThousand}) {
            Num a, b, r;
            SetLimbs(&a.v, Operand(c.la, shape), c.la % 2 == 0);
            SetLimbs(&b.v, Operand(c.lb, Shape::Nines), false);
            ASSERT_EQ(BigMul(&ctx, &r.v, &a.v, &b.v), Result::kOk);
            EXPECT_EQ(Text(r), mpz_class(Gmp(&a.v) * Gmp(&b.v)).get_str()) << c.la << " x " << c.lb;
            ASSERT_EQ(BigMul(&ctx, r.Out(), &a.v, &a.v), Result::kOk);
            EXPECT_EQ(Text(r), mpz_class(Gmp(&a.v) * Gmp(&a.v)).get_str()) << c.la << " squared";
        }
    }
}

TEST(NttLimit, BinaryWordsBeyondTheLimitAreHalved) {
    // Base 16 goes out through products of 32-bit words in 16-bit halves: a
    // transform takes la + lb words up to half the limit.
    FastThresholds t = LowLimit();
    t.nttMaxLength = 257;
    ThresholdScope scope(t);
    CalcContext ctx;
    for (int32_t limbs : {200, 700, 3000}) {
        Num a;
        SetLimbs(&a.v, Operand(limbs, Shape::RunsOfZeroAndNine), false);
        std::string text = Text(a);
        ASSERT_EQ(ConvertBase(&ctx, 10, 16, &text), Result::kOk);
        EXPECT_EQ(text, Gmp(&a.v).get_str(-16)) << limbs << " limbs";
    }
}

namespace {

// a·b (b empty: a squared) by MulLimbs against GMP.
void ExpectProduct(CalcContext* ctx, const std::vector<Limb>& a, const std::vector<Limb>& b) {
    const std::vector<Limb>& bb = b.empty() ? a : b;
    const int32_t len = int32_t(a.size() + bb.size());
    std::vector<Limb> p(len, 0);
    const int32_t top =
        MulLimbs(ctx, a.data(), int32_t(a.size()) - 1, bb.data(), int32_t(bb.size()) - 1, p.data());
    ASSERT_GE(top, len - 2) << a.size() << " x " << bb.size();
    ASSERT_TRUE(p[len - 1] != 0 || top == len - 2);
    Num x, y, r;
    SetLimbs(&x.v, Normalised(a.data(), int32_t(a.size())), false);
    SetLimbs(&y.v, Normalised(bb.data(), int32_t(bb.size())), false);
    SetLimbs(&r.v, Normalised(p.data(), len), false);
    const std::string got = Text(r), want = mpz_class(Gmp(&x.v) * Gmp(&y.v)).get_str();
    const auto diff = std::mismatch(got.rbegin(), got.rend(), want.rbegin(), want.rend());
    EXPECT_TRUE(got == want) << a.size() << " x " << bb.size() << ": " << got.size()
                             << " digits for " << want.size() << ", digit "
                             << diff.first - got.rbegin() << " from the right differs";
}

FastThresholds Wide64(int32_t parallel) {
    FastThresholds t = LowLimit();
    t.nttMaxLength = (1 << 25) + 1;
    t.ntt64Length = 24;
    t.ntt64Parallel = parallel;
    return t;
}

}  // namespace

TEST(Ntt64, AProductLongerThanAValueCanHoldAnswersLowMemoryAtOnce) {
    // A value's top is a signed 32-bit index: factors of 2^30 limbs would
    // make one of 2^31. Their limbs are never read (the product's array is
    // refused first), so a record that only claims the length will do.
    // ordix_largest_product (bench/) computes the longest that fits.
    Limb one[1] = {1};
    const BigInt huge = {one, int32_t(1) << 30, {}, 0};
    Num product;
    CalcContext ctx;
    EXPECT_EQ(BigMul(&ctx, &product.v, &huge, &huge), Result::kNoMemory);
    EXPECT_EQ(ToDecimal(&product.v), "1");
}

TEST(Ntt64, ProductsAroundThePackingAndThePointCounts) {
    // Six limbs a point up to 64 points, four beyond (the vector butterflies:
    // four from 256 points): every remainder of the
    // lengths by the packing, point counts just below and above powers of two,
    // top limbs of 10000 and 20000 (Karatsuba's half sums), squares.
    for (int32_t parallel : {0, 16}) {
        UsePortableNtt64(parallel == 0);  // the vector butterflies from 256 points
        FastThresholds t = Wide64(parallel);
        t.ntt64SixLimbs = 64;
        ThresholdScope scope(t);
        CalcContext ctx;
        for (int32_t la : {24, 25, 29, 30, 191, 192, 193, 196, 380, 385, 390, 1000}) {
            for (int32_t lb : {24, 27, la / 2 + 1, la}) {
                if (lb > la) continue;
                for (Shape shape : {Shape::Random, Shape::Nines, Shape::TopTenThousand}) {
                    std::vector<Limb> a = Operand(la, shape), b = Operand(lb, Shape::Nines);
                    ExpectProduct(&ctx, a, b);
                    ExpectProduct(&ctx, b, {});
                    a.back() = 20000;  // the other operand below its limbs' power
                    ExpectProduct(&ctx, a, b);
                }
            }
        }
        EXPECT_EQ(Ntt64LimbsPerPoint(64), 6);
        EXPECT_EQ(Ntt64LimbsPerPoint(128), 4);
    }
    UsePortableNtt64(false);
}

TEST(Ntt64, LongTransformsOnOneAndTwoThreadsPlainAndVector) {
    // 2^15 points: stages beyond the cache block (2^14), their twiddles made
    // as they go, cut in halves between the threads; coefficients of nines
    // close to their bound. The plain butterflies (six limbs a point) and the
    // vector ones where the processor has them (four: the first prime's
    // residues kept in the product's own limbs, a tail beyond them). The
    // shorter factor is transformed a half at a time. Point counts up to 3/4
    // of a power of two split the product: a cyclic one of half the points
    // (the longer factor folded into it when longer than that) and the low
    // coefficients on their own (35001 by 34999, 60000 by 50000, 100000 by
    // 700 plain; beyond the cache block 90000 by 90000, the second factor
    // whole, 240000 by 40000, by halves, and 170000 squared).
    CalcContext ctx;
    for (bool portable : {true, false}) {
        UsePortableNtt64(portable);
        for (int32_t parallel : {0, 1024}) {
            ThresholdScope scope(Wide64(parallel));
            ExpectProduct(&ctx, Operand(60000, Shape::Nines), Operand(50000, Shape::Nines));
            ExpectProduct(&ctx, Operand(100000, Shape::Random),
                          Operand(700, Shape::TopTenThousand));
            ExpectProduct(&ctx, Operand(35001, Shape::TopTenThousand),
                          Operand(34999, Shape::Random));
            ExpectProduct(&ctx, Operand(56000, Shape::Nines), {});
            ExpectProduct(&ctx, Operand(90000, Shape::Nines), Operand(90000, Shape::Random));
            ExpectProduct(&ctx, Operand(240000, Shape::Random), Operand(40000, Shape::Nines));
            ExpectProduct(&ctx, Operand(170000, Shape::TopTenThousand), {});
        }
    }
    UsePortableNtt64(false);
}

TEST(Ntt64, StopsAtItsFirstMiddleAndLastPollAndOnTwoThreads) {
    // One thread: the polls of a product repeat, so the last one (in the
    // join) can be hit, and a dozen between (a split product: the low
    // coefficients, the cyclic half and their difference); two threads: the
    // helper is cancelled.
    const std::vector<Limb> a = Operand(56000, Shape::Random), b = Operand(40000, Shape::Random);
    std::vector<Limb> p(a.size() + b.size(), 0);
    for (int32_t parallel : {0, 1024}) {
        FastThresholds t = Wide64(parallel);
        t.pollWork = 1 << 14;
        ThresholdScope scope(t);
        QuitAtPoll counting;
        ASSERT_GE(MulLimbs(&counting, a.data(), 55999, b.data(), 39999, p.data()), 0);
        std::vector<long> stops = {1, 2, 7};
        if (parallel == 0) {
            for (long at = 1; at <= counting.polls(); at += std::max(1L, counting.polls() / 12))
                stops.push_back(at);
            stops.push_back(counting.polls());
        }
        for (long stopAt : stops) {
            QuitAtPoll stopping(stopAt);
            EXPECT_EQ(MulLimbs(&stopping, a.data(), 55999, b.data(), 39999, p.data()), -1);
            EXPECT_EQ(stopping.polls(), stopAt) << "no poll after the stop";
        }
        CalcContext ctx;
        ExpectProduct(&ctx, a, b);
    }
}

namespace {

mpz_class FromWords(const std::vector<uint32_t>& w) {
    mpz_class x;
    mpz_import(x.get_mpz_t(), w.size(), -1, 4, 0, 0, w.data());
    return x;
}

// Words all ones (each point's piece at its bound, the coefficients at
// theirs) or random.
std::vector<uint32_t> WordOperand(int32_t n, bool ones, uint32_t seed) {
    std::vector<uint32_t> w(size_t(n), ~0u);
    uint64_t x = seed * 0x9E3779B97F4A7C15u + 1;
    if (!ones)
        for (uint32_t& v : w) v = static_cast<uint32_t>((x = x * 6364136223846793005u + 1) >> 32);
    return w;
}

}  // namespace

TEST(Ntt64, BinaryProductsAroundThePointCountsOnBothButterfliesAndThreads) {
    // Words cut 50 bits a point (vector primes, from 256 points) or 64 (plain
    // ones): lengths whose point counts fall just below and above powers of
    // two and the vector's first length, squares, one factor kept for several
    // products of shorter and longer operands.
    CalcContext ctx;
    for (bool portable : {true, false}) {
        UsePortableNtt64(portable);
        for (int32_t parallel : {0, 256}) {
            FastThresholds t;
            t.binaryNtt64Parallel = parallel;
            ThresholdScope scope(t);
            PollClock clk(&ctx);
            for (int32_t la : {1, 2, 3, 31, 32, 33, 199, 200, 201, 400, 401, 1601, 3000}) {
                for (int32_t lb : {1, 2, la / 2 + 1, la}) {
                    if (lb > la) continue;
                    for (bool ones : {true, false}) {
                        const auto a = WordOperand(la, ones, 1), b = WordOperand(lb, ones, 2);
                        std::vector<uint32_t> p(size_t(la + lb));
                        ASSERT_EQ(Ntt64ConvolveBits(clk, a.data(), la, b.data(), lb, p.data()),
                                  Result::kOk);
                        EXPECT_TRUE(FromWords(p) == FromWords(a) * FromWords(b))
                            << la << " x " << lb << (portable ? " plain" : "");
                        std::vector<uint32_t> sq(size_t(2 * la));
                        ASSERT_EQ(Ntt64ConvolveBits(clk, a.data(), la, nullptr, la, sq.data()),
                                  Result::kOk);
                        EXPECT_TRUE(FromWords(sq) == FromWords(a) * FromWords(a)) << la;
                    }
                }
            }
            // Beyond the cache block: the shorter factor transformed a half
            // at a time, also when it comes first.
            for (const auto& [la, lb] : {std::pair{20000, 9000}, std::pair{9000, 20000}}) {
                const auto a = WordOperand(la, false, 5), b = WordOperand(lb, true, 6);
                std::vector<uint32_t> p(size_t(la + lb));
                ASSERT_EQ(Ntt64ConvolveBits(clk, a.data(), la, b.data(), lb, p.data()),
                          Result::kOk);
                EXPECT_TRUE(FromWords(p) == FromWords(a) * FromWords(b)) << la << " x " << lb;
            }
            // Stops at a dozen polls of a split product with its first
            // residues packed into the product, polling no more.
            if (parallel == 0) {
                const auto a = WordOperand(20000, false, 7), b = WordOperand(9000, false, 8);
                std::vector<uint32_t> p(29000);
                FastThresholds slow = t;
                slow.pollWork = 1 << 12;
                ThresholdScope often(slow);
                QuitAtPoll counting;
                PollClock counted(&counting);
                ASSERT_EQ(Ntt64ConvolveBits(counted, a.data(), 20000, b.data(), 9000, p.data()),
                          Result::kOk);
                ASSERT_GE(counting.polls(), 12);
                for (long at = 1; at <= counting.polls(); at += counting.polls() / 12 + 1) {
                    QuitAtPoll stopping(at);
                    PollClock stopped(&stopping);
                    EXPECT_EQ(Ntt64ConvolveBits(stopped, a.data(), 20000, b.data(), 9000, p.data()),
                              Result::kStopped);
                    EXPECT_EQ(stopping.polls(), at) << "no poll after the stop";
                }
            }
            // The kept factor's square too, also where it fills the points.
            const auto b = WordOperand(700, true, 3);
            for (int32_t maxLa : {700, 1000}) {
                Ntt64Factor kept;
                ASSERT_EQ(kept.Prepare(clk, b.data(), 700, maxLa), Result::kOk);
                for (int32_t la : {1, 500, maxLa - 1, maxLa}) {
                    const auto a = WordOperand(la, la % 2 == 0, 4);
                    std::vector<uint32_t> p(size_t(la + 700));
                    ASSERT_EQ(kept.Mul(clk, a.data(), la, p.data()), Result::kOk);
                    EXPECT_TRUE(FromWords(p) == FromWords(a) * FromWords(b)) << "kept, " << la;
                }
                std::vector<uint32_t> sq(1400);
                ASSERT_EQ(kept.Square(clk, sq.data()), Result::kOk);
                EXPECT_TRUE(FromWords(sq) == FromWords(b) * FromWords(b)) << "kept square";
            }
        }
    }
    UsePortableNtt64(false);
}
