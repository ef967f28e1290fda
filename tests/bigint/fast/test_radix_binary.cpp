// Products of binary words against GMP.
#include <gtest/gtest.h>

#include "bigint/binary_words.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

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
    for (int32_t ntt : {1, 4, FastThresholds().binaryNtt}) {
        FastThresholds t = FastThresholds::Lowered();
        t.binaryNtt = ntt;
        ThresholdScope scope(t);
        for (int32_t la : {1, 3, 4, 5, 31, 223, 224, 225, 600}) {
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
