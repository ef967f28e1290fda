// Butterfly kernels of the transform in plain C++, for any processor; the
// loops over long rows are left for the compiler to vectorise.
#include "bigint/ntt_kernels.h"

namespace {

inline void ForwardRow(Mont mt, uint32_t* __restrict x, uint32_t* __restrict y,
                       const uint32_t* __restrict w, int32_t m) {
    const uint32_t twoP = 2 * mt.p;
    for (int32_t j = 0; j < m; ++j) {
        const uint32_t u = x[j], v = y[j];
        x[j] = Fold(u + v, twoP);
        y[j] = mt.Mul(u - v + twoP, w[j]);
    }
}

inline void InverseRow(Mont mt, uint32_t* __restrict x, uint32_t* __restrict y,
                       const uint32_t* __restrict w, int32_t m) {
    const uint32_t twoP = 2 * mt.p;
    for (int32_t j = 0; j < m; ++j) {
        const uint32_t u = x[j], t = mt.Mul(y[j], w[j]);
        x[j] = Fold(u + t, twoP);
        y[j] = Fold(u - t + twoP, twoP);
    }
}

void ForwardStage(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    for (int32_t s = 0; s < n; s += 2 * m) ForwardRow(mt, a + s, a + s + m, roots + m, m);
}

void InverseStage(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n, int32_t m) {
    for (int32_t s = 0; s < n; s += 2 * m) InverseRow(mt, a + s, a + s + m, roots + m, m);
}

// The whole transform of two points, forward or inverse alike: its one
// twiddle is 1.
void TwoPoints(uint32_t* a, uint32_t twoP) {
    const uint32_t u = a[0], v = a[1];
    a[0] = Fold(u + v, twoP);
    a[1] = Fold(u - v + twoP, twoP);
}

// The stages of half length 2 and 1 together, four points at a time: their
// rows are too short to vectorise, and three of their four twiddles are 1.
// The inverse runs the two stages in the other order (decimation in time),
// so each direction has its own loop.
void ForwardTail(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    const uint32_t twoP = 2 * mt.p;
    if (n >= 8) ForwardStage(mt, roots, a, n, 4);
    if (n == 2) return TwoPoints(a, twoP);
    const uint32_t w = roots[3];
    for (int32_t s = 0; s + 3 < n; s += 4) {
        uint32_t* x = a + s;
        const uint32_t y0 = Fold(x[0] + x[2], twoP), y2 = Fold(x[0] - x[2] + twoP, twoP);
        const uint32_t y1 = Fold(x[1] + x[3], twoP), y3 = mt.Mul(x[1] - x[3] + twoP, w);
        x[0] = Fold(y0 + y1, twoP);
        x[1] = Fold(y0 - y1 + twoP, twoP);
        x[2] = Fold(y2 + y3, twoP);
        x[3] = Fold(y2 - y3 + twoP, twoP);
    }
}

void InverseHead(const Mont& mt, const uint32_t* roots, uint32_t* a, int32_t n) {
    const uint32_t twoP = 2 * mt.p;
    if (n == 2) return TwoPoints(a, twoP);
    const uint32_t w = roots[3];
    for (int32_t s = 0; s + 3 < n; s += 4) {
        uint32_t* x = a + s;
        const uint32_t y0 = Fold(x[0] + x[1], twoP), y1 = Fold(x[0] - x[1] + twoP, twoP);
        const uint32_t y2 = Fold(x[2] + x[3], twoP), y3 = Fold(x[2] - x[3] + twoP, twoP);
        const uint32_t t = mt.Mul(y3, w);
        x[0] = Fold(y0 + y2, twoP);
        x[2] = Fold(y0 - y2 + twoP, twoP);
        x[1] = Fold(y1 + t, twoP);
        x[3] = Fold(y1 - t + twoP, twoP);
    }
    if (n >= 8) InverseStage(mt, roots, a, n, 4);
}

void Pointwise(const Mont& mt, uint32_t* a, const uint32_t* b, uint32_t scale, int32_t n) {
    if (b == nullptr) b = a;
    for (int32_t i = 0; i < n; ++i) a[i] = mt.Mul(mt.Mul(a[i], b[i]), scale);
}

void MulAccumulate(const Mont& mt, uint32_t* acc, const uint32_t* a, const uint32_t* b,
                   uint32_t scale, int how, int32_t n) {
    const uint32_t twoP = 2 * mt.p;
    for (int32_t i = 0; i < n; ++i) {
        const uint32_t x = mt.Mul(mt.Mul(a[i], b[i]), scale);
        acc[i] = how == 0 ? x : how == 1 ? Fold(acc[i] + x, twoP) : Fold(acc[i] + twoP - x, twoP);
    }
}

void Crt(const CrtPair& c, const uint32_t* r1, const uint32_t* r2, uint64_t* out, int32_t count) {
    const uint32_t p1 = c.p1, p2 = c.m2.p;
    for (int32_t k = 0; k < count; ++k) {
        const uint32_t x1 = r1[k] >= p1 ? r1[k] - p1 : r1[k];
        const uint32_t x2 = r2[k] >= p2 ? r2[k] - p2 : r2[k];
        uint32_t x1m = x1 >= p2 ? x1 - p2 : x1;
        x1m = x1m >= p2 ? x1m - p2 : x1m;
        uint32_t d = c.m2.Mul(x2 + p2 - x1m, c.invR);
        d = d >= p2 ? d - p2 : d;
        out[k] = x1 + uint64_t(p1) * d;
    }
}

const NttKernels kPortable = {ForwardStage, InverseStage, nullptr,       nullptr, ForwardTail,
                              InverseHead,  Pointwise,    MulAccumulate, Crt};
bool gPortable = false;

}  // namespace

const NttKernels& PortableNttKernels() { return kPortable; }

const NttKernels& ActiveNttKernels() {
    static const NttKernels* fast = Avx2NttKernels();
    return gPortable || fast == nullptr ? kPortable : *fast;
}

void UsePortableNttKernels(bool portable) { gPortable = portable; }
