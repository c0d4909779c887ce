#include "lists/ListQuery.h"

#include "DiscViewItems.h"
#include "ListSources.h"
#include "Log.h"
#include "SqlText.h"
#include "lists/ListControls.h"
#include "lists/ListFill.h"
#include "lists/ListState.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "parts/DiscTimers.h"
#include "zmcar/ViewUI.h"

namespace {

constexpr int TICKS_TO_WAIT = 5;
constexpr int FTYPE_NONE = 0; ///< matches no row

} // namespace

void ListQuery::OnQueryList(PlayType nType) {
    if (nType == PLAY_TYPE_MUSIC) {
        OnQueryAudioList();
    } else if (nType == PLAY_TYPE_VIDEO) {
        OnQueryVideoList();
    } else if (nType == PLAY_TYPE_PHOTO) {
        OnQueryPictureList();
    }
}

void ListQuery::OnQueryAudioList() {
    QueryFiles(LIST_FROM_ALL_AUDIO, __FUNCTION__,
               SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype = %d AND filename <> '' "
                       "ORDER BY folderid, fid;",
                       FTYPE_AUDIO));
}

void ListQuery::OnQueryVideoList() {
    QueryFiles(LIST_FROM_ALL_VIDEO, __FUNCTION__,
               "SELECT fid,folderid,ftype,filename from files WHERE ftype == 2 AND filename <> '' "
               "ORDER BY folderid, fid;");
}

void ListQuery::OnQueryPictureList() {
    QueryFiles(LIST_FROM_ALL_PHOTO, __FUNCTION__,
               "SELECT fid,folderid,ftype,filename from files WHERE ftype == 3 AND filename <> '' "
               "ORDER BY folderid, fid;");
}

void ListQuery::QueryFiles(LIST_FROM_EN nFrom, const char* logName, const std::string& sql) {
    m_lists.m_nCurListFrom = nFrom;
    SendLogged(logName, sql);
}

void ListQuery::OnQueryCurAudioList() {
    m_controls.DeleteRows(WND_CD_LIST);
    int nFileType = FTYPE_NONE;
    if (m_state.m_nCurPlayType == PLAY_TYPE_CD) {
        m_lists.m_nCurListFrom = LIST_FROM_CUR_AUDIO;
        nFileType = FTYPE_AUDIO;
    }
    SendLogged(__FUNCTION__, SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype == %d AND "
                                     "filename <> '' ORDER BY fid;",
                                     nFileType));
}

void ListQuery::SendLogged(const char* logName, const std::string& sql) {
    m_lists.m_szListSql = sql;
    LOGBASE(LOG_LEV_TRACE, logName, "[%s]--m_szListSql:%s\n", logName, sql.c_str());
    Send(sql, "");
}

void ListQuery::Send(const std::string& sql, const std::string& subSql) {
    m_discDb.QueryPlayListCmd(sql, m_lists.m_nCurListFrom, subSql);
    SetQueryWaitTimer();
}

void ListQuery::SetQueryWaitTimer() {
    m_nQueWaitTime = 0;
    m_bQueryWaiting = true;
    m_control.StartTimer(ENUM_TIMER_QUERY_WAIT);
}

void ListQuery::FileQueryWait() {
    if (!m_bQueryWaiting) {
        return;
    }
    if (m_discDb.GetFinishFlag()) {
        m_nQueWaitTime = 0;
        m_bQueryWaiting = false;
        m_control.KillTimer(ENUM_TIMER_QUERY_WAIT);
        TakeFetchedRows();
    } else {
        TakeFetchedRows();
        ++m_nQueWaitTime;
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::FileQueryWait] not finish: m_nQueWaitTime=%d\n",
                m_nQueWaitTime);
        if (m_nQueWaitTime > TICKS_TO_WAIT) {
            // m_bQueryWaiting stays: what arrives later is shown by the next query or insertion.
            m_nQueWaitTime = 0;
            m_control.KillTimer(ENUM_TIMER_QUERY_WAIT);
            LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::FileQueryWait] KillTimer\n");
        }
    }
    m_view.ShowWnd(ListSourceOf(m_lists.m_nCurListFrom).page, true, 0);
}

void ListQuery::TakeFetchedRows() {
    const int nFrom = m_lists.m_nCurListFrom;
    LOGBASE(LOG_LEV_TRACE, "FileQueryWait", "[DiscView::FileQueryWait] m_nCurListFrom=%d\n", nFrom);
    int nCount = 0;
    m_discDb.GetVecListSize(nFrom, nCount);
    if (nCount >= 1) {
        m_fill.InsertUIListData(nFrom);
    } else {
        LOGBASE(LOG_LEV_TRACE, "FileQueryWait", "[DiscView::FileQueryWait] nCount=%d\n", nCount);
    }
}
