// The range product (c + 1) × … × n = n! / c! and the binomial coefficient
// C(n, k) = n! / (k! (n - k)!) from their prime factorisations.
//
// The exponent of a prime p is v(n) − v(c) with v(m) = Σ floor(m / p^i)
// (Legendre). Writing every exponent in binary, the product is
//   Π_b (A_b)^(2^b),  A_b = product of the primes whose exponent has bit b,
// formed from the top bit down by one squaring and one product per bit. The
// large work is a few squarings of the growing result instead of products
// at every level of a tree over all the factors, and the A_b are products
// of primes only (about n / ln n factors, not n − c).
//
// Allocation: the primes, exponents and chosen factors live in std::vector;
// both entries run under CatchNoMemory, so a vector that cannot grow answers
// code 3, the records being scoped.
#include <vector>

#include "bigint/fast_paths.h"
#include "bigint/poll_clock.h"
#include "bigint/thresholds.h"

namespace {

// Primes up to n (n >= 2) by a sieve over odd numbers; false when stopped.
bool Primes(PollClock& clk, int32_t n, std::vector<uint32_t>* primes) {
    if (n < 2) return true;
    primes->push_back(2);
    std::vector<bool> composite(size_t(n) / 2 + 1, false);  // index i stands for 2i + 1
    for (int64_t i = 1; 2 * i + 1 <= n; ++i) {
        if ((i & 0xFFFF) == 0 && clk.Tick(0x10000)) return false;
        if (composite[size_t(i)]) continue;
        const int64_t p = 2 * i + 1;
        primes->push_back(uint32_t(p));
        for (int64_t q = p * p; q <= n; q += 2 * p) composite[size_t(q / 2)] = true;
    }
    return true;
}

int32_t Legendre(int32_t m, uint32_t p) {
    int32_t e = 0;
    for (int64_t q = p; q <= m; q *= p) e += int32_t(m / q);
    return e;
}

// Product of f[lo..hi) by a balanced tree; leaves multiply factors (each
// below 10^8) into a limb array one at a time.
Result ListProduct(CalcContext* ctx, PollClock& clk, const std::vector<uint32_t>& f, size_t lo,
                   size_t hi, BigInt* v) {
    if (hi - lo <= size_t(gFastThresholds.productTree)) {
        LimbBuffer work(2 * int64_t(hi - lo) + 2, true);
        if (!work.ok()) return Result::kNoMemory;
        Limb* a = work.get();
        a[0] = 1;
        int32_t len = 1;
        for (size_t k = lo; k < hi; ++k) {
            uint64_t carry = 0;
            for (int32_t i = 0; i < len; ++i) {
                const uint64_t t = uint64_t(a[i]) * f[k] + carry;
                carry = t / kLimbBase;
                a[i] = static_cast<Limb>(t - carry * kLimbBase);
            }
            while (carry != 0) {
                a[len++] = static_cast<Limb>(carry % kLimbBase);
                carry /= kLimbBase;
            }
        }
        if (clk.Tick(int64_t(hi - lo) * len)) return Result::kStopped;
        return BigFromLimbs(v, a, len - 1, 0);
    }
    const size_t mid = lo + (hi - lo) / 2;
    BigTemp left, right;
    Result code = ListProduct(ctx, clk, f, lo, mid, &left.v);
    if (Ok(code)) code = ListProduct(ctx, clk, f, mid, hi, &right.v);
    return !Ok(code) ? code : FastMul(ctx, v, &left.v, &right.v);
}

// Π p^e over the primes by the binary exponent scheme above.
Result PrimePowerProduct(CalcContext* ctx, PollClock& clk, const std::vector<uint32_t>& primes,
                         const std::vector<int32_t>& exponent, BigInt* result) {
    int32_t maxExponent = 0;
    for (const int32_t e : exponent) maxExponent = e > maxExponent ? e : maxExponent;
    int top = 0;
    while ((maxExponent >> (top + 1)) != 0) ++top;
    BigTemp acc;
    Result code = BigFromInt(&acc.v, 1);
    std::vector<uint32_t> chosen;
    for (int b = top; Ok(code) && b >= 0; --b) {
        chosen.clear();
        for (size_t i = 0; i < primes.size(); ++i) {
            if ((exponent[i] >> b) & 1) chosen.push_back(primes[i]);
        }
        BigTemp sq, part, next;
        code = FastMul(ctx, &sq.v, &acc.v, &acc.v);
        if (Ok(code) && !chosen.empty()) {
            code = ListProduct(ctx, clk, chosen, 0, chosen.size(), &part.v);
            if (Ok(code)) code = FastMul(ctx, &next.v, &sq.v, &part.v);
            if (Ok(code)) BigReplace(&sq.v, &next.v);
        }
        if (Ok(code)) BigReplace(&acc.v, &sq.v);
    }
    if (Ok(code)) BigMove(result, &acc.v);
    return code;
}

// The product of p^exponent(p) over the primes p <= n.
template <class Exponent>
Result ProductOverPrimes(CalcContext* ctx, int32_t n, Exponent exponent, BigInt* result) {
    return CatchNoMemory([&] {
        PollClock clk(ctx);
        std::vector<uint32_t> primes;
        if (!Primes(clk, n, &primes)) return Result::kStopped;
        std::vector<int32_t> e(primes.size());
        for (size_t i = 0; i < primes.size(); ++i) e[i] = exponent(primes[i]);
        return PrimePowerProduct(ctx, clk, primes, e, result);
    });
}

}  // namespace

Result RangeProductPrimes(CalcContext* ctx, int32_t c, int32_t n, BigInt* result) {
    return ProductOverPrimes(
        ctx, n, [=](uint32_t p) { return Legendre(n, p) - Legendre(c, p); }, result);
}

// The exponent of p in C(n, k) is the number of carries when k and n - k are
// added in base p (Kummer), so it never exceeds log_p n: the product is
// mostly one list product of the primes that divide it, with no factorial
// of the full size and no division.
Result BinomialPrimes(CalcContext* ctx, int32_t n, int32_t k, BigInt* result) {
    return ProductOverPrimes(
        ctx, n, [=](uint32_t p) { return Legendre(n, p) - Legendre(k, p) - Legendre(n - k, p); },
        result);
}
