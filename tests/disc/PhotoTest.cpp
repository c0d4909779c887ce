#include "tests/disc/PictureFixture.h"

#include <array>

using namespace zm::test;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

// A photo whose left half is red and whose right half is blue, 400 by 240.
std::string twoHalves(const std::string& extension) {
    return sample({"halves." + extension,
                   "-f lavfi -i color=red:size=200x240 -f lavfi -i color=blue:size=200x240 "
                   "-filter_complex hstack -frames:v 1"});
}

std::string plainPhoto(const std::string& colour, const std::string& size) {
    return sample(
        {colour + "-" + size + ".png", "-f lavfi -i color=" + colour + ":size=" + size + " -frames:v 1"});
}

// The colours of a photo's quarters: upper left, upper right, lower left, lower right.
using Quarters = std::array<Colour, 4>;

std::string fourQuarters() {
    return sample({"quarters.jpg", "-f lavfi -i color=red:size=400x240 -vf "
                                   "'drawbox=x=200:y=0:w=200:h=120:color=lime:t=fill,"
                                   "drawbox=x=0:y=120:w=200:h=120:color=blue:t=fill,"
                                   "drawbox=x=200:y=120:w=200:h=120:color=white:t=fill' -frames:v 1"});
}

enum class ByteOrder { Intel, Motorola };

// What a camera writes behind a photo's first two bytes: a directory of one entry, the orientation.
std::string orientationSegment(int orientation, ByteOrder order) {
    const auto number = [order](int value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i) {
            const int place = order == ByteOrder::Intel ? i : bytes - 1 - i;
            text += static_cast<char>(value >> (8 * place) & 0xFF);
        }
        return text;
    };
    constexpr int OrientationTag = 0x112;
    constexpr int ShortType = 3;
    const std::string directory = number(1, 2) + number(OrientationTag, 2) + number(ShortType, 2) +
                                  number(1, 4) + number(orientation, 2) + number(0, 2) + number(0, 4);
    const std::string tiff =
        std::string(order == ByteOrder::Intel ? "II" : "MM") + number(42, 2) + number(8, 4) + directory;
    const std::string body = std::string("Exif\0\0", 6) + tiff;
    const auto size = static_cast<char>(body.size() + 2);
    return std::string("\xFF\xE1\0", 3) + size + body;
}

struct OrientationRow {
    int orientation;
    ByteOrder order;
    Quarters shown;
};

class PhotoOrientation : public Pictures, public testing::WithParamInterface<OrientationRow> {
protected:
    // Puts the photo with the parameter's orientation onto the disc.
    void placePhoto() {
        std::string photo = readFile(fourQuarters());
        photo.insert(2, orientationSegment(GetParam().orientation, GetParam().order));
        writeFile(m_disc / "p.jpg", photo);
    }
    // Whether the four quarters, of a picture that is higher than wide or the other way round, are seen.
    void expectShown(const Quarters& quarters, bool upright) {
        const int x = upright ? 70 : 200;
        const int y = 120;
        int index = 0;
        for (const int row : {MiddleY - y, MiddleY + y}) {
            for (const int column : {MiddleX - x, MiddleX + x}) {
                const bool seen =
                    m_unit.pictures().waitFor(column, row, quarters[static_cast<size_t>(index)]);
                const Colour found = m_unit.pictures().at(column, row);
                EXPECT_TRUE(seen) << "quarter " << index << " is " << found.red << " " << found.green << " "
                                  << found.blue;
                ++index;
            }
        }
        EXPECT_TRUE(m_unit.pictures().waitFor(50, MiddleY - y, upright ? black : quarters[0]));
    }
};

} // namespace

TEST_P(PhotoOrientation, IsHonoured) {
    placePhoto();
    play();
    expectShown(GetParam().shown, GetParam().orientation >= 5);
}

TEST_P(PhotoOrientation, IsWhatRotationCountsFrom) {
    placePhoto();
    play();
    const auto& [upperLeft, upperRight, lowerLeft, lowerRight] = GetParam().shown;
    ASSERT_TRUE(m_unit.pictures().waitFor(MiddleX - 50, MiddleY - 50, upperLeft));
    m_unit.command(163);
    expectShown({lowerLeft, upperLeft, lowerRight, upperRight}, GetParam().orientation < 5);
}

INSTANTIATE_TEST_SUITE_P(All, PhotoOrientation,
                         testing::Values(OrientationRow{1, ByteOrder::Intel, {red, green, blue, white}},
                                         OrientationRow{2, ByteOrder::Motorola, {green, red, white, blue}},
                                         OrientationRow{3, ByteOrder::Intel, {white, blue, green, red}},
                                         OrientationRow{4, ByteOrder::Motorola, {blue, white, red, green}},
                                         OrientationRow{5, ByteOrder::Intel, {red, blue, green, white}},
                                         OrientationRow{6, ByteOrder::Motorola, {blue, red, white, green}},
                                         OrientationRow{7, ByteOrder::Intel, {white, green, blue, red}},
                                         OrientationRow{8, ByteOrder::Motorola, {green, white, red, blue}}),
                         [](const auto& row) { return std::to_string(row.param.orientation); });

