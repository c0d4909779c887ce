#include "tests/model/ModelTest.h"
#include "tests/model/PpsAttribute.h"

#include "ZMModel/CDiscData.h"
#include "ZMModel/DiscDevicePPSModule.h"
#include "ZMModel/DiscMpegInfoPPSModule.h"
#include "ZMModel/DiscPPSInfo.h"
#include "ZMModel/DiscStatusPPSModule.h"
#include "ZMModel/DiscSystemPPSModule.h"

#include <climits>

namespace zm::test {

using testing::ElementsAre;
using testing::IsEmpty;

template <class Module>
class ModuleTest : public ModelTest {
protected:
    explicit ModuleTest(const fileTagInfo& info) : m_module(info, nullptr) { m_module.AttachData(&m_data); }
    int give(const std::string& name, const std::string& encoding, const std::string& value) {
        return parse(m_module, name, encoding, value);
    }

    CDiscData m_data;
    Module m_module;
};

class StatusModuleTest : public ModuleTest<DiscStatusPPSModule> {
protected:
    StatusModuleTest() : ModuleTest(g_DiscStatusPPSInfo) {}
    std::tuple<int, int, int, int> play() const {
        T_PLAY_STATUS status = m_data.GetCurPlayStatus();
        return {status.discState, status.repeat, status.shuffle, status.scan};
    }
    /** The DVD's details, in the order in which they are published. */
    std::tuple<std::string, std::string, std::string, int, int, std::string, int, int, int, int> dvd() const {
        T_DVD_DETAIL dvd = m_data.GetCurDvdState();
        return {dvd.audioType,      dvd.audioChannel,   dvd.curAudioLan,    dvd.curAudioMode,
                dvd.totalAudioMode, dvd.curSubtitleLan, dvd.curSubtitleNum, dvd.totalSubtitle,
                dvd.curAngle,       dvd.totalAngle};
    }
};

TEST_F(StatusModuleTest, DiscStateChangesOnlyItsField) {
    m_data.SetCurPlayStatus({0, 1, 2, 3});
    EXPECT_EQ(give("discstate", "", "10"), 0);
    EXPECT_EQ(play(), std::tuple(10, 1, 2, 3));
}

TEST_F(StatusModuleTest, DiscStateTakesAnyEncodingAndAnyText) {
    EXPECT_EQ(give("discstate", "n", "6"), 0);
    EXPECT_EQ(m_data.GetCurPlayStatus().discState, 6);
    EXPECT_EQ(give("discstate", "json", "20x"), 0);
    EXPECT_EQ(m_data.GetCurPlayStatus().discState, 20);
    EXPECT_EQ(give("discstate", "", "not a number"), 0);
    EXPECT_EQ(m_data.GetCurPlayStatus().discState, 0);
    EXPECT_EQ(give("discstate", "", "-1"), 0);
    EXPECT_EQ(m_data.GetCurPlayStatus().discState, -1);
    EXPECT_EQ(give("discstate", "", ""), 0);
    EXPECT_EQ(m_data.GetCurPlayStatus().discState, 0);
}

TEST_F(StatusModuleTest, PlayStateKeepsTheDiscState) {
    give("discstate", "", "2");
    EXPECT_EQ(give("playstate", "json", R"({"repeat":4,"shuffle":1,"scan":0})"), 1);
    EXPECT_EQ(play(), std::tuple(2, 4, 1, 0));
}

TEST_F(StatusModuleTest, PlayStateAsPlainTextChangesNothingButHasItsIndex) {
    EXPECT_EQ(give("playstate", "", R"({"repeat":4,"shuffle":1,"scan":0})"), 1);
    EXPECT_EQ(give("playstate", "JSON", R"({"repeat":4,"shuffle":1,"scan":0})"), 1);
    EXPECT_EQ(play(), std::tuple(-1, -1, -1, -1));
}

TEST_F(StatusModuleTest, PlayStateWithAMissingOrMistypedMemberChangesNothing) {
    for (const char* value :
         {R"({"repeat":4,"shuffle":1})", R"({"shuffle":1,"scan":0})",
          R"({"repeat":"4","shuffle":1,"scan":0})", R"({"repeat":4,"shuffle":null,"scan":0})", "[4,1,0]", "7",
          "{", "", R"({"repeat":4,"shuffle":1,"scan":99999999999})"}) {
        EXPECT_EQ(give("playstate", "json", value), 1);
        EXPECT_EQ(play(), std::tuple(-1, -1, -1, -1)) << value;
    }
}

TEST_F(StatusModuleTest, RootMenuAndParentalAreSetByTheExactWordTrueOnly) {
    for (const char* value : {"TRUE", "True", "1", "true ", " true", "yes", ""}) {
        give("rootmenu", "", "true");
        give("parental", "", "true");
        EXPECT_TRUE(m_data.GetDVDRootMenuFlag());
        EXPECT_TRUE(m_data.GetDVDParentalFlag());
        EXPECT_EQ(give("rootmenu", "", value), 2);
        EXPECT_EQ(give("parental", "", value), 3);
        EXPECT_FALSE(m_data.GetDVDRootMenuFlag()) << value;
        EXPECT_FALSE(m_data.GetDVDParentalFlag()) << value;
    }
}

TEST_F(StatusModuleTest, PlainNumbersReachTheirValues) {
    EXPECT_EQ(give("updatedb", "", "17"), 4);
    EXPECT_EQ(give("audiochannel", "", "2"), 6);
    EXPECT_EQ(give("playspeed", "", "-8"), 7);
    EXPECT_EQ(give("msgtip", "", "29"), 9);
    EXPECT_EQ(m_data.GetUpdateDbState(), 17);
    EXPECT_EQ(m_data.GetAudioChannel(), 2);
    EXPECT_EQ(m_data.GetPlaySpeed(), -8);
    EXPECT_EQ(m_data.GetMsgTip(), 29);
}

TEST_F(StatusModuleTest, HugeNumbersAreCutAsTheLargestOnesAre) {
    // The language's conversion ends at the largest long, whose lower half is taken.
    EXPECT_EQ(give("playspeed", "", "99999999999999999999999"), 7);
    EXPECT_EQ(m_data.GetPlaySpeed(), static_cast<int>(LONG_MAX));
    EXPECT_EQ(give("playspeed", "", "-99999999999999999999999"), 7);
    EXPECT_EQ(m_data.GetPlaySpeed(), static_cast<int>(LONG_MIN));
    EXPECT_EQ(give("playspeed", "", "2147483647"), 7);
    EXPECT_EQ(m_data.GetPlaySpeed(), INT_MAX);
    EXPECT_EQ(give("playspeed", "", "-2147483648"), 7);
    EXPECT_EQ(m_data.GetPlaySpeed(), INT_MIN);
}

constexpr const char* DVD_STATE =
    R"({"audiotype":"AC3","audiochannel":"5.1","curaudiolan":"English","curaudiomode":1,
    "totalaudiomode":2,"cursubtitlelan":"German","cursubtitlenum":3,"totalsubtitle":4,"curangle":5,"totalangle":6})";

