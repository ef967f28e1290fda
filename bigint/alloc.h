// Limb storage shared by every file of the arithmetic.
//
// Every limb array of a BigInt comes from AllocLimbs and goes back through
// FreeLimbs (BigFree uses it too), so any kernel may build a result array and
// hand it to a record. Allocation never throws: a null answer is reported by
// the caller as code 3.
#pragma once

#include <cstdint>
#include <cstring>
#include <new>

#include "bigint/record.h"

// The largest array AllocLimbs hands out. Tests lower it to make one
// allocation fail; the program never changes it.
inline int64_t gMaxLimbAlloc = INT32_MAX;

inline Limb* AllocLimbs(int64_t count) {
    if (count < 1 || count > gMaxLimbAlloc) return nullptr;
    return new (std::nothrow) Limb[static_cast<size_t>(count)];
}

inline Limb* AllocZeroLimbs(int64_t count) {
    Limb* a = AllocLimbs(count);
    if (a) std::memset(a, 0, static_cast<size_t>(count) * sizeof(Limb));
    return a;
}

inline void FreeLimbs(Limb* a) { delete[] a; }

inline void CopyLimbs(Limb* dst, const Limb* src, int32_t count) {
    if (count > 0) std::memmove(dst, src, static_cast<size_t>(count) * sizeof(Limb));
}

inline void ZeroLimbs(Limb* dst, int32_t count) {
    if (count > 0) std::memset(dst, 0, static_cast<size_t>(count) * sizeof(Limb));
}

// A work array released when the scope ends, unless handed over with Release.
class LimbBuffer {
public:
    LimbBuffer() = default;
    explicit LimbBuffer(int64_t count, bool zeroed = false)
        : p_(zeroed ? AllocZeroLimbs(count) : AllocLimbs(count)) {}
    ~LimbBuffer() { FreeLimbs(p_); }
    LimbBuffer(const LimbBuffer&) = delete;
    LimbBuffer& operator=(const LimbBuffer&) = delete;

    bool Reset(int64_t count, bool zeroed = false) {
        FreeLimbs(p_);
        p_ = zeroed ? AllocZeroLimbs(count) : AllocLimbs(count);
        return p_ != nullptr;
    }
    void Swap(LimbBuffer& other) {
        Limb* t = p_;
        p_ = other.p_;
        other.p_ = t;
    }
    Limb* Release() {
        Limb* t = p_;
        p_ = nullptr;
        return t;
    }
    Limb* get() const { return p_; }
    bool ok() const { return p_ != nullptr; }
    Limb& operator[](int32_t i) const { return p_[i]; }

private:
    Limb* p_ = nullptr;
};
