#include "tests/disc/PictureFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

using namespace zm::test;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

// Ten seconds of red, then ten of blue, with a tone.
std::string redThenBlue(const std::string& extension, const std::string& codec) {
    return sample({"red-blue." + extension, "-f lavfi -i color=red:size=320x240:rate=25:duration=10 -f lavfi "
                                            "-i color=blue:size=320x240:rate=25:duration=10 "
                                            "-f lavfi -i sine=frequency=440:duration=20 -filter_complex "
                                            "'[0][1]concat[v]' -map '[v]' -map 2 -g 25 " +
                                                codec});
}

std::string mp4() {
    return redThenBlue("mp4", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac");
}

std::string mkv() {
    return redThenBlue("mkv", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a libvorbis");
}

std::string mov() {
    return redThenBlue("mov", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac");
}

std::string mpg() {
    return redThenBlue("mpg", "-c:v mpeg2video -b:v 800k -c:a mp2 -f vob");
}

std::string avi() {
    return redThenBlue("avi", "-c:v mpeg4 -vtag XVID -b:v 800k -c:a libmp3lame");
}

class VideoFormat : public Pictures, public testing::WithParamInterface<const char*> {
protected:
    const std::map<std::string, std::string (*)()> makers{
        {"mp4", mp4}, {"mpg", mpg}, {"avi", avi}, {"mkv", mkv}, {"mov", mov}};
    // The red and blue video in the format of the parameter.
    void playClip() {
        const std::string extension = GetParam();
        const auto maker = makers.find(extension);
        ASSERT_NE(maker, makers.end());
        place(maker->second(), m_disc / ("clip." + extension));
        play();
    }
};

} // namespace

TEST_P(VideoFormat, IsShownAndItsTimeRuns) {
    playClip();
    EXPECT_TRUE(shows(red));
    m_unit.next("playtime", [](const Published& each) {
        return each.json()["time"] == 1 && each.json()["tracktime"] >= 19;
    });
    m_unit.command(185, 15);
    EXPECT_TRUE(shows(blue));
    const int before = m_unit.pictures().frames();
    EXPECT_TRUE(m_unit.pictures().waitFrames(before, 20, 5s)) << "pictures follow each other";
}

TEST_P(VideoFormat, IsScannedBothWays) {
    playClip();
    EXPECT_TRUE(shows(red));
    for (int i = 0; i < 3; ++i) {
        m_unit.command(3); // eight times as fast
    }
    EXPECT_TRUE(shows(blue)) << "after about one second";
    m_unit.nextState(PlayState::Forward);
    for (int i = 0; i < 3; ++i) {
        m_unit.command(4);
    }
    EXPECT_TRUE(shows(red));
    m_unit.nextState(PlayState::Backward);
}

INSTANTIATE_TEST_SUITE_P(Files, VideoFormat, testing::Values("mp4", "mpg", "avi", "mkv", "mov"));

TEST_F(Pictures, VideoIsAnnouncedBeforeItPlays) {
    place(mp4(), m_disc / "clip.mp4");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    m_unit.next("mixedtype", "4");
    m_unit.next("mediatype", "3");
    m_unit.next("videomode", "1");
    nextFile(1);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(Pictures, ThePictureStandsWhilePausedAndFollowsASeek) {
    place(mp4(), m_disc / "clip.mp4");
    play();
    ASSERT_TRUE(shows(red));
    m_unit.command(130);
    m_unit.nextState(PlayState::Paused);
    m_unit.command(185, 12);
    EXPECT_TRUE(shows(blue));
    const int before = m_unit.pictures().frames();
    EXPECT_FALSE(m_unit.pictures().waitFrames(before, 3, 500ms));
}

TEST_F(Pictures, AFastModeShowsEightPicturesASecond) {
    place(mp4(), m_disc / "clip.mp4");
    play();
    ASSERT_TRUE(shows(red));
    m_unit.command(3);
    m_unit.nextState(PlayState::Forward);
    // On a machine with much else to do not all of the time.
    size_t most = 0;
    for (int i = 0; i < 4 && most < 14; ++i) {
        m_unit.pictures().forgetTimes();
        std::this_thread::sleep_for(2s);
        most = std::max(most, m_unit.pictures().times().size());
    }
    EXPECT_GE(most, 14u);
    EXPECT_LE(most, 18u);
}

TEST_F(Pictures, ChoosingAVideoSwitchesTheKind) {
    place(toneFile("mp3", 30, "Song"), m_disc / "song.mp3");
    place(mp4(), m_disc / "clip.mp4");
    play();
    m_unit.command(182, (1 << 16) + 1, 3);
    m_unit.next("mixedswitching", "1");
    m_unit.next("mediatype", "3");
    m_unit.next("mixedswitching", "0");
    m_unit.next("videomode", "1");
    nextFile(1);
    m_unit.nextState(PlayState::Playing);
    EXPECT_TRUE(shows(red));
    m_unit.command(182, (1 << 16) + 1, 1);
    m_unit.next("mediatype", "2");
    m_unit.next("videomode", "2");
    m_unit.nextState(PlayState::Playing);
    EXPECT_TRUE(m_unit.pictures().waitCleared()) << "music leaves no picture standing";
}

TEST_F(Pictures, AVoiceSwitchesToMusicAndListsDoNot) {
    place(toneFile("mp3", 30, "Song"), m_disc / "song.mp3");
    place(mp4(), m_disc / "clip.mp4");
    play();
    m_unit.command(182, (1 << 16) + 1, 3);
    m_unit.nextState(PlayState::Playing);
    m_unit.mark();
    for (const int kind : {2, 3, 2, 2}) {
        m_unit.command(186, kind, 1);
        m_unit.next("updatedb", "65537");
    }
    m_unit.voice({{"play", "radio"}});
    EXPECT_FALSE(m_unit.follows("mediatype", "2", 1500ms));
    EXPECT_TRUE(m_unit.pictures().waitFrames(m_unit.pictures().frames(), 10)) << "the film goes on";
    m_unit.voice({{"play", "music"}});
    m_unit.next("mediatype", "2");
    m_unit.next("videomode", "2");
    m_unit.nextState(PlayState::Playing);
    m_unit.voice({{"play", "music"}});
    EXPECT_FALSE(m_unit.follows("discstate", "2", 1500ms)) << "music that plays is not begun anew";
}

TEST_F(Pictures, AVoiceChangesNothingWhileTheDiscIsNotTheSource) {
    place(toneFile("mp3", 30, "Song"), m_disc / "song.mp3");
    place(mp4(), m_disc / "clip.mp4");
    play();
    m_unit.command(182, (1 << 16) + 1, 3);
    m_unit.nextState(PlayState::Playing);
    m_unit.command(187, 0, 0);
    m_unit.nextState(PlayState::Stopped);
    m_unit.voice({{"play", "music"}});
    m_unit.command(187, 1, 0);
    m_unit.nextState(PlayState::Playing);
    EXPECT_FALSE(m_unit.follows("mediatype", "2", 1500ms));
}

TEST_F(Pictures, TheEndOfTheLastVideoLeadsBackToTheListWithRepeatOff) {
    place(mp4(), m_disc / "clip.mp4");
    play();
    m_unit.command(9, 1);
    m_unit.command(185, 19);
    m_unit.nextState(PlayState::Stopped);
    m_unit.next("videomode", "3");
}

TEST_F(Pictures, AVideoThatCannotBeDecodedIsSkipped) {
    writeFile(m_disc / "a.mp4", "no video at all");
    place(mp4(), m_disc / "b.mp4");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    m_unit.next("msgtip", "1");
    m_unit.next("errorstatus", "32");
    nextFile(2);
    EXPECT_TRUE(shows(red));
}

TEST_F(Pictures, EjectTakesThePictureAway) {
    place(mp4(), m_disc / "clip.mp4");
    play();
    ASSERT_TRUE(shows(red));
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("disc", "0");
    EXPECT_TRUE(m_unit.pictures().waitCleared());
}
