#include "tests/screen/ScreenFixture.h"

namespace zm::test {

TEST_F(ScreenTest, WithoutAWindowTheScreenIsBlack) {
    EXPECT_EQ(pixel(0, 0), Black);
    EXPECT_EQ(pixel(799, 479), Black);
}

TEST_F(ScreenTest, VideoLiesUnderAllWindowsWhateverOrderItIsGiven) {
    Memory mainMemory(800, 480);
    Memory overlayMemory(800, 480);
    Memory videoMemory(800, 480);
    mainMemory.fill(0, Red);
    mainMemory.fill(1, Clear);
    mainMemory.fill(1, Red, {0, 0, 20, 20});
    overlayMemory.fill(0, Clear);
    overlayMemory.fill(0, Blue, {0, 0, 100, 100});
    overlayMemory.fill(0, HalfWhite, {100, 0, 100, 100});
    videoMemory.fill(0, 0x0000ff00); // the fourth byte of video means nothing
    RawClient app(socket, "app");
    app.send(overlayMemory.window(2, 3, true), {overlayMemory.fd()});
    app.send(mainMemory.window(1, 1, true), {mainMemory.fd()});
    app.show(0, 1);
    EXPECT_EQ(pixel(50, 50), Red) << "a window without a frame is not drawn";
    app.send(commitOf(2, 0, 1));
    call([this] { return compositor->postChild("video"); });
    app.send({{"t", "props"}, {"name", "video"}, {"order", 2}, {"visible", true}});
    app.sync();
    RawClient decoder(socket, "video");
    decoder.send(videoMemory.window(1, 0, true), {videoMemory.fd()});
    decoder.show(0, 1);
    EXPECT_EQ(pixel(400, 400), Red) << "an opaque page hides it";
    EXPECT_EQ(video()["zorder"], 2) << "as it was asked for";
    app.show(1, 2);
    EXPECT_EQ(pixel(400, 400), Green) << "a transparent one does not";
    EXPECT_EQ(pixel(50, 50), Blue);
    EXPECT_EQ(pixel(150, 50), 0xff80ff80) << "half white over green";
    app.send({{"t", "props"}, {"window", 2}, {"visible", false}});
    app.sync();
    EXPECT_EQ(pixel(10, 10), Red) << "what the page draws lies over the video";
    EXPECT_EQ(pixel(50, 50), Green);
    app.send({{"t", "props"}, {"name", "video"}, {"visible", false}});
    app.sync();
    EXPECT_EQ(pixel(50, 50), Black);
}

// Rows of a page that are clear are passed over; they need not stay so.
TEST_F(ScreenTest, WhatAClearPageBeginsToShowIsSeenAndWhatItTakesAwayIsNot) {
    Memory page(800, 480);
    Memory below(800, 480);
    below.fill(0, Green);
    page.fill(0, Clear);
    page.fill(1, Clear);
    page.fill(1, Red, {799, 100, 1, 1});
    page.fill(2, Clear);
    RawClient app(socket, "app");
    app.send(below.window(2, 0, false), {below.fd()});
    app.send(commitOf(2, 0, 1));
    app.send(page.window(1, 1, true), {page.fd()});
    app.show(0, 1);
    EXPECT_EQ(pixel(799, 100), Green);
    app.show(1, 2, Json::array({{790, 90, 10, 20}}));
    EXPECT_EQ(pixel(799, 100), Red);
    EXPECT_EQ(pixel(799, 101), Green);
    app.show(2, 3, Json::array({{790, 90, 10, 20}}));
    EXPECT_EQ(pixel(799, 100), Green);
    app.show(1, 4, Json::array({{799, 100, 1, 1}}));
    EXPECT_EQ(pixel(799, 100), Red);
    app.send({{"t", "props"}, {"window", 1}, {"height", 240}});
    app.sync();
    EXPECT_EQ(pixel(799, 50), Red) << "a page at half its height";
    EXPECT_EQ(pixel(799, 100), Green);
}

TEST_F(ScreenTest, OfEqualOrderTheLaterWindowIsInFront) {
    Memory first(20, 20);
    Memory second(20, 20);
    first.fill(0, Red);
    second.fill(0, Green);
    RawClient app(socket, "app");
    app.open(first);
    app.open(second, 2);
    app.send(commitOf(2, 0, 1));
    app.show(0, 1);
    EXPECT_EQ(pixel(5, 5), Green);
    app.send({{"t", "props"}, {"window", 1}, {"order", 2}});
    app.sync();
    EXPECT_EQ(pixel(5, 5), Red);
}

TEST_F(ScreenTest, OnlyWhatChangedIsDrawnAndTold) {
    RedApplication app(socket);
    compose();
    takeDamages();
    app.memory.fill(1, Green);
    app.show(1, 2, Json::array({{10, 20, 30, 40}, {700, 400, 1000, 1000}}));
    EXPECT_TRUE(eventually([&] { return takeDamages() == std::vector<Rect>{{10, 20, 790, 460}}; }));
    EXPECT_EQ(pixel(10, 20), Green);
    EXPECT_EQ(pixel(39, 59), Green);
    EXPECT_EQ(pixel(40, 60), Red) << "outside the damage the frame stays";
    EXPECT_EQ(pixel(799, 479), Green);
}

TEST_F(ScreenTest, ManyChangesOfOneTurnAreToldOnceUntilComposed) {
    RedApplication app(socket);
    compose();
    takeDamages();
    for (int i = 0; i < 20; ++i) {
        app.send(commitOf(1, i % 3, i + 2, Json::array({{i, i, 1, 1}})));
    }
    app.sync();
    ASSERT_TRUE(eventually([&] { return call([this] { return !damages.empty(); }); }));
    EXPECT_EQ(takeDamages().size(), 1u);
    const uint64_t before = call([this] { return compositor->composedFrames(); });
    EXPECT_EQ(compose(), before + 1);
    EXPECT_EQ(compose(), before + 1) << "nothing to draw";
}

/** Somebody else may want the frame first, for a screenshot. */
TEST_F(ScreenTest, WhatIsComposedBeforeItWasToldIsToldAllTheSame) {
    RedApplication app(socket);
    compose();
    takeDamages();
    call([this] {
        compositor->setAppVisible(false);
        return compositor->compose().width;
    });
    EXPECT_TRUE(eventually([&] { return takeDamages() == std::vector<Rect>{{0, 0, 800, 480}}; }));
    compose();
    app.sync();
    EXPECT_TRUE(takeDamages().empty());
}

TEST_F(ScreenTest, AHiddenWindowCostsNothing) {
    Memory memory(800, 480);
    RawClient app(socket, "app");
    app.send(memory.window(1, 3, true, false), {memory.fd()});
    app.sync();
    compose();
    const uint64_t before = compose();
    takeDamages();
    app.send(commitOf(1, 0, 1));
    app.send(commitOf(1, 1, 2));
    app.send({{"t", "props"}, {"window", 1}, {"x", 5}, {"order", 9}});
    app.sync();
    EXPECT_EQ(compose(), before);
    EXPECT_TRUE(takeDamages().empty());
}

TEST_F(ScreenTest, ABufferComesBackWhenANewerOneHasTakenItsPlace) {
    Memory memory(20, 20);
    RawClient app(socket, "app");
    app.open(memory);
    app.send(commitOf(1, 0, 11));
    EXPECT_TRUE(app.sync().empty());
    app.send(commitOf(1, 0, 12));
    EXPECT_TRUE(app.sync().empty()) << "the same buffer again is held still";
    app.send(commitOf(1, 2, 13));
    const auto messages = app.sync();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0], (Json{{"t", "release"}, {"window", 1}, {"buffer", 0}, {"seq", 12}}));
}

