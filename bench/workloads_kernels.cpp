// The arithmetic called in process, each row beside GMP's nearest call.
#include <algorithm>
#include <string>

#include "bench/bench_harness.h"

std::vector<Workload> KernelWorkloads() {
    std::vector<Workload> w;
    const int32_t mulDigits = Scaled(1000000);
    w.push_back(Decimal(
        "mul", "1M-digit product", 0.35,
        [=] {
            return Texts{Digits(mulDigits, 1), Digits(mulDigits, 2)};
        },
        1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigMul(c, out[0], in[0], in[1]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_mul(out[0], in[0], in[1]);
            return 0;
        }));
    const int32_t powE = Scaled(2000000);
    w.push_back(SmallInputs(
        "pow", "3^2000000", 0.7,
        [=](Ours* o, BigInt* v) { return BigPowInt(&o->ctx, o->Int(3), powE, v); },
        [=](mpz_t v) { mpz_ui_pow_ui(v, 3, powE); }));
    const int32_t factN = Scaled(200000);
    w.push_back(SmallInputs(
        "fact", "200000!", 1.0,
        [=](Ours* o, BigInt* v) { return BigFact(&o->ctx, v, o->Int(factN)); },
        [=](mpz_t v) { mpz_fac_ui(v, factN); }));
    const int32_t divX = Scaled(2000000), divD = Scaled(1000000);
    w.push_back(Decimal(
        "divmod", "2M-digit / 1M-digit, quotient and remainder", 0.8,
        [=] {
            return Texts{Digits(divX, 3), Digits(divD, 4)};
        },
        2,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigDivMod(c, in[0], in[1], out[0], out[1]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_tdiv_qr(out[0], out[1], in[0], in[1]);
            return 0;
        }));
    const int32_t sqrtDigits = Scaled(2000000);
    // A root of a number of the given digits, ours beside GMP's.
    auto root = [=](const char* name, const char* what, double target, int32_t digits,
                    Result (*ours)(CalcContext*, const BigInt*, BigInt*), unsigned long degree) {
        return Decimal(
            name, what, target, [=] { return Texts{Digits(digits, 5)}; }, 1,
            [=](CalcContext* c, BigInt* const* in, BigInt* const* out) {
                return ours(c, in[0], out[0]);
            },
            [=](mpz_ptr const* out, mpz_srcptr const* in) {
                return mpz_root(out[0], in[0], degree) ? 0 : 1;
            });
    };
    w.push_back(root("sqrt", "square root of 2M digits", 0.8, sqrtDigits, BigSqrt, 2));
    // The cube root's goal bounds the computation alone: both sides' text
    // handling would hide it.
    w.push_back(root("cbrt", "cube root of 4M digits (goal: computation alone)", 1.5,
                     Scaled(4000000), BigCbrt, 3));
    w.back().goal = Goal::kComputeRatio;
    const int32_t binN = Scaled(1000000);
    w.push_back(SmallInputs(
        "binomial", "binomial(1000000, 500000)", 1.0,
        [=](Ours* o, BigInt* v) { return BigBinomial(&o->ctx, v, o->Int(binN), o->Int(binN / 2)); },
        [=](mpz_t v) { mpz_bin_uiui(v, binN, binN / 2); }));
    const int32_t gcdDigits = Scaled(200000);
    auto gcdInputs = [=] { return GcdInputs(gcdDigits); };
    w.push_back(Decimal(
        "gcd", "gcd of two 200000-digit numbers", 1.5, gcdInputs, 1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigGcd(c, in[0], in[1], out[0]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_gcd(out[0], in[0], in[1]);
            return 0;
        }));
    // An inverse modulo an odd 200000-digit number: a's common factors
    // with the modulus divided out of it, so that the inverse exists.
    const int32_t invDigits = Scaled(200000);
    auto modinvInputs = [=] {
        mpz_t a, m, g;
        mpz_inits(a, m, g, nullptr);
        mpz_set_str(m, Digits(invDigits, 12).c_str(), 10);
        mpz_setbit(m, 0);
        mpz_set_str(a, Digits(invDigits, 13).c_str(), 10);
        for (mpz_gcd(g, a, m); mpz_cmp_ui(g, 1) != 0; mpz_gcd(g, a, m)) mpz_divexact(a, a, g);
        Texts texts{MpzText(a), MpzText(m)};
        mpz_clears(a, m, g, nullptr);
        return texts;
    };
    w.push_back(Decimal(
        "modinv", "inverse modulo a 200000-digit number", 8.0, modinvInputs, 1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return ModInverse(c, in[0], in[1], out[0]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            return mpz_invert(out[0], in[0], in[1]) ? 0 : 1;
        }));
    // 3^(10^1000) modulo a number of the given digits.
    const std::string expText = "1" + std::string(Scaled(1000), '0');
    auto powmod = [=](const char* name, const char* what, double target, int32_t modDigits) {
        return Decimal(
            name, what, target,
            [=] {
                return Texts{"3", expText, Digits(modDigits, 9)};
            },
            1,
            [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
                return ModPow(c, in[0], in[1], out[0], in[2]);
            },
            [](mpz_ptr const* out, mpz_srcptr const* in) {
                mpz_powm(out[0], in[0], in[1], in[2]);
                return 0;
            });
    };
    w.push_back(
        powmod("powmod", "3^(10^1000) mod a 1000-digit number (ModPow)", 1.0, Scaled(1000)));
    w.push_back(powmod("powmod20k", "3^(10^1000) mod a 20000-digit number", 1.2, Scaled(20000)));
    const int32_t radixDigits = Scaled(300000);
    w.push_back({"base16", "300000 decimal digits to base 16", 1.0,
                 [=] {
                     Report r;
                     Ours o;
                     auto t0 = Clock::now();
                     std::string s = Digits(radixDigits, 10);
                     TIMED(r, compute, r.code = ConvertBase(&o.ctx, 10, 16, &s));
                     r.hash = Fnv(s.data(), s.size());
                     r.total = Seconds(t0, Clock::now());
                     return r;
                 },
                 [=] {
                     Report r;
                     mpz_t x;
                     mpz_init(x);
                     auto t0 = Clock::now();
                     const std::string s = Digits(radixDigits, 10);
                     TIMED(r, compute, {
                         mpz_set_str(x, s.c_str(), 10);
                         r.hash = PrintMpz(x, 1469598103934665603ull, 16);
                     });
                     r.total = Seconds(t0, Clock::now());
                     mpz_clear(x);
                     return r;
                 }});
    // F(200000) as the calculator's recursion computes it: A=0, B=1 and the
    // steps A=B, B=A+B (all right sides from the current values), against
    // GMP's bare addition loop.
    const int32_t fibN = Scaled(200000);
    w.push_back({"fib-rec", "F(200000) by 199999 recursion steps", 2.0,
                 [=] {
                     Report r;
                     GapContext ctx;
                     auto t0 = Clock::now();
                     CalcModel model(&ctx);
                     r.code = model.Calculate(1, "0");
                     if (r.code == 0) r.code = model.Calculate(2, "1");
                     if (r.code == 0) r.code = model.EnterStep("B=A+B");
                     if (r.code == 0) r.code = model.EnterStep("A=B");
                     TIMED(r, compute, if (r.code == 0) r.code = model.ManySteps(fibN - 1));
                     if (const NumberValue* b = model.Variable(2))
                         r.hash = Ours::Print(&b->numerator);
                     r.total = Seconds(t0, Clock::now());
                     return r;
                 },
                 [=] { return GmpFibonacci(fibN); }});
    // The addition loop alone, without the calculation language around it.
    w.push_back({"fib-add", "F(200000) by an addition loop (no formula language)", 2.0,
                 [=] {
                     Report r;
                     Ours o;
                     auto t0 = Clock::now();
                     BigInt a{}, b{};
                     r.code = BigFromInt(&a, 0);
                     if (r.code == 0) r.code = BigFromInt(&b, 1);
                     TIMED(r, compute, {
                         for (int32_t i = 1; i < fibN && r.code == 0; ++i) {
                             BigInt c{};
                             r.code = BigAdd(&c, &a, &b);
                             BigFree(&a);
                             a = b;
                             b = c;
                         }
                     });
                     r.hash = Ours::Print(&b);
                     r.total = Seconds(t0, Clock::now());
                     BigFree(&a);
                     BigFree(&b);
                     return r;
                 },
                 [=] { return GmpFibonacci(fibN); }});
    return w;
}
