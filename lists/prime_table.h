// The table of the first 121057 primes (2 to 1598843) that the prime list,
// factoring, divisors and the cyclotomic list rest on. 121057 is the most
// primes whose unnumbered list fits the 1,000,000-character ceiling.
#pragma once

#include <cstdint>
#include <vector>

constexpr uint32_t kPrimeTableCount = 121057;
constexpr uint32_t kLargestTabledPrime = 1598843;

// The first count primes, ascending.
std::vector<uint32_t> BuildPrimeTable(uint32_t count);

// The program's table of kPrimeTableCount primes, built on first use and kept
// for the life of the process. Call it once at start-up to pay the
// (millisecond) cost there.
const std::vector<uint32_t>& ListPrimeTable();
