// Limb-array primitives on raw arrays and top indices. Callers size the
// arrays; the contracts above each function say how much room is needed.
#include <cassert>

#include "bigint/internal.h"

// Sign of |b| - |a|. Trusts the tops: meant for normalised arrays, so a top
// limb of 10000 left by LimbsAdd compares as the array it is, not its value.
int LimbsCompare(const Limb* a, const Limb* b, int32_t ta, int32_t tb) {
    if (tb > ta) return 1;
    if (ta > tb) return -1;
    int32_t i = ta;
    while (i > 0 && a[i] == b[i]) --i;
    if (b[i] > a[i]) return 1;
    if (a[i] > b[i]) return -1;
    return 0;
}

// d := a + b. d holds max(ta, tb) + 2 limbs and may be a itself, never b.
// The carry out of b's top limb is added into the next limb and not followed
// further when that limb is a's top: a top limb of 9999 then becomes 10000
// (99999999 + 1 gives limbs 0, 10000). The value stays right and renders
// right, since a top limb prints without width. Below a's top the carry runs
// on, because a limb of 10000 inside the number would print as five digits.
int32_t LimbsAdd(const Limb* a, const Limb* b, Limb* d, int32_t ta, int32_t tb) {
    assert(d != b);
    CopyLimbs(d, a, ta + 1);
    const int32_t m = ta > tb ? ta : tb;
    ZeroLimbs(d + ta + 1, m - ta + 1);
    for (int32_t i = 0; i <= tb; ++i) {
        const int32_t s = b[i] + d[i];
        d[i] = static_cast<Limb>(s % kLimbBase);
        if (s > kLimbBase - 1) d[i + 1] = static_cast<Limb>(d[i + 1] + 1);
    }
    for (int32_t i = tb + 1; i < ta && d[i] >= kLimbBase; ++i) {
        d[i] = static_cast<Limb>(d[i] - kLimbBase);
        d[i + 1] = static_cast<Limb>(d[i + 1] + 1);
    }
    return d[m + 1] >= 1 ? m + 1 : m;
}

// a := a - b in place; requires |a| >= |b|. Answers the new top of a.
int32_t LimbsSub(Limb* a, const Limb* b, int32_t ta, int32_t tb) {
    for (int32_t i = 0; i <= tb; ++i) {
        if (b[i] > a[i]) {
            a[i] = static_cast<Limb>(a[i] + kLimbBase);
            for (int32_t j = i + 1; j <= ta; ++j) {
                if (a[j] != 0) {
                    a[j] = static_cast<Limb>(a[j] - 1);
                    break;
                }
                a[j] = kLimbBase - 1;
            }
        }
        a[i] = static_cast<Limb>(a[i] - b[i]);
    }
    return LimbsTrimTop(a, ta);
}

// a := a * f in place, f 0..9999; a holds t + 2 limbs. Answers the new top.
int32_t LimbsMulSmall(Limb* a, int32_t f, int32_t t) {
    if (f == 0) {
        a[0] = 0;
        return 0;
    }
    if (f == 1) return t;
    int32_t carry = 0;
    for (int32_t i = 0; i <= t; ++i) {
        const int32_t p = a[i] * f + carry;
        a[i] = static_cast<Limb>(p % kLimbBase);
        carry = p / kLimbBase;
    }
    a[t + 1] = static_cast<Limb>(carry);
    return carry > 0 ? t + 1 : t;
}

// a := a + v in place, v 0..9999; a holds t + 2 limbs. Answers the new top.
int32_t LimbsAddSmall(Limb* a, int32_t v, int32_t t) {
    a[0] = static_cast<Limb>(a[0] + v);
    for (int32_t i = 0; a[i] > kLimbBase - 1; ++i) {
        a[i] = static_cast<Limb>(a[i] % kLimbBase);
        if (i == t) {
            a[t + 1] = 1;
            return t + 1;
        }
        a[i + 1] = static_cast<Limb>(a[i + 1] + 1);
    }
    return t;
}

int32_t LimbsNormalizeTop(Limb* a, int32_t top) {
    top = LimbsTrimTop(a, top);
    if (a[top] < kLimbBase) return top;
    a[top + 1] = static_cast<Limb>(a[top] / kLimbBase);
    a[top] = static_cast<Limb>(a[top] % kLimbBase);
    return top + 1;
}
