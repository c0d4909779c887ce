#pragma once

#include "ZMModel/DiscPPSModule.h"

#include <string>

/** Asks the video service to show or stop the disc's picture in a window. */
class DiscVideoCommandPPSModule : public DiscPPSModule {
public:
    explicit DiscVideoCommandPPSModule(const fileTagInfo& info);

    /** The result of the write; false when there was nothing to write. Remembers the texts. On the views'
     * thread. */
    bool OperateVideoCapture(bool bStart, const std::string& wndGroupId, const std::string& wndId,
                             const std::string& srcName);

private:
    std::string m_strObject;
    std::string m_strWndGroupId;
    std::string m_strWndId;
    std::string m_strSrcName;
};
