#include "tests/disc/PictureFixture.h"

#include <algorithm>

using namespace zm::test;
using namespace zm::disc::engine;
using namespace zm::disc::model;

namespace {

/** A film and where it belongs on the screen. */
struct ShapeRow {
    const char* name;
    int width;
    int height;
    const char* pixelShape; ///< width to height of one pixel
    const char* file;
    const char* codec;
    PixelBox picture; ///< the whole picture on the screen
    int diameter;     ///< of its circle on the screen
};

// A blue film with a red circle in its middle, half as wide as the shorter side.
std::string circleFilm(const ShapeRow& row) {
    const std::string pixel = std::string("(") + row.pixelShape + ")";
    const std::string inside = "lt(hypot((X-(W-1)/2)*" + pixel + ",Y-(H-1)/2),min(W*" + pixel + ",H)/4)";
    return sample({std::string("circle-") + row.name + "-" + row.file,
                   "-f lavfi -i \"color=blue:rate=10:duration=0.1:size=" + std::to_string(row.width) + "x" +
                       std::to_string(row.height) + ",format=rgb24,geq=r='255*" + inside +
                       "':g=0:b='255-255*" + inside + "',loop=300:1,setsar=" + row.pixelShape +
                       "\" -f lavfi -i sine=frequency=440:duration=30 -shortest " + row.codec});
}

constexpr const char* H264 = "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac";
constexpr const char* Mpeg2 = "-c:v mpeg2video -r 25 -b:v 2M -c:a mp2 -f vob";
constexpr const char* Xvid = "-c:v mpeg4 -vtag XVID -b:v 2M -c:a libmp3lame";

const ShapeRow rows[] = {
    {"square4to3", 640, 480, "1/1", "film.mp4", H264, {80, 0, 640, 480}, 240},
    {"wide16to9", 640, 360, "1/1", "film.mkv", H264, {0, 15, 800, 450}, 225},
    {"wider240", 960, 400, "1/1", "film.mp4", H264, {0, 73, 800, 333}, 167},
    {"upright", 360, 640, "1/1", "film.mp4", H264, {265, 0, 270, 480}, 135},
    {"screen", 800, 480, "1/1", "film.mp4", H264, {0, 0, 800, 480}, 240},
    {"anamorphic4to3", 720, 576, "16/15", "film.mpg", Mpeg2, {80, 0, 640, 480}, 240},
    {"anamorphic16to9", 720, 576, "64/45", "film.mpg", Mpeg2, {0, 15, 800, 450}, 225},
    {"anamorphicMatroska", 720, 576, "64/45", "film.mkv", H264, {0, 15, 800, 450}, 225},
    {"anamorphicAvi", 720, 576, "16/15", "film.avi", Xvid, {80, 0, 640, 480}, 240},
};

PixelBox inTheMiddle(int width, int height) {
    return {(PictureWidth - width) / 2, (PictureHeight - height) / 2, width, height};
}

class FilmShape : public Pictures, public testing::WithParamInterface<ShapeRow> {
protected:
    void playFilm() {
        place(circleFilm(GetParam()), m_disc / GetParam().file);
        play();
    }
    // The picture lies there, black around it, and its circle is one.
    void expectShown(const PixelBox& picture, int diameter) {
        const PixelBox circle = inTheMiddle(diameter, diameter);
        EXPECT_TRUE(m_unit.pictures().waitForBox(red, circle))
            << m_unit.pictures().boxOf(red) << " instead of " << circle;
        const PixelBox shown = m_unit.pictures().boxOf(blue);
        EXPECT_TRUE(isNear(shown, picture)) << shown << " instead of " << picture;
        if (picture.x > 20) {
            EXPECT_TRUE(m_unit.pictures().waitFor(picture.x / 2, MiddleY, black));
            EXPECT_TRUE(m_unit.pictures().waitFor(PictureWidth - picture.x / 2, MiddleY, black));
        }
        if (picture.y > 20) {
            EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, picture.y / 2, black));
            EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, PictureHeight - picture.y / 2, black));
        }
    }
};

void PrintTo(const ShapeRow& row, std::ostream* out) {
    *out << row.name;
}

} // namespace

TEST_P(FilmShape, IsKeptBetweenBlackBars) {
    playFilm();
    expectShown(GetParam().picture, GetParam().diameter);
}

TEST_P(FilmShape, IsKeptWhenItIsTurned) {
    playFilm();
    expectShown(GetParam().picture, GetParam().diameter);
    m_unit.command(163);
    const auto [x, y, width, height] = GetParam().picture;
    const double scale = std::min(double(PictureWidth) / height, double(PictureHeight) / width);
    expectShown(inTheMiddle(static_cast<int>(height * scale), static_cast<int>(width * scale)),
                static_cast<int>(GetParam().diameter * scale));
}

TEST_P(FilmShape, IsKeptWhenItIsEnlargedIntoTheBars) {
    playFilm();
    expectShown(GetParam().picture, GetParam().diameter);
    m_unit.command(20); // half as large again
    const auto [x, y, width, height] = GetParam().picture;
    expectShown(inTheMiddle(std::min(PictureWidth, width * 3 / 2), std::min(PictureHeight, height * 3 / 2)),
                GetParam().diameter * 3 / 2);
}

INSTANTIATE_TEST_SUITE_P(All, FilmShape, testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(Pictures, AFilmIsTurnedAndEnlargedWhilePaused) {
    const ShapeRow& film = rows[1]; // 16 : 9
    place(circleFilm(film), m_disc / film.file);
    play();
    ASSERT_TRUE(m_unit.pictures().waitForBox(red, inTheMiddle(film.diameter, film.diameter)));
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(163);
    EXPECT_TRUE(m_unit.pictures().waitForBox(red, inTheMiddle(135, 135)));
    m_unit.command(20);
    EXPECT_TRUE(m_unit.pictures().waitForBox(red, inTheMiddle(202, 202)));
    EXPECT_TRUE(isNear(m_unit.pictures().boxOf(blue), inTheMiddle(405, 480)));
}
