#include "BuildPaths.h"
#include "platform/linux/toolkit/UiMng.h"
#include "tests/model/LockWait.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/views/OsdView.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

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

/** The application's resources, whose counters and times stand on something else at first. */
class OtherTexts {
public:
    OtherTexts() {
        std::filesystem::copy(ZM_SHARE_DIR "/rccs", m_folder.path(),
                              std::filesystem::copy_options::recursive);
        const std::string file = m_folder.path() + "/OVERLAY.zmrc_device";
        std::stringstream text;
        text << std::ifstream(file).rdbuf();
        const std::regex start("\"(--/--|00:00)\"");
        std::ofstream(file) << std::regex_replace(text.str(), start, "\"?\"");
    }
    std::string path() const { return m_folder.path() + "/"; }

private:
    TemporaryFolder m_folder;
};

class OsdOtherTexts : public testing::Test {
protected:
    OtherTexts m_resources;
    Unit m_unit{{.resources = m_resources.path()}};
};

TEST_F(OsdOtherTexts, CountersAndTimesStartUnknownWhateverTheResourceSays) {
    for (const int bar : {OSD_WND_DVD, OSD_WND_VCD, OSD_WND_VIDEO}) {
        SCOPED_TRACE(bar);
        EXPECT_EQ(m_unit.osd.item(bar, OSD_ITEM_TRACK).text, "--/--");
        EXPECT_EQ(m_unit.osd.item(bar, OSD_ITEM_ELAPSED).text, "00:00");
        EXPECT_EQ(m_unit.osd.item(bar, OSD_ITEM_TOTAL).text, "00:00");
    }
    EXPECT_EQ(m_unit.osd.item(OSD_WND_DVD, OSD_ITEM_CHAPTER).text, "--/--");
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
        press(OSD_CTRL_SRC_OPEN);
        ASSERT_TRUE(item(OSD_ITEM_SRC_GROUP).visible);
        unit.onViewThread([&] { unit.osdView().ShowCurWnd(true); });
        EXPECT_FALSE(item(OSD_ITEM_SRC_GROUP).visible);
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
    press(OSD_CTRL_SRC_OPEN);
    unit.onViewThread([&] { unit.osdView().DrawAllItem(); });
    EXPECT_FALSE(item(OSD_ITEM_SRC_GROUP).visible);
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

TEST_F(OsdFrame, TheOverlaysTimerBeginsAnewWhenAsked) {
    playClip(DVD);
    unit.click(WND_VIDEO, 1, BT_STATE_RELEASED);
    unit.advance(6s);
    unit.onViewThread([&] { unit.osdView().SetDisplayOSDTimer(); });
    unit.advance(9999ms);
    EXPECT_TRUE(unit.osd.visible());
    unit.advance(1ms);
    EXPECT_FALSE(unit.osd.visible());
}

TEST_F(OsdFrame, EachBarGoesWithItsAnimation) {
    struct Case {
        OsdClip clip;
        int pixels; ///< of the toolkit's styles 6, 4 and 2
    };
    for (const auto& [clip, pixels] : {Case{DVD, 48}, Case{VIDEO, 24}, Case{VCD, 24}, Case{PICTURE, 0}}) {
        SCOPED_TRACE(clip.type);
        unit.disc.mediaType(clip.type);
        unit.onViewThread([&, bar = clip.window, moved = pixels] {
            CUIWndMng::Impl& toolkit = unit.osdView().GetUIWndMgrWrapper()->impl();
            const Motion& motion = toolkit.motion;
            unit.osdView().ShowCurWnd(true);
            EXPECT_FALSE(motion.leaving() && motion.leaving()->window == toolkit.pages.window(bar))
                << "showing plays none";
            unit.osdView().ShowCurWnd(false);
            ASSERT_TRUE(motion.leaving());
            EXPECT_EQ(motion.leaving()->window, toolkit.pages.window(bar));
            EXPECT_EQ(motion.leaving()->slide, moved);
        });
    }
}

TEST_F(OsdFrame, HidingABarRefreshesItToo) {
    playClip(DVD);
    const auto hidden = unit.log("[DiscOsdView::OnShow] dwWndId=1,bShow=0").size();
    unit.onViewThread([&] {
        CDiscData::GetInstance()->SetCurPlayInfo({.chapter = 2, .title = 1, .chapters = 9, .titles = 3});
        unit.osdView().OnShow(OSD_WND_DVD, false, 0);
    });
    EXPECT_EQ(text(OSD_ITEM_CHAPTER), "2/9");
    EXPECT_EQ(unit.log("[DiscOsdView::OnShow] dwWndId=1,bShow=0").size(), hidden + 1);
}

TEST_F(OsdFrame, ThePadsWindowIsOnlyRemembered) {
    playClip(DVD);
    press(OSD_CTRL_SRC_OPEN);
    unit.deviceSilently(DEV_STATUS_BT, 2);
    const auto display = [&] { return unit.osd.item(OSD_WND_GOTO, GOTO_ITEM_DISPLAY).text; };
    unit.onViewThread([&] { unit.osdView().ShowGotoView(); });
    ASSERT_NE(display(), "");
    for (const bool shown : {false, true}) {
        unit.onViewThread([&] {
            unit.osdView().OnShow(OSD_WND_GOTO, shown, 0);
            unit.osdView().HideGotoView(); // only clears a pad that is known to be shown
        });
        EXPECT_EQ(display() == "", shown);
    }
    EXPECT_NE(text(OSD_ITEM_BT), "2");
    EXPECT_TRUE(item(OSD_ITEM_SRC_GROUP).visible);
}

TEST_F(OsdFrame, OtherWindowsAreOnlyLogged) {
    playClip(DVD);
    unit.deviceSilently(DEV_STATUS_BT, 2);
    unit.onViewThread([&] { unit.osdView().OnShow(3, true, 0); });
    EXPECT_NE(text(OSD_ITEM_BT), "2");
    EXPECT_EQ(unit.log("[DiscOsdView::OnShow] dwWndId=3,bShow=1").size(), 1u);
}

TEST_F(OsdFrame, MessageResultsAreThoseOfTheTable) {
    const std::set<int> handled = {1007, 1008, 1015, 1022, 1026};
    playClip(DVD);
    for (int code = 998; code <= 1030; ++code) {
        EXPECT_EQ(message(code), handled.contains(code) ? 1 : 0) << code;
    }
}

TEST_F(OsdFrame, MessagesWithoutARowDoNothing) {
    playClip(DVD);
    unit.disc.tip(4); // any change of the key type would take it away
    setKeyType(OSD_KEY_DVD_ANGLE);
    const Json before = unit.osd.describe();
    const auto lines = unit.log().size();
    for (const int code : {-1,   0,    999,  1001, 1002, 1003, 1005, 1006, 1010, 1012, 1013,
                           1014, 1017, 1018, 1019, 1020, 1023, 1025, 1027, 1028, 2000}) {
        EXPECT_EQ(message(code), 0) << code;
    }
    EXPECT_EQ(unit.log().size(), lines);
    EXPECT_EQ(unit.osd.describe(), before);
}

TEST_F(OsdFrame, ATrackChangeIsShownAtOnce) {
    playClip(DVD);
    setKeyType(OSD_KEY_DVD_ANGLE);
    message(DISC_VMSG_TRACKINFO);
    EXPECT_EQ(picture(), 275);
}

TEST_F(OsdFrame, KeyInvalidAndClosingDoNothing) {
    playClip(DVD);
    const Json before = unit.osd.describe();
    unit.onViewThread([&] {
        unit.osdView().OnUserMsgKeyInvalid();
        unit.osdView().OnClose();
    });
    EXPECT_EQ(unit.osd.describe(), before);
    EXPECT_EQ(unit.main.window(), WND_VIDEO);
}

TEST_F(OsdFrame, TrackInfoIsHandledForClipsWithAStateDisplayOnly) {
    for (const OsdClip& clip : EVERY_CLIP) {
        playClip(clip);
        EXPECT_EQ(message(DISC_VMSG_TRACKINFO), clip.type == PLAY_TYPE_PHOTO ? 0 : 1) << clip.type;
    }
}

TEST_F(OsdFrame, AStoppedDiscIsAnsweredByBothViews) {
    playClip(DVD);
    unit.click(WND_VIDEO, 1); // the overlay shows
    unit.click(WND_VIDEO, 1);
    unit.disc.state(DISC_STATE_STOPPED);
    EXPECT_TRUE(unit.osd.visible()) << "the main view brings the overlay";
    EXPECT_EQ(picture(), 259) << "which shows the pause";
    EXPECT_TRUE(item(OSD_ITEM_PLAY).visible);
}

TEST_F(OsdFrame, ARootMenuIsAnsweredByBothViews) {
    playClip(DVD);
    unit.click(WND_VIDEO, 1);
    setKeyType(OSD_KEY_DVD_ANGLE);
    unit.disc.rootMenu(true);
    EXPECT_FALSE(unit.osd.visible()) << "the main view hides the overlay";
    EXPECT_EQ(picture(), 275) << "whose answer stands for the next time";
}

/** An overlay that nobody gave a controller. */
class OsdAlone : public OsdView {
protected:
    OsdAlone() : OsdView(withoutOverlayControl()) {}
};

TEST_F(OsdAlone, ItsStatusBarStays) {
    playClip(DVD);
    unit.onViewThread([&] { unit.osdView().OnShow(OSD_WND_DVD, true, 0); });
    unit.deviceSilently(DEV_STATUS_BT, 2);
    unit.deviceSilently(DEV_STATUS_MUTE, 255);
    unit.deviceSilently(DEV_STATUS_CAR_TEMP, 101);
    const Json before = unit.osd.describe();
    unit.onViewThread([&] { unit.osdView().OnShow(OSD_WND_DVD, true, 0); });
    EXPECT_EQ(unit.osd.describe(), before);
}

TEST_F(OsdFrame, TheClockIsRefreshedByItsMessage) {
    playClip(VCD);
    unit.time("13:07", 12);
    EXPECT_EQ(text(OSD_ITEM_CLOCK), "01:07");
    EXPECT_FALSE(item(OSD_ITEM_AM).visible);
    EXPECT_TRUE(item(OSD_ITEM_PM).visible);
    unit.time("24:00", 12);
    EXPECT_EQ(text(OSD_ITEM_CLOCK), "24:00");
    EXPECT_FALSE(item(OSD_ITEM_PM).visible);
}

TEST_F(OsdFrame, ALanguageChangeTranslatesTheStateTextAndKeepsThePicture) {
    playClip(DVD);
    unit.disc.tip(5);
    unit.language("en");
    const std::string english = text(OSD_ITEM_STATE_TEXT);
    unit.language("zh");
    EXPECT_NE(text(OSD_ITEM_STATE_TEXT), english);
    EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, 112);
    EXPECT_EQ(picture(), 259);
}

