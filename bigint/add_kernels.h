// The sum kernels for limbs below both tops, where every limb is 0..9999: the
// portable one (SSE2 lanes and 64-bit words) always, and ones with AVX2 and
// AVX-512 chosen at run time.
#pragma once

#include <cstdint>

#include "bigint/record.h"

// d[0..n) := a + b + carry, n a multiple of 16, every limb of a and b 0..9999;
// d may be a, never b. Answers the carry out, 0 or 1.
using AddLanesKernel = int (*)(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry);

// Null when the processor or the compiler has no AVX2 and BMI2, or no
// AVX-512 (BW).
AddLanesKernel Avx2AddLanes();
AddLanesKernel Avx512AddLanes();

// Sums take the widest kernel the processor has. Tests choose one (null:
// the portable lanes alone) to check each on one machine, and go back.
void UseAddLanes(AddLanesKernel kernel);
void UseWidestAddLanes();
