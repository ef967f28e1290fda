// Base conversion of long numbers by divide and conquer over powers of the
// base.
//
// Decimal needs no arithmetic at all: four digits are one limb. Other bases
// use P_i = base^(L·2^i), L digits being the leaf size
// (gFastThresholds.radixDivide): text to value joins halves as
// high·P_i + low, value to text splits by one division by P_i and pads the
// low half to L·2^i digits. Both cost O(M(n) log n) instead of the n² of one
// digit at a time. Leaves work with one short multiplication or division
// per group of digits that fits 32 bits: text in on limb arrays, text out on
// words of two limbs. The powers go up to the value's length in the output
// base, no further.
//
// Allocation: digits and the powers' list live in standard containers; both
// entries run under CatchNoMemory, so a container that cannot grow answers
// code 3. Every power is in the list before it is made, so the list's
// destructor releases what an unwinding leaves.
#include <cmath>
#include <cstdio>
#include <vector>

#include "bigint/fast_paths.h"
#include "bigint/poll_clock.h"
#include "bigint/thresholds.h"

namespace {

const char kDigitChars[] = "0123456789ABCDEF";

// Digits per group and base^group: the largest group with base^group < 10^9.
void Group(int base, int32_t* digits, uint32_t* factor) {
    uint64_t f = 1;
    int32_t g = 0;
    while (f * uint64_t(base) < 1000000000ull) {
        f *= uint64_t(base);
        ++g;
    }
    *digits = g;
    *factor = static_cast<uint32_t>(f);
}

// Value of count digits by Horner's rule on groups.
Result LeafToBig(const unsigned char* digits, int32_t count, int base, BigInt* value) {
    int32_t g;
    uint32_t f;
    Group(base, &g, &f);
    // base^count < 16^count = 10^(1.21·count): count·1.21/4 + 2 limbs hold it.
    LimbBuffer work(int64_t(count) / 3 + 3, true);
    if (!work.ok()) return Result::kNoMemory;
    Limb* a = work.get();
    int32_t len = 1;
    for (int32_t i = 0; i < count;) {
        uint32_t mul = 1, add = 0;
        for (int32_t k = 0; k < g && i < count; ++k, ++i) {
            mul *= uint32_t(base);
            add = add * uint32_t(base) + digits[i];
        }
        uint64_t carry = add;
        for (int32_t j = 0; j < len; ++j) {
            const uint64_t t = uint64_t(a[j]) * mul + carry;
            carry = t / kLimbBase;
            a[j] = static_cast<Limb>(t - carry * kLimbBase);
        }
        while (carry != 0) {
            a[len++] = static_cast<Limb>(carry % kLimbBase);
            carry /= kLimbBase;
        }
    }
    return BigFromLimbs(value, a, LimbsTrimTop(a, len - 1), 0);
}

// Appends the digits of v, at least width of them (leading zeros). The
// value is divided by base^group on words of two limbs (base 10^8): each
// step divides a number below base^group·10^8 < 2^57, its quotient
// estimated in double precision (off by at most one) and then corrected,
// so the divisions are multiplications.
Result LeafToText(const BigInt* v, int base, int32_t width, std::string* out) {
    int32_t g;
    uint32_t f;
    Group(base, &g, &f);
    std::vector<uint32_t> a(size_t(v->top / 2 + 1));
    for (int32_t i = 0; i <= v->top; ++i)
        a[size_t(i / 2)] += uint32_t(v->limbs[i]) * (i % 2 == 0 ? 1u : 10000u);
    int32_t len = int32_t(a.size());
    while (len > 1 && a[size_t(len - 1)] == 0) --len;
    const double inverse = 1.0 / f;
    const int64_t divisor = f;
    std::string rev;
    while (len > 1 || a[0] != 0) {
        int64_t rem = 0;
        for (int32_t j = len - 1; j >= 0; --j) {
            const int64_t cur = rem * 100000000 + a[size_t(j)];
            int64_t q = static_cast<int64_t>(static_cast<double>(cur) * inverse);
            rem = cur - q * divisor;
            for (; rem < 0; rem += divisor) --q;
            for (; rem >= divisor; rem -= divisor) ++q;
            a[size_t(j)] = static_cast<uint32_t>(q);
        }
        while (len > 1 && a[size_t(len - 1)] == 0) --len;
        const bool last = len == 1 && a[0] == 0;
        auto r = static_cast<uint32_t>(rem);
        for (int32_t k = 0; k < g && (!last || r != 0); ++k) {
            rev.push_back(kDigitChars[r % uint32_t(base)]);
            r /= uint32_t(base);
        }
    }
    while (int32_t(rev.size()) < width) rev.push_back('0');
    out->append(rev.rbegin(), rev.rend());
    return Result::kOk;
}

struct Powers {
    std::vector<BigInt> p;  // p[i] = base^(leaf·2^i)
    int32_t leaf = 0;
    // Reciprocals of the long powers, made once: every division of one level
    // of the tree is by the same power.
    std::vector<NewtonDivisor> inverse;
    ~Powers() {
        for (BigInt& v : p) BigFree(&v);
    }
    Result PrepareDivisors(CalcContext* ctx) {
        inverse = std::vector<NewtonDivisor>(p.size());
        for (size_t i = 0; i < p.size(); ++i) {
            if (p[i].top + 1 < gFastThresholds.divNewton) continue;
            const Result code = NewtonDivisorPrepare(ctx, &p[i], &inverse[i]);
            if (!Ok(code)) return code;
        }
        return Result::kOk;
    }
    Result DivMod(CalcContext* ctx, const BigInt* v, size_t i, BigInt* q, BigInt* r) const {
        if (i < inverse.size() && inverse[i].d != nullptr)
            return DivModWithDivisor(ctx, v, &inverse[i], q, r);
        return FastDivMod(ctx, v, &p[i], q, r);
    }
    // Powers up to the first whose digit count reaches count.
    Result Build(CalcContext* ctx, int base, int32_t count) {
        std::vector<unsigned char> one(size_t(leaf) + 1, 0);
        one[0] = 1;
        p.push_back(BigInt{});
        Result code = LeafToBig(one.data(), leaf + 1, base, &p.back());
        for (int64_t digits = leaf; Ok(code) && digits * 2 < count; digits *= 2) {
            p.push_back(BigInt{});
            const BigInt& last = p[p.size() - 2];
            code = FastMul(ctx, &p.back(), &last, &last);
        }
        return code;
    }
};

Result ToBig(CalcContext* ctx, const Powers& pw, const unsigned char* digits, int32_t count,
             int base, BigInt* value) {
    if (count <= pw.leaf) return LeafToBig(digits, count, base, value);
    size_t i = 0;
    while (i + 1 < pw.p.size() && (int64_t(pw.leaf) << (i + 1)) < count) ++i;
    const int32_t low = pw.leaf << i;
    BigTemp hi, lo, t;
    Result code = ToBig(ctx, pw, digits, count - low, base, &hi.v);
    if (Ok(code)) code = ToBig(ctx, pw, digits + count - low, low, base, &lo.v);
    if (Ok(code)) code = FastMul(ctx, &t.v, &hi.v, &pw.p[i]);
    if (Ok(code)) code = FastAdd(value, &t.v, &lo.v);
    return code;
}

// Digits of v < P_(i+1) (P_0 for i = −1), padded to width when width > 0.
Result ToText(CalcContext* ctx, const Powers& pw, const BigInt* v, int i, int base, int32_t width,
              std::string* out) {
    if (i < 0) return LeafToText(v, base, width, out);
    const int32_t low = pw.leaf << i;
    if (width == 0 && BigCompareMag(v, &pw.p[i]) > 0)  // v < P_i: no high half
        return ToText(ctx, pw, v, i - 1, base, 0, out);
    BigTemp q, r;
    Result code = pw.DivMod(ctx, v, size_t(i), &q.v, &r.v);
    if (Ok(code)) code = ToText(ctx, pw, &q.v, i - 1, base, width > 0 ? width - low : 0, out);
    if (Ok(code)) code = ToText(ctx, pw, &r.v, i - 1, base, low, out);
    return code;
}

Result ToBigSplit(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                  BigInt* value) {
    while (count > 0 && digits[0] == 0) {
        ++digits;
        --count;
    }
    if (count == 0) return BigFromInt(value, 0);
    if (base == 10) {
        LimbBuffer work(int64_t(count) / 4 + 1);
        if (!work.ok()) return Result::kNoMemory;
        PollClock clk(ctx);
        int32_t top = -1;
        for (int32_t end = count; end > 0; end -= 4) {
            int32_t limb = 0;
            for (int32_t k = end > 4 ? end - 4 : 0; k < end; ++k) limb = limb * 10 + digits[k];
            work[++top] = static_cast<Limb>(limb);
            if ((top & 0xFFFF) == 0xFFFF && clk.Tick(4 * 0x10000)) return Result::kStopped;
        }
        return BigFromLimbs(value, work.get(), top, 0);
    }
    Powers pw;
    pw.leaf = gFastThresholds.radixDivide;
    const Result code = pw.Build(ctx, base, count);
    return !Ok(code) ? code : ToBig(ctx, pw, digits, count, base, value);
}

Result ToTextSplit(CalcContext* ctx, const BigInt* value, int base, std::string* text) {
    std::string out;
    if (BigIsZero(value)) {
        text->clear();
        return Result::kOk;
    }
    if (base == 10) {
        // The top limb without leading zeros, every other one as four digits.
        char buf[8];
        std::snprintf(buf, sizeof buf, "%d", value->limbs[value->top]);
        out.reserve(size_t(value->top) * 4 + 4);
        out += buf;
        PollClock clk(ctx);
        for (int32_t i = value->top - 1; i >= 0; --i) {
            const int limb = value->limbs[i];
            const char digits[4] = {char('0' + limb / 1000), char('0' + limb / 100 % 10),
                                    char('0' + limb / 10 % 10), char('0' + limb % 10)};
            out.append(digits, 4);
            if ((i & 0xFFFF) == 0 && clk.Tick(4 * 0x10000)) return Result::kStopped;
        }
        text->swap(out);
        return Result::kOk;
    }
    // Enough powers that the value is below the square of the last.
    Powers pw;
    pw.leaf = gFastThresholds.radixDivide;
    // v < 10^(4·limbs): at most 4·limbs·log_base(10) + 1 digits, with room
    // for the rounding of the logarithms. Powers past the value's length
    // would only be made (and their reciprocals) to be skipped.
    const double perLimb = 4 * std::log(10.0) / std::log(double(base));
    const int32_t digitsAtMost = int32_t(double(value->top + 1) * perLimb) + 2;
    Result code = pw.Build(ctx, base, digitsAtMost);
    if (Ok(code)) code = pw.PrepareDivisors(ctx);
    if (Ok(code)) code = ToText(ctx, pw, value, int(pw.p.size()) - 1, base, 0, &out);
    if (Ok(code)) text->swap(out);
    return code;
}

}  // namespace

Result RadixToBigSplit(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                       BigInt* value) {
    return CatchNoMemory([&] { return ToBigSplit(ctx, digits, count, base, value); });
}

Result BigToRadixSplit(CalcContext* ctx, const BigInt* value, int base, std::string* text) {
    return CatchNoMemory([&] { return ToTextSplit(ctx, value, base, text); });
}
