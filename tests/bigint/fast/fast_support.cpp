#include "fast_support.h"

#include "bigint/dispatch.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace fasttest {

std::mt19937_64& Rng() {
    static std::mt19937_64 rng = [] {
        uint64_t seed = std::random_device{}();
        if (const char* s = std::getenv("ORDIX_SEED")) seed = std::strtoull(s, nullptr, 10);
        std::printf("ORDIX_SEED=%llu (set it to replay)\n", static_cast<unsigned long long>(seed));
        return std::mt19937_64(seed);
    }();
    return rng;
}

namespace {
int32_t Uniform(int32_t lo, int32_t hi) {
    return std::uniform_int_distribution<int32_t>(lo, hi)(Rng());
}
}  // namespace

std::vector<Limb> Operand(int32_t n, Shape shape) {
    std::vector<Limb> a(n);
    for (int32_t i = 0; i < n; ++i) a[i] = static_cast<Limb>(Uniform(0, 9999));
    switch (shape) {
    case Shape::Random: break;
    case Shape::Zeros:
        for (auto& x : a) x = 0;
        break;
    case Shape::Nines:
        for (auto& x : a) x = 9999;
        break;
    case Shape::RunsOfZeroAndNine:
        for (int32_t i = 0; i < n;) {
            const int32_t run = Uniform(1, 12);
            const int pick = Uniform(0, 2);
            for (int32_t k = 0; k < run && i < n; ++k, ++i)
                a[i] = pick == 0 ? 0 : pick == 1 ? 9999 : a[i];
        }
        break;
    case Shape::TopTenThousand:
        for (int32_t i = 0; i < n - 1; ++i) a[i] = Uniform(0, 1) ? 9999 : a[i];
        a[n - 1] = 10000;
        break;
    }
    if (a[n - 1] == 0) a[n - 1] = static_cast<Limb>(Uniform(1, 9999));
    return a;
}

void SetLimbs(BigInt* v, const std::vector<Limb>& limbs, bool negative) {
    v->limbs = new Limb[limbs.size()];
    std::copy(limbs.begin(), limbs.end(), v->limbs);
    v->top = int32_t(limbs.size()) - 1;
    v->negative = negative;
}

void RandomBig(BigInt* v, int32_t n, bool allowNegative) {
    SetLimbs(v, Operand(n, Shape::Random), allowNegative && Uniform(0, 1) == 1);
}

namespace {
// Columns of any width carried into limbs, leading zeros stripped.
template <class T>
std::vector<Limb> Carried(const T* p, size_t n) {
    std::vector<Limb> r;
    int64_t carry = 0;
    for (size_t i = 0; i < n || carry != 0; ++i) {
        const int64_t v = carry + (i < n ? int64_t(p[i]) : 0);
        r.push_back(static_cast<Limb>(v % kLimbBase));
        carry = v / kLimbBase;
    }
    while (r.size() > 1 && r.back() == 0) r.pop_back();
    return r;
}
}  // namespace

std::vector<Limb> Normalised(const Limb* p, int32_t n) { return Carried(p, size_t(n)); }

std::vector<Limb> MinusOne(std::vector<Limb> v) {
    for (size_t i = 0; v[i]-- == 0; ++i) v[i] = 9999;
    return Normalised(v.data(), int32_t(v.size()));
}

std::vector<Limb> NaiveProduct(const std::vector<Limb>& a, const std::vector<Limb>& b) {
    std::vector<int64_t> col(a.size() + b.size() + 1, 0);
    for (size_t i = 0; i < a.size(); ++i)
        for (size_t j = 0; j < b.size(); ++j) col[i + j] += int64_t(a[i]) * b[j];
    return Carried(col.data(), col.size());
}

std::string ToDecimal(const BigInt* v) {
    std::vector<Limb> n = Normalised(v->limbs, v->top + 1);
    std::string s = std::to_string(n.back());
    char buf[8];
    for (size_t i = n.size() - 1; i-- > 0;) {
        std::snprintf(buf, sizeof buf, "%04d", n[i]);
        s += buf;
    }
    if (v->negative && s != "0") s.insert(s.begin(), '-');
    return s;
}

void FromDecimal(BigInt* v, const std::string& s) {
    std::string copy = s;
    ASSERT_EQ(BigFromText(&copy[0], v), Result::kOk);
}

mpz_class FromLimbs(const Limb* p, int32_t n) {
    mpz_class z = 0;
    for (int32_t i = n - 1; i >= 0; --i) z = z * 10000 + p[i];
    return z;
}

std::vector<Limb> FromMpz(const mpz_class& z) {
    Num v;
    FromDecimal(&v.v, z.get_str());
    return Normalised(v.v.limbs, v.v.top + 1);
}

void FromQuotients(int32_t count, int32_t where, int32_t huge, bool ones, const mpz_class& g,
                   std::vector<Limb>* x, std::vector<Limb>* y) {
    mpz_class a = g, b = 0;
    for (int32_t i = count - 1; i >= 0; --i) {
        std::string digits(i == where ? huge : 0, '7');
        for (size_t k = 1; k < digits.size(); ++k) digits[k] = char('0' + Rng()() % 10);
        b += (i == where ? mpz_class(digits) : mpz_class(ones ? 1 : 1 + Rng()() % 6)) * a;
        swap(a, b);
    }
    *x = FromMpz(a);
    *y = FromMpz(b);
}

void ExpectStopsAtEveryPoll(const std::function<Result(CalcContext*, BigInt*)>& op,
                            const std::string& left) {
    Num warm[2], counted;
    QuitAtPoll warmUp, warmAgain, counting;
    for (QuitAtPoll* c : {&warmUp, &warmAgain, &counting}) {
        ReleaseDivisorCache();
        const Result done = op(c, c == &counting ? &counted.v
                                  : c == &warmUp ? &warm[0].v
                                                 : &warm[1].v);
        ASSERT_TRUE(done == Result::kOk || done == kRootInexact) << done;
    }
    const long polls = counting.polls();
    ASSERT_GE(polls, 5);
    for (long stopAt : {1L, 2L, polls / 3, polls / 2, polls - 1, polls}) {
        QuitAtPoll stop(stopAt);
        Num r;
        ReleaseDivisorCache();
        EXPECT_EQ(op(&stop, &r.v), Result::kStopped) << "poll " << stopAt << " of " << polls;
        EXPECT_EQ(ToDecimal(&r.v), left) << "poll " << stopAt << " of " << polls;
        EXPECT_EQ(stop.polls(), stopAt);
    }
}

}  // namespace fasttest
