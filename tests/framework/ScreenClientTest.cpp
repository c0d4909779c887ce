#include "platform/linux/screen/ScreenClient.h"
#include "base/Paths.h"
#include "platform/linux/screen/WindowHandle.h"
#include "tests/framework/FakeHeadUnit.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace zm;
using namespace zm::test;
using std::chrono::milliseconds;
using testing::ElementsAre;

namespace {

constexpr milliseconds Patience(5000);

class ScreenClientTest : public testing::Test {
protected:
    void SetUp() override {
        auto connected = ScreenClient::connect(screenSocket(headUnit.folder()), "video", Patience);
        ASSERT_TRUE(connected) << connected.error();
        client = std::move(*connected);
        auto made = client->makeWindow({.name = "video", .width = 8, .height = 4, .order = 2});
        ASSERT_TRUE(made) << made.error();
        window = *made;
        ASSERT_TRUE(client->sync(Patience));
    }
    /** Frames that were committed, as [buffer, damage]. */
    std::vector<json> commits() {
        std::vector<json> result;
        for (const json& message : headUnit.screen("commit")) {
            result.push_back({message["buffer"], message["damage"]});
        }
        return result;
    }

    FakeHeadUnit headUnit;
    std::unique_ptr<ScreenClient> client;
    ScreenWindow* window = nullptr;
};

} // namespace

TEST_F(ScreenClientTest, IntroducesItselfAndItsWindow) {
    EXPECT_EQ(headUnit.screen("hello").at(0)["role"], "video");
    EXPECT_EQ(headUnit.screen("hello").at(0)["pid"], getpid());
    EXPECT_EQ(headUnit.screen("window").at(0), (json{{"t", "window"},
                                                     {"window", 1},
                                                     {"name", "video"},
                                                     {"width", 8},
                                                     {"height", 4},
                                                     {"stride", 32},
                                                     {"order", 2},
                                                     {"alpha", false},
                                                     {"visible", true}}));
}

TEST_F(ScreenClientTest, PresentsOnlyWhatChanged) {
    window->surface()[0] = 7;
    EXPECT_TRUE(window->present({{0, 0, 1, 1}}));
    EXPECT_TRUE(window->present({}));
    EXPECT_TRUE(window->present({{-5, 2, 9, 99}, {100, 0, 4, 4}, {2, 2, 0, 3}}));
    ASSERT_TRUE(client->sync(Patience));
    const auto frames = commits();
    ASSERT_EQ(frames.size(), 2u);
    EXPECT_EQ(frames[0][1], json::parse("[[0,0,1,1]]"));
    EXPECT_EQ(frames[1][1], json::parse("[[0,2,4,2]]"));
    EXPECT_EQ(window->frames(), 2);
}

TEST_F(ScreenClientTest, EveryBufferGetsTheWholeSurfaceHoweverOldItIs) {
    for (int i = 0; i < 8; ++i) {
        window->surface()[4 * i] = static_cast<uint8_t>(i + 1);
        ASSERT_TRUE(window->present({{i, 0, 1, 1}}));
        ASSERT_TRUE(client->sync(Patience));
        const std::vector<uint8_t> shown = headUnit.framePixels("video");
        ASSERT_EQ(shown.size(), 8u * 4 * 4);
        EXPECT_TRUE(std::equal(shown.begin(), shown.end(), window->surface())) << "frame " << i;
    }
}

TEST_F(ScreenClientTest, DamageWaitsWhileAllBuffersAreHeld) {
    headUnit.keepFrames(true);
    for (int i = 0; i < 4; ++i) {
        ASSERT_TRUE(window->present({{i, 0, 1, 1}}));
        ASSERT_TRUE(client->sync(Patience));
    }
    EXPECT_TRUE(window->waiting());
    EXPECT_EQ(window->frames(), 3);
    ASSERT_TRUE(window->present({{5, 1, 1, 1}}));
    headUnit.keepFrames(false);
    ASSERT_TRUE(client->sync(Patience));
    ASSERT_TRUE(window->present({}));
    EXPECT_FALSE(window->waiting());
    ASSERT_TRUE(client->sync(Patience));
    EXPECT_EQ(commits().back()[1], json::parse("[[3,0,1,1],[5,1,1,1]]"));
}

TEST_F(ScreenClientTest, ManyDamagesBecomeOneAroundThem) {
    std::vector<Rect> many;
    for (int i = 0; i < 40; ++i) {
        many.push_back({i % 8, i % 4, 1, 1});
    }
    ASSERT_TRUE(window->present(many));
    ASSERT_TRUE(client->sync(Patience));
    EXPECT_LE(commits().at(0)[1].size(), 16u);
}

