// What a drive says of a CD is judged before anything of it is believed.
#include "services/disc/medium/CdDrive.h"

#include <gtest/gtest.h>

using namespace zm::disc::medium;

namespace {

constexpr uint64_t SoundBytes = 2352;
constexpr const char* Drive = "/dev/sr0";

DriveToc tableOf(const std::vector<int64_t>& begins, int64_t end) {
    DriveToc toc;
    for (const int64_t begin : begins) {
        toc.tracks.push_back({static_cast<int>(toc.tracks.size()) + 1, false, begin});
    }
    toc.end = end;
    return toc;
}

std::string refusalOf(const DriveToc& toc) {
    const auto disc = imageOfDrive(toc, Drive);
    return disc ? "none" : disc.error();
}

std::string senseless(const std::string& reason) {
    return std::string(Drive) + ": the disc's table of contents makes no sense: " + reason;
}

} // namespace

TEST(CdDrive, TracksLieWhereTheTableSays) {
    const auto disc = imageOfDrive(tableOf({0, 600, 1500}, 1800), Drive);
    ASSERT_TRUE(disc) << disc.error();
    ASSERT_EQ(disc->tracks.size(), 3u);
    const auto& second = disc->tracks[1].pieces.front();
    EXPECT_EQ(second.file, Drive);
    EXPECT_EQ(second.offset, 600 * SoundBytes);
    EXPECT_EQ(second.size, 900 * SoundBytes);
    EXPECT_EQ(disc->tracks[2].size(), 300 * SoundBytes);
    EXPECT_EQ(disc->label, "Audio CD");
    EXPECT_FALSE(disc->hidden);
}

TEST(CdDrive, SoundBeforeTheFirstTrackIsHiddenIfItIsMoreThanAPause) {
    EXPECT_FALSE(imageOfDrive(tableOf({299}, 900), Drive)->hidden);
    const auto disc = imageOfDrive(tableOf({300}, 900), Drive);
    ASSERT_TRUE(disc->hidden);
    EXPECT_EQ(disc->hidden->size(), 300 * SoundBytes);
}

TEST(CdDrive, SoundEndsWhereItsSessionDoes) {
    auto toc = tableOf({0, 20000}, 30000);
    toc.tracks[1].data = true;
    EXPECT_EQ(imageOfDrive(toc, Drive)->tracks[0].size(), 20000 * SoundBytes) << "in one session";
    toc.laterSession = 20000;
    EXPECT_EQ(imageOfDrive(toc, Drive)->tracks[0].size(), 8600 * SoundBytes);
    toc.tracks[0].begin = 10000;
    EXPECT_EQ(imageOfDrive(toc, Drive)->tracks[0].size(), 10000 * SoundBytes) << "no session is that short";
}

TEST(CdDrive, ATableWithoutSenseIsRefusedInWords) {
    EXPECT_EQ(refusalOf(tableOf({}, 1000)), senseless("no track"));
    EXPECT_EQ(refusalOf(tableOf({600, 300}, 900)),
              senseless("track 2 at sector 300, before the track in front of it"));
    EXPECT_EQ(refusalOf(tableOf({0, 0}, 900)),
              senseless("track 2 at sector 0, before the track in front of it"));
    EXPECT_EQ(refusalOf(tableOf({0, 600}, 600)),
              senseless("the end of the disc at sector 600, its last track at sector 600"));
    EXPECT_EQ(refusalOf(tableOf({0, 600}, 200)),
              senseless("the end of the disc at sector 200, its last track at sector 600"));
    EXPECT_EQ(refusalOf(tableOf({-150}, 600)), senseless("track 1 at sector -150"));
    EXPECT_EQ(refusalOf(tableOf({450000}, 450001)), senseless("track 1 at sector 450000"));
    EXPECT_EQ(refusalOf(tableOf({0}, INT64_MAX)),
              senseless("the end of the disc at sector 9223372036854775807, its last track at sector 0"));
    auto toc = tableOf({0, 300}, 600);
    toc.tracks[0].number = 0;
    EXPECT_EQ(refusalOf(toc), senseless("track 0"));
    toc.tracks[0].number = 100;
    EXPECT_EQ(refusalOf(toc), senseless("track 100"));
}
