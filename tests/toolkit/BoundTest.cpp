// Pictures and colours that others publish for a page: where they are seen, and what is seen without them.
#include "SceneFixture.h"

#include "platform/linux/toolkit/Tint.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace zm::test {

namespace {

const Binding sleeve{"zelmar/disc/cover", "cover", "path"};
const Binding mood{"zelmar/disc/cover", "cover", "color"};
const Binding playState{"zelmar/disc/status", "discstate", ""};
constexpr int playPage = 6;
constexpr int cover = 20110;

uint32_t rgb(uint32_t pixel) {
    return pixel & 0xFFFFFF;
}

class BoundPictures : public testing::Test {
protected:
    /** A file of that colour and size. */
    std::string png(const std::string& name, double red, double green, double blue, int pictureWidth = 64,
                    int pictureHeight = 64) {
        const std::string path = folder.path() + "/" + name;
        cairo_surface_t* surface =
            cairo_image_surface_create(CAIRO_FORMAT_RGB24, pictureWidth, pictureHeight);
        cairo_t* cairo = cairo_create(surface);
        cairo_set_source_rgb(cairo, red, green, blue);
        cairo_paint(cairo);
        cairo_destroy(cairo);
        EXPECT_EQ(cairo_surface_write_to_png(surface, path.c_str()), CAIRO_STATUS_SUCCESS);
        cairo_surface_destroy(surface);
        return path;
    }
    void show(const std::string& path) { stage.scene->publish(sleeve, path, readPictureFile(path)); }
    uint32_t middle() const {
        const Rect box = stage.rect(playPage, cover);
        return rgb(stage.pixel(box.x + box.w / 2, box.y + box.h / 2));
    }
    void SetUp() override {
        stage.scene->showWindow(playPage, true);
        stage.paint();
        record = stage.pixels;
    }

    TemporaryFolder folder;
    Stage stage{resourceDir + "DISC.zmrc_device"};
    std::vector<uint8_t> record; ///< the page without a cover
};

TEST_F(BoundPictures, areShownAtOnceInTheirPlace) {
    show(png("red.png", 1, 0, 0));
    const auto areas = stage.paint();
    EXPECT_EQ(middle(), 0xFF0000u);
    EXPECT_EQ(area(areas), stage.rect(playPage, cover).w * stage.rect(playPage, cover).h)
        << "nothing else is drawn anew";
    EXPECT_EQ(stage.scene->staleness(stage.pixels.data(), width * 4), "");
    EXPECT_EQ(stage.item(playPage, cover)["picture"], folder.path() + "/red.png");
}

TEST_F(BoundPictures, giveWayToThePagesOwnWhenTheyAreTakenBackOrCannotBeRead) {
    std::ofstream(folder.path() + "/text.png")
        << "this is no picture, whatever its name says, however long it is";
    const std::string cut = png("cut.png", 0, 1, 0, 600, 600);
    std::filesystem::resize_file(cut, 200);
    for (const std::string& path : {std::string(), folder.path() + "/nothing.png",
                                    folder.path() + "/text.png", cut, png("huge.png", 0, 0, 1, 1025, 8)}) {
        show(png("red.png", 1, 0, 0));
        stage.paint();
        ASSERT_EQ(middle(), 0xFF0000u);
        show(path);
        stage.paint();
        EXPECT_EQ(stage.pixels, record) << path;
        EXPECT_EQ(stage.item(playPage, cover)["picture"], "");
    }
}

TEST_F(BoundPictures, keepTheirShape) {
    show(png("wide.png", 1, 0, 0, 320, 160));
    stage.paint();
    const Rect box = stage.rect(playPage, cover);
    EXPECT_EQ(middle(), 0xFF0000u);
    const auto above = rgb(stage.pixel(box.x + box.w / 2, box.y + box.h / 4 - 3));
    EXPECT_NE(above, 0xFF0000u) << "half as high as wide";
    show(png("high.png", 1, 0, 0, 160, 320));
    stage.paint();
    EXPECT_NE(rgb(stage.pixel(box.x + box.w / 4 - 3, box.y + box.h / 2)), 0xFF0000u);
    EXPECT_EQ(rgb(stage.pixel(box.x + box.w / 2, box.y + box.h / 4 - 3)), 0xFF0000u);
}

TEST_F(BoundPictures, standStillWhileAnotherPageIsShownAndAreThereWhenItComesBack) {
    stage.scene->showWindow(24, true);
    stage.paint();
    show(png("red.png", 1, 0, 0));
    EXPECT_TRUE(stage.paint().empty());
    stage.scene->showWindow(playPage, true);
    stage.paint();
    EXPECT_EQ(middle(), 0xFF0000u);
}

TEST_F(BoundPictures, tintTheBackgroundWithTheirColour) {
    const auto corner = [&] { return stage.pixel(5, 75); };
    const uint32_t before = rgb(corner());
    stage.scene->publish(mood, "#C03020", nullptr);
    stage.paint();
    const uint32_t tinted = rgb(corner());
    EXPECT_NE(tinted, before);
    EXPECT_GT(tinted >> 16, (tinted >> 8) & 255);
    EXPECT_GT(tinted >> 16, tinted & 255);
    for (int shift = 0; shift < 24; shift += 8) {
        const int below = static_cast<int>(stage.pixel(5, 479) >> shift & 255);
        EXPECT_NEAR(below, static_cast<int>(before >> shift & 255), 1) << "it fades away";
    }
    for (const char* none : {"", "red", "#12", "#GG0000", "#1234567"}) {
        stage.scene->publish(mood, none, nullptr);
        stage.paint();
        EXPECT_EQ(rgb(corner()), before) << none;
    }
}

TEST_F(BoundPictures, areWhatThePagesAskFor) {
    const std::map<Binding, BoundAs> wanted = {
        {sleeve, BoundAs::Picture}, {mood, BoundAs::Color}, {playState, BoundAs::Word}};
    EXPECT_EQ(stage.scene->bindings(), wanted);
}

TEST_F(BoundPictures, leaveAThemeOfHighContrastBlack) {
    stage.scene->setTheme("contrast");
    stage.paint();
    const uint32_t before = rgb(stage.pixel(5, 75));
    stage.scene->publish(mood, "#C03020", nullptr);
    stage.paint();
    EXPECT_EQ(rgb(stage.pixel(5, 75)), before);
}

/** The keys of modes over a film. */
class BoundModes : public testing::Test {
protected:
    BoundModes() {
        stage.scene->showWindow(1, true);
        stage.paint();
    }
    void say(const std::string& member, const std::string& value) {
        stage.scene->publish({"zelmar/disc/status", "playstate", member}, value, nullptr);
    }

