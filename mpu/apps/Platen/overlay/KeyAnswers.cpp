#include "overlay/KeyAnswers.h"

#include "FindRow.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "overlay/OverlayState.h"
#include "overlay/StateDisplay.h"
#include "parts/WideText.h"

namespace {

constexpr int SUBTITLE_OFFSET = 80; ///< the disc service counts subtitle streams from here

/** The state display of each VCD audio channel; channels without a row show nothing. */
struct ChannelRow {
    int channel;
    int picture;
    int text;
};
constexpr ChannelRow CHANNELS[] = {
    {0, OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION}, {1, OSD_PIC_AUDIO, OSD_TXT_CHANNEL_LEFT},
    {2, OSD_PIC_AUDIO, OSD_TXT_CHANNEL_RIGHT},     {3, OSD_PIC_AUDIO, OSD_TXT_CHANNEL_BOTH},
    {4, OSD_PIC_AUDIO, OSD_TXT_CHANNEL_BOTH},
};

} // namespace

void KeyAnswers::ShowPlayState() {
    struct AnswerRow {
        int keyType;
        void (KeyAnswers::*show)();
    };
    static constexpr AnswerRow ANSWERS[] = {
        {OSD_KEY_DVD_AUDIO, &KeyAnswers::ShowDvdAudio},
        {OSD_KEY_DVD_ANGLE, &KeyAnswers::ShowDvdAngle},
        {OSD_KEY_DVD_SUBTITLE, &KeyAnswers::ShowDvdSubtitle},
        {OSD_KEY_VCD_AUDIO, &KeyAnswers::ShowVcdAudio},
    };
    if (const AnswerRow* row = FindRow(ANSWERS, &AnswerRow::keyType, m_display.GetCurKeyType())) {
        (this->*row->show)();
        // Also when nothing was shown: whatever picture stands goes 3 s later.
        m_display.SetDisplayStateTimer();
    }
    m_state.m_bTrackChanged = false;
}

void KeyAnswers::ShowDvdAudio() {
    const T_DVD_DETAIL dvd = m_state.m_data.GetCurDvdState();
    if (dvd.curAudioMode == 0 || dvd.totalAudioMode == 0) {
        m_display.ShowStateView2(OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION);
    } else if (dvd.curAudioLan != "Blank") {
        wchar_t text[WIDE_TEXT_SIZE];
        FormatWide(text, L"%d/%d %s %s %s", dvd.curAudioMode, dvd.totalAudioMode, dvd.audioType,
                   dvd.audioChannel, dvd.curAudioLan);
        m_display.ShowStateView(OSD_PIC_AUDIO, text);
    }
}

void KeyAnswers::ShowDvdAngle() {
    const T_DVD_DETAIL dvd = m_state.m_data.GetCurDvdState();
    if (dvd.totalAngle > 1) {
        wchar_t text[WIDE_TEXT_SIZE];
        FormatWide(text, L"%d/%d", dvd.curAngle, dvd.totalAngle);
        m_display.ShowStateView(OSD_PIC_ANGLE, text);
    } else {
        m_display.ShowStateView2(OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION);
    }
}

void KeyAnswers::ShowDvdSubtitle() {
    const T_DVD_DETAIL dvd = m_state.m_data.GetCurDvdState();
    if (dvd.curSubtitleNum < SUBTITLE_OFFSET) {
        m_display.ShowStateView2(OSD_PIC_SUBTITLE, OSD_TXT_SUBTITLE_OFF);
        return;
    }
    wchar_t text[WIDE_TEXT_SIZE];
    if (dvd.totalSubtitle != 0) {
        FormatWide(text, L"%d/%d  %s", dvd.curSubtitleNum - SUBTITLE_OFFSET, dvd.totalSubtitle,
                   dvd.curSubtitleLan);
    } else {
        FormatWide(text, L"%s", dvd.curSubtitleLan);
    }
    m_display.ShowStateView(OSD_PIC_SUBTITLE, text);
}

void KeyAnswers::ShowVcdAudio() {
    const int channel = m_state.m_data.GetAudioChannel();
    if (const ChannelRow* row = FindRow(CHANNELS, &ChannelRow::channel, channel)) {
        m_display.ShowStateView2(row->picture, row->text);
    }
}

void KeyAnswers::OnUserMsgPlaySpeed() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgPlaySpeed]\n");
    ShowDiscPlayState();
}

void KeyAnswers::OnUserMsgAudioChannel() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgAudioChannel]\n");
    ShowDiscPlayState();
}

void KeyAnswers::OnUserMsgDvdState() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgDvdState]\n");
    ShowDiscPlayState();
}

void KeyAnswers::ShowDiscPlayState() {
    if (m_state.IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD})) {
        ShowPlayState();
    }
}
