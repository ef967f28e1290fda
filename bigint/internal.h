// Helpers shared by the arithmetic files; not part of the public interface.
#pragma once

#include <utility>

#include "bigint/alloc.h"
#include "bigint/bigint.h"

// A record released when the scope ends (BigMove hands its value on).
struct BigTemp {
    BigInt v = {};
    BigTemp() = default;
    ~BigTemp() { BigFree(&v); }
    BigTemp(const BigTemp&) = delete;
    BigTemp& operator=(const BigTemp&) = delete;
};

// Moves src into dst (dst's old limbs are not released, as for any result).
inline void BigMove(BigInt* dst, BigInt* src) {
    dst->limbs = src->limbs;
    dst->top = src->top;
    dst->negative = src->negative;
    src->limbs = nullptr;
}

// Releases dst, then moves src into it.
inline void BigReplace(BigInt* dst, BigInt* src) {
    BigFree(dst);
    BigMove(dst, src);
}

// The magnitude of v as a record sharing v's limbs: never released.
inline BigInt BigMagnitudeView(const BigInt* v) {
    BigInt m = *v;
    m.negative = 0;
    return m;
}

// Negative in value: a zero magnitude counts as zero whatever the flag.
inline bool BigIsNegative(const BigInt* v) { return v->negative && !BigIsZero(v); }

// The value 1 that failing operations leave in their result. The failure
// being reported is the caller's; should even this one limb not be had, the
// record stays released, which reads as zero.
inline void BigSetFailed(BigInt* v) { (void)BigFromInt(v, 1); }

// v := limbs 0..top of src at exact size with the given sign. 0 or 3.
Result BigFromLimbs(BigInt* v, const Limb* src, int32_t top, uint8_t negative);

// LimbsAdd without its last limb: d (max(ta, tb) + 1 limbs, may be a) gets
// limbs 0..max(ta, tb) of a + b under the same carry rule; answers the carry
// out of the top limb, 0 or 1.
int LimbsAddCarry(const Limb* a, const Limb* b, Limb* d, int32_t ta, int32_t tb);

// d[0..n) := a + b + carry on limbs 0..9999 (d may be a, never b); the
// carry out, 0 or 1.
int LimbsAddCarryIn(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry);
// d[0..n) := a − b − borrow on limbs 0..9999 (d may be a, never b); the
// borrow out, 0 or 1.
int LimbsSubBorrow(const Limb* a, const Limb* b, Limb* d, int32_t n, int borrow);

// Lowers top past zero limbs, stopping at 0.
inline int32_t LimbsTrimTop(const Limb* a, int32_t top) {
    while (top > 0 && a[top] == 0) --top;
    return top;
}

// Brings a copied magnitude to normal form at its top: zero top limbs (a text
// such as "+00000" reads as a zero of two limbs) are dropped, and a top limb
// of 10000 or more (left by LimbsAdd) is carried into a new limb; a must have
// room for top + 2 limbs. Answers the new top.
int32_t LimbsNormalizeTop(Limb* a, int32_t top);

// True when every limb is 0, whatever the top says.
inline bool BigIsZeroMagnitude(const BigInt* v) {
    return v->limbs && v->limbs[LimbsTrimTop(v->limbs, v->top)] == 0;
}

// Euclid by long division, shared by the gcd's and the modular inverse's
// reference kernels: the pair x > y and the division's scratch and quotient,
// four arrays of the same room.
struct EuclidByDivision {
    LimbBuffer x, y, scratch, quotient;
    int32_t tx = 0, ty = 0;

    // x := |a|, y := |b| at their normal tops, room limbs each (room at least
    // |a|'s limbs + 2, for the long division). kOk or kNoMemory.
    Result Load(const BigInt* a, const BigInt* b, int64_t room) {
        if (!x.Reset(room) || !y.Reset(room) || !scratch.Reset(room) || !quotient.Reset(room))
            return Result::kNoMemory;
        CopyLimbs(x.get(), a->limbs, a->top + 1);
        CopyLimbs(y.get(), b->limbs, b->top + 1);
        tx = LimbsNormalizeTop(x.get(), a->top);
        ty = LimbsNormalizeTop(y.get(), b->top);
        return Result::kOk;
    }

    // Divides x by y and moves the pair on (y, remainder) until a remainder
    // is zero; y and ty then hold the last divisor, the gcd. Each quotient
    // that leaves a remainder is handed to keep(limbs, top) before the pair
    // moves on; keep answers false when memory ran out. LimbsDivide's codes,
    // or kNoMemory from keep.
    template <typename Keep>
    Result Run(CalcContext* ctx, Keep&& keep) {
        for (;;) {
            int32_t tq = ty;
            const Result code =
                LimbsDivide(ctx, x.get(), y.get(), scratch.get(), quotient.get(), &tx, &tq);
            if (!Ok(code)) return code;
            if (tx == 0 && x[0] == 0) return Result::kOk;
            if (!keep(quotient.get(), tq)) return Result::kNoMemory;
            // The remainder becomes the new divisor.
            x.Swap(y);
            std::swap(tx, ty);
        }
    }
};
