// Modular powers by Montgomery multiplication on 64-bit words, or on 52-bit
// digits with the AVX-512 IFMA products (mont_ifma.h) where the processor
// has them, from gFastThresholds.powVector words of the odd part up to 40
// vectors of digits (16638 bits).
//
// The power leaves base 10000 for the whole run: modulus and base go to
// binary limb by limb (both are below the modulus's size limit), a long
// exponent through the base-16 conversion; the power runs on words, and the
// result comes back by division by 10^8. A base below 2^32 goes left to right
// by windows of up to five bits, each a linear product by a power of the
// base with a remainder step; any other base by a sliding window over the
// exponent's bits. The 64-bit products run by rows (mulx with two carry
// chains where the processor has BMI2 and ADX), a one-word modulus in
// registers. Montgomery's reduction needs a modulus prime to the word base
// 2^64: an even modulus 2^s · o is served by the power modulo o and the
// power modulo 2^s (truncated products), joined by the Chinese remainder
// theorem.
//
// Allocation: the words live in std::vector; both entries (ExponentBits,
// ModPowMontgomery) run their bodies under CatchNoMemory, so a vector that
// cannot grow answers code 3, the records being scoped.
#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "bigint/binary_rows.h"
#include "bigint/dispatch.h"
#include "bigint/fast_paths.h"
#include "bigint/internal.h"
#include "bigint/modpow_window.h"
#include "bigint/mont_ifma.h"
#include "bigint/poll_clock.h"
#include "bigint/thresholds.h"

namespace {

using Word = uint64_t;
using Wide = unsigned __int128;

// n words of |v| (v < 2^(64 n)), by Horner's rule over the limbs.
std::vector<Word> WordsFromLimbs(const BigInt* v, size_t n) {
    std::vector<Word> w(n, 0);
    for (int32_t i = v->top; i >= 0; --i) {
        Word carry = static_cast<Word>(v->limbs[i]);
        for (size_t j = 0; j < n; ++j) {
            const Wide s = Wide(w[j]) * kLimbBase + carry;
            w[j] = Word(s);
            carry = Word(s >> 64);
        }
    }
    return w;
}

// Words needed for |v|: a limb holds less than 14 bits.
size_t WordsFor(const BigInt* v) { return (static_cast<size_t>(v->top) + 1) * 14 / 64 + 1; }

// The value of w as a record, by division by 10^8 from the top word down; w is consumed.
Result LimbsFromWords(std::vector<Word>& w, BigInt* v) {
    LimbBuffer out(static_cast<int64_t>(w.size()) * 10 + 2);
    if (!out.ok()) return Result::kNoMemory;
    int32_t count = 0;
    size_t used = w.size();
    while (used > 0 && w[used - 1] == 0) --used;
    while (used > 0) {
        Word rest = 0;
        for (size_t j = used; j-- > 0;) {
            const Wide s = (Wide(rest) << 64) | w[j];
            w[j] = Word(s / 100000000u);
            rest = Word(s % 100000000u);
        }
        out[count++] = static_cast<Limb>(rest % kLimbBase);
        out[count++] = static_cast<Limb>(rest / kLimbBase);
        while (used > 0 && w[used - 1] == 0) --used;
    }
    const int32_t top = count == 0 ? 0 : LimbsTrimTop(out.get(), count - 1);
    if (count == 0) out[0] = 0;
    return BigFromLimbs(v, out.get(), top, 0);
}

// The ring of the window power (modpow_window.h) over vectors of a kernel's
// Size() words; the kernel multiplies and squares word arrays in place,
// answering false when stopped.
template <class Kernel>
class VectorRing {
public:
    explicit VectorRing(Kernel* k) : k_(k) {}
    using Value = std::vector<Word>;
    Value Zero() const { return Value(k_->Size(), 0); }
    bool Copy(const Value& a, Value* r) const {
        *r = a;
        return true;
    }
    bool Mul(const Value& a, const Value& b, Value* r) {
        return k_->Mul(a.data(), b.data(), r->data());
    }
    bool Sqr(const Value& a, Value* r) { return k_->Sqr(a.data(), r->data()); }

private:
    Kernel* k_;
};

// t[0..n) += a[0..n) · b for n >= 1; answers the carry word out.
Word AddMulPortable(Word* t, const Word* a, size_t n, Word b) {
    Word carry = 0;
    for (size_t j = 0; j < n; ++j) {
        const Wide s = Wide(a[j]) * b + t[j] + carry;
        t[j] = Word(s);
        carry = Word(s >> 64);
    }
    return carry;
}

// Work units charged for a product beyond its word products: with short
// moduli the call itself is most of the time, and the polls keep their
// pace.
constexpr int64_t kCallWork = 16;

// Bases below this multiply a residue in one linear pass (MulSmall).
constexpr uint64_t kSmallLimit = uint64_t(1) << 32;

// q for a · s − q · m in 0 … 2m − 1, given a and 1/m by their leading
// parts (the same scale, m's leading part at least 2^52 times the rest, or
// exact) and a < 2m, s < 2^32: the quotient a s / m is below 2^33, the
// doubles are off by less than 2^−18 in it, and a margin of 2^−12 taken off
// makes q the floor or one less.
uint64_t SmallQuotient(double aTop, uint64_t s, double mTopInverse) {
    const double ratio = aTop * static_cast<double>(s) * mTopInverse - 0x1p-12;
    return ratio <= 0 ? 0 : static_cast<uint64_t>(ratio);
}

// Arithmetic modulo an odd m of n words, R = 2^(64 n).
class Montgomery {
public:
    Montgomery(std::vector<Word> m, PollClock* clk)
        : m_(std::move(m)), n_(m_.size()), clk_(clk), addMul_(BinaryAddRow()) {
        Word x = m_[0];  // m0 x ≡ 1 (mod 8); each step doubles the good bits
        for (int i = 0; i < 5; ++i) x *= 2 - m_[0] * x;
        negInverse_ = ~x + 1;
        mTopInverse_ = 1 / Top(m_.data());
        t_.assign(n_ + 2, 0);
        t2_.assign(2 * n_, 0);
    }
    size_t Size() const { return n_; }

