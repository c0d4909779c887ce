#include "tests/model/ModelTest.h"
#include "tests/model/PpsAttribute.h"

#include "ZMModel/CDiscData.h"
#include "ZMModel/DiscPPSInfo.h"
#include "ZMModel/DiscPlayingPPSModule.h"
#include "ZMModel/DiscVideoStatusPPSModule.h"

/** Whether a decoded source is the program's own constant, as no decoder would give it. */
static bool givesOwnSource = false;

// Stands before the platform's function.
extern "C" pps_decoder_error_t __real_pps_decoder_get_string(pps_decoder_t* decoder, const char* name,
                                                             const char** value);
extern "C" pps_decoder_error_t __wrap_pps_decoder_get_string(pps_decoder_t* decoder, const char* name,
                                                             const char** value) {
    const pps_decoder_error_t result = __real_pps_decoder_get_string(decoder, name, value);
    if (givesOwnSource && std::string_view(name) == VIDEO_ZMVIDEO_SRC) {
        *value = VIDEO_STATUS_ZMDISC;
    }
    return result;
}

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

class PlayingModuleTest : public ModelTest {
protected:
    PlayingModuleTest() { m_module.AttachData(&m_data); }
    /** The fields of the play info, in the order of the record. */
    std::array<int, 10> track() const {
        const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
        return {info.clipsType, info.curMediaId, info.curMediaIds, info.mediaId, info.mediaIds,
                info.chapter,   info.title,      info.chapters,    info.titles,  info.parentFolder};
    }
    int give(const std::string& name, const std::string& encoding, const std::string& value) {
        return parse(m_module, name, encoding, value);
    }

    CDiscData m_data;
    DiscPlayingPPSModule m_module{g_DiscPlayingPPSInfo, nullptr};
};

constexpr const char* TRACK_INFO = R"({"curmediaid":1,"curmediaids":2,"mediaid":3,"mediaids":4,"chapter":5,)"
                                   R"("chapters":6,"title":7,"titles":8,"parentFolder":9})";

