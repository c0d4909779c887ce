#include "services/disc/player/PlayOrder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace zm::disc::player;

namespace {

// Folder 1 holds items 0 and 1, folder 2 items 2 to 4, folder 5 item 5.
PlayOrder threeFolders(Repeat repeat, Shuffle shuffle, uint32_t seed = 1) {
    PlayOrder order({1, 1, 2, 2, 2, 5}, seed);
    order.setModes(repeat, shuffle);
    return order;
}

} // namespace

TEST(PlayOrder, RepeatAllGoesRoundTheDisc) {
    auto order = threeFolders(Repeat::All, Shuffle::Off);
    for (const size_t expected : {1, 2, 3, 4, 5, 0, 1}) {
        EXPECT_EQ(order.advance(), expected);
    }
}

TEST(PlayOrder, RepeatOffEndsAfterTheLastItemAndStandsAtTheFirst) {
    auto order = threeFolders(Repeat::Off, Shuffle::Off);
    order.jumpTo(4);
    EXPECT_EQ(order.advance(), 5u);
    EXPECT_EQ(order.advance(), std::nullopt);
    EXPECT_EQ(order.current(), 0u);
}

TEST(PlayOrder, RepeatFolderStaysInTheFolder) {
    auto order = threeFolders(Repeat::Folder, Shuffle::Off);
    order.jumpTo(3);
    EXPECT_EQ(order.roundSize(), 3u);
    for (const size_t expected : {4, 2, 3, 4}) {
        EXPECT_EQ(order.advance(), expected);
    }
}

TEST(PlayOrder, RepeatOneRepeatsAtTheEndOnly) {
    auto order = threeFolders(Repeat::One, Shuffle::Off);
    order.jumpTo(2);
    EXPECT_EQ(order.advance(), 2u);
    EXPECT_EQ(order.next(), 3u);
    EXPECT_EQ(order.previous(), 2u);
}

TEST(PlayOrder, KeysGoRoundInEveryMode) {
    for (const auto mode : {Repeat::Off, Repeat::All, Repeat::One}) {
        auto order = threeFolders(mode, Shuffle::Off);
        EXPECT_EQ(order.previous(), 5u);
        EXPECT_EQ(order.next(), 0u);
    }
}

TEST(PlayOrder, PreviousInAFolderRoundGoesToTheFoldersEnd) {
    auto order = threeFolders(Repeat::Folder, Shuffle::Off);
    order.jumpTo(2);
    EXPECT_EQ(order.previous(), 4u);
}

TEST(PlayOrder, ShuffleAllPlaysEachItemOnceARound) {
    auto order = threeFolders(Repeat::Off, Shuffle::All, 7);
    order.jumpTo(3);
    std::set<size_t> played{3};
    while (const auto item = order.advance()) {
        EXPECT_TRUE(played.insert(*item).second) << *item << " twice";
    }
    EXPECT_EQ(played.size(), 6u);
}

TEST(PlayOrder, ShuffleFolderStaysInTheFolderAndPlaysAllOfIt) {
    auto order = threeFolders(Repeat::All, Shuffle::Folder, 3);
    order.jumpTo(2);
    std::set<size_t> played{2};
    played.insert(*order.advance());
    played.insert(*order.advance());
    EXPECT_EQ(played, (std::set<size_t>{2, 3, 4}));
    EXPECT_TRUE(played.count(*order.advance()));
}

TEST(PlayOrder, ShuffleWithRepeatFolderStaysInTheFolder) {
    auto order = threeFolders(Repeat::Folder, Shuffle::All, 3);
    order.jumpTo(4);
    EXPECT_EQ(order.roundSize(), 3u);
}

TEST(PlayOrder, ANewShuffledRoundDoesNotRepeatTheItemJustPlayed) {
    for (uint32_t seed = 0; seed < 50; ++seed) {
        auto order = threeFolders(Repeat::All, Shuffle::All, seed);
        for (int i = 0; i < 30; ++i) {
            const size_t before = order.current();
            EXPECT_NE(order.advance(), before) << "seed " << seed;
        }
    }
}

TEST(PlayOrder, PreviousGoesBackThroughAShuffledRound) {
    auto order = threeFolders(Repeat::All, Shuffle::All, 5);
    const size_t second = order.next();
    const size_t third = order.next();
    EXPECT_NE(second, third);
    EXPECT_EQ(order.previous(), second);
    EXPECT_EQ(order.previous(), 0u);
}

TEST(PlayOrder, ASingleItemFollowsItself) {
    PlayOrder order({1}, 1);
    EXPECT_EQ(order.advance(), 0u);
    order.setModes(Repeat::All, Shuffle::All);
    EXPECT_EQ(order.next(), 0u);
    EXPECT_EQ(order.previous(), 0u);
    order.setModes(Repeat::Off, Shuffle::All);
    EXPECT_EQ(order.advance(), std::nullopt);
}

TEST(PlayOrder, ChangingTheModeKeepsTheCurrentItem) {
    auto order = threeFolders(Repeat::All, Shuffle::Off);
    order.jumpTo(4);
    order.setModes(Repeat::All, Shuffle::All);
    EXPECT_EQ(order.current(), 4u);
    order.setModes(Repeat::All, Shuffle::Off);
    EXPECT_EQ(order.advance(), 5u);
}

TEST(PlayModes, RepeatStepsThroughAllOneFolderOff) {
    EXPECT_EQ(nextRepeat(Repeat::All, true), Repeat::One);
    EXPECT_EQ(nextRepeat(Repeat::One, true), Repeat::Folder);
    EXPECT_EQ(nextRepeat(Repeat::Folder, true), Repeat::Off);
    EXPECT_EQ(nextRepeat(Repeat::Off, true), Repeat::All);
}

TEST(PlayModes, ShuffleStepsThroughOffAllFolder) {
    EXPECT_EQ(nextShuffle(Shuffle::Off, true), Shuffle::All);
    EXPECT_EQ(nextShuffle(Shuffle::All, true), Shuffle::Folder);
    EXPECT_EQ(nextShuffle(Shuffle::Folder, true), Shuffle::Off);
}

TEST(PlayModes, WithoutFoldersTheFolderStepsAreLeftOut) {
    EXPECT_EQ(nextRepeat(Repeat::One, false), Repeat::Off);
    EXPECT_EQ(nextShuffle(Shuffle::All, false), Shuffle::Off);
}
