#include "tests/views/OsdView.h"

namespace zm::test {

using OsdState = OsdView;

struct TipCase {
    int tip;
    int picture;
    int textId;
    const char* text;
    bool sticky;
};

constexpr TipCase TIPS[] = {
    {1, 275, 163, nullptr, false},  {2, 263, 114, nullptr, false},  {3, 262, 113, nullptr, false},
    {4, 272, 133, nullptr, true},   {5, 259, 112, nullptr, true},   {6, 268, 129, nullptr, false},
    {7, 258, 156, nullptr, false},  {8, 265, 155, nullptr, false},  {9, 267, 154, nullptr, false},
    {10, 265, 164, nullptr, false}, {11, 270, 156, nullptr, false}, {12, 264, 157, nullptr, false},
    {18, 256, 0, "x2", true},       {19, 256, 0, "x4", true},       {20, 256, 0, "x8", true},
    {21, 256, 0, "x20", true},      {22, 257, 0, "x2", true},       {23, 257, 0, "x4", true},
    {24, 257, 0, "x8", true},       {25, 257, 0, "x20", true},      {29, 276, 161, nullptr, false},
    {30, 276, 162, nullptr, false},
};

TEST_F(OsdState, EachTipHasItsPictureAndText) {
    playClip(DVD);
    for (const TipCase& row : TIPS) {
        SCOPED_TRACE(row.tip);
        unit.disc.tip(row.tip);
        EXPECT_EQ(picture(), row.picture);
        EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, row.textId);
        if (row.text) {
            EXPECT_EQ(text(OSD_ITEM_STATE_TEXT), row.text);
        }
    }
    EXPECT_FALSE(unit.log("[DiscOsdView::OnUserMsgMsgTip]").empty());
    EXPECT_FALSE(unit.log("[DiscOsdView::ShowStateView]  nPicID=256").empty());
    EXPECT_FALSE(unit.log("[DiscOsdView::ShowStateView2]  nPicID=275").empty());
}

TEST_F(OsdState, TimedTipsGoAfterThreeSecondsAndStickyOnesStay) {
    playClip(VCD);
    for (const TipCase& row : TIPS) {
        SCOPED_TRACE(row.tip);
        unit.disc.tip(row.tip);
        unit.advance(2999ms);
        EXPECT_EQ(picture(), row.picture);
        unit.advance(1ms);
        EXPECT_EQ(picture(), row.sticky ? row.picture : 0);
        EXPECT_EQ(text(OSD_ITEM_STATE_TEXT) == " ", !row.sticky);
    }
}

TEST_F(OsdState, AStickyTipOutlivesTheTimerOfTheOneBefore) {
    playClip(DVD);
    unit.disc.tip(6);
    unit.advance(2s);
    unit.disc.tip(18);
    unit.advance(60s);
    EXPECT_EQ(picture(), 256);
}

TEST_F(OsdState, TipsWithoutARowShowNothing) {
    playClip(DVD);
    unit.disc.tip(5);
    for (const int tip : {0, -1, 13, 14, 15, 16, 17, 26, 27, 28, 31, 1000}) {
        unit.disc.tip(tip);
        EXPECT_EQ(picture(), 259) << tip;
    }
}

TEST_F(OsdState, TipsAreShownForDiscsAndVideoFilesOnly) {
    for (const int type : {PLAY_TYPE_DVD, PLAY_TYPE_VCD, PLAY_TYPE_VIDEO, PLAY_TYPE_PHOTO, PLAY_TYPE_CD,
                           PLAY_TYPE_MUSIC, PLAY_TYPE_UNKNOWN}) {
        unit.disc.mediaType(type);
        const auto before = unit.log("ShowStateView").size();
        unit.disc.tip(5);
        EXPECT_EQ(unit.log("ShowStateView").size() - before, IsVideoType(type) ? 1u : 0u) << type;
    }
    EXPECT_EQ(unit.log("[DiscOsdView::OnUserMsgMsgTip]").size(), 7u) << "each is logged";
}

