// Factoring by trial division with the prime table, and the divisors that
// follow from a factorization. Values up to the square of the largest tabled
// prime, 2556298938649, factor completely.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "bigint/bigint.h"
#include "resources/result.h"

struct PrimeFactor {
    std::string prime;  // decimal text
    uint32_t exponent;  // at least 1
};

constexpr const char* kFactorLimitText = "2556298938649";

// Reads the number typed for Factor or Divisors: kOk, or kOutOfBounds for text
// without digits, a negative value, zero or a value above the limit. *value is
// then owned by the caller.
Result ReadFactorInput(const std::string& text, BigInt* value);

// The factors of value (>= 1) in increasing order; none for 1. A cofactor left
// after the table is listed as it is. ctx (not null) is polled by the
// divisions. kOk, kNoMemory, or kStopped.
Result FactorBig(CalcContext* ctx, const BigInt* value, std::vector<PrimeFactor>* factors);

// "(2^3)*(3^2)*5": powers bracketed unless they stand alone.
std::string FactorizationLine(const std::vector<PrimeFactor>& factors);

// Every divisor of the factored number, ascending (1 first). The records are
// the caller's to free. ctx as for FactorBig. kOk, kNoMemory, or kStopped.
Result DivisorsBig(CalcContext* ctx, const std::vector<PrimeFactor>& factors,
                   std::vector<BigInt>* divisors);

// The decimal text of a value.
std::string BigDecimal(const BigInt* value);
