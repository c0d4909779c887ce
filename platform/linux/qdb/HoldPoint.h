#pragma once

#include "base/Mutex.h"

#include <cstdint>
#include <optional>

namespace zm {

/** The state behind QdbHold.h. Any thread. */
class HoldPoint {
public:
    /** A hold that was taken by a statement: from which row on, and what `wait` needs. */
    struct Taken {
        int row;
        uint64_t ticket;
    };

    static HoldPoint& instance();

    void arm(int rows);
    void release();
    bool anyWaiting();
    /** The armed hold, if there is one and the calling thread is a worker; it is then used up. */
    std::optional<Taken> take();
    /** Blocks a worker until the release that follows its `take`; others go on. */
    void wait(uint64_t ticket);

private:
    Mutex m_mutex;
    Condition m_released;
    std::optional<int> m_armedRow ZM_GUARDED_BY(m_mutex);
    uint64_t m_releases ZM_GUARDED_BY(m_mutex) = 0;
    int m_waiting ZM_GUARDED_BY(m_mutex) = 0;
};

} // namespace zm
