// Product by number-theoretic transforms over two primes, joined by the
// Chinese remainder theorem.
//
// The limbs themselves are the coefficients. A coefficient of the cyclic
// convolution is a sum of at most min(la, lb) products of limbs of at most
// 20000, so it stays below 2^25 · 4·10^8 ≈ 1.3·10^16 for every length the
// primes allow (2^25), under p1·p2 ≈ 7.9·10^16: the residues determine it.
//
// Both primes are below 2^30 so that Montgomery products can run lazily on
// values in [0, 2p): forward transform by decimation in frequency (natural
// order in, bit-reversed out), pointwise product, and the inverse by
// decimation in time with the forward roots (bit-reversed in, natural out)
// followed by reversing indices 1 … N−1, which turns w into w^−1.
//
// Long transforms run the second prime on a helper thread. Only the calling
// thread polls; when it is told to stop it cancels the helper and waits for
// it, which takes at most one stage of the helper's transform.
//
// Allocation: the buffers and root tables come from nothrow new (code 3 when
// refused); a helper thread that cannot be started, for want of memory or
// of a thread, leaves both primes to the calling thread.
#include <algorithm>
#include <atomic>
#include <cassert>
#include <chrono>
#include <new>
#include <system_error>
#include <thread>

#include "bigint/mul_kernels.h"
#include "bigint/ntt_kernels.h"
#include "bigint/thresholds.h"

namespace {

struct Prime {
    uint32_t p;
    uint32_t generator;
    int maxLog;  // 2^maxLog divides p − 1
};

constexpr Prime kP1 = {469762049u, 3, 26};  // 7·2^26 + 1
constexpr Prime kP2 = {167772161u, 3, 25};  // 5·2^25 + 1
constexpr int kMaxLog = 25;

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

// The root table of one prime for one product. The kept tables are grown on
// the calling thread only (the program's arithmetic runs on one thread); the
// helper thread reads a table made before it starts.
class RootTable {
public:
    RootTable() = default;
    ~RootTable() { delete[] owned_; }
    RootTable(const RootTable&) = delete;
    RootTable& operator=(const RootTable&) = delete;

