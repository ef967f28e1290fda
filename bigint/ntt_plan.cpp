// The two-prime transform's pieces: root tables, the forward and inverse
// transforms, the join of the two residues and the carry into limbs, shared
// by the products of mul_ntt.cpp and offered in pieces (ntt_plan.h) to work
// that reuses a transformed operand or adds products before one inverse.
//
// Method: decimation in frequency forward (natural order in, bit-reversed
// out), decimation in time inverse with the forward roots (bit-reversed in,
// natural out) followed by reversing indices 1 … N−1, which turns w into
// w^−1. Points are lazy residues in [0, 2p) for p < 2^30 (ntt_kernels.h).
//
// Bounds: the join gives a value in [0, p1·p2), p1·p2 ≈ 7.9·10^16. A
// coefficient of one product is below n·20000^2 <= 2^25·4·10^8 ≈ 1.3·10^16
// (limbs up to 20000); a sum or difference of t products stays below
// t·1.3·10^16 in magnitude, and a signed one is read in (−p1·p2/2, p1·p2/2):
// NttPlanFits checks t·shorter·4·10^8 < p1·p2 / 2.
//
// Allocation: residues and root tables from nothrow new (code 3 when
// refused).
#include "bigint/ntt_plan.h"

#include <algorithm>
#include <cassert>
#include <new>

#include "bigint/thresholds.h"
#include "bigint/two_threads.h"

