// Shapes that no page has yet and a resource may ask for: how they lie in their place.

#include "SceneFixture.h"

#include "platform/linux/toolkit/Backdrop.h"

#include <functional>

using namespace zm::test;
using testing::ElementsAre;
using zm::Rect;

namespace {

constexpr uint32_t black = 0xFF000000;
constexpr uint32_t white = 0xFFFFFFFF;
constexpr uint32_t red = 0xFFFF0000;
constexpr uint32_t blue = 0xFF0000FF;

class Shapes : public testing::Test {
protected:
    Shapes() : stage(folder.write("shapes.zmrc", text)) {
        stage.scene->showWindow(1, true);
        stage.paint();
    }

    /** The smallest rectangle that holds all pixels of that colour in an area. */
    Rect extent(uint32_t color, const Rect& area) const {
        return extent(area, [color](uint32_t pixel) { return pixel == color; });
    }
    /** That holds all that is drawn there. */
    Rect drawn(const Rect& area) const {
        return extent(area, [](uint32_t pixel) { return pixel != black; });
    }
    Rect extent(const Rect& area, const std::function<bool(uint32_t)>& counts) const {
        Rect found;
        for (int y = area.y; y < area.y + area.h; ++y) {
            for (int x = area.x; x < area.x + area.w; ++x) {
                if (counts(stage.pixel(x, y))) {
                    found = found.united({x, y, 1, 1});
                }
            }
        }
        return found;
    }

    static constexpr const char* text = R"({
        "languages": ["en"],
        "themes": {"night": {"page": "#000000", "white": "#FFFFFF", "red": "#FF0000", "blue": "#0000FF"}},
        "styles": {
            "pill": {"fill": "white", "radius": 50},
            "plain": {"textSize": 24, "color": "white"},
            "bar": {"fill": "white", "iconColor": "red", "border": "blue", "color": "white", "thickness": 20,
                    "padding": 40, "textSize": 20, "gap": 16},
            "bubble": {"base": "bar", "bubble": 60},
            "key": {"iconColor": "red", "pressed": {"fill": "blue"}, "selected": {"marker": "bottom"}}
        },
        "windows": [{"id": 1, "background": "page", "items": [
            {"id": 2, "kind": "panel", "rect": [100, 40, 20, 60], "style": "pill"},
            {"id": 3, "kind": "text", "rect": [600, 0, 100, 40], "style": "plain", "text": "03:20"},
            {"id": 4, "kind": "progress", "rect": [200, 200, 400, 40], "style": "bar", "total": 3},
            {"id": 5, "kind": "progress", "rect": [200, 300, 400, 100], "style": "bubble", "total": 3},
            {"id": 6, "kind": "button", "rect": [0, 400, 80, 60], "style": "key", "state": "selected"},
            {"id": 7, "kind": "button", "rect": [100, 400, 80, 60], "style": "key"}
        ]}]
    })";
    TemporaryFolder folder;
    Stage stage;
};

TEST_F(Shapes, aCornerIsNoRounderThanHalfTheShorterSide) {
    EXPECT_EQ(drawn({0, 0, 400, 150}), (Rect{100, 40, 20, 60}));
    EXPECT_EQ(stage.pixel(100, 70), white) << "the sides are straight";
    EXPECT_EQ(stage.pixel(119, 70), white);
    for (const auto& [x, y] : {std::pair{101, 41}, {118, 41}, {101, 98}, {118, 98}}) {
        EXPECT_EQ(stage.pixel(x, y), black) << x << ", " << y;
    }
}

TEST_F(Shapes, aBarKeepsItsDistanceFromBothEndsOfItsPlace) {
    stage.ui->SetProgressItemPos(1, 4, 100);
    stage.ui->drawItem(1, 4);
    stage.paint();
    EXPECT_EQ(drawn(stage.rect(1, 4)), (Rect{240, 210, 320, 20}));
    stage.ui->SetProgressItemPos(1, 4, 0);
    stage.ui->drawItem(1, 4);
    stage.paint();
    const Rect rest = drawn(stage.rect(1, 4));
    EXPECT_EQ(rest.x, 240);
    EXPECT_NEAR(rest.x + rest.w, 555, 1) << "what is not done is thinner";
}

TEST_F(Shapes, aBarWithoutRoomAboveItShowsNoTimeUnderTheFinger) {
    stage.pressItem(1, 4);
    stage.paint();
    EXPECT_EQ(extent(blue, {0, 0, width, height}), Rect{});
    EXPECT_GT(extent(red, stage.rect(1, 4)).h, 20) << "but its knob";
}

TEST_F(Shapes, theTimeUnderTheFingerHasSpaceAtItsSides) {
    stage.scene->press(400, 380);
    stage.paint();
    const Rect bubble = extent(blue, stage.rect(1, 5));
    const Rect time = extent(white, {bubble.x, bubble.y, bubble.w, 60});
    EXPECT_EQ(bubble.y, 300);
    EXPECT_EQ(bubble.h, 60);
    EXPECT_NEAR(bubble.x + bubble.w / 2, 400, 2) << "over the finger";
    EXPECT_GT(time.w, 30) << "01:40";
    EXPECT_NEAR(time.x - bubble.x, 16, 3);
    EXPECT_NEAR(bubble.x + bubble.w - time.x - time.w, 16, 3);
}

TEST_F(Shapes, aSelectedKeyKeepsItsMarkerWhileItIsPressed) {
    for (const auto& [id, marked] : {std::pair{6, true}, {7, false}}) {
        const Rect box = stage.rect(1, id);
        EXPECT_EQ(extent(red, box).empty(), !marked) << id;
        stage.pressItem(1, id);
        stage.paint();
        EXPECT_EQ(extent(blue, box), box) << id;
        EXPECT_EQ(extent(red, box).empty(), !marked) << id;
    }
}

TEST(Backdrop, isPremultiplied) {
    const zm::Color top{1, 0.5, 0, 0.5};
    const zm::SurfacePtr surface = zm::backdrop(top, top, 16);
    const uint8_t* pixel = cairo_image_surface_get_data(surface.get());
    EXPECT_NEAR(pixel[3], 128, 1);
    EXPECT_NEAR(pixel[2], 128, 1);
    EXPECT_NEAR(pixel[1], 64, 1);
    EXPECT_EQ(pixel[0], 0);
}

} // namespace
