#include "DiscOsdView.h"

#include "DiscViewController.h"
#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "parts/DiscTimers.h"
#include "parts/FindRow.h"
#include "parts/WideText.h"
#include "zmui/CUIAnalysis.h"

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

void DiscOsdView::ShowStateView(long picId, const wchar_t* text) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::ShowStateView]  nPicID=%d\n",
            static_cast<int>(picId));
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(m_nCurWndId, OSD_ITEM_STATE_TEXT, text);
        ShowStatePicture(static_cast<int>(picId), true);
    }
}

void DiscOsdView::ShowStateView2(long picId, long textId) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::ShowStateView2]  nPicID=%d\n",
            static_cast<int>(picId));
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(m_nCurWndId, OSD_ITEM_STATE_TEXT, static_cast<int>(textId));
        ShowStatePicture(static_cast<int>(picId), true);
    }
}

void DiscOsdView::ShowStatePicture(int picture, bool shown) {
    m_pUIAnalysis->SetItemIcon(m_nCurWndId, OSD_ITEM_STATE_PIC, picture, ITEM_STATE_ALL);
    m_pUIAnalysis->ShowItem(m_nCurWndId, OSD_ITEM_STATE_PIC, shown);
    m_pUIAnalysis->drawItem(m_nCurWndId, OSD_ITEM_STATE_TEXT);
    m_pUIAnalysis->drawItem(m_nCurWndId, OSD_ITEM_STATE_PIC);
}

void DiscOsdView::HideStateView() {
    // Every change of the key type takes the picture away.
    SetCurKeyType(OSD_KEY_NONE);
}

void DiscOsdView::SetCurKeyType(int keyType) {
    KillDiscTimer(m_pController, ENUM_TIMER_DISPLAY_STATE);
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(m_nCurWndId, OSD_ITEM_STATE_TEXT, L" ");
        ShowStatePicture(OSD_PIC_NONE, false);
    }
    Lock();
    m_nCurKeyType = keyType;
    UnLock();
}

int DiscOsdView::GetCurKeyType() {
    Lock();
    const int keyType = m_nCurKeyType;
    UnLock();
    return keyType;
}

void DiscOsdView::ShowPlayState() {
    struct AnswerRow {
        int keyType;
        void (DiscOsdView::*show)();
    };
    static constexpr AnswerRow ANSWERS[] = {
        {OSD_KEY_DVD_AUDIO, &DiscOsdView::ShowDvdAudio},
        {OSD_KEY_DVD_ANGLE, &DiscOsdView::ShowDvdAngle},
        {OSD_KEY_DVD_SUBTITLE, &DiscOsdView::ShowDvdSubtitle},
        {OSD_KEY_VCD_AUDIO, &DiscOsdView::ShowVcdAudio},
    };
    if (const AnswerRow* row = FindRow(ANSWERS, &AnswerRow::keyType, GetCurKeyType())) {
        (this->*row->show)();
        // Also when nothing was shown: whatever picture stands goes 3 s later.
        SetDisplayStateTimer();
    }
    m_bTrackChanged = false;
}

void DiscOsdView::ShowDvdAudio() {
    const T_DVD_DETAIL dvd = m_data.GetCurDvdState();
    if (dvd.curAudioMode == 0 || dvd.totalAudioMode == 0) {
        ShowStateView2(OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION);
    } else if (dvd.curAudioLan != "Blank") {
        wchar_t text[WIDE_TEXT_SIZE];
        FormatWide(text, L"%d/%d %s %s %s", dvd.curAudioMode, dvd.totalAudioMode, dvd.audioType,
                   dvd.audioChannel, dvd.curAudioLan);
        ShowStateView(OSD_PIC_AUDIO, text);
    }
}

void DiscOsdView::ShowDvdAngle() {
    const T_DVD_DETAIL dvd = m_data.GetCurDvdState();
    if (dvd.totalAngle > 1) {
        wchar_t text[WIDE_TEXT_SIZE];
        FormatWide(text, L"%d/%d", dvd.curAngle, dvd.totalAngle);
        ShowStateView(OSD_PIC_ANGLE, text);
    } else {
        ShowStateView2(OSD_PIC_NO_FUNCTION, OSD_TXT_NO_FUNCTION);
    }
}

void DiscOsdView::ShowDvdSubtitle() {
    const T_DVD_DETAIL dvd = m_data.GetCurDvdState();
    if (dvd.curSubtitleNum < SUBTITLE_OFFSET) {
        ShowStateView2(OSD_PIC_SUBTITLE, OSD_TXT_SUBTITLE_OFF);
        return;
    }
    wchar_t text[WIDE_TEXT_SIZE];
    if (dvd.totalSubtitle != 0) {
        FormatWide(text, L"%d/%d  %s", dvd.curSubtitleNum - SUBTITLE_OFFSET, dvd.totalSubtitle,
                   dvd.curSubtitleLan);
    } else {
        FormatWide(text, L"%s", dvd.curSubtitleLan);
    }
    ShowStateView(OSD_PIC_SUBTITLE, text);
}

void DiscOsdView::ShowVcdAudio() {
    const int channel = m_data.GetAudioChannel();
    if (const ChannelRow* row = FindRow(CHANNELS, &ChannelRow::channel, channel)) {
        ShowStateView2(row->picture, row->text);
    }
}

void DiscOsdView::OnUserMsgPlaySpeed() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgPlaySpeed]\n");
    ShowDiscPlayState();
}

void DiscOsdView::OnUserMsgAudioChannel() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgAudioChannel]\n");
    ShowDiscPlayState();
}

void DiscOsdView::OnUserMsgDvdState() {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgDvdState]\n");
    ShowDiscPlayState();
}

void DiscOsdView::ShowDiscPlayState() {
    if (IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD})) {
        ShowPlayState();
    }
}
