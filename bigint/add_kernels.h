// The sum and difference kernels for limbs below both tops, where every limb
// is 0..9999: portable code always (SSE2 lanes and 64-bit words for sums, a
// branch-free borrow for differences), and kernels with AVX2 and AVX-512
// chosen at run time.
#pragma once

#include <cstdint>

#include "bigint/record.h"

// d[0..n) := a + b + carry (add) or a − b − borrow (sub), n a multiple of 16,
// every limb of a and b 0..9999; d may be a, never b. Answers the carry or
// borrow out, 0 or 1.
using LanesKernel = int (*)(const Limb* a, const Limb* b, Limb* d, int32_t n, int carry);
struct LaneKernels {
    LanesKernel add;
    LanesKernel sub;
};

// Null when the processor or the compiler has no AVX2 and BMI2, or no
// AVX-512 (BW).
const LaneKernels* Avx2LaneKernels();
const LaneKernels* Avx512LaneKernels();

// Sums and differences take the widest kernels the processor has. Tests
// choose others (null: the portable code alone) to check each on one
// machine, and go back.
void UseLaneKernels(const LaneKernels* kernels);
void UseWidestLaneKernels();
