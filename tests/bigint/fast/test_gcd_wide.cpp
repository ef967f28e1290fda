// The half-gcd's sums of products on the 64-bit transform against GMP:
// a·b + c·d and a·b − c·d of either sign, with cancelling and one-sided
// operands, joined by the signed join.
#include <gtest/gtest.h>

#include <vector>

#include "bigint/ntt64_kernels.h"
#include "bigint/ntt64_plan.h"
#include "fast_support.h"

using namespace fasttest;

TEST(FastGcdWide, SignedSumsOfProductsMatchGmp) {
    if (!Ntt64VecAvailable()) GTEST_SKIP() << "no AVX-512 IFMA here";
    PollClock clk(nullptr);
    const std::pair<int32_t, int32_t> sizes[] = {
        {1, 1}, {5, 3}, {64, 190}, {257, 256}, {1500, 900}};
    for (const auto& [la, lb] : sizes) {
        for (const Shape shape : {Shape::Random, Shape::Nines, Shape::RunsOfZeroAndNine}) {
            const std::vector<Limb> a = Operand(la, shape), b = Operand(lb, Shape::Random);
            std::vector<Limb> c = Operand(la, Shape::Random), d = Operand(lb, shape);
            // The last case: c·d = a·b, the difference zero.
            for (int k = 0; k < 4; ++k) {
                if (k == 3) c = a, d = b;
                const bool swap = k == 1;  // the negative difference
                const std::vector<Limb>& x = swap ? c : a;
                const std::vector<Limb>& y = swap ? d : b;
                const std::vector<Limb>& u = swap ? a : c;
                const std::vector<Limb>& v = swap ? b : d;
                const int32_t count = la + lb;
                const int32_t n = Ntt64PlanPoints((int64_t(count) + 3) / 4);
                Ntt64Vector hx, hy, hu, hv, acc, scratch;
                ASSERT_EQ(Ntt64PlanForward(clk, x.data(), la, n, &hx), Result::kOk);
                ASSERT_EQ(Ntt64PlanForward(clk, y.data(), lb, n, &hy), Result::kOk);
                ASSERT_EQ(Ntt64PlanForward(clk, u.data(), la, n, &hu), Result::kOk);
                ASSERT_EQ(Ntt64PlanForward(clk, v.data(), lb, n, &hv), Result::kOk);
                const mpz_class gxy = FromLimbs(x.data(), la) * FromLimbs(y.data(), lb);
                const mpz_class guv = FromLimbs(u.data(), la) * FromLimbs(v.data(), lb);
                for (const Ntt64Accumulate how : {Ntt64Accumulate::kAdd, Ntt64Accumulate::kSub}) {
                    ASSERT_EQ(
                        Ntt64PlanMulAccumulate(clk, &acc, hx, hy, Ntt64Accumulate::kSet, &scratch),
                        Result::kOk);
                    ASSERT_EQ(Ntt64PlanMulAccumulate(clk, &acc, hu, hv, how, &scratch),
                              Result::kOk);
                    const mpz_class want =
                        how == Ntt64Accumulate::kAdd ? mpz_class(gxy + guv) : mpz_class(gxy - guv);
                    std::vector<Limb> p(size_t(count) + 2);
                    bool negative = false;
                    ASSERT_EQ(Ntt64PlanToLimbsSigned(clk, &acc, count + 2, p.data(), &negative),
                              Result::kOk);
                    const mpz_class got = FromLimbs(p.data(), count + 2);
                    EXPECT_EQ((negative ? -got : got).get_str(), want.get_str())
                        << la << " " << lb << " " << k;
                    EXPECT_FALSE(negative && got == 0);
                }
            }
        }
    }
}
