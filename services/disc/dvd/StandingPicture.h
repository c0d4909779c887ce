#pragma once

#include "base/Mutex.h"
#include "services/disc/engine/FrameSink.h"
#include "services/disc/engine/Gst.h"

namespace zm::disc::dvd {

/** Keeps the picture that has come last, so that it can be shown anew while no other one comes. Any thread. */
class StandingPicture {
public:
    /** Watches what arrives at `element`, which it outlives. */
    explicit StandingPicture(GstElement* element);
    StandingPicture(const StandingPicture&) = delete;
    StandingPicture& operator=(const StandingPicture&) = delete;

    /** Shows it, enlarged around its middle; nothing if none has come yet. */
    void show(engine::FrameSink& frames, double zoom);

private:
    void keep(GstPad* pad, GstBuffer* picture);

    Mutex m_mutex;
    engine::GstOwned<GstSample> m_last ZM_GUARDED_BY(m_mutex);
};

} // namespace zm::disc::dvd
