#pragma once

#include <condition_variable>
#include <mutex>
#include <string>

namespace zm::test {

/** Keeps one statement of this process from running: the first behind `close` with that text waits for `open`. */
class QdbGate {
public:
    static QdbGate& instance();

    void close(const std::string& statement);
    void open();
    /** Waits until the statement has come to the gate; false if it has not after ten seconds. */
    bool waitUntilReached();

    /** What a statement does on its way to the database. */
    void pass(const std::string& statement);

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::string m_closedFor;
    bool m_reached = false;
};

} // namespace zm::test
