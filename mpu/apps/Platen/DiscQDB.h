#pragma once

#include "ZMModel/Mutex.h"
#include "zmcar/ThreadControl.h"

#include <qdb/qdb.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

class CDiscData;
struct ListSource;

/** Types of the catalogue's files; rows that stand for a folder carry the last one, which the
 * database never does. */
enum FTYPE_EN { FTYPE_AUDIO = 1, FTYPE_VIDEO = 2, FTYPE_PICTURE = 3, FTYPE_FOLDER = 4 };

/** What a list shows; a row of FindListSource says all about it. Sources 0 and 1, 2 and 3, 4 and 5,
 * 6 and 9 share one list each. */
enum LIST_FROM_EN {
    LIST_FROM_AUDIO_FOLDERS = 0,
    LIST_FROM_AUDIO_IN_FOLDER = 1,
    LIST_FROM_VIDEO_FOLDERS = 2,
    LIST_FROM_VIDEO_IN_FOLDER = 3,
    LIST_FROM_PHOTO_FOLDERS = 4,
    LIST_FROM_PHOTO_IN_FOLDER = 5,
    LIST_FROM_ALL_AUDIO = 6,
    LIST_FROM_ALL_PHOTO = 7,
    LIST_FROM_ALL_VIDEO = 8,
    LIST_FROM_CUR_AUDIO = 9,
    LIST_FROM_SEARCH = 10,
};

/** Whether the rows of a query are files (fid, folderid, ftype, filename) or folders (folderid, parentid,
 * foldername). */
enum QUE_BASE_EN { QUE_BASE_MEDIA = 1, QUE_BASE_FOLDER = 2 };

/** Size in bytes of the name buffers that callers provide, with the final NUL. */
constexpr int DISC_NAME_SIZE = 260;
using DiscName = std::array<char, DISC_NAME_SIZE>;

/** One row of a list. */
struct T_PLAY_LIST_ITEM {
    int32_t nFid = 0;    ///< file id, or the folder's own id; -1 when it was NULL
    int32_t nFolder = 0; ///< folder that holds the file, or the folder's parent
    int32_t nType = 0;   ///< FTYPE_EN
    std::string strName;
};

/**
 * The disc's file and folder catalogue: one connection, list queries on the worker thread, the rows of each
 * kind of list, and single values read on the caller's thread. One thread (the view's) calls; the worker runs
 * beside it. Readers take the lock; rows become visible one by one while a query runs.
 */
class DiscQDB : public Oro::ZMCAR::ThreadControl {
public:
    /** `data` is kept for queries that need it; those below do not. */
    explicit DiscQDB(CDiscData& data);
    ~DiscQDB() override;

    /** Forgets the rows of the last disc and opens the database if it is not open. */
    void InitDataBase();
    /** True if the database is open (already or now). */
    bool OpenDb();
    bool IsOpen() const { return m_bDbOpen; }
    void CloseDb();
    /** Empties everything but the search list and the second statement. */
    void DataInit();
    void Lock() LOCK_UNCHECKED;
    void UnLock() LOCK_UNCHECKED;

    /** Runs one statement; takes no lock. */
    bool ExecuteSql(std::string sql);
    /** Number of rows of the latest statement's result, which it frees; -1 without a result.
     * Takes no lock. */
    int GetResult();
    /** First column of the first row. False without a row or on an error; a NULL cell leaves the value and
     * gives true. */
    bool qDb_GetObjData_Int(const char* sql, int& value);
    /** The same as text into a buffer of DISC_NAME_SIZE bytes, cut at a whole character. */
    bool qDb_GetObjData_Char(const char* sql, char* text);
    /** First two columns of the first row. */
    bool qDb_GetObjData_IDs(const char* sql, int& a, int& b);
    /**
     * Makes sure that a row exists and tells whether its name is known. Kinds 1, 2, 3: file nId of nFolderId
     * with type 1, 3, 2; kinds 4, 5, 6: folder nId; others: false.
     */
    bool CheckMediaName(int nKind, int nId, int nFolderId);

