// Modular powers for moduli too long for the word kernel: products by the
// multiplication dispatcher (transforms at these sizes) and remainders by
// the modulus's reciprocal, which the division keeps between calls, under
// the sliding window of the word kernel. A square or a product then costs
// about three products of the modulus's length: the product itself, and
// the quotient estimate and its multiple of the modulus.
//
// Allocation: residues live in std::vector; ModPowLong runs under
// CatchNoMemory, so a vector that cannot grow answers code 3.
#include "bigint/fast_paths.h"
#include "bigint/modpow_window.h"

namespace {

// Residues modulo |m| as exact limb vectors (canonical, at least one limb).
class LongRing {
public:
    using Value = std::vector<Limb>;
    LongRing(CalcContext* ctx, const BigInt* m) : ctx_(ctx), m_(m) {}
    Value Zero() const { return Value(1, 0); }
    bool Copy(const Value& a, Value* r) const {
        *r = a;
        return true;
    }
    bool Mul(const Value& a, const Value& b, Value* r) {
        const BigInt x = View(a), y = View(b);
        BigTemp product, q, rem;
        code_ = FastMul(ctx_, &product.v, &x, &y);
        if (code_ == 0) code_ = FastDivMod(ctx_, &product.v, m_, &q.v, &rem.v);
        if (code_ != 0) return false;
        r->assign(rem.v.limbs, rem.v.limbs + rem.v.top + 1);
        return true;
    }
    bool Sqr(const Value& a, Value* r) { return Mul(a, a, r); }
    // The failing code after a false answer.
    Result code() const { return code_; }

private:
    static BigInt View(const Value& a) {
        BigInt v = {};
        v.limbs = const_cast<Limb*>(a.data());
        v.top = static_cast<int32_t>(a.size()) - 1;
        return v;
    }
    CalcContext* ctx_;
    const BigInt* m_;
    Result code_ = Result::kOk;
};

Result ModPowLongBody(CalcContext* ctx, const BigInt* base, const BigInt* exponent, const BigInt* m,
                      BigInt* result) {
    const BigInt mm = BigMagnitudeView(m);
    BigTemp reduced, canonical;
    std::vector<bool> bits;
    Result code = BigMod(ctx, base, &mm, &reduced.v);
    if (Ok(code)) code = ExponentBits(ctx, exponent, &bits);
    // A modulus with a top limb of 10000 (left by a sum) is carried first:
    // the products compare with it limb by limb.
    if (Ok(code)) code = BigFromLimbs(&canonical.v, mm.limbs, mm.top, 0);
    if (Ok(code)) code = FastCanonical(&canonical.v);
    if (!Ok(code)) return code;
    LongRing ring(ctx, &canonical.v);
    const BigInt& b = reduced.v;
    std::vector<Limb> x, bv(b.limbs, b.limbs + b.top + 1);
    if (!SlidingWindowPower(ring, bv, bits, &x)) return ring.code();
    return BigFromLimbs(result, x.data(), LimbsTrimTop(x.data(), int32_t(x.size()) - 1), 0);
}

}  // namespace

Result ModPowLong(CalcContext* ctx, const BigInt* base, const BigInt* exponent, const BigInt* m,
                  BigInt* result) {
    return CatchNoMemory([&] { return ModPowLongBody(ctx, base, exponent, m, result); });
}
