#include "DiscQDB.h"

#include "DiscQDBCell.h"
#include "ListSources.h"
#include "Log.h"

#include <algorithm>
#include <iterator>
#include <utility>

DiscQDB::PlayList& DiscQDB::RowsOf(const ListSource& source) {
    static constexpr PlayList DiscQDB::*LISTS[] = {
        &DiscQDB::m_vecAudioFolderList, &DiscQDB::m_vecVideoFolderList, &DiscQDB::m_vecPhotoFolderList,
        &DiscQDB::m_vecAudioList,       &DiscQDB::m_vecVideoList,       &DiscQDB::m_vecPhotoList,
        &DiscQDB::m_vecSearchList,
    };
    static_assert(std::size(LISTS) == static_cast<size_t>(KeptIn::Search) + 1, "in the order of KeptIn");
    return this->*LISTS[static_cast<size_t>(source.keptIn)];
}

void DiscQDB::QueryPlayListCmd(std::string sql, int nFromType, std::string subSql) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscQDB::QueryPlayListCmd]--nFromType:%d\n", nFromType);
    const ListSource* pSource = FindListSource(nFromType);
    if (!pSource) {
        return;
    }
    {
        // One step under the lock, as a task may be running: it reads the statements and fills the list.
        MutexGuard guard(m_mutex);
        m_nQueBaseType = pSource->queBase;
        m_strListSql = std::move(sql);
        if (m_nQueBaseType == QUE_BASE_FOLDER) {
            m_strSubSql = std::move(subSql);
        }
        m_pCurVec = &RowsOf(*pSource);
        m_pCurVec->swap(m_vecOldRows);
        m_pCurVec->clear();
        m_bNotBegun = true;
    }
    DoIt();
}

bool DiscQDB::GetVecListSize(int nFromType, int& nCount) {
    if (const ListSource* pSource = FindListSource(nFromType)) {
        MutexGuard guard(m_mutex);
        nCount = static_cast<int>(RowsOf(*pSource).size());
    }
    return true;
}

template <class Reader>
bool DiscQDB::ReadLine(int nFromType, int nLine, Reader read) {
    const ListSource* pSource = FindListSource(nFromType);
    if (!pSource) {
        return true;
    }
    MutexGuard guard(m_mutex);
    const PlayList& list = RowsOf(*pSource);
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
    const ListSource* pSource = FindListSource(nFromType);
    if (!pSource || nLine < 0) {
        return;
    }
    MutexGuard guard(m_mutex);
    const PlayList& list = RowsOf(*pSource);
    for (size_t i = static_cast<size_t>(nLine); i < list.size() && !names.empty(); ++i) {
        CopyText(names.front().data(), DISC_NAME_SIZE, list[i].strName);
        names = names.subspan(1);
    }
}

bool DiscQDB::GetVecList_Data_Index(int nFromType, int nFid, int nFolder, int& nIndex) {
    const ListSource* pSource = FindListSource(nFromType);
    if (!pSource || pSource->mark != PlayingMark::Position) {
        return true;
    }
    MutexGuard guard(m_mutex);
    const PlayList& list = RowsOf(*pSource);
    auto found = std::find_if(list.begin(), list.end(), [&](const T_PLAY_LIST_ITEM& item) {
        return item.nFid == nFid && item.nFolder == nFolder && item.nType == pSource->rowType;
    });
    if (found == list.end()) {
        return false;
    }
    nIndex = static_cast<int>(found - list.begin()) + 1;
    return true;
}
