#include "ZMModel/PPSSubscriber.h"

#include <gtest/gtest.h>

namespace zm::test {

/** What every table of attributes is held against while it is compiled. */
TEST(PpsTable, ANameThatStandsTwiceIsFoundWhereverItStands) {
    using Row = PPSAttributeRow<int>;
    static constexpr Row NEIGHBOURS[] = {{"title", 0, {}}, {"title", 1, {}}, {"artist", 2, {}}};
    static constexpr Row APART[] = {{"title", 0, {}}, {"artist", 1, {}}, {"title", 2, {}}};
    static constexpr Row AT_THE_END[] = {{"title", 0, {}}, {"artist", 1, {}}, {"artist", 2, {}}};
    static constexpr Row NAMELESS[] = {{"", 0, {}}, {"", 1, {}}, {"title", 2, {}}, {"Title", 3, {}}};
    EXPECT_FALSE(PPSNamesDiffer(NEIGHBOURS));
    EXPECT_FALSE(PPSNamesDiffer(APART));
    EXPECT_FALSE(PPSNamesDiffer(AT_THE_END));
    EXPECT_TRUE(PPSNamesDiffer(NAMELESS));
}

} // namespace zm::test
