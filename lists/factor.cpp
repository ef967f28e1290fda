#include "lists/factor.h"

#include <algorithm>

#include "lists/list_generators.h"
#include "lists/prime_table.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

// Owns one record for the length of a scope.
struct ScopedBig {
    BigInt v{};
    ScopedBig() = default;
    ScopedBig(const ScopedBig&) = delete;
    ScopedBig& operator=(const ScopedBig&) = delete;
    ~ScopedBig() { BigFree(&v); }
    // Releases the old value before a result is written into the record.
    BigInt* Fresh() {
        BigFree(&v);
        return &v;
    }
};

Result BigFromDecimal(const std::string& text, BigInt* value) {
    std::string copy = text;
    return BigFromText(copy.data(), value);
}

// The value of a record of at most four limbs (below 10^16); what is left
// of a number up to the factoring limit always is.
uint64_t SmallValue(const BigInt* v) {
    uint64_t value = 0;
    for (int32_t i = v->top; i >= 0; --i)
        value = value * kLimbBase + static_cast<uint64_t>(v->limbs[i]);
    return value;
}

void FreeAll(std::vector<BigInt>* values) {
    for (BigInt& v : *values) BigFree(&v);
    values->clear();
}

}  // namespace

std::string BigDecimal(const BigInt* value) {
    const int32_t width = BigTextLength(value) + 8;
    std::string buf(static_cast<size_t>(width) + 1, '\0');
    BigToText(value, buf.data(), width, 0, -1, 0, 0);
    buf.resize(std::char_traits<char>::length(buf.c_str()));
    return buf;
}

Result ReadFactorInput(const std::string& text, BigInt* value) {
    if (text.find_first_of("0123456789") == std::string::npos) return Result::kOutOfBounds;
    ScopedBig read, limit;
    // Whatever the number reader refuses is out of bounds for these lists.
    if (!Ok(BigFromDecimal(text, &read.v))) return Result::kOutOfBounds;
    if (!Ok(BigFromDecimal(kFactorLimitText, &limit.v))) return Result::kNoMemory;
    if (BigIsZero(&read.v) || read.v.negative || BigCompareMag(&read.v, &limit.v) < 0)
        return Result::kOutOfBounds;
    *value = read.v;
    read.v = BigInt{};
    return Result::kOk;
}

Result FactorBig(CalcContext* ctx, const BigInt* value, std::vector<PrimeFactor>* factors) {
    factors->clear();
    if (BigIsOne(value)) return Result::kOk;
    ScopedBig rest, quotient, remainder, prime;
    if (!Ok(BigCopy(&rest.v, value))) return Result::kNoMemory;
    uint32_t small = 0;
    if (rest.v.top == 0 && BigToUnsigned(&rest.v, &small) && small < 4) {
        factors->push_back({BigDecimal(&rest.v), 1});
        return Result::kOk;
    }
    for (uint32_t p : ListPrimeTable()) {
        if (uint64_t{p} * p > SmallValue(&rest.v)) break;
        if (!Ok(BigFromUnsigned(prime.Fresh(), p))) return Result::kNoMemory;
        uint32_t e = 0;
        for (;;) {
            if (Result code =
                    BigDivMod(ctx, &rest.v, &prime.v, quotient.Fresh(), remainder.Fresh()))
                return code;
            if (!BigIsZero(&remainder.v)) break;
            ++e;
            std::swap(rest.v, quotient.v);
        }
        if (e > 0) factors->push_back({Dec(p), e});
    }
    if (!BigIsOne(&rest.v)) factors->push_back({BigDecimal(&rest.v), 1});
    return Result::kOk;
}

std::string FactorizationLine(const std::vector<PrimeFactor>& factors) {
    std::string line;
    for (const PrimeFactor& f : factors) {
        if (!line.empty()) line += "*";
        if (f.exponent == 1) {
            line += f.prime;
        } else if (factors.size() == 1) {
            line += f.prime + "^" + Dec(f.exponent);
        } else {
            line += "(" + f.prime + "^" + Dec(f.exponent) + ")";
        }
    }
    return line;
}

