#include "disc/TrackReports.h"

#include "Log.h"
#include "ZMModel/CDiscData.h"
#include "lists/ListPage.h"
#include "lists/ListState.h"
#include "pages/PageState.h"
#include "pages/PlayPage.h"
#include "parts/Widgets.h"

void TrackReports::OnUserMsgTrackInfo() {
    if (!m_widgets.m_pUIAnalysis) {
        return;
    }
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgTrackInfo]----m_nCurListFrom=%d,track:%d/%d\n",
            m_lists.m_nCurListFrom, info.mediaId, info.mediaIds);
    if (IsListState(m_state.m_uiCurState)) {
        m_listPage.FollowTrack();
    } else if (m_state.m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        m_playPage.ShowTrack(info);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgTrackInfo]----end------\n");
}
