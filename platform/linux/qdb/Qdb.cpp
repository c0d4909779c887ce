#include "qdb/qdb.h"

#include "base/Mutex.h"
#include "base/Paths.h"
#include "platform/linux/qdb/QdbFormat.h"
#include "platform/linux/qdb/QdbHandle.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <list>

namespace {

constexpr const char* DiscDatabase = "/dev/qdb/discdb";
constexpr int BusyTimeoutMs = 2000;

struct Connections {
    zm::Mutex mutex;
    std::list<std::unique_ptr<qdb_hdl>> handles ZM_GUARDED_BY(mutex);
};

/** Never destroyed: clients need not disconnect before the process ends. */
Connections& connections() {
    static auto& instance = *new Connections;
    return instance;
}

} // namespace

extern "C" qdb_hdl_t* qdb_connect(const char* dbname, int flags) {
    if (!dbname || std::strcmp(dbname, DiscDatabase) != 0) {
        errno = dbname ? ENOENT : EINVAL;
        return nullptr;
    }
    auto handle = std::make_unique<qdb_hdl>(zm::catalogueFile(zm::runtimeDir()),
                                            flags & QDB_CONN_NONBLOCKING ? 0 : BusyTimeoutMs);
    if (int number = handle->open()) {
        errno = number;
        return nullptr;
    }
    auto& open = connections();
    zm::MutexLock guard(open.mutex);
    return open.handles.emplace_back(std::move(handle)).get();
}

extern "C" int qdb_disconnect(qdb_hdl_t* db) {
    auto& open = connections();
    zm::MutexLock guard(open.mutex);
    auto found = std::find_if(open.handles.begin(), open.handles.end(),
                              [&](const auto& other) { return other.get() == db; });
    if (found == open.handles.end()) {
        errno = EINVAL;
        return -1;
    }
    open.handles.erase(found);
    return 0;
}

extern "C" int qdb_statement(qdb_hdl_t* db, const char* format, ...) {
    if (!db || !format) {
        errno = db ? EINVAL : ENOTCONN;
        return -1;
    }
    va_list args;
    va_start(args, format);
    std::string text = zm::qdbFormat(format, args);
    va_end(args);
    if (int number = db->run(text)) {
        errno = number;
        return -1;
    }
    return 0;
}

extern "C" qdb_result_t* qdb_getresult(qdb_hdl_t* db) {
    if (!db) {
        errno = ENOTCONN;
        return nullptr;
    }
    auto result = db->takeResult();
    if (!result) {
        errno = ENODATA;
        db->error = db->error.empty() ? std::strerror(ENODATA) : db->error;
        return nullptr;
    }
    return zm::qdbHandOut(std::move(result));
}

extern "C" const char* qdb_geterrmsg(qdb_hdl_t* db) {
    return db ? db->error.c_str() : std::strerror(ENOTCONN);
}
