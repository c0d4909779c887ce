#pragma once

#include "services/disc/engine/Gst.h"
#include "services/disc/engine/SoundRange.h"

#include <gst/audio/audio.h>

#include <cstdint>

namespace zm::disc::engine {

/**
 * Passes on exactly those samples of a decoder's sound that belong to the file. Lossy formats decode to more than was
 * encoded, and times in between are not exact to a sample. On one of the decoder's threads.
 */
class SoundTrim {
public:
    explicit SoundTrim(const SoundRange& range) : m_range(range) {}
    SoundTrim(const SoundTrim&) = delete;
    SoundTrim& operator=(const SoundTrim&) = delete;

    /** Outlives the pad. */
    void attach(GstPad* pad);

private:
    GstPadProbeReturn see(GstPadProbeInfo* info);
    void take(GstEvent*& event);
    void count();
    GstPadProbeReturn cut(GstBuffer*& buffer);
    int64_t samplesIn(GstClockTime time) const;
    GstClockTime timeOf(int64_t samples) const;
    int64_t placeOf(GstBuffer* buffer, int64_t count);

    SoundRange m_range;
    SoundRange m_sound; ///< the same in the decoder's samples
    GstAudioInfo m_info{};
    GstSegment m_segment{};
    int64_t m_next = 0; ///< of the decoded samples, the one after the last buffer
};

} // namespace zm::disc::engine
