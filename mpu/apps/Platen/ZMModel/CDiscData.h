#pragma once

#include "ZMModel/DiscRecords.h"
#include "ZMModel/Mutex.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <type_traits>

/**
 * The last known state of the disc service. Every accessor takes the lock for the copy of one value or record
 * only: readers work on copies; a writer of one field reads the record, changes its copy and writes the
 * record back. Any thread, except where said.
 */
class CDiscData {
public:
    CDiscData();
    CDiscData(const CDiscData&) = delete;
    CDiscData& operator=(const CDiscData&) = delete;

    /** The instance that the whole program uses; built by the first call. */
    static CDiscData* GetInstance();

    void Init() {}
    /** The lock is not recursive: no accessor may be called between the two, except setters that skip equal
     * values. */
    void Lock() LOCK_UNCHECKED;
    void UnLock() LOCK_UNCHECKED;
    /** Forgets what belongs to the disc, but not device status, tags, texts and some flags. For the
     * constructor: takes no lock. */
    void ResetDiscInfo() LOCK_UNCHECKED;

    int GetMsgTip() const;
    void SetMsgTip(int nMsgTip);
    bool GetDiscInBegin() const;
    void SetDiscInBegin(bool bBegin);
    bool GetVideoStatus() const;
    void SetVideoStatus(bool bStatus);
    bool GetDiscAutoInsertFlag() const;
    void SetDiscAutoInsertFlag(bool bFlag);
    int GetUpdateDbState() const;
    void SetUpdateDbState(int nState);
    int GetPlaySpeed() const;
    void SetPlaySpeed(int nSpeed);
    int GetAudioChannel() const;
    void SetAudioChannel(int nChannel);
    /** Setting the stored value again does nothing and needs no lock; so with the next three setters marked
     * "skips". */
    void SetDVDParentalFlag(bool bFlag);
    bool GetDVDParentalFlag() const;
    /** Skips equal values. */
    void SetDVDRootMenuFlag(bool bFlag);
    bool GetDVDRootMenuFlag() const;
    std::string GetMpegVersion() const;
    void SetMpegVersion(std::string strVersion);
    std::string GetPlayFileName() const;
    void SetPlayFileName(std::string strName);

    T_MPEG_DEVICE_STATUS GetDeviceStatus() const;
    void SetDeviceStatus(T_MPEG_DEVICE_STATUS status);
    T_MPEG_MEDIA_INFO GetCurPlayInfo() const;
    void SetCurPlayInfo(const T_MPEG_MEDIA_INFO& info);
    T_PLAY_STATUS GetCurPlayStatus() const;
    /** Skips equal values. */
    void SetCurPlayStatus(const T_PLAY_STATUS& status);
    T_PLAYTIME_INFO GetPlayTime() const;
    /** Skips equal values. */
    void SetPlayTime(const T_PLAYTIME_INFO& time);
    T_ID3_INFO GetID3Info() const;
    void SetID3Info(const T_ID3_INFO& info);
    T_DVD_DETAIL GetCurDvdState() const;
    void SetCurDvdState(T_DVD_DETAIL state);

