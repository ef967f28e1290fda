// The runtime's random generator that the lists draw their defaults and the
// polygon search its sides from: state = state * 22695477 + 1 (mod 2^32), each
// draw answering bits 16..30 of the new state (0..32767). Seedable, so a run
// can be repeated.
#pragma once

#include <cstdint>

class ListRandom {
public:
    static constexpr int kMax = 32767;

    explicit ListRandom(uint32_t seed = 1) : state_(seed) {}
    void Seed(uint32_t seed) { state_ = seed; }
    int Next() {
        state_ = state_ * 22695477u + 1u;
        return static_cast<int>((state_ >> 16) & 0x7FFFu);
    }

private:
    uint32_t state_;
};

// The program's one sequence, shared by the dialogs' defaults and the searches
// (as the runtime's rand() is); starts from seed 1.
ListRandom& SharedListRandom();
