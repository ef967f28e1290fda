// What the four Soddy lists share: the table head, the row loop under the
// ceiling, the caption and an exact square test.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>

#include "lists/int_math.h"
#include "lists/list_frame.h"
#include "resources/strings.h"

inline uint64_t Gcd64(uint64_t a, uint64_t b) {
    while (b != 0) {
        const uint64_t t = a % b;
        a = b;
        b = t;
    }
    return a;
}

// True, with the root, when v is a perfect square. The Soddy searches test
// values below 2^44, where TruncSqrt is exact; most non-squares already fail
// the residue test mod 64 (12 of the 64 residues are squares).
inline bool ExactSquare(uint64_t v, uint64_t* root) {
    constexpr uint64_t kSquaresMod64 = [] {
        uint64_t mask = 0;
        for (uint64_t i = 0; i < 64; ++i) mask |= uint64_t{1} << (i * i % 64);
        return mask;
    }();
    if (((kSquaresMod64 >> (v & 63)) & 1) == 0) return false;
    const uint64_t r = v < (uint64_t{1} << 44) ? TruncSqrt(v) : ISqrt64(v);
    *root = r;
    return r * r == v;
}

// The header of (name, width) columns and its rule, ruleExtra longer for a
// mark column.
inline void OpenSoddyTable(ListOutput* out,
                           std::initializer_list<std::pair<const char*, int>> columns,
                           int ruleExtra) {
    out->text.clear();
    for (const auto& [name, width] : columns) out->text += PadLeft(width, name);
    const int length = static_cast<int>(out->text.size()) + ruleExtra;
    out->text += "\r\n";
    HyphenRule(&out->text, length, true);
    out->text += "\r\n";
}

// The rows of one run with its stop polls.
class SoddyRun {
public:
    SoddyRun(CalcContext* ctx, ListOutput* out) : ctx_(ctx), out_(out) {}

    // Appends a row (OfferListRow; once stopped, only a row that fits);
    // false when it was not written and the run is over.
    bool Row(const std::string& row) {
        if (stopped_ ? !AppendListLine(out_, row) : !OfferListRow(ctx_, out_, row)) {
            stopped_ = true;
            return false;
        }
        ++count_;
        return true;
    }
    // One poll between two steps of a search; false once the run is stopped.
    bool Poll() {
        if (!stopped_ && ListStopRequested(ctx_)) stopped_ = true;
        return !stopped_;
    }
    bool stopped() const { return stopped_; }
    uint32_t count() const { return count_; }

    // "<noun> [<label> < <upper>] : <count>"; upper is one past the bound,
    // or one past the value reached when the run was stopped.
    void Caption(int nounId, const char* label, uint64_t bound, uint64_t reached) const {
        const uint64_t upper = (stopped_ ? reached : bound) + 1;
        out_->caption.clear();
        Concat8(&out_->caption, OxString(nounId), " [", label, " < ",
                Dec(static_cast<int64_t>(upper)), "] : ", Dec(count_));
    }

private:
    CalcContext* ctx_;
    ListOutput* out_;
    bool stopped_ = false;
    uint32_t count_ = 0;
};