    // r := a b / R mod m for a, b < m; r may be a or b. The product by
    // rows, then Montgomery's reduction. False when stopped.
    bool Mul(const Word* a, const Word* b, Word* r) {
        if (n_ == 1) return OneWord(a[0], b[0], r);
        const size_t n = n_;
        Word* t = t2_.data();
        std::fill(t, t + n, 0);
        for (size_t i = 0; i < n; ++i) t[i + n] = AddMul(t + i, a, n, b[i]);
        Reduce(t, r);
        return !clk_->Tick(static_cast<int64_t>(2 * n * n) + kCallWork);
    }

    // r := a^2 / R mod m for a < m; r may be a. The full square first, its
    // cross products once and doubled (n(n − 1)/2 word products instead of
    // n^2), then Montgomery's reduction. False when stopped.
    bool Sqr(const Word* a, Word* r) {
        if (n_ == 1) return OneWord(a[0], a[0], r);
        const size_t n = n_;
        Word* t = t2_.data();
        std::fill(t, t + 2 * n, 0);
        for (size_t i = 0; i + 1 < n; ++i)
            t[i + n] = AddMul(t + 2 * i + 1, a + i + 1, n - i - 1, a[i]);
        Word high = 0;
        for (size_t k = 0; k < 2 * n; ++k) {
            const Word next = t[k] >> 63;
            t[k] = (t[k] << 1) | high;
            high = next;
        }
        Word carry = 0;
        for (size_t i = 0; i < n; ++i) {
            Wide s = Wide(a[i]) * a[i] + t[2 * i] + carry;
            t[2 * i] = Word(s);
            s = Wide(t[2 * i + 1]) + Word(s >> 64);
            t[2 * i + 1] = Word(s);
            carry = Word(s >> 64);
        }
        Reduce(t, r);
        return !clk_->Tick(static_cast<int64_t>(3 * n * n / 2) + kCallWork);
    }

