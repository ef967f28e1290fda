// The one multiplication entry for limb arrays, choosing the algorithm by size.
//
// p must hold ta + tb + 2 limbs, zeroed; a and b are normalised magnitudes
// (a top limb of 10000 from LimbsAdd is accepted). Answers the top of the
// product, or -1 when the context asked to stop. Operands may be the same
// array (a square); p must not overlap them.
#pragma once

#include "bigint/bigint.h"

int32_t MulLimbs(CalcContext* ctx, const Limb* a, int32_t ta, const Limb* b, int32_t tb, Limb* p);
