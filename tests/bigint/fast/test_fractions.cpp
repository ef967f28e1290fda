// Fractions against GMP's rationals: unreduced results by cross-multiplication,
// the whole-number and reduced ones exactly. Denominators are never -1, which
// counts as whole with its sign ignored.
#include <gtest/gtest.h>

#include "fast_support.h"

using namespace fasttest;

namespace {

// Sizes around nothing, the Karatsuba threshold (80) and the transform's (150);
// an eighth of the numerators zero.
void RandomInt(Num* v, bool nonZero) {
    const int32_t sizes[] = {1, 1, 2, 3, 40, 79, 81, 149, 152, 200};
    if (!nonZero && Rng()() % 8 == 0) return FromDecimal(v->Out(), "0");
    SetLimbs(v->Out(), Operand(sizes[Rng()() % 10], kShapes[Rng()() % 4]), Rng()() % 2);
    if (nonZero && BigIsOne(&v->v)) v->v.negative = 0;
}

struct Frac {
    Num n, d;
    std::string Str() const { return Text(n) + "/" + Text(d); }
};

// A third of them whole.
void RandomFrac(Frac* f) {
    RandomInt(&f->n, false);
    Rng()() % 3 == 0 ? FromDecimal(f->d.Out(), "1") : RandomInt(&f->d, true);
}

// The fraction's value, canonical.
mpq_class Value(const Frac& f) {
    mpq_class q(Gmp(&f.n.v), Gmp(&f.d.v));
    q.canonicalize();
    return q;
}

// f = want, by cross-multiplication.
::testing::AssertionResult SameValue(const Frac& f, const mpq_class& want) {
    const mpz_class n = Gmp(&f.n.v), d = Gmp(&f.d.v);
    if (d == 0) return ::testing::AssertionFailure() << "denominator 0";
    if (n * want.get_den() == d * want.get_num()) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << f.Str();
}

// x/g and y/g as text.
std::string Divided(const mpz_class& x, const mpz_class& y, const mpz_class& g) {
    return mpz_class(x / g).get_str() + "/" + mpz_class(y / g).get_str();
}

}  // namespace

TEST(Fractions, FourOperationsAgainstRationals) {
    using Op = Result (*)(CalcContext*, BigInt*, BigInt*, const BigInt*, const BigInt*,
                          const BigInt*, const BigInt*);
    const Op ops[] = {FracAdd, FracSub, FracMul, FracDiv};
    CalcContext ctx;
    for (int round = 0; round < 400; ++round) {
        Frac x, y, r;
        RandomFrac(&x);
        RandomFrac(&y);
        const mpq_class a = Value(x), b = Value(y);
        const bool whole = Text(x.d) == "1" && Text(y.d) == "1";
        for (int k = 0; k < 4; ++k) {
            const std::string what = x.Str() + " " + "+-*/"[k] + " " + y.Str();
            const Result rc = ops[k](&ctx, r.n.Out(), r.d.Out(), &x.n.v, &x.d.v, &y.n.v, &y.d.v);
            if (k == 3 && b == 0) {
                EXPECT_EQ(rc, Result::kDivisionByZero) << what;
                EXPECT_EQ(r.Str(), "0/1") << what;
                continue;
            }
            ASSERT_EQ(rc, Result::kOk) << what;
            const mpq_class want = k == 0   ? mpq_class(a + b)
                                   : k == 1 ? mpq_class(a - b)
                                   : k == 2 ? mpq_class(a * b)
                                            : mpq_class(a / b);
            EXPECT_TRUE(SameValue(r, want)) << what;
            if (!whole) continue;
            // Whole operands give a whole result, except an inexact quotient:
            // reduced, each part keeping its operand's sign (3 / -2 = 3/-2).
            EXPECT_EQ(r.Str(), want.get_den() == 1 ? want.get_num().get_str() + "/1"
                                                   : Divided(a.get_num(), b.get_num(),
                                                             gcd(a.get_num(), b.get_num())))
                << what;
        }
    }
}

TEST(Fractions, ReduceDividesByTheGcd) {
    CalcContext ctx;
    for (int round = 0; round < 300; ++round) {
        Frac f, r;
        RandomInt(&f.n, false);
        RandomInt(&f.d, true);
        if (round % 2 == 0) {  // a common factor, now and then of many limbs
            Num g;
            RandomInt(&g, true);
            ASSERT_EQ(BigMul(&ctx, r.n.Out(), &f.n.v, &g.v), Result::kOk);
            ASSERT_EQ(BigMul(&ctx, r.d.Out(), &f.d.v, &g.v), Result::kOk);
            std::swap(f.n.v, r.n.v);
            std::swap(f.d.v, r.d.v);
        }
        const mpz_class x = Gmp(&f.n.v), y = Gmp(&f.d.v);
        // The gcd of 0 and y, and of y and -y, is y as it stands.
        const mpz_class g = x == 0 || abs(x) == abs(y) ? y : mpz_class(gcd(x, y));
        const Result rc = FracReduce(&ctx, &f.n.v, &f.d.v, r.n.Out(), r.d.Out());
        EXPECT_EQ(rc, g == 1 ? kFracCoprime : Result::kOk) << f.Str();
        EXPECT_EQ(r.Str(), Divided(x, y, g)) << f.Str();
    }
}

TEST(Fractions, PowersWithEitherSignOfExponent) {
    CalcContext ctx;
    for (int round = 0; round < 300; ++round) {
        Frac x, r;
        RandomFrac(&x);
        int e = int(Rng()() % 13) - 6;
        if (round % 10 == 0) {  // a short base to a long power
            SetLimbs(x.n.Out(), Operand(1, Shape::Random), Rng()() % 2);
            FromDecimal(x.d.Out(), round % 20 == 0 ? "1" : "-3");
            e *= 60;
        }
        const Num ex(std::to_string(e));
        const std::string what = x.Str() + " ^ " + Text(ex);
        mpq_class base = Value(x), want;
        const Result rc = FracPow(&ctx, r.n.Out(), r.d.Out(), &x.n.v, &x.d.v, &ex.v);
        if (e < 0 && base == 0) {
            EXPECT_EQ(rc, Result::kDivisionByZero) << what;
            continue;
        }
        ASSERT_EQ(rc, Result::kOk) << what;
        if (e < 0) base = 1 / base;
        mpz_pow_ui(want.get_num_mpz_t(), base.get_num_mpz_t(),
                   static_cast<unsigned long>(std::abs(e)));
        mpz_pow_ui(want.get_den_mpz_t(), base.get_den_mpz_t(),
                   static_cast<unsigned long>(std::abs(e)));
        EXPECT_TRUE(SameValue(r, want)) << what;
        if (Text(x.d) == "1" && e >= 0) {
            EXPECT_EQ(Text(r.d), "1") << what;
        }
    }
}
