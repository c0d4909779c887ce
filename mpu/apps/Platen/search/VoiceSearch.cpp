#include "search/VoiceSearch.h"

#include "CutText.h"
#include "DiscQDB.h"
#include "DiscViewController.h"
#include "Log.h"
#include "lists/ListChange.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "lists/RowPlay.h"
#include "pages/PageState.h"
#include "pages/ParkingGate.h"
#include "pages/PlayPage.h"
#include "parts/ControlLink.h"
#include "zmcar/ArgvDecode.h"

#include "sys/delay.h"

#include <cstdlib>
#include <map>

namespace {

constexpr unsigned int QUERY_POLL_MS = 10;
constexpr int QUERY_POLLS = 51; ///< the event thread waits about half a second at most

using Params = std::map<std::string, std::string>;

std::string ValueOf(const Params& params, const char* key) {
    const auto found = params.find(key);
    return found == params.end() ? std::string() : found->second;
}

} // namespace

void VoiceSearch::SetVoicePlayPar(const std::string& song) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::SetVoicePlayPar]song=%s\n", song.c_str());
    m_strVoicePlay = song;
    m_bVoicePlayPending = !song.empty();
}

void VoiceSearch::OnAppsMsgAppData(std::string& data) {
    if (data.empty()) {
        return;
    }
    Params params;
    Oro::ZMCAR::ArgvDecode::GetOpt_LongParams(data, params);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage]--APPSMSG_APPDATA--input:%s\n", data.c_str());
    if (params.contains("kb_val") && params.contains("kb_ret")) {
        CopyText(m_szSearch, sizeof m_szSearch, params["kb_val"]);
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnAppsMessage]--APPSMSG_APPDATA--m_szSearch:%s\n", m_szSearch);
        PlayNumber(std::strtol(m_szSearch, nullptr, 10));
    } else if (params.contains("song") || params.contains("singer")) {
        const std::string song = ValueOf(params, "song");
        m_strVoicePlay = song.empty() ? ValueOf(params, "singer") : song;
        RequestVoicePlay();
    }
}

void VoiceSearch::PlayNumber(long nNumber) {
    if (nNumber <= 0 || nNumber > m_data.GetCurPlayInfo().mediaIds) {
        return;
    }
    const int nTrack = static_cast<int>(nNumber);
    switch (m_state.m_nCurPlayType) {
    case PLAY_TYPE_CD:
    case PLAY_TYPE_MUSIC:
        m_control.Send(&DiscViewController::PlayTrack, nTrack, 0);
        m_playPage.OnGotoAudioPlayPage();
        break;
    case PLAY_TYPE_VIDEO:
        m_rowPlay.OnHandleUIListClick(ROW_VIDEO, LIST_FROM_ALL_VIDEO, nTrack - 1);
        m_films.GotoVideoPage(m_state.m_nCurPlayType);
        break;
    case PLAY_TYPE_PHOTO:
        m_rowPlay.OnHandleUIListClick(ROW_PICTURE, LIST_FROM_ALL_PHOTO, nTrack - 1);
        m_films.GotoVideoPage(m_state.m_nCurPlayType);
        break;
    default:
        break;
    }
}

void VoiceSearch::RequestVoicePlay() {
    if (m_state.m_nCurPlayType != PLAY_TYPE_MUSIC) {
        // Carried out once the disc reports that music plays.
        m_bVoicePlayPending = !m_strVoicePlay.empty();
        m_change.OnHandleChangeToMusic();
    } else if (!m_strVoicePlay.empty()) {
        OnHandleVoicePlay(m_strVoicePlay);
    } else {
        m_control.Send(&DiscViewController::Play);
    }
}

void VoiceSearch::PlayPending() {
    if (m_bVoicePlayPending && m_state.m_nCurPlayType == PLAY_TYPE_MUSIC) {
        m_bVoicePlayPending = false;
        OnHandleVoicePlay(m_strVoicePlay);
    }
}

void VoiceSearch::OnHandleVoicePlay(std::string name) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnHandleVoicePlay]\n");
    if (!OnQuerySongName(name)) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "not found this song.\n");
        return;
    }
    m_state.m_nCurType = PLAY_TYPE_MUSIC;
    if (m_state.m_nMixedType & MIXED_MUSIC) {
        PlayFirstMatch();
    }
}

void VoiceSearch::PlayFirstMatch() {
    m_state.m_bNoFileOfType = false;
    int nFid = 0;
    int nFolder = 0;
    m_discDb.GetVecList_Data_Fid(LIST_FROM_SEARCH, 0, nFid);
    m_discDb.GetVecList_Data_ListIndex(LIST_FROM_SEARCH, 0, nFolder);
    LOGBASE(LOG_LEV_TRACE, "OnHandleVoicePlay", "[OnHandleVoicePlay]fileID=%d,folderID=%d\n", nFid, nFolder);
    const T_MPEG_MEDIA_INFO info = m_data.GetCurPlayInfo();
    if (nFid != info.curMediaId || nFolder != info.parentFolder) {
        // Not packed, unlike a touched row of music.
        m_control.Send(&DiscViewController::PlayTrack, nFid, nFolder);
    }
    m_lists.m_bSelPlayingRow = true;
    m_state.m_nPlayListFrom = PLAY_LIST_SEARCH;
    m_playPage.OnGotoAudioPlayPage();
}

bool VoiceSearch::OnQuerySongName(std::string name) {
    const int nListFrom = m_lists.m_nCurListFrom;
    m_lists.m_nCurListFrom = LIST_FROM_SEARCH;
    // The name goes in as it is, and the per-cent signs stay doubled: the pattern matches every name that
    // holds it.
    m_lists.m_szListSql =
        "SELECT fid,folderid,ftype,filename from files WHERE ftype == 1 AND filename LIKE '%%" + name +
        "%%' ORDER BY folderid, fid;";
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnQuerySongName]--m_szListSql:%s\n", m_lists.m_szListSql.c_str());
    m_discDb.QueryPlayListCmd(m_lists.m_szListSql, LIST_FROM_SEARCH, "");
    const bool bFound = OnHandleQueryResult();
    if (bFound && name.find('\'') == std::string::npos) {
        return true;
    }
    if (bFound) {
        // A quote in the name that leaves a valid statement selects rows that do not contain the name: they are
        // not a match, and are dropped.
        m_discDb.QueryPlayListCmd("", LIST_FROM_SEARCH, "");
    }
    m_lists.m_nCurListFrom = nListFrom;
    return false;
}

bool VoiceSearch::OnHandleQueryResult() {
    delay(QUERY_POLL_MS);
    int i = 0;
    // The finish flag alone is of the task before until the worker has begun this one.
    while (!m_discDb.IsQueryFinished() && i < QUERY_POLLS) {
        delay(QUERY_POLL_MS);
        ++i;
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnHandleQueryResult]  i=%d\n", i);
    int nCount = 0;
    m_discDb.GetVecListSize(m_lists.m_nCurListFrom, nCount);
    return nCount > 0;
}