namespace ntt {

uint32_t PowMod(uint64_t b, uint64_t e, uint32_t m) {
    uint64_t r = 1;
    b %= m;
    while (e > 0) {
        if (e & 1) r = r * b % m;
        b = b * b % m;
        e >>= 1;
    }
    return static_cast<uint32_t>(r);
}

namespace {

// roots[m + j] = w_2m^j in Montgomery form below p, for m = 1, 2, 4 … n/2.
// The longest row is made by eight independent chains of products, so that
// the multiplier is never waiting on its last result; each shorter row is
// every other root of the row above it. 0, or kStopped.
int FillRoots(PollClock& clk, const Prime& pr, const Mont& mt, int32_t n, uint32_t* t) {
    const int32_t half = n / 2;
    const uint32_t w = mt.ToMont(PowMod(pr.generator, (pr.p - 1) / uint64_t(n), pr.p));
    uint32_t x[8];
    x[0] = mt.ToMont(1);
    for (int i = 1; i < 8; ++i) x[i] = mt.Mul(x[i - 1], w);
    const uint32_t w8 = mt.Mul(x[7], w);
    for (int32_t j = 0; j < half; j += 8) {
        for (int i = 0; i < 8 && j + i < half; ++i) {
            t[half + j + i] = x[i] >= pr.p ? x[i] - pr.p : x[i];
            x[i] = mt.Mul(x[i], w8);
        }
        if ((j & 0x7FFF) == 0 && clk.Tick(0x8000)) return Result::kStopped;
    }
    for (int32_t m = half / 2; m >= 1; m >>= 1)
        for (int32_t j = 0; j < m; ++j) t[m + j] = t[2 * m + 2 * j];
    return 0;
}

// Tables up to this many points (4 MB a prime) are kept between products;
// longer ones cost a few per cent of their product and are made for it.
constexpr int32_t kKeptRoots = 1 << 20;

// Transforms of at most this many points run all their stages while the
// array is in cache; larger ones do one stage over the whole array and
// recurse into the halves, which are independent transforms of half length.
constexpr int32_t kCacheBlock = 1 << 13;

bool InverseRec(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    const NttKernels& k = ActiveNttKernels();
    if (n <= kCacheBlock) {
        if (n >= 2) k.inverseHead(mt, roots, a, n);
        for (int32_t m = 8; m < n;) {
            if (k.inverseStage2 != nullptr && m >= 16 && 2 * m < n) {
                k.inverseStage2(mt, roots, a, n, 2 * m);
                m <<= 2;
            } else {
                k.inverseStage(mt, roots, a, n, m);
                m <<= 1;
            }
        }
        return !clk.Tick(int64_t(n / 2) * 14);
    }
    if (!InverseRec(clk, mt, roots, a, n / 2) || !InverseRec(clk, mt, roots, a + n / 2, n / 2))
        return false;
    k.inverseStage(mt, roots, a, n, n / 2);
    return !clk.Tick(n / 2);
}

// v + carry into one limb; answers the next carry.
inline uint64_t CarryStep(uint64_t v, uint64_t carry, Limb* out) {
    v += carry;
    const uint64_t q = v / kLimbBase;
    *out = static_cast<Limb>(v - q * kLimbBase);
    return q;
}

constexpr uint64_t kModulusProduct = uint64_t(kP1.p) * kP2.p;

}  // namespace

Result RootTable::Make(PollClock& clk, int index, int32_t n) {
    static uint32_t* kept[2] = {nullptr, nullptr};
    static int32_t keptSize[2] = {0, 0};
    if (keptSize[index] >= n) {
        roots_ = kept[index];
        return Result::kOk;
    }
    const Prime& pr = kPrimes[index];
    uint32_t* t = new (std::nothrow) uint32_t[size_t(n)];
    if (!t) return Result::kNoMemory;
    if (FillRoots(clk, pr, Mont(pr.p), n, t) != 0) {
        delete[] t;
        return Result::kStopped;
    }
    if (n <= kKeptRoots) {
        delete[] kept[index];
        kept[index] = t;
        keptSize[index] = n;
    } else {
        owned_ = t;
    }
    roots_ = t;
    return Result::kOk;
}

bool Forward(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    const NttKernels& k = ActiveNttKernels();
    if (n <= kCacheBlock) {
        for (int32_t m = n / 2; m >= 8;) {
            if (k.forwardStage2 != nullptr && m >= 32) {
                k.forwardStage2(mt, roots, a, n, m);
                m >>= 2;
            } else {
                k.forwardStage(mt, roots, a, n, m);
                m >>= 1;
            }
        }
        if (n >= 2) k.forwardTail(mt, roots, a, n);
        return !clk.Tick(int64_t(n / 2) * 14);
    }
    k.forwardStage(mt, roots, a, n, n / 2);
    if (clk.Tick(n / 2)) return false;
    return Forward(clk, mt, roots, a, n / 2) && Forward(clk, mt, roots, a + n / 2, n / 2);
}

bool Inverse(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    if (!InverseRec(clk, mt, roots, a, n)) return false;
    std::reverse(a + 1, a + n);
    return true;
}

uint32_t PointScale(const Mont& mt, int32_t n) {
    return static_cast<uint32_t>(uint64_t(mt.r2) * PowMod(uint64_t(n), mt.p - 2, mt.p) % mt.p);
}

namespace {

// PointScale for prime i and n = 2^log, made once: short sums of products
// would otherwise spend as long on its power as on their points.
uint32_t KeptPointScale(int i, int32_t n) {
    static uint32_t kept[2][kMaxLog + 1] = {};
    int log = 0;
    while ((int32_t(1) << log) < n) ++log;
    uint32_t& s = kept[i][log];
    if (s == 0) s = PointScale(Mont(kPrimes[i].p), n);
    return s;
}

}  // namespace

Coefficients::Coefficients(const uint32_t* r1, const uint32_t* r2)
    : r1_(r1),
      r2_(r2),
      pair_{kP1.p, Mont(kP2.p),
            static_cast<uint32_t>(uint64_t(PowMod(kP1.p % kP2.p, kP2.p - 2, kP2.p)) *
                                  ((uint64_t(1) << 32) % kP2.p) % kP2.p)} {}

// One carry is a chain of dependent divisions, so four segments of the array
// run side by side, each from a carry of 0 (the first three are seg long, the
// last what remains); each segment's last carry is then added into the limbs
// above it.
namespace {

// Coefficients already joined, as a source of blocks for the carry.
struct JoinedCoefficients {
    const uint64_t* c;
    void Block(int32_t from, int32_t count, uint64_t* out) const {
        std::copy(c + from, c + from + count, out);
    }
};

template <typename Source>
Result CarryBlocks(const Source& c, int32_t count, Limb* p, PollClock& clk, uint64_t bias,
                   uint64_t* top) {
    uint64_t buf[4][kBlock];
    const int32_t seg = count < 16 ? count : (count + 3) / 4;
    const int32_t last = count < 16 ? 0 : count - 3 * seg;
    const int lanes = count < 16 ? 1 : 4;
    uint64_t c0 = 0, c1 = 0, c2 = 0, c3 = 0;
    for (int32_t from = 0, blocks = 0; from < seg; from += kBlock, ++blocks) {
        const int32_t len = std::min(kBlock, seg - from);
        const int32_t lastLen = std::max(0, std::min(len, last - from));
        for (int s = 0; s < lanes; ++s) {
            const int32_t n = s == 3 ? lastLen : len;
            if (n <= 0) continue;
            c.Block(s * seg + from, n, buf[s]);
            if (bias == 0) continue;
            for (int32_t i = 0; i < n; ++i) {
                const uint64_t v = buf[s][i];
                buf[s][i] = v - (v >= kModulusProduct / 2 ? kModulusProduct : 0) + bias;
            }
        }
        Limb* q = p + from;
        int32_t i = 0;
        if (lanes == 4) {
            for (; i < lastLen; ++i) {
                c0 = CarryStep(buf[0][i], c0, q + i);
                c1 = CarryStep(buf[1][i], c1, q + seg + i);
                c2 = CarryStep(buf[2][i], c2, q + 2 * seg + i);
                c3 = CarryStep(buf[3][i], c3, q + 3 * seg + i);
            }
            for (; i < len; ++i) {
                c0 = CarryStep(buf[0][i], c0, q + i);
                c1 = CarryStep(buf[1][i], c1, q + seg + i);
                c2 = CarryStep(buf[2][i], c2, q + 2 * seg + i);
            }
        } else {
            for (; i < len; ++i) c0 = CarryStep(buf[0][i], c0, q + i);
        }
        if (blocks % kBlocksPerTick == kBlocksPerTick - 1 &&
            clk.Tick(lanes * kBlockWork * kBlocksPerTick))
            return Result::kStopped;
    }
    uint64_t high = lanes == 1 ? c0 : c3;
    const uint64_t carry[3] = {c0, c1, c2};
    for (int s = 0; s + 1 < lanes; ++s) {
        uint64_t rest = carry[s];
        for (int32_t i = (s + 1) * seg; rest != 0; ++i) {
            if (i >= count) {
                high += rest;
                break;
            }
            rest = CarryStep(uint64_t(p[i]), rest, p + i);
        }
    }
    *top = high;
    return Result::kOk;
}

}  // namespace

Result CarryIntoLimbs(const Coefficients& c, int32_t count, Limb* p, PollClock& clk, uint64_t bias,
                      uint64_t* top) {
    return CarryBlocks(c, count, p, clk, bias, top);
}

}  // namespace ntt

