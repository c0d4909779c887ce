#include "tests/views/osd_view.h"

namespace zm::test {

using OsdFrame = OsdView;

TEST_F(OsdFrame, StartsWithUnknownCountersAndTimes) {
    for (const int bar : {OSD_WND_DVD, OSD_WND_VCD, OSD_WND_VIDEO}) {
        SCOPED_TRACE(bar);
        EXPECT_EQ(unit.osd.item(bar, OSD_ITEM_TRACK).text, "--/--");
        EXPECT_EQ(unit.osd.item(bar, OSD_ITEM_ELAPSED).text, "00:00");
        EXPECT_EQ(unit.osd.item(bar, OSD_ITEM_TOTAL).text, "00:00");
        EXPECT_EQ(unit.osd.item(bar, OSD_ITEM_PROGRESS).progress, 0);
    }
    EXPECT_EQ(unit.osd.item(OSD_WND_DVD, OSD_ITEM_CHAPTER).text, "--/--");
}

TEST_F(OsdFrame, DiscBarsStartWithoutAStatePicture) {
    for (const int bar : {OSD_WND_DVD, OSD_WND_VCD}) {
        SCOPED_TRACE(bar);
        EXPECT_TRUE(unit.osd.item(bar, OSD_ITEM_TOP_3).visible);
        EXPECT_FALSE(unit.osd.item(bar, OSD_ITEM_TOP_4).visible);
        EXPECT_FALSE(unit.osd.item(bar, OSD_ITEM_STATE_PIC).visible);
        EXPECT_EQ(unit.osd.item(bar, OSD_ITEM_STATE_PIC).icon(), 0);
        EXPECT_EQ(unit.osd.item(bar, OSD_ITEM_STATE_TEXT).text, " ");
    }
}

TEST_F(OsdFrame, FileBarsStartWithTheirTitle) {
    EXPECT_EQ(unit.osd.item(OSD_WND_VIDEO, OSD_ITEM_PIC_TEXT).textId, 107);
    EXPECT_EQ(unit.osd.item(OSD_WND_PICTURE, OSD_ITEM_PIC_TEXT).textId, 107);
}

TEST_F(OsdFrame, TheBarFollowsTheClipType) {
    for (const OsdClip& clip : EVERY_CLIP) {
        SCOPED_TRACE(clip.type);
        unit.disc.mediaType(clip.type);
        unit.onViewThread([&] { unit.osdView().ShowCurWnd(true); });
        unit.settle();
        EXPECT_EQ(unit.osd.shown().front(), clip.window);
    }
    EXPECT_EQ(unit.log("[DiscOsdView::OnUserMessage]-------set m_nCurPlayType=4").size(), 1u);
}

TEST_F(OsdFrame, OtherClipTypesLeaveTheBar) {
    playClip(VCD);
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_MUSIC, PLAY_TYPE_UNKNOWN}) {
        unit.disc.mediaType(type);
        unit.onViewThread([&] { unit.osdView().ShowCurWnd(true); });
        EXPECT_EQ(unit.osd.window(), OSD_WND_VCD) << type;
    }
}

TEST_F(OsdFrame, ANewClipTypeTakesTheStatePictureAway) {
    playClip(DVD);
    unit.disc.tip(4);
    ASSERT_EQ(picture(), 272);
    setKeyType(OSD_KEY_NONE);
    unit.disc.tip(4);
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    EXPECT_EQ(picture(), 0);
    EXPECT_EQ(keyType(), OSD_KEY_NONE);
}

TEST_F(OsdFrame, ShowingABarRefreshesCountersTimesAndStatus) {
    playClip(DVD);
    unit.onViewThread([&] { unit.osdView().ShowCurWnd(false); });
    unit.onViewThread([&] { // behind the view's back: only showing the bar can bring these up
        CDiscData::GetInstance()->SetPlayTime({61, 122, 0});
        CDiscData::GetInstance()->SetCurPlayInfo({.chapter = 2, .title = 1, .chapters = 9, .titles = 3});
    });
    unit.deviceSilently(DEV_STATUS_BT, 2);
    unit.deviceSilently(DEV_STATUS_MUTE, 255);
    unit.deviceSilently(DEV_STATUS_CAR_TEMP, -52);
    unit.onViewThread([&] { unit.osdView().ShowCurWnd(true); });
    EXPECT_EQ(text(OSD_ITEM_TRACK), "1/3");
    EXPECT_EQ(text(OSD_ITEM_CHAPTER), "2/9");
    EXPECT_EQ(text(OSD_ITEM_ELAPSED), "01:01");
    EXPECT_EQ(text(OSD_ITEM_CLOCK), "12:00");
    EXPECT_EQ(text(OSD_ITEM_BT), "2");
    EXPECT_TRUE(item(OSD_ITEM_MUTE).visible);
    EXPECT_EQ(text(OSD_ITEM_TEMP), "-5.2");
    EXPECT_FALSE(unit.log("[DiscOsdView::OnShow] dwWndId=1,bShow=1").empty());
    EXPECT_FALSE(unit.log("[DiscOsdView::OnShow] end").empty());
}

