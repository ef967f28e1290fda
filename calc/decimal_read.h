// Reading a decimal integer from free text (pasted numbers, files, batch
// list items).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "bigint/bigint.h"
#include "bigint/context.h"
#include "resources/result.h"

// The longest text read as a number: a value holds at most INT32_MAX limbs
// of four digits, and a text much longer than its digits is no number.
constexpr int64_t kMaxDecimalTextChars = 4 * int64_t{INT32_MAX};

// Reads text given in pieces, as BigFromText reads it whole: minus signs at
// the very start flip the sign, every other non-digit is dropped. Only the
// digits are held. Every 8 MiB of text it polls ctx (may be null).
class DecimalReader {
public:
    explicit DecimalReader(CalcContext* ctx = nullptr, int64_t maxChars = kMaxDecimalTextChars)
        : ctx_(ctx), maxChars_(maxChars) {}

    // kOk; kNoMemory when the text passes maxChars or its digits cannot be
    // held; kStopped. After a failure the reader holds nothing.
    Result Add(const char* text, size_t size);
    // The value, written as new: kOk, kCouldNotFind when no digit came (an
    // empty text too), kNoMemory.
    Result Finish(BigInt* v);

private:
    CalcContext* ctx_;
    int64_t maxChars_;
    int64_t seen_ = 0;
    int64_t sincePoll_ = 0;
    bool atStart_ = true;
    bool anyDigit_ = false;
    std::string kept_;
};

// A whole text: kOk, kCouldNotFind, kNoMemory, kStopped (as above).
Result ReadDecimal(const std::string& text, BigInt* v, CalcContext* ctx = nullptr);

// A file read in pieces: kOk; kCannotOpenFile (missing, a folder,
// unreadable); kCouldNotFind (no digit, an empty file too); kNoMemory (longer
// than maxChars, or too many digits for the memory left); kStopped. v is
// left as ReadDecimal leaves it, or untouched when the file was not read to
// its end.
Result ReadDecimalFile(const std::string& path, BigInt* v, CalcContext* ctx = nullptr,
                       int64_t maxChars = kMaxDecimalTextChars);
