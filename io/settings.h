// The frame's settings file ox.ini: one 19-byte record, little-endian:
//   int32 left, top, width, height   the frame's normal placement
//   uint8 maximized
//   uint8 option48, option49          two mutually exclusive display options
// It lives in the user's configuration folder, which the desktop program
// passes in; the environment variable ORDIX_INI_DIR overrides that folder
// (tests point it at a scratch folder).
#pragma once

#include <cstdint>
#include <string>

#include "resources/result.h"

constexpr int kSettingsBytes = 19;

struct FrameSettings {
    int32_t left = 0, top = 0, width = 0, height = 0;
    uint8_t maximized = 0;
    uint8_t option48 = 0;  // defaults: off ...
    uint8_t option49 = 1;  // ... and on
};

std::string EncodeSettings(const FrameSettings& s);
// False, leaving *s alone, when fewer than 19 bytes are given.
[[nodiscard]] bool DecodeSettings(const char* data, std::size_t size, FrameSettings* s);

// The folder of ox.ini: ORDIX_INI_DIR when set and not empty, else folder.
std::string SettingsFolder(const std::string& folder);
// folder + "/ox.ini" (no separator doubled).
std::string SettingsPath(const std::string& folder);

// folder is the desktop's configuration folder; both honour ORDIX_INI_DIR.
// kOk, or kCannotOpenFile when the file is missing, unreadable or short (*s
// keeps its defaults then).
Result ReadSettings(const std::string& folder, FrameSettings* s);
// kOk, or kCannotSaveFile; creates the folder when needed.
Result WriteSettings(const std::string& folder, const FrameSettings& s);

// Whether a stored placement can be used on a screen of the given size:
// left and top not negative, at least 120 wide and 72 high, and the window
// reaching past neither the screen's width nor its height.
[[nodiscard]] bool PlacementFits(const FrameSettings& s, int screenWidth, int screenHeight);