    // r := a s mod m for a < m, s < SmallLimit(): a s − q m with q from the
    // top words (SmallQuotient), so the difference lies in 0 … 2m − 1 and one
    // subtraction at most remains. False when stopped.
    bool MulSmall(const Word* a, Word s, Word* r) {
        const size_t n = n_;
        Word* t = t_.data();
        const Word q = SmallQuotient(Top(a), s, mTopInverse_);
        Word cp = 0, cq = 0, borrow = 0;
        for (size_t j = 0; j < n; ++j) {
            const Wide p = Wide(a[j]) * s + cp;
            const Wide qm = Wide(m_[j]) * q + cq;
            const Wide d = Wide(Word(p)) - Word(qm) - borrow;
            t[j] = Word(d);
            cp = Word(p >> 64);
            cq = Word(qm >> 64);
            borrow = Word(d >> 64) & 1;
        }
        if (cp - cq - borrow != 0 || !Below(t)) SubtractModulus(t);
        std::copy(t, t + n, r);
        return !clk_->Tick(static_cast<int64_t>(2 * n) + kCallWork);
    }
    size_t RBits() const { return 64 * n_; }
    // The kernel's values are the words themselves, always below m.
    std::vector<Word> FromWords(const std::vector<Word>& w) const {
        std::vector<Word> v(n_, 0);
        std::copy(w.begin(), w.begin() + static_cast<std::ptrdiff_t>(std::min(n_, w.size())),
                  v.begin());
        return v;
    }
    std::vector<Word> ToWords(const std::vector<Word>& v) const { return v; }
    static Word SmallLimit() { return kSmallLimit; }

private:
    // Mul for a modulus of one word, in registers: t + q m ≡ 0 (mod 2^64)
    // carries out of the low word exactly when t's low word is not 0.
    bool OneWord(Word a, Word b, Word* r) {
        const Wide t = Wide(a) * b;
        const Word m = m_[0];
        const Wide qm = Wide(Word(t) * negInverse_) * m;
        Wide h = (t >> 64) + (qm >> 64) + (Word(t) != 0 ? 1 : 0);  // below 2m
        if (h >= m) h -= m;
        *r = Word(h);
        return !clk_->Tick(kCallWork);
    }

    // The rows of short moduli stay inline: a call would cost more than the
    // carry chains save.
    Word AddMul(Word* t, const Word* a, size_t n, Word b) const {
        return n_ < 6 ? AddMulPortable(t, a, n, b) : addMul_(t, a, static_cast<int32_t>(n), b);
    }

    // r := t / R mod m for t[0..2n) < m R: Montgomery's reduction row by
    // row, extra holding the carry out of the row's top word for the next
    // row; the quotient is below 2m, so one subtraction at most.
    void Reduce(Word* t, Word* r) {
        const size_t n = n_;
        Word extra = 0;
        for (size_t i = 0; i < n; ++i) {
            const Word c = AddMul(t + i, m_.data(), n, t[i] * negInverse_);
            const Wide s = Wide(t[i + n]) + c + extra;
            t[i + n] = Word(s);
            extra = Word(s >> 64);
        }
        t += n;
        if (extra != 0 || !Below(t)) SubtractModulus(t);
        std::copy(t, t + n, r);
    }

    // The top two words of x < 2^(64 n) as a number of 2^(64 (n − 2)).
    double Top(const Word* x) const {
        return n_ == 1 ? static_cast<double>(x[0])
                       : static_cast<double>(x[n_ - 1]) * 0x1p64 + static_cast<double>(x[n_ - 2]);
    }
    bool Below(const Word* x) const {
        for (size_t i = n_; i-- > 0;) {
            if (x[i] != m_[i]) return x[i] < m_[i];
        }
        return false;
    }
    void SubtractModulus(Word* x) const {
        Word borrow = 0;
        for (size_t i = 0; i < n_; ++i) {
            const Wide d = Wide(x[i]) - m_[i] - borrow;
            x[i] = Word(d);
            borrow = Word(d >> 64) & 1;
        }
    }

    std::vector<Word> m_;
    size_t n_;
    PollClock* clk_;
    AddRowFn addMul_;
    Word negInverse_ = 0;  // -1 / m mod 2^64
    double mTopInverse_ = 0;
    std::vector<Word> t_, t2_;
};

// Montgomery arithmetic modulo an odd m on 52-bit digits with AVX-512 IFMA
// (mont_ifma.h): K vectors of eight digits, R = 2^(416 K) with 4m < R. The
// values are lazy (below 2m) until ToWords.
class IfmaMontgomery {
public:
    IfmaMontgomery(const IfmaMontKernels* k, const std::vector<Word>& m, int vectors,
                   PollClock* clk)
        : k_(k),
          n_(m.size()),
          digits_(8 * static_cast<size_t>(vectors)),
          mTopDigit_(digits_ - 1),
          clk_(clk),
          m_(m) {
        md_ = FromWords(m);
        while (mTopDigit_ > 0 && md_[mTopDigit_] == 0) --mTopDigit_;
        mTopInverse_ = 1 / Top(md_.data());
        Word x = m[0];  // as in Montgomery
        for (int i = 0; i < 5; ++i) x *= 2 - m[0] * x;
        k0_ = (~x + 1) & kDigitMask;
        // Up to eight vectors a row waits on its predecessor, so the time
        // grows with the rows alone.
        cost_ = 32 * static_cast<int64_t>(vectors) * std::max(vectors, 8);
    }
    size_t Size() const { return digits_; }
    size_t RBits() const { return 52 * digits_; }
    static Word SmallLimit() { return kSmallLimit; }

