#include "io/logfont.h"

#include <cstring>

void SetFaceName(LogFont* f, const char* name) {
    std::memset(f->faceName, 0, sizeof f->faceName);
    if (name) std::strncpy(f->faceName, name, kLogFontFaceChars - 1);
}
