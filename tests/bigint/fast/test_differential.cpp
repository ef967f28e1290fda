// Random operands of the public operations checked against GMP, signs and
// one record on both sides included.
#include <gtest/gtest.h>

#include <algorithm>

#include "fast_support.h"

using namespace fasttest;

namespace {

// An mpz_t that frees itself, read from a record.
struct Z {
    mpz_t z;
    Z() { mpz_init(z); }
    explicit Z(const Num& v) : Z() { ToMpz(z, &v.v); }
    ~Z() { mpz_clear(z); }
    std::string Str(int base = 10) const {
        std::vector<char> buf(mpz_sizeinbase(z, base) + 2);
        return mpz_get_str(buf.data(), -base, z);
    }
};

// A random value of one limb to maxLimbs (mostly short), of any shape but a
// top limb of 10000, either sign; now and then zero.
void RandomValue(Num* v, int32_t maxLimbs, bool signedValue = true) {
    const int32_t caps[] = {1, 2, 3, 10, 100, maxLimbs};
    const int32_t n = 1 + int32_t(Rng()() % uint64_t(std::min(maxLimbs, caps[Rng()() % 6])));
    if (Rng()() % 20 == 0) return FromDecimal(v->Out(), "0");
    SetLimbs(v->Out(), Operand(n, kShapes[Rng()() % 4]), signedValue && Rng()() % 2);
}

#define EXPECT_SAME(value, expected, what) EXPECT_EQ(Text(value), (expected).Str()) << what

class Differential : public ::testing::Test {
protected:
    CalcContext ctx;
    static int Below(int n) { return static_cast<int>(Rng()() % static_cast<unsigned>(n)); }
};

TEST_F(Differential, AddSubMulDivModGcd) {
    for (int round = 0; round < 1200; ++round) {
        Num x, y, r, q;
        RandomValue(&x, 750);
        RandomValue(&y, 750);
        const std::string xs = Text(x), ys = Text(y);
        Z zx(x), zy(y), e, e2;
        for (const bool swapped : {false, true}) {
            const Num& a = swapped ? y : x;
            const Num& b = swapped ? x : y;
            const Z& za = swapped ? zy : zx;
            const Z& zb = swapped ? zx : zy;
            const std::string what = Text(a) + " , " + Text(b);
            ASSERT_EQ(BigAdd(r.Out(), &a.v, &b.v), Result::kOk);
            mpz_add(e.z, za.z, zb.z);
            EXPECT_SAME(r, e, "add " << what);
            ASSERT_EQ(BigSub(r.Out(), &a.v, &b.v), Result::kOk);
            mpz_sub(e.z, za.z, zb.z);
            EXPECT_SAME(r, e, "sub " << what);
            ASSERT_EQ(BigMul(&ctx, r.Out(), &a.v, &b.v), Result::kOk);
            mpz_mul(e.z, za.z, zb.z);
            EXPECT_SAME(r, e, "mul " << what);
            if (mpz_sgn(zb.z) == 0) continue;
            ASSERT_EQ(BigDivMod(&ctx, &a.v, &b.v, q.Out(), r.Out()), Result::kOk);
            mpz_tdiv_qr(e.z, e2.z, za.z, zb.z);
            EXPECT_SAME(q, e, "quotient " << what);
            EXPECT_SAME(r, e2, "remainder " << what);
            // A negative dividend answers |m| - |r|: a multiple gives |m|.
            ASSERT_EQ(BigMod(&ctx, &a.v, &b.v, r.Out()), Result::kOk);
            if (mpz_sgn(za.z) < 0) {
                mpz_abs(e.z, zb.z);
                mpz_abs(e2.z, e2.z);
                mpz_sub(e2.z, e.z, e2.z);
            }
            EXPECT_SAME(r, e2, "mod " << what);
        }
        // A sum may end in a top limb of 10000; later operations take it at its value.
        Num sum;
        ASSERT_EQ(BigAdd(&sum.v, &x.v, &y.v), Result::kOk);
        Z zs(sum);
        if (mpz_sgn(zy.z) != 0) {
            ASSERT_EQ(BigDivMod(&ctx, &sum.v, &y.v, q.Out(), r.Out()), Result::kOk);
            mpz_tdiv_qr(e.z, e2.z, zs.z, zy.z);
            EXPECT_SAME(q, e, "quotient of the sum " << xs << " , " << ys);
            EXPECT_SAME(r, e2, "remainder of the sum " << xs << " , " << ys);
        }
        ASSERT_EQ(BigMul(&ctx, r.Out(), &x.v, &x.v), Result::kOk);  // one record on both sides
        mpz_mul(e.z, zx.z, zx.z);
        EXPECT_SAME(r, e, "square " << xs);
        if (mpz_sgn(zx.z) != 0) {
            ASSERT_EQ(BigDivMod(&ctx, &x.v, &x.v, q.Out(), r.Out()), Result::kOk);
            EXPECT_EQ(Text(q) + " " + Text(r), "1 0");
        }
        if (round % 3 != 0 || (mpz_sgn(zx.z) == 0 && mpz_sgn(zy.z) == 0)) continue;
        ASSERT_EQ(BigGcd(&ctx, &x.v, &y.v, r.Out()), Result::kOk);
        if (mpz_sgn(zx.z) == 0 || mpz_cmpabs(zx.z, zy.z) == 0) {
            mpz_set(e.z, zy.z);  // y as it stands, sign included
        } else if (mpz_sgn(zy.z) == 0) {
            mpz_set(e.z, zx.z);
        } else {
            mpz_gcd(e.z, zx.z, zy.z);
        }
        EXPECT_SAME(r, e, "gcd " << xs << " , " << ys);
    }
}

TEST_F(Differential, PowersAndRoots) {
    for (int round = 0; round < 400; ++round) {
        Num x, r, square, cube;
        RandomValue(&x, round % 4 == 0 ? 750 : 60);
        const std::string xs = Text(x);
        const bool manyBits = round % 4 == 1;
        const std::string bs = xs.substr(0, manyBits ? 3 : 40);  // a minus sign included
        const int exponent = manyBits ? Below(1000) : Below(25);
        Num base(bs);
        Z zx(x), zb(base), e, rest;
        ASSERT_EQ(BigPowInt(&ctx, &base.v, exponent, &r.v), Result::kOk);
        mpz_pow_ui(e.z, zb.z, static_cast<unsigned long>(exponent));
        EXPECT_SAME(r, e, "pow " << bs << " ^ " << exponent);

        mpz_abs(zb.z, zx.z);
        mpz_sqrtrem(e.z, rest.z, zb.z);
        EXPECT_EQ(BigSqrt(&ctx, &x.v, r.Out()), mpz_sgn(rest.z) == 0 ? Result::kOk : kRootInexact)
            << "sqrt " << xs;
        EXPECT_SAME(r, e, "sqrt " << xs);
        const bool exact = mpz_root(e.z, zx.z, 3) != 0;
        EXPECT_EQ(BigCbrt(&ctx, &x.v, r.Out()), exact ? Result::kOk : kRootInexact)
            << "cbrt " << xs;
        EXPECT_SAME(r, e, "cbrt " << xs);
        ASSERT_EQ(BigMul(&ctx, &square.v, &x.v, &x.v), Result::kOk);
        ASSERT_EQ(BigMul(&ctx, &cube.v, &square.v, &x.v), Result::kOk);
        EXPECT_EQ(BigSqrt(&ctx, &square.v, r.Out()), Result::kOk) << "square of " << xs;
        EXPECT_SAME(r, zb, "square root of the square of " << xs);
        if (xs.size() > 800) continue;
        EXPECT_EQ(BigCbrt(&ctx, &cube.v, r.Out()), Result::kOk) << "cube of " << xs;
        EXPECT_SAME(r, zx, "cube root of the cube of " << xs);
    }
}

TEST_F(Differential, ModularInverseAndPower) {
    for (int round = 0; round < 500; ++round) {
        Num m, a, ex, r;
        RandomValue(&m, round % 5 == 0 ? 750 : 50, false);
        RandomValue(&a, 750, false);
        RandomValue(&ex, 10);
        const std::string ms = Text(m), as = Text(a), es = Text(ex);
        Num base(as.substr(0, 100));
        Z zm(m), za(a), ze(ex), zb(base), e;
        if (mpz_cmp_ui(zm.z, 1) <= 0 || mpz_divisible_p(za.z, zm.z)) continue;  // zero divisor
        ASSERT_EQ(ModInverse(&ctx, &a.v, &m.v, &r.v), Result::kOk) << as << " mod " << ms;
        if (!mpz_invert(e.z, za.z, zm.z)) mpz_set_ui(e.z, 0);  // not invertible: 0
        EXPECT_SAME(r, e, "inverse of " << as << " mod " << ms);

        if (ms.size() > 200 || (mpz_sgn(ze.z) < 0 && !mpz_invert(e.z, zb.z, zm.z))) continue;
        ASSERT_EQ(ModPow(&ctx, &base.v, &ex.v, r.Out(), &m.v), Result::kOk);
        mpz_powm(e.z, zb.z, ze.z, zm.z);
        if (mpz_sgn(ze.z) == 0) mpz_set_ui(e.z, 1);  // not reduced
        EXPECT_SAME(r, e, "power " << Text(base) << " ^ " << es << " mod " << ms);
    }
}

TEST_F(Differential, BaseConversion) {
    for (int round = 0; round < 150; ++round) {
        Num x;
        RandomValue(&x, round % 10 == 0 ? 250 : 20, false);
        const std::string xs = Text(x);
        Z zx(x);
        const int from = 2 + Below(15), to = 2 + Below(15);
        std::string text = zx.Str(from);
        if (Below(3) == 0) {
            std::transform(text.begin(), text.end(), text.begin(), ::tolower);
            text.insert(static_cast<size_t>(Below(static_cast<int>(text.size()) + 1)), " ");
        }
        ASSERT_EQ(ConvertBase(&ctx, from, to, &text), Result::kOk)
            << xs << " " << from << "->" << to;
        EXPECT_EQ(text, xs == "0" ? "" : zx.Str(to)) << xs << " " << from << "->" << to;
    }
}

}  // namespace

