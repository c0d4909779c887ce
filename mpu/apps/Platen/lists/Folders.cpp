#include "lists/Folders.h"

#include "DiscViewController.h"
#include "DiscViewItems.h"
#include "FindRow.h"
#include "Log.h"
#include "SqlText.h"
#include "lists/ListControls.h"
#include "lists/ListMenu.h"
#include "lists/ListQuery.h"
#include "lists/ListState.h"
#include "lists/MediaTypes.h"
#include "lists/RowPlay.h"
#include "pages/PageState.h"
#include "parts/ControlLink.h"
#include "parts/ItemText.h"
#include "parts/Widgets.h"
#include "zmui/CUIAnalysis.h"

namespace {

/** A count that could not be read counts as rows: no tip is shown. */
constexpr int COUNT_UNREAD = -1;

/** Types without file lists look like music but are counted as video. */
constexpr int OTHER_COUNTED_TYPE = FTYPE_VIDEO;

} // namespace

void Folders::OnQueryAllFolders() {
    m_controls.DeleteRows(WND_MEDIA_LIST);
    const MediaType* type = FindMediaType(m_state.m_nCurType);
    if (type) {
        m_lists.m_nCurListFrom = type->foldersFrom;
    }
    m_lists.m_szListSql = SqlText("select folderid,parentid,foldername from folders where ftype = %d;",
                                  type ? type->fileType : FTYPE_AUDIO);
    // The line carries the name of the query by parent folder.
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnQueryFolderList]--m_szListSql:%s\n",
            m_lists.m_szListSql.c_str());
    m_query.Send(m_lists.m_szListSql, "");
}

void Folders::OnQueryAudiosInFolder(int nFolderId) {
    const MediaType* type = FindMediaType(m_state.m_nCurType);
    m_lists.m_nCurListFrom = type ? type->inFolderFrom : LIST_FROM_AUDIO_IN_FOLDER;
    m_lists.m_szListSql =
        SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype == %d AND folderid == %d AND "
                "filename <> '' ORDER BY fid;",
                type ? type->fileType : FTYPE_AUDIO, nFolderId);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnQueryAudiosInFolder]--m_szListSql:%s\n",
            m_lists.m_szListSql.c_str());
    // Without a first statement the worker reads the folder's files only.
    m_query.Send("", m_lists.m_szListSql);
}

void Folders::OnGotoFolderListPage(int nFolderId) {
    if (nFolderId == 0) {
        OnQueryAllFolders();
        m_menu.SetShowLeftState(WND_MEDIA_LIST, m_lists.m_nCurListFrom);
    } else {
        OpenFolder(nFolderId);
    }
    m_lists.m_bSelPlayingRow = true;
}

void Folders::OpenFolder(int nFolderId) {
    m_controls.DeleteRows(WND_FOLDER_LIST);
    OnQueryAudiosInFolder(nFolderId);
    const MediaType* type = FindMediaType(m_state.m_nCurType);
    const MediaType& look = type ? *type : *FindMediaType(PLAY_TYPE_MUSIC);
    const int nFileType = type ? type->fileType : OTHER_COUNTED_TYPE;
    if (IsFolderEmpty(nFileType, nFolderId)) {
        m_menu.SetShowLeftState(WND_FOLDER_LIST, look.inFolderFrom);
        m_menu.SetListTip(WND_FOLDER_LIST, look.noFileText);
    }
    ShowFolderTitle(nFileType, nFolderId);
    m_menu.SetShowLeftState(WND_FOLDER_LIST, m_lists.m_nCurListFrom);
    m_lists.m_nClickFolderId = nFolderId;
}

bool Folders::IsFolderEmpty(int nFileType, int nFolderId) {
    int nFolders = COUNT_UNREAD;
    int nFiles = 0;
    const std::string folders =
        SqlText("select foldercount from folders where ftype = %d and folderid = %d;", nFileType, nFolderId);
    const std::string files =
        SqlText("select filecount from folders where ftype = %d and folderid = %d;", nFileType, nFolderId);
    m_discDb.qDb_GetObjData_Int(folders.c_str(), nFolders);
    m_discDb.qDb_GetObjData_Int(files.c_str(), nFiles);
    return nFolders == 0 && nFiles == 0;
}

void Folders::ShowFolderTitle(int nFileType, int nFolderId) {
    char szName[DISC_NAME_SIZE] = {};
    const std::string sql =
        SqlText("select foldername from folders where ftype = %d and folderid = %d;", nFileType, nFolderId);
    m_discDb.qDb_GetObjData_Char(sql.c_str(), szName);
    if (m_widgets.m_pUIAnalysis) {
        SetText(*m_widgets.m_pUIAnalysis, WND_FOLDER_LIST, ITEM_FOLDER_TITLE, szName);
    }
}

void Folders::OnOpenFolder(int nListFrom, int nLine) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnOpenFolder] nListFrom=%d,nLine=%d\n", nListFrom,
            nLine);
    int nType = 0;
    m_discDb.GetVecList_Data_Type(nListFrom, nLine, nType);
    if (const MediaType* type = FindRow(MediaTypes(), &MediaType::fileType, static_cast<FTYPE_EN>(nType))) {
        m_rowPlay.OnHandleUIListClick(type->rowKind, type->inFolderFrom, nLine);
        m_state.m_nPlayListFrom = type->playListFolder;
    } else if (nType == FTYPE_FOLDER) {
        m_discDb.GetVecList_Data_Fid(nListFrom, nLine, m_lists.m_nClickFolderId);
        m_control.Send(&DiscViewController::GotoSubList, m_state.m_nCurType, m_lists.m_nClickFolderId);
        OnGotoFolderListPage(m_lists.m_nClickFolderId);
    }
}

void Folders::OnHandleUIReturnUpFolder(int) {
    if (const MediaType* type = FindMediaType(m_state.m_nCurType)) {
        m_state.m_uiCurState = type->state;
    }
    OnGotoFolderListPage(0);
}

void Folders::OnQueryFolderList(int nFolderId) {
    if (FindMediaType(m_state.m_nCurPlayType)) {
        m_controls.DeleteRows(nFolderId == ROOT_FOLDER ? WND_MEDIA_LIST : WND_FOLDER_LIST);
    }
    QuerySubFolders(__FUNCTION__, nFolderId, " ORDER BY folderid");
}

void Folders::OnQueryFolderList2(int nFolderId) {
    QuerySubFolders(__FUNCTION__, nFolderId, "");
}

void Folders::QuerySubFolders(const char* logName, int nFolderId, const char* order) {
    LOGBASE(LOG_LEV_TRACE, logName, "[OnQueryFolderList]--nFolderId=%d\n", nFolderId);
    const MediaType* type = FindMediaType(m_state.m_nCurPlayType);
    if (type) {
        m_lists.m_nCurListFrom = nFolderId == ROOT_FOLDER ? type->foldersFrom : type->inFolderFrom;
    }
    const int nFileType = type ? type->fileType : FTYPE_AUDIO;
    m_lists.m_szListSql =
        SqlText("select folderid,parentid,foldername from folders where ftype = %d and parentid = %d%s;",
                nFileType, nFolderId, order);
    const std::string second = SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype = %d and "
                                       "folderid = %d AND filename <> '' ORDER BY fid;",
                                       nFileType, nFolderId);
    LOGBASE(LOG_LEV_TRACE, logName, "[OnQueryFolderList]--SqlSecond:%s\n", second.c_str());
    m_query.Send(m_lists.m_szListSql, second);
}
