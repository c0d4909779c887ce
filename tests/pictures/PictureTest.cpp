// The comparison itself: it can fail, and says where.

#include "tests/pictures/Picture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace zm::test {

namespace {

constexpr int width = 40;
constexpr int height = 30;

/** Every pixel another colour. */
Image pattern() {
    Image picture(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            uint8_t* pixel = picture.at(x, y);
            pixel[0] = static_cast<uint8_t>(x);
            pixel[1] = static_cast<uint8_t>(y);
            pixel[2] = static_cast<uint8_t>(x + y);
            pixel[3] = 0xFF;
        }
    }
    return picture;
}

class PictureFile : public testing::Test {
protected:
    std::string file() const { return m_folder.path() + "/a.png"; }

private:
    TemporaryFolder m_folder;
};

} // namespace

TEST(Comparison, ThePictureItselfDoesNotDiffer) {
    EXPECT_TRUE(compare(pattern(), pattern()).none());
}

TEST(Comparison, OnePixelBeyondTheToleranceIsFoundAndNamed) {
    for (int channel = 0; channel < 3; ++channel) {
        Image other = pattern();
        other.at(7, 11)[channel] = static_cast<uint8_t>(other.at(7, 11)[channel] + Tolerance + 1);
        other.at(9, 12)[channel] = 200;
        const Difference difference = compare(pattern(), other);
        EXPECT_FALSE(difference.none());
        EXPECT_EQ(difference.pixels, 2);
        EXPECT_EQ(difference.x, 7);
        EXPECT_EQ(difference.y, 11);
    }
    Image other = pattern();
    other.at(7, 11)[2] = 0xFF;
    EXPECT_EQ(compare(pattern(), other).text(),
              "1 pixels differ, the first at 7,11: expected #120B07, found #FF0B07");
}

TEST(Comparison, WithinTheToleranceIsTheSame) {
    Image other = pattern();
    for (uint8_t& byte : other.pixels) {
        byte = static_cast<uint8_t>(byte == 0xFF ? byte - Tolerance : byte + Tolerance);
    }
    EXPECT_TRUE(compare(pattern(), other).none());
}

TEST(Comparison, AnotherSizeDiffers) {
    EXPECT_FALSE(compare(pattern(), Image(width, height + 1)).none());
}

TEST(Comparison, TheDifferencePictureIsRedWhereSomethingDiffers) {
    Image other = pattern();
    other.at(3, 4)[0] = 100;
    const Image shown = differencePicture(pattern(), other);
    int red = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            red += shown.at(x, y)[2] != shown.at(x, y)[1];
        }
    }
    EXPECT_EQ(red, 1);
    EXPECT_NE(shown.at(3, 4)[2], shown.at(3, 4)[1]);
}

TEST(Comparison, AMontageHoldsThePicturesSideBySide) {
    Image white(8, 8);
    std::fill(white.pixels.begin(), white.pixels.end(), 0xFF);
    const Image sheet = montage({white, Image(8, 8), white}, 2);
    EXPECT_EQ(sheet.width, 2 * (4 + 8));
    EXPECT_EQ(sheet.height, 2 * (4 + 8));
    EXPECT_EQ(sheet.at(0, 0)[0], 0xFF);
    EXPECT_EQ(sheet.at(12, 0)[0], 0);
    EXPECT_EQ(sheet.at(3, 15)[0], 0xFF);
}

TEST_F(PictureFile, BringsBackTheSameColours) {
    ASSERT_TRUE(writePng(file(), pattern()));
    const auto back = readPng(file());
    ASSERT_TRUE(back);
    EXPECT_EQ(compare(*back, pattern()).pixels, 0);
    EXPECT_EQ(back->pixels, pattern().pixels);
}

TEST_F(PictureFile, AMissingOrBrokenOneCannotBeRead) {
    EXPECT_FALSE(readPng(file()));
    ASSERT_TRUE(writePng(file(), pattern()));
    std::filesystem::resize_file(file(), 60);
    EXPECT_FALSE(readPng(file()));
    std::ofstream(file()) << "no picture";
    EXPECT_FALSE(readPng(file()));
}

} // namespace zm::test
