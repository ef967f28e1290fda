// Little-endian field writing and bounds-checked reading for the program's
// binary files. A reader never reads outside its buffer: the first read past
// the end fails, leaves the output zero and makes ok() false for good.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "resources/result.h"

class ByteWriter {
public:
    void i32(int32_t v) { u32(static_cast<uint32_t>(v)); }
    void u32(uint32_t v) {
        for (int i = 0; i < 4; ++i) out_.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
    }
    void i16(int16_t v) {
        const uint16_t u = static_cast<uint16_t>(v);
        out_.push_back(static_cast<char>(u & 0xFF));
        out_.push_back(static_cast<char>(u >> 8));
    }
    void u8(uint8_t v) { out_.push_back(static_cast<char>(v)); }
    void bytes(const void* p, std::size_t n) { out_.append(static_cast<const char*>(p), n); }
    const std::string& data() const { return out_; }

private:
    std::string out_;
};

class ByteReader {
public:
    ByteReader(const char* data, std::size_t size) : p_(data), size_(size) {}

    bool ok() const { return ok_; }
    std::size_t remaining() const { return ok_ ? size_ - pos_ : 0; }

    int32_t i32() { return static_cast<int32_t>(u32()); }
    uint32_t u32() {
        uint32_t v = 0;
        if (take(4))
            for (int i = 0; i < 4; ++i) v |= uint32_t(uint8_t(p_[pos_ - 4 + i])) << (8 * i);
        return v;
    }
    int16_t i16() {
        uint16_t v = 0;
        if (take(2)) v = uint16_t(uint8_t(p_[pos_ - 2]) | (uint8_t(p_[pos_ - 1]) << 8));
        return static_cast<int16_t>(v);
    }
    uint8_t u8() { return take(1) ? uint8_t(p_[pos_ - 1]) : 0; }
    // n bytes, or nullptr (and not ok) when fewer remain.
    const char* bytes(std::size_t n) { return take(n) ? p_ + pos_ - n : nullptr; }

private:
    bool take(std::size_t n) {
        if (!ok_ || n > size_ - pos_) {
            ok_ = false;
            return false;
        }
        pos_ += n;
        return true;
    }

    const char* p_;
    std::size_t size_;
    std::size_t pos_ = 0;
    bool ok_ = true;
};

// A whole file's bytes, at most maxBytes of them (each caller names the
// largest file it can use: an endless device or a runaway file must not take
// the memory). kOk; kCannotOpenFile (cannot be opened or read); kNoMoreRoom
// (longer than maxBytes: a regular file is refused before it is read);
// kNoMemory (does not fit in the memory left). *out is empty after a failure.
Result ReadWholeFile(const std::string& path, std::string* out, std::uint64_t maxBytes);
// Replaces the file with data, whole or not at all (io/safe_file.h); false
// when it cannot be written completely, the old file left as it was.
[[nodiscard]] bool WriteWholeFile(const std::string& path, const std::string& data);
