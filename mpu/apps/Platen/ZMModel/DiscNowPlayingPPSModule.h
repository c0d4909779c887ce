#pragma once

#include "ZMModel/DiscPPSModule.h"

#include <string>

/** Tells the rest of the head unit what the disc source is playing. On the monitor thread, and on the views'
 * when the application comes to the front. */
class DiscNowPlayingPPSModule : public DiscPPSModule {
public:
    DiscNowPlayingPPSModule(const fileTagInfo& info, Oro::ZMCAR::IPPSOnChange* pOnChange);

    /** State, media type, times and numbers. The result of the write; true when there was nothing to write,
     * false without a state store. */
    bool PublishMediaInfo();
    /** Title, artist and album; result as above. */
    bool PublishPlayID3();

private:
    std::string m_strObject;
};
