// The font record kept in number files: the 60-byte ANSI LOGFONT layout of
// Windows, field for field, so that files move between platforms unchanged.
#pragma once

#include <cstdint>

constexpr int kLogFontBytes = 60;
constexpr int kLogFontFaceChars = 32;  // with the terminating zero

struct LogFont {
    int32_t height = 0;  // negative: character height in pixels
    int32_t width = 0;
    int32_t escapement = 0;
    int32_t orientation = 0;
    int32_t weight = 400;  // 400 normal, 700 bold
    uint8_t italic = 0;
    uint8_t underline = 0;
    uint8_t strikeOut = 0;
    uint8_t charSet = 0;  // 0 ANSI, 2 symbol
    uint8_t outPrecision = 0;
    uint8_t clipPrecision = 0;
    uint8_t quality = 0;
    uint8_t pitchAndFamily = 0;
    char faceName[kLogFontFaceChars] = {};
};

// Pitch and family bits of pitchAndFamily.
constexpr uint8_t kFixedPitch = 1;
constexpr uint8_t kVariablePitch = 2;
constexpr uint8_t kFamilyRoman = 0x10;
constexpr uint8_t kFamilyModern = 0x30;
constexpr uint8_t kSymbolCharSet = 2;

// Copies name into faceName, cut to 31 characters, zero filled.
void SetFaceName(LogFont* f, const char* name);
