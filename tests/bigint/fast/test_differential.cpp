// Random operands of the public operations checked against GMP, signs and
// one record on both sides included.
#include <gtest/gtest.h>

#include <algorithm>

#include "fast_support.h"

using namespace fasttest;

namespace {

// A random value of one limb to maxLimbs (mostly short), of any shape but a
// top limb of 10000, either sign; now and then zero.
void RandomValue(Num* v, int32_t maxLimbs, bool signedValue = true) {
    const int32_t caps[] = {1, 2, 3, 10, 100, maxLimbs};
    const int32_t n = 1 + int32_t(Rng()() % uint64_t(std::min(maxLimbs, caps[Rng()() % 6])));
    if (Rng()() % 20 == 0) return FromDecimal(v->Out(), "0");
    SetLimbs(v->Out(), Operand(n, kShapes[Rng()() % 4]), signedValue && Rng()() % 2);
}

#define EXPECT_SAME(value, expected, what) \
    EXPECT_EQ(Text(value), mpz_class(expected).get_str()) << what

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
        const mpz_class zx = Gmp(&x.v), zy = Gmp(&y.v);
        for (const bool swapped : {false, true}) {
            const Num& a = swapped ? y : x;
            const Num& b = swapped ? x : y;
            const mpz_class& za = swapped ? zy : zx;
            const mpz_class& zb = swapped ? zx : zy;
            const std::string what = Text(a) + " , " + Text(b);
            ASSERT_EQ(BigAdd(r.Out(), &a.v, &b.v), Result::kOk);
            EXPECT_SAME(r, za + zb, "add " << what);
            ASSERT_EQ(BigSub(r.Out(), &a.v, &b.v), Result::kOk);
            EXPECT_SAME(r, za - zb, "sub " << what);
            ASSERT_EQ(BigMul(&ctx, r.Out(), &a.v, &b.v), Result::kOk);
            EXPECT_SAME(r, za * zb, "mul " << what);
            if (zb == 0) continue;
            ASSERT_EQ(BigDivMod(&ctx, &a.v, &b.v, q.Out(), r.Out()), Result::kOk);
            EXPECT_SAME(q, za / zb, "quotient " << what);
            EXPECT_SAME(r, za % zb, "remainder " << what);
            // A negative dividend answers |m| - |r|: a multiple gives |m|.
            ASSERT_EQ(BigMod(&ctx, &a.v, &b.v, r.Out()), Result::kOk);
            EXPECT_SAME(r, za < 0 ? mpz_class(abs(zb) - abs(za % zb)) : mpz_class(za % zb),
                        "mod " << what);
        }
        // A sum may end in a top limb of 10000; later operations take it at its value.
        Num sum;
        ASSERT_EQ(BigAdd(&sum.v, &x.v, &y.v), Result::kOk);
        if (zy != 0) {
            ASSERT_EQ(BigDivMod(&ctx, &sum.v, &y.v, q.Out(), r.Out()), Result::kOk);
            EXPECT_SAME(q, (zx + zy) / zy, "quotient of the sum " << xs << " , " << ys);
            EXPECT_SAME(r, (zx + zy) % zy, "remainder of the sum " << xs << " , " << ys);
        }
        ASSERT_EQ(BigMul(&ctx, r.Out(), &x.v, &x.v), Result::kOk);  // one record on both sides
        EXPECT_SAME(r, zx * zx, "square " << xs);
        if (zx != 0) {
            ASSERT_EQ(BigDivMod(&ctx, &x.v, &x.v, q.Out(), r.Out()), Result::kOk);
            EXPECT_EQ(Text(q) + " " + Text(r), "1 0");
        }
        if (round % 3 != 0 || (zx == 0 && zy == 0)) continue;
        ASSERT_EQ(BigGcd(&ctx, &x.v, &y.v, r.Out()), Result::kOk);
        // y as it stands, sign included, when x is 0 or +-y.
        EXPECT_SAME(r,
                    zx == 0 || abs(zx) == abs(zy) ? zy
                    : zy == 0                     ? zx
                                                  : mpz_class(gcd(zx, zy)),
                    "gcd " << xs << " , " << ys);
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
        const mpz_class zx = Gmp(&x.v), ax = abs(zx), zb = Gmp(&base.v);
        mpz_class e, rest;
        ASSERT_EQ(BigPowInt(&ctx, &base.v, exponent, &r.v), Result::kOk);
        mpz_pow_ui(e.get_mpz_t(), zb.get_mpz_t(), static_cast<unsigned long>(exponent));
        EXPECT_SAME(r, e, "pow " << bs << " ^ " << exponent);

