#pragma once

#include <memory>

namespace Oro::ZMCAR {

/** Periodic timers, told apart by number. Expiry reaches the main view as
 * application message {3, 2, id, 0}. */
class TimerBase {
public:
    TimerBase();
    virtual ~TimerBase();

    /** Starts timer `id` with a period of `milliseconds`; one that runs starts anew. Any thread. */
    bool SetTimer(unsigned int id, unsigned int milliseconds);
    /** Stops timer `id`; an expiry that was not delivered yet is dropped. False if it does not run. Any
     * thread. */
    bool KillTimer(unsigned int id);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

} // namespace Oro::ZMCAR
