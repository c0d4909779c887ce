#include "DiscViewLists.h"

#include "Log.h"
#include "SqlText.h"
#include "parts/FindRow.h"
#include "parts/WideText.h"
#include "zmui/CUIAnalysis.h"

namespace {

constexpr int ITEM_FOLDER_TITLE = 1012;

/** A count that could not be read counts as rows: no tip is shown. */
constexpr int COUNT_UNREAD = -1;

/** Types without file lists look like music but are counted as video. */
constexpr int OTHER_COUNTED_TYPE = FTYPE_VIDEO;

} // namespace

void DiscView::OnQueryAllFolders() {
    DeleteRows(m_pAudioList);
    const MediaType* type = FindMediaType(m_nCurType);
    if (type) {
        m_nCurListFrom = type->foldersFrom;
    }
    m_szListSql = SqlText("select folderid,parentid,foldername from folders where ftype = %d;",
                          type ? type->fileType : FTYPE_AUDIO);
    // The line carries the name of the query by parent folder.
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnQueryFolderList]--m_szListSql:%s\n", m_szListSql.c_str());
    m_discDb.QueryPlayListCmd(m_szListSql, m_nCurListFrom, "");
    SetQueryWaitTimer();
}

void DiscView::OnQueryAudiosInFolder(int nFolderId) {
    const MediaType* type = FindMediaType(m_nCurType);
    m_nCurListFrom = type ? type->inFolderFrom : LIST_FROM_AUDIO_IN_FOLDER;
    m_szListSql =
        SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype == %d AND folderid == %d AND "
                "filename <> '' ORDER BY fid;",
                type ? type->fileType : FTYPE_AUDIO, nFolderId);
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[OnQueryAudiosInFolder]--m_szListSql:%s\n", m_szListSql.c_str());
    // Without a first statement the worker reads the folder's files only.
    m_discDb.QueryPlayListCmd("", m_nCurListFrom, m_szListSql);
    SetQueryWaitTimer();
}

void DiscView::OnGotoFolderListPage(int nFolderId) {
    if (nFolderId == 0) {
        OnQueryAllFolders();
        SetShowLeftState(WND_MEDIA_LIST, m_nCurListFrom);
    } else {
        DeleteRows(m_pFolderAudioList);
        OnQueryAudiosInFolder(nFolderId);
        const MediaType* type = FindMediaType(m_nCurType);
        const MediaType& look = type ? *type : *FindMediaType(PLAY_TYPE_MUSIC);
        const int nFileType = type ? type->fileType : OTHER_COUNTED_TYPE;
        if (IsFolderEmpty(nFileType, nFolderId)) {
            SetShowLeftState(WND_FOLDER_LIST, look.inFolderFrom);
            SetListTip(WND_FOLDER_LIST, look.noFileText);
        }
        ShowFolderTitle(nFileType, nFolderId);
        SetShowLeftState(WND_FOLDER_LIST, m_nCurListFrom);
        m_nClickFolderId = nFolderId;
    }
    m_bSelPlayingRow = true;
}

bool DiscView::IsFolderEmpty(int nFileType, int nFolderId) {
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

void DiscView::ShowFolderTitle(int nFileType, int nFolderId) {
    char szName[DISC_NAME_SIZE] = {};
    const std::string sql =
        SqlText("select foldername from folders where ftype = %d and folderid = %d;", nFileType, nFolderId);
    m_discDb.qDb_GetObjData_Char(sql.c_str(), szName);
    wchar_t text[WIDE_TEXT_SIZE];
    FormatWide(text, L"%s", szName);
    if (m_pUIAnalysis) {
        m_pUIAnalysis->SetItemText(WND_FOLDER_LIST, ITEM_FOLDER_TITLE, text);
    }
}

void DiscView::OnOpenFolder(int nListFrom, int nLine) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscView::OnOpenFolder] nListFrom=%d,nLine=%d\n", nListFrom,
            nLine);
    int nType = 0;
    m_discDb.GetVecList_Data_Type(nListFrom, nLine, nType);
    if (const MediaType* type = FindRow(MediaTypes(), &MediaType::fileType, nType)) {
        OnHandleUIListClick(type->rowKind, type->inFolderFrom, nLine);
        m_nPlayListFrom = type->playListFolder;
    } else if (nType == FTYPE_FOLDER) {
        m_discDb.GetVecList_Data_Fid(nListFrom, nLine, m_nClickFolderId);
        Send(&DiscViewController::GotoSubList, m_nCurType, m_nClickFolderId);
        OnGotoFolderListPage(m_nClickFolderId);
    }
}

void DiscView::OnHandleUIReturnUpFolder(int) {
    if (const MediaType* type = FindMediaType(m_nCurType)) {
        m_uiCurState = type->state;
    }
    OnGotoFolderListPage(0);
}

void DiscView::OnQueryFolderList(int nFolderId) {
    const bool bKnown = FindMediaType(m_nCurPlayType) != nullptr;
    if (bKnown) {
        DeleteRows(nFolderId == ROOT_FOLDER ? m_pAudioList : m_pFolderAudioList);
    }
    QuerySubFolders(__FUNCTION__, nFolderId, " ORDER BY folderid");
}

void DiscView::OnQueryFolderList2(int nFolderId) {
    QuerySubFolders(__FUNCTION__, nFolderId, "");
}

void DiscView::QuerySubFolders(const char* logName, int nFolderId, const char* order) {
    LOGBASE(LOG_LEV_TRACE, logName, "[OnQueryFolderList]--nFolderId=%d\n", nFolderId);
    const MediaType* type = FindMediaType(m_nCurPlayType);
    if (type) {
        m_nCurListFrom = nFolderId == ROOT_FOLDER ? type->foldersFrom : type->inFolderFrom;
    }
    const int nFileType = type ? type->fileType : FTYPE_AUDIO;
    m_szListSql =
        SqlText("select folderid,parentid,foldername from folders where ftype = %d and parentid = %d%s;",
                nFileType, nFolderId, order);
    const std::string second = SqlText("SELECT fid,folderid,ftype,filename from files WHERE ftype = %d and "
                                       "folderid = %d AND filename <> '' ORDER BY fid;",
                                       nFileType, nFolderId);
    LOGBASE(LOG_LEV_TRACE, logName, "[OnQueryFolderList]--SqlSecond:%s\n", second.c_str());
    m_discDb.QueryPlayListCmd(m_szListSql, m_nCurListFrom, second);
    SetQueryWaitTimer();
}
