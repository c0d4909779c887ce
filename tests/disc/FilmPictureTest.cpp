// Pictures of a film on their way from planes to the screen: colours, size, place.
#include "services/disc/engine/FilmPicture.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>

using namespace zm::disc::engine;

namespace {

const int Stride = 4 * PictureWidth + 64; // a screen's rows may be longer than they show
using Pixel = std::array<int, 3>;         // red, green, blue

/** A picture as a decoder gives it, made point by point. */
class Planes {
public:
    Planes(int width, int height) {
        gst_init(nullptr, nullptr);
        gst_video_info_set_format(&m_info, GST_VIDEO_FORMAT_I420, width, height);
        m_buffer = gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&m_info), nullptr);
    }
    ~Planes() { gst_buffer_unref(m_buffer); }
    Planes(const Planes&) = delete;
    Planes& operator=(const Planes&) = delete;

    GstVideoInfo& info() { return m_info; }
    /** `value(x, y)` for each point of a plane: 0 brightness, 1 blue, 2 red. */
    template <class Value>
    void fill(int plane, Value value) {
        GstVideoFrame frame;
        ASSERT_TRUE(gst_video_frame_map(&frame, &m_info, m_buffer, GST_MAP_WRITE));
        auto* data = static_cast<uint8_t*>(GST_VIDEO_FRAME_COMP_DATA(&frame, plane));
        for (int y = 0; y < GST_VIDEO_FRAME_COMP_HEIGHT(&frame, plane); ++y) {
            for (int x = 0; x < GST_VIDEO_FRAME_COMP_WIDTH(&frame, plane); ++x) {
                data[y * GST_VIDEO_FRAME_COMP_STRIDE(&frame, plane) + x] = static_cast<uint8_t>(value(x, y));
            }
        }
        gst_video_frame_unmap(&frame);
    }
    void fill(int brightness, int blue, int red) {
        fill(0, [&](int, int) { return brightness; });
        fill(1, [&](int, int) { return blue; });
        fill(2, [&](int, int) { return red; });
    }
    /** Draws it on a screen that shows something else. */
    void draw(const PictureMargins& margins = {}) {
        m_screen.assign(static_cast<size_t>(Stride) * PictureHeight, 0x5a);
        GstVideoFrame frame;
        ASSERT_TRUE(gst_video_frame_map(&frame, &m_info, m_buffer, GST_MAP_READ));
        m_film.draw(frame, margins, m_screen.data(), Stride);
        gst_video_frame_unmap(&frame);
    }
    Pixel at(int x, int y) const {
        const uint8_t* pixel = &m_screen[static_cast<size_t>(y) * Stride + static_cast<size_t>(x) * 4];
        return {pixel[2], pixel[1], pixel[0]};
    }
    bool keepsBehindRows() const {
        for (int y = 0; y < PictureHeight; ++y) {
            for (int x = 4 * PictureWidth; x < Stride; ++x) {
                if (m_screen[static_cast<size_t>(y) * Stride + static_cast<size_t>(x)] != 0x5a) {
                    return false;
                }
            }
        }
        return true;
    }

private:
    GstVideoInfo m_info{};
    GstBuffer* m_buffer = nullptr;
    FilmPicture m_film;
    std::vector<uint8_t> m_screen;
};

testing::AssertionResult isNear(const Pixel& seen, const Pixel& wanted, int distance = 3) {
    for (size_t i = 0; i < wanted.size(); ++i) {
        if (std::abs(seen[i] - wanted[i]) > distance) {
            return testing::AssertionFailure()
                   << "red " << seen[0] << " green " << seen[1] << " blue " << seen[2] << " for " << wanted[0]
                   << " " << wanted[1] << " " << wanted[2];
        }
    }
    return testing::AssertionSuccess();
}

struct ColourRow {
    const char* name;
    GstVideoColorMatrix matrix;
    GstVideoColorRange range;
    std::array<int, 3> red; ///< brightness and colours of pure red
};

const ColourRow colourRows[] = {
    {"narrow601", GST_VIDEO_COLOR_MATRIX_BT601, GST_VIDEO_COLOR_RANGE_16_235, {81, 90, 240}},
    {"narrow709", GST_VIDEO_COLOR_MATRIX_BT709, GST_VIDEO_COLOR_RANGE_16_235, {63, 102, 240}},
    {"narrow2020", GST_VIDEO_COLOR_MATRIX_BT2020, GST_VIDEO_COLOR_RANGE_16_235, {74, 97, 240}},
    {"full601", GST_VIDEO_COLOR_MATRIX_BT601, GST_VIDEO_COLOR_RANGE_0_255, {76, 85, 255}},
    {"full709", GST_VIDEO_COLOR_MATRIX_BT709, GST_VIDEO_COLOR_RANGE_0_255, {54, 99, 255}},
    {"unknown", GST_VIDEO_COLOR_MATRIX_UNKNOWN, GST_VIDEO_COLOR_RANGE_UNKNOWN, {81, 90, 240}},
};

