#include "windows/font_table.h"

namespace {

struct Row {
    const char* face;
    int points;
    uint8_t charSet;
    uint8_t pitch;
};

const Row kRows[kFontTableSize] = {
    {"Courier New", 12, 0, kFixedPitch}, {"Symbol", 10, kSymbolCharSet, kFixedPitch},
    {"Courier New", 10, 0, kFixedPitch}, {"Courier New", 8, 0, kFixedPitch},
    {"Times", 12, 0, kVariablePitch},    {"Times", 10, 0, kVariablePitch},
    {"Courier New", 10, 0, kFixedPitch}, {"Courier New", 10, 0, kFixedPitch},
    {"Courier New", 10, 0, kFixedPitch}, {"Courier New", 10, 0, kFixedPitch},
};

constexpr uint8_t kOutlinePrecision = 8;
constexpr uint8_t kStrokeClipPrecision = 2;
constexpr uint8_t kDraftQuality = 1;

const Row& RowAt(int index) { return kRows[index >= 0 && index < kFontTableSize ? index : 0]; }

}  // namespace

LogFont FontTableEntry(int index, int dpiY) {
    const Row& r = RowAt(index);
    LogFont f;
    f.height = -((r.points * dpiY + 36) / 72);
    f.weight = 400;
    f.charSet = r.charSet;
    f.outPrecision = kOutlinePrecision;
    f.clipPrecision = kStrokeClipPrecision;
    f.quality = kDraftQuality;
    f.pitchAndFamily = r.pitch | kFamilyModern;
    SetFaceName(&f, r.face);
    return f;
}
