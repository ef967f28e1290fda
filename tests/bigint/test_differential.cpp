// Random operands checked against GMP. Seeded: the seed is printed and can be
// given back through the environment variable ORDIX_SEED.
#include <gmp.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <random>
#include <string>

#include "support.h"

namespace {

uint64_t Seed() {
    static const uint64_t seed = [] {
        const char* env = std::getenv("ORDIX_SEED");
        const uint64_t s = env ? std::strtoull(env, nullptr, 10) : std::random_device{}();
        std::cout << "ORDIX_SEED=" << s << " (set it to replay these random tests)\n";
        return s;
    }();
    return seed;
}

// An mpz_t that frees itself.
struct Z {
    mpz_t z;
    Z() { mpz_init(z); }
    explicit Z(const BigInt* v) : Z() {
        for (int32_t i = v->top; i >= 0; --i) {
            mpz_mul_ui(z, z, 10000);
            mpz_add_ui(z, z, static_cast<unsigned long>(v->limbs[i]));
        }
        if (v->negative) mpz_neg(z, z);
    }
    ~Z() { mpz_clear(z); }
    Z(const Z&) = delete;
    Z& operator=(const Z&) = delete;
    std::string Str(int base = 10) const {
        std::string s(mpz_sizeinbase(z, base) + 2, '\0');
        mpz_get_str(&s[0], base, z);
        s.resize(std::strlen(s.c_str()));
        for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
        return s;
    }
};

class Operands {
public:
    explicit Operands(uint64_t seed) : rng_(seed) {}
    int Below(int n) { return static_cast<int>(rng_() % static_cast<uint64_t>(n)); }

