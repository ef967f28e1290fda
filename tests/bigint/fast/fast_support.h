// What the fast-kernel tests share beyond tests/support: replayable
// randomness, operands that hurt, pairs with chosen continued fractions,
// lowered thresholds, conversion of records to and from GMP by decimal text,
// and the check that a kernel stops at any poll.
#pragma once

#include <gmpxx.h>

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "bigint/bigint.h"
#include "bigint/thresholds.h"
#include "support/test_support.h"

namespace fasttest {

// The generator of a test, seeded from ORDIX_SEED when set; the seed is
// printed so that a failure can be replayed.
std::mt19937_64& Rng();

enum class Shape { Random, Zeros, Nines, RunsOfZeroAndNine, TopTenThousand };
constexpr Shape kShapes[] = {Shape::Random, Shape::Zeros, Shape::Nines, Shape::RunsOfZeroAndNine,
                             Shape::TopTenThousand};

// n limbs of the given shape, top limb non-zero.
std::vector<Limb> Operand(int32_t n, Shape shape);
// v := the given limbs (least significant first) and sign.
void SetLimbs(BigInt* v, const std::vector<Limb>& limbs, bool negative);
// A random record of n limbs, random sign.
void RandomBig(BigInt* v, int32_t n, bool allowNegative = true);

// Deliberately naive a·b: long multiplication on 64-bit columns, normalised,
// leading zeros stripped.
std::vector<Limb> NaiveProduct(const std::vector<Limb>& a, const std::vector<Limb>& b);
// Limbs normalised (carry out of the top pushed into new limbs), zeros stripped.
std::vector<Limb> Normalised(const Limb* p, int32_t n);
// The value less one (a positive value), normalised.
std::vector<Limb> MinusOne(std::vector<Limb> v);

// The pair (x, y) whose continued fraction has `count` quotients, times g:
// (x, y) := (q·x + y, x) from the last quotient back, starting at (g, 0).
// Quotients are 1 … 6 at random (all 1 with `ones`), and `huge` digits long
// at position `where` (-1: nowhere).
void FromQuotients(int32_t count, int32_t where, int32_t huge, bool ones, const mpz_class& g,
                   std::vector<Limb>* x, std::vector<Limb>* y);

std::string ToDecimal(const BigInt* v);
void FromDecimal(BigInt* v, const std::string& s);
// A record's value in GMP, and back to limbs, through decimal text.
inline mpz_class Gmp(const BigInt* v) { return mpz_class(ToDecimal(v)); }
std::vector<Limb> FromMpz(const mpz_class& z);
// The value of limbs p[0 … n) read in base 10000, without our own
// conversions (limbs of 10000 and more are welcome).
mpz_class FromLimbs(const Limb* p, int32_t n);
inline mpz_class FromLimbs(const std::vector<Limb>& v) {
    return FromLimbs(v.data(), int32_t(v.size()));
}
// GMP's inverse of a modulo m, 0 where there is none; b^e mod m (of b's
// inverse for e < 0).
inline mpz_class GmpInverse(const mpz_class& a, const mpz_class& m) {
    mpz_class r;
    return mpz_invert(r.get_mpz_t(), a.get_mpz_t(), m.get_mpz_t()) ? r : mpz_class(0);
}
inline mpz_class GmpPowMod(const mpz_class& b, const mpz_class& e, const mpz_class& m) {
    mpz_class r;
    mpz_powm(r.get_mpz_t(), b.get_mpz_t(), e.get_mpz_t(), m.get_mpz_t());
    return r;
}

// Sets thresholds for the scope of a test and restores them afterwards.
class ThresholdScope {
public:
    explicit ThresholdScope(const FastThresholds& t) : saved_(gFastThresholds) {
        gFastThresholds = t;
    }
    ~ThresholdScope() { gFastThresholds = saved_; }

private:
    FastThresholds saved_;
};

// Runs op (result into the given record) twice to make the transform's root
// tables, then once counting polls, then stops it at its first, second,
// middle and last polls: each stop must answer kStopped, leave the result
// `left` (the 1 of a failed operation, unless said) and poll no more. Every
// run starts from an empty divisor cache: a stop inside a division leaves
// that division's divisor cached, and the next run would find it (a square
// root's level, say) and poll fewer times. Set nttParallel = 0 first: the
// wait for the transform's helper thread polls by time, and the counts
// would not repeat.
void ExpectStopsAtEveryPoll(const std::function<Result(CalcContext*, BigInt*)>& op,
                            const std::string& left = "1");

}  // namespace fasttest
