// The sum kernel for limbs below both tops, where every limb is 0..9999: a
// portable one (SSE2 lanes and 64-bit words) and one with AVX2, chosen at run
// time.
#pragma once

#include <cstdint>

#include "bigint/record.h"

// d[0..n) := a + b + carry, n a multiple of 16, every limb of a and b 0..9999;
// d may be a, never b. Answers the carry out, 0 or 1.
using AddLanesKernel = int (*)(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry);

// Null when the processor or the compiler has no AVX2 and BMI2.
AddLanesKernel Avx2AddLanes();

// Sums take the AVX2 kernel where the processor has it. Tests switch to the
// portable one to check both on one machine.
void UsePortableAddKernels(bool portable);
