#include "io/num_file.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "io/byte_io.h"

namespace {

bool IsOne(const NumLimbs& v) { return v.limbs.size() == 1 && v.limbs[0] == 1 && !v.negative; }

void PutValue(ByteWriter* w, const NumLimbs& v) {
    if (v.limbs.empty()) {  // zero
        w->i32(0);
        w->u8(0);
        w->i16(0);
        return;
    }
    w->i32(static_cast<int32_t>(v.limbs.size()) - 1);
    w->u8(v.negative ? 1 : 0);
    for (Limb l : v.limbs) w->i16(l);
}

// False when the data cannot hold the value or the limbs are no base-10000
// digits; the stored top is trusted only as far as the bytes go.
bool GetValue(ByteReader* r, NumLimbs* v) {
    const int32_t top = r->i32();
    v->negative = r->u8() != 0;
    if (!r->ok() || top < 0 || static_cast<uint64_t>(top) + 1 > r->remaining() / 2) return false;
    v->limbs.resize(static_cast<std::size_t>(top) + 1);
    for (Limb& l : v->limbs) {
        l = r->i16();
        if (l < 0 || l >= kLimbBase) return false;
    }
    while (v->limbs.size() > 1 && v->limbs.back() == 0) v->limbs.pop_back();
    return r->ok();
}

void PutFont(ByteWriter* w, const LogFont& f) {
    w->i32(f.height);
    w->i32(f.width);
    w->i32(f.escapement);
    w->i32(f.orientation);
    w->i32(f.weight);
    const uint8_t bytes[] = {f.italic,       f.underline,     f.strikeOut, f.charSet,
                             f.outPrecision, f.clipPrecision, f.quality,   f.pitchAndFamily};
    w->bytes(bytes, sizeof bytes);
    w->bytes(f.faceName, kLogFontFaceChars);
}

void GetFont(ByteReader* r, LogFont* f) {
    f->height = r->i32();
    f->width = r->i32();
    f->escapement = r->i32();
    f->orientation = r->i32();
    f->weight = r->i32();
    uint8_t* const bytes[] = {&f->italic,  &f->underline,     &f->strikeOut,
                              &f->charSet, &f->outPrecision,  &f->clipPrecision,
                              &f->quality, &f->pitchAndFamily};
    for (uint8_t* b : bytes) *b = r->u8();
    const char* face = r->bytes(kLogFontFaceChars);
    if (face) std::memcpy(f->faceName, face, kLogFontFaceChars);
    f->faceName[kLogFontFaceChars - 1] = 0;  // a face name read back always ends
}

}  // namespace

Result LimbsOf(const BigInt* v, NumLimbs* out) {
    NumLimbs limbs;
    try {
        if (!v->limbs || v->top < 0) {
            limbs.limbs.assign(1, 0);
        } else {
            limbs.limbs.assign(v->limbs, v->limbs + v->top + 1);
            limbs.negative = v->negative != 0;
        }
    } catch (const std::bad_alloc&) {
        *out = NumLimbs();
        return Result::kNoMemory;
    }
    *out = std::move(limbs);
    return Result::kOk;
}

std::string EncodeNumFile(const NumFile& file) {
    const bool fraction = file.hasDenominator && !IsOne(file.denominator);
    ByteWriter w;
    const int32_t header = 100 + file.label;
    w.i32(fraction ? -header : header);
    PutValue(&w, file.numerator);
    if (fraction) PutValue(&w, file.denominator);
    const std::size_t n =
        std::min<std::size_t>(std::strlen(file.notebook.c_str()), kNumFileNotebookChars);
    w.i16(static_cast<int16_t>(n + 1));
    w.bytes(file.notebook.data(), n);
    w.u8(0);
    PutFont(&w, file.font);
    w.u32(file.fontExtra);
    return w.data();
}

Result DecodeNumFile(const char* data, std::size_t size, NumFile* out) {
    *out = NumFile();
    ByteReader r(data, size);
    const int32_t header = r.i32();
    if (!r.ok()) return Result::kCannotOpenFile;
    const int64_t magnitude = std::llabs(static_cast<int64_t>(header));
    out->label = static_cast<int>(magnitude % 100);
    out->version = static_cast<int>(magnitude / 100);
    if (!GetValue(&r, &out->numerator)) return Result::kCannotOpenFile;
    out->hasDenominator = header < 0;
    if (out->hasDenominator) {
        if (!GetValue(&r, &out->denominator)) return Result::kCannotOpenFile;
        if (out->denominator.limbs.size() == 1 && out->denominator.limbs[0] == 0)
            return Result::kCannotOpenFile;
    } else {
        out->denominator.limbs.assign(1, 1);
    }
    const int16_t length = r.i16();
    if (!r.ok()) return Result::kCannotOpenFile;
    if (length > 0) {
        const char* text = r.bytes(static_cast<std::size_t>(length));
        if (!text) return Result::kCannotOpenFile;
        const void* zero = std::memchr(text, 0, static_cast<std::size_t>(length));
        const std::ptrdiff_t n = zero ? static_cast<const char*>(zero) - text : length;
        // A full field without its zero byte holds one character more than a
        // file can carry, and saving would cut it.
        out->notebook.assign(
            text, static_cast<std::size_t>(std::min<std::ptrdiff_t>(n, kNumFileNotebookChars)));
    }
    if (out->version >= 1) {
        GetFont(&r, &out->font);
        out->fontExtra = r.u32();
        if (!r.ok()) return Result::kCannotOpenFile;
        out->hasFont = true;
    }
    return Result::kOk;
}

Result ReadNumFile(const std::string& path, NumFile* out, std::uint64_t maxBytes) {
    std::string bytes;
    const Result read = ReadWholeFile(path, &bytes, maxBytes);
    if (read == Result::kNoMemory) return read;
    if (!Ok(read)) return Result::kCannotOpenFile;
    // The limbs take as much memory again as their bytes in the file.
    try {
        return DecodeNumFile(bytes.data(), bytes.size(), out);
    } catch (const std::bad_alloc&) {
        *out = NumFile();
        return Result::kNoMemory;
    }
}

Result WriteNumFile(const std::string& path, const NumFile& file) {
    std::string bytes;
    try {
        bytes = EncodeNumFile(file);
    } catch (const std::bad_alloc&) {
        return Result::kNoMemory;
    }
    return WriteWholeFile(path, bytes) ? Result::kOk : Result::kCannotSaveFile;
}

int LabelForOpenedFile(int fileLabel, const bool inUse[26]) {
    if (fileLabel >= 1 && fileLabel <= 26 && !inUse[fileLabel - 1]) return fileLabel;
    for (int i = 0; i < 26; ++i)
        if (!inUse[i]) return i + 1;
    return 0;
}