TEST_F(ScreenClientTest, AFreeBufferTakesAWholeFrame) {
    EXPECT_FALSE(window->commitBuffer());
    headUnit.keepFrames(true);
    for (int i = 0; i < 3; ++i) {
        uint8_t* pixels = window->freeBuffer();
        ASSERT_NE(pixels, nullptr);
        pixels[5] = static_cast<uint8_t>(i);
        ASSERT_TRUE(window->commitBuffer());
        EXPECT_FALSE(window->commitBuffer());
    }
    EXPECT_EQ(window->freeBuffer(), nullptr);
    headUnit.keepFrames(false);
    ASSERT_TRUE(client->sync(Patience));
    EXPECT_NE(window->freeBuffer(), nullptr);
    EXPECT_THAT(commits(), ElementsAre(json::parse("[0,[[0,0,8,4]]]"), json::parse("[1,[[0,0,8,4]]]"),
                                       json::parse("[2,[[0,0,8,4]]]")));
}

TEST_F(ScreenClientTest, MemoryIsSealed) {
    EXPECT_EQ(headUnit.windowSeals("video"), F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL);
}

TEST_F(ScreenClientTest, PropertiesAreSentAsFarAsTheyAreSet) {
    WindowProps props;
    EXPECT_TRUE(props.empty());
    props.visible = false;
    props.height = 9;
    WindowProps moved;
    moved.order = 4;
    moved.x = -1;
    EXPECT_TRUE(client->setProps(window->number(), props));
    EXPECT_TRUE(client->setProps("child", moved));
    ASSERT_TRUE(client->sync(Patience));
    EXPECT_THAT(headUnit.screen("props"),
                ElementsAre(json{{"t", "props"}, {"window", 1}, {"visible", false}, {"height", 9}},
                            json{{"t", "props"}, {"name", "child"}, {"order", 4}, {"x", -1}}));
}

TEST_F(ScreenClientTest, AClosedWindowIsGone) {
    client->closeWindow(window);
    ASSERT_TRUE(client->sync(Patience));
    EXPECT_THAT(headUnit.screen("close"), ElementsAre(json{{"t", "close"}, {"window", 1}}));
    auto next = client->makeWindow({.name = "next", .width = 1, .height = 1});
    ASSERT_TRUE(next);
    EXPECT_EQ((*next)->number(), 2);
}

TEST_F(ScreenClientTest, RefusesWindowsWithoutASize) {
    EXPECT_FALSE(client->makeWindow({.name = "none", .width = 0, .height = 4}));
    EXPECT_FALSE(client->makeWindow({.name = "huge", .width = 1 << 20, .height = 4}));
    EXPECT_FALSE(client->broken());
}

TEST_F(ScreenClientTest, ACompositorThatIsGoneIsReportedOnce) {
    headUnit.hangUpScreen();
    EXPECT_FALSE(client->sync(Patience));
    EXPECT_TRUE(client->broken());
    EXPECT_FALSE(window->present({{0, 0, 1, 1}}));
    EXPECT_EQ(window->freeBuffer(), nullptr);
    EXPECT_FALSE(client->setProps(1, {}));
    const auto again = client->makeWindow({.name = "again", .width = 1, .height = 1});
    ASSERT_FALSE(again);
    EXPECT_THAT(again.error(), testing::StartsWith("screen: "));
}

TEST_F(ScreenClientTest, AnErrorFromTheCompositorBreaksTheConnection) {
    headUnit.tellScreen({{"t", "error"}, {"text", "wrong seals"}});
    ASSERT_FALSE(client->sync(Patience));
    EXPECT_THAT(client->receive().error(), testing::HasSubstr("wrong seals"));
}

TEST(ScreenClient, WithoutACompositorConnectingFails) {
    EXPECT_FALSE(ScreenClient::connect("/tmp/zm-none/screen.sock", "app", milliseconds(20)));
}

TEST(WindowProperties, AreQueuedInTheHandle) {
    _screen_window handle;
    const int position[] = {3, 4};
    const int size[] = {800, 480};
    EXPECT_EQ(screen_set_window_property_iv(&handle, SCREEN_PROPERTY_POSITION, position), 0);
    EXPECT_EQ(screen_set_window_property_iv(&handle, SCREEN_PROPERTY_SIZE, size), 0);
    EXPECT_EQ(handle.pending.x, 3);
    EXPECT_EQ(handle.pending.y, 4);
    EXPECT_EQ(handle.pending.width, 800);
    EXPECT_EQ(handle.pending.height, 480);
    int read[2] = {};
    EXPECT_EQ(screen_get_window_property_iv(&handle, SCREEN_PROPERTY_SIZE, read), 0);
    EXPECT_THAT(read, ElementsAre(800, 480));
}

TEST(WindowProperties, OfNothingOrOfAnUnknownNumberAreInvalid) {
    _screen_window handle;
    int value[] = {0, 0};
    for (const auto& call : {std::pair<screen_window_t, int>{nullptr, SCREEN_PROPERTY_SIZE}, {&handle, 51}}) {
        errno = 0;
        EXPECT_EQ(screen_set_window_property_iv(call.first, call.second, value), -1);
        EXPECT_EQ(errno, EINVAL);
        errno = 0;
        EXPECT_EQ(screen_get_window_property_iv(call.first, call.second, value), -1);
        EXPECT_EQ(errno, EINVAL);
    }
    EXPECT_EQ(screen_set_window_property_iv(&handle, SCREEN_PROPERTY_SIZE, nullptr), -1);
    EXPECT_TRUE(handle.pending.empty());
}
