#include "services/disc/SoundOut.h"

#include "services/disc/Log.h"

namespace zm::disc {

namespace {

constexpr const char* Device = "alsasink";
// The player brings nothing that would fit the decoder's sound to the device.
constexpr const char* DeviceChain = "audioconvert ! audioresample ! alsasink";

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
    if (device) {
        return gst_parse_bin_from_description(DeviceChain, TRUE, nullptr);
    }
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, nullptr);
    return sink;
}

} // namespace zm::disc
