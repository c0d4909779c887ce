#include "DiscQDB.h"

#include "DiscQDBCell.h"
#include "Log.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

/** Bytes of a row's name, with the final NUL that it had in the database. */
static constexpr size_t LIST_NAME_SIZE = 250;

void DiscQDB::DealWithTask() {
    BeginTask();
    QueryPlayList();
    QueryFolderSubList();
    DropOldRows();
    SetFinishFlag(true);
}

void DiscQDB::SetFinishFlag(bool bFinish) {
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscQDB::SetFinishFlag]--bFinish=%d\n", bFinish);
    MutexGuard guard(m_mutex);
    m_bFinish = bFinish;
}

void DiscQDB::BeginTask() {
    SetFinishFlag(false);
    MutexGuard guard(m_mutex);
    m_bNotBegun = false;
}

bool DiscQDB::IsQueryFinished() {
    MutexGuard guard(m_mutex);
    return m_bFinish && !m_bNotBegun;
}

bool DiscQDB::GetFinishFlag() {
    MutexGuard guard(m_mutex);
    return m_bFinish;
}

void DiscQDB::SetBreakQue(bool bBreak) {
    MutexGuard guard(m_mutex);
    m_bBreakQue = bBreak;
}

bool DiscQDB::GetBreakQue() {
    MutexGuard guard(m_mutex);
    return m_bBreakQue;
}

void DiscQDB::SetQueBaseType(int nType) {
    MutexGuard guard(m_mutex);
    m_nQueBaseType = nType;
}

int DiscQDB::GetQueBaseType() {
    MutexGuard guard(m_mutex);
    return m_nQueBaseType;
}

qdb_result_t* DiscQDB::FetchResult(const char* func, const std::string& sql) {
    ExecuteSql(sql); // a failure is logged; the result of an earlier statement may still be there
    qdb_result_t* result = qdb_getresult(m_hDb);
    if (!result) {
        LOGBASE(LOG_LEV_TRACE, func, "Error getting result: %s\n", std::strerror(errno));
    }
    return result;
}

void DiscQDB::QueryPlayList() {
    qdb_result_t* result = nullptr;
    {
        MutexGuard statement(m_mutexStatement);
        std::string strSql;
        bool bConnected = false;
        {
            MutexGuard guard(m_mutex);
            strSql = m_strListSql;
            bConnected = m_hDb != nullptr;
        }
        if (strSql.empty()) {
            return;
        }
        if (!bConnected) {
            LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "Error connecting to database: %s\n", std::strerror(errno));
            return;
        }
        result = FetchResult(__FUNCTION__, strSql);
    }
    if (!result) {
        return;
    }
    LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscQDB::QueryPlayList]--nRows=%d\n", qdb_rows(result));
    switch (GetQueBaseType()) {
    case QUE_BASE_MEDIA:
        ReadMediaRows(result);
        break;
    case QUE_BASE_FOLDER:
        ReadFolderRows(result);
        break;
    default:
        break;
    }
}

void DiscQDB::QueryFolderSubList() {
    qdb_result_t* result = nullptr;
    {
        MutexGuard statement(m_mutexStatement);
        std::string strSql;
        bool bConnected = false;
        {
            MutexGuard guard(m_mutex);
            strSql = m_nQueBaseType == QUE_BASE_FOLDER ? m_strSubSql : "";
            bConnected = m_hDb != nullptr;
        }
        if (strSql.empty()) {
            return;
        }
        if (!bConnected) {
            std::fprintf(stderr, "Error connecting to database: %s\n", std::strerror(errno));
            return;
        }
        result = FetchResult(__FUNCTION__, strSql);
    }
    if (result) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "[DiscQDB::GetResultFolderFile]--nRows=%d\n", qdb_rows(result));
        ReadMediaRows(result);
    }
}

void DiscQDB::ReadMediaRows(qdb_result_t* result) {
    // One item serves all rows: a NULL cell repeats what the row before had.
    T_PLAY_LIST_ITEM item;
    const int nRows = ExpectRows(result);
    for (int nRow = 0; nRow < nRows; ++nRow) {
        item.nFid = -1;
        ReadCell(result, nRow, 0, item.nFid);
        ReadCell(result, nRow, 1, item.nFolder);
        ReadCell(result, nRow, 2, item.nType);
        ReadName(result, nRow, 3, item.strName);
        AppendRow(item);
    }
}

void DiscQDB::ReadFolderRows(qdb_result_t* result) {
    T_PLAY_LIST_ITEM item;
    item.nType = FTYPE_FOLDER;
    const int nRows = ExpectRows(result);
    for (int nRow = 0; nRow < nRows; ++nRow) {
        item.nFid = -1;
        ReadCell(result, nRow, 0, item.nFid);
        ReadCell(result, nRow, 1, item.nFolder);
        ReadName(result, nRow, 2, item.strName);
        AppendRow(item);
    }
}

void DiscQDB::ReadName(qdb_result_t* result, int nRow, int nColumn, std::string& strName) {
    if (const void* cell = qdb_cell(result, nRow, nColumn)) {
        strName = CutText(static_cast<const char*>(cell), LIST_NAME_SIZE);
    }
}

int DiscQDB::ExpectRows(qdb_result_t* result) {
    const int nRows = qdb_rows(result);
    MutexGuard guard(m_mutex);
    if (m_pCurVec) {
        m_pCurVec->reserve(m_pCurVec->size() + static_cast<size_t>(nRows));
    }
    return nRows;
}

void DiscQDB::AppendRow(const T_PLAY_LIST_ITEM& item) {
    MutexGuard guard(m_mutex);
    // The list may have been changed under the running task, or taken away by a new disc.
    if (!m_pCurVec) {
        return;
    }
    if (m_vecOldRows.empty()) {
        m_pCurVec->push_back(item);
    } else {
        m_pCurVec->push_back(std::move(m_vecOldRows.back()));
        m_vecOldRows.pop_back();
        m_pCurVec->back() = item;
    }
}

void DiscQDB::DropOldRows() {
    MutexGuard guard(m_mutex);
    m_vecOldRows.clear();
}
