#pragma once

#include "base/Mutex.h"
#include "base/Result.h"
#include "base/UniqueFd.h"
#include "platform/linux/framework/ChangeOrder.h"
#include "platform/linux/framework/PpsSlot.h"
#include "platform/linux/framework/Settler.h"
#include "sys/pps.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace zm {

/**
 * The thread that reads a set of PPS objects and reports each changed attribute, in the order in which they
 * were written, whatever the object; the present states first, in the order of adding.
 */
class PpsMonitor : public ActivitySource {
public:
    using OnChange = std::function<void(int key, pps_attrib_t* attribute)>;

    explicit PpsMonitor(OnChange onChange);
    ~PpsMonitor() override;

    Status start();
    /** Waits for the thread; false when called on it. */
    bool stop();

    /** False if the key is taken. */
    bool add(int key, std::shared_ptr<PpsSlot> slot);
    /** False if there is none of that key. */
    bool remove(int key);

    bool drain(TimePoint deadline) override;
    uint64_t activity() const override;

private:
    struct Entry {
        int id; ///< never used again
        int key;
        std::shared_ptr<PpsSlot> slot;
        bool failed = false; ///< its last read failed, which has been told
        bool ready = true;   ///< to be read: new, or it says that it has something
    };
    /** What one turn of the thread has to do. */
    struct Turn {
        std::vector<Entry> entries;
        std::vector<std::shared_ptr<Fence>> fences;
        bool running;
    };
    void run();
    Turn takeTurn();
    void read(const Entry& entry);
    void deliver(const std::vector<Entry>& entries);
    void report(int id, std::string text);
    Entry* find(int id) ZM_REQUIRES(m_mutex);
    bool failed(int id);
    std::vector<int> look(const std::vector<Entry>& entries, bool wait);
    void wake();

    OnChange m_onChange;
    UniqueFd m_wake;
    mutable Mutex m_mutex;
    std::vector<Entry> m_entries ZM_GUARDED_BY(m_mutex);
    int m_nextId ZM_GUARDED_BY(m_mutex) = 0;
    std::vector<std::shared_ptr<Fence>> m_fences ZM_GUARDED_BY(m_mutex);
    bool m_running ZM_GUARDED_BY(m_mutex) = false;
    uint64_t m_delivered ZM_GUARDED_BY(m_mutex) = 0;
    ChangeOrder m_order; ///< the thread's
    std::thread m_thread;
};

} // namespace zm
