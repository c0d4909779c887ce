#include "services/disc/SoundOut.h"

#include "services/disc/Log.h"

namespace zm::disc {

namespace {

constexpr const char* Device = "alsasink";

bool deviceOpens() {
    GstElement* sink = gst_element_factory_make(Device, nullptr);
    if (!sink) {
        return false;
    }
    const GstOwned<GstElement> owned(GST_ELEMENT(gst_object_ref_sink(sink)));
    const bool opens = gst_element_set_state(sink, GST_STATE_READY) == GST_STATE_CHANGE_SUCCESS;
    gst_element_set_state(sink, GST_STATE_NULL);
    return opens;
}

} // namespace

GstElement* makeSoundSink() {
    static const bool device = [] {
        const bool opens = deviceOpens();
        logInfo("%s\n", opens ? "sound goes to the default device" : "no sound device: playing silently");
        return opens;
    }();
    GstElement* sink = gst_element_factory_make(device ? Device : "fakesink", nullptr);
    if (!device) {
        g_object_set(sink, "sync", TRUE, nullptr);
    }
    return sink;
}

} // namespace zm::disc
