// The 64-bit transform in pieces against GMP: linear products and squares
// at the least and a doubled length, cyclic products modulo B^4n − 1, limbs
// of every shape; and the long modular power on it and on the two-prime
// transform (the vector butterflies switched off), at the edges of its point
// counts, and stopped at its polls.
#include <gtest/gtest.h>

#include <vector>

#include "bigint/ntt64.h"
#include "bigint/ntt64_kernels.h"
#include "bigint/ntt64_plan.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

mpz_class PowerOfB(int64_t e) {
    mpz_class z;
    mpz_ui_pow_ui(z.get_mpz_t(), 10000, static_cast<unsigned long>(e));
    return z;
}

int32_t Points(int32_t limbs) { return (limbs + 3) / 4; }

}  // namespace

TEST(FastNtt64Plan, ProductsSquaresAndCyclicProductsMatchGmp) {
    if (!Ntt64VecAvailable()) GTEST_SKIP() << "no AVX-512 IFMA here";
    PollClock clk(nullptr);
    const std::pair<int32_t, int32_t> sizes[] = {{1, 1},     {4, 5},      {63, 190},
                                                 {256, 257}, {1001, 999}, {3, 2000}};
    for (const auto& [la, lb] : sizes) {
        for (const Shape shape : kShapes) {
            const std::vector<Limb> a = Operand(la, shape), b = Operand(lb, Shape::Nines);
            const mpz_class ga = FromLimbs(a.data(), la), gb = FromLimbs(b.data(), lb);
            const int32_t least = Ntt64PlanPoints(int64_t(Points(la)) + Points(lb) - 1);
            // The square fits: la is never much longer than lb.
            for (const int32_t n : {least, 2 * least}) {
                Ntt64Vector x, y, s;
                ASSERT_EQ(Ntt64PlanForward(clk, a.data(), la, n, &x), Result::kOk);
                ASSERT_EQ(Ntt64PlanForward(clk, b.data(), lb, n, &y), Result::kOk);
                ASSERT_EQ(Ntt64PlanForward(clk, a.data(), la, n, &s), Result::kOk);
                Ntt64PlanMul(clk, &x, y);
                Ntt64PlanMul(clk, &s, s);
                // One limb more: a top limb of 10000 can carry past la + lb.
                std::vector<Limb> p(size_t(la + lb + 1)), q(size_t(2 * la + 1));
                ASSERT_EQ(Ntt64PlanToLimbs(clk, &x, la + lb + 1, p.data()), Result::kOk);
                ASSERT_EQ(Ntt64PlanToLimbs(clk, &s, 2 * la + 1, q.data()), Result::kOk);
                EXPECT_EQ(FromLimbs(p.data(), la + lb + 1).get_str(), mpz_class(ga * gb).get_str())
                    << la << " " << lb << " " << n;
                EXPECT_EQ(FromLimbs(q.data(), 2 * la + 1).get_str(), mpz_class(ga * ga).get_str())
                    << la << " " << n;
            }
            // Cyclic at the least length holding both operands.
            const int32_t n = Ntt64PlanPoints(std::max(Points(la), Points(lb)));
            Ntt64Vector x, y;
            ASSERT_EQ(Ntt64PlanForward(clk, a.data(), la, n, &x), Result::kOk);
            ASSERT_EQ(Ntt64PlanForward(clk, b.data(), lb, n, &y), Result::kOk);
            Ntt64PlanMul(clk, &x, y);
            std::vector<Limb> c(size_t(4 * n));
            ASSERT_EQ(Ntt64PlanToLimbsCyclic(clk, &x, c.data()), Result::kOk);
            const mpz_class wrap = PowerOfB(4 * n) - 1;
            EXPECT_EQ(mpz_class(FromLimbs(c.data(), 4 * n) % wrap).get_str(),
                      mpz_class(ga * gb % wrap).get_str())
                << la << " " << lb << " cyclic";
        }
    }
}

// Moduli around the 64-bit transform's point counts (its square's points
// double from 129 limbs, q·m's cyclic length from 254; at 300 the square and
// the quotient's product are split in two parts, from 511 to 638 q·m is
// half cyclic and half low product), on it and on the two-prime transform
// (whose own lengths test_ntt_plan.cpp covers: a few sizes here).
TEST(FastNtt64Plan, LongModularPowersOnBothTransformsMatchGmp) {
    FastThresholds t = FastThresholds::Lowered();
    t.powMontgomery = 0;
    t.nttParallel = 0;  // no helper thread per short transform
    ThresholdScope scope(t);
    CalcContext ctx;
    const std::vector<int32_t> sizes[2] = {{8, 61, 128, 129, 253, 254, 255, 300, 511, 600},
                                           {8, 300, 600}};
    for (const bool portable : {false, true}) {
        UsePortableNtt64(portable);
        for (const int32_t k : sizes[portable]) {
            for (const Shape shape : {Shape::Random, Shape::Nines, Shape::Zeros}) {
                Num m, e, r;
                SetLimbs(&m.v, Operand(k, shape), false);
                RandomBig(&e.v, 1 + int32_t(Rng()() % 5), false);
                if (e.v.top == 0 && e.v.limbs[0] < 2) e.v.limbs[0] = 2;
                const mpz_class gm = Gmp(&m.v);
                for (const mpz_class& b :
                     {mpz_class(99999999), mpz_class(gm - 1), mpz_class(gm / 7 + 5)}) {
                    Num base(b.get_str().c_str());
                    ASSERT_EQ(ModPow(&ctx, &base.v, &e.v, r.Out(), &m.v), Result::kOk);
                    EXPECT_EQ(ToDecimal(&r.v), GmpPowMod(b, Gmp(&e.v), gm).get_str())
                        << b.get_str() << " ^ " << ToDecimal(&e.v) << " mod " << k << " limbs, "
                        << (portable ? "two primes" : "64-bit");
                }
            }
        }
    }
    UsePortableNtt64(false);
}

TEST(FastNtt64Plan, LongModularPowerStopsAtAnyPoll) {
    FastThresholds t = gFastThresholds;
    t.powMontgomery = 0;
    t.pollWork = 1 << 13;
    t.nttParallel = 0;
    ThresholdScope scope(t);
    Num m, e, big, small("3");
    RandomBig(&m.v, 300, false);
    RandomBig(&e.v, 8, false);
    RandomBig(&big.v, 290, false);
    for (const bool portable : {false, true}) {
        UsePortableNtt64(portable);
        for (const Num* base : {&small, &big}) {
            ExpectStopsAtEveryPoll(
                [&](CalcContext* c, BigInt* r) { return ModPow(c, &base->v, &e.v, r, &m.v); });
        }
    }
    UsePortableNtt64(false);
}