    Stage stage{resourceDir + "OVERLAY.zmrc_device"};
};

TEST_F(BoundModes, haveAPictureOfTheirOwnWhereTheyAreOn) {
    const auto off = stage.pixels;
    std::vector<std::vector<uint8_t>> seen = {off};
    const std::vector<std::pair<std::string, int>> keys = {{"shuffle", 6503}, {"repeat", 6504}};
    for (const auto& [member, key] : keys) {
        const Rect place = stage.rect(1, key);
        for (const char* value : {"1", "2", "4", "8"}) {
            say(member, value);
            EXPECT_EQ(stage.item(1, key)["value"], value);
            EXPECT_EQ(area(stage.paint()), place.w * place.h) << "nothing else is drawn anew";
            EXPECT_EQ(stage.scene->staleness(stage.pixels.data(), width * 4), "");
            seen.push_back(stage.pixels);
        }
        for (const char* none : {"", "0", "-1", "16"}) {
            say(member, none);
            stage.paint();
            EXPECT_EQ(stage.pixels, off) << member << " " << none;
        }
    }
    std::sort(seen.begin(), seen.end());
    // Two modes of shuffle, three of repeat, and the one of nothing.
    EXPECT_EQ(std::unique(seen.begin(), seen.end()) - seen.begin(), 6);
}

TEST_F(BoundModes, areWhatTheOverlayAsksFor) {
    const std::map<Binding, BoundAs> wanted = {
        {{"zelmar/disc/status", "playstate", "shuffle"}, BoundAs::Word},
        {{"zelmar/disc/status", "playstate", "repeat"}, BoundAs::Word}};
    EXPECT_EQ(stage.scene->bindings(), wanted);
}

double lightOf(const Color& color) {
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

TEST(Tint, isAlwaysAsBrightWhateverTheColour) {
    const Color night{0.043, 0.059, 0.078, 1};
    const Color day{0.957, 0.965, 0.973, 1};
    for (const Color& wish : {Color{1, 0, 0, 1}, Color{0, 0, 1, 1}, Color{0, 1, 0, 1}, Color{1, 1, 1, 1},
                              Color{0, 0, 0, 1}, Color{0.5, 0.4, 0.1, 1}}) {
        EXPECT_NEAR((lightOf(tinted(night, wish)) + 0.05) / (lightOf(night) + 0.05), 1.36, 0.01);
        EXPECT_NEAR((lightOf(day) + 0.05) / (lightOf(tinted(day, wish)) + 0.05), 1.16, 0.01);
    }
}

} // namespace

TEST(Tint, APublishedColourIsReadInItsThreeParts) {
    const auto colour = colorOf("#ff8033");
    ASSERT_TRUE(colour);
    EXPECT_DOUBLE_EQ(colour->red, 1);
    EXPECT_DOUBLE_EQ(colour->green, 128 / 255.0);
    EXPECT_DOUBLE_EQ(colour->blue, 51 / 255.0);
    EXPECT_DOUBLE_EQ(colour->alpha, 1);
    for (const char* none : {"", "#", "ff8033", "#ff803", "#ff80333", "#ff80g3", "#-f8033"}) {
        EXPECT_FALSE(colorOf(none)) << none;
    }
}

} // namespace zm::test