using namespace ntt;

int32_t NttPoints(int32_t coefficients) {
    int32_t n = 8;
    while (n < coefficients) n <<= 1;
    return n;
}

bool NttPlanFits(int32_t n, int32_t shorter, int terms) {
    const int64_t perProduct = std::min<int64_t>(n, shorter) * 400000000;
    return n <= (int32_t(1) << kMaxLog) &&
           uint64_t(perProduct) * uint64_t(terms) < kModulusProduct / 2;
}

NttVector::~NttVector() { delete[] r_; }

bool NttVector::Reset(int32_t n) {
    if (n == n_ && r_ != nullptr) return true;
    delete[] r_;
    n_ = 0;
    r_ = new (std::nothrow) uint32_t[2 * size_t(n)];
    if (r_ == nullptr) return false;
    n_ = n;
    return true;
}

namespace {

// work(i, clock) for both primes i, with both root tables made first on this
// thread; from nttParallel points the second prime runs on a helper thread,
// as in the products of mul_ntt.cpp.
template <typename Work>
Result BothPrimes(PollClock& clk, int32_t n, RootTable* roots, Work&& work) {
    for (int i = 0; i < 2; ++i) {
        const Result rc = roots[i].Make(clk, i, n);
        if (!Ok(rc)) return rc;
    }
    const int32_t parallelFrom = gFastThresholds.nttParallel;
    return OnTwoThreads(
        clk, parallelFrom > 0 && n >= parallelFrom, [&](PollClock& c) { return work(0, c); },
        [&](PollClock& c) { return work(1, c); });
}

}  // namespace

Result NttForward(PollClock& clk, const Limb* a, int32_t la, int32_t n, NttVector* out) {
    assert(la <= n && n <= (int32_t(1) << kMaxLog));
    if (!out->Reset(n)) return Result::kNoMemory;
    RootTable roots[2];
    return BothPrimes(clk, n, roots, [&](int i, PollClock& clock) {
        uint32_t* f = out->prime(i);
        for (int32_t k = 0; k < la; ++k) f[k] = static_cast<uint16_t>(a[k]);
        std::fill(f + la, f + n, 0u);
        // Loading touches the array's pages: charged as two butterflies a point.
        const bool done =
            !clock.Tick(2 * int64_t(n)) && Forward(clock, Mont(kPrimes[i].p), roots[i].get(), f, n);
        return done ? Result::kOk : Result::kStopped;
    });
}