TEST_F(OsdFrame, ShowingTheVideoBarDoesNotRefreshTheTimes) {
    playClip(VIDEO);
    unit.disc.playTime(5, 10);
    unit.onViewThread([&] {
        unit.osdView().ShowCurWnd(false);
        CDiscData::GetInstance()->SetPlayTime({61, 122, 0});
        CDiscData::GetInstance()->SetCurPlayInfo({.curMediaId = 7, .curMediaIds = 9});
        unit.osdView().ShowCurWnd(true);
    });
    EXPECT_EQ(text(OSD_ITEM_TRACK), "7/9");
    EXPECT_EQ(text(OSD_ITEM_ELAPSED), "00:05");
}

TEST_F(OsdFrame, ShowingABarClosesTheSourceGroup) {
    for (const OsdClip& clip : EVERY_CLIP) {
        SCOPED_TRACE(clip.type);
        playClip(clip);
        press(SRC_CTRL_OPEN);
        ASSERT_TRUE(item(ITEM_SRC_GROUP).visible);
        unit.onViewThread([&] { unit.osdView().ShowCurWnd(true); });
        EXPECT_FALSE(item(ITEM_SRC_GROUP).visible);
    }
}

TEST_F(OsdFrame, ThePadThatStartUpShowsGoesWithTheFirstOverlay) {
    EXPECT_THAT(unit.osd.shown(), ElementsAre(OSD_WND_GOTO));
    play(PLAY_TYPE_DVD);
    unit.click(WND_VIDEO, 1, BT_STATE_RELEASED);
    unit.advance(10s);
    EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
}

TEST_F(OsdFrame, RedrawingEverythingClosesTheSourceGroup) {
    playClip(DVD);
    press(SRC_CTRL_OPEN);
    unit.onViewThread([&] { unit.osdView().DrawAllItem(); });
    EXPECT_FALSE(item(ITEM_SRC_GROUP).visible);
}

TEST_F(OsdFrame, TheOverlayGoesTenSecondsAfterTheLastTouch) {
    playClip(DVD);
    unit.click(WND_VIDEO, 1, BT_STATE_RELEASED);
    ASSERT_TRUE(unit.osd.visible());
    unit.advance(6s);
    unit.clickOsd(OSD_WND_DVD, 1, BT_STATE_PRESSED); // whatever it hits
    unit.advance(9999ms);
    EXPECT_TRUE(unit.osd.visible());
    unit.advance(1ms);
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(OsdFrame, MessageResultsAreThoseOfTheTable) {
    const std::map<int, int> results = {{1000, 0}, {1001, 0}, {1004, 0}, {1007, 1}, {1008, 1}, {1009, 0},
                                        {1010, 0}, {1011, 0}, {1016, 0}, {1021, 0}, {1022, 1}, {1024, 0},
                                        {1026, 1}, {1025, 0}, {999, 0},  {1027, 0}, {1028, 0}};
    playClip(DVD);
    for (const auto& [code, result] : results) {
        EXPECT_EQ(message(code), result) << code;
    }
}

TEST_F(OsdFrame, TrackInfoIsHandledForClipsWithAStateDisplayOnly) {
    for (const OsdClip& clip : EVERY_CLIP) {
        playClip(clip);
        EXPECT_EQ(message(DISC_VMSG_TRACKINFO), clip.type == PLAY_TYPE_PHOTO ? 0 : 1) << clip.type;
    }
}

TEST_F(OsdFrame, WithoutAMessageNothingHappens) {
    unit.onViewThread([&] { EXPECT_EQ(unit.osdView().OnUserMessage(nullptr), 0); });
}

TEST_F(OsdFrame, ANullControllerIsNotAttached) {
    playClip(DVD);
    unit.onViewThread([&] { unit.osdView().AttachControl(nullptr); });
    press(OSD_CTRL_STOP);
    EXPECT_THAT(unit.commands(), ElementsAre("22,0,0"));
}

TEST_F(OsdFrame, ReadErrorsAreLoggedUnderTheMainViewsName) {
    playClip(DVD);
    const auto before = unit.log("[OnUserMessage]-[DiscView::OnUserMessage]-------READ_ERROR").size();
    unit.disc.error(32);
    const auto after = unit.log("[DiscView::OnUserMessage]-------READ_ERROR").size();
    EXPECT_EQ(after - before, 2u); // once by each view
}

} // namespace zm::test