// The random sizes above stay below the half-gcd and the long modular power;
// a few operands at the shipped thresholds reach them.
TEST_F(Differential, LongOperandsAtShippedThresholds) {
    const FastThresholds t;
    ThresholdScope scope(t);
    const auto make = [](Num* v, int32_t limbs, Shape shape) {
        SetLimbs(v->Out(), Operand(limbs, shape), false);
    };
    for (const int32_t n : {t.gcdHalf - 1, t.gcdHalf, t.gcdHalf + 1, t.gcdHalf + 300}) {
        Num x, y, g, r;
        make(&x, n + Below(300), Shape::Random);
        make(&y, n, n % 2 ? Shape::RunsOfZeroAndNine : Shape::Random);
        if (n > t.gcdHalf + 1) {  // a common factor of many limbs
            make(&g, 400, Shape::Random);
            ASSERT_EQ(BigMul(&ctx, r.Out(), &x.v, &g.v), Result::kOk);
            std::swap(r.v, x.v);
            ASSERT_EQ(BigMul(&ctx, r.Out(), &y.v, &g.v), Result::kOk);
            std::swap(r.v, y.v);
        }
        Z zx(x), zy(y), e;
        ASSERT_EQ(BigGcd(&ctx, &x.v, &y.v, r.Out()), Result::kOk);
        mpz_gcd(e.z, zx.z, zy.z);
        EXPECT_SAME(r, e, "gcd at " << n << " limbs");
    }
    // Moduli of powMontgomery limbs still run on words; one more goes long.
    const int32_t w = t.powMontgomery;
    for (const int32_t n : {w - 1, w, w + 1, w + 2}) {
        for (const bool odd : {true, false}) {
            Num m, a, ex, r;
            make(&m, n, Shape::Random);
            m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] / 2 * 2 + (odd ? 1 : 0));
            make(&a, n + Below(3) - 1, odd ? Shape::Random : Shape::Nines);
            make(&ex, 20, Shape::Random);
            Z zm(m), za(a), ze(ex), e;
            ASSERT_EQ(ModInverse(&ctx, &a.v, &m.v, r.Out()), Result::kOk);
            if (!mpz_invert(e.z, za.z, zm.z)) mpz_set_ui(e.z, 0);
            EXPECT_SAME(r, e, "inverse modulo " << n << " limbs");
            const bool invertible = mpz_sgn(e.z) != 0;
            ASSERT_EQ(ModPow(&ctx, &a.v, &ex.v, r.Out(), &m.v), Result::kOk);
            mpz_powm(e.z, za.z, ze.z, zm.z);
            EXPECT_SAME(r, e, "power modulo " << n << " limbs");
            if (!invertible) continue;
            ex.v.negative = 1;
            mpz_neg(ze.z, ze.z);
            ASSERT_EQ(ModPow(&ctx, &a.v, &ex.v, r.Out(), &m.v), Result::kOk);
            mpz_powm(e.z, za.z, ze.z, zm.z);
            EXPECT_SAME(r, e, "negative power modulo " << n << " limbs");
        }
    }
}
