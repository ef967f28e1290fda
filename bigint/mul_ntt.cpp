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
// followed by reversing indices 1 … N−1, which turns w into w^−1. The
// transforms, root tables, join and carry live in ntt_plan.cpp.
//
// Long transforms run the second prime on a helper thread. Only the calling
// thread polls; when it is told to stop it cancels the helper and waits for
// it, which takes at most one stage of the helper's transform.
//
// Allocation: the buffers and root tables come from nothrow new (code 3 when
// refused); a helper thread that cannot be started, for want of memory or
// of a thread, leaves both primes to the calling thread.
#include <algorithm>
#include <cassert>
#include <new>

#include "bigint/mul_kernels.h"
#include "bigint/ntt_kernels.h"
#include "bigint/ntt_plan.h"
#include "bigint/thresholds.h"
#include "bigint/two_threads.h"

using namespace ntt;

namespace {

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
    const uint32_t scale = PointScale(mt, n);
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
    Result rc = roots1.Make(clk, 0, n);
    if (Ok(rc)) rc = roots2.Make(clk, 1, n);
    if (!Ok(rc)) return rc;
    // The second prime takes a buffer of its own for b when it may run
    // beside the first.
    rc = OnTwoThreads(
        clk, parallel,
        [&](PollClock& c) { return Convolve(c, kP1, roots1.get(), a, la, b, lb, r1, fb, n); },
        [&](PollClock& c) {
            return Convolve(c, kP2, roots2.get(), a, la, b, lb, fa, parallel ? fb + n : fb, n);
        });
    if (!Ok(rc)) return rc;

    return finish(Coefficients(r1, fa), clk);
}

Result RunLimbs(PollClock& clk, const Limb* a, int32_t la, const Limb* b, int32_t lb, Limb* p) {
    return Run(clk, a, la, b, lb, [&](const Coefficients& c, PollClock& clock) {
        uint64_t top = 0;
        const Result rc = CarryIntoLimbs(c, la + lb - 1, p, clock, 0, &top);
        assert(!Ok(rc) || top < 32768);
        p[la + lb - 1] = static_cast<Limb>(top);
        return rc;
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
