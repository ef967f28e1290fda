// The transform in pieces against GMP on both kernel sets: products, sums
// and signed differences of products at the least and at larger lengths,
// the cyclic product modulo B^n − 1, with limbs of every shape (nines give
// the largest coefficients); and the long modular power that runs on them,
// with small bases, a window's bases and moduli at the edges of Barrett's
// estimate.
#include <gtest/gtest.h>

#include "bigint/ntt_kernels.h"
#include "bigint/ntt_plan.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

std::vector<Limb> AnyOperand(int32_t n) { return Operand(n, kShapes[Rng()() % 5]); }

// Forward transforms of a, b, c, d at n points, then a·b + sign·c·d.
void Combine(const std::vector<Limb>* v, int32_t n, NttAccumulate how, NttVector* acc) {
    PollClock clk(nullptr);
    NttVector t[4];
    for (int i = 0; i < 4; ++i)
        ASSERT_EQ(NttForward(clk, v[i].data(), int32_t(v[i].size()), n, &t[i]), Result::kOk);
    ASSERT_TRUE(acc->Reset(n));
    NttMulAccumulate(acc, t[0], t[1], NttAccumulate::kSet);
    NttMulAccumulate(acc, t[2], t[3], how);
}

}  // namespace

TEST(FastNttPlan, SumsDifferencesAndCyclicProductsMatchGmp) {
    for (const bool portable : {false, true}) {
        UsePortableNttKernels(portable);
        for (int32_t len : {1, 2, 7, 64, 65, 300, 1000, 2049}) {
            SCOPED_TRACE(std::to_string(len) + (portable ? " portable" : ""));
            const std::vector<Limb> v[4] = {AnyOperand(len), AnyOperand(len / 2 + 1),
                                            AnyOperand(len), AnyOperand(len / 3 + 1)};
            const mpz_class ab = FromLimbs(v[0]) * FromLimbs(v[1]);
            const mpz_class cd = FromLimbs(v[2]) * FromLimbs(v[3]);
            // Bounds both products and their sum (a top limb of 10000 takes a limb more).
            const int32_t count = len + len / 2 + 2;
            PollClock clk(nullptr);
            for (const int32_t n : {NttPoints(count), 2 * NttPoints(count)}) {
                NttVector acc;
                std::vector<Limb> p(size_t(count) + 1);
                Combine(v, n, NttAccumulate::kAdd, &acc);
                ASSERT_EQ(NttToLimbs(clk, &acc, count, p.data()), Result::kOk);
                EXPECT_EQ(FromLimbs(p).get_str(), mpz_class(ab + cd).get_str());
                Combine(v, n, NttAccumulate::kSub, &acc);
                bool negative = false;
                ASSERT_EQ(NttToLimbsSigned(clk, &acc, count, p.data(), &negative), Result::kOk);
                const mpz_class difference = FromLimbs(p.data(), count);
                EXPECT_EQ((negative ? mpz_class(-difference) : difference).get_str(),
                          mpz_class(ab - cd).get_str());
            }
            // Cyclic: operands of up to n limbs, at the least length that holds them.
            const int32_t n = NttPoints(len);
            NttVector acc;
            Combine(v, n, NttAccumulate::kAdd, &acc);
            std::vector<Limb> c(static_cast<size_t>(n));
            ASSERT_EQ(NttToLimbsCyclic(clk, &acc, c.data()), Result::kOk);
            mpz_class wrap = 1;
            for (int32_t i = 0; i < n; ++i) wrap *= 10000;
            wrap -= 1;
            EXPECT_EQ(mpz_class(FromLimbs(c) % wrap).get_str(),
                      mpz_class((ab + cd) % wrap).get_str());
        }
    }
    UsePortableNttKernels(false);
}

TEST(FastNttPlan, LongModularPowersMatchGmp) {
    FastThresholds t = FastThresholds::Lowered();
    t.powMontgomery = 0;
    ThresholdScope scope(t);
    CalcContext ctx;
    for (int32_t k : {8, 9, 40, 126, 130, 142, 143}) {
        // Random, a power of 10000 (its reciprocal one limb longer), all nines.
        for (int shape = 0; shape < 3; ++shape) {
            std::vector<Limb> mv = shape == 0 ? Operand(k, Shape::Random)
                                              : std::vector<Limb>(size_t(k), shape == 1 ? 0 : 9999);
            if (shape == 1) mv[size_t(k) - 1] = 1;
            Num m, e, r;
            SetLimbs(&m.v, mv, false);
            RandomBig(&e.v, 1 + int32_t(Rng()() % 6), false);
            if (e.v.top == 0 && e.v.limbs[0] < 2) e.v.limbs[0] = 2;
            // Small bases (one and two limbs), the first window base, m − 1, longer ones.
            for (const std::string& bs :
                 {std::string("0"), std::string("1"), std::string("3"), std::string("9999"),
                  std::string("10000"), std::string("99999999"), std::string("100000000"),
                  mpz_class(FromLimbs(mv) - 1).get_str(),
                  mpz_class(FromLimbs(mv) * 7 + 5).get_str(),
                  FromLimbs(AnyOperand(k - 1)).get_str()}) {
                Num b(bs.c_str());
                ASSERT_EQ(ModPow(&ctx, &b.v, &e.v, r.Out(), &m.v), Result::kOk);
                EXPECT_EQ(ToDecimal(&r.v), GmpPowMod(Gmp(&b.v), Gmp(&e.v), Gmp(&m.v)).get_str())
                    << bs << " ^ " << ToDecimal(&e.v) << " mod " << k << " limbs, shape " << shape;
            }
        }
    }
}