void NttMulAccumulate(NttVector* acc, const NttVector& a, const NttVector& b, NttAccumulate how) {
    const int32_t n = a.points();
    assert(b.points() == n && acc->points() == n);
    for (int i = 0; i < 2; ++i) {
        const Mont mt(kPrimes[i].p);
        ActiveNttKernels().mulAccumulate(mt, acc->prime(i), a.prime(i), b.prime(i),
                                         KeptPointScale(i, n), static_cast<int>(how), n);
    }
}

namespace {

Result InverseBoth(PollClock& clk, NttVector* acc) {
    const int32_t n = acc->points();
    RootTable roots[2];
    return BothPrimes(clk, n, roots, [&](int i, PollClock& clock) {
        const bool done = Inverse(clock, Mont(kPrimes[i].p), roots[i].get(), acc->prime(i), n);
        return done ? Result::kOk : Result::kStopped;
    });
}

}  // namespace

Result NttToLimbs(PollClock& clk, NttVector* acc, int32_t count, Limb* p) {
    assert(count <= acc->points());
    Result rc = InverseBoth(clk, acc);
    uint64_t top = 0;
    if (Ok(rc))
        rc = CarryIntoLimbs(Coefficients(acc->prime(0), acc->prime(1)), count, p, clk, 0, &top);
    if (!Ok(rc)) return rc;
    assert(top < 32768);
    p[count] = static_cast<Limb>(top);
    return Result::kOk;
}

Result NttToLimbsSigned(PollClock& clk, NttVector* acc, int32_t count, Limb* p, bool* negative) {
    assert(count <= acc->points());
    // Each coefficient c is carried as c + T·(B − 1), T·(B − 1) > p1·p2 / 2:
    // the sum then gains T·B^count − T, taken off again below.
    constexpr uint64_t kT = kModulusProduct / 2 / (kLimbBase - 1) + 1;
    Result rc = InverseBoth(clk, acc);
    uint64_t top = 0;
    if (Ok(rc))
        rc = CarryIntoLimbs(Coefficients(acc->prime(0), acc->prime(1)), count, p, clk,
                            kT * (kLimbBase - 1), &top);
    if (!Ok(rc)) return rc;
    uint64_t rest = kT;
    for (int32_t i = 0; i < count && rest != 0; ++i) rest = CarryStep(uint64_t(p[i]), rest, p + i);
    top += rest;
    // |sum| < B^count: the high part is 0 or −1.
    assert(top == kT || top + 1 == kT);
    *negative = top != kT;
    if (*negative) {
        // B^count − p, limb by limb.
        int32_t i = 0;
        while (i < count && p[i] == 0) ++i;
        if (i < count) {
            p[i] = static_cast<Limb>(kLimbBase - p[i]);
            for (++i; i < count; ++i) p[i] = static_cast<Limb>(kLimbBase - 1 - p[i]);
        }
    }
    return Result::kOk;
}

Result NttToLimbsCyclic(PollClock& clk, NttVector* acc, Limb* p) {
    const int32_t n = acc->points();
    Result rc = InverseBoth(clk, acc);
    uint64_t top = 0;
    if (Ok(rc)) rc = CarryIntoLimbs(Coefficients(acc->prime(0), acc->prime(1)), n, p, clk, 0, &top);
    if (!Ok(rc)) return rc;
    // B^n = 1 modulo B^n − 1: the carry out of the top re-enters at the bottom,
    // at most twice (the second time it is at most 1).
    for (int32_t i = 0; top != 0; i = i + 1 == n ? 0 : i + 1)
        top = CarryStep(uint64_t(p[i]), top, p + i);
    return Result::kOk;
}

Result NttToCoefficients(PollClock& clk, NttVector* acc, int32_t count, uint64_t* c) {
    assert(count <= acc->points());
    const Result rc = InverseBoth(clk, acc);
    if (!Ok(rc)) return rc;
    const Coefficients joined(acc->prime(0), acc->prime(1));
    for (int32_t from = 0; from < count; from += kBlock) {
        joined.Block(from, std::min(kBlock, count - from), c + from);
        if (clk.Tick(kBlockWork)) return Result::kStopped;
    }
    return Result::kOk;
}

Result CarryCoefficients(PollClock& clk, const uint64_t* c, int32_t count, Limb* p) {
    uint64_t top = 0;
    const Result rc = CarryBlocks(JoinedCoefficients{c}, count, p, clk, 0, &top);
    if (!Ok(rc)) return rc;
    assert(top < 32768);
    p[count] = static_cast<Limb>(top);
    return Result::kOk;
}
