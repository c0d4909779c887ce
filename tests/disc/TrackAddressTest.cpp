#include "services/disc/player/TrackAddress.h"

#include <gtest/gtest.h>

using namespace zm::disc::model;
using namespace zm::disc::player;

namespace {

void addFiles(Contents& contents, MediaKind kind, int folder, int count) {
    for (int file = 1; file <= count; ++file) {
        contents.items[kindIndex(kind)].push_back({folder, file, "", "", {}});
    }
}

// Root: 2 songs; folder 2: 3 songs, 1 photo; folder 3: 2 videos; folder 40000: 1 song.
Contents addressedDisc() {
    Contents contents;
    addFiles(contents, MediaKind::Music, 1, 2);
    addFiles(contents, MediaKind::Music, 2, 3);
    addFiles(contents, MediaKind::Music, 40000, 1);
    addFiles(contents, MediaKind::Photo, 2, 1);
    addFiles(contents, MediaKind::Video, 3, 2);
    return contents;
}

const TrackContext inSecondFolder{{MediaKind::Music, 3}, MediaKind::Music};

std::optional<ItemPlace> resolve(int a, int b, const TrackContext& context = inSecondFolder) {
    return resolveTrack(addressedDisc(), context, a, b);
}

ItemPlace music(size_t index) {
    return {MediaKind::Music, index};
}

} // namespace

TEST(TrackAddress, PackedNumberHoldsFolderAndFile) {
    EXPECT_EQ(resolve((1 << 16) + 2, 1), music(1));
    EXPECT_EQ(resolve((2 << 16) + 3, 1), music(4));
}

TEST(TrackAddress, PackedNumbersKindIsTheSecondParameter) {
    EXPECT_EQ(resolve((2 << 16) + 1, 2), (ItemPlace{MediaKind::Photo, 0}));
    EXPECT_EQ(resolve((3 << 16) + 2, 3), (ItemPlace{MediaKind::Video, 1}));
    EXPECT_EQ(resolve((2 << 16) + 1, 3), std::nullopt);
    EXPECT_EQ(resolve((1 << 16) + 1, 7), std::nullopt);
}

TEST(TrackAddress, PackedNumberOfAHighFolderIsNegative) {
    EXPECT_EQ(resolve(static_cast<int>((40000u << 16) + 1), 1), music(5));
}

TEST(TrackAddress, SecondParameterAloneIsTheFolder) {
    EXPECT_EQ(resolve(2, 1), music(1));
    EXPECT_EQ(resolve(3, 2), music(4));
}

TEST(TrackAddress, FolderFormTakesTheBrowsedKindFirst) {
    EXPECT_EQ(resolve(1, 2, {{MediaKind::Music, 0}, MediaKind::Photo}), (ItemPlace{MediaKind::Photo, 0}));
    EXPECT_EQ(resolve(1, 2, {{MediaKind::Music, 0}, MediaKind::Music}), music(2));
}

TEST(TrackAddress, FolderFormFallsBackToTheKindThatHasTheFile) {
    EXPECT_EQ(resolve(2, 3), (ItemPlace{MediaKind::Video, 1}));
    EXPECT_EQ(resolve(3, 2, {{MediaKind::Photo, 0}, MediaKind::Photo}), music(4));
}

TEST(TrackAddress, WithoutFolderItIsThePositionInThePlayingFolder) {
    EXPECT_EQ(resolve(1, 0), music(2));
    EXPECT_EQ(resolve(3, 0), music(4));
}

TEST(TrackAddress, NumbersThatDoNotExistAreNothing) {
    EXPECT_EQ(resolve(0, 0), std::nullopt);
    EXPECT_EQ(resolve(4, 0), std::nullopt);
    EXPECT_EQ(resolve(1, 99), std::nullopt);
    EXPECT_EQ(resolve((2 << 16) + 4, 1), std::nullopt);
    EXPECT_EQ(resolve(-1, 1), std::nullopt);
}
