// The vector butterflies of the 64-bit transform (ntt64.cpp): eight points at
// a time with AVX-512 IFMA (52-bit multiply-add), chosen at run time where the
// processor has it; ntt64.cpp keeps plain 64-bit code for every other one.
//
// Primes below 2^50; Montgomery products with R = 2^52 on points kept lazily
// in [0, 2p), twiddles below p. A stage of half length m combines a[s + j]
// with a[s + j + m] by roots[m + j] = w_2m^j (w_2m^−j for the inverse).
#pragma once

#include <cstdint>

struct Ntt64Vec {
    uint64_t p;
    uint64_t pinv;  // p^−1 mod 2^52
    const uint64_t* roots;
    const uint64_t* rootsInv;
};

// x·y·2^−52 mod p in [0, 2p) for x·y < p·2^52.
inline uint64_t Mul52(uint64_t x, uint64_t y, uint64_t p, uint64_t pinv) {
    constexpr uint64_t kMask = (uint64_t(1) << 52) - 1;
    const unsigned __int128 t = static_cast<unsigned __int128>(x) * y;
    const uint64_t m = ((static_cast<uint64_t>(t) & kMask) * pinv) & kMask;
    const uint64_t mp = static_cast<uint64_t>((static_cast<unsigned __int128>(m) * p) >> 52);
    return static_cast<uint64_t>(t >> 52) - mp + p;
}

// True when the processor (and the compiler) have AVX-512 IFMA.
bool Ntt64VecAvailable();

// For the piece-wise transform (ntt64_plan.cpp), from ntt64.cpp: the three
// vector primes, largest first, their tables made on first use (null when
// refused), and the whole transform of 64 <= n points modulo prime i, n a
// power of two (false when told to stop). The forward transform leaves the
// points in its own order, which the inverse takes back.
class PollClock;
const Ntt64Vec* Ntt64VecPrimes();
// Garner's constants of those primes for Ntt64VecGarner, made once; call
// after Ntt64VecPrimes() has made the tables.
const uint64_t* Ntt64VecGarnerConstants();
bool Ntt64VecTransform(PollClock& clk, int i, bool inverse, uint64_t* a, int64_t n);
// All stages of a transform of 64 <= n points, n a power of two within the
// tables. The forward transform leaves each 64-point tile transposed (as 8×8)
// and the inverse takes it so: the pointwise product does not mind.
void Ntt64VecForward(const Ntt64Vec& c, uint64_t* a, int64_t n);
void Ntt64VecInverse(const Ntt64Vec& c, uint64_t* a, int64_t n);
// One stage of half length m over a[0, 2m), butterflies j0 … j1 − 1 (a
// multiple of 8 apart); first[i] = w^(j0 + i) below p, w8 = w^8 below p.
void Ntt64VecStage(const Ntt64Vec& c, bool inverse, const uint64_t* first, uint64_t w8, uint64_t* a,
                   int64_t m, int64_t j0, int64_t j1);
// x[i] := x[i]·y[i]·2^−52 mod p in [0, 2p) for x, y below 2p, then times
// scale·2^−52 unless scale is 0.
void Ntt64VecPointwise(const Ntt64Vec& c, uint64_t* x, const uint64_t* y, uint64_t scale,
                       int64_t n);
// Garner's values v1 + p1·v2 + p1·p2·v3 (the residues below p_i, as
// Ntt64VecGarner leaves them; p1·p2 below 2^100) cut at 50 and 100 bits
// without carries: r1 := v1 + lo50(p1·v2) + lo50(c0·v3), r2 := hi(p1·v2) +
// hi(c0·v3) + lo50(c1·v3), r3 := hi(c1·v3), with hi = bits 50 up and
// p1·p2 = c0 + c1·2^50; each below 2^52. k holds 4·p1, 4·c0 and 4·c1.
void Ntt64VecPieces(const uint64_t* k, uint64_t* r1, uint64_t* r2, uint64_t* r3, int64_t n);
// x[i] := x[i]·scale·2^−52 mod p in [0, 2p) for x below 2p.
void Ntt64VecScale(const Ntt64Vec& c, uint64_t* x, uint64_t scale, int64_t n);
// Garner's first steps on residues r1, r2, r3 below 2p_i of three vector
// primes (c[0..3)): r1 := v1 = r1 mod p1, r2 := v2 = (r2 − v1)/p1 mod p2, r3 :=
// v3 = (r3 − v1 − p1·v2)/(p1·p2) mod p3, so that the value is v1 + p1·v2 +
// p1·p2·v3. k holds 1/p1 mod p2, p1 mod p3 and 1/(p1·p2) mod p3, each times
// 2^52. Needs p1 > p2 > p3 > p1/2.
void Ntt64VecGarner(const Ntt64Vec* c, const uint64_t* k, uint64_t* r1, uint64_t* r2, uint64_t* r3,
                    int64_t n);
