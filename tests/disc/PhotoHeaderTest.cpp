// What a photo's first bytes say, which decides whether a decoder gets it and how small it makes it at once.
#include "services/disc/engine/PhotoHeader.h"

#include <gtest/gtest.h>

#include <string>

using namespace zm::disc::engine;

namespace {

std::string bigBytes(uint64_t number, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        text += static_cast<char>(number >> shift & 0xFF);
    }
    return text;
}

std::string littleBytes(uint64_t number, int bytes) {
    const std::string text = bigBytes(number, bytes);
    return {text.rbegin(), text.rend()};
}

/** A JPEG of three colours, of which the first has as many pixels as the other two have together, twice over. */
struct JpegFile {
    uint64_t marker = 0xC0;
    uint64_t precision = 8;
    uint64_t width = 640;
    uint64_t height = 480;
    int scans = 1;

    std::string bytes() const {
        std::string text = "\xFF\xD8\xFF" + bigBytes(marker, 1) + bigBytes(17, 2) + bigBytes(precision, 1) +
                           bigBytes(height, 2) + bigBytes(width, 2) + bigBytes(3, 1);
        text += bigBytes(0x012200, 3) + bigBytes(0x021101, 3) + bigBytes(0x031101, 3);
        for (int scan = 0; scan < scans; ++scan) {
            text += "\xFF\xDA" + bigBytes(12, 2) + std::string(10, '\1') + "some bytes";
        }
        return text + "\xFF\xD9";
    }
};

PhotoHeader photoHeaderOf(const std::string& file) {
    const auto header = readPhotoHeader(file);
    EXPECT_TRUE(header) << (header ? "" : header.error());
    return header ? *header : PhotoHeader{};
}

constexpr uint64_t PhotoPixels = uint64_t{640} * 480;
// Of the decoder, and of what turns the photo.
constexpr uint64_t PhotoCopies = 3;

} // namespace

TEST(PhotoHeaderOf, AJpegHasItsSizeItsScansAndItsEnd) {
    JpegFile jpeg;
    jpeg.scans = 3;
    const PhotoHeader header = photoHeaderOf(jpeg.bytes() + "what follows it");
    EXPECT_EQ(header.width, 640u);
    EXPECT_EQ(header.height, 480u);
    EXPECT_EQ(header.passes, 3u);
    EXPECT_EQ(header.length, jpeg.bytes().size());
    EXPECT_EQ(header.bytes, PhotoCopies * PhotoPixels * 3 / 2);
    EXPECT_EQ(header.halvings, 0u);
    EXPECT_TRUE(header.showable());
}

TEST(PhotoHeaderOf, AJpegWithoutHeightOrWidthIsNone) {
    JpegFile low;
    low.height = 0;
    EXPECT_FALSE(readPhotoHeader(low.bytes()));
    JpegFile narrow;
    narrow.width = 0;
    EXPECT_FALSE(readPhotoHeader(narrow.bytes()));
}

TEST(PhotoHeaderOf, AProgressiveJpegIsKeptWhole) {
    for (const uint64_t marker : {0xC2, 0xC6, 0xCA, 0xCE}) {
        JpegFile jpeg;
        jpeg.marker = marker;
        EXPECT_EQ(photoHeaderOf(jpeg.bytes()).bytes, (PhotoCopies + 2) * PhotoPixels * 3 / 2)
            << std::hex << marker;
    }
    for (const uint64_t marker : {0xC0, 0xC1, 0xC5, 0xC9, 0xCD}) {
        JpegFile jpeg;
        jpeg.marker = marker;
        EXPECT_EQ(photoHeaderOf(jpeg.bytes()).bytes, PhotoCopies * PhotoPixels * 3 / 2) << std::hex << marker;
    }
}

TEST(PhotoHeaderOf, SamplesOfMoreThanEightBitsTakeTwoBytes) {
    for (const uint64_t marker : {0xC3, 0xC7, 0xCB, 0xCF}) {
        JpegFile lossless;
        lossless.marker = marker;
        EXPECT_EQ(photoHeaderOf(lossless.bytes()).bytes, 2 * PhotoCopies * PhotoPixels * 3 / 2)
            << std::hex << marker;
    }
    JpegFile deep;
    deep.marker = 0xC1;
    deep.precision = 12;
    EXPECT_EQ(photoHeaderOf(deep.bytes()).bytes, 2 * PhotoCopies * PhotoPixels * 3 / 2);
}

