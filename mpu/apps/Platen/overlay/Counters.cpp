#include "overlay/Counters.h"

#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "overlay/OverlayState.h"
#include "parts/CounterText.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int REPEAT_FOLDER = 4;

struct CounterRow {
    int clipType;
    int item;
    int T_MPEG_MEDIA_INFO::*current;
    int T_MPEG_MEDIA_INFO::*count;
    CounterRule rule;
};

constexpr CounterRow COUNTERS[] = {
    {PLAY_TYPE_DVD, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::title, &T_MPEG_MEDIA_INFO::titles,
     CounterRule::TwoDigits},
    {PLAY_TYPE_DVD, OSD_ITEM_CHAPTER, &T_MPEG_MEDIA_INFO::chapter, &T_MPEG_MEDIA_INFO::chapters,
     CounterRule::TwoDigits},
    {PLAY_TYPE_VIDEO, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::curMediaId, &T_MPEG_MEDIA_INFO::curMediaIds,
     CounterRule::Unbounded},
    {PLAY_TYPE_PHOTO, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::mediaId, &T_MPEG_MEDIA_INFO::mediaIds,
     CounterRule::Unbounded},
    {PLAY_TYPE_VCD, OSD_ITEM_TRACK, &T_MPEG_MEDIA_INFO::mediaId, &T_MPEG_MEDIA_INFO::mediaIds,
     CounterRule::TwoDigits},
};

} // namespace

void Counters::OnUserMsgTrackInfo() {
    if (!m_state.m_pUIAnalysis) {
        return;
    }
    const T_MPEG_MEDIA_INFO info = m_state.m_data.GetCurPlayInfo();
    if (m_state.IsClip({PLAY_TYPE_DVD})) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgTrackInfo]t:%d/%d  c:%d/%d\n",
                info.title, info.titles, info.chapter, info.chapters);
    } else if (m_state.IsClip({PLAY_TYPE_VCD})) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::OnUserMsgTrackInfo]----  track:%d/%d\n",
                info.mediaId, info.mediaIds);
    }
    for (const CounterRow& row : COUNTERS) {
        if (m_state.IsClip({row.clipType})) {
            const int current = info.*row.current;
            const int count = info.*row.count;
            ShowCounter(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, row.item,
                        JudgeCounter(current, count, row.rule), current, count);
        }
    }
}

void Counters::ShowFileCounter() {
    if (m_state.m_pUIAnalysis) {
        const T_MPEG_MEDIA_INFO info = m_state.m_data.GetCurPlayInfo();
        const Counter shown = JudgeCounter(info.curMediaId, info.curMediaIds, CounterRule::Unbounded);
        ShowCounter(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, OSD_ITEM_TRACK, shown, info.curMediaId,
                    info.curMediaIds);
    }
}

void Counters::ShowCurTrack(int index) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscOsdView::ShowCurTrack]  index=%d\n", index);
    if (!m_state.m_pUIAnalysis || m_state.m_data.GetCurPlayStatus().repeat == REPEAT_FOLDER) {
        return;
    }
    const T_MPEG_MEDIA_INFO info = m_state.m_data.GetCurPlayInfo();
    // Without an index the file number decides whether the count alone is shown.
    Counter shown = Counter::Unknown;
    if (info.mediaIds >= 1 && index >= 1) {
        shown = Counter::Both;
    } else if (info.mediaIds >= 1 && info.curMediaId < 1) {
        shown = Counter::CountOnly;
    }
    ShowCounter(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, OSD_ITEM_TRACK, shown, index, info.mediaIds);
}

void Counters::OnUserMsgPlayTime() {
    if (!m_state.m_pUIAnalysis || !m_state.IsClip({PLAY_TYPE_VCD, PLAY_TYPE_DVD, PLAY_TYPE_VIDEO})) {
        return;
    }
    const T_PLAYTIME_INFO playTime = m_state.m_data.GetPlayTime();
    SetTimeText(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, OSD_ITEM_ELAPSED, playTime.time);
    SetTimeText(*m_state.m_pUIAnalysis, m_state.m_nCurWndId, OSD_ITEM_TOTAL, playTime.trackTime);
    m_state.m_pUIAnalysis->SetProgressItemPos(m_state.m_nCurWndId, OSD_ITEM_PROGRESS,
                                              PlayTimePercent(playTime.time, playTime.trackTime));
    m_state.m_pUIAnalysis->drawItem(m_state.m_nCurWndId, OSD_ITEM_ELAPSED);
    m_state.m_pUIAnalysis->drawItem(m_state.m_nCurWndId, OSD_ITEM_PROGRESS);
    m_state.m_pUIAnalysis->drawItem(m_state.m_nCurWndId, OSD_ITEM_TOTAL);
}
