#include "services/disc/engine/SoundOut.h"

#include "services/disc/engine/MixDown.h"
#include "services/disc/engine/SoundDevice.h"
#include "services/disc/engine/SoundFile.h"
#include "services/disc/engine/SoundLevel.h"
#include "services/disc/engine/SoundTap.h"
#include "services/disc/log/Log.h"

#include <gst/audio/audio.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace zm::disc::engine {

namespace {

// The rates of a disc and of films. Others are multiples of one of them, or are converted with little loss.
constexpr int DiscRate = 44100;
constexpr int FilmRate = 48000;
constexpr int DiscRateBase = 11025;

// What a device has taken is heard within this time.
constexpr Milliseconds DeviceDelay{180};

GstElement* device = nullptr; ///< null where there is none and nobody can film
bool audible = false;         ///< by somebody in the car
bool hasDelay = false;        ///< a file has none
std::atomic<SoundChannel> channel{SoundChannel::Both};

// Ready for one player after the other; null stays null.
GstElement* keep(GstElement* sink) {
    if (sink) {
        gst_object_ref_sink(sink);
        gst_element_set_state(sink, GST_STATE_READY);
    }
    return sink;
}

GstOwned<GstCaps> atRate(int rate) {
    return GstOwned<GstCaps>(gst_caps_new_simple("audio/x-raw", "rate", G_TYPE_INT, rate, nullptr));
}

// The first sound decides, so that what follows it needs no other device. A device that does not take these samples
// is given what it takes, behind where they are made louder or softer.
void fix(GstElement* filter, const GstCaps* first) {
    int rate = 0;
    gst_structure_get_int(gst_caps_get_structure(first, 0), "rate", &rate);
    const bool disc = rate % DiscRateBase == 0;
    GstPad* pad = gst_element_get_static_pad(device, "sink");
    const GstOwned<GstCaps> accepted(gst_pad_query_caps(pad, nullptr));
    gst_object_unref(pad);
    const GstOwned<GstCaps> format(gst_caps_new_simple("audio/x-raw", "format", G_TYPE_STRING,
                                                       GST_AUDIO_NE(S16), "layout", G_TYPE_STRING,
                                                       "interleaved", "channels", G_TYPE_INT, 2, nullptr));
    for (const int each : disc ? std::array{DiscRate, FilmRate} : std::array{FilmRate, DiscRate}) {
        if (gst_caps_can_intersect(accepted.get(), atRate(each).get())) {
            gst_caps_set_simple(format.get(), "rate", G_TYPE_INT, each, nullptr);
            break;
        }
    }
    g_object_set(filter, "caps", format.get(), nullptr);
}

GstPadProbeReturn onFilterEvent(GstPad*, GstPadProbeInfo* info, gpointer filter) {
    GstEvent* event = gst_pad_probe_info_get_event(info);
    if (GST_EVENT_TYPE(event) != GST_EVENT_CAPS) {
        return GST_PAD_PROBE_OK;
    }
    GstCaps* caps = nullptr;
    gst_event_parse_caps(event, &caps);
    fix(GST_ELEMENT(filter), caps);
    return GST_PAD_PROBE_REMOVE;
}

// Whether what passes `pad` is samples of 16 bits for two loudspeakers.
bool hasTwoSides(GstPad* pad) {
    const GstOwned<GstCaps> caps(gst_pad_get_current_caps(pad));
    GstAudioInfo info;
    return caps && gst_audio_info_from_caps(&info, caps.get()) &&
           GST_AUDIO_INFO_FORMAT(&info) == GST_AUDIO_FORMAT_S16 && GST_AUDIO_INFO_CHANNELS(&info) == 2;
}

// Both loudspeakers get the side that is to be heard.
GstPadProbeReturn onSound(GstPad* pad, GstPadProbeInfo* info, gpointer) {
    const SoundChannel heard = channel;
    if (heard == SoundChannel::Both || !hasTwoSides(pad)) {
        return GST_PAD_PROBE_OK;
    }
    GstBuffer* buffer = gst_buffer_make_writable(gst_pad_probe_info_get_buffer(info));
    info->data = buffer;
    GstMapInfo map;
    if (gst_buffer_map(buffer, &map, GST_MAP_READWRITE)) {
        auto* samples = reinterpret_cast<int16_t*>(map.data);
        const size_t side = heard == SoundChannel::Left ? 0 : 1;
        for (size_t i = 0; i + 1 < map.size / sizeof *samples; i += 2) {
            samples[i + 1 - side] = samples[i + side];
        }
        gst_buffer_unmap(buffer, &map);
    }
    return GST_PAD_PROBE_OK;
}

} // namespace

