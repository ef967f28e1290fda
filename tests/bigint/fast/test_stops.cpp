// Q stops every fast path of the public operations at any of its polls, at
// the shipped thresholds and at the lowered ones, leaving the failed
// operation's value and polling no more.
#include <gtest/gtest.h>

#include "bigint/dispatch.h"
#include "fast_support.h"

using namespace fasttest;

TEST(FastStops, QStopsEveryFastPathAtAnyPoll) {
    for (const bool lowered : {false, true}) {
        FastThresholds t = lowered ? FastThresholds::Lowered() : FastThresholds();
        t.nttParallel = 0;  // the wait for the helper thread polls by time
        ThresholdScope scope(t);
        const int32_t n = lowered ? 300 : 4 * t.gcdHalf;
        const int32_t k = lowered ? 300 : 3 * t.gcdHalfLeaf;
        Num a, b, m, x, e, rest, dividend, divisor;
        RandomBig(&a.v, n, true);
        RandomBig(&b.v, n - 3, true);
        RandomBig(&m.v, k, false);
        RandomBig(&x.v, k - 2, false);
        RandomBig(&e.v, lowered ? 30 : 300, false);
        RandomBig(&dividend.v, lowered ? 300 : 80000, true);
        RandomBig(&divisor.v, lowered ? 150 : 40000, true);
        // Products from prime factorisations are fast: these sizes still poll
        // often enough.
        const Num range(lowered ? "3000" : "60000"), half(lowered ? "1500" : "150000"),
            wide(lowered ? "3000" : "300000");
        const struct {
            const char* name;
            std::function<Result(CalcContext*, BigInt*)> op;
            const char* left;
        } cases[] = {
            {"gcd", [&](CalcContext* c, BigInt* r) { return BigGcd(c, &a.v, &b.v, r); }, "1"},
            {"inverse", [&](CalcContext* c, BigInt* r) { return ModInverse(c, &x.v, &m.v, r); },
             "1"},
            {"power", [&](CalcContext* c, BigInt* r) { return ModPow(c, &a.v, &e.v, r, &m.v); },
             "1"},
            {"quotient",
             [&](CalcContext* c, BigInt* r) {
                 return BigDivMod(c, &dividend.v, &divisor.v, r, rest.Out());
             },
             "0"},
            {"square root", [&](CalcContext* c, BigInt* r) { return BigSqrt(c, &a.v, r); }, "1"},
            {"cube root", [&](CalcContext* c, BigInt* r) { return BigCbrt(c, &a.v, r); }, "1"},
            {"factorial", [&](CalcContext* c, BigInt* r) { return BigFact(c, r, &range.v); }, "1"},
            {"binomial",
             [&](CalcContext* c, BigInt* r) { return BigBinomial(c, r, &wide.v, &half.v); }, "1"},
        };
        for (const auto& s : cases) {
            SCOPED_TRACE(std::string(s.name) + (lowered ? ", lowered thresholds" : ""));
            ExpectStopsAtEveryPoll(s.op, s.left);
        }
    }
}

// With a poll at every tick, a stop at any poll of a Newton division, of a
// square root and of a factorial from its primes, the copies, shifts and
// sums between their products included, ends the operation there with
// nothing written.
TEST(FastStops, StopsAtEveryPollOfTheNewtonPasses) {
    FastThresholds t = FastThresholds::Lowered();
    t.nttParallel = 0;
    t.pollWork = 1;
    ThresholdScope scope(t);
    Num x, d, rest, n("2000");
    RandomBig(&x.v, 900, true);
    RandomBig(&d.v, 300, true);
    const std::function<Result(CalcContext*, BigInt*)> ops[] = {
        [&](CalcContext* c, BigInt* r) { return BigDivMod(c, &x.v, &d.v, r, rest.Out()); },
        [&](CalcContext* c, BigInt* r) { return BigSqrt(c, &x.v, r); },
        [&](CalcContext* c, BigInt* r) { return BigFact(c, r, &n.v); },
    };
    for (const auto& op : ops) {
        // Every run starts from the same divisor cache: empty, or warm (its
        // reciprocal completed by two earlier runs), since a stopped run
        // leaves whatever divisor it had reached. A first run makes the
        // transforms' tables, once a process, in both cases.
        for (const bool warm : {false, true}) {
            const auto prepare = [&] {
                ReleaseDivisorCache();
                for (int run = 0; run < 2; ++run) {
                    CalcContext quiet;
                    Num full;
                    (void)op(&quiet, &full.v);
                    if (!warm) ReleaseDivisorCache();
                }
            };
            prepare();
            QuitAtPoll counting;
            Num full;
            const Result done = op(&counting, &full.v);
            ASSERT_TRUE(Ok(done) || done == kRootInexact) << done;
            const long polls = counting.polls();
            for (long at = 1; at <= polls; at += 1 + polls / 400) {
                prepare();
                QuitAtPoll stop(at);
                Num r;
                ASSERT_EQ(op(&stop, &r.v), Result::kStopped) << "poll " << at << " of " << polls;
                ASSERT_EQ(stop.polls(), at) << "poll " << at << " of " << polls;
                ASSERT_TRUE(BigIsZero(&r.v) || ToDecimal(&r.v) == "1") << at;
            }
        }
    }
}
