#include "tests/screen/ScreenFixture.h"

namespace zm::test {

class VideoWindowTest : public ScreenTest {
protected:
    VideoWindowTest() {
        for (int buffer = 0; buffer < 3; ++buffer) {
            memory.fill(buffer, buffer == 0 ? Red : Green);
        }
        decoder.send(memory.window(1, 0, false), {memory.fd()});
    }
    unsigned post() {
        return call([this] { return compositor->postChild("zmdisc_video_win"); });
    }
    void show() {
        app.send({{"t", "props"}, {"name", "zmdisc_video_win"}, {"visible", true}, {"order", 2}});
        app.sync();
    }
    void lock(bool locked) {
        call([=, this] {
            compositor->lockVideo(locked);
            return 0;
        });
    }
    void frame(int buffer) {
        decoder.send(commitOf(1, buffer, ++sequence));
        decoder.sync();
    }

    Memory memory{800, 480};
    RawClient app{socket, "app"};
    RawClient decoder{socket, "video"};
    int sequence = 0;
};

TEST_F(VideoWindowTest, ShowsWhatTheDecoderShowsWhenItIsPosted) {
    frame(1);
    EXPECT_EQ(pixel(1, 1), Black) << "the decoder's window is not shown by itself";
    post();
    show();
    EXPECT_EQ(pixel(1, 1), Green);
    call([this] { return compositor->withdrawChild("zmdisc_video_win"); });
    EXPECT_EQ(pixel(1, 1), Black);
    post();
    show();
    EXPECT_EQ(pixel(1, 1), Green) << "paused, the decoder sends no other picture";
}

TEST_F(VideoWindowTest, IsBlackUntilTheDecoderShowsSomething) {
    post();
    show();
    EXPECT_EQ(pixel(1, 1), Black);
    frame(1);
    EXPECT_EQ(pixel(1, 1), Green);
}

TEST_F(VideoWindowTest, ItsStateTellsPlaceOrderAndFramesSincePosting) {
    EXPECT_EQ(video(), (Json{{"posted", false},
                             {"visible", false},
                             {"rect", {0, 0, 0, 0}},
                             {"zorder", 0},
                             {"frames", 0},
                             {"locked", false}}));
    frame(0);
    post();
    EXPECT_EQ(video(), (Json{{"posted", true},
                             {"visible", false},
                             {"rect", {0, 0, 800, 480}},
                             {"zorder", 0},
                             {"frames", 0},
                             {"locked", false}}));
    show();
    app.send({{"t", "props"},
              {"name", "zmdisc_video_win"},
              {"x", 10},
              {"y", 20},
              {"width", 400},
              {"height", 240}});
    app.sync();
    frame(0);
    frame(1);
    EXPECT_EQ(video(), (Json{{"posted", true},
                             {"visible", true},
                             {"rect", {10, 20, 400, 240}},
                             {"zorder", 2},
                             {"frames", 2},
                             {"locked", false}}));
    EXPECT_EQ(pixel(9, 20), Black);
    EXPECT_EQ(pixel(10, 20), Green);
    EXPECT_EQ(pixel(409, 259), Green);
    EXPECT_EQ(pixel(410, 259), Black);
}

TEST_F(VideoWindowTest, PostingAgainKeepsTheWindowAndWithdrawingTakesItAway) {
    const unsigned number = post();
    EXPECT_EQ(post(), number);
    show();
    frame(1);
    EXPECT_EQ(post(), number);
    EXPECT_EQ(pixel(1, 1), Green);
    EXPECT_TRUE(call([this] { return compositor->withdrawChild("zmdisc_video_win"); }));
    EXPECT_FALSE(call([this] { return compositor->withdrawChild("zmdisc_video_win"); }));
    EXPECT_EQ(pixel(1, 1), Black);
    EXPECT_FALSE(video()["posted"]);
    EXPECT_NE(post(), number);
    EXPECT_EQ(video()["frames"], 0);
    app.send({{"t", "props"}, {"window", number}, {"visible", true}});
    EXPECT_TRUE(app.sync().empty()) << "placing a window that has gone is no fault";
    EXPECT_FALSE(video()["visible"]);
}

TEST_F(VideoWindowTest, LockedItIsNotSeenWhateverTheApplicationAsksFor) {
    post();
    show();
    frame(1);
    EXPECT_EQ(pixel(1, 1), Green);
    lock(true);
    EXPECT_EQ(pixel(1, 1), Black);
    EXPECT_EQ(pixel(799, 479), Black);
    frame(0);
    app.send({{"t", "props"}, {"name", "zmdisc_video_win"}, {"visible", false}});
    show();
    EXPECT_EQ(pixel(1, 1), Black);
    call([this] { return compositor->withdrawChild("zmdisc_video_win"); });
    post();
    show();
    frame(1);
    EXPECT_EQ(pixel(1, 1), Black) << "one that is posted meanwhile is locked, too";
    EXPECT_EQ(video()["locked"], true);
    EXPECT_EQ(video()["visible"], true) << "as it was asked for";
    EXPECT_EQ(video()["frames"], 1);
    lock(false);
    EXPECT_EQ(pixel(1, 1), Green);
    EXPECT_EQ(pixel(799, 479), Green);
}

TEST_F(VideoWindowTest, LockedItCostsNothing) {
    post();
    show();
    frame(1);
    lock(true);
    const uint64_t before = compose();
    takeDamages();
    frame(0);
    frame(1);
    EXPECT_EQ(compose(), before);
    EXPECT_TRUE(takeDamages().empty());
}

TEST_F(VideoWindowTest, TheApplicationMayNameItByItsNumber) {
    const unsigned number = post();
    app.send({{"t", "props"}, {"window", number}, {"visible", true}});
    app.sync();
    EXPECT_TRUE(video()["visible"]);
}

TEST_F(VideoWindowTest, TheDecoderCannotPlaceIt) {
    const unsigned number = post();
    decoder.send({{"t", "props"}, {"window", number}, {"visible", true}});
    decoder.send({{"t", "props"}, {"name", "zmdisc_video_win"}, {"visible", true}});
    decoder.sync();
    EXPECT_FALSE(video()["visible"]);
}

TEST_F(VideoWindowTest, WithoutItsDecoderItIsBlack) {
    post();
    show();
    {
        RawClient shortLived(socket, "video");
        shortLived.send(memory.window(1, 0, false), {memory.fd()});
        shortLived.send(commitOf(1, 1, 1));
        shortLived.sync();
        EXPECT_EQ(pixel(1, 1), Green);
    }
    EXPECT_TRUE(eventually([&] { return pixel(1, 1) == Black; }));
    EXPECT_TRUE(video()["visible"]);
}

TEST_F(VideoWindowTest, ItIsHiddenWhenItsApplicationDies) {
    post();
    {
        RawClient only(socket, "app");
        app = RawClient(socket, "app");
        show();
        frame(1);
        EXPECT_EQ(pixel(1, 1), Green);
        app = RawClient(socket, "");
        EXPECT_TRUE(video()["visible"]) << "another application client is left";
    }
    EXPECT_TRUE(eventually([&] { return pixel(1, 1) == Black; }));
    EXPECT_FALSE(video()["visible"]);
    EXPECT_TRUE(video()["posted"]);
}

} // namespace zm::test
