// The range product (c + 1) × … × n = n! / c! and the binomial coefficient
// C(n, k) = n! / (k! (n - k)!) from their prime factorisations.
//
// The exponent of a prime p is v(n) − v(c) with v(m) = Σ floor(m / p^i)
// (Legendre). A prime with exponent 1, and a prime at most √n whose power
// stays below the word bound of the list products, enters one list as p^e;
// every other exponent is written in binary, and the product is
//   L · Π_b (A_b)^(2^b),  A_b = product of the primes whose exponent has bit b,
// formed from the top bit down by one squaring and one product per bit. For
// C(n, k) every p^e is at most n (the exponent counts the carries of
// k + (n − k) in base p, Kummer), so the whole coefficient is one list
// product of about n / ln n words and no squaring. For n! the primes above
// n / 2 have exponent 1, those in (n / 3, n / 2] exponent 2, …: the large
// groups are squared instead of multiplied out.
//
// The primes come from a sieve over odd numbers in segments of 2^15 bytes
// (one byte per odd number), which stays in the first-level cache; each
// segment starts from a pattern of the multiples of 3 … 13, the base primes
// from 17 to √n are sieved first, and the flags are read eight at a time.
//
// Allocation: the primes, exponents and lists live in std::vector; both
// entries run under CatchNoMemory, so a vector that cannot grow answers
// code 3, the records being scoped.
#include <cmath>
#include <cstring>
#include <vector>

#include "bigint/fast_paths.h"
#include "bigint/poll_clock.h"
#include "bigint/product_list.h"
#include "bigint/thresholds.h"

