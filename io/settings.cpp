#include "io/settings.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "io/byte_io.h"

std::string EncodeSettings(const FrameSettings& s) {
    ByteWriter w;
    w.i32(s.left);
    w.i32(s.top);
    w.i32(s.width);
    w.i32(s.height);
    w.u8(s.maximized);
    w.u8(s.option48);
    w.u8(s.option49);
    return w.data();
}

bool DecodeSettings(const char* data, std::size_t size, FrameSettings* s) {
    if (size < kSettingsBytes) return false;
    ByteReader r(data, size);
    s->left = r.i32();
    s->top = r.i32();
    s->width = r.i32();
    s->height = r.i32();
    s->maximized = r.u8();
    s->option48 = r.u8();
    s->option49 = r.u8();
    return true;
}

std::string SettingsFolder(const std::string& folder) {
    const char* env = std::getenv("ORDIX_INI_DIR");
    return env && *env ? std::string(env) : folder;
}

std::string SettingsPath(const std::string& folder) {
    if (!folder.empty() && folder.back() == '/') return folder + "ox.ini";
    return folder + "/ox.ini";
}

Result ReadSettings(const std::string& folder, FrameSettings* s) {
    std::string bytes;
    // ox.ini holds kSettingsBytes; anything far longer is not ours.
    if (!Ok(ReadWholeFile(SettingsPath(SettingsFolder(folder)), &bytes, 1 << 16)))
        return Result::kCannotOpenFile;
    return DecodeSettings(bytes.data(), bytes.size(), s) ? Result::kOk : Result::kCannotOpenFile;
}

Result WriteSettings(const std::string& folder, const FrameSettings& s) {
    const std::string dir = SettingsFolder(folder);
    // A folder that cannot be made shows up as the write failing below.
    std::error_code ec;
    if (!dir.empty()) (void)std::filesystem::create_directories(dir, ec);
    return WriteWholeFile(SettingsPath(dir), EncodeSettings(s)) ? Result::kOk
                                                                : Result::kCannotSaveFile;
}

bool PlacementFits(const FrameSettings& s, int screenWidth, int screenHeight) {
    if (s.left < 0 || s.top < 0 || s.height < 72 || s.width < 120) return false;
    return int64_t(s.left) + s.width <= screenWidth && int64_t(s.top) + s.height <= screenHeight;
}