TEST(PhotoHeaderOf, ALargeJpegIsMadeSmallerAtOnceIfItIsLossy) {
    JpegFile jpeg;
    jpeg.width = 8000;
    jpeg.height = 3000;
    EXPECT_EQ(photoHeaderOf(jpeg.bytes()).halvings, 1u);
    jpeg.width = 10000;
    jpeg.height = 8000;
    EXPECT_EQ(photoHeaderOf(jpeg.bytes()).halvings, 2u);
    jpeg.width = 10000;
    jpeg.height = 10000;
    EXPECT_EQ(photoHeaderOf(jpeg.bytes()).halvings, 2u)
        << "a quarter of both sides is the decoder's greatest step";
    jpeg.marker = 0xC3;
    EXPECT_EQ(photoHeaderOf(jpeg.bytes()).halvings, 0u);
}

TEST(PhotoHeaderOf, AJpegInTooManyScansIsNotShown) {
    JpegFile jpeg;
    jpeg.marker = 0xC2;
    jpeg.scans = 64;
    EXPECT_TRUE(photoHeaderOf(jpeg.bytes()).showable());
    jpeg.scans = 65;
    const auto shown = photoHeaderOf(jpeg.bytes()).showable();
    ASSERT_FALSE(shown);
    EXPECT_EQ(shown.error(), "too large a photo: 640 x 480 in 65 passes");
}

TEST(PhotoHeaderOf, AGifIsAsLargeAsItsFirstPictureBehindColoursAndExtensions) {
    for (const int bits : {1, 8}) {
        const std::string colours(size_t{3} << bits, '\x2C');
        const std::string file = "GIF89a" + littleBytes(10, 2) + littleBytes(20, 2) +
                                 bigBytes(0x80u | static_cast<uint64_t>(bits - 1), 1) + bigBytes(0, 2) +
                                 colours + "\x21\xF9\x04" + std::string(4, '\1') + bigBytes(0, 1) + "\x2C" +
                                 littleBytes(0, 4) + littleBytes(300, 2) + littleBytes(200, 2);
        const PhotoHeader header = photoHeaderOf(file);
        EXPECT_EQ(header.width, 300u) << bits;
        EXPECT_EQ(header.height, 200u) << bits;
    }
}

TEST(PhotoHeaderOf, AGreyPngTakesAByteAPixelAndTwoWithSixteenBits) {
    const auto png = [](uint64_t depth, uint64_t colours, uint64_t interlaced) {
        return "\x89PNG\r\n\x1A\n" + bigBytes(13, 4) + "IHDR" + bigBytes(640, 4) + bigBytes(480, 4) +
               bigBytes(depth, 1) + bigBytes(colours, 1) + bigBytes(0, 2) + bigBytes(interlaced, 1) +
               bigBytes(0, 4) + bigBytes(100, 4) + "IDAT";
    };
    EXPECT_EQ(photoHeaderOf(png(8, 0, 0)).bytes, PhotoCopies * PhotoPixels);
    EXPECT_EQ(photoHeaderOf(png(16, 0, 0)).bytes, PhotoCopies * PhotoPixels * 2);
    EXPECT_EQ(photoHeaderOf(png(8, 2, 0)).bytes, PhotoCopies * PhotoPixels * 3);
    EXPECT_EQ(photoHeaderOf(png(8, 6, 0)).bytes, PhotoCopies * PhotoPixels * 4);
    EXPECT_EQ(photoHeaderOf(png(16, 6, 0)).bytes, PhotoCopies * PhotoPixels * 4 + PhotoPixels * 8);
    EXPECT_EQ(photoHeaderOf(png(8, 0, 1)).bytes, PhotoCopies * PhotoPixels * 3 / 2);
    EXPECT_FALSE(photoHeaderOf(png(16, 2, 0)).showable()) << "the decoder exchanges its colours";
}
