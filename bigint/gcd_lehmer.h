// Lehmer's step, shared by Lehmer's gcd, the leaves of the half-gcd and
// the extended gcd's last steps, on numbers in base 10^8 (uint32 words,
// least significant first), which spares the pass the pairing and
// splitting of limbs.
//
// One step runs Euclid's algorithm on the leading four or five words of
// x >= y > 0 for as long as the quotients are certainly those of the full
// numbers, and answers the cofactors: after the step the pair is
// (A·x + B·y, C·x + D·y), the two remainders that follow `steps` quotients.
// The cofactors are at most 10^18 in magnitude and alternate in sign.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "bigint/alloc.h"
#include "bigint/record.h"
#include "resources/result.h"

struct LehmerCofactors {
    int64_t A = 1, B = 0, C = 0, D = 1;
    int32_t steps = 0;  // quotients taken; 0 when the leading words decide none
};

// The step for x (lx words) >= y (ly words) > 0. With floorLimbs >= 0 a
// quotient is taken only when the remainder it leaves is certainly at least
// 10000^floorLimbs; with a negative floor, whenever it is certain. No step
// when x has two or more words more than y.
LehmerCofactors LehmerLeadingWords(const uint32_t* x, int32_t lx, const uint32_t* y, int32_t ly,
                                   int32_t floorLimbs);

// s := A·x + B·y and t := C·x + D·y for combinations known to be
// non-negative, in one pass over max(lx, ly) words; |A| … |D| at most
// 10^18. s and t alias neither input and hold max(lx, ly) + 3 words, or
// max(lx, ly) when both results are below 10^(8·max(lx, ly)); their
// lengths come back in *ls and *lt, without leading zero words.
void LehmerCombineWords(const LehmerCofactors& c, const uint32_t* x, int32_t lx, const uint32_t* y,
                        int32_t ly, uint32_t* s, int32_t* ls, uint32_t* t, int32_t* lt);

// The combination pass's body on vector registers: s and t take words
// 0 … k − 1 of the two combinations of x and y (k a multiple of 8, both
// inputs at least k words), cofactors {Al, Bl, Ah, Bh, Cl, Dl, Ch, Dh} split
// into two base-10^8 digits as the scalar pass splits them; carries[0] and
// carries[1] receive the signed carries into word k.
using LehmerCombineBody = void (*)(const int64_t* cofactors, const uint32_t* x, const uint32_t* y,
                                   int32_t k, uint32_t* s, uint32_t* t, int64_t* carries);
// Null where the processor or the compiler has no AVX-512 (gcd_avx512.cpp).
LehmerCombineBody Avx512LehmerCombine();
// The scalar pass even where the vector body could run; for tests.
void UsePortableLehmerCombine(bool portable);

// A number in base 10^8 in a work array of fixed room (nothrow new, as
// every array of the folder).
class WordSlot {
public:
    WordSlot() = default;
    ~WordSlot() { delete[] words_; }
    WordSlot(const WordSlot&) = delete;
    WordSlot& operator=(const WordSlot&) = delete;

    int32_t len = 1;  // words, without leading zero words

    uint32_t* get() const { return words_; }
    bool Reset(int32_t room) {
        delete[] words_;
        words_ = new (std::nothrow) uint32_t[size_t(room)];
        return words_ != nullptr;
    }
    void Swap(WordSlot& o) {
        std::swap(words_, o.words_);
        std::swap(len, o.len);
    }
    // v into fresh words with room for roomLimbs limbs plus the pass's slack.
    Result Load(const BigInt& v, int32_t roomLimbs) {
        if (!Reset((roomLimbs + 1) / 2 + 4)) return Result::kNoMemory;
        FromLimbs(v.limbs, v.top + 1);
        return Result::kOk;
    }
    // The value as a new record in v (released first).
    Result Store(BigInt* v) const;
    bool IsZero() const { return len == 1 && get()[0] == 0; }
    // Limbs of the value, without leading zeros.
    int32_t Limbs() const { return 2 * len - (get()[len - 1] < uint32_t(kLimbBase) ? 1 : 0); }
    // v (n >= 1 limbs) into the words; the room must hold (n + 1) / 2.
    void FromLimbs(const Limb* v, int32_t n) {
        uint32_t* w = get();
        len = (n + 1) / 2;
        for (int32_t i = 0; i < len; ++i) {
            const uint32_t low = uint16_t(v[2 * i]);
            w[i] = 2 * i + 1 < n ? low + uint32_t(uint16_t(v[2 * i + 1])) * kLimbBase : low;
        }
        while (len > 1 && w[len - 1] == 0) --len;
    }
    // The value as limbs into out, which holds 2·len limbs; answers the top.
    int32_t ToLimbs(Limb* out) const {
        const uint32_t* w = get();
        for (int32_t i = 0; i < len; ++i) {
            out[2 * i] = static_cast<Limb>(w[i] % kLimbBase);
            out[2 * i + 1] = static_cast<Limb>(w[i] / kLimbBase);
        }
        return Limbs() - 1;
    }

private:
    uint32_t* words_ = nullptr;
};
