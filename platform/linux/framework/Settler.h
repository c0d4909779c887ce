#pragma once

#include "base/Mutex.h"
#include "platform/linux/framework/Fence.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace zm {

/** A thread whose work has to come to rest before the application counts as settled. */
class ActivitySource {
public:
    virtual ~ActivitySource() = default;
    /** Waits until everything that was there at the call is done; false if it was not before `deadline`. */
    virtual bool drain(TimePoint deadline) = 0;
    /** A number that grows whenever the thread does something. Any thread. */
    virtual uint64_t activity() const = 0;
};

/** Finds out when all threads of the application have come to rest. Any thread. */
class Settler {
public:
    /** Takes part from now on, for as long as it lives. */
    void add(const std::shared_ptr<ActivitySource>& source);

    enum class Outcome {
        Quiet,   ///< nothing ran since the call
        Calmed,  ///< something ran, but a full round without activity followed
        Restless ///< still running at the deadline, or told to give up
    };
    Outcome settle(TimePoint deadline);

    /** Ends a `settle` that waits; later ones give up at once. */
    void giveUp() { m_givenUp = true; }
    void resume() { m_givenUp = false; }

private:
    using Sources = std::vector<std::shared_ptr<ActivitySource>>;
    Sources sources();
    bool drain(ActivitySource& source, TimePoint deadline) const;

    Mutex m_mutex;
    std::vector<std::weak_ptr<ActivitySource>> m_sources ZM_GUARDED_BY(m_mutex);
    std::atomic<bool> m_givenUp = false;
};

} // namespace zm
