#include "services/disc/image/NrgTrailer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace zm::disc::image;

constexpr uint64_t ImageBytes = 10'000'000;

std::string bigNumber(uint64_t number, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        text += static_cast<char>(number >> (8 * i));
    }
    return text;
}

std::string chunk(const std::string& name, const std::string& data) {
    return name + bigNumber(data.size(), 4) + data;
}

/** A track of a disc that was written at once. */
std::string track(uint64_t pause, uint64_t begin, uint64_t end, int mode = 7, int sector = 2352) {
    return std::string(12, '\0') + bigNumber(static_cast<uint64_t>(sector), 2) + static_cast<char>(mode) +
           std::string(3, '\0') + bigNumber(pause, 8) + bigNumber(begin, 8) + bigNumber(end, 8);
}
std::string tracks(const std::string& all) {
    return chunk("DAOX", std::string(22, '\0') + all);
}

std::string errorOf(const std::string& trailer) {
    const auto sheet = parseNrgTrailer(trailer, "d.nrg", ImageBytes);
    return sheet ? "" : sheet.error();
}

} // namespace

TEST(NrgTrailers, WhatIsWrongIsNamedWithItsChunk) {
    std::string hundred;
    for (uint64_t i = 0; i < 100; ++i) {
        hundred += track(i * 10, i * 10, i * 10 + 10);
    }
    std::string chunks;
    for (int i = 0; i < 5000; ++i) {
        chunks += chunk("abcd", "");
    }
    const struct {
        std::string trailer;
        const char* error;
    } rows[] = {
        {"", "names no track"},
        {chunk("DAOX", "short"), "DAOX: no whole number of tracks"},
        {chunk("ETN2", "short"), "ETN2: no whole number of tracks"},
        {chunk("ETNF", "short"), "ETNF: no whole number of tracks"},
        {tracks(hundred), "DAOX: more than 99 tracks"},
        {tracks(track(0, 0, 2352, 0x7F)), "DAOX: track 1: unknown mode 127"},
        {tracks(track(0, 0, 2352, 7, 2048)), "DAOX: track 1: sectors of another size than its mode has"},
        {tracks(track(0, 5, 5)), "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {tracks(track(0, 9, 5)), "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {tracks(track(9, 5, 10)), "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {tracks(track(0, ImageBytes + 1, ImageBytes + 2)),
         "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {chunks, "abcd: longer than the image"},
        {std::string(MaxSheetBytes + 1, ' '), "description longer than 262144 bytes"},
        {"\x7F\x01xy" + bigNumber(1, 4), "??xy: longer than the image"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(errorOf(row.trailer), row.error);
    }
    EXPECT_THAT(errorOf(tracks(track(0, 0, 2352)) + chunk("CDTX", "short")), testing::StartsWith("CDTX: "));
}

TEST(NrgTrailers, WhatFollowsTheEndAndWhatIsUnknownIsPassedOver) {
    const auto sheet = parseNrgTrailer(chunk("abcd", "xyz") + tracks(track(0, 0, 2352)) + chunk("END!", "") +
                                           chunk("DAOX", "short"),
                                       "d.nrg", ImageBytes);
    ASSERT_TRUE(sheet) << sheet.error();
    EXPECT_EQ(sheet->tracks.size(), 1u);
    EXPECT_EQ(sheet->catalogNumber, "");
    EXPECT_EQ(sheet->tracks[0].isrc, "");
}

TEST(NrgTrailers, APauseEndsTheTrackBeforeWhereItFollowsItAndIsSoundToo) {
    const auto ends = [](const std::string& second) {
        const auto sheet = parseNrgTrailer(tracks(track(0, 0, 2352) + second), "d.nrg", ImageBytes);
        EXPECT_TRUE(sheet);
        return sheet ? *sheet->tracks.at(0).pieces.at(0).end : 0;
    };
    EXPECT_EQ(ends(track(2352, 4704, 9408)), 4704u);
    EXPECT_EQ(ends(track(4704, 7056, 9408)), 2352u) << "something lies between";
    EXPECT_EQ(ends(track(2352, 4704, 9408, 5)), 2352u) << "files";
}

TEST(NrgTrailers, TracksWrittenOneByOneEndWithTheImageAtTheLatest) {
    const std::string data =
        bigNumber(0, 4) + bigNumber(0xFFFFFFFF, 4) + std::string(3, '\0') + '\7' + std::string(8, '\0');
    const auto sheet = parseNrgTrailer(chunk("ETNF", data), "d.nrg", ImageBytes);
    ASSERT_TRUE(sheet) << sheet.error();
    EXPECT_EQ(sheet->tracks.at(0).pieces.at(0).end, ImageBytes);
}

TEST(NrgTrailers, AFooterThatIsNoneOrLeadsNowhereIsNone) {
    EXPECT_EQ(nrgTrailerPlace("NER5", 100), std::nullopt);
    EXPECT_EQ(nrgTrailerPlace("NER5" + bigNumber(5, 8), 11), std::nullopt);
    EXPECT_EQ(nrgTrailerPlace("NER5" + bigNumber(5, 8), 100), 5u);
    EXPECT_EQ(nrgTrailerPlace("xxxxNERO" + bigNumber(5, 4), 100), 5u);
    EXPECT_EQ(nrgTrailerPlace(std::string(12, 'x'), 100), std::nullopt);
    EXPECT_EQ(nrgTrailerPlace("NER5" + bigNumber(101, 8), 100), std::nullopt);
}
