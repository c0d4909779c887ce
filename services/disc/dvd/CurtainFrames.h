#pragma once

#include "base/Mutex.h"
#include "services/disc/engine/FrameSink.h"

namespace zm::disc::dvd {

/** Frames that can be covered: meanwhile the screen stays black, whatever a decoder still gives out. Any
 * thread. */
class CurtainFrames : public engine::FrameSink {
public:
    /** `frames` outlives it. */
    explicit CurtainFrames(engine::FrameSink& frames) : m_frames(frames) {}

    void show(const engine::DrawPicture& draw) override {
        MutexLock lock(m_mutex);
        if (!m_covered) {
            m_frames.show(draw);
        }
    }
    void clear() override {
        MutexLock lock(m_mutex);
        m_frames.clear();
    }
    void cover(bool covered) {
        MutexLock lock(m_mutex);
        m_covered = covered;
        if (covered) {
            m_frames.clear();
        }
    }

private:
    engine::FrameSink& m_frames;
    Mutex m_mutex;
    bool m_covered ZM_GUARDED_BY(m_mutex) = false;
};

} // namespace zm::disc::dvd
