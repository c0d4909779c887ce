#pragma once

#include <sqlite3.h>

#include <chrono>
#include <string>

namespace zm {

/**
 * Keeps a connection to reading the catalogue's two tables and to the two inserts that its clients are known
 * to make, so that no text that found its way into a statement can destroy anything, and to a bounded cost:
 * sizes of texts, steps and time of a statement, and no functions but those that the clients use.
 */
class QdbGuard {
public:
    static constexpr std::chrono::seconds LongestStatement{1};

    /** Watches over `db` as long as both live. */
    void attach(sqlite3* db);
    /** Before each statement is compiled: what it may do, and its deadline. */
    void begin(const std::string& statement);
    /** Why the statement was stopped: a sentence; null if the guard had nothing against it. */
    const char* objection() const { return m_objection; }
    /** Refuses a compiled statement that writes without being one of the inserts. */
    bool accepts(sqlite3_stmt* statement);

private:
    static int authorize(void* self, int action, const char* first, const char* second, const char* database,
                         const char* trigger);
    static int progress(void* self);

    const char* m_insertTable = nullptr; ///< the table that the present statement may add rows to
    const char* m_objection = nullptr;
    int m_checksLeft = 0; ///< before the statement has taken too many steps
    std::chrono::steady_clock::time_point m_deadline;
};

} // namespace zm
