// Algorithm choice for the heavy operations: the reference kernel below its
// threshold, the fast kernel of fast_paths.h above.
//
// Allocation: no containers here; the divisor cache holds records, and the
// text of the base conversion is the kernels' (each answers code 3 itself).
#include "bigint/dispatch.h"

#include "bigint/fast_ops.h"
#include "bigint/fast_paths.h"
#include "bigint/internal.h"
#include "bigint/thresholds.h"

namespace {

// |v| for the fast kernels, which take magnitudes with exact limb counts: a
// view of v's limbs, or a canonical copy when v's top limb is 10000 (left by
// LimbsAdd), made in one polled pass (v may have 10^8 digits). The view is
// never released.
struct Magnitude {
    BigInt view = {};
    BigTemp copy;
    const BigInt* get() const { return copy.v.limbs ? &copy.v : &view; }
};

Result MakeMagnitude(CalcContext* ctx, const BigInt* v, Magnitude* m) {
    m->view = BigMagnitudeView(v);
    const int32_t top = m->view.top = LimbsTrimTop(v->limbs, v->top);
    if (v->limbs[top] < kLimbBase) return Result::kOk;
    // The top limb carried into one more: the array is then exactly full.
    LimbBuffer work(int64_t(top) + 2);
    if (!work.ok()) return Result::kNoMemory;
    const Result code = FastCopyLimbsPolled(ctx, work.get(), v->limbs, top + 1);
    if (!Ok(code)) return code;
    m->copy.v.top = LimbsNormalizeTop(work.get(), top);
    m->copy.v.negative = 0;
    m->copy.v.limbs = work.Release();
    return Result::kOk;
}

// The reciprocal of the last long divisor, kept for the next division by the
// same number: the modulus of modular arithmetic, the powers of base
// conversion. The arithmetic runs on one thread.
struct DivisorCache {
    BigInt d = {};
    NewtonDivisor divisor;
    ~DivisorCache() { BigFree(&d); }
    void Release() {
        BigFree(&d);
        BigFree(&divisor.R);
        divisor.d = nullptr;
        divisor.ForgetTransforms();
    }

    // The prepared divisor for dm in *out. kOk, kNoMemory, kStopped (the cache is then empty).
    Result For(CalcContext* ctx, const BigInt* dm, const NewtonDivisor** out) {
        *out = &divisor;
        bool same = false;
        Result code = Result::kOk;
        // Compared in slices: 10^8 digits take a few milliseconds.
        if (d.limbs && d.top == dm->top)
            code = FastEqualLimbsPolled(ctx, d.limbs, dm->limbs, d.top + 1, &same);
        if (Ok(code) && same) {
            code = NewtonDivisorComplete(ctx, &divisor);  // seen again: worth the full reciprocal
            if (!Ok(code)) Release();
            return code;
        }
        Release();
        if (Ok(code)) code = FastCopyPolled(ctx, &d, dm);
        if (Ok(code)) code = NewtonDivisorStart(ctx, &d, &divisor);
        if (!Ok(code)) Release();
        return code;
    }
};

DivisorCache gDivisorCache;

}  // namespace

void ReleaseDivisorCache() { gDivisorCache.Release(); }

