#include <gtest/gtest.h>

#include <set>

#include "resources/strings.h"

TEST(StringTable, IdsAreUnique) {
    std::set<int> seen;
    for (int i = 0; i < OxStringCount(); ++i)
        EXPECT_TRUE(seen.insert(OxStringIdAt(i)).second) << "duplicate id " << OxStringIdAt(i);
}

TEST(StringTable, MessagesByCode) {
    EXPECT_STREQ(OxMessage(104), "division by 0");
    EXPECT_STREQ(OxMessage(-1), "interrupted");
    EXPECT_STREQ(OxMessage(108), "");
    EXPECT_STREQ(OxString(62), "hmm ...");
    EXPECT_STREQ(OxString(99999), "");
}
