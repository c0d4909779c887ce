#include "tests/views/OsdView.h"
#include "zmui/CUIAnalysis.h"
#include "zmui/CUIWndMng.h"

namespace zm::test {

struct ControlCase {
    int control;
    std::vector<std::string> commands = {};
    int keyType = 0;
    std::vector<std::string> applications = {};
    int beeps = 1;
};

class OsdControls : public OsdView {
protected:
    /** Clicks each control with a fresh key type and compares what it did. */
    void expectRows(const std::vector<ControlCase>& rows) {
        for (const ControlCase& row : rows) {
            SCOPED_TRACE(row.control);
            setKeyType(OSD_KEY_NONE);
            forget();
            press(row.control);
            EXPECT_EQ(unit.commands(), row.commands);
            EXPECT_EQ(keyType(), row.keyType);
            EXPECT_EQ(applications(), row.applications);
            EXPECT_EQ(beeps(), row.beeps);
        }
    }
};

/** What the bars of discs and video files have in common. */
const std::vector<ControlCase> PLAYER_BAR = {
    {6522, {PlayPause()}, 5},
    {6523, {PlayPause()}, 5},
    {6503, {SetShuffleMode(0)}, 7},
    {6504, {SetRepeatMode(0)}, 9},
    {6506},
    {2069, {}, 0, {}, 0}, // the progress bar is silent
    {6525, {}, 0, {"zmeq null"}},
    {6551, {StopPlayBack()}, 22},
    {7777, {}, 0, {}, 0},
};

const std::vector<ControlCase> SOURCE_GROUP = {
    {103, {}, 0, {"zmradio null"}},   {105, {}, 0, {"zmusb null"}},
    {106, {}, 0, {"zmbttel null"}},   {107, {}, 0, {"zmnavi null"}},
    {111, {}, 0, {"zmasr null"}},     {118, {}, 0, {"zmaux1 null"}},
    {119, {}, 0, {"zmaircond null"}}, {99},
};

TEST_F(OsdControls, DiscBar) {
    for (const OsdClip& clip : {DVD, VCD}) {
        SCOPED_TRACE(clip.type);
        playClip(clip);
        expectRows(PLAYER_BAR);
        expectRows({
            {6507},
            {5007},
            {5008},
            {3, {}, 0, {"zmhome null"}},
            {6535, {SelectAudioChannel()}, clip.type == PLAY_TYPE_VCD ? 69 : 11},
            {6555, {SelectSubtitle()}, 18},
            {6556, {KeyAngle()}, 12},
            {6557, {ReturnToMenu()}, 21},
            {6558},
            {6561, {PlaybackControl()}},
            {4, {}, 0, {}, 0}, // no way back from a disc
            {6571, {}, 0, {}, 0},
        });
        expectRows(SOURCE_GROUP);
    }
}

TEST_F(OsdControls, VideoBar) {
    playClip(VIDEO);
    expectRows(PLAYER_BAR);
    expectRows({
        {6603},
        {3, {}, 0, {}, 0}, // no home: silent
        {6507, {}, 0, {}, 0},
        {5007, {}, 0, {}, 0},
        {6535, {}, 0, {}, 0},
        {6555, {}, 0, {}, 0},
    });
    expectRows(SOURCE_GROUP);
}

TEST_F(OsdControls, PictureBar) {
    playClip(PICTURE);
    expectRows({
        {6522, {PlayPause()}},
        {6523, {PlayPause()}},
        {6521, {PreviousClip()}},
        {6524, {NextClip()}},
        {6571, {Zoom()}},
        {6574, {KeyRotation()}},
        {3, {}, 0, {}, 0},
        {2069, {}, 0, {}, 0},
        {6503, {}, 0, {}, 0},
        {6505, {}, 0, {}, 0},
        {6525, {}, 0, {}, 0},
        {7777, {}, 0, {}, 0},
    });
    expectRows(SOURCE_GROUP);
}

TEST_F(OsdControls, ReturnLeavesTheOverlayForTheList) {
    for (const OsdClip& clip : {VIDEO, PICTURE}) {
        playClip(clip);
        unit.clickOsd(clip.window, OSD_CTRL_RETURN, BT_STATE_RELEASED);
        EXPECT_EQ(beeps(), 1);
        EXPECT_FALSE(unit.log("DISC_VMSG_OSDRETURN m_nCurPlayType=" + std::to_string(clip.type)).empty());
        unit.advance(50ms);
        EXPECT_EQ(unit.main.window(), WND_MEDIA_LIST);
    }
}

TEST_F(OsdControls, TheNumberPadOpensOnDiscAndVideoBars) {
    for (const OsdClip& clip : {DVD, VCD, VIDEO}) {
        playClip(clip);
        press(OSD_CTRL_GOTO);
        EXPECT_THAT(unit.osd.shown(), testing::Contains(OSD_WND_GOTO)) << clip.type;
        EXPECT_EQ(beeps(), 1);
        unit.clickOsd(OSD_WND_GOTO, GOTO_KEY_CLOSE, BT_STATE_RELEASED);
    }
}

TEST_F(OsdControls, HomeOnTheVideoBarIsSilent) {
    playClip(VIDEO);
    press(OSD_CTRL_HOME);
    EXPECT_THAT(unit.requests(), IsEmpty());
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(OsdControls, AudioOnAVideoFileOnlyBeeps) {
    playClip(DVD);
    unit.disc.mediaType(PLAY_TYPE_VIDEO);
    forget();
    unit.clickOsd(OSD_WND_DVD, OSD_CTRL_AUDIO, BT_STATE_RELEASED);
    EXPECT_EQ(beeps(), 1);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(keyType(), OSD_KEY_NONE);
}

TEST_F(OsdControls, AFunctionThatIsMissingIsShownForThreeSeconds) {
    playClip(DVD);
    press(OSD_CTRL_NOFUNC);
    EXPECT_EQ(picture(), 275);
    EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, 163);
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.advance(2999ms);
    EXPECT_EQ(picture(), 275);
    unit.advance(1ms);
    EXPECT_EQ(picture(), 0);
}

TEST_F(OsdControls, OnlyAReleaseActsExceptForSeeking) {
    for (const OsdClip& clip : EVERY_CLIP) {
        playClip(clip);
        for (const int state : {0, 2, 3, 4}) {
            unit.clickOsd(clip.window, OSD_CTRL_PLAY, state);
            unit.clickOsd(clip.window, OSD_CTRL_SRC_RADIO, state);
        }
        EXPECT_THAT(unit.commands(), IsEmpty()) << clip.type;
        EXPECT_THAT(unit.requests(), IsEmpty()) << clip.type;
    }
}

TEST_F(OsdControls, ClicksOnOtherWindowsDoNothingButAreLogged) {
    playClip(DVD);
    unit.clickOsd(3, OSD_CTRL_STOP, BT_STATE_RELEASED);
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_FALSE(unit.log("[DiscOsdView::OnClick]--nWndId=3,nCtrlId=6551,nBtState=1").empty());
}

TEST_F(OsdControls, TheSourceGroupClosesAfterFiveSeconds) {
    for (const OsdClip& clip : EVERY_CLIP) {
        SCOPED_TRACE(clip.type);
        playClip(clip);
        press(OSD_CTRL_SRC_OPEN);
        EXPECT_EQ(beeps(), 1);
        EXPECT_TRUE(item(OSD_ITEM_SRC_GROUP).visible);
        unit.advance(4999ms);
        EXPECT_TRUE(item(OSD_ITEM_SRC_GROUP).visible);
        unit.advance(1ms);
        EXPECT_FALSE(item(OSD_ITEM_SRC_GROUP).visible);
    }
}

TEST_F(OsdControls, ClosingTheSourceGroupLeavesItsTimerRunning) {
    playClip(DVD);
    press(OSD_CTRL_SRC_OPEN);
    unit.advance(3s);
    press(OSD_CTRL_SRC_CLOSE);
    EXPECT_FALSE(item(OSD_ITEM_SRC_GROUP).visible);
    // The timer's expiry shows on the main view's page, where the group is opened behind its back.
    const int page = unit.main.window();
    unit.onViewThread([&] {
        CUIAnalysis& items = *unit.view().GetUIWndMgrWrapper()->GetUIAnalysisObj();
        items.ShowItem(page, OSD_ITEM_SRC_GROUP, true);
        items.drawItem(page, OSD_ITEM_SRC_GROUP);
    });
    unit.advance(2s);
    EXPECT_FALSE(unit.main.item(page, OSD_ITEM_SRC_GROUP).visible);
}

TEST_F(OsdControls, EveryRequestHasLaunchTypeZero) {
    playClip(DVD);
    for (const int control : {103, 105, 106, 107, 111, 118, 119, 3, 6525}) {
        unit.clearRequests();
        press(control);
        EXPECT_THAT(unit.requests(),
                    testing::Contains(testing::AllOf(HasSubstr("QueryLauncher"), HasSubstr(R"("type":0)"),
                                                     HasSubstr(R"("data":"null")"))))
            << control;
    }
}

TEST_F(OsdControls, ACommandThatIsAnsweredAtOnceFindsItsKey) {
    playClip(VCD);
    press(OSD_CTRL_AUDIO);
    unit.disc.audioChannel(2);
    EXPECT_EQ(picture(), 266);
}

/** The previous and next buttons of the disc and video bars. */
class OsdSeek : public OsdView {};

TEST_F(OsdSeek, AClickChangesTheClip) {
    for (const OsdClip& clip : {DVD, VCD, VIDEO}) {
        playClip(clip);
        press(OSD_CTRL_NEXT);
        press(OSD_CTRL_PREV);
        EXPECT_THAT(unit.commands(), ElementsAre(NextClip(), PreviousClip())) << clip.type;
        EXPECT_EQ(beeps(), 2);
    }
    EXPECT_EQ(unit.log("_PLATEN_[OnClickMainWnd]-touch").size(), 4u);
    EXPECT_EQ(unit.log("_PLATEN_[OnClickVideoWnd]-touch").size(), 2u);
}

TEST_F(OsdSeek, ALongTouchSeeksAndItsReleaseDoesNothing) {
    for (const OsdClip& clip : {DVD, VCD, VIDEO}) {
        playClip(clip);
        hold(OSD_CTRL_NEXT);
        press(OSD_CTRL_NEXT);
        EXPECT_THAT(unit.commands(), ElementsAre(FastForward())) << clip.type;
        EXPECT_EQ(beeps(), 1);
        forget();
        hold(OSD_CTRL_PREV);
        press(OSD_CTRL_PREV);
        EXPECT_THAT(unit.commands(), ElementsAre(FastBackward())) << clip.type;
    }
    EXPECT_EQ(unit.log("_PLATEN_[OnClickMainWnd]-long touch").size(), 4u);
    EXPECT_EQ(unit.log("_PLATEN_[OnClickVideoWnd]-long touch").size(), 2u);
}

TEST_F(OsdSeek, EachLongTouchReportSeeks) {
    playClip(DVD);
    hold(OSD_CTRL_NEXT);
    hold(OSD_CTRL_NEXT);
    EXPECT_THAT(unit.commands(), ElementsAre(FastForward(), FastForward()));
}

TEST_F(OsdSeek, TheMemoryOfALongTouchEndsWithAnyOtherClick) {
    playClip(DVD);
    hold(OSD_CTRL_NEXT);
    unit.clickOsd(3, 1, BT_STATE_PRESSED); // even one that hits nothing
    press(OSD_CTRL_NEXT);
    EXPECT_THAT(unit.commands(), ElementsAre(FastForward(), NextClip()));
}

TEST_F(OsdSeek, OtherTouchStatesDoNothing) {
    playClip(DVD);
    for (const int state : {0, 2, 3, 5}) {
        unit.clickOsd(OSD_WND_DVD, OSD_CTRL_NEXT, state);
        unit.clickOsd(OSD_WND_DVD, OSD_CTRL_PREV, state);
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_EQ(beeps(), 0);
}

TEST_F(OsdSeek, PicturesAreNotSoughtByALongTouch) {
    playClip(PICTURE);
    hold(OSD_CTRL_NEXT);
    press(OSD_CTRL_NEXT); // nor does the long touch swallow the release
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
}

TEST_F(OsdSeek, AHeldTouchOnTheScreenSeeksOnce) {
    playClip(DVD);
    unit.click(WND_VIDEO, 1, BT_STATE_RELEASED);
    ASSERT_EQ(unit.osd.window(), OSD_WND_DVD);
    forget();
    unit.touchItem(unit.osd, OSD_WND_DVD, OSD_CTRL_NEXT, 900ms);
    EXPECT_THAT(unit.commands(), ElementsAre(FastForward()));
    forget();
    unit.touchItem(unit.osd, OSD_WND_DVD, OSD_CTRL_NEXT);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
}

/** After a click on next or previous the chapter counter stands beside the chapter read then. */
TEST_F(OsdSeek, TwoClicksOnNextCountFromTheChapterAtTheSecond) {
    playClip(DVD);
    unit.disc.track({.chapter = 2, .chapters = 9});
    press(OSD_CTRL_NEXT);
    unit.disc.track({.chapter = 3, .chapters = 9});
    press(OSD_CTRL_NEXT);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip(), NextClip()));
    unit.disc.error(32);
    forget();
    unit.disc.state(2); // the unreadable chapter is 4
    EXPECT_THAT(unit.commands(), ElementsAre(PlayChapter(5)));
}

