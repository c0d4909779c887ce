#include "tests/model/DiscDataFlags.h"
#include "tests/model/ModelTest.h"

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

class DiscDataTest : public ModelTest {
protected:
    void expectNoTrack() const {
        T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
        EXPECT_EQ(std::tie(info.clipsType, info.curMediaId, info.curMediaIds, info.mediaId, info.mediaIds,
                           info.chapter, info.title, info.chapters, info.titles, info.parentFolder),
                  std::tuple(0, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    }
    void expectNoDvd() const {
        T_DVD_DETAIL dvd = m_data.GetCurDvdState();
        EXPECT_EQ(dvd.audioType + dvd.audioChannel + dvd.curAudioLan + dvd.curSubtitleLan, "");
        EXPECT_EQ(std::tie(dvd.curAngle, dvd.totalAngle, dvd.curAudioMode, dvd.totalAudioMode,
                           dvd.curSubtitleNum, dvd.totalSubtitle),
                  std::tuple(0, 0, 0, 0, 0, 0));
    }

    CDiscData m_data;
};

TEST_F(DiscDataTest, BeforeAnyDeviceAttributeNothingIsConnectedAndTypesAreUnknown) {
    T_MPEG_DEVICE_STATUS status = m_data.GetDeviceStatus();
    EXPECT_FALSE(status.bConnected);
    EXPECT_FALSE(status.bExisting);
    EXPECT_FALSE(status.bMixedSwitching);
    EXPECT_EQ(status.nMediaType, 255);
    EXPECT_EQ(status.nMixedType, 128);
    EXPECT_EQ(status.nErrorStatus, 0);
    EXPECT_EQ(status.nVideoMode, 0);
}

TEST_F(DiscDataTest, BeforeAnyStateEveryPlayStatusFieldIsMinusOne) {
    T_PLAY_STATUS status = m_data.GetCurPlayStatus();
    EXPECT_EQ(status.discState, -1);
    EXPECT_EQ(status.repeat, -1);
    EXPECT_EQ(status.shuffle, -1);
    EXPECT_EQ(status.scan, -1);
}

TEST_F(DiscDataTest, EverythingElseBeginsEmpty) {
    expectNoTrack();
    expectNoDvd();
    T_PLAYTIME_INFO time = m_data.GetPlayTime();
    EXPECT_EQ(time.time, 0);
    EXPECT_EQ(time.trackTime, 0);
    EXPECT_EQ(time.times, 0);
    T_ID3_INFO id3 = m_data.GetID3Info();
    EXPECT_EQ(id3.title + id3.artist + id3.album, "");
    EXPECT_EQ(m_data.GetMpegVersion(), "");
    EXPECT_EQ(m_data.GetPlayFileName(), "");
    EXPECT_FALSE(m_data.GetDVDRootMenuFlag());
    EXPECT_FALSE(m_data.GetDVDParentalFlag());
    EXPECT_FALSE(m_data.GetDiscAutoInsertFlag());
    EXPECT_FALSE(m_data.GetVideoStatus());
    EXPECT_FALSE(m_data.GetDiscInBegin());
    EXPECT_EQ(m_data.GetAudioChannel(), 0);
    EXPECT_EQ(m_data.GetPlaySpeed(), 0);
    EXPECT_EQ(m_data.GetUpdateDbState(), 0);
    EXPECT_EQ(m_data.GetMsgTip(), 0);
}

TEST_F(DiscDataTest, TheWholeProgramSharesOneInstance) {
    EXPECT_NE(CDiscData::GetInstance(), nullptr);
    EXPECT_EQ(CDiscData::GetInstance(), CDiscData::GetInstance());
}

TEST_F(DiscDataTest, SingleValuesAreKept) {
    m_data.Init();
    m_data.SetMsgTip(-7);
    m_data.SetDiscInBegin(true);
    m_data.SetVideoStatus(true);
    m_data.SetDiscAutoInsertFlag(true);
    m_data.SetUpdateDbState(16);
    m_data.SetPlaySpeed(8);
    m_data.SetAudioChannel(2);
    m_data.SetDVDParentalFlag(true);
    m_data.SetDVDRootMenuFlag(true);
    m_data.SetMpegVersion("1.2");
    m_data.SetPlayFileName("song.mp3");
    EXPECT_EQ(m_data.GetMsgTip(), -7);
    EXPECT_TRUE(m_data.GetDiscInBegin());
    EXPECT_TRUE(m_data.GetVideoStatus());
    EXPECT_TRUE(m_data.GetDiscAutoInsertFlag());
    EXPECT_EQ(m_data.GetUpdateDbState(), 16);
    EXPECT_EQ(m_data.GetPlaySpeed(), 8);
    EXPECT_EQ(m_data.GetAudioChannel(), 2);
    EXPECT_TRUE(m_data.GetDVDParentalFlag());
    EXPECT_TRUE(m_data.GetDVDRootMenuFlag());
    EXPECT_EQ(m_data.GetMpegVersion(), "1.2");
    EXPECT_EQ(m_data.GetPlayFileName(), "song.mp3");
}

TEST_F(DiscDataTest, RecordsAreKeptWithEveryField) {
    m_data.SetDeviceStatus({true, true, true, 3, 6, 48, 1});
    T_MPEG_DEVICE_STATUS status = m_data.GetDeviceStatus();
    EXPECT_TRUE(status.bConnected && status.bExisting && status.bMixedSwitching);
    EXPECT_EQ(std::tie(status.nMediaType, status.nMixedType, status.nErrorStatus, status.nVideoMode),
              std::tuple(3, 6, 48, 1));

    m_data.SetCurPlayInfo({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    EXPECT_EQ(std::tie(info.clipsType, info.curMediaId, info.curMediaIds, info.mediaId, info.mediaIds,
                       info.chapter, info.title, info.chapters, info.titles, info.parentFolder),
              std::tuple(1, 2, 3, 4, 5, 6, 7, 8, 9, 10));

    m_data.SetCurPlayStatus({2, 4, 1, 3});
    T_PLAY_STATUS play = m_data.GetCurPlayStatus();
    EXPECT_EQ(std::tie(play.discState, play.repeat, play.shuffle, play.scan), std::tuple(2, 4, 1, 3));

    m_data.SetPlayTime({10, 200, 3});
    T_PLAYTIME_INFO time = m_data.GetPlayTime();
    EXPECT_EQ(std::tie(time.time, time.trackTime, time.times), std::tuple(10, 200, 3));

    m_data.SetID3Info({"title", "artist", "album"});
    T_ID3_INFO id3 = m_data.GetID3Info();
    EXPECT_EQ(std::tie(id3.title, id3.artist, id3.album), std::tuple("title", "artist", "album"));

    m_data.SetCurDvdState({1, 2, "AC3", "5.1", "en", 3, 4, "de", 5, 6});
    T_DVD_DETAIL dvd = m_data.GetCurDvdState();
    EXPECT_EQ(std::tie(dvd.curAngle, dvd.totalAngle, dvd.audioType, dvd.audioChannel, dvd.curAudioLan,
                       dvd.curAudioMode, dvd.totalAudioMode, dvd.curSubtitleLan, dvd.curSubtitleNum,
                       dvd.totalSubtitle),
              std::tuple(1, 2, "AC3", "5.1", "en", 3, 4, "de", 5, 6));
}

TEST_F(DiscDataTest, GettersGiveCopies) {
    m_data.SetID3Info({"before", "", ""});
    T_ID3_INFO copy = m_data.GetID3Info();
    m_data.SetID3Info({"after", "", ""});
    EXPECT_EQ(copy.title, "before");
}

TEST_F(DiscDataTest, VideoStatusIsLoggedEvenWhenItDoesNotChange) {
    m_data.SetVideoStatus(true);
    m_data.SetVideoStatus(true);
    m_data.SetVideoStatus(false);
    EXPECT_THAT(logged(), ElementsAre("[SetVideoStatus]-=============SetVideoStatus:1==================",
                                      "[SetVideoStatus]-=============SetVideoStatus:1==================",
                                      "[SetVideoStatus]-=============SetVideoStatus:0=================="));
}

TEST_F(DiscDataTest, ConstructionAndTheOtherSettersLogNothing) {
    CDiscData other;
    other.SetMsgTip(1);
    other.SetDeviceStatus({});
    other.SetPlayTime({1, 2, 3});
    other.SetDVDRootMenuFlag(true);
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(DiscDataTest, TheSeventeenFlagsBeginFalseAndAreKeptApart) {
    static_assert(std::size(FLAGS) == 17);
    for (const FlagRow& set : FLAGS) {
        for (const FlagRow& row : FLAGS) {
            EXPECT_FALSE((m_data.*row.get)()) << row.name;
        }
        (m_data.*set.set)(true);
        for (const FlagRow& row : FLAGS) {
            EXPECT_EQ((m_data.*row.get)(), row.name == set.name) << row.name << " after setting " << set.name;
        }
        (m_data.*set.set)(false);
    }
}

TEST_F(DiscDataTest, EightFlagSettersLogTheirNameAndValue) {
    for (const FlagRow& row : FLAGS) {
        forgetLog();
        (m_data.*row.set)(true);
        (m_data.*row.set)(false);
        std::string setter = std::string("SetUpdate") + row.name + "Flag";
        if (row.isLogged) {
            EXPECT_THAT(logged(), ElementsAre("[" + setter + "]-" + setter + ":1",
                                              "[" + setter + "]-" + setter + ":0"));
        } else {
            EXPECT_THAT(logged(), IsEmpty()) << row.name;
        }
    }
}

TEST_F(DiscDataTest, ResetForgetsTheDiscButKeepsSomeFlags) {
    for (const FlagRow& row : FLAGS) {
        (m_data.*row.set)(true);
    }
    m_data.SetPlayTime({1, 2, 3});
    m_data.SetCurPlayStatus({1, 2, 3, 4});
    m_data.SetCurPlayInfo({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    m_data.SetCurDvdState({1, 2, "a", "b", "c", 3, 4, "d", 5, 6});
    m_data.SetDVDRootMenuFlag(true);
    m_data.SetDVDParentalFlag(true);
    m_data.SetVideoStatus(true);
    m_data.SetAudioChannel(1);
    m_data.SetPlaySpeed(1);
    m_data.SetUpdateDbState(1);
    forgetLog();

    m_data.ResetDiscInfo();

    for (const FlagRow& row : FLAGS) {
        EXPECT_EQ((m_data.*row.get)(), !row.isReset) << row.name;
    }
    EXPECT_EQ(m_data.GetPlayTime().time + m_data.GetPlayTime().trackTime + m_data.GetPlayTime().times, 0);
    T_PLAY_STATUS play = m_data.GetCurPlayStatus();
    EXPECT_EQ(std::tie(play.discState, play.repeat, play.shuffle, play.scan), std::tuple(-1, -1, -1, -1));
    expectNoTrack();
    expectNoDvd();
    EXPECT_FALSE(m_data.GetDVDRootMenuFlag());
    EXPECT_FALSE(m_data.GetDVDParentalFlag());
    EXPECT_FALSE(m_data.GetVideoStatus());
    EXPECT_EQ(m_data.GetAudioChannel() + m_data.GetPlaySpeed() + m_data.GetUpdateDbState(), 0);
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(DiscDataTest, ResetLeavesDeviceTagsTextsAndTips) {
    m_data.SetDeviceStatus({true, true, false, 2, 2, 0, 0});
    m_data.SetID3Info({"title", "artist", "album"});
    m_data.SetMpegVersion("1");
    m_data.SetPlayFileName("name");
    m_data.SetMsgTip(3);
    m_data.SetDiscAutoInsertFlag(true);
    m_data.SetDiscInBegin(true);
    m_data.ResetDiscInfo();
    EXPECT_EQ(m_data.GetDeviceStatus().nMediaType, 2);
    EXPECT_EQ(m_data.GetID3Info().title, "title");
    EXPECT_EQ(m_data.GetMpegVersion(), "1");
    EXPECT_EQ(m_data.GetPlayFileName(), "name");
    EXPECT_EQ(m_data.GetMsgTip(), 3);
    EXPECT_TRUE(m_data.GetDiscAutoInsertFlag());
    EXPECT_TRUE(m_data.GetDiscInBegin());
}

} // namespace zm::test
