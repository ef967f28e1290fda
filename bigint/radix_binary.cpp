// Bases 2, 4, 8 and 16: the decimal limbs are converted to binary words once,
// and the digits are then read straight off the bits.
//
// Decimal to binary, bottom up: leaves of L limbs (L = BinaryLeafLimbs(),
// chosen for the transform the products take) by Horner's rule, four limbs
// (a factor 10^16) per pass over 64-bit words (leaves past 308 limbs: two
// per pass over 32-bit words); then level i joins
// neighbouring blocks as high·10^e + low, e = 4L·2^i, computed as
// (high·5^e)·2^e + low: the power kept in binary is 5^e, 30% shorter than
// 10^e, and the factor 2^e is a shifted addition. With three blocks left,
// the last one is multiplied by 5^e twice instead of by 5^(2e) at a level
// of its own (JoinLast). Block j of level i sits at word j·S_i of one array,
// S_0 = the word length of 10^(4L) and S_(i+1) = 2·S_i: a block's value is
// below 10^e, whose length is at most S_i, and the shorter last block stays
// below 10^(4L) to the power of its leaves, so it fits the words that remain.
//
// The powers 5^(4L·2^i), each the square of the one before, are made first:
// those short enough for the schoolbook rows alone here, the longer ones,
// from gFastThresholds.radixBinaryParallel limbs, on a helper thread while
// the leaves and the levels that take only the rows are made (the two share
// nothing; a cold process also makes the 64-bit transform's tables there).
// Without the helper thread each level squares its power for the next one
// from the transform it keeps for its products: three inverse transforms
// instead of a square's six.
// Besides the array the conversion holds the powers (together below twice
// the longest, a level's power released after it), one product (the last
// join two), none longer than the number, and the transform's buffers (and,
// where a level's products share the power's transform over the 64-bit
// primes, those 3n points).
// Cost O(M(n) log n).
//
// Binary to digits: k = log2(base) bits per digit from the least significant
// end (base 8 takes bits across word boundaries; base 16 a byte's two digits
// from a table), linear.
//
// Allocation: words from nothrow new (binary_words.h); the one container,
// the digit text, is sized once under a catch that answers code 3.
#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

#include "bigint/binary_words.h"
#include "bigint/fast_paths.h"
#include "bigint/two_threads.h"

int32_t BinaryLeafLimbs() {
    const int32_t leaf = Ntt64VectorButterflies() && gFastThresholds.binaryNtt64 > 0
                             ? gFastThresholds.radixBinaryLeafVector
                             : gFastThresholds.radixBinaryLeaf;
    return leaf > 0 ? leaf : 1;
}

