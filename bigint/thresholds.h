// Size thresholds of the fast kernels, the one place where they live.
//
// Sizes count base-10000 limbs of the smaller operand unless noted. Each
// entry is the smallest size at which the faster method takes over; the
// values come from timing each method at sizes around its crossover on a
// shared 2-core Xeon, and bench/ordix_bench --set name=value tries others. Tests lower them
// (FastThresholds::Lowered) so that small operands take every path.
#pragma once

#include <cstdint>

struct FastThresholds {
    int32_t mulKaratsuba = 80;  // schoolbook below
    int32_t mulNtt = 150;       // Karatsuba below
    int32_t sqrKaratsuba = 100;
    int32_t sqrNtt = 200;
    int32_t divNewton = 40;       // divisor and quotient both at least this long
    int32_t sqrtRecursive = 120;  // limbs of the radicand
    int32_t cbrtNewton = 120;     // limbs of the radicand
    int32_t productTree = 16;     // ranges below twice this many factors: the running product
    int32_t productLeaf = 128;    // limbs of a leaf of the list products (product_list.cpp)
    int32_t rangePrimes = 2000;   // factors, from which range products go by prime factorisation
    int32_t rangePrimesSieve = 20000000;  // largest n of a binomial sieved for it
    int32_t gcdLehmer = 30;               // limbs of the smaller operand
    int32_t gcdHalf = 1000;               // limbs of the smaller operand
    int32_t gcdHalfLeaf = 600;            // limbs: half-gcd calls below this are Lehmer leaves
    // Limbs of the shorter factor from which the half-gcd's matrix products
    // and pair updates add products of transforms (each factor transformed once).
    int32_t gcdMatrixNtt = 150;
    // Limbs of those sums from which they take the 64-bit transform, where
    // the processor has its vector products.
    int32_t gcdMatrixNtt64 = 400;
    int32_t modInverse = 2;  // limbs of the modulus from which inverses go by the extended gcd
    int32_t modInverseHalf =
        200;  // limbs of the smaller number: half-gcd rounds of the extended gcd
    int32_t powMontgomery = 1800;  // limbs of a modulus below which powers run on words
    // Limbs of a modulus from which powers take the long path all the same
    // where it runs on the 64-bit transform (AVX-512 IFMA): there the words'
    // vector products end at 16638 bits, about 1252 limbs, and the long path
    // beats the scalar words beyond.
    int32_t powPlan = 1250;
    // 64-bit words of a modulus's odd part from which those powers take the
    // 52-bit vector products, where the processor has them
    int32_t powVector = 10;
    int32_t radixDivide = 400;  // digits (in) or limbs (out) for divide and conquer
    // Limbs from which bases 2, 4, 8 and 16 go out through binary words: that
    // route is the faster one from a single limb on.
    int32_t radixBinary = 1;
    // Limbs per leaf of the decimal-to-binary tree. With 45, a block below
    // 10^(180·2^i) and the power 5^(180·2^i) it is multiplied by have 63.5·2^i
    // 16-bit halves together: their transform of 64·2^i points is unpadded.
    int32_t radixBinaryLeaf = 45;
    // The same where the products take the 64-bit primes' vector butterflies
    // (50 bits a point): with 68, a block (29·2^i words) and its power (20·2^i)
    // make 31.2·2^i points, nearly filling 32·2^i.
    int32_t radixBinaryLeafVector = 68;
    // Limbs from which the longer powers of 5 of that tree are squared on a
    // helper thread while the leaves and the lower levels are made (0:
    // never). Off: it hides the squares and, in a fresh process, the 64-bit
    // transform's tables (0.4 ms) behind the leaves, but with both cores
    // busy the wait for the helper made a 300000-digit conversion up to
    // twice as slow in bench/.
    int32_t radixBinaryParallel = 0;
    int32_t binaryNtt = 200;  // 32-bit words of the shorter factor for the transform product
    // 32-bit words of the shorter factor from which binary products may go to
    // the transform over three 64-bit primes instead, when its power-of-two
    // length costs less (0: never), with its vector butterflies and with the
    // plain ones (those were measured 2.3 times slower than the 16-bit
    // transform: never). With 160 the products of the tree's level 3 (by a
    // power of 158 words) stay on the mulx rows, measured faster.
    int32_t binaryNtt64 = 160;
    int32_t binaryNtt64Plain = 0;
    // Its points from which those binary products run on two threads (0:
    // never): their thread starts cost more than they save below.
    int32_t binaryNtt64Parallel = 1 << 17;
    // Limbs of a product (la + lb) that one transform takes: the primes have
    // roots of unity for up to 2^25 points. Longer products go to the 64-bit
    // transform; clamped to 2^25 + 1 where it is read.
    int32_t nttMaxLength = (1 << 25) + 1;
    // Limbs of a product (la + lb) from which it goes to the transform over
    // three 64-bit primes (ntt64_decimal.cpp), which has no length limit;
    // products beyond nttMaxLength go there in any case. Below 2^20 limbs its thread
    // starts (two dozen a product) cost more than its vector butterflies save.
    int32_t ntt64Length = 1 << 20;
    // Its points up to which six limbs make one point, four beyond; clamped
    // to 2^26, the longest the primes' product allows with six.
    int32_t ntt64SixLimbs = 1 << 26;
    int32_t ntt64Parallel = 1 << 15;  // its points from which it runs on two threads (0: never)
    int32_t nttParallel =
        1 << 15;  // transform points from which the two primes run on two threads (0: never)
    int64_t pollWork = 1 << 21;  // limb products (or transform butterflies) between polls

    // Every threshold at or near its minimum; for tests.
    static FastThresholds Lowered() {
        FastThresholds t;
        t.mulKaratsuba = 2;
        t.mulNtt = 12;
        t.sqrKaratsuba = 2;
        t.sqrNtt = 12;
        t.divNewton = 3;
        t.sqrtRecursive = 5;
        t.cbrtNewton = 4;
        t.productTree = 2;
        t.productLeaf = 6;
        t.rangePrimes = 40;
        t.gcdLehmer = 3;
        t.powVector = 1;
        t.gcdHalf = 6;
        t.gcdHalfLeaf = 5;
        t.gcdMatrixNtt = 4;
        t.gcdMatrixNtt64 = 8;
        t.modInverse = 1;
        t.modInverseHalf = 6;
        t.radixDivide = 8;
        t.radixBinary = 1;
        t.radixBinaryLeaf = 3;
        t.radixBinaryLeafVector = 3;
        t.radixBinaryParallel = 1;
        t.binaryNtt = 4;
        t.binaryNtt64 = 8;
        t.binaryNtt64Plain = 8;
        t.nttParallel = 64;
        t.pollWork = 256;
        return t;
    }
};

// The thresholds in force; only tests and the benchmark change them.
extern FastThresholds gFastThresholds;
