// Karatsuba product and square.
//
// With a = a1·B^h + a0 and b = b1·B^h + b0 (B = 10000, h = la / 2):
//   a·b = z2·B^2h + (z1 − z2 − z0)·B^h + z0,
//   z0 = a0·b0, z2 = a1·b1, z1 = (a0 + a1)(b0 + b1).
// z0 and z2 go straight into their places in p; the middle term is formed in
// scratch and added at offset h. The half sums may have a top limb of 1 or 2,
// which every kernel accepts.
//
// Allocation: scratch from nothrow new (Scratch); a refused one answers code 3,
// on which MulLimbs may fall back to the schoolbook product (mul_dispatch.cpp).
#include <algorithm>
#include <cassert>

#include "bigint/mul_kernels.h"

namespace {

// s = x + y with x of lx limbs and y of ly limbs (lx, ly >= 0); s holds
// max(lx, ly) + 1 limbs; answers the trimmed length.
int32_t HalfSum(const Limb* x, int32_t lx, const Limb* y, int32_t ly, Limb* s) {
    const int32_t n = std::max(lx, ly);
    int32_t carry = 0;
    for (int32_t i = 0; i < n; ++i) {
        int32_t v = carry + (i < lx ? x[i] : 0) + (i < ly ? y[i] : 0);
        carry = v / kLimbBase;
        s[i] = static_cast<Limb>(v - carry * kLimbBase);
    }
    s[n] = static_cast<Limb>(carry);
    return LimbsTrim(s, n + 1);
}

// Subtracts z0 and z2 (already in p) from z1 and adds the rest at offset h.
void AddMiddle(Limb* p, int32_t lp, int32_t h, int32_t l0, Limb* z1, int32_t l1) {
    LimbsSubFrom(z1, l1, p, l0);
    LimbsSubFrom(z1, l1, p + l0, lp - l0);
    const int32_t lt = LimbsTrim(z1, l1);
    LimbsAddInto(p + h, lp - h, z1, lt);
}

}  // namespace

Result MulKaratsuba(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    const int32_t h = la / 2;
    assert(la >= lb && lb > h && h >= 1);
    const int32_t lsa = la - h + 1;
    const int32_t lsb = std::max(h, lb - h) + 1;
    const int32_t l1 = lsa + lsb;
    Scratch<Limb> buf(lsa + lsb + l1);
    if (!buf) return Result::kNoMemory;
    Limb* sa = buf.get();
    Limb* sb = sa + lsa;
    Limb* z1 = sb + lsb;

    const int32_t na = HalfSum(a, h, a + h, la - h, sa);
    const int32_t nb = HalfSum(b, h, b + h, lb - h, sb);
    std::fill(z1, z1 + l1, Limb(0));
    Result rc = na >= nb ? MulRec(clk, sa, na, sb, nb, z1) : MulRec(clk, sb, nb, sa, na, z1);
    if (!Ok(rc)) return rc;

    // a0 and b0 are the low halves: normalised, possibly with leading zeros.
    rc = MulRec(clk, a, h, b, h, p);
    if (!Ok(rc)) return rc;
    rc = MulRec(clk, a + h, la - h, b + h, lb - h, p + 2 * h);
    if (!Ok(rc)) return rc;
    AddMiddle(p, la + lb, h, 2 * h, z1, l1);
    return Result::kOk;
}

Result SqrKaratsuba(PollClock& clk, const Limb* a, int32_t la, Limb* p) {
    const int32_t h = la / 2;
    assert(h >= 1);
    const int32_t lsa = la - h + 1;
    const int32_t l1 = 2 * lsa;
    Scratch<Limb> buf(lsa + l1);
    if (!buf) return Result::kNoMemory;
    Limb* sa = buf.get();
    Limb* z1 = sa + lsa;

    const int32_t na = HalfSum(a, h, a + h, la - h, sa);
    std::fill(z1, z1 + l1, Limb(0));
    Result rc = SqrRec(clk, sa, na, z1);
    if (!Ok(rc)) return rc;
    rc = SqrRec(clk, a, h, p);
    if (!Ok(rc)) return rc;
    rc = SqrRec(clk, a + h, la - h, p + 2 * h);
    if (!Ok(rc)) return rc;
    AddMiddle(p, 2 * la, h, 2 * h, z1, l1);
    return Result::kOk;
}
