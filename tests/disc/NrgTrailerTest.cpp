// The bounds of what stands at the end of an NRG image.
#include "services/disc/image/NrgTrailer.h"

#include <gtest/gtest.h>

using namespace zm::disc::image;

namespace {

constexpr uint64_t NrgSector = SoundSectorBytes;

std::string nrgNumber(uint64_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        text += static_cast<char>(value >> shift & 0xFF);
    }
    return text;
}

std::string nrgChunk(const std::string& name, const std::string& data) {
    return name + nrgNumber(data.size(), 4) + data;
}

/** So many tracks of sound of ten sectors each, written one by one. */
std::string wholeNrgTracks(uint64_t count) {
    std::string data;
    for (uint64_t i = 0; i < count; ++i) {
        data += nrgNumber(i * 10 * NrgSector, 8) + nrgNumber(10 * NrgSector, 8) + nrgNumber(7, 4) +
                nrgNumber(0, 12);
    }
    return nrgChunk("ETN2", data) + nrgChunk("END!", "");
}

/** Two tracks of sound, written at once, each behind a pause. */
std::string nrgTracks(uint64_t firstPause, uint64_t secondPause) {
    const auto track = [](uint64_t pause, uint64_t begin, uint64_t end) {
        return std::string(12, '\0') + nrgNumber(NrgSector, 2) + "\7" + std::string(3, '\0') +
               nrgNumber(pause * NrgSector, 8) + nrgNumber(begin * NrgSector, 8) +
               nrgNumber(end * NrgSector, 8);
    };
    const uint64_t second = firstPause + 1000;
    return nrgChunk("DAOX", std::string(22, '\0') + track(0, firstPause, second) +
                                track(second, second + secondPause, second + secondPause + 500)) +
           nrgChunk("END!", "");
}

DiscSheet nrgOf(const std::string& trailer) {
    const auto sheet = parseNrgTrailer(trailer, "d.nrg", 100000 * NrgSector);
    EXPECT_TRUE(sheet) << (sheet ? "" : sheet.error());
    return sheet ? *sheet : DiscSheet{};
}

} // namespace

TEST(NrgTrailer, NinetyNineTracksAreTheMost) {
    EXPECT_EQ(nrgOf(wholeNrgTracks(99)).tracks.size(), 99u);
    const auto more = parseNrgTrailer(wholeNrgTracks(100), "d.nrg", 100000 * NrgSector);
    ASSERT_FALSE(more);
    EXPECT_EQ(more.error(), "ETN2: more than 99 tracks");
}

TEST(NrgTrailer, SoundBeforeTheFirstTrackIsHiddenFromFourSecondsOn) {
    EXPECT_FALSE(nrgOf(nrgTracks(LeastHiddenSectors - 1, 0)).hidden);
    const auto hidden = nrgOf(nrgTracks(LeastHiddenSectors, 0)).hidden;
    ASSERT_TRUE(hidden);
    EXPECT_EQ(hidden->begin, 0u);
    EXPECT_EQ(hidden->end, LeastHiddenSectors * NrgSector);
}

TEST(NrgTrailer, APauseBelongsToTheTrackBefore) {
    const auto sheet = nrgOf(nrgTracks(0, 150));
    ASSERT_EQ(sheet.tracks.size(), 2u);
    EXPECT_EQ(sheet.tracks[0].pieces.front().end, 1150 * NrgSector);
    EXPECT_EQ(sheet.tracks[1].pieces.front().begin, 1150 * NrgSector);
}