Result DivModDispatch(CalcContext* ctx, const BigInt* x, const BigInt* d, BigInt* q, BigInt* r) {
    const int32_t limit = gFastThresholds.divNewton;
    const int32_t m = d->top + 1;
    const bool small = d->top <= 1;
    if (!small && (m < limit || x->top + 1 - m + 1 < limit)) return DivModSchool(ctx, x, d, q, r);
    Magnitude xm, dm;
    Result code = MakeMagnitude(ctx, x, &xm);
    if (Ok(code)) code = MakeMagnitude(ctx, d, &dm);
    // A quotient as long as the divisor (a product reduced by a modulus)
    // goes through the cached reciprocal; others get one sized to them.
    const int32_t quotientLimbs = x->top - d->top + 1;
    if (Ok(code) && small) {
        // 10^8 written as two limbs (a top limb of 10000) is three limbs long.
        code = dm.get()->top <= 1 ? DivModSmall(ctx, xm.get(), dm.get(), q, r)
                                  : DivModSchool(ctx, x, d, q, r);
    } else if (Ok(code) && quotientLimbs + 2 >= m) {
        const NewtonDivisor* known = nullptr;
        code = gDivisorCache.For(ctx, dm.get(), &known);
        if (Ok(code)) code = DivModWithDivisor(ctx, xm.get(), known, q, r);
    } else if (Ok(code)) {
        code = DivModNewton(ctx, xm.get(), dm.get(), q, r);
    }
    if (!Ok(code)) return code;
    q->negative = x->negative != d->negative;
    r->negative = x->negative;
    return Result::kOk;
}
Result SqrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result) {
    if (x->top + 1 < gFastThresholds.sqrtRecursive) return SqrtSchool(ctx, x, result);
    Magnitude xm;
    const Result code = MakeMagnitude(ctx, x, &xm);
    return !Ok(code) ? code : SqrtRecursive(ctx, xm.get(), result);
}
Result CbrtDispatch(CalcContext* ctx, const BigInt* x, BigInt* result) {
    if (x->top + 1 < gFastThresholds.cbrtNewton) return CbrtSchool(ctx, x, result);
    Magnitude xm;
    Result code = MakeMagnitude(ctx, x, &xm);
    if (Ok(code)) code = CbrtNewton(ctx, xm.get(), result);
    if (Ok(code) || code == 1) result->negative = x->negative;
    return code;
}
Result RangeProductDispatch(CalcContext* ctx, int32_t c, int32_t n, BigInt* result) {
    const FastThresholds& t = gFastThresholds;
    if (n - c < 2 * t.productTree) return RangeProductSchool(ctx, c, n, result);
    // The factorisation pays when the range is long and starts low: its
    // sieve runs over all of 1 … n, at most twice the factors.
    if (n - c >= t.rangePrimes && c <= n / 2) return RangeProductPrimes(ctx, c, n, result);
    return RangeProductTree(ctx, c, n, result);
}
Result BinomialDispatch(CalcContext* ctx, int32_t n, int32_t k, BigInt* result) {
    const FastThresholds& t = gFastThresholds;
    if (k >= t.rangePrimes && n <= t.rangePrimesSieve) return BinomialPrimes(ctx, n, k, result);
    BigTemp top, factorial, rest;
    Result code = RangeProductDispatch(ctx, n - k, n, &top.v);
    if (Ok(code)) code = RangeProductDispatch(ctx, 0, k, &factorial.v);
    if (Ok(code)) code = BigDivMod(ctx, &top.v, &factorial.v, result, &rest.v);
    return code;
}

Result GcdDispatch(CalcContext* ctx, const BigInt* a, const BigInt* b, BigInt* result) {
    if (b->top + 1 < gFastThresholds.gcdLehmer) return GcdSchool(ctx, a, b, result);
    Magnitude am, bm;
    Result code = MakeMagnitude(ctx, a, &am);
    if (Ok(code)) code = MakeMagnitude(ctx, b, &bm);
    if (!Ok(code)) return code;
    if (b->top + 1 >= gFastThresholds.gcdHalf) return GcdHalf(ctx, am.get(), bm.get(), result);
    return GcdLehmer(ctx, am.get(), bm.get(), result);
}
Result ModInverseDispatch(CalcContext* ctx, const BigInt* a, const BigInt* m, BigInt* result) {
    // The extended gcd takes 0 < a < m in value; every other case, a zero a
    // and a = m among them, keeps the chain and its answers.
    if (LimbsTrimTop(m->limbs, m->top) + 1 >= gFastThresholds.modInverse &&
        !BigIsZeroMagnitude(a)) {
        Magnitude am, mm;
        Result code = MakeMagnitude(ctx, a, &am);
        if (Ok(code)) code = MakeMagnitude(ctx, m, &mm);
        if (!Ok(code)) return code;
        if (BigCompareMag(am.get(), mm.get()) > 0)
            return ModInverseExtended(ctx, am.get(), mm.get(), result);
    }
    return ModInverseSchool(ctx, a, m, result);
}
Result RadixToBigDispatch(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                          BigInt* value) {
    if (count < gFastThresholds.radixDivide)
        return RadixToBigSchool(ctx, digits, count, base, value);
    return RadixToBigSplit(ctx, digits, count, base, value);
}
Result BigToRadixDispatch(CalcContext* ctx, const BigInt* value, int base, std::string* text) {
    const int32_t limbs = value->top + 1;
    const bool powerOfTwo = base >= 2 && (base & (base - 1)) == 0;
    if (powerOfTwo ? limbs < gFastThresholds.radixBinary : limbs < gFastThresholds.radixDivide)
        return BigToRadixSchool(ctx, value, base, text);
    Magnitude vm;
    const Result code = MakeMagnitude(ctx, value, &vm);
    if (!Ok(code)) return code;
    return powerOfTwo ? BigToRadixBinary(ctx, vm.get(), base, text)
                      : BigToRadixSplit(ctx, vm.get(), base, text);
}
