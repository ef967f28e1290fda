// The sliding-window power shared by the modular power kernels: the word
// kernel (modpow_montgomery.cpp) and the one for long moduli
// (modpow_long.cpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "bigint/bigint.h"

// The bits of |e|, least significant first, no zero bits above the top.
// kOk, kNoMemory, kStopped.
Result ExponentBits(CalcContext* ctx, const BigInt* e, std::vector<bool>* bits);

// Window width for an exponent of the given number of bits.
inline int WindowBits(size_t bits) {
    if (bits <= 16) return 1;
    if (bits <= 96) return 3;
    if (bits <= 320) return 4;
    if (bits <= 1024) return 5;
    return 6;
}

// x := b^e by the ring's products, e given by its bits (index 0 least
// significant, top bit set). The ring has a Value type, Zero(), and
// Copy(a, r), Mul(a, b, r), Sqr(a, r) answering false when stopped; r may
// be a or b. The odd powers b, b^3 … b^(2^w − 1) are made first; each window
// of w bits ending in a one then costs w squares and one product.
template <class Ring>
bool SlidingWindowPower(Ring& ring, const typename Ring::Value& b, const std::vector<bool>& bits,
                        typename Ring::Value* x) {
    using Value = typename Ring::Value;
    const int w = WindowBits(bits.size());
    std::vector<Value> odd(size_t(1) << (w - 1), ring.Zero());
    Value square = ring.Zero();
    if (!ring.Copy(b, &odd[0]) || !ring.Sqr(b, &square)) return false;
    for (size_t k = 1; k < odd.size(); ++k) {
        if (!ring.Mul(odd[k - 1], square, &odd[k])) return false;
    }
    bool started = false;
    for (int64_t i = static_cast<int64_t>(bits.size()) - 1; i >= 0;) {
        if (!bits[size_t(i)]) {
            if (!ring.Sqr(*x, x)) return false;
            --i;
            continue;
        }
        int64_t j = i - w + 1 < 0 ? 0 : i - w + 1;
        while (!bits[size_t(j)]) ++j;
        size_t value = 0;
        for (int64_t k = i; k >= j; --k) value = (value << 1) | (bits[size_t(k)] ? 1 : 0);
        if (started) {
            for (int64_t k = i; k >= j; --k) {
                if (!ring.Sqr(*x, x)) return false;
            }
            if (!ring.Mul(*x, odd[value / 2], x)) return false;
        } else {
            if (!ring.Copy(odd[value / 2], x)) return false;
            started = true;
        }
        i = j - 1;
    }
    return true;
}
