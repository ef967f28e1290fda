// Modular powers by Montgomery multiplication on 64-bit words.
//
// The power leaves base 10000 for the whole run: modulus and base go to
// binary limb by limb (both are below the modulus's size limit), a long
// exponent through the base-16 conversion; the power runs on words with a
// sliding window over the exponent's bits, and the result comes back by
// division by 10^8. Montgomery's reduction needs a modulus prime to the word
// base 2^64: an even modulus 2^s · o is served by the power modulo o and the
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

#include "bigint/dispatch.h"
#include "bigint/fast_paths.h"
#include "bigint/internal.h"
#include "bigint/modpow_window.h"
#include "bigint/poll_clock.h"

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

// Arithmetic modulo an odd m of n words, R = 2^(64 n).
class Montgomery {
public:
    Montgomery(std::vector<Word> m, PollClock* clk) : m_(std::move(m)), n_(m_.size()), clk_(clk) {
        Word x = m_[0];  // m0 x ≡ 1 (mod 8); each step doubles the good bits
        for (int i = 0; i < 5; ++i) x *= 2 - m_[0] * x;
        negInverse_ = ~x + 1;
        t_.assign(n_ + 2, 0);
        t2_.assign(2 * n_, 0);
    }
    size_t Size() const { return n_; }

    // r := a b / R mod m for a, b < m; r may be a or b. False when stopped.
    bool Mul(const Word* a, const Word* b, Word* r) {
        const size_t n = n_;
        Word* t = t_.data();
        std::fill(t, t + n + 2, 0);
        for (size_t i = 0; i < n; ++i) {
            Word carry = 0;
            const Word bi = b[i];
            for (size_t j = 0; j < n; ++j) {
                const Wide s = Wide(a[j]) * bi + t[j] + carry;
                t[j] = Word(s);
                carry = Word(s >> 64);
            }
            Wide s = Wide(t[n]) + carry;
            t[n] = Word(s);
            t[n + 1] = Word(s >> 64);
            const Word q = t[0] * negInverse_;
            s = Wide(q) * m_[0] + t[0];  // low word becomes 0
            carry = Word(s >> 64);
            for (size_t j = 1; j < n; ++j) {
                s = Wide(q) * m_[j] + t[j] + carry;
                t[j - 1] = Word(s);
                carry = Word(s >> 64);
            }
            s = Wide(t[n]) + carry;
            t[n - 1] = Word(s);
            t[n] = t[n + 1] + Word(s >> 64);
        }
        // t < 2m: one subtraction at most.
        if (t[n] != 0 || !Below(t)) SubtractModulus(t);
        std::copy(t, t + n, r);
        return !clk_->Tick(static_cast<int64_t>(2 * n * n));
    }

    // r := a^2 / R mod m for a < m; r may be a. The full square first, its
    // cross products once and doubled (n(n − 1)/2 word products instead of
    // n^2), then Montgomery's reduction of the 2n words, row by row; extra
    // holds the carry out of the row's top word for the next row. The
    // result is below 2m. False when stopped.
    bool Sqr(const Word* a, Word* r) {
        const size_t n = n_;
        Word* t = t2_.data();
        std::fill(t, t + 2 * n, 0);
        for (size_t i = 0; i + 1 < n; ++i) {
            Word carry = 0;
            const Word ai = a[i];
            for (size_t j = i + 1; j < n; ++j) {
                const Wide s = Wide(ai) * a[j] + t[i + j] + carry;
                t[i + j] = Word(s);
                carry = Word(s >> 64);
            }
            t[i + n] = carry;
        }
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
        Word extra = 0;
        for (size_t i = 0; i < n; ++i) {
            const Word q = t[i] * negInverse_;
            Word c = 0;
            for (size_t j = 0; j < n; ++j) {
                const Wide s = Wide(q) * m_[j] + t[i + j] + c;
                t[i + j] = Word(s);
                c = Word(s >> 64);
            }
            const Wide s = Wide(t[i + n]) + c + extra;
            t[i + n] = Word(s);
            extra = Word(s >> 64);
        }
        t += n;
        if (extra != 0 || !Below(t)) SubtractModulus(t);
        std::copy(t, t + n, r);
        return !clk_->Tick(static_cast<int64_t>(3 * n * n / 2));
    }

    // R^2 mod m, the factor that brings a value into Montgomery form. Starts
    // from 2^(64 n + n) by doubling and squares six times (R = (2^n)^64).
    bool SquareOfR(std::vector<Word>* out) {
        std::vector<Word> x(n_, 0);
        x[0] = 1;
        for (size_t k = 0; k < 65 * n_; ++k) {
            const Word top = x[n_ - 1] >> 63;
            for (size_t i = n_ - 1; i > 0; --i) x[i] = (x[i] << 1) | (x[i - 1] >> 63);
            x[0] <<= 1;
            if (top != 0 || !Below(x.data())) SubtractModulus(x.data());
            if ((k & 63) == 63 && clk_->Tick(static_cast<int64_t>(64 * n_))) return false;
        }
        for (int i = 0; i < 6; ++i) {
            if (!Sqr(x.data(), x.data())) return false;
        }
        *out = std::move(x);
        return true;
    }

    // x := x + y mod m for x, y < m.
    void AddTo(Word* x, const Word* y) const {
        Word carry = 0;
        for (size_t i = 0; i < n_; ++i) {
            const Wide s = Wide(x[i]) + y[i] + carry;
            x[i] = Word(s);
            carry = Word(s >> 64);
        }
        if (carry != 0 || !Below(x)) SubtractModulus(x);
    }

private:
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
    Word negInverse_ = 0;  // -1 / m mod 2^64
    std::vector<Word> t_, t2_;
};

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
    std::vector<Word> x(n), one(n, 0);
    one[0] = 1;
    {
        Montgomery mg(odd, &clk);
        VectorRing<Montgomery> mgRing(&mg);
        std::vector<Word> r2, form(n, 0), block(n);
        if (!mg.SquareOfR(&r2)) return Result::kStopped;
        // b's Montgomery form from its blocks of n words, top block first:
        // form := form · R + block, where Mul(f, R^2) is f · R. A block is
        // below R and R^2 mod odd below odd, so each product is reduced.
        const size_t blocks = (b.size() + n - 1) / n;
        for (size_t k = blocks; k-- > 0;) {
            for (size_t i = 0; i < n; ++i) block[i] = k * n + i < b.size() ? b[k * n + i] : 0;
            if (!mg.Mul(form.data(), r2.data(), form.data()) ||
                !mg.Mul(block.data(), r2.data(), block.data())) {
                return Result::kStopped;
            }
            mg.AddTo(form.data(), block.data());
        }
        if (!SlidingWindowPower(mgRing, form, bits, &x) ||
            !mg.Mul(x.data(), one.data(), x.data())) {
            return Result::kStopped;
        }
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
