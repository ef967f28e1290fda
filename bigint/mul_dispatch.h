// The one multiplication entry for limb arrays, choosing the algorithm by size.
//
// p must hold ta + tb + 2 limbs (zeroed here); a and b are normalised magnitudes
// (a top limb of 10000 from LimbsAdd is accepted). Answers the top of the
// product, -1 when the context asked to stop, or kMulNoMemory when the fast
// kernels' scratch could not be had and the schoolbook product, which needs
// none, would be too long to run instead. Operands may be the same array (a
// square); p must not overlap them.
#pragma once

#include "bigint/bigint.h"

constexpr int32_t kMulNoMemory = -2;

int32_t MulLimbs(CalcContext* ctx, const Limb* a, int32_t ta, const Limb* b, int32_t tb, Limb* p);
