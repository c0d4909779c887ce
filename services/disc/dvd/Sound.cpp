#include "services/disc/dvd/Sound.h"

#include "services/disc/engine/SoundDevice.h"
#include "services/disc/engine/SoundFile.h"
#include "services/disc/engine/SoundLevel.h"
#include "services/disc/engine/SoundTap.h"
#include "services/disc/log/Log.h"

#include <cstdlib>

namespace zm::disc::dvd {

namespace {

// A device, open, or what stands for one; null for none.
GstElement* makeDevice() {
    if (const char* file = std::getenv("ZM_SOUND"); file && *file) {
        if (GstElement* sink = engine::makeSoundFile(file)) {
            logInfo("the DVD's sound goes to %s\n", file);
            return sink;
        }
        logWarning("the DVD's sound cannot be written to %s\n", file);
    }
    const auto device = engine::openSoundDevice();
    if (device.sink) {
        logInfo("the DVD's sound goes to %s\n", device.text.c_str());
    } else {
        logInfo("%s for the DVD: playing silently\n", device.text.c_str());
    }
    return device.sink;
}

GstElement* makeSink() {
    engine::openSoundTap();
    GstElement* device = makeDevice();
    if (!device) {
        if (GstElement* tap = engine::makeSoundTap()) {
            return tap;
        }
        GstElement* sink = gst_element_factory_make("fakesink", nullptr);
        g_object_set(sink, "sync", TRUE, nullptr);
        return sink;
    }
    // Ends that are left open would become pads of the chain, and the last one could not be linked any more.
    GstElement* chain = gst_parse_bin_from_description(
        "tee name=both ! audioconvert ! audioresample name=last", FALSE, nullptr);
    const engine::GstOwned<GstElement> both(gst_bin_get_by_name(GST_BIN(chain), "both"));
    const engine::GstOwned<GstElement> last(gst_bin_get_by_name(GST_BIN(chain), "last"));
    engine::addSoundTap(GST_BIN(chain), both.get());
    const bool floating = g_object_is_floating(device);
    gst_bin_add(GST_BIN(chain), device);
    gst_element_link(last.get(), device);
    GstPad* input = gst_element_get_static_pad(both.get(), "sink");
    gst_element_add_pad(chain, gst_ghost_pad_new("sink", input));
    gst_object_unref(input);
    if (!floating) {
        gst_object_unref(device);
    }
    return chain;
}

} // namespace

GstElement* makeSound() {
    GstElement* sink = makeSink();
    GstPad* input = gst_element_get_static_pad(sink, "sink");
    engine::followLoudness(input);
    gst_object_unref(input);
    return sink;
}

} // namespace zm::disc::dvd
