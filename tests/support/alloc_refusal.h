// A test program's own global operator new, through which every allocation
// of the core goes (bigint/alloc.h, the standard containers): while armed it
// counts allocations and refuses number gAllocRefuse (nothrow new answers
// null, the throwing form throws std::bad_alloc), and it always counts the
// live blocks. A program links alloc_refusal.cpp to get it; unarmed it is
// plain malloc and free.
#pragma once

#include <atomic>

extern std::atomic<bool> gAllocArmed;
extern std::atomic<long> gAllocCount;    // allocations since armed
extern std::atomic<long> gAllocRefuse;   // the allocation to refuse (0: none)
extern std::atomic<long> gAllocRefused;  // refusals since armed
extern std::atomic<long> gAllocLive;     // blocks allocated and not yet freed

// Arms the counter to refuse allocation `refuse` (0 refuses none).
inline void ArmAllocations(long refuse) {
    gAllocCount = 0;
    gAllocRefused = 0;
    gAllocRefuse = refuse;
    gAllocArmed = true;
}
