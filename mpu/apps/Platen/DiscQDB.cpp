#include "DiscQDB.h"

#include "DiscQDBCell.h"
#include "Log.h"

#include <cerrno>
#include <cstring>
#include <utility>

static constexpr const char* DATABASE = "/dev/qdb/discdb";
static constexpr int CONNECT_FLAGS = 1;

DiscQDB::DiscQDB(CDiscData& data) : m_pDiscData(&data) {
    DataInit();
}

DiscQDB::~DiscQDB() {
    // Usually closed long ago; a worker that still runs must not outlive the lists.
    Close();
}

void DiscQDB::InitDataBase() {
    DataInit();
    OpenDb();
}

bool DiscQDB::OpenDb() {
    if (m_bDbOpen) {
        return true;
    }
    qdb_hdl_t* hDb = qdb_connect(DATABASE, CONNECT_FLAGS);
    qdb_hdl_t* hValueDb = hDb ? qdb_connect(DATABASE, CONNECT_FLAGS) : nullptr;
    if (hDb && !hValueDb) {
        qdb_disconnect(hDb);
        hDb = nullptr;
    }
    {
        MutexGuard guard(m_mutex); // the worker reads both
        m_hDb = hDb;
        m_hValueDb = hValueDb;
        m_bDbOpen = hDb != nullptr;
    }
    if (hDb) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "connected qdb\n");
    } else {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "QDB Error: %s\n", qdb_geterrmsg(hDb));
    }
    return m_bDbOpen;
}

void DiscQDB::CloseDb() {
    if (m_bDbOpen) {
        MutexGuard statement(m_mutexStatement);
        MutexGuard guard(m_mutex);
        qdb_disconnect(m_hDb);
        qdb_disconnect(m_hValueDb);
        m_hDb = m_hValueDb = nullptr; // no statement may reach the closed connections
        m_bDbOpen = false;
    }
}

void DiscQDB::DataInit() {
    // In place of initialising the mutex again, which is undefined while it is in use: once this line is passed
    // nobody else holds it, and a worker that still appends rows is kept off the lists while they are emptied.
    MutexGuard guard(m_mutex);
    m_strListSql.clear();
    m_bFinish = false;
    for (PlayList* pList : {&m_vecAudioList, &m_vecVideoList, &m_vecPhotoList, &m_vecAudioFolderList,
                            &m_vecVideoFolderList, &m_vecPhotoFolderList}) {
        pList->clear();
    }
    m_pCurVec = nullptr;
}

void DiscQDB::Lock() {
    m_mutex.Lock();
}

void DiscQDB::UnLock() {
    m_mutex.UnLock();
}

bool DiscQDB::ExecuteSql(std::string sql) {
    if (!m_bDbOpen) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "QDB not open\n");
        return false;
    }
    if (qdb_statement(m_hDb, "%s", sql.c_str()) == -1) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "QDB Error: %s\n", qdb_geterrmsg(m_hDb));
        return false;
    }
    return true;
}

int DiscQDB::GetResult() {
    qdb_result_t* result = qdb_getresult(m_hDb);
    if (!result) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "Error getting result: %s\n", qdb_geterrmsg(m_hDb));
        return -1;
    }
    int nRows = qdb_rows(result);
    qdb_freeresult(result);
    return nRows;
}

template <class Reader>
bool DiscQDB::ReadFirstRow(const char* func, const char* sql, Reader read) {
    MutexGuard guard(m_mutex);
    if (!m_hValueDb) {
        LOGBASE(LOG_LEV_TRACE, func, "Error connecting to database: %s\n", std::strerror(errno));
        return false;
    }
    if (qdb_statement(m_hValueDb, "%s", sql) == -1) {
        LOGBASE(LOG_LEV_TRACE, func, "Error executing SELECT statement: %s\n", qdb_geterrmsg(m_hValueDb));
        return false;
    }
    qdb_result_t* result = qdb_getresult(m_hValueDb);
    if (!result || qdb_rows(result) <= 0) {
        return false;
    }
    read(result);
    return true;
}

bool DiscQDB::qDb_GetObjData_Int(const char* sql, int& value) {
    return ReadFirstRow(__FUNCTION__, sql, [&](qdb_result_t* result) { ReadCell(result, 0, 0, value); });
}

bool DiscQDB::qDb_GetObjData_Char(const char* sql, char* text) {
    return ReadFirstRow(__FUNCTION__, sql, [&](qdb_result_t* result) {
        if (const void* cell = qdb_cell(result, 0, 0)) {
            CopyText(text, DISC_NAME_SIZE, static_cast<const char*>(cell));
        }
    });
}

bool DiscQDB::qDb_GetObjData_IDs(const char* sql, int& a, int& b) {
    return ReadFirstRow(__FUNCTION__, sql, [&](qdb_result_t* result) {
        ReadCell(result, 0, 0, a);
        ReadCell(result, 0, 1, b);
    });
}

bool DiscQDB::CheckMediaName(int nKind, int nId, int nFolderId) {
    // Indexed by the kind less one; the crossing of picture and video is deliberate.
    static constexpr int FILE_TYPES[] = {FTYPE_AUDIO, FTYPE_PICTURE, FTYPE_VIDEO};
    char szInsert[DISC_NAME_SIZE];
    char szSelect[DISC_NAME_SIZE];
    if (nKind >= 1 && nKind <= 3) {
        int nType = FILE_TYPES[nKind - 1];
        std::snprintf(
            szInsert, sizeof szInsert,
            "INSERT INTO files (fid,folderid,ftype) SELECT %d,%d,%d WHERE NOT EXISTS (SELECT fid FROM files "
            "WHERE fid=%d AND folderid=%d AND ftype=%d);",
            nId, nFolderId, nType, nId, nFolderId, nType);
        std::snprintf(
            szSelect, sizeof szSelect,
            "SELECT FileName FROM files WHERE fid=%d AND folderid=%d AND ftype=%d AND FileName <> '';", nId,
            nFolderId, nType);
    } else if (nKind >= 4 && nKind <= 6) {
        std::snprintf(
            szInsert, sizeof szInsert,
            "INSERT INTO folders (folderid) SELECT %d WHERE NOT EXISTS (SELECT folderid FROM folders WHERE "
            "folderid=%d);",
            nId, nId);
        std::snprintf(szSelect, sizeof szSelect,
                      "SELECT foldername FROM folders WHERE folderid=%d AND foldername <> '';", nId);
    } else {
        return false;
    }
    MutexGuard statement(m_mutexStatement);
    MutexGuard guard(m_mutex);
    if (!ExecuteSql(szInsert)) {
        LOGBASE(LOG_LEV_TRACE, __FUNCTION__, "error occurs when conditionally inserts ID\n");
        return false;
    }
    ExecuteSql(szSelect); // after a failure the insert's result, which has no rows, is still there
    return GetResult() > 0;
}
