#include "CDiscData.h"

#include "Log.h"

#include <utility>

template <class T>
T CDiscData::Get(T CDiscData::*member) const {
    MutexGuard guard(m_mutex);
    return this->*member;
}

template <class T>
void CDiscData::Set(T CDiscData::*member, std::type_identity_t<T> value) {
    MutexGuard guard(m_mutex);
    this->*member = std::move(value);
}

template <size_t N>
std::array<int32_t, N> CDiscData::GetComparable(const Comparable<N>& member) const {
    MutexGuard guard(m_mutex);
    std::array<int32_t, N> value;
    for (size_t i = 0; i < N; ++i) {
        value[i] = member[i].load(std::memory_order_relaxed);
    }
    return value;
}

template <size_t N>
void CDiscData::Store(Comparable<N>& member, const std::array<int32_t, N>& value) {
    for (size_t i = 0; i < N; ++i) {
        member[i].store(value[i], std::memory_order_relaxed);
    }
}

template <size_t N>
void CDiscData::SetUnlessEqual(Comparable<N>& member, const std::array<int32_t, N>& value) {
    bool bEqual = true;
    for (size_t i = 0; i < N; ++i) {
        bEqual = bEqual && member[i].load(std::memory_order_relaxed) == value[i];
    }
    if (!bEqual) {
        MutexGuard guard(m_mutex);
        Store(member, value);
    }
}

CDiscData::CDiscData() {
    ResetDiscInfo();
}

CDiscData* CDiscData::GetInstance() {
    static CDiscData s_instance;
    return &s_instance;
}

void CDiscData::Lock() {
    m_mutex.Lock();
}

void CDiscData::UnLock() {
    m_mutex.UnLock();
}

void CDiscData::ResetDiscInfo() {
    // The flags that are not named here keep their value on purpose.
    constexpr FLAG_EN RESET_FLAGS[] = {FLAG_PlayState, FLAG_PlayInfo, FLAG_Time,    FLAG_ID3,
                                       FLAG_RootMenu,  FLAG_Parental, FLAG_Version, FLAG_DeviceStatus,
                                       FLAG_DiscType,  FLAG_MixedType};

    Store(m_playTime, {0, 0, 0});
    Store(m_curPlayStatus, {-1, -1, -1, -1});
    m_curPlayInfo = {};
    m_curDvdState = {};
    for (FLAG_EN flag : RESET_FLAGS) {
        m_bUpdateFlags[flag] = false;
    }
    Store(m_bDVDRootMenuFlag, {0});
    Store(m_bDVDParentalFlag, {0});
    m_bVideoStatus = false;
    m_nAudioChannel = 0;
    m_nPlaySpeed = 0;
    m_nUpdateDbState = 0;
}

