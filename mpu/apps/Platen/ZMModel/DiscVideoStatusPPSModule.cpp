#include "DiscVideoStatusPPSModule.h"

#include "CDiscData.h"
#include "DiscPPSInfo.h"
#include "Log.h"
#include "PPSJsonDecoder.h"
#include "PPSSubscriber.h"
#include "ViewMessages.h"

// Log lines name this module and the lines of its first version, whatever it is called and however long it is
// now.
static const char* const SOURCE_PATH = "mpu/apps/Platen/ZMModel/DiscVideoStatusPPSModule";
enum SOURCE_LINE_EN { LINE_ZMDISC_FAILED = 92, LINE_ZMVIDEO_FAILED = 128, LINE_UNKNOWN_STATUS = 160 };

static void LogDecoderFailed(const char* func, int nLine) {
    LOGBASE(LOG_LEV_TRACE, func, "%s, %s, %d: pps_decoder_*() failed.\r\n", SOURCE_PATH, func, nLine);
}

DiscVideoStatusPPSModule::DiscVideoStatusPPSModule(const fileTagInfo& info,
                                                   Oro::ZMCAR::IPPSOnChange* pOnChange,
                                                   DiscViewController* pController)
    : DiscPPSModule(info, pOnChange), m_pController(pController) {}

static constexpr PPSAttributeRow<PPSSubscribe<DiscVideoStatusPPSModule>> ATTRIBUTES[] = {
    {VIDEO_STATUS_ZMDISC, &DiscVideoStatusPPSModule::SubscribeZmDisc, {NO_MESSAGE}},
    {VIDEO_ZMVIDEO, &DiscVideoStatusPPSModule::SubscribeZmVideo, {DISC_VMSG_VIDEOSTATUS}},
};
static_assert(PPSNamesDiffer(ATTRIBUTES));

int DiscVideoStatusPPSModule::ParsePPSAttr(pps_attrib_t* attr) {
    if (attr->attr_name) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "DiscVideoStatusPPSModule::ParsePPSAttr, attr_name:%s\n",
                attr->attr_name);
    }
    return PPSDispatch(*this, ATTRIBUTES, attr);
}

PPSReaction DiscVideoStatusPPSModule::Reaction(int nIndex) {
    return PPSReactionTo(ATTRIBUTES, nIndex);
}

void DiscVideoStatusPPSModule::SubscribeZmDisc(char* encoding, char* value) {
    if (!PPSJsonDecoder::IsJson(encoding)) {
        return;
    }
    PPSJsonDecoder decoder(value);
    int nValid = -1;
    decoder.Get(VIDEO_STATUS_ZMDISC_VALID, nValid);
    // Nobody reads it, but without it the object is not a whole one.
    decoder.GetText(VIDEO_STATUS_ZMDISC_TYPE);
    if (decoder.Finish() && nValid == -1) {
        LogDecoderFailed(__FUNCTION__, LINE_ZMDISC_FAILED);
    }
}

void DiscVideoStatusPPSModule::SubscribeZmVideo(char* encoding, char* value) {
    if (!PPSJsonDecoder::IsJson(encoding)) {
        return;
    }
    PPSJsonDecoder decoder(value);
    const char* status = decoder.GetText(VIDEO_ZMVIDEO_STATUS);
    const char* wndGroupId = decoder.GetText(VIDEO_ZMVIDEO_WNDGP_ID);
    const char* wndId = decoder.GetText(VIDEO_ZMVIDEO_WND_ID);
    const char* src = decoder.GetText(VIDEO_ZMVIDEO_SRC);
    decoder.Finish();
    if (!status || !wndGroupId || !wndId || !src) {
        LogDecoderFailed(__FUNCTION__, LINE_ZMVIDEO_FAILED);
        return;
    }
    // The identity of the text object is asked for, not its contents: a decoded value is never applied.
    // Whether the picture is shown is known from what this program asked for itself.
    if (src != VIDEO_STATUS_ZMDISC) {
        return;
    }
    ApplyStatus(status);
}

void DiscVideoStatusPPSModule::ApplyStatus(const char* status) {
    if (std::strcmp(status, VIDEO_ZMVIDEO_ON) == 0) {
        m_pDiscData->SetVideoStatus(true);
    } else if (std::strcmp(status, VIDEO_ZMVIDEO_OFF) == 0) {
        m_pDiscData->SetVideoStatus(false);
    } else {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s, %s, %d: unknown status=%s.\r\n", SOURCE_PATH, __FUNCTION__,
                LINE_UNKNOWN_STATUS, status);
    }
}