TEST_F(StatusModuleTest, DvdStateFillsTheWholeRecord) {
    EXPECT_EQ(give("dvdstate", "json", DVD_STATE), 5);
    EXPECT_EQ(dvd(), std::tuple("AC3", "5.1", "English", 1, 2, "German", 3, 4, 5, 6));
}

TEST_F(StatusModuleTest, DvdStateWithoutOneMemberChangesNothing) {
    m_data.SetCurDvdState({11, 12, "DTS", "2.0", "Czech", 13, 14, "Danish", 15, 16});
    const auto before = dvd();
    const std::string whole = DVD_STATE;
    for (const char* member :
         {"audiotype", "audiochannel", "curaudiolan", "curaudiomode", "totalaudiomode", "cursubtitlelan",
          "cursubtitlenum", "totalsubtitle", "curangle", "totalangle"}) {
        std::string value = whole;
        value.replace(value.find(std::string("\"") + member), 1, "\"x");
        EXPECT_EQ(give("dvdstate", "json", value), 5);
        EXPECT_EQ(dvd(), before) << "without " << member;
    }
    EXPECT_EQ(give("dvdstate", "", whole), 5);
    EXPECT_EQ(dvd(), before) << "in another encoding";
}

TEST_F(StatusModuleTest, KeyInvalidStoresNothing) {
    EXPECT_EQ(give("keyinvalid", "", "5"), 8);
    EXPECT_EQ(give("keyinvalid", "json", "{"), 8);
    EXPECT_EQ(play(), std::tuple(-1, -1, -1, -1));
    EXPECT_EQ(
        m_data.GetMsgTip() + m_data.GetPlaySpeed() + m_data.GetAudioChannel() + m_data.GetUpdateDbState(), 0);
}