int CDiscData::GetMsgTip() const {
    return Get(&CDiscData::m_nMsgTip);
}
void CDiscData::SetMsgTip(int nMsgTip) {
    Set(&CDiscData::m_nMsgTip, nMsgTip);
}
bool CDiscData::GetDiscInBegin() const {
    return Get(&CDiscData::m_bDiscInBegin);
}
void CDiscData::SetDiscInBegin(bool bBegin) {
    Set(&CDiscData::m_bDiscInBegin, bBegin);
}
bool CDiscData::GetVideoStatus() const {
    return Get(&CDiscData::m_bVideoStatus);
}
void CDiscData::SetVideoStatus(bool bStatus) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "=============SetVideoStatus:%d==================\n", bStatus);
    Set(&CDiscData::m_bVideoStatus, bStatus);
}
bool CDiscData::GetDiscAutoInsertFlag() const {
    return Get(&CDiscData::m_bDiscAutoInsertFlag);
}
void CDiscData::SetDiscAutoInsertFlag(bool bFlag) {
    Set(&CDiscData::m_bDiscAutoInsertFlag, bFlag);
}
int CDiscData::GetUpdateDbState() const {
    return Get(&CDiscData::m_nUpdateDbState);
}
void CDiscData::SetUpdateDbState(int nState) {
    Set(&CDiscData::m_nUpdateDbState, nState);
}
int CDiscData::GetPlaySpeed() const {
    return Get(&CDiscData::m_nPlaySpeed);
}
void CDiscData::SetPlaySpeed(int nSpeed) {
    Set(&CDiscData::m_nPlaySpeed, nSpeed);
}
int CDiscData::GetAudioChannel() const {
    return Get(&CDiscData::m_nAudioChannel);
}
void CDiscData::SetAudioChannel(int nChannel) {
    Set(&CDiscData::m_nAudioChannel, nChannel);
}
bool CDiscData::GetDVDParentalFlag() const {
    return GetComparable(m_bDVDParentalFlag)[0] != 0;
}
void CDiscData::SetDVDParentalFlag(bool bFlag) {
    SetUnlessEqual(m_bDVDParentalFlag, {bFlag});
}
bool CDiscData::GetDVDRootMenuFlag() const {
    return GetComparable(m_bDVDRootMenuFlag)[0] != 0;
}
void CDiscData::SetDVDRootMenuFlag(bool bFlag) {
    SetUnlessEqual(m_bDVDRootMenuFlag, {bFlag});
}
std::string CDiscData::GetMpegVersion() const {
    return Get(&CDiscData::m_strMpegVersion);
}
void CDiscData::SetMpegVersion(std::string strVersion) {
    Set(&CDiscData::m_strMpegVersion, std::move(strVersion));
}
std::string CDiscData::GetPlayFileName() const {
    return Get(&CDiscData::m_strPlayFileName);
}
void CDiscData::SetPlayFileName(std::string strName) {
    Set(&CDiscData::m_strPlayFileName, std::move(strName));
}

T_MPEG_DEVICE_STATUS CDiscData::GetDeviceStatus() const {
    return Get(&CDiscData::m_deviceStatus);
}
void CDiscData::SetDeviceStatus(T_MPEG_DEVICE_STATUS status) {
    Set(&CDiscData::m_deviceStatus, status);
}
T_MPEG_MEDIA_INFO CDiscData::GetCurPlayInfo() const {
    return Get(&CDiscData::m_curPlayInfo);
}
void CDiscData::SetCurPlayInfo(const T_MPEG_MEDIA_INFO& info) {
    Set(&CDiscData::m_curPlayInfo, info);
}
T_ID3_INFO CDiscData::GetID3Info() const {
    return Get(&CDiscData::m_id3Info);
}
void CDiscData::SetID3Info(const T_ID3_INFO& info) {
    Set(&CDiscData::m_id3Info, info);
}
T_DVD_DETAIL CDiscData::GetCurDvdState() const {
    return Get(&CDiscData::m_curDvdState);
}
void CDiscData::SetCurDvdState(T_DVD_DETAIL state) {
    Set(&CDiscData::m_curDvdState, std::move(state));
}

T_PLAY_STATUS CDiscData::GetCurPlayStatus() const {
    auto [discState, repeat, shuffle, scan] = GetComparable(m_curPlayStatus);
    return {discState, repeat, shuffle, scan};
}
void CDiscData::SetCurPlayStatus(const T_PLAY_STATUS& status) {
    SetUnlessEqual(m_curPlayStatus, {status.discState, status.repeat, status.shuffle, status.scan});
}
T_PLAYTIME_INFO CDiscData::GetPlayTime() const {
    auto [time, trackTime, times] = GetComparable(m_playTime);
    return {time, trackTime, times};
}
void CDiscData::SetPlayTime(const T_PLAYTIME_INFO& time) {
    SetUnlessEqual(m_playTime, {time.time, time.trackTime, time.times});
}

bool CDiscData::GetFlag(FLAG_EN flag) const {
    MutexGuard guard(m_mutex);
    return m_bUpdateFlags[flag];
}

void CDiscData::SetFlag(FLAG_EN flag, bool bFlag) {
    MutexGuard guard(m_mutex);
    m_bUpdateFlags[flag] = bFlag;
}

void CDiscData::SetFlagLogged(const char* func, FLAG_EN flag, bool bFlag) {
    LOGBASE(LOG_LEV_TRACE, func, "%s:%d\n", func, bFlag);
    SetFlag(flag, bFlag);
}

