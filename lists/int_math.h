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

// The square root in extended floating point, truncated toward zero.
inline uint32_t TruncSqrt(uint64_t v) {
    return static_cast<uint32_t>(std::sqrt(static_cast<long double>(v)));
}

// The exact integer square root of a 64-bit value.
inline uint64_t ISqrt64(uint64_t v) {
    uint64_t r = static_cast<uint64_t>(std::sqrt(static_cast<long double>(v)));
    while (r > 0 && r * r > v) --r;
    while (r < 0xFFFFFFFFull && (r + 1) * (r + 1) <= v) ++r;
    return r;
}