        mpz_sqrtrem(e.get_mpz_t(), rest.get_mpz_t(), ax.get_mpz_t());
        EXPECT_EQ(BigSqrt(&ctx, &x.v, r.Out()), rest == 0 ? Result::kOk : kRootInexact)
            << "sqrt " << xs;
        EXPECT_SAME(r, e, "sqrt " << xs);
        const bool exact = mpz_root(e.get_mpz_t(), zx.get_mpz_t(), 3) != 0;
        EXPECT_EQ(BigCbrt(&ctx, &x.v, r.Out()), exact ? Result::kOk : kRootInexact)
            << "cbrt " << xs;
        EXPECT_SAME(r, e, "cbrt " << xs);
        ASSERT_EQ(BigMul(&ctx, &square.v, &x.v, &x.v), Result::kOk);
        ASSERT_EQ(BigMul(&ctx, &cube.v, &square.v, &x.v), Result::kOk);
        EXPECT_EQ(BigSqrt(&ctx, &square.v, r.Out()), Result::kOk) << "square of " << xs;
        EXPECT_SAME(r, ax, "square root of the square of " << xs);
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
        const mpz_class zm = Gmp(&m.v), za = Gmp(&a.v), ze = Gmp(&ex.v), zb = Gmp(&base.v);
        if (zm <= 1 || za % zm == 0) continue;  // zero divisor
        ASSERT_EQ(ModInverse(&ctx, &a.v, &m.v, &r.v), Result::kOk) << as << " mod " << ms;
        EXPECT_SAME(r, GmpInverse(za, zm), "inverse of " << as << " mod " << ms);

        if (ms.size() > 200 || (ze < 0 && GmpInverse(zb, zm) == 0)) continue;
        ASSERT_EQ(ModPow(&ctx, &base.v, &ex.v, r.Out(), &m.v), Result::kOk);
        EXPECT_SAME(r, ze == 0 ? mpz_class(1) : GmpPowMod(zb, ze, zm),  // 1 not reduced
                    "power " << Text(base) << " ^ " << es << " mod " << ms);
    }
}

TEST_F(Differential, BaseConversion) {
    for (int round = 0; round < 150; ++round) {
        Num x;
        RandomValue(&x, round % 10 == 0 ? 250 : 20, false);
        const std::string xs = Text(x);
        const mpz_class zx = Gmp(&x.v);
        const int from = 2 + Below(15), to = 2 + Below(15);
        std::string text = zx.get_str(-from);
        if (Below(3) == 0) {
            std::transform(text.begin(), text.end(), text.begin(), ::tolower);
            text.insert(static_cast<size_t>(Below(static_cast<int>(text.size()) + 1)), " ");
        }
        ASSERT_EQ(ConvertBase(&ctx, from, to, &text), Result::kOk)
            << xs << " " << from << "->" << to;
        EXPECT_EQ(text, xs == "0" ? "" : zx.get_str(-to)) << xs << " " << from << "->" << to;
    }
}

}  // namespace

// The random sizes above stay below the long modular power; a few moduli at
// the shipped threshold reach it (the half-gcd's are in test_gcd.cpp).
TEST_F(Differential, LongModuliAtTheShippedThreshold) {
    const FastThresholds t;
    ThresholdScope scope(t);
    const auto make = [](Num* v, int32_t limbs, Shape shape) {
        SetLimbs(v->Out(), Operand(limbs, shape), false);
    };
    // Moduli of powMontgomery limbs still run on words; one more goes long.
    const int32_t w = t.powMontgomery;
    for (const int32_t n : {w - 1, w, w + 1, w + 2}) {
        for (const bool odd : {true, false}) {
            Num m, a, ex, r;
            make(&m, n, Shape::Random);
            m.v.limbs[0] = static_cast<Limb>(m.v.limbs[0] / 2 * 2 + (odd ? 1 : 0));
            make(&a, n + Below(3) - 1, odd ? Shape::Random : Shape::Nines);
            make(&ex, 20, Shape::Random);
            const mpz_class zm = Gmp(&m.v), za = Gmp(&a.v), ze = Gmp(&ex.v);
            ASSERT_EQ(ModInverse(&ctx, &a.v, &m.v, r.Out()), Result::kOk);
            EXPECT_SAME(r, GmpInverse(za, zm), "inverse modulo " << n << " limbs");
            ASSERT_EQ(ModPow(&ctx, &a.v, &ex.v, r.Out(), &m.v), Result::kOk);
            EXPECT_SAME(r, GmpPowMod(za, ze, zm), "power modulo " << n << " limbs");
            if (GmpInverse(za, zm) == 0) continue;
            ex.v.negative = 1;
            ASSERT_EQ(ModPow(&ctx, &a.v, &ex.v, r.Out(), &m.v), Result::kOk);
            EXPECT_SAME(r, GmpPowMod(za, -ze, zm), "negative power modulo " << n << " limbs");
        }
    }
}
