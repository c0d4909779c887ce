#pragma once

/*
 * Access to a database. Threads may share a handle if they take turns; a result is a full copy that outlives
 * both the next statement and the handle. Results live until qdb_freeresult; of those that nobody frees, the
 * latest 16 that a thread fetched, or fewer when they take more than 16 MB, but always two.
 */

#ifdef __cplusplus
extern "C" {
#endif

typedef struct qdb_hdl qdb_hdl_t;
typedef struct qdb_result qdb_result_t;

enum { QDB_CONN_DFLT_SHARE = 1, QDB_CONN_NONBLOCKING = 2, QDB_CONN_STMT_ASYNC = 4 };

/* NULL and errno (ENOENT: no such database; none is created) on failure. */
qdb_hdl_t* qdb_connect(const char* dbname, int flags);
int qdb_disconnect(qdb_hdl_t* db);
/*
 * Runs one statement; printf conversions plus %q (quotes doubled), %Q (quoted, or NULL) and %z. 0, or -1 and
 * errno. Unknown conversions stand for themselves. On success the connection holds the statement's result,
 * replacing one that nobody fetched.
 */
int qdb_statement(qdb_hdl_t* db, const char* format, ...);
/* Hands over the connection's result; NULL and errno ENODATA when there is none. */
qdb_result_t* qdb_getresult(qdb_hdl_t* db);
int qdb_freeresult(qdb_result_t* result);
int qdb_rows(qdb_result_t* result);
int qdb_columns(qdb_result_t* result);
/*
 * The cell's value in memory: 64-bit signed integer (its address also serves as that of an int), double, or
 * NUL-terminated text. NULL for SQL NULL and for a row or column out of range.
 */
void* qdb_cell(qdb_result_t* result, int row, int col);
/* Text of the latest error; empty if there was none; that of ENOTCONN for a null handle. Never NULL. */
const char* qdb_geterrmsg(qdb_hdl_t* db);

#ifdef __cplusplus
}
#endif
