// The settings reader: the input is the whole ox.ini. A record that reads
// must save to the same 19 bytes and read back to the same settings, and the
// placement test must not misjudge a window reaching past the screen.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/fuzz_support.h"
#include "io/byte_io.h"
#include "io/settings.h"

namespace {

// ox.ini lives in a scratch folder of its own (ORDIX_INI_DIR).
const std::string& ScratchFolder() {
    static const std::string folder = [] {
        char name[] = "/tmp/ordix-fuzz-settings-XXXXXX";
        if (!mkdtemp(name)) std::abort();
        setenv("ORDIX_INI_DIR", name, 1);
        return std::string(name);
    }();
    return folder;
}

bool Same(const FrameSettings& a, const FrameSettings& b) {
    return a.left == b.left && a.top == b.top && a.width == b.width && a.height == b.height &&
           a.maximized == b.maximized && a.option48 == b.option48 && a.option49 == b.option49;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    const std::string folder = ScratchFolder();
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    FUZZ_CHECK(WriteWholeFile(SettingsPath(folder), bytes));
    FrameSettings s;
    const Result code = ReadSettings("unused", &s);
    FUZZ_CHECK((code == Result::kOk) == (size >= kSettingsBytes));
    if (code != Result::kOk) return 0;
    FUZZ_CHECK(EncodeSettings(s) == bytes.substr(0, kSettingsBytes));
    FUZZ_CHECK(WriteSettings("unused", s) == Result::kOk);
    FrameSettings again;
    FUZZ_CHECK(ReadSettings("unused", &again) == Result::kOk && Same(s, again));
    for (int width : {0, 640, 1920, 2147483647}) {
        const int height = width / 2;
        const bool fits = PlacementFits(s, width, height);
        const bool expected = s.left >= 0 && s.top >= 0 && s.width >= 120 && s.height >= 72 &&
                              int64_t{s.left} + s.width <= width &&
                              int64_t{s.top} + s.height <= height;
        FUZZ_CHECK(fits == expected);
    }
    return 0;
}