    bool Mul(const Word* a, const Word* b, Word* r) {
        k_->mul(a, b, md_.data(), k0_, r);
        return !clk_->Tick(cost_);
    }
    bool Sqr(const Word* a, Word* r) { return Mul(a, a, r); }
    // r := a s mod m, lazy, for s < SmallLimit(): a s − q m digit by digit
    // with signed carries, q from the leading digits (SmallQuotient).
    bool MulSmall(const Word* a, Word s, Word* r) {
        const uint64_t q = SmallQuotient(Top(a), s, mTopInverse_);
        Word cp = 0, cq = 0;
        int64_t carry = 0;
        for (size_t k = 0; k < digits_; ++k) {
            const Wide p = Wide(a[k]) * s + cp;
            const Wide qm = Wide(md_[k]) * q + cq;
            const int64_t d = static_cast<int64_t>(Word(p) & kDigitMask) -
                              static_cast<int64_t>(Word(qm) & kDigitMask) + carry;
            r[k] = static_cast<Word>(d) & kDigitMask;
            carry = d >> 52;  // arithmetic: −2 … 1
            cp = Word(p >> 52);
            cq = Word(qm >> 52);
        }
        return !clk_->Tick(2 * static_cast<int64_t>(n_) + kCallWork);
    }

    // Digits of a value below 2^(52 · digits) given in words.
    std::vector<Word> FromWords(const std::vector<Word>& w) const {
        std::vector<Word> d(digits_, 0);
        for (size_t i = 0; i < digits_; ++i) {
            const size_t bit = 52 * i, at = bit / 64, shift = bit % 64;
            if (at >= w.size()) break;
            Word v = w[at] >> shift;
            if (shift > 12 && at + 1 < w.size()) v |= w[at + 1] << (64 - shift);
            d[i] = v & kDigitMask;
        }
        return d;
    }
    // The n words of a value in 0 … m: m itself becomes 0.
    std::vector<Word> ToWords(const std::vector<Word>& d) const {
        std::vector<Word> w(n_ + 1, 0);
        for (size_t i = 0; i < digits_; ++i) {
            const size_t bit = 52 * i, at = bit / 64, shift = bit % 64;
            if (at < w.size()) w[at] |= d[i] << shift;
            if (shift > 12 && at + 1 < w.size()) w[at + 1] |= d[i] >> (64 - shift);
        }
        w.resize(n_);
        if (!std::lexicographical_compare(w.rbegin(), w.rend(), m_.rbegin(), m_.rend())) {
            Word borrow = 0;
            for (size_t i = 0; i < n_; ++i) {
                const Wide t = Wide(w[i]) - m_[i] - borrow;
                w[i] = Word(t);
                borrow = Word(t >> 64) & 1;
            }
        }
        return w;
    }

private:
    // Digits mTopDigit + 1 down to mTopDigit − 2 of x < 2m as a number of
    // 2^(52 (mTopDigit − 2)).
    double Top(const Word* x) const {
        const size_t t = mTopDigit_;
        double v = t + 1 < digits_ ? static_cast<double>(x[t + 1]) : 0;
        v = v * 0x1p52 + static_cast<double>(x[t]);
        v = v * 0x1p52 + (t >= 1 ? static_cast<double>(x[t - 1]) : 0);
        return v * 0x1p52 + (t >= 2 ? static_cast<double>(x[t - 2]) : 0);
    }

