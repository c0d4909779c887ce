#pragma once

#include "base/Mutex.h"
#include "platform/linux/screen/ScreenClient.h"
#include "services/disc/engine/FrameSink.h"

#include <chrono>
#include <memory>
#include <string>

namespace zm::disc::engine {

/**
 * The decoder's window at the compositor. Connects when there is something to show, and again after the
 * compositor has gone; meanwhile pictures are dropped.
 */
class ScreenFrames : public FrameSink {
public:
    explicit ScreenFrames(std::string socket);
    void show(const DrawPicture& draw) override;
    void clear() override;

private:
    bool connect() ZM_REQUIRES(m_mutex);
    uint8_t* freeBuffer() ZM_REQUIRES(m_mutex);
    void commit() ZM_REQUIRES(m_mutex);

    Mutex m_mutex;
    std::string m_socket;
    std::unique_ptr<ScreenClient> m_client ZM_GUARDED_BY(m_mutex);
    ScreenWindow* m_window ZM_GUARDED_BY(m_mutex) = nullptr;
    std::chrono::steady_clock::time_point m_nextTry ZM_GUARDED_BY(m_mutex);
    bool m_shown ZM_GUARDED_BY(m_mutex) = false;
};

} // namespace zm::disc::engine
