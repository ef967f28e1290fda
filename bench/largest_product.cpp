// The longest product a value can hold. A record's top is a signed 32-bit
// index, so a value has at most 2^31 − 1 limbs: two factors of 2^30 − 8
// limbs (4,294,967,264 digits each) give a product of 2^31 − 16 limbs, a
// transform of 2^29 points. Random limbs from a fixed seed; the product is
// checked by its remainders modulo 2^61 − 1 and 2^31 − 1 against those of its
// factors. About 19 GB and a minute on two cores, so it is run by hand:
//   ordix_largest_product [limbs of each factor, default 2^30 − 8]
// The transform itself has room for 2^32 points; with --transform LOG it
// runs forward and back over 2^LOG points (8·2^LOG bytes) on the first
// vector prime, where the processor has them, and checks that each point
// came back times 2^LOG.
#include <sys/resource.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bigint/alloc.h"
#include "bigint/bigint.h"
#include "bigint/ntt64_kernels.h"
#include "bigint/poll_clock.h"

namespace {

// x modulo m = 2^bits − 1 (bits 61 or 31) for x below 2^(2·bits): two folds
// leave it below m + 3.
uint64_t Reduce(unsigned __int128 x, int bits) {
    const uint64_t m = (uint64_t(1) << bits) - 1;
    uint64_t s = uint64_t(x & m) + uint64_t(x >> bits);
    s = (s & m) + (s >> bits);
    return s >= m ? s - m : s;
}

// The value of limbs[0..count) modulo 2^bits − 1, by Horner's rule from the
// top: r·10^4 + limb stays below 2^(bits + 14).
uint64_t Residue(const Limb* limbs, int64_t count, int bits) {
    uint64_t r = 0;
    for (int64_t i = count - 1; i >= 0; --i)
        r = Reduce((unsigned __int128)r * kLimbBase + uint16_t(limbs[i]), bits);
    return r;
}

double SecondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

long PeakMb() {
    rusage ru = {};
    getrusage(RUSAGE_SELF, &ru);
    return ru.ru_maxrss / 1024;
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

// Points j (below p) forward and back over 2^log points: each must come back
// as 2^log·j mod p.
int RoundTrip(int log) {
    if (!Ntt64VecAvailable() || Ntt64VecPrimes() == nullptr) {
        std::fprintf(stderr, "no vector butterflies here\n");
        return 2;
    }
    const uint64_t p = Ntt64VecPrimes()[0].p;
    const int64_t n = int64_t(1) << log;
    uint64_t* a = new (std::nothrow) uint64_t[size_t(n)];
    if (a == nullptr) {
        std::fprintf(stderr, "no memory for 2^%d points\n", log);
        return 3;
    }
    for (int64_t j = 0; j < n; ++j) a[j] = uint64_t(j) % p;
    CalcContext ctx;
    PollClock clk(&ctx);
    const auto start = std::chrono::steady_clock::now();
    const bool done =
        Ntt64VecTransform(clk, 0, false, a, n) && Ntt64VecTransform(clk, 0, true, a, n);
    const double seconds = SecondsSince(start);
    int64_t wrong = 0;
    const uint64_t step = uint64_t(n) % p;
    for (int64_t j = 0, want = 0; done && j < n; ++j) {
        const uint64_t got = a[j] >= p ? a[j] - p : a[j];
        wrong += got != uint64_t(want);
        want += step;
        if (uint64_t(want) >= p) want -= p;
    }
    std::printf("2^%d points forward and back: %.2f s, peak %ld MB, %" PRId64 " wrong\n", log,
                seconds, PeakMb(), wrong);
    delete[] a;
    return done && wrong == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 2 && std::strcmp(argv[1], "--transform") == 0) {
        const int log = std::atoi(argv[2]);
        if (log < 6 || log > 32) {
            std::fprintf(stderr, "--transform 6 to 32\n");
            return 2;
        }
        return RoundTrip(log);
    }
    const int64_t limbs = argc > 1 ? std::atoll(argv[1]) : (int64_t(1) << 30) - 8;
    // The product's array holds both tops and ten limbs more (BigMul).
    if (limbs < 1 || 2 * limbs + 8 > INT32_MAX) {
        std::fprintf(stderr, "factors of 1 to %d limbs\n", (INT32_MAX - 8) / 2);
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
    const double seconds = SecondsSince(start);
    std::printf("%" PRId64 " by %" PRId64 " limbs (%" PRId64
                " digits each): code %d, %.2f s, peak %ld MB\n",
                limbs, limbs, 4 * limbs, int(rc), seconds, PeakMb());
    if (!Ok(rc)) return 1;
    bool same = true;
    for (int bits : {61, 31}) {
        const uint64_t want = Reduce(
            (unsigned __int128)Residue(a.limbs, limbs, bits) * Residue(b.limbs, limbs, bits), bits);
        const uint64_t got = Residue(p.limbs, int64_t(p.top) + 1, bits);
        std::printf("modulo 2^%d - 1: %s\n", bits, got == want ? "agrees" : "DIFFERS");
        same = same && got == want;
    }
    BigFree(&a);
    BigFree(&b);
    BigFree(&p);
    return same ? 0 : 1;
}