namespace {

constexpr int64_t kSegment = 1 << 15;  // odd numbers per segment

int64_t FloorSqrt(int64_t n) {
    auto r = int64_t(std::sqrt(double(n)));
    while (r * r > n) --r;
    while ((r + 1) * (r + 1) <= n) ++r;
    return r;
}

// Odd multiples of 3, 5, 7, 11 and 13 repeat every 15015 odd numbers: a
// segment starts as a copy of that pattern and is sieved from 17 on.
constexpr int64_t kWheel = 3 * 5 * 7 * 11 * 13;
constexpr uint32_t kWheelPrimes[] = {3, 5, 7, 11, 13};

// Primes up to n in increasing order; false when stopped.
bool Primes(PollClock& clk, int32_t n, std::vector<uint32_t>* primes) {
    if (n < 2) return true;
    primes->reserve(size_t(1.26 * n / std::log(double(n)) + 16));
    primes->push_back(2);
    for (const uint32_t p : kWheelPrimes) {
        if (p <= uint32_t(n)) primes->push_back(p);
    }
    // Odd base primes from 17 up to √n, by the plain sieve (index i stands for 2i + 1).
    const int64_t root = FloorSqrt(n);
    std::vector<uint8_t> small(size_t(root / 2 + 1), 0);
    std::vector<uint32_t> base;
    for (int64_t i = 1; 2 * i + 1 <= root; ++i) {
        if (small[size_t(i)]) continue;
        const int64_t p = 2 * i + 1;
        if (p > 13) base.push_back(uint32_t(p));
        for (int64_t q = p * p; q <= root; q += 2 * p) small[size_t(q / 2)] = 1;
    }
    std::vector<uint8_t> wheel(size_t(kWheel + kSegment), 0);
    for (const uint32_t p : kWheelPrimes) {
        for (size_t at = p / 2; at < wheel.size(); at += p) wheel[at] = 1;
    }
    std::vector<uint8_t> seg(static_cast<size_t>(kSegment) + 8);
    // A segment holds the odd numbers low, low + 2, … below low + 2·kSegment.
    for (int64_t low = 1; low <= n; low += 2 * kSegment) {
        const int64_t count = std::min(kSegment, (n - low) / 2 + 1);
        std::memcpy(seg.data(), wheel.data() + (low / 2) % kWheel, size_t(count));
        std::memset(seg.data() + count, 1, 8);  // stops the word scan below
        const int64_t high = low + 2 * (count - 1);
        for (const uint32_t p : base) {
            const int64_t pp = int64_t(p) * p;
            if (pp > high) break;
            int64_t q = pp >= low ? pp : ((low + p - 1) / p) * p;
            if (q % 2 == 0) q += p;
            for (int64_t at = (q - low) / 2; at < count; at += p) seg[size_t(at)] = 1;
        }
        if (low == 1) seg[0] = 1;  // 1 is not a prime
        // Eight flags at a time: the primes are the zero bytes.
        for (int64_t i = 0; i < count; i += 8) {
            uint64_t w;
            std::memcpy(&w, seg.data() + i, 8);
            for (uint64_t z = ~w & 0x0101010101010101ull; z != 0; z &= z - 1) {
                const int64_t at = i + __builtin_ctzll(z) / 8;
                primes->push_back(uint32_t(low + 2 * at));
            }
        }
        if (clk.Tick(count)) return false;
    }
    return true;
}

int32_t Legendre(int32_t m, uint32_t p) {
    int32_t e = 0;
    for (int64_t q = p; q <= m; q *= p) e += int32_t(m / q);
    return e;
}

template <class T>
class VectorList : public FactorList {
public:
    explicit VectorList(const std::vector<T>& v) : v_(v) {}
    size_t Count() const override { return v_.size(); }
    uint64_t At(size_t i) const override { return v_[i]; }

private:
    const std::vector<T>& v_;
};

// p^e when it stays below the word bound, else 0.
uint64_t SmallPower(uint32_t p, int32_t e) {
    uint64_t r = 1;
    for (int32_t i = 0; i < e; ++i) {
        if (r > (kFactorWordBound - 1) / p) return 0;
        r *= p;
    }
    return r;
}

// Primes a pass over the lists handles between ticks, and the units of a
// tick: the passes (exponents by Legendre's sums, the groups chosen by a
// bit) take tens of ms over the 5.8 million primes below 10^8.
constexpr size_t kPrimeSlice = size_t(1) << 16;
constexpr int64_t kPrimeUnits = 32;

bool TickPrimes(PollClock& clk, size_t i) {
    return (i + 1) % kPrimeSlice == 0 && clk.Tick(kPrimeUnits * int64_t(kPrimeSlice));
}

// Π p^e over the primes, as the list L and the squared groups A_b above.
Result PrimePowerProduct(PollClock& clk, int32_t n, std::vector<uint32_t>* primes,
                         std::vector<int32_t>* exponent, BigInt* result) {
    const int64_t root = FloorSqrt(n);
    std::vector<uint64_t> whole;
    int32_t binary = 0;  // or of the exponents written in binary
    // What goes to the list leaves the exponents: the rest are the bits >= 1.
    for (size_t i = 0; i < primes->size(); ++i) {
        const uint32_t p = (*primes)[i];
        int32_t& e = (*exponent)[i];
        if (e == 0) continue;
        const uint64_t power = e == 1 || p <= root ? SmallPower(p, e) : 0;
        if (power != 0) {
            whole.push_back(power);
            e = 0;
        } else {
            if (e & 1) whole.push_back(p);
            e &= ~1;
            binary |= e;
        }
        if (TickPrimes(clk, i)) return Result::kStopped;
    }
    int top = 0;
    while ((binary >> (top + 1)) != 0) ++top;
    BigTemp acc;
    Result code = Result::kOk;
    bool one = true;  // acc stands for 1 until the first group
    std::vector<uint32_t> chosen;
    for (int b = top; Ok(code) && b >= 1; --b) {
        chosen.clear();
        for (size_t i = 0; Ok(code) && i < primes->size(); ++i) {
            if (((*exponent)[i] >> b) & 1) chosen.push_back((*primes)[i]);
            if (TickPrimes(clk, i)) code = Result::kStopped;
        }
        if (!Ok(code)) break;
        BigTemp part;
        code = ListProduct(clk, VectorList<uint32_t>(chosen), &part.v);
        if (!Ok(code)) break;
        if (one) {
            BigMove(&acc.v, &part.v);
            one = false;
            continue;
        }
        BigTemp next;
        code = SquareTimes(clk, &acc.v, &part.v, &next.v);
        if (Ok(code)) BigReplace(&acc.v, &next.v);
    }
    // Only the list and acc are needed from here on.
    std::vector<uint32_t>().swap(chosen);
    std::vector<uint32_t>().swap(*primes);
    std::vector<int32_t>().swap(*exponent);
    if (!Ok(code)) return code;
    BigTemp part;
    code = ListProduct(clk, VectorList<uint64_t>(whole), &part.v);
    std::vector<uint64_t>().swap(whole);
    if (!Ok(code)) return code;
    if (one) {
        BigMove(result, &part.v);
        return Result::kOk;
    }
    return SquareTimes(clk, &acc.v, &part.v, result);
}

// The product of p^exponent(p) over the primes p <= n.
template <class Exponent>
Result ProductOverPrimes(CalcContext* ctx, int32_t n, Exponent exponent, BigInt* result) {
    return CatchNoMemory([&] {
        PollClock clk(ctx);
        std::vector<uint32_t> primes;
        if (!Primes(clk, n, &primes)) return Result::kStopped;
        std::vector<int32_t> e(primes.size());
        for (size_t i = 0; i < primes.size(); ++i) {
            e[i] = exponent(primes[i]);
            if (TickPrimes(clk, i)) return Result::kStopped;
        }
        if (clk.Tick(int64_t(primes.size() % kPrimeSlice))) return Result::kStopped;
        return PrimePowerProduct(clk, n, &primes, &e, result);
    });
}

}  // namespace

Result RangeProductPrimes(CalcContext* ctx, int32_t c, int32_t n, BigInt* result) {
    return ProductOverPrimes(
        ctx, n, [=](uint32_t p) { return Legendre(n, p) - Legendre(c, p); }, result);
}

Result BinomialPrimes(CalcContext* ctx, int32_t n, int32_t k, BigInt* result) {
    return ProductOverPrimes(
        ctx, n, [=](uint32_t p) { return Legendre(n, p) - Legendre(k, p) - Legendre(n - k, p); },
        result);
}
