#include "tests/model/QdbGate.h"

#include <qdb/qdb.h>

#include <chrono>

extern "C" int __real_qdb_statement(qdb_hdl_t* db, const char* format, ...);
/** Stands before the platform's function. The application hands all its statements over as data, with "%s". */
extern "C" int __wrap_qdb_statement(qdb_hdl_t* db, const char* format, const char* text) {
    zm::test::QdbGate::instance().pass(text);
    return __real_qdb_statement(db, format, text);
}

namespace zm::test {

QdbGate& QdbGate::instance() {
    static QdbGate gate;
    return gate;
}

void QdbGate::close(const std::string& statement) {
    std::lock_guard lock(m_mutex);
    m_closedFor = statement;
    m_reached = false;
}

void QdbGate::open() {
    std::lock_guard lock(m_mutex);
    m_closedFor.clear();
    m_changed.notify_all();
}

bool QdbGate::waitUntilReached() {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, std::chrono::seconds(10), [this] { return m_reached; });
}

void QdbGate::pass(const std::string& statement) {
    std::unique_lock lock(m_mutex);
    if (m_closedFor.empty() || statement != m_closedFor) {
        return;
    }
    m_reached = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return m_closedFor.empty(); });
}

} // namespace zm::test
