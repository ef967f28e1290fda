// The butterfly kernels of the number-theoretic transform (ntt_plan.cpp), in a
// portable version and one for processors with AVX2, chosen once at run time.
//
// Points are residues kept lazily in [0, 2p) for primes p < 2^30; twiddles
// are in Montgomery form below p. A stage of half length m combines a[s + j]
// with a[s + j + m] by the twiddle roots[m + j] (roots[m + j] = w_2m^j).
// Forward stages run by decimation in frequency, inverse ones by decimation
// in time; every kernel leaves its points in [0, 2p).
#pragma once

#include <cstdint>

// Montgomery arithmetic with R = 2^32.
struct Mont {
    uint32_t p;
    uint32_t pinv;  // −p^−1 mod 2^32
    uint32_t r2;    // R^2 mod p

    explicit Mont(uint32_t prime) : p(prime) {
        uint32_t inv = prime;  // Newton: each step doubles the correct low bits
        for (int i = 0; i < 4; ++i) inv *= 2 - prime * inv;
        pinv = 0u - inv;
        const uint64_t r = (uint64_t(1) << 32) % prime;
        r2 = static_cast<uint32_t>(r * r % prime);
    }
    // x < p·2^32 gives a result in [0, 2p).
    uint32_t Reduce(uint64_t x) const {
        const uint32_t m = static_cast<uint32_t>(x) * pinv;
        return static_cast<uint32_t>((x + uint64_t(m) * p) >> 32);
    }
    uint32_t Mul(uint32_t a, uint32_t b) const { return Reduce(uint64_t(a) * b); }
    uint32_t ToMont(uint32_t a) const { return Mul(a, r2); }
};

inline uint32_t Fold(uint32_t x, uint32_t twoP) { return x >= twoP ? x - twoP : x; }

// The two primes' residues joined: x = x1 + p1·((x2 − x1)·p1^−1 mod p2),
// below p1·p2 < 2^57, from residues below 2·p1 and 2·p2. invR is p1^−1 mod
// p2 times R, so that one Montgomery product modulo p2 applies it; p1 < 3·p2.
struct CrtPair {
    uint32_t p1;
    Mont m2;
    uint32_t invR;
};

struct NttKernels {
    // One stage of half length m >= 8 over a[0 … n).
    void (*forwardStage)(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m);
    void (*inverseStage)(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m);
    // The stages of half lengths m and m / 2 (m >= 32) in one pass over
    // a[0 … n), in the order of their transform (the inverse: m / 2 first);
    // null where the set has none.
    void (*forwardStage2)(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m);
    void (*inverseStage2)(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m);
    // The stages of half length 4, 2 and 1 (those below n) over a[0 … n),
    // n >= 2 a power of two: last of the forward transform, first of the
    // inverse.
    void (*forwardTail)(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n);
    void (*inverseHead)(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n);
    // a[i] := a[i]·b[i]·scale·R^−2 (b null: a[i] squared), for the pointwise
    // product between the transforms.
    void (*pointwise)(const Mont& mt, uint32_t* a, const uint32_t* b, uint32_t scale, int32_t n);
    // With x = a[i]·b[i]·scale·R^−2: acc[i] := x (how 0), acc[i] + x (1) or
    // acc[i] − x (2), for sums of products between the transforms.
    void (*mulAccumulate)(const Mont& mt, uint32_t* acc, const uint32_t* a, const uint32_t* b,
                          uint32_t scale, int how, int32_t n);
    // out[k] := the joined value of r1[k] and r2[k], k < count.
    void (*crt)(const CrtPair& c, const uint32_t* r1, const uint32_t* r2, uint64_t* out,
                int32_t count);
};

const NttKernels& PortableNttKernels();
// Null when the processor or the compiler has no AVX2.
const NttKernels* Avx2NttKernels();

// The kernels in use: AVX2 where the processor has it. Tests switch to the
// portable ones to check both on one machine.
const NttKernels& ActiveNttKernels();
void UsePortableNttKernels(bool portable);
