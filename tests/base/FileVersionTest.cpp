#include "base/FileVersion.h"

#include <gtest/gtest.h>

namespace zm::test {

TEST(FileVersion, IsTakenOffAName) {
    EXPECT_EQ(withoutVersion("VIDEO_TS.IFO;1"), "VIDEO_TS.IFO");
    EXPECT_EQ(withoutVersion("a;b;32767"), "a;b");
}

TEST(FileVersion, OtherNamesAreAsTheyWere) {
    for (const char* name : {"", ";1", "VIDEO_TS.IFO", "VIDEO_TS.IFO;", "day; night", "a;1b"}) {
        EXPECT_EQ(withoutVersion(name), name);
    }
}

} // namespace zm::test
