// Number files (*.num): one value of a label with its notebook and font.
//
// Layout, little-endian, no padding:
//   int32  header     100 * version + label (1..26); negated when a
//                     denominator follows
//   int32  top        numerator: index of the most significant limb
//   uint8  negative   1 when negative
//   int16  limbs      top + 1 base-10000 limbs, least significant first
//   (top, negative, limbs of the denominator when the header is negative)
//   int16  length     notebook characters + 1
//   bytes             the notebook text and a zero byte (length bytes)
//   60 bytes          LOGFONT of the window font   } version 1 and later;
//   uint32            a value kept with the font    } absent in version 0
// The writer always writes version 1; files of version 0 (header = label)
// still open. The value parts are plain limb arrays so that this file format
// depends on nothing but the record layout of bigint/record.h.
//
// Files are written and read as a stream, a block of limbs at a time, so a
// value of hundreds of millions of digits never has a second copy in memory
// beside its limbs (the encoded bytes are not gathered first), and the long
// parts poll the calculation context between blocks.
#pragma once

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "bigint/context.h"
#include "bigint/record.h"
#include "io/logfont.h"
#include "resources/result.h"

// Limbs read or written between two polls (64 KiB of the file).
constexpr std::size_t kNumFileBlockLimbs = 32768;

// Notebook characters a file can carry: the stored length + 1 is 16-bit.
constexpr int kNumFileNotebookChars = 32766;

// The largest number file a value can need: the header, a numerator and a
// denominator of INT32_MAX limbs each (top, sign, two bytes a limb), the
// longest notebook with its length and zero byte, the font and its word.
// A longer file is no number file.
constexpr std::uint64_t kMaxNumFileBytes =
    4 + 2 * (4 + 1 + 2 * std::uint64_t{INT32_MAX}) + 2 + (kNumFileNotebookChars + 1) + 64;

struct NumLimbs {
    std::vector<Limb> limbs;  // least significant first, top limb non-zero unless 0
    bool negative = false;
};

struct NumFile {
    int label = 1;  // as stored: 1..26 in sound files, anything in others
    int version = 1;
    NumLimbs numerator;
    bool hasDenominator = false;
    NumLimbs denominator;  // 1 when the file has none
    std::string notebook;
    bool hasFont = false;  // always true when written, false in version 0
    LogFont font;
    uint32_t fontExtra = 0;
};

// A number file's contents with its values viewed in place: what a number
// window saves, the limbs written straight from its records.
struct NumFileView {
    int label = 1;
    const BigInt* numerator = nullptr;    // null or released: written as zero
    const BigInt* denominator = nullptr;  // null, or 1 and not negative: none written
    std::string notebook;
    LogFont font;
    uint32_t fontExtra = 0;
};

// The limbs of a value record (a released record reads as zero): kOk, or
// kNoMemory with *out empty.
Result LimbsOf(const BigInt* v, NumLimbs* out);

// The bytes of a number file. A denominator is written only when
// hasDenominator is set and it is not 1; a longer notebook is cut.
std::string EncodeNumFile(const NumFile& file);

// Decodes a number file's bytes: kOk, or kCannotOpenFile when they are
// truncated or cannot describe a number (a top index past the data, a limb
// outside 0..9999, a zero denominator). The notebook is taken up to its first
// zero byte.
Result DecodeNumFile(const char* data, std::size_t size, NumFile* out);

// Whole files: kOk, kCannotOpenFile (cannot open or decode, or longer than
// maxBytes, kMaxNumFileBytes unless told), kCannotSaveFile
// (the old file left as it was), kNoMemory (the value does not fit in the
// memory left), kStopped (ctx asked to stop between two blocks of limbs; a
// save leaves the old file as it was, a read leaves *out empty). A value of
// one block is read or written without a poll.
Result ReadNumFile(const std::string& path, NumFile* out, std::uint64_t maxBytes = kMaxNumFileBytes,
                   CalcContext* ctx = nullptr);
Result WriteNumFile(const std::string& path, const NumFile& file);
// The same bytes as EncodeNumFile of the values' limbs, without copying them.
Result WriteNumFile(const std::string& path, const NumFileView& file, CalcContext* ctx);

// The label an opened file goes to: its own when that is 1..26 and free,
// otherwise the first free label; 0 when all 26 are in use.
[[nodiscard]] int LabelForOpenedFile(int fileLabel, const bool inUse[26]);
