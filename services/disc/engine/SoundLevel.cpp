#include "services/disc/engine/SoundLevel.h"

#include <gst/audio/audio.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <span>

namespace zm::disc::engine {

namespace {

// Sooner, a change would be heard as a click.
constexpr float RampSeconds = 0.02F;

std::atomic<float> wantedGain{1};
std::atomic<bool> fading{false};
std::atomic<bool> fadedOut{false};
std::atomic<bool> beginsAnew{true};

// Hearing is nearly logarithmic; a third power comes close and reaches silence.
float gainOf(const Loudness& loudness) {
    const float knob =
        static_cast<float>(std::clamp(loudness.volume, 0, Loudness::FullVolume)) / Loudness::FullVolume;
    return loudness.muted ? 0 : knob * knob * knob;
}

/** The loudness of one stream; on the thread of its sound. */
class Ramp {
public:
    GstPadProbeReturn pass(GstPad* pad, GstPadProbeInfo* info) {
        const bool silent = fading;
        const float target = silent ? 0 : wantedGain.load();
        if (beginsAnew.exchange(false)) {
            m_gain = target;
        }
        if (m_gain != target || m_gain != 1) {
            change(pad, info, target);
        }
        if (silent && m_gain == 0) {
            fadedOut = true;
        }
        return GST_PAD_PROBE_OK;
    }

private:
    void change(GstPad* pad, GstPadProbeInfo* info, float target) {
        const GstOwned<GstCaps> caps(gst_pad_get_current_caps(pad));
        GstAudioInfo format;
        if (!caps || !gst_audio_info_from_caps(&format, caps.get()) ||
            GST_AUDIO_INFO_FORMAT(&format) != GST_AUDIO_FORMAT_S16) {
            return;
        }
        GstBuffer* buffer = gst_buffer_make_writable(gst_pad_probe_info_get_buffer(info));
        info->data = buffer;
        GstMapInfo map;
        if (gst_buffer_map(buffer, &map, GST_MAP_READWRITE)) {
            const float step = 1 / (RampSeconds * static_cast<float>(format.rate));
            apply({reinterpret_cast<int16_t*>(map.data), map.size / sizeof(int16_t)},
                  static_cast<size_t>(format.channels), target, step);
            gst_buffer_unmap(buffer, &map);
        }
    }

    void apply(std::span<int16_t> samples, size_t channels, float target, float step) {
        for (size_t i = 0; i < samples.size(); ++i) {
            if (i % channels == 0) {
                m_gain = m_gain < target ? std::min(m_gain + step, target) : std::max(m_gain - step, target);
            }
            samples[i] = static_cast<int16_t>(std::lround(static_cast<float>(samples[i]) * m_gain));
        }
    }

    float m_gain = 1;
};

} // namespace

void setLoudness(const Loudness& loudness) {
    wantedGain = gainOf(loudness);
}

void followLoudness(GstPad* pad) {
    auto onSound = +[](GstPad* from, GstPadProbeInfo* info, gpointer ramp) {
        return static_cast<Ramp*>(ramp)->pass(from, info);
    };
    auto onEnd = +[](gpointer ramp) { delete static_cast<Ramp*>(ramp); };
    beginsAnew = true;
    gst_pad_add_probe(pad, GST_PAD_PROBE_TYPE_BUFFER, onSound, new Ramp, onEnd);
}

void fadeOut() {
    fadedOut = false;
    fading = true;
}

bool hasFadedOut() {
    return fadedOut;
}

void endFade() {
    fading = false;
    beginsAnew = true;
}

} // namespace zm::disc::engine
