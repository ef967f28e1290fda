#include "bench/bench_harness.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>

double gScale = 1.0;
PollGaps gPollGaps;

double Seconds(Clock::time_point a, Clock::time_point b) {
    return std::chrono::duration<double>(b - a).count();
}

int32_t Scaled(double n) {
    return std::max<int32_t>(1, static_cast<int32_t>(std::lround(n * gScale)));
}

void PollGaps::Begin(Clock::time_point t) {
    last = t;
    longest = 0;
    polls = 0;
}

void PollGaps::At(Clock::time_point t) {
    longest = std::max(longest, Seconds(last, t));
    last = t;
}

int GapContext::PollQuitKey() {
    ++gPollGaps.polls;
    gPollGaps.At(Clock::now());
    return 0;
}

uint64_t Fnv(const char* s, size_t n, uint64_t h) {
    for (size_t i = 0; i < n; ++i) h = (h ^ static_cast<unsigned char>(s[i])) * 1099511628211ull;
    return h;
}

std::string Digits(int32_t n, uint64_t seed) {
    std::mt19937_64 rng(seed);
    std::string s(size_t(n), '0');
    for (auto& c : s) c = static_cast<char>('0' + rng() % 10);
    s[0] = static_cast<char>('1' + rng() % 9);
    return s;
}

std::string MpzText(const mpz_t z) {
    std::vector<char> buf(mpz_sizeinbase(z, 10) + 2);
    return mpz_get_str(buf.data(), 10, z);
}

std::vector<std::string> GcdInputs(int32_t digits) {
    mpz_t g, a, b;
    mpz_inits(g, a, b, nullptr);
    const int32_t gd = std::max(1, digits / 200);
    mpz_set_str(g, Digits(gd, 6).c_str(), 10);
    mpz_set_str(a, Digits(digits - gd, 7).c_str(), 10);
    mpz_set_str(b, Digits(digits - gd, 8).c_str(), 10);
    mpz_mul(a, a, g);
    mpz_mul(b, b, g);
    std::vector<std::string> texts{MpzText(a), MpzText(b)};
    mpz_clears(g, a, b, nullptr);
    return texts;
}

Ours::~Ours() {
    for (auto& v : vals) BigFree(&v);
}

BigInt* Ours::New() {
    vals.reserve(kMaxValues);
    assert(vals.size() < kMaxValues);
    vals.push_back(BigInt{});
    return &vals.back();
}

BigInt* Ours::Parse(const std::string& s) {
    BigInt* v = New();
    std::string copy = s;
    // The inputs are digits made here: only memory can fail, and a failed
    // value shows in the result's hash.
    (void)BigFromText(&copy[0], v);
    return v;
}

BigInt* Ours::Int(int32_t n) {
    BigInt* v = New();
    (void)BigFromInt(v, n);  // as in Parse
    return v;
}

uint64_t Ours::Print(const BigInt* v, uint64_t h) {
    std::vector<char> buf(size_t(v->top + 1) * 4 + 16);
    BigToText(v, buf.data(), int32_t(buf.size() - 4), 0, -1, 0, 0);
    return Fnv(buf.data(), std::strlen(buf.data()), h);
}

uint64_t PrintMpz(const mpz_t z, uint64_t h, int base) {
    std::vector<char> buf(mpz_sizeinbase(z, base) + 3);
    mpz_get_str(buf.data(), base, z);
    for (char& c : buf) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return Fnv(buf.data(), std::strlen(buf.data()), h);
}

namespace {

// Primes below 10^8, so that our remainder takes the one-pass short division.
constexpr int32_t kCheckPrimes[] = {99999989, 99999971, 99999959};

uint64_t OurResidues(CalcContext* c, const BigInt* v, uint64_t h) {
    Ours o;
    for (int32_t p : kCheckPrimes) {
        BigInt* q = o.New();
        BigInt* r = o.New();
        if (!Ok(BigDivMod(c, v, o.Int(p), q, r))) return 0;
        h = Ours::Print(r, h);
        BigFree(q);
    }
    return h;
}

uint64_t GmpResidues(mpz_srcptr v, uint64_t h) {
    for (int32_t p : kCheckPrimes) {
        const std::string s = std::to_string(mpz_tdiv_ui(v, static_cast<unsigned long>(p)));
        h = Fnv(s.data(), s.size(), h);
    }
    return h;
}

}  // namespace

