// Each change of a page that is shown stands on the screen at once: one for each item that is drawn by itself,
// with nothing behind it that would draw the page anew.

#include "parts/DiscTimers.h"
#include "tests/views/DrawingView.h"

namespace zm::test {

namespace {

const char* barName(const testing::TestParamInfo<OsdClip>& bar) {
    switch (bar.param.window) {
    case OSD_WND_DVD:
        return "Dvd";
    case OSD_WND_VCD:
        return "Vcd";
    case OSD_WND_VIDEO:
        return "Video";
    default:
        return "Picture";
    }
}

} // namespace

class ShownBar : public DrawingView, public testing::WithParamInterface<OsdClip> {
protected:
    void SetUp() override {
        unit.time("10:10", 24);
        playClip(GetParam());
        unit.click(WND_VIDEO, 1);
        ASSERT_THAT(unit.osd.shown(), ElementsAre(window));
        ASSERT_TRUE(unit.osd.visible());
    }
    void expectDrawn(std::initializer_list<int> items, const std::function<void()>& action) {
        expectChange(unit.osd, window, items, action);
    }
    bool isDvd() const { return GetParam().type == PLAY_TYPE_DVD; }
    bool isPicture() const { return GetParam().type == PLAY_TYPE_PHOTO; }
};

TEST_P(ShownBar, DrawsItsCounters) {
    expectDrawn({OSD_ITEM_TRACK}, [&] {
        unit.disc.track(
            {.curMediaId = 4, .curMediaIds = 9, .mediaId = 5, .mediaIds = 11, .title = 2, .titles = 7});
    });
    if (isDvd()) {
        expectDrawn({OSD_ITEM_CHAPTER}, [&] { unit.disc.track({.chapter = 8, .chapters = 20}); });
    }
}

TEST_P(ShownBar, DrawsItsTimes) {
    if (isPicture()) {
        GTEST_SKIP() << "a picture has no times";
    }
    unit.disc.playTime(15, 30);
    expectDrawn({OSD_ITEM_ELAPSED, OSD_ITEM_TOTAL, OSD_ITEM_PROGRESS}, [&] { unit.disc.playTime(75, 300); });
}

TEST_P(ShownBar, DrawsItsPlayButtons) {
    const auto reports = [&](int state) { return [this, state] { unit.disc.state(state); }; };
    unit.disc.state(DISC_STATE_PLAYING);
    expectDrawn({OSD_ITEM_PLAY, OSD_ITEM_PAUSE}, reports(DISC_STATE_PAUSED));
    expectDrawn({OSD_ITEM_PLAY, OSD_ITEM_PAUSE}, reports(DISC_STATE_PLAYING));
}

TEST_P(ShownBar, DrawsItsStateDisplay) {
    if (isPicture()) {
        GTEST_SKIP() << "a picture has no pause";
    }
    unit.disc.state(DISC_STATE_PLAYING);
    const auto playing = cut(item(OSD_ITEM_STATE_TEXT).rect);
    const auto reports = [&](int state) { return [this, state] { unit.disc.state(state); }; };
    expectDrawn({OSD_ITEM_STATE_PIC, OSD_ITEM_STATE_TEXT}, reports(DISC_STATE_STOPPED));
    expectDrawn({OSD_ITEM_STATE_PIC, OSD_ITEM_STATE_TEXT}, reports(DISC_STATE_PLAYING));
    EXPECT_EQ(cut(item(OSD_ITEM_STATE_TEXT).rect), playing);
}

TEST_P(ShownBar, DrawsItsStatus) {
    expectStatusDrawn(unit.osd, window);
}

TEST_P(ShownBar, DrawsThatTheSourcePopupWentByItself) {
    const auto open = [&] {
        press(OSD_CTRL_SRC_OPEN);
        ASSERT_TRUE(item(OSD_ITEM_SRC_GROUP).visible);
    };
    open();
    expectDrawn({OSD_ITEM_SRC_GROUP}, [&] { expire(ENUM_TIMER_DISPLAY_SRC); });
    open();
    expectDrawn({OSD_ITEM_SRC_GROUP}, [&] { unit.app("resume"); });
}

INSTANTIATE_TEST_SUITE_P(Each, ShownBar, testing::ValuesIn(EVERY_CLIP), barName);

class ShownPlayPage : public DrawingView {
protected:
    void expectDrawn(std::initializer_list<int> items, const std::function<void()>& action) {
        expectChange(unit.main, WND_AUDIO_PLAY, items, action);
    }
};

TEST_F(ShownPlayPage, DrawsTimesAndPlayButtons) {
    play(PLAY_TYPE_MUSIC);
    expectDrawn({ITEM_ELAPSED, ITEM_TOTAL, ITEM_PROGRESS}, [&] { unit.disc.playTime(75, 300); });
    expectDrawn({ITEM_PLAY, ITEM_PAUSE}, [&] { unit.disc.state(DISC_STATE_PAUSED); });
    expectDrawn({ITEM_PLAY, ITEM_PAUSE}, [&] { unit.disc.state(DISC_STATE_PLAYING); });
    expectDrawn({ITEM_REPEAT, ITEM_SHUFFLE}, [&] { unit.disc.playState(2, 1, 0); });
}

TEST_F(ShownPlayPage, DrawsTheTextsOfATrack) {
    play(PLAY_TYPE_CD);
    expectDrawn({ITEM_TITLE, ITEM_ARTIST, ITEM_ALBUM},
                [&] { unit.disc.id3("A title", "An artist", "An album"); });
}

TEST_F(ShownPlayPage, DrawsItsStatus) {
    unit.time("10:10", 24);
    play(PLAY_TYPE_MUSIC);
    expectStatusDrawn(unit.main, WND_AUDIO_PLAY);
}

} // namespace zm::test