    /**
     * Clears the list of source `nFromType` and has the worker fill it with the rows of `sql`; for folder
     * sources the rows of `subSql` (files) follow, if it is not empty. Returns at once; other sources do
     * nothing.
     */
    void QueryPlayListCmd(std::string sql, int nFromType, std::string subSql);
    void SetFinishFlag(bool bFinish);
    /** Whether the latest task of the worker has ended; still true between a
     * command and the worker's start. */
    bool GetFinishFlag();
    /** Whether the latest command's task has ended: not before the worker has begun it. */
    bool IsQueryFinished();
    void SetBreakQue(bool bBreak);
    bool GetBreakQue();
    void SetQueBaseType(int nType);
    int GetQueBaseType();

    /*
     * Readers of one list. Outputs stay as they were for sources that do not exist. Row numbers count from 0;
     * a row that is not below the number of rows gives false, a negative one true with the output as it was.
     */
    bool GetVecListSize(int nFromType, int& nCount);
    bool GetVecList_Data_Fid(int nFromType, int nLine, int& nFid);
    bool GetVecList_Data_ListIndex(int nFromType, int nLine, int& nFolder);
    bool GetVecList_Data_Type(int nFromType, int nLine, int& nType);
    /** The row's name into a buffer of DISC_NAME_SIZE bytes, cut at a whole character. */
    bool GetVecList_Data(int nFromType, int nLine, char* szName);
    /** The names of some rows from nLine on, as GetVecList_Data gives each, without locking for each. */
    void GetVecList_Names(int nFromType, int nLine, std::span<DiscName> names);
    /**
     * Position, counted from 1, of the first row with that file and folder id and the list's own type; false
     * if there is none. Only sources 6 to 9 are searched; others give true and leave nIndex.
     */
    bool GetVecList_Data_Index(int nFromType, int nFid, int nFolder, int& nIndex);

protected:
    void DealWithTask() override;

private:
    using PlayList = std::vector<T_PLAY_LIST_ITEM>;

    PlayList& RowsOf(const ListSource& source) NEEDS_LOCK(m_mutex);
    template <class Reader>
    bool ReadFirstRow(const char* func, const char* sql, Reader read);
    template <class Reader>
    bool ReadLine(int nFromType, int nLine, Reader read);

    void BeginTask();
    void QueryPlayList();
    void QueryFolderSubList();
    qdb_result_t* FetchResult(const char* func, const std::string& sql);
    /** The number of rows; reserves room for them, so that appending never moves the list. */
    int ExpectRows(qdb_result_t* result);
    void ReadMediaRows(qdb_result_t* result);
    void ReadFolderRows(qdb_result_t* result);
    static void ReadName(qdb_result_t* result, int nRow, int nColumn, std::string& strName);
    void AppendRow(const T_PLAY_LIST_ITEM& item);
    void DropOldRows();

    PlayList m_vecAudioList GUARDED_BY(m_mutex);
    PlayList m_vecVideoList GUARDED_BY(m_mutex);
    PlayList m_vecPhotoList GUARDED_BY(m_mutex);
    PlayList m_vecAudioFolderList GUARDED_BY(m_mutex);
    PlayList m_vecVideoFolderList GUARDED_BY(m_mutex);
    PlayList m_vecPhotoFolderList GUARDED_BY(m_mutex);
    PlayList m_vecSearchList GUARDED_BY(m_mutex);
    /** The rows that a query has cleared: their memory is used for the new ones.
     * Empty when its task has ended. */
    PlayList m_vecOldRows GUARDED_BY(m_mutex);
    PlayList* m_pCurVec GUARDED_BY(m_mutex) = nullptr;
    Mutex m_mutex;
    /** Held while the worker's statement runs and taken before m_mutex, which is never held for long. */
    Mutex m_mutexStatement;
    CDiscData* m_pDiscData;
    qdb_hdl_t* m_hDb = nullptr;
    /** For values read on the caller's thread, so that it never waits for the worker's statement. */
    qdb_hdl_t* m_hValueDb GUARDED_BY(m_mutex) = nullptr;
    bool m_bDbOpen = false;
    bool m_bBreakQue GUARDED_BY(m_mutex) = false;
    bool m_bFinish GUARDED_BY(m_mutex) = false;
    bool m_bNotBegun GUARDED_BY(m_mutex) = false; ///< the worker has not begun the latest command
    int32_t m_nQueBaseType GUARDED_BY(m_mutex) = QUE_BASE_MEDIA;
    std::string m_strListSql GUARDED_BY(m_mutex);
    std::string m_strSubSql GUARDED_BY(m_mutex);
};
