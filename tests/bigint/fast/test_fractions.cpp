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

// An mpq that frees itself, canonical when read from a fraction.
struct Q {
    mpq_t q;
    Q() { mpq_init(q); }
    explicit Q(const Frac& f) : Q() {
        ToMpz(mpq_numref(q), &f.n.v);
        ToMpz(mpq_denref(q), &f.d.v);
        mpq_canonicalize(q);
    }
    ~Q() { mpq_clear(q); }
};

// f = want, by cross-multiplication.
::testing::AssertionResult SameValue(const Frac& f, const Q& want) {
    Q got;  // numerator and denominator as they stand
    ToMpz(mpq_numref(got.q), &f.n.v);
    ToMpz(mpq_denref(got.q), &f.d.v);
    if (mpz_sgn(mpq_denref(got.q)) == 0) return ::testing::AssertionFailure() << "denominator 0";
    mpz_mul(mpq_numref(got.q), mpq_numref(got.q), mpq_denref(want.q));
    mpz_mul(mpq_denref(got.q), mpq_denref(got.q), mpq_numref(want.q));
    if (mpz_cmp(mpq_numref(got.q), mpq_denref(got.q)) == 0) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << f.Str();
}

// x/g and y/g as text.
std::string Divided(const mpz_t x, const mpz_t y, const mpz_t g) {
    mpz_t n, d;
    mpz_inits(n, d, nullptr);
    mpz_divexact(n, x, g);
    mpz_divexact(d, y, g);
    std::string s = MpzDecimal(n) + "/" + MpzDecimal(d);
    mpz_clears(n, d, nullptr);
    return s;
}

}  // namespace

TEST(Fractions, FourOperationsAgainstRationals) {
    using Op = Result (*)(CalcContext*, BigInt*, BigInt*, const BigInt*, const BigInt*,
                          const BigInt*, const BigInt*);
    const Op ops[] = {FracAdd, FracSub, FracMul, FracDiv};
    void (*const oracle[])(mpq_ptr, mpq_srcptr, mpq_srcptr) = {mpq_add, mpq_sub, mpq_mul, mpq_div};
    CalcContext ctx;
    for (int round = 0; round < 400; ++round) {
        Frac x, y, r;
        RandomFrac(&x);
        RandomFrac(&y);
        const Q a(x), b(y);
        const bool whole = Text(x.d) == "1" && Text(y.d) == "1";
        for (int k = 0; k < 4; ++k) {
            const std::string what = x.Str() + " " + "+-*/"[k] + " " + y.Str();
            const Result rc = ops[k](&ctx, r.n.Out(), r.d.Out(), &x.n.v, &x.d.v, &y.n.v, &y.d.v);
            if (k == 3 && mpq_sgn(b.q) == 0) {
                EXPECT_EQ(rc, Result::kDivisionByZero) << what;
                EXPECT_EQ(r.Str(), "0/1") << what;
                continue;
            }
            ASSERT_EQ(rc, Result::kOk) << what;
            Q want;
            oracle[k](want.q, a.q, b.q);
            EXPECT_TRUE(SameValue(r, want)) << what;
            if (!whole) continue;
            // Whole operands give a whole result, except an inexact quotient:
            // reduced, each part keeping its operand's sign (3 / -2 = 3/-2).
            if (mpz_cmp_ui(mpq_denref(want.q), 1) == 0) {
                EXPECT_EQ(Text(r.d), "1") << what;
                continue;
            }
            mpz_gcd(mpq_numref(want.q), mpq_numref(a.q), mpq_numref(b.q));
            EXPECT_EQ(r.Str(), Divided(mpq_numref(a.q), mpq_numref(b.q), mpq_numref(want.q)))
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
        mpz_t x, y, g;
        mpz_inits(x, y, g, nullptr);
        ToMpz(x, &f.n.v);
        ToMpz(y, &f.d.v);
        // The gcd of 0 and y, and of y and -y, is y as it stands.
        mpz_sgn(x) == 0 || mpz_cmpabs(x, y) == 0 ? mpz_set(g, y) : mpz_gcd(g, x, y);
        const Result rc = FracReduce(&ctx, &f.n.v, &f.d.v, r.n.Out(), r.d.Out());
        EXPECT_EQ(rc, mpz_cmp_ui(g, 1) == 0 ? kFracCoprime : Result::kOk) << f.Str();
        EXPECT_EQ(r.Str(), Divided(x, y, g)) << f.Str();
        mpz_clears(x, y, g, nullptr);
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
        Q base(x), want;
        const Result rc = FracPow(&ctx, r.n.Out(), r.d.Out(), &x.n.v, &x.d.v, &ex.v);
        if (e < 0 && mpq_sgn(base.q) == 0) {
            EXPECT_EQ(rc, Result::kDivisionByZero) << what;
            continue;
        }
        ASSERT_EQ(rc, Result::kOk) << what;
        if (e < 0) mpq_inv(base.q, base.q);
        mpz_pow_ui(mpq_numref(want.q), mpq_numref(base.q), static_cast<unsigned long>(std::abs(e)));
        mpz_pow_ui(mpq_denref(want.q), mpq_denref(base.q), static_cast<unsigned long>(std::abs(e)));
        EXPECT_TRUE(SameValue(r, want)) << what;
        if (Text(x.d) == "1" && e >= 0) {
            EXPECT_EQ(Text(r.d), "1") << what;
        }
    }
}
