#include "tests/model/ControllerTest.h"
#include "tests/model/PpsAttribute.h"

namespace zm::test {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ControllerChangesTest : public RunningControllerTest {};

struct ChangeRow {
    std::string object;
    std::string line;
    int code; ///< 0: no message
    bool publishesMediaInfo = false;
    bool publishesTrackText = false;
};

void PrintTo(const ChangeRow& row, std::ostream* out) {
    *out << row.object << " " << row.line;
}

const ChangeRow CHANGES[] = {
    {"/pps/zelmar/disc/status", "discstate::2", 1021, true},
    {"/pps/zelmar/disc/status", R"(playstate:json:{"repeat":1,"shuffle":1,"scan":0})", 1000},
    {"/pps/zelmar/disc/status", "playstate::1", 1000},
    {"/pps/zelmar/disc/status", "rootmenu::true", 1004},
    {"/pps/zelmar/disc/status", "parental::true", 1005},
    {"/pps/zelmar/disc/status", "updatedb::16", 1006},
    {"/pps/zelmar/disc/status", "dvdstate:json:{}", 1007},
    {"/pps/zelmar/disc/status", "audiochannel::1", 1008},
    {"/pps/zelmar/disc/status", "playspeed::2", 1009},
    {"/pps/zelmar/disc/status", "keyinvalid::1", 1010},
    {"/pps/zelmar/disc/status", "msgtip::3", 1026},
    {"/pps/zelmar/disc/status", "unknown::3", 0},
    {"/pps/zelmar/disc/device", "disc::1", 1013},
    {"/pps/zelmar/disc/device", "mediatype::2", 1011, true, true},
    {"/pps/zelmar/disc/device", "mixedtype::2", 1012},
    {"/pps/zelmar/disc/device", "mixedswitching::1", 1023},
    {"/pps/zelmar/disc/device", "errorstatus::48", 1024},
    {"/pps/zelmar/disc/device", "videomode::1", 1025},
    {"/pps/zelmar/disc/device", "connected::1", 0},
    {"/pps/zelmar/disc/playing", "trackinfo:json:{}", 1015, true},
    {"/pps/zelmar/disc/playing", R"(playtime:json:{"time":1,"tracktime":2,"times":3})", 1016, true},
    {"/pps/zelmar/disc/playing", R"(ID3:json:{"title":"t","artist":"a","album":"b"})", 1017, false, true},
    {"/pps/zelmar/disc/mpeginfo", "version::1.0", 1018},
    {"/pps/zelmar/disc/mpeginfo", "other::1.0", 0},
    {"/pps/zelmar/videoservice/status",
     R"(zmvideo:json:{"status":"on","wndgp_id":"g","wnd_id":"w","src":"zmdisc"})", 1019},
    {"/pps/zelmar/videoservice/status", R"(zmdisc:json:{"valid":1,"type":"t"})", 0},
    {"/pps/zelmar/system/dev_status", "autodiscin::1", 0},
    {"/pps/zelmar/system/dev_status", "discstatus::on", 0},
};

class EachChangeTest : public ControllerChangesTest, public testing::WithParamInterface<ChangeRow> {};

TEST_P(EachChangeTest, SendsItsMessageAndPublishes) {
    const ChangeRow& row = GetParam();
    std::string published =
        expectMessages(row.object, row.line, row.code ? std::vector{row.code} : std::vector<int>{});
    EXPECT_EQ(published.find("zmdisc_mediainfo:json:") != std::string::npos, row.publishesMediaInfo)
        << published;
    EXPECT_EQ(published.find("zmdisc:json:") != std::string::npos, row.publishesTrackText) << published;
}

INSTANTIATE_TEST_SUITE_P(Changes, EachChangeTest, testing::ValuesIn(CHANGES));

TEST_F(ControllerChangesTest, ADeletedAttributeCountsAsEmpty) {
    publish(STATUS, "playspeed::8");
    EXPECT_THAT(m_view.codes(1), ElementsAre(1009));
    EXPECT_EQ(m_data.GetPlaySpeed(), 8);
    publish(STATUS, "-playspeed");
    EXPECT_THAT(m_view.codes(1), ElementsAre(1009));
    EXPECT_EQ(m_data.GetPlaySpeed(), 0);
}

TEST_F(ControllerChangesTest, ADeletedDiscAttributeCountsAsADriveWithoutDisc) {
    expectMessages(DEVICE, "disc::2", {1013});
    expectMessages(DEVICE, "-disc", {1013});
    EXPECT_TRUE(m_data.GetDeviceStatus().bConnected);
    EXPECT_FALSE(m_data.GetDeviceStatus().bExisting);
}

TEST_F(ControllerChangesTest, ADeletedJsonAttributeKeepsTheRecordAndSendsItsMessage) {
    expectMessages(PLAYING, R"(playtime:json:{"time":1,"tracktime":2,"times":3})", {1016});
    expectMessages(PLAYING, "-playtime", {1016});
    EXPECT_EQ(m_data.GetPlayTime().trackTime, 2);
}

TEST_F(ControllerChangesTest, AnUnknownStatusAttributeIsLoggedAndSendsNothing) {
    forgetLog();
    expectMessages(STATUS, "unknown::3", {});
    EXPECT_THAT(logged(),
                testing::Contains("[ParsePPSAttr]-DiscStatusPPSModule::ParsePPSAttr, attr_name:unknown"));
}

TEST_F(ControllerChangesTest, AKeyThatIsInvalidSendsItsMessageAndStoresNothing) {
    for (const char* line : {"keyinvalid::1", "keyinvalid::", "keyinvalid:json:{\"a\":1}"}) {
        expectMessages(STATUS, line, {1010});
        EXPECT_EQ(m_data.GetCurPlayStatus().discState, -1);
        EXPECT_EQ(m_data.GetMsgTip() + m_data.GetPlaySpeed() + m_data.GetAudioChannel() +
                      m_data.GetUpdateDbState(),
                  0);
    }
}

TEST_F(ControllerChangesTest, PlayStateAsPlainTextChangesNothingButSendsItsMessage) {
    expectMessages(STATUS, R"(playstate::{"repeat":1,"shuffle":1,"scan":1})", {1000});
    EXPECT_EQ(m_data.GetCurPlayStatus().repeat, -1);
}

TEST_F(ControllerChangesTest, EqualValuesSendTheirMessageAgain) {
    for (int round = 0; round < 3; ++round) {
        expectMessages(STATUS, "discstate::2\nrootmenu::true", {1021, 1004});
    }
    EXPECT_EQ(m_data.GetCurPlayStatus().discState, 2);
}

TEST_F(ControllerChangesTest, SeveralAttributesOfOneWriteComeInTheOrderOfTheLines) {
    expectMessages(STATUS, "playspeed::1\nmsgtip::2\ndiscstate::6\nunknown::1\nrootmenu::false\n",
                   {1009, 1026, 1021, 1004});
}

TEST_F(ControllerChangesTest, MessagesCarryNothingButTheirCode) {
    publish(STATUS, "playspeed::8");
    EXPECT_THAT(m_view.take(1), ElementsAre(ViewMessage{1009, 0, 0, 0}));
}

TEST_F(ControllerTest, TheStoreIsWrittenBeforeTheMessageAndNowPlayingPublishedBehindIt) {
    int stateAtMessage = -1;
    std::string publishedAtMessage;
    m_view.onMessage = [&](int) {
        stateAtMessage = m_data.GetCurPlayStatus().discState;
        publishedAtMessage = object(NOWPLAYING);
    };
    EXPECT_TRUE(m_controller.Init());
    EXPECT_TRUE(m_controller.Start());
    PpsFile reader = open(NOWPLAYING, "?delta");
    ASSERT_TRUE(reader.read());
    publish(STATUS, "discstate::2");
    EXPECT_THAT(m_view.codes(1), ElementsAre(1021));
    EXPECT_EQ(stateAtMessage, 2);
    EXPECT_EQ(publishedAtMessage, "@nowplaying\n");
    EXPECT_THAT(next(reader), HasSubstr("\"status\":\"play\""));
}

TEST_F(ControllerChangesTest, AMediaTypePublishesMediaInfoAndThenTheTrackText) {
    PpsFile reader = open(NOWPLAYING, "?delta");
    ASSERT_TRUE(reader.read());
    expectMessages(DEVICE, "mediatype::1", {1011});
    std::string text = next(reader);
    size_t info = text.find("zmdisc_mediainfo:json:");
    size_t track = text.find("zmdisc:json:");
    ASSERT_NE(info, std::string::npos);
    ASSERT_NE(track, std::string::npos);
    EXPECT_LT(info, track);
    EXPECT_THAT(text, HasSubstr("\"mediatype\":\"cd\""));
}

TEST_F(ControllerChangesTest, AVideoServiceThatShowsThisSourceDoesNotChangeTheStore) {
    expectMessages(VIDEO_STATUS, R"(zmvideo:json:{"status":"on","wndgp_id":"g","wnd_id":"w","src":"zmdisc"})",
                   {1019});
    EXPECT_FALSE(m_data.GetVideoStatus());
}

TEST_F(ControllerChangesTest, NothingArrivesFromTheSystemObject) {
    expectMessages(SYSTEM, "autodiscin::1", {});
    EXPECT_FALSE(m_data.GetDiscAutoInsertFlag());
}

TEST_F(ControllerChangesTest, AChangeDeliveredForTheSystemObjectIsParsedWithoutAMessage) {
    m_controller.OnAttributeChange(8, PpsAttribute("autodiscin", "", "1").get());
    EXPECT_TRUE(m_data.GetDiscAutoInsertFlag());
    EXPECT_THAT(m_view.take(0), IsEmpty());
}

TEST_F(ControllerChangesTest, ChangesUnderOtherKeysAreLeftToTheFramework) {
    for (int key : {-1, 0, 5, 6, 9, 10}) {
        m_controller.OnAttributeChange(key, PpsAttribute("discstate", "", "2").get());
    }
    EXPECT_THAT(m_view.take(0), IsEmpty());
    EXPECT_EQ(m_data.GetCurPlayStatus().discState, -1);
}

} // namespace zm::test
