// Products by the transform over three 64-bit primes (ntt64.cpp), for the
// lengths the 32-bit transform cannot reach or is slower at. Same contract as
// the kernels of mul_kernels.h, with no limit on la + lb beyond memory.
#pragma once

#include "bigint/mul_kernels.h"

Result MulNtt64(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p);
Result SqrNtt64(PollClock& clk, const Limb* a, int32_t la, Limb* p);

// Limbs packed into one coefficient for a transform of n points: 6 up to
// gFastThresholds.ntt64SixLimbs points (at most 2^26, the bound in ntt64.cpp),
// 4 beyond.
int Ntt64LimbsPerPoint(int64_t n);

// The plain 64-bit butterflies even where the vector ones could run (they
// take other primes and four limbs a point). For tests.
void UsePortableNtt64(bool portable);