TEST_F(StatusModuleTest, EveryNamedAttributeIsLoggedAlsoAnUnknownOne) {
    EXPECT_EQ(give("playspeed", "", "1"), 7);
    EXPECT_EQ(give("unknown", "", "1"), -1);
    EXPECT_EQ(give("DiscState", "", "1"), -1);
    EXPECT_EQ(parseNameless(m_module), -1);
    EXPECT_THAT(logged(),
                ElementsAre("[ParsePPSAttr]-DiscStatusPPSModule::ParsePPSAttr, attr_name:playspeed",
                            "[ParsePPSAttr]-DiscStatusPPSModule::ParsePPSAttr, attr_name:unknown",
                            "[ParsePPSAttr]-DiscStatusPPSModule::ParsePPSAttr, attr_name:DiscState"));
}

TEST_F(StatusModuleTest, AnAttributeWithoutTextsCountsAsEmpty) {
    m_data.SetPlaySpeed(8);
    pps_attrib_t attribute{};
    char speed[] = "playspeed";
    attribute.attr_name = speed;
    EXPECT_EQ(m_module.ParsePPSAttr(&attribute), 7);
    EXPECT_EQ(m_data.GetPlaySpeed(), 0);
}

class DeviceModuleTest : public ModuleTest<DiscDevicePPSModule> {
protected:
    DeviceModuleTest() : ModuleTest(g_DiscDevicePPSInfo) {}
    std::pair<bool, bool> presence() const {
        return {m_data.GetDeviceStatus().bConnected, m_data.GetDeviceStatus().bExisting};
    }
};

TEST_F(DeviceModuleTest, DiscIsDecodedIntoConnectedAndExisting) {
    const std::tuple<const char*, bool, bool> ROWS[] = {
        {"0", true, false},   {"1", true, true},  {"2", false, false}, {"3", false, false},
        {"-1", false, false}, {"x", true, false}, {"1", true, true},
    };
    for (auto [value, connected, existing] : ROWS) {
        EXPECT_EQ(give("disc", "", value), 1);
        EXPECT_EQ(presence(), std::pair(connected, existing)) << value;
    }
}

TEST_F(DeviceModuleTest, EachAttributeChangesItsField) {
    EXPECT_EQ(give("disc", "", "1"), 1);
    EXPECT_EQ(give("mediatype", "n", "3"), 2);
    EXPECT_EQ(give("mixedtype", "json", "6"), 3);
    EXPECT_EQ(give("mixedswitching", "", "2"), 4);
    EXPECT_EQ(give("errorstatus", "", "48"), 5);
    EXPECT_EQ(give("videomode", "", "2"), 6);
    T_MPEG_DEVICE_STATUS status = m_data.GetDeviceStatus();
    EXPECT_TRUE(status.bConnected && status.bExisting && status.bMixedSwitching);
    EXPECT_EQ(std::tie(status.nMediaType, status.nMixedType, status.nErrorStatus, status.nVideoMode),
              std::tuple(3, 6, 48, 2));
    EXPECT_EQ(give("mixedswitching", "", "0"), 4);
    EXPECT_FALSE(m_data.GetDeviceStatus().bMixedSwitching);
}

TEST_F(DeviceModuleTest, ItsLogLines) {
    give("mediatype", "", "2");
    give("disc", "", "1");
    give("mixedtype", "", "4");
    give("mixedswitching", "", "5");
    give("errorstatus", "", "144");
    give("videomode", "", "1");
    const std::string entry = "[ParsePPSAttr]-DiscDevicePPSModule::ParsePPSAttr, attr_name:";
    EXPECT_THAT(logged(),
                ElementsAre(entry + "mediatype", entry + "disc", testing::EndsWith("]-DiscConnected:1"),
                            testing::EndsWith("]-DiscExisting:1"), entry + "mixedtype",
                            entry + "mixedswitching", testing::EndsWith("]-status.bMixedSwitching=5======="),
                            entry + "errorstatus", testing::EndsWith("]-status.nErrorStatus=0x90======="),
                            entry + "videomode", testing::EndsWith("]-status.nVideoMode=1=======")));
    give("disc", "", "2");
    EXPECT_THAT(logged(), ElementsAre(entry + "disc", testing::EndsWith("]-DiscConnected:0"),
                                      testing::EndsWith("]-DiscExisting:0")));
}

TEST_F(DeviceModuleTest, ANegativeErrorIsLoggedInHexadecimal) {
    EXPECT_EQ(give("errorstatus", "", "-1"), 5);
    EXPECT_EQ(m_data.GetDeviceStatus().nErrorStatus, -1);
    EXPECT_THAT(logged(), testing::Contains(testing::EndsWith("]-status.nErrorStatus=0xffffffff=======")));
}

