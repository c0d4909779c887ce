#include "tests/model/PpsUnit.h"

#include "ZMModel/CDiscData.h"
#include "ZMModel/DiscControlPPSModule.h"
#include "ZMModel/DiscNowPlayingPPSModule.h"
#include "ZMModel/DiscPPSInfo.h"
#include "ZMModel/DiscVideoCommandPPSModule.h"
#include "sys/pps.h"

#include <malloc.h>

/** Whether an encoder has a text to give, as it does not when memory has run out. */
static bool hasEncoderBuffer = true;

// Stands before the platform's function.
extern "C" const char* __real_pps_encoder_buffer(pps_encoder_t* encoder);
extern "C" const char* __wrap_pps_encoder_buffer(pps_encoder_t* encoder) {
    return hasEncoderBuffer ? __real_pps_encoder_buffer(encoder) : nullptr;
}

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

class PublishModulesTest : public PpsUnit {
protected:
    PublishModulesTest() {
        m_control.AttachData(&m_data);
        m_nowPlaying.AttachData(&m_data);
        m_videoCommand.AttachData(&m_data);
        EXPECT_TRUE(m_control.OpenPPS());
        EXPECT_TRUE(m_nowPlaying.OpenPPS());
        EXPECT_TRUE(m_videoCommand.OpenPPS());
    }

    void setMediaType(int type) {
        T_MPEG_DEVICE_STATUS status = m_data.GetDeviceStatus();
        status.nMediaType = type;
        m_data.SetDeviceStatus(status);
    }
    void setDiscState(int state) { m_data.SetCurPlayStatus({state, -1, -1, -1}); }
    std::string mediaInfo() {
        EXPECT_TRUE(m_nowPlaying.PublishMediaInfo());
        return object(NOWPLAYING);
    }
    std::string trackText() {
        EXPECT_TRUE(m_nowPlaying.PublishPlayID3());
        return object(NOWPLAYING);
    }
    static std::string mediaInfoText(const std::string& status, const std::string& type,
                                     const std::string& numbers) {
        return "@nowplaying\nzmdisc_mediainfo:json:{\"status\":\"" + status + "\",\"mediatype\":\"" + type +
               "\"," + numbers + "}\n";
    }
    static std::string numbers(int time, int total, int file, int files) {
        return "\"playtime\":" + std::to_string(time) + ",\"totaltime\":" + std::to_string(total) +
               ",\"filenum\":" + std::to_string(file) + ",\"totalfilenum\":" + std::to_string(files);
    }
    static std::string trackTextOf(const std::string& title, const std::string& artist,
                                   const std::string& album) {
        return "@nowplaying\nzmdisc:json:{\"name\":\"Disc\",\"info0\":\"" + title + "\",\"info1\":\"" +
               artist + "\",\"info2\":\"" + album + "\",\"iconpath\":\"\"}\n";
    }

    CDiscData m_data;
    DiscControlPPSModule m_control{g_DiscControlPPSInfo, nullptr};
    DiscNowPlayingPPSModule m_nowPlaying{g_DiscNowPlayingPPSInfo, nullptr};
    DiscVideoCommandPPSModule m_videoCommand{g_DiscVideoCommandPPSInfo};
};