TEST_F(OsdState, ATipIsLoggedOnItsWayToThePicture) {
    const std::vector<std::string> lines = {
        "_PLATEN_[OnUserMessage]-[DiscOsdView::OnUserMessage]-------DISC_VMSG_MSGTIP",
        "_PLATEN_[OnUserMsgMsgTip]-[DiscOsdView::OnUserMsgMsgTip]",
        "_PLATEN_[ShowStateView2]-[DiscOsdView::ShowStateView2]  nPicID=272",
    };
    playClip(DVD);
    expectLines(lines, [&] { unit.disc.tip(4); });
}

TEST_F(OsdState, TheAnswerToTheAudioKeyIsTheAudioStream) {
    playClip(DVD);
    press(OSD_CTRL_AUDIO);
    unit.disc.dvd(
        {.audioType = "AC3", .audioChannel = "5.1", .audioLanguage = "Deutsch", .audio = 2, .audios = 3});
    EXPECT_EQ(picture(), 266);
    EXPECT_EQ(text(OSD_ITEM_STATE_TEXT), "2/3 AC3 5.1 Deutsch");
    unit.advance(3s);
    EXPECT_EQ(picture(), 0);
    EXPECT_EQ(keyType(), OSD_KEY_NONE);
}

TEST_F(OsdState, AnUnknownAudioStreamIsNotAvailable) {
    playClip(DVD);
    for (const auto& [audio, audios] : {std::pair{0, 3}, std::pair{2, 0}}) {
        setKeyType(OSD_KEY_DVD_AUDIO);
        unit.disc.dvd({.audio = audio, .audios = audios});
        EXPECT_EQ(picture(), 275);
        EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, 163);
    }
}

TEST_F(OsdState, ABlankAudioStreamShowsNothingButClearsWhatStands) {
    playClip(DVD);
    setKeyType(OSD_KEY_DVD_AUDIO);
    unit.disc.tip(4);
    unit.disc.dvd({.audioLanguage = "Blank", .audio = 1, .audios = 2});
    EXPECT_EQ(picture(), 272);
    unit.advance(3s);
    EXPECT_EQ(picture(), 0);
}

TEST_F(OsdState, OnlyTheWholeWordBlankIsBlank) {
    playClip(DVD);
    setKeyType(OSD_KEY_DVD_AUDIO);
    unit.disc.dvd(
        {.audioType = "AC3", .audioChannel = "2", .audioLanguage = "Blanko", .audio = 1, .audios = 2});
    EXPECT_EQ(text(OSD_ITEM_STATE_TEXT), "1/2 AC3 2 Blanko");
}

TEST_F(OsdState, TheAnswerToTheAngleKeyIsTheAngle) {
    playClip(DVD);
    press(OSD_CTRL_ANGLE);
    unit.disc.dvd({.angle = 2, .angles = 4});
    EXPECT_EQ(picture(), 277);
    EXPECT_EQ(text(OSD_ITEM_STATE_TEXT), "2/4");
    unit.advance(3s);
    EXPECT_EQ(picture(), 0);
}

TEST_F(OsdState, ASingleAngleIsNotAvailable) {
    playClip(DVD);
    for (const int angles : {1, 0}) {
        setKeyType(OSD_KEY_DVD_ANGLE);
        unit.disc.dvd({.angle = 1, .angles = angles});
        EXPECT_EQ(picture(), 275);
        EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, 163);
    }
}

TEST_F(OsdState, TheAnswerToTheSubtitleKeyIsTheSubtitle) {
    struct {
        int number;
        int count;
        const char* text;
    } const rows[] = {{82, 3, "2/3  Suomi"}, {80, 3, "0/3  Suomi"}, {81, 0, "Suomi"}};
    playClip(DVD);
    for (const auto& row : rows) {
        press(OSD_CTRL_SUBTITLE);
        unit.disc.dvd({.subtitleLanguage = "Suomi", .subtitle = row.number, .subtitles = row.count});
        EXPECT_EQ(picture(), 260);
        EXPECT_EQ(text(OSD_ITEM_STATE_TEXT), row.text);
    }
    unit.advance(3s);
    EXPECT_EQ(picture(), 0);
}

TEST_F(OsdState, SubtitleNumbersBelowTheOffsetAreOff) {
    playClip(DVD);
    for (const int number : {79, 0}) {
        setKeyType(OSD_KEY_DVD_SUBTITLE);
        unit.disc.dvd({.subtitle = number, .subtitles = 3});
        EXPECT_EQ(picture(), 260);
        EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, 160);
    }
}