TEST_F(PlayingModuleTest, TrackInfoFillsThePlayInfoAndKeepsTheClipsType) {
    m_data.SetCurPlayInfo({77, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(give("trackinfo", "json", TRACK_INFO), 0);
    EXPECT_THAT(track(), ElementsAre(77, 1, 2, 3, 4, 5, 7, 6, 8, 9));
}

TEST_F(PlayingModuleTest, TrackInfoLackingAnyMemberChangesNoField) {
    for (const char* member : {"curmediaid", "curmediaids", "mediaid", "mediaids", "chapter", "chapters",
                               "title", "titles", "parentFolder"}) {
        std::string value = TRACK_INFO;
        value.replace(value.find("\"" + std::string(member) + "\""), 1, "\"x");
        m_data.SetCurPlayInfo({77, 11, 12, 13, 14, 15, 16, 17, 18, 19});
        EXPECT_EQ(give("trackinfo", "json", value), 0);
        EXPECT_THAT(track(), ElementsAre(77, 11, 12, 13, 14, 15, 16, 17, 18, 19)) << "without " << member;
    }
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(PlayingModuleTest, FurtherMembersAndAnyOrderAreTaken) {
    EXPECT_EQ(give("playtime", "json", R"({"times":3,"more":{"a":[1]},"time":1,"tracktime":2})"), 1);
    EXPECT_EQ(m_data.GetPlayTime().times, 3);
    EXPECT_EQ(m_data.GetPlayTime().trackTime, 2);
}

TEST_F(PlayingModuleTest, NegativeNumbersAreTaken) {
    EXPECT_EQ(give("playtime", "json", R"({"time":-1,"tracktime":-2147483648,"times":2147483647})"), 1);
    T_PLAYTIME_INFO time = m_data.GetPlayTime();
    EXPECT_EQ(std::tie(time.time, time.trackTime, time.times), std::tuple(-1, INT32_MIN, INT32_MAX));
}

TEST_F(PlayingModuleTest, PlayTimeIsStored) {
    EXPECT_EQ(give("playtime", "json", R"({"time":61,"tracktime":240,"times":3600})"), 1);
    T_PLAYTIME_INFO time = m_data.GetPlayTime();
    EXPECT_EQ(std::tie(time.time, time.trackTime, time.times), std::tuple(61, 240, 3600));
    EXPECT_EQ(give("playtime", "json", R"({"time":62,"tracktime":240})"), 1);
    EXPECT_EQ(m_data.GetPlayTime().time, 61);
}

TEST_F(PlayingModuleTest, TagsAreStored) {
    EXPECT_EQ(give("ID3", "json", "{\"title\":\"T\xc3\xa4\",\"artist\":\"A \\u4e2d\",\"album\":\"\"}"), 2);
    T_ID3_INFO id3 = m_data.GetID3Info();
    EXPECT_EQ(std::tie(id3.title, id3.artist, id3.album), std::tuple("T\xc3\xa4", "A \xe4\xb8\xad", ""));
    EXPECT_THAT(logged(), IsEmpty()) << "the module has no entry log";
}

TEST_F(PlayingModuleTest, TagsWithADecoderErrorAreLoggedAndNotStored) {
    m_data.SetID3Info({"kept", "", ""});
    for (const char* value :
         {R"({"title":"x","artist":"y"})", "{", R"({"title":1,"artist":"y","album":"z"})"}) {
        EXPECT_EQ(give("ID3", "json", value), 2);
        EXPECT_EQ(m_data.GetID3Info().title, "kept");
        EXPECT_THAT(
            logged(),
            ElementsAre("[SubscribePlayID3]-[DiscPlayingPPSModule::SubscribePlayID3] pps_decoder error"));
    }
}

TEST_F(PlayingModuleTest, OtherEncodingsAreIgnoredWithoutALogLine) {
    EXPECT_EQ(give("trackinfo", "", TRACK_INFO), 0);
    EXPECT_EQ(give("playtime", "n", R"({"time":61,"tracktime":240,"times":3600})"), 1);
    EXPECT_EQ(give("ID3", "", R"({"title":"x","artist":"y","album":"z"})"), 2);
    EXPECT_EQ(m_data.GetCurPlayInfo().curMediaId, 0);
    EXPECT_EQ(m_data.GetPlayTime().time, 0);
    EXPECT_EQ(m_data.GetID3Info().title, "");
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(PlayingModuleTest, NoNameLeadsToTheClipsType) {
    EXPECT_EQ(give("clipstype", "", "3"), -1);
    EXPECT_EQ(give("id3", "json", "{}"), -1);
    EXPECT_EQ(parseNameless(m_module), -1);
    EXPECT_EQ(m_data.GetCurPlayInfo().clipsType, 0);
    EXPECT_THAT(logged(), IsEmpty());

    char encoding[] = "";
    char value[] = "5";
    m_module.SubscribeClipsType(encoding, value);
    EXPECT_EQ(m_data.GetCurPlayInfo().clipsType, 5);
}

class VideoStatusModuleTest : public ModelTest {
protected:
    static constexpr const char* PATH = "mpu/apps/Platen/ZMModel/DiscVideoStatusPPSModule";

    VideoStatusModuleTest() { m_module.AttachData(&m_data); }
    /** Parses and gives what was logged behind the entry line. */
    std::vector<std::string> give(int index, const std::string& name, const std::string& encoding,
                                  const std::string& value) {
        EXPECT_EQ(parse(m_module, name, encoding, value), index);
        auto lines = logged();
        EXPECT_EQ(lines.at(0), "[ParsePPSAttr]-DiscVideoStatusPPSModule::ParsePPSAttr, attr_name:" + name);
        lines.erase(lines.begin());
        return lines;
    }

    CDiscData m_data;
    DiscVideoStatusPPSModule m_module{g_DiscVideoStatusPPSInfo, nullptr, nullptr};
};

TEST_F(VideoStatusModuleTest, AWholeZmDiscIsSilent) {
    EXPECT_THAT(give(0, "zmdisc", "json", R"({"valid":1,"type":"video"})"), IsEmpty());
    EXPECT_THAT(give(0, "zmdisc", "json", R"({"valid":0,"type":""})"), IsEmpty());
    EXPECT_FALSE(m_data.GetVideoStatus());
}

TEST_F(VideoStatusModuleTest, AZmDiscThatIsStillInvalidIsLoggedWithItsLine) {
    EXPECT_THAT(give(0, "zmdisc", "json", R"({"valid":-1,"type":"video"})"),
                ElementsAre("[SubscribeZmDisc]-" + std::string(PATH) +
                            ", SubscribeZmDisc, 92: pps_decoder_*() failed.\r"));
}

TEST_F(VideoStatusModuleTest, AZmDiscWithADecoderErrorIsSilent) {
    EXPECT_THAT(give(0, "zmdisc", "json", R"({"type":"video"})"), IsEmpty());
    EXPECT_THAT(give(0, "zmdisc", "json", R"({"valid":1})"), IsEmpty());
    EXPECT_THAT(give(0, "zmdisc", "json", "{"), IsEmpty());
    EXPECT_THAT(give(0, "zmdisc", "", R"({"valid":-1,"type":"video"})"), IsEmpty());
}

TEST_F(VideoStatusModuleTest, AZmVideoOfThisSourceIsNotApplied) {
    EXPECT_THAT(give(1, "zmvideo", "json",
                     R"({"status":"on","wndgp_id":"1-2-zelmar-disc","wnd_id":"w","src":"zmdisc"})"),
                IsEmpty());
    EXPECT_FALSE(m_data.GetVideoStatus());
    m_data.SetVideoStatus(true);
    forgetLog();
    EXPECT_THAT(give(1, "zmvideo", "json", R"({"status":"off","wndgp_id":"g","wnd_id":"w","src":"zmdisc"})"),
                IsEmpty());
    EXPECT_TRUE(m_data.GetVideoStatus());
    EXPECT_THAT(give(1, "zmvideo", "json", R"({"status":"?","wndgp_id":"g","wnd_id":"w","src":"zmdisc"})"),
                IsEmpty())
        << "an unknown status is not even looked at";
}

TEST_F(VideoStatusModuleTest, OnlyTheVeryTextObjectOfThisSourceWouldBeApplied) {
    const auto status = [](const std::string& word) {
        return R"({"status":")" + word + R"(","wndgp_id":"g","wnd_id":"w","src":"zmdisc"})";
    };
    givesOwnSource = true;
    EXPECT_THAT(give(1, "zmvideo", "json", status("on")),
                ElementsAre("[SetVideoStatus]-=============SetVideoStatus:1=================="));
    EXPECT_TRUE(m_data.GetVideoStatus());
    EXPECT_THAT(give(1, "zmvideo", "json", status("off")),
                ElementsAre("[SetVideoStatus]-=============SetVideoStatus:0=================="));
    EXPECT_FALSE(m_data.GetVideoStatus());
    EXPECT_THAT(give(1, "zmvideo", "json", status("ON")),
                ElementsAre(testing::EndsWith(", 160: unknown status=ON.\r")));
    givesOwnSource = false;
}

TEST_F(VideoStatusModuleTest, AZmVideoWithAMissingMemberIsLoggedWithItsLine) {
    for (const char* value :
         {R"({"wndgp_id":"g","wnd_id":"w","src":"zmdisc"})", R"({"status":"on","wnd_id":"w","src":"zmdisc"})",
          R"({"status":"on","wndgp_id":"g","src":"zmdisc"})",
          R"({"status":"on","wndgp_id":"g","wnd_id":"w"})",
          R"({"status":1,"wndgp_id":"g","wnd_id":"w","src":"zmdisc"})"}) {
        EXPECT_THAT(give(1, "zmvideo", "json", value),
                    ElementsAre("[SubscribeZmVideo]-" + std::string(PATH) +
                                ", SubscribeZmVideo, 128: pps_decoder_*() failed.\r"))
            << value;
    }
    EXPECT_THAT(give(1, "zmvideo", "", "{}"), IsEmpty());
}

TEST_F(VideoStatusModuleTest, OtherNamesAreUnknown) {
    EXPECT_THAT(give(-1, "zmradio", "json", "{}"), IsEmpty());
    EXPECT_EQ(parseNameless(m_module), -1);
    EXPECT_THAT(logged(), IsEmpty());
}

} // namespace zm::test