bool CDiscData::GetUpdateDiscStateFlag() const {
    return GetFlag(FLAG_DiscState);
}
void CDiscData::SetUpdateDiscStateFlag(bool bFlag) {
    SetFlag(FLAG_DiscState, bFlag);
}
bool CDiscData::GetUpdatePlayStateFlag() const {
    return GetFlag(FLAG_PlayState);
}
void CDiscData::SetUpdatePlayStateFlag(bool bFlag) {
    SetFlag(FLAG_PlayState, bFlag);
}
bool CDiscData::GetUpdatePlayInfoFlag() const {
    return GetFlag(FLAG_PlayInfo);
}
void CDiscData::SetUpdatePlayInfoFlag(bool bFlag) {
    SetFlag(FLAG_PlayInfo, bFlag);
}
bool CDiscData::GetUpdateTimeFlag() const {
    return GetFlag(FLAG_Time);
}
void CDiscData::SetUpdateTimeFlag(bool bFlag) {
    SetFlag(FLAG_Time, bFlag);
}
bool CDiscData::GetUpdateID3Flag() const {
    return GetFlag(FLAG_ID3);
}
void CDiscData::SetUpdateID3Flag(bool bFlag) {
    SetFlag(FLAG_ID3, bFlag);
}
bool CDiscData::GetUpdateRootMenuFlag() const {
    return GetFlag(FLAG_RootMenu);
}
void CDiscData::SetUpdateRootMenuFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_RootMenu, bFlag);
}
bool CDiscData::GetUpdateParentalFlag() const {
    return GetFlag(FLAG_Parental);
}
void CDiscData::SetUpdateParentalFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_Parental, bFlag);
}
bool CDiscData::GetUpdateVersionFlag() const {
    return GetFlag(FLAG_Version);
}
void CDiscData::SetUpdateVersionFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_Version, bFlag);
}
bool CDiscData::GetUpdateUpdatedbFlag() const {
    return GetFlag(FLAG_Updatedb);
}
void CDiscData::SetUpdateUpdatedbFlag(bool bFlag) {
    SetFlag(FLAG_Updatedb, bFlag);
}
bool CDiscData::GetUpdateUpdatedbFinishFlag() const {
    return GetFlag(FLAG_UpdatedbFinish);
}
void CDiscData::SetUpdateUpdatedbFinishFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_UpdatedbFinish, bFlag);
}
bool CDiscData::GetUpdateDeviceStatusFlag() const {
    return GetFlag(FLAG_DeviceStatus);
}
void CDiscData::SetUpdateDeviceStatusFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_DeviceStatus, bFlag);
}
bool CDiscData::GetUpdateDiscTypeFlag() const {
    return GetFlag(FLAG_DiscType);
}
void CDiscData::SetUpdateDiscTypeFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_DiscType, bFlag);
}
bool CDiscData::GetUpdateMixedTypeFlag() const {
    return GetFlag(FLAG_MixedType);
}
void CDiscData::SetUpdateMixedTypeFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_MixedType, bFlag);
}
bool CDiscData::GetUpdateCurDvdStateFlag() const {
    return GetFlag(FLAG_CurDvdState);
}
void CDiscData::SetUpdateCurDvdStateFlag(bool bFlag) {
    SetFlagLogged(__FUNCTION__, FLAG_CurDvdState, bFlag);
}
bool CDiscData::GetUpdateAudioChannelFlag() const {
    return GetFlag(FLAG_AudioChannel);
}
void CDiscData::SetUpdateAudioChannelFlag(bool bFlag) {
    SetFlag(FLAG_AudioChannel, bFlag);
}
bool CDiscData::GetUpdatePlaySpeedFlag() const {
    return GetFlag(FLAG_PlaySpeed);
}
void CDiscData::SetUpdatePlaySpeedFlag(bool bFlag) {
    SetFlag(FLAG_PlaySpeed, bFlag);
}
bool CDiscData::GetUpdateKeyInvalidFlag() const {
    return GetFlag(FLAG_KeyInvalid);
}
void CDiscData::SetUpdateKeyInvalidFlag(bool bFlag) {
    SetFlag(FLAG_KeyInvalid, bFlag);
}