    static constexpr Word kDigitMask = (Word(1) << 52) - 1;
    const IfmaMontKernels* k_;
    size_t n_, digits_, mTopDigit_;
    PollClock* clk_;
    std::vector<Word> m_, md_;
    Word k0_ = 0;
    int64_t cost_ = 0;
    double mTopInverse_ = 0;
};

// 2^e mod m for an odd m > 1 of n words, by doubling from the largest power
// of two below m. False when stopped.
bool PowerOfTwoMod(const std::vector<Word>& m, size_t e, PollClock* clk, std::vector<Word>* out) {
    const size_t n = m.size();
    size_t top = 64 * n - 1;
    while (((m[top / 64] >> (top % 64)) & 1) == 0) --top;
    std::vector<Word> x(n, 0);
    const size_t start = std::min(e, top);  // 2^top < m: m is odd and above 1
    x[start / 64] = Word(1) << (start % 64);
    for (size_t k = start; k < e; ++k) {
        const Word high = x[n - 1] >> 63;
        for (size_t i = n - 1; i > 0; --i) x[i] = (x[i] << 1) | (x[i - 1] >> 63);
        x[0] <<= 1;
        if (high != 0 ||
            !std::lexicographical_compare(x.rbegin(), x.rend(), m.rbegin(), m.rend())) {
            Word borrow = 0;
            for (size_t i = 0; i < n; ++i) {
                const Wide d = Wide(x[i]) - m[i] - borrow;
                x[i] = Word(d);
                borrow = Word(d >> 64) & 1;
            }
        }
        if (clk->Tick(static_cast<int64_t>(n))) return false;
    }
    *out = std::move(x);
    return true;
}

// x := b^e mod m (n words, reduced) for an odd m > 1 and b < m, by one of
// the Montgomery kernels. R^2 mod m, the factor into Montgomery form, comes
// from 2^j · R by s squares, R = 2^(j · 2^s), j odd. A base below the
// kernel's SmallLimit() needs no table of residues and no full products:
// left to right each bit costs a square, and each window of w bits one
// linear product by b^v with its remainder, w up to 5 as long as b^(2^w − 1)
// stays below the limit. Any other base goes by the sliding window. False
// when stopped.
template <class Kernel>
bool OddPower(Kernel& k, const std::vector<Word>& m, const std::vector<Word>& b,
              const std::vector<bool>& bits, PollClock* clk, std::vector<Word>* x) {
    using Value = std::vector<Word>;
    VectorRing<Kernel> ring(&k);
    const size_t rBits = k.RBits();
    size_t s = 0;
    while (((rBits >> s) & 1) == 0) ++s;
    Value words;
    if (!PowerOfTwoMod(m, rBits + (rBits >> s), clk, &words)) return false;
    Value r2 = k.FromWords(words), one(k.Size(), 0), power;
    one[0] = 1;
    for (size_t i = 0; i < s; ++i) {
        if (!k.Sqr(r2.data(), r2.data())) return false;
    }
    const bool small = std::all_of(b.begin() + 1, b.end(), [](Word w) { return w == 0; }) &&
                       b[0] < Kernel::SmallLimit();
    if (small) {
        // Windows of w bits with every b^v, v < 2^w, below the limit too.
        Word powers[32] = {1};
        size_t count = 1, w = 1;  // powers[0 … count) = b^v below the limit
        for (; count < 32; ++count) {
            const Wide next = Wide(powers[count - 1]) * b[0];
            if (next >= Kernel::SmallLimit()) break;
            powers[count] = Word(next);
        }
        while (w < 5 && (size_t(1) << (w + 1)) <= count) ++w;
        power = r2;  // the form of 1 (R)
        if (!k.Mul(power.data(), one.data(), power.data())) return false;
        bool started = false;
        for (size_t top = (bits.size() + w - 1) / w * w; top > 0; top -= w) {
            size_t v = 0;
            for (size_t i = top; i-- > top - w;) v = 2 * v + (i < bits.size() && bits[i] ? 1 : 0);
            for (size_t i = 0; i < w && started; ++i) {
                if (!k.Sqr(power.data(), power.data())) return false;
            }
            if (v != 0 && !k.MulSmall(power.data(), powers[v], power.data())) return false;
            started = started || v != 0;
        }
    } else {
        Value form = k.FromWords(b);
        power.assign(k.Size(), 0);
        if (!k.Mul(form.data(), r2.data(), form.data()) ||
            !SlidingWindowPower(ring, form, bits, &power)) {
            return false;
        }
    }
    if (!k.Mul(power.data(), one.data(), power.data())) return false;
    *x = k.ToWords(power);
    return true;
}

// Arithmetic modulo 2^bits on n = ceil(bits / 64) words: truncated products.
class PowerOfTwo {
public:
    PowerOfTwo(size_t bits, PollClock* clk)
        : n_((bits + 63) / 64),
          topMask_(bits % 64 ? (Word(1) << (bits % 64)) - 1 : ~Word(0)),
          clk_(clk),
          t_(n_) {}
    size_t Size() const { return n_; }
    void Reduce(Word* x) const { x[n_ - 1] &= topMask_; }

