#include "support/alloc_refusal.h"

#include <cstdlib>
#include <new>

std::atomic<bool> gAllocArmed{false};
std::atomic<long> gAllocCount{0};
std::atomic<long> gAllocRefuse{0};
std::atomic<long> gAllocRefused{0};
std::atomic<long> gAllocLive{0};

namespace {

void* Allocate(size_t n, bool nothrow) {
    if (gAllocArmed.load(std::memory_order_relaxed) && ++gAllocCount == gAllocRefuse.load()) {
        ++gAllocRefused;
        if (nothrow) return nullptr;
        throw std::bad_alloc();
    }
    void* p = std::malloc(n ? n : 1);
    if (!p) {
        if (nothrow) return nullptr;
        throw std::bad_alloc();
    }
    ++gAllocLive;
    return p;
}

void Free(void* p) {
    if (!p) return;
    --gAllocLive;
    std::free(p);
}

}  // namespace

void* operator new(size_t n) { return Allocate(n, false); }
void* operator new[](size_t n) { return Allocate(n, false); }
void* operator new(size_t n, const std::nothrow_t&) noexcept { return Allocate(n, true); }
void* operator new[](size_t n, const std::nothrow_t&) noexcept { return Allocate(n, true); }
void operator delete(void* p) noexcept { Free(p); }
void operator delete[](void* p) noexcept { Free(p); }
void operator delete(void* p, size_t) noexcept { Free(p); }
void operator delete[](void* p, size_t) noexcept { Free(p); }
void operator delete(void* p, const std::nothrow_t&) noexcept { Free(p); }
void operator delete[](void* p, const std::nothrow_t&) noexcept { Free(p); }
