#include "services/disc/engine/SoundTap.h"

#include "base/Paths.h"
#include "services/disc/engine/SoundTime.h"
#include "services/film/SharedSound.h"

#include <gst/audio/audio.h>

#include <memory>

namespace zm::disc::engine {

namespace {

film::SharedSound* listeners = nullptr; ///< as long as the process

// The clock of a device has its own time; how far it is from a sound's is the same in everybody's.
film::Moment momentOf(GstElement* sink, GstPad* pad, GstBuffer* buffer) {
    const GstOwned<GstClock> clock(gst_element_get_clock(sink));
    const film::Moment now = film::now();
    const gint64 ahead =
        clock ? soundTime(sink, pad, buffer) - static_cast<gint64>(gst_clock_get_time(clock.get())) : 0;
    return now + ahead;
}

void onHeard(GstElement* sink, GstBuffer* buffer, GstPad* pad, gpointer) {
    if (!listeners->isListenedTo()) {
        return;
    }
    const GstOwned<GstCaps> caps(gst_pad_get_current_caps(pad));
    GstAudioInfo info;
    GstMapInfo map;
    if (!caps || !gst_audio_info_from_caps(&info, caps.get()) ||
        GST_AUDIO_INFO_FORMAT(&info) != GST_AUDIO_FORMAT_S16 || GST_AUDIO_INFO_CHANNELS(&info) != 2 ||
        !gst_buffer_map(buffer, &map, GST_MAP_READ)) {
        return;
    }
    listeners->write(momentOf(sink, pad, buffer), static_cast<uint32_t>(info.rate),
                     {reinterpret_cast<const int16_t*>(map.data), map.size / sizeof(int16_t)});
    gst_buffer_unmap(buffer, &map);
}

} // namespace

void openSoundTap() {
    if (!listeners) {
        listeners = film::SharedSound::open(film::SharedSound::pathIn(runtimeDir())).release();
    }
}

GstElement* makeSoundTap() {
    if (!listeners) {
        return nullptr;
    }
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, "signal-handoffs", TRUE, nullptr);
    g_signal_connect(sink, "handoff", G_CALLBACK(onHeard), nullptr);
    return sink;
}

void addSoundTap(GstBin* bin, GstElement* tee) {
    GstElement* tap = makeSoundTap();
    if (!tap) {
        return;
    }
    g_object_set(tap, "async", FALSE, nullptr);
    GST_OBJECT_FLAG_UNSET(tap, GST_ELEMENT_FLAG_SINK);
    GstElement* queue = gst_element_factory_make("queue", nullptr);
    // It holds what is ahead of the device's buffer; more is lost before anybody waits for the tap.
    gst_util_set_object_arg(G_OBJECT(queue), "leaky", "downstream");
    gst_bin_add_many(bin, queue, tap, nullptr);
    gst_element_link_many(tee, queue, tap, nullptr);
}

} // namespace zm::disc::engine