TEST_F(OsdSeek, PreviousCountsDown) {
    playClip(DVD);
    unit.disc.track({.chapter = 5, .chapters = 9});
    press(OSD_CTRL_PREV);
    unit.disc.error(32);
    forget();
    unit.disc.state(2);
    EXPECT_THAT(unit.commands(), ElementsAre(PlayChapter(5)));
}

/** An overlay that nobody gave a controller. */
class OsdControlsAlone : public OsdView {
protected:
    OsdControlsAlone() : OsdView(withoutOverlayControl()) {}
};

TEST_F(OsdControlsAlone, TheDiscAndVideoBarsIgnoreEveryTouch) {
    for (const OsdClip& clip : {DVD, VCD, VIDEO}) {
        playClip(clip);
        for (const int control : {6522, 6521, 6524, 6505, 6558, 4, 5, 103}) {
            press(control);
            hold(control);
        }
        EXPECT_FALSE(item(OSD_ITEM_SRC_GROUP).visible) << clip.type;
        EXPECT_EQ(picture(), 0);
        EXPECT_THAT(unit.osd.shown(), testing::Not(testing::Contains(OSD_WND_GOTO)));
        EXPECT_THAT(unit.commands(), IsEmpty());
        EXPECT_THAT(unit.requests(), IsEmpty());
    }
}

TEST_F(OsdControlsAlone, ThePictureBarStillOpensAndClosesTheSourceGroup) {
    playClip(PICTURE);
    press(OSD_CTRL_SRC_OPEN);
    EXPECT_TRUE(item(OSD_ITEM_SRC_GROUP).visible);
    press(OSD_CTRL_SRC_CLOSE);
    EXPECT_FALSE(item(OSD_ITEM_SRC_GROUP).visible);
    for (const int control : {6522, 6521, 6524, 6571, 6574, 4, 103, 119}) {
        press(control);
    }
    EXPECT_THAT(unit.commands(), IsEmpty());
    EXPECT_THAT(unit.requests(), IsEmpty());
}

TEST_F(OsdControlsAlone, TheTouchStateIsStillRemembered) {
    playClip(DVD);
    hold(OSD_CTRL_NEXT);
    unit.onViewThread([&] { unit.osdView().AttachControl(&unit.controller()); });
    press(OSD_CTRL_NEXT);
    EXPECT_THAT(unit.commands(), IsEmpty());
    press(OSD_CTRL_NEXT);
    EXPECT_THAT(unit.commands(), ElementsAre(NextClip()));
}

} // namespace zm::test
