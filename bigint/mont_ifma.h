// Montgomery products on 52-bit digits with AVX-512 IFMA (mont_ifma.cpp),
// for the modular power on words.
#pragma once

#include <cstdint>

// Products modulo an odd m held in 8K digits of 52 bits, R = 2^(416 K),
// with 4m < R. Values are lazy: arrays of 8K digits below 2^52 holding a
// number below 2m; every output is again in that range.
struct IfmaMontKernels {
    // r := a b / R mod m (lazy); r may be a or b. k0 = −1/m mod 2^52.
    void (*mul)(const uint64_t* a, const uint64_t* b, const uint64_t* m, uint64_t k0, uint64_t* r);
};

constexpr int kIfmaMaxVectors = 40;  // 16638 bits: the word kernel's moduli

// The kernels for moduli of K vectors of eight digits (1 <= K <=
// kIfmaMaxVectors), or null when the processor lacks AVX-512 IFMA.
const IfmaMontKernels* IfmaMont(int vectors);