class FilmPictureColour : public testing::TestWithParam<ColourRow> {};

TEST_P(FilmPictureColour, RedIsRed) {
    const auto& row = GetParam();
    // As large as its place, a little larger, and very much.
    for (const auto& [width, height] : {std::pair{800, 480}, std::pair{720, 576}, std::pair{1920, 1080}}) {
        Planes picture(width, height);
        picture.info().colorimetry.matrix = row.matrix;
        picture.info().colorimetry.range = row.range;
        picture.fill(row.red[0], row.red[1], row.red[2]);
        picture.draw();
        EXPECT_TRUE(isNear(picture.at(400, 240), {255, 0, 0}, 6)) << width;
    }
}

INSTANTIATE_TEST_SUITE_P(All, FilmPictureColour, testing::ValuesIn(colourRows),
                         [](const auto& row) { return std::string(row.param.name); });

struct PlaceRow {
    const char* name;
    int width;
    int height;
    int pixelWidth;
    int pixelHeight;
    ScreenPart part;
};

const PlaceRow placeRows[] = {
    {"exact", 800, 480, 1, 1, {0, 0, 800, 480}},       {"square", 720, 576, 1, 1, {100, 0, 600, 480}},
    {"wide", 720, 576, 64, 45, {0, 15, 800, 450}},     {"small", 16, 16, 1, 1, {160, 0, 480, 480}},
    {"odd", 721, 577, 1, 1, {100, 0, 600, 480}},       {"large", 1920, 1080, 1, 1, {0, 15, 800, 450}},
    {"largeOdd", 1921, 1079, 1, 1, {0, 15, 800, 449}}, {"point", 1, 1, 1, 1, {160, 0, 480, 480}},
    {"thread", 2, 2000, 1, 1, {399, 0, 1, 480}},
};

class FilmPicturePlace : public testing::TestWithParam<PlaceRow> {};

TEST_P(FilmPicturePlace, FillsItsPlaceAndNothingElse) {
    const auto& row = GetParam();
    Planes picture(row.width, row.height);
    picture.info().par_n = row.pixelWidth;
    picture.info().par_d = row.pixelHeight;
    picture.fill(235, 128, 128);
    picture.draw();
    const auto& part = row.part;
    for (int y = 0; y < PictureHeight; ++y) {
        for (int x = 0; x < PictureWidth; ++x) {
            const bool inside =
                x >= part.x && x < part.x + part.width && y >= part.y && y < part.y + part.height;
            ASSERT_TRUE(isNear(picture.at(x, y), inside ? Pixel{255, 255, 255} : Pixel{0, 0, 0}))
                << "at " << x << ", " << y;
        }
    }
    EXPECT_TRUE(picture.keepsBehindRows());
}

INSTANTIATE_TEST_SUITE_P(All, FilmPicturePlace, testing::ValuesIn(placeRows),
                         [](const auto& row) { return std::string(row.param.name); });

// Lines that the screen has too few points for become the grey between them, not a coarser pattern.
TEST(FilmPicture, AveragesWhatTheScreenIsTooCoarseFor) {
    Planes picture(3200, 1920);
    picture.fill(0, 128, 128);
    picture.fill(0, [](int x, int) { return x % 4 < 2 ? 235 : 16; });
    picture.draw();
    for (int x = 10; x < PictureWidth - 10; ++x) {
        ASSERT_TRUE(isNear(picture.at(x, 240), {128, 128, 128}, 12)) << "at " << x;
    }
}

TEST(FilmPicture, ScalesWithoutSteps) {
    Planes picture(400, 240);
    picture.fill(0, 128, 128);
    picture.fill(0, [](int x, int) { return x < 200 ? 16 : 235; });
    picture.draw();
    bool between = false;
    for (int x = 398; x < 402; ++x) {
        const int green = picture.at(x, 240)[1];
        between = between || (green > 30 && green < 225);
    }
    EXPECT_TRUE(between);
}

TEST(FilmPicture, LeavesTheMarginsOut) {
    Planes picture(1600, 960);
    picture.fill(0, 128, 128);
    picture.fill(0, [](int x, int y) { return x >= 400 && x < 1200 && y >= 240 && y < 720 ? 235 : 16; });
    picture.draw({400, 240});
    for (const auto& [x, y] : {std::pair{0, 0}, std::pair{799, 0}, std::pair{0, 479}, std::pair{799, 479}}) {
        EXPECT_TRUE(isNear(picture.at(x, y), {255, 255, 255})) << x << ", " << y;
    }
}

} // namespace
