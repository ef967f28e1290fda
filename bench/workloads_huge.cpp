// The largest values: operands of 10^8 digits and 99999999!, the largest
// factorial the formula language allows (756,570,549 digits). GMP needs
// minutes to parse and print such values, so the 10^8-digit rows compare
// answers by their remainders modulo a few primes and bound the computation
// alone; the factorial is printed whole on both sides, since its goal is our
// whole run. About ten minutes and 3 GB a side; run with --huge.
#include <string>

#include "bench/bench_harness.h"

std::vector<Workload> HugeWorkloads() {
    std::vector<Workload> w;
    const int32_t digits = Scaled(100000000);
    w.push_back(Decimal(
        "mul-1e8", "product of two 10^8-digit numbers", 1.2,
        [=] {
            return Texts{Digits(digits, 1), Digits(digits, 2)};
        },
        1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigMul(c, out[0], in[0], in[1]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_mul(out[0], in[0], in[1]);
            return 0;
        },
        true));
    w.back().goal = Goal::kComputeRatio;
    w.push_back(Decimal(
        "divmod-1e8", "2*10^8-digit / 10^8-digit, quotient and remainder", 1.2,
        [=] {
            return Texts{Digits(2 * digits, 3), Digits(digits, 4)};
        },
        2,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigDivMod(c, in[0], in[1], out[0], out[1]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_tdiv_qr(out[0], out[1], in[0], in[1]);
            return 0;
        },
        true));
    w.back().goal = Goal::kComputeRatio;
    w.push_back(Decimal(
        "sqrt-1e8", "square root of 2*10^8 digits (a root of 10^8 digits)", 1.2,
        [=] { return Texts{Digits(2 * digits, 5)}; }, 1,
        [](CalcContext* c, BigInt* const* in, BigInt* const* out) {
            return BigSqrt(c, in[0], out[0]);
        },
        [](mpz_ptr const* out, mpz_srcptr const* in) {
            mpz_sqrt(out[0], in[0]);
            return 0;
        },
        true));
    w.back().goal = Goal::kComputeRatio;

    const int32_t factN = Scaled(99999999);
    w.push_back(SmallInputs(
        "fact-1e8", "99999999! computed and written as decimal text (goal: seconds, 3000 MB)", 30.0,
        [=](Ours* o, BigInt* v) { return BigFact(&o->ctx, v, o->Int(factN)); },
        [=](mpz_t v) { mpz_fac_ui(v, static_cast<unsigned long>(factN)); }));
    w.back().goal = Goal::kSeconds;
    w.back().maxMb = 3000;
    return w;
}
