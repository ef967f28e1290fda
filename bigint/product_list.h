// Products of long lists of small factors, for the range products,
// factorials and binomials (product_tree.cpp, product_primes.cpp).
//
// Factors are packed into words below kFactorWordBound, each leaf
// multiplies its words into two limb arrays at once (two independent carry
// chains) and joins them, and the leaves are joined by a balanced tree of
// transform-sized products written straight into the result records.
#pragma once

#include <cstddef>
#include <cstdint>

#include "bigint/internal.h"
#include "bigint/poll_clock.h"

// A word w times a limb plus a carry stays below 10^4·w + w < 2^64.
constexpr uint64_t kFactorWordBound = 1000000000000000ull;  // 10^15

// The factors of a product, in an order where neighbours have similar sizes.
class FactorList {
public:
    virtual ~FactorList() = default;
    virtual size_t Count() const = 0;
    // Factor i, 1 <= factor < kFactorWordBound.
    virtual uint64_t At(size_t i) const = 0;
};

// v := the product of all factors (1 for an empty list), written as new.
// kOk, kNoMemory, kStopped.
Result ListProduct(PollClock& clk, const FactorList& list, BigInt* v);

// r := x²·y for canonical x, y >= 1, y shorter than x². The square is made
// in r's own array with room for y's limbs and x is released (BigFree) as
// soon as it exists; y then multiplies it in place, piece by piece from the
// top. Alive at once: x, the square and the squaring's scratch, then the
// result and one piece's product. kOk, kNoMemory, kStopped (x then may be
// released).
Result SquareTimes(PollClock& clk, BigInt* x, const BigInt* y, BigInt* r);

// p[0 … lp) += t[0 … lt) as LimbsAddInto, in slices with a tick of clk
// each; false when told to stop. Each slice's carry runs on into p, so the
// sum is the same.
bool AddIntoPolled(PollClock& clk, Limb* p, int32_t lp, const Limb* t, int32_t lt);

// r := x·y for canonical x, y >= 1 (x == y squares), in r's own array
// without a copy; x and y are left alone. kOk, kNoMemory, kStopped.
Result ProductInto(PollClock& clk, const BigInt* x, const BigInt* y, BigInt* r);
