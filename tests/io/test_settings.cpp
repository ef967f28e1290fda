#include <gtest/gtest.h>

#include <cstdlib>

#include "io/byte_io.h"
#include "io/settings.h"
#include "io_test_util.h"

namespace {

// Sets ORDIX_INI_DIR for one test and restores the previous value.
class IniDirOverride {
public:
    explicit IniDirOverride(const std::string& dir) {
        const char* old = std::getenv("ORDIX_INI_DIR");
        had_ = old != nullptr;
        if (had_) old_ = old;
        setenv("ORDIX_INI_DIR", dir.c_str(), 1);
    }
    ~IniDirOverride() {
        if (had_) setenv("ORDIX_INI_DIR", old_.c_str(), 1);
        else unsetenv("ORDIX_INI_DIR");
    }

private:
    bool had_;
    std::string old_;
};

}  // namespace

TEST(Settings, RecordIsNineteenBytesInOrder) {
    FrameSettings s;
    s.left = 1;
    s.top = -2;
    s.width = 640;
    s.height = 480;
    s.maximized = 1;
    s.option48 = 1;
    s.option49 = 0;
    const std::string bytes = EncodeSettings(s);
    ASSERT_EQ(bytes.size(), size_t(kSettingsBytes));
    EXPECT_EQ(bytes, std::string("\x01\0\0\0\xfe\xff\xff\xff\x80\x02\0\0\xe0\x01\0\0\x01\x01\x00",
                                 19));
    FrameSettings back;
    ASSERT_TRUE(DecodeSettings(bytes.data(), bytes.size(), &back));
    EXPECT_EQ(EncodeSettings(back), bytes);
}

TEST(Settings, FileRoundTripMissingAndShortFiles) {
    ScratchDir dir("settings");
    IniDirOverride env(dir.path() + "/sub");   // created by the first write
    FrameSettings s;
    EXPECT_EQ(ReadSettings("/nonexistent", &s), 11);   // missing: defaults stay
    EXPECT_EQ(s.option48, 0);
    EXPECT_EQ(s.option49, 1);
    s.left = 10;
    s.width = 300;
    ASSERT_EQ(WriteSettings("/nonexistent", s), 0);   // the override wins
    FrameSettings back;
    ASSERT_EQ(ReadSettings("/elsewhere", &back), 0);
    EXPECT_EQ(back.left, 10);
    EXPECT_EQ(back.width, 300);

    ASSERT_TRUE(WriteWholeFile(SettingsPath(dir.path() + "/sub"), std::string(18, '\x7f')));
    FrameSettings kept;
    EXPECT_EQ(ReadSettings("", &kept), 11);
    EXPECT_EQ(kept.width, 0);
}

TEST(Settings, FolderOverrideAndPath) {
    {
        IniDirOverride env("");
        EXPECT_EQ(SettingsFolder("/home/u/.config/Ordix"), "/home/u/.config/Ordix");
    }
    IniDirOverride env("/tmp/t");
    EXPECT_EQ(SettingsFolder("/home/u/.config/Ordix"), "/tmp/t");
    EXPECT_EQ(SettingsPath("/a/"), "/a/ox.ini");
    EXPECT_EQ(SettingsPath("/a"), "/a/ox.ini");
}

TEST(Settings, PlacementMustBeSaneAndOnScreen) {
    struct Case { int left, top, width, height; bool fits; };
    const Case cases[] = {
        {0, 0, 120, 72, true},       {-1, 0, 200, 200, false},   {0, -1, 200, 200, false},
        {0, 0, 119, 200, false},     {0, 0, 200, 71, false},     {824, 0, 200, 200, true},
        {825, 0, 200, 200, false},   {0, 568, 200, 200, true},   {0, 569, 200, 200, false},
        {2147483000, 0, 2000, 100, false},
    };
    for (const Case& c : cases) {
        FrameSettings s;
        s.left = c.left;
        s.top = c.top;
        s.width = c.width;
        s.height = c.height;
        EXPECT_EQ(PlacementFits(s, 1024, 768), c.fits)
            << c.left << "," << c.top << " " << c.width << "x" << c.height;
    }
}
