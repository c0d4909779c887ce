#include "services/disc/dvd/Sound.h"

#include "services/disc/engine/SoundFile.h"
#include "services/disc/log/Log.h"

#include <cstdlib>

namespace zm::disc::dvd {

GstElement* makeSound() {
    if (const char* file = std::getenv("ZM_SOUND"); file && *file) {
        if (GstElement* sink = engine::makeSoundFile(file)) {
            logInfo("the DVD's sound goes to %s\n", file);
            return sink;
        }
        logWarning("the DVD's sound cannot be written to %s\n", file);
    }
    GstElement* chain =
        gst_parse_bin_from_description("audioconvert ! audioresample ! alsasink name=device", TRUE, nullptr);
    if (chain) {
        const engine::GstOwned<GstElement> device(gst_bin_get_by_name(GST_BIN(chain), "device"));
        if (gst_element_set_state(device.get(), GST_STATE_READY) == GST_STATE_CHANGE_SUCCESS) {
            logInfo("the DVD's sound goes to the default device\n");
            return chain;
        }
        gst_element_set_state(device.get(), GST_STATE_NULL);
        gst_object_unref(gst_object_ref_sink(chain));
    }
    logInfo("no sound device for the DVD: playing silently\n");
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, nullptr);
    return sink;
}

} // namespace zm::disc::dvd
