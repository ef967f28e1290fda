// Small integer helpers of the generators.
#pragma once

#include <cmath>
#include <cstdint>

inline uint32_t Gcd32(uint32_t a, uint32_t b) {
    while (b != 0) {
        uint32_t t = a % b;
        a = b;
        b = t;
    }
    return a;
}

// The square root truncated toward zero. Below 2^44 the root is under 2^22,
// so a root that is not an integer stays more than 2^-23 from one, far above
// the double's rounding error (2^-30 there): the faster double root
// truncates to the same integer as an extended one.
inline uint32_t TruncSqrt(uint64_t v) {
    if (v < (uint64_t{1} << 44)) return static_cast<uint32_t>(std::sqrt(static_cast<double>(v)));
    return static_cast<uint32_t>(std::sqrt(static_cast<long double>(v)));
}

// The exact integer square root of a 64-bit value.
inline uint64_t ISqrt64(uint64_t v) {
    uint64_t r = static_cast<uint64_t>(std::sqrt(static_cast<long double>(v)));
    while (r > 0 && r * r > v) --r;
    while (r < 0xFFFFFFFFull && (r + 1) * (r + 1) <= v) ++r;
    return r;
}
