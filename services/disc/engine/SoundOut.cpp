#include "services/disc/engine/SoundOut.h"

#include "services/disc/Log.h"

namespace zm::disc {

namespace {

GstElement* device = nullptr; ///< null where there is none

} // namespace

void openSound() {
    GstElement* sink = gst_element_factory_make("alsasink", nullptr);
    if (sink) {
        gst_object_ref_sink(sink);
    }
    if (sink && gst_element_set_state(sink, GST_STATE_READY) == GST_STATE_CHANGE_SUCCESS) {
        device = sink;
    } else if (sink) {
        gst_element_set_state(sink, GST_STATE_NULL);
        gst_object_unref(sink);
    }
    logInfo("%s\n", device ? "sound goes to the default device" : "no sound device: playing silently");
}

GstElement* makeSoundSink() {
    if (!device) {
        GstElement* sink = gst_element_factory_make("fakesink", nullptr);
        g_object_set(sink, "sync", TRUE, nullptr);
        return sink;
    }
    // The player brings nothing that would fit the decoder's sound to the device.
    GstElement* chain =
        gst_parse_bin_from_description("audioconvert name=first ! audioresample name=last", FALSE, nullptr);
    const GstOwned<GstElement> first(gst_bin_get_by_name(GST_BIN(chain), "first"));
    const GstOwned<GstElement> last(gst_bin_get_by_name(GST_BIN(chain), "last"));
    gst_element_set_locked_state(device, FALSE);
    gst_bin_add(GST_BIN(chain), device);
    gst_element_link(last.get(), device);
    GstPad* input = gst_element_get_static_pad(first.get(), "sink");
    gst_element_add_pad(chain, gst_ghost_pad_new("sink", input));
    gst_object_unref(input);
    return chain;
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

} // namespace zm::disc