Workload Decimal(const char* name, const char* what, double target, std::function<Texts()> inputs,
                 size_t outputs, OursOp ours, GmpOp gmp, bool residues, int base) {
    Workload w{name, what, target, {}, {}};
    w.ours = [=] {
        const Texts texts = inputs();
        Report r;
        Ours o;
        auto t0 = Clock::now();
        std::vector<BigInt*> in, out;
        for (const std::string& t : texts) in.push_back(o.Parse(t));
        for (size_t i = 0; i < outputs; ++i) out.push_back(o.New());
        TIMED(r, compute, r.code = ours(&o.ctx, in.data(), out.data()));
        r.hash = kFnvStart;
        if (residues) r.total = Seconds(t0, Clock::now());
        for (BigInt* v : out)
            r.hash = residues ? OurResidues(&o.ctx, v, r.hash) : Ours::Print(v, r.hash);
        if (!residues) r.total = Seconds(t0, Clock::now());
        return r;
    };
    w.gmp = [=] {
        const Texts texts = inputs();
        Report r;
        const size_t count = texts.size() + outputs;
        std::unique_ptr<mpz_t[]> values(new mpz_t[count]);
        for (size_t i = 0; i < count; ++i) mpz_init(values[i]);
        std::vector<mpz_ptr> out;
        std::vector<mpz_srcptr> in;
        for (size_t i = 0; i < outputs; ++i) out.push_back(values[i]);
        auto t0 = Clock::now();
        for (size_t i = 0; i < texts.size(); ++i) {
            mpz_set_str(values[outputs + i], texts[i].c_str(), 10);
            in.push_back(values[outputs + i]);
        }
        TIMED(r, compute, r.code = gmp(out.data(), in.data()));
        r.hash = kFnvStart;
        if (residues) r.total = Seconds(t0, Clock::now());
        for (mpz_ptr v : out)
            r.hash = residues ? GmpResidues(v, r.hash) : PrintMpz(v, r.hash, base);
        if (!residues) r.total = Seconds(t0, Clock::now());
        for (size_t i = 0; i < count; ++i) mpz_clear(values[i]);
        return r;
    };
    return w;
}

Workload SmallInputs(const char* name, const char* what, double target,
                     std::function<Result(Ours*, BigInt*)> ours, std::function<void(mpz_t)> gmp) {
    Workload w{name, what, target, {}, {}};
    w.ours = [=] {
        Report r;
        Ours o;
        auto t0 = Clock::now();
        BigInt* v = o.New();
        TIMED(r, compute, r.code = ours(&o, v));
        r.hash = Ours::Print(v);
        r.total = Seconds(t0, Clock::now());
        return r;
    };
    w.gmp = [=] {
        Report r;
        mpz_t v;
        mpz_init(v);
        auto t0 = Clock::now();
        TIMED(r, compute, gmp(v));
        r.hash = PrintMpz(v);
        r.total = Seconds(t0, Clock::now());
        mpz_clear(v);
        return r;
    };
    return w;
}

Report GmpFibonacci(int32_t n) {
    Report r;
    mpz_t a, b;
    mpz_init_set_ui(a, 0);
    mpz_init_set_ui(b, 1);
    auto t0 = Clock::now();
    TIMED(r, compute, {
        for (int32_t i = 1; i < n; ++i) {
            mpz_add(a, a, b);
            mpz_swap(a, b);
        }
    });
    r.hash = PrintMpz(b);
    r.total = Seconds(t0, Clock::now());
    mpz_clears(a, b, nullptr);
    return r;
}
