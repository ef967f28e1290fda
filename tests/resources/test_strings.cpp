#include <gtest/gtest.h>

#include <set>

#include "resources/result.h"
#include "resources/strings.h"

TEST(StringTable, IdsAreUnique) {
    std::set<int> seen;
    for (int i = 0; i < OxStringCount(); ++i)
        EXPECT_TRUE(seen.insert(OxStringIdAt(i)).second) << "duplicate id " << OxStringIdAt(i);
}

TEST(StringTable, MessagesByCode) {
    EXPECT_STREQ(ResultMessage(Result::kDivisionByZero), "division by 0");
    EXPECT_STREQ(ResultMessage(Result::kStopped), "interrupted");
    EXPECT_STREQ(ResultMessage(Result::kUnbalanced), "");
    EXPECT_STREQ(OxString(62), "hmm ...");
    EXPECT_STREQ(OxString(99999), "");
}