TEST_F(DeviceModuleTest, WordsAndEmptyTextsCountAsZero) {
    m_data.SetDeviceStatus({true, true, true, 3, 6, 48, 1});
    for (const char* name : {"mediatype", "mixedtype", "mixedswitching", "errorstatus", "videomode"}) {
        give(name, "", "word");
    }
    T_MPEG_DEVICE_STATUS status = m_data.GetDeviceStatus();
    EXPECT_EQ(std::tie(status.nMediaType, status.nMixedType, status.bMixedSwitching, status.nErrorStatus,
                       status.nVideoMode),
              std::tuple(0, 0, false, 0, 0));
    give("mediatype", "", "5");
    give("mediatype", "", "");
    EXPECT_EQ(m_data.GetDeviceStatus().nMediaType, 0);
}

TEST_F(DeviceModuleTest, AnUnknownNameIsLoggedAndChangesNothing) {
    m_data.SetDeviceStatus({true, true, true, 3, 6, 48, 1});
    EXPECT_EQ(give("unknown", "", "9"), -1);
    T_MPEG_DEVICE_STATUS status = m_data.GetDeviceStatus();
    EXPECT_TRUE(status.bConnected && status.bExisting && status.bMixedSwitching);
    EXPECT_EQ(std::tie(status.nMediaType, status.nMixedType, status.nErrorStatus, status.nVideoMode),
              std::tuple(3, 6, 48, 1));
    EXPECT_THAT(logged(), ElementsAre("[ParsePPSAttr]-DiscDevicePPSModule::ParsePPSAttr, attr_name:unknown"));
}

TEST_F(DeviceModuleTest, AMissingNameIsNeitherLoggedNorStored) {
    EXPECT_EQ(parseNameless(m_module), -1);
    EXPECT_EQ(m_data.GetDeviceStatus().nMediaType, 255);
    EXPECT_THAT(logged(), IsEmpty());
}

class MpegInfoModuleTest : public ModuleTest<DiscMpegInfoPPSModule> {
protected:
    MpegInfoModuleTest() : ModuleTest(g_DiscMpegInfoPPSInfo) {}
};

TEST_F(MpegInfoModuleTest, TheVersionIsStored) {
    EXPECT_EQ(give("version", "", "V 2.1:b"), 0);
    EXPECT_EQ(m_data.GetMpegVersion(), "V 2.1:b");
    EXPECT_EQ(give("other", "", "x"), -1);
    EXPECT_EQ(parseNameless(m_module), -1);
    EXPECT_EQ(m_data.GetMpegVersion(), "V 2.1:b");
    EXPECT_THAT(logged(), ElementsAre("[ParsePPSAttr]-DiscMpegInfoPPSModule::ParsePPSAttr, attr_name:version",
                                      "[ParsePPSAttr]-DiscMpegInfoPPSModule::ParsePPSAttr, attr_name:other"));
}

class SystemModuleTest : public ModuleTest<DiscSystemPPSModule> {
protected:
    SystemModuleTest() : ModuleTest(g_DiscSystemPPSInfo) {}
};

TEST_F(SystemModuleTest, AutoDiscInIsAnUnsignedNumberNotZero) {
    for (auto [value, flag] :
         {std::pair{"1", true}, {"0", false}, {"7", true}, {"on", false}, {"2x", true}, {"", false}}) {
        EXPECT_EQ(give("autodiscin", "", value), 0);
        EXPECT_EQ(m_data.GetDiscAutoInsertFlag(), flag) << value;
    }
}

TEST_F(SystemModuleTest, DiscStatusHasAnIndexAndStoresNothing) {
    EXPECT_EQ(give("discstatus", "", "on"), 1);
    EXPECT_FALSE(m_data.GetDeviceStatus().bExisting);
    EXPECT_EQ(give("other", "", "on"), -1);
    EXPECT_EQ(parseNameless(m_module), -1);
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(SystemModuleTest, TheUnusedDiscStatusOperationKnowsOnAndOff) {
    char encoding[] = "";
    char on[] = "on";
    char off[] = "off";
    char other[] = "ON";
    m_module.SubscribeDiscStatus(encoding, on);
    EXPECT_TRUE(m_data.GetDeviceStatus().bExisting);
    m_module.SubscribeDiscStatus(encoding, other);
    EXPECT_TRUE(m_data.GetDeviceStatus().bExisting);
    m_module.SubscribeDiscStatus(encoding, off);
    EXPECT_FALSE(m_data.GetDeviceStatus().bExisting);
    EXPECT_EQ(m_data.GetDeviceStatus().nMediaType, 255);
}

} // namespace zm::test
