#include "pages/PlayingTitle.h"

#include "DiscQDB.h"
#include "DiscViewItems.h"
#include "SqlText.h"
#include "ZMModel/CDiscData.h"
#include "pages/PageState.h"
#include "parts/ItemText.h"
#include "parts/Widgets.h"
#include "zmui/CUIAnalysis.h"

std::string PlayingTitle::QueryFileName(int nFileType) {
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    const std::string sql =
        SqlText("select filename from files where ftype = %d and fid = %d and folderid = %d", nFileType,
                info.curMediaId, info.parentFolder);
    char szName[DISC_NAME_SIZE] = {};
    return m_discDb.qDb_GetObjData_Char(sql.c_str(), szName) ? szName : "";
}

void PlayingTitle::ShowFileTitle(int nWndId, int nItem, const std::string& name) {
    SetText(*m_widgets.m_pUIAnalysis, nWndId, nItem, name.empty() ? UNKNOWN_TITLE : name);
    m_widgets.m_pUIAnalysis->drawItem(nWndId, nItem);
}

void PlayingTitle::UpdateCurMusicTitle() {
    const std::string name = QueryFileName(FTYPE_AUDIO);
    m_data.SetPlayFileName(name);
    ShowFileTitle(WND_AUDIO_PLAY, ITEM_TITLE, name);
}

void PlayingTitle::UpdateTitleRight(int nWndId) {
    switch (m_state.m_nCurPlayType) {
    case PLAY_TYPE_MUSIC:
        UpdateMusicTitleRight(nWndId);
        break;
    case PLAY_TYPE_VIDEO:
        UpdateVideoTitleRight(nWndId);
        break;
    case PLAY_TYPE_PHOTO:
        UpdatePhotoTitleRight(nWndId);
        break;
    default:
        break;
    }
}

void PlayingTitle::UpdateMusicTitleRight(int nWndId) {
    ShowFileTitle(nWndId, ITEM_TO_PLAYING, QueryFileName(FTYPE_AUDIO));
}

void PlayingTitle::UpdateVideoTitleRight(int nWndId) {
    ShowFileTitle(nWndId, ITEM_TO_PLAYING, QueryFileName(FTYPE_VIDEO));
}

void PlayingTitle::UpdatePhotoTitleRight(int nWndId) {
    ShowFileTitle(nWndId, ITEM_TO_PLAYING, QueryFileName(FTYPE_PICTURE));
}
