// Carry and borrow propagation on limb arrays whose top limb may be
// unreduced, shared by the fast multiplication kernels.
#include <cassert>

#include "bigint/mul_kernels.h"

void LimbsAddInto(Limb* p, int32_t lp, const Limb* t, int32_t lt) {
    assert(lt <= lp);
    int32_t carry = 0;
    int32_t i = 0;
    for (; i < lt && i < lp - 1; ++i) {
        int32_t v = p[i] + t[i] + carry;
        carry = v / kLimbBase;
        p[i] = static_cast<Limb>(v - carry * kLimbBase);
    }
    for (; carry != 0 && i < lp - 1; ++i) {
        int32_t v = p[i] + carry;
        carry = v / kLimbBase;
        p[i] = static_cast<Limb>(v - carry * kLimbBase);
    }
    if (i == lp - 1) {
        int32_t v = p[i] + carry + (i < lt ? t[i] : 0);
        assert(v < 32768);
        p[i] = static_cast<Limb>(v);
    }
}

void LimbsSubFrom(Limb* t, int32_t lt, const Limb* s, int32_t ls) {
    assert(ls <= lt);
    // Limbs of s are at most 20000 and the borrow at most 2, so a difference
    // is at least −20002: up to three borrows, found without branches.
    int32_t borrow = 0;
    int32_t i = 0;
    for (; i < ls; ++i) {
        int32_t v = t[i] - s[i] - borrow;
        borrow = (v < 0) + (v < -kLimbBase) + (v < -2 * kLimbBase);
        t[i] = static_cast<Limb>(v + borrow * kLimbBase);
    }
    for (; borrow != 0 && i < lt; ++i) {
        int32_t v = t[i] - borrow;
        borrow = v < 0;
        t[i] = static_cast<Limb>(v + borrow * kLimbBase);
    }
    assert(borrow == 0);
}

int32_t LimbsTrim(const Limb* a, int32_t la) {
    while (la > 1 && a[la - 1] == 0) --la;
    return la;
}