void setSoundChannel(SoundChannel heard) {
    channel = heard;
}

void openSound() {
    openSoundTap();
    const char* file = std::getenv("ZM_SOUND");
    if (file && *file) {
        device = keep(makeSoundFile(file));
        audible = device != nullptr;
        logInfo("sound %s %s\n", device ? "goes to" : "cannot be written to", file);
        return;
    }
    const SoundDevice opened = openSoundDevice();
    device = opened.sink;
    audible = hasDelay = device != nullptr;
    if (device) {
        logInfo("sound goes to %s\n", opened.text.c_str());
    } else {
        logInfo("%s: playing silently\n", opened.text.c_str());
        device = keep(makeSoundTap());
    }
}

GstElement* makeSoundSink() {
    if (!device) {
        GstElement* sink = gst_element_factory_make("fakesink", nullptr);
        g_object_set(sink, "sync", TRUE, nullptr);
        return sink;
    }
    // The player brings nothing that would fit the decoder's sound to the device.
    GstElement* chain = gst_parse_bin_from_description("audioconvert name=first ! audioresample ! capsfilter "
                                                       "name=format ! tee name=both ! audioconvert name=last",
                                                       FALSE, nullptr);
    const GstOwned<GstElement> first(gst_bin_get_by_name(GST_BIN(chain), "first"));
    const GstOwned<GstElement> format(gst_bin_get_by_name(GST_BIN(chain), "format"));
    const GstOwned<GstElement> last(gst_bin_get_by_name(GST_BIN(chain), "last"));
    const GstOwned<GstElement> both(gst_bin_get_by_name(GST_BIN(chain), "both"));
    mixDown(first.get());
    if (audible) {
        addSoundTap(GST_BIN(chain), both.get());
    }
    gst_element_set_locked_state(device, FALSE);
    gst_bin_add(GST_BIN(chain), device);
    gst_element_link(last.get(), device);
    GstPad* input = gst_element_get_static_pad(first.get(), "sink");
    gst_pad_add_probe(input, GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM, onFilterEvent, format.get(), nullptr);
    gst_element_add_pad(chain, gst_ghost_pad_new("sink", input));
    gst_object_unref(input);
    GstPad* output = gst_element_get_static_pad(format.get(), "src");
    gst_pad_add_probe(output, GST_PAD_PROBE_TYPE_BUFFER, onSound, nullptr, nullptr);
    followLoudness(output);
    gst_object_unref(output);
    return chain;
}

bool isHeard() {
    return audible;
}

Milliseconds soundDelay() {
    return hasDelay ? DeviceDelay : Milliseconds{0};
}

void endPlayer(GstElement* player) {
    gst_element_set_state(player, GST_STATE_READY);
    if (device) {
        gst_element_set_locked_state(device, TRUE);
    }
    gst_element_set_state(player, GST_STATE_NULL);
    if (GstObject* chain = device ? gst_object_get_parent(GST_OBJECT(device)) : nullptr) {
        gst_bin_remove(GST_BIN(chain), device);
        gst_object_unref(chain);
    }
}

} // namespace zm::disc::engine