Result DivisorsBig(CalcContext* ctx, const std::vector<PrimeFactor>& factors,
                   std::vector<BigInt>* divisors) {
    FreeAll(divisors);
    std::vector<BigInt> primes(factors.size(), BigInt{});
    auto release = [&](Result code) {
        FreeAll(&primes);
        if (!Ok(code)) FreeAll(divisors);
        return code;
    };
    for (size_t i = 0; i < factors.size(); ++i)
        if (!Ok(BigFromDecimal(factors[i].prime, &primes[i]))) return release(Result::kNoMemory);
    divisors->push_back(BigInt{});
    if (!Ok(BigFromInt(&divisors->back(), 1))) return release(Result::kNoMemory);

    // Exponent vectors as an odometer whose first position turns fastest.
    std::vector<uint32_t> exponent(factors.size(), 0);
    for (;;) {
        size_t pos = 0;
        while (pos < factors.size() && exponent[pos] == factors[pos].exponent) ++pos;
        if (pos == factors.size()) break;
        ++exponent[pos];
        for (size_t i = 0; i < pos; ++i) exponent[i] = 0;

        ScopedBig product, next;
        if (!Ok(BigFromInt(&product.v, 1))) return release(Result::kNoMemory);
        for (size_t i = 0; i < factors.size(); ++i)
            for (uint32_t k = 0; k < exponent[i]; ++k) {
                if (Result code = BigMul(ctx, next.Fresh(), &product.v, &primes[i]))
                    return release(code);
                std::swap(product.v, next.v);
            }
        // After the last divisor smaller than the product.
        auto at = std::lower_bound(
            divisors->begin(), divisors->end(), product.v,
            [](const BigInt& x, const BigInt& y) { return BigCompareMag(&x, &y) > 0; });
        divisors->insert(at, product.v);
        product.v = BigInt{};
    }
    return release(Result::kOk);
}

namespace {

// The prime factors of the input as typed: kOutOfBounds for a bad input,
// kNothingToShow for 1.
Result FactorsOfInput(CalcContext* ctx, const std::string& input,
                      std::vector<PrimeFactor>* factors) {
    ScopedBig value;
    if (Result code = ReadFactorInput(input, &value.v)) return code;
    if (Result code = FactorBig(ctx, &value.v, factors)) return code;
    return factors->empty() ? Result::kNothingToShow : Result::kOk;
}

}  // namespace

// The numbers are at most 13 digits: the arithmetic of these two lists is
// never long enough to poll for.
Result ListFactor(CalcContext*, const std::string& input, ListOutput* out) {
    CalcContext quiet;
    std::vector<PrimeFactor> factors;
    if (Result code = FactorsOfInput(&quiet, input, &factors)) return code;
    out->text = FactorizationLine(factors);
    out->caption = std::string(OxString(kStrPrimeFactorization)) + " " + input;
    return Result::kOk;
}

Result ListDivisors(CalcContext*, const std::string& input, ListOutput* out) {
    CalcContext quiet;
    CalcContext* ctx = &quiet;
    std::vector<PrimeFactor> factors;
    if (Result code = FactorsOfInput(ctx, input, &factors)) return code;
    std::vector<BigInt> divisors;
    if (Result code = DivisorsBig(ctx, factors, &divisors)) return code;

    // A sum that ran out of memory still lists the divisors; the code says so.
    ScopedBig sum, next;
    Result code = Ok(BigFromInt(&sum.v, 0)) ? Result::kOk : Result::kNoMemory;
    out->text.clear();
    for (const BigInt& d : divisors) {
        // A number below the limit has at most a few thousand divisors: no ceiling test.
        out->text += BigDecimal(&d) + "\r\n";
        if (!Ok(BigAdd(next.Fresh(), &sum.v, &d))) code = Result::kNoMemory;
        std::swap(sum.v, next.v);
    }
    const std::string total = BigDecimal(&sum.v);
    HyphenRule(&out->text, static_cast<int>(total.size()), true);
    out->text += std::string("\r\n") + OxString(kStrDivisorSum) + " = " + total;
    out->caption = std::string(OxString(kStrDivisorList)) + " [" + input +
                   "] : " + Dec(static_cast<uint32_t>(divisors.size()));
    FreeAll(&divisors);
    return code;
}
