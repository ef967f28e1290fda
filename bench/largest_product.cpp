// The longest product a value can hold. A record's top is a signed 32-bit
// index, so a value has at most 2^31 − 1 limbs: two factors of 2^30 − 8
// limbs (4,294,967,264 digits each) give a product of 2^31 − 16 limbs, a
// transform of 2^29 points. Random limbs from a fixed seed; the product is
// checked by its remainders modulo 2^61 − 1 and 2^31 − 1 against those of its
// factors. About 19 GB and a minute on two cores, so it is run by hand:
//   ordix_largest_product [limbs of each factor, default 2^30 − 8]
#include <sys/resource.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>

#include "bigint/alloc.h"
#include "bigint/bigint.h"

namespace {

// The value of limbs[0..count) modulo 2^bits − 1 (bits 61 or 31), by Horner's
// rule from the top: r·10^4 + limb stays below 2^75.
uint64_t Residue(const Limb* limbs, int64_t count, int bits) {
    const uint64_t m = (uint64_t(1) << bits) - 1;
    uint64_t r = 0;
    for (int64_t i = count - 1; i >= 0; --i) {
        const unsigned __int128 x = (unsigned __int128)r * kLimbBase + uint16_t(limbs[i]);
        uint64_t s = uint64_t(x & m) + uint64_t(x >> bits);
        s = (s & m) + (s >> bits);
        r = s >= m ? s - m : s;
    }
    return r;
}

uint64_t MulMod(uint64_t a, uint64_t b, int bits) {
    const uint64_t m = (uint64_t(1) << bits) - 1;
    const unsigned __int128 x = (unsigned __int128)a * b;
    uint64_t s = uint64_t(x & m) + uint64_t(x >> bits);
    s = (s & m) + (s >> bits);
    return s >= m ? s - m : s;
}

bool RandomValue(BigInt* v, int64_t limbs, uint64_t seed) {
    v->limbs = AllocLimbs(limbs);
    if (v->limbs == nullptr) return false;
    v->top = static_cast<int32_t>(limbs - 1);
    v->negative = 0;
    uint64_t x = seed * 0x9E3779B97F4A7C15u + 1;
    for (int64_t i = 0; i < limbs; ++i) {
        x ^= x << 13;
        x ^= x >> 7;
        x ^= x << 17;
        v->limbs[i] = static_cast<Limb>(x % kLimbBase);
    }
    if (v->limbs[limbs - 1] == 0) v->limbs[limbs - 1] = 1;
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    const int64_t limbs = argc > 1 ? std::atoll(argv[1]) : (int64_t(1) << 30) - 8;
    if (limbs < 1 || 2 * limbs > INT32_MAX) {
        std::fprintf(stderr, "factors of 1 to %d limbs\n", INT32_MAX / 2);
        return 2;
    }
    BigInt a = {}, b = {}, p = {};
    if (!RandomValue(&a, limbs, 1) || !RandomValue(&b, limbs, 2)) {
        std::fprintf(stderr, "no memory for the factors\n");
        return 3;
    }
    CalcContext ctx;
    const auto start = std::chrono::steady_clock::now();
    const Result rc = BigMul(&ctx, &p, &a, &b);
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    rusage ru = {};
    getrusage(RUSAGE_SELF, &ru);
    std::printf("%" PRId64 " by %" PRId64 " limbs (%" PRId64
                " digits each): code %d, %.2f s, peak %ld MB\n",
                limbs, limbs, 4 * limbs, int(rc), seconds, ru.ru_maxrss / 1024);
    if (!Ok(rc)) return 1;
    bool same = true;
    for (int bits : {61, 31}) {
        const uint64_t want =
            MulMod(Residue(a.limbs, limbs, bits), Residue(b.limbs, limbs, bits), bits);
        const uint64_t got = Residue(p.limbs, int64_t(p.top) + 1, bits);
        std::printf("modulo 2^%d - 1: %s\n", bits, got == want ? "agrees" : "DIFFERS");
        same = same && got == want;
    }
    BigFree(&a);
    BigFree(&b);
    BigFree(&p);
    return same ? 0 : 1;
}
