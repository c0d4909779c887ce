#include "DiscViewController.h"

#include "Log.h"
#include "ZMModel/DiscPPSInfo.h"

#include "zmcar/AppMessage.h"

DiscViewController::DiscViewController(Oro::ZMCAR::IViewMessage* pView, CDiscData& data)
    : PublicController(pView), m_status(g_DiscStatusPPSInfo, this), m_playing(g_DiscPlayingPPSInfo, this),
      m_mpegInfo(g_DiscMpegInfoPPSInfo, this), m_device(g_DiscDevicePPSInfo, this),
      m_control(g_DiscControlPPSInfo, this), m_videoCommand(g_DiscVideoCommandPPSInfo),
      m_videoStatus(g_DiscVideoStatusPPSInfo, this, this), m_system(g_DiscSystemPPSInfo, this),
      m_nowPlaying(g_DiscNowPlayingPPSInfo, this) {
    for (DiscPPSModule* pModule : Modules()) {
        pModule->AttachData(&data);
    }
}

DiscViewController::~DiscViewController() {
    // After a failed start-up nobody has stopped the monitor thread, which must not outlive the modules.
    FilesControlBase::Stop();
}

bool DiscViewController::Init() {
    // Not in the order of the members: commands can be sent once everything else is open.
    DiscPPSModule* const MODULES[] = {&m_status,      &m_playing, &m_mpegInfo,   &m_device, &m_videoCommand,
                                      &m_videoStatus, &m_system,  &m_nowPlaying, &m_control};
    bool bOpened = true;
    for (DiscPPSModule* pModule : MODULES) {
        if (pModule->OpenPPS()) {
            m_setOpen.insert(pModule);
        } else {
            bOpened = false;
        }
    }
    return PublicController::Init() && bOpened;
}

bool DiscViewController::Start() {
    bool bAdded = true;
    for (DiscPPSModule* pModule : MonitoredModules()) {
        bAdded = AddFile(pModule->GetTagInfo().key, pModule) && bAdded;
    }
    return FilesControlBase::Start() && bAdded;
}

bool DiscViewController::Stop() {
    return FilesControlBase::Stop();
}

bool DiscViewController::Close() {
    bool bClosed = true;
    for (DiscPPSModule* pModule : MonitoredModules()) {
        bClosed = RemoveFile(pModule->GetTagInfo().key) && bClosed;
    }
    for (DiscPPSModule* pModule : Modules()) {
        // An object that could not be opened does not make the end a failure.
        const bool bWasOpen = m_setOpen.erase(pModule) > 0;
        bClosed = (pModule->ClosePPS() || !bWasOpen) && bClosed;
    }
    return PublicController::Close() && bClosed;
}

std::array<DiscPPSModule*, 9> DiscViewController::Modules() {
    return {&m_status,       &m_playing,     &m_mpegInfo, &m_device,    &m_control,
            &m_videoCommand, &m_videoStatus, &m_system,   &m_nowPlaying};
}

std::array<DiscPPSModule*, 5> DiscViewController::MonitoredModules() {
    // Not the system object: it is open, but its attributes never arrive.
    return {&m_status, &m_playing, &m_mpegInfo, &m_device, &m_videoStatus};
}

void DiscViewController::OnAttributeChange(int key, pps_attrib_t* attr) {
    switch (key) {
    case PPS_KEY_STATUS:
        OnHandleAttrStatus(m_status.ParsePPSAttr(attr));
        break;
    case PPS_KEY_DEVICE:
        OnHandleAttrDevice(m_device.ParsePPSAttr(attr));
        break;
    case PPS_KEY_PLAYING:
        OnHandleAttrPlaying(m_playing.ParsePPSAttr(attr));
        break;
    case PPS_KEY_MPEGINFO:
        OnHandleAttrMpegInfo(m_mpegInfo.ParsePPSAttr(attr));
        break;
    case PPS_KEY_VIDEO_STATUS:
        OnHandleAttrVideoStatus(m_videoStatus.ParsePPSAttr(attr));
        break;
    case PPS_KEY_SYSTEM:
        m_system.ParsePPSAttr(attr);
        break;
    default:
        PublicController::OnAttributeChange(key, attr);
    }
}

void DiscViewController::OnHandleAttrStatus(int result) {
    React(DiscStatusPPSModule::Reaction(result));
}
void DiscViewController::OnHandleAttrDevice(int result) {
    React(DiscDevicePPSModule::Reaction(result));
}
void DiscViewController::OnHandleAttrPlaying(int result) {
    React(DiscPlayingPPSModule::Reaction(result));
}
void DiscViewController::OnHandleAttrMpegInfo(int result) {
    React(DiscMpegInfoPPSModule::Reaction(result));
}
void DiscViewController::OnHandleAttrVideoStatus(int result) {
    React(DiscVideoStatusPPSModule::Reaction(result));
}

void DiscViewController::React(const PPSReaction& reaction) {
    if (reaction.nMessage == NO_MESSAGE) {
        return;
    }
    SendCode(reaction.nMessage);
    if (reaction.nPublish & PUBLISH_MEDIA_INFO) {
        PublishMediaInfo();
    }
    if (reaction.nPublish & PUBLISH_ID3) {
        PublishPlayID3();
    }
}

bool DiscViewController::SendCode(int nCode, int nParam) {
    APP_MSG_S message{};
    message.word[0] = nCode;
    message.word[1] = nParam;
    SendViewMessage(message);
    return true;
}

bool DiscViewController::PublishMediaInfo() {
    return m_nowPlaying.PublishMediaInfo();
}

bool DiscViewController::PublishPlayID3() {
    return m_nowPlaying.PublishPlayID3();
}

bool DiscViewController::OnMessageOSDReturn() {
    return SendCode(DISC_VMSG_OSDRETURN);
}
bool DiscViewController::OnMessageUpdateTime() {
    return SendCode(DISC_VMSG_UPDATETIME);
}
bool DiscViewController::OnMessageOSDGetCurTrack() {
    return SendCode(DISC_VMSG_OSDGETCURTRACK);
}
bool DiscViewController::OnMessageOSDGotoTrack(int track) {
    return SendCode(DISC_VMSG_OSDGOTOTRACK, track);
}

bool DiscViewController::OperateVideoCapture(bool bStart, const std::string& strWndGroupId,
                                             const std::string& strWndId, const std::string& strSrcName) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__,
            "[OperateVideoCapture]: bStart=%d,strWndGroupId=%s,strWndId=%s,strSrcName=%s\n", bStart,
            strWndGroupId.c_str(), strWndId.c_str(), strSrcName.c_str());
    bool bRet = m_videoCommand.OperateVideoCapture(bStart, strWndGroupId, strWndId, strSrcName);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OperateVideoCapture]: Ret=%d\n", bRet);
    return bRet;
}
