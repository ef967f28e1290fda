// The sum and difference kernels under both tops (the portable code, AVX2 and
// AVX-512 where the processor has them) against GMP: lengths around each
// register and block width, chains of 9999s and of zeros across lanes and
// blocks, top limbs of 10000, and sums written over the first operand.
#include <gtest/gtest.h>

#include <algorithm>

#include "bigint/add_kernels.h"
#include "fast_support.h"

using namespace fasttest;

namespace {

int Below(int n) { return static_cast<int>(Rng()() % static_cast<unsigned>(n)); }

class AddVector : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override {
        const LaneKernels* kernels[] = {nullptr, Avx2LaneKernels(), Avx512LaneKernels()};
        if (GetParam() > 0 && kernels[GetParam()] == nullptr)
            GTEST_SKIP() << "not on this processor";
        UseLaneKernels(kernels[GetParam()]);
    }
    void TearDown() override { UseWidestLaneKernels(); }

    // x + y and x - y by the public operations, and x + y by LimbsAdd written
    // over a copy of x, all against GMP.
    static void Check(const std::vector<Limb>& x, const std::vector<Limb>& y, bool negative) {
        const mpz_class zx = negative ? mpz_class(-FromLimbs(x)) : FromLimbs(x), zy = FromLimbs(y);
        Num a, b, r;
        SetLimbs(&a.v, x, negative);
        SetLimbs(&b.v, y, false);
        const auto what = std::to_string(x.size()) + " + " + std::to_string(y.size());
        ASSERT_EQ(BigAdd(r.Out(), &a.v, &b.v), Result::kOk);
        EXPECT_EQ(Gmp(&r.v).get_str(), mpz_class(zx + zy).get_str()) << what;
        // A top limb of 10000 compares by its array, not its value (a kept
        // quirk), so differences are checked on normal operands only.
        if (x.back() < 10000 && y.back() < 10000) {
            ASSERT_EQ(BigSub(r.Out(), &a.v, &b.v), Result::kOk);
            EXPECT_EQ(Gmp(&r.v).get_str(), mpz_class(zx - zy).get_str()) << what;
        }
        std::vector<Limb> d(x);
        d.resize(std::max(x.size(), y.size()) + 1);
        const auto tx = static_cast<int32_t>(x.size()) - 1, ty = static_cast<int32_t>(y.size()) - 1;
        d.resize(static_cast<size_t>(LimbsAdd(d.data(), y.data(), d.data(), tx, ty)) + 1);
        EXPECT_EQ(FromLimbs(d).get_str(), mpz_class(FromLimbs(x) + zy).get_str())
            << "in place " << what;
    }
};

TEST_P(AddVector, LengthsAroundTheWidthsAndTopLimbsOf10000) {
    for (int n : {1, 2, 8, 9, 15, 16, 17, 31, 32, 33, 48, 63, 64, 65, 80, 96, 127, 129, 193}) {
        for (int m : {n - 1, n, n + 1, 1 + Below(2 * n + 1)}) {
            if (m < 1) continue;
            for (int round = 0; round < 3; ++round) {
                // The first operand may end in 10000 (a kept sum); the second never does.
                const auto x = Operand(n, kShapes[Below(5)]);
                const auto y = Operand(m, kShapes[Below(4)]);
                Check(x, y, round == 2);
                Check(y, x, false);
            }
        }
    }
}

// Limb sums of exactly 9999 pass a carry on, and limb differences of 0 a
// borrow: runs of them from a limb that carries or borrows (or from none) to
// anywhere up to the top, across lane, register and block borders.
TEST_P(AddVector, ChainsOfNinesAndZeros) {
    for (int round = 0; round < 300; ++round) {
        const int n = 1 + Below(260), from = Below(n), to = from + Below(n - from + 1);
        std::vector<Limb> x = Operand(n, Shape::Random), y = Operand(n, Shape::Random), z = y;
        for (int i = from; i < to; ++i) y[i] = static_cast<Limb>(9999 - x[i]), z[i] = x[i];
        if (from > 0 && round % 4 != 0) {
            y[from - 1] = static_cast<Limb>(9999 - x[from - 1] / 2);
            z[from - 1] = static_cast<Limb>(x[from - 1] + (10000 - x[from - 1]) / 2);
        }
        // x the larger, so that x − z borrows along the run of zeros.
        x.back() = static_cast<Limb>(5000 + Below(5000));
        y.back() = z.back() = static_cast<Limb>(1 + Below(4999));
        Check(x, y, false);
        Check(z, x, true);
        x.back() = 10000;  // and a kept top limb of 10000 meeting the chain
        Check(x, y, false);
    }
}

INSTANTIATE_TEST_SUITE_P(PortableAvx2Avx512, AddVector, ::testing::Values(0, 1, 2));

}  // namespace
