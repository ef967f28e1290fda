#include "lists/prime_table.h"

#include <cmath>

namespace {

// An upper bound of the count-th prime (Rosser: p_n < n (ln n + ln ln n) for n >= 6).
uint32_t PrimeBound(uint32_t count) {
    if (count < 6) return 15;
    double n = count;
    return static_cast<uint32_t>(n * (std::log(n) + std::log(std::log(n)))) + 1;
}

}  // namespace

std::vector<uint32_t> BuildPrimeTable(uint32_t count) {
    std::vector<uint32_t> primes;
    if (count == 0) return primes;
    primes.reserve(count);
    // Sieve of Eratosthenes on the odd numbers below the bound; odd[i] stands for 2i + 1.
    uint32_t bound = PrimeBound(count);
    std::vector<bool> composite(bound / 2 + 1, false);
    primes.push_back(2);
    for (uint32_t i = 1; 2 * i + 1 <= bound && primes.size() < count; ++i) {
        if (composite[i]) continue;
        uint64_t p = 2 * i + 1;
        primes.push_back(static_cast<uint32_t>(p));
        for (uint64_t m = p * p; m <= bound; m += 2 * p) composite[m / 2] = true;
    }
    return primes;
}

const std::vector<uint32_t>& ListPrimeTable() {
    static const std::vector<uint32_t> table = BuildPrimeTable(kPrimeTableCount);
    return table;
}