TEST_F(ScreenTest, AWindowIsMovedScaledAndCutAtTheScreensEdges) {
    Memory memory(2, 2);
    memory.fill(0, Red, {0, 0, 1, 2});
    memory.fill(0, Green, {1, 0, 1, 2});
    RawClient app(socket, "app");
    app.open(memory);
    app.send(commitOf(1, 0, 1));
    app.send({{"t", "props"}, {"window", 1}, {"x", -100}, {"y", 380}, {"width", 400}, {"height", 200}});
    app.sync();
    EXPECT_EQ(pixel(0, 379), Black);
    EXPECT_EQ(pixel(0, 380), Red);
    EXPECT_EQ(pixel(99, 479), Red);
    EXPECT_EQ(pixel(100, 479), Green);
    EXPECT_EQ(pixel(299, 400), Green);
    EXPECT_EQ(pixel(300, 400), Black);
    app.send({{"t", "props"}, {"window", 1}, {"x", 2147483647}, {"width", -5}, {"height", 1e300}});
    app.sync();
    EXPECT_EQ(pixel(0, 400), Black);
}

TEST_F(ScreenTest, AClosedWindowGoesAway) {
    RedApplication app(socket);
    EXPECT_EQ(pixel(1, 1), Red);
    app.send({{"t", "close"}, {"window", 1}});
    app.sync();
    EXPECT_EQ(pixel(1, 1), Black);
    app.open(app.memory);
    EXPECT_TRUE(app.sync().empty()) << "its number is free again";
}

TEST_F(ScreenTest, AClientThatDiesTakesItsWindowsAway) {
    {
        const RedApplication app(socket);
        EXPECT_EQ(pixel(1, 1), Red);
        EXPECT_TRUE(call([this] { return compositor->appConnected(); }));
    }
    EXPECT_TRUE(eventually([&] { return pixel(1, 1) == Black; }));
    EXPECT_FALSE(call([this] { return compositor->appConnected(); }));
}

TEST_F(ScreenTest, OverAHiddenApplicationLiesTheCover) {
    RedApplication app(socket);
    call([this] {
        compositor->setAppVisible(false);
        return 0;
    });
    EXPECT_EQ(pixel(1, 1), Black) << "no cover yet";
    call([this] {
        Image cover(800, 400);
        for (size_t i = 0; i < cover.pixels.size(); i += 4) {
            std::memcpy(&cover.pixels[i], &Blue, 4);
        }
        compositor->setCover(std::move(cover));
        return 0;
    });
    // What the hidden application does meanwhile must not take the wish to show the cover away.
    app.show(1, 2);
    EXPECT_EQ(pixel(1, 1), Blue);
    EXPECT_EQ(pixel(1, 400), Black) << "the cover is smaller than the screen";
    const uint64_t before = compose();
    app.memory.fill(2, Green);
    app.show(2, 3);
    EXPECT_EQ(compose(), before) << "nobody sees it";
    call([this] {
        compositor->setAppVisible(true);
        return 0;
    });
    EXPECT_EQ(pixel(1, 1), Green);
}

TEST_F(ScreenTest, ASecondCompositorOnTheSameSocketIsRefused) {
    EventLoop other;
    bench::screen::Compositor second(other, socket);
    EXPECT_FALSE(second.start());
}

} // namespace zm::test
