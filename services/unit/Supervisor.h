#pragma once

#include "base/EventLoop.h"

#include <string>

namespace zm::unit {

/**
 * Tells the service manager that started this program how it fares; without one nothing happens. That the loop still
 * turns is told twice in each time that the manager allows, so that it can start anew what hangs.
 */
class Supervisor {
public:
    /** Reads NOTIFY_SOCKET and WATCHDOG_USEC. */
    explicit Supervisor(EventLoop& loop);

    /** The unit can be used. */
    void ready();
    /** It ends in order. */
    void stopping();

private:
    void tell(const std::string& text) const;

    std::string m_socket;
    SourceHandle m_alive;
};

} // namespace zm::unit
