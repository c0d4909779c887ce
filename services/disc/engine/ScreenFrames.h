#pragma once

#include "platform/linux/screen/ScreenClient.h"
#include "services/disc/engine/FrameSink.h"

#include <chrono>
#include <memory>
#include <mutex>
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
    bool connect();
    uint8_t* freeBuffer();
    void commit();

    std::mutex m_mutex;
    std::string m_socket;
    std::unique_ptr<ScreenClient> m_client;
    ScreenWindow* m_window = nullptr;
    std::chrono::steady_clock::time_point m_nextTry;
    bool m_shown = false;
};

} // namespace zm::disc::engine