TEST_F(OsdState, TheAnswerToTheVcdAudioKeyIsTheChannel) {
    struct {
        int channel;
        int picture;
        int text;
    } const rows[] = {{0, 275, 163}, {1, 266, 170}, {2, 266, 169}, {3, 266, 171}, {4, 266, 171}};
    playClip(VCD);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.channel);
        press(OSD_CTRL_AUDIO);
        unit.disc.audioChannel(row.channel);
        EXPECT_EQ(picture(), row.picture);
        EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, row.text);
        unit.advance(3s);
        EXPECT_EQ(picture(), 0);
    }
}

TEST_F(OsdState, UnknownVcdChannelsShowNothingButClearWhatStands) {
    playClip(VCD);
    setKeyType(OSD_KEY_VCD_AUDIO);
    unit.disc.tip(4);
    unit.disc.audioChannel(5);
    EXPECT_EQ(picture(), 272);
    unit.advance(3s);
    EXPECT_EQ(picture(), 0);
}

TEST_F(OsdState, OtherKeysHaveNoAnswer) {
    playClip(DVD);
    for (const int key : {0, 1, 2, 3, 4, 5, 7, 9, 21, 22}) {
        setKeyType(key);
        unit.disc.dvd({});
        EXPECT_EQ(picture(), 0) << key;
        EXPECT_EQ(keyType(), key);
    }
}

TEST_F(OsdState, ReportsThatBringTheAnswer) {
    playClip(DVD);
    const auto answered = [&](auto report) {
        setKeyType(OSD_KEY_DVD_ANGLE);
        report();
        return picture() == 275;
    };
    unit.disc.dvd({.angles = 1});
    EXPECT_TRUE(answered([&] { unit.disc.dvd({.angles = 1}); }));
    EXPECT_TRUE(answered([&] { unit.disc.audioChannel(1); }));
    EXPECT_TRUE(answered([&] { unit.disc.playSpeed(1); }));
    EXPECT_TRUE(answered([&] { unit.disc.rootMenu(true); }));
    EXPECT_TRUE(answered([&] { unit.disc.track({.title = 1}); }));
    EXPECT_FALSE(answered([&] { unit.disc.playTime(1, 2); }));
    EXPECT_FALSE(unit.log("[DiscOsdView::OnUserMsgPlaySpeed]").empty());
    EXPECT_FALSE(unit.log("[DiscOsdView::OnUserMsgAudioChannel]").empty());
    EXPECT_FALSE(unit.log("[DiscOsdView::OnUserMsgDvdState]").empty());
}

TEST_F(OsdState, DiscReportsAreNoAnswerOnAVideoFile) {
    playClip(VIDEO);
    const auto shown = unit.log("ShowStateView").size();
    setKeyType(OSD_KEY_DVD_ANGLE);
    unit.disc.dvd({});
    unit.disc.audioChannel(1);
    unit.disc.playSpeed(1);
    EXPECT_EQ(unit.log("ShowStateView").size(), shown);
    unit.disc.track({.curMediaId = 1, .curMediaIds = 2}); // but a new track is
    EXPECT_GT(unit.log("ShowStateView").size(), shown);
}

TEST_F(OsdState, AKeyTakesTheStatePictureAndItsTimerAway) {
    playClip(DVD);
    unit.disc.tip(6);
    setKeyType(OSD_KEY_STOP);
    EXPECT_EQ(picture(), 0);
    EXPECT_EQ(item(OSD_ITEM_STATE_PIC).icon(), 0);
    EXPECT_EQ(text(OSD_ITEM_STATE_TEXT), " ");
    EXPECT_EQ(keyType(), OSD_KEY_STOP);
    unit.advance(10s);
    EXPECT_EQ(keyType(), OSD_KEY_STOP); // the timer would have forgotten it
}

TEST_F(OsdState, AHardKeyIsAnsweredOnTheOverlay) {
    playClip(VCD);
    unit.key(K_NEXT);
    EXPECT_EQ(keyType(), 1);
}

} // namespace zm::test
