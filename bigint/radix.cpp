// Base conversion between bases 2 and 16 for numbers of any size.
//
// Allocation: records through alloc.h; the digits of BigToRadixSchool grow
// in a std::string under CatchNoMemory (code 3). ConvertBase works in the
// caller's text without growing it, and the kernels it calls answer for
// their own allocations.
#include <algorithm>
#include <cctype>

#include "bigint/dispatch.h"
#include "bigint/internal.h"
#include "bigint/poll_clock.h"

Result BigMulSmallInt(CalcContext* ctx, BigInt* result, const BigInt* x, int32_t n) {
    BigTemp factor;
    if (BigFromInt(&factor.v, n) != 0) {
        BigSetFailed(result);
        return Result::kNoMemory;
    }
    return BigMul(ctx, result, x, &factor.v);
}

// From the last digit on: value += digit × power, power ×= base, so each
// digit costs two products by a small number and one addition.
Result RadixToBigSchool(CalcContext* ctx, const unsigned char* digits, int32_t count, int base,
                        BigInt* value) {
    BigTemp sum, power, b;
    Result code = BigFromInt(&sum.v, 0);
    if (Ok(code)) code = BigFromInt(&power.v, 1);
    if (Ok(code)) code = BigFromInt(&b.v, base);
    for (int32_t i = count - 1; Ok(code) && i >= 0; --i) {
        BigTemp term, next, nextPower;
        code = BigMulSmallInt(ctx, &term.v, &power.v, digits[i]);
        if (Ok(code)) code = BigAdd(&next.v, &sum.v, &term.v);
        if (Ok(code)) code = BigMul(ctx, &nextPower.v, &power.v, &b.v);
        if (Ok(code)) {
            BigReplace(&sum.v, &next.v);
            BigReplace(&power.v, &nextPower.v);
        }
    }
    if (!Ok(code)) return code;
    BigMove(value, &sum.v);
    return Result::kOk;
}

// Repeated division by the base, one digit per division, most significant
// digit last found.
Result BigToRadixSchool(CalcContext* ctx, const BigInt* value, int base, std::string* text) {
    return CatchNoMemory([&] {
        static const char kDigits[] = "0123456789ABCDEF";
        BigTemp rest, b;
        Result code = BigCopy(&rest.v, value);
        if (Ok(code)) code = BigFromInt(&b.v, base);
        std::string out;
        while (Ok(code) && !BigIsZero(&rest.v)) {
            BigTemp q, r;
            code = BigDivMod(ctx, &rest.v, &b.v, &q.v, &r.v);
            int32_t d = 0;
            if (Ok(code)) {
                BigToInt(&r.v, &d);
                out.push_back(kDigits[d]);
                BigReplace(&rest.v, &q.v);
            }
        }
        if (!Ok(code)) return code;
        std::reverse(out.begin(), out.end());
        text->swap(out);
        return Result::kOk;
    });
}

// Rewrites text in fromBase as text in toBase (bases 2..16). The text is
// upper-cased and stripped of spaces; each character's value is its code
// minus that of "0", less 7 more above 16, so "A" is 10 and the characters
// ":" to "@" read as 10 to 16 where the base allows. An invalid character
// answers 1 and leaves the text partly decoded (accepted characters turned
// into value + 10). Zero converts to the empty text; a minus sign is invalid.
Result ConvertBase(CalcContext* ctx, int fromBase, int toBase, std::string* text) {
    std::string& s = *text;
    // Texts of millions of digits: the passes over them poll too (a
    // character's handling charged as one limb product).
    PollClock clk(ctx);
    constexpr size_t kChunk = 1 << 16;
    auto stopped = [&](size_t i) { return i % kChunk == kChunk - 1 && clk.Tick(kChunk); };
    s.erase(std::remove(s.begin(), s.end(), ' '), s.end());
    // One pass upper-cases and checks; ASCII letters are mapped inline, any
    // other byte through std::toupper as before (it is invalid either way).
    const unsigned char digitsBelow = static_cast<unsigned char>(std::min(fromBase, 10));
    for (size_t i = 0; i < s.size(); ++i) {
        // A chunk of plain digits, the usual text, in one pass that the
        // compiler vectorises; any other chunk character by character.
        if (i % kChunk == 0) {
            const size_t end = std::min(s.size(), i + kChunk);
            unsigned char* d = reinterpret_cast<unsigned char*>(&s[0]);
            unsigned char other = 0;
            for (size_t j = i; j < end; ++j)
                other |= static_cast<unsigned char>(static_cast<unsigned char>(d[j] - '0') >=
                                                    digitsBelow);
            if (other == 0) {
                for (size_t j = i; j < end; ++j) d[j] = static_cast<unsigned char>(d[j] - '0');
                i = end - 1;
                if (stopped(i)) return Result::kStopped;
                continue;
            }
        }
        const unsigned char c = static_cast<unsigned char>(s[i]);
        const int upper = c >= 'a' && c <= 'z' ? c - 32 : c < 128 ? c : std::toupper(c);
        int value = upper - '0';
        if (value > 16) value -= 7;
        if (value < 0 || value + 1 > fromBase) {
            // The text is left as the separate passes left it: upper-cased,
            // the accepted characters as value + 10.
            for (size_t j = 0; j < i; ++j) s[j] = static_cast<char>(s[j] + 10);
            for (size_t j = i; j < s.size(); ++j)
                s[j] = static_cast<char>(std::toupper(static_cast<unsigned char>(s[j])));
            return Result::kCannotUnderstand;
        }
        s[i] = static_cast<char>(value);
        if (stopped(i)) return Result::kStopped;
    }
    BigTemp value;
    Result code = RadixToBigDispatch(ctx, reinterpret_cast<const unsigned char*>(s.data()),
                                     static_cast<int32_t>(s.size()), fromBase, &value.v);
    if (!Ok(code)) return code;
    return BigToRadixDispatch(ctx, &value.v, toBase, text);
}

Result BigToRadix(CalcContext* ctx, const BigInt* value, int base, std::string* text) {
    // A view of the magnitude: the limbs are shared, never freed through it.
    BigInt magnitude = *value;
    magnitude.negative = 0;
    return BigToRadixDispatch(ctx, &magnitude, base, text);
}
