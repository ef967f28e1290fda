// Limb storage shared by every file of the arithmetic.
//
// Every limb array of a BigInt comes from AllocLimbs and goes back through
// FreeLimbs (BigFree uses it too), so any kernel may build a result array and
// hand it to a record. Allocation never throws: a null answer is reported by
// the caller as code 3.
//
// Every allocation of this folder goes through operator new: arrays by
// new (std::nothrow) (limbs here, words in binary_words.cpp, scratch in
// mul_kernels.h, the transform's roots), standard containers by the throwing
// form, whose std::bad_alloc the kernel's entry turns into code 3
// (CatchNoMemory). No exception leaves the folder. So the allocation-failure
// test can refuse any one allocation, and count the live ones, by replacing
// the global operator new in its own program: the arithmetic pays nothing
// for the seam.
#pragma once

#include <cstdint>
#include <cstring>
#include <new>
#include <stdexcept>

#include "bigint/record.h"
#include "resources/result.h"

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

// body() for a kernel built on standard containers: a container that cannot
// grow (std::bad_alloc, or a size beyond its limit) answers code 3. The
// kernel keeps its records in scoped holders (BigTemp, LimbBuffer), so the
// unwinding releases them and the operands are untouched.
template <class Body>
Result CatchNoMemory(Body&& body) noexcept {
    try {
        return body();
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    } catch (const std::length_error&) {
        return Result::kNoMemory;
    }
}
