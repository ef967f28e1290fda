// The big integer record: sign and base-10000 limbs, least significant first.
#pragma once

#include <cstdint>

typedef int16_t Limb;

struct BigInt {
    Limb* limbs;              // top + 1 limbs, owned; null when released
    int32_t top;              // index of the most significant limb
    uint32_t digitCount[10];  // filled only by BigCountDigits
    uint8_t negative;         // 1 when negative (a zero may carry it too)
};

constexpr int32_t kLimbBase = 10000;
