#pragma once

#include "base/EventLoop.h"
#include "services/disc/engine/DecoderProcess.h"

#include <memory>

namespace zm::disc::engine {

/** Keeps a decoder's process that has loaded all it needs, to take the place of one that dies or hangs. */
class SpareDecoder {
public:
    explicit SpareDecoder(EventLoop& loop) : m_loop(loop) {}

    /** Has one a moment later, when what is urgent is done. */
    void prepare();
    /** The spare process, or a new one without it. Whoever takes it sets its callbacks. */
    Result<std::unique_ptr<DecoderProcess>> take();
    /** Whether one is there that can begin at once. */
    bool isWarm() const { return m_warm; }

private:
    void launch();

    EventLoop& m_loop;
    std::unique_ptr<DecoderProcess> m_process;
    bool m_warm = false;
    SourceHandle m_timer;
};

} // namespace zm::disc::engine
