#include "lists/factor.h"

#include <algorithm>

#include "lists/list_generators.h"
#include "lists/prime_table.h"
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

int BigFromDecimal(const std::string& text, BigInt* value) {
    std::string copy = text;
    return BigFromText(copy.data(), value);
}

// The value of a record of at most four limbs (below 10^16); what is left
// of a number up to the factoring limit always is.
uint64_t SmallValue(const BigInt* v) {
    uint64_t value = 0;
    for (int32_t i = v->top; i >= 0; --i) value = value * kLimbBase + static_cast<uint64_t>(v->limbs[i]);
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

int ReadFactorInput(const std::string& text, BigInt* value) {
    if (text.find_first_of("0123456789") == std::string::npos) return 17;
    ScopedBig read, limit;
    if (BigFromDecimal(text, &read.v) != 0) return 17;
    if (BigFromDecimal(kFactorLimitText, &limit.v) != 0) return 3;
    if (BigIsZero(&read.v) || read.v.negative || BigCompareMag(&read.v, &limit.v) < 0) return 17;
    *value = read.v;
    read.v = BigInt{};
    return 0;
}

int FactorBig(CalcContext* ctx, const BigInt* value, std::vector<PrimeFactor>* factors) {
    factors->clear();
    if (BigIsOne(value)) return 0;
    ScopedBig rest, quotient, remainder, prime;
    if (BigCopy(&rest.v, value) != 0) return 3;
    uint32_t small = 0;
    if (rest.v.top == 0 && BigToUnsigned(&rest.v, &small) && small < 4) {
        factors->push_back({BigDecimal(&rest.v), 1});
        return 0;
    }
    for (uint32_t p : ListPrimeTable()) {
        if (uint64_t{p} * p > SmallValue(&rest.v)) break;
        if (BigFromUnsigned(prime.Fresh(), p) != 0) return 3;
        uint32_t e = 0;
        for (;;) {
            if (int code = BigDivMod(ctx, &rest.v, &prime.v, quotient.Fresh(), remainder.Fresh()))
                return code;
            if (!BigIsZero(&remainder.v)) break;
            ++e;
            std::swap(rest.v, quotient.v);
        }
        if (e > 0) factors->push_back({Dec(p), e});
    }
    if (!BigIsOne(&rest.v)) factors->push_back({BigDecimal(&rest.v), 1});
    return 0;
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

int DivisorsBig(CalcContext* ctx, const std::vector<PrimeFactor>& factors, std::vector<BigInt>* divisors) {
    FreeAll(divisors);
    std::vector<BigInt> primes(factors.size(), BigInt{});
    auto release = [&](int code) {
        FreeAll(&primes);
        if (code != 0) FreeAll(divisors);
        return code;
    };
    for (size_t i = 0; i < factors.size(); ++i)
        if (BigFromDecimal(factors[i].prime, &primes[i]) != 0) return release(3);
    divisors->push_back(BigInt{});
    if (BigFromInt(&divisors->back(), 1) != 0) return release(3);

    // Exponent vectors as an odometer whose first position turns fastest.
    std::vector<uint32_t> exponent(factors.size(), 0);
    for (;;) {
        size_t pos = 0;
        while (pos < factors.size() && exponent[pos] == factors[pos].exponent) ++pos;
        if (pos == factors.size()) break;
        ++exponent[pos];
        for (size_t i = 0; i < pos; ++i) exponent[i] = 0;

        ScopedBig product, next;
        BigFromInt(&product.v, 1);
        for (size_t i = 0; i < factors.size(); ++i)
            for (uint32_t k = 0; k < exponent[i]; ++k) {
                if (int code = BigMul(ctx, next.Fresh(), &product.v, &primes[i])) return release(code);
                std::swap(product.v, next.v);
            }
        // After the last divisor smaller than the product.
        auto at = std::lower_bound(divisors->begin(), divisors->end(), product.v,
                                   [](const BigInt& x, const BigInt& y) { return BigCompareMag(&x, &y) > 0; });
        divisors->insert(at, product.v);
        product.v = BigInt{};
    }
    return release(0);
}

namespace {

// The prime factors of the input as typed: 17 for a bad input, 10 for 1.
int FactorsOfInput(CalcContext* ctx, const std::string& input, std::vector<PrimeFactor>* factors) {
    ScopedBig value;
    if (int code = ReadFactorInput(input, &value.v)) return code;
    if (int code = FactorBig(ctx, &value.v, factors)) return code;
    return factors->empty() ? kListNothing : 0;
}

}  // namespace

// The numbers are at most 13 digits: the arithmetic of these two lists is
// never long enough to poll for.
int ListFactor(CalcContext*, const std::string& input, ListOutput* out) {
    CalcContext quiet;
    std::vector<PrimeFactor> factors;
    if (int code = FactorsOfInput(&quiet, input, &factors)) return code;
    out->text = FactorizationLine(factors);
    out->caption = std::string(OxString(198)) + " " + input;
    return kListDone;
}

int ListDivisors(CalcContext*, const std::string& input, ListOutput* out) {
    CalcContext quiet;
    CalcContext* ctx = &quiet;
    std::vector<PrimeFactor> factors;
    if (int code = FactorsOfInput(ctx, input, &factors)) return code;
    std::vector<BigInt> divisors;
    if (int code = DivisorsBig(ctx, factors, &divisors)) return code;

    ScopedBig sum, next;
    BigFromInt(&sum.v, 0);
    out->text.clear();
    int code = kListDone;
    for (const BigInt& d : divisors) {
        // A number below the limit has at most a few thousand divisors: no ceiling test.
        out->text += BigDecimal(&d) + "\r\n";
        if (BigAdd(next.Fresh(), &sum.v, &d) != 0) code = 3;
        std::swap(sum.v, next.v);
    }
    const std::string total = BigDecimal(&sum.v);
    HyphenRule(&out->text, static_cast<int>(total.size()), true);
    out->text += std::string("\r\n") + OxString(200) + " = " + total;
    out->caption = std::string(OxString(199)) + " [" + input + "] : " +
                   Dec(static_cast<uint32_t>(divisors.size()));
    FreeAll(&divisors);
    return code;
}
