#pragma once

#include "services/disc/engine/FrameSink.h"

#include <mutex>

namespace zm::disc::dvd {

/** Frames that can be covered: meanwhile the screen stays black, whatever a decoder still gives out. Any
 * thread. */
class CurtainFrames : public engine::FrameSink {
public:
    /** `frames` outlives it. */
    explicit CurtainFrames(engine::FrameSink& frames) : m_frames(frames) {}

    void show(const engine::DrawPicture& draw) override {
        std::lock_guard lock(m_mutex);
        if (!m_covered) {
            m_frames.show(draw);
        }
    }
    void clear() override {
        std::lock_guard lock(m_mutex);
        m_frames.clear();
    }
    void cover(bool covered) {
        std::lock_guard lock(m_mutex);
        m_covered = covered;
        if (covered) {
            m_frames.clear();
        }
    }

private:
    engine::FrameSink& m_frames;
    std::mutex m_mutex;
    bool m_covered = false;
};

} // namespace zm::disc::dvd
