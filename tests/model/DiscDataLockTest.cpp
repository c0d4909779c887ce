#include "tests/model/DiscDataFlags.h"
#include "tests/model/LockWait.h"
#include "tests/model/ModelTest.h"

#include <type_traits>

namespace zm::test {

using testing::ElementsAre;

/** One use of the store. */
struct Access {
    std::string name;
    std::function<void(CDiscData&)> use;
};

template <class Value>
Access getting(const char* name, Value (CDiscData::*get)() const) {
    return {std::string("Get") + name, [get](CDiscData& data) { (data.*get)(); }};
}
template <class Value>
Access setting(const char* name, void (CDiscData::*set)(Value), std::decay_t<Value> value = {}) {
    return {std::string("Set") + name, [set, value](CDiscData& data) { (data.*set)(value); }};
}

class DiscDataLockTest : public ModelTest {
protected:
    /** Uses the store on another thread while the lock is held; whether that thread waited for it. */
    bool waitsFor(
        const Access& access, const std::function<void()>& meanwhile = [] {}) {
        m_data.Lock();
        return waitsForLock([&] { access.use(m_data); },
                            [&] {
                                meanwhile();
                                m_data.UnLock();
                            });
    }

    CDiscData m_data;
};

TEST_F(DiscDataLockTest, EveryGetterTakesTheLock) {
    std::vector<Access> getters{
        getting("MsgTip", &CDiscData::GetMsgTip),
        getting("DiscInBegin", &CDiscData::GetDiscInBegin),
        getting("VideoStatus", &CDiscData::GetVideoStatus),
        getting("DiscAutoInsertFlag", &CDiscData::GetDiscAutoInsertFlag),
        getting("UpdateDbState", &CDiscData::GetUpdateDbState),
        getting("PlaySpeed", &CDiscData::GetPlaySpeed),
        getting("AudioChannel", &CDiscData::GetAudioChannel),
        getting("DVDParentalFlag", &CDiscData::GetDVDParentalFlag),
        getting("DVDRootMenuFlag", &CDiscData::GetDVDRootMenuFlag),
        getting("MpegVersion", &CDiscData::GetMpegVersion),
        getting("PlayFileName", &CDiscData::GetPlayFileName),
        getting("DeviceStatus", &CDiscData::GetDeviceStatus),
        getting("CurPlayInfo", &CDiscData::GetCurPlayInfo),
        getting("CurPlayStatus", &CDiscData::GetCurPlayStatus),
        getting("PlayTime", &CDiscData::GetPlayTime),
        getting("ID3Info", &CDiscData::GetID3Info),
        getting("CurDvdState", &CDiscData::GetCurDvdState),
    };
    for (const FlagRow& row : FLAGS) {
        getters.push_back(getting(row.name, row.get));
    }
    for (const Access& getter : getters) {
        EXPECT_TRUE(waitsFor(getter)) << getter.name;
    }
}

TEST_F(DiscDataLockTest, AllSettersButFourWriteEqualValuesToo) {
    std::vector<Access> setters{
        setting("MsgTip", &CDiscData::SetMsgTip),
        setting("DiscInBegin", &CDiscData::SetDiscInBegin),
        setting("VideoStatus", &CDiscData::SetVideoStatus),
        setting("DiscAutoInsertFlag", &CDiscData::SetDiscAutoInsertFlag),
        setting("UpdateDbState", &CDiscData::SetUpdateDbState),
        setting("PlaySpeed", &CDiscData::SetPlaySpeed),
        setting("AudioChannel", &CDiscData::SetAudioChannel),
        setting("MpegVersion", &CDiscData::SetMpegVersion),
        setting("PlayFileName", &CDiscData::SetPlayFileName),
        setting("DeviceStatus", &CDiscData::SetDeviceStatus),
        setting("CurPlayInfo", &CDiscData::SetCurPlayInfo),
        setting("ID3Info", &CDiscData::SetID3Info),
        setting("CurDvdState", &CDiscData::SetCurDvdState),
    };
    for (const FlagRow& row : FLAGS) {
        setters.push_back(setting(row.name, row.set));
    }
    for (const Access& setter : setters) {
        EXPECT_TRUE(waitsFor(setter)) << setter.name << " with the value that is there";
    }
}

TEST_F(DiscDataLockTest, FourSettersNeedNoLockForEqualValues) {
    const T_PLAYTIME_INFO time{10, 200, 3};
    const T_PLAY_STATUS status{2, 4, 1, 3};
    m_data.SetPlayTime(time);
    m_data.SetCurPlayStatus(status);
    m_data.SetDVDRootMenuFlag(true);
    m_data.SetDVDParentalFlag(true);
    m_data.Lock(); // not recursive: a setter that took it would never come back
    m_data.SetPlayTime(time);
    m_data.SetCurPlayStatus(status);
    m_data.SetDVDRootMenuFlag(true);
    m_data.SetDVDParentalFlag(true);
    m_data.UnLock();
    EXPECT_EQ(m_data.GetPlayTime().trackTime, 200);
    EXPECT_EQ(m_data.GetCurPlayStatus().repeat, 4);
}

TEST_F(DiscDataLockTest, TheFourTakeTheLockWhenAnyFieldDiffers) {
    const std::vector<Access> setters{
        setting("PlayTime.time", &CDiscData::SetPlayTime, {1, 0, 0}),
        setting("PlayTime.trackTime", &CDiscData::SetPlayTime, {1, 1, 0}),
        setting("PlayTime.times", &CDiscData::SetPlayTime, {1, 1, 1}),
        setting("CurPlayStatus.discState", &CDiscData::SetCurPlayStatus, {1, -1, -1, -1}),
        setting("CurPlayStatus.repeat", &CDiscData::SetCurPlayStatus, {1, 1, -1, -1}),
        setting("CurPlayStatus.shuffle", &CDiscData::SetCurPlayStatus, {1, 1, 1, -1}),
        setting("CurPlayStatus.scan", &CDiscData::SetCurPlayStatus, {1, 1, 1, 1}),
        setting("DVDRootMenuFlag", &CDiscData::SetDVDRootMenuFlag, true),
        setting("DVDParentalFlag", &CDiscData::SetDVDParentalFlag, true),
    };
    for (const Access& setter : setters) {
        EXPECT_TRUE(waitsFor(setter)) << setter.name;
        EXPECT_FALSE(waitsFor(setter)) << setter.name << " once more";
    }
    EXPECT_EQ(m_data.GetPlayTime().times, 1);
    EXPECT_EQ(m_data.GetCurPlayStatus().scan, 1);
    EXPECT_TRUE(m_data.GetDVDRootMenuFlag());
    EXPECT_TRUE(m_data.GetDVDParentalFlag());
}

TEST_F(DiscDataLockTest, TheVideoStatusIsLoggedBeforeItIsWritten) {
    EXPECT_TRUE(waitsFor(setting("VideoStatus", &CDiscData::SetVideoStatus, true), [this] {
        EXPECT_THAT(logged(),
                    ElementsAre("[SetVideoStatus]-=============SetVideoStatus:1=================="));
    }));
    EXPECT_TRUE(m_data.GetVideoStatus());
}

TEST_F(DiscDataLockTest, ReadersNeverSeeHalfARecord) {
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (int i = 1; i <= 2000; ++i) {
            m_data.SetPlayTime({i, i, i});
            m_data.SetCurPlayStatus({i, i, i, i});
            m_data.SetID3Info({std::to_string(i), std::to_string(i), ""});
        }
        done = true;
    });
    while (!done) {
        T_PLAYTIME_INFO time = m_data.GetPlayTime();
        EXPECT_TRUE(time.time == time.trackTime && time.time == time.times);
        T_PLAY_STATUS play = m_data.GetCurPlayStatus();
        EXPECT_TRUE(play.discState == play.repeat && play.discState == play.scan);
        T_ID3_INFO id3 = m_data.GetID3Info();
        EXPECT_EQ(id3.title, id3.artist);
    }
    writer.join();
}

} // namespace zm::test
