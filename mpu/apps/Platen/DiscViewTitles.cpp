#include "DiscView.h"

#include "DiscViewItems.h"
#include "Log.h"
#include "SqlText.h"
#include "ZMModel/CDiscData.h"
#include "parts/CounterText.h"
#include "parts/WideText.h"
#include "zmui/CUIAnalysis.h"

namespace {

void SetText(CUIAnalysis& ui, int nWndId, int nItem, const std::string& text) {
    wchar_t wide[WIDE_TEXT_SIZE];
    FormatWide(wide, L"%s", text);
    ui.SetItemText(nWndId, nItem, wide);
}

std::string Known(const std::string& text, const char* unknown) {
    return text.empty() ? unknown : text;
}

/** A tag that is shown for every disc, and what is logged before and after setting it. */
struct TagRow {
    int item;
    std::string T_ID3_INFO::*text;
    const char* log;
    const char* endLog;
    const char* emptyLog;
    const char* unknown;
};

constexpr TagRow TAGS[] = {
    {ITEM_ARTIST, &T_ID3_INFO::artist, "[DiscView::OnUserMsgID3]artist\n",
     "[DiscView::OnUserMsgID3]artist SetItemText end\n", "[DiscView::OnUserMsgID3] artist empty\n",
     "unknown artist"},
    {ITEM_ALBUM, &T_ID3_INFO::album, "[DiscView::OnUserMsgID3]album\n",
     "[DiscView::OnUserMsgID3]album SetItemText end\n", "[DiscView::OnUserMsgID3] album empty\n",
     "unknown album"},
};

constexpr bool IsFileType(int type) {
    return type == PLAY_TYPE_MUSIC || type == PLAY_TYPE_VIDEO || type == PLAY_TYPE_PHOTO;
}

/** The list page whose title follows the playing item; 0 for none. */
constexpr int TitlePage(int nListFrom) {
    switch (nListFrom) {
    case LIST_FROM_AUDIO_FOLDERS:
    case LIST_FROM_PHOTO_FOLDERS:
    case LIST_FROM_ALL_AUDIO:
    case LIST_FROM_ALL_PHOTO:
    case LIST_FROM_SEARCH:
        return WND_MEDIA_LIST;
    case LIST_FROM_AUDIO_IN_FOLDER:
    case LIST_FROM_PHOTO_IN_FOLDER:
        return WND_FOLDER_LIST;
    default:
        return 0;
    }
}

} // namespace

void DiscView::OnUserMsgTrackInfo() {
    if (!m_pUIAnalysis) {
        return;
    }
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgTrackInfo]----m_nCurListFrom=%d,track:%d/%d\n",
            m_nCurListFrom, info.mediaId, info.mediaIds);
    if (IsListState(m_uiCurState)) {
        OnFunc_ListJmp_UiFrom(m_nCurListFrom, m_bSelPlayingRow);
        if (const int nWndId = TitlePage(m_nCurListFrom)) {
            UpdateTitleRight(nWndId);
        }
    } else if (m_uiCurState == VIEW_STATE_AUDIO_PLAY) {
        if (IsFileType(m_nCurPlayType)) {
            ShowTrackText();
        } else if (m_nCurPlayType == PLAY_TYPE_CD) {
            ShowCounter(*m_pUIAnalysis, WND_AUDIO_PLAY, ITEM_TRACK,
                        JudgeCounter(info.mediaId, info.mediaIds, CounterRule::TwoDigits), info.mediaId,
                        info.mediaIds);
        }
        if (m_nCurPlayType == PLAY_TYPE_MUSIC) {
            UpdateCurMusicTitle();
        }
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgTrackInfo]----end------\n");
}

void DiscView::ShowTrackText() {
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    ShowCounter(*m_pUIAnalysis, WND_AUDIO_PLAY, ITEM_TRACK,
                JudgeCounter(info.curMediaId, info.curMediaIds, CounterRule::Unbounded), info.curMediaId,
                info.curMediaIds);
}

std::string DiscView::QueryFileName(int nFileType) {
    const T_MPEG_MEDIA_INFO info = CDiscData::GetInstance()->GetCurPlayInfo();
    const std::string sql =
        SqlText("select filename from files where ftype = %d and fid = %d and folderid = %d", nFileType,
                info.curMediaId, info.parentFolder);
    char szName[DISC_NAME_SIZE] = {};
    return m_discDb.qDb_GetObjData_Char(sql.c_str(), szName) ? szName : "";
}

void DiscView::ShowFileTitle(int nWndId, int nItem, const std::string& name) {
    SetText(*m_pUIAnalysis, nWndId, nItem, Known(name, "unknown title"));
    m_pUIAnalysis->drawItem(nWndId, nItem);
}

void DiscView::UpdateCurMusicTitle() {
    const std::string name = QueryFileName(FTYPE_AUDIO);
    CDiscData::GetInstance()->SetPlayFileName(name);
    ShowFileTitle(WND_AUDIO_PLAY, ITEM_TITLE, name);
}

void DiscView::UpdateTitleRight(int nWndId) {
    switch (m_nCurPlayType) {
    case PLAY_TYPE_MUSIC:
        UpdateMusicTitleRight(nWndId);
        break;
    case PLAY_TYPE_VIDEO:
        UpdateVideoTitleRight(nWndId);
        break;
    case PLAY_TYPE_PHOTO:
        UpdatePhotoTitleRight(nWndId);
        break;
    }
}

void DiscView::UpdateMusicTitleRight(int nWndId) {
    ShowFileTitle(nWndId, ITEM_TO_PLAYING, QueryFileName(FTYPE_AUDIO));
}

void DiscView::UpdateVideoTitleRight(int nWndId) {
    ShowFileTitle(nWndId, ITEM_TO_PLAYING, QueryFileName(FTYPE_VIDEO));
}

void DiscView::UpdatePhotoTitleRight(int nWndId) {
    ShowFileTitle(nWndId, ITEM_TO_PLAYING, QueryFileName(FTYPE_PICTURE));
}

void DiscView::OnUserMsgID3() {
    if (!m_pUIAnalysis) {
        return;
    }
    static constexpr int LIST_PAGES[] = {WND_MEDIA_LIST, WND_FOLDER_LIST, WND_CD_LIST};
    const T_ID3_INFO info = CDiscData::GetInstance()->GetID3Info();
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgID3] title=%s,artist=%s,album=%s\n",
            info.title.c_str(), info.artist.c_str(), info.album.c_str());
    // The title of a file is its name.
    if (m_nCurPlayType == PLAY_TYPE_CD) {
        const std::string title = Known(info.title, "unknown title");
        SetText(*m_pUIAnalysis, WND_AUDIO_PLAY, ITEM_TITLE, title);
        for (const int page : LIST_PAGES) {
            SetText(*m_pUIAnalysis, page, ITEM_TO_PLAYING, title);
        }
    }
    for (const TagRow& tag : TAGS) {
        const std::string& text = info.*tag.text;
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", text.empty() ? tag.emptyLog : tag.log);
        SetText(*m_pUIAnalysis, WND_AUDIO_PLAY, tag.item, Known(text, tag.unknown));
        if (!text.empty()) {
            LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "%s", tag.endLog);
        }
    }
    for (const int item : {ITEM_TITLE, ITEM_ARTIST, ITEM_ALBUM}) {
        m_pUIAnalysis->drawItem(WND_AUDIO_PLAY, item);
    }
    for (const int page : LIST_PAGES) {
        m_pUIAnalysis->drawItem(page, ITEM_TO_PLAYING);
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnUserMsgID3] end\n");
}