    // Decimal text of a random value: random limbs mixed with runs of 0 and
    // of 9999, lengths from one limb to 750, either sign.
    std::string Text(int maxLimbs) {
        const int limbCaps[] = {1, 2, 3, 10, 100, maxLimbs};
        const int limbs = 1 + Below(std::min(maxLimbs, limbCaps[Below(6)]));
        std::string digits;
        int runLeft = 0, runValue = 0;
        for (int i = 0; i < limbs; ++i) {
            if (runLeft == 0 && Below(4) == 0) {
                runLeft = 1 + Below(20);
                runValue = Below(2) ? 9999 : 0;
            }
            const int limb = runLeft > 0 ? (--runLeft, runValue) : Below(10000);
            char buf[8];
            std::snprintf(buf, sizeof buf, "%04d", limb);
            digits += buf;
        }
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
        if (digits != "0" && Below(2)) digits.insert(0, "-");
        return digits;
    }

private:
    std::mt19937_64 rng_;
};

#define EXPECT_SAME(value, expected, what) \
    EXPECT_EQ(::Text(value), (expected).Str()) << (what) << "  ORDIX_SEED=" << Seed()

class Differential : public ::testing::Test {
protected:
    CalcContext ctx;
    Operands gen{Seed()};
};

TEST_F(Differential, AddSubMulDivModGcd) {
    for (int round = 0; round < 1200; ++round) {
        const std::string xs = gen.Text(750), ys = gen.Text(750);
        Num x(xs), y(ys);
        const std::string what = xs + " , " + ys;
        ASSERT_EQ(Text(x), xs) << "text round trip";
        Z zx(&x.v), zy(&y.v), e, e2;
        const Num* pair[2][2] = {{&x, &y}, {&y, &x}};
        const Z* zpair[2][2] = {{&zx, &zy}, {&zy, &zx}};
        for (int order = 0; order < 2; ++order) {
            const BigInt* a = &pair[order][0]->v;
            const BigInt* b = &pair[order][1]->v;
            const mpz_t& za = zpair[order][0]->z;
            const mpz_t& zb = zpair[order][1]->z;
            Num r, q;
            ASSERT_EQ(BigAdd(&r.v, a, b), 0);
            mpz_add(e.z, za, zb);
            EXPECT_SAME(&r.v, e, "add " + what);
            ASSERT_EQ(BigSub(r.Out(), a, b), 0);
            mpz_sub(e.z, za, zb);
            EXPECT_SAME(&r.v, e, "sub " + what);
            ASSERT_EQ(BigMul(&ctx, r.Out(), a, b), 0);
            mpz_mul(e.z, za, zb);
            EXPECT_SAME(&r.v, e, "mul " + what);
            if (mpz_sgn(zb) == 0) continue;
            ASSERT_EQ(BigDivMod(&ctx, a, b, q.Out(), r.Out()), 0);
            mpz_tdiv_qr(e.z, e2.z, za, zb);
            EXPECT_SAME(&q.v, e, "quotient " + what);
            EXPECT_SAME(&r.v, e2, "remainder " + what);
            // Negative dividends answer |m| - |r|, so a multiple gives |m|.
            ASSERT_EQ(BigMod(&ctx, a, b, r.Out()), 0);
            if (mpz_sgn(za) < 0) {
                mpz_abs(e.z, zb);
                mpz_abs(e2.z, e2.z);
                mpz_sub(e2.z, e.z, e2.z);
            }
            EXPECT_SAME(&r.v, e2, "mod " + what);
        }
        Num r, q;
        ASSERT_EQ(BigMul(&ctx, &r.v, &x.v, &x.v), 0);
        mpz_mul(e.z, zx.z, zx.z);
        EXPECT_SAME(&r.v, e, "square " + xs);
        ASSERT_EQ(BigAdd(r.Out(), &x.v, &x.v), 0);
        mpz_add(e.z, zx.z, zx.z);
        EXPECT_SAME(&r.v, e, "double " + xs);
        if (mpz_sgn(zx.z) != 0) {
            ASSERT_EQ(BigDivMod(&ctx, &x.v, &x.v, q.Out(), r.Out()), 0);
            EXPECT_EQ(Text(q) + " " + Text(r), "1 0");
        }
        if (round % 3 == 0 && (mpz_sgn(zx.z) != 0 || mpz_sgn(zy.z) != 0)) {
            ASSERT_EQ(BigGcd(&ctx, &x.v, &y.v, r.Out()), 0) << what;
            if (mpz_sgn(zx.z) == 0 || mpz_cmpabs(zx.z, zy.z) == 0) {
                mpz_set(e.z, zy.z);  // y as it stands, sign included
            } else if (mpz_sgn(zy.z) == 0) {
                mpz_set(e.z, zx.z);
            } else {
                mpz_gcd(e.z, zx.z, zy.z);
            }
            EXPECT_SAME(&r.v, e, "gcd " + what);
        }
    }
}

TEST_F(Differential, PowersAndRoots) {
    for (int round = 0; round < 400; ++round) {
        const std::string xs = gen.Text(round % 4 == 0 ? 750 : 60);
        Num x(xs), r;
        Z zx(&x.v), e, rest;
        const int exponent = gen.Below(25);
        const std::string smallText = xs.substr(0, std::min<size_t>(xs.size(), 40));
        Num small(smallText);
        Z zs(&small.v);
        ASSERT_EQ(BigPowInt(&ctx, &small.v, exponent, &r.v), 0);
        mpz_pow_ui(e.z, zs.z, static_cast<unsigned long>(exponent));
        EXPECT_SAME(&r.v, e, "pow " + smallText + " ^ " + std::to_string(exponent));

        mpz_abs(zs.z, zx.z);
        mpz_sqrtrem(e.z, rest.z, zs.z);
        EXPECT_EQ(BigSqrt(&ctx, &x.v, r.Out()), mpz_sgn(rest.z) == 0 ? 0 : 1) << "sqrt " << xs;
        EXPECT_SAME(&r.v, e, "sqrt " + xs);
        const bool exact = mpz_root(e.z, zx.z, 3) != 0;
        EXPECT_EQ(BigCbrt(&ctx, &x.v, r.Out()), exact ? 0 : 1) << "cbrt " << xs;
        EXPECT_SAME(&r.v, e, "cbrt " + xs);
        // A perfect square and cube must come out exact.
        Num sq, cube;
        BigMul(&ctx, &sq.v, &x.v, &x.v);
        BigMul(&ctx, &cube.v, &sq.v, &x.v);
        EXPECT_EQ(BigSqrt(&ctx, &sq.v, r.Out()), 0) << "sqrt of square " << xs;
        mpz_abs(e.z, zx.z);
        EXPECT_SAME(&r.v, e, "sqrt of square " + xs);
        if (xs.size() < 800) {
            EXPECT_EQ(BigCbrt(&ctx, &cube.v, r.Out()), 0) << "cbrt of cube " << xs;
            EXPECT_SAME(&r.v, zx, "cbrt of cube " + xs);
        }
    }
}

TEST_F(Differential, ModularInverseAndPower) {
    for (int round = 0; round < 500; ++round) {
        std::string ms = gen.Text(round % 5 == 0 ? 750 : 50), as = gen.Text(750);
        ms.erase(0, ms[0] == '-'), as.erase(0, as[0] == '-');
        Num m(ms), a(as), r;
        Z zm(&m.v), za(&a.v), e, zr;
        if (mpz_cmp_ui(zm.z, 1) <= 0) continue;
        mpz_tdiv_r(zr.z, za.z, zm.z);
        if (mpz_sgn(zr.z) == 0) continue;  // a multiple of m: the zero-divisor loop
        const std::string what = as + " mod " + ms;
        ASSERT_EQ(ModInverse(&ctx, &a.v, &m.v, &r.v), 0) << what;
        if (!mpz_invert(e.z, za.z, zm.z)) mpz_set_ui(e.z, 0);
        EXPECT_SAME(&r.v, e, "inverse " + what);

        if (ms.size() > 200) continue;
        std::string es = gen.Text(10);
        Num ex(es);
        Z ze(&ex.v);
        Num base(as.substr(0, 100));
        Z zb(&base.v);
        if (mpz_sgn(ze.z) < 0 && !mpz_invert(e.z, zb.z, zm.z)) continue;
        ASSERT_EQ(ModPow(&ctx, &base.v, &ex.v, r.Out(), &m.v), 0) << what;
        if (mpz_sgn(ze.z) == 0) {
            mpz_set_ui(e.z, 1);
        } else {
            mpz_powm(e.z, zb.z, ze.z, zm.z);
        }
        EXPECT_SAME(&r.v, e, "power " + what + " ^ " + es);
    }
}

TEST_F(Differential, BaseConversion) {
    for (int round = 0; round < 150; ++round) {
        std::string xs = gen.Text(round % 10 == 0 ? 250 : 20);
        xs.erase(0, xs[0] == '-');
        Num x(xs);
        Z zx(&x.v);
        const int from = 2 + gen.Below(15), to = 2 + gen.Below(15);
        std::string text = zx.Str(from);
        if (gen.Below(3) == 0) {
            std::transform(text.begin(), text.end(), text.begin(), ::tolower);
            text.insert(static_cast<size_t>(gen.Below(static_cast<int>(text.size()) + 1)), " ");
        }
        ASSERT_EQ(ConvertBase(&ctx, from, to, &text), 0) << xs << " " << from << "->" << to;
        EXPECT_EQ(text, xs == "0" ? "" : zx.Str(to)) << xs << " " << from << "->" << to
                                                     << "  ORDIX_SEED=" << Seed();
    }
}

}  // namespace