    bool GetUpdateDiscStateFlag() const;
    void SetUpdateDiscStateFlag(bool bFlag);
    bool GetUpdatePlayStateFlag() const;
    void SetUpdatePlayStateFlag(bool bFlag);
    bool GetUpdatePlayInfoFlag() const;
    void SetUpdatePlayInfoFlag(bool bFlag);
    bool GetUpdateTimeFlag() const;
    void SetUpdateTimeFlag(bool bFlag);
    bool GetUpdateID3Flag() const;
    void SetUpdateID3Flag(bool bFlag);
    bool GetUpdateRootMenuFlag() const;
    void SetUpdateRootMenuFlag(bool bFlag);
    bool GetUpdateParentalFlag() const;
    void SetUpdateParentalFlag(bool bFlag);
    bool GetUpdateVersionFlag() const;
    void SetUpdateVersionFlag(bool bFlag);
    bool GetUpdateUpdatedbFlag() const;
    void SetUpdateUpdatedbFlag(bool bFlag);
    bool GetUpdateUpdatedbFinishFlag() const;
    void SetUpdateUpdatedbFinishFlag(bool bFlag);
    bool GetUpdateDeviceStatusFlag() const;
    void SetUpdateDeviceStatusFlag(bool bFlag);
    bool GetUpdateDiscTypeFlag() const;
    void SetUpdateDiscTypeFlag(bool bFlag);
    bool GetUpdateMixedTypeFlag() const;
    void SetUpdateMixedTypeFlag(bool bFlag);
    bool GetUpdateCurDvdStateFlag() const;
    void SetUpdateCurDvdStateFlag(bool bFlag);
    bool GetUpdateAudioChannelFlag() const;
    void SetUpdateAudioChannelFlag(bool bFlag);
    bool GetUpdatePlaySpeedFlag() const;
    void SetUpdatePlaySpeedFlag(bool bFlag);
    bool GetUpdateKeyInvalidFlag() const;
    void SetUpdateKeyInvalidFlag(bool bFlag);

private:
    /** One change flag each. */
    enum FLAG_EN {
        FLAG_DiscState,
        FLAG_PlayState,
        FLAG_PlayInfo,
        FLAG_Time,
        FLAG_ID3,
        FLAG_RootMenu,
        FLAG_Parental,
        FLAG_Version,
        FLAG_Updatedb,
        FLAG_UpdatedbFinish,
        FLAG_DeviceStatus,
        FLAG_DiscType,
        FLAG_MixedType,
        FLAG_CurDvdState,
        FLAG_AudioChannel,
        FLAG_PlaySpeed,
        FLAG_KeyInvalid,
        FLAG_COUNT
    };

    /** Numbers that are written under the lock but may be compared without it. */
    template <size_t N>
    using Comparable = std::array<std::atomic<int32_t>, N>;

    template <class T>
    T Get(T CDiscData::*member) const;
    template <class T>
    void Set(T CDiscData::*member, std::type_identity_t<T> value);
    template <size_t N>
    std::array<int32_t, N> GetComparable(const Comparable<N>& member) const;
    template <size_t N>
    static void Store(Comparable<N>& member, const std::array<int32_t, N>& value);
    template <size_t N>
    void SetUnlessEqual(Comparable<N>& member, const std::array<int32_t, N>& value);

    bool GetFlag(FLAG_EN flag) const;
    void SetFlag(FLAG_EN flag, bool bFlag);
    /** The same, and a log line of the setter `func`. */
    void SetFlagLogged(const char* func, FLAG_EN flag, bool bFlag);

    mutable Mutex m_mutex;
    bool m_bUpdateFlags[FLAG_COUNT] GUARDED_BY(m_mutex) = {};
    T_MPEG_DEVICE_STATUS m_deviceStatus GUARDED_BY(m_mutex);
    T_MPEG_MEDIA_INFO m_curPlayInfo GUARDED_BY(m_mutex);
    Comparable<4> m_curPlayStatus; ///< discState, repeat, shuffle, scan
    T_ID3_INFO m_id3Info GUARDED_BY(m_mutex);
    Comparable<3> m_playTime; ///< time, trackTime, times
    T_DVD_DETAIL m_curDvdState GUARDED_BY(m_mutex);
    std::string m_strMpegVersion GUARDED_BY(m_mutex);
    std::string m_strPlayFileName GUARDED_BY(m_mutex);
    Comparable<1> m_bDVDRootMenuFlag;
    Comparable<1> m_bDVDParentalFlag;
    bool m_bDiscAutoInsertFlag GUARDED_BY(m_mutex) = false;
    int32_t m_nAudioChannel GUARDED_BY(m_mutex) = 0;
    int32_t m_nPlaySpeed GUARDED_BY(m_mutex) = 0;
    int32_t m_nUpdateDbState GUARDED_BY(m_mutex) = 0;
    int32_t m_nMsgTip GUARDED_BY(m_mutex) = 0;
    bool m_bVideoStatus GUARDED_BY(m_mutex) = false;
    bool m_bDiscInBegin GUARDED_BY(m_mutex) = false;
};
