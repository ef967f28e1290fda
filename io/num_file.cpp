#include "io/num_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

#include "bigint/bigint.h"
#include "io/byte_io.h"
#include "io/safe_file.h"

namespace {

constexpr std::size_t kBlockBytes = 2 * kNumFileBlockLimbs;

// A value as the file holds it: limbs least significant first; no limbs is zero.
struct ValueSpan {
    const Limb* limbs = nullptr;
    std::size_t count = 0;
    bool negative = false;
};

ValueSpan SpanOf(const NumLimbs& v) { return {v.limbs.data(), v.limbs.size(), v.negative}; }

ValueSpan SpanOf(const BigInt* v) {
    if (!v || !v->limbs || v->top < 0) return {};
    return {v->limbs, static_cast<std::size_t>(v->top) + 1, v->negative != 0};
}

bool IsOne(const NumLimbs& v) { return v.limbs.size() == 1 && v.limbs[0] == 1 && !v.negative; }

// Where encoded bytes go: a string or a file. Write errors of a file are
// kept by its stream and answered when the file is committed.
class Sink {
public:
    virtual ~Sink() = default;
    void u32(uint32_t v) {
        const char b[4] = {char(v & 0xFF), char((v >> 8) & 0xFF), char((v >> 16) & 0xFF),
                           char(v >> 24)};
        put(b, 4);
    }
    void i32(int32_t v) { u32(static_cast<uint32_t>(v)); }
    void i16(int16_t v) {
        const uint16_t u = static_cast<uint16_t>(v);
        const char b[2] = {char(u & 0xFF), char(u >> 8)};
        put(b, 2);
    }
    void u8(uint8_t v) { put(reinterpret_cast<const char*>(&v), 1); }
    virtual void put(const char* p, std::size_t n) = 0;
};

class StringSink : public Sink {
public:
    explicit StringSink(std::string* out) : out_(out) {}
    void put(const char* p, std::size_t n) override { out_->append(p, n); }

private:
    std::string* out_;
};

class FileSink : public Sink {
public:
    explicit FileSink(std::FILE* f) : f_(f) {}
    void put(const char* p, std::size_t n) override { (void)std::fwrite(p, 1, n, f_); }

private:
    std::FILE* f_;
};

// False when ctx asked to stop; it is asked before every block but the first.
bool PutValue(Sink* w, const ValueSpan& v, CalcContext* ctx) {
    if (v.count == 0) {  // zero
        w->i32(0);
        w->u8(0);
        w->i16(0);
        return true;
    }
    w->i32(static_cast<int32_t>(v.count - 1));
    w->u8(v.negative ? 1 : 0);
    char block[kBlockBytes];
    for (std::size_t at = 0; at < v.count; at += kNumFileBlockLimbs) {
        if (at > 0 && ctx && ctx->ShouldStop()) return false;
        const std::size_t n = std::min(kNumFileBlockLimbs, v.count - at);
        for (std::size_t i = 0; i < n; ++i) {
            const uint16_t u = static_cast<uint16_t>(v.limbs[at + i]);
            block[2 * i] = static_cast<char>(u & 0xFF);
            block[2 * i + 1] = static_cast<char>(u >> 8);
        }
        w->put(block, 2 * n);
    }
    return true;
}

void PutFont(Sink* w, const LogFont& f) {
    w->i32(f.height);
    w->i32(f.width);
    w->i32(f.escapement);
    w->i32(f.orientation);
    w->i32(f.weight);
    const uint8_t bytes[] = {f.italic,       f.underline,     f.strikeOut, f.charSet,
                             f.outPrecision, f.clipPrecision, f.quality,   f.pitchAndFamily};
    w->put(reinterpret_cast<const char*>(bytes), sizeof bytes);
    w->put(f.faceName, kLogFontFaceChars);
}

std::size_t NotebookBytes(const std::string& notebook) {
    return std::min<std::size_t>(std::strlen(notebook.c_str()), kNumFileNotebookChars);
}

std::size_t ValueBytes(const ValueSpan& v) { return 4 + 1 + 2 * std::max<std::size_t>(v.count, 1); }

// The whole file; `den` null when no denominator is written. False when ctx
// asked to stop.
bool Emit(Sink* w, int label, const ValueSpan& num, const ValueSpan* den,
          const std::string& notebook, const LogFont& font, uint32_t fontExtra, CalcContext* ctx) {
    const int32_t header = 100 + label;
    w->i32(den ? -header : header);
    if (!PutValue(w, num, ctx)) return false;
    if (den && !PutValue(w, *den, ctx)) return false;
    const std::size_t n = NotebookBytes(notebook);
    w->i16(static_cast<int16_t>(n + 1));
    w->put(notebook.data(), n);
    w->u8(0);
    PutFont(w, font);
    w->u32(fontExtra);
    return true;
}

// Where a file's bytes come from: memory or a file of known length. As with
// ByteReader, the first read past the end (or a failed read) fails for good
// and leaves its output zero.
class Source {
public:
    virtual ~Source() = default;
    bool ok() const { return ok_; }
    std::uint64_t remaining() const { return ok_ ? remaining_ : 0; }
    bool get(char* dst, std::size_t n) {
        if (!ok_ || n > remaining_ || !fetch(dst, n)) {
            ok_ = false;
            std::memset(dst, 0, n);
            return false;
        }
        remaining_ -= n;
        return true;
    }
    uint32_t u32() {
        unsigned char b[4];
        (void)get(reinterpret_cast<char*>(b), 4);
        return uint32_t(b[0]) | uint32_t(b[1]) << 8 | uint32_t(b[2]) << 16 | uint32_t(b[3]) << 24;
    }
    int32_t i32() { return static_cast<int32_t>(u32()); }
    int16_t i16() {
        unsigned char b[2];
        (void)get(reinterpret_cast<char*>(b), 2);
        return static_cast<int16_t>(uint16_t(b[0] | b[1] << 8));
    }
    uint8_t u8() {
        char b = 0;
        (void)get(&b, 1);
        return static_cast<uint8_t>(b);
    }

protected:
    explicit Source(std::uint64_t size) : remaining_(size) {}
    virtual bool fetch(char* dst, std::size_t n) = 0;

private:
    std::uint64_t remaining_;
    bool ok_ = true;
};

class MemorySource : public Source {
public:
    MemorySource(const char* data, std::size_t size) : Source(size), p_(data) {}

protected:
    bool fetch(char* dst, std::size_t n) override {
        std::memcpy(dst, p_, n);
        p_ += n;
        return true;
    }

private:
    const char* p_;
};

class FileSource : public Source {
public:
    FileSource(std::FILE* f, std::uint64_t size) : Source(size), f_(f) {}

protected:
    bool fetch(char* dst, std::size_t n) override { return std::fread(dst, 1, n, f_) == n; }

private:
    std::FILE* f_;
};

// kOk; kCannotOpenFile when the data cannot hold the value or the limbs are
// no base-10000 digits (the stored top is trusted only as far as the bytes
// go); kStopped when ctx asked to stop between blocks.
Result GetValue(Source* r, NumLimbs* v, CalcContext* ctx) {
    const int32_t top = r->i32();
    v->negative = r->u8() != 0;
    if (!r->ok() || top < 0 || static_cast<uint64_t>(top) + 1 > r->remaining() / 2)
        return Result::kCannotOpenFile;
    const std::size_t count = static_cast<std::size_t>(top) + 1;
    // Grown a block at a time within the reserved room, so that the pages
    // are touched between polls, not all before the first one.
    v->limbs.reserve(count);
    char block[kBlockBytes];
    for (std::size_t at = 0; at < count; at += kNumFileBlockLimbs) {
        if (at > 0 && ctx && ctx->ShouldStop()) return Result::kStopped;
        const std::size_t n = std::min(kNumFileBlockLimbs, count - at);
        if (!r->get(block, 2 * n)) return Result::kCannotOpenFile;
        v->limbs.resize(at + n);
        Limb* out = v->limbs.data() + at;
        for (std::size_t i = 0; i < n; ++i) {
            const Limb l = static_cast<Limb>(static_cast<uint16_t>(
                static_cast<uint8_t>(block[2 * i]) | static_cast<uint8_t>(block[2 * i + 1]) << 8));
            if (l < 0 || l >= kLimbBase) return Result::kCannotOpenFile;
            out[i] = l;
        }
    }
    while (v->limbs.size() > 1 && v->limbs.back() == 0) v->limbs.pop_back();
    return Result::kOk;
}

void GetFont(Source* r, LogFont* f) {
    f->height = r->i32();
    f->width = r->i32();
    f->escapement = r->i32();
    f->orientation = r->i32();
    f->weight = r->i32();
    uint8_t* const bytes[] = {&f->italic,  &f->underline,     &f->strikeOut,
                              &f->charSet, &f->outPrecision,  &f->clipPrecision,
                              &f->quality, &f->pitchAndFamily};
    for (uint8_t* b : bytes) *b = r->u8();
    char face[kLogFontFaceChars];
    if (r->get(face, kLogFontFaceChars)) std::memcpy(f->faceName, face, kLogFontFaceChars);
    f->faceName[kLogFontFaceChars - 1] = 0;  // a face name read back always ends
}

// May throw std::bad_alloc (the limbs).
Result Decode(Source* r, NumFile* out, CalcContext* ctx) {
    *out = NumFile();
    const int32_t header = r->i32();
    if (!r->ok()) return Result::kCannotOpenFile;
    const int64_t magnitude = std::llabs(static_cast<int64_t>(header));
    out->label = static_cast<int>(magnitude % 100);
    out->version = static_cast<int>(magnitude / 100);
    Result code = GetValue(r, &out->numerator, ctx);
    if (!Ok(code)) return code;
    out->hasDenominator = header < 0;
    if (out->hasDenominator) {
        code = GetValue(r, &out->denominator, ctx);
        if (!Ok(code)) return code;
        if (out->denominator.limbs.size() == 1 && out->denominator.limbs[0] == 0)
            return Result::kCannotOpenFile;
    } else {
        out->denominator.limbs.assign(1, 1);
    }
    const int16_t length = r->i16();
    if (!r->ok()) return Result::kCannotOpenFile;
    if (length > 0) {
        std::string text(static_cast<std::size_t>(length), '\0');
        if (!r->get(text.data(), text.size())) return Result::kCannotOpenFile;
        // A full field without its zero byte holds one character more than a
        // file can carry, and saving would cut it.
        const std::size_t n =
            std::min<std::size_t>(std::strlen(text.c_str()), kNumFileNotebookChars);
        text.resize(n);
        out->notebook.swap(text);
    }
    if (out->version >= 1) {
        GetFont(r, &out->font);
        out->fontExtra = r->u32();
        if (!r->ok()) return Result::kCannotOpenFile;
        out->hasFont = true;
    }
    return Result::kOk;
}

Result Save(const std::string& path, int label, const ValueSpan& num, const ValueSpan* den,
            const std::string& notebook, const LogFont& font, uint32_t fontExtra,
            CalcContext* ctx) {
    SafeFile file;
    if (!file.Open(path)) return Result::kCannotSaveFile;
    FileSink sink(file.file());
    // An uncommitted file is abandoned, the old one left as it was.
    if (!Emit(&sink, label, num, den, notebook, font, fontExtra, ctx)) return Result::kStopped;
    return file.Commit() ? Result::kOk : Result::kCannotSaveFile;
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
    const ValueSpan num = SpanOf(file.numerator);
    const ValueSpan den = SpanOf(file.denominator);
    std::string bytes;
    bytes.reserve(4 + ValueBytes(num) + (fraction ? ValueBytes(den) : 0) + 2 +
                  NotebookBytes(file.notebook) + 1 + 64);
    StringSink sink(&bytes);
    (void)Emit(&sink, file.label, num, fraction ? &den : nullptr, file.notebook, file.font,
               file.fontExtra, nullptr);  // no context: never stops
    return bytes;
}

Result DecodeNumFile(const char* data, std::size_t size, NumFile* out) {
    MemorySource r(data, size);
    return Decode(&r, out, nullptr);
}

Result ReadNumFile(const std::string& path, NumFile* out, std::uint64_t maxBytes,
                   CalcContext* ctx) {
    *out = NumFile();
    std::FILE* f = std::fopen(path.c_str(), "rb");
    if (!f) return Result::kCannotOpenFile;
    struct stat info = {};
    const bool regular = fstat(fileno(f), &info) == 0 && S_ISREG(info.st_mode);
    Result code = Result::kOk;
    if (regular) {
        // The file is read as it is now: a regular file's length is known, so
        // a stored top can be checked against it before its limbs are made.
        if (static_cast<std::uint64_t>(info.st_size) > maxBytes) {
            std::fclose(f);
            return Result::kCannotOpenFile;
        }
        FileSource r(f, static_cast<std::uint64_t>(info.st_size));
        try {
            code = Decode(&r, out, ctx);
        } catch (const std::bad_alloc&) {
            code = Result::kNoMemory;  // the limbs take as much memory as their bytes
        }
        std::fclose(f);
    } else {
        // A device or a pipe has no length to check against: it is read
        // whole, up to maxBytes.
        std::fclose(f);
        std::string bytes;
        const Result read = ReadWholeFile(path, &bytes, maxBytes);
        if (read == Result::kNoMemory) return read;
        if (!Ok(read)) return Result::kCannotOpenFile;
        MemorySource r(bytes.data(), bytes.size());
        try {
            code = Decode(&r, out, ctx);
        } catch (const std::bad_alloc&) {
            code = Result::kNoMemory;
        }
    }
    if (!Ok(code)) *out = NumFile();
    return code;
}

Result WriteNumFile(const std::string& path, const NumFile& file) {
    const bool fraction = file.hasDenominator && !IsOne(file.denominator);
    const ValueSpan den = SpanOf(file.denominator);
    return Save(path, file.label, SpanOf(file.numerator), fraction ? &den : nullptr, file.notebook,
                file.font, file.fontExtra, nullptr);
}

Result WriteNumFile(const std::string& path, const NumFileView& file, CalcContext* ctx) {
    const BigInt* d = file.denominator;
    const bool fraction = d && !(BigIsOne(d) && !d->negative);
    const ValueSpan den = SpanOf(d);
    return Save(path, file.label, SpanOf(file.numerator), fraction ? &den : nullptr, file.notebook,
                file.font, file.fontExtra, ctx);
}

int LabelForOpenedFile(int fileLabel, const bool inUse[26]) {
    if (fileLabel >= 1 && fileLabel <= 26 && !inUse[fileLabel - 1]) return fileLabel;
    for (int i = 0; i < 26; ++i)
        if (!inUse[i]) return i + 1;
    return 0;
}