TEST_F(PublishModulesTest, ACommandIsOneJsonAttribute) {
    PpsFile reader = open(CONTROL, "?delta");
    ASSERT_TRUE(reader.read());
    EXPECT_TRUE(m_control.PublishCmdCommmand(182, -1, 65537));
    EXPECT_EQ(next(reader), "@control\nzmcmd:json:{\"cmd\":182,\"param1\":-1,\"param2\":65537}\n");
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(PublishModulesTest, EqualCommandsInARowAllArrive) {
    PpsFile reader = open(CONTROL, "?delta");
    ASSERT_TRUE(reader.read());
    const std::string one = "@control\nzmcmd:json:{\"cmd\":1,\"param1\":0,\"param2\":0}\n";
    m_control.PublishCmdCommmand(1, 0, 0);
    m_control.PublishCmdCommmand(1, 0, 0);
    std::string text = next(reader);
    text += text == one ? next(reader) : "";
    EXPECT_EQ(text, one + one);
}

TEST_F(PublishModulesTest, ACommandThatCannotBeWrittenFails) {
    m_control.ClosePPS();
    EXPECT_FALSE(m_control.PublishCmdCommmand(1, 0, 0));
}

TEST_F(PublishModulesTest, BeforeAnyStateTheMediaInfoIsIdleAndUnknown) {
    EXPECT_EQ(mediaInfo(), mediaInfoText("idle", "unknown", numbers(0, 0, 0, 0)));
}

TEST_F(PublishModulesTest, StatusWordsFollowTheDiscState) {
    setMediaType(2);
    const std::pair<int, const char*> ROWS[] = {
        {-1, "idle"}, {0, "stop"},      {1, "loading"},    {2, "play"},  {3, "idle"},
        {5, "idle"},  {6, "pause"},     {9, "err_device"}, {10, "play"}, {11, "play"},
        {12, "idle"}, {20, "ejecting"}, {21, "idle"},
    };
    for (auto [state, word] : ROWS) {
        setDiscState(state);
        EXPECT_EQ(mediaInfo(), mediaInfoText(word, "music", numbers(0, 0, 0, 0))) << state;
    }
}

TEST_F(PublishModulesTest, MediaTypesChooseNumbersAndTimes) {
    m_data.SetCurPlayInfo({0, 1, 2, 30, 40, 3, 5, 12, 6, 7});
    m_data.SetPlayTime({61, 240, 3600});
    const std::tuple<int, const char*, std::string> ROWS[] = {
        {0, "dvd", numbers(61, 240, 3, 12)},    {1, "cd", numbers(61, 240, 30, 40)},
        {2, "music", numbers(61, 240, 30, 40)}, {3, "video", numbers(61, 240, 30, 40)},
        {4, "photo", numbers(0, 0, 30, 40)},    {5, "vcd", numbers(61, 240, 30, 40)},
        {6, "unknown", numbers(0, 0, 0, 0)},    {255, "unknown", numbers(0, 0, 0, 0)},
        {-1, "unknown", numbers(0, 0, 0, 0)},
    };
    for (const auto& [type, name, expected] : ROWS) {
        setMediaType(type);
        EXPECT_EQ(mediaInfo(), mediaInfoText("idle", name, expected)) << type;
    }
}

TEST_F(PublishModulesTest, ADvdPublishesItsChaptersInsteadOfTheTracks) {
    setMediaType(0);
    m_data.SetCurPlayInfo({0, 1, 2, 30, 40, 3, 5, 12, 6, 7});
    EXPECT_EQ(mediaInfo(), mediaInfoText("idle", "dvd", numbers(0, 0, 3, 12)));
}

TEST_F(PublishModulesTest, PhotosPublishNoTimesWhateverThePlayTimeHolds) {
    setMediaType(4);
    m_data.SetPlayTime({61, 240, 3600});
    EXPECT_EQ(mediaInfo(), mediaInfoText("idle", "photo", numbers(0, 0, 0, 0)));
}

TEST_F(PublishModulesTest, AVideoPublishesEmptyTexts) {
    setMediaType(3);
    m_data.SetID3Info({"title", "artist", "album"});
    m_data.SetPlayFileName("film.avi");
    EXPECT_EQ(trackText(), trackTextOf("", "", ""));
}

TEST_F(PublishModulesTest, TrackTextDependsOnTheMediaType) {
    m_data.SetID3Info({"title", "artist", "album"});
    m_data.SetPlayFileName("file.mp3");
    const std::tuple<int, std::string> ROWS[] = {
        {0, trackTextOf("", "", "")},
        {1, trackTextOf("title", "artist", "album")},
        {2, trackTextOf("file.mp3", "artist", "album")},
        {3, trackTextOf("", "", "")},
        {4, trackTextOf("", "", "")},
        {5, trackTextOf("", "", "")},
        {255, trackTextOf("", "", "")},
    };
    for (const auto& [type, expected] : ROWS) {
        setMediaType(type);
        EXPECT_EQ(trackText(), expected) << type;
    }
}

TEST_F(PublishModulesTest, TextsAreEscapedAsJson) {
    setMediaType(1);
    m_data.SetID3Info({"say \"hi\"", "line\nfeed", "b\\slash \xe4\xb8\xad"});
    EXPECT_EQ(trackText(), trackTextOf(R"(say \"hi\")", R"(line\nfeed)", "b\\\\slash \xe4\xb8\xad"));
}

TEST_F(PublishModulesTest, OnlyTheTrackTextIsLogged) {
    m_nowPlaying.PublishMediaInfo();
    EXPECT_THAT(logged(), IsEmpty());
    m_nowPlaying.PublishPlayID3();
    EXPECT_THAT(logged(), ElementsAre("[PublishPlayID3]-[DiscNowPlayingPPSModule::PublishPlayID3]"));
}

TEST_F(PublishModulesTest, TrackTextAndMediaInfoStandSideBySide) {
    setMediaType(1);
    mediaInfo();
    EXPECT_EQ(trackText(), mediaInfoText("idle", "cd", numbers(0, 0, 0, 0)) +
                               trackTextOf("", "", "").substr(std::string("@nowplaying\n").size()));
}

TEST_F(PublishModulesTest, WithoutAStateStoreNothingIsPublished) {
    m_nowPlaying.AttachData(nullptr);
    EXPECT_FALSE(m_nowPlaying.PublishMediaInfo());
    EXPECT_FALSE(m_nowPlaying.PublishPlayID3());
    EXPECT_EQ(object(NOWPLAYING), "@nowplaying\n");
    EXPECT_THAT(logged(), ElementsAre("[PublishPlayID3]-[DiscNowPlayingPPSModule::PublishPlayID3]"));
}

TEST_F(PublishModulesTest, WithoutATextCommandAndNowPlayingSucceedAndVideoCaptureFails) {
    hasEncoderBuffer = false;
    EXPECT_TRUE(m_control.PublishCmdCommmand(1, 0, 0));
    EXPECT_TRUE(m_nowPlaying.PublishMediaInfo());
    EXPECT_TRUE(m_nowPlaying.PublishPlayID3());
    EXPECT_FALSE(m_videoCommand.OperateVideoCapture(true, "g", "w", "s"));
    hasEncoderBuffer = true;
    EXPECT_EQ(object(CONTROL) + object(NOWPLAYING) + object(VIDEO_COMMAND),
              "@control\n@nowplaying\n@command\n")
        << "nothing is written";
}

TEST_F(PublishModulesTest, NowPlayingThatCannotBeWrittenFails) {
    m_nowPlaying.ClosePPS();
    EXPECT_FALSE(m_nowPlaying.PublishMediaInfo());
    EXPECT_FALSE(m_nowPlaying.PublishPlayID3());
}

TEST_F(PublishModulesTest, VideoCaptureNamesWindowAndSource) {
    EXPECT_TRUE(m_videoCommand.OperateVideoCapture(true, "1-7-zelmar-disc", "capture", "zmdisc"));
    EXPECT_EQ(object(VIDEO_COMMAND),
              "@command\nzmvideo:json:{\"status\":\"on\",\"wndgp_id\":\"1-7-zelmar-disc\","
              "\"wnd_id\":\"capture\",\"src\":\"zmdisc\"}\n");
    EXPECT_TRUE(m_videoCommand.OperateVideoCapture(false, "", "", ""));
    EXPECT_EQ(object(VIDEO_COMMAND),
              "@command\nzmvideo:json:{\"status\":\"off\",\"wndgp_id\":\"\",\"wnd_id\":\"\",\"src\":\"\"}\n");
}

TEST_F(PublishModulesTest, WhatIsPublishedTakesNoMemoryForEver) {
    const std::string text(4000, 'x');
    const auto publish = [&] { EXPECT_TRUE(m_videoCommand.OperateVideoCapture(true, text, text, text)); };
    publish();
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 1000; ++i) {
        publish();
    }
    EXPECT_LT(mallinfo2().uordblks, before + 1'000'000);
}

TEST_F(PublishModulesTest, VideoCaptureThatCannotBeWrittenFails) {
    m_videoCommand.ClosePPS();
    EXPECT_FALSE(m_videoCommand.OperateVideoCapture(true, "g", "w", "s"));
}

} // namespace zm::test