namespace {

// a[0..n) := a·mul + add; a has room for the word a carry may add. Answers
// the new length (0 stays 0 while the value is zero).
int32_t MulAddSmall(uint32_t* a, int32_t n, uint32_t mul, uint32_t add) {
    uint64_t carry = add;
    for (int32_t j = 0; j < n; ++j) {
        const uint64_t t = uint64_t(a[j]) * mul + carry;
        a[j] = static_cast<uint32_t>(t);
        carry = t >> 32;
    }
    if (carry != 0) a[n++] = static_cast<uint32_t>(carry);
    return n;
}

// The value of limbs l[0..n) into w, which has room for it; the words above
// its length are left alone. Answers the length, 0 for zero. Up to 64
// 64-bit words (308 limbs) by four limbs (a factor 10^16 < 2^64) a pass with
// 128-bit products, else two limbs a pass on 32-bit words.
int32_t LeafWords(const Limb* l, int32_t n, uint32_t* w) {
    if (n <= 308) {
        uint64_t x[64];
        int32_t len = 0;
        int32_t i = n - 1;
        for (; (i + 1) % 4 != 0; --i) {
            const uint64_t t = (len ? x[0] : 0) * 10000 + uint64_t(l[i]);
            x[0] = t;
            len = t != 0;
        }
        for (; i > 0; i -= 4) {
            uint64_t carry =
                ((uint64_t(l[i]) * 10000 + uint64_t(l[i - 1])) * 10000 + uint64_t(l[i - 2])) *
                    10000 +
                uint64_t(l[i - 3]);
            for (int32_t j = 0; j < len; ++j) {
                const unsigned __int128 t =
                    static_cast<unsigned __int128>(x[j]) * 10000000000000000u + carry;
                x[j] = static_cast<uint64_t>(t);
                carry = static_cast<uint64_t>(t >> 64);
            }
            if (carry != 0) x[len++] = carry;
        }
        const int32_t words = len == 0 ? 0 : 2 * len - (x[len - 1] >> 32 == 0);
        for (int32_t j = 0; j < words; ++j)
            w[j] = static_cast<uint32_t>(j % 2 == 0 ? x[j / 2] : x[j / 2] >> 32);
        return words;
    }
    int32_t len = 0;
    int32_t i = n - 1;
    if (n % 2 != 0) {
        w[0] = static_cast<uint32_t>(l[i]);
        len = l[i] != 0;
        --i;
    }
    for (; i > 0; i -= 2)
        len = MulAddSmall(w, len, 100000000u, uint32_t(l[i]) * 10000u + uint32_t(l[i - 1]));
    return len;
}

// 5^(4·limbs) in p (5^4 < 2^10: 10 bits per limb and a word for the 1 are
// room enough), by factors 5^13, the largest below 2^32.
Result PowerOfFive(int32_t limbs, Words* p) {
    if (!p->Allocate(int32_t((int64_t(limbs) * 10) / 32 + 2))) return Result::kNoMemory;
    uint32_t* w = p->data();
    w[0] = 1;
    int32_t len = 1;
    int64_t e = 4 * int64_t(limbs);
    for (; e >= 13; e -= 13) len = MulAddSmall(w, len, 1220703125u, 0);
    uint32_t rest = 1;
    for (; e > 0; --e) rest *= 5;
    len = MulAddSmall(w, len, rest, 0);
    std::fill(w + len, w + p->size(), 0u);
    p->Trim();
    return Result::kOk;
}

// p·p into sq (p's words kept).
Result SquareInto(PollClock& clk, const Words& p, Words* sq) {
    if (!sq->Allocate(2 * p.size())) return Result::kNoMemory;
    const Result rc = WordsMul(clk, p.data(), p.size(), nullptr, p.size(), sq->data());
    if (!Ok(rc)) return rc;
    sq->Trim();
    return Result::kOk;
}

// The top join of three blocks at slots of s words: block 2 (below
// 10^(2e)) times (5^e)^2, by the factor 5^e twice, then added in at bit 2e
// of the value that blocks 0 and 1 make. That spares the square of 5^e and
// a product by it that the next level would take, for a product by 5^e (of
// the words of block 2 and 5^e, no longer than one of the level's own when
// block 2 is short, which it is unless the count of leaves is just below a
// power of two).
Result JoinLast(PollClock& clk, const WordsByFactor& by, int32_t powerWords, uint32_t* w, int64_t s,
                int64_t total, int64_t shift) {
    uint32_t* last = w + 2 * s;
    const int32_t end = int32_t(total - 2 * s);
    const int32_t ll = WordsTrim(last, end);
    if (ll > 1 || last[0] != 0) {
        Words once, twice;
        if (!once.Allocate(ll + powerWords)) return Result::kNoMemory;
        Result rc = by.Mul(clk, last, ll, once.data());
        if (!Ok(rc)) return rc;
        once.Trim();
        if (!twice.Allocate(once.size() + powerWords)) return Result::kNoMemory;
        if ((rc = by.Mul(clk, once.data(), once.size(), twice.data())) != 0) return rc;
        twice.Trim();
        std::fill(last, last + end, 0u);
        WordsAddShifted(w, int32_t(total), twice.data(), twice.size(), 2 * shift);
    }
    return Result::kOk;
}

// Level i of the tree on the array w of total words: its blocks (slots of
// slot words) joined in pairs by power = 5^shift. Answers in *blocks the
// count left, 1 after the last join of three. A next not null gets the
// square of the power, from its kept transform where it has one (its length
// is that of a level's product, which is at least twice the power's).
Result JoinLevel(PollClock& clk, uint32_t* w, int64_t total, int64_t slot, int64_t shift,
                 const Words& power, Words* next, int64_t* blocks) {
    // A high block has at most min(slot, total - slot) words.
    Words product;
    if (!product.Allocate(int32_t(power.size() + std::min(slot, total - slot))))
        return Result::kNoMemory;
    WordsByFactor by;
    // Three blocks: the last one is multiplied by this power twice (below).
    Result rc = by.Prepare(clk, power.data(), power.size(), int32_t(std::min(slot, total - slot)),
                           (*blocks == 3 ? 3 : *blocks / 2) + (next != nullptr));
    if (!Ok(rc)) return rc;
    if (next != nullptr) {
        if (!next->Allocate(2 * power.size())) return Result::kNoMemory;
        if ((rc = by.Square(clk, next->data())) != 0) return rc;
        next->Trim();
    }
    for (int64_t j = 0; 2 * j + 1 < *blocks; ++j) {
        uint32_t* low = w + 2 * j * slot;
        uint32_t* high = low + slot;
        const int32_t end = int32_t(std::min(2 * slot, total - 2 * j * slot));
        const int32_t lh = WordsTrim(high, end - int32_t(slot));
        if (lh == 1 && high[0] == 0) continue;
        const int32_t lengths = lh + power.size();
        if ((rc = by.Mul(clk, high, lh, product.data())) != 0) return rc;
        std::fill(high, low + end, 0u);
        WordsAddShifted(low, end, product.data(), WordsTrim(product.data(), lengths), shift);
    }
    product.Release();
    if (*blocks == 3) {
        *blocks = 1;
        return JoinLast(clk, by, power.size(), w, slot, total, shift);
    }
    *blocks = (*blocks + 1) / 2;
    return Result::kOk;
}

// Canonical limbs l[0..n) (n >= 1) as binary words.
Result LimbsToWords(PollClock& clk, const Limb* l, int32_t n, Words* out) {
    const int32_t leaf = BinaryLeafLimbs();
    const int64_t leaves = (int64_t(n) + leaf - 1) / leaf;
    // powers[i] = 5^(4L·2^i) for level i; 31 levels reach 2^31 leaves.
    constexpr int kMaxLevels = 32;
    int levels = 0;
    for (int64_t b = leaves; b > 1; b = b == 3 ? 1 : (b + 1) / 2) ++levels;
    Words powers[kMaxLevels];
    // A single leaf needs no power: 10^4 < 2^14, so 14 bits per limb.
    Result rc = leaves > 1 ? PowerOfFive(leaf, &powers[0]) : Result::kOk;
    if (!Ok(rc)) return rc;
    int64_t slot0 = int64_t(n) * 14 / 32 + 1;
    if (leaves > 1) {
        // The words of 10^(4L) = 5^(4L)·2^(4L).
        const Words& p = powers[0];
        const uint32_t top = p.data()[p.size() - 1];
        int64_t bits = int64_t(p.size() - 1) * 32 + 4 * int64_t(leaf);
        for (uint32_t t = top; t != 0; t >>= 1) ++bits;
        slot0 = (bits + 31) / 32;
    }
    const int64_t total = leaves * slot0;
    if (total > INT32_MAX / 2) return Result::kNoMemory;
    if (!out->Allocate(int32_t(total))) return Result::kNoMemory;
    uint32_t* w = out->data();
    // The powers short enough for the schoolbook rows alone are squared here;
    // levels [0, rows) take only those rows.
    int rows = 0;
    while (rows + 1 < levels && powers[rows].size() < WordsRowsBelow()) {
        if ((rc = SquareInto(clk, powers[rows], &powers[rows + 1])) != 0) return rc;
        ++rows;
    }
    if (rows + 1 == levels && powers[rows].size() < WordsRowsBelow()) rows = levels;
    int64_t blocks = leaves;
    // The leaves and those levels, and beside them the longer powers: from
    // gFastThresholds.radixBinaryParallel limbs on a helper thread (the two
    // share nothing; the powers' transforms, and the tables they make on
    // their first use, are not touched by the rows).
    const auto lower = [&](PollClock& c) {
        for (int64_t j = 0; j < leaves; ++j) {
            const int32_t first = int32_t(j * leaf);
            const int32_t count = std::min(leaf, n - first);
            uint32_t* block = w + j * slot0;
            const int32_t len = LeafWords(l + first, count, block);
            std::fill(block + len, block + slot0, 0u);
            if (c.Tick(int64_t(count) * slot0 / 4)) return Result::kStopped;
        }
        Result r = Result::kOk;
        for (int i = 0; i < rows && Ok(r); ++i)
            r = JoinLevel(c, w, total, slot0 << i, (4 * int64_t(leaf)) << i, powers[i], nullptr,
                          &blocks);
        return r;
    };
    const int32_t parallelFrom = gFastThresholds.radixBinaryParallel;
    const bool parallel = parallelFrom > 0 && n >= parallelFrom && rows + 1 < levels;
    // Without the helper thread the level that takes a power makes the next
    // one from its kept transform.
    const auto upper = [&](PollClock& c) {
        Result r = Result::kOk;
        for (int i = std::max(rows, 1); parallel && i < levels && Ok(r); ++i)
            if (powers[i].size() == 0) r = SquareInto(c, powers[i - 1], &powers[i]);
        return r;
    };
    if ((rc = OnTwoThreads(clk, parallel, lower, upper)) != 0) return rc;
    for (int i = rows; i < levels && Ok(rc); ++i) {
        Words* next = i + 1 < levels && powers[i + 1].size() == 0 ? &powers[i + 1] : nullptr;
        rc = JoinLevel(clk, w, total, slot0 << i, (4 * int64_t(leaf)) << i, powers[i], next,
                       &blocks);
        powers[i].Release();
    }
    if (!Ok(rc)) return rc;
    out->Trim();
    return Result::kOk;
}

// The hexadecimal digits of w, d of them (the top word's without leading
// zeros and eight for each word below), into out[0..d): a byte's two digits
// from one table. Polled every 4096 words.
bool HexDigits(PollClock& clk, const Words& w, int64_t d, char* out) {
    static const struct Table {
        char pair[256][2];
        Table() : pair() {
            static const char kDigits[] = "0123456789ABCDEF";
            for (int b = 0; b < 256; ++b) {
                pair[b][0] = kDigits[b >> 4];
                pair[b][1] = kDigits[b & 15];
            }
        }
    } kTable;
    const int32_t n = w.size();
    char* at = out + d;
    for (int32_t from = 0; from + 1 < n; from += 4096) {
        const int32_t to = std::min(n - 1, from + 4096);
        for (int32_t i = from; i < to; ++i) {
            uint32_t v = w.data()[i];
            at -= 8;
            for (int k = 3; k >= 0; --k, v >>= 8) std::memcpy(at + 2 * k, kTable.pair[v & 255], 2);
        }
        if (clk.Tick(int64_t(to - from) * 8)) return false;
    }
    for (uint32_t v = w.data()[n - 1]; at > out; v >>= 4) *--at = "0123456789ABCDEF"[v & 15];
    return true;
}

// The digits of w in base 2^bits, most significant first, no leading zeros.
Result WordsToDigits(PollClock& clk, const Words& w, int bits, std::string* text) {
    static const char kDigits[] = "0123456789ABCDEF";
    const int32_t n = w.size();
    const uint32_t top = w.data()[n - 1];
    if (n == 1 && top == 0) {
        text->clear();
        return Result::kOk;
    }
    int topBits = 0;
    while (topBits < 32 && (top >> topBits) != 0) ++topBits;
    const int64_t digits = ((int64_t(n) - 1) * 32 + topBits + bits - 1) / bits;
    std::string out;
    try {
        out.resize(size_t(digits));
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    } catch (const std::length_error&) {
        return Result::kNoMemory;
    }
    if (bits == 4) {
        if (!HexDigits(clk, w, digits, &out[0])) return Result::kStopped;
        text->swap(out);
        return Result::kOk;
    }
    const uint32_t mask = (1u << bits) - 1;
    uint64_t acc = 0;  // bits not yet written, have of them
    int have = 0;
    int32_t next = 0;
    for (int64_t d = digits - 1; d >= 0; --d) {
        if (have < bits) {
            if (next < n) {
                acc |= uint64_t(w.data()[next++]) << have;
                if ((next & 1023) == 0 && clk.Tick(1024 * 32 / bits)) return Result::kStopped;
            }
            have += 32;
        }
        out[size_t(d)] = kDigits[acc & mask];
        acc >>= bits;
        have -= bits;
    }
    text->swap(out);
    return Result::kOk;
}

}  // namespace

Result BigToRadixBinary(CalcContext* ctx, const BigInt* value, int base, std::string* text) {
    int bits = 0;
    while ((2 << bits) <= base) ++bits;
    PollClock clk(ctx);
    Words w;
    Result rc = LimbsToWords(clk, value->limbs, value->top + 1, &w);
    if (Ok(rc)) rc = WordsToDigits(clk, w, bits, text);
    return rc;
}
