#include "tests/views/OsdView.h"

namespace zm::test {

using OsdPlay = OsdView;

TEST_F(OsdPlay, StoppedShowsThePausePictureUntilPlayResumes) {
    for (const OsdClip& clip : {DVD, VCD, VIDEO}) {
        SCOPED_TRACE(clip.type);
        playClip(clip);
        unit.disc.tip(6); // its timer may not take the pause picture away
        unit.disc.state(0);
        EXPECT_EQ(picture(), 259);
        EXPECT_EQ(item(OSD_ITEM_STATE_TEXT).textId, 112);
        unit.advance(60s);
        EXPECT_EQ(picture(), 259);
        unit.disc.state(2);
        EXPECT_EQ(picture(), 0);
        EXPECT_EQ(keyType(), OSD_KEY_NONE);
    }
}

TEST_F(OsdPlay, PicturesShowNoPausePicture) {
    playClip(PICTURE);
    const auto before = unit.log("ShowStateView").size();
    unit.disc.state(0);
    EXPECT_EQ(unit.log("ShowStateView").size(), before);
}

TEST_F(OsdPlay, OtherStatesLeaveTheStatePictureWithoutAPause) {
    playClip(DVD);
    unit.disc.tip(18);
    unit.disc.state(2);
    EXPECT_EQ(picture(), 256);
}

TEST_F(OsdPlay, TheButtonFollowsTheState) {
    for (const OsdClip& clip : EVERY_CLIP) {
        playClip(clip);
        for (const int state : {0, 6, 10, 11}) {
            unit.disc.state(2);
            EXPECT_FALSE(item(OSD_ITEM_PLAY).visible) << clip.type;
            EXPECT_TRUE(item(OSD_ITEM_PAUSE).visible);
            unit.disc.state(state);
            EXPECT_TRUE(item(OSD_ITEM_PLAY).visible) << clip.type << " state " << state;
            EXPECT_FALSE(item(OSD_ITEM_PAUSE).visible);
        }
        unit.disc.state(2);
        for (const int state : {1, 5, 9, 20}) {
            unit.disc.state(state);
            EXPECT_TRUE(item(OSD_ITEM_PAUSE).visible) << state;
        }
    }
}

TEST_F(OsdPlay, APlayStateReportCountsLikeADiscState) {
    playClip(DVD);
    unit.disc.state(0);
    setKeyType(OSD_KEY_NONE);
    ASSERT_EQ(picture(), 0);
    unit.disc.playState(1, 0, 0);
    EXPECT_EQ(picture(), 259);
}

TEST_F(OsdPlay, ADvdThatStopsWithAnErrorIsPlayedOn) {
    playClip(DVD);
    unit.disc.error(34);
    forget();
    unit.disc.state(0);
    EXPECT_THAT(unit.commands(), ElementsAre(Play()));
}

TEST_F(OsdPlay, WithoutAnErrorADvdThatStopsStaysStopped) {
    playClip(DVD);
    unit.disc.state(0);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(OsdPlay, OtherClipsThatStopWithAnErrorStayStopped) {
    for (const OsdClip& clip : {VCD, VIDEO, PICTURE}) {
        playClip(clip);
        unit.disc.error(34);
        forget();
        unit.disc.state(0);
        EXPECT_THAT(unit.commands(), IsEmpty()) << clip.type;
    }
}

/** Unreadable chapters of a DVD. */
class OsdReadError : public OsdView {
protected:
    void playChapter(int chapter, int chapters) {
        playClip(DVD);
        unit.disc.track({.chapter = chapter, .chapters = chapters, .title = 3, .titles = 7});
        unit.disc.state(2);
        forget();
    }
    std::vector<std::string> failAndPlay(int error) {
        unit.disc.error(error);
        forget();
        unit.disc.state(2);
        return unit.commands();
    }
};

TEST_F(OsdReadError, TheNextPlayingStateJumpsToTheNextChapter) {
    for (const int error : {32, 35}) {
        playChapter(3, 9);
        EXPECT_THAT(failAndPlay(error), ElementsAre(PlayChapter(5))) << error;
    }
}

TEST_F(OsdReadError, EachErrorJumpsOnceAndOneChapterFurther) {
    playChapter(3, 9);
    EXPECT_THAT(failAndPlay(32), ElementsAre(PlayChapter(5)));
    EXPECT_THAT(failAndPlay(32), ElementsAre(PlayChapter(6)));
    forget();
    unit.disc.state(2);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

TEST_F(OsdReadError, AtTheLastChapterTheNextTitlePlaysFromItsStart) {
    playChapter(3, 4);
    EXPECT_THAT(failAndPlay(32), ElementsAre(PlayTitle(4)));
    // The counter stands at 2 now.
    EXPECT_THAT(failAndPlay(32), ElementsAre(PlayChapter(3)));
}

TEST_F(OsdReadError, BeyondTheLastChapterNothingIsSent) {
    playChapter(9, 9);
    EXPECT_THAT(failAndPlay(32), IsEmpty());
}

TEST_F(OsdReadError, PlayingWithoutAnErrorCountsFromTheChapterOfAnyClip) {
    for (const OsdClip& clip : EVERY_CLIP) {
        playClip(clip);
        unit.disc.track({.chapter = 10 + clip.type, .chapters = 99});
        unit.disc.state(DISC_STATE_PLAYING);
        // The count only serves a DVD that cannot be read.
        unit.disc.mediaType(PLAY_TYPE_DVD);
        EXPECT_THAT(failAndPlay(ERROR_STATUS_READ), ElementsAre(PlayChapter(12 + clip.type)));
    }
}

TEST_F(OsdReadError, OtherErrorsDoNotJump) {
    for (const int error : {0, 34, 48}) {
        playChapter(3, 9);
        EXPECT_THAT(failAndPlay(error), IsEmpty()) << error;
    }
}

TEST_F(OsdReadError, OtherClipsDoNotJump) {
    playClip(VIDEO);
    unit.disc.error(32);
    forget();
    unit.disc.state(2);
    EXPECT_THAT(unit.commands(), IsEmpty());
    unit.disc.mediaType(PLAY_TYPE_DVD); // and the error is not kept for a later DVD
    unit.disc.track({.chapter = 1, .chapters = 5});
    unit.disc.state(2);
    EXPECT_THAT(unit.commands(), IsEmpty());
}

} // namespace zm::test
