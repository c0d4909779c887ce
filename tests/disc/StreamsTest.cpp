#include "base/Paths.h"
#include "tests/disc/PictureFixture.h"

using namespace zm::test;
using namespace zm::disc::engine;
using namespace zm::disc::model;
using namespace std::chrono_literals;

namespace {

// Black for 30 s with two sound streams; with the first subtitle there is a large white text throughout.
std::string twoOfEach() {
    TempFolder folder;
    for (const char* name : {"one", "two"}) {
        const std::string text = name == std::string("one") ? "WWWWWWWWWW" : ".";
        writeFile(folder / (std::string(name) + ".srt"),
                  "1\n00:00:00,000 --> 00:00:30,000\n" + text + "\n\n");
    }
    return sample({"two-of-each.mkv",
                   "-f lavfi -i color=black:size=320x240:rate=25:duration=30 -f lavfi -i "
                   "sine=frequency=440:duration=30 -f lavfi -i sine=frequency=880:duration=30 -i '" +
                       folder / "one.srt" + "' -i '" + folder / "two.srt" +
                       "' -map 0 -map 1 -map 2 -map 3 -map 4 -c:v libx264 -preset ultrafast -pix_fmt yuv420p "
                       "-g 25 -c:a libvorbis -c:s srt -metadata:s:a:0 language=eng -metadata:s:a:1 "
                       "language=ger -metadata:s:s:0 language=eng -metadata:s:s:1 language=ara"});
}

std::string plainClip(const std::string& extension, const std::string& codec) {
    return sample({"plain." + extension, "-f lavfi -i color=red:size=320x240:rate=25:duration=20 -f lavfi -i "
                                         "sine=frequency=440:duration=20 " +
                                             codec});
}

class VideoStreams : public Pictures {
protected:
    // Other tests of the process have all decoders again.
    void TearDown() override { ::unsetenv("GST_PLUGIN_FEATURE_RANK"); }

    nlohmann::json nextDetail(const std::string& member, int value) {
        return m_unit.next("dvdstate", [&](const Published& each) { return each.json()[member] == value; })
            .json();
    }
    void nextRefusal() {
        m_unit.next("keyinvalid", "1");
        m_unit.next("msgtip", "1");
    }

    // Decoders are looked for when the service starts.
    void withoutDecoders(const std::string& ranks) {
        ASSERT_EQ(::setenv("GST_PLUGIN_FEATURE_RANK", ranks.c_str(), 1), 0);
        ASSERT_EQ(::setenv("ZM_RUNTIME", m_runtime.path().c_str(), 1), 0);
    }
    std::string logText() const { return readFile(zm::logFile(m_runtime.path().string())); }

    TempFolder m_runtime;
};

} // namespace

TEST_F(VideoStreams, AreAnnouncedWithTheFirstSoundAndNoSubtitle) {
    place(twoOfEach(), m_disc / "clip.mkv");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1);
    const auto detail = nextDetail("totalaudiomode", 2);
    EXPECT_EQ(detail["curaudiomode"], 1);
    EXPECT_EQ(detail["curaudiolan"], "en");
    EXPECT_EQ(detail["totalsubtitle"], 2);
    EXPECT_EQ(detail["cursubtitlenum"], 0);
    EXPECT_EQ(detail["totalangle"], 0);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(VideoStreams, SoundGoesRoundAndPlayingGoesOn) {
    place(twoOfEach(), m_disc / "clip.mkv");
    m_unit.play(m_disc.path().string());
    m_unit.command(11);
    EXPECT_EQ(nextDetail("curaudiomode", 2)["curaudiolan"], "de");
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 2; });
    m_unit.command(11);
    nextDetail("curaudiomode", 1);
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 4; });
}

TEST_F(VideoStreams, SubtitlesAreShownOneAfterTheOtherAndThenNone) {
    place(twoOfEach(), m_disc / "clip.mkv");
    m_unit.play(m_disc.path().string());
    // Subtitles stand in the lower part of the picture, in its middle.
    const int x = PictureWidth / 2;
    const int y = PictureHeight - 60;
    ASSERT_TRUE(m_unit.pictures().waitFor(x, y, black));
    m_unit.command(18);
    EXPECT_EQ(nextDetail("cursubtitlenum", 81)["cursubtitlelan"], "en");
    const auto until = std::chrono::steady_clock::now() + 10s;
    while (m_unit.pictures().at(x, y).red < 30 && std::chrono::steady_clock::now() < until) {
        m_unit.pictures().waitFrames(m_unit.pictures().frames(), 1);
    }
    EXPECT_GE(m_unit.pictures().at(x, y).red, 30) << "the text is drawn";
    m_unit.command(18);
    EXPECT_EQ(nextDetail("cursubtitlenum", 82)["cursubtitlelan"], "ar");
    EXPECT_TRUE(m_unit.pictures().waitFor(x, y, black));
    m_unit.command(18);
    nextDetail("cursubtitlenum", 0);
}

TEST_F(VideoStreams, WhatAFileDoesNotHaveIsRefused) {
    place(plainClip("mp4", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac"), m_disc / "clip.mp4");
    m_unit.play(m_disc.path().string());
    for (const int command : {11, 12, 18}) {
        m_unit.command(command);
        nextRefusal();
    }
}

TEST_F(VideoStreams, AreTakenBackWhenMusicFollows) {
    place(twoOfEach(), m_disc / "clip.mkv");
    place(toneFile("mp3", 30, "Song"), m_disc / "song.mp3");
    m_unit.play(m_disc.path().string());
    m_unit.command(182, (1 << 16) + 1, 3);
    nextDetail("totalaudiomode", 2);
    m_unit.command(182, (1 << 16) + 1, 1);
    EXPECT_EQ(nextDetail("totalaudiomode", 0)["totalsubtitle"], 0);
    m_unit.nextState(PlayState::Playing);
}

TEST_F(VideoStreams, AVideoWhoseDecoderIsMissingIsNamedAndSkipped) {
    withoutDecoders("avdec_mpeg4:NONE");
    place(plainClip("avi", "-c:v mpeg4 -vtag XVID -b:v 800k -c:a libmp3lame"), m_disc / "1.avi");
    place(plainClip("mp4", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac"), m_disc / "2.mp4");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1);
    m_unit.next("msgtip", "1");
    m_unit.next("errorstatus", "32");
    m_unit.next("trackinfo", [](const Published& each) { return each.json()["curmediaid"] == 2; });
    m_unit.nextState(PlayState::Playing);
    const std::string log = logText();
    EXPECT_NE(log.find("1.avi: not installed: "), std::string::npos) << log;
    EXPECT_NE(log.find("MPEG-4"), std::string::npos) << log;
}

TEST_F(VideoStreams, AVideoWhoseSoundDecoderIsMissingPlaysWithoutSound) {
    withoutDecoders("avdec_aac:NONE,avdec_aac_fixed:NONE,faad:NONE,fdkaacdec:NONE");
    place(plainClip("mp4", "-c:v libx264 -preset ultrafast -pix_fmt yuv420p -c:a aac"), m_disc / "1.mp4");
    m_unit.startService(m_disc.path().string());
    m_unit.command(187, 1);
    m_unit.nextState(PlayState::Playing);
    m_unit.next("playtime", [](const Published& each) { return each.json()["time"] >= 2; });
    EXPECT_EQ(m_unit.since("msgtip"), std::vector<std::string>{});
    EXPECT_TRUE(m_unit.pictures().waitFor(PictureWidth / 2, PictureHeight / 2, {255, 0, 0}));
    EXPECT_NE(logText().find("1.mp4: not installed: "), std::string::npos) << logText();
}