class PhotoFormat : public Pictures, public testing::WithParamInterface<const char*> {};

TEST_P(PhotoFormat, IsShown) {
    place(twoHalves(GetParam()), m_disc / (std::string("p.") + GetParam()));
    play();
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(600, MiddleY, blue));
}

TEST_P(PhotoFormat, ThatIsBrokenIsRefusedAndTheNextOneFollows) {
    const std::string extension = GetParam();
    const std::string whole = readFile(twoHalves(extension));
    writeFile(m_disc / ("1." + extension), whole.substr(0, 20) + std::string(whole.size(), 'x'));
    writeFile(m_disc / ("2." + extension), "no picture at all");
    writeFile(m_disc / ("3." + extension), "");
    place(twoHalves(extension), m_disc / ("4." + extension));
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    for (int file = 1; file <= 3; ++file) {
        nextFile(file);
        m_unit.next("msgtip", "1");
        m_unit.next("errorstatus", "32");
    }
    nextFile(4);
    m_unit.nextState(PlayState::Playing);
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
}

INSTANTIATE_TEST_SUITE_P(Files, PhotoFormat, testing::Values("jpg", "png", "bmp", "gif"));

TEST_F(Pictures, PhotosOf16BitsAreShown) {
    place(sample({"deep.png", "-f lavfi -i color=red:size=80x48 -pix_fmt rgba64be -frames:v 1"}),
          m_disc / "p.png");
    play();
    EXPECT_TRUE(shows(red));
}

TEST_F(Pictures, APngOfTwentyFourMegapixelsIsShown) {
    place(plainPhoto("red", "6000x4000"), m_disc / "p.png");
    play();
    EXPECT_TRUE(shows(red));
}

TEST_F(Pictures, PhotosKeepTheirShape) {
    place(plainPhoto("red", "240x240"), m_disc / "p.png");
    play();
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(50, MiddleY, black));
}

TEST_F(Pictures, PhotosFollowEachOtherEveryFiveSeconds) {
    place(plainPhoto("red", "80x48"), m_disc / "1.png");
    place(plainPhoto("blue", "80x48"), m_disc / "2.png");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    const auto begun = m_unit.nextState(PlayState::Playing);
    ASSERT_TRUE(shows(red));
    const auto second = nextFile(2);
    EXPECT_NEAR(std::chrono::duration<double>(second.when - begun.when).count(), 5.0, 0.7);
    EXPECT_TRUE(shows(blue));
}

TEST_F(Pictures, PauseHoldsTheSlideShow) {
    place(plainPhoto("red", "80x48"), m_disc / "1.png");
    place(plainPhoto("blue", "80x48"), m_disc / "2.png");
    play();
    m_unit.command(5);
    m_unit.nextState(PlayState::Paused);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("discstate", "2", 6s));
    EXPECT_TRUE(m_unit.since("trackinfo").empty());
    m_unit.command(5);
    m_unit.nextState(PlayState::Playing);
    nextFile(2);
}

TEST_F(Pictures, PhotosAreRotatedByQuarters) {
    place(twoHalves("png"), m_disc / "p.png");
    play();
    ASSERT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
    m_unit.command(163); // clockwise: the left half is on top
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, 380, blue));
    m_unit.command(163);
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, blue));
    m_unit.command(163);
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, blue));
    m_unit.command(163);
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
}

TEST_F(Pictures, PhotosAreEnlargedAroundTheirMiddle) {
    // A red square of half the size in the middle of blue.
    place(sample({"square.png", "-f lavfi -i color=blue:size=400x240 -vf "
                                "drawbox=x=100:y=60:w=200:h=120:color=red:t=fill -frames:v 1"}),
          m_disc / "p.png");
    play();
    ASSERT_TRUE(m_unit.pictures().waitFor(100, 60, blue));
    m_unit.command(20);
    m_unit.command(20); // twice as large
    EXPECT_TRUE(m_unit.pictures().waitFor(30, 30, red));
    m_unit.command(20);
    m_unit.command(20); // as it was
    EXPECT_TRUE(m_unit.pictures().waitFor(100, 60, blue));
}

TEST_F(Pictures, ANewPhotoIsShownUpright) {
    place(twoHalves("png"), m_disc / "1.png");
    place(twoHalves("jpg"), m_disc / "2.jpg");
    play();
    m_unit.command(163);
    ASSERT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, red));
    m_unit.command(1);
    nextFile(2);
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(600, MiddleY, blue));
}

TEST_F(Pictures, ZoomAndRotationAreRefusedForMusic) {
    place(toneFile("mp3", 30, "Song"), m_disc / "song.mp3");
    play();
    for (const int command : {20, 163}) {
        m_unit.command(command);
        m_unit.next("msgtip", "1");
    }
}

TEST_F(Pictures, FastForwardAndSeekAreRefusedForPhotos) {
    place(twoHalves("png"), m_disc / "1.png");
    play();
    for (const int command : {3, 4, 10, 185}) {
        m_unit.command(command);
        m_unit.next("msgtip", "1");
    }
}
