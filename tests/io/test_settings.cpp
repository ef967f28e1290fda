#include <gtest/gtest.h>

#include <cstdlib>

#include "io/byte_io.h"
#include "io/settings.h"
#include "support/scratch_dir.h"

TEST(Settings, RecordIsNineteenBytesInOrder) {
    const FrameSettings s{1, -2, 640, 480, 1, 1, 0};
    const std::string bytes = EncodeSettings(s);
    EXPECT_EQ(bytes,
              std::string("\x01\0\0\0\xfe\xff\xff\xff\x80\x02\0\0\xe0\x01\0\0\x01\x01\x00", 19));
    FrameSettings back;
    ASSERT_TRUE(DecodeSettings(bytes.data(), bytes.size(), &back));
    EXPECT_EQ(EncodeSettings(back), bytes);
}

TEST(Settings, FileRoundTripMissingAndShortFiles) {
    ScratchDir dir;
    setenv("ORDIX_INI_DIR", dir.file("sub").c_str(), 1);  // created by the first write
    FrameSettings s;
    EXPECT_EQ(ReadSettings("/nonexistent", &s), Result::kCannotOpenFile);  // defaults stay
    EXPECT_EQ(EncodeSettings(s), EncodeSettings(FrameSettings()));
    s.left = 10;
    s.width = 300;
    ASSERT_EQ(WriteSettings("/nonexistent", s), 0);  // the override wins
    FrameSettings back;
    ASSERT_EQ(ReadSettings("/elsewhere", &back), 0);
    EXPECT_EQ(EncodeSettings(back), EncodeSettings(s));

    ASSERT_TRUE(WriteWholeFile(SettingsPath(dir.file("sub")), std::string(18, '\x7f')));
    FrameSettings kept;
    EXPECT_EQ(ReadSettings("", &kept), Result::kCannotOpenFile);
    EXPECT_EQ(kept.width, 0);

    setenv("ORDIX_INI_DIR", "", 1);  // an empty override counts as none
    EXPECT_EQ(SettingsFolder("/home/u/.config/Ordix"), "/home/u/.config/Ordix");
    EXPECT_EQ(SettingsPath("/a/"), "/a/ox.ini");
    EXPECT_EQ(SettingsPath("/a"), "/a/ox.ini");
    unsetenv("ORDIX_INI_DIR");
}

TEST(Settings, PlacementMustBeSaneAndOnScreen) {
    // clang-format off
    const struct { int left, top, width, height; bool fits; } cases[] = {
        {0, 0, 120, 72, true},     {-1, 0, 200, 200, false},  {0, -1, 200, 200, false},
        {0, 0, 119, 200, false},   {0, 0, 200, 71, false},    {824, 0, 200, 200, true},
        {825, 0, 200, 200, false}, {0, 568, 200, 200, true},  {0, 569, 200, 200, false},
        {2147483000, 0, 2000, 100, false},
    };
    // clang-format on
    for (const auto& c : cases) {
        const FrameSettings s{c.left, c.top, c.width, c.height};
        EXPECT_EQ(PlacementFits(s, 1024, 768), c.fits)
            << c.left << "," << c.top << " " << c.width << "x" << c.height;
    }
}
