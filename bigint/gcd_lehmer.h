// Lehmer's step, shared by Lehmer's gcd and the leaves of the half-gcd.
//
// One step runs Euclid's algorithm on the leading nine limbs of
// x >= y > 0 for as long as the quotients are certainly those of the full
// numbers, and answers the cofactors: after the step the pair is
// (A·x + B·y, C·x + D·y), the two remainders that follow `steps` quotients.
// The cofactors are at most 10^18 in magnitude and alternate in sign.
#pragma once

#include <cstdint>

#include "bigint/record.h"

struct LehmerCofactors {
    int64_t A = 1, B = 0, C = 0, D = 1;
    int32_t steps = 0;  // quotients taken; 0 when the leading limbs decide none
};

// The step for x (lx limbs) >= y (ly limbs) > 0. With floorLimbs >= 0 a
// quotient is taken only when the remainder it leaves is certainly at least
// 10000^floorLimbs; with a negative floor, whenever it is certain. No step
// when x has two or more limbs more than y.
LehmerCofactors LehmerLeading(const Limb* x, int32_t lx, const Limb* y, int32_t ly,
                              int32_t floorLimbs);

// s := A·x + B·y and t := C·x + D·y for combinations known to be
// non-negative, in one pass over max(lx, ly) limbs; |A| … |D| at most 10^18.
// s and t alias neither input and hold max(lx, ly) + 6 limbs, or one more
// than max(lx, ly) when both results are below 10000^max(lx, ly); their
// lengths come back in *ls and *lt, without leading zero limbs.
void LehmerCombine(const LehmerCofactors& c, const Limb* x, int32_t lx, const Limb* y, int32_t ly,
                   Limb* s, int32_t* ls, Limb* t, int32_t* lt);
