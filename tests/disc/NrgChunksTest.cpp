#include "services/disc/image/NrgTrailer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace zm::disc::image;

constexpr uint64_t TrailerImageBytes = 10'000'000;

std::string trailerNumber(uint64_t number, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) {
        text += static_cast<char>(number >> (8 * i));
    }
    return text;
}

std::string trailerChunk(const std::string& name, const std::string& data) {
    return name + trailerNumber(data.size(), 4) + data;
}

/** A track of a disc that was written at once. */
std::string trailerTrack(uint64_t pause, uint64_t begin, uint64_t end, int mode = 7, int sector = 2352) {
    return std::string(12, '\0') + trailerNumber(static_cast<uint64_t>(sector), 2) + static_cast<char>(mode) +
           std::string(3, '\0') + trailerNumber(pause, 8) + trailerNumber(begin, 8) + trailerNumber(end, 8);
}
std::string trailerTracks(const std::string& all) {
    return trailerChunk("DAOX", std::string(22, '\0') + all);
}

std::string trailerError(const std::string& trailer) {
    const auto sheet = parseNrgTrailer(trailer, "d.nrg", TrailerImageBytes);
    return sheet ? "" : sheet.error();
}

} // namespace

TEST(NrgChunks, WhatIsWrongIsNamedWithItsChunk) {
    std::string hundred;
    for (uint64_t i = 0; i < 100; ++i) {
        hundred += trailerTrack(i * 10, i * 10, i * 10 + 10);
    }
    std::string chunks;
    for (int i = 0; i < 5000; ++i) {
        chunks += trailerChunk("abcd", "");
    }
    const struct {
        std::string trailer;
        const char* error;
    } rows[] = {
        {"", "names no track"},
        {trailerChunk("DAOX", "short"), "DAOX: no whole number of tracks"},
        {trailerChunk("ETN2", "short"), "ETN2: no whole number of tracks"},
        {trailerChunk("ETNF", "short"), "ETNF: no whole number of tracks"},
        {trailerTracks(hundred), "DAOX: more than 99 tracks"},
        {trailerTracks(trailerTrack(0, 0, 2352, 0x7F)), "DAOX: track 1: unknown mode 127"},
        {trailerTracks(trailerTrack(0, 0, 2352, 7, 2048)),
         "DAOX: track 1: sectors of another size than its mode has"},
        {trailerTracks(trailerTrack(0, 5, 5)),
         "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {trailerTracks(trailerTrack(0, 9, 5)),
         "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {trailerTracks(trailerTrack(9, 5, 10)),
         "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {trailerTracks(trailerTrack(0, TrailerImageBytes + 1, TrailerImageBytes + 2)),
         "DAOX: track 1: ends before it begins, or lies outside of the image"},
        {chunks, "abcd: longer than the image"},
        {std::string(MaxSheetBytes + 1, ' '), "description longer than 262144 bytes"},
        {"\x7F\x01xy" + trailerNumber(1, 4), "??xy: longer than the image"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(trailerError(row.trailer), row.error);
    }
    EXPECT_THAT(trailerError(trailerTracks(trailerTrack(0, 0, 2352)) + trailerChunk("CDTX", "short")),
                testing::StartsWith("CDTX: "));
}

TEST(NrgChunks, WhatFollowsTheEndAndWhatIsUnknownIsPassedOver) {
    const auto sheet = parseNrgTrailer(trailerChunk("abcd", "xyz") + trailerTracks(trailerTrack(0, 0, 2352)) +
                                           trailerChunk("END!", "") + trailerChunk("DAOX", "short"),
                                       "d.nrg", TrailerImageBytes);
    ASSERT_TRUE(sheet) << sheet.error();
    EXPECT_EQ(sheet->tracks.size(), 1u);
    EXPECT_EQ(sheet->catalogNumber, "");
    EXPECT_EQ(sheet->tracks[0].isrc, "");
}

TEST(NrgChunks, APauseEndsTheTrackBeforeWhereItFollowsItAndIsSoundToo) {
    const auto ends = [](const std::string& second) {
        const auto sheet =
            parseNrgTrailer(trailerTracks(trailerTrack(0, 0, 2352) + second), "d.nrg", TrailerImageBytes);
        EXPECT_TRUE(sheet);
        return sheet ? *sheet->tracks.at(0).pieces.at(0).end : 0;
    };
    EXPECT_EQ(ends(trailerTrack(2352, 4704, 9408)), 4704u);
    EXPECT_EQ(ends(trailerTrack(4704, 7056, 9408)), 2352u) << "something lies between";
    EXPECT_EQ(ends(trailerTrack(2352, 4704, 9408, 5)), 2352u) << "files";
}

TEST(NrgChunks, TracksWrittenOneByOneEndWithTheImageAtTheLatest) {
    const std::string data = trailerNumber(0, 4) + trailerNumber(0xFFFFFFFF, 4) + std::string(3, '\0') +
                             '\7' + std::string(8, '\0');
    const auto sheet = parseNrgTrailer(trailerChunk("ETNF", data), "d.nrg", TrailerImageBytes);
    ASSERT_TRUE(sheet) << sheet.error();
    EXPECT_EQ(sheet->tracks.at(0).pieces.at(0).end, TrailerImageBytes);
}

TEST(NrgChunks, AFooterThatIsNoneOrLeadsNowhereIsNone) {
    EXPECT_EQ(nrgTrailerPlace("NER5", 100), std::nullopt);
    EXPECT_EQ(nrgTrailerPlace("NER5" + trailerNumber(5, 8), 11), std::nullopt);
    EXPECT_EQ(nrgTrailerPlace("NER5" + trailerNumber(5, 8), 100), 5u);
    EXPECT_EQ(nrgTrailerPlace("xxxxNERO" + trailerNumber(5, 4), 100), 5u);
    EXPECT_EQ(nrgTrailerPlace(std::string(12, 'x'), 100), std::nullopt);
    EXPECT_EQ(nrgTrailerPlace("NER5" + trailerNumber(101, 8), 100), std::nullopt);
}
