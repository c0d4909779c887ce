#include "platform/linux/screen/ScreenClient.h"
#include "tests/screen/ScreenFixture.h"

namespace zm::test {

using namespace std::chrono_literals;

class ClientAndCompositor : public ScreenTest {
protected:
    std::unique_ptr<ScreenClient> connect(const char* role) {
        auto client = ScreenClient::connect(socket, role, 1s);
        EXPECT_TRUE(client) << client.error();
        return client ? std::move(*client) : nullptr;
    }
    static void paint(uint8_t* pixels, uint32_t value, size_t count) {
        for (size_t i = 0; i < count; ++i) {
            std::memcpy(pixels + i * sizeof value, &value, sizeof value);
        }
    }
    static constexpr size_t Pixels = size_t{800} * 480;
};

TEST_F(ClientAndCompositor, PagesAreShownPieceByPieceThroughAllBuffers) {
    auto app = connect("app");
    auto window = app->makeWindow({"zmdisc", 800, 480, 1, false, true});
    ASSERT_TRUE(window) << window.error();
    paint((*window)->surface(), Red, Pixels);
    ASSERT_TRUE((*window)->present({{0, 0, 800, 480}}));
    // Each frame changes one row only: what the other buffers missed must be caught up with.
    for (size_t row = 0; row < 10; ++row) {
        paint((*window)->surface() + row * 3200, Green, 800);
        ASSERT_TRUE((*window)->present({{0, static_cast<int>(row), 800, 1}}));
        ASSERT_TRUE(app->sync(5s));
        EXPECT_FALSE((*window)->waiting());
        EXPECT_EQ(pixel(400, static_cast<int>(row)), Green);
        EXPECT_EQ(pixel(400, static_cast<int>(row) + 1), Red);
        EXPECT_EQ(pixel(400, 0), Green);
    }
    app->closeWindow(*window);
    ASSERT_TRUE(app->sync(5s));
    EXPECT_EQ(pixel(400, 0), Black);
}

TEST_F(ClientAndCompositor, ADecoderNeverWaitsForABuffer) {
    auto app = connect("app");
    auto decoder = connect("video");
    auto window = decoder->makeWindow({"video", 800, 480, 0, false, true});
    ASSERT_TRUE(window);
    call([this] { return compositor->postChild("zmdisc_video_win"); });
    ASSERT_TRUE(app->setProps("zmdisc_video_win", {true, 2, 0, 0, 800, 480, {}}));
    ASSERT_TRUE(app->sync(5s));
    for (int frame = 1; frame <= 50; ++frame) {
        uint8_t* pixels = (*window)->freeBuffer();
        ASSERT_NE(pixels, nullptr) << "frame " << frame;
        paint(pixels, static_cast<uint32_t>(frame), Pixels);
        ASSERT_TRUE((*window)->commitBuffer());
        ASSERT_TRUE(decoder->sync(5s));
        ASSERT_EQ(pixel(799, 479), Black | static_cast<uint32_t>(frame));
    }
    EXPECT_EQ(video()["frames"], 50);
}

TEST_F(ClientAndCompositor, AClientLearnsThatTheCompositorRefusesIt) {
    auto app = connect("app");
    auto tooLarge = app->makeWindow({"large", 4000, 100, 1, false, true});
    EXPECT_FALSE(app->sync(5s));
    EXPECT_TRUE(app->broken());
    EXPECT_NE(app->receive().error().find("not possible"), std::string::npos) << app->receive().error();
}

} // namespace zm::test
