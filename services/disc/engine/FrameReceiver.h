#pragma once

#include "base/EventLoop.h"
#include "base/UniqueFd.h"
#include "services/disc/engine/FrameSink.h"
#include "services/disc/engine/SharedPictures.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <thread>

namespace zm::disc::engine {

/**
 * Takes the pictures of a decoder's process and shows those of one item, on a thread of its own as a frame
 * sink may wait. All calls from one thread.
 */
class FrameReceiver {
public:
    explicit FrameReceiver(std::shared_ptr<FrameSink> sink);
    ~FrameReceiver();
    FrameReceiver(const FrameReceiver&) = delete;
    FrameReceiver& operator=(const FrameReceiver&) = delete;

    /** Starts the thread unless it runs; false if there is none to start. */
    bool run();
    /** From now on pictures come from here. */
    void attach(UniqueFd notes, UniqueFd pictures);
    /** From now on pictures of `item` are shown and no others. */
    void expect(uint64_t item) { m_item = item; }
    /** Takes the picture away, after those that are on their way. */
    void clear();

private:
    void receive();

    std::shared_ptr<FrameSink> m_sink;
    std::atomic<uint64_t> m_item = 0;
    EventLoop m_loop;
    UniqueFd m_notes;
    std::unique_ptr<SharedPictures> m_pictures;
    SourceHandle m_watch;
    std::thread m_thread;
};

} // namespace zm::disc::engine