TEST_F(OsdFrame, WithoutAMessageNothingHappens) {
    unit.onViewThread([&] { EXPECT_EQ(unit.osdView().OnUserMessage(nullptr), 0); });
}

TEST_F(OsdFrame, ANullControllerIsNotAttached) {
    playClip(DVD);
    unit.onViewThread([&] { unit.osdView().AttachControl(nullptr); });
    press(OSD_CTRL_STOP);
    EXPECT_THAT(unit.commands(), ElementsAre(StopPlayBack()));
}

TEST_F(OsdFrame, TheKeyTypeIsReadWhenNobodyHoldsIt) {
    playClip(DVD);
    setKeyType(OSD_KEY_DVD_ANGLE);
    DiscOsdView& view = unit.osdView();
    view.Lock();
    int read = OSD_KEY_NONE;
    EXPECT_TRUE(waitsForLock([&] { read = view.GetCurKeyType(); }, [&] { view.UnLock(); }));
    EXPECT_EQ(read, OSD_KEY_DVD_ANGLE);
}

TEST_F(OsdFrame, ReadErrorsAreLoggedUnderTheMainViewsName) {
    playClip(DVD);
    const auto before = unit.log("[OnUserMessage]-[DiscView::OnUserMessage]-------READ_ERROR").size();
    unit.disc.error(32);
    const auto after = unit.log("[DiscView::OnUserMessage]-------READ_ERROR").size();
    EXPECT_EQ(after - before, 2u); // once by each view
}

} // namespace zm::test
