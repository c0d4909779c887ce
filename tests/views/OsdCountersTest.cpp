#include "tests/views/OsdView.h"

namespace zm::test {

using OsdCounters = OsdView;

struct CounterCase {
    int current;
    int count;
    const char* text;
};

constexpr CounterCase TWO_DIGITS[] = {
    {1, 1, "1/1"},     {99, 99, "99/99"},  {0, 12, "--/12"}, {0, 99, "--/99"},
    {5, 100, "--/--"}, {100, 99, "--/--"}, {3, 0, "--/--"},  {0, 0, "--/--"},
    {-1, 12, "--/--"}, {7, 120, "--/--"},  {1, -1, "--/--"},
};
constexpr CounterCase UNBOUNDED[] = {
    {150, 300, "150/300"}, {1, 1, "1/1"},   {0, 300, "--/300"},
    {-1, 5, "--/5"},       {3, 0, "--/--"}, {0, 0, "--/--"},
};

TEST_F(OsdCounters, DvdTitlesFollowTheTwoDigitRule) {
    playClip(DVD);
    for (const CounterCase& row : TWO_DIGITS) {
        unit.disc.track({.title = row.current, .titles = row.count});
        EXPECT_EQ(text(OSD_ITEM_TRACK), row.text) << row.current << " of " << row.count;
    }
}

TEST_F(OsdCounters, DvdChaptersFollowTheTwoDigitRule) {
    playClip(DVD);
    for (const CounterCase& row : TWO_DIGITS) {
        unit.disc.track({.chapter = row.current, .chapters = row.count});
        EXPECT_EQ(text(OSD_ITEM_CHAPTER), row.text) << row.current << " of " << row.count;
    }
    unit.disc.track({.chapter = 4, .chapters = 20, .title = 1, .titles = 3});
    EXPECT_FALSE(unit.log("[DiscOsdView::OnUserMsgTrackInfo]t:1/3  c:4/20").empty());
}

TEST_F(OsdCounters, VcdTracksFollowTheTwoDigitRule) {
    playClip(VCD);
    for (const CounterCase& row : TWO_DIGITS) {
        unit.disc.track({.mediaId = row.current, .mediaIds = row.count});
        EXPECT_EQ(text(OSD_ITEM_TRACK), row.text) << row.current << " of " << row.count;
    }
    unit.disc.track({.mediaId = 4, .mediaIds = 20});
    EXPECT_FALSE(unit.log("[DiscOsdView::OnUserMsgTrackInfo]----  track:4/20").empty());
}

TEST_F(OsdCounters, VideoFilesAreCountedInTheirFolderWithoutBound) {
    playClip(VIDEO);
    for (const CounterCase& row : UNBOUNDED) {
        unit.disc.track({.curMediaId = row.current, .curMediaIds = row.count, .mediaId = 77, .mediaIds = 78});
        EXPECT_EQ(text(OSD_ITEM_TRACK), row.text) << row.current << " of " << row.count;
    }
}

TEST_F(OsdCounters, PicturesAreCountedOnTheDiscWithoutBound) {
    playClip(PICTURE);
    for (const CounterCase& row : UNBOUNDED) {
        unit.disc.track({.curMediaId = 7, .curMediaIds = 8, .mediaId = row.current, .mediaIds = row.count});
        EXPECT_EQ(text(OSD_ITEM_TRACK), row.text) << row.current << " of " << row.count;
    }
}

TEST_F(OsdCounters, APlayStateReportCountsPicturesInTheirFolder) {
    playClip(PICTURE);
    unit.disc.track({.curMediaId = 3, .curMediaIds = 8, .mediaId = 33, .mediaIds = 88});
    EXPECT_EQ(text(OSD_ITEM_TRACK), "33/88");
    unit.disc.state(6);
    EXPECT_EQ(text(OSD_ITEM_TRACK), "3/8");
}

TEST_F(OsdCounters, APlayStateReportLeavesDiscCounters) {
    playClip(VCD);
    unit.disc.track({.curMediaId = 3, .curMediaIds = 8, .mediaId = 33, .mediaIds = 88});
    unit.disc.state(6);
    EXPECT_EQ(text(OSD_ITEM_TRACK), "33/88");
}

TEST_F(OsdCounters, OtherClipsChangeNoCounterTimeOrButton) {
    playClip(DVD);
    unit.disc.track({.title = 2, .titles = 3});
    unit.disc.playTime(5, 10);
    unit.disc.state(DISC_STATE_PLAYING);
    for (const int type : {PLAY_TYPE_CD, PLAY_TYPE_MUSIC, PLAY_TYPE_UNKNOWN}) {
        SCOPED_TRACE(type);
        unit.disc.mediaType(type);
        unit.disc.track({.mediaId = type, .mediaIds = 6, .title = 1, .titles = 1});
        unit.disc.playTime(7, 10);
        unit.disc.state(DISC_STATE_PAUSED);
        EXPECT_EQ(text(OSD_ITEM_TRACK), "2/3");
        EXPECT_EQ(text(OSD_ITEM_ELAPSED), "00:05");
        EXPECT_FALSE(item(OSD_ITEM_PLAY).visible);
    }
}

TEST_F(OsdCounters, TheCurrentTrackIsShownByItsIndex) {
    playClip(VCD);
    const auto show = [&](int index) {
        unit.onViewThread([&] { unit.osdView().ShowCurTrack(index); });
        return text(OSD_ITEM_TRACK);
    };
    unit.disc.track({.curMediaId = 0, .mediaIds = 120});
    EXPECT_EQ(show(7), "7/120");
    EXPECT_EQ(show(0), "--/120");
    unit.disc.track({.curMediaId = 1, .mediaIds = 120});
    EXPECT_EQ(show(0), "--/--");
    unit.disc.track({.curMediaId = 0, .mediaIds = 0});
    EXPECT_EQ(show(7), "--/--");
    EXPECT_FALSE(unit.log("[DiscOsdView::ShowCurTrack]  index=7").empty());
}

TEST_F(OsdCounters, TheCurrentTrackIsNotShownWhileAFolderRepeats) {
    playClip(VCD);
    unit.disc.track({.mediaId = 1, .mediaIds = 12});
    unit.disc.playState(4, 0, 0);
    unit.onViewThread([&] { unit.osdView().ShowCurTrack(9); });
    EXPECT_EQ(text(OSD_ITEM_TRACK), "1/12");
}

struct TimeCase {
    int elapsed;
    int total;
    const char* elapsedText;
    const char* totalText;
    int progress;
};

constexpr TimeCase TIMES[] = {
    {0, 60, "00:00", "01:00", 0},
    {3599, 3600, "59:59", "01:00:00", 99},
    {3600, 7325, "01:00:00", "02:02:05", 49},
    {1, 3, "00:01", "00:03", 33},
    {3, 3, "00:03", "00:03", 100},
    {360000, 360000, "100:00:00", "100:00:00", 100},
    {200, 100, "03:20", "01:40", 100},
    {-5, 100, "00:-5", "01:40", 0},
    {5, -100, "00:05", "-1:-40", 0},
};

TEST_F(OsdCounters, PlayTimesHaveHoursFromAnHourOn) {
    for (const OsdClip& clip : {DVD, VCD, VIDEO}) {
        playClip(clip);
        for (const TimeCase& row : TIMES) {
            SCOPED_TRACE(row.elapsed);
            unit.disc.playTime(row.elapsed, row.total);
            EXPECT_EQ(text(OSD_ITEM_ELAPSED), row.elapsedText);
            EXPECT_EQ(text(OSD_ITEM_TOTAL), row.totalText);
            EXPECT_EQ(item(OSD_ITEM_PROGRESS).progress, row.progress);
        }
    }
}

TEST_F(OsdCounters, ATotalOfZeroFillsTheBarOnceTimeHasPassed) {
    playClip(DVD);
    unit.disc.playTime(0, 10);
    unit.disc.playTime(0, 0);
    EXPECT_EQ(item(OSD_ITEM_PROGRESS).progress, 0);
    unit.disc.playTime(5, 0);
    EXPECT_EQ(item(OSD_ITEM_PROGRESS).progress, 100); // the largest integer, limited to the bar
}

TEST_F(OsdCounters, PicturesHaveNoPlayTime) {
    playClip(VIDEO);
    unit.disc.playTime(5, 10);
    unit.disc.mediaType(PLAY_TYPE_PHOTO);
    unit.disc.playTime(7, 10);
    EXPECT_EQ(text(OSD_ITEM_ELAPSED), "00:05");
}

} // namespace zm::test