    // kOk, kNoMemory or kStopped (the kept table then stays as it was).
    Result Make(PollClock& clk, int index, const Prime& pr, int32_t n) {
        static uint32_t* kept[2] = {nullptr, nullptr};
        static int32_t keptSize[2] = {0, 0};
        if (keptSize[index] >= n) {
            roots_ = kept[index];
            return Result::kOk;
        }
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
    const uint32_t* get() const { return roots_; }

private:
    const uint32_t* roots_ = nullptr;
    uint32_t* owned_ = nullptr;
};

// Transforms of at most this many points run all their stages while the
// array is in cache; larger ones do one stage over the whole array and
// recurse into the halves, which are independent transforms of half length.
constexpr int32_t kCacheBlock = 1 << 13;

bool Forward(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    const NttKernels& k = ActiveNttKernels();
    if (n <= kCacheBlock) {
        for (int32_t m = n / 2; m >= 8; m >>= 1) k.forwardStage(mt, roots, a, n, m);
        if (n >= 2) k.forwardTail(mt, roots, a, n);
        return !clk.Tick(int64_t(n / 2) * 14);
    }
    k.forwardStage(mt, roots, a, n, n / 2);
    if (clk.Tick(n / 2)) return false;
    return Forward(clk, mt, roots, a, n / 2) && Forward(clk, mt, roots, a + n / 2, n / 2);
}

bool InverseRec(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    const NttKernels& k = ActiveNttKernels();
    if (n <= kCacheBlock) {
        if (n >= 2) k.inverseHead(mt, roots, a, n);
        for (int32_t m = 8; m < n; m <<= 1) k.inverseStage(mt, roots, a, n, m);
        return !clk.Tick(int64_t(n / 2) * 14);
    }
    if (!InverseRec(clk, mt, roots, a, n / 2) || !InverseRec(clk, mt, roots, a + n / 2, n / 2))
        return false;
    k.inverseStage(mt, roots, a, n, n / 2);
    return !clk.Tick(n / 2);
}

bool Inverse(PollClock& clk, const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    if (!InverseRec(clk, mt, roots, a, n)) return false;
    std::reverse(a + 1, a + n);
    return true;
}

// Limbs (at most 20000) or 16-bit words, as points of the transform.
template <typename In>
void Load(const In* a, int32_t la, uint32_t* f, int32_t n) {
    for (int32_t i = 0; i < la; ++i) f[i] = static_cast<uint16_t>(a[i]);
    std::fill(f + la, f + n, 0u);
}

// The cyclic convolution of a and b (b null: a with itself) modulo prime
// number index, left in fa as values in [0, 2p); fb is scratch.
template <typename In>
Result Convolve(PollClock& clk, const Prime& pr, const uint32_t* roots, const In* a, int32_t la,
                const In* b, int32_t lb, uint32_t* fa, uint32_t* fb, int32_t n) {
    const Mont mt(pr.p);
    if (clk.Tick(n)) return Result::kStopped;
    // The pointwise product leaves a factor R^−1 and the inverse a factor n:
    // each point is also multiplied by R^2 / n in Montgomery form.
    const uint32_t scale =
        static_cast<uint32_t>(uint64_t(mt.r2) * PowMod(n, pr.p - 2, pr.p) % pr.p);
    // Loading touches fresh scratch pages: charged as two butterflies a point.
    Load(a, la, fa, n);
    if (clk.Tick(2 * int64_t(n)) || !Forward(clk, mt, roots, fa, n)) return Result::kStopped;
    if (b != nullptr) {
        Load(b, lb, fb, n);
        if (clk.Tick(2 * int64_t(n)) || !Forward(clk, mt, roots, fb, n)) return Result::kStopped;
    }
    ActiveNttKernels().pointwise(mt, fa, b != nullptr ? fb : nullptr, scale, n);
    return Inverse(clk, mt, roots, fa, n) ? Result::kOk : Result::kStopped;
}

// The coefficients of a convolution, joined from its residues modulo the
// two primes a block at a time; each is below p1·p2 < 2^57.
class Coefficients {
public:
    Coefficients(const uint32_t* r1, const uint32_t* r2)
        : r1_(r1),
          r2_(r2),
          pair_{kP1.p, Mont(kP2.p),
                static_cast<uint32_t>(uint64_t(PowMod(kP1.p % kP2.p, kP2.p - 2, kP2.p)) *
                                      ((uint64_t(1) << 32) % kP2.p) % kP2.p)} {}
    void Block(int32_t from, int32_t count, uint64_t* out) const {
        ActiveNttKernels().crt(pair_, r1_ + from, r2_ + from, out, count);
    }

private:
    const uint32_t* r1_;
    const uint32_t* r2_;
    CrtPair pair_;
};

// The linear convolution of a and b (b null: a with itself) by both primes;
// finish(coefficients, clk) then takes its la + lb − 1 coefficients and
// answers kOk or kStopped.
template <typename In, typename Finish>
Result Run(PollClock& clk, const In* a, int32_t la, const In* b, int32_t lb, Finish&& finish) {
    const int32_t len = la + lb;
    assert(len <= NttMaxLength());
    int32_t n = 1;
    while (n < len - 1) n <<= 1;
    const int32_t parallelFrom = gFastThresholds.nttParallel;
    const bool parallel = parallelFrom > 0 && n >= parallelFrom;
    Scratch<uint32_t> buf((parallel ? 4 : 3) * int64_t(n));
    if (!buf) return Result::kNoMemory;
    uint32_t* r1 = buf.get();
    uint32_t* fa = r1 + n;
    uint32_t* fb = fa + n;
    RootTable roots1, roots2;
    Result rc = roots1.Make(clk, 0, kP1, n);
    if (Ok(rc)) rc = roots2.Make(clk, 1, kP2, n);
    if (!Ok(rc)) return rc;
    std::thread helper;
    std::atomic<bool> cancel{false}, helperDone{false};
    Result helperRc = Result::kOk;
    if (parallel) {
        uint32_t* fb2 = fb + n;
        try {
            helper = std::thread([&, fb2] {
                PollClock helperClock(nullptr, &cancel);
                helperRc = Convolve(helperClock, kP2, roots2.get(), a, la, b, lb, fa, fb2, n);
                helperDone.store(true, std::memory_order_release);
            });
        } catch (const std::system_error&) {
            // No thread to be had: both primes run here.
        } catch (const std::bad_alloc&) {
            // No memory for the thread's state: the same.
        }
    }
    rc = Convolve(clk, kP1, roots1.get(), a, la, b, lb, r1, fb, n);
    if (helper.joinable()) {
        // The helper is usually a moment behind: wait by yielding, not by
        // sleeping, and poll every millisecond in case it lags far (the
        // other core busy).
        auto lastPoll = std::chrono::steady_clock::now();
        while (Ok(rc) && !helperDone.load(std::memory_order_acquire)) {
            std::this_thread::yield();
            const auto now = std::chrono::steady_clock::now();
            if (now - lastPoll < std::chrono::milliseconds(1)) continue;
            lastPoll = now;
            if (clk.Tick(gFastThresholds.pollWork)) rc = Result::kStopped;
        }
        if (!Ok(rc)) cancel = true;
        helper.join();
        if (Ok(rc)) rc = helperRc;
    } else if (Ok(rc)) {
        rc = Convolve(clk, kP2, roots2.get(), a, la, b, lb, fa, fb, n);
    }
    if (!Ok(rc)) return rc;

    return finish(Coefficients(r1, fa), clk);
}

// Coefficients per block of the passes below, and between their polls (a
// coefficient costs about as much as sixteen butterflies).
constexpr int32_t kBlock = 256;
constexpr int32_t kBlocksPerTick = 64;
constexpr int64_t kBlockWork = 16 * kBlock;

// v + carry into one limb; answers the next carry.
inline uint64_t CarryStep(uint64_t v, uint64_t carry, Limb* out) {
    v += carry;
    const uint64_t q = v / kLimbBase;
    *out = static_cast<Limb>(v - q * kLimbBase);
    return q;
}

// Carries the coefficients into base-10000 limbs p[0 … count], the top limb
// taking what is left. One carry is a chain of dependent divisions, so four
// segments of the array run side by side, each from a carry of 0 (the first
// three are seg long, the last what remains); each segment's last carry is
// then added into the limbs above it.
Result CarryIntoLimbs(const Coefficients& c, int32_t count, Limb* p, PollClock& clk) {
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
            if (n > 0) c.Block(s * seg + from, n, buf[s]);
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
    uint64_t top = lanes == 1 ? c0 : c3;
    const uint64_t carry[3] = {c0, c1, c2};
    for (int s = 0; s + 1 < lanes; ++s) {
        uint64_t rest = carry[s];
        for (int32_t i = (s + 1) * seg; rest != 0; ++i) {
            if (i >= count) {
                top += rest;
                break;
            }
            rest = CarryStep(uint64_t(p[i]), rest, p + i);
        }
    }
    assert(top < 32768);
    p[count] = static_cast<Limb>(top);
    return Result::kOk;
}

Result RunLimbs(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    return Run(clk, a, la, b, lb, [&](const Coefficients& c, PollClock& clock) {
        return CarryIntoLimbs(c, la + lb - 1, p, clock);
    });
}

}  // namespace

int32_t NttMaxLength() {
    return std::min(gFastThresholds.nttMaxLength, (int32_t(1) << kMaxLog) + 1);
}

Result MulNtt(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    return RunLimbs(clk, a, la, b, lb, p);
}

Result SqrNtt(PollClock& clk, const Limb* a, int32_t la, Limb* p) {
    return RunLimbs(clk, a, la, nullptr, la, p);
}

Result NttConvolve16(PollClock& clk, const uint16_t* a, int32_t la, const uint16_t* b, int32_t lb,
                     uint64_t* c) {
    return Run(clk, a, la, b, lb, [&](const Coefficients& coef, PollClock& clock) -> Result {
        const int32_t count = la + lb - 1;
        for (int32_t from = 0, blocks = 0; from < count; from += kBlock, ++blocks) {
            coef.Block(from, std::min(kBlock, count - from), c + from);
            if (blocks % kBlocksPerTick == kBlocksPerTick - 1 &&
                clock.Tick(kBlockWork * kBlocksPerTick))
                return Result::kStopped;
        }
        return Result::kOk;
    });
}
