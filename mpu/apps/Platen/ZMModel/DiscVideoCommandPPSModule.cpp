#include "DiscVideoCommandPPSModule.h"

#include "DiscPPSInfo.h"
#include "PPSObjectEncoder.h"

DiscVideoCommandPPSModule::DiscVideoCommandPPSModule(const fileTagInfo& info)
    : DiscPPSModule(info), m_strObject(VIDEO_COMMAND_OBJECT) {}

bool DiscVideoCommandPPSModule::OperateVideoCapture(bool bStart, const std::string& wndGroupId,
                                                    const std::string& wndId, const std::string& srcName) {
    bool bWritten = PPSObjectEncoder(m_strObject, VIDEO_ZMVIDEO)
                        .Add(VIDEO_ZMVIDEO_STATUS, bStart ? VIDEO_ZMVIDEO_ON : VIDEO_ZMVIDEO_OFF)
                        .Add(VIDEO_ZMVIDEO_WNDGP_ID, wndGroupId)
                        .Add(VIDEO_ZMVIDEO_WND_ID, wndId)
                        .Add(VIDEO_ZMVIDEO_SRC, srcName)
                        .Write(*this, false);
    m_strWndGroupId = wndGroupId;
    m_strWndId = wndId;
    m_strSrcName = srcName;
    return bWritten;
}
