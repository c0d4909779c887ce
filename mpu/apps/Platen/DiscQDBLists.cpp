#include "DiscQDB.h"

#include "DiscQDBCell.h"
#include "Log.h"
#include "ZMModel/MutexGuard.h"

#include <algorithm>
#include <iterator>
#include <utility>

/** Where the rows of a source are kept, and what kind of query fills them. */
struct DiscQDB::SourceRow {
    LIST_FROM_EN source;
    PlayList DiscQDB::*list;
    int nQueBaseType;
    int nSearchType; ///< type by which GetVecList_Data_Index finds rows; 0: it does not search this source
};

const DiscQDB::SourceRow* DiscQDB::FindSource(int nFromType) {
    static constexpr SourceRow ROWS[] = {
        {LIST_FROM_AUDIO_FOLDERS, &DiscQDB::m_vecAudioFolderList, QUE_BASE_FOLDER, 0},
        {LIST_FROM_AUDIO_IN_FOLDER, &DiscQDB::m_vecAudioFolderList, QUE_BASE_FOLDER, 0},
        {LIST_FROM_VIDEO_FOLDERS, &DiscQDB::m_vecVideoFolderList, QUE_BASE_FOLDER, 0},
        {LIST_FROM_VIDEO_IN_FOLDER, &DiscQDB::m_vecVideoFolderList, QUE_BASE_FOLDER, 0},
        {LIST_FROM_PHOTO_FOLDERS, &DiscQDB::m_vecPhotoFolderList, QUE_BASE_FOLDER, 0},
        {LIST_FROM_PHOTO_IN_FOLDER, &DiscQDB::m_vecPhotoFolderList, QUE_BASE_FOLDER, 0},
        {LIST_FROM_ALL_AUDIO, &DiscQDB::m_vecAudioList, QUE_BASE_MEDIA, FTYPE_AUDIO},
        {LIST_FROM_ALL_PHOTO, &DiscQDB::m_vecPhotoList, QUE_BASE_MEDIA, FTYPE_PICTURE},
        {LIST_FROM_ALL_VIDEO, &DiscQDB::m_vecVideoList, QUE_BASE_MEDIA, FTYPE_VIDEO},
        {LIST_FROM_CUR_AUDIO, &DiscQDB::m_vecAudioList, QUE_BASE_MEDIA, FTYPE_AUDIO},
        {LIST_FROM_SEARCH, &DiscQDB::m_vecSearchList, QUE_BASE_MEDIA, 0},
    };
    static_assert(std::size(ROWS) == LIST_FROM_SEARCH + 1, "each source has a row");
    for (const SourceRow& row : ROWS) {
        if (row.source == nFromType) {
            return &row;
        }
    }
    return nullptr;
}

void DiscQDB::QueryPlayListCmd(std::string sql, int nFromType, std::string subSql) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscQDB::QueryPlayListCmd]--nFromType:%d\n", nFromType);
    const SourceRow* pSource = FindSource(nFromType);
    if (!pSource) {
        return;
    }
    {
        // One step under the lock, as a task may be running: it reads the statements and fills the list.
        MutexGuard guard(m_mutex);
        m_nQueBaseType = pSource->nQueBaseType;
        m_strListSql = std::move(sql);
        if (m_nQueBaseType == QUE_BASE_FOLDER) {
            m_strSubSql = std::move(subSql);
        }
        m_pCurVec = &(this->*pSource->list);
        m_pCurVec->swap(m_vecOldRows);
        m_pCurVec->clear();
        m_bNotBegun = true;
    }
    DoIt();
}

bool DiscQDB::GetVecListSize(int nFromType, int& nCount) {
    if (const SourceRow* pSource = FindSource(nFromType)) {
        MutexGuard guard(m_mutex);
        nCount = static_cast<int>((this->*pSource->list).size());
    }
    return true;
}

template <class Reader>
bool DiscQDB::ReadLine(int nFromType, int nLine, Reader read) {
    const SourceRow* pSource = FindSource(nFromType);
    if (!pSource) {
        return true;
    }
    MutexGuard guard(m_mutex);
    const PlayList& list = this->*pSource->list;
    if (nLine >= static_cast<int>(list.size())) {
        return false;
    }
    if (nLine >= 0) { // a negative line is not refused, but there is nothing to give
        read(list[static_cast<size_t>(nLine)]);
    }
    return true;
}

bool DiscQDB::GetVecList_Data_Fid(int nFromType, int nLine, int& nFid) {
    return ReadLine(nFromType, nLine, [&](const T_PLAY_LIST_ITEM& item) { nFid = item.nFid; });
}

bool DiscQDB::GetVecList_Data_ListIndex(int nFromType, int nLine, int& nFolder) {
    return ReadLine(nFromType, nLine, [&](const T_PLAY_LIST_ITEM& item) { nFolder = item.nFolder; });
}

bool DiscQDB::GetVecList_Data_Type(int nFromType, int nLine, int& nType) {
    return ReadLine(nFromType, nLine, [&](const T_PLAY_LIST_ITEM& item) { nType = item.nType; });
}

bool DiscQDB::GetVecList_Data(int nFromType, int nLine, char* szName) {
    return ReadLine(nFromType, nLine,
                    [&](const T_PLAY_LIST_ITEM& item) { CopyText(szName, DISC_NAME_SIZE, item.strName); });
}

void DiscQDB::GetVecList_Names(int nFromType, int nLine, std::span<DiscName> names) {
    const SourceRow* pSource = FindSource(nFromType);
    if (!pSource || nLine < 0) {
        return;
    }
    MutexGuard guard(m_mutex);
    const PlayList& list = this->*pSource->list;
    for (size_t i = static_cast<size_t>(nLine); i < list.size() && !names.empty(); ++i) {
        CopyText(names.front().data(), DISC_NAME_SIZE, list[i].strName);
        names = names.subspan(1);
    }
}

bool DiscQDB::GetVecList_Data_Index(int nFromType, int nFid, int nFolder, int& nIndex) {
    const SourceRow* pSource = FindSource(nFromType);
    if (!pSource || pSource->nSearchType == 0) {
        return true;
    }
    MutexGuard guard(m_mutex);
    const PlayList& list = this->*pSource->list;
    auto found = std::find_if(list.begin(), list.end(), [&](const T_PLAY_LIST_ITEM& item) {
        return item.nFid == nFid && item.nFolder == nFolder && item.nType == pSource->nSearchType;
    });
    if (found == list.end()) {
        return false;
    }
    nIndex = static_cast<int>(found - list.begin()) + 1;
    return true;
}
