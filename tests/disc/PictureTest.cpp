#include "tests/disc/DiscUnit.h"

#include <gtest/gtest.h>

#include <map>

using namespace zm::test;
using namespace zm::disc;
using namespace std::chrono_literals;

namespace {

constexpr Colour red{255, 0, 0};
constexpr Colour green{0, 128, 0};
constexpr Colour blue{0, 0, 255};
constexpr Colour black{0, 0, 0};
constexpr int MiddleX = PictureWidth / 2;
constexpr int MiddleY = PictureHeight / 2;

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

// A photo whose left half is red and whose right half is blue, 400 by 240.
std::string twoHalves(const std::string& extension) {
    return sample({"halves." + extension,
                   "-f lavfi -i color=red:size=200x240 -f lavfi -i color=blue:size=200x240 "
                   "-filter_complex hstack -frames:v 1"});
}

std::string plainPhoto(const std::string& colour, const std::string& size) {
    return sample(
        {colour + "-" + size + ".png", "-f lavfi -i color=" + colour + ":size=" + size + " -frames:v 1"});
}

class Pictures : public testing::Test {
protected:
#ifdef __SANITIZE_THREAD__
    void SetUp() override {
        GTEST_SKIP() << "the decoder's libraries are not instrumented";
    }
#endif
    Published nextFile(int file) {
        return m_unit.next("trackinfo",
                           [=](const Published& each) { return each.json()["curmediaid"] == file; });
    }
    void nextTime(int from, int to) {
        m_unit.next("playtime", [=](const Published& each) {
            return each.json()["time"] >= from && each.json()["time"] <= to;
        });
    }
    void play() {
        m_unit.play(m_disc.path().string());
    }
    bool shows(Colour colour) {
        return m_unit.pictures().waitFor(MiddleX, MiddleY, colour);
    }

    TempFolder m_disc;
    DiscUnit m_unit;
};

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
    EXPECT_TRUE(m_unit.pictures().cleared()) << "music leaves no picture standing";
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

class PhotoFormat : public Pictures, public testing::WithParamInterface<const char*> {};

TEST_P(PhotoFormat, IsShown) {
    place(twoHalves(GetParam()), m_disc / (std::string("p.") + GetParam()));
    play();
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(600, MiddleY, blue));
}

INSTANTIATE_TEST_SUITE_P(Files, PhotoFormat, testing::Values("jpg", "png", "bmp", "gif"));

TEST_F(Pictures, PhotosKeepTheirShape) {
    place(plainPhoto("red", "240x240"), m_disc / "p.png");
    play();
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, MiddleY, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(50, MiddleY, black));
}

TEST_F(Pictures, PhotosFollowEachOtherEveryFiveSeconds) {
    place(plainPhoto("red", "80x48"), m_disc / "1.png");
    place(plainPhoto("blue", "80x48"), m_disc / "2.png");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1, 0);
    const auto begun = m_unit.nextState(PlayState::Playing);
    ASSERT_TRUE(shows(red));
    const auto second = nextFile(2);
    EXPECT_NEAR(std::chrono::duration<double>(second.when - begun.when).count(), 5.0, 0.7);
    EXPECT_TRUE(shows(blue));
}

TEST_F(Pictures, PauseHoldsTheSlideShow) {
    place(plainPhoto("red", "80x48"), m_disc / "1.png");
    place(plainPhoto("blue", "80x48"), m_disc / "2.png");
    play();
    m_unit.command(5);
    m_unit.nextState(PlayState::Paused);
    m_unit.mark();
    EXPECT_FALSE(m_unit.follows("discstate", "2", 6s));
    EXPECT_TRUE(m_unit.since("trackinfo").empty());
    m_unit.command(5);
    m_unit.nextState(PlayState::Playing);
    nextFile(2);
}

TEST_F(Pictures, PhotosAreRotatedByQuarters) {
    place(twoHalves("png"), m_disc / "p.png");
    play();
    ASSERT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
    m_unit.command(163); // clockwise: the left half is on top
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, 380, blue));
    m_unit.command(163);
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, blue));
    m_unit.command(163);
    EXPECT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, blue));
    m_unit.command(163);
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
}

TEST_F(Pictures, PhotosAreEnlargedAroundTheirMiddle) {
    // A red square of half the size in the middle of blue.
    place(sample({"square.png", "-f lavfi -i color=blue:size=400x240 -vf "
                                "drawbox=x=100:y=60:w=200:h=120:color=red:t=fill -frames:v 1"}),
          m_disc / "p.png");
    play();
    ASSERT_TRUE(m_unit.pictures().waitFor(100, 60, blue));
    m_unit.command(20);
    m_unit.command(20); // twice as large
    EXPECT_TRUE(m_unit.pictures().waitFor(30, 30, red));
    m_unit.command(20);
    m_unit.command(20); // as it was
    EXPECT_TRUE(m_unit.pictures().waitFor(100, 60, blue));
}

TEST_F(Pictures, ANewPhotoIsShownUpright) {
    place(twoHalves("png"), m_disc / "1.png");
    place(twoHalves("jpg"), m_disc / "2.jpg");
    play();
    m_unit.command(163);
    ASSERT_TRUE(m_unit.pictures().waitFor(MiddleX, 100, red));
    m_unit.command(1);
    nextFile(2);
    EXPECT_TRUE(m_unit.pictures().waitFor(200, MiddleY, red));
    EXPECT_TRUE(m_unit.pictures().waitFor(600, MiddleY, blue));
}

TEST_F(Pictures, ZoomAndRotationAreRefusedForMusic) {
    place(toneFile("mp3", 30, "Song"), m_disc / "song.mp3");
    play();
    for (const int command : {20, 163}) {
        m_unit.command(command);
        m_unit.next("msgtip", "1");
    }
}

TEST_F(Pictures, FastForwardAndSeekAreRefusedForPhotos) {
    place(twoHalves("png"), m_disc / "1.png");
    play();
    for (const int command : {3, 4, 10, 185}) {
        m_unit.command(command);
        m_unit.next("msgtip", "1");
    }
}

TEST_F(Pictures, EjectTakesThePictureAway) {
    place(mp4(), m_disc / "clip.mp4");
    play();
    ASSERT_TRUE(shows(red));
    m_unit.command(13);
    m_unit.nextState(PlayState::Ejecting);
    m_unit.next("disc", "0");
    EXPECT_TRUE(m_unit.pictures().cleared());
}
