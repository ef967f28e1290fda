// The value record: construction from machine integers, release, copy,
// tests, comparison, conversion back, increment, decrement and halving.
#include "bigint/internal.h"

namespace {

// Limbs of a magnitude below 2^32: one below 10000, three from 100000000 on.
Result FromMagnitude(BigInt* v, uint32_t n, uint8_t negative) {
    const int32_t top = n < 10000u ? 0 : (n >= 100000000u ? 2 : 1);
    v->limbs = AllocLimbs(top + 1);
    v->top = top;
    v->negative = negative;
    if (!v->limbs) return Result::kNoMemory;
    for (int32_t i = 0; i <= top; ++i) {
        v->limbs[i] = static_cast<Limb>(n % 10000u);
        n /= 10000u;
    }
    return Result::kOk;
}

}  // namespace

Result BigFromInt(BigInt* v, int32_t n) {
    const uint32_t mag = n < 0 ? 0u - static_cast<uint32_t>(n) : static_cast<uint32_t>(n);
    return FromMagnitude(v, mag, static_cast<uint8_t>(n < 0 ? 1 : 0));
}

Result BigFromUnsigned(BigInt* v, uint32_t n) { return FromMagnitude(v, n, 0); }

Result BigFromLimbs(BigInt* v, const Limb* src, int32_t top, uint8_t negative) {
    v->limbs = AllocLimbs(top + 1);
    v->top = top;
    v->negative = negative;
    if (!v->limbs) return Result::kNoMemory;
    CopyLimbs(v->limbs, src, top + 1);
    return Result::kOk;
}

void BigFree(BigInt* v) {
    FreeLimbs(v->limbs);
    v->limbs = nullptr;
}

bool BigIsZero(const BigInt* v) { return v->limbs && v->top == 0 && v->limbs[0] == 0; }

// The sign is not examined: a denominator of -1 counts as whole.
bool BigIsOne(const BigInt* v) { return v->limbs && v->top == 0 && v->limbs[0] == 1; }

bool BigIsEven(const BigInt* v) { return v->limbs && v->limbs[0] % 2 == 0; }

int32_t BigLength(const BigInt* v) { return v->top + 1; }

// Counts the sign whenever the flag is set; the width of a top limb of 10000
// is counted as four digits.
int32_t BigTextLength(const BigInt* v) {
    if (!v->limbs) return 0;
    const Limb t = v->limbs[v->top];
    return 4 * v->top + 1 + (t > 9) + (t > 99) + (t > 999) + (v->negative ? 1 : 0);
}

void BigCountDigits(BigInt* v) {
    for (uint32_t& c : v->digitCount) c = 0;
    if (!v->limbs) return;
    for (int32_t i = 0; i <= v->top; ++i) {
        const int32_t l = v->limbs[i];
        if (l >= kLimbBase) ++v->digitCount[(l / kLimbBase) % 10];
        ++v->digitCount[(l / 1000) % 10];
        ++v->digitCount[(l / 100) % 10];
        ++v->digitCount[(l / 10) % 10];
        ++v->digitCount[l % 10];
    }
    // The top limb was counted as four digits: take back its leading zeros.
    const int32_t t = v->limbs[v->top];
    v->digitCount[0] -= (t < 1000) + (t < 100) + (t < 10);
}

bool BigToInt(const BigInt* v, int32_t* out) {
    if (!v->limbs || v->top > 1) return false;
    int32_t n = v->limbs[0];
    if (v->top == 1) n += 10000 * v->limbs[1];
    *out = v->negative ? -n : n;
    return true;
}

// Limbs above the third and the sign are ignored; the sum wraps at 32 bits.
bool BigToUnsigned(const BigInt* v, uint32_t* out) {
    if (!v->limbs) return false;
    uint32_t n = static_cast<uint32_t>(v->limbs[0]);
    if (v->top >= 1) n += 10000u * static_cast<uint32_t>(v->limbs[1]);
    if (v->top >= 2) n += 100000000u * static_cast<uint32_t>(v->limbs[2]);
    *out = n;
    return true;
}

Result BigCopy(BigInt* dst, const BigInt* src) {
    if (BigFromLimbs(dst, src->limbs, src->top, src->negative) == 0) return Result::kOk;
    BigSetFailed(dst);
    return Result::kNoMemory;
}

int BigCompareMag(const BigInt* a, const BigInt* b) {
    return LimbsCompare(a->limbs, b->limbs, a->top, b->top);
}

Result BigIncrement(BigInt* v) {
    if (BigIsZero(v)) {
        v->limbs[0] = 1;
        v->negative = 0;
        return Result::kOk;
    }
    if (v->negative) {
        // -n + 1 = -(n - 1); -1 therefore becomes a zero carrying the flag.
        v->negative = 0;
        const Result code = BigDecrement(v);
        v->negative = 1;
        return code;
    }
    int32_t i = 0;
    v->limbs[0] = static_cast<Limb>(v->limbs[0] + 1);
    while (v->limbs[i] >= kLimbBase) {
        v->limbs[i] = static_cast<Limb>(v->limbs[i] - kLimbBase);
        if (i == v->top) {
            Limb* grown = AllocLimbs(v->top + 2);
            if (!grown) return Result::kNoMemory;
            CopyLimbs(grown, v->limbs, v->top + 1);
            grown[v->top + 1] = 1;
            FreeLimbs(v->limbs);
            v->limbs = grown;
            ++v->top;
            return Result::kOk;
        }
        ++i;
        v->limbs[i] = static_cast<Limb>(v->limbs[i] + 1);
    }
    return Result::kOk;
}

// The array keeps its size when the top drops.
Result BigDecrement(BigInt* v) {
    if (BigIsZero(v)) {
        v->limbs[0] = 1;
        v->negative = 1;
        return Result::kOk;
    }
    if (v->negative) {
        v->negative = 0;
        const Result code = BigIncrement(v);
        v->negative = 1;
        return code;
    }
    if (v->top == 0 && v->limbs[0] == 1) {
        v->limbs[0] = 0;
        return Result::kOk;
    }
    int32_t i = 0;
    while (v->limbs[i] == 0 && i < v->top) v->limbs[i++] = kLimbBase - 1;
    v->limbs[i] = static_cast<Limb>(v->limbs[i] - 1);
    v->top = LimbsTrimTop(v->limbs, v->top);
    return Result::kOk;
}

// Halves the magnitude, truncating; the sign is untouched.
bool BigHalve(BigInt* v) {
    int32_t remainder = 0;
    int32_t t = 0;
    for (int32_t i = v->top; i >= 0; --i) {
        t = v->limbs[i] + remainder;
        remainder = (t % 2) ? kLimbBase : 0;
        v->limbs[i] = static_cast<Limb>(t / 2);
    }
    if (v->top > 0) v->top = LimbsTrimTop(v->limbs, v->top);
    return t % 2 == 0;
}