    bool Sqr(const Word* a, Word* r) { return Mul(a, a, r); }
    // r := a b mod 2^bits; r may be a or b. False when stopped.
    bool Mul(const Word* a, const Word* b, Word* r) {
        std::fill(t_.begin(), t_.end(), 0);
        for (size_t i = 0; i < n_; ++i) {
            Word carry = 0;
            for (size_t j = 0; i + j < n_; ++j) {
                const Wide s = Wide(a[i]) * b[j] + t_[i + j] + carry;
                t_[i + j] = Word(s);
                carry = Word(s >> 64);
            }
        }
        std::copy(t_.begin(), t_.end(), r);
        Reduce(r);
        return !clk_->Tick(static_cast<int64_t>(n_ * n_));
    }

private:
    size_t n_;
    Word topMask_;
    PollClock* clk_;
    std::vector<Word> t_;
};

// The bits of |e|, least significant first, no zero bits above the top.
Result ExponentBitsBody(CalcContext* ctx, const BigInt* e, std::vector<bool>* bits) {
    bits->clear();
    if (e->top < 1000) {
        const std::vector<Word> w = WordsFromLimbs(e, WordsFor(e));
        for (size_t i = 0; i < w.size() * 64; ++i)
            bits->push_back(((w[i / 64] >> (i % 64)) & 1) != 0);
    } else {
        std::string hex;
        const BigInt em = BigMagnitudeView(e);
        const Result code = BigToRadixDispatch(ctx, &em, 16, &hex);
        if (!Ok(code)) return code;
        for (size_t i = 0; i < hex.size() * 4; ++i) {
            const char c = hex[hex.size() - 1 - i / 4];
            const int d = c <= '9' ? c - '0' : c - 'A' + 10;
            bits->push_back(((d >> (i % 4)) & 1) != 0);
        }
    }
    while (!bits->empty() && !bits->back()) bits->pop_back();
    return Result::kOk;
}

Result ModPowWords(CalcContext* ctx, const BigInt* base, const BigInt* exponent, const BigInt* m,
                   BigInt* result) {
    PollClock clk(ctx);
    const BigInt mm = BigMagnitudeView(m);
    BigTemp reduced;
    std::vector<bool> bits;
    Result code = BigMod(ctx, base, &mm, &reduced.v);
    if (Ok(code)) code = ExponentBits(ctx, exponent, &bits);
    if (!Ok(code)) return code;
    std::vector<Word> mw = WordsFromLimbs(m, WordsFor(m));
    while (mw.size() > 1 && mw.back() == 0) mw.pop_back();
    std::vector<Word> b = WordsFromLimbs(&reduced.v, mw.size());
    // m = 2^shift · odd: the power modulo each part, joined by the Chinese
    // remainder theorem.
    size_t shift = 0;
    while (((mw[shift / 64] >> (shift % 64)) & 1) == 0) ++shift;
    std::vector<Word> odd(mw.size() - shift / 64, 0);
    for (size_t i = 0; i < odd.size(); ++i) {
        const size_t k = i + shift / 64, bit = shift % 64;
        odd[i] = mw[k] >> bit;
        if (bit != 0 && k + 1 < mw.size()) odd[i] |= mw[k + 1] << (64 - bit);
    }
    while (odd.size() > 1 && odd.back() == 0) odd.pop_back();
    const size_t n = odd.size();
    std::vector<Word> x(n, 0);
    if (n > 1 || odd[0] > 1) {  // modulo 1 every power is 0
        // The base below the odd part (b < m already when m is odd).
        std::vector<Word> bo;
        if (shift == 0) {
            bo = b;
        } else {
            BigTemp oddRecord, bRecord;
            std::vector<Word> oddCopy = odd;
            code = LimbsFromWords(oddCopy, &oddRecord.v);
            if (Ok(code)) code = BigMod(ctx, &reduced.v, &oddRecord.v, &bRecord.v);
            if (!Ok(code)) return code;
            bo = WordsFromLimbs(&bRecord.v, n);
        }
        bo.resize(n, 0);
        size_t top = 64 * n - 1;
        while (((odd[top / 64] >> (top % 64)) & 1) == 0) --top;
        const int vectors = static_cast<int>((top + 3 + 415) / 416);  // 4 · odd < 2^(416 K)
        const IfmaMontKernels* ifma =
            n >= static_cast<size_t>(gFastThresholds.powVector) ? IfmaMont(vectors) : nullptr;
        bool done;
        if (ifma != nullptr) {
            IfmaMontgomery kernel(ifma, odd, vectors, &clk);
            done = OddPower(kernel, odd, bo, bits, &clk, &x);
        } else {
            Montgomery kernel(odd, &clk);
            done = OddPower(kernel, odd, bo, bits, &clk, &x);
        }
        if (!done) return Result::kStopped;
    }
    if (shift == 0) return LimbsFromWords(x, result);
    PowerOfTwo two(shift, &clk);
    VectorRing<PowerOfTwo> twoRing(&two);
    const size_t w = two.Size();
    std::vector<Word> b2(b.begin(), b.begin() + static_cast<std::ptrdiff_t>(std::min(w, b.size())));
    b2.resize(w, 0);
    two.Reduce(b2.data());
    std::vector<Word> x2(w), inverse(w, 0), oddW(w, 0), diff(w, 0), step(w), t(w);
    if (!SlidingWindowPower(twoRing, b2, bits, &x2)) return Result::kStopped;
    // inverse := 1 / odd mod 2^shift by Newton's iteration, bits doubling.
    for (size_t i = 0; i < w && i < odd.size(); ++i) oddW[i] = odd[i];
    two.Reduce(oddW.data());
    inverse[0] = 1;
    for (size_t good = 1; good < 64 * w; good *= 2) {
        if (!two.Mul(oddW.data(), inverse.data(), step.data())) return Result::kStopped;
        Word borrow = 0;  // step := 2 - step
        for (size_t i = 0; i < w; ++i) {
            const Wide d = Wide(i == 0 ? 2 : 0) - step[i] - borrow;
            step[i] = Word(d);
            borrow = Word(d >> 64) & 1;
        }
        if (!two.Mul(inverse.data(), step.data(), inverse.data())) return Result::kStopped;
    }
    // t := (x2 - x) / odd mod 2^shift; the answer is x + odd · t.
    Word borrow = 0;
    for (size_t i = 0; i < w; ++i) {
        const Wide d = Wide(x2[i]) - (i < n ? x[i] : 0) - borrow;
        diff[i] = Word(d);
        borrow = Word(d >> 64) & 1;
    }
    two.Reduce(diff.data());
    if (!two.Mul(diff.data(), inverse.data(), t.data())) return Result::kStopped;
    std::vector<Word> sum(n + w + 1, 0);
    for (size_t i = 0; i < n; ++i) {
        Word carry = 0;
        for (size_t j = 0; j < w; ++j) {
            const Wide s = Wide(odd[i]) * t[j] + sum[i + j] + carry;
            sum[i + j] = Word(s);
            carry = Word(s >> 64);
        }
        sum[i + w] = carry;
    }
    Word carry = 0;
    for (size_t i = 0; i < sum.size(); ++i) {
        const Wide s = Wide(sum[i]) + (i < n ? x[i] : 0) + carry;
        sum[i] = Word(s);
        carry = Word(s >> 64);
    }
    return LimbsFromWords(sum, result);
}

}  // namespace

Result ExponentBits(CalcContext* ctx, const BigInt* e, std::vector<bool>* bits) {
    return CatchNoMemory([&] { return ExponentBitsBody(ctx, e, bits); });
}

Result ModPowMontgomery(CalcContext* ctx, const BigInt* base, const BigInt* exponent,
                        const BigInt* m, BigInt* result) {
    return CatchNoMemory([&] { return ModPowWords(ctx, base, exponent, m, result); });
}
