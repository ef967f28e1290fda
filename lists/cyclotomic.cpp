// Coefficients of the nth cyclotomic polynomial.
//
// Phi_n = prod over the squarefree divisors e of rad(n) of (z^(n/e) - 1)^mu(e).
// Products and exact quotients by the monic factors z^k - 1 are ring
// operations, so wrapping 32-bit arithmetic yields Phi_n modulo 2^32 exactly;
// the coefficients of Phi_n for n < 65536 fit a signed 32-bit value, which
// makes the result exact. The series is truncated above the degree phi(n).
#include <algorithm>
#include <vector>

#include "lists/list_generators.h"
#include "lists/list_inputs.h"
#include "lists/prime_table.h"
#include "resources/result.h"
#include "resources/string_ids.h"
#include "resources/strings.h"

namespace {

std::vector<uint32_t> DistinctPrimes(uint32_t n) {
    std::vector<uint32_t> primes;
    for (uint32_t p : ListPrimeTable()) {
        if (p * p > n) break;
        if (n % p != 0) continue;
        primes.push_back(p);
        while (n % p == 0) n /= p;
    }
    if (n > 1) primes.push_back(n);
    return primes;
}

// Multiplies the series c (degrees 0..deg) by z^k - 1, or divides it by z^k - 1
// as a power series, in place.
void MulByBinomial(std::vector<uint32_t>* c, uint32_t k) {
    std::vector<uint32_t>& v = *c;
    for (size_t i = v.size(); i-- > 0;) v[i] = (i >= k ? v[i - k] : 0u) - v[i];
}
void DivByBinomial(std::vector<uint32_t>* c, uint32_t k) {
    // q (z^k - 1) = v, so q_i = q_{i-k} - v_i.
    std::vector<uint32_t>& v = *c;
    for (size_t i = 0; i < v.size(); ++i) v[i] = (i >= k ? v[i - k] : 0u) - v[i];
}

}  // namespace

Result ListCyclotomic(CalcContext* ctx, uint32_t n, ListOutput* out) {
    if (Result code = CheckListValue(ListKind::cyclotomic, n)) return code;
    ListStatus(out, OxString(kStrPressQToQuit));
    const std::vector<uint32_t> primes = DistinctPrimes(n);
    uint32_t degree = n;
    for (uint32_t p : primes) degree = degree / p * (p - 1);

    std::vector<uint32_t> coef(degree + 1, 0);
    coef[0] = 1;
    Result code = Result::kOk;
    for (uint32_t subset = 0; subset < (1u << primes.size()); ++subset) {
        uint32_t e = 1, bits = 0;
        for (size_t i = 0; i < primes.size(); ++i) {
            if ((subset & (1u << i)) == 0) continue;
            e *= primes[i];
            ++bits;
        }
        if (bits % 2 == 0)
            MulByBinomial(&coef, n / e);
        else
            DivByBinomial(&coef, n / e);
        if (ListStopRequested(ctx)) {
            code = Result::kStopped;
            break;
        }
    }

    out->caption = std::string(OxString(kStrCyclotomic)) + " [" + Dec(n) + "]";
    if (code == Result::kOk) {
        const std::string expo = OxString(kStrExponent), coefName = OxString(kStrCoefficient);
        const int expoWidth = std::max(static_cast<int>(expo.size()), DecDigits(degree));
        const int coefWidth = static_cast<int>(coefName.size()) + 2;
        out->text = PadLeft(expoWidth, expo) + PadLeft(coefWidth, coefName) + "\r\n";
        HyphenRule(&out->text, static_cast<int>(out->text.size()), true);
        out->text += "\r\n";
        for (uint32_t k = degree + 1; k-- > 0;) {
            const int32_t value = static_cast<int32_t>(coef[k]);
            if (value == 0) continue;
            std::string row = PadLeft(expoWidth, Dec(k)) +
                              PadLeft(coefWidth, Dec(static_cast<int64_t>(value))) + "\r\n";
            if (!AppendListLine(out, row)) {
                code = Result::kNoMoreRoom;
                break;
            }
        }
    }
    // A stopped or overfull run shows its message instead of a partial polynomial.
    if (code == Result::kStopped) out->text = ResultMessage(Result::kInterrupted);
    if (code == Result::kNoMoreRoom) out->text = ResultMessage(Result::kNoMoreRoom);
    return code;
}
